// SPDX-License-Identifier: MIT
#include "ParameterTable.h"

#include <algorithm>
#include <iterator>

#include "grblx64.h"

namespace grbsim {
namespace {

constexpr uint64_t kLongestNs = 17179869000U;

constexpr ValueRange kAny32[] = {{0, 0xFFFFFFFFU}};
constexpr ValueRange kAny64[] = {{0, ~uint64_t{0}}};
constexpr ValueRange kNotZero32[] = {{1, 0xFFFFFFFFU}};
constexpr ValueRange kSwitch[] = {{0, 1}};
constexpr ValueRange kListKinds[] = {{GRB_DST_LIST_USER_PAIRS, GRB_DST_LIST_USER_PAIRS}};
constexpr ValueRange kBlocking[] = {{GRB_ACQ_BLOCKING_ON, GRB_ACQ_BLOCKING_OFF}};
constexpr ValueRange kCamTypes[] = {{GRB_CAM_LINESCAN_ROI, GRB_CAM_AREASCAN_NO_ROI}};
constexpr ValueRange kDepths[] = {{8, 8}, {10, 10}, {12, 12}, {14, 14}, {16, 16}};
constexpr ValueRange kDecimations[] = {{GRB_ACQ_X1, GRB_ACQ_X8}};
constexpr ValueRange kColours[] = {
    {GRB_CAM_SRC_MONO, GRB_CAM_SRC_MONO}, {GRB_CAM_SRC_RGB, GRB_CAM_SRC_RGB}, {GRB_CAM_SRC_BAY_RGGB, GRB_CAM_SRC_RGBA}};
constexpr ValueRange kCamFormats[] = {{GRB_CAM_INTERLACED, GRB_CAM_NON_INTERLACED}};
constexpr ValueRange kFieldModes[] = {{GRB_ACQ_FRAME_12, GRB_ACQ_LINE_DOUBLE_2}};
constexpr ValueRange kValids[] = {{GRB_DATASTREAM_ALWAYS, GRB_DATASTREAM_FRAME_AND_LINE}};
constexpr ValueRange kBusFormats[] = {
    {GRB_BUS_FORMAT_MONO8, GRB_BUS_FORMAT_MONO16},   {GRB_BUS_FORMAT_BGR16, GRB_BUS_FORMAT_BGR16},
    {GRB_BUS_FORMAT_RGB16, GRB_BUS_FORMAT_RGB16},    {GRB_BUS_FORMAT_BGR8, GRB_BUS_FORMAT_MONO14},
    {GRB_BUS_FORMAT_BGR12, GRB_BUS_FORMAT_YUV422_8}, {GRB_BUS_FORMAT_RGBA8, GRB_BUS_FORMAT_RGB14}};
constexpr ValueRange kUsrFormats[] = {
    {GRB_USR_FORMAT_MONO8, GRB_USR_FORMAT_MONO16},   {GRB_USR_FORMAT_BGR16, GRB_USR_FORMAT_BGR16},
    {GRB_USR_FORMAT_RGB16, GRB_USR_FORMAT_RGB16},    {GRB_USR_FORMAT_BGR8, GRB_USR_FORMAT_MONO14},
    {GRB_USR_FORMAT_BGR12, GRB_USR_FORMAT_YUV422_8}, {GRB_USR_FORMAT_RGBA8, GRB_USR_FORMAT_RGB14}};
constexpr ValueRange kCamTriggers[] = {{GRB_CAMTRIG_SRC_FGTRIGA_CHX, GRB_CAMTRIG_SRC_SWTRIG_CHX},
                                       {GRB_CAMTRIG_SRC_TIMERA1_CHX, GRB_CAMTRIG_SRC_TIMERA1_CHX},
                                       {GRB_CAMTRIG_SRC_TIMERA1_CH1, GRB_CAMTRIG_SRC_ENCODER_CHX}};
constexpr ValueRange kEncoderModes[] = {{GRB_CAMTRIG_ENCODER_MODE1, GRB_CAMTRIG_ENCODER_MODE5}};
constexpr ValueRange kEncoderSources[] = {{GRB_CAMTRIG_SRC_422IN_CHX_0, GRB_CAMTRIG_SRC_TTLIN_CH4_0}};
constexpr ValueRange kFactors[] = {{1, 1023}};
constexpr ValueRange kCamDelays[] = {{GRB_CAMTRIG_DELAY_NONE, GRB_CAMTRIG_DELAY_TIME}};
constexpr ValueRange kCxpTriggers[] = {{GRB_CAMTRIG_CXPTRIG_NONE, GRB_CAMTRIG_CXPTRIG_FGTRIGD_CH4}};
constexpr ValueRange kCxpTriggerModes[] = {{GRB_CAMTRIG_CXPTRIG_RISEFALL, GRB_CAMTRIG_CXPTRIG_FALL_INV}};
constexpr ValueRange kFgTriggers[] = {{GRB_FGTRIG_SRC_TIMERA1_CHX, GRB_FGTRIG_SRC_TTLIN_CH4_0}};
constexpr ValueRange kFgTriggerModes[] = {{GRB_FGTRIG_FREERUN, GRB_FGTRIG_GATED_NEG_LEVEL}};
constexpr ValueRange kFgDelays[] = {{GRB_FGTRIG_DELAY_NONE, GRB_FGTRIG_DELAY_TIMERM1_CH4}};
constexpr ValueRange kPeriods[] = {{4, kLongestNs}};
constexpr ValueRange kDelays[] = {{1, kLongestNs}};
constexpr ValueRange kWidths[] = {{0, kLongestNs}};
constexpr ValueRange kLineCounts[] = {{1, 17179869}};
constexpr ValueRange kTimerModes[] = {{GRB_TIMERA1_MODE_RUN, GRB_TIMERA1_MODE_N_PULSES}};
constexpr ValueRange kPulseCounts[] = {{1, 65535}};
constexpr ValueRange kFilters[] = {{0, 262144}};
constexpr ValueRange kEncoderFilters[] = {{0, 2000}};
constexpr ValueRange kBitrateModes[] = {{GRB_CXP_BITRATE_MODE_AUTO, GRB_CXP_BITRATE_MODE_CXP6}};
constexpr ValueRange kPowerModes[] = {{GRB_CXP_POCXP_AUTO, GRB_CXP_POCXP_FORCEON}};
constexpr ValueRange kDiscoveryModes[] = {{GRB_CXP_DISCOVERY_AUTO, GRB_CXP_DISCOVERY_4X}};

constexpr ParameterRow kRows[] = {
    // identifier, name, type, access, form, source, in a GCF file, initial value, allowed values
    {GRB_ACQ_NUM_BUFFERS, "GRB_ACQ_NUM_BUFFERS", EValueType::U32, EAccess::ReadWrite, EForm::Both, ESource::Stored,
     EInFile::No, 1, SetOf(kNotZero32)},
    {GRB_FGTRIG_SRC, "GRB_FGTRIG_SRC", EValueType::U32, EAccess::ReadWrite, EForm::Both, ESource::Stored, EInFile::Yes,
     GRB_FGTRIG_SRC_TIMERA1_CHX, SetOf(kFgTriggers)},
    {GRB_FGTRIG_MODE, "GRB_FGTRIG_MODE", EValueType::U32, EAccess::ReadWrite, EForm::Both, ESource::Stored,
     EInFile::Yes, GRB_FGTRIG_FREERUN, SetOf(kFgTriggerModes)},
    {GRB_ACQ_FIELD_MODE, "GRB_ACQ_FIELD_MODE", EValueType::U32, EAccess::ReadWrite, EForm::Both, ESource::Stored,
     EInFile::Yes, GRB_ACQ_FRAME_12, SetOf(kFieldModes)},
    {GRB_ACQ_XSUB, "GRB_ACQ_XSUB", EValueType::U32, EAccess::ReadWrite, EForm::Both, ESource::Stored, EInFile::Yes,
     GRB_ACQ_X1, SetOf(kDecimations)},
    {GRB_ACQ_YSUB, "GRB_ACQ_YSUB", EValueType::U32, EAccess::ReadWrite, EForm::Both, ESource::Stored, EInFile::Yes,
     GRB_ACQ_X1, SetOf(kDecimations)},
    {GRB_CAM_ACTIVE_XLENGTH, "GRB_CAM_ACTIVE_XLENGTH", EValueType::U32, EAccess::ReadWrite, EForm::Both,
     ESource::Stored, EInFile::Yes, 1024, SetOf(kAny32)},
    {GRB_CAM_ACTIVE_YLENGTH, "GRB_CAM_ACTIVE_YLENGTH", EValueType::U32, EAccess::ReadWrite, EForm::Both,
     ESource::Stored, EInFile::Yes, 1024, SetOf(kAny32)},
    {GRB_CAM_FORMAT, "GRB_CAM_FORMAT", EValueType::U32, EAccess::ReadWrite, EForm::Both, ESource::Stored, EInFile::Yes,
     GRB_CAM_NON_INTERLACED, SetOf(kCamFormats)},
    {GRB_CAM_SRC_DEPTH, "GRB_CAM_SRC_DEPTH", EValueType::U32, EAccess::ReadWrite, EForm::Both, ESource::Stored,
     EInFile::Yes, 8, SetOf(kDepths)},
    {GRB_CAM_SRC_COL, "GRB_CAM_SRC_COL", EValueType::U32, EAccess::ReadWrite, EForm::Both, ESource::Stored,
     EInFile::Yes, GRB_CAM_SRC_MONO, SetOf(kColours)},
    {GRB_CAM_TYPE, "GRB_CAM_TYPE", EValueType::U32, EAccess::ReadWrite, EForm::Both, ESource::Stored, EInFile::Yes,
     GRB_CAM_AREASCAN_ROI, SetOf(kCamTypes)},
    {GRB_DATASTREAM_VALID, "GRB_DATASTREAM_VALID", EValueType::U32, EAccess::ReadWrite, EForm::Both, ESource::Stored,
     EInFile::Yes, GRB_DATASTREAM_FRAME_AND_LINE, SetOf(kValids)},
    {GRB_BUS_FORMAT, "GRB_BUS_FORMAT", EValueType::U32, EAccess::ReadWrite, EForm::Both, ESource::Stored, EInFile::Yes,
     GRB_BUS_FORMAT_MONO8, SetOf(kBusFormats)},
    {GRB_DST_LIST_KIND, "GRB_DST_LIST_KIND", EValueType::U32, EAccess::ReadWrite, EForm::Both, ESource::Stored,
     EInFile::No, GRB_DST_LIST_USER_PAIRS, SetOf(kListKinds)},
    {GRB_DST_LIST, "GRB_DST_LIST", EValueType::Pointer, EAccess::WriteOnly, EForm::Both, ESource::Stored, EInFile::No,
     0, SetOf(kAny64)},
    {GRB_CACHE_FLUSH & ~1U, "GRB_CACHE_FLUSH", EValueType::Command, EAccess::WriteOnly, EForm::Immediate,
     ESource::Stored, EInFile::No, 0, SetOf(kAny64)},
    {GRB_CACHE_FLUSH_BUFFERS, "GRB_CACHE_FLUSH_BUFFERS", EValueType::Command, EAccess::WriteOnly, EForm::Cached,
     ESource::Stored, EInFile::No, 0, SetOf(kAny64)},
    {GRB_EVENT_MASK, "GRB_EVENT_MASK", EValueType::U32, EAccess::ReadWrite, EForm::Both, ESource::Stored, EInFile::No,
     0, SetOf(kAny32)},
    {GRB_REV_HW, "GRB_REV_HW", EValueType::U32, EAccess::ReadOnly, EForm::Both, ESource::Board, EInFile::No, kRevHw,
     SetOf(kAny32)},
    {GRB_REV_HW_MAJOR, "GRB_REV_HW_MAJOR", EValueType::U32, EAccess::ReadOnly, EForm::Both, ESource::Board, EInFile::No,
     kRevHwMajor, SetOf(kAny32)},
    {GRB_REV_HW_MINOR, "GRB_REV_HW_MINOR", EValueType::U32, EAccess::ReadOnly, EForm::Both, ESource::Board, EInFile::No,
     kRevHwMinor, SetOf(kAny32)},
    {GRB_REV_SW, "GRB_REV_SW", EValueType::U32, EAccess::ReadOnly, EForm::Both, ESource::Board, EInFile::No, kRevSw,
     SetOf(kAny32)},
    {GRB_REV_SW_MAJOR, "GRB_REV_SW_MAJOR", EValueType::U32, EAccess::ReadOnly, EForm::Both, ESource::Board, EInFile::No,
     kRevSwMajor, SetOf(kAny32)},
    {GRB_REV_SW_MINOR, "GRB_REV_SW_MINOR", EValueType::U32, EAccess::ReadOnly, EForm::Both, ESource::Board, EInFile::No,
     kRevSwMinor, SetOf(kAny32)},
    {GRB_REV_SW_SUBMINOR, "GRB_REV_SW_SUBMINOR", EValueType::U32, EAccess::ReadOnly, EForm::Both, ESource::Board,
     EInFile::No, kRevSwSubminor, SetOf(kAny32)},
    {GRB_ROI_DST_XOFFSET, "GRB_ROI_DST_XOFFSET", EValueType::U32, EAccess::ReadWrite, EForm::Both, ESource::Stored,
     EInFile::Yes, 0, SetOf(kAny32)},
    {GRB_ROI_DST_YOFFSET, "GRB_ROI_DST_YOFFSET", EValueType::U32, EAccess::ReadWrite, EForm::Both, ESource::Stored,
     EInFile::Yes, 0, SetOf(kAny32)},
    {GRB_ROI_SRC_XOFFSET, "GRB_ROI_SRC_XOFFSET", EValueType::U32, EAccess::ReadWrite, EForm::Both, ESource::Stored,
     EInFile::Yes, 0, SetOf(kAny32)},
    {GRB_ROI_SRC_YOFFSET, "GRB_ROI_SRC_YOFFSET", EValueType::U32, EAccess::ReadWrite, EForm::Both, ESource::Stored,
     EInFile::Yes, 0, SetOf(kAny32)},
    {GRB_ROI_XLENGTH, "GRB_ROI_XLENGTH", EValueType::U32, EAccess::ReadWrite, EForm::Both, ESource::Stored,
     EInFile::Yes, 1024, SetOf(kAny32)},
    {GRB_ROI_YLENGTH, "GRB_ROI_YLENGTH", EValueType::U32, EAccess::ReadWrite, EForm::Both, ESource::Stored,
     EInFile::Yes, 1024, SetOf(kAny32)},
    {GRB_DST_LINE_BYTES, "GRB_DST_LINE_BYTES", EValueType::U32, EAccess::ReadWrite, EForm::Both, ESource::Stored,
     EInFile::No, 0, SetOf(kAny32)},
    {GRB_DST_LINES, "GRB_DST_LINES", EValueType::U32, EAccess::ReadWrite, EForm::Both, ESource::Stored, EInFile::No, 0,
     SetOf(kAny32)},
    {GRB_BOARD_PROPERTIES, "GRB_BOARD_PROPERTIES", EValueType::Text, EAccess::ReadOnly, EForm::Both, ESource::Board,
     EInFile::No, 0, SetOf(kAny64)},
    {GRB_REV_HW_SUBMINOR, "GRB_REV_HW_SUBMINOR", EValueType::U32, EAccess::ReadOnly, EForm::Both, ESource::Board,
     EInFile::No, kRevHwSubminor, SetOf(kAny32)},
    {GRB_CAMTRIG_SRC, "GRB_CAMTRIG_SRC", EValueType::U32, EAccess::ReadWrite, EForm::Both, ESource::Stored,
     EInFile::Yes, GRB_CAMTRIG_SRC_NONE, SetOf(kCamTriggers)},
    {GRB_FGTRIG_DELAY_MODE, "GRB_FGTRIG_DELAY_MODE", EValueType::U32, EAccess::ReadWrite, EForm::Both, ESource::Stored,
     EInFile::Yes, GRB_FGTRIG_DELAY_NONE, SetOf(kFgDelays)},
    {GRB_EVENT_CONTEXT, "GRB_EVENT_CONTEXT", EValueType::Pointer, EAccess::WriteOnly, EForm::Both, ESource::Stored,
     EInFile::No, 0, SetOf(kAny64)},
    {GRB_COUNT_BUFFER_READY, "GRB_COUNT_BUFFER_READY", EValueType::U32, EAccess::ReadWrite, EForm::Both,
     ESource::Stored, EInFile::Yes, 1, SetOf(kAny32)},
    {GRB_COUNT_BUFFER_READY_NOW, "GRB_COUNT_BUFFER_READY_NOW", EValueType::U32, EAccess::ReadOnly, EForm::Both,
     ESource::Live, EInFile::No, 0, SetOf(kAny32)},
    {GRB_LUT_SHIFT, "GRB_LUT_SHIFT", EValueType::U32, EAccess::ReadWrite, EForm::Both, ESource::Stored, EInFile::Yes, 0,
     SetOf(kAny32)},
    {GRB_ACQ_BLOCKING, "GRB_ACQ_BLOCKING", EValueType::U32, EAccess::ReadWrite, EForm::Both, ESource::Stored,
     EInFile::Yes, GRB_ACQ_BLOCKING_ON, SetOf(kBlocking)},
    {GRB_BOARD_INFO, "GRB_BOARD_INFO", EValueType::U32, EAccess::ReadOnly, EForm::Both, ESource::Board, EInFile::No,
     kBoardInfo, SetOf(kAny32)},
    {GRB_LUT_BYPASS, "GRB_LUT_BYPASS", EValueType::U32, EAccess::ReadWrite, EForm::Both, ESource::Stored, EInFile::Yes,
     0, SetOf(kAny32)},
    {GRB_USR_FORMAT, "GRB_USR_FORMAT", EValueType::U32, EAccess::ReadWrite, EForm::Both, ESource::Stored, EInFile::Yes,
     GRB_USR_FORMAT_MONO8, SetOf(kUsrFormats)},
    {GRB_PCIE_INFO, "GRB_PCIE_INFO", EValueType::U32, EAccess::ReadOnly, EForm::Both, ESource::Board, EInFile::No,
     kPcieInfo, SetOf(kAny32)},
    {GRB_CXP_INFO, "GRB_CXP_INFO", EValueType::U32, EAccess::ReadOnly, EForm::Both, ESource::Live, EInFile::No, 0,
     SetOf(kAny32)},
    {GRB_CXP_BITRATE, "GRB_CXP_BITRATE", EValueType::U32, EAccess::ReadOnly, EForm::Both, ESource::Live, EInFile::No, 0,
     SetOf(kAny32)},
    {GRB_CXP_DISCOVERY, "GRB_CXP_DISCOVERY", EValueType::U32, EAccess::ReadOnly, EForm::Both, ESource::Live,
     EInFile::No, 0, SetOf(kAny32)},
    {GRB_CXP_BITRATE_MODE, "GRB_CXP_BITRATE_MODE", EValueType::U32, EAccess::ReadWrite, EForm::Both, ESource::Stored,
     EInFile::Yes, GRB_CXP_BITRATE_MODE_AUTO, SetOf(kBitrateModes)},
    {GRB_CXP_POCXP_MODE, "GRB_CXP_POCXP_MODE", EValueType::U32, EAccess::ReadWrite, EForm::Both, ESource::Stored,
     EInFile::Yes, GRB_CXP_POCXP_AUTO, SetOf(kPowerModes)},
    {GRB_CXP_DISCOVERY_MODE, "GRB_CXP_DISCOVERY_MODE", EValueType::U32, EAccess::ReadWrite, EForm::Both,
     ESource::Stored, EInFile::Yes, GRB_CXP_DISCOVERY_AUTO, SetOf(kDiscoveryModes)},
    {GRB_CXP_UPLINK_TEST, "GRB_CXP_UPLINK_TEST", EValueType::U32, EAccess::ReadWrite, EForm::Both, ESource::Stored,
     EInFile::No, 0, SetOf(kAny32)},
    {GRB_CXP_DOWNLINK_TEST, "GRB_CXP_DOWNLINK_TEST", EValueType::U32, EAccess::ReadWrite, EForm::Both, ESource::Stored,
     EInFile::No, 0, SetOf(kAny32)},
    {GRB_CAMTRIG_ENCODER_MODE, "GRB_CAMTRIG_ENCODER_MODE", EValueType::U32, EAccess::ReadWrite, EForm::Both,
     ESource::Stored, EInFile::Yes, GRB_CAMTRIG_ENCODER_MODE1, SetOf(kEncoderModes)},
    {GRB_CAMTRIG_ENCODER_SRC, "GRB_CAMTRIG_ENCODER_SRC", EValueType::U32, EAccess::ReadWrite, EForm::Both,
     ESource::Stored, EInFile::Yes, GRB_CAMTRIG_SRC_422IN_CHX_0, SetOf(kEncoderSources)},
    {GRB_CAMTRIG_MULTIPLIER, "GRB_CAMTRIG_MULTIPLIER", EValueType::U32, EAccess::ReadWrite, EForm::Both,
     ESource::Stored, EInFile::Yes, 1, SetOf(kFactors)},
    {GRB_CAMTRIG_DIVIDER, "GRB_CAMTRIG_DIVIDER", EValueType::U32, EAccess::ReadWrite, EForm::Both, ESource::Stored,
     EInFile::Yes, 1, SetOf(kFactors)},
    {GRB_CAMTRIG_CXPTRIG_SRC, "GRB_CAMTRIG_CXPTRIG_SRC", EValueType::U32, EAccess::ReadWrite, EForm::Both,
     ESource::Stored, EInFile::Yes, GRB_CAMTRIG_CXPTRIG_NONE, SetOf(kCxpTriggers)},
    {GRB_CAMTRIG_CXPTRIG_MODE, "GRB_CAMTRIG_CXPTRIG_MODE", EValueType::U32, EAccess::ReadWrite, EForm::Both,
     ESource::Stored, EInFile::Yes, GRB_CAMTRIG_CXPTRIG_RISEFALL, SetOf(kCxpTriggerModes)},
    {GRB_FGTRIG_FILTER_NS, "GRB_FGTRIG_FILTER_NS", EValueType::U64, EAccess::ReadWrite, EForm::Both, ESource::Stored,
     EInFile::Yes, 200, SetOf(kFilters)},
    {GRB_CAMTRIG_FILTER_NS, "GRB_CAMTRIG_FILTER_NS", EValueType::U64, EAccess::ReadWrite, EForm::Both, ESource::Stored,
     EInFile::Yes, 200, SetOf(kFilters)},
    {GRB_CAMTRIG_ENCODER_FILTER_NS, "GRB_CAMTRIG_ENCODER_FILTER_NS", EValueType::U64, EAccess::ReadWrite, EForm::Both,
     ESource::Stored, EInFile::Yes, 0, SetOf(kEncoderFilters)},
    {GRB_TIMERA1_PERIOD_NS, "GRB_TIMERA1_PERIOD_NS", EValueType::U64, EAccess::ReadWrite, EForm::Both, ESource::Stored,
     EInFile::Yes, 10000000, SetOf(kPeriods)},
    {GRB_TIMERD1FG_VALUE_NS, "GRB_TIMERD1FG_VALUE_NS", EValueType::U64, EAccess::ReadWrite, EForm::Both,
     ESource::Stored, EInFile::Yes, 1000, SetOf(kDelays)},
    {GRB_TIMERM1_WIDTH_NS, "GRB_TIMERM1_WIDTH_NS", EValueType::U64, EAccess::ReadWrite, EForm::Both, ESource::Stored,
     EInFile::Yes, 1000, SetOf(kWidths)},
    {GRB_TIMERM2_WIDTH_NS, "GRB_TIMERM2_WIDTH_NS", EValueType::U64, EAccess::ReadWrite, EForm::Both, ESource::Stored,
     EInFile::Yes, 1000, SetOf(kWidths)},
    {GRB_CAMTRIG_DELAY_MODE_D1CAM, "GRB_CAMTRIG_DELAY_MODE_D1CAM", EValueType::U32, EAccess::ReadWrite, EForm::Both,
     ESource::Stored, EInFile::Yes, GRB_CAMTRIG_DELAY_NONE, SetOf(kCamDelays)},
    {GRB_CAMTRIG_DELAY_MODE_D2CAM, "GRB_CAMTRIG_DELAY_MODE_D2CAM", EValueType::U32, EAccess::ReadWrite, EForm::Both,
     ESource::Stored, EInFile::Yes, GRB_CAMTRIG_DELAY_NONE, SetOf(kCamDelays)},
    {GRB_TIMERD1FG_COUNT, "GRB_TIMERD1FG_COUNT", EValueType::U64, EAccess::ReadWrite, EForm::Both, ESource::Stored,
     EInFile::Yes, 1, SetOf(kLineCounts)},
    {GRB_TIMERA1_MODE, "GRB_TIMERA1_MODE", EValueType::U32, EAccess::ReadWrite, EForm::Both, ESource::Stored,
     EInFile::Yes, GRB_TIMERA1_MODE_RUN, SetOf(kTimerModes)},
    {GRB_TIMERA1_PULSE_COUNT, "GRB_TIMERA1_PULSE_COUNT", EValueType::U32, EAccess::ReadWrite, EForm::Both,
     ESource::Stored, EInFile::Yes, 1, SetOf(kPulseCounts)},
    {GRB_TIMERA1_SWTRIG_NOW & ~1U, "GRB_TIMERA1_SWTRIG", EValueType::U32, EAccess::WriteOnly, EForm::Immediate,
     ESource::Live, EInFile::No, 0, SetOf(kSwitch)},
    {GRB_TIMERD1CAM_VALUE_NS, "GRB_TIMERD1CAM_VALUE_NS", EValueType::U64, EAccess::ReadWrite, EForm::Both,
     ESource::Stored, EInFile::Yes, 1000, SetOf(kDelays)},
    {GRB_TIMERD2CAM_VALUE_NS, "GRB_TIMERD2CAM_VALUE_NS", EValueType::U64, EAccess::ReadWrite, EForm::Both,
     ESource::Stored, EInFile::Yes, 1000, SetOf(kDelays)},
};

constexpr bool RowsAreSorted() {
  for (size_t i = 1; i < std::size(kRows); ++i) {
    if (kRows[i].identifier <= kRows[i - 1].identifier) {
      return false;
    }
  }
  return true;
}
static_assert(RowsAreSorted(), "FindParameter searches by halves");

constexpr bool InitialValuesAreAllowed() {
  for (const ParameterRow &row : kRows) {
    if (!row.allowed.Contains(row.initial) || (row.identifier & 1U) != 0) {
      return false;
    }
  }
  return true;
}
static_assert(InitialValuesAreAllowed(), "every enumeration starts on one of its entries");

}  // namespace

const ParameterRow *ParameterRows() noexcept { return kRows; }

size_t ParameterRowCount() noexcept { return std::size(kRows); }

const ParameterRow *FindParameter(uint32_t identifier) noexcept {
  const uint32_t wanted = identifier & ~1U;
  const ParameterRow *row =
      std::lower_bound(std::begin(kRows), std::end(kRows), wanted,
                       [](const ParameterRow &candidate, uint32_t value) { return candidate.identifier < value; });
  return row != std::end(kRows) && row->identifier == wanted ? row : nullptr;
}

}  // namespace grbsim
