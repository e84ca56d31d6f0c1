// SPDX-License-Identifier: MIT
#include "PixelUnpacker.h"

#include <algorithm>
#include <cstring>

#include "CommandError.h"
#include "PixelFormats.h"
#include "Text.h"

namespace Lumivex::Consumer {
namespace {

// More pixels in a line or more lines than this no PNG file can hold.
constexpr std::size_t kLargestExtent = 0x7FFFFFFF;

void RequireWhole(const Frame &frame, std::size_t lineBytes) {
  const bool extentsFit =
      frame.width > 0 && frame.height > 0 && frame.width <= kLargestExtent && frame.height <= kLargestExtent;
  if (!extentsFit) {
    throw CCommandError(ExitCode::Output, "a frame of " + std::to_string(frame.width) + " x " +
                                              std::to_string(frame.height) + " pixels cannot be made a picture");
  }
  const bool linesFit = frame.stride >= lineBytes && frame.size >= lineBytes &&
                        frame.height - 1 <= (frame.size - lineBytes) / frame.stride;
  if (!linesFit) {
    throw CCommandError(ExitCode::Output, "frame " + std::to_string(frame.frameId) + " holds only " +
                                              Counted(frame.size, "byte") + ", less than " +
                                              std::to_string(frame.width) + " x " + std::to_string(frame.height) +
                                              " pixels of " + PixelFormatName(frame.pixelFormat));
  }
}

// The sample's bits are repeated below themselves, so that black stays 0 and white becomes 0xFFFF.
unsigned char *PutWord(unsigned char *pOut, const unsigned char *pIn, unsigned bits) {
  const unsigned value = (pIn[0] | static_cast<unsigned>(pIn[1]) << 8U) & ((1U << bits) - 1U);
  const unsigned scaled = bits == 16 ? value : (value << (16U - bits) | value >> (2U * bits - 16U));
  pOut[0] = static_cast<unsigned char>(scaled >> 8U);
  pOut[1] = static_cast<unsigned char>(scaled & 0xFFU);
  return pOut + 2;
}

unsigned char *PutSample(unsigned char *pOut, const unsigned char *pIn, unsigned bits) {
  if (bits > 8) {
    return PutWord(pOut, pIn, bits);
  }
  *pOut = *pIn;
  return pOut + 1;
}

// The places of red, green and blue among the components of a pixel.
struct ColourOrder {
  std::size_t places[3];
};

void UnpackColourLine(const PixelFormatRow &format, ColourOrder order, const unsigned char *pIn, std::size_t width,
                      unsigned char *pOut) {
  const std::size_t componentBytes = format.bits > 8 ? 2 : 1;
  for (std::size_t x = 0; x < width; ++x, pIn += format.bytesPerPixel) {
    for (const std::size_t place : order.places) {
      pOut = PutSample(pOut, pIn + place * componentBytes, format.bits);
    }
  }
}

void UnpackGreyLine(const PixelFormatRow &format, const unsigned char *pIn, std::size_t width, unsigned char *pOut) {
  if (format.bits == 8) {
    std::memcpy(pOut, pIn, width);
    return;
  }
  for (std::size_t x = 0; x < width; ++x, pIn += format.bytesPerPixel) {
    pOut = PutWord(pOut, pIn, format.bits);
  }
}

unsigned char Clamped(int value) { return static_cast<unsigned char>(std::clamp(value, 0, 255)); }

// BT.601, full range, in 16-bit fixed point.
unsigned char *PutYuv(unsigned char *pOut, int y, int u, int v) {
  constexpr int kHalf = 1 << 15;
  const int luma = y * 65536 + kHalf;
  pOut[0] = Clamped((luma + 91881 * (v - 128)) >> 16);
  pOut[1] = Clamped((luma - 22554 * (u - 128) - 46802 * (v - 128)) >> 16);
  pOut[2] = Clamped((luma + 116130 * (u - 128)) >> 16);
  return pOut + 3;
}

void UnpackYuyvLine(const unsigned char *pIn, std::size_t width, unsigned char *pOut) {
  // A line of odd width ends after its last U; the V before it serves, or none at all in a line of one pixel.
  int v = 128;
  for (std::size_t x = 0; x < width; x += 2, pIn += 4) {
    const bool pair = x + 1 < width;
    v = pair ? pIn[3] : v;
    pOut = PutYuv(pOut, pIn[0], pIn[1], v);
    if (pair) {
      pOut = PutYuv(pOut, pIn[2], pIn[1], v);
    }
  }
}

void UnpackLine(const PixelFormatRow &format, const unsigned char *pIn, std::size_t width, unsigned char *pOut) {
  switch (format.layout) {
    case PixelLayout::Grey:
      UnpackGreyLine(format, pIn, width, pOut);
      break;
    case PixelLayout::Rgb:
    case PixelLayout::Rgba:
      UnpackColourLine(format, {{0, 1, 2}}, pIn, width, pOut);
      break;
    case PixelLayout::Bgr:
      UnpackColourLine(format, {{2, 1, 0}}, pIn, width, pOut);
      break;
    case PixelLayout::Yuyv:
      UnpackYuyvLine(pIn, width, pOut);
      break;
  }
}

}  // namespace

Picture CPixelUnpacker::Unpack(const Frame &frame) {
  const PixelFormatRow *pFormat = FindPixelFormat(frame.pixelFormat);
  if (pFormat == nullptr) {
    throw CCommandError(ExitCode::Output,
                        "pixel format " + Hexadecimal(frame.pixelFormat) + " cannot be made a picture");
  }
  RequireWhole(frame, frame.width * pFormat->bytesPerPixel);

  Picture picture{frame.width,
                  frame.height,
                  pFormat->layout == PixelLayout::Grey ? 1U : 3U,
                  pFormat->bits > 8 ? 16U : 8U,
                  pFormat->bits,
                  pFormat->name,
                  {}};
  picture.samples.resize(picture.BytesPerLine() * picture.height);
  for (std::size_t y = 0; y < frame.height; ++y) {
    UnpackLine(*pFormat, frame.pData + y * frame.stride, frame.width,
               picture.samples.data() + y * picture.BytesPerLine());
  }
  return picture;
}

}  // namespace Lumivex::Consumer
