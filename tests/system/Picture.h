// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include <gtest/gtest.h>

#include "PixelFormatTable.h"

/// The picture that a simulated camera sends, worked out pixel by pixel and without the simulation's own code.
namespace SystemTest {

using DeviceTests::kPixelFormats;
using DeviceTests::PixelFormatRow;

struct PictureShape {
  const PixelFormatRow *format;
  uint32_t width;    // pixels
  uint32_t height;   // lines
  uint32_t channel;  // 1 or 2
};

/// Null if no format has the value.
const PixelFormatRow *FindPixelFormat(uint64_t pfnc);

/// Bytes of a line in a buffer: the next multiple of 16.
size_t LineBytes(const PixelFormatRow &format, uint32_t width);

/// One line of frame number `frame`, 1 being the first of a run, without the filling bytes.
std::vector<uint8_t> ExpectedLine(const PictureShape &shape, uint64_t frame, uint32_t y);

/// Whether the buffer holds frame number `frame`, and `filling` in all bytes behind the pixels of each line.
testing::AssertionResult IsPicture(const uint8_t *data, const PictureShape &shape, uint64_t frame, uint8_t filling);

/// Number of the frame in the buffer, 1 to 128, since it comes again after 128; 0 if it is none.
uint64_t FrameInBuffer(const uint8_t *data, const PictureShape &shape);

}  // namespace SystemTest
