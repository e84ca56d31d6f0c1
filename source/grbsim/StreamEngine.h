// SPDX-License-Identifier: MIT
#ifndef GRBSIM_STREAMENGINE_H
#define GRBSIM_STREAMENGINE_H

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

#include "TestPattern.h"
#include "grblx64.h"

namespace grbsim {

class CSimChannel;

/// All that a run needs and that stays the same from its start to its end.
struct StreamSetup {
  GRB_HANDLE handle;
  GRB_EVENT_CALLBACK callback;
  void *context;
  std::vector<uint8_t *> destinations;
  size_t lineBytes;
  size_t lines;
  size_t offsetX;  // pixels
  size_t offsetY;  // lines
  PatternShape shape;
};

/// The image engine of one channel: one thread for each run, which fills destinations in list order and calls back.
///
/// Ownership: a CSimChannel owns it; a run's thread ends with ABORT, with the holder's close, or with the next start.
/// Threads:   any; every operation but Start may be called from within the callback.
/// Locks:     m_ControlLock, then m_Lock. The callback is entered with neither held; the callback thread never takes
///            m_ControlLock and is never joined by itself.
/// Throws:    CSimError from Start only.
class CStreamEngine {
 public:
  explicit CStreamEngine(CSimChannel &channel);
  ~CStreamEngine();
  CStreamEngine(const CStreamEngine &) = delete;
  CStreamEngine &operator=(const CStreamEngine &) = delete;

  /// The handle that may start runs from now on.
  void Open(GRB_HANDLE holder);
  /// Ends the run and the holder's rights. No callback is entered afterwards; one that runs is waited for, unless this
  /// is called from within it.
  void Close();

  /// Starts a run with all destinations free; joins the thread of the last one.
  void Start(StreamSetup setup);
  /// Ends the frames. The thread stays, for the last callback.
  void Stop();
  /// Ends the run and lets its thread end.
  void Abort();
  /// Frees the oldest filled destination; nothing if none is filled.
  void Release();
  /// One more callback with the event word 0, if a run has not been aborted. Returns behind it, unless called from
  /// within a callback: whoever then waits for it, and gives up soon, does not depend on how busy the machine is.
  void RaiseEvent();

  /// A software trigger; waits for the camera if that is busy.
  void Expose();
  /// Pulses of timer A1.
  void AddPulses(uint32_t count);
  /// Something that frames depend on has changed.
  void Wake();

  /// Frames filled in the current or the latest run.
  uint32_t FramesFilled() const;

 private:
  void Run(const StreamSetup &setup, const CTestPattern &pattern);
  bool IsCallbackThread() const;
  void EndRun();

  CSimChannel &m_Channel;
  std::mutex m_ControlLock;  // held across a join
  std::thread m_Thread;      // guarded by m_ControlLock
  mutable std::mutex m_Lock;
  std::condition_variable m_Changed;
  // Guarded by m_Lock, all below.
  std::thread::id m_ThreadId;
  GRB_HANDLE m_hHolder = 0;
  bool m_bRun = false;         // the thread is to go on
  bool m_bFrames = false;      // frames are wanted
  uint32_t m_iEvents = 0;      // callbacks to be raised
  uint64_t m_iAsked = 0;       // callbacks ever asked for
  uint64_t m_iAnswered = 0;    // of these: have returned, or will not come any more
  uint32_t m_iGeneration = 0;  // counts what Wake reports
  uint32_t m_iTriggers = 0;    // software triggers not yet served
  uint64_t m_iPulses = 0;      // pulses of timer A1 not yet served
  size_t m_iFilled = 0;        // destinations filled and not released
  uint32_t m_iFramesFilled = 0;
  // Read by the renderer between two lines, without a lock: it carries nothing but itself.
  std::atomic<bool> m_bStopRendering{false};
};

}  // namespace grbsim

#endif
