// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

namespace StreamTests {

/// Counts the heap requests that the calling thread makes in any code of the process, the loaded Producer included.
size_t HeapRequestsOfThisThread();

/// While one lives, the next request of an object or array that its thread makes fails, once: std::bad_alloc.
class CFailingRequest {
 public:
  CFailingRequest();
  ~CFailingRequest();
  CFailingRequest(const CFailingRequest &) = delete;
  CFailingRequest &operator=(const CFailingRequest &) = delete;
  bool Happened() const;
};

}  // namespace StreamTests
