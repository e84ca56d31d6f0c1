// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

namespace StreamTests {

/// Counts the heap requests that the calling thread makes in any code of the process, the loaded Producer included.
size_t HeapRequestsOfThisThread();

/// While one lives, the next requests of an object or array that its thread makes fail, so many: std::bad_alloc.
class CFailingRequest {
 public:
  explicit CFailingRequest(unsigned requests = 1);
  ~CFailingRequest();
  CFailingRequest(const CFailingRequest &) = delete;
  CFailingRequest &operator=(const CFailingRequest &) = delete;
  bool Happened() const;  ///< whether all of them have failed
};

}  // namespace StreamTests
