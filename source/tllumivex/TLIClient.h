// SPDX-License-Identifier: MIT
/// @file
/// The exported face of the Producer: 52 functions, each one frame around a module operation. The state of the process
/// is here, too: whether the library is initialised, and the one System module. It has no lock: initialising, opening
/// and closing are expected from one thread at a time.
#pragma once

#include "GenTL.h"
#include "ICommonBase.h"

namespace GenICam::Client {

/// Whether GCInitLib has been called, and GCCloseLib not.
bool IsLibraryInitialised() noexcept;

/// Whether threads may be in the exports while the library's own objects end: not when it is unloaded or was closed.
bool MayBeInUseAtTheEnd() noexcept;

/// @throws notinitialized_error
void ThrowIfLibraryNotInitialised();

/// @throws invalidhandle_error
void ThrowIfTLNotOpened();

/// The object behind a handle, once the library is initialised and a System module exists.
/// @throws notinitialized_error, invalidhandle_error
template <class T>
T &Opened(void *pHandle) {
  ThrowIfLibraryNotInitialised();
  ThrowIfTLNotOpened();
  return *TypeCast<T>(pHandle);
}

/// Turns the exception in flight into a code and keeps both for the calling thread.
GC_ERROR RecordCurrentException() noexcept;

/// Runs a body; a failure becomes a code and a text.
template <class Body>
GC_ERROR GuardedCall(const Body &body) noexcept {
  try {
    body();
    return GC_ERR_SUCCESS;
  } catch (...) {
    return RecordCurrentException();
  }
}

/// Stores the success text. @return GC_ERR_SUCCESS
GC_ERROR RecordSuccess() noexcept;

/// The frame of every export but GCGetLastError.
template <class Body>
GC_ERROR ApiCall(const Body &body) noexcept {
  const GC_ERROR result = GuardedCall(body);
  return result == GC_ERR_SUCCESS ? RecordSuccess() : result;
}

}  // namespace GenICam::Client
