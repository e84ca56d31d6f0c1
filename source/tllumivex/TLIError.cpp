// SPDX-License-Identifier: MIT
#include "TLIError.h"

#include <cstring>
#include <memory>

#include "PerThread.h"
#include "Platform.h"
#include "TLIException.h"

namespace GenICam::Client {

namespace {

CPerThread<CTLIError> g_TLIErrors;

}  // namespace

CTLIError::CTLIError(uint32_t nThreadId) : m_iCode(GC_ERR_SUCCESS), m_nThreadId(nThreadId) {}

void CTLIError::SetErrTxt(GC_ERROR iErrorCode, const char *pText) {
  m_strText.assign(pText);
  m_iCode = iErrorCode;
}

void CTLIError::GetErrTxt(GC_ERROR *piErrorCode, char *sErrText, size_t *piSize) const {
  if (piSize == nullptr) {
    throw invalidparameter_error("Null pointer for size of error string.", LVX_HERE);
  }
  const size_t nNeeded = m_strText.size() + 1;
  if (sErrText != nullptr) {
    if (*piSize < nNeeded) {
      // Kept: this failure replaces the error that the caller wanted to read.
      throw invalidbuffer_error("Size of buffer is too small to contain error messsage.", LVX_HERE);
    }
    std::memcpy(sErrText, m_strText.c_str(), nNeeded);
  }
  *piSize = nNeeded;
  *piErrorCode = m_iCode;
}

CTLIError &GetTLIError() {
  return g_TLIErrors.Get([] { return std::make_unique<CTLIError>(Lumivex::Platform::CurrentThreadId()); });
}

}  // namespace GenICam::Client
