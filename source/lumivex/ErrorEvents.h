// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "DataStream.h"
#include "Event.h"

namespace Lumivex::Consumer {

/// What the Producer reports beside the calls during a run: frames lost, links out of step, failures of its threads.
///
/// Listens on the stream and on the device, as far as they have error events. Equal reports are counted, not repeated.
/// Ownership: made by CGrabber before the run; dies before the stream. Threads: one. Throws nothing but std::bad_alloc:
/// an error event that fails is not listened to any more.
class CErrorEvents {
 public:
  explicit CErrorEvents(const CDataStream &stream);
  ~CErrorEvents();

  /// Takes what has been reported since the last time; does not wait.
  void Collect();

  /// The reports in words: "frames were lost 3 times: ...", "the Producer reported 2 errors ...", most important first.
  std::vector<std::string> Summary() const;

 private:
  void Listen(GenTL::EVENTSRC_HANDLE hSource);
  void Count(const CEvent &event, const std::vector<unsigned char> &record, std::size_t size);

  const CProducer &m_Producer;
  std::vector<std::unique_ptr<CEvent>> m_Events;
  std::map<std::pair<int64_t, std::string>, uint64_t> m_Counts;  // by code and text
};

}  // namespace Lumivex::Consumer
