// SPDX-License-Identifier: MIT
// The stop: its handshake with the library, its bound, its reports, and what it leaves alone.
#include <atomic>
#include <chrono>
#include <future>
#include <thread>

#include "StreamFixture.h"

namespace StreamTests {
namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;
using Lines = std::vector<std::string>;

const Lines kStopCalls = {"StreamRead(S, GRB_STREAM_STOP)", "ParameterSet(S, GRB_EVENT_MASK_NOW, 0x1)",
                          "StreamRead(S, GRB_STREAM_ABORT)"};
constexpr const char *kReport = "Error stopping acquisition: ";
constexpr const char *kNoCallback = "\nTimeout while waiting for final callback.";
/// What the silence of the library costs at least, and the rest behind any failed stop.
constexpr milliseconds kSilence{200};
constexpr milliseconds kRest{100};

// The regular stop ----------------------------------------------------------------------------------------------------

TEST_F(StreamTest, StopOfAnIdleStreamDoesNothing) {
  OpenStream();
  const size_t mark = Script().Mark();
  for (const ACQ_STOP_FLAGS flags : {ACQ_STOP_FLAGS_DEFAULT, ACQ_STOP_FLAGS_KILL, ACQ_STOP_FLAGS_DEFAULT}) {
    EXPECT_GC_OK(Gc().DSStopAcquisition(m_hStream, flags));
  }
  EXPECT_EQ(Lines{}, Trace(mark));
}

class StopFlags : public StreamTest, public testing::WithParamInterface<int32_t> {};

TEST_P(StopFlags, BothKindsAreTheSame) {
  Run(2);
  Frame();
  const size_t mark = Script().Mark();
  ASSERT_GC_OK(Gc().DSStopAcquisition(m_hStream, GetParam()));
  EXPECT_EQ(kStopCalls, Trace(mark));
  EXPECT_FALSE(Grabbing());
  EXPECT_EQ(1U, Awaiting());
  EXPECT_EQ(1U, Queued());
  ASSERT_GC_OK(Gc().DSStopAcquisition(m_hStream, GetParam()));
  EXPECT_EQ(kStopCalls, Trace(mark)) << "the second does nothing";
}

INSTANTIATE_TEST_SUITE_P(All, StopFlags, testing::Values(0, 1));

TEST_F(StreamTest, UnknownStopFlagIsRefused) {
  OpenStream();
  Run(1);
  const size_t mark = Script().Mark();
  for (const ACQ_STOP_FLAGS flags : {2, 3, 1000, -1}) {
    EXPECT_GC_FROM(GC_ERR_INVALID_PARAMETER, "Invalid Acquisition Stop Flag.",
                   "GenICam::Client::CDataStream::DSStopAcquisition", Gc().DSStopAcquisition(m_hStream, flags));
  }
  EXPECT_EQ(Lines{}, Trace(mark));
  EXPECT_TRUE(Grabbing());
  Stop();
  EXPECT_GC_CODE(GC_ERR_INVALID_PARAMETER, Gc().DSStopAcquisition(m_hStream, 2)) << "also on an idle stream";
}

TEST_F(StreamTest, StopIsConfirmedByACallbackInsideTheRequest) {
  Script().SetFinalCallback(FinalCallback::Inside);
  Run(1);
  const size_t mark = Script().Mark();
  Stop();
  EXPECT_EQ(kStopCalls, Trace(mark));
}

TEST_F(StreamTest, StopCallsAreMadeByTheCallerAndTheAbortByTheCallback) {
  Run(1);
  const size_t mark = Script().Mark();
  Stop();
  const std::vector<Call> calls = Script().Calls(mark);
  ASSERT_EQ(3U, calls.size());
  EXPECT_EQ(std::this_thread::get_id(), calls[0].thread);
  EXPECT_EQ(std::this_thread::get_id(), calls[1].thread);
  EXPECT_NE(std::this_thread::get_id(), calls[2].thread);
}

TEST_F(StreamTest, StopWaitsForTheCallback) {
  Script().SetFinalCallback(FinalCallback::None);
  Run(1);
  // A callback that the machine holds up for all of the 200 ms proves nothing: then once more.
  for (int scene = 0; scene < 20; ++scene) {
    std::atomic<bool> confirmed{false};
    Script().On(Match(Op::StreamRead, GRB_STREAM_ABORT), Reply::Pass().Do([&](const Call &) { confirmed = true; }));
    Script().On(Match(Op::ParameterSet, GRB_EVENT_MASK_NOW),
                Reply::Pass().Do([](const Call &call) { Script().PostCallback(0, call.handle); }));
    if (Gc().DSStopAcquisition(m_hStream, ACQ_STOP_FLAGS_DEFAULT) == GC_ERR_SUCCESS) {
      EXPECT_TRUE(confirmed);
      return;
    }
    ASSERT_TRUE(Script().WaitIdle());
    Script().CancelAll();
    Start();
  }
  FAIL() << "no stop succeeded";
}

TEST_F(StreamTest, FinalCallbacksWordIsNotLookedAt) {
  const EVENT_HANDLE errors = ErrorEvent();
  Script().SetFinalCallback(FinalCallback::OwnThread,
                            GRB_EVENT_BUFFER_READY | GRB_EVENT_FIFO_OVERFLOW | GRB_EVENT_SYNC_LOST);
  const BUFFER_HANDLE buffer = Run(1).front();
  Stop();
  EXPECT_EQ(0U, Delivered()) << "a frame in the wait is the final callback and nothing else";
  EXPECT_EQ(0U, Started());
  EXPECT_EQ(0U, Awaiting());
  EXPECT_TRUE(FlagsOf(buffer).queued);
  EXPECT_EQ(0U, EventNumber(errors, EVENT_NUM_IN_QUEUE));
}

TEST_F(StreamTest, CallbackOfAStoppedStreamAbortsAndNothingElse) {
  const EVENT_HANDLE errors = ErrorEvent();
  Run(2);
  Stop();
  const size_t mark = Script().Mark();
  ASSERT_TRUE(Script().FireCallback(GRB_EVENT_BUFFER_READY | GRB_EVENT_FIFO_OVERFLOW));
  EXPECT_EQ((Lines{"StreamRead(S, GRB_STREAM_ABORT)"}), Trace(mark));
  EXPECT_EQ(0U, Delivered());
  EXPECT_EQ(0U, EventNumber(errors, EVENT_NUM_IN_QUEUE));
}

TEST_F(StreamTest, FrameAheadOfTheFlagIsDelivered) {
  const EVENT_HANDLE event = NewBufferEvent();
  const BUFFER_HANDLE buffer = Run(2).front();
  bool grabbing = true;
  Script().On(Match(Op::StreamRead, GRB_STREAM_STOP), Reply::Pass().Do([&](const Call &) {
    grabbing = Grabbing();
    Script().FireCallback(GRB_EVENT_BUFFER_READY);
  }));
  Stop();
  EXPECT_FALSE(grabbing) << "cleared ahead of the library's stop";
  EXPECT_EQ(buffer, Take(event)) << "a frame that arrives within the stop request is an ordinary one";
}

TEST_F(StreamTest, FrameBehindTheFlagIsTheFinalCallback) {
  Run(2);
  Script().SetFinalCallback(FinalCallback::None);
  Script().On(Match(Op::ParameterSet, GRB_EVENT_MASK_NOW),
              Reply::Pass().Do([](const Call &) { Script().FireCallback(GRB_EVENT_BUFFER_READY); }));
  Stop();
  EXPECT_EQ(0U, Delivered());
}

TEST_F(StreamTest, StopTouchesNoBuffer) {
  const EVENT_HANDLE event = NewBufferEvent();
  const std::vector<BUFFER_HANDLE> buffers = Run(3);
  Frame();
  Frame();
  Take(event);
  Stop();
  EXPECT_EQ(2U, Delivered()) << "the count stays until the next start";
  EXPECT_EQ(2U, Started());
  EXPECT_TRUE(FlagsOf(buffers[0]).newData);
  EXPECT_TRUE(FlagsOf(buffers[2]).queued);
  EXPECT_EQ(buffers[1], Take(event)) << "what was delivered can still be taken";
}

TEST_F(StreamTest, ManyStartsAndStops) {
  QueueBuffers(3);
  for (int cycle = 0; cycle < 200; ++cycle) {
    Start();
    if (cycle % 3 != 0) {
      Frame();
      Flush(ACQ_QUEUE_ALL_TO_INPUT);
    } else {
      Stop();
    }
  }
  EXPECT_EQ(200U, Count(GRB_STREAM_START));
  EXPECT_EQ(200U, Count(GRB_STREAM_STOP));
  EXPECT_EQ(200U, Count(GRB_STREAM_ABORT));
}

TEST_F(StreamTest, StopBehindAFailedStart) {
  QueueBuffers(1);
  Script().On(Match(Op::StreamRead, GRB_STREAM_START), Broken());
  EXPECT_GC_CODE(GC_ERR_ERROR, Gc().DSStartAcquisition(m_hStream, ACQ_START_FLAGS_DEFAULT, 1));
  const size_t mark = Script().Mark();
  Stop();
  EXPECT_EQ(Lines{}, Trace(mark));
}

// Failing stops -------------------------------------------------------------------------------------------------------

struct StopFailureRow {
  const char *name;
  bool stopFails;
  bool maskFails;
  bool silent;  ///< no final callback
};

void PrintTo(const StopFailureRow &row, std::ostream *out) { *out << row.name; }

class StopFailures : public StreamTest, public testing::WithParamInterface<StopFailureRow> {
 protected:
  static std::string Report() {
    const StopFailureRow &row = GetParam();
    return std::string(kReport) + (row.stopFails ? "\n" + LibraryText("GRB_StreamRead") : "") +
           (row.maskFails ? "\n" + LibraryText("GRB_ParameterSet") : "") + (row.silent ? kNoCallback : "");
  }

