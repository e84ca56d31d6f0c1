// SPDX-License-Identifier: MIT
#include "GrbError.h"

#include <memory>

#include "PerThread.h"

namespace GenICam::Client {

namespace {

CPerThread<CGrbError> g_GrbErrors;

}  // namespace

CGrbError &CGrbError::Get() {
  return g_GrbErrors.Get([] { return std::make_unique<CGrbError>(); });
}

}  // namespace GenICam::Client
