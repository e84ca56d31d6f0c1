// SPDX-License-Identifier: MIT
#include "GrbChannelHandle.h"

#include <algorithm>
#include <cstring>

#include "CxpRegisters.h"
#include "GrbError.h"
#include "GrbUtility.h"
#include "Helper.h"
#include "Platform.h"
#include "TLIException.h"

namespace GenICam::Client {

namespace {

constexpr uint32_t kIdentityTimeout = 400;
constexpr size_t kIdentityTextSize = 32;

/// Library revision from which on reads need no splitting and revision 1.1 cameras have a timing of their own.
constexpr uint32_t kRevSwOwnTiming = 0x70511;
constexpr uint64_t kChunkSize = 64;

/// The words that the four kinds of transfer share in their messages.
struct TransferWords {
  const char *pDoing;
  const char *pDirection;
  const char *pDone;
};
constexpr TransferWords kRead = {"reading", "from", "read"};
constexpr TransferWords kWrite = {"writing", "to", "written"};

struct Transfer {
  uint64_t nSize;
  uint32_t nAddress;
  uint32_t nCount;
  uint32_t nTimeout;
};

std::string DescribeTransfer(const char *pWhat, const TransferWords &words, const Transfer &transfer) {
  return std::string(pWhat) + " while " + words.pDoing + " " + std::to_string(transfer.nSize) + " bytes " +
         words.pDirection + " address 0x" + ToHex(transfer.nAddress) + " in camera, " +
         std::to_string(transfer.nCount) + " bytes " + words.pDone;
}

std::string TimeoutText(const TransferWords &words, const Transfer &transfer) {
  return DescribeTransfer("Timeout", words, transfer) + ", timeout value was " + std::to_string(transfer.nTimeout) +
         ".\n" + CGrbError::GetText();
}

std::string ErrorText(const TransferWords &words, const Transfer &transfer) {
  return DescribeTransfer("Error", words, transfer) + ".\n" + CGrbError::GetText();
}

bool IsTransferDone(GRB_STATUS nStatus) { return nStatus == GRB_OK || nStatus == GRB_WARNING_PASSED; }

}  // namespace

CGrbChannelHandle::CGrbChannelHandle(uint32_t nBoard, uint32_t nChannel, bool bQuietErrors)
    : CGrbBaseHandle(bQuietErrors), m_nBoard(nBoard), m_nChannel(nChannel), m_bCxpv11(false), m_nRevSw(0) {
  try {
    OpenHandle();
    ParameterGet(GRB_REV_SW, &m_nRevSw);
    GetInfo();
  } catch (...) {
    CloseHandle();
    m_nBoard = 0;
    m_nChannel = 0;
    for (std::string *pText : {&m_strId, &m_strDisplayName, &m_strVendor, &m_strModel, &m_strTLType}) {
      pText->clear();
    }
  }
}

CGrbChannelHandle::~CGrbChannelHandle() { CloseHandle(); }

void CGrbChannelHandle::OpenHandle() {
  LVX_ASSERT(m_hGrbChannel != 0);
  // Not SetParametersAndOpen: here each step takes the lock and throws with the library's words.
  uint32_t nMode = GRB_MODE_CONTROL;
  uint32_t nVariant = GRB_VARIANT_ANY;
  ParameterSet(GRB_OPEN_BOARD, &m_nBoard);
  ParameterSet(GRB_OPEN_CHANNEL, &m_nChannel);
  ParameterSet(GRB_OPEN_MODE, &nMode);
  ParameterSet(GRB_OPEN_VARIANT, &nVariant);
  if (GRB_Open(m_hGrbChannel) != GRB_OK) {
    throw unknown_error(CGrbError::GetText(), LVX_HERE);
  }
}

void CGrbChannelHandle::GetInfo() {
  uint32_t nRevision = 0;
  try {
    CameraReadUInt32(&nRevision, CXP_REVISION, kIdentityTimeout);
  } catch (...) {
    throw io_error("No camera discovered for Board #" + std::to_string(CGrbUtility::GrbBoardEnumValueToInt(m_nBoard)) +
                       "Channel #" + std::to_string(CGrbUtility::GrbChannelEnumValueToInt(m_nChannel)),
                   LVX_HERE);
  }
  m_bCxpv11 = nRevision == CXP_REVISION_1_1;
  m_strId = "Channel #" + std::to_string(CGrbUtility::GrbChannelEnumValueToInt(m_nChannel));
  m_strVendor = ReadText(CXP_DEVICE_VENDOR_NAME);
  m_strModel = ReadText(CXP_DEVICE_MODEL_NAME);
  m_strTLType = "CXP";
  m_strDisplayName = m_strVendor + " " + m_strModel + "(" + m_strId + ")";
}

std::string CGrbChannelHandle::ReadText(uint64_t nAddress) {
  char text[kIdentityTextSize + 1] = {};
  CameraRead(text, kIdentityTextSize, nAddress, kIdentityTimeout);
  return text;
}

bool CGrbChannelHandle::HasOwnTiming() const { return m_bCxpv11 && m_nRevSw >= kRevSwOwnTiming; }

void CGrbChannelHandle::CameraRead(void *pvBuffer, uint64_t nSize, uint64_t nAddress, uint32_t nTimeout) {
  // Kept: a transfer of no bytes, which a Consumer can ask for, ends the process.
  LVX_ASSERT(pvBuffer != 0);
  LVX_ASSERT(nSize != 0);
  auto *pBuffer = static_cast<uint8_t *>(pvBuffer);
  auto nSizeWord = static_cast<uint32_t>(nSize);
  auto nAddressWord = static_cast<uint32_t>(nAddress);
  GRB_STATUS nStatus = GRB_OK;
  if (m_nRevSw >= kRevSwOwnTiming) {
    nStatus = GRB_ControlRead(m_hGrbChannel, GRB_PORT_CAMERA, &nAddressWord, pBuffer, &nSizeWord,
                              HasOwnTiming() ? GRB_TIMEOUT_CXP11 : nTimeout);
  } else {
    for (uint64_t nRemaining = nSize;;) {
      const auto nChunk = static_cast<uint32_t>(std::min(nRemaining, kChunkSize));
      uint32_t nMoved = nChunk;
      nStatus = GRB_ControlRead(m_hGrbChannel, GRB_PORT_CAMERA, &nAddressWord, pBuffer, &nMoved, nTimeout);
      if (nStatus != GRB_OK || nMoved < nChunk) {
        break;
      }
      nRemaining -= nChunk;
      if (nRemaining == 0) {
        break;
      }
      nAddressWord += nChunk;
      pBuffer += nChunk;
    }
    // Kept: the messages of a split read give the size as 0 and the whole size as the bytes read.
    nSize -= nSizeWord;
  }
  if (IsTransferDone(nStatus)) {
    return;
  }
  const Transfer transfer = {nSize, nAddressWord, nSizeWord, nTimeout};
  if (nStatus == GRB_WARNING_TIMEOUT) {
    throw timeout_error(TimeoutText(kRead, transfer), LVX_HERE);
  }
  throw io_error(ErrorText(kRead, transfer), LVX_HERE);
}

void CGrbChannelHandle::CameraWrite(void *pvBuffer, uint64_t nSize, uint64_t nAddress, uint32_t nTimeout) {
  // Kept: as in the read.
  LVX_ASSERT(pvBuffer != 0);
  LVX_ASSERT(nSize != 0);
  auto nSizeWord = static_cast<uint32_t>(nSize);
  auto nAddressWord = static_cast<uint32_t>(nAddress);
  const GRB_STATUS nStatus =
      GRB_ControlWrite(m_hGrbChannel, GRB_PORT_CAMERA, &nAddressWord, static_cast<uint8_t *>(pvBuffer), &nSizeWord,
                       HasOwnTiming() ? GRB_TIMEOUT_CXP11 : nTimeout);
  if (IsTransferDone(nStatus)) {
    return;
  }
  const Transfer transfer = {nSize, nAddressWord, nSizeWord, nTimeout};
  if (nStatus == GRB_WARNING_TIMEOUT) {
    throw timeout_error(TimeoutText(kWrite, transfer), LVX_HERE);
  }
  throw io_error(ErrorText(kWrite, transfer), LVX_HERE);
}

uint32_t *CGrbChannelHandle::CameraReadUInt32(uint32_t *pValue, uint64_t nAddress, uint32_t nTimeout) {
  CameraRead(pValue, sizeof(*pValue), nAddress, nTimeout);
  *pValue = SwapBytes(*pValue);
  return pValue;
}

void CGrbChannelHandle::CameraWriteUInt32(uint32_t nValue, uint64_t nAddress, uint32_t nTimeout) {
  uint32_t nSwapped = SwapBytes(nValue);
  CameraWrite(&nSwapped, sizeof(nSwapped), nAddress, nTimeout);
}

}  // namespace GenICam::Client
