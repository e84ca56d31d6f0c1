// SPDX-License-Identifier: MIT
#include "GrbBoardHandle.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <string_view>

#include "GrbError.h"
#include "GrbUtility.h"
#include "Helper.h"
#include "Platform.h"
#include "TLIException.h"

namespace GenICam::Client {

namespace {

/// Takes the next token off the text; false if there is none.
bool NextToken(std::string_view &text, std::string_view &token) {
  constexpr const char *kSeparators = "=\n";
  const size_t nBegin = text.find_first_not_of(kSeparators);
  if (nBegin == std::string_view::npos) {
    return false;
  }
  const size_t nEnd = std::min(text.find_first_of(kSeparators, nBegin), text.size());
  token = text.substr(nBegin, nEnd - nBegin);
  text.remove_prefix(nEnd);
  return true;
}

std::string GetProperty(const char *pProperties, const char *pKey) {
  char value[CGrbBoardHandle::kPropertySize] = {};
  CGrbBoardHandle::PropertyGet(value, pProperties, pKey);
  return std::string(value, std::find(value, value + sizeof(value), '\0'));
}

}  // namespace

CGrbBoardHandle::CGrbBoardHandle(uint32_t nBoard, bool bQuietErrors)
    : CGrbBaseHandle(bQuietErrors), m_nBoard(nBoard), m_nChannel(0) {
  LVX_ASSERT(m_hGrbChannel != 0);
  try {
    Identify();
  } catch (...) {
    m_nBoard = 0;
    m_nChannel = 0;
  }
}

CGrbBoardHandle::~CGrbBoardHandle() { CloseHandle(); }

void CGrbBoardHandle::Identify() {
  const uint32_t *pChannel = std::find_if(std::begin(kChannelValues), std::end(kChannelValues),
                                          [this](uint32_t nChannel) { return TryOpen(nChannel) == GRB_OK; });
  if (pChannel == std::end(kChannelValues)) {
    throw unknown_error(CGrbError::GetText(), LVX_HERE);
  }
  m_nChannel = *pChannel;

  const char *pProperties = nullptr;
  if (GRB_ParameterGet(m_hGrbChannel, GRB_BOARD_PROPERTIES, &pProperties) != GRB_OK) {
    throw unknown_error(CGrbError::GetText(), LVX_HERE);
  }
  const std::string strModel = GetProperty(pProperties, "Model");
  const std::string strName = GetProperty(pProperties, "Name");
  const std::string strNumber = std::to_string(CGrbUtility::GrbBoardEnumValueToInt(m_nBoard));
  if (strModel.find("CXP") != std::string::npos) {
    m_strTLType = "CXP";
  }
  m_strDisplayName = strName + " " + strModel + " #" + strNumber;
  m_strId = strModel + "-#" + strNumber;
}

GRB_STATUS CGrbBoardHandle::TryOpen(uint32_t nChannel) {
  return SetParametersAndOpen(m_nBoard, nChannel, GRB_MODE_ENUMERATE);
}

void CGrbBoardHandle::PropertyGet(char *pOut, const char *pProperties, const char *pKey) {
  // Kept: the names in the first three messages are crossed against the arguments.
  if (pOut == nullptr) {
    throw unknown_error("Failed parsing board properties: NULL property string pointer.", LVX_HERE);
  }
  if (pProperties == nullptr) {
    throw unknown_error("Failed parsing board properties: NULL return pointer.", LVX_HERE);
  }
  if (pKey == nullptr) {
    throw unknown_error("Failed parsing board properties: NULL property value pointer.", LVX_HERE);
  }
  std::string_view rest(pProperties);
  std::string_view key;
  std::string_view value;
  while (NextToken(rest, key)) {
    const bool bHasValue = NextToken(rest, value);
    if (key == pKey) {
      if (!bHasValue) {
        throw unknown_error("Failed parsing board properties: couldn't find requested token.", LVX_HERE);
      }
      // The terminator is cut off, too, when the value fills the room.
      const size_t nCopied = std::min(value.size(), kPropertySize);
      std::memcpy(pOut, value.data(), nCopied);
      if (nCopied < kPropertySize) {
        pOut[nCopied] = '\0';
      }
      return;
    }
  }
  pOut[0] = '\0';
}

}  // namespace GenICam::Client
