// SPDX-License-Identifier: MIT
#include <cstdint>

#include <gtest/gtest.h>

#include "Grabber.h"

namespace {

struct Row {
  const char *name;
  uint32_t identifier;
  uint32_t initial;  // of channel 1
  uint32_t other;    // a second value that is allowed
  uint32_t refused;  // a value that is not; equal to `initial` where every value is allowed
};

void PrintTo(const Row &row, std::ostream *stream) { *stream << row.name; }

#define ROW(NAME, INITIAL, OTHER, REFUSED) \
  Row { #NAME, NAME, INITIAL, OTHER, REFUSED }
const Row kRows[] = {
    ROW(GRB_ACQ_NUM_BUFFERS, 1, 7, 0),
    ROW(GRB_DST_LIST_KIND, GRB_DST_LIST_USER_PAIRS, GRB_DST_LIST_USER_PAIRS, 0xC0022701),
    ROW(GRB_DST_LINE_BYTES, 0, 1280, 0),
    ROW(GRB_DST_LINES, 0, 1024, 0),
    ROW(GRB_EVENT_MASK, 0, 0x1004, 0),
    ROW(GRB_ACQ_BLOCKING, GRB_ACQ_BLOCKING_ON, GRB_ACQ_BLOCKING_OFF, 3),
    ROW(GRB_CAM_TYPE, GRB_CAM_AREASCAN_ROI, GRB_CAM_AREASCAN_NO_ROI, 0xC0021905),
    ROW(GRB_CAM_SRC_DEPTH, 8, 14, 9),
    ROW(GRB_CAM_ACTIVE_XLENGTH, 1280, 640, 1280),
    ROW(GRB_CAM_ACTIVE_YLENGTH, 1024, 480, 1024),
    ROW(GRB_ACQ_XSUB, GRB_ACQ_X1, GRB_ACQ_X8, 2),
    ROW(GRB_ACQ_YSUB, GRB_ACQ_X1, GRB_ACQ_X2, 0xC0020705),
    ROW(GRB_ROI_XLENGTH, 1280, 640, 1280),
    ROW(GRB_ROI_YLENGTH, 1024, 480, 1024),
    ROW(GRB_CAM_SRC_COL, GRB_CAM_SRC_MONO, GRB_CAM_SRC_RGBA, 0),
    ROW(GRB_LUT_SHIFT, 0, 0xFFFFFFFF, 0),
    ROW(GRB_ROI_SRC_XOFFSET, 0, 16, 0),
    ROW(GRB_ROI_SRC_YOFFSET, 0, 8, 0),
    ROW(GRB_CAM_FORMAT, GRB_CAM_NON_INTERLACED, GRB_CAM_INTERLACED, 0),
    ROW(GRB_ACQ_FIELD_MODE, GRB_ACQ_FRAME_12, GRB_ACQ_LINE_DOUBLE_2, 0xC002060D),
    ROW(GRB_LUT_BYPASS, 0, 1, 0),
    ROW(GRB_ROI_DST_XOFFSET, 0, 4, 0),
    ROW(GRB_ROI_DST_YOFFSET, 0, 4, 0),
    ROW(GRB_DATASTREAM_VALID, GRB_DATASTREAM_FRAME_AND_LINE, GRB_DATASTREAM_ALWAYS, 0),
    ROW(GRB_BUS_FORMAT, GRB_BUS_FORMAT_MONO8, GRB_BUS_FORMAT_BAYER_RG16, 0xC0022603),
    ROW(GRB_USR_FORMAT, GRB_USR_FORMAT_MONO8, GRB_USR_FORMAT_RGB14, 0xC0029E40),
    ROW(GRB_CAMTRIG_SRC, GRB_CAMTRIG_SRC_NONE, GRB_CAMTRIG_SRC_ENCODER_CHX, 0xC0027216),
    ROW(GRB_CAMTRIG_ENCODER_MODE, GRB_CAMTRIG_ENCODER_MODE1, GRB_CAMTRIG_ENCODER_MODE5, 0),
    ROW(GRB_CAMTRIG_ENCODER_SRC, GRB_CAMTRIG_SRC_422IN_CHX_0, GRB_CAMTRIG_SRC_TTLIN_CH4_0, 0),
    ROW(GRB_CAMTRIG_MULTIPLIER, 1, 1023, 1024),
    ROW(GRB_CAMTRIG_DIVIDER, 1, 1023, 0),
    ROW(GRB_CAMTRIG_DELAY_MODE_D1CAM, GRB_CAMTRIG_DELAY_NONE, GRB_CAMTRIG_DELAY_TIME, 0xC0093E03),
    ROW(GRB_CAMTRIG_DELAY_MODE_D2CAM, GRB_CAMTRIG_DELAY_NONE, GRB_CAMTRIG_DELAY_TIME, 0),
    ROW(GRB_CAMTRIG_CXPTRIG_SRC, GRB_CAMTRIG_CXPTRIG_NONE, GRB_CAMTRIG_CXPTRIG_FGTRIGD_CH4, 0),
    ROW(GRB_CAMTRIG_CXPTRIG_MODE, GRB_CAMTRIG_CXPTRIG_RISEFALL, GRB_CAMTRIG_CXPTRIG_FALL_INV, 0),
    ROW(GRB_FGTRIG_SRC, GRB_FGTRIG_SRC_TIMERA1_CHX, GRB_FGTRIG_SRC_TTLIN_CH4_0, 0),
    ROW(GRB_FGTRIG_MODE, GRB_FGTRIG_FREERUN, GRB_FGTRIG_GATED_NEG_LEVEL, 0),
    ROW(GRB_FGTRIG_DELAY_MODE, GRB_FGTRIG_DELAY_NONE, GRB_FGTRIG_DELAY_TIMERM1_CH4, 0),
    ROW(GRB_COUNT_BUFFER_READY, 1, 10, 1),
    ROW(GRB_TIMERA1_MODE, GRB_TIMERA1_MODE_RUN, GRB_TIMERA1_MODE_N_PULSES, 0),
    ROW(GRB_TIMERA1_PULSE_COUNT, 1, 65535, 65536),
    ROW(GRB_CXP_BITRATE_MODE, GRB_CXP_BITRATE_MODE_AUTO, GRB_CXP_BITRATE_MODE_CXP6, 0xC0091007),
    ROW(GRB_CXP_POCXP_MODE, GRB_CXP_POCXP_AUTO, GRB_CXP_POCXP_FORCEON, 0),
    ROW(GRB_CXP_DISCOVERY_MODE, GRB_CXP_DISCOVERY_AUTO, GRB_CXP_DISCOVERY_4X, 3),
    ROW(GRB_CXP_UPLINK_TEST, 0, 1, 0),
    ROW(GRB_CXP_DOWNLINK_TEST, 0, 1, 0),
};
#undef ROW

class Parameter32 : public testing::TestWithParam<Row> {};

TEST_P(Parameter32, StartsAsToldAndGivesBackWhatIsSetWithoutFlush) {
  const Row &row = GetParam();
  CGrabber grabber(GRB_MODE_ACQ_ONLY, GRB_CHANNEL_1);
  // A value that is too wide would spill over its neighbour.
  uint32_t values[2] = {0, 0x5AA55AA5};
  ASSERT_EQ(GRB_ParameterGet(grabber.Handle(), row.identifier, values), GRB_OK);
  EXPECT_EQ(values[0], row.initial);
  EXPECT_EQ(values[1], 0x5AA55AA5U);
  EXPECT_EQ(grabber.Set(row.identifier, row.other), GRB_OK);
  EXPECT_EQ(grabber.Get(row.identifier), row.other);
  EXPECT_EQ(grabber.Flush(), GRB_OK);
  EXPECT_EQ(grabber.Get(row.identifier), row.other);
  EXPECT_EQ(grabber.Set(row.identifier | 1U, row.initial), GRB_OK) << "the immediate form";
  EXPECT_EQ(grabber.Get(row.identifier), row.initial);
}

TEST_P(Parameter32, RefusesValuesThatAreNone) {
  const Row &row = GetParam();
  if (row.refused == row.initial) {
    CGrabber grabber(GRB_MODE_ACQ_ONLY, GRB_CHANNEL_1);
    EXPECT_EQ(grabber.Set(row.identifier, 0xFFFFFFFF), GRB_OK);
    return;
  }
  CGrabber grabber(GRB_MODE_ACQ_ONLY, GRB_CHANNEL_1);
  ClearHook();
  EXPECT_NE(grabber.Set(row.identifier, row.refused), GRB_OK);
  EXPECT_EQ(LastHook().function, "GRB_ParameterSet");
  EXPECT_NE(LastHook().text.find(row.name), std::string::npos) << LastHook().text;
  EXPECT_EQ(grabber.Get(row.identifier), row.initial);
}

TEST_P(Parameter32, ReopeningBringsTheInitialValueBack) {
  const Row &row = GetParam();
  CGrabber grabber(GRB_MODE_ACQ_ONLY, GRB_CHANNEL_1);
  EXPECT_EQ(grabber.Set(row.identifier, row.other), GRB_OK);
  EXPECT_EQ(grabber.Close(), GRB_OK);
  ASSERT_EQ(GRB_Open(grabber.Handle()), GRB_OK);
  EXPECT_EQ(grabber.Get(row.identifier), row.initial);
}

INSTANTIATE_TEST_SUITE_P(Table, Parameter32, testing::ValuesIn(kRows));

struct WideRow {
  const char *name;
  uint32_t identifier;
  uint64_t least;
  uint64_t greatest;
};

void PrintTo(const WideRow &row, std::ostream *stream) { *stream << row.name; }

const WideRow kWideRows[] = {
    {"GRB_TIMERA1_PERIOD_NS", GRB_TIMERA1_PERIOD_NS, 4, 17179869000},
    {"GRB_TIMERD1FG_VALUE_NS", GRB_TIMERD1FG_VALUE_NS, 1, 17179869000},
    {"GRB_TIMERD1CAM_VALUE_NS", GRB_TIMERD1CAM_VALUE_NS, 1, 17179869000},
    {"GRB_TIMERD2CAM_VALUE_NS", GRB_TIMERD2CAM_VALUE_NS, 1, 17179869000},
    {"GRB_TIMERM1_WIDTH_NS", GRB_TIMERM1_WIDTH_NS, 0, 17179869000},
    {"GRB_TIMERM2_WIDTH_NS", GRB_TIMERM2_WIDTH_NS, 0, 17179869000},
    {"GRB_TIMERD1FG_COUNT", GRB_TIMERD1FG_COUNT, 1, 17179869},
    {"GRB_FGTRIG_FILTER_NS", GRB_FGTRIG_FILTER_NS, 0, 262144},
    {"GRB_CAMTRIG_FILTER_NS", GRB_CAMTRIG_FILTER_NS, 0, 262144},
    {"GRB_CAMTRIG_ENCODER_FILTER_NS", GRB_CAMTRIG_ENCODER_FILTER_NS, 0, 2000},
};

class Parameter64 : public testing::TestWithParam<WideRow> {};

TEST_P(Parameter64, HasEightBytesAndItsLimits) {
  const WideRow &row = GetParam();
  CGrabber grabber(GRB_MODE_ACQ_ONLY, GRB_CHANNEL_1);
  for (const uint64_t value : {row.least, (row.least + row.greatest) / 2, row.greatest}) {
    EXPECT_EQ(grabber.Set64(row.identifier, value), GRB_OK);
    EXPECT_EQ(grabber.Get64(row.identifier), value);
  }
  EXPECT_NE(grabber.Set64(row.identifier, row.greatest + 1), GRB_OK);
  EXPECT_NE(grabber.Set64(row.identifier, uint64_t{1} << 40), GRB_OK);
  if (row.least > 0) {
    EXPECT_NE(grabber.Set64(row.identifier, row.least - 1), GRB_OK);
  }
  EXPECT_EQ(grabber.Get64(row.identifier), row.greatest);
}

INSTANTIATE_TEST_SUITE_P(Table, Parameter64, testing::ValuesIn(kWideRows));

constexpr uint32_t kReadOnly[] = {
    GRB_BOARD_INFO,  GRB_PCIE_INFO,     GRB_REV_HW_MAJOR, GRB_REV_HW_MINOR,          GRB_REV_HW_SUBMINOR,
    GRB_REV_HW,      GRB_REV_SW_MAJOR,  GRB_REV_SW_MINOR, GRB_REV_SW_SUBMINOR,       GRB_REV_SW,
    GRB_CXP_BITRATE, GRB_CXP_DISCOVERY, GRB_CXP_INFO,     GRB_COUNT_BUFFER_READY_NOW};

class ReadOnlyParameter : public testing::TestWithParam<uint32_t> {};

TEST_P(ReadOnlyParameter, IsReadAndRefusesWrites) {
  CGrabber grabber(GRB_MODE_ACQ_ONLY, GRB_CHANNEL_1);
  const uint32_t value = grabber.Get(GetParam());
  ClearHook();
  EXPECT_NE(grabber.Set(GetParam(), value), GRB_OK);
  EXPECT_NE(LastHook().text.find("is read-only."), std::string::npos) << LastHook().text;
  EXPECT_EQ(grabber.Get(GetParam()), value);
}

INSTANTIATE_TEST_SUITE_P(Table, ReadOnlyParameter, testing::ValuesIn(kReadOnly));

TEST(Parameter, PartsOfARevisionMakeTheWhole) {
  CGrabber grabber(GRB_MODE_ACQ_ONLY, GRB_CHANNEL_1);
  EXPECT_EQ(grabber.Get(GRB_REV_SW), grabber.Get(GRB_REV_SW_MAJOR) << 16 | grabber.Get(GRB_REV_SW_MINOR) << 8 |
                                         grabber.Get(GRB_REV_SW_SUBMINOR));
  EXPECT_EQ(grabber.Get(GRB_REV_HW), grabber.Get(GRB_REV_HW_MAJOR) << 16 | grabber.Get(GRB_REV_HW_MINOR) << 8 |
                                         grabber.Get(GRB_REV_HW_SUBMINOR));
  EXPECT_GE(grabber.Get(GRB_REV_SW), 0x70511U);
}

TEST(Parameter, WriteOnlyOnesAreNotRead) {
  CGrabber grabber(GRB_MODE_ACQ_ONLY, GRB_CHANNEL_1);
  uint64_t value = 0;
  for (const uint32_t identifier :
       {GRB_EVENT_CONTEXT, GRB_DST_LIST, GRB_CACHE_FLUSH, GRB_CACHE_FLUSH_BUFFERS, GRB_TIMERA1_SWTRIG_NOW}) {
    EXPECT_NE(GRB_ParameterGet(grabber.Handle(), identifier, &value), GRB_OK) << std::hex << identifier;
  }
}

TEST(Parameter, UnknownIdentifiersFailWithText) {
  CGrabber grabber(GRB_MODE_ACQ_ONLY, GRB_CHANNEL_1);
  uint32_t value = 0;
  // Among them the neighbours of commands that know one form only.
  for (const uint32_t identifier : {0U, 0xC0020300U, 0xC0022900U, 0xC0022903U, 0xC0095400U, 0xFFFFFFFFU, 0xC0025302U}) {
    ClearHook();
    EXPECT_NE(GRB_ParameterSet(grabber.Handle(), identifier, &value), GRB_OK) << std::hex << identifier;
    EXPECT_NE(GRB_ParameterGet(grabber.Handle(), identifier, &value), GRB_OK) << std::hex << identifier;
    EXPECT_EQ(LastHook().calls, 2U);
    EXPECT_EQ(LastHook().text.rfind("There is no parameter 0x", 0), 0U) << LastHook().text;
  }
}

TEST(Parameter, DefaultsAreThoseOfTheCamera) {
  CGrabber colour(GRB_MODE_ACQ_ONLY, GRB_CHANNEL_2);
  EXPECT_EQ(colour.Get(GRB_ROI_XLENGTH), 1920U);
  EXPECT_EQ(colour.Get(GRB_ROI_YLENGTH), 1080U);
  EXPECT_EQ(colour.Get(GRB_CAM_ACTIVE_XLENGTH), 1920U);
  EXPECT_EQ(colour.Get(GRB_CAM_ACTIVE_YLENGTH), 1080U);
  EXPECT_EQ(colour.Get(GRB_USR_FORMAT), GRB_USR_FORMAT_RGB8);
  EXPECT_EQ(colour.Get(GRB_BUS_FORMAT), GRB_BUS_FORMAT_RGB8);
  EXPECT_EQ(colour.Get(GRB_CAM_SRC_COL), GRB_CAM_SRC_RGB);
  EXPECT_EQ(colour.Get(GRB_CAM_SRC_DEPTH), 8U);
}

TEST(Parameter, ChannelsHaveParametersOfTheirOwn) {
  CGrabber one(GRB_MODE_ACQ_ONLY, GRB_CHANNEL_1);
  CGrabber two(GRB_MODE_ACQ_ONLY, GRB_CHANNEL_2);
  EXPECT_EQ(one.Set(GRB_ROI_XLENGTH, 64), GRB_OK);
  EXPECT_EQ(two.Get(GRB_ROI_XLENGTH), 1920U);
}

struct Speed {
  uint32_t mode;
  uint32_t code;
};

TEST(Parameter, BitrateFollowsItsModeAndReachesTheCamera) {
  CGrabber grabber(GRB_MODE_ACQ_ONLY, GRB_CHANNEL_1);
  CGrabber camera(GRB_MODE_CONTROL, GRB_CHANNEL_1);
  EXPECT_EQ(grabber.Get(GRB_CXP_BITRATE), GRB_CXP_BITRATE_MODE_CXP6);
  for (const Speed &speed : {Speed{GRB_CXP_BITRATE_MODE_CXP1, 0x28}, Speed{GRB_CXP_BITRATE_MODE_CXP2, 0x30},
                             Speed{GRB_CXP_BITRATE_MODE_CXP3, 0x38}, Speed{GRB_CXP_BITRATE_MODE_CXP5, 0x40},
                             Speed{GRB_CXP_BITRATE_MODE_CXP6, 0x48}}) {
    EXPECT_EQ(grabber.Set(GRB_CXP_BITRATE_MODE_NOW, speed.mode), GRB_OK);
    EXPECT_EQ(grabber.Get(GRB_CXP_BITRATE_MODE), speed.mode);
    EXPECT_EQ(grabber.Get(GRB_CXP_BITRATE), speed.mode);
    EXPECT_EQ(camera.ReadWord(0x4014), 0x00020000U | speed.code);
    EXPECT_EQ(grabber.Get(GRB_CXP_INFO), 0x00020000U | speed.code);
  }
  // The cached form waits for the flush.
  EXPECT_EQ(grabber.Set(GRB_CXP_BITRATE_MODE, GRB_CXP_BITRATE_MODE_CXP1), GRB_OK);
  EXPECT_EQ(grabber.Get(GRB_CXP_BITRATE), GRB_CXP_BITRATE_MODE_CXP6);
  EXPECT_EQ(grabber.Flush(), GRB_OK);
  EXPECT_EQ(grabber.Get(GRB_CXP_BITRATE), GRB_CXP_BITRATE_MODE_CXP1);
  EXPECT_EQ(grabber.Set(GRB_CXP_BITRATE_MODE_NOW, GRB_CXP_BITRATE_MODE_AUTO), GRB_OK);
  EXPECT_EQ(grabber.Get(GRB_CXP_BITRATE), GRB_CXP_BITRATE_MODE_CXP6);
}

TEST(Parameter, DiscoveryFollowsItsModeAndReachesTheCamera) {
  CGrabber grabber(GRB_MODE_ACQ_ONLY, GRB_CHANNEL_1);
  CGrabber camera(GRB_MODE_CONTROL, GRB_CHANNEL_1);
  EXPECT_EQ(grabber.Get(GRB_CXP_DISCOVERY), GRB_CXP_DISCOVERY_2X);
  for (const Speed &links :
       {Speed{GRB_CXP_DISCOVERY_1X, 1}, Speed{GRB_CXP_DISCOVERY_4X, 4}, Speed{GRB_CXP_DISCOVERY_AUTO, 2}}) {
    EXPECT_EQ(grabber.Set(GRB_CXP_DISCOVERY_MODE_NOW, links.mode), GRB_OK);
    EXPECT_EQ(camera.ReadWord(0x4014), links.code << 16 | 0x48U);
    EXPECT_EQ(grabber.Get(GRB_CXP_DISCOVERY), links.mode == GRB_CXP_DISCOVERY_AUTO ? GRB_CXP_DISCOVERY_2X : links.mode);
  }
}

TEST(Parameter, ReopeningBringsTheLinkBack) {
  CGrabber grabber(GRB_MODE_ACQ_ONLY, GRB_CHANNEL_1);
  EXPECT_EQ(grabber.Set(GRB_CXP_BITRATE_MODE_NOW, GRB_CXP_BITRATE_MODE_CXP1), GRB_OK);
  EXPECT_EQ(grabber.Close(), GRB_OK);
  ASSERT_EQ(GRB_Open(grabber.Handle()), GRB_OK);
  EXPECT_EQ(grabber.Get(GRB_CXP_BITRATE), GRB_CXP_BITRATE_MODE_CXP6);
}

TEST(Parameter, LinkIsUnknownWithoutCamera) {
  CGrabber grabber(GRB_MODE_ACQ_ONLY, GRB_CHANNEL_4);
  EXPECT_EQ(grabber.Get(GRB_CXP_BITRATE), GRB_CXP_BITRATE_UNKNOWN);
  EXPECT_EQ(grabber.Get(GRB_CXP_DISCOVERY), GRB_CXP_DISCOVERY_UNKNOWN);
  EXPECT_EQ(grabber.Get(GRB_CXP_INFO), 0U);
}

}  // namespace