  static void Arm() {
    const StopFailureRow &row = GetParam();
    if (row.stopFails) {
      Script().On(Match(Op::StreamRead, GRB_STREAM_STOP), Broken());
    }
    if (row.maskFails) {
      Script().On(Match(Op::ParameterSet, GRB_EVENT_MASK_NOW), Broken().KeepEffect());
    }
    Script().SetFinalCallback(row.silent ? FinalCallback::None : FinalCallback::Inside);
  }
};

TEST_P(StopFailures, ReportAndState) {
  const StopFailureRow &row = GetParam();
  const EVENT_HANDLE event = NewBufferEvent();
  const std::vector<BUFFER_HANDLE> buffers = Run(3);
  Frame();
  Arm();
  const size_t mark = Script().Mark();
  const Clock::time_point begin = Clock::now();
  EXPECT_GC_FROM(GC_ERR_ERROR, Report(), "GenICam::Client::CStreamImpl::Freeze",
                 Gc().DSStopAcquisition(m_hStream, ACQ_STOP_FLAGS_DEFAULT));
  const auto spent = Clock::now() - begin;
  EXPECT_GE(spent, kRest + (row.silent ? kSilence : milliseconds(0)));
  EXPECT_LT(spent, kBound);

  Lines expected = kStopCalls;
  expected[0] += row.stopFails ? " = 0x8123" : "";
  expected[1] += row.maskFails ? " = 0x8123" : "";
  if (!row.silent) {
    expected.push_back(kStopCalls[2]);  // the callback's abort, and the one of the failure
  }
  EXPECT_EQ(expected, Trace(mark));

  EXPECT_FALSE(Grabbing());
  EXPECT_EQ(buffers[0], Take(event));
  EXPECT_EQ(2U, Queued());
  EXPECT_GC_OK(Gc().DSStopAcquisition(m_hStream, ACQ_STOP_FLAGS_DEFAULT)) << "the engine is idle";
}

TEST_P(StopFailures, NewStartGoesStraightOn) {
  Run(2);
  Arm();
  EXPECT_GC_CODE(GC_ERR_ERROR, Gc().DSStopAcquisition(m_hStream, ACQ_STOP_FLAGS_DEFAULT));
  Script().SetFinalCallback(FinalCallback::OwnThread);
  const size_t mark = Script().Mark();
  Start();
  EXPECT_EQ(0U, Count(GRB_STREAM_STOP, mark));
  Frame();
  EXPECT_EQ(1U, Delivered());
  Stop();
}

TEST_P(StopFailures, CloseDoesNotGoOnAndASecondOneDoes) {
  const std::vector<BUFFER_HANDLE> buffers = Run(2);
  Frame();
  Arm();
  EXPECT_GC(GC_ERR_ERROR, Report(), Gc().DSClose(m_hStream));
  EXPECT_EQ(2U, Announced());
  EXPECT_EQ(1U, Queued());
  EXPECT_EQ(1U, Awaiting());
  EXPECT_FALSE(Grabbing());
  const size_t mark = Script().Mark();
  ASSERT_GC_OK(Gc().DSClose(m_hStream));
  m_hStream = nullptr;
  EXPECT_EQ(Lines{}, Trace(mark));
  EXPECT_EQ(0U, (OpenStream(), Announced())) << "a new one";
}

TEST_P(StopFailures, DeviceStaysOpenUntilASecondClose) {
  Run(2);
  Arm();
  EXPECT_GC(GC_ERR_ERROR, Report(), Gc().DevClose(m_hDevice));
  EXPECT_EQ(2U, Announced());
  ASSERT_GC_OK(Gc().DevClose(m_hDevice));
  m_hDevice = nullptr;
  m_hStream = nullptr;
  EXPECT_EQ(0U, StreamHandle()) << "the library's handles are closed";
}

constexpr StopFailureRow kStopFailures[] = {
    {"StopOperation", true, false, false}, {"EventMask", false, true, false},     {"Both", true, true, false},
    {"Silence", false, false, true},       {"StopAndSilence", true, false, true}, {"All", true, true, true},
};

INSTANTIATE_TEST_SUITE_P(All, StopFailures, testing::ValuesIn(kStopFailures),
                         [](const auto &row) { return std::string(row.param.name); });

TEST_F(StreamTest, FailingAbortOfAFailedStopIsIgnored) {
  Run(1);
  Script().SetFinalCallback(FinalCallback::None);
  Script().On(Match(Op::StreamRead, GRB_STREAM_ABORT), Reply::Failure(0x9999, "Abort broke."));
  EXPECT_GC(GC_ERR_ERROR, std::string(kReport) + kNoCallback,
            Gc().DSStopAcquisition(m_hStream, ACQ_STOP_FLAGS_DEFAULT));
}

TEST_F(StreamTest, SilentStopIsBounded) {
  Run(1);
  Script().SetFinalCallback(FinalCallback::None);
  const Clock::time_point begin = Clock::now();
  EXPECT_GC_CODE(GC_ERR_ERROR, Gc().DSStopAcquisition(m_hStream, ACQ_STOP_FLAGS_DEFAULT));
  EXPECT_GE(Clock::now() - begin, kSilence + kRest);
}

TEST_F(StreamTest, LateFinalCallbackOfATimedOutStopHarmsNothing) {
  Run(2);
  Script().SetFinalCallback(FinalCallback::None);
  EXPECT_GC_CODE(GC_ERR_ERROR, Gc().DSStopAcquisition(m_hStream, ACQ_STOP_FLAGS_DEFAULT));
  ASSERT_TRUE(Script().FireCallback(GRB_EVENT_BUFFER_READY));
  EXPECT_EQ(0U, Delivered());
  Start();
  Frame();
  EXPECT_EQ(1U, Delivered());
  // The next stop waits for a callback of its own.
  EXPECT_GC_CODE(GC_ERR_ERROR, Gc().DSStopAcquisition(m_hStream, ACQ_STOP_FLAGS_DEFAULT));
}

TEST_F(StreamTest, CallbackHeldUpOverATimedOutStopStillDelivers) {
  // The callback waits for the list, which a discard holds while the library takes its time over a slot.
  const EVENT_HANDLE event = NewBufferEvent();
  const EVENT_HANDLE errors = ErrorEvent();
  const std::vector<BUFFER_HANDLE> buffers = Run(3);
  Frame();
  std::promise<void> go;
  std::atomic<bool> held{false};
  Script().On(Match(Op::StreamRead, GRB_STREAM_RELEASE), Reply::Pass().Do([&](const Call &) {
    held = true;
    go.get_future().wait();
  }));
  std::thread discarder([&] { EXPECT_GC_OK(Gc().EventFlush(event)); });
  EXPECT_TRUE(WaitUntil([&] { return held.load(); }));
  const std::future<void> callback = Script().PostCallback(GRB_EVENT_BUFFER_READY | GRB_EVENT_FIFO_OVERFLOW);
  EXPECT_TRUE(WaitUntil([&] { return FlagsOf(buffers[1]).newData; }));
  Script().SetFinalCallback(FinalCallback::None);
  EXPECT_GC(GC_ERR_ERROR, std::string(kReport) + kNoCallback,
            Gc().DSStopAcquisition(m_hStream, ACQ_STOP_FLAGS_DEFAULT));
  go.set_value();
  discarder.join();
  callback.wait();
  EXPECT_EQ(1U, Awaiting());
  EXPECT_EQ(buffers[1], Take(event));
  EXPECT_EQ(-10002, TakeError(errors).code) << "the rest of its word";

  Script().SetFinalCallback(FinalCallback::OwnThread);
  Start();
  Frame();
  EXPECT_EQ(buffers[2], Take(event));
  Stop();
}

TEST_F(StreamTest, LimitHeldUpOverATimedOutStopHarmsNothing) {
  const EVENT_HANDLE errors = ErrorEvent();
  Run(2, 1);
  Frame();
  std::promise<void> go;
  std::atomic<bool> held{false};
  Script().On(Match(Op::StreamRead, GRB_STREAM_STOP), Reply::Pass().Do([&](const Call &) {
    held = true;
    go.get_future().wait();
  }));
  const std::future<void> callback = Script().PostCallback(GRB_EVENT_BUFFER_READY | GRB_EVENT_FIFO_OVERFLOW);
  EXPECT_TRUE(WaitUntil([&] { return held.load(); }));
  Script().SetFinalCallback(FinalCallback::None);
  EXPECT_GC(GC_ERR_ERROR, std::string(kReport) + kNoCallback,
            Gc().DSStopAcquisition(m_hStream, ACQ_STOP_FLAGS_DEFAULT));
  go.set_value();
  callback.wait();
  EXPECT_EQ(1U, Delivered());
  EXPECT_EQ(-10002, TakeError(errors).code);
  Script().SetFinalCallback(FinalCallback::OwnThread);
  Start();
  Frame();
  EXPECT_EQ(1U, Delivered());
  Stop();
}

TEST_F(StreamTest, StartWhileAnotherThreadIsStillStopping) {
  // The start finds the engine idle already. Whose parent the slow stop takes away at its end is open; that nothing
  // else breaks, and that the next run is a whole one, is not.
  OpenStream();
  for (int round = 0; round < 3; ++round) {
    Flush(ACQ_QUEUE_ALL_DISCARD);
    const std::vector<BUFFER_HANDLE> buffers = Run(2);
    Script().SetFinalCallback(FinalCallback::None);
    std::atomic<bool> stopping{false};
    Script().On(Match(Op::ParameterSet, GRB_EVENT_MASK_NOW), Reply::Pass().Do([&](const Call &) { stopping = true; }));
    GC_ERROR slow = GC_ERR_CUSTOM_ID;
    std::thread stopper([&] { slow = Gc().DSStopAcquisition(m_hStream, ACQ_STOP_FLAGS_DEFAULT); });
    EXPECT_TRUE(WaitUntil([&] { return stopping.load(); }));
    Start();
    EXPECT_TRUE(Script().FireCallback(GRB_EVENT_BUFFER_READY));
    stopper.join();
    EXPECT_EQ(GC_ERR_ERROR, slow) << "its callback never came";
    EXPECT_TRUE(Script().FireCallback(GRB_EVENT_BUFFER_READY | GRB_EVENT_SYNC_LOST));

    Script().SetFinalCallback(FinalCallback::OwnThread);
    Stop();
    Flush(ACQ_QUEUE_ALL_TO_INPUT);
    Start();
    Frame();
    EXPECT_EQ(1U, Delivered());
    EXPECT_EQ(1U, Awaiting());
  }
}

TEST_F(StreamTest, ConsumersWaitSurvivesAStopAndTheNextStart) {
  CEventWaiter waiter(NewBufferEvent());
  const std::vector<BUFFER_HANDLE> buffers = Run(1);
  Stop();
  Start();
  Frame();
  EXPECT_EQ(buffers[0], waiter.Result().NewBuffer().BufferHandle);
}

TEST_F(StreamTest, StopsFromTwoThreads) {
  Run(1);
  // They meet in the library: neither has ended the run when the other comes, and each clears the flag of the final
  // callback before either asks for one.
  std::atomic<int> inside{0};
  Script().On(Match(Op::StreamRead, GRB_STREAM_STOP), Reply::Pass().Do([&inside](const Call &) {
    ++inside;
    EXPECT_TRUE(WaitUntil([&inside] { return inside == 2; }));
  }),
              When::First(2));
  GC_ERROR other = GC_ERR_CUSTOM_ID;
  std::thread thread([&] { other = Gc().DSStopAcquisition(m_hStream, ACQ_STOP_FLAGS_KILL); });
  const GC_ERROR mine = Gc().DSStopAcquisition(m_hStream, ACQ_STOP_FLAGS_KILL);
  thread.join();
  EXPECT_EQ(GC_ERR_SUCCESS, mine);
  EXPECT_EQ(GC_ERR_SUCCESS, other);
  EXPECT_FALSE(Grabbing());
}

TEST_F(StreamTest, StopDoesNotWaitForTheLockOfTheHandle) {
  // A GCF file that takes its time holds that lock from the close of the handle to its reopening.
  const EVENT_HANDLE event = NewBufferEvent();
  Run(2);
  Frame();
  const BUFFER_HANDLE buffer = Take(event);
  const CTempDirectory directory;
  ASSERT_GC_OK(WriteText(m_hDevice, 0x144C, directory.WriteFile("board.gcf", "[gcf]\n"), 1024));
  std::future<GC_ERROR> stop;
  bool free = false;
  Script().On(Match(Op::Close).Mode(GRB_MODE_ACQ_ONLY), Reply::Status(GRB_OK).Do([&](const Call &) {
    stop = std::async(std::launch::async, [this, buffer] {
      EXPECT_GC_OK(Gc().DSQueueBuffer(m_hStream, buffer));
      return Gc().DSStopAcquisition(m_hStream, ACQ_STOP_FLAGS_DEFAULT);
    });
    free = stop.wait_for(kBound) == std::future_status::ready;
  }));
  WriteU32(m_hDevice, 0x1448, 1);
  EXPECT_TRUE(free);
  EXPECT_EQ(GC_ERR_SUCCESS, stop.get());
}

TEST_F(StreamTest, LongWordsOfTheLibraryAreNotCut) {
  // Reports are built from pieces: the 255 characters of formatted texts are no limit to them.
  const std::string words(600, 'w');
  const auto broken = [&words] { return Reply::Failure(kScriptedStatus, words).KeepEffect(); };
  const std::string text = words + " (GRB_StreamRead returned error code 0x8123)";
  Run(2);
  Frame();
  Script().On(Match(Op::StreamRead, GRB_STREAM_STOP), broken());
  EXPECT_GC(GC_ERR_ERROR, std::string(kReport) + "\n" + text,
            Gc().DSStopAcquisition(m_hStream, ACQ_STOP_FLAGS_DEFAULT));
  Script().On(Match(Op::StreamRead, GRB_STREAM_RELEASE), broken());
  EXPECT_GC(GC_ERR_ERROR, "Failed releasing buffer ID 0x00000000.: " + text,
            Gc().DSFlushQueue(m_hStream, ACQ_QUEUE_OUTPUT_DISCARD));
  Script().On(Match(Op::StreamRead, GRB_STREAM_START), broken());
  EXPECT_GC(GC_ERR_ERROR, ": " + text, Gc().DSStartAcquisition(m_hStream, ACQ_START_FLAGS_DEFAULT, 1));
}

}  // namespace
}  // namespace StreamTests
