// SPDX-License-Identifier: MIT
#include <algorithm>
#include <atomic>
#include <set>

#include <gtest/gtest.h>

#include "Grabber.h"

namespace {

/// A channel open for acquisition with a small image.
class Stream : public testing::Test {
 protected:
  Stream() : m_Grabber(GRB_MODE_ACQ_ONLY, GRB_CHANNEL_1) {
    EXPECT_EQ(m_Grabber.OpenStatus(), GRB_OK);
    UseSmallImage(m_Grabber);
  }

  CGrabber m_Grabber;
};

// The status does not count: a handle that is being closed refuses the release.
void ReleaseEach(CRun &run, const CRun::Event &event) {
  if (event.word == GRB_EVENT_BUFFER_READY) {
    run.Grabber().Stream(GRB_STREAM_RELEASE);
  }
}

TEST_F(Stream, FramesComeOnOneThreadOfTheLibraryWithHandleAndContext) {
  CRun run(m_Grabber, 3);
  run.OnEvent(ReleaseEach);
  ASSERT_EQ(run.Start(), GRB_OK);
  ASSERT_TRUE(run.WaitForFrames(10));
  StopCleanly(run);
  std::set<std::thread::id> threads;
  for (const CRun::Event &event : run.Events()) {
    threads.insert(event.thread);
    EXPECT_EQ(event.handle, m_Grabber.Handle());
  }
  EXPECT_EQ(threads.size(), 1U);
  EXPECT_EQ(threads.count(std::this_thread::get_id()), 0U);
}

// The test reads the slot that is next in list order; a frame in any other would leave it as it was before.
TEST_F(Stream, SlotsAreFilledInListOrderAndThePictureMoves) {
  CRun run(m_Grabber, 3);
  run.OnEvent(ReleaseEach);
  ASSERT_EQ(run.Start(), GRB_OK);
  ASSERT_TRUE(run.WaitForFrames(9));
  StopCleanly(run);
  const std::vector<CRun::Event> events = run.Events();
  for (size_t i = 1; i < 9; ++i) {
    EXPECT_NE(events[i].firstLine, events[i - 1].firstLine) << i;
  }
  EXPECT_TRUE(run.GuardsAreWhole());
}

TEST_F(Stream, WithoutReleaseEachSlotIsFilledOnceAndTheOverflowIsToldOnce) {
  CRun run(m_Grabber, 3);
  ASSERT_EQ(run.Start(), GRB_OK);
  ASSERT_TRUE(run.WaitForWord(GRB_EVENT_FIFO_OVERFLOW));
  EXPECT_EQ(run.Count(GRB_EVENT_BUFFER_READY), 3U);
  EXPECT_EQ(m_Grabber.Get(GRB_COUNT_BUFFER_READY_NOW), 3U);
  // One slot back: one frame more, then the next famine is told anew.
  EXPECT_EQ(m_Grabber.Stream(GRB_STREAM_RELEASE), GRB_OK);
  ASSERT_TRUE(run.WaitForWord(GRB_EVENT_FIFO_OVERFLOW, 2));
  EXPECT_EQ(run.Count(GRB_EVENT_BUFFER_READY), 4U);
  StopCleanly(run);
  EXPECT_EQ(run.Count(GRB_EVENT_FIFO_OVERFLOW), 2U);
}

TEST_F(Stream, FilledSlotsStayUntouchedUntilReleasedAndTheOldestIsFreedFirst) {
  CRun run(m_Grabber, 3);
  ASSERT_EQ(run.Start(), GRB_OK);
  ASSERT_TRUE(run.WaitForWord(GRB_EVENT_FIFO_OVERFLOW));
  // The engine waits now and nobody writes the slots. Pictures come round again while it does: a mark tells whether a
  // slot has been written.
  constexpr uint8_t kMark = 0xA5;
  for (const size_t slot : {0U, 1U}) {
    std::fill_n(run.Slot(slot).begin(), run.LineBytes() * run.Lines(), kMark);
  }
  const std::vector<uint8_t> first = run.Slot(0);
  const std::vector<uint8_t> second = run.Slot(1);
  const std::vector<uint8_t> third = run.Slot(2);
  EXPECT_EQ(m_Grabber.Stream(GRB_STREAM_RELEASE), GRB_OK);
  ASSERT_TRUE(run.WaitForWord(GRB_EVENT_FIFO_OVERFLOW, 2));
  EXPECT_NE(run.Slot(0), first);
  EXPECT_EQ(run.Slot(1), second);
  EXPECT_EQ(run.Slot(2), third);
  EXPECT_EQ(m_Grabber.Stream(GRB_STREAM_RELEASE), GRB_OK);
  ASSERT_TRUE(run.WaitForWord(GRB_EVENT_FIFO_OVERFLOW, 3));
  EXPECT_NE(run.Slot(1), second);
  EXPECT_EQ(run.Slot(2), third);
}

TEST_F(Stream, OverflowIsSilentOutsideTheMask) {
  CRun run(m_Grabber, 1);
  run.Prepare();
  EXPECT_EQ(m_Grabber.Set(GRB_EVENT_MASK, GRB_EVENT_SYNC_LOST), GRB_OK);
  EXPECT_EQ(m_Grabber.Flush(), GRB_OK);
  ASSERT_EQ(run.Restart(), GRB_OK);
  ASSERT_TRUE(run.WaitForFrames(1));
  // A second stream of the same frame rate that starves several times tells when the first must have starved too.
  CGrabber clock(GRB_MODE_ACQ_ONLY, GRB_CHANNEL_2);
  UseSmallImage(clock);
  CRun ticks(clock, 1);
  ASSERT_EQ(ticks.Start(), GRB_OK);
  for (size_t i = 1; i <= 3; ++i) {
    ASSERT_TRUE(ticks.WaitForWord(GRB_EVENT_FIFO_OVERFLOW, i));
    EXPECT_EQ(clock.Stream(GRB_STREAM_RELEASE), GRB_OK);
  }
  StopCleanly(run);
  EXPECT_EQ(run.Count(GRB_EVENT_FIFO_OVERFLOW), 0U);
}

TEST_F(Stream, WithoutBlockingTheNextSlotIsOverwritten) {
  EXPECT_EQ(m_Grabber.Set(GRB_ACQ_BLOCKING, GRB_ACQ_BLOCKING_OFF), GRB_OK);
  CRun run(m_Grabber, 2);
  ASSERT_EQ(run.Start(), GRB_OK);
  ASSERT_TRUE(run.WaitForFrames(10));
  StopCleanly(run);
  EXPECT_EQ(run.Count(GRB_EVENT_FIFO_OVERFLOW), 0U);
  EXPECT_TRUE(run.GuardsAreWhole());
}

TEST_F(Stream, StopIsConfirmedByOneMoreCallbackWithAnEmptyWord) {
  CRun run(m_Grabber, 2);
  run.OnEvent(ReleaseEach);
  ASSERT_EQ(run.Start(), GRB_OK);
  ASSERT_TRUE(run.WaitForFrames(3));
  EXPECT_EQ(m_Grabber.Stream(GRB_STREAM_STOP), GRB_OK);
  EXPECT_EQ(run.Count(0), 0U);
  EXPECT_EQ(m_Grabber.Set(GRB_EVENT_MASK_NOW, 1), GRB_OK);
  ASSERT_TRUE(run.WaitForWord(0));
  const std::vector<CRun::Event> events = run.Events();
  EXPECT_EQ(events.back().word, 0U);
  EXPECT_EQ(events.back().thread, events.front().thread);
  // The memory is the caller's now.
  const std::vector<uint8_t> before = run.Slot(0);
  EXPECT_EQ(m_Grabber.Close(), GRB_OK);
  EXPECT_EQ(run.Slot(0), before);
  EXPECT_EQ(run.Events().size(), events.size()) << "exactly one";
}

TEST_F(Stream, EveryWriteOfTheMaskRaisesOneCallback) {
  CRun run(m_Grabber, 2);
  ASSERT_EQ(run.Start(), GRB_OK);
  EXPECT_EQ(m_Grabber.Stream(GRB_STREAM_STOP), GRB_OK);
  for (size_t i = 1; i <= 5; ++i) {
    EXPECT_EQ(m_Grabber.Set(GRB_EVENT_MASK_NOW, 1), GRB_OK);
    ASSERT_TRUE(run.WaitForWord(0, i));
  }
  EXPECT_EQ(m_Grabber.Close(), GRB_OK);
  EXPECT_EQ(run.Count(0), 5U);
}

// The frame limit of a run: the callback stops the stream, the user's stop comes later and must be confirmed as well.
TEST_F(Stream, StopWithinTheCallbackStillLeavesTheLastCallback) {
  CRun run(m_Grabber, 4);
  run.OnEvent([](CRun &self, const CRun::Event &event) {
    if (event.word == GRB_EVENT_BUFFER_READY && self.Count(GRB_EVENT_BUFFER_READY) == 2) {
      EXPECT_EQ(self.Grabber().Stream(GRB_STREAM_STOP), GRB_OK);
    }
  });
  ASSERT_EQ(run.Start(), GRB_OK);
  ASSERT_TRUE(run.WaitForFrames(2));
  StopCleanly(run);
  EXPECT_EQ(run.Count(GRB_EVENT_BUFFER_READY), 2U);
  EXPECT_EQ(run.Count(0), 1U);
}

TEST_F(Stream, AbortWithinTheLastCallbackEndsTheRun) {
  CRun run(m_Grabber, 2);
  run.OnEvent([](CRun &self, const CRun::Event &event) {
    if (event.word == 0) {
      self.Grabber().Stream(GRB_STREAM_ABORT);
    } else {
      ReleaseEach(self, event);
    }
  });
  for (size_t cycle = 1; cycle <= 20; ++cycle) {
    const size_t frames = run.Count(GRB_EVENT_BUFFER_READY);
    ASSERT_EQ(run.Start(), GRB_OK);
    ASSERT_TRUE(run.WaitForFrames(frames + 1));
    EXPECT_EQ(m_Grabber.Stream(GRB_STREAM_STOP), GRB_OK);
    EXPECT_EQ(m_Grabber.Set(GRB_EVENT_MASK_NOW, 1), GRB_OK);
    ASSERT_TRUE(run.WaitForWord(0, cycle));
  }
  // After an abort nothing is raised any more.
  EXPECT_EQ(m_Grabber.Set(GRB_EVENT_MASK_NOW, 1), GRB_OK);
  EXPECT_EQ(m_Grabber.Close(), GRB_OK);
  EXPECT_EQ(run.Count(0), 20U);
}

TEST_F(Stream, OperationsOnAnIdleStreamAreBorne) {
  for (const uint32_t operation :
       {GRB_STREAM_STOP, GRB_STREAM_STOP, GRB_STREAM_RELEASE, GRB_STREAM_ABORT, GRB_EXPOSE}) {
    EXPECT_EQ(m_Grabber.Stream(operation), GRB_OK) << std::hex << operation;
  }
  EXPECT_EQ(m_Grabber.Set(GRB_EVENT_MASK_NOW, 1), GRB_OK);
}

TEST_F(Stream, ReleaseOnAStoppedStreamIsBorne) {
  CRun run(m_Grabber, 2);
  ASSERT_EQ(run.Start(), GRB_OK);
  ASSERT_TRUE(run.WaitForFrames(2));
  StopCleanly(run);
  for (int i = 0; i < 4; ++i) {
    EXPECT_EQ(m_Grabber.Stream(GRB_STREAM_RELEASE), GRB_OK);
  }
}

TEST_F(Stream, StartAgainBeginsWithTheFirstSlotAndAllFree) {
  CRun run(m_Grabber, 3);
  for (size_t cycle = 1; cycle <= 5; ++cycle) {
    ASSERT_EQ(cycle == 1 ? run.Start() : run.Restart(), GRB_OK);
    ASSERT_TRUE(run.WaitForWord(GRB_EVENT_FIFO_OVERFLOW, cycle));
    EXPECT_EQ(run.Count(GRB_EVENT_BUFFER_READY), 3 * cycle);
    EXPECT_EQ(m_Grabber.Stream(GRB_STREAM_STOP), GRB_OK);
  }
}

TEST_F(Stream, SecondStartOnARunningStreamIsRefused) {
  CRun run(m_Grabber, 2);
  ASSERT_EQ(run.Start(), GRB_OK);
  ClearHook();
  EXPECT_NE(run.Restart(), GRB_OK);
  EXPECT_EQ(LastHook().function, "GRB_StreamRead");
  EXPECT_EQ(LastHook().text, "The stream is already running.");
}

TEST_F(Stream, StartWithinTheCallbackIsRefused) {
  std::atomic<GRB_STATUS> status{GRB_OK};
  CRun run(m_Grabber, 2);
  run.OnEvent([&](CRun &self, const CRun::Event &event) {
    if (event.word == 0) {
      status = self.Restart();
    }
  });
  ASSERT_EQ(run.Start(), GRB_OK);
  StopCleanly(run);
  EXPECT_EQ(m_Grabber.Close(), GRB_OK);
  EXPECT_NE(status, GRB_OK);
}

TEST_F(Stream, CloseWhileRunningEndsTheCallbacks) {
  CRun run(m_Grabber, 2);
  run.OnEvent(ReleaseEach);
  for (size_t i = 0; i < 10; ++i) {
    const size_t frames = run.Count(GRB_EVENT_BUFFER_READY);
    ASSERT_EQ(run.Start(), GRB_OK);
    ASSERT_TRUE(run.WaitForFrames(frames + 1));
    EXPECT_EQ(m_Grabber.Close(), GRB_OK);
    const size_t count = run.Events().size();
    ASSERT_EQ(GRB_Open(m_Grabber.Handle()), GRB_OK);
    EXPECT_EQ(run.Events().size(), count);
    UseSmallImage(m_Grabber);
  }
}

TEST_F(Stream, CloseWithinTheCallbackFreesTheChannel) {
  std::atomic<bool> closed{false};
  CRun run(m_Grabber, 2);
  run.OnEvent([&](CRun &self, const CRun::Event &event) {
    if (closed) {
      ReleaseEach(self, event);
    } else {
      EXPECT_EQ(self.Grabber().Close(), GRB_OK);
      // The channel is free before the callback has returned.
      EXPECT_EQ(GRB_Open(self.Grabber().Handle()), GRB_OK);
      closed = true;
    }
  });
  ASSERT_EQ(run.Start(), GRB_OK);
  ASSERT_TRUE(run.WaitFor([&](const std::vector<CRun::Event> &events) { return !events.empty(); }));
  while (!closed) {
    std::this_thread::yield();
  }
  UseSmallImage(m_Grabber);
  // The start waits for the thread of the run that closed itself.
  ASSERT_EQ(run.Start(), GRB_OK);
  ASSERT_TRUE(run.WaitForFrames(5));
}

TEST_F(Stream, DestroyWithinTheCallbackIsBorne) {
  {
    CGrabber second(GRB_MODE_ACQ_ONLY, GRB_CHANNEL_2);
    UseSmallImage(second);
    CRun run(second, 2);
    run.OnEvent([](CRun &self, const CRun::Event &) {
      GRB_HANDLE handle = self.Grabber().Handle();
      EXPECT_EQ(GRB_Destroy(&handle), GRB_OK);
    });
    ASSERT_EQ(run.Start(), GRB_OK);
    ASSERT_TRUE(run.WaitForFrames(1));
    // A start of the next holder joins the thread, so that the run may go.
    CGrabber third;
    while (third.Open(GRB_MODE_ACQ_ONLY, GRB_CHANNEL_2) != GRB_OK) {
      std::this_thread::yield();
    }
    UseSmallImage(third);
    CRun next(third, 2);
    ASSERT_EQ(next.Start(), GRB_OK);
    ASSERT_TRUE(next.WaitForFrames(1));
    EXPECT_EQ(run.Events().size(), 1U);
  }
}

TEST_F(Stream, DestroyWhileRunningEndsTheCallbacks) {
  GRB_HANDLE handle = 0;
  {
    CGrabber second(GRB_MODE_ACQ_ONLY, GRB_CHANNEL_2);
    UseSmallImage(second, 64, 8, GRB_USR_FORMAT_MONO8);
    CRun run(second, 2);
    run.OnEvent(ReleaseEach);
    ASSERT_EQ(run.Start(), GRB_OK);
    ASSERT_TRUE(run.WaitForFrames(1));
    handle = second.Handle();
    EXPECT_EQ(GRB_Destroy(&handle), GRB_OK);
  }
  CGrabber third(GRB_MODE_ACQ_ONLY, GRB_CHANNEL_2);
  EXPECT_EQ(third.OpenStatus(), GRB_OK);
}

TEST_F(Stream, TwoChannelsStreamAtOnceOnThreadsOfTheirOwn) {
  CGrabber other(GRB_MODE_ACQ_ONLY, GRB_CHANNEL_2);
  UseSmallImage(other);
  CRun one(m_Grabber, 3);
  CRun two(other, 3);
  one.OnEvent(ReleaseEach);
  two.OnEvent(ReleaseEach);
  ASSERT_EQ(one.Start(), GRB_OK);
  ASSERT_EQ(two.Start(), GRB_OK);
  ASSERT_TRUE(one.WaitForFrames(20));
  ASSERT_TRUE(two.WaitForFrames(20));
  StopCleanly(one);
  StopCleanly(two);
  EXPECT_NE(one.Events().front().thread, two.Events().front().thread);
  EXPECT_NE(one.Events().front().firstLine, two.Events().front().firstLine) << "the pictures differ";
}

// A callback that calls back into the library while other threads do so too would hang if it held a lock.
TEST_F(Stream, LibraryIsFreeWithinTheCallback) {
  CRun run(m_Grabber, 2);
  run.OnEvent([](CRun &self, const CRun::Event &event) {
    if (event.word != GRB_EVENT_BUFFER_READY) {
      return;
    }
    CGrabber &grabber = self.Grabber();
    EXPECT_EQ(grabber.Set(GRB_LUT_SHIFT, 1), GRB_OK);
    EXPECT_EQ(grabber.Flush(), GRB_OK);
    EXPECT_EQ(grabber.Get(GRB_LUT_SHIFT), 1U);
    CGrabber passing(GRB_MODE_CONTROL, GRB_CHANNEL_1);
    EXPECT_EQ(passing.ReadWord(0), 0xC0A79AE5U);
    // Another thread gets through as well while this callback stands.
    std::thread([&] { EXPECT_EQ(grabber.Stream(GRB_STREAM_RELEASE), GRB_OK); }).join();
    ReleaseEach(self, event);
  });
  ASSERT_EQ(run.Start(), GRB_OK);
  ASSERT_TRUE(run.WaitForFrames(5));
  StopCleanly(run);
}

TEST_F(Stream, ManyThreadsMayStopReleaseAndReadAtOnce) {
  CRun run(m_Grabber, 4);
  ASSERT_EQ(run.Start(), GRB_OK);
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([&] {
      for (int round = 0; round < 100; ++round) {
        EXPECT_EQ(m_Grabber.Stream(GRB_STREAM_RELEASE), GRB_OK);
        m_Grabber.Get(GRB_COUNT_BUFFER_READY_NOW);
        EXPECT_EQ(m_Grabber.Flush(), GRB_OK);
      }
      EXPECT_EQ(m_Grabber.Stream(GRB_STREAM_STOP), GRB_OK);
    });
  }
  for (std::thread &thread : threads) {
    thread.join();
  }
  StopCleanly(run);
}

