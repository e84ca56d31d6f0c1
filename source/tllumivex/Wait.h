// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include <boost/date_time/posix_time/posix_time_types.hpp>
#include <boost/thread/detail/thread_interruption.hpp>

#include "GenTL.h"

namespace GenICam::Client {

/// Waits once on a condition, up to iTimeout milliseconds; GENTL_INFINITE waits for ever. False: time ran out.
template <class Condition, class Lock>
bool WaitOnce(Condition &condition, Lock &lock, uint64_t iTimeout) {
  // An application that shares our Boost must not end a wait of ours by interrupting its thread.
  const boost::this_thread::disable_interruption noInterruption;
  if (iTimeout == GENTL_INFINITE) {
    condition.wait(lock);
    return true;
  }
  // A hundred years: longer ones leave the calendar.
  constexpr uint64_t kLongest = 100ULL * 365 * 24 * 3600 * 1000;
  const auto iMilliseconds = static_cast<int64_t>(std::min(iTimeout, kLongest));
  // Not up to a time of day: that form looks at the clock behind the wait, and takes a thread that was woken in time
  // but runs late for one that was never woken.
  return condition.timed_wait(lock, boost::posix_time::milliseconds(iMilliseconds));
}

/// The threads inside the waits of one object, counted, so that the object can end behind them. Guarded by the lock of
/// the wait, which each of them holds from its wake-up to its last look at the object.
struct Waiters {
  size_t nInside = 0;
  bool bEnding = false;

  bool IsAnyInside() const { return nInside != 0; }
};

/// The same, and the thread counts as inside meanwhile.
template <class Condition, class Lock>
bool WaitOnce(Condition &condition, Lock &lock, uint64_t iTimeout, Waiters &waiters) {
  class CInside {
   public:
    CInside(Condition &condition, Waiters &waiters) : m_Condition(condition), m_Waiters(waiters) {
      ++m_Waiters.nInside;
    }
    CInside(const CInside &) = delete;
    CInside &operator=(const CInside &) = delete;
    ~CInside() {
      --m_Waiters.nInside;
      if (m_Waiters.bEnding) {
        m_Condition.notify_all();
      }
    }

   private:
    Condition &m_Condition;
    Waiters &m_Waiters;
  };

  const CInside inside(condition, waiters);
  return WaitOnce(condition, lock, iTimeout);
}

/// Wakes all waiters and stays until they are out. The caller holds the lock, once only, and nothing else that a waiter
/// needs to leave.
template <class Condition, class Lock>
void EndWaits(Condition &condition, Lock &lock, Waiters &waiters) {
  const boost::this_thread::disable_interruption noInterruption;
  waiters.bEnding = true;
  condition.notify_all();
  while (waiters.nInside != 0) {
    condition.wait(lock);
  }
}

}  // namespace GenICam::Client
