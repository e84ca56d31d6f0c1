// SPDX-License-Identifier: MIT
#include <algorithm>
#include <string>

#include <gtest/gtest.h>

#include "Grabber.h"

namespace {

constexpr uint32_t kTestPattern = 0x6028;

struct Format {
  const char *name;
  uint32_t usrFormat;
  uint32_t components;
  uint32_t bits;
};

const Format kFormats[] = {
    {"Mono8", GRB_USR_FORMAT_MONO8, 1, 8},           {"Mono10", GRB_USR_FORMAT_MONO10, 1, 10},
    {"Mono12", GRB_USR_FORMAT_MONO12, 1, 12},        {"Mono14", GRB_USR_FORMAT_MONO14, 1, 14},
    {"Mono16", GRB_USR_FORMAT_MONO16, 1, 16},        {"BayerGR8", GRB_USR_FORMAT_BAYER_GR8, 1, 8},
    {"BayerRG12", GRB_USR_FORMAT_BAYER_RG12, 1, 12}, {"BayerGB16", GRB_USR_FORMAT_BAYER_GB16, 1, 16},
    {"BayerBG10", GRB_USR_FORMAT_BAYER_BG10, 1, 10}, {"Rgb8", GRB_USR_FORMAT_RGB8, 3, 8},
    {"Rgb16", GRB_USR_FORMAT_RGB16, 3, 16},          {"Bgr8", GRB_USR_FORMAT_BGR8, 3, 8},
    {"Rgba8", GRB_USR_FORMAT_RGBA8, 4, 8},           {"Rgba16", GRB_USR_FORMAT_RGBA16, 4, 16},
    {"Yuv422", GRB_USR_FORMAT_YUV422_8, 2, 8},
};

std::vector<uint32_t> Components(const std::vector<uint8_t> &line, const Format &format, uint32_t width) {
  std::vector<uint32_t> values;
  const size_t bytes = format.bits > 8 ? 2 : 1;
  for (size_t i = 0; i < width * format.components; ++i) {
    values.push_back(bytes == 1 ? line[i] : static_cast<uint32_t>(line[2 * i] | line[2 * i + 1] << 8));
  }
  return values;
}

class PatternFormat : public testing::TestWithParam<Format> {};

TEST_P(PatternFormat, FillsTheWholeRangeOfItsBitsAndNothingBehindTheLine) {
  const Format &format = GetParam();
  constexpr uint32_t kWidth = 513;  // not a multiple of anything, and more than a period of the gradient
  CGrabber grabber(GRB_MODE_ACQ_ONLY, GRB_CHANNEL_2);
  UseSmallImage(grabber, kWidth, 4, format.usrFormat);
  CRun run(grabber, 2);
  ASSERT_EQ(run.Start(), GRB_OK);
  ASSERT_TRUE(run.WaitForFrames(2));
  StopCleanly(run);
  const std::vector<uint32_t> values = Components(run.Slot(0), format, kWidth);
  const uint32_t top = (1U << format.bits) - 1;
  // Of a Bayer colour there is every second step only.
  EXPECT_GE(*std::max_element(values.begin(), values.end()), top - top / 64);
  EXPECT_LE(*std::max_element(values.begin(), values.end()), top);
  EXPECT_LE(*std::min_element(values.begin(), values.end()), top / 64);
  EXPECT_TRUE(run.GuardsAreWhole());
  // The bytes of the padding are nobody's.
  const size_t used = kWidth * format.components * (format.bits > 8 ? 2 : 1);
  for (size_t i = used; i < run.LineBytes(); ++i) {
    EXPECT_EQ(run.Slot(0)[i], 0xA5) << i;
  }
  EXPECT_NE(run.Slot(0), run.Slot(1)) << "the picture moves";
}

INSTANTIATE_TEST_SUITE_P(Table, PatternFormat, testing::ValuesIn(kFormats),
                         [](const testing::TestParamInfo<Format> &row) { return std::string(row.param.name); });

TEST(Pattern, StandsStillAsAPlainRamp) {
  CGrabber grabber(GRB_MODE_ACQ_ONLY, GRB_CHANNEL_1);
  CGrabber camera(GRB_MODE_CONTROL, GRB_CHANNEL_1);
  EXPECT_EQ(camera.WriteWord(kTestPattern, 1), GRB_OK);
  UseSmallImage(grabber);
  CRun run(grabber, 2);
  ASSERT_EQ(run.Start(), GRB_OK);
  ASSERT_TRUE(run.WaitForFrames(2));
  StopCleanly(run);
  EXPECT_EQ(run.Slot(0), run.Slot(1));
  EXPECT_EQ(run.Slot(0)[0], 0);
  EXPECT_EQ(run.Slot(0)[1], 2);
  EXPECT_EQ(camera.WriteWord(kTestPattern, 0), GRB_OK);
}

// BGR is RGB with the ends exchanged: nothing but the order of the components may differ.
TEST(Pattern, BgrIsRgbTurnedRound) {
  std::vector<uint8_t> lines[2];
  const uint32_t formats[] = {GRB_USR_FORMAT_RGB8, GRB_USR_FORMAT_BGR8};
  for (size_t i = 0; i < 2; ++i) {
    CGrabber grabber(GRB_MODE_ACQ_ONLY, GRB_CHANNEL_2);
    UseSmallImage(grabber, 64, 2, formats[i]);
    CRun run(grabber, 1);
    ASSERT_EQ(run.Start(), GRB_OK);
    ASSERT_TRUE(run.WaitForFrames(1));
    StopCleanly(run);
    lines[i].assign(run.Slot(0).begin(), run.Slot(0).begin() + 192);
  }
  for (size_t pixel = 0; pixel < 64; ++pixel) {
    for (size_t component = 0; component < 3; ++component) {
      EXPECT_EQ(lines[0][3 * pixel + component], lines[1][3 * pixel + 2 - component]) << pixel;
    }
  }
}

TEST(Pattern, DestinationOffsetsMoveThePictureAndNeverLeaveTheDestination) {
  CGrabber grabber(GRB_MODE_ACQ_ONLY, GRB_CHANNEL_1);
  UseSmallImage(grabber, 64, 8);
  EXPECT_EQ(grabber.Set(GRB_ROI_DST_XOFFSET, 16), GRB_OK);
  EXPECT_EQ(grabber.Set(GRB_ROI_DST_YOFFSET, 2), GRB_OK);
  CRun run(grabber, 1);
  ASSERT_EQ(run.Start(), GRB_OK);
  ASSERT_TRUE(run.WaitForFrames(1));
  StopCleanly(run);
  const std::vector<uint8_t> &slot = run.Slot(0);
  for (size_t i = 0; i < 2 * run.LineBytes() + 16; ++i) {
    EXPECT_EQ(slot[i], 0xA5) << i;
  }
  EXPECT_TRUE(run.GuardsAreWhole());
  EXPECT_FALSE(
      std::all_of(slot.begin() + 2 * 64 + 16, slot.begin() + 3 * 64, [](uint8_t byte) { return byte == 0xA5; }));
}

class WildOffset : public testing::TestWithParam<uint32_t> {};

TEST_P(WildOffset, WritesNothingOutside) {
  CGrabber grabber(GRB_MODE_ACQ_ONLY, GRB_CHANNEL_1);
  UseSmallImage(grabber, 60, 8);
  EXPECT_EQ(grabber.Set(GRB_ROI_DST_XOFFSET, GetParam()), GRB_OK);
  EXPECT_EQ(grabber.Set(GRB_ROI_DST_YOFFSET, GetParam()), GRB_OK);
  CRun run(grabber, 1);
  ASSERT_EQ(run.Start(), GRB_OK);
  ASSERT_TRUE(run.WaitForFrames(1));
  StopCleanly(run);
  EXPECT_TRUE(run.GuardsAreWhole());
}

INSTANTIATE_TEST_SUITE_P(Table, WildOffset, testing::Values(5, 7, 8, 63, 64, 0xFFFFFFFF));

TEST(Pattern, DecimationMakesThePictureSmaller) {
  CGrabber grabber(GRB_MODE_ACQ_ONLY, GRB_CHANNEL_1);
  UseSmallImage(grabber, 64, 8);
  CRun run(grabber, 1);  // lines for the whole image
  EXPECT_EQ(grabber.Set(GRB_ACQ_XSUB, GRB_ACQ_X4), GRB_OK);
  EXPECT_EQ(grabber.Set(GRB_ACQ_YSUB, GRB_ACQ_X2), GRB_OK);
  ASSERT_EQ(run.Start(), GRB_OK);
  ASSERT_TRUE(run.WaitForFrames(1));
  StopCleanly(run);
  EXPECT_EQ(run.Slot(0)[16], 0xA5);
  EXPECT_EQ(run.Slot(0)[4 * 64], 0xA5);
  EXPECT_FALSE(std::all_of(run.Slot(0).begin(), run.Slot(0).begin() + 16, [](uint8_t byte) { return byte == 0xA5; }));
}

}  // namespace
