// SPDX-License-Identifier: MIT
#include <fstream>
#include <string>
#include <sys/syscall.h>
#include <thread>
#include <unistd.h>

#include "ThreadState.h"

namespace StreamTests {

namespace {

/// How often the thread has given its processor up by itself; -1 unless it sleeps now.
long SleepsOf(ThreadNumber thread) {
  std::ifstream status("/proc/self/task/" + std::to_string(thread) + "/status");
  const std::string kState = "State:\t";
  const std::string kSwitches = "voluntary_ctxt_switches:";
  bool asleep = false;
  for (std::string line; std::getline(status, line);) {
    if (line.rfind(kState, 0) == 0) {
      asleep = line.compare(kState.size(), 1, "S") == 0;
    } else if (asleep && line.rfind(kSwitches, 0) == 0) {
      return std::stol(line.substr(kSwitches.size()));
    }
  }
  return -1;
}

}  // namespace

ThreadNumber ThisThread() { return syscall(SYS_gettid); }

bool WaitUntilAsleep(ThreadNumber thread, std::chrono::milliseconds bound) {
  using Clock = std::chrono::steady_clock;
  constexpr std::chrono::milliseconds kWhile{20};
  const Clock::time_point begin = Clock::now();
  Clock::time_point since = begin;
  long sleeps = -1;
  while (Clock::now() - begin < bound) {
    const long now = SleepsOf(thread);
    if (now < 0 || now != sleeps) {
      sleeps = now;
      since = Clock::now();
    } else if (Clock::now() - since >= kWhile) {
      return true;
    }
    std::this_thread::yield();
  }
  return false;
}

}  // namespace StreamTests
