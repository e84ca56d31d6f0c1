// SPDX-License-Identifier: MIT
#pragma once

/// \file
/// The pixel formats that lumivex can turn into pictures, numbered as in the pixel format naming convention (PFNC).

#include <cstddef>
#include <cstdint>
#include <string>

namespace Lumivex::Consumer {

/// How the components of a pixel lie in memory. Those of more than 8 bits are little-endian 16-bit words.
enum class PixelLayout {
  Grey,  ///< One component, Bayer mosaics among them.
  Rgb,   ///< Red, green, blue.
  Bgr,   ///< Blue, green, red.
  Rgba,  ///< Red, green, blue, and a fourth component that carries no colour.
  Yuyv,  ///< Two pixels: luma, U, luma, V.
};

struct PixelFormatRow {
  uint64_t value;  ///< PFNC number.
  const char *name;
  PixelLayout layout;
  unsigned bits;              ///< Of one component.
  std::size_t bytesPerPixel;  ///< In memory.
};

/// The row of a format; null when lumivex does not know it.
const PixelFormatRow *FindPixelFormat(uint64_t value) noexcept;

/// The format's name; its number when lumivex does not know it.
std::string PixelFormatName(uint64_t value);

}  // namespace Lumivex::Consumer
