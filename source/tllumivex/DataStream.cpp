// SPDX-License-Identifier: MIT
#include "DataStream.h"

#include <algorithm>
#include <exception>
#include <utility>
#include <vector>

#include "BufferInfo.h"
#include "BufferPool.h"
#include "Device.h"
#include "EventError.h"
#include "EventNewBuffer.h"
#include "Helper.h"
#include "ModuleDescription.h"
#include "Platform.h"
#include "TLIException.h"
#include "Wait.h"

namespace GenICam::Client {

namespace {

enum StreamRegister : uint64_t {
  REG_ANNOUNCED_BUFFER_COUNT = 0x4,
  REG_TEST_EVENT_ERROR = 0x14,
  REG_PAYLOAD_SIZE = 0x34,
  REG_UNNAMED = 0x50,
  REG_STREAM_ID = 0x80,
  REG_STREAM_DISPLAY_NAME = 0x100,
};

constexpr size_t kDeliverListSize = 64;

}  // namespace

std::shared_ptr<CDataStream> CDataStream::Create(const std::shared_ptr<CDevice> &pParentDevice,
                                                 const std::shared_ptr<CDataStreamInfo> &pDataStreamInfo) {
  return std::shared_ptr<CDataStream>(new CDataStream(pParentDevice, pDataStreamInfo));
}

CDataStream::CDataStream(const std::shared_ptr<CDevice> &pParentDevice,
                         const std::shared_ptr<CDataStreamInfo> &pDataStreamInfo)
    : ICommonBase(pDataStreamInfo->GetId(), MODULE_KIND_DATA_STREAM),
      m_pParentDevice(pParentDevice),
      m_pDataStreamInfo(pDataStreamInfo),
      m_iXmlSize(0),
      m_iNumUnderrun(0),
      m_bDefinesPayloadSize(true),
      m_pEventError(std::make_shared<CEventError>()),
      m_bAcquiring(false),
      m_bBuffersAnnounced(false),
      m_DeliverBufferList(kDeliverListSize),
      m_iNumDelivered(0),
      m_bKillWait(false),
      m_RegisterMap(100) {
  LVX_ASSERT(pParentDevice != 0);
  m_pStreamImpl = std::make_shared<CStreamImpl>(pDataStreamInfo, pParentDevice->GetDeviceImpl());
  m_pEventNewBuffer = std::make_shared<CDataStreamEventNewBuffer>(this);
  InitPort();
}

CDataStream::~CDataStream() = default;

void CDataStream::InitPort() {
  const std::vector<uint32_t> xml = LoadDescription(kDataStreamDescription, LVX_HERE);
  m_iXmlSize = xml.size() * sizeof(uint32_t);
  m_RegisterMap.Resize(m_iXmlSize + kDataStreamDescription.nXmlAddress);
  const auto addText = [this](uint64_t iAddress, uint64_t iSize, const std::string &strText) {
    m_RegisterMap.AddString(iAddress, ACCESS_READ, strText, iSize, 0, nullptr, nullptr, nullptr, false);
  };

  m_RegisterMap.AddRegister64(REG_ANNOUNCED_BUFFER_COUNT, ACCESS_READ, 0, 0, true, nullptr, this,
                              &CDataStream::OnRegisterRead, false);
  m_RegisterMap.AddRegister(REG_TEST_EVENT_ERROR, ACCESS_READ_WRITE, 0, 0, &CDataStream::OnRegisterWrite, this, nullptr,
                            false);
  // Kept: the map allows writes, the description does not.
  m_RegisterMap.AddRegister64(REG_PAYLOAD_SIZE, ACCESS_READ_WRITE, 0, 0, true, nullptr, this,
                              &CDataStream::OnRegisterRead, false);
  addText(REG_STREAM_ID, 64, m_pDataStreamInfo->GetId());
  addText(REG_STREAM_DISPLAY_NAME, 256, m_pDataStreamInfo->GetId());
  m_RegisterMap.AddRegister(REG_UNNAMED, ACCESS_READ, 0, 0, nullptr, this, &CDataStream::OnRegisterRead, false);
  m_RegisterMap.AddBlock(kDataStreamDescription.nXmlAddress, ACCESS_READ, xml.data(), m_iXmlSize, 0, nullptr, nullptr,
                         nullptr, false);
}

void CDataStream::OnRegisterRead(uint64_t iAddress, uint32_t *, void *pContext) {
  auto *pThis = static_cast<CDataStream *>(pContext);
  if (iAddress == REG_ANNOUNCED_BUFFER_COUNT) {
    size_t nCount = 0;
    {
      const Lock lock(pThis->m_BufferListLock);
      nCount = pThis->m_BufferList.size();
    }
    pThis->m_RegisterMap.SetValue64(REG_ANNOUNCED_BUFFER_COUNT, nCount, true);
  } else if (iAddress == REG_PAYLOAD_SIZE) {
    pThis->m_RegisterMap.SetValue64(REG_PAYLOAD_SIZE, pThis->m_pStreamImpl->GetPayloadSize(), true);
  }
}

void CDataStream::OnRegisterWrite(uint64_t iAddress, uint32_t *, void *pContext) {
  if (iAddress == REG_TEST_EVENT_ERROR) {
    static_cast<CDataStream *>(pContext)->PostErrorEvent(ERROR_EVENT_GENERAL, "'Test Error' event detected.");
  }
}

void CDataStream::RequireNotAcquiring(const char *pFunction, const char *pFile, uint32_t nLine) const {
  if (m_bAcquiring) {
    throw accessdenied_error(
        "You cannot announce new buffers while the acquisition is running. Stop the acquisition first.", pFunction,
        pFile, nLine);
  }
}

void CDataStream::Announce(std::unique_ptr<CBufferInfo> pBufferInfo, BUFFER_HANDLE *phBuffer) {
  CBufferInfo *pAnnounced = pBufferInfo.get();
  pAnnounced->SetOwner(this);
  m_BufferList.push_back(std::move(pBufferInfo));
  *phBuffer = HandleOf(pAnnounced);
  m_bBuffersAnnounced = true;
}

void CDataStream::DSAnnounceBuffer(void *pBuffer, size_t iSize, void *pPrivate, BUFFER_HANDLE *phBuffer) {
  RequirePointer(pBuffer, "Invalid Memory Buffer.", LVX_HERE);
  RequirePointer(phBuffer, "Invalid Buffer Handle.", LVX_HERE);
  if (iSize == 0) {
    throw invalidparameter_error("Size of buffer cannot be null.", LVX_HERE);
  }
  RequireNotAcquiring(LVX_HERE);
  const Lock lock(m_BufferListLock);
  if (std::any_of(m_BufferList.begin(), m_BufferList.end(),
                  [pBuffer](const auto &pAnnounced) { return pAnnounced->Base() == pBuffer; })) {
    throw resourceinuse_error("Buffer already in use", LVX_HERE);
  }
  Announce(std::make_unique<CBufferInfo>(pBuffer, iSize, pPrivate), phBuffer);
}

void CDataStream::DSAllocAndAnnounceBuffer(size_t iSize, void *pPrivate, BUFFER_HANDLE *phBuffer) {
  RequirePointer(phBuffer, "Invalid Buffer Handle.", LVX_HERE);
  if (iSize == 0) {
    throw invalidparameter_error("Size of buffer cannot be null.", LVX_HERE);
  }
  RequireNotAcquiring(LVX_HERE);
  auto pBufferInfo = std::make_unique<CBufferInfo>(iSize, pPrivate, false);
  const Lock lock(m_BufferListLock);
  Announce(std::move(pBufferInfo), phBuffer);
}

void CDataStream::DSRevokeBuffer(BUFFER_HANDLE hBuffer, void **ppBuffer, void **ppPrivate) {
  const CBufferInfo *pBufferInfo = TypeCast<CBufferInfo>(hBuffer);
  const Lock lock(m_BufferListLock);
  const auto entry = std::find_if(m_BufferList.begin(), m_BufferList.end(),
                                  [pBufferInfo](const auto &pAnnounced) { return pAnnounced.get() == pBufferInfo; });
  if (entry == m_BufferList.end()) {
    throw invalidparameter_error("Invalid Buffer Handle.", LVX_HERE);
  }
  if (pBufferInfo->IsQueued() || pBufferInfo->IsInDelivery()) {
    throw resourceinuse_error("Buffer is still queued.", LVX_HERE);
  }
  void *pBase = pBufferInfo->OwnsMemory() ? nullptr : pBufferInfo->Base();
  void *pPrivate = pBufferInfo->UserPointer();
  m_BufferList.erase(entry);
  if (ppBuffer != nullptr) {
    *ppBuffer = pBase;
  }
  if (ppPrivate != nullptr) {
    *ppPrivate = pPrivate;
  }
}

CBufferInfo *CDataStream::BufferOf(BUFFER_HANDLE hBuffer) {
  CBufferInfo *pBufferInfo = CBufferPool::Find(hBuffer);
  return pBufferInfo != nullptr ? pBufferInfo : TypeCast<CBufferInfo>(hBuffer);
}

void CDataStream::DSQueueBuffer(BUFFER_HANDLE hBuffer) {
  auto *pBufferInfo = BufferOf(hBuffer);
  if (pBufferInfo->IsQueued()) {
    return;
  }
  if (pBufferInfo->Owner() != this) {
    // Its slot is one of another stream's run.
    throw invalidparameter_error("Invalid Buffer Handle.", LVX_HERE);
  }
  pBufferInfo->ResetToQueued();
  // A start that is not back yet counts: the slot of a frame that is returned by then would be lost to the run.
  if (m_bAcquiring || m_pStreamImpl->IsStartUnderWay()) {
    m_pStreamImpl->ReleaseBuffer(pBufferInfo);
  }
}

void CDataStream::DSFlushQueue(ACQ_QUEUE_TYPE iOperation) {
  struct FlushRow {
    ACQ_QUEUE_TYPE iOperation;
    bool bStopsFirst;
    void (CDataStream::*pFlush)();
  };
  constexpr FlushRow kFlushes[] = {
      {ACQ_QUEUE_INPUT_TO_OUTPUT, true, &CDataStream::FlushInputToOutput},
      {ACQ_QUEUE_OUTPUT_DISCARD, false, &CDataStream::FlushOutputDiscard},
      {ACQ_QUEUE_ALL_TO_INPUT, true, &CDataStream::FlushAllToInput},
      {ACQ_QUEUE_UNQUEUED_TO_INPUT, false, &CDataStream::FlushUnqueuedToInput},
      {ACQ_QUEUE_ALL_DISCARD, true, &CDataStream::FlushAllDiscard},
  };
  for (const FlushRow &row : kFlushes) {
    if (row.iOperation == iOperation) {
      if (row.bStopsFirst) {
        DSStopAcquisition(ACQ_STOP_FLAGS_KILL);
      }
      (this->*row.pFlush)();
      return;
    }
  }
  throw invalidparameter_error("ACQ_QUEUE_TYPE value not supported.", LVX_HERE);
}

void CDataStream::FlushInputToOutput() {
  const Lock bufferListLock(m_BufferListLock);
  const Lock deliverLock(m_DeliverLock);
  for (const auto &pB : m_BufferList) {
    LVX_ASSERT(pB != 0);
    if (pB->IsQueued()) {
      AppendToDeliverList(pB.get());
      pB->SetQueued(false);
      NotifyAll(m_DeliverCondition, m_Waiters);
    }
  }
}

void CDataStream::FlushOutputDiscard() {
  const Lock lock(m_DeliverLock);
  // Kept: the newest goes first; the ring takes any order.
  while (!m_DeliverBufferList.empty()) {
    CBufferInfo *pBufferInfo = m_DeliverBufferList.back();
    m_DeliverBufferList.pop_back();
    if (pBufferInfo == nullptr) {
      continue;
    }
    if (pBufferInfo->HasNewData()) {
      m_pStreamImpl->ReleaseBuffer(pBufferInfo);
    }
    pBufferInfo->Discard();
  }
}

void CDataStream::FlushAllToInput() {
  {
    const Lock lock(m_DeliverLock);
    m_DeliverBufferList.clear();
  }
  const Lock lock(m_BufferListLock);
  for (const auto &pB : m_BufferList) {
    LVX_ASSERT(pB != 0);
    pB->ResetToQueued();
  }
}

void CDataStream::FlushUnqueuedToInput() {
  const Lock lock(m_BufferListLock);
  for (const auto &pB : m_BufferList) {
    LVX_ASSERT(pB != 0);
    if (!pB->IsQueued() && !pB->IsInDelivery()) {
      pB->ResetToQueued();
    }
  }
}

void CDataStream::FlushAllDiscard() {
  {
    const Lock lock(m_BufferListLock);
    for (const auto &pB : m_BufferList) {
      LVX_ASSERT(pB != 0);
      pB->Discard();
    }
  }
  const Lock lock(m_DeliverLock);
  m_DeliverBufferList.clear();
}

void CDataStream::RequireQueuedBuffers(const char *pFunction, const char *pFile, uint32_t nLine) {
  const uint64_t iRequired = m_bDefinesPayloadSize ? m_pStreamImpl->GetPayloadSize() : 0;
  const Lock lock(m_BufferListLock);
  bool bFound = false;
  for (const auto &pB : m_BufferList) {
    LVX_ASSERT(pB != 0);
    if (!pB->IsQueued()) {
      continue;
    }
    bFound = true;
    if (pB->Size() < iRequired) {
      throw invalidbuffer_error("Size of buffer (" + std::to_string(pB->Size()) +
                                    ") must be greater than or equal to PayloadSize (" + std::to_string(iRequired) +
                                    ").",
                                pFunction, pFile, nLine);
    }
  }
  if (!bFound) {
    throw invalidbuffer_error("You must queue at least one buffer before starting acquisition.", pFunction, pFile,
                              nLine);
  }
}

void CDataStream::DSStartAcquisition(ACQ_START_FLAGS iStartFlags, uint64_t iNumToAcquire) {
  if (iStartFlags != ACQ_START_FLAGS_DEFAULT) {
    throw invalidparameter_error("Invalid acquisition start flag: only supports ACQ_START_FLAGS_DEFAULT.", LVX_HERE);
  }
  RequireQueuedBuffers(LVX_HERE);
  DSStopAcquisition(ACQ_STOP_FLAGS_KILL);
  {
    const Lock lock(m_DeliverLock);
    m_iNumDelivered = 0;
  }
  {
    const Lock lock(m_BufferListLock);
    m_pStreamImpl->Acquire(0, iNumToAcquire, m_BufferList, weak_from_this(), m_bBuffersAnnounced);
  }
  m_bAcquiring = true;
  m_bBuffersAnnounced = false;
  m_pStreamImpl->EndStart();
}

void CDataStream::DSStopAcquisition(ACQ_STOP_FLAGS iStopFlags) {
  if (iStopFlags != ACQ_STOP_FLAGS_DEFAULT && iStopFlags != ACQ_STOP_FLAGS_KILL) {
    throw invalidparameter_error("Invalid Acquisition Stop Flag.", LVX_HERE);
  }
  // First, so that a failing stop still leaves the stream not acquiring.
  m_bAcquiring = false;
  m_pStreamImpl->Freeze(iStopFlags != ACQ_STOP_FLAGS_DEFAULT);
}

void CDataStream::Close() {
  DSStopAcquisition(ACQ_STOP_FLAGS_KILL);
  DSFlushQueue(ACQ_QUEUE_ALL_DISCARD);
  {
    const Lock lock(m_BufferListLock);
    while (!m_BufferList.empty()) {
      DSRevokeBuffer(HandleOf(m_BufferList.front().get()), nullptr, nullptr);
    }
  }
  {
    Lock lock(m_DeliverLock);
    EndWaits(m_DeliverCondition, lock, m_Waiters);
  }
  m_pEventError->EndAllWaits();
  // The object ends with this pointer.
  const std::shared_ptr<CDataStream> pThis = shared_from_this();
  m_pParentDevice->ReleaseChild(pThis);
}

size_t CDataStream::GetNumQueued() {
  const Lock lock(m_BufferListLock);
  size_t nQueued = 0;
  for (const auto &pB : m_BufferList) {
    LVX_ASSERT(pB != 0);
    nQueued += pB->IsQueued() ? 1 : 0;
  }
  return nQueued;
}

void CDataStream::DSGetInfo(STREAM_INFO_CMD iInfoCmd, INFO_DATATYPE *piType, void *pBuffer, size_t *piSize) {
  switch (iInfoCmd) {
    case STREAM_INFO_ID:
      // Kept: not the name under which the Device opens the stream.
      return SetReturnParam(pBuffer, piSize, piType, "0");
    case STREAM_INFO_NUM_DELIVERED: {
      const Lock lock(m_DeliverLock);
      return SetReturnParam(pBuffer, piSize, piType, m_iNumDelivered);
    }
    case STREAM_INFO_NUM_UNDERRUN:
      return SetReturnParam(pBuffer, piSize, piType, m_iNumUnderrun);
    case STREAM_INFO_NUM_ANNOUNCED: {
      const Lock lock(m_BufferListLock);
      return SetReturnParamSize_t(pBuffer, piSize, piType, m_BufferList.size());
    }
    case STREAM_INFO_NUM_QUEUED:
      return SetReturnParamSize_t(pBuffer, piSize, piType, GetNumQueued());
    case STREAM_INFO_NUM_AWAIT_DELIVERY: {
      const Lock lock(m_DeliverLock);
      return SetReturnParamSize_t(pBuffer, piSize, piType, m_DeliverBufferList.size());
    }
    case STREAM_INFO_NUM_STARTED:
      return SetReturnParam(pBuffer, piSize, piType, m_pStreamImpl->GetNumStarted());
    case STREAM_INFO_PAYLOAD_SIZE:
      return SetReturnParamSize_t(pBuffer, piSize, piType, m_pStreamImpl->GetPayloadSize());
    case STREAM_INFO_IS_GRABBING:
      return SetReturnParam(pBuffer, piSize, piType, m_bAcquiring.load());
    case STREAM_INFO_DEFINES_PAYLOADSIZE:
      return SetReturnParam(pBuffer, piSize, piType, m_bDefinesPayloadSize);
    case STREAM_INFO_TLTYPE:
      return SetReturnParam(pBuffer, piSize, piType, "CXP");
    case STREAM_INFO_NUM_CHUNKS_MAX:
      throw notimplemented_error("STREAM_INFO_NUM_CHUNKS_MAX not supported.", LVX_HERE);
    case STREAM_INFO_BUF_ANNOUNCE_MIN:
      return SetReturnParamSize_t(pBuffer, piSize, piType, 1);
    case STREAM_INFO_BUF_ALIGNMENT:
      throw notimplemented_error("STREAM_INFO_BUF_ALIGNMENT not supported.", LVX_HERE);
    default:
      throw invalidparameter_error(FormatMessageText("Invalid DataStream STREAM_INFO_CMD %d", iInfoCmd), LVX_HERE);
  }
}

void CDataStream::DSGetBufferInfo(BUFFER_HANDLE hBuffer, BUFFER_INFO_CMD iInfoCmd, INFO_DATATYPE *piType, void *pBuffer,
                                  size_t *piSize) {
  BufferOf(hBuffer)->GetInfo(iInfoCmd, piType, pBuffer, piSize);
}

void CDataStream::DSGetBufferID(uint32_t iIndex, BUFFER_HANDLE *phBuffer) {
  const Lock lock(m_BufferListLock);
  if (iIndex >= m_BufferList.size()) {
    throw invalidbuffer_error(FormatMessageText("Invalid Buffer Index %d", static_cast<int32_t>(iIndex)), LVX_HERE);
  }
  *phBuffer = HandleOf(m_BufferList[iIndex].get());
}

void CDataStream::AppendToDeliverList(CBufferInfo *pBufferInfo) {
  if (m_DeliverBufferList.full()) {
    m_DeliverBufferList.set_capacity(2 * m_DeliverBufferList.capacity());
  }
  m_DeliverBufferList.push_back(pBufferInfo);
}

bool CDataStream::DeliverBuffer(CBufferInfo *pBufferInfo) {
  try {
    LVX_ASSERT(pBufferInfo != 0);
    bool bNotify = false;
    {
      const Lock lock(m_DeliverLock);
      ++m_iNumDelivered;
      pBufferInfo->SetFrameId(m_iNumDelivered);
      AppendToDeliverList(pBufferInfo);
      bNotify = m_Waiters.TakeNotice();
    }
    if (bNotify) {
      m_DeliverCondition.notify_all();
    }
    return true;
  } catch (const std::exception &error) {
    PostErrorEvent(ERROR_EVENT_GENERAL, error.what());
  } catch (...) {
    PostErrorEvent(ERROR_EVENT_GENERAL, "Unknown exception.");
  }
  return false;
}

bool CDataStream::GetFilledBuffer(void *pBuffer, size_t *piSize, uint64_t iTimeout) {
  Lock lock(m_DeliverLock);
  const auto isWaitOver = [this] { return m_bKillWait || m_Waiters.bEnding; };
  if (!isWaitOver() && m_DeliverBufferList.empty() && !WaitOnce(m_DeliverCondition, lock, iTimeout, m_Waiters)) {
    return false;
  }
  if (isWaitOver()) {
    m_bKillWait = false;
    throw abort_error("Wait terminated", LVX_HERE);
  }
  if (m_DeliverBufferList.empty()) {
    return false;
  }
  // Kept: asserted twice, right behind the test that makes it so.
  LVX_ASSERT(m_DeliverBufferList.empty() == false);
  CBufferInfo *pBufferInfo = m_DeliverBufferList.front();
  LVX_ASSERT(pBufferInfo != 0);
  const EVENT_NEW_BUFFER_DATA data = {HandleOf(pBufferInfo), pBufferInfo->UserPointer()};
  LVX_ASSERT(m_DeliverBufferList.empty() == false);
  m_DeliverBufferList.pop_front();
  pBufferInfo->SetQueued(false);
  pBufferInfo->SetInDelivery(false);
  // Kept: the buffer is off the list before the size of the Consumer's memory is looked at.
  INFO_DATATYPE iType = INFO_DATATYPE_UNKNOWN;
  SetReturnParam(pBuffer, piSize, &iType, INFO_DATATYPE_UNKNOWN, &data, sizeof(data));
  return true;
}

void CDataStream::KillWait() {
  const Lock lock(m_DeliverLock);
  m_bKillWait = true;
  NotifyAll(m_DeliverCondition, m_Waiters);
}

void CDataStream::PostErrorEvent(int32_t iCode, const char *pText) { m_pEventError->AddEvent(iCode, pText); }

void CDataStream::ReadData(uint64_t iAddress, void *pBuffer, size_t *piSize) {
  m_RegisterMap.Read(iAddress, static_cast<uint32_t *>(pBuffer), *piSize);
}

void CDataStream::WriteData(uint64_t iAddress, const void *pBuffer, size_t *piSize) {
  m_RegisterMap.Write(iAddress, static_cast<const uint32_t *>(pBuffer), *piSize);
}

void CDataStream::GetURL(char *sURL, size_t *piSize) {
  GetDescriptionUrl(kDataStreamDescription, static_cast<uint32_t>(m_iXmlSize), sURL, piSize, LVX_HERE);
}

void CDataStream::GetNumPortURLs(uint32_t *piNumURLs) { *piNumURLs = 1; }

void CDataStream::GetPortURLInfo(uint32_t iURLIndex, URL_INFO_CMD iInfoCmd, INFO_DATATYPE *piType, void *pBuffer,
                                 size_t *piSize) {
  GetDescriptionUrlInfo(kDataStreamDescription, static_cast<uint32_t>(m_iXmlSize), iURLIndex, iInfoCmd, piType, pBuffer,
                        piSize, LVX_HERE);
}

void CDataStream::GetPortInfo(PORT_INFO_CMD iInfoCmd, INFO_DATATYPE *piType, void *pBuffer, size_t *piSize) {
  AnswerPortInfo({m_pDataStreamInfo->GetId(), kVendorName, kModelName, "CXP", "TLDataStream", false, true, "StreamPort",
                  "Invalid PORT_INFO_CMD Command %08X"},
                 iInfoCmd, piType, pBuffer, piSize, LVX_HERE);
}

void CDataStream::Register(EVENT_TYPE iEventID, EVENT_HANDLE *phEvent) {
  switch (iEventID) {
    case EVENT_ERROR:
      m_pEventError->EnableEvent();
      *phEvent = HandleOf(m_pEventError.get());
      break;
    case EVENT_NEW_BUFFER:
      m_pEventNewBuffer->EnableEvent();
      *phEvent = HandleOf(m_pEventNewBuffer.get());
      break;
    default:
      throw notimplemented_error(UnknownEventText(iEventID), LVX_HERE);
  }
}

void CDataStream::Unregister(EVENT_TYPE iEventID) {
  switch (iEventID) {
    case EVENT_ERROR:
      m_pEventError->DisableEvent();
      break;
    case EVENT_NEW_BUFFER:
      m_pEventNewBuffer->DisableEvent();
      break;
    default:
      throw notimplemented_error(UnknownEventText(iEventID), LVX_HERE);
  }
}

}  // namespace GenICam::Client
