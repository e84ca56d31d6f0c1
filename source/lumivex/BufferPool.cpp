// SPDX-License-Identifier: MIT
#include "BufferPool.h"

#include <algorithm>
#include <new>
#include <utility>

namespace Lumivex::Consumer {
namespace {

// A page: what image DMA likes best, and more than Producers ask for.
constexpr std::size_t kMinimumAlignment = 4096;

std::size_t Alignment(std::size_t wish) {
  const bool powerOfTwo = (wish & (wish - 1)) == 0;
  return powerOfTwo ? std::max(wish, kMinimumAlignment) : kMinimumAlignment;
}

}  // namespace

CBufferPool::CBufferPool(const CDataStream &stream, std::size_t count, std::size_t bufferSize) : m_Stream(stream) {
  const CProducer &producer = stream.Producer();
  const std::size_t alignment = Alignment(stream.BufferAlignment());
  m_Buffers.reserve(count);
  try {
    for (std::size_t i = 0; i < count; ++i) {
      // Fresh zeros cost nothing until they are used: buffers that the run never comes to stay cheap.
      std::size_t room = bufferSize + alignment;
      Buffer buffer{std::unique_ptr<void, Free>(std::calloc(room, 1)), GENTL_INVALID_HANDLE};
      void *pAligned = buffer.pMemory.get();
      if (pAligned == nullptr || std::align(alignment, bufferSize, pAligned, room) == nullptr) {
        throw std::bad_alloc();
      }
      producer.Call(producer.Api().DSAnnounceBuffer, stream.Handle(), pAligned, bufferSize, nullptr, &buffer.handle);
      m_Buffers.push_back(std::move(buffer));
      Queue(m_Buffers.back().handle);
    }
  } catch (...) {
    RevokeAll();
    throw;
  }
}

CBufferPool::~CBufferPool() { RevokeAll(); }

void CBufferPool::Queue(GenTL::BUFFER_HANDLE hBuffer) const {
  m_Stream.Producer().Call(m_Stream.Producer().Api().DSQueueBuffer, m_Stream.Handle(), hBuffer);
}

void CBufferPool::RevokeAll() noexcept {
  const FunctionTable &api = m_Stream.Producer().Api();
  api.DSFlushQueue.address(m_Stream.Handle(), GenTL::ACQ_QUEUE_ALL_DISCARD);
  for (const Buffer &buffer : m_Buffers) {
    api.DSRevokeBuffer.address(m_Stream.Handle(), buffer.handle, nullptr, nullptr);
  }
}

}  // namespace Lumivex::Consumer
