// SPDX-License-Identifier: MIT
#pragma once

/// \file
/// Names and words for the numbers of the GenTL interface. All are pure functions.

#include <string>

#include "FunctionTable.h"

namespace Lumivex::Consumer {

/// "GC_ERR_TIMEOUT"; for a code that GenTL does not name, "custom error" or "unknown error".
std::string ErrorName(GenTL::GC_ERROR code);

/// "read/write", "read only", "busy" or "unknown".
std::string AccessStatusText(GenTL::DEVICE_ACCESS_STATUS status);

}  // namespace Lumivex::Consumer
