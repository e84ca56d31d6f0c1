// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdlib>
#include <memory>
#include <vector>

#include "DataStream.h"

namespace Lumivex::Consumer {

/// The buffers of one stream: their memory, their announcement and their way into the queue.
///
/// Ownership: made by CGrabber; dies after the acquisition and before the stream. The constructor announces and queues
/// all of them, the destructor flushes and revokes them, then the memory goes.
/// Threads: one; the Producer writes into the memory on threads of its own. Throws CGenTLError, std::bad_alloc.
class CBufferPool {
 public:
  CBufferPool(const CDataStream &stream, std::size_t count, std::size_t bufferSize);
  CBufferPool(const CBufferPool &) = delete;
  CBufferPool &operator=(const CBufferPool &) = delete;
  ~CBufferPool();

  /// Gives a buffer back to be filled again.
  void Queue(GenTL::BUFFER_HANDLE hBuffer) const;

 private:
  struct Free {
    void operator()(void *pMemory) const noexcept { std::free(pMemory); }
  };
  struct Buffer {
    std::unique_ptr<void, Free> pMemory;
    GenTL::BUFFER_HANDLE handle;
  };

  void RevokeAll() noexcept;

  const CDataStream &m_Stream;
  std::vector<Buffer> m_Buffers;
};

}  // namespace Lumivex::Consumer
