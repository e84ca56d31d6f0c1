// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <unordered_map>
#include <utility>

#include <boost/thread/lock_guard.hpp>
#include <boost/thread/mutex.hpp>
#include <boost/thread/tss.hpp>

#include "Platform.h"

namespace GenICam::Client {

/// One object of a kind per thread, made at the thread's first use and deleted when the thread ends, or when the
/// library is unloaded, whichever comes first.
///
/// A process-wide object. The thread-specific pointer finds a thread's object and has no clean-up of its own: that
/// would be called by the thread library at the end of a thread, also after this code is gone.
/// Threads: any. Locks: one around the set of all objects, taken at the first use on a thread and at its end.
template <class Object>
class CPerThread {
 public:
  CPerThread() : m_pObject(nullptr), m_AtThreadEnd(&CPerThread::OnThreadEnd) { s_pThis = this; }
  CPerThread(const CPerThread &) = delete;
  CPerThread &operator=(const CPerThread &) = delete;

  /// The calling thread's object; make gives a new one at the first use.
  template <class Make>
  Object &Get(Make make) {
    Object *pObject = m_pObject.get();
    return pObject != nullptr ? *pObject : Add(make());
  }

 private:
  Object &Add(std::unique_ptr<Object> pNew) {
    Object *pObject = pNew.get();
    {
      const boost::lock_guard<boost::mutex> guard(m_Lock);
      m_Objects.emplace(pObject, std::move(pNew));
    }
    m_AtThreadEnd.Set(pObject);
    m_pObject.reset(pObject);
    return *pObject;
  }

  static void OnThreadEnd(void *pObject) {
    s_pThis->m_pObject.release();
    const boost::lock_guard<boost::mutex> guard(s_pThis->m_Lock);
    s_pThis->m_Objects.erase(pObject);
  }

  inline static CPerThread *s_pThis = nullptr;

  boost::mutex m_Lock;
  std::unordered_map<void *, std::unique_ptr<Object>> m_Objects;
  boost::thread_specific_ptr<Object> m_pObject;
  // Last, so that no thread's end is told any more once the rest goes.
  Lumivex::Platform::CThreadEndHook m_AtThreadEnd;
};

}  // namespace GenICam::Client
