// SPDX-License-Identifier: MIT
#include <atomic>
#include <thread>

#include "Camera.h"

/// Many times over: start and stop, open and close, load and unload; and a wait that somebody else ends.
namespace {

using namespace SystemTest;  // NOLINT

class Lifecycle : public SimulationTest {
 protected:
  /// From TLOpen to frames of both cameras and back.
  void UseTheWholeTree() {
    for (uint32_t channel = 1; channel <= 2; ++channel) {
      DEV_HANDLE const device = OpenDevice(channel, 80, 10);
      EXPECT_FALSE(ReadXml(device).empty());
      EXPECT_FALSE(ReadXml(RemotePort(device)).empty());
      CStream stream(device, channel);
      const PictureShape shape = stream.Shape();
      stream.Announce(4);
      stream.Start();
      for (uint64_t frame = 1; frame <= 3; ++frame) {
        BUFFER_HANDLE const buffer = stream.Next();
        ASSERT_NE(buffer, nullptr);
        EXPECT_TRUE(IsPicture(stream.Memory(buffer).Data(), shape, frame, kFilling));
      }
      stream.Stop();
    }
  }
  void CloseTheSystem() {
    EXPECT_OK(Gc().TLClose(m_hSystem));
    m_hSystem = nullptr;
    m_hInterface = nullptr;
  }
};

// A run that leaves a thread, a handle or a callback behind does not get far.
TEST_F(Lifecycle, ThousandStartsAndStops) {
  constexpr int kCycles = 1000;
  CStream stream(OpenDevice(1, 32, 4), 1);
  const PictureShape shape = stream.Shape();
  stream.Announce(3);
  for (int cycle = 0; cycle < kCycles; ++cycle) {
    stream.Start();
    if (cycle % 10 == 0) {
      // Frames of an earlier run may still wait: stopping throws nothing away.
      BUFFER_HANDLE const buffer = stream.Next();
      ASSERT_NE(buffer, nullptr) << "cycle " << cycle;
      ASSERT_NE(FrameInBuffer(stream.Memory(buffer).Data(), shape), 0U) << "cycle " << cycle;
    }
    ASSERT_OK(Gc().DSStopAcquisition(stream.Handle(), ACQ_STOP_FLAGS_DEFAULT));
    ASSERT_OK(Gc().DSFlushQueue(stream.Handle(), ACQ_QUEUE_ALL_TO_INPUT));
  }
  stream.Start();
  BUFFER_HANDLE const buffer = stream.Next();
  ASSERT_NE(buffer, nullptr);
  EXPECT_TRUE(IsPicture(stream.Memory(buffer).Data(), shape, 1, kFilling));
  stream.Stop();
}

TEST_F(Lifecycle, TenTimesTheWholeTree) {
  for (int round = 0; round < 10; ++round) {
    SCOPED_TRACE(round);
    UseTheWholeTree();
    if (round % 2 == 0) {
      CloseTheSystem();
    } else {
      // The library closes what is open below it.
      ASSERT_OK(Gc().GCCloseLib());
      m_hSystem = nullptr;
      m_hInterface = nullptr;
      ASSERT_OK(Gc().GCInitLib());
    }
  }
}

TEST_F(Lifecycle, UnloadsAndLoadsAgain) {
  for (int round = 0; round < 3; ++round) {
    SCOPED_TRACE(round);
    UseTheWholeTree();
    CloseTheSystem();
    ASSERT_OK(Gc().GCCloseLib());
    m_pProducer.reset();
    EXPECT_FALSE(CLoadedProducer::IsMapped()) << "the library stays in the process";
    m_pProducer = std::make_unique<CLoadedProducer>();
    ASSERT_OK(Gc().GCInitLib());
  }
}

// Threads that used the library and live on must not find their record's code gone when they end.
TEST_F(Lifecycle, UnloadsWhileAThreadThatUsedItLivesOn) {
  std::atomic<bool> used{false};
  std::atomic<bool> unloaded{false};
  std::thread thread([&] {
    uint32_t count = 0;
    EXPECT_NE(Gc().TLGetNumInterfaces(nullptr, &count), GC_ERR_SUCCESS);
    used = true;
    WaitUntil([&] { return unloaded.load(); });
  });
  ASSERT_TRUE(WaitUntil([&] { return used.load(); }));
  ASSERT_OK(Gc().GCCloseLib());
  m_pProducer.reset();
  unloaded = true;
  thread.join();
  m_pProducer = std::make_unique<CLoadedProducer>();
  ASSERT_OK(Gc().GCInitLib());
}

class KilledWait : public Lifecycle, public testing::WithParamInterface<EVENT_TYPE> {};

// The thread is asleep in the library when the kill comes: one that only the next call notices would hang it.
TEST_P(KilledWait, EndsWithAbort) {
  DEV_HANDLE const device = OpenDevice(1, 32, 4);
  DS_HANDLE stream = nullptr;
  ASSERT_OK(Gc().DevOpenDataStream(device, kStreamId, &stream));
  EVENT_HANDLE event = nullptr;
  ASSERT_OK(Gc().GCRegisterEvent(stream, GetParam(), &event));
  for (int round = 0; round < 20; ++round) {
    std::atomic<int> number{0};
    GC_ERROR result = GC_ERR_SUCCESS;
    LastErrorRecord record;
    std::thread waiter([&] {
      char data[4096];
      size_t size = sizeof(data);
      number = ThreadNumber();
      result = Gc().EventGetData(event, data, &size, GENTL_INFINITE);
      record = LastError();
    });
    ASSERT_TRUE(WaitUntil([&] { return number != 0 && IsThreadAsleep(number); }));
    ASSERT_OK(Gc().EventKill(event));
    waiter.join();
    ASSERT_EQ(result, GC_ERR_ABORT);
    EXPECT_EQ(record.code, GC_ERR_ABORT);
    EXPECT_EQ(record.text.rfind("Wait terminated", 0), 0U) << record.text;
  }
}

INSTANTIATE_TEST_SUITE_P(Of, KilledWait, testing::Values(EVENT_ERROR, EVENT_NEW_BUFFER),
                         [](const testing::TestParamInfo<EVENT_TYPE> &row) {
                           return row.param == EVENT_ERROR ? std::string("Errors") : std::string("NewBuffers");
                         });

// The other way round: the stop comes from a second thread while the first one takes frames.
TEST_F(Lifecycle, StopsFromASecondThreadWhileTheFirstTakesFrames) {
  CStream stream(OpenDevice(1, 64, 16), 1);
  stream.Announce(4);
  for (int run = 0; run < 20; ++run) {
    std::atomic<uint64_t> frames{0};
    stream.Start();
    std::thread taker([&] {
      GC_ERROR result = GC_ERR_SUCCESS;
      while (BUFFER_HANDLE const buffer = NextBuffer(stream.Event(), GENTL_INFINITE, &result)) {
        ++frames;
        // The stop can come between the frame and its return; neither may fail.
        EXPECT_OK(Gc().DSQueueBuffer(stream.Handle(), buffer));
      }
      EXPECT_EQ(result, GC_ERR_ABORT);
    });
    EXPECT_TRUE(WaitUntil([&] { return frames >= 5; }));
    EXPECT_OK(Gc().DSStopAcquisition(stream.Handle(), ACQ_STOP_FLAGS_KILL));
    EXPECT_OK(Gc().EventKill(stream.Event()));
    taker.join();
    EXPECT_OK(Gc().DSFlushQueue(stream.Handle(), ACQ_QUEUE_ALL_TO_INPUT));
  }
}

}  // namespace
