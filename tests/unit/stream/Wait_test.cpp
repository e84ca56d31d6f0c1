// SPDX-License-Identifier: MIT
// The one wait of all events and of the stop, and its end when the object goes.
#include "Wait.h"

#include <atomic>
#include <chrono>
#include <memory>
#include <thread>
#include <vector>

#include <boost/thread/condition_variable.hpp>
#include <boost/thread/locks.hpp>
#include <boost/thread/mutex.hpp>
#include <boost/thread/recursive_mutex.hpp>
#include <boost/thread/thread_only.hpp>
#include <gtest/gtest.h>

namespace GenICam::Client {
namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr milliseconds kBound{10000};

/// The two pairs that the Producer waits with.
template <class MutexType, class ConditionType>
struct Pair {
  using Mutex = MutexType;
  using Condition = ConditionType;
  using Lock = boost::unique_lock<Mutex>;

  Mutex mutex;
  Condition condition;
  Waiters waiters;
  bool flag = false;

  /// Waits until so many threads are inside; they are in the wait itself, as the mutex could be had.
  bool SeesInside(size_t count) {
    const Clock::time_point end = Clock::now() + kBound;
    while (Clock::now() < end) {
      {
        const Lock lock(mutex);
        if (waiters.nInside == count) {
          return true;
        }
      }
      std::this_thread::yield();
    }
    return false;
  }
};

template <class P>
class Wait : public testing::Test {};

using Pairs = testing::Types<Pair<boost::mutex, boost::condition_variable>,
                             Pair<boost::recursive_mutex, boost::condition_variable_any>>;
TYPED_TEST_SUITE(Wait, Pairs, );

TYPED_TEST(Wait, WokenInTimeAndLateToRun) {
  // Who wakes the waiter keeps the mutex until the time is long over: a busy machine in small. A wait that looks at the
  // clock behind its end takes that for silence.
  constexpr uint64_t kTimeout = 300;
  for (int attempt = 0; attempt < 20; ++attempt) {
    TypeParam pair;
    typename TypeParam::Lock lock(pair.mutex);
    const Clock::time_point begin = Clock::now();
    bool inTime = false;
    std::thread waker([&] {
      const typename TypeParam::Lock held(pair.mutex);
      pair.flag = true;
      pair.condition.notify_all();
      inTime = Clock::now() < begin + milliseconds(kTimeout);
      while (Clock::now() < begin + milliseconds(kTimeout + 50)) {
      }
    });
    const bool woken = WaitOnce(pair.condition, lock, kTimeout);
    lock.unlock();
    waker.join();
    if (inTime) {
      EXPECT_TRUE(woken);
      EXPECT_TRUE(pair.flag);
      return;
    }
  }
  FAIL() << "the waker was late each time";
}

TYPED_TEST(Wait, SilenceLastsItsTime) {
  TypeParam pair;
  typename TypeParam::Lock lock(pair.mutex);
  const Clock::time_point begin = Clock::now();
  // A wake-up from nowhere is allowed; each one begins the wait anew.
  Clock::time_point last = begin;
  while (WaitOnce(pair.condition, lock, 50)) {
    last = Clock::now();
    ASSERT_LT(last - begin, kBound);
  }
  EXPECT_GE(Clock::now() - last, milliseconds(50));
  EXPECT_LT(Clock::now() - last, kBound);
}

TYPED_TEST(Wait, NoTimeIsNoWait) {
  TypeParam pair;
  typename TypeParam::Lock lock(pair.mutex);
  const Clock::time_point begin = Clock::now();
  EXPECT_FALSE(WaitOnce(pair.condition, lock, 0));
  EXPECT_LT(Clock::now() - begin, kBound);
}

TYPED_TEST(Wait, CountedWaitsTellWhetherTheyWereWoken) {
  TypeParam pair;
  bool woken = false;
  std::thread waiter([&] {
    typename TypeParam::Lock lock(pair.mutex);
    woken = WaitOnce(pair.condition, lock, 60000, pair.waiters);
  });
  EXPECT_TRUE(pair.SeesInside(1));
  pair.condition.notify_all();
  waiter.join();
  EXPECT_TRUE(woken);
  EXPECT_EQ(0U, pair.waiters.nInside);

  typename TypeParam::Lock lock(pair.mutex);
  EXPECT_FALSE(WaitOnce(pair.condition, lock, 0, pair.waiters));
  EXPECT_EQ(0U, pair.waiters.nInside);
}

TYPED_TEST(Wait, NoticeIsNeededOnceByThoseWhoWait) {
  // Whoever puts something in notifies behind the unlock. A notification that nobody needs then ends a later wait.
  TypeParam pair;
  EXPECT_FALSE(pair.waiters.TakeNotice()) << "nobody waits";
  for (int round = 0; round < 2; ++round) {
    std::thread waiter([&pair] {
      typename TypeParam::Lock lock(pair.mutex);
      EXPECT_TRUE(WaitOnce(pair.condition, lock, GENTL_INFINITE, pair.waiters));
    });
    EXPECT_TRUE(pair.SeesInside(1));
    {
      const typename TypeParam::Lock lock(pair.mutex);
      EXPECT_TRUE(pair.waiters.TakeNotice());
      EXPECT_FALSE(pair.waiters.TakeNotice()) << "it is inside, but somebody is about to wake it";
    }
    pair.condition.notify_all();
    waiter.join();
    EXPECT_FALSE(pair.waiters.TakeNotice()) << "it has left";
  }
}

TYPED_TEST(Wait, NoticeKnowsWhoCameBehindTheLastOne) {
  TypeParam pair;
  std::vector<std::thread> waiters;
  for (size_t count = 1; count <= 3; ++count) {
    waiters.emplace_back([&pair] {
      typename TypeParam::Lock lock(pair.mutex);
      EXPECT_TRUE(WaitOnce(pair.condition, lock, GENTL_INFINITE, pair.waiters));
    });
    EXPECT_TRUE(pair.SeesInside(count));
    const typename TypeParam::Lock lock(pair.mutex);
    EXPECT_TRUE(pair.waiters.TakeNotice()) << count;
  }
  {
    const typename TypeParam::Lock lock(pair.mutex);
    NotifyAll(pair.condition, pair.waiters);
    EXPECT_FALSE(pair.waiters.TakeNotice());
  }
  for (std::thread &waiter : waiters) {
    waiter.join();
  }
  EXPECT_EQ(0U, pair.waiters.nUnnotified);
}

TYPED_TEST(Wait, TimedOutWaitNeedsNoNotice) {
  TypeParam pair;
  typename TypeParam::Lock lock(pair.mutex);
  EXPECT_FALSE(WaitOnce(pair.condition, lock, 0, pair.waiters));
  EXPECT_FALSE(WaitOnce(pair.condition, lock, 1, pair.waiters));
  EXPECT_FALSE(pair.waiters.TakeNotice());
}

TYPED_TEST(Wait, EndWithoutAWaiterReturns) {
  TypeParam pair;
  typename TypeParam::Lock lock(pair.mutex);
  EndWaits(pair.condition, lock, pair.waiters);
  EXPECT_TRUE(lock.owns_lock());
}

TYPED_TEST(Wait, EndComesBehindTheLastWaiter) {
  // The object goes right behind the end: the address and the thread sanitizer see a waiter that still looks at it.
  for (const uint64_t timeout : {uint64_t{GENTL_INFINITE}, uint64_t{3600000}}) {
    constexpr size_t kWaiters = 5;
    auto pair = std::make_unique<TypeParam>();
    std::atomic<size_t> out{0};
    std::vector<std::thread> threads;
    for (size_t i = 0; i < kWaiters; ++i) {
      threads.emplace_back([&pair = *pair, &out, timeout] {
        typename TypeParam::Lock lock(pair.mutex);
        EXPECT_TRUE(WaitOnce(pair.condition, lock, timeout, pair.waiters));
        ++out;
      });
    }
    EXPECT_TRUE(pair->SeesInside(kWaiters));
    {
      typename TypeParam::Lock lock(pair->mutex);
      EndWaits(pair->condition, lock, pair->waiters);
      EXPECT_EQ(kWaiters, out) << "each had its last look";
    }
    pair.reset();
    for (std::thread &thread : threads) {
      thread.join();
    }
  }
}

// An application may share our Boost, and interrupt a thread of its own that is in here. A wait that ended by an
// exception would leave the count up, and the end would wait for ever.
TYPED_TEST(Wait, InterruptedThreadWaitsOn) {
  TypeParam pair;
  bool thrown = false;
  bool woken = false;
  boost::thread waiter([&] {
    try {
      typename TypeParam::Lock lock(pair.mutex);
      woken = WaitOnce(pair.condition, lock, GENTL_INFINITE, pair.waiters);
    } catch (const boost::thread_interrupted &) {
      thrown = true;
    }
  });
  EXPECT_TRUE(pair.SeesInside(1));
  waiter.interrupt();
  {
    typename TypeParam::Lock lock(pair.mutex);
    EndWaits(pair.condition, lock, pair.waiters);
  }
  waiter.join();
  EXPECT_TRUE(woken);
  EXPECT_FALSE(thrown);
  EXPECT_EQ(0U, pair.waiters.nInside);
}

TYPED_TEST(Wait, TwoEndsAtOnceBothReturn) {
  TypeParam pair;
  std::thread waiter([&] {
    typename TypeParam::Lock lock(pair.mutex);
    WaitOnce(pair.condition, lock, GENTL_INFINITE, pair.waiters);
  });
  EXPECT_TRUE(pair.SeesInside(1));
  const auto end = [&] {
    typename TypeParam::Lock lock(pair.mutex);
    EndWaits(pair.condition, lock, pair.waiters);
  };
  std::thread other(end);
  end();
  other.join();
  waiter.join();
  EXPECT_EQ(0U, pair.waiters.nInside);
}

}  // namespace
}  // namespace GenICam::Client
