// SPDX-License-Identifier: MIT
#include "TestPattern.h"

#include <algorithm>
#include <cstring>

namespace grbsim {
namespace {

constexpr uint32_t kRed = 0;
constexpr uint32_t kGreen = 85;
constexpr uint32_t kBlue = 170;

// Rises and falls within 256 steps, so that the picture has no hard edge where it repeats.
uint32_t Triangle(uint32_t step) {
  const uint32_t position = step & 0xFFU;
  return position < 128 ? 2 * position : 511 - 2 * position;
}

uint32_t BayerPhase(EPixelKind kind, bool oddColumn, bool oddLine) {
  // The colour at the origin decides: the other three follow from the parity of column and line.
  const bool redColumn = (kind == EPixelKind::BayerGR || kind == EPixelKind::BayerBG) == oddColumn;
  const bool redLine = (kind == EPixelKind::BayerGB || kind == EPixelKind::BayerBG) == oddLine;
  if (redColumn && redLine) {
    return kRed;
  }
  return !redColumn && !redLine ? kBlue : kGreen;
}

}  // namespace

CTestPattern::CTestPattern(const PatternShape &shape) : m_Shape(shape) {
  const uint32_t pixels = shape.width + kPeriod;
  m_EvenLine.reserve(static_cast<size_t>(pixels) * shape.layout->bytesPerPixel);
  m_OddLine.reserve(m_EvenLine.capacity());
  for (uint32_t x = 0; x < pixels; ++x) {
    AppendPixel(m_EvenLine, x, false);
    AppendPixel(m_OddLine, x, true);
  }
}

void CTestPattern::AppendPixel(std::vector<uint8_t> &line, uint32_t x, bool oddLine) const {
  const uint32_t bits = m_Shape.layout->bits;
  const uint32_t top = (1U << bits) - 1;
  const uint32_t step = x + 64 * m_Shape.camera;
  const auto append = [&](uint32_t value) {
    line.push_back(static_cast<uint8_t>(value));
    if (bits > 8) {
      line.push_back(static_cast<uint8_t>(value >> 8));
    }
  };
  const auto component = [&](uint32_t phase) { append(Triangle(step + phase) * top / 255); };
  switch (m_Shape.layout->kind) {
    case EPixelKind::Mono:
      component(0);
      break;
    case EPixelKind::Rgb:
    case EPixelKind::Rgba:
      component(kRed);
      component(kGreen);
      component(kBlue);
      if (m_Shape.layout->kind == EPixelKind::Rgba) {
        append(top);
      }
      break;
    case EPixelKind::Bgr:
      component(kBlue);
      component(kGreen);
      component(kRed);
      break;
    case EPixelKind::Yuv422:
      component(0);
      component(x % 2 == 0 ? kGreen : kBlue);
      break;
    default:
      component(BayerPhase(m_Shape.layout->kind, x % 2 != 0, oddLine));
      break;
  }
}

bool CTestPattern::Render(const PatternTarget &target, uint64_t frame, EPattern pattern,
                          const std::atomic<bool> &stop) const {
  const size_t pixel = m_Shape.layout->bytesPerPixel;
  const size_t begin = std::min(target.offsetX, target.lineBytes / pixel) * pixel;
  const size_t bytes = std::min(m_Shape.width * pixel, target.lineBytes - begin);
  const size_t lines =
      target.offsetY < target.lines ? std::min<size_t>(m_Shape.height, target.lines - target.offsetY) : 0;
  const uint64_t motion = pattern == EPattern::HorizontalRamp ? 0 : frame * (1 + m_Shape.camera);
  for (size_t y = 0; y < lines; ++y) {
    if (stop.load(std::memory_order_relaxed)) {
      return false;
    }
    // Whole pairs of pixels, so that colours keep their columns.
    const uint64_t slope = pattern == EPattern::MovingDiagonal ? y / 2 : 0;
    const uint64_t pairs = (m_Shape.camera % 2 == 0 ? slope + motion : slope - motion) % (kPeriod / 2);
    const std::vector<uint8_t> &line = y % 2 == 0 ? m_EvenLine : m_OddLine;
    std::memcpy(target.data + (target.offsetY + y) * target.lineBytes + begin, line.data() + 2 * pairs * pixel, bytes);
  }
  return true;
}

}  // namespace grbsim
