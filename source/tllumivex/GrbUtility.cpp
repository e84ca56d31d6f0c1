// SPDX-License-Identifier: MIT
#include "GrbUtility.h"

#include <algorithm>
#include <iterator>
#include <string>

#include "GrbError.h"
#include "Helper.h"
#include "TLIException.h"

namespace GenICam::Client {

namespace {

struct ValueRow {
  uint32_t nFrom;
  uint32_t nTo;
};

// Kept: GRB_CHANNEL_8 has no number, so a camera there is never listed.
constexpr ValueRow kChannelNumbers[] = {
    {GRB_CHANNEL_1, 1}, {GRB_CHANNEL_2, 2}, {GRB_CHANNEL_3, 3}, {GRB_CHANNEL_4, 4},
    {GRB_CHANNEL_5, 5}, {GRB_CHANNEL_6, 6}, {GRB_CHANNEL_7, 7},
};

constexpr ValueRow kDiscoveryModes[] = {
    // links, GRB_CXP_DISCOVERY_MODE
    {1, GRB_CXP_DISCOVERY_1X},
    {2, GRB_CXP_DISCOVERY_2X},
    {4, GRB_CXP_DISCOVERY_4X},
};

constexpr ValueRow kBitrateModes[] = {
    // speed code, GRB_CXP_BITRATE_MODE
    {0x28, GRB_CXP_BITRATE_MODE_CXP1}, {0x30, GRB_CXP_BITRATE_MODE_CXP2}, {0x38, GRB_CXP_BITRATE_MODE_CXP3},
    {0x40, GRB_CXP_BITRATE_MODE_CXP5}, {0x48, GRB_CXP_BITRATE_MODE_CXP6},
};

template <size_t nRows>
const ValueRow *Find(const ValueRow (&rows)[nRows], uint32_t nFrom) {
  const ValueRow *pRow =
      std::find_if(std::begin(rows), std::end(rows), [nFrom](const ValueRow &row) { return row.nFrom == nFrom; });
  return pRow == std::end(rows) ? nullptr : pRow;
}

}  // namespace

uint32_t CGrbUtility::GrbBoardEnumValueToInt(uint32_t nBoard) {
  if (nBoard < GRB_BOARD_1 || nBoard > GRB_BOARD_7) {
    throw unknown_error("Unknown board number: " + ToHex(nBoard), LVX_HERE);
  }
  return nBoard - GRB_BOARD_1 + 1;
}

uint32_t CGrbUtility::GrbChannelEnumValueToInt(uint32_t nChannel) {
  const ValueRow *pRow = Find(kChannelNumbers, nChannel);
  if (pRow == nullptr) {
    throw unknown_error("Unknown channel number: " + ToHex(nChannel), LVX_HERE);
  }
  return pRow->nTo;
}

uint32_t CGrbUtility::GetCXPDiscoveryModeGrbParam(uint32_t nConnectionConfig) {
  const uint32_t nLinks = (nConnectionConfig >> 16U) & 7U;
  const ValueRow *pRow = Find(kDiscoveryModes, nLinks);
  if (pRow == nullptr) {
    throw invalidparameter_error("Invalid configuration: invalid number of links: " + std::to_string(nLinks), LVX_HERE);
  }
  return pRow->nTo;
}

uint32_t CGrbUtility::GetCXPBitrateModeGrbParam(uint32_t nConnectionConfig) {
  const uint32_t nSpeed = nConnectionConfig & 0xFFU;
  const ValueRow *pRow = Find(kBitrateModes, nSpeed);
  if (pRow == nullptr) {
    throw invalidparameter_error("Invalid configuration: invalid CXP speed: " + std::to_string(nSpeed), LVX_HERE);
  }
  return pRow->nTo;
}

void GrbErrorHook(const char *pFunction, GRB_STATUS nStatus, const char *pDescription) noexcept {
  try {
    std::string strText;
    strText += pDescription != nullptr ? pDescription : "No description of error provided by GRB library.";
    if (pFunction != nullptr) {
      strText += " (" + std::string(pFunction) + " returned error code 0x" + ToHex(nStatus) + ")";
    }
    CGrbError::Get().SetText(strText);
  } catch (...) {
    // No memory for the words: the status has to do. The library must not see an exception.
  }
}

void GrbErrorHookVerbose(const char *pFunction, GRB_STATUS nStatus, const char *pDescription) noexcept {
  GRB_ErrHandlerDefault(pFunction, nStatus, pDescription);
  GrbErrorHook(pFunction, nStatus, pDescription);
}

}  // namespace GenICam::Client
