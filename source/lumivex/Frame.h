// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace Lumivex::Consumer {

/// A frame as it lies in a buffer: a view, good until the buffer is queued again.
struct Frame {
  const unsigned char *pData;  ///< First pixel.
  std::size_t size;            ///< Bytes from there to the end of what was filled.
  std::size_t width;           ///< Pixels.
  std::size_t height;          ///< Lines.
  std::size_t stride;          ///< Bytes from one line to the next, padding included.
  uint64_t pixelFormat;        ///< PFNC number.
  uint64_t frameId;
};

/// A picture as a PNG file holds it: lines without padding, grey or red-green-blue, 16-bit samples big-endian.
struct Picture {
  std::size_t width;        ///< Pixels.
  std::size_t height;       ///< Lines.
  unsigned channels;        ///< 1: grey, 3: red, green, blue.
  unsigned bitDepth;        ///< Of a sample: 8 or 16.
  unsigned sourceBits;      ///< Of a sample as the camera sent it, scaled up to bitDepth.
  const char *pFormatName;  ///< Name of the pixel format that it was made of.
  std::vector<unsigned char> samples;

  std::size_t BytesPerLine() const noexcept { return width * channels * (bitDepth / 8); }
};

}  // namespace Lumivex::Consumer
