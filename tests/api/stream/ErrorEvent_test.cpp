// SPDX-License-Identifier: MIT
// EVENT_ERROR of a stream: its queue, its blocks, its limits.
#include <cstring>

#include "InsideWaiter.h"
#include "StreamFixture.h"

namespace StreamTests {
namespace {

constexpr const char *kTestText = "'Test Error' event detected.";
constexpr size_t kLeast = 2043;  ///< the smallest block that GetData takes
constexpr size_t kLimit = 2000;

class ErrorEventTest : public StreamTest {
 protected:
  void SetUp() override {
    StreamTest::SetUp();
    m_hEvent = ErrorEvent();
  }

  void Post(size_t count = 1) {
    for (size_t i = 0; i < count; ++i) {
      ASSERT_EQ(GC_ERR_SUCCESS, WriteU32(m_hStream, 0x14, 1));
    }
  }

  uint64_t InQueue() { return EventNumber(m_hEvent, EVENT_NUM_IN_QUEUE); }
  uint64_t Fired() { return EventNumber(m_hEvent, EVENT_NUM_FIRED); }
  void Disable() { ASSERT_GC_OK(Gc().GCUnregisterEvent(m_hStream, EVENT_ERROR)); }
  void Enable() { m_hEvent = RegisterEvent(m_hStream, EVENT_ERROR); }

