// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>

#include "GenTL.h"

namespace GenICam::Client {

/// The last-error record of one thread: what GCGetLastError tells it.
///
/// Owned by a process-wide CPerThread: made at the thread's first call, deleted when the thread ends. Each export
/// replaces it, on success too, but for a GCGetLastError that succeeds.
/// Only its own thread touches it; takes no lock. Independent of GCInitLib and GCCloseLib.
class CTLIError {
 public:
  explicit CTLIError(uint32_t nThreadId);

  /// Stores code and text.
  void SetErrTxt(GC_ERROR iErrorCode, const char *pText);

  /// Copies text and code out. sErrText may be null: then only the size is told.
  /// @param piSize in: bytes of sErrText, out: bytes of the text with its terminator; unchanged if it does not fit
  /// @throws invalidparameter_error, invalidbuffer_error
  void GetErrTxt(GC_ERROR *piErrorCode, char *sErrText, size_t *piSize) const;

 private:
  std::string m_strText;
  GC_ERROR m_iCode;
  [[maybe_unused]] const uint32_t m_nThreadId;  // Kept: written once, read by nothing.
};

/// The calling thread's record.
CTLIError &GetTLIError();

}  // namespace GenICam::Client
