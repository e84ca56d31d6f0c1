// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

namespace GenICam::Client {

class CBufferInfo;

/// The memory of all announced CBufferInfo objects. It stays until the library is unloaded, so that the handle of a
/// revoked buffer can be looked at without harm, and a buffer is found in a few comparisons, however many there are.
///
/// Process-wide; CBufferInfo takes its memory from here by operator new. A handle of a buffer that was announced in the
/// place of a revoked one cannot be told apart.
/// Threads: any. Locks: one of its own for taking and giving back; finding takes none.
class CBufferPool {
 public:
  CBufferPool() = delete;

  /// Memory for one buffer. @throws std::bad_alloc
  static void *Take();
  static void GiveBack(void *pMemory) noexcept;

  /// From here on, and until it is withdrawn, a constructed buffer can be found. One whose memory is not from here is
  /// left alone.
  static void Publish(CBufferInfo *pBuffer) noexcept;
  static void Withdraw(CBufferInfo *pBuffer) noexcept;

  /// The announced buffer with that handle, or null.
  static CBufferInfo *Find(void *pHandle) noexcept;
};

}  // namespace GenICam::Client