  EVENT_HANDLE m_hEvent = nullptr;
};

// Infos ---------------------------------------------------------------------------------------------------------------

TEST_F(ErrorEventTest, Infos) {
  Post(3);
  TakeError(m_hEvent);
  constexpr struct {
    EVENT_INFO_CMD cmd;
    INFO_DATATYPE type;
    size_t size;
    uint64_t value;
  } kRows[] = {{EVENT_EVENT_TYPE, INFO_DATATYPE_INT32, 4, 0},
               {EVENT_NUM_IN_QUEUE, INFO_DATATYPE_SIZET, 8, 2},
               {EVENT_NUM_FIRED, INFO_DATATYPE_UINT64, 8, 3},
               {EVENT_SIZE_MAX, INFO_DATATYPE_SIZET, 8, 2048},
               {EVENT_INFO_DATA_SIZE_MAX, INFO_DATATYPE_SIZET, 8, 2043}};
  for (const auto &row : kRows) {
    const Info info = EventInfo(m_hEvent, row.cmd);
    ASSERT_EQ(GC_ERR_SUCCESS, info.result) << row.cmd;
    EXPECT_EQ(row.type, info.type) << row.cmd;
    EXPECT_EQ(row.size, info.size) << row.cmd;
    EXPECT_EQ(row.value, EventNumber(m_hEvent, row.cmd)) << row.cmd;

    uint64_t answer = 0;
    INFO_DATATYPE type = 0;
    size_t size = row.size - 1;
    EXPECT_GC(GC_ERR_INVALID_PARAMETER, "Invalid Buffer Size.",
              Gc().EventGetInfo(m_hEvent, row.cmd, &type, &answer, &size));
  }
  INFO_DATATYPE type = 0;
  size_t size = 0;
  for (const int32_t cmd : {5, 1000, -1}) {
    EXPECT_GC(GC_ERR_INVALID_PARAMETER, Format("Invalid EVENT_INFO_CMD 0x%08llX.", static_cast<uint32_t>(cmd)),
              Gc().EventGetInfo(m_hEvent, cmd, &type, nullptr, &size));
  }
}

TEST_F(ErrorEventTest, InfoArgumentsAreCheckedInOrder) {
  INFO_DATATYPE type = 0;
  uint64_t answer = 0;
  size_t size = 0;
  EXPECT_GC(GC_ERR_INVALID_PARAMETER, "Null type pointer.",
            Gc().EventGetInfo(m_hEvent, EVENT_NUM_FIRED, nullptr, &answer, nullptr));
  EXPECT_GC(GC_ERR_INVALID_PARAMETER, "Null size pointer.",
            Gc().EventGetInfo(m_hEvent, EVENT_NUM_FIRED, &type, &answer, nullptr));
  EXPECT_GC(GC_ERR_INVALID_PARAMETER, "Size of buffer cannot be null.",
            Gc().EventGetInfo(m_hEvent, EVENT_NUM_FIRED, &type, &answer, &size));
}

// Registering ---------------------------------------------------------------------------------------------------------

TEST_F(ErrorEventTest, SecondRegistrationIsRefused) {
  EVENT_HANDLE again = this;
  EXPECT_GC(GC_ERR_RESOURCE_IN_USE, "Event already enabled.", Gc().GCRegisterEvent(m_hStream, EVENT_ERROR, &again));
  EXPECT_EQ(this, again);
  Post();
  EXPECT_EQ(1U, InQueue());
}

TEST_F(ErrorEventTest, DisabledEventRefusesEverything) {
  Post();
  Disable();
  const char *const message = "Event is not enabled.";
  uint8_t block[kLeast];
  size_t size = sizeof(block);
  INFO_DATATYPE type = 0;
  EXPECT_GC(GC_ERR_INVALID_HANDLE, message, Gc().EventGetData(m_hEvent, block, &size, 0));
  for (const EVENT_INFO_CMD cmd : {0, 1, 2, 3, 4, 5}) {
    EXPECT_GC(GC_ERR_INVALID_HANDLE, message, Gc().EventGetInfo(m_hEvent, cmd, &type, nullptr, &size));
  }
  EXPECT_GC(GC_ERR_INVALID_HANDLE, message, Gc().EventFlush(m_hEvent));
  EXPECT_GC(GC_ERR_INVALID_HANDLE, message, Gc().EventKill(m_hEvent));
  EXPECT_GC_OK(Gc().GCUnregisterEvent(m_hStream, EVENT_ERROR)) << "disabling twice is no error";
}

TEST_F(ErrorEventTest, QueueSurvivesTheDisabling) {
  Post(2);
  Disable();
  Post(3);
  Enable();
  EXPECT_EQ(2U, InQueue()) << "what came in between is lost";
  EXPECT_EQ(2U, Fired());
  EXPECT_EQ(kTestText, TakeError(m_hEvent).text);
}

TEST_F(ErrorEventTest, HandleStaysTheSame) {
  const EVENT_HANDLE before = m_hEvent;
  Disable();
  Enable();
  EXPECT_EQ(before, m_hEvent);
}

// Blocks --------------------------------------------------------------------------------------------------------------

TEST_F(ErrorEventTest, BlockOfAShortText) {
  Post();
  std::vector<uint8_t> block(kLeast + 1, 0xEE);
  size_t size = kLeast;
  ASSERT_GC_OK(Gc().EventGetData(m_hEvent, block.data(), &size, 0));
  const size_t length = std::strlen(kTestText);
  EXPECT_EQ(length + 5, size);
  const uint8_t code[] = {0xEF, 0xD8, 0xFF, 0xFF};  // -10001, little-endian
  EXPECT_EQ(0, std::memcmp(code, block.data(), 4));
  EXPECT_STREQ(kTestText, reinterpret_cast<const char *>(block.data()) + 4);
  EXPECT_EQ(0xEE, block[length + 5]) << "nothing behind the terminator";
  EXPECT_EQ(0U, InQueue());
}

TEST_F(ErrorEventTest, BlockOneTooSmall) {
  Post();
  std::vector<uint8_t> block(kLeast, 0xEE);
  for (const size_t given : {size_t{1}, std::strlen(kTestText) + 5, kLeast - 1}) {
    size_t size = given;
    EXPECT_GC(GC_ERR_INVALID_PARAMETER, "Buffer too small.", Gc().EventGetData(m_hEvent, block.data(), &size, 0));
    EXPECT_EQ(given, size);
    EXPECT_EQ(0xEE, block[0]);
  }
  EXPECT_EQ(1U, InQueue()) << "the entry stays";
  EXPECT_EQ(kTestText, TakeError(m_hEvent).text);
}

TEST_F(ErrorEventTest, SizeQueryLooksLikeATimeout) {
  Post();
  for (const size_t given : {size_t{0}, size_t{1}, size_t{4096}}) {
    size_t size = given;
    EXPECT_GC(GC_ERR_TIMEOUT, "Timeout while acquiring data", Gc().EventGetData(m_hEvent, nullptr, &size, 0));
    EXPECT_EQ(kLeast, size);
  }
  EXPECT_EQ(1U, InQueue());
}

TEST_F(ErrorEventTest, SizeQueryOfAnEmptyQueueTimesOut) {
  size_t size = 17;
  EXPECT_GC(GC_ERR_TIMEOUT, "Timeout while acquiring data", Gc().EventGetData(m_hEvent, nullptr, &size, 0));
  EXPECT_EQ(17U, size) << "nothing is told";
}

TEST_F(ErrorEventTest, EntryArgumentsAreCheckedInOrder) {
  uint8_t block[kLeast];
  size_t size = 0;
  EXPECT_GC(GC_ERR_INVALID_PARAMETER, "Null size pointer.", Gc().EventGetData(m_hEvent, block, nullptr, 0));
  EXPECT_GC(GC_ERR_INVALID_PARAMETER, "Size of buffer cannot be null.", Gc().EventGetData(m_hEvent, block, &size, 0));
}

TEST_F(ErrorEventTest, OldestFirst) {
  Run(1);
  ASSERT_TRUE(Script().FireCallback(GRB_EVENT_SYNC_LOST));
  ASSERT_TRUE(Script().FireCallback(GRB_EVENT_FIFO_OVERFLOW));
  Post();
  EXPECT_EQ(-10003, TakeError(m_hEvent).code);
  EXPECT_EQ(-10002, TakeError(m_hEvent).code);
  EXPECT_EQ(-10001, TakeError(m_hEvent).code);
}

// The limit -----------------------------------------------------------------------------------------------------------

TEST_F(ErrorEventTest, EntryBeyondTheLimitIsDropped) {
  Post(kLimit);
  EXPECT_EQ(kLimit, InQueue());
  Post(2);
  EXPECT_EQ(kLimit, InQueue());
  EXPECT_EQ(kLimit, Fired()) << "only accepted entries count";
  TakeError(m_hEvent);
  Post(2);
  EXPECT_EQ(kLimit, InQueue()) << "one place, one entry";
  EXPECT_EQ(kLimit + 1, Fired());
}

TEST_F(ErrorEventTest, FlushEmptiesTheQueueAndKeepsTheCount) {
  Post(5);
  EXPECT_GC_OK(Gc().EventFlush(m_hEvent));
  EXPECT_EQ(0U, InQueue());
  EXPECT_EQ(5U, Fired());
  EXPECT_EQ(GC_ERR_TIMEOUT, GetEvent(m_hEvent, 0, kLeast).result);
}

// Waiting -------------------------------------------------------------------------------------------------------------

TEST_F(ErrorEventTest, NoWaitOnAnEmptyQueue) {
  size_t size = kLeast;
  uint8_t block[kLeast];
  EXPECT_GC(GC_ERR_TIMEOUT, "Timeout while acquiring data", Gc().EventGetData(m_hEvent, block, &size, 0));
}

TEST_F(ErrorEventTest, ShortWaitLastsItsTime) {
  const auto begin = std::chrono::steady_clock::now();
  EXPECT_EQ(GC_ERR_TIMEOUT, GetEvent(m_hEvent, 30, kLeast).result);
  EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(30));
}

class ErrorWaits : public ErrorEventTest, public testing::WithParamInterface<uint64_t> {};

TEST_P(ErrorWaits, LongWaitIsEndedByAnEntry) {
  CEventWaiter waiter(m_hEvent, GetParam(), kLeast);
  // The short wait is the clock: a timeout that has overflowed would have ended the long one by then. The other event
  // is asked, so that nothing wakes the waiter.
  EXPECT_EQ(GC_ERR_TIMEOUT, GetEvent(RegisterEvent(m_hStream, EVENT_NEW_BUFFER), 20).result);
  EXPECT_FALSE(waiter.Done());
  Post();
  const EventResult result = waiter.Result();
  EXPECT_EQ(GC_ERR_SUCCESS, result.result) << result.error.text;
  EXPECT_EQ(std::strlen(kTestText) + 5, result.size);
}

INSTANTIATE_TEST_SUITE_P(All, ErrorWaits,
                         testing::Values(60000U, 0x7FFFFFFFU, 0xFFFFFFFFU, 0x100000000U, uint64_t{1} << 53U,
                                         uint64_t{1} << 62U, uint64_t{1} << 63U, 0xFFFFFFFFFFFFFFFEU, GENTL_INFINITE));

TEST_F(ErrorEventTest, KillEndsAWait) {
  CEventWaiter waiter(m_hEvent, GENTL_INFINITE, kLeast);
  EXPECT_GC_OK(Gc().EventKill(m_hEvent));
  const EventResult result = waiter.Result();
  EXPECT_EQ(GC_ERR_ABORT, result.result);
  EXPECT_EQ("Wait terminated", SplitFailureText(result.error.text).value_or(FailureText{}).message);
}

TEST_F(ErrorEventTest, KillWithoutAWaiterEndsTheNextCall) {
  Post();
  EXPECT_GC_OK(Gc().EventKill(m_hEvent));
  uint8_t block[kLeast];
  size_t size = sizeof(block);
  EXPECT_GC(GC_ERR_ABORT, "Wait terminated", Gc().EventGetData(m_hEvent, block, &size, GENTL_INFINITE))
      << "although an entry is there";
  EXPECT_EQ(1U, InQueue());
  EXPECT_EQ(kTestText, TakeError(m_hEvent).text) << "once";
}

TEST_F(ErrorEventTest, TwoKillsEndOneCall) {
  EXPECT_GC_OK(Gc().EventKill(m_hEvent));
  EXPECT_GC_OK(Gc().EventKill(m_hEvent));
  EXPECT_EQ(GC_ERR_ABORT, GetEvent(m_hEvent, 0, kLeast).result);
  EXPECT_EQ(GC_ERR_TIMEOUT, GetEvent(m_hEvent, 0, kLeast).result);
}

TEST_F(ErrorEventTest, KillOutlivesADisabling) {
  EXPECT_GC_OK(Gc().EventKill(m_hEvent));
  Disable();
  Enable();
  EXPECT_EQ(GC_ERR_ABORT, GetEvent(m_hEvent, 0, kLeast).result);
}

TEST_F(ErrorEventTest, FlushDoesNotTakeAKillBack) {
  EXPECT_GC_OK(Gc().EventKill(m_hEvent));
  EXPECT_GC_OK(Gc().EventFlush(m_hEvent));
  EXPECT_EQ(GC_ERR_ABORT, GetEvent(m_hEvent, 0, kLeast).result);
}

TEST_F(ErrorEventTest, SecondOfTwoWaitersFindsTheQueueEmpty) {
  std::vector<EventResult> results;
  {
    // Result() does not wait as long as that: an entry that woke one of them only would show.
    CInsideWaiter first(m_hEvent, kBeyondResult);
    CInsideWaiter second(m_hEvent, kBeyondResult);
    EXPECT_TRUE(first.Begins());
    EXPECT_TRUE(second.Begins());
    Post();
    results = {first.Result(), second.Result()};
  }
  if (results[0].result != GC_ERR_SUCCESS) {
    std::swap(results[0], results[1]);
  }
  EXPECT_EQ(GC_ERR_SUCCESS, results[0].result) << results[0].error.text;
  EXPECT_EQ(GC_ERR_ERROR, results[1].result);
  EXPECT_EQ(" Empty event queue but signaled.",
            SplitFailureText(results[1].error.text).value_or(FailureText{}).message);
}

TEST_F(ErrorEventTest, EntriesFromTheLibrarysThreadAreAllCounted) {
  Run(1);
  constexpr size_t kEntries = 500;
  std::future<void> last;
  for (size_t i = 0; i < kEntries; ++i) {
    last = Script().PostCallback(GRB_EVENT_FIFO_OVERFLOW);
  }
  for (size_t i = 0; i < kEntries; ++i) {
    const EventResult result = GetEvent(m_hEvent, 10000, kLeast);
    ASSERT_EQ(GC_ERR_SUCCESS, result.result) << result.error.text << " at " << i;
  }
  last.wait();
  EXPECT_EQ(kEntries, Fired());
  EXPECT_EQ(0U, InQueue());
}

// Decoding ------------------------------------------------------------------------------------------------------------

class ErrorBlocks : public ErrorEventTest {
 protected:
  void SetUp() override {
    ErrorEventTest::SetUp();
    Post();
    m_Block = GetEvent(m_hEvent, 0, kLeast).data;
    ASSERT_EQ(std::strlen(kTestText) + 5, m_Block.size());
  }

