// SPDX-License-Identifier: MIT
// The states of a buffer, and what each operation makes of each.
#include "StreamFixture.h"

namespace StreamTests {
namespace {

/// A buffer X in one of its states, beside a buffer Y that is queued in the library, while the stream runs.
enum State { kAnnounced, kInput, kOutput, kOutputUnfilled, kHeld, kInputOnList };
constexpr const char *kStateNames[] = {"Announced", "Input", "Output", "OutputUnfilled", "Held", "InputOnList"};

enum Action { kQueue, kFlush0, kFlush1, kFlush2, kFlush3, kFlush4, kTake, kRevoke };
constexpr const char *kActionNames[] = {"Queue",           "InputToOutput", "OutputDiscard", "AllToInput",
                                        "UnqueuedToInput", "AllDiscard",    "Take",          "Revoke"};

/// What is X behind the action, and what else can be seen.
struct TransitionRow {
  State state;
  Action action;
  GC_ERROR code;
  bool queued;
  bool newData;
  bool present;      ///< image-present; the filled size is not 0 exactly then
  size_t onList;     ///< how often X stands on the delivery list
  bool revocable;    ///< neither flag holds it
  size_t releases;   ///< that the library saw in the action
  bool grabbing;     ///< whether the run goes on
  bool otherOnList;  ///< whether Y, queued before, went to the list
};

std::string NameOfRow(const testing::TestParamInfo<TransitionRow> &row) {
  return std::string(kStateNames[row.param.state]) + "_" + kActionNames[row.param.action];
}

void PrintTo(const TransitionRow &row, std::ostream *out) {
  *out << kStateNames[row.state] << " and " << kActionNames[row.action];
}

constexpr GC_ERROR kOk = GC_ERR_SUCCESS;
constexpr GC_ERROR kNone = GC_ERR_TIMEOUT;
constexpr GC_ERROR kInUse = GC_ERR_RESOURCE_IN_USE;

constexpr TransitionRow kTransitions[] = {
    // state, action, code, queued, new data, present, on the list, revocable, releases, grabbing, Y on the list
    {kAnnounced, kQueue, kOk, true, false, false, 0, false, 1, true, false},
    {kAnnounced, kFlush0, kOk, false, false, false, 0, true, 0, false, true},
    {kAnnounced, kFlush1, kOk, false, false, false, 0, true, 0, true, false},
    {kAnnounced, kFlush2, kOk, true, false, false, 0, false, 0, false, false},
    {kAnnounced, kFlush3, kOk, true, false, false, 0, false, 0, true, false},
    {kAnnounced, kFlush4, kOk, false, false, false, 0, true, 0, false, false},
    {kAnnounced, kTake, kNone, false, false, false, 0, true, 0, true, false},
    {kAnnounced, kRevoke, kOk, false, false, false, 0, true, 0, true, false},

    {kInput, kQueue, kOk, true, false, false, 0, false, 0, true, false},
    {kInput, kFlush0, kOk, false, false, false, 1, true, 0, false, true},
    {kInput, kFlush1, kOk, true, false, false, 0, false, 0, true, false},
    {kInput, kFlush2, kOk, true, false, false, 0, false, 0, false, false},
    {kInput, kFlush3, kOk, true, false, false, 0, false, 0, true, false},
    {kInput, kFlush4, kOk, false, false, false, 0, true, 0, false, false},
    {kInput, kTake, kNone, true, false, false, 0, false, 0, true, false},
    {kInput, kRevoke, kInUse, true, false, false, 0, false, 0, true, false},

    {kOutput, kQueue, kOk, true, false, false, 1, false, 1, true, false},
    {kOutput, kFlush0, kOk, false, true, true, 1, false, 0, false, true},
    {kOutput, kFlush1, kOk, false, false, true, 0, true, 1, true, false},
    {kOutput, kFlush2, kOk, true, false, false, 0, false, 0, false, false},
    {kOutput, kFlush3, kOk, false, true, true, 1, false, 0, true, false},
    {kOutput, kFlush4, kOk, false, false, true, 0, true, 0, false, false},
    {kOutput, kTake, kOk, false, true, true, 0, true, 0, true, false},
    {kOutput, kRevoke, kInUse, false, true, true, 1, false, 0, true, false},

    {kOutputUnfilled, kQueue, kOk, true, false, false, 1, false, 1, true, false},
    {kOutputUnfilled, kFlush0, kOk, false, false, false, 1, true, 0, false, true},
    {kOutputUnfilled, kFlush1, kOk, false, false, false, 0, true, 0, true, false},
    {kOutputUnfilled, kFlush2, kOk, true, false, false, 0, false, 0, false, false},
    {kOutputUnfilled, kFlush3, kOk, true, false, false, 1, false, 0, true, false},
    {kOutputUnfilled, kFlush4, kOk, false, false, false, 0, true, 0, false, false},
    {kOutputUnfilled, kTake, kOk, false, false, false, 0, true, 0, true, false},
    {kOutputUnfilled, kRevoke, kOk, false, false, false, 1, true, 0, true, false},

    {kHeld, kQueue, kOk, true, false, false, 0, false, 1, true, false},
    {kHeld, kFlush0, kOk, false, true, true, 0, true, 0, false, true},
    {kHeld, kFlush1, kOk, false, true, true, 0, true, 0, true, false},
    {kHeld, kFlush2, kOk, true, false, false, 0, false, 0, false, false},
    {kHeld, kFlush3, kOk, true, false, false, 0, false, 0, true, false},
    {kHeld, kFlush4, kOk, false, false, true, 0, true, 0, false, false},
    {kHeld, kTake, kNone, false, true, true, 0, true, 0, true, false},
    {kHeld, kRevoke, kOk, false, false, false, 0, true, 0, true, false},

    // Queued from the list: the flags are those of Input, the entry stays.
    {kInputOnList, kQueue, kOk, true, false, false, 1, false, 0, true, false},
    {kInputOnList, kFlush0, kOk, false, false, false, 2, true, 0, false, true},
    {kInputOnList, kFlush1, kOk, false, false, false, 0, true, 0, true, false},
    {kInputOnList, kFlush2, kOk, true, false, false, 0, false, 0, false, false},
    {kInputOnList, kFlush3, kOk, true, false, false, 1, false, 0, true, false},
    {kInputOnList, kFlush4, kOk, false, false, false, 0, true, 0, false, false},
    {kInputOnList, kTake, kOk, false, false, false, 0, true, 0, true, false},
    {kInputOnList, kRevoke, kInUse, true, false, false, 1, false, 0, true, false},
};

class Transitions : public StreamTest, public testing::WithParamInterface<TransitionRow> {
 protected:
  void Lead(State state) {
    m_hEvent = NewBufferEvent();
    m_hX = Alloc();
    m_hY = Alloc();
    if (state == kOutputUnfilled) {
      Queue(m_hX);
      Flush(ACQ_QUEUE_INPUT_TO_OUTPUT);
    } else if (state != kAnnounced) {
      Queue(m_hX);
    }
    Queue(m_hY);
    Start();
    if (state == kOutput || state == kHeld || state == kInputOnList) {
      Frame();
    }
    if (state == kHeld) {
      ASSERT_EQ(m_hX, Take(m_hEvent));
    }
    if (state == kInputOnList) {
      Queue(m_hX);
    }
  }

