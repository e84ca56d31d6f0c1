// SPDX-License-Identifier: MIT
#include "BufferPool.h"

#include <atomic>
#include <cstddef>
#include <memory>
#include <set>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "BufferInfo.h"

namespace GenICam::Client {
namespace {

using Buffers = std::vector<std::unique_ptr<CBufferInfo>>;

Buffers Announce(size_t count) {
  Buffers buffers;
  for (size_t i = 0; i < count; ++i) {
    buffers.emplace_back(new CBufferInfo(size_t{1}, nullptr, true));
  }
  return buffers;
}

// Some hundreds of buffers fill several slabs.
TEST(BufferPool, EveryBufferIsFoundByItsHandle) {
  const Buffers buffers = Announce(1000);
  for (const auto &buffer : buffers) {
    ASSERT_EQ(buffer.get(), CBufferPool::Find(HandleOf(buffer.get())));
  }
}

TEST(BufferPool, RevokedOneIsNotFound) {
  Buffers buffers = Announce(3);
  void *handle = HandleOf(buffers[1].get());
  buffers[1].reset();
  EXPECT_EQ(nullptr, CBufferPool::Find(handle));
  EXPECT_EQ(buffers[0].get(), CBufferPool::Find(HandleOf(buffers[0].get())));
  EXPECT_EQ(buffers[2].get(), CBufferPool::Find(HandleOf(buffers[2].get())));
}

// Any other address of a buffer's memory, or of memory of one that is gone, is no handle.
TEST(BufferPool, WildAddressWithinABufferIsNotFound) {
  Buffers buffers = Announce(2);
  auto *begin = reinterpret_cast<unsigned char *>(buffers[0].get());
  size_t found = 0;
  for (size_t i = 0; i < sizeof(CBufferInfo); ++i) {
    found += CBufferPool::Find(begin + i) != nullptr ? 1U : 0U;
  }
  EXPECT_EQ(1U, found);
  buffers[0].reset();
  for (size_t i = 0; i < sizeof(CBufferInfo); ++i) {
    ASSERT_EQ(nullptr, CBufferPool::Find(begin + i)) << i;
  }
}

TEST(BufferPool, AddressFromElsewhereIsNotFound) {
  const Buffers buffers = Announce(1);
  int elsewhere = 0;
  EXPECT_EQ(nullptr, CBufferPool::Find(nullptr));
  EXPECT_EQ(nullptr, CBufferPool::Find(&elsewhere));
  EXPECT_EQ(nullptr, CBufferPool::Find(reinterpret_cast<void *>(~uintptr_t{0})));
}

// Announcing and revoking all day must not take new memory each time.
TEST(BufferPool, MemoryIsUsedAgain) {
  std::set<void *> places;
  for (int i = 0; i < 1000; ++i) {
    const Buffers buffers = Announce(10);
    for (const auto &buffer : buffers) {
      places.insert(buffer.get());
    }
  }
  EXPECT_EQ(10U, places.size());
}

TEST(BufferPool, BufferOfOtherMemoryIsLeftAlone) {
  int user = 0;
  CBufferInfo buffer(&user, sizeof(user), nullptr);
  EXPECT_EQ(nullptr, CBufferPool::Find(HandleOf(&buffer)));
}

// Streams announce and revoke side by side, while a third asks for its own.
TEST(BufferPool, SeveralThreads) {
  const Buffers own = Announce(1);
  std::atomic<bool> done{false};
  std::atomic<size_t> misses{0};
  std::thread reader([&] {
    while (!done) {
      misses += CBufferPool::Find(HandleOf(own[0].get())) == own[0].get() ? 0U : 1U;
    }
  });
  std::vector<std::thread> writers;
  for (int i = 0; i < 2; ++i) {
    writers.emplace_back([] {
      for (int round = 0; round < 20; ++round) {
        const Buffers buffers = Announce(500);
        for (const auto &buffer : buffers) {
          ASSERT_EQ(buffer.get(), CBufferPool::Find(HandleOf(buffer.get())));
        }
      }
    });
  }
  for (std::thread &writer : writers) {
    writer.join();
  }
  done = true;
  reader.join();
  EXPECT_EQ(0U, misses);
}

}  // namespace
}  // namespace GenICam::Client
