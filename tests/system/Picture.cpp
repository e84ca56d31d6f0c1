// SPDX-License-Identifier: MIT
#include "Picture.h"

#include <algorithm>
#include <iterator>
#include <string_view>

namespace SystemTest {

namespace {

// The brightness of a colour lags behind that of the one before by a third of the pattern.
constexpr uint32_t kRed = 0;
constexpr uint32_t kGreen = 85;
constexpr uint32_t kBlue = 170;
constexpr uint32_t kOpaque = 0xFFFF;

/// Up over half of 256 steps, and down again.
uint32_t Brightness(uint32_t step) {
  step %= 256;
  return step < 128 ? step * 2 : 255 - (step - 128) * 2;
}

/// The components of the pixel in a column and a line, by their lag.
std::vector<uint32_t> Lags(std::string_view name, uint32_t x, uint32_t y) {
  if (name.substr(0, 4) == "Mono") {
    return {kRed};
  }
  if (name.substr(0, 5) == "Bayer") {
    // The two letters are the first two colours of the first line; the second line has the other two.
    const std::string_view first = name.substr(5, 2);
    const std::string_view second = first == "GR" ? "BG" : first == "RG" ? "GB" : first == "GB" ? "RG" : "GR";
    const char colour = (y % 2 == 0 ? first : second)[x % 2];
    return {colour == 'R' ? kRed : colour == 'G' ? kGreen : kBlue};
  }
  if (name.substr(0, 4) == "RGBa") {
    return {kRed, kGreen, kBlue, kOpaque};
  }
  if (name.substr(0, 3) == "RGB") {
    return {kRed, kGreen, kBlue};
  }
  if (name.substr(0, 3) == "BGR") {
    return {kBlue, kGreen, kRed};
  }
  return {kRed, x % 2 == 0 ? kGreen : kBlue};  // YUV 4:2:2
}

}  // namespace

const PixelFormatRow *FindPixelFormat(uint64_t pfnc) {
  const auto *const row = std::find_if(std::begin(kPixelFormats), std::end(kPixelFormats),
                                       [=](const PixelFormatRow &candidate) { return candidate.pfnc == pfnc; });
  return row == std::end(kPixelFormats) ? nullptr : row;
}

size_t LineBytes(const PixelFormatRow &format, uint32_t width) {
  return (static_cast<size_t>(width) * format.bytes + 15) / 16 * 16;
}

std::vector<uint8_t> ExpectedLine(const PictureShape &shape, uint64_t frame, uint32_t y) {
  const uint32_t top = (1U << shape.format->bits) - 1;
  const uint32_t camera = shape.channel - 1;
  // Two pixels a step, so that colours keep their columns. Cameras differ in where they begin, in pace and in
  // direction.
  const auto motion = static_cast<uint32_t>(frame % 128) * (1 + camera);
  const uint32_t steps = (camera == 0 ? y / 2 + motion : y / 2 + 256 - motion % 128) % 128;
  std::vector<uint8_t> line;
  line.reserve(static_cast<size_t>(shape.width) * shape.format->bytes);
  for (uint32_t x = 0; x < shape.width; ++x) {
    for (const uint32_t lag : Lags(shape.format->name, x, y)) {
      const uint32_t value = lag == kOpaque ? top : Brightness(x + 2 * steps + 64 * camera + lag) * top / 255;
      line.push_back(static_cast<uint8_t>(value));
      if (shape.format->bits > 8) {
        line.push_back(static_cast<uint8_t>(value >> 8U));
      }
    }
  }
  return line;
}

testing::AssertionResult IsPicture(const uint8_t *data, const PictureShape &shape, uint64_t frame, uint8_t filling) {
  const size_t lineBytes = LineBytes(*shape.format, shape.width);
  for (uint32_t y = 0; y < shape.height; ++y) {
    const uint8_t *const line = data + y * lineBytes;
    const std::vector<uint8_t> expected = ExpectedLine(shape, frame, y);
    const auto difference = std::mismatch(expected.begin(), expected.end(), line);
    if (difference.first != expected.end()) {
      return testing::AssertionFailure() << shape.format->name << ", frame " << frame << ", line " << y << ", byte "
                                         << difference.second - line << ": " << static_cast<int>(*difference.second)
                                         << " in place of " << static_cast<int>(*difference.first);
    }
    if (std::any_of(line + expected.size(), line + lineBytes, [=](uint8_t byte) { return byte != filling; })) {
      return testing::AssertionFailure() << shape.format->name << ", frame " << frame << ": a filling byte of line "
                                         << y << " was written";
    }
  }
  return testing::AssertionSuccess();
}

uint64_t FrameInBuffer(const uint8_t *data, const PictureShape &shape) {
  for (uint64_t frame = 1; frame <= 128; ++frame) {
    const std::vector<uint8_t> line = ExpectedLine(shape, frame, 0);
    if (std::equal(line.begin(), line.end(), data)) {
      return frame;
    }
  }
  return 0;
}

}  // namespace SystemTest