  GC_ERROR Act(Action action) {
    switch (action) {
      case kQueue:
        return Gc().DSQueueBuffer(m_hStream, m_hX);
      case kTake: {
        const EventResult taken = GetEvent(m_hEvent, 0);
        if (taken.result == GC_ERR_SUCCESS) {
          EXPECT_EQ(m_hX, taken.NewBuffer().BufferHandle);
        }
        return taken.result;
      }
      case kRevoke:
        return Gc().DSRevokeBuffer(m_hStream, m_hX, nullptr, nullptr);
      default:
        return Gc().DSFlushQueue(m_hStream, static_cast<ACQ_QUEUE_TYPE>(action - kFlush0));
    }
  }

  BUFFER_HANDLE m_hX = nullptr;
  BUFFER_HANDLE m_hY = nullptr;
  EVENT_HANDLE m_hEvent = nullptr;
};

TEST_P(Transitions, FlagsListAndReleases) {
  const TransitionRow &row = GetParam();
  Lead(row.state);
  const size_t mark = Script().Mark();
  ASSERT_EQ(row.code, Act(row.action));
  EXPECT_EQ(row.releases, Releases(mark));
  EXPECT_EQ(row.grabbing ? 0U : 1U, Count(GRB_STREAM_STOP, mark));
  EXPECT_EQ(row.grabbing, Grabbing());
  ASSERT_EQ(row.onList + (row.otherOnList ? 1 : 0), Awaiting());
  if (row.action == kRevoke && row.code == GC_ERR_SUCCESS) {
    // An unfilled entry is left dangling on the list; the flush that looks at no entry takes it off.
    Flush(ACQ_QUEUE_ALL_DISCARD);
    EXPECT_EQ(0U, Awaiting());
    EXPECT_EQ(1U, Announced());
    return;
  }

  const Flags flags = FlagsOf(m_hX);
  EXPECT_EQ(row.queued, flags.queued);
  EXPECT_EQ(row.newData, flags.newData);
  EXPECT_EQ(row.present, flags.present);
  EXPECT_EQ(row.present ? PayloadSize() : 0, flags.filled);
  EXPECT_FALSE(flags.acquiring);
  EXPECT_FALSE(flags.incomplete);

  // Whom the list gives, in which order; a buffer on it can be taken off and is then the Consumer's.
  if (row.revocable || row.onList == 0) {
    // Look at what holds the buffer first: only a buffer off the list can be revoked without harm.
    if (row.onList == 0) {
      EXPECT_EQ(row.revocable ? GC_ERR_SUCCESS : GC_ERR_RESOURCE_IN_USE,
                Gc().DSRevokeBuffer(m_hStream, m_hX, nullptr, nullptr));
    }
  } else {
    EXPECT_EQ(GC_ERR_RESOURCE_IN_USE, Gc().DSRevokeBuffer(m_hStream, m_hX, nullptr, nullptr));
  }
  std::vector<BUFFER_HANDLE> expected(row.onList == 0 ? 0 : 1, m_hX);
  if (row.otherOnList && row.onList == 2) {
    expected = {m_hX, m_hX, m_hY};
  } else if (row.otherOnList) {
    expected.push_back(m_hY);
  }
  std::vector<BUFFER_HANDLE> found;
  for (uint64_t left = Awaiting(); left > 0; --left) {
    found.push_back(Take(m_hEvent));
  }
  EXPECT_EQ(expected, found);
}

INSTANTIATE_TEST_SUITE_P(All, Transitions, testing::ValuesIn(kTransitions), NameOfRow);

// The flushes themselves ----------------------------------------------------------------------------------------------

TEST_F(StreamTest, UnknownFlushIsRefusedAndStopsNothing) {
  Run(1);
  for (const int32_t operation : {5, 6, 999, 1000, -1, INT32_MAX}) {
    EXPECT_GC_FROM(GC_ERR_INVALID_PARAMETER, "ACQ_QUEUE_TYPE value not supported.",
                   "GenICam::Client::CDataStream::DSFlushQueue", Gc().DSFlushQueue(m_hStream, operation));
  }
  EXPECT_TRUE(Grabbing());
  EXPECT_EQ(1U, Queued());
}

TEST_F(StreamTest, FlushesOfAnEmptyStreamDoNothing) {
  OpenStream();
  const size_t mark = Script().Mark();
  for (const ACQ_QUEUE_TYPE operation : {0, 1, 2, 3, 4}) {
    EXPECT_GC_OK(Gc().DSFlushQueue(m_hStream, operation));
  }
  EXPECT_EQ(std::vector<std::string>{}, Trace(mark));
}

TEST_F(StreamTest, DiscardOfAnEmptyListReturnsAtOnce) {
  Run(2);
  const size_t mark = Script().Mark();
  Flush(ACQ_QUEUE_OUTPUT_DISCARD);
  EXPECT_EQ(std::vector<std::string>{}, Trace(mark));
  EXPECT_TRUE(Grabbing());
}

TEST_F(StreamTest, InputToOutputKeepsTheOrderOfAnnouncementNotOfQueueing) {
  const EVENT_HANDLE event = NewBufferEvent();
  const std::vector<BUFFER_HANDLE> buffers = AllocMany(3);
  Queue(buffers[2]);
  Queue(buffers[0]);
  Queue(buffers[1]);
  Flush(ACQ_QUEUE_INPUT_TO_OUTPUT);
  EXPECT_EQ(buffers, (std::vector<BUFFER_HANDLE>{Take(event), Take(event), Take(event)}));
}

TEST_F(StreamTest, InputToOutputWakesAWaiter) {
  CEventWaiter waiter(NewBufferEvent());
  const BUFFER_HANDLE buffer = Alloc();
  Queue(buffer);
  Flush(ACQ_QUEUE_INPUT_TO_OUTPUT);
  EXPECT_EQ(buffer, waiter.Result().NewBuffer().BufferHandle);
}

TEST_F(StreamTest, DiscardBeginsWithTheNewest) {
  const EVENT_HANDLE event = NewBufferEvent();
  const std::vector<BUFFER_HANDLE> buffers = Run(5);
  Frame();
  Frame();
  Frame();
  Script().On(Match(Op::StreamRead, GRB_STREAM_RELEASE), Broken());
  EXPECT_GC(GC_ERR_ERROR, "Failed releasing buffer ID 0x00000002.: " + LibraryText("GRB_StreamRead"),
            Gc().DSFlushQueue(m_hStream, ACQ_QUEUE_OUTPUT_DISCARD));
  // The newest is off the list and still held by its flag; the older ones wait for another discard.
  EXPECT_EQ(2U, Awaiting());
  EXPECT_TRUE(FlagsOf(buffers[2]).newData);
  EXPECT_FALSE(FlagsOf(buffers[2]).queued);
  EXPECT_GC(GC_ERR_RESOURCE_IN_USE, "Buffer is still queued.",
            Gc().DSRevokeBuffer(m_hStream, buffers[2], nullptr, nullptr));

  size_t mark = Script().Mark();
  Flush(ACQ_QUEUE_OUTPUT_DISCARD);
  EXPECT_EQ(2U, Releases(mark)) << "the slots of the second and the third";
  EXPECT_EQ(0U, Awaiting());
  EXPECT_FALSE(FlagsOf(buffers[1]).newData);
  EXPECT_TRUE(FlagsOf(buffers[2]).newData) << "no discard finds it any more";

  mark = Script().Mark();
  Queue(buffers[2]);
  EXPECT_TRUE(FlagsOf(buffers[2]).queued);
  EXPECT_FALSE(FlagsOf(buffers[2]).newData);
  EXPECT_EQ(0U, Releases(mark)) << "its slot went back with the discard";
  EXPECT_EQ(GC_ERR_TIMEOUT, GetEvent(event, 0).result);
}

TEST_F(StreamTest, DiscardReleasesEveryFilledBuffer) {
  const std::vector<BUFFER_HANDLE> buffers = Run(5);
  Frame();
  Frame();
  Frame();
  const size_t mark = Script().Mark();
  Flush(ACQ_QUEUE_OUTPUT_DISCARD);
  EXPECT_EQ(3U, Releases(mark));
  EXPECT_EQ(0U, Awaiting());
  EXPECT_EQ(2U, Queued()) << "what was discarded is not queued";
  for (const BUFFER_HANDLE buffer : buffers) {
    EXPECT_FALSE(FlagsOf(buffer).newData);
  }
}

TEST_F(StreamTest, DiscardOnAStoppedStreamReleasesAsWell) {
  Run(3);
  Frame();
  Stop();
  size_t mark = Script().Mark();
  Flush(ACQ_QUEUE_OUTPUT_DISCARD);
  EXPECT_EQ((std::vector<std::string>{"StreamRead(S, GRB_STREAM_RELEASE)"}), Trace(mark));

  Start();
  Frame();
  Stop();
  Script().On(Match(Op::StreamRead, GRB_STREAM_RELEASE), Broken());
  EXPECT_GC(GC_ERR_ERROR, "Failed releasing buffer ID 0x00000000.: " + LibraryText("GRB_StreamRead"),
            Gc().DSFlushQueue(m_hStream, ACQ_QUEUE_OUTPUT_DISCARD));
}

TEST_F(StreamTest, AllDiscardReleasesNothingAndRevokesNothing) {
  Run(3);
  Frame();
  const size_t mark = Script().Mark();
  Flush(ACQ_QUEUE_ALL_DISCARD);
  EXPECT_EQ(0U, Releases(mark));
  EXPECT_EQ(3U, Announced());
  EXPECT_EQ(0U, Queued());
  EXPECT_EQ(0U, Awaiting());
}

TEST_F(StreamTest, AllToInputBeforeTheFirstStart) {
  AllocMany(3);
  Flush(ACQ_QUEUE_ALL_TO_INPUT);
  EXPECT_EQ(3U, Queued());
  Start();
  EXPECT_EQ(3U, Script().StreamOf().numBuffers);
}

TEST_F(StreamTest, UnqueuedToInputLeavesTheListAlone) {
  const std::vector<BUFFER_HANDLE> buffers = Run(3);
  Frame();
  const BUFFER_HANDLE late = buffers[0];
  const size_t mark = Script().Mark();
  Flush(ACQ_QUEUE_UNQUEUED_TO_INPUT);
  EXPECT_FALSE(FlagsOf(late).queued);
  EXPECT_EQ(1U, Awaiting());
  EXPECT_EQ(std::vector<std::string>{}, Trace(mark)) << "no release, no stop";
}

TEST_F(StreamTest, FailingStopEndsAFlushAheadOfItsWork) {
  for (const ACQ_QUEUE_TYPE operation : {ACQ_QUEUE_INPUT_TO_OUTPUT, ACQ_QUEUE_ALL_TO_INPUT, ACQ_QUEUE_ALL_DISCARD}) {
    if (Announced() == 0) {
      QueueBuffers(2);
    }
    Flush(ACQ_QUEUE_ALL_TO_INPUT);
    Start();
    Frame();
    Script().On(Match(Op::StreamRead, GRB_STREAM_STOP), Broken());
    EXPECT_GC(GC_ERR_ERROR, "Error stopping acquisition: \n" + LibraryText("GRB_StreamRead"),
              Gc().DSFlushQueue(m_hStream, operation));
    EXPECT_FALSE(Grabbing());
    EXPECT_EQ(1U, Awaiting());
    EXPECT_EQ(1U, Queued());
  }
}

}  // namespace
}  // namespace StreamTests
