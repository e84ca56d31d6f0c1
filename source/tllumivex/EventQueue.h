// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include <boost/thread/condition_variable.hpp>
#include <boost/thread/locks.hpp>
#include <boost/thread/recursive_mutex.hpp>

#include "Helper.h"
#include "ICommonBase.h"
#include "Platform.h"
#include "TLIException.h"
#include "Wait.h"

namespace GenICam::Client {

/// An event object with a bounded queue: whoever has something to report puts it in without waiting, a Consumer thread
/// takes it out.
///
/// Made disabled with its event source, and owned by it. A report that comes while the event is disabled or the queue
/// full is gone without a trace. An Entry knows kMaxEventSize, kMaxDataSize and ToBuf.
/// Threads: any, the library's callback thread included. Locks: m_QueueLock, around the queue only; AddEvent notifies
/// behind it.
/// Throws invalidhandle_error while disabled, abort_error once after Kill.
template <class Entry>
class CEventQueue : public IEventObj {
 public:
  CEventQueue(int32_t iEventType, uint64_t iMaxQueued)
      : IEventObj(iEventType), m_bEnabled(false), m_bKilled(false), m_iNumFired(0), m_iMaxQueued(iMaxQueued) {}

  bool GetData(void *pBuffer, size_t *piSize, uint64_t iTimeout) override {
    RequireEnabled(LVX_HERE);
    RequirePointer(piSize, "Null parameter iSize.", LVX_HERE);
    Lock lock(m_QueueLock);
    if (!IsWaitOver() && m_iNumQueued == 0 && !WaitOnce(m_QueueCondition, lock, iTimeout, m_Waiters)) {
      return false;
    }
    if (IsWaitOver()) {
      m_bKilled = false;
      throw abort_error("Wait terminated", LVX_HERE);
    }
    if (m_iNumQueued == 0) {
      throw unknown_error(" Empty event queue but signaled.", LVX_HERE);
    }
    if (pBuffer == nullptr || *piSize == 0) {
      // Kept: to the Consumer a size query looks like a timeout.
      *piSize = Entry::kMaxDataSize;
      return false;
    }
    if (*piSize < Entry::kMaxDataSize) {
      throw invalidparameter_error("Buffer too small.", LVX_HERE);
    }
    m_Q[m_iFront].ToBuf(pBuffer, piSize);
    m_iFront = (m_iFront + 1) % m_Q.size();
    --m_iNumQueued;
    return true;
  }

  void GetInfo(EVENT_INFO_CMD iInfoCmd, INFO_DATATYPE *piType, void *pBuffer, size_t *piSize) override {
    RequireEnabled(LVX_HERE);
    switch (iInfoCmd) {
      case EVENT_EVENT_TYPE:
        return SetReturnParam(pBuffer, piSize, piType, m_iEventType);
      case EVENT_NUM_IN_QUEUE:
        return SetReturnParamSize_t(pBuffer, piSize, piType, m_iNumQueued.load());
      case EVENT_NUM_FIRED:
        return SetReturnParam(pBuffer, piSize, piType, m_iNumFired.load());
      case EVENT_SIZE_MAX:
        return SetReturnParamSize_t(pBuffer, piSize, piType, Entry::kMaxEventSize);
      case EVENT_INFO_DATA_SIZE_MAX:
        return SetReturnParamSize_t(pBuffer, piSize, piType, Entry::kMaxDataSize);
      default:
        throw invalidparameter_error(FormatMessageText("Invalid EVENT_INFO_CMD 0x%08X.", iInfoCmd), LVX_HERE);
    }
  }

