// SPDX-License-Identifier: MIT
#pragma once

#include "Frame.h"

namespace Lumivex::Consumer {

/// Makes pictures of frames: drops line padding, sorts components, scales samples up to 8 or 16 bits.
///
/// Mono and Bayer become grey, RGB, BGR and RGBa become colour, YUV becomes colour by the full-range matrix of BT.601.
/// The fourth component of RGBa is dropped: grabbers leave it zero, and the picture would be transparent.
/// Pure functions without state. Throws CCommandError(Output) for a format that it does not know and for a frame that
/// holds less than its size says; std::bad_alloc.
class CPixelUnpacker {
 public:
  static Picture Unpack(const Frame &frame);
};

}  // namespace Lumivex::Consumer
