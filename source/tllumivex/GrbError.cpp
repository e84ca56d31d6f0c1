// SPDX-License-Identifier: MIT
#include "GrbError.h"

#include <memory>
#include <system_error>

#include "PerThread.h"

namespace GenICam::Client {

namespace {

CPerThread<CGrbError> g_GrbErrors;

}  // namespace

std::string CGrbError::GetText() {
  try {
    return Get().m_strText;
  } catch (const std::system_error &) {
    // The failure that the text belongs to is told all the same.
    return {};
  }
}

CGrbError &CGrbError::Get() {
  return g_GrbErrors.Get([] { return std::make_unique<CGrbError>(); });
}

}  // namespace GenICam::Client
