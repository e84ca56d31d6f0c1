// SPDX-License-Identifier: MIT
#include "StreamImpl.h"

#include <exception>
#include <limits>
#include <string>
#include <utility>

#include <boost/thread/lock_guard.hpp>
#include <boost/thread/locks.hpp>

#include "BufferInfo.h"
#include "CxpRegisters.h"
#include "DataStream.h"
#include "DeviceImpl.h"
#include "DeviceRegisters.h"
#include "EventError.h"
#include "GrbChannelHandle.h"
#include "GrbError.h"
#include "GrbStreamHandle.h"
#include "PixelFormat.h"
#include "Platform.h"
#include "Settings.h"
#include "TLIException.h"
#include "Wait.h"

namespace GenICam::Client {

namespace Platform = Lumivex::Platform;

namespace {

// A failure names the operation that it ends, not the step of it.
constexpr const char *kAcquire = "GenICam::Client::CStreamImpl::Acquire";
constexpr const char *kCallback = "GenICam::Client::CStreamImpl::GRB_CallbackEvent";

constexpr uint32_t kLineAlignment = 16;
constexpr uint64_t kFinalCallbackTimeout = 200;
constexpr uint32_t kAbortPause = 100;
constexpr uint32_t kEventMask = GRB_EVENT_FIFO_OVERFLOW | GRB_EVENT_SYNC_LOST;
constexpr uint32_t kNoAddress = 0xFFFFFFFF;
constexpr uint64_t kMaxBuffers = std::numeric_limits<uint32_t>::max();

static_assert(sizeof(std::pair<void *, CBufferInfo *>) == 2 * sizeof(uint64_t),
              "the library reads two 64-bit words per entry");

}  // namespace

CStreamImpl::CStreamImpl(const std::shared_ptr<CDataStreamInfo> &pStreamInfo,
                         const std::shared_ptr<CDeviceImpl> &pDeviceImpl)
    : m_pStreamInfo(pStreamInfo),
      m_pDeviceImpl(pDeviceImpl),
      m_bAcquisitionRunning(false),
      m_bStartUnderWay(false),
      m_bFinalCallback(true),
      m_iNumBuffers(2),
      m_iStartedBase(0),
      m_iFramesCounted(0),
      m_iFramesToAcquire(0),
      m_iNextReleaseId(0),
      m_nAcquisitionBuffersIndex(0),
      m_dwImageWidth(0),
      m_dwImageHeight(0),
      m_dwPixelFormat(0),
      m_iXPadding(0),
      m_iPayloadSize(0),
      m_dwBlockingMode(GRB_ACQ_BLOCKING_ON) {
  LVX_ASSERT(m_pDeviceImpl != 0);
  LVX_ASSERT(m_pStreamInfo != 0);
  m_pGrbStreamHandle = m_pDeviceImpl->GetStreamHandle();
  m_pGrbChannelHandle = m_pDeviceImpl->GetChannelHandle();
  LVX_ASSERT(m_pGrbStreamHandle != 0);
  LVX_ASSERT(m_pGrbChannelHandle != 0);
  if (!m_pGrbStreamHandle->IsValid()) {
    throw unknown_error("Attempting to use a DataStream but the Stream handle is invalid.", LVX_HERE);
  }
  if (!m_pGrbChannelHandle->IsValid()) {
    throw unknown_error("Attempting to use a DataStream but the Channel handle is invalid.", LVX_HERE);
  }
}

CStreamImpl::~CStreamImpl() {
  try {
    Freeze(true);
  } catch (const std::exception &error) {
    Platform::ShowMessage(error.what(), "Fatal Error");
  } catch (...) {
    Platform::ShowMessage("Unknown Exception.", "Fatal Error");
  }
}

GRB_STATUS CStreamImpl::Stream(uint32_t nOperation) const {
  return GRB_StreamRead(m_pGrbStreamHandle->GetHandle(), nOperation, nullptr);
}

uint32_t CStreamImpl::ReadRegister(uint32_t nAddress) const {
  uint32_t nValue = 0;
  size_t iSize = sizeof(nValue);
  m_pDeviceImpl->GetVirtualRegister(nAddress, &nValue, &iSize);
  return nValue;
}

uint32_t CStreamImpl::ReadCamera(uint32_t nAddress) const {
  uint32_t nValue = 0;
  return *m_pGrbChannelHandle->CameraReadUInt32(&nValue, nAddress, Settings::TimeOut);
}

void CStreamImpl::Acquire(uint32_t, uint64_t iNumToAcquire, const CBufferList &BufferList,
                          const std::weak_ptr<CDataStream> &pParentStream, bool bBufferSetChanged) {
  try {
    HoldParent(nullptr);
    std::shared_ptr<CDataStream> pParent = pParentStream.lock();
    if (pParent == nullptr) {
      throw unknown_error("Unable to lock pointer to parent Stream", LVX_HERE);
    }
    HoldParent(std::move(pParent));
    CollectQueuedBuffers(BufferList);
    m_iFramesToAcquire = iNumToAcquire;
    m_iFramesCounted = 0;
    ProgramLibrary(bBufferSetChanged);
    StartStream();
  } catch (...) {
    BackToIdle();
    throw;
  }
}

std::shared_ptr<CDataStream> CStreamImpl::HoldParent(std::shared_ptr<CDataStream> pParentStream) {
  const boost::lock_guard<boost::mutex> guard(m_StopMutex);
  m_pDeliverTo = pParentStream.get();
  m_pParentStream.swap(pParentStream);
  return pParentStream;
}

void CStreamImpl::CollectQueuedBuffers(const CBufferList &BufferList) {
  m_AcquisitionBuffers.clear();
  for (const auto &pB : BufferList) {
    LVX_ASSERT(pB != 0);
    if (pB->IsQueued()) {
      m_AcquisitionBuffers.emplace_back(pB->Buffer(), pB.get());
    }
  }
  const size_t nCount = m_AcquisitionBuffers.size();
  if (nCount > kMaxBuffers) {
    throw outofrange_error("There are " + std::to_string(nCount) +
                               " acquisition buffers queued. This is more than the maximum allowed by the GRB library "
                               "(" +
                               std::to_string(kMaxBuffers) + ")",
                           kAcquire, __FILE__, __LINE__);
  }
  if (nCount == 0) {
    throw outofrange_error("No acquisition buffers queued.", kAcquire, __FILE__, __LINE__);
  }
  m_iNumBuffers = static_cast<uint32_t>(nCount);
  m_AcquisitionBuffers.emplace_back(nullptr, nullptr);
}

void CStreamImpl::ProgramLibrary(bool bBufferSetChanged) {
  const auto set = [this](uint32_t nId, uint32_t nValue) { m_pGrbStreamHandle->ParameterSet(nId, &nValue); };

  m_pGrbStreamHandle->ParameterSet(GRB_EVENT_CONTEXT, this);
  set(GRB_ACQ_NUM_BUFFERS, m_iNumBuffers);
  m_iNextReleaseId = 0;
  m_pReleasedIds = std::make_unique<std::atomic<uint32_t>[]>(m_iNumBuffers);
  for (uint32_t i = 0; i < m_iNumBuffers; ++i) {
    m_pReleasedIds[i] = 0;
  }
  m_nAcquisitionBuffersIndex = 0;
  UpdateIncomingPixelFormat();
  m_pGrbStreamHandle->ParameterSet(GRB_DST_LIST, m_AcquisitionBuffers.data());
  set(GRB_DST_LIST_KIND, GRB_DST_LIST_USER_PAIRS);
  const uint32_t nLineBytes = GetBufferWidthSize();
  const uint32_t nLines = ReadRegister(REG_HEIGHT);
  set(GRB_DST_LINE_BYTES, nLineBytes);
  set(GRB_DST_LINES, nLines);
  if (bBufferSetChanged) {
    m_pGrbStreamHandle->ParameterSet(GRB_CACHE_FLUSH_BUFFERS, nullptr);
  }
  set(GRB_EVENT_MASK, kEventMask);
  m_pGrbStreamHandle->FlushParameters();
}

void CStreamImpl::StartStream() {
  // Kept: an empty image, which the features allow, ends the process.
  m_dwImageWidth = ReadRegister(REG_WIDTH);
  LVX_ASSERT(m_dwImageWidth != 0);
  m_dwImageHeight = ReadRegister(REG_HEIGHT);
  LVX_ASSERT(m_dwImageHeight != 0);
  m_dwPixelFormat = ReadRegister(REG_PIXEL_FORMAT);
  m_dwBlockingMode = ReadRegister(REG_ACQ_BLOCKING);
  m_iPayloadSize = GetPayloadSize();
  // Ahead of the start: a callback can arrive at once.
  m_bAcquisitionRunning = true;
  m_bStartUnderWay = true;
  if (GRB_StreamRead(m_pGrbStreamHandle->GetHandle(), GRB_STREAM_START,
                     reinterpret_cast<void *>(&CStreamImpl::GRB_CallbackEvent)) != GRB_OK) {
    throw unknown_error(": " + CGrbError::GetText(), kAcquire, __FILE__, __LINE__);
  }
}

void CStreamImpl::BackToIdle() {
  m_bAcquisitionRunning = false;
  m_bStartUnderWay = false;
  m_iPayloadSize = 0;
  m_dwPixelFormat = 0;
  m_dwImageHeight = 0;
  m_dwImageWidth = 0;
  std::vector<std::pair<void *, CBufferInfo *>>().swap(m_AcquisitionBuffers);
  HoldParent(nullptr);
  m_iNumBuffers = 0;
  m_iFramesToAcquire = 0;
  m_iFramesCounted = 0;
}

void CStreamImpl::UpdateIncomingPixelFormat() {
  uint32_t nWidthAddress = kNoAddress;
  uint32_t nHeightAddress = kNoAddress;
  uint32_t nPixelFormatAddress = kNoAddress;
  const bool bCxpv11 = ReadCamera(CXP_REVISION) == CXP_REVISION_1_1;
  if (bCxpv11) {
    nWidthAddress = ReadCamera(CXP_WIDTH_ADDRESS);
    nHeightAddress = ReadCamera(CXP_HEIGHT_ADDRESS);
    nPixelFormatAddress = ReadCamera(CXP_PIXEL_FORMAT_ADDRESS);
  } else if (Settings::Cxpv11Enable) {
    nWidthAddress = Settings::Cxpv11WidthAddress;
    nHeightAddress = Settings::Cxpv11HeightAddress;
    nPixelFormatAddress = Settings::Cxpv11PixelFormatAddress;
  } else {
    return;
  }
  // Kept: the sizes are not used, but a camera that fails to tell them fails the start.
  ReadCamera(nWidthAddress);
  ReadCamera(nHeightAddress);
  uint32_t nPixelFormat = ReadCamera(nPixelFormatAddress);
  if (!bCxpv11) {
    nPixelFormat = CPixelFormat::To_PFNC(static_cast<CoaXPressFormat>(nPixelFormat));
  }
  m_pDeviceImpl->SetVirtualRegister(REG_INCOMING_PIXEL_FORMAT, &nPixelFormat, sizeof(nPixelFormat));
}

uint32_t CStreamImpl::GetBufferWidthSize() {
  const uint64_t nWidth = ReadRegister(REG_WIDTH);
  uint64_t nWidthBytes = nWidth * CPixelFormat::GetBytesPerPixel(ReadRegister(REG_PIXEL_FORMAT));
  const uint64_t nPadding = (kLineAlignment - nWidthBytes % kLineAlignment) % kLineAlignment;
  m_iXPadding = nPadding;
  nWidthBytes += nPadding;
  LVX_ASSERT(nWidthBytes % 16 == 0);
  if (nWidthBytes > std::numeric_limits<uint32_t>::max()) {
    throw unknown_error("Buffer width size is too large.", LVX_HERE);
  }
  return static_cast<uint32_t>(nWidthBytes);
}

uint64_t CStreamImpl::GetPayloadSize() {
  const uint32_t nLineBytes = GetBufferWidthSize();
  // Kept: made in 32 bits, so a frame of 4 GiB or more wraps around.
  const uint32_t nBytes = nLineBytes * ReadRegister(REG_HEIGHT);
  return nBytes;
}

uint64_t CStreamImpl::GetNumStarted() const { return m_iStartedBase + m_iFramesCounted; }

void CStreamImpl::GRB_CallbackEvent(GRB_HANDLE, uint32_t nEvents, void *pvParams) noexcept {
  LVX_ASSERT(pvParams != 0);
  if (pvParams == nullptr) {
    return;
  }
  auto *pThis = static_cast<CStreamImpl *>(pvParams);
  try {
    if (pThis->m_bAcquisitionRunning) {
      pThis->OnEvents(nEvents);
    } else {
      pThis->OnFinalCallback();
    }
  } catch (const std::exception &error) {
    pThis->ReportFailure(error.what());
  } catch (...) {
    pThis->ReportFailure("Unknown exception caught in GRB_CallbackEvent().");
  }
}

void CStreamImpl::ReportFailure(const char *pText) noexcept {
  try {
    CDataStream *const pParentStream = m_pDeliverTo;
    if (pParentStream != nullptr) {
      pParentStream->PostErrorEvent(ERROR_EVENT_GENERAL, pText);
    }
  } catch (...) {
    // The report itself failed, and the library must not see it.
  }
}

void CStreamImpl::OnEvents(uint32_t nEvents) {
  CDataStream *const pParentStream = m_pDeliverTo;
  if (pParentStream == nullptr) {
    // A stop ran out of time while this callback was held up: there is nobody left to deliver to.
    return;
  }
  if ((nEvents & GRB_EVENT_BUFFER_READY) != 0) {
    OnBufferReady(this, pParentStream);
  }
  if ((nEvents & GRB_EVENT_FIFO_OVERFLOW) != 0) {
    pParentStream->PostErrorEvent(ERROR_EVENT_FIFO_OVERFLOW, "'GRB FIFO Overflow' event detected.");
  }
  if ((nEvents & GRB_EVENT_SYNC_LOST) != 0) {
    pParentStream->PostErrorEvent(ERROR_EVENT_SYNC_LOST, "'GRB Sync Lost' event detected.");
  }
}

void CStreamImpl::OnFinalCallback() {
  Stream(GRB_STREAM_ABORT);
  const boost::lock_guard<boost::mutex> guard(m_StopMutex);
  m_bFinalCallback = true;
  m_StopCondition.notify_all();
}

void CStreamImpl::OnBufferReady(CStreamImpl *pThis, CDataStream *pParentStream) {
  if (pThis->m_iFramesToAcquire != GENTL_INFINITE && pThis->m_iFramesCounted >= pThis->m_iFramesToAcquire) {
    // Kept: the limit stops the stream; the run lasts until the Consumer stops it.
    pThis->Stream(GRB_STREAM_STOP);
    return;
  }
  ++pThis->m_iFramesCounted;
  LVX_ASSERT(pThis->m_nAcquisitionBuffersIndex < pThis->m_AcquisitionBuffers.size());
  CBufferInfo *pBufferInfo = pThis->m_AcquisitionBuffers[pThis->m_nAcquisitionBuffersIndex].second;
  LVX_ASSERT(pBufferInfo != 0);
  if (pThis->m_dwBlockingMode == GRB_ACQ_BLOCKING_ON && !pBufferInfo->IsQueued()) {
    // Kept: the count has gone up and the index has not; the run stays out of step with the library.
    throw invalidparameter_error("The buffer delivered by the acquisition engine was not queued.", kCallback, __FILE__,
                                 __LINE__);
  }
  pBufferInfo->StampFilled({pThis->m_dwImageWidth, pThis->m_dwImageHeight, pThis->m_dwPixelFormat, pThis->m_iXPadding,
                            pThis->m_iPayloadSize});
  pBufferInfo->SetTimestamp(Platform::PerformanceCounter());
  pBufferInfo->SetBufferId(static_cast<uint32_t>(pThis->m_iFramesCounted - 1));
  const bool bDelivered = pParentStream->DeliverBuffer(pBufferInfo);
  ++pThis->m_nAcquisitionBuffersIndex;
  if (pThis->m_nAcquisitionBuffersIndex == pThis->m_iNumBuffers) {
    pThis->m_nAcquisitionBuffersIndex = 0;
  }
  // No Consumer will ever return a buffer that did not get onto the list.
  if (!bDelivered && pThis->Stream(GRB_STREAM_RELEASE) != GRB_OK) {
    throw unknown_error(": " + CGrbError::GetText(), kCallback, __FILE__, __LINE__);
  }
}

void CStreamImpl::ReleaseBuffer(CBufferInfo *pBufferInfo) {
  LVX_ASSERT(pBufferInfo != 0);
  const uint32_t nNumBuffers = m_iNumBuffers;
  if (nNumBuffers == 0 || m_pReleasedIds == nullptr) {
    // After a failed start, and ahead of the first one, there is nothing to release against.
    return;
  }
  const uint32_t nId = pBufferInfo->BufferId();
  m_pReleasedIds[nId % nNumBuffers] = nId;
  // Kept: an entry that was never set reads as a released id 0.
  while (m_pReleasedIds[m_iNextReleaseId % nNumBuffers] == m_iNextReleaseId) {
    ++m_iNextReleaseId;
    if (Stream(GRB_STREAM_RELEASE) != GRB_OK) {
      throw unknown_error(FormatMessageText("Failed releasing buffer ID 0x%08X.", nId) + ": " + CGrbError::GetText(),
                          LVX_HERE);
    }
  }
}

void CStreamImpl::Freeze(bool) {
  if (!m_bAcquisitionRunning) {
    return;
  }
  {
    const boost::lock_guard<boost::mutex> guard(m_StopMutex);
    m_bFinalCallback = false;
  }
  std::string strReport = "Error stopping acquisition: ";
  bool bSuccess = true;
  const auto fail = [&strReport, &bSuccess](const std::string &strReason) {
    strReport += "\n" + strReason;
    bSuccess = false;
  };

  if (Stream(GRB_STREAM_STOP) != GRB_OK) {
    fail(CGrbError::GetText());
  }
  // From here on every callback counts as the final one. Those on their way end as ordinary frames.
  m_bAcquisitionRunning = false;
  // Brings a callback about also when no frame is in flight.
  uint32_t nOne = 1;
  if (GRB_ParameterSet(m_pGrbStreamHandle->GetHandle(), GRB_EVENT_MASK_NOW, &nOne) != GRB_OK) {
    fail(CGrbError::GetText());
  }
  {
    boost::unique_lock<boost::mutex> lock(m_StopMutex);
    while (!m_bFinalCallback) {
      // A thread that was held up itself finds the callback though its time has run out.
      if (!WaitOnce(m_StopCondition, lock, kFinalCallbackTimeout) && !m_bFinalCallback) {
        fail("Timeout while waiting for final callback.");
        break;
      }
    }
  }
  // The stream lives to the end of this function, also if this was the last to hold it.
  const std::shared_ptr<CDataStream> pParentStream = HoldParent(nullptr);
  m_iFramesToAcquire = 0;
  if (!bSuccess) {
    Stream(GRB_STREAM_ABORT);
    Platform::SleepMilliseconds(kAbortPause);
    throw unknown_error(strReport, LVX_HERE);
  }
}

}  // namespace GenICam::Client
