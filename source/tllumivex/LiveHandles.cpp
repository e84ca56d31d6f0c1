// SPDX-License-Identifier: MIT
#include "LiveHandles.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>

#include "TLIClient.h"

namespace GenICam::Client {

namespace {

/// One size of the set: open addressing, linear probing. Readers walk it while a writer changes it: an address never
/// moves within a table, and what has left only makes way for another.
struct Table {
  explicit Table(size_t nSize, std::unique_ptr<Table> pSmaller)
      : nMask(nSize - 1), pSlots(new std::atomic<const void *>[nSize]), pPrevious(std::move(pSmaller)) {
    for (size_t i = 0; i < nSize; ++i) {
      pSlots[i].store(nullptr, std::memory_order_relaxed);
    }
  }

  const size_t nMask;
  std::unique_ptr<std::atomic<const void *>[]> pSlots;
  size_t nLive = 0;
  /// A reader may still walk the smaller one; together they are not larger than this one.
  std::unique_ptr<Table> pPrevious;
};

constexpr size_t kFirstSize = 64;

/// Marks a slot whose address has left: a probe goes on behind it.
const char g_Gone = 0;
const void *const kGone = &g_Gone;

// Trivially destroyed: an object that outlives the owner of the tables finds none and is left alone.
std::atomic<Table *> g_pTable{nullptr};
std::mutex g_Lock;  // Not of Boost: this one can be locked also while the process ends.

struct Owner {
  ~Owner() {
    if (!MayBeInUseAtTheEnd()) {
      delete g_pTable.exchange(nullptr);
    }
  }
} g_Owner;

size_t Hash(const void *pHandle) {
  // Objects are aligned: the low bits say nothing.
  const auto nAddress = static_cast<uint64_t>(reinterpret_cast<uintptr_t>(pHandle)) >> 4U;
  return static_cast<size_t>((nAddress * 0x9E3779B97F4A7C15ULL) >> 32U);
}

void Put(Table &table, const void *pHandle) {
  for (size_t i = Hash(pHandle);; ++i) {
    std::atomic<const void *> &slot = table.pSlots[i & table.nMask];
    const void *pFound = slot.load(std::memory_order_relaxed);
    if (pFound == nullptr || pFound == kGone) {
      slot.store(pHandle, std::memory_order_release);
      ++table.nLive;
      return;
    }
  }
}

std::atomic<const void *> *Find(const Table &table, const void *pHandle) {
  for (size_t nProbe = 0; nProbe <= table.nMask; ++nProbe) {
    std::atomic<const void *> &slot = table.pSlots[(Hash(pHandle) + nProbe) & table.nMask];
    const void *pFound = slot.load(std::memory_order_acquire);
    if (pFound == pHandle) {
      return &slot;
    }
    if (pFound == nullptr) {
      return nullptr;
    }
  }
  return nullptr;
}

/// A table of twice the size with the same addresses.
Table *Grow(Table *pTable) {
  auto pLarger = std::make_unique<Table>(2 * (pTable->nMask + 1), nullptr);
  for (size_t i = 0; i <= pTable->nMask; ++i) {
    const void *pHandle = pTable->pSlots[i].load(std::memory_order_relaxed);
    if (pHandle != nullptr && pHandle != kGone) {
      Put(*pLarger, pHandle);
    }
  }
  pLarger->pPrevious.reset(pTable);
  return pLarger.release();
}

}  // namespace

void CLiveHandles::Enter(const void *pHandle) {
  const std::lock_guard<std::mutex> guard(g_Lock);
  Table *pTable = g_pTable.load(std::memory_order_relaxed);
  if (pTable == nullptr) {
    pTable = new Table(kFirstSize, nullptr);
    g_pTable.store(pTable, std::memory_order_release);
  } else if (2 * pTable->nLive > pTable->nMask) {
    pTable = Grow(pTable);
    g_pTable.store(pTable, std::memory_order_release);
  }
  Put(*pTable, pHandle);
}

void CLiveHandles::Leave(const void *pHandle) noexcept {
  if (g_pTable.load(std::memory_order_acquire) == nullptr) {
    return;
  }
  const std::lock_guard<std::mutex> guard(g_Lock);
  Table *pTable = g_pTable.load(std::memory_order_relaxed);
  std::atomic<const void *> *pSlot = Find(*pTable, pHandle);
  if (pSlot != nullptr) {
    pSlot->store(kGone, std::memory_order_release);
    --pTable->nLive;
  }
}

bool CLiveHandles::IsLive(const void *pHandle) noexcept {
  const Table *pTable = g_pTable.load(std::memory_order_acquire);
  return pHandle != nullptr && pTable != nullptr && Find(*pTable, pHandle) != nullptr;
}

}  // namespace GenICam::Client
