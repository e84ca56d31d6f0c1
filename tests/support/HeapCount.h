// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

namespace TestSupport {

/// Counts the heap requests that the calling thread makes in any code of the process, the loaded Producer included. Of
/// use in the one program that its source is a part of: it brings allocation functions of its own.
size_t HeapRequestsOfThisThread();

}  // namespace TestSupport
