// SPDX-License-Identifier: MIT
#include "Event.h"

namespace Lumivex::Consumer {

CEvent::CEvent(const CProducer &producer, GenTL::EVENTSRC_HANDLE hSource, GenTL::EVENT_TYPE type)
    : m_Producer(producer), m_hSource(hSource), m_Type(type) {
  m_Producer.Call(m_Producer.Api().GCRegisterEvent, m_hSource, m_Type, &m_Handle);
}

CEvent::~CEvent() { m_Producer.Api().GCUnregisterEvent.address(m_hSource, m_Type); }

bool CEvent::Wait(void *pRecord, std::size_t &size, std::chrono::milliseconds limit) const {
  const GenTL::GC_ERROR result =
      m_Producer.Api().EventGetData.address(m_Handle, pRecord, &size, static_cast<uint64_t>(limit.count()));
  if (result == GenTL::GC_ERR_SUCCESS) {
    return true;
  }
  if (result == GenTL::GC_ERR_TIMEOUT || result == GenTL::GC_ERR_NO_DATA) {
    return false;
  }
  throw m_Producer.Failure(m_Producer.Api().EventGetData.name, result);
}

}  // namespace Lumivex::Consumer
