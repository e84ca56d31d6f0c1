// SPDX-License-Identifier: MIT
#include "EventQueue.h"

#include <cstring>
#include <memory>
#include <new>
#include <thread>
#include <vector>

#include "EventError.h"
#include "Failures.h"

namespace GenICam::Client {
namespace {

using Queue = CEventQueue<CErrorEventEntry>;

constexpr size_t kLeast = 2043;

template <class Event>
uint64_t Number(Event &event, EVENT_INFO_CMD cmd) {
  uint64_t value = 0;
  size_t size = sizeof(value);
  INFO_DATATYPE type = 0;
  event.GetInfo(cmd, &type, &value, &size);
  return value;
}

/// A queue of the limit, enabled.
class CEnabled : public Queue {
 public:
  explicit CEnabled(uint64_t limit) : Queue(EVENT_ERROR, limit) { EnableEvent(); }
};

// Entries -------------------------------------------------------------------------------------------------------------

TEST(ErrorEventEntry, BlockIsCodeTextAndZero) {
  const CErrorEventEntry entry(-10002, "abc");
  uint8_t block[9];
  std::memset(block, 0xEE, sizeof(block));
  size_t size = 8;
  entry.ToBuf(block, &size);
  const uint8_t expected[] = {0xEE, 0xD8, 0xFF, 0xFF, 'a', 'b', 'c', 0, 0xEE};
  EXPECT_EQ(8U, size);
  EXPECT_EQ(0, std::memcmp(expected, block, sizeof(block)));
}

TEST(ErrorEventEntry, EmptyTextTakesFiveBytes) {
  uint8_t block[5] = {1, 1, 1, 1, 1};
  size_t size = 100;
  CErrorEventEntry(7, "").ToBuf(block, &size);
  EXPECT_EQ(5U, size);
  EXPECT_EQ(7, block[0]);
  EXPECT_EQ(0, block[4]);
}

TEST(ErrorEventEntry, Refusals) {
  const CErrorEventEntry entry(1, "abc");
  uint8_t block[8] = {};
  size_t size = 7;
  EXPECT_FAILURE(invalidparameter_error, "Invalid buffer", entry.ToBuf(nullptr, &size));
  EXPECT_FAILURE(invalidparameter_error, "Invalid buffer Size", entry.ToBuf(block, &size));
  EXPECT_EQ(7U, size);
  EXPECT_EQ(0, block[4]);
}

TEST(ErrorEventEntry, WholeTextIsKept) {
  const std::string text(5000, 'x');
  const CErrorEventEntry entry(1, text);
  const CErrorEventEntry copy(entry);
  std::vector<uint8_t> block(text.size() + 5);
  size_t size = block.size();
  copy.ToBuf(block.data(), &size);
  EXPECT_EQ(text.size() + 5, size);
  EXPECT_EQ(text, reinterpret_cast<const char *>(block.data()) + 4);
}

// Long texts in the queue ---------------------------------------------------------------------------------------------

TEST(EventQueue, TextThatJustFitsTheLeastBlock) {
  CEnabled queue(10);
  queue.AddEvent(CErrorEventEntry(1, std::string(kLeast - 5, 'a')));
  std::vector<uint8_t> block(kLeast);
  size_t size = kLeast;
  EXPECT_TRUE(queue.GetData(block.data(), &size, 0));
  EXPECT_EQ(kLeast, size);
}

TEST(EventQueue, TextThatIsTooLongForTheBlockStays) {
  CEnabled queue(10);
  queue.AddEvent(CErrorEventEntry(1, std::string(kLeast - 4, 'a')));
  queue.AddEvent(CErrorEventEntry(2, "b"));
  std::vector<uint8_t> block(kLeast + 1);
  size_t size = kLeast;
  EXPECT_FAILURE(invalidparameter_error, "Invalid buffer Size", queue.GetData(block.data(), &size, 0));
  EXPECT_EQ(kLeast, size);
  EXPECT_EQ(2U, Number(queue, EVENT_NUM_IN_QUEUE)) << "and bars the way of the others";
  size = kLeast + 1;
  EXPECT_TRUE(queue.GetData(block.data(), &size, 0));
  EXPECT_EQ(kLeast + 1, size);
  size = kLeast;
  EXPECT_TRUE(queue.GetData(block.data(), &size, 0));
  EXPECT_EQ(6U, size);
}

TEST(EventQueue, BlockOfOneByteLessThanTheLeast) {
  CEnabled queue(10);
  queue.AddEvent(CErrorEventEntry(1, "a"));
  std::vector<uint8_t> block(kLeast);
  size_t size = kLeast - 1;
  EXPECT_FAILURE(invalidparameter_error, "Buffer too small.", queue.GetData(block.data(), &size, 0));
  EXPECT_EQ(1U, Number(queue, EVENT_NUM_IN_QUEUE));
}

TEST(EventQueue, SizeOfZeroAsksForTheSize) {
  CEnabled queue(10);
  queue.AddEvent(CErrorEventEntry(1, "a"));
  uint8_t byte = 0xEE;
  size_t size = 0;
  EXPECT_FALSE(queue.GetData(&byte, &size, 0)) << "with a buffer, which the entry points do not let through";
  EXPECT_EQ(kLeast, size);
  EXPECT_EQ(0xEE, byte);
  size = 9;
  EXPECT_FALSE(queue.GetData(nullptr, &size, 0));
  EXPECT_EQ(kLeast, size);
  EXPECT_EQ(1U, Number(queue, EVENT_NUM_IN_QUEUE));
}

TEST(EventQueue, NullSize) {
  CEnabled queue(10);
  EXPECT_FAILURE(invalidparameter_error, "Null parameter iSize.", queue.GetData(nullptr, nullptr, 0));
}

TEST(EventQueue, DisabledComesAheadOfTheNullSize) {
  Queue queue(EVENT_ERROR, 10);
  EXPECT_FAILURE(invalidhandle_error, "Event is not enabled.", queue.GetData(nullptr, nullptr, 0));
}

// The limit -----------------------------------------------------------------------------------------------------------

TEST(EventQueue, LimitIsThatOfTheConstruction) {
  for (const uint64_t limit : {0U, 1U, 3U}) {
    CEnabled queue(limit);
    for (uint64_t i = 0; i < limit + 2; ++i) {
      queue.AddEvent(CErrorEventEntry(static_cast<int32_t>(i), "x"));
    }
    EXPECT_EQ(limit, Number(queue, EVENT_NUM_IN_QUEUE));
    EXPECT_EQ(limit, Number(queue, EVENT_NUM_FIRED));
  }
}

TEST(EventQueue, OldestStayWhenTheQueueIsFull) {
  CEnabled queue(2);
  for (const int32_t code : {1, 2, 3}) {
    queue.AddEvent(CErrorEventEntry(code, "x"));
  }
  std::vector<uint8_t> block(kLeast);
  for (const int code : {1, 2}) {
    size_t size = kLeast;
    ASSERT_TRUE(queue.GetData(block.data(), &size, 0));
    EXPECT_EQ(code, block[0]);
  }
}

TEST(EventError, LimitIsTwoThousand) {
  CEventError event;
  event.EnableEvent();
  for (int i = 0; i < 2001; ++i) {
    event.AddEvent(CErrorEventEntry(i, "x"));
  }
  EXPECT_EQ(2000U, Number(event, EVENT_NUM_IN_QUEUE));
  EXPECT_EQ(2000U, Number(event, EVENT_NUM_FIRED));
  EXPECT_EQ(0U, Number(event, EVENT_EVENT_TYPE));
}

TEST(EventQueue, FiredOutlivesFlushAndDisabling) {
  CEnabled queue(10);
  queue.AddEvent(CErrorEventEntry(1, "x"));
  queue.AddEvent(CErrorEventEntry(1, "x"));
  queue.Flush();
  queue.DisableEvent();
  queue.AddEvent(CErrorEventEntry(1, "x"));
  queue.EnableEvent();
  EXPECT_EQ(2U, Number(queue, EVENT_NUM_FIRED));
  EXPECT_EQ(0U, Number(queue, EVENT_NUM_IN_QUEUE));
  queue.AddEvent(CErrorEventEntry(1, "x"));
  EXPECT_EQ(3U, Number(queue, EVENT_NUM_FIRED));
}

// The generic decoding ------------------------------------------------------------------------------------------------

TEST(EventQueue, GenericDecodingIsRefused) {
  const uint8_t block[8] = {};
  INFO_DATATYPE type = -77;
  size_t size = 5;
  Queue queue(EVENT_ERROR, 1);
  EXPECT_FAILURE(invalidhandle_error, "Event is not enabled.",
                 queue.GetDataInfo(block, sizeof(block), EVENT_DATA_ID, &type, nullptr, &size));
  queue.EnableEvent();
  const std::pair<EVENT_DATA_INFO_CMD, const char *> items[] = {
      {EVENT_DATA_ID, "00000000"}, {EVENT_DATA_VALUE, "00000001"}, {EVENT_DATA_NUMID, "00000002"}};
  for (const auto &[cmd, digits] : items) {
    EXPECT_FAILURE(notimplemented_error, std::string("Invalid EVENT_DATA_INFO_CMD Command ") + digits,
                   queue.GetDataInfo(block, sizeof(block), cmd, &type, nullptr, &size));
  }
  EXPECT_FAILURE(invalidparameter_error, "Invalid EVENT_DATA_INFO_CMD Command 00000003",
                 queue.GetDataInfo(block, sizeof(block), 3, &type, nullptr, &size));
  EXPECT_FAILURE(invalidparameter_error, "Invalid EVENT_DATA_INFO_CMD Command FFFFFFFF",
                 queue.GetDataInfo(block, sizeof(block), -1, &type, nullptr, &size));
  EXPECT_EQ(-77, type);
  EXPECT_EQ(5U, size);
}

TEST(EventQueue, UnknownInfo) {
  CEnabled queue(1);
  INFO_DATATYPE type = 0;
  size_t size = 0;
  EXPECT_FAILURE(invalidparameter_error, "Invalid EVENT_INFO_CMD 0x00000005.", queue.GetInfo(5, &type, nullptr, &size));
}

TEST(EventQueue, TypeIsThatOfTheConstruction) {
  Queue queue(4242, 1);
  queue.EnableEvent();
  EXPECT_EQ(4242U, Number(queue, EVENT_EVENT_TYPE));
}

TEST(EventQueue, SecondEnabling) {
  CEnabled queue(1);
  EXPECT_FAILURE(resourceinuse_error, "Event already enabled.", queue.EnableEvent());
  queue.DisableEvent();
  queue.DisableEvent();
  queue.EnableEvent();
}

// Memory runs out -----------------------------------------------------------------------------------------------------

TEST(EventQueue, ReportThatCannotBeTakenInIsLost) {
  // Whoever reports may be the library's callback: it hears of no failure.
  class CFilling : public CEnabled {
   public:
    using CEnabled::CEnabled;
    using Queue::Append;
  } queue(10);
  queue.AddEvent(CErrorEventEntry(1, "first"));
  EXPECT_NO_THROW(queue.Append([](CErrorEventEntry &entry) {
    entry.Assign(2, "half");
    throw std::bad_alloc();
  }));
  EXPECT_NO_THROW(queue.Append([](CErrorEventEntry &) { throw 1; }));
  EXPECT_EQ(1U, Number(queue, EVENT_NUM_IN_QUEUE));
  EXPECT_EQ(1U, Number(queue, EVENT_NUM_FIRED));
  queue.AddEvent(CErrorEventEntry(3, "second"));
  std::vector<uint8_t> block(kLeast);
  for (const int code : {1, 3}) {
    size_t size = kLeast;
    EXPECT_TRUE(queue.GetData(block.data(), &size, 0));
    EXPECT_EQ(code, block[0]);
  }
}

// The owner's end -----------------------------------------------------------------------------------------------------

TEST(EventQueue, EndOfAllWaitsWithoutAWaiter) {
  CEnabled queue(10);
  queue.EndAllWaits();
  queue.EndAllWaits();
  std::vector<uint8_t> block(kLeast);
  for (int call = 0; call < 3; ++call) {
    size_t size = kLeast;
    // Late ones do not wait either, however many.
    EXPECT_FAILURE(abort_error, "Wait terminated", queue.GetData(block.data(), &size, GENTL_INFINITE));
  }
}

TEST(EventQueue, EndOfAllWaitsSendsEverybodyHome) {
  for (int round = 0; round < 20; ++round) {
    auto queue = std::make_unique<CEnabled>(10);
    std::vector<std::thread> waiters;
    for (int i = 0; i < 4; ++i) {
      waiters.emplace_back([&queue = *queue] {
        std::vector<uint8_t> block(kLeast);
        size_t size = kLeast;
        EXPECT_FAILURE(abort_error, "Wait terminated", queue.GetData(block.data(), &size, GENTL_INFINITE));
      });
    }
    queue->EndAllWaits();
    for (std::thread &waiter : waiters) {
      waiter.join();
    }
  }
}

// Threads -------------------------------------------------------------------------------------------------------------

TEST(EventQueue, ManyPostersOneReader) {
  constexpr int kPosters = 4;
  constexpr int kEntries = 300;
  CEnabled queue(kPosters * kEntries);
  std::vector<std::thread> posters;
  for (int poster = 0; poster < kPosters; ++poster) {
    posters.emplace_back([&queue, poster] {
      for (int i = 0; i < kEntries; ++i) {
        queue.AddEvent(CErrorEventEntry(poster, "'Test Error' event detected."));
      }
    });
  }
  std::vector<uint8_t> block(kLeast);
  int counts[kPosters] = {};
  for (int taken = 0; taken < kPosters * kEntries;) {
    size_t size = kLeast;
    try {
      if (!queue.GetData(block.data(), &size, 10000)) {
        ADD_FAILURE() << "nothing came behind " << taken;
        break;
      }
      ++taken;
      ++counts[block[0]];
    } catch (const unknown_error &failure) {
      // A notification follows its entry: it may find the reader in the next wait, the entry long taken.
      EXPECT_EQ(" Empty event queue but signaled.", failure.GetDescription());
    }
  }
  for (std::thread &poster : posters) {
    poster.join();
  }
  for (const int count : counts) {
    EXPECT_EQ(kEntries, count);
  }
}

TEST(EventQueue, KillsAndPostsTogether) {
  // Every kill ends one call at most, and no entry is lost to one.
  constexpr int kEntries = 200;
  CEnabled queue(kEntries);
  std::thread poster([&queue] {
    for (int i = 0; i < kEntries; ++i) {
      queue.AddEvent(CErrorEventEntry(1, "x"));
      queue.Kill();
    }
  });
  std::vector<uint8_t> block(kLeast);
  int taken = 0;
  int killed = 0;
  while (taken < kEntries && killed <= kEntries) {
    size_t size = kLeast;
    try {
      taken += queue.GetData(block.data(), &size, 10000) ? 1 : 0;
    } catch (const abort_error &) {
      ++killed;
    } catch (const unknown_error &failure) {
      EXPECT_EQ(" Empty event queue but signaled.", failure.GetDescription());
    }
  }
  poster.join();
  EXPECT_EQ(kEntries, taken);
}

}  // namespace
}  // namespace GenICam::Client