  void GetDataInfo(const void *, size_t, EVENT_DATA_INFO_CMD iInfoCmd, INFO_DATATYPE *, void *, size_t *) override {
    RequireEnabled(LVX_HERE);
    const std::string strText = FormatMessageText("Invalid EVENT_DATA_INFO_CMD Command %08X", iInfoCmd);
    if (iInfoCmd == EVENT_DATA_ID || iInfoCmd == EVENT_DATA_VALUE || iInfoCmd == EVENT_DATA_NUMID) {
      throw notimplemented_error(strText, LVX_HERE);
    }
    throw invalidparameter_error(strText, LVX_HERE);
  }

  void Flush() override {
    RequireEnabled(LVX_HERE);
    const Lock lock(m_QueueLock);
    m_iNumQueued = 0;
  }

  void Kill() override {
    RequireEnabled(LVX_HERE);
    m_bKilled = true;
    const Lock lock(m_QueueLock);
    NotifyAll(m_QueueCondition, m_Waiters);
  }

  /// Takes a report in. Never waits for the Consumer.
  virtual void AddEvent(const Entry &entry) {
    Append([&entry](Entry &place) { place = entry; });
  }

  /// @throws resourceinuse_error
  virtual void EnableEvent() {
    if (m_bEnabled.exchange(true)) {
      throw resourceinuse_error("Event already enabled.", LVX_HERE);
    }
  }

  /// What is queued stays, for a later enabling.
  virtual void DisableEvent() { m_bEnabled = false; }

  /// For the owner's close: sends home whoever still waits here, and stays until all are out. Nobody waits afterwards.
  void EndAllWaits() {
    Lock lock(m_QueueLock);
    EndWaits(m_QueueCondition, lock, m_Waiters);
  }

 protected:
  /// Takes a report in that fill writes into its place. One for which there is no memory is lost, as in a full queue:
  /// whoever reports must not fail for it.
  template <class Fill>
  void Append(const Fill &fill) {
    if (!m_bEnabled) {
      return;
    }
    bool bNotify = false;
    {
      const Lock lock(m_QueueLock);
      if (m_iNumQueued >= m_iMaxQueued) {
        return;
      }
      try {
        if (m_iNumQueued == m_Q.size()) {
          Grow();
        }
        fill(m_Q[(m_iFront + m_iNumQueued) % m_Q.size()]);
      } catch (...) {
        return;
      }
      ++m_iNumQueued;
      ++m_iNumFired;
      bNotify = m_Waiters.TakeNotice();
    }
    if (bNotify) {
      m_QueueCondition.notify_all();
    }
  }

 private:
  using Lock = boost::unique_lock<boost::recursive_mutex>;

  void RequireEnabled(const char *pFunction, const char *pFile, uint32_t nLine) const {
    if (!m_bEnabled) {
      throw invalidhandle_error("Event is not enabled.", pFunction, pFile, nLine);
    }
  }

  bool IsWaitOver() const { return m_bKilled || m_Waiters.bEnding; }

  /// The ring is full: a larger one begins with the oldest.
  void Grow() {
    std::vector<Entry> larger(m_Q.empty() ? kFirstSize : 2 * m_Q.size());
    for (size_t i = 0; i < m_Q.size(); ++i) {
      larger[i] = m_Q[(m_iFront + i) % m_Q.size()];
    }
    m_Q.swap(larger);
    m_iFront = 0;
  }

  static constexpr size_t kFirstSize = 16;

  boost::recursive_mutex m_QueueLock;
  boost::condition_variable_any m_QueueCondition;
  Waiters m_Waiters;
  // Guarded by m_QueueLock. A ring that only grows, whose entries keep their storage: a report in steady state asks the
  // heap for nothing.
  std::vector<Entry> m_Q;
  size_t m_iFront = 0;
  // Atomic for the query that reads it without the lock.
  std::atomic<size_t> m_iNumQueued{0};
  // Stand alone: no two of them have to agree.
  std::atomic<bool> m_bEnabled;
  std::atomic<bool> m_bKilled;
  std::atomic<uint64_t> m_iNumFired;
  const uint64_t m_iMaxQueued;
};

}  // namespace GenICam::Client
