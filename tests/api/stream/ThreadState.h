// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>

namespace StreamTests {

/// The system's number of a thread.
using ThreadNumber = long;
ThreadNumber ThisThread();

/// Waits until the thread has slept for a while without a break: it is in a wait, not on its way there.
/// False: the bound ran out.
bool WaitUntilAsleep(ThreadNumber thread, std::chrono::milliseconds bound);

}  // namespace StreamTests
