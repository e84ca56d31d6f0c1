// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <memory>
#include <unordered_map>
#include <utility>

#include <boost/thread/lock_guard.hpp>
#include <boost/thread/mutex.hpp>

#include "Platform.h"

namespace GenICam::Client {

/// One object of a kind per thread, made at the thread's first use and deleted when the thread ends, or when the
/// library is unloaded, whichever comes first.
///
/// A process-wide object. Not a thread-specific pointer of Boost: that one is cleaned up by code of ours, which may be
/// gone when a thread ends, and is found by its address, which a reloaded library has again.
/// Threads: any. Locks: one around the set of all objects, taken at the first use on a thread and at its end.
template <class Object>
class CPerThread {
 public:
  CPerThread() : m_pSlot(new Lumivex::Platform::CThreadSlot(&CPerThread::OnThreadEnd)) { s_pThis = this; }
  CPerThread(const CPerThread &) = delete;
  CPerThread &operator=(const CPerThread &) = delete;
  ~CPerThread() {
    m_pSlot.reset();
    // No further thread's end is told; those that are on their way in have to be out again.
    while (s_nInside != 0) {
      Lumivex::Platform::SleepMilliseconds(1);
    }
  }

  /// The calling thread's object; make gives a new one at the first use.
  template <class Make>
  Object &Get(Make make) {
    auto *pObject = static_cast<Object *>(m_pSlot->Get());
    return pObject != nullptr ? *pObject : Add(make());
  }

 private:
  class CInside {
   public:
    CInside() { ++s_nInside; }
    CInside(const CInside &) = delete;
    CInside &operator=(const CInside &) = delete;
    ~CInside() { --s_nInside; }
  };

  Object &Add(std::unique_ptr<Object> pNew) {
    Object *pObject = pNew.get();
    const boost::lock_guard<boost::mutex> guard(m_Lock);
    m_Objects.emplace(pObject, std::move(pNew));
    try {
      m_pSlot->Set(pObject);
    } catch (...) {
      m_Objects.erase(pObject);
      throw;
    }
    return *pObject;
  }

  static void OnThreadEnd(void *pObject) {
    const CInside inside;
    const boost::lock_guard<boost::mutex> guard(s_pThis->m_Lock);
    s_pThis->m_Objects.erase(pObject);
  }

  inline static CPerThread *s_pThis = nullptr;
  inline static std::atomic<int> s_nInside{0};

  boost::mutex m_Lock;
  std::unordered_map<void *, std::unique_ptr<Object>> m_Objects;
  std::unique_ptr<Lumivex::Platform::CThreadSlot> m_pSlot;
};

}  // namespace GenICam::Client
