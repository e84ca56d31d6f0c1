// SPDX-License-Identifier: MIT
// The road of a frame: the library's callback, the stamps, the delivery list, and the way back through the ring.
#include <atomic>
#include <memory>
#include <thread>

#include "FailingRequest.h"
#include "StreamFixture.h"

namespace StreamTests {
namespace {

constexpr uint32_t kReady = GRB_EVENT_BUFFER_READY;
constexpr uint32_t kOverflow = GRB_EVENT_FIFO_OVERFLOW;
constexpr uint32_t kSyncLost = GRB_EVENT_SYNC_LOST;

// Frames --------------------------------------------------------------------------------------------------------------

TEST_F(StreamTest, FrameTravelsFromTheLibraryToTheConsumer) {
  const EVENT_HANDLE event = NewBufferEvent();
  std::vector<uint8_t> memory(PayloadSize());
  int user = 0;
  BUFFER_HANDLE buffer = nullptr;
  ASSERT_GC_OK(Gc().DSAnnounceBuffer(m_hStream, memory.data(), memory.size(), &user, &buffer));
  Queue(buffer);
  Start();
  ASSERT_TRUE(Script().DeliverFrame(0, 0xA5));
  const EventResult taken = GetEvent(event, 0);
  ASSERT_EQ(GC_ERR_SUCCESS, taken.result) << taken.error.text;
  ASSERT_EQ(16U, taken.size);
  EXPECT_EQ(buffer, taken.NewBuffer().BufferHandle);
  EXPECT_EQ(&user, taken.NewBuffer().pUserPointer);
  EXPECT_EQ(std::vector<uint8_t>(memory.size(), 0xA5), memory) << "written in place, every byte";
  Flush(ACQ_QUEUE_ALL_DISCARD);
  EXPECT_GC_OK(Gc().DSRevokeBuffer(m_hStream, buffer, nullptr, nullptr));
}

TEST_F(StreamTest, FrameMakesNoLibraryCall) {
  const EVENT_HANDLE event = NewBufferEvent();
  Run(2);
  const size_t mark = Script().Mark();
  Frame();
  Take(event);
  EXPECT_EQ(std::vector<std::string>{}, Trace(mark));
}

TEST_F(StreamTest, BuffersArriveOldestFirstAndWrapAround) {
  const EVENT_HANDLE event = NewBufferEvent();
  const std::vector<BUFFER_HANDLE> buffers = Run(3);
  for (uint64_t frame = 0; frame < 10; ++frame) {
    const BUFFER_HANDLE expected = buffers[frame % 3];
    Frame();
    ASSERT_EQ(expected, Take(event)) << "frame " << frame;
    EXPECT_EQ(frame + 1, BufferNumber(expected, BUFFER_INFO_FRAMEID));
    Queue(expected);
  }
  EXPECT_EQ(10U, Delivered());
  EXPECT_EQ(10U, Started());
}

TEST_F(StreamTest, NewDataStaysUntilTheBufferIsQueued) {
  const EVENT_HANDLE event = NewBufferEvent();
  const BUFFER_HANDLE buffer = Run(1).front();
  Frame();
  EXPECT_TRUE(FlagsOf(buffer).newData);
  Take(event);
  EXPECT_TRUE(FlagsOf(buffer).newData);
  Queue(buffer);
  EXPECT_FALSE(FlagsOf(buffer).newData);
}

TEST_F(StreamTest, StampsAreThoseOfTheRunsBegin) {
  OpenStream();
  SetSize(2004, 3);
  const BUFFER_HANDLE buffer = Run(1).front();
  SetSize(64, 48);
  SetParameter(GRB_USR_FORMAT, GRB_USR_FORMAT_RGB8);
  Frame();
  EXPECT_EQ(2004U, BufferNumber(buffer, BUFFER_INFO_WIDTH));
  EXPECT_EQ(3U, BufferNumber(buffer, BUFFER_INFO_HEIGHT));
  EXPECT_EQ(0x01080001U, BufferNumber(buffer, BUFFER_INFO_PIXELFORMAT));
  EXPECT_EQ(2016U * 3U, BufferNumber(buffer, BUFFER_INFO_SIZE_FILLED));
  EXPECT_EQ(12U, BufferNumber(buffer, BUFFER_INFO_XPADDING));
}

TEST_F(StreamTest, PaddingIsThatOfTheLatestSizeQuery) {
  // Each query recomputes it, during a run as well.
  OpenStream();
  SetSize(2004, 3);
  const BUFFER_HANDLE buffer = Run(1).front();
  SetSize(64, 48);
  EXPECT_EQ(3072U, PayloadSize());
  Frame();
  EXPECT_EQ(2004U, BufferNumber(buffer, BUFFER_INFO_WIDTH));
  EXPECT_EQ(0U, BufferNumber(buffer, BUFFER_INFO_XPADDING));
}

// The limit -----------------------------------------------------------------------------------------------------------

TEST_F(StreamTest, LimitStopsTheStreamAndNotTheRun) {
  const EVENT_HANDLE event = NewBufferEvent();
  const std::vector<BUFFER_HANDLE> buffers = Run(5, 3);
  const size_t mark = Script().Mark();
  for (uint64_t frame = 0; frame < 3; ++frame) {
    Frame();
    EXPECT_EQ(frame + 1, BufferNumber(buffers[frame], BUFFER_INFO_FRAMEID));
  }
  EXPECT_EQ(0U, Count(GRB_STREAM_STOP, mark)) << "the callback behind the limit stops";
  Frame();
  EXPECT_EQ(1U, Count(GRB_STREAM_STOP, mark));
  EXPECT_EQ(3U, Started());
  EXPECT_EQ(3U, Delivered());
  EXPECT_EQ(3U, Awaiting());
  EXPECT_TRUE(FlagsOf(buffers[3]).queued);
  EXPECT_EQ(0U, BufferNumber(buffers[3], BUFFER_INFO_FRAMEID));
  EXPECT_TRUE(Grabbing()) << "until the Consumer stops";
  for (size_t frame = 0; frame < 3; ++frame) {
    EXPECT_EQ(buffers[frame], Take(event));
  }
  Stop();
  EXPECT_EQ(2U, Count(GRB_STREAM_STOP, mark)) << "a second time";
  EXPECT_FALSE(Grabbing());
}

TEST_F(StreamTest, EachCallbackBehindTheLimitStopsAnew) {
  Run(3, 1);
  Frame();
  const size_t mark = Script().Mark();
  Frame();
  Frame();
  EXPECT_EQ(2U, Count(GRB_STREAM_STOP, mark));
  EXPECT_EQ(1U, Delivered());
}

TEST_F(StreamTest, FailingStopAtTheLimitIsIgnored) {
  const EVENT_HANDLE errors = ErrorEvent();
  Run(2, 1);
  Frame();
  Script().On(Match(Op::StreamRead, GRB_STREAM_STOP), Broken());
  ASSERT_TRUE(Script().FireCallback(kReady | kOverflow));
  const ErrorBlock block = TakeError(errors);
  EXPECT_EQ(-10002, block.code) << "the other bits are still looked at";
  EXPECT_EQ(0U, EventNumber(errors, EVENT_NUM_IN_QUEUE));
}

TEST_F(StreamTest, InfiniteMeansNoLimit) {
  const EVENT_HANDLE event = NewBufferEvent();
  Run(1, GENTL_INFINITE);
  for (size_t frame = 0; frame < 20; ++frame) {
    Frame();
    Queue(Take(event));
  }
  EXPECT_EQ(0U, Count(GRB_STREAM_STOP));
}

// Event words ---------------------------------------------------------------------------------------------------------

struct WordRow {
  uint32_t word;
  uint64_t frames;
  std::vector<int32_t> errors;
};

void PrintTo(const WordRow &row, std::ostream *out) { *out << "word " << row.word; }

class EventWords : public StreamTest, public testing::WithParamInterface<WordRow> {};

TEST_P(EventWords, FrameFirstThenOverflowThenSyncLost) {
  const EVENT_HANDLE errors = ErrorEvent();
  Run(2);
  const size_t mark = Script().Mark();
  ASSERT_TRUE(Script().FireCallback(GetParam().word));
  EXPECT_EQ(GetParam().frames, Delivered());
  ASSERT_EQ(GetParam().errors.size(), EventNumber(errors, EVENT_NUM_IN_QUEUE));
  for (const int32_t code : GetParam().errors) {
    const ErrorBlock block = TakeError(errors);
    EXPECT_EQ(code, block.code);
    EXPECT_EQ(code == -10002 ? "'GRB FIFO Overflow' event detected." : "'GRB Sync Lost' event detected.", block.text);
  }
  EXPECT_TRUE(Grabbing()) << "reported, never acted on";
  EXPECT_EQ(std::vector<std::string>{}, Trace(mark));
}

const WordRow kWords[] = {
    {0, 0, {}},
    {kReady, 1, {}},
    {kOverflow, 0, {-10002}},
    {kSyncLost, 0, {-10003}},
    {kReady | kOverflow, 1, {-10002}},
    {kReady | kSyncLost, 1, {-10003}},
    {kOverflow | kSyncLost, 0, {-10002, -10003}},
    {kReady | kOverflow | kSyncLost, 1, {-10002, -10003}},
    {~(kReady | kOverflow | kSyncLost), 0, {}},
    {0x1U | kReady, 1, {}},
};

INSTANTIATE_TEST_SUITE_P(All, EventWords, testing::ValuesIn(kWords));

TEST_F(StreamTest, FrameIsOnTheListWhenTheOverflowIsReported) {
  const EVENT_HANDLE errors = ErrorEvent();
  Run(2);
  CEventWaiter waiter(errors, GENTL_INFINITE, 2043);
  ASSERT_TRUE(Script().FireCallback(kReady | kOverflow));
  EXPECT_EQ(GC_ERR_SUCCESS, waiter.Result().result);
  EXPECT_EQ(1U, Awaiting());
}

TEST_F(StreamTest, FrameBesideAnOverflowIsLikeAnyOther) {
  const BUFFER_HANDLE buffer = Run(1).front();
  ASSERT_TRUE(Script().FireCallback(kReady | kOverflow | kSyncLost));
  const Flags flags = FlagsOf(buffer);
  EXPECT_FALSE(flags.incomplete);
  EXPECT_FALSE(flags.acquiring);
  EXPECT_TRUE(flags.newData);
  EXPECT_EQ(PayloadSize(), flags.filled);
}

TEST_F(StreamTest, DisabledErrorEventDropsTheReport) {
  Run(2);
  ASSERT_TRUE(Script().FireCallback(kOverflow | kSyncLost));
  const EVENT_HANDLE errors = ErrorEvent();
  EXPECT_EQ(0U, EventNumber(errors, EVENT_NUM_IN_QUEUE));
  EXPECT_EQ(0U, EventNumber(errors, EVENT_NUM_FIRED));
}

TEST_F(StreamTest, DevicesErrorEventHearsNothingOfTheStream) {
  const EVENT_HANDLE errors = RegisterEvent(OpenDevice(), EVENT_ERROR);
  ErrorEvent();
  Run(1);
  ASSERT_TRUE(Script().FireCallback(kOverflow));
  EXPECT_EQ(0U, EventNumber(errors, EVENT_NUM_IN_QUEUE));
}

// Blocking mode -------------------------------------------------------------------------------------------------------

TEST_F(StreamTest, UnqueuedBufferIsRefusedInBlockingMode) {
  const EVENT_HANDLE errors = ErrorEvent();
  const EVENT_HANDLE event = NewBufferEvent();
  const std::vector<BUFFER_HANDLE> buffers = Run(2);
  Frame();
  Frame();
  ASSERT_EQ(buffers[0], Take(event));
  ASSERT_EQ(buffers[1], Take(event));
  const uint64_t timestamp = BufferNumber(buffers[0], BUFFER_INFO_TIMESTAMP);

  ASSERT_TRUE(Script().FireCallback(kReady | kOverflow | kSyncLost));
  const ErrorBlock block = TakeError(errors);
  EXPECT_EQ(-10001, block.code);
  const std::optional<FailureText> text = SplitFailureText(block.text);
  ASSERT_TRUE(text) << block.text;
  EXPECT_EQ("The buffer delivered by the acquisition engine was not queued.", text->message);
  EXPECT_EQ(std::string(kEngine) + "GRB_CallbackEvent", text->function);
  EXPECT_EQ("StreamImpl.cpp", text->file);
  EXPECT_EQ(0U, EventNumber(errors, EVENT_NUM_IN_QUEUE)) << "overflow and sync loss are skipped";

  EXPECT_EQ(3U, Started()) << "counted";
  EXPECT_EQ(2U, Delivered()) << "not delivered";
  EXPECT_EQ(0U, Awaiting());
  EXPECT_EQ(1U, BufferNumber(buffers[0], BUFFER_INFO_FRAMEID)) << "not stamped";
  EXPECT_EQ(timestamp, BufferNumber(buffers[0], BUFFER_INFO_TIMESTAMP));

  // The index has not moved: the next callback is taken for the same slot.
  Queue(buffers[0]);
  Frame();
  EXPECT_EQ(buffers[0], Take(event));
  EXPECT_EQ(3U, BufferNumber(buffers[0], BUFFER_INFO_FRAMEID));
  EXPECT_EQ(4U, Started());
}

TEST_F(StreamTest, UnqueuedBufferIsFilledWithBlockingOff) {
  const EVENT_HANDLE errors = ErrorEvent();
  const EVENT_HANDLE event = NewBufferEvent();
  OpenStream();
  SetParameter(GRB_ACQ_BLOCKING, GRB_ACQ_BLOCKING_OFF);
  const BUFFER_HANDLE buffer = Run(1).front();
  Frame();
  ASSERT_EQ(buffer, Take(event));
  Frame();
  EXPECT_EQ(buffer, Take(event)) << "the Consumer still holds it";
  EXPECT_EQ(2U, BufferNumber(buffer, BUFFER_INFO_FRAMEID));
  EXPECT_EQ(0U, EventNumber(errors, EVENT_NUM_IN_QUEUE));
}

TEST_F(StreamTest, BlockingModeIsReadAtTheStart) {
  const EVENT_HANDLE errors = ErrorEvent();
  Run(1);
  SetParameter(GRB_ACQ_BLOCKING, GRB_ACQ_BLOCKING_OFF);
  Frame();
  Frame();
  EXPECT_EQ(1U, EventNumber(errors, EVENT_NUM_IN_QUEUE));
}

TEST_F(StreamTest, ListMayHoldABufferTwiceWithBlockingOff) {
  const EVENT_HANDLE event = NewBufferEvent();
  SetParameter(GRB_ACQ_BLOCKING, GRB_ACQ_BLOCKING_OFF);
  const BUFFER_HANDLE buffer = Run(1).front();
  Frame();
  Frame();
  EXPECT_EQ(2U, Awaiting());
  EXPECT_EQ(buffer, Take(event));
  EXPECT_EQ(buffer, Take(event));
}

// The callback's arguments --------------------------------------------------------------------------------------------

TEST_F(StreamDeathTest, CallbackWithoutAContext) {
  Run(1);
  const Stream stream = Script().StreamOf();
  ASSERT_NE(nullptr, stream.callback);
  EXPECT_DEATH(stream.callback(stream.handle, kReady, nullptr), "pvParams != 0");
}

TEST_F(StreamTest, CallbacksHandleIsNotLookedAt) {
  Run(1);
  const Stream stream = Script().StreamOf();
  stream.callback(0xFFFFFFFFU, kReady, stream.context);
  EXPECT_EQ(1U, Delivered());
}

// The ring ------------------------------------------------------------------------------------------------------------

/// The releases that a queueing causes, from the ring's rules.
class CRing {
 public:
  explicit CRing(uint32_t buffers) : m_Ids(buffers, 0) {}
  size_t Release(uint32_t id) {
    const auto size = static_cast<uint32_t>(m_Ids.size());
    m_Ids[id % size] = id;
    size_t released = 0;
    while (m_Ids[m_nNext % size] == m_nNext) {
      ++m_nNext;
      ++released;
    }
    return released;
  }

