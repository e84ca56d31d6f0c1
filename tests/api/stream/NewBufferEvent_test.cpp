// SPDX-License-Identifier: MIT
// EVENT_NEW_BUFFER: the face of the delivery list.
#include <atomic>
#include <mutex>
#include <thread>

#include "InsideWaiter.h"
#include "StreamFixture.h"

namespace StreamTests {
namespace {

class NewBufferTest : public StreamTest {
 protected:
  void SetUp() override {
    StreamTest::SetUp();
    m_hEvent = NewBufferEvent();
  }

  void Disable() { ASSERT_GC_OK(Gc().GCUnregisterEvent(m_hStream, EVENT_NEW_BUFFER)); }
  void Enable() { m_hEvent = RegisterEvent(m_hStream, EVENT_NEW_BUFFER); }

  EVENT_HANDLE m_hEvent = nullptr;
};

// Infos ---------------------------------------------------------------------------------------------------------------

TEST_F(NewBufferTest, Infos) {
  Run(4);
  Frame();
  Frame();
  Frame();
  Take(m_hEvent);
  constexpr struct {
    EVENT_INFO_CMD cmd;
    INFO_DATATYPE type;
    size_t size;
    uint64_t value;
  } kRows[] = {{EVENT_EVENT_TYPE, INFO_DATATYPE_INT32, 4, 1},
               {EVENT_NUM_IN_QUEUE, INFO_DATATYPE_SIZET, 8, 2},
               {EVENT_NUM_FIRED, INFO_DATATYPE_UINT64, 8, 3},
               {EVENT_SIZE_MAX, INFO_DATATYPE_SIZET, 8, 16}};
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
}

TEST_F(NewBufferTest, UnknownInfos) {
  INFO_DATATYPE type = 0;
  size_t size = 0;
  const char *const function = "GenICam::Client::CDataStreamEventNewBuffer::GetInfo";
  EXPECT_GC_FROM(GC_ERR_NOT_IMPLEMENTED, "Unvavailable EVENT_INFO_CMD 0x00000004.", function,
                 Gc().EventGetInfo(m_hEvent, EVENT_INFO_DATA_SIZE_MAX, &type, nullptr, &size));
  for (const int32_t cmd : {5, 1000, -1}) {
    EXPECT_GC_FROM(GC_ERR_INVALID_PARAMETER,
                   Format("Invalid EVENT_INFO_CMD Command %08llX", static_cast<uint32_t>(cmd)), function,
                   Gc().EventGetInfo(m_hEvent, cmd, &type, nullptr, &size));
  }
}

TEST_F(NewBufferTest, NoDataItemCanBeAskedFor) {
  const EVENT_NEW_BUFFER_DATA data{};
  INFO_DATATYPE type = 0;
  size_t size = 0;
  const auto ask = [&](int32_t cmd) {
    return Gc().EventGetDataInfo(m_hEvent, &data, sizeof(data), cmd, &type, nullptr, &size);
  };
  const char *const function = "GenICam::Client::CDataStreamEventNewBuffer::GetDataInfo";
  for (const int32_t cmd : {0, 1, 2}) {
    EXPECT_GC_FROM(GC_ERR_NOT_IMPLEMENTED,
                   Format("Invalid EVENT_DATA_INFO_CMD Command %08llX", static_cast<uint32_t>(cmd)), function,
                   ask(cmd));
  }
  for (const int32_t cmd : {3, 1000, -1}) {
    EXPECT_GC_FROM(GC_ERR_INVALID_PARAMETER,
                   Format("Invalid EVENT_DATA_INFO_CMD Command %08llX", static_cast<uint32_t>(cmd)), function,
                   ask(cmd));
  }
}

TEST_F(NewBufferTest, FiredBeginsAnewWithEachStart) {
  Run(2);
  Frame();
  EXPECT_EQ(1U, EventNumber(m_hEvent, EVENT_NUM_FIRED));
  Stop();
  EXPECT_EQ(1U, EventNumber(m_hEvent, EVENT_NUM_FIRED));
  Start();
  EXPECT_EQ(0U, EventNumber(m_hEvent, EVENT_NUM_FIRED));
}

// Registering ---------------------------------------------------------------------------------------------------------

TEST_F(NewBufferTest, SecondRegistrationIsRefused) {
  EVENT_HANDLE again = this;
  EXPECT_GC_FROM(GC_ERR_RESOURCE_IN_USE, "Event already enabled.",
                 "GenICam::Client::CDataStreamEventNewBuffer::EnableEvent",
                 Gc().GCRegisterEvent(m_hStream, EVENT_NEW_BUFFER, &again));
  EXPECT_EQ(this, again);
}

TEST_F(NewBufferTest, OtherEventsAreNotImplemented) {
  EVENT_HANDLE event = this;
  for (const int32_t id : {2, 3, 4, 5, 999, 1000, -1}) {
    const std::string message = FormatId("Event ID %ld not implemented", id);
    EXPECT_GC_FROM(GC_ERR_NOT_IMPLEMENTED, message, (std::string(kModule) + "Register").c_str(),
                   Gc().GCRegisterEvent(m_hStream, id, &event));
    EXPECT_GC_FROM(GC_ERR_NOT_IMPLEMENTED, message, (std::string(kModule) + "Unregister").c_str(),
                   Gc().GCUnregisterEvent(m_hStream, id));
  }
  EXPECT_EQ(this, event);
  EXPECT_GC(GC_ERR_INVALID_PARAMETER, "Null pointer for EVENT_HANDLE",
            Gc().GCRegisterEvent(m_hStream, EVENT_NEW_BUFFER, nullptr));
}

TEST_F(NewBufferTest, EventsOfAStreamAreTwo) { EXPECT_NE(m_hEvent, ErrorEvent()); }

TEST_F(NewBufferTest, DisabledEventRefusesEverything) {
  Disable();
  const char *const message = "Event is not enabled.";
  const std::string scope = "GenICam::Client::CDataStreamEventNewBuffer::";
  uint8_t block[16];
  size_t size = sizeof(block);
  INFO_DATATYPE type = 0;
  EXPECT_GC_FROM(GC_ERR_INVALID_HANDLE, message, (scope + "GetData").c_str(),
                 Gc().EventGetData(m_hEvent, block, &size, 0));
  for (const EVENT_INFO_CMD cmd : {0, 1, 2, 3, 4, 5}) {
    EXPECT_GC_FROM(GC_ERR_INVALID_HANDLE, message, (scope + "GetInfo").c_str(),
                   Gc().EventGetInfo(m_hEvent, cmd, &type, nullptr, &size));
  }
  EXPECT_GC_FROM(GC_ERR_INVALID_HANDLE, message, (scope + "GetDataInfo").c_str(),
                 Gc().EventGetDataInfo(m_hEvent, block, size, EVENT_DATA_ID, &type, nullptr, &size));
  EXPECT_GC_FROM(GC_ERR_INVALID_HANDLE, message, (scope + "Flush").c_str(), Gc().EventFlush(m_hEvent));
  EXPECT_GC_FROM(GC_ERR_INVALID_HANDLE, message, (scope + "Kill").c_str(), Gc().EventKill(m_hEvent));
  EXPECT_GC_OK(Gc().GCUnregisterEvent(m_hStream, EVENT_NEW_BUFFER));
}

TEST_F(NewBufferTest, DisabledEventLetsBuffersPileUp) {
  const std::vector<BUFFER_HANDLE> buffers = Run(3);
  Frame();
  Disable();
  Frame();
  EXPECT_EQ(2U, Awaiting());
  Enable();
  EXPECT_EQ(buffers[0], Take(m_hEvent));
  EXPECT_EQ(buffers[1], Take(m_hEvent));
}

TEST_F(NewBufferTest, RegisteredBehindTheStartMissesNothing) {
  Disable();
  const BUFFER_HANDLE buffer = Run(1).front();
  Frame();
  Enable();
  EXPECT_EQ(buffer, Take(m_hEvent));
}

// Taking --------------------------------------------------------------------------------------------------------------

TEST_F(NewBufferTest, SizeExactAndLarger) {
  Run(2);
  Frame();
  Frame();
  EXPECT_EQ(GC_ERR_SUCCESS, GetEvent(m_hEvent, 0, 16).result);
  const EventResult larger = GetEvent(m_hEvent, 0, 100);
  EXPECT_EQ(GC_ERR_SUCCESS, larger.result);
  EXPECT_EQ(16U, larger.size);
}

TEST_F(NewBufferTest, SizeOneTooSmallLosesTheBuffer) {
  const std::vector<BUFFER_HANDLE> buffers = Run(2);
  Frame();
  Frame();
  uint8_t block[16] = {};
  size_t size = 15;
  EXPECT_GC(GC_ERR_INVALID_PARAMETER, "Invalid Buffer Size.", Gc().EventGetData(m_hEvent, block, &size, 0));
  EXPECT_EQ(15U, size);
  EXPECT_EQ(1U, Awaiting());
  EXPECT_EQ(buffers[1], Take(m_hEvent));
  Flush(ACQ_QUEUE_UNQUEUED_TO_INPUT);
  EXPECT_TRUE(FlagsOf(buffers[0]).queued) << "the way to get it back";
}

TEST_F(NewBufferTest, SizeQueryLosesTheBuffer) {
  const BUFFER_HANDLE buffer = Run(1).front();
  Frame();
  size_t size = 0;
  EXPECT_GC_OK(Gc().EventGetData(m_hEvent, nullptr, &size, 0));
  EXPECT_EQ(16U, size);
  EXPECT_EQ(0U, Awaiting());
  const Flags flags = FlagsOf(buffer);
  EXPECT_FALSE(flags.queued);
  EXPECT_TRUE(flags.newData);
  EXPECT_GC_OK(Gc().DSRevokeBuffer(m_hStream, buffer, nullptr, nullptr)) << "no longer in delivery";
}

TEST_F(NewBufferTest, SizeQueryOfAnEmptyListTimesOut) {
  size_t size = 5;
  EXPECT_GC(GC_ERR_TIMEOUT, "Timeout while acquiring data", Gc().EventGetData(m_hEvent, nullptr, &size, 0));
  EXPECT_EQ(5U, size);
}

TEST_F(NewBufferTest, FlushGivesTheBuffersBackToTheLibrary) {
  const std::vector<BUFFER_HANDLE> buffers = Run(5);
  Frame();
  Frame();
  const size_t mark = Script().Mark();
  EXPECT_GC_OK(Gc().EventFlush(m_hEvent));
  EXPECT_EQ(2U, Releases(mark));
  EXPECT_EQ(0U, Awaiting());
  EXPECT_FALSE(FlagsOf(buffers[0]).queued);
  EXPECT_FALSE(FlagsOf(buffers[0]).newData);
  EXPECT_TRUE(Grabbing());
}

TEST_F(NewBufferTest, FlushBeginsWithTheNewest) {
  Run(5);
  Frame();
  Frame();
  Script().On(Match(Op::StreamRead, GRB_STREAM_RELEASE), Broken());
  EXPECT_GC(GC_ERR_ERROR, "Failed releasing buffer ID 0x00000001.: " + LibraryText("GRB_StreamRead"),
            Gc().EventFlush(m_hEvent));
}

// Waiting -------------------------------------------------------------------------------------------------------------

TEST_F(NewBufferTest, NoWaitOnAnEmptyList) {
  uint8_t block[16];
  size_t size = sizeof(block);
  EXPECT_GC_FROM(GC_ERR_TIMEOUT, "Timeout while acquiring data", "GenICam::Client::EventGetData",
                 Gc().EventGetData(m_hEvent, block, &size, 0));
  EXPECT_EQ(sizeof(block), size);
}

TEST_F(NewBufferTest, ShortWaitLastsItsTime) {
  for (const uint64_t timeout : {1U, 30U}) {
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ(GC_ERR_TIMEOUT, GetEvent(m_hEvent, timeout).result);
    EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(timeout));
  }
}

TEST_F(NewBufferTest, WaitBeginsBeforeAnyBufferExists) {
  CEventWaiter waiter(m_hEvent);
  const BUFFER_HANDLE buffer = Run(1).front();
  Script().PostCallback(GRB_EVENT_BUFFER_READY).wait();
  EXPECT_EQ(buffer, waiter.Result().NewBuffer().BufferHandle);
}

class NewBufferWaits : public NewBufferTest, public testing::WithParamInterface<uint64_t> {};

TEST_P(NewBufferWaits, LongWaitIsEndedByAFrame) {
  const BUFFER_HANDLE buffer = Run(1).front();
  CEventWaiter waiter(m_hEvent, GetParam());
  // The short wait is the clock: a timeout that has overflowed would have ended the long one by then.
  EXPECT_EQ(GC_ERR_TIMEOUT, GetEvent(ErrorEvent(), 20, 4096).result);
  EXPECT_FALSE(waiter.Done());
  Frame();
  const EventResult result = waiter.Result();
  ASSERT_EQ(GC_ERR_SUCCESS, result.result) << result.error.text;
  EXPECT_EQ(buffer, result.NewBuffer().BufferHandle);
}

INSTANTIATE_TEST_SUITE_P(All, NewBufferWaits,
                         testing::Values(60000U, 0x7FFFFFFFU, 0xFFFFFFFFU, 0x100000000U, uint64_t{1} << 53U,
                                         uint64_t{1} << 62U, uint64_t{1} << 63U, 0xFFFFFFFFFFFFFFFEU, GENTL_INFINITE));

TEST_F(NewBufferTest, KillEndsAWait) {
  CEventWaiter waiter(m_hEvent);
  EXPECT_GC_OK(Gc().EventKill(m_hEvent));
  const EventResult result = waiter.Result();
  EXPECT_EQ(GC_ERR_ABORT, result.result);
  const std::optional<FailureText> text = SplitFailureText(result.error.text);
  ASSERT_TRUE(text) << result.error.text;
  EXPECT_EQ("Wait terminated", text->message);
  EXPECT_EQ(std::string(kModule) + "GetFilledBuffer", text->function);
}

TEST_F(NewBufferTest, KillWithoutAWaiterEndsTheNextCall) {
  const BUFFER_HANDLE buffer = Run(1).front();
  Frame();
  EXPECT_GC_OK(Gc().EventKill(m_hEvent));
  uint8_t block[16];
  size_t size = sizeof(block);
  EXPECT_GC(GC_ERR_ABORT, "Wait terminated", Gc().EventGetData(m_hEvent, block, &size, 0)) << "although a buffer waits";
  EXPECT_EQ(1U, Awaiting());
  EXPECT_EQ(buffer, Take(m_hEvent)) << "once";
}

TEST_F(NewBufferTest, TwoKillsEndOneCall) {
  EXPECT_GC_OK(Gc().EventKill(m_hEvent));
  EXPECT_GC_OK(Gc().EventKill(m_hEvent));
  EXPECT_EQ(GC_ERR_ABORT, GetEvent(m_hEvent, 0).result);
  EXPECT_EQ(GC_ERR_TIMEOUT, GetEvent(m_hEvent, 0).result);
}

TEST_F(NewBufferTest, KillOutlivesStartsStopsAndFlushes) {
  EXPECT_GC_OK(Gc().EventKill(m_hEvent));
  Run(1);
  Frame();
  EXPECT_GC_OK(Gc().EventFlush(m_hEvent));
  Stop();
  Disable();
  Enable();
  EXPECT_EQ(GC_ERR_ABORT, GetEvent(m_hEvent, 0).result);
}

TEST_F(NewBufferTest, KillDoesNotReachTheErrorEvent) {
  const EVENT_HANDLE errors = ErrorEvent();
  EXPECT_GC_OK(Gc().EventKill(m_hEvent));
  EXPECT_EQ(GC_ERR_TIMEOUT, GetEvent(errors, 0, 4096).result);
}

TEST_F(NewBufferTest, SecondOfTwoWaitersReportsItsTimeoutEarly) {
  const BUFFER_HANDLE buffer = Run(1).front();
  std::vector<EventResult> results;
  {
    // Result() does not wait as long as that: a frame that woke one of them only would show.
    CInsideWaiter first(m_hEvent, kBeyondResult);
    CInsideWaiter second(m_hEvent, kBeyondResult);
    EXPECT_TRUE(first.Begins());
    EXPECT_TRUE(second.Begins());
    Frame();
    results = {first.Result(), second.Result()};
  }
  if (results[0].result != GC_ERR_SUCCESS) {
    std::swap(results[0], results[1]);
  }
  EXPECT_EQ(buffer, results[0].NewBuffer().BufferHandle);
  EXPECT_EQ(GC_ERR_TIMEOUT, results[1].result);
  EXPECT_EQ("Timeout while acquiring data", SplitFailureText(results[1].error.text).value_or(FailureText{}).message);
}

TEST_F(NewBufferTest, TwoThreadsShareTheFrames) {
  constexpr uint64_t kFrames = 200;
  const std::vector<BUFFER_HANDLE> buffers = Run(4);
  std::atomic<uint64_t> taken{0};
  std::atomic<bool> over{false};
  std::mutex mutex;  // the ring is not made for two queueing threads at once
  const auto consume = [&] {
    while (!over) {
      const EventResult result = GetEvent(m_hEvent, 20);
      if (result.result == GC_ERR_SUCCESS) {
        const std::lock_guard<std::mutex> lock(mutex);
        EXPECT_EQ(GC_ERR_SUCCESS, Gc().DSQueueBuffer(m_hStream, result.NewBuffer().BufferHandle));
        ++taken;
      } else {
        EXPECT_EQ(GC_ERR_TIMEOUT, result.result) << result.error.text;
      }
    }
  };
  std::thread first(consume);
  std::thread second(consume);
  for (uint64_t frame = 0; frame < kFrames; ++frame) {
    // The slot's buffer must be back before the library fills it.
    const BUFFER_HANDLE next = buffers[frame % buffers.size()];
    EXPECT_TRUE(WaitUntil([&] {
      const std::lock_guard<std::mutex> lock(mutex);
      return BufferNumber(next, BUFFER_INFO_IS_QUEUED) != 0;
    }));
    EXPECT_TRUE(Script().FireCallback(GRB_EVENT_BUFFER_READY));
  }
  EXPECT_TRUE(WaitUntil([&] { return taken == kFrames; }));
  over = true;
  first.join();
  second.join();
  EXPECT_EQ(kFrames, Delivered());
}

}  // namespace
}  // namespace StreamTests
