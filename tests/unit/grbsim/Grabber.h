// SPDX-License-Identifier: MIT
/// What the tests of the simulated library share: an owned handle, a record of callbacks, and a ready-made run.
#ifndef GRBSIM_TEST_GRABBER_H
#define GRBSIM_TEST_GRABBER_H

#include <condition_variable>
#include <cstdint>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "grblx64.h"

/// What the error hook told the calling thread last.
struct HookRecord {
  unsigned calls = 0;
  std::string function;
  GRB_STATUS status = GRB_OK;
  std::string text;
};
HookRecord &LastHook();
void ClearHook();

/// A handle that is closed and destroyed with its owner.
class CGrabber {
 public:
  CGrabber();
  /// Creates and opens; the status of the opening is in OpenStatus.
  CGrabber(uint32_t mode, uint32_t channel, uint32_t board = GRB_BOARD_1);
  ~CGrabber();
  CGrabber(const CGrabber &) = delete;
  CGrabber &operator=(const CGrabber &) = delete;

  GRB_STATUS Open(uint32_t mode, uint32_t channel, uint32_t board = GRB_BOARD_1);
  GRB_STATUS OpenStatus() const { return m_OpenStatus; }
  GRB_STATUS Close() { return GRB_Close(&m_hHandle); }
  GRB_HANDLE Handle() const { return m_hHandle; }

  GRB_STATUS Set(uint32_t identifier, uint32_t value) { return GRB_ParameterSet(m_hHandle, identifier, &value); }
  GRB_STATUS Set64(uint32_t identifier, uint64_t value) { return GRB_ParameterSet(m_hHandle, identifier, &value); }
  GRB_STATUS Flush() { return GRB_ParameterSet(m_hHandle, GRB_CACHE_FLUSH, nullptr); }
  /// Fails the test if the parameter cannot be read.
  uint32_t Get(uint32_t identifier) const;
  uint64_t Get64(uint32_t identifier) const;

  GRB_STATUS Read(uint32_t address, void *buffer, uint32_t &size, uint32_t timeout = 400);
  GRB_STATUS Write(uint32_t address, const void *buffer, uint32_t &size, uint32_t timeout = 400);
  /// A camera register of four bytes, in host order; fails the test if it cannot be read.
  uint32_t ReadWord(uint32_t address);
  GRB_STATUS WriteWord(uint32_t address, uint32_t value);

  GRB_STATUS Stream(uint32_t operation) { return GRB_StreamRead(m_hHandle, operation, nullptr); }

 private:
  GRB_HANDLE m_hHandle = 0;
  GRB_STATUS m_OpenStatus = GRB_OK;
};

/// Destinations, callback record and calls of one stream.
class CRun {
 public:
  struct Event {
    GRB_HANDLE handle;
    uint32_t word;
    std::thread::id thread;
    std::vector<uint8_t> firstLine;  // of the destination that this event fills; empty for other words
  };
  using Handler = std::function<void(CRun &, const Event &)>;

  /// Prepares `slots` destinations for the region of interest in effect. Guard bytes stand behind each.
  CRun(CGrabber &grabber, size_t slots);
  ~CRun();
  CRun(const CRun &) = delete;
  CRun &operator=(const CRun &) = delete;

  /// Called within each callback, after it is recorded.
  void OnEvent(Handler handler) { m_Handler = std::move(handler); }
  /// Sets the parameters of a start and flushes, without starting.
  void Prepare();
  GRB_STATUS Start();
  GRB_STATUS Restart();    // Start without setting anything
  GRB_STATUS StartOnly();  // the bare call, for several threads at once

  /// Waits until the condition holds for the events so far; false after a bound of ten seconds.
  bool WaitFor(const std::function<bool(const std::vector<Event> &)> &condition);
  bool WaitForFrames(size_t count);
  bool WaitForWord(uint32_t word, size_t count = 1);
  std::vector<Event> Events();
  size_t Count(uint32_t word);

  CGrabber &Grabber() { return m_Grabber; }
  std::vector<uint8_t> &Slot(size_t index) { return m_Slots.at(index); }
  size_t LineBytes() const { return m_iLineBytes; }
  size_t Lines() const { return m_iLines; }
  uint64_t *List() { return m_List.data(); }
  /// True if no byte behind a destination has been written.
  bool GuardsAreWhole() const;

 private:
  static void CallBack(GRB_HANDLE handle, uint32_t events, void *context);

  static constexpr size_t kGuardBytes = 64;
  static constexpr uint8_t kGuard = 0xA5;

  CGrabber &m_Grabber;
  size_t m_iLineBytes;
  size_t m_iLines;
  std::vector<std::vector<uint8_t>> m_Slots;
  std::vector<uint64_t> m_List;
  Handler m_Handler;
  std::mutex m_Lock;
  std::condition_variable m_Changed;
  size_t m_iNextSlot = 0;       // guarded by m_Lock
  std::vector<Event> m_Events;  // guarded by m_Lock
};

/// Makes the region of interest small, so that a frame costs little.
void UseSmallImage(CGrabber &grabber, uint32_t width = 64, uint32_t height = 8,
                   uint32_t usrFormat = GRB_USR_FORMAT_MONO8);

/// Stops as the contract says: stop, write the event mask, wait for the last callback, abort.
void StopCleanly(CRun &run);

#endif
