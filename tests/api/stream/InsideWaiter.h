// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <cstdint>
#include <future>
#include <thread>
#include <utility>

#include "Producer.h"
#include "ThreadState.h"

namespace StreamTests {

/// A time-out in milliseconds that Result() below does not wait for.
constexpr uint64_t kBeyondResult = 30000;

/// A thread inside EventGetData, for certain once Begins() has said so.
class CInsideWaiter {
 public:
  CInsideWaiter(TestSupport::EVENT_HANDLE event, uint64_t timeout) {
    std::packaged_task<TestSupport::EventResult()> task([this, event, timeout] {
      m_nThread = ThisThread();
      return TestSupport::GetEvent(event, timeout, kCapacity);
    });
    m_Future = task.get_future().share();
    m_Thread = std::thread(std::move(task));
  }
  ~CInsideWaiter() { m_Thread.join(); }
  CInsideWaiter(const CInsideWaiter &) = delete;
  CInsideWaiter &operator=(const CInsideWaiter &) = delete;

  bool Begins() const {
    return TestSupport::WaitUntil([this] { return m_nThread != 0; }) &&
           WaitUntilAsleep(m_nThread, TestSupport::kBound) && !Done();
  }
  bool Done() const { return m_Future.wait_for(std::chrono::seconds(0)) == std::future_status::ready; }
  TestSupport::EventResult Result() const {
    if (m_Future.wait_for(TestSupport::kBound) != std::future_status::ready) {
      ADD_FAILURE() << "EventGetData has not returned";
      return {};
    }
    return m_Future.get();
  }

 private:
  static constexpr size_t kCapacity = 4096;  ///< for any event's data
  std::atomic<ThreadNumber> m_nThread{0};
  std::shared_future<TestSupport::EventResult> m_Future;
  std::thread m_Thread;
};

}  // namespace StreamTests
