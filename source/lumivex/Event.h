// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstddef>

#include "Producer.h"

namespace Lumivex::Consumer {

/// An event registered on a module, from GCRegisterEvent to GCUnregisterEvent.
///
/// Ownership: member of what listens; dies before the module that it is registered on.
/// Threads: one; the Producer wakes it, and no lock is held while it waits.
/// Throws CGenTLError; a wait that ends without a record is no error.
class CEvent {
 public:
  CEvent(const CProducer &producer, GenTL::EVENTSRC_HANDLE hSource, GenTL::EVENT_TYPE type);
  CEvent(const CEvent &) = delete;
  CEvent &operator=(const CEvent &) = delete;
  ~CEvent();

  GenTL::EVENT_HANDLE Handle() const noexcept { return m_Handle; }

  /// Waits for the next record, but not longer than the time given, and writes it to pRecord. `size`: room in, bytes
  /// written out. False when none came; that may be known before the time is over.
  bool Wait(void *pRecord, std::size_t &size, std::chrono::milliseconds limit) const;

 private:
  const CProducer &m_Producer;
  const GenTL::EVENTSRC_HANDLE m_hSource;
  const GenTL::EVENT_TYPE m_Type;
  GenTL::EVENT_HANDLE m_Handle = GENTL_INVALID_HANDLE;
};

}  // namespace Lumivex::Consumer
