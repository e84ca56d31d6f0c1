// SPDX-License-Identifier: MIT
// The header of the frame-grabber library, in numbers. The Producer, the simulation and the scripted library are built
// from this one header: a value that is wrong in it is wrong on every side, and shows with a foreign library only.
#include <cstdint>
#include <type_traits>

#include <gtest/gtest.h>

#include "PlainHeader.h"
#include "grblx64.h"

namespace GrabberTests {
namespace {

// Types. Written without the header's own names for them --------------------------------------------------------------

using Hook = void (*)(const char *, uint32_t, const char *);
using Callback = void (*)(uint32_t, uint32_t, void *);

template <class Wanted, class Function>
constexpr bool Is = std::is_same_v<Wanted *, Function>;

static_assert(std::is_same_v<GRB_HANDLE, uint32_t>);
static_assert(std::is_same_v<GRB_STATUS, uint32_t>);
static_assert(std::is_same_v<GRB_ERROR_HOOK, Hook>);
static_assert(std::is_same_v<GRB_EVENT_CALLBACK, Callback>);

static_assert(Is<uint32_t(uint32_t *, Hook), decltype(&GRB_Create)>);
static_assert(Is<uint32_t(uint32_t *), decltype(&GRB_Destroy)>);
static_assert(Is<uint32_t(uint32_t, uint32_t, void *), decltype(&GRB_ParameterSet)>);
static_assert(Is<uint32_t(uint32_t, uint32_t, void *), decltype(&GRB_ParameterGet)>);
static_assert(Is<uint32_t(uint32_t), decltype(&GRB_Open)>);
static_assert(Is<uint32_t(uint32_t *), decltype(&GRB_Close)>);
static_assert(Is<uint32_t(uint32_t, uint32_t, void *, uint8_t *, uint32_t *, uint32_t), decltype(&GRB_ControlRead)>);
static_assert(Is<uint32_t(uint32_t, uint32_t, void *, uint8_t *, uint32_t *, uint32_t), decltype(&GRB_ControlWrite)>);
static_assert(Is<uint32_t(uint32_t, uint32_t, void *), decltype(&GRB_StreamRead)>);
static_assert(Is<uint32_t(uint32_t, uint32_t, uint32_t, void *), decltype(&GRB_Action)>);
static_assert(Is<void(const char *, uint32_t, const char *), decltype(&GRB_ErrHandlerDefault)>);

// Numbers -------------------------------------------------------------------------------------------------------------

struct Row {
  const char *name;
  uint32_t value;
  uint32_t wanted;
};

#define ROW(name, wanted) \
  { #name, name, wanted }

constexpr Row kValues[] = {
    // Statuses.
    ROW(GRB_OK, 0x00000000),
    ROW(GRB_WARNING_TIMEOUT, 0x00008000),
    ROW(GRB_WARNING_PASSED, 0x00008005),
    // Opening.
    ROW(GRB_OPEN_CONFIG_FILE, 0xC0070100),
    ROW(GRB_OPEN_VARIANT, 0xC0070200),
    ROW(GRB_OPEN_BOARD, 0xC0070300),
    ROW(GRB_OPEN_CHANNEL, 0xC0070400),
    ROW(GRB_OPEN_MODE, 0xC0070500),
    ROW(GRB_VARIANT_ANY, 0xC0014000),
    ROW(GRB_MODE_ENUMERATE, 0xC0010000),
    ROW(GRB_MODE_CONTROL, 0xC0010080),
    ROW(GRB_MODE_ACQ_ONLY, 0xC0010200),
    // Boards and channels. The second channel does not follow the first.
    ROW(GRB_BOARD_1, 0xC0010001),
    ROW(GRB_BOARD_2, 0xC0010002),
    ROW(GRB_BOARD_3, 0xC0010003),
    ROW(GRB_BOARD_4, 0xC0010004),
    ROW(GRB_BOARD_5, 0xC0010005),
    ROW(GRB_BOARD_6, 0xC0010006),
    ROW(GRB_BOARD_7, 0xC0010007),
    ROW(GRB_CHANNEL_1, 0xC0010010),
    ROW(GRB_CHANNEL_2, 0xC0010020),
    ROW(GRB_CHANNEL_3, 0xC0010021),
    ROW(GRB_CHANNEL_4, 0xC0010022),
    ROW(GRB_CHANNEL_5, 0xC0010023),
    ROW(GRB_CHANNEL_6, 0xC0010024),
    ROW(GRB_CHANNEL_7, 0xC0010025),
    ROW(GRB_CHANNEL_8, 0xC0010026),
    // Transfers.
    ROW(GRB_PORT_GRABBER, 0xC0080001),
    ROW(GRB_PORT_CAMERA, 0xC0080002),
    ROW(GRB_TIMEOUT_CXP11, 0xFFFFFFFE),
    // Stream operations, and the action with its part.
    ROW(GRB_STREAM_START, 0xC0030100),
    ROW(GRB_STREAM_STOP, 0xC0030500),
    ROW(GRB_STREAM_RELEASE, 0xC0030700),
    ROW(GRB_STREAM_ABORT, 0xC0030900),
    ROW(GRB_EXPOSE, 0xC0030B00),
    ROW(GRB_ACTION_CONFIG, 0xC0040100),
    ROW(GRB_ACTION_CONFIG_SAVE, 0xC0040007),
    // Commands, and the text of a board.
    ROW(GRB_CACHE_FLUSH, 0xC0022901),
    ROW(GRB_CACHE_FLUSH_BUFFERS, 0xC0022902),
    ROW(GRB_BOARD_PROPERTIES, 0xC0026600),
    // A start and the events.
    ROW(GRB_EVENT_CONTEXT, 0xC0027E00),
    ROW(GRB_ACQ_NUM_BUFFERS, 0xC0020200),
    ROW(GRB_DST_LIST, 0xC0022800),
    ROW(GRB_DST_LIST_KIND, 0xC0022700),
    ROW(GRB_DST_LIST_USER_PAIRS, 0xC0022702),
    ROW(GRB_DST_LINE_BYTES, 0xC0025D00),
    ROW(GRB_DST_LINES, 0xC0025E00),
    ROW(GRB_EVENT_MASK, 0xC0024E00),
    ROW(GRB_EVENT_MASK_NOW, 0xC0024E01),
    ROW(GRB_EVENT_BUFFER_READY, 0x00000002),
    ROW(GRB_EVENT_FIFO_OVERFLOW, 0x00000004),
    ROW(GRB_EVENT_SYNC_LOST, 0x00001000),
    // Features.
    ROW(GRB_CAM_TYPE, 0xC0021900),
    ROW(GRB_CAM_ACTIVE_XLENGTH, 0xC0020A00),
    ROW(GRB_CAM_ACTIVE_YLENGTH, 0xC0020B00),
    ROW(GRB_CAM_SRC_DEPTH, 0xC0021100),
    ROW(GRB_CAM_SRC_COL, 0xC0021200),
    ROW(GRB_BUS_FORMAT, 0xC0022600),
    ROW(GRB_USR_FORMAT, 0xC0029E00),
    ROW(GRB_ACQ_XSUB, 0xC0020700),
    ROW(GRB_ACQ_YSUB, 0xC0020800),
    ROW(GRB_ROI_XLENGTH, 0xC0025B00),
    ROW(GRB_ROI_YLENGTH, 0xC0025C00),
    ROW(GRB_ROI_SRC_XOFFSET, 0xC0025900),
    ROW(GRB_ROI_SRC_YOFFSET, 0xC0025A00),
    ROW(GRB_ACQ_BLOCKING, 0xC0029300),
    ROW(GRB_BOARD_INFO, 0xC0029500),
    ROW(GRB_REV_HW_MAJOR, 0xC0025100),
    ROW(GRB_REV_HW_MINOR, 0xC0025200),
    ROW(GRB_REV_HW_SUBMINOR, 0xC0026D00),
    ROW(GRB_REV_HW, 0xC0025000),
    ROW(GRB_PCIE_INFO, 0xC002A800),
    ROW(GRB_LUT_SHIFT, 0xC0028200),
    ROW(GRB_REV_SW_MAJOR, 0xC0025400),
    ROW(GRB_REV_SW_MINOR, 0xC0025500),
    ROW(GRB_REV_SW_SUBMINOR, 0xC0025600),
    ROW(GRB_REV_SW, 0xC0025300),
    ROW(GRB_CAM_FORMAT, 0xC0020F00),
    ROW(GRB_ACQ_FIELD_MODE, 0xC0020600),
    ROW(GRB_LUT_BYPASS, 0xC0029B00),
    ROW(GRB_ROI_DST_XOFFSET, 0xC0025700),
    ROW(GRB_ROI_DST_YOFFSET, 0xC0025800),
    ROW(GRB_DATASTREAM_VALID, 0xC0022500),
    ROW(GRB_CAMTRIG_SRC, 0xC0027200),
    ROW(GRB_CAMTRIG_ENCODER_MODE, 0xC0093800),
    ROW(GRB_CAMTRIG_ENCODER_SRC, 0xC0093900),
    ROW(GRB_CAMTRIG_MULTIPLIER, 0xC0093A00),
    ROW(GRB_CAMTRIG_DIVIDER, 0xC0093B00),
    ROW(GRB_CAMTRIG_DELAY_MODE_D1CAM, 0xC0094F00),
    ROW(GRB_CAMTRIG_CXPTRIG_SRC, 0xC0093C00),
    ROW(GRB_CAMTRIG_CXPTRIG_MODE, 0xC0093D00),
    ROW(GRB_FGTRIG_SRC, 0xC0020400),
    ROW(GRB_FGTRIG_MODE, 0xC0020500),
    ROW(GRB_FGTRIG_DELAY_MODE, 0xC0027800),
    ROW(GRB_COUNT_BUFFER_READY, 0xC0028000),
    ROW(GRB_TIMERA1_PERIOD_NS, 0xC0094900),
    ROW(GRB_TIMERD1FG_VALUE_NS, 0xC0094A00),
    ROW(GRB_TIMERD1CAM_VALUE_NS, 0xC0095500),
    ROW(GRB_TIMERM1_WIDTH_NS, 0xC0094B00),
    ROW(GRB_TIMERM2_WIDTH_NS, 0xC0094C00),
    ROW(GRB_CAMTRIG_DELAY_MODE_D2CAM, 0xC0095000),
    ROW(GRB_TIMERD1FG_COUNT, 0xC0095100),
    ROW(GRB_TIMERD2CAM_VALUE_NS, 0xC0095600),
    ROW(GRB_TIMERA1_MODE, 0xC0095200),
    ROW(GRB_TIMERA1_PULSE_COUNT, 0xC0095300),
    ROW(GRB_COUNT_BUFFER_READY_NOW, 0xC0028100),
    ROW(GRB_CXP_BITRATE_MODE, 0xC0091000),
    ROW(GRB_CXP_BITRATE_MODE_NOW, 0xC0091001),
    ROW(GRB_CXP_BITRATE, 0xC0090200),
    ROW(GRB_CXP_POCXP_MODE, 0xC0091100),
    ROW(GRB_CXP_POCXP_MODE_NOW, 0xC0091101),
    ROW(GRB_CXP_DISCOVERY_MODE, 0xC0091200),
    ROW(GRB_CXP_DISCOVERY_MODE_NOW, 0xC0091201),
    ROW(GRB_CXP_DISCOVERY, 0xC0090400),
    ROW(GRB_CXP_UPLINK_TEST, 0xC0091300),
    ROW(GRB_CXP_UPLINK_TEST_NOW, 0xC0091301),
    ROW(GRB_CXP_DOWNLINK_TEST, 0xC0091400),
    ROW(GRB_CXP_DOWNLINK_TEST_NOW, 0xC0091401),
    ROW(GRB_CXP_INFO, 0xC0090100),
    ROW(GRB_FGTRIG_FILTER_NS, 0xC0094600),
    ROW(GRB_CAMTRIG_FILTER_NS, 0xC0094700),
    ROW(GRB_CAMTRIG_ENCODER_FILTER_NS, 0xC0094800),
    ROW(GRB_TIMERA1_SWTRIG_NOW, 0xC0095401),
    ROW(GRB_ACQ_BLOCKING_ON, 1),
    ROW(GRB_ACQ_BLOCKING_OFF, 2),
};

#undef ROW

TEST(GrabberHeader, HasTheLibrarysNumbers) {
  for (const Row &row : kValues) {
    EXPECT_EQ(row.value, row.wanted) << row.name;
  }
}

// The constants are unsigned words: as they stand they can be arguments of the operations.
TEST(GrabberHeader, NumbersAreUnsignedWords) {
  EXPECT_TRUE((std::is_same_v<decltype(GRB_OK), unsigned>));
  EXPECT_TRUE((std::is_same_v<decltype(GRB_OPEN_BOARD), unsigned>));
  EXPECT_TRUE((std::is_same_v<decltype(GRB_STREAM_START), unsigned>));
  EXPECT_TRUE((std::is_same_v<decltype(GRB_TIMEOUT_CXP11), unsigned>));
}

// A C compiler takes the header, and finds the operations under their plain names.
TEST(GrabberHeader, ServesPlainC) {
  EXPECT_EQ(PlainHeaderWalk(), 0);
  EXPECT_EQ(PlainHeaderOperations(), 11U);
}

}  // namespace
}  // namespace GrabberTests