TEST_F(Stream, StartsOfSeveralThreadsGiveOneRun) {
  CRun run(m_Grabber, 4);
  run.OnEvent(ReleaseEach);
  run.Prepare();
  std::atomic<int> started{0};
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([&] { started += run.StartOnly() == GRB_OK ? 1 : 0; });
  }
  for (std::thread &thread : threads) {
    thread.join();
  }
  EXPECT_EQ(started, 1);
  ASSERT_TRUE(run.WaitForFrames(4));
  StopCleanly(run);
}

TEST_F(Stream, ParametersOfAStartWaitForTheFlush) {
  CRun run(m_Grabber, 2);
  run.Prepare();
  EXPECT_EQ(m_Grabber.Set(GRB_ROI_XLENGTH, 4096), GRB_OK);
  ASSERT_EQ(run.Restart(), GRB_OK) << "a width not flushed does not count";
  StopCleanly(run);
  EXPECT_EQ(m_Grabber.Flush(), GRB_OK);
  ClearHook();
  EXPECT_NE(run.Restart(), GRB_OK);
  EXPECT_EQ(LastHook().text, "An image of 4096 x 8 pixels does not fit a destination of 8 lines of 64 bytes.");
}

struct BadStart {
  const char *name;
  uint32_t identifier;
  uint32_t value;
  const char *text;
};

