// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include <boost/thread/recursive_mutex.hpp>

#include "grblx64.h"

namespace GenICam::Client {

/// One handle of the frame-grabber library, for the whole of its life; statuses become exceptions here.
///
/// Abstract: the derived classes add what to open and how, and close in their destructors. Held by shared pointers or
/// on the stack of discovery.
/// Threads: any Consumer thread. Locks: m_Lock, in each operation but GetHandle and the destructor. Users of the raw
/// handle take no lock; the library bears that.
/// Throws unknown_error with the library's text; register transfers throw timeout_error or io_error.
class CGrbBaseHandle {
 public:
  /// @param bQuietErrors selects the hook that only records @throws unknown_error
  explicit CGrbBaseHandle(bool bQuietErrors);
  CGrbBaseHandle(const CGrbBaseHandle &) = delete;
  CGrbBaseHandle &operator=(const CGrbBaseHandle &) = delete;
  virtual ~CGrbBaseHandle();

  /// Whether the handle found what it was opened for.
  virtual bool IsValid() const = 0;

  /// Destroys the library handle and creates another, with the same hook.
  void RecreateHandle();
  /// Reads a 32-bit register of the grabber. The timeout is in the library's unit.
  void GrabberRead(uint32_t *pValue, uint32_t nAddress, uint32_t nTimeout);
  /// Writes a 32-bit register of the grabber.
  void GrabberWrite(uint32_t nValue, uint32_t nAddress, uint32_t nTimeout);
  /// Applies all cached parameters to the hardware.
  void FlushParameters();
  void ParameterGet(uint32_t nId, void *pValue);
  void ParameterSet(uint32_t nId, void *pValue);
  /// The raw handle.
  GRB_HANDLE GetHandle() const { return m_hGrbChannel; }

 protected:
  /// Sets the four open parameters and opens. @return the first status that is not GRB_OK
  GRB_STATUS SetParametersAndOpen(uint32_t nBoard, uint32_t nChannel, uint32_t nMode);
  /// GRB_Close, if there is a handle.
  GRB_STATUS CloseHandle();

  GRB_HANDLE m_hGrbChannel;
  const bool m_bQuietErrors;
  boost::recursive_mutex m_Lock;

 private:
  GRB_ERROR_HOOK Hook() const;
};

}  // namespace GenICam::Client
