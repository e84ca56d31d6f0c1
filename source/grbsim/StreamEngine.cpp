// SPDX-License-Identifier: MIT
#include "StreamEngine.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include "SimChannel.h"
#include "SimError.h"

namespace grbsim {
namespace {

using Clock = std::chrono::steady_clock;

constexpr uint32_t kMostTriggers = 65535;
// For a callback that waits for whoever asked for it.
constexpr std::chrono::seconds kLongestCallback{10};

}  // namespace

CStreamEngine::CStreamEngine(CSimChannel &channel) : m_Channel(channel) {}

CStreamEngine::~CStreamEngine() { Close(); }

void CStreamEngine::Open(GRB_HANDLE holder) {
  std::lock_guard<std::mutex> lock(m_Lock);
  m_hHolder = holder;
}

bool CStreamEngine::IsCallbackThread() const {
  std::lock_guard<std::mutex> lock(m_Lock);
  return m_ThreadId == std::this_thread::get_id();
}

void CStreamEngine::EndRun() {
  m_bRun = false;
  m_bFrames = false;
  m_iEvents = 0;
  m_bStopRendering = true;
  m_Changed.notify_all();
}

void CStreamEngine::Close() {
  {
    std::lock_guard<std::mutex> lock(m_Lock);
    m_hHolder = 0;
    EndRun();
  }
  if (IsCallbackThread()) {
    return;
  }
  std::lock_guard<std::mutex> control(m_ControlLock);
  if (m_Thread.joinable()) {
    m_Thread.join();
  }
}

void CStreamEngine::Start(StreamSetup setup) {
  if (IsCallbackThread()) {
    Fail(kStatusInvalidState, "A stream cannot be started from within its own callback.");
  }
  auto pattern = std::make_unique<const CTestPattern>(setup.shape);
  std::lock_guard<std::mutex> control(m_ControlLock);
  {
    std::lock_guard<std::mutex> lock(m_Lock);
    if (m_hHolder != setup.handle) {
      Fail(kStatusInvalidState, "The channel is no longer open for acquisition.");
    }
    if (m_bFrames) {
      Fail(kStatusInvalidState, "The stream is already running.");
    }
    EndRun();
  }
  if (m_Thread.joinable()) {
    m_Thread.join();
  }
  {
    std::lock_guard<std::mutex> lock(m_Lock);
    if (m_hHolder != setup.handle) {
      Fail(kStatusInvalidState, "The channel is no longer open for acquisition.");
    }
    m_bRun = true;
    m_bFrames = true;
    m_bStopRendering = false;
    m_iTriggers = 0;
    m_iPulses = 0;
    m_iFilled = 0;
    m_iFramesFilled = 0;
  }
  try {
    m_Thread = std::thread([this, run = std::move(setup), picture = std::move(pattern)] { Run(run, *picture); });
  } catch (...) {
    std::lock_guard<std::mutex> lock(m_Lock);
    EndRun();
    m_iAnswered = m_iAsked;
    throw;
  }
}

void CStreamEngine::Stop() {
  std::lock_guard<std::mutex> lock(m_Lock);
  m_bFrames = false;
  m_bStopRendering = true;
  m_Changed.notify_all();
}

void CStreamEngine::Abort() {
  std::lock_guard<std::mutex> lock(m_Lock);
  EndRun();
}

void CStreamEngine::Release() {
  std::lock_guard<std::mutex> lock(m_Lock);
  m_iFilled -= m_iFilled > 0 ? 1 : 0;
}

void CStreamEngine::RaiseEvent() {
  std::unique_lock<std::mutex> lock(m_Lock);
  if (!m_bRun) {
    return;
  }
  ++m_iEvents;
  const uint64_t mine = ++m_iAsked;
  m_Changed.notify_all();
  if (m_ThreadId != std::this_thread::get_id()) {
    m_Changed.wait_for(lock, kLongestCallback, [this, mine] { return m_iAnswered >= mine; });
  }
}

void CStreamEngine::Expose() {
  std::lock_guard<std::mutex> lock(m_Lock);
  m_iTriggers = std::min(m_iTriggers + 1, kMostTriggers);
  m_Changed.notify_all();
}

void CStreamEngine::AddPulses(uint32_t count) {
  std::lock_guard<std::mutex> lock(m_Lock);
  m_iPulses += count;
  m_Changed.notify_all();
}

void CStreamEngine::Wake() {
  std::lock_guard<std::mutex> lock(m_Lock);
  ++m_iGeneration;
  m_Changed.notify_all();
}

uint32_t CStreamEngine::FramesFilled() const {
  std::lock_guard<std::mutex> lock(m_Lock);
  return m_iFramesFilled;
}

void CStreamEngine::Run(const StreamSetup &setup, const CTestPattern &pattern) {
  const auto callBack = [&](std::unique_lock<std::mutex> &lock, uint32_t events) {
    lock.unlock();
    setup.callback(setup.handle, events, setup.context);
    lock.lock();
  };
  const size_t count = setup.destinations.size();
  size_t slot = 0;
  uint64_t picture = 0;
  bool starving = false;
  Clock::time_point last = Clock::time_point::min();

  std::unique_lock<std::mutex> lock(m_Lock);
  m_ThreadId = std::this_thread::get_id();
  while (m_bRun) {
    if (m_iEvents > 0) {
      --m_iEvents;
      callBack(lock, 0);
      ++m_iAnswered;
      m_Changed.notify_all();
      continue;
    }
    if (!m_bFrames) {
      m_Changed.wait(lock, [this] { return !m_bRun || m_iEvents > 0; });
      continue;
    }

    const uint32_t generation = m_iGeneration;
    lock.unlock();
    const FrameTiming timing = m_Channel.Timing(setup);
    lock.lock();
    const auto interrupted = [&] { return !m_bRun || !m_bFrames || m_iEvents > 0 || m_iGeneration != generation; };
    const auto triggered = [&] {
      return timing.trigger == ETrigger::FreeRun || (timing.trigger == ETrigger::Software && m_iTriggers > 0) ||
             (timing.trigger == ETrigger::Pulses && m_iPulses > 0);
    };
    if (!triggered()) {
      m_Changed.wait(lock, [&] { return interrupted() || triggered(); });
    } else if (last != Clock::time_point::min() && Clock::now() < last + timing.period) {
      m_Changed.wait_until(lock, last + timing.period, interrupted);
    }
    const Clock::time_point now = Clock::now();
    if (interrupted() || !triggered() || (last != Clock::time_point::min() && now < last + timing.period)) {
      continue;
    }
    // A frame that comes late does not shift those behind it, unless it is late by a whole one.
    last = last == Clock::time_point::min() || now - last >= 2 * timing.period ? now : last + timing.period;
    m_iTriggers -= timing.trigger == ETrigger::Software ? 1 : 0;
    m_iPulses -= timing.trigger == ETrigger::Pulses ? 1 : 0;

    if (!m_Channel.TakeFrame()) {
      continue;
    }
    ++picture;
    if (m_iFilled == count && timing.blocking) {
      // The frame is lost. One report for each time that the destinations ran out, not for each frame.
      const bool report = !starving && (timing.eventMask & GRB_EVENT_FIFO_OVERFLOW) != 0;
      starving = true;
      if (report) {
        callBack(lock, GRB_EVENT_FIFO_OVERFLOW);
      }
      continue;
    }
    starving = false;
    lock.unlock();
    const PatternTarget target{setup.destinations[slot], setup.lineBytes, setup.lines, setup.offsetX, setup.offsetY};
    const bool rendered = pattern.Render(target, picture, timing.pattern, m_bStopRendering);
    lock.lock();
    if (!rendered || !m_bFrames) {
      continue;
    }
    slot = (slot + 1) % count;
    m_iFilled = std::min(m_iFilled + 1, count);
    ++m_iFramesFilled;
    callBack(lock, GRB_EVENT_BUFFER_READY);
  }
  // The identity may be given to another thread once this one is joined.
  m_ThreadId = std::thread::id();
  m_iAnswered = m_iAsked;
  m_Changed.notify_all();
}

}  // namespace grbsim