  std::vector<uint8_t> m_Block;
};

TEST_F(ErrorBlocks, Id) {
  const Info info = EventDataInfo(m_hEvent, m_Block.data(), m_Block.size(), EVENT_DATA_ID);
  EXPECT_EQ(INFO_DATATYPE_INT32, info.type);
  EXPECT_EQ(-10001, info.As<int32_t>());
}

TEST_F(ErrorBlocks, ValueWithItsTerminator) {
  const Info info = EventDataInfo(m_hEvent, m_Block.data(), m_Block.size(), EVENT_DATA_VALUE);
  EXPECT_EQ(INFO_DATATYPE_STRING, info.type);
  EXPECT_EQ(m_Block.size() - 4, info.size);
  EXPECT_EQ(0, info.bytes.back());
  EXPECT_EQ(kTestText, info.Text());
}

TEST_F(ErrorBlocks, ValueIsExactlyTheRestOfTheSizeGiven) {
  const Info part = EventDataInfo(m_hEvent, m_Block.data(), 9, EVENT_DATA_VALUE);
  EXPECT_EQ(5U, part.size);
  EXPECT_EQ(std::vector<uint8_t>(m_Block.begin() + 4, m_Block.begin() + 9), part.bytes);
}

TEST_F(ErrorBlocks, NumericId) {
  const Info info = EventDataInfo(m_hEvent, m_Block.data(), m_Block.size(), EVENT_DATA_NUMID);
  EXPECT_EQ(INFO_DATATYPE_UINT64, info.type);
  EXPECT_EQ(static_cast<uint32_t>(-10001), static_cast<uint32_t>(info.As<uint64_t>()));
}

TEST_F(ErrorBlocks, SmallAnswersAreRefused) {
  INFO_DATATYPE type = 0;
  uint8_t answer[64];
  size_t size = 3;
  EXPECT_GC(GC_ERR_INVALID_PARAMETER, "Invalid Buffer Size.",
            Gc().EventGetDataInfo(m_hEvent, m_Block.data(), m_Block.size(), EVENT_DATA_ID, &type, answer, &size));
  size = m_Block.size() - 5;
  EXPECT_GC(GC_ERR_INVALID_PARAMETER, "Invalid Buffer Size.",
            Gc().EventGetDataInfo(m_hEvent, m_Block.data(), m_Block.size(), EVENT_DATA_VALUE, &type, answer, &size));
  size = 4;
  EXPECT_GC(GC_ERR_INVALID_PARAMETER, "Invalid Buffer Size.",
            Gc().EventGetDataInfo(m_hEvent, m_Block.data(), m_Block.size(), EVENT_DATA_NUMID, &type, answer, &size));
}

TEST_F(ErrorBlocks, UnknownItems) {
  INFO_DATATYPE type = 0;
  size_t size = 0;
  for (const int32_t cmd : {3, 4, 1000, -1}) {
    EXPECT_GC_FROM(GC_ERR_INVALID_PARAMETER, "Invalid Event Data Info ID.", "GenICam::Client::CEventError::GetDataInfo",
                   Gc().EventGetDataInfo(m_hEvent, m_Block.data(), m_Block.size(), cmd, &type, nullptr, &size));
  }
}

TEST_F(ErrorBlocks, BlockThatIsNone) {
  // Nothing is read behind the size given.
  INFO_DATATYPE type = 0;
  uint8_t answer[64];
  for (size_t given = 0; given < 4; ++given) {
    const std::vector<uint8_t> piece(m_Block.begin(), m_Block.begin() + static_cast<std::ptrdiff_t>(given));
    const void *const data = given == 0 ? static_cast<const void *>(answer) : piece.data();
    for (const EVENT_DATA_INFO_CMD cmd : {EVENT_DATA_ID, EVENT_DATA_VALUE, EVENT_DATA_NUMID}) {
      size_t size = sizeof(answer);
      EXPECT_NE(GC_ERR_SUCCESS, Gc().EventGetDataInfo(m_hEvent, data, given, cmd, &type, answer, &size))
          << given << " bytes, item " << cmd;
      EXPECT_EQ(sizeof(answer), size);
    }
  }
}

TEST_F(ErrorBlocks, StateOfTheEventIsNotLookedAt) {
  Disable();
  EXPECT_EQ(-10001, EventDataInfo(m_hEvent, m_Block.data(), m_Block.size(), EVENT_DATA_ID).As<int32_t>());
}

TEST_F(ErrorBlocks, ArgumentsAreCheckedInOrder) {
  INFO_DATATYPE type = 0;
  uint8_t answer[8];
  size_t size = 0;
  EXPECT_GC(GC_ERR_INVALID_PARAMETER, "Null type pointer.",
            Gc().EventGetDataInfo(m_hEvent, nullptr, 0, EVENT_DATA_ID, nullptr, answer, nullptr));
  EXPECT_GC(GC_ERR_INVALID_PARAMETER, "Null size pointer.",
            Gc().EventGetDataInfo(m_hEvent, nullptr, 0, EVENT_DATA_ID, &type, answer, nullptr));
  EXPECT_GC(GC_ERR_INVALID_PARAMETER, "Size of buffer cannot be null.",
            Gc().EventGetDataInfo(m_hEvent, nullptr, 0, EVENT_DATA_ID, &type, answer, &size));
  size = sizeof(answer);
  EXPECT_GC(GC_ERR_INVALID_PARAMETER, "Null pointer for event data.",
            Gc().EventGetDataInfo(m_hEvent, nullptr, 0, EVENT_DATA_ID, &type, answer, &size));
}

// Kills of either event -----------------------------------------------------------------------------------------------

struct SecondRow {
  EVENT_TYPE type;
  GC_ERROR second;
};
class KilledEvents : public StreamTest, public testing::WithParamInterface<SecondRow> {};

TEST_P(KilledEvents, KillAbortsOneOfTwoWaiters) {
  const EVENT_HANDLE event = RegisterEvent(OpenStream(), GetParam().type);
  std::vector<EventResult> results;
  {
    CInsideWaiter first(event, kBeyondResult);
    CInsideWaiter second(event, kBeyondResult);
    EXPECT_TRUE(first.Begins());
    EXPECT_TRUE(second.Begins());
    EXPECT_GC_OK(Gc().EventKill(event));
    results = {first.Result(), second.Result()};
  }
  if (results[0].result != GC_ERR_ABORT) {
    std::swap(results[0], results[1]);
  }
  EXPECT_EQ(GC_ERR_ABORT, results[0].result);
  EXPECT_EQ(GetParam().second, results[1].result) << "woken all the same, and finds nothing";
}

TEST_P(KilledEvents, KillOfADisabledEventLeavesNothing) {
  EVENT_HANDLE event = RegisterEvent(OpenStream(), GetParam().type);
  EXPECT_GC_OK(Gc().GCUnregisterEvent(m_hStream, GetParam().type));
  EXPECT_GC_CODE(GC_ERR_INVALID_HANDLE, Gc().EventKill(event));
  event = RegisterEvent(m_hStream, GetParam().type);
  EXPECT_EQ(GC_ERR_TIMEOUT, GetEvent(event, 0, kLeast).result);
}

TEST_P(KilledEvents, WaitOfADisabledEventStillGetsItsData) {
  // Whether the event is enabled is asked ahead of the wait only: a buffer taken and then refused would be lost.
  const EVENT_HANDLE event = RegisterEvent(OpenStream(), GetParam().type);
  RegisterEvent(m_hStream, GetParam().type == EVENT_ERROR ? EVENT_NEW_BUFFER : EVENT_ERROR);
  Run(1);
  CInsideWaiter waiter(event, kBeyondResult);
  EXPECT_TRUE(waiter.Begins());
  EXPECT_GC_OK(Gc().GCUnregisterEvent(m_hStream, GetParam().type));
  if (GetParam().type == EVENT_ERROR) {
    RegisterEvent(m_hStream, EVENT_ERROR);  // a report to a disabled event would be gone
  }
  EXPECT_TRUE(Script().FireCallback(GRB_EVENT_BUFFER_READY | GRB_EVENT_FIFO_OVERFLOW));
  EXPECT_EQ(GC_ERR_SUCCESS, waiter.Result().result);
}

INSTANTIATE_TEST_SUITE_P(All, KilledEvents,
                         testing::Values(SecondRow{EVENT_ERROR, GC_ERR_ERROR},
                                         SecondRow{EVENT_NEW_BUFFER, GC_ERR_TIMEOUT}));

}  // namespace
}  // namespace StreamTests
