// SPDX-License-Identifier: MIT
#include "EventError.h"

#include <cstring>

#include "Helper.h"
#include "TLIException.h"

namespace GenICam::Client {

namespace {

constexpr uint64_t kMaxQueued = 2000;
constexpr size_t kCodeSize = 4;

int32_t CodeOf(const void *pBlock) {
  int32_t iCode = 0;
  std::memcpy(&iCode, pBlock, kCodeSize);
  return iCode;
}

}  // namespace

// Kept: the whole text stays, also one that no block can hold.
CErrorEventEntry::CErrorEventEntry(int32_t iCode, const std::string &strText) : m_iCode(iCode), m_Text(strText) {}

CErrorEventEntry::CErrorEventEntry(const CErrorEventEntry &other)
    : ICommonBaseType(), m_iCode(other.m_iCode), m_Text(other.m_Text) {}

CErrorEventEntry &CErrorEventEntry::operator=(const CErrorEventEntry &other) {
  m_iCode = other.m_iCode;
  m_Text = other.m_Text;
  return *this;
}

void CErrorEventEntry::Assign(int32_t iCode, const char *pText) {
  m_iCode = iCode;
  m_Text = pText;
}

void CErrorEventEntry::ToBuf(void *pBuffer, size_t *piSize) const {
  RequirePointer(pBuffer, "Invalid buffer", LVX_HERE);
  const size_t iNeeded = kCodeSize + m_Text.size() + 1;
  if (*piSize < iNeeded) {
    throw invalidparameter_error("Invalid buffer Size", LVX_HERE);
  }
  auto *pBytes = static_cast<uint8_t *>(pBuffer);
  std::memcpy(pBytes, &m_iCode, kCodeSize);
  std::memcpy(pBytes + kCodeSize, m_Text.c_str(), m_Text.size() + 1);
  *piSize = iNeeded;
}

CEventError::CEventError() : CEventQueue<CErrorEventEntry>(EVENT_ERROR, kMaxQueued) {}

void CEventError::AddEvent(int32_t iCode, const char *pText) {
  Append([iCode, pText](CErrorEventEntry &entry) { entry.Assign(iCode, pText); });
}

void CEventError::GetDataInfo(const void *pInBuffer, size_t iInSize, EVENT_DATA_INFO_CMD iInfoCmd,
                              INFO_DATATYPE *piType, void *pOutBuffer, size_t *piOutSize) {
  if (iInfoCmd != EVENT_DATA_ID && iInfoCmd != EVENT_DATA_VALUE && iInfoCmd != EVENT_DATA_NUMID) {
    throw invalidparameter_error("Invalid Event Data Info ID.", LVX_HERE);
  }
  if (iInSize < kCodeSize) {
    throw invalidparameter_error("Invalid buffer Size", LVX_HERE);
  }
  if (iInfoCmd == EVENT_DATA_ID) {
    SetReturnParam(pOutBuffer, piOutSize, piType, CodeOf(pInBuffer));
  } else if (iInfoCmd == EVENT_DATA_NUMID) {
    SetReturnParam(pOutBuffer, piOutSize, piType, uint64_t{static_cast<uint32_t>(CodeOf(pInBuffer))});
  } else {
    SetReturnParam(pOutBuffer, piOutSize, piType, INFO_DATATYPE_STRING,
                   static_cast<const uint8_t *>(pInBuffer) + kCodeSize, iInSize - kCodeSize);
  }
}

}  // namespace GenICam::Client