 private:
  std::vector<uint32_t> m_Ids;
  uint32_t m_nNext = 0;
};

struct RingRow {
  const char *name;
  size_t buffers;
  std::vector<size_t> order;     ///< of the frames' ids
  std::vector<size_t> releases;  ///< of each queueing
};

class RingTable : public StreamTest, public testing::WithParamInterface<RingRow> {};

TEST_P(RingTable, QueueingsAnyOrderGivesTheLibrarysOrder) {
  const RingRow &row = GetParam();
  const EVENT_HANDLE event = NewBufferEvent();
  Run(row.buffers);
  std::vector<BUFFER_HANDLE> taken;
  for (size_t i = 0; i < row.order.size(); ++i) {
    Frame();
    taken.push_back(Take(event));
  }
  CRing ring(static_cast<uint32_t>(row.buffers));
  for (size_t i = 0; i < row.order.size(); ++i) {
    const size_t mark = Script().Mark();
    Queue(taken[row.order[i]]);
    EXPECT_EQ(row.releases[i], Releases(mark)) << "at " << i;
    EXPECT_EQ(row.releases[i], ring.Release(static_cast<uint32_t>(row.order[i]))) << "the table itself, at " << i;
  }
}

const RingRow kRings[] = {
    {"InOrder", 5, {0, 1, 2}, {1, 1, 1}},
    {"Backwards", 5, {2, 1, 0}, {1, 2, 0}},
    {"OneBuffer", 1, {0}, {1}},
    {"SecondFirst", 2, {1, 0}, {2, 0}},
    {"AllBackwards", 5, {4, 3, 2, 1, 0}, {1, 0, 0, 4, 0}},
    {"GapInTheMiddle", 4, {0, 2, 3, 1}, {1, 0, 0, 3}},
    {"ZeroLast", 3, {1, 2, 0}, {2, 1, 0}},
};

INSTANTIATE_TEST_SUITE_P(All, RingTable, testing::ValuesIn(kRings),
                         [](const auto &row) { return std::string(row.param.name); });

class RingWalk : public StreamTest, public testing::WithParamInterface<uint32_t> {};

TEST_P(RingWalk, ReleasesFollowTheRingOverManyTurns) {
  // A fixed generator: the same walk on every machine.
  uint32_t state = GetParam();
  const auto below = [&state](size_t bound) {
    state = state * 1664525U + 1013904223U;
    return (state >> 8U) % bound;
  };
  const uint32_t buffers = 1 + GetParam() % 7;
  const EVENT_HANDLE event = NewBufferEvent();
  Run(buffers);
  CRing ring(buffers);
  struct Held {
    BUFFER_HANDLE buffer;
    uint32_t id;
  };
  std::vector<Held> held;
  uint32_t next = 0;
  for (size_t step = 0; step < 300; ++step) {
    if (held.size() < buffers && below(2) == 0) {
      Frame();
      if (Awaiting() == 0) {
        ++next;  // the buffer of this slot is still held: refused, though counted
        continue;
      }
      held.push_back({Take(event), next++});
    } else if (!held.empty()) {
      const size_t pick = below(held.size());
      const size_t mark = Script().Mark();
      Queue(held[pick].buffer);
      ASSERT_EQ(ring.Release(held[pick].id), Releases(mark)) << "step " << step;
      held.erase(held.begin() + static_cast<std::ptrdiff_t>(pick));
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Seeds, RingWalk, testing::Range(1U, 15U));

TEST_F(StreamTest, BufferIdsBeginAtZeroWithEachRun) {
  const EVENT_HANDLE event = NewBufferEvent();
  Run(3);
  Frame();
  Frame();
  Start();
  Frame();
  Take(event);
  Take(event);
  const BUFFER_HANDLE third = Take(event);
  Script().On(Match(Op::StreamRead, GRB_STREAM_RELEASE), Broken());
  EXPECT_GC(GC_ERR_ERROR, "Failed releasing buffer ID 0x00000000.: " + LibraryText("GRB_StreamRead"),
            Gc().DSQueueBuffer(m_hStream, third));
}

TEST_F(StreamTest, ReleaseFailureNamesTheIdOfTheBufferGivenBack) {
  const EVENT_HANDLE event = NewBufferEvent();
  Run(20);
  std::vector<BUFFER_HANDLE> taken;
  for (size_t i = 0; i < 18; ++i) {
    Frame();
    taken.push_back(Take(event));
  }
  for (size_t i = 0; i < 17; ++i) {
    Queue(taken[i]);
  }
  Script().On(Match(Op::StreamRead, GRB_STREAM_RELEASE), Broken());
  EXPECT_GC(GC_ERR_ERROR, "Failed releasing buffer ID 0x00000011.: " + LibraryText("GRB_StreamRead"),
            Gc().DSQueueBuffer(m_hStream, taken[17]));
}

TEST_F(StreamTest, BufferKeepsTheIdOfAnEarlierRun) {
  // Three frames give the third buffer the id 2. In the next run it is queued without having been filled.
  const EVENT_HANDLE event = NewBufferEvent();
  const std::vector<BUFFER_HANDLE> buffers = Run(3);
  for (size_t i = 0; i < 3; ++i) {
    Frame();
    Take(event);
  }
  Queue(buffers[0]);
  Queue(buffers[1]);
  Start();
  // Two buffers in the ring: id 2 goes into entry 0, which then no longer counts as released; entry 0 is not 0.
  const size_t mark = Script().Mark();
  EXPECT_GC_OK(Gc().DSQueueBuffer(m_hStream, buffers[2]));
  EXPECT_EQ(0U, Releases(mark));
}

// Stepping through a flush while acquiring ----------------------------------------------------------------------------

TEST_F(StreamTest, DiscardedBufferFailsTheNextFrameInBlockingMode) {
  const EVENT_HANDLE errors = ErrorEvent();
  const EVENT_HANDLE event = NewBufferEvent();
  const std::vector<BUFFER_HANDLE> buffers = Run(1);
  Frame();
  const size_t mark = Script().Mark();
  EXPECT_GC_OK(Gc().EventFlush(event));
  EXPECT_EQ(1U, Releases(mark)) << "the library's slot is free";
  EXPECT_EQ(0U, Awaiting());
  EXPECT_FALSE(FlagsOf(buffers[0]).queued);
  Frame();
  const ErrorBlock block = TakeError(errors);
  EXPECT_EQ(-10001, block.code);
  EXPECT_EQ(0U, block.text.find("The buffer delivered by the acquisition engine was not queued."));
}

// Memory runs out -----------------------------------------------------------------------------------------------------

/// Fills buffers until the delivery list asks for storage, which it does not get. Gives the number of frames.
class OutOfMemory : public StreamTest {
 protected:
  static constexpr size_t kBuffers = 300;

  size_t FramesUntilOneIsLost(unsigned requests = 1) {
    Script().SetQuiet(true);  // the library itself is to ask for nothing
    size_t frames = 0;
    bool lost = false;
    while (!lost && frames < kBuffers) {
      const CFailingRequest fail(requests);
      Script().FireCallback(kReady);
      lost = fail.Happened();
      ++frames;
    }
    Script().SetQuiet(false);
    EXPECT_TRUE(lost) << "the list never grew: another scene is needed";
    return frames;
  }

  void TearDown() override {
    Script().SetQuiet(false);
    StreamTest::TearDown();
  }
};

TEST_F(OutOfMemory, UndeliverableFrameIsReportedAndItsSlotGivenBack) {
  const EVENT_HANDLE errors = ErrorEvent();
  OpenStream();
  SetSize(16, 1);
  const std::vector<BUFFER_HANDLE> buffers = Run(kBuffers);
  const size_t frames = FramesUntilOneIsLost();
  EXPECT_EQ(frames, Started());
  EXPECT_EQ(frames, Delivered()) << "the count goes up ahead of the list";
  EXPECT_EQ(frames - 1, Awaiting());
  EXPECT_EQ(1U, Script().StreamOf().releases) << "no Consumer will ever return it";
  const ErrorBlock block = TakeError(errors);
  EXPECT_EQ(-10001, block.code);
  EXPECT_EQ("std::bad_alloc", block.text);
  EXPECT_EQ(0U, EventNumber(errors, EVENT_NUM_IN_QUEUE));

  Frame();
  EXPECT_EQ(frames, Awaiting()) << "the next slot follows";
  EXPECT_EQ(frames + 1, BufferNumber(buffers[frames], BUFFER_INFO_FRAMEID));
}

TEST_F(OutOfMemory, FailingReleaseOfAnUndeliverableFrameIsReportedToo) {
  const EVENT_HANDLE errors = ErrorEvent();
  OpenStream();
  SetSize(16, 1);
  Run(kBuffers);
  Script().On(Match(Op::StreamRead, GRB_STREAM_RELEASE), Broken());
  FramesUntilOneIsLost();
  EXPECT_EQ("std::bad_alloc", TakeError(errors).text);
  const ErrorBlock block = TakeError(errors);
  EXPECT_EQ(-10001, block.code);
  const FailureText text = SplitFailureText(block.text).value_or(FailureText{});
  EXPECT_EQ(": " + LibraryText("GRB_StreamRead"), text.message);
  EXPECT_EQ(std::string(kEngine) + "GRB_CallbackEvent", text.function);
}

TEST_F(OutOfMemory, ReportThatFindsNoMemoryEitherIsLostAndNothingElse) {
  const EVENT_HANDLE errors = ErrorEvent();
  OpenStream();
  SetSize(16, 1);
  const std::vector<BUFFER_HANDLE> buffers = Run(kBuffers);
  const size_t frames = FramesUntilOneIsLost(2);
  EXPECT_EQ(frames, Delivered());
  EXPECT_EQ(frames - 1, Awaiting());
  EXPECT_EQ(1U, Script().StreamOf().releases) << "the slot is given back all the same";
  EXPECT_EQ(0U, EventNumber(errors, EVENT_NUM_IN_QUEUE));
  EXPECT_EQ(0U, EventNumber(errors, EVENT_NUM_FIRED));

  Frame();
  EXPECT_EQ(frames, Awaiting());
  EXPECT_EQ(frames + 1, BufferNumber(buffers[frames], BUFFER_INFO_FRAMEID)) << "the run is in step";
  ASSERT_TRUE(Script().FireCallback(kOverflow));
  EXPECT_EQ(-10002, TakeError(errors).code) << "the event works on";
}

TEST_F(OutOfMemory, TestReportWithoutMemoryIsNoFailure) {
  const EVENT_HANDLE errors = ErrorEvent();
  GC_ERROR result = GC_ERR_CUSTOM_ID;
  bool failed = false;
  const uint32_t one = 1;
  size_t size = sizeof(one);
  {
    const CFailingRequest fail;
    result = Gc().GCWritePort(m_hStream, 0x14, &one, &size);
    failed = fail.Happened();
  }
  EXPECT_TRUE(failed) << "nothing was asked for: another scene is needed";
  EXPECT_EQ(GC_ERR_SUCCESS, result);
  EXPECT_EQ(0U, EventNumber(errors, EVENT_NUM_FIRED));
  EXPECT_GC_OK(Gc().GCWritePort(m_hStream, 0x14, &one, &size));
  EXPECT_EQ(1U, EventNumber(errors, EVENT_NUM_IN_QUEUE));
}

TEST_F(OutOfMemory, FailureBehindATimedOutStopHasNobodyToGoTo) {
  const EVENT_HANDLE errors = ErrorEvent();
  OpenStream();
  SetSize(16, 1);
  Run(kBuffers);
  Script().SetFinalCallback(FinalCallback::None);
  GC_ERROR stopped = GC_ERR_SUCCESS;
  Script().On(Match(Op::StreamRead, GRB_STREAM_RELEASE), Broken().Do([&](const Call &) {
    std::thread([&] { stopped = Gc().DSStopAcquisition(m_hStream, ACQ_STOP_FLAGS_DEFAULT); }).join();
  }));
  FramesUntilOneIsLost();
  EXPECT_EQ(GC_ERR_ERROR, stopped) << "its time ran out while the callback was held up";
  EXPECT_EQ("std::bad_alloc", TakeError(errors).text);
  EXPECT_EQ(0U, EventNumber(errors, EVENT_NUM_IN_QUEUE));
  Script().SetFinalCallback(FinalCallback::OwnThread);
}

// The library's own thread --------------------------------------------------------------------------------------------

TEST_F(StreamTest, FramesOfTheLibrarysThread) {
  constexpr uint64_t kFrames = 1000;
  constexpr size_t kBuffers = 4;
  const EVENT_HANDLE event = NewBufferEvent();
  const std::vector<BUFFER_HANDLE> buffers = Run(kBuffers);
  const GRB_HANDLE handle = StreamHandle();
  const auto fired = std::make_shared<std::atomic<uint64_t>>(0);
  // The library fills a slot only when one has been released.
  std::future<void> pump = Script().Post(
      [fired, handle] {
        while (*fired < kFrames) {
          if (!Script().WaitFor([&] { return Script().StreamOf(handle).releases + kBuffers > *fired; })) {
            return;
          }
          ++*fired;
          Script().FireCallback(kReady, handle);
        }
      },
      handle);
  for (uint64_t frame = 0; frame < kFrames; ++frame) {
    const EventResult taken = GetEvent(event, 10000);
    ASSERT_EQ(GC_ERR_SUCCESS, taken.result) << taken.error.text << " at frame " << frame;
    const BUFFER_HANDLE buffer = taken.NewBuffer().BufferHandle;
    ASSERT_EQ(buffers[frame % kBuffers], buffer);
    ASSERT_EQ(frame + 1, BufferNumber(buffer, BUFFER_INFO_FRAMEID));
    Queue(buffer);
  }
  pump.wait();
  EXPECT_EQ(kFrames, Delivered());
  Stop();
}

TEST_F(StreamTest, LookingOnDuringARunHarmsNothing) {
  const EVENT_HANDLE event = NewBufferEvent();
  const EVENT_HANDLE errors = ErrorEvent();
  const std::vector<BUFFER_HANDLE> buffers = Run(3);
  std::atomic<bool> over{false};
  std::atomic<uint64_t> looks{0};
  std::thread looker([&] {
    while (!over) {
      for (const STREAM_INFO_CMD cmd : {1, 2, 3, 4, 5, 6, 7, 8}) {
        StreamNumber(cmd);
      }
      for (const BUFFER_HANDLE buffer : buffers) {
        FlagsOf(buffer);
        BufferNumber(buffer, BUFFER_INFO_FRAMEID);
        BufferNumber(buffer, BUFFER_INFO_TIMESTAMP);
        BufferNumber(buffer, BUFFER_INFO_WIDTH);
      }
      EventNumber(event, EVENT_NUM_IN_QUEUE);
      EventNumber(errors, EVENT_NUM_FIRED);
      ++looks;
    }
  });
  uint64_t frames = 0;
  EXPECT_TRUE(WaitUntil(
      [&] {
        Script().PostCallback(kReady | kOverflow).wait();
        Queue(Take(event));
        ++frames;
        return frames >= 50 && looks >= 20;
      },
      std::chrono::seconds(60)));
  Stop();
  over = true;
  looker.join();
  EXPECT_EQ(frames, Delivered());
}

TEST_F(StreamTest, WordsOfAFailureInTheCallbackStayOnItsThread) {
  OpenStream();
  Run(1, 1);
  Script().On(Match(Op::StreamRead, GRB_STREAM_STOP), Broken());
  std::thread consumer([&] {
    Script().PostCallback(kReady).wait();
    Script().PostCallback(kReady).wait();
    EXPECT_EQ(1U, Count(GRB_STREAM_STOP)) << "the limit's stop failed, with words";
    Script().On(Match(Op::ParameterSet, GRB_LUT_SHIFT), Reply::Status(kScriptedStatus));
    EXPECT_GC(GC_ERR_ERROR, "Failed writing Device feature: GRB_LUT_SHIFT: ", WriteU32(m_hDevice, 0x1444, 1));
  });
  consumer.join();
  Stop();
}

TEST_F(StreamTest, TwoStreamsDoNotMix) {
  const EVENT_HANDLE event = NewBufferEvent();
  const std::vector<BUFFER_HANDLE> buffers = Run(2);
  const GRB_HANDLE first = StreamHandle();
  DEV_HANDLE device = nullptr;
  ASSERT_GC_OK(Gc().IFOpenDevice(OpenInterface(), "Channel #2", DEVICE_ACCESS_EXCLUSIVE, &device));
  DS_HANDLE stream = nullptr;
  ASSERT_GC_OK(Gc().DevOpenDataStream(device, "Stream #1", &stream));
  BUFFER_HANDLE other = nullptr;
  ASSERT_GC_OK(Gc().DSAllocAndAnnounceBuffer(stream, 64 * 48, nullptr, &other));
  ASSERT_GC_OK(Gc().DSQueueBuffer(stream, other));
  EVENT_HANDLE otherEvent = nullptr;
  ASSERT_GC_OK(Gc().GCRegisterEvent(stream, EVENT_NEW_BUFFER, &otherEvent));
  ASSERT_GC_OK(Gc().DSStartAcquisition(stream, ACQ_START_FLAGS_DEFAULT, GENTL_INFINITE));
  ASSERT_TRUE(Script().FireCallback(kReady, first));
  ASSERT_TRUE(Script().FireCallback(kReady, Script().LatestStream()));
  EXPECT_EQ(buffers[0], Take(event));
  EXPECT_EQ(other, Take(otherEvent));
  EXPECT_EQ(1U, Delivered());
  EXPECT_GC_OK(Gc().DevClose(device));
  EXPECT_TRUE(Grabbing());
}

TEST_F(StreamTest, OnlyTheValueOneIsBlocking) {
  for (const uint32_t mode : {0U, 3U, 0xFFFFFFFFU}) {
    OpenStream();
    Flush(ACQ_QUEUE_ALL_DISCARD);
    SetParameter(GRB_ACQ_BLOCKING, mode);
    Run(1);
    Frame();
    Frame();
    EXPECT_EQ(2U, Delivered()) << mode;
    Stop();
  }
}

}  // namespace
}  // namespace StreamTests
