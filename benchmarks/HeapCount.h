// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

namespace Benchmarks {

/// Requests to the heap by this thread, of whatever library, since it began.
size_t HeapRequests();

}  // namespace Benchmarks
