// SPDX-License-Identifier: MIT
#include "PixelUnpacker.h"

#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "CommandError.h"
#include "PixelFormats.h"

namespace Lumivex::Consumer {
namespace {

using Bytes = std::vector<unsigned char>;

Frame MakeFrame(const Bytes &bytes, size_t width, size_t height, size_t stride, uint64_t pixelFormat) {
  return {bytes.data(), bytes.size(), width, height, stride, pixelFormat, 1};
}

struct PixelCase {
  const char *what;
  uint64_t pixelFormat;
  Bytes in;  // the pixels of one line
  size_t width;
  unsigned channels;
  unsigned bitDepth;
  Bytes out;
};

void PrintTo(const PixelCase &row, std::ostream *pOut) { *pOut << row.what; }

class PixelUnpackerLine : public testing::TestWithParam<PixelCase> {};

TEST_P(PixelUnpackerLine, BecomesSamples) {
  const PixelCase &row = GetParam();
  const Picture picture = CPixelUnpacker::Unpack(MakeFrame(row.in, row.width, 1, row.in.size(), row.pixelFormat));
  EXPECT_EQ(picture.channels, row.channels);
  EXPECT_EQ(picture.bitDepth, row.bitDepth);
  EXPECT_EQ(picture.samples, row.out);
}

const PixelCase kPixels[] = {
    {"Mono8", 0x01080001, {0, 127, 255}, 3, 1, 8, {0, 127, 255}},
    {"Mono10 white", 0x01100003, {0xFF, 0x03}, 1, 1, 16, {0xFF, 0xFF}},
    {"Mono10 middle", 0x01100003, {0x00, 0x02}, 1, 1, 16, {0x80, 0x20}},
    {"Mono10 drops bits above", 0x01100003, {0x01, 0xFC}, 1, 1, 16, {0x00, 0x40}},
    {"Mono12", 0x01100005, {0xBC, 0x0A}, 1, 1, 16, {0xAB, 0xCA}},
    {"Mono14 white", 0x01100025, {0xFF, 0x3F}, 1, 1, 16, {0xFF, 0xFF}},
    {"Mono16", 0x01100007, {0x34, 0x12}, 1, 1, 16, {0x12, 0x34}},
    {"BayerRG8", 0x01080009, {1, 2}, 2, 1, 8, {1, 2}},
    {"BayerGB12", 0x01100012, {0xFF, 0x0F, 0, 0}, 2, 1, 16, {0xFF, 0xFF, 0, 0}},
    {"RGB8", 0x02180014, {1, 2, 3, 4, 5, 6}, 2, 3, 8, {1, 2, 3, 4, 5, 6}},
    {"BGR8", 0x02180015, {1, 2, 3, 4, 5, 6}, 2, 3, 8, {3, 2, 1, 6, 5, 4}},
    {"RGB16", 0x02300033, {1, 2, 3, 4, 5, 6}, 1, 3, 16, {2, 1, 4, 3, 6, 5}},
    {"BGR16", 0x0230004B, {1, 2, 3, 4, 5, 6}, 1, 3, 16, {6, 5, 4, 3, 2, 1}},
    {"RGB12", 0x0230001A, {0xFF, 0x0F, 0, 0, 0xFF, 0x0F}, 1, 3, 16, {0xFF, 0xFF, 0, 0, 0xFF, 0xFF}},
    {"RGBa8 drops the fourth", 0x02200016, {1, 2, 3, 0, 4, 5, 6, 0}, 2, 3, 8, {1, 2, 3, 4, 5, 6}},
    {"RGBa16", 0x02400064, {0, 1, 0, 2, 0, 3, 9, 9}, 1, 3, 16, {1, 0, 2, 0, 3, 0}},
    {"YUV422_8 grey", 0x02100032, {10, 128, 200, 128}, 2, 3, 8, {10, 10, 10, 200, 200, 200}},
    {"YUV422_8 red", 0x02100032, {76, 85, 76, 255}, 2, 3, 8, {254, 0, 0, 254, 0, 0}},
    {"YUV422_8 blue", 0x02100032, {29, 255, 29, 107}, 2, 3, 8, {0, 0, 254, 0, 0, 254}},
    {"YUV422_8 odd width", 0x02100032, {9, 128, 8, 128, 7, 128}, 3, 3, 8, {9, 9, 9, 8, 8, 8, 7, 7, 7}},
};
INSTANTIATE_TEST_SUITE_P(Table, PixelUnpackerLine, testing::ValuesIn(kPixels));

TEST(PixelUnpacker, LeavesPaddingOut) {
  const Bytes bytes = {1, 2, 0xEE, 3, 4, 0xEE, 5, 6, 0xEE};
  const Bytes expected = {1, 2, 3, 4, 5, 6};
  EXPECT_EQ(CPixelUnpacker::Unpack(MakeFrame(bytes, 2, 3, 3, 0x01080001)).samples, expected);
}

// The last line's padding may be missing; the pixels may not.
TEST(PixelUnpacker, NeedsNoPaddingBehindLastLine) {
  const Bytes bytes = {1, 2, 0xEE, 3, 4};
  const Bytes expected = {1, 2, 3, 4};
  EXPECT_EQ(CPixelUnpacker::Unpack(MakeFrame(bytes, 2, 2, 3, 0x01080001)).samples, expected);
}

TEST(PixelUnpacker, TellsBitsOfTheSource) {
  const Bytes bytes = {0, 0};
  EXPECT_EQ(CPixelUnpacker::Unpack(MakeFrame(bytes, 1, 1, 2, 0x01100005)).sourceBits, 12U);
}

struct BadFrame {
  const char *what;
  size_t size;
  size_t width;
  size_t height;
  size_t stride;
  uint64_t pixelFormat;
};

void PrintTo(const BadFrame &row, std::ostream *pOut) { *pOut << row.what; }

class PixelUnpackerRefusal : public testing::TestWithParam<BadFrame> {};

// Reading on past the buffer is what a wrong size from a Producer would lead to.
TEST_P(PixelUnpackerRefusal, IsOutputError) {
  const BadFrame &row = GetParam();
  const Bytes bytes(row.size);
  try {
    CPixelUnpacker::Unpack(MakeFrame(bytes, row.width, row.height, row.stride, row.pixelFormat));
    FAIL();
  } catch (const CCommandError &error) {
    EXPECT_EQ(error.Code(), ExitCode::Output);
  }
}

constexpr BadFrame kBadFrames[] = {
    {"no width", 100, 0, 10, 10, 0x01080001},
    {"no height", 100, 10, 0, 10, 0x01080001},
    {"one byte short", 99, 10, 10, 10, 0x01080001},
    {"stride under line", 100, 10, 10, 9, 0x01080001},
    {"lines of two bytes", 100, 10, 10, 10, 0x01100007},
    {"wild width", 100, SIZE_MAX, 1, SIZE_MAX, 0x01080001},
    {"wild height", 100, 1, SIZE_MAX, 1, 0x01080001},
    {"wild stride", 100, 10, 2, SIZE_MAX, 0x01080001},
    {"unknown format", 100, 10, 10, 10, 0x010C0047},
};
INSTANTIATE_TEST_SUITE_P(Table, PixelUnpackerRefusal, testing::ValuesIn(kBadFrames));

TEST(PixelFormats, NamesKnownNumbersAndUnknown) {
  EXPECT_EQ(PixelFormatName(0x01080009), "BayerRG8");
  EXPECT_EQ(PixelFormatName(0x010C0047), "0x010C0047");
}

}  // namespace
}  // namespace Lumivex::Consumer
