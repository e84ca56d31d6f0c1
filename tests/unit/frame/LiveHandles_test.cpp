// SPDX-License-Identifier: MIT
#include "LiveHandles.h"

#include <atomic>
#include <cstddef>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

using GenICam::Client::CLiveHandles;

namespace {

/// So many objects that the set has to grow several times, each entered.
class CEntered {
 public:
  explicit CEntered(size_t nCount) : m_Objects(nCount) {
    for (const Object &object : m_Objects) {
      CLiveHandles::Enter(&object);
    }
  }
  CEntered(const CEntered &) = delete;
  CEntered &operator=(const CEntered &) = delete;
  ~CEntered() {
    for (const Object &object : m_Objects) {
      CLiveHandles::Leave(&object);
    }
  }

  const void *operator[](size_t i) const { return &m_Objects[i]; }
  size_t Count() const { return m_Objects.size(); }

 private:
  struct alignas(16) Object {
    char content[16];
  };
  std::vector<Object> m_Objects;
};

TEST(LiveHandles, NullIsNeverLive) {
  CLiveHandles::Leave(nullptr);
  EXPECT_FALSE(CLiveHandles::IsLive(nullptr));
}

TEST(LiveHandles, LiveFromEnteringToLeaving) {
  const int object = 0;
  EXPECT_FALSE(CLiveHandles::IsLive(&object));
  CLiveHandles::Enter(&object);
  EXPECT_TRUE(CLiveHandles::IsLive(&object));
  CLiveHandles::Leave(&object);
  EXPECT_FALSE(CLiveHandles::IsLive(&object));
  CLiveHandles::Leave(&object);
  EXPECT_FALSE(CLiveHandles::IsLive(&object));
}

// A larger table has to take over every address of the smaller one.
TEST(LiveHandles, NoneIsLostWhenTheSetGrows) {
  const CEntered objects(5000);
  for (size_t i = 0; i < objects.Count(); ++i) {
    ASSERT_TRUE(CLiveHandles::IsLive(objects[i])) << i;
  }
}

// An address that left must not end the search for one behind it.
TEST(LiveHandles, ThoseBehindAGoneOneAreFound) {
  const CEntered objects(1000);
  for (size_t i = 0; i < objects.Count(); i += 2) {
    CLiveHandles::Leave(objects[i]);
  }
  for (size_t i = 0; i < objects.Count(); ++i) {
    ASSERT_EQ(i % 2 == 1, CLiveHandles::IsLive(objects[i])) << i;
  }
}

// Without the places of those that left, a set that is full of them would never find an end.
TEST(LiveHandles, PlacesAreUsedAgain) {
  std::vector<char> addresses(1000000);
  for (const char &address : addresses) {
    CLiveHandles::Enter(&address);
    ASSERT_TRUE(CLiveHandles::IsLive(&address));
    CLiveHandles::Leave(&address);
    ASSERT_FALSE(CLiveHandles::IsLive(&address));
  }
}

// Asking takes no lock: it has to see a live address at every moment of a growth.
TEST(LiveHandles, AskedWhileTheSetChanges) {
  const int constant = 0;
  CLiveHandles::Enter(&constant);
  std::atomic<bool> done{false};
  std::atomic<size_t> misses{0};
  std::atomic<size_t> asked{0};
  std::thread reader([&] {
    while (!done) {
      misses += CLiveHandles::IsLive(&constant) ? 0U : 1U;
      ++asked;
    }
  });
  while (asked == 0) {
    std::this_thread::yield();
  }
  {
    std::vector<std::thread> writers;
    for (int i = 0; i < 3; ++i) {
      writers.emplace_back([] {
        for (int round = 0; round < 5; ++round) {
          const CEntered objects(4000);
          EXPECT_TRUE(CLiveHandles::IsLive(objects[0]));
        }
      });
    }
    for (std::thread &writer : writers) {
      writer.join();
    }
  }
  done = true;
  reader.join();
  EXPECT_EQ(0U, misses);
  CLiveHandles::Leave(&constant);
}

}  // namespace