class RefusedStart : public Stream, public testing::WithParamInterface<BadStart> {};

TEST_P(RefusedStart, TellsWhyAndLeavesTheStreamIdle) {
  CRun run(m_Grabber, 2);
  run.Prepare();
  EXPECT_EQ(m_Grabber.Set(GetParam().identifier, GetParam().value), GRB_OK);
  EXPECT_EQ(m_Grabber.Flush(), GRB_OK);
  ClearHook();
  EXPECT_NE(run.Restart(), GRB_OK);
  EXPECT_EQ(LastHook().calls, 1U);
  EXPECT_EQ(LastHook().text, GetParam().text);
  UseSmallImage(m_Grabber);
  EXPECT_EQ(run.Start(), GRB_OK);
}

INSTANTIATE_TEST_SUITE_P(
    Table, RefusedStart,
    testing::Values(BadStart{"lines", GRB_DST_LINES, 7,
                             "An image of 64 x 8 pixels does not fit a destination of 7 lines of 64 bytes."},
                    BadStart{"lineBytes", GRB_DST_LINE_BYTES, 63,
                             "An image of 64 x 8 pixels does not fit a destination of 8 lines of 63 bytes."},
                    BadStart{"width", GRB_ROI_XLENGTH, 0, "The region of interest is empty (0 x 8 pixels)."},
                    BadStart{"hugeWidth", GRB_ROI_XLENGTH, 0xFFFFFFFF,
                             "An image of 4294967295 x 8 pixels does not fit a destination of 8 lines of 64 bytes."},
                    BadStart{"count", GRB_ACQ_NUM_BUFFERS, 3, "The destination list ends after 2 of 3 destinations."},
                    BadStart{"hugeCount", GRB_ACQ_NUM_BUFFERS, 0xFFFFFFFF,
                             "The destination list ends after 2 of 4294967295 destinations."}),
    [](const testing::TestParamInfo<BadStart> &row) { return row.param.name; });

