// SPDX-License-Identifier: MIT
#include "GrbError.h"

#include <boost/thread/tss.hpp>

namespace GenICam::Client {

namespace {

boost::thread_specific_ptr<CGrbError> g_pGrbError;

}  // namespace

CGrbError &CGrbError::Get() {
  if (g_pGrbError.get() == nullptr) {
    g_pGrbError.reset(new CGrbError());
  }
  return *g_pGrbError;
}

}  // namespace GenICam::Client
