// SPDX-License-Identifier: MIT
#include "EventNewBuffer.h"

#include <string>

#include "DataStream.h"
#include "Helper.h"
#include "TLIException.h"

namespace GenICam::Client {

CDataStreamEventNewBuffer::CDataStreamEventNewBuffer(CDataStream *pDataStream)
    : IEventObj(EVENT_NEW_BUFFER), m_pDataStream(pDataStream), m_bEnabled(false) {}

void CDataStreamEventNewBuffer::RequireEnabled(const char *pFunction, const char *pFile, uint32_t nLine) const {
  if (!m_bEnabled) {
    throw invalidhandle_error("Event is not enabled.", pFunction, pFile, nLine);
  }
}

void CDataStreamEventNewBuffer::EnableEvent() {
  if (m_bEnabled.exchange(true)) {
    throw resourceinuse_error("Event already enabled.", LVX_HERE);
  }
}

void CDataStreamEventNewBuffer::DisableEvent() { m_bEnabled = false; }

bool CDataStreamEventNewBuffer::GetData(void *pBuffer, size_t *piSize, uint64_t iTimeout) {
  RequireEnabled(LVX_HERE);
  return m_pDataStream->GetFilledBuffer(pBuffer, piSize, iTimeout);
}

void CDataStreamEventNewBuffer::GetInfo(EVENT_INFO_CMD iInfoCmd, INFO_DATATYPE *piType, void *pBuffer, size_t *piSize) {
  RequireEnabled(LVX_HERE);
  switch (iInfoCmd) {
    case EVENT_EVENT_TYPE:
      return SetReturnParam(pBuffer, piSize, piType, m_iEventType);
    case EVENT_NUM_IN_QUEUE:
      return m_pDataStream->DSGetInfo(STREAM_INFO_NUM_AWAIT_DELIVERY, piType, pBuffer, piSize);
    case EVENT_NUM_FIRED:
      return m_pDataStream->DSGetInfo(STREAM_INFO_NUM_DELIVERED, piType, pBuffer, piSize);
    case EVENT_SIZE_MAX:
      return SetReturnParamSize_t(pBuffer, piSize, piType, sizeof(EVENT_NEW_BUFFER_DATA));
    case EVENT_INFO_DATA_SIZE_MAX:
      throw notimplemented_error(FormatMessageText("Unvavailable EVENT_INFO_CMD 0x%08X.", iInfoCmd), LVX_HERE);
    default:
      throw invalidparameter_error(FormatMessageText("Invalid EVENT_INFO_CMD Command %08X", iInfoCmd), LVX_HERE);
  }
}

void CDataStreamEventNewBuffer::GetDataInfo(const void *, size_t, EVENT_DATA_INFO_CMD iInfoCmd, INFO_DATATYPE *, void *,
                                            size_t *) {
  RequireEnabled(LVX_HERE);
  const std::string strText = FormatMessageText("Invalid EVENT_DATA_INFO_CMD Command %08X", iInfoCmd);
  if (iInfoCmd == EVENT_DATA_ID || iInfoCmd == EVENT_DATA_VALUE || iInfoCmd == EVENT_DATA_NUMID) {
    throw notimplemented_error(strText, LVX_HERE);
  }
  throw invalidparameter_error(strText, LVX_HERE);
}

void CDataStreamEventNewBuffer::Flush() {
  RequireEnabled(LVX_HERE);
  m_pDataStream->DSFlushQueue(ACQ_QUEUE_OUTPUT_DISCARD);
}

void CDataStreamEventNewBuffer::Kill() {
  RequireEnabled(LVX_HERE);
  m_pDataStream->KillWait();
}

}  // namespace GenICam::Client
