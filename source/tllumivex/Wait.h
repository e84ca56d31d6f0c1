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

/// The threads inside the waits of one object, counted, so that the object can end behind them, and so that each
/// notification finds those only whom it is meant for. Guarded by the lock of the wait, which each of them holds from
/// its wake-up to its last look at the object.
struct Waiters {
  size_t nInside = 0;
  size_t nUnnotified = 0;  ///< of these: no notification is on its way to them
  uint64_t nNotices = 0;
  bool bEnding = false;

  /// For whoever is about to notify all. False: nobody needs it. A notification that follows the unlock must not be
  /// made then: it could find its way into a wait that begins later, and end that for nothing.
  bool TakeNotice() {
    const bool bNeeded = nUnnotified != 0;
    nUnnotified = 0;
    ++nNotices;
    return bNeeded;
  }
};

/// The same, and the thread counts as inside meanwhile.
template <class Condition, class Lock>
bool WaitOnce(Condition &condition, Lock &lock, uint64_t iTimeout, Waiters &waiters) {
  class CInside {
   public:
    CInside(Condition &condition, Waiters &waiters)
        : m_Condition(condition), m_Waiters(waiters), m_nNotices(waiters.nNotices) {
      ++m_Waiters.nInside;
      ++m_Waiters.nUnnotified;
    }
    CInside(const CInside &) = delete;
    CInside &operator=(const CInside &) = delete;
    ~CInside() {
      --m_Waiters.nInside;
      if (m_Waiters.nNotices == m_nNotices) {
        --m_Waiters.nUnnotified;
      }
      if (m_Waiters.bEnding) {
        m_Condition.notify_all();
      }
    }

   private:
    Condition &m_Condition;
    Waiters &m_Waiters;
    const uint64_t m_nNotices;
  };

  const CInside inside(condition, waiters);
  return WaitOnce(condition, lock, iTimeout);
}

/// Wakes all waiters. The caller holds the lock.
template <class Condition>
void NotifyAll(Condition &condition, Waiters &waiters) {
  waiters.TakeNotice();
  condition.notify_all();
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