TEST_F(Stream, StartWithoutDestinationsIsRefused) {
  EXPECT_EQ(m_Grabber.Set(GRB_DST_LINE_BYTES, 64), GRB_OK);
  EXPECT_EQ(m_Grabber.Set(GRB_DST_LINES, 8), GRB_OK);
  EXPECT_EQ(m_Grabber.Flush(), GRB_OK);
  GRB_EVENT_CALLBACK callback = [](GRB_HANDLE, uint32_t, void *) {};
  EXPECT_NE(GRB_StreamRead(m_Grabber.Handle(), GRB_STREAM_START, reinterpret_cast<void *>(callback)), GRB_OK);
  EXPECT_EQ(LastHook().text, "No destination list is in effect.");
}

// The list is read at the start only: its owner may reuse the memory while frames come.
TEST_F(Stream, ListIsTakenAtTheStart) {
  CRun run(m_Grabber, 2);
  run.OnEvent(ReleaseEach);
  run.Prepare();
  ASSERT_EQ(run.Restart(), GRB_OK);
  std::fill(run.List(), run.List() + 6, uint64_t{0});
  ASSERT_TRUE(run.WaitForFrames(6));
  StopCleanly(run);
}

TEST_F(Stream, NoFramesWithoutCamera) {
  CGrabber empty(GRB_MODE_ACQ_ONLY, GRB_CHANNEL_5);
  UseSmallImage(empty);
  CRun run(empty, 2);
  ASSERT_EQ(run.Start(), GRB_OK);
  StopCleanly(run);
  EXPECT_EQ(run.Count(GRB_EVENT_BUFFER_READY), 0U);
}

TEST_F(Stream, CountOfFramesBeginsAnewWithEachRun) {
  CRun run(m_Grabber, 2);
  ASSERT_EQ(run.Start(), GRB_OK);
  ASSERT_TRUE(run.WaitForWord(GRB_EVENT_FIFO_OVERFLOW));
  EXPECT_EQ(m_Grabber.Get(GRB_COUNT_BUFFER_READY_NOW), 2U);
  StopCleanly(run);
  EXPECT_EQ(m_Grabber.Get(GRB_COUNT_BUFFER_READY_NOW), 2U);
  CGrabber camera(GRB_MODE_CONTROL, GRB_CHANNEL_1);
  EXPECT_EQ(camera.WriteWord(0x6014, 1), GRB_OK);
  ASSERT_EQ(run.Restart(), GRB_OK);
  EXPECT_EQ(m_Grabber.Get(GRB_COUNT_BUFFER_READY_NOW), 0U);
  EXPECT_EQ(camera.WriteWord(0x6010, 1), GRB_OK);
}

}  // namespace
