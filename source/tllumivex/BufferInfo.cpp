// SPDX-License-Identifier: MIT
#include "BufferInfo.h"

#include <cstdlib>

#include "BufferPool.h"
#include "Helper.h"
#include "TLIException.h"

namespace GenICam::Client {

namespace {

constexpr const char *kNoPort = "Buffer Module does not support Port functions.";

void AnswerPointer(void *pBuffer, size_t *piSize, INFO_DATATYPE *piType, const void *pPointer) {
  SetReturnParam(pBuffer, piSize, piType, INFO_DATATYPE_PTR, &pPointer, sizeof(pPointer));
}

}  // namespace

CBufferInfo::CBufferInfo(void *pBase, size_t iSize, void *pUserPointer)
    : ICommonBase("Buffer", MODULE_KIND_BUFFER),
      m_pBase(pBase),
      m_iSize(iSize),
      m_pUserPointer(pUserPointer),
      m_bOwnsMemory(false),
      m_iHeight(iSize) {
  CBufferPool::Publish(this);
}

CBufferInfo::CBufferInfo(size_t iSize, void *pUserPointer, bool bExternal)
    : ICommonBase("Buffer", MODULE_KIND_BUFFER),
      m_pBase(bExternal ? nullptr : std::malloc(iSize)),
      m_iSize(iSize),
      m_pUserPointer(pUserPointer),
      m_bOwnsMemory(!bExternal),
      m_iHeight(iSize) {
  CBufferPool::Publish(this);
}

CBufferInfo::~CBufferInfo() {
  CBufferPool::Withdraw(this);
  if (m_bOwnsMemory && m_pBase != nullptr) {
    std::free(m_pBase);
  }
}

void *CBufferInfo::operator new(size_t) { return CBufferPool::Take(); }

void CBufferInfo::operator delete(void *pMemory) noexcept { CBufferPool::GiveBack(pMemory); }

void *CBufferInfo::Buffer() const {
  if (m_pBase == nullptr) {
    throw unknown_error("Invalid Memory Buffer", LVX_HERE);
  }
  return m_pBase;
}

void CBufferInfo::ResetToQueued() {
  m_bIsQueued = true;
  m_bInDelivery = false;
  m_bNewData = false;
  m_bImagePresent = false;
  m_bIsIncomplete = false;
  m_bIsAcquiring = false;
  m_iSizeFilled = 0;
}

void CBufferInfo::Discard() {
  m_bIsQueued = false;
  m_bInDelivery = false;
  m_bNewData = false;
}

void CBufferInfo::StampFilled(const Stamp &stamp) {
  m_iWidth = stamp.iWidth;
  m_iHeight = stamp.iHeight;
  m_nPixelFormat = stamp.nPixelFormat;
  m_iXOffset = 0;
  m_iYOffset = 0;
  m_iXPadding = stamp.iXPadding;
  m_iYPadding = 0;
  m_iImageOffset = 0;
  m_iDeliveredImageHeight = stamp.iHeight;
  m_iSizeFilled = stamp.iSizeFilled;
  m_bIsAcquiring = false;
  m_bIsIncomplete = false;
  m_bImagePresent = true;
  m_bNewData = true;
  m_bInDelivery = true;
  m_bIsQueued = false;
  m_iDeliveredChunkPayloadSize = 0;
  m_nChunkLayoutId = 0;
}

void CBufferInfo::GetInfo(BUFFER_INFO_CMD iInfoCmd, INFO_DATATYPE *piType, void *pBuffer, size_t *piSize) const {
  switch (iInfoCmd) {
    case BUFFER_INFO_BASE:
      return AnswerPointer(pBuffer, piSize, piType, Buffer());
    case BUFFER_INFO_SIZE:
      return SetReturnParamSize_t(pBuffer, piSize, piType, m_iSize);
    case BUFFER_INFO_USER_PTR:
      return AnswerPointer(pBuffer, piSize, piType, m_pUserPointer);
    case BUFFER_INFO_TIMESTAMP:
      return SetReturnParam(pBuffer, piSize, piType, uint64_t{m_nTimestamp});
    case BUFFER_INFO_NEW_DATA:
      return SetReturnParam(pBuffer, piSize, piType, bool{m_bNewData});
    case BUFFER_INFO_IS_QUEUED:
      return SetReturnParam(pBuffer, piSize, piType, bool{m_bIsQueued});
    case BUFFER_INFO_IS_ACQUIRING:
      return SetReturnParam(pBuffer, piSize, piType, bool{m_bIsAcquiring});
    case BUFFER_INFO_IS_INCOMPLETE:
      return SetReturnParam(pBuffer, piSize, piType, bool{m_bIsIncomplete});
    case BUFFER_INFO_TLTYPE:
      return SetReturnParam(pBuffer, piSize, piType, "CXP");
    case BUFFER_INFO_SIZE_FILLED:
      return SetReturnParamSize_t(pBuffer, piSize, piType, m_iSizeFilled);
    case BUFFER_INFO_WIDTH:
      return SetReturnParamSize_t(pBuffer, piSize, piType, m_iWidth);
    case BUFFER_INFO_HEIGHT:
      return SetReturnParamSize_t(pBuffer, piSize, piType, m_iHeight);
    case BUFFER_INFO_XOFFSET:
      return SetReturnParamSize_t(pBuffer, piSize, piType, m_iXOffset);
    case BUFFER_INFO_YOFFSET:
      return SetReturnParamSize_t(pBuffer, piSize, piType, m_iYOffset);
    case BUFFER_INFO_XPADDING:
      return SetReturnParamSize_t(pBuffer, piSize, piType, m_iXPadding);
    case BUFFER_INFO_YPADDING:
      return SetReturnParamSize_t(pBuffer, piSize, piType, m_iYPadding);
    case BUFFER_INFO_FRAMEID:
      return SetReturnParam(pBuffer, piSize, piType, uint64_t{m_nFrameId});
    case BUFFER_INFO_IMAGEPRESENT:
      return SetReturnParam(pBuffer, piSize, piType, bool{m_bImagePresent});
    case BUFFER_INFO_IMAGEOFFSET:
      return SetReturnParamSize_t(pBuffer, piSize, piType, m_iImageOffset);
    case BUFFER_INFO_PAYLOADTYPE:
      return SetReturnParamSize_t(pBuffer, piSize, piType, PAYLOAD_TYPE_IMAGE);
    case BUFFER_INFO_PIXELFORMAT:
      return SetReturnParam(pBuffer, piSize, piType, uint64_t{m_nPixelFormat});
    case BUFFER_INFO_PIXELFORMAT_NAMESPACE:
      // Kept: the value is a PFNC code all the same.
      return SetReturnParam(pBuffer, piSize, piType, uint64_t{PIXELFORMAT_NAMESPACE_GEV});
    case BUFFER_INFO_DELIVERED_IMAGEHEIGHT:
      return SetReturnParamSize_t(pBuffer, piSize, piType, m_iDeliveredImageHeight);
    case BUFFER_INFO_DELIVERED_CHUNKPAYLOADSIZE:
      return SetReturnParamSize_t(pBuffer, piSize, piType, m_iDeliveredChunkPayloadSize);
    case BUFFER_INFO_CHUNKLAYOUTID:
      return SetReturnParam(pBuffer, piSize, piType, uint64_t{m_nChunkLayoutId});
    case BUFFER_INFO_FILENAME:
      // Kept: the name of no file; an application that asks for one gets this.
      return SetReturnParam(pBuffer, piSize, piType, "ImageFileName.img");
    default:
      throw invalidparameter_error(FormatMessageText("Invalid DataStream BUFFER_INFO_CMD %d", iInfoCmd), LVX_HERE);
  }
}

void CBufferInfo::ReadData(uint64_t, void *, size_t *) { throw notimplemented_error(kNoPort, LVX_HERE); }
void CBufferInfo::WriteData(uint64_t, const void *, size_t *) { throw notimplemented_error(kNoPort, LVX_HERE); }
void CBufferInfo::GetURL(char *, size_t *) { throw notimplemented_error(kNoPort, LVX_HERE); }
void CBufferInfo::GetPortInfo(PORT_INFO_CMD, INFO_DATATYPE *, void *, size_t *) {
  throw notimplemented_error(kNoPort, LVX_HERE);
}
void CBufferInfo::GetNumPortURLs(uint32_t *) { throw notimplemented_error(kNoPort, LVX_HERE); }
void CBufferInfo::GetPortURLInfo(uint32_t, URL_INFO_CMD, INFO_DATATYPE *, void *, size_t *) {
  throw notimplemented_error(kNoPort, LVX_HERE);
}

// Kept: the two refusals are of different classes.
void CBufferInfo::Register(EVENT_TYPE iEventID, EVENT_HANDLE *) {
  throw invalidparameter_error(UnknownEventText(iEventID), LVX_HERE);
}
void CBufferInfo::Unregister(EVENT_TYPE iEventID) { throw unknown_error(UnknownEventText(iEventID), LVX_HERE); }

}  // namespace GenICam::Client
