// SPDX-License-Identifier: MIT
#pragma once

namespace GenICam::Client {

/// The addresses of all objects that a Consumer may hold a handle of, so that a closed handle can be told from an open
/// one before it is followed.
///
/// Modules and event objects enter in their constructor and leave in their destructor. A handle of an object that has
/// come to life at the address of a closed one cannot be told apart.
/// Threads: any. Locks: one of its own for entering and leaving; asking takes none.
class CLiveHandles {
 public:
  CLiveHandles() = delete;

  static void Enter(const void *pHandle);
  static void Leave(const void *pHandle) noexcept;
  static bool IsLive(const void *pHandle) noexcept;
};

}  // namespace GenICam::Client
