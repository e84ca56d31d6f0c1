// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cstdint>

#include <boost/date_time/posix_time/posix_time_types.hpp>
#include <boost/thread/thread_time.hpp>

#include "GenTL.h"

namespace GenICam::Client {

/// Waits once on a condition, up to iTimeout milliseconds; GENTL_INFINITE waits for ever. False: time ran out.
template <class Condition, class Lock>
bool WaitOnce(Condition &condition, Lock &lock, uint64_t iTimeout) {
  if (iTimeout == GENTL_INFINITE) {
    condition.wait(lock);
    return true;
  }
  // A hundred years: longer ones leave the calendar.
  constexpr uint64_t kLongest = 100ULL * 365 * 24 * 3600 * 1000;
  const auto iMilliseconds = static_cast<int64_t>(std::min(iTimeout, kLongest));
  return condition.timed_wait(lock, boost::get_system_time() + boost::posix_time::milliseconds(iMilliseconds));
}

}  // namespace GenICam::Client
