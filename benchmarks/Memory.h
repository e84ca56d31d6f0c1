// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

namespace Benchmarks {

/// Bytes of this process' own memory that have been written: storage that is zero until used does not count.
size_t WrittenMemory();

}  // namespace Benchmarks
