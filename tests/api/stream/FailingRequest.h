// SPDX-License-Identifier: MIT
#pragma once

namespace StreamTests {

/// While one lives, the next requests of an object or array that its thread makes fail, so many: std::bad_alloc. The
/// program's operators are those of all its libraries, the loaded Producer included.
class CFailingRequest {
 public:
  explicit CFailingRequest(unsigned requests = 1);
  ~CFailingRequest();
  CFailingRequest(const CFailingRequest &) = delete;
  CFailingRequest &operator=(const CFailingRequest &) = delete;
  bool Happened() const;  ///< whether all of them have failed
};

}  // namespace StreamTests
