// SPDX-License-Identifier: MIT
#include "BufferPool.h"

#include <array>
#include <atomic>
#include <cstdint>
#include <memory>
#include <vector>

#include <boost/thread/lock_guard.hpp>
#include <boost/thread/mutex.hpp>

#include "BufferInfo.h"
#include "TLIClient.h"

namespace GenICam::Client {

namespace {

struct Slot {
  alignas(CBufferInfo) unsigned char memory[sizeof(CBufferInfo)];
  std::atomic<bool> bPublished{false};
};

/// Slabs double in size; none is ever given up or moved.
constexpr size_t kFirstSlab = 64;
constexpr size_t kSlabs = 32;

struct Slab {
  std::unique_ptr<Slot[]> pSlots;
  std::atomic<uintptr_t> nBegin{0};
  std::atomic<uintptr_t> nEnd{0};
};

struct Pool {
  std::array<Slab, kSlabs> slabs;
  std::atomic<size_t> nSlabs{0};
  // Guarded by the lock.
  boost::mutex lock;
  std::vector<Slot *> free;
};

/// Gone at the end, unless there may be threads in here.
struct Owner {
  Owner() : pPool(new Pool()) {}
  Owner(const Owner &) = delete;
  Owner &operator=(const Owner &) = delete;
  ~Owner() {
    if (!MayBeInUseAtTheEnd()) {
      delete pPool;
    }
  }
  Pool *const pPool;
} g_Owner;

Pool &ThePool() { return *g_Owner.pPool; }

/// The slot that an address lies in, or null.
Slot *SlotOf(const void *pAddress) {
  Pool &pool = ThePool();
  const auto nAddress = reinterpret_cast<uintptr_t>(pAddress);
  // The largest slab is the last one, and holds half of all buffers.
  for (size_t i = pool.nSlabs.load(std::memory_order_acquire); i > 0; --i) {
    Slab &slab = pool.slabs[i - 1];
    const uintptr_t nBegin = slab.nBegin.load(std::memory_order_relaxed);
    if (nAddress >= nBegin && nAddress < slab.nEnd.load(std::memory_order_relaxed)) {
      return &slab.pSlots[(nAddress - nBegin) / sizeof(Slot)];
    }
  }
  return nullptr;
}

void AddSlab(Pool &pool) {
  const size_t nSlab = pool.nSlabs.load(std::memory_order_relaxed);
  if (nSlab == kSlabs) {
    throw std::bad_alloc();
  }
  const size_t nSlots = kFirstSlab << nSlab;
  Slab &slab = pool.slabs[nSlab];
  slab.pSlots = std::make_unique<Slot[]>(nSlots);
  pool.free.reserve(pool.free.size() + 2 * nSlots);
  for (size_t i = nSlots; i > 0; --i) {
    pool.free.push_back(&slab.pSlots[i - 1]);
  }
  slab.nBegin = reinterpret_cast<uintptr_t>(slab.pSlots.get());
  slab.nEnd = reinterpret_cast<uintptr_t>(slab.pSlots.get() + nSlots);
  pool.nSlabs.store(nSlab + 1, std::memory_order_release);
}

}  // namespace

void *CBufferPool::Take() {
  Pool &pool = ThePool();
  const boost::lock_guard<boost::mutex> guard(pool.lock);
  if (pool.free.empty()) {
    AddSlab(pool);
  }
  Slot *pSlot = pool.free.back();
  pool.free.pop_back();
  return pSlot->memory;
}

void CBufferPool::GiveBack(void *pMemory) noexcept {
  static_assert(offsetof(Slot, memory) == 0, "a slot begins with its memory");
  auto *pSlot = reinterpret_cast<Slot *>(pMemory);
  Pool &pool = ThePool();
  const boost::lock_guard<boost::mutex> guard(pool.lock);
  // Room for all slots was made when their slab came.
  pool.free.push_back(pSlot);
}

void CBufferPool::Publish(CBufferInfo *pBuffer) noexcept {
  Slot *pSlot = SlotOf(pBuffer);
  if (pSlot != nullptr) {
    pSlot->bPublished.store(true, std::memory_order_release);
  }
}

void CBufferPool::Withdraw(CBufferInfo *pBuffer) noexcept {
  Slot *pSlot = SlotOf(pBuffer);
  if (pSlot != nullptr) {
    pSlot->bPublished.store(false, std::memory_order_release);
  }
}

CBufferInfo *CBufferPool::Find(void *pHandle) noexcept {
  Slot *pSlot = SlotOf(pHandle);
  if (pSlot == nullptr || !pSlot->bPublished.load(std::memory_order_acquire)) {
    return nullptr;
  }
  auto *pBuffer = reinterpret_cast<CBufferInfo *>(pSlot->memory);
  return HandleOf(pBuffer) == pHandle ? pBuffer : nullptr;
}

}  // namespace GenICam::Client
