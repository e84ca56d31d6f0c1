// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <memory>
#include <system_error>
#include <unordered_map>
#include <utility>

#include <boost/thread/lock_guard.hpp>
#include <boost/thread/mutex.hpp>

#include "Platform.h"
#include "TLIClient.h"

namespace GenICam::Client {

/// One object of a kind per thread, made at the thread's first use and deleted when the thread ends, or when the
/// library is unloaded, whichever comes first.
///
/// A process-wide object. Not a thread-specific pointer of Boost: that one is cleaned up by code of ours, which may be
/// gone when a thread ends, and is found by its address, which a reloaded library has again. A process that ends while
/// the library is initialised leaves all objects: its other threads may still use theirs.
/// Threads: any. Locks: one around the set of all objects, taken at the first use on a thread and at its end.
template <class Object>
class CPerThread {
 public:
  CPerThread() { s_pState = new State(); }
  CPerThread(const CPerThread &) = delete;
  CPerThread &operator=(const CPerThread &) = delete;
  ~CPerThread() {
    s_pState.load()->slot.Close();
    State *pState = s_pState.exchange(nullptr);
    // No further thread's end is told; those that are in here have to be out again.
    while (s_nInside != 0) {
      Lumivex::Platform::SleepMilliseconds(1);
    }
    if (MayBeInUseAtTheEnd()) {
      s_pState = pState;
      return;
    }
    delete pState;
  }

  /// The calling thread's object; make gives a new one at the first use.
  /// @throws std::system_error behind the end of this object
  template <class Make>
  Object &Get(Make make) {
    State *pState = s_pState.load(std::memory_order_acquire);
    if (pState == nullptr) {
      throw std::system_error(std::make_error_code(std::errc::owner_dead));
    }
    auto *pObject = static_cast<Object *>(pState->slot.Get());
    return pObject != nullptr ? *pObject : Add(*pState, make());
  }

 private:
  struct State {
    boost::mutex lock;
    std::unordered_map<void *, std::unique_ptr<Object>> objects;
    Lumivex::Platform::CThreadSlot slot{&CPerThread::OnThreadEnd};
  };

  class CInside {
   public:
    CInside() { ++s_nInside; }
    CInside(const CInside &) = delete;
    CInside &operator=(const CInside &) = delete;
    ~CInside() { --s_nInside; }
  };

  static Object &Add(State &state, std::unique_ptr<Object> pNew) {
    Object *pObject = pNew.get();
    const boost::lock_guard<boost::mutex> guard(state.lock);
    state.objects.emplace(pObject, std::move(pNew));
    try {
      state.slot.Set(pObject);
    } catch (...) {
      state.objects.erase(pObject);
      throw;
    }
    return *pObject;
  }

  static void OnThreadEnd(void *pObject) {
    const CInside inside;
    State *pState = s_pState;
    if (pState != nullptr) {
      const boost::lock_guard<boost::mutex> guard(pState->lock);
      pState->objects.erase(pObject);
    }
  }

  inline static std::atomic<State *> s_pState{nullptr};
  inline static std::atomic<int> s_nInside{0};
};

}  // namespace GenICam::Client
