// SPDX-License-Identifier: MIT
#include "ErrorEvents.h"

#include <algorithm>
#include <chrono>

#include "Text.h"

namespace Lumivex::Consumer {
namespace {

// The Lumivex Producer's own code for an overflow: one or more frames found no free buffer. How many is not told.
constexpr int64_t kFifoOverflow = -10002;

constexpr std::size_t kDefaultRecordSize = 2048;
constexpr std::size_t kLargestRecordSize = 1U << 20U;

}  // namespace

CErrorEvents::CErrorEvents(const CDataStream &stream) : m_Producer(stream.Producer()) {
  Listen(stream.Handle());
  Listen(stream.Device().Handle());
}

CErrorEvents::~CErrorEvents() = default;

void CErrorEvents::Listen(GenTL::EVENTSRC_HANDLE hSource) {
  try {
    m_Events.push_back(std::make_unique<CEvent>(m_Producer, hSource, GenTL::EVENT_ERROR));
  } catch (const CGenTLError &) {
    // Not every module has error events; a run without them is as good as any.
  }
}

void CErrorEvents::Collect() {
  for (auto &pEvent : m_Events) {
    if (!pEvent) {
      continue;
    }
    try {
      const auto limit =
          m_Producer.TryQueryNumber(m_Producer.Api().EventGetInfo, pEvent->Handle(), GenTL::EVENT_SIZE_MAX);
      std::vector<unsigned char> record(
          std::clamp(static_cast<std::size_t>(limit.value_or(0)), kDefaultRecordSize, kLargestRecordSize));
      std::size_t size = record.size();
      while (pEvent->Wait(record.data(), size, std::chrono::milliseconds(0))) {
        Count(*pEvent, record, std::min(size, record.size()));
        size = record.size();
      }
    } catch (const CGenTLError &) {
      pEvent.reset();
    }
  }
}

void CErrorEvents::Count(const CEvent &event, const std::vector<unsigned char> &record, std::size_t size) {
  const auto *pRecord = static_cast<const void *>(record.data());
  const FunctionTable &api = m_Producer.Api();
  const auto code = static_cast<int64_t>(
      m_Producer.TryQueryNumber(api.EventGetDataInfo, event.Handle(), pRecord, size, GenTL::EVENT_DATA_ID).value_or(0));
  std::string text;
  try {
    text = OneLine(m_Producer.QueryText(api.EventGetDataInfo, event.Handle(), pRecord, size, GenTL::EVENT_DATA_VALUE));
  } catch (const CGenTLError &) {
    text = "an error without words";
  }
  ++m_Counts[{code, text}];
}

std::vector<std::string> CErrorEvents::Summary() const {
  std::vector<std::string> lines;
  for (const auto &[report, count] : m_Counts) {
    if (report.first == kFifoOverflow) {
      lines.insert(lines.begin(), "frames were lost " + Counted(count, "time") + ": " + report.second);
    } else {
      lines.push_back("the Producer reported " + Counted(count, "error") + " " + std::to_string(report.first) + ": " +
                      report.second);
    }
  }
  return lines;
}

}  // namespace Lumivex::Consumer
