// SPDX-License-Identifier: MIT
#ifndef GRBSIM_TESTPATTERN_H
#define GRBSIM_TESTPATTERN_H

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "PixelLayout.h"

namespace grbsim {

/// Which picture a camera sends; the values of its TestPattern register.
enum class EPattern : uint32_t { MovingDiagonal = 0, HorizontalRamp = 1, HorizontalRampMoving = 2 };

/// Size, format and motion of the pictures of one run.
struct PatternShape {
  const PixelLayout *layout;
  uint32_t width;  // pixels
  uint32_t height;
  uint32_t camera;  // tells the cameras apart: phase and direction follow from it
};

/// Where a picture goes: lines of a fixed distance, of which some pixels and lines may be left out at the begin.
struct PatternTarget {
  uint8_t *data;
  size_t lineBytes;
  size_t lines;
  size_t offsetX;  // pixels
  size_t offsetY;  // lines
};

/// Renders a gradient that moves from frame to frame, in any format of the library.
///
/// Owned by one run of a CStreamEngine, used on its thread only; takes no lock. The gradient repeats after 256 steps,
/// so a line is a piece of one of two lines made at construction (even and odd, for the sake of Bayer formats), and a
/// frame costs one memory copy for each line. It never writes beyond the target, whatever size and offsets say.
class CTestPattern {
 public:
  explicit CTestPattern(const PatternShape &shape);

  /// Renders frame number `frame`. Gives up between two lines once `stop` is set, and answers false then.
  bool Render(const PatternTarget &target, uint64_t frame, EPattern pattern, const std::atomic<bool> &stop) const;

 private:
  static constexpr uint32_t kPeriod = 256;

  void AppendPixel(std::vector<uint8_t> &line, uint32_t x, bool oddLine) const;

  PatternShape m_Shape;
  std::vector<uint8_t> m_EvenLine;
  std::vector<uint8_t> m_OddLine;
};

}  // namespace grbsim

#endif
