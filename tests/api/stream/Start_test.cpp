// SPDX-License-Identifier: MIT
// The start of an acquisition: its checks, its library calls in their order, and what a failure of each leaves behind.
#include <future>
#include <map>

#include "StreamFixture.h"

namespace StreamTests {
namespace {

using Lines = std::vector<std::string>;

// The pieces of a start's record, on a camera that is not asked for its format.
const Lines kReadLine = {"ParameterGet(S, GRB_ROI_XLENGTH)", "ParameterGet(S, GRB_ACQ_XSUB)",
                         "ParameterGet(S, GRB_USR_FORMAT)"};
const Lines kReadHeight = {"ParameterGet(S, GRB_ROI_YLENGTH)", "ParameterGet(S, GRB_ACQ_YSUB)"};
const Lines kReadRevision = {"ControlRead(C, GRB_PORT_CAMERA, 0x4, 4, 800)"};
const Lines kStopCalls = {"StreamRead(S, GRB_STREAM_STOP)", "ParameterSet(S, GRB_EVENT_MASK_NOW, 0x1)",
                          "StreamRead(S, GRB_STREAM_ABORT)"};

Lines Join(std::initializer_list<Lines> parts) {
  Lines all;
  for (const Lines &part : parts) {
    all.insert(all.end(), part.begin(), part.end());
  }
  return all;
}

struct StartShape {
  Lines stop;  ///< calls of the stop that comes first
  Lines camera = kReadRevision;
  uint32_t buffers = 1;
  std::string lineBytes = "0x40";
  std::string lines = "0x30";
  bool newBufferSet = true;
};

Lines StartCalls(const StartShape &shape) {
  const Lines flushBuffers = shape.newBufferSet ? Lines{"ParameterSet(S, GRB_CACHE_FLUSH_BUFFERS, null)"} : Lines{};
  return Join({kReadLine,
               kReadHeight,
               shape.stop,
               {"ParameterSet(S, GRB_EVENT_CONTEXT, ptr)",
                "ParameterSet(S, GRB_ACQ_NUM_BUFFERS, " + Format("0x%llx", shape.buffers) + ")"},
               shape.camera,
               {"ParameterSet(S, GRB_DST_LIST, ptr)", "ParameterSet(S, GRB_DST_LIST_KIND, 0xc0022702)"},
               kReadLine,
               kReadHeight,
               {"ParameterSet(S, GRB_DST_LINE_BYTES, " + shape.lineBytes + ")",
                "ParameterSet(S, GRB_DST_LINES, " + shape.lines + ")"},
               flushBuffers,
               {"ParameterSet(S, GRB_EVENT_MASK, 0x1004)", "ParameterSet(S, GRB_CACHE_FLUSH, null)"},
               {"ParameterGet(S, GRB_ROI_XLENGTH)", "ParameterGet(S, GRB_ACQ_XSUB)"},
               kReadHeight,
               {"ParameterGet(S, GRB_USR_FORMAT)", "ParameterGet(S, GRB_ACQ_BLOCKING)"},
               kReadLine,
               kReadHeight,
               {"StreamRead(S, GRB_STREAM_START)"}});
}

// Checks --------------------------------------------------------------------------------------------------------------

TEST_F(StreamTest, StartOfNoFramesIsRefusedAtTheEntry) {
  QueueBuffers(1);
  const size_t mark = Script().Mark();
  EXPECT_GC_FROM(GC_ERR_INVALID_PARAMETER, "Number of frames to acquire must be at least one.",
                 "GenICam::Client::DSStartAcquisition", Gc().DSStartAcquisition(m_hStream, 7, 0));
  EXPECT_EQ(Lines{}, Trace(mark));
}

TEST_F(StreamTest, StartFlagsAreTheFirstCheckOfTheModule) {
  OpenStream();
  const size_t mark = Script().Mark();
  for (const ACQ_START_FLAGS flags : {1, 2, 1000, -1}) {
    EXPECT_GC_FROM(GC_ERR_INVALID_PARAMETER, "Invalid acquisition start flag: only supports ACQ_START_FLAGS_DEFAULT.",
                   "GenICam::Client::CDataStream::DSStartAcquisition",
                   Gc().DSStartAcquisition(m_hStream, flags, GENTL_INFINITE));
  }
  EXPECT_EQ(Lines{}, Trace(mark));
}

TEST_F(StreamTest, PayloadSizeIsAskedAheadOfTheBuffers) {
  OpenStream();
  Script().On(Match(Op::ParameterGet, GRB_USR_FORMAT), Broken());
  EXPECT_GC(GC_ERR_ERROR, "Failed reading Device feature: PIXELFORMAT: " + LibraryText("GRB_ParameterGet"),
            Gc().DSStartAcquisition(m_hStream, ACQ_START_FLAGS_DEFAULT, 1));
}

TEST_F(StreamTest, StartWithoutAQueuedBuffer) {
  const char *const message = "You must queue at least one buffer before starting acquisition.";
  OpenStream();
  const size_t mark = Script().Mark();
  const char *const function = "GenICam::Client::CDataStream::DSStartAcquisition";
  EXPECT_GC_FROM(GC_ERR_INVALID_BUFFER, message, function,
                 Gc().DSStartAcquisition(m_hStream, ACQ_START_FLAGS_DEFAULT, 1));
  AllocMany(2);
  EXPECT_GC_FROM(GC_ERR_INVALID_BUFFER, message, function,
                 Gc().DSStartAcquisition(m_hStream, ACQ_START_FLAGS_DEFAULT, 1));
  EXPECT_EQ(0U, Script().Count(Match(Op::ParameterSet), mark));
}

TEST_F(StreamTest, RefusedStartLeavesARunAlone) {
  const EVENT_HANDLE event = NewBufferEvent();
  Run(1);
  Frame();
  Take(event);
  EXPECT_GC_CODE(GC_ERR_INVALID_BUFFER, Gc().DSStartAcquisition(m_hStream, ACQ_START_FLAGS_DEFAULT, 1));
  EXPECT_TRUE(Grabbing()) << "the checks come ahead of the stop";
  EXPECT_EQ(1U, Delivered());
  EXPECT_EQ(1U, Started());
}

TEST_F(StreamTest, FirstSmallQueuedBufferIsReported) {
  const size_t payload = PayloadSize();
  const BUFFER_HANDLE good = AllocOf(payload);
  const BUFFER_HANDLE small = AllocOf(payload - 1);
  const BUFFER_HANDLE smaller = AllocOf(1);
  Queue(good);
  Queue(small);
  Queue(smaller);
  EXPECT_GC_FROM(GC_ERR_INVALID_BUFFER, "Size of buffer (3071) must be greater than or equal to PayloadSize (3072).",
                 "GenICam::Client::CDataStream::DSStartAcquisition",
                 Gc().DSStartAcquisition(m_hStream, ACQ_START_FLAGS_DEFAULT, 1));
  EXPECT_FALSE(Grabbing());
}

TEST_F(StreamTest, SmallBufferThatIsNotQueuedBlocksNoStart) {
  const size_t payload = PayloadSize();
  AllocOf(payload - 1);
  Queue(AllocOf(payload));
  Start();
  EXPECT_EQ(1U, Script().StreamOf().numBuffers);
}

// The calls -----------------------------------------------------------------------------------------------------------

TEST_F(StreamTest, CallsOfAStartInTheirOrder) {
  QueueBuffers(3);
  const size_t mark = Script().Mark();
  Start();
  StartShape shape;
  shape.buffers = 3;
  EXPECT_EQ(StartCalls(shape), Trace(mark));
}

TEST_F(StreamTest, CallsOfARestartOfARunningStream) {
  QueueBuffers(2);
  Start();
  const size_t mark = Script().Mark();
  Start();
  StartShape shape;
  shape.stop = kStopCalls;
  shape.buffers = 2;
  shape.newBufferSet = false;
  EXPECT_EQ(StartCalls(shape), Trace(mark));
}

TEST_F(StreamTest, CallsOfAStartAfterAStop) {
  QueueBuffers(2);
  Start();
  Stop();
  const size_t mark = Script().Mark();
  Start();
  StartShape shape;
  shape.buffers = 2;
  shape.newBufferSet = false;
  EXPECT_EQ(StartCalls(shape), Trace(mark));
}

TEST_F(StreamTest, PaddedLinesReachTheLibrary) {
  OpenStream();
  SetSize(2004, 3);
  QueueBuffers(1);
  const size_t mark = Script().Mark();
  Start();
  StartShape shape;
  shape.lineBytes = "0x7e0";
  shape.lines = "0x3";
  EXPECT_EQ(StartCalls(shape), Trace(mark));
}

TEST_F(StreamTest, AllCallsOfAStartAreMadeByTheCaller) {
  QueueBuffers(1);
  const size_t mark = Script().Mark();
  Start();
  EXPECT_EQ(Script().Calls(mark).size(), Script().Count(Match().Thread(std::this_thread::get_id()), mark));
}

TEST_F(StreamTest, NewBufferSetIsToldOnceForEachAnnouncement) {
  const auto told = [&] {
    const size_t mark = Script().Mark();
    Start();
    Stop();
    return Script().Count(Match(Op::ParameterSet, GRB_CACHE_FLUSH_BUFFERS), mark);
  };
  const std::vector<BUFFER_HANDLE> buffers = QueueBuffers(2);
  EXPECT_EQ(1U, told());
  EXPECT_EQ(0U, told());
  const BUFFER_HANDLE late = Alloc();
  EXPECT_EQ(1U, told()) << "announced, though not queued";
  ASSERT_GC_OK(Gc().DSRevokeBuffer(m_hStream, late, nullptr, nullptr));
  EXPECT_EQ(0U, told()) << "a revocation is not told";
  std::vector<uint8_t> memory(16);
  BUFFER_HANDLE own = nullptr;
  ASSERT_GC_OK(Gc().DSAnnounceBuffer(m_hStream, memory.data(), memory.size(), nullptr, &own));
  EXPECT_EQ(1U, told()) << "the Consumer's memory counts alike";
}

TEST_F(StreamTest, FailedStartTellsTheNewBufferSetAgain) {
  QueueBuffers(1);
  Script().On(Match(Op::StreamRead, GRB_STREAM_START), Broken());
  EXPECT_GC_CODE(GC_ERR_ERROR, Gc().DSStartAcquisition(m_hStream, ACQ_START_FLAGS_DEFAULT, 1));
  const size_t mark = Script().Mark();
  Start();
  EXPECT_EQ(1U, Script().Count(Match(Op::ParameterSet, GRB_CACHE_FLUSH_BUFFERS), mark));
}

TEST_F(StreamTest, RefusedAnnouncementIsNotTold) {
  QueueBuffers(1);
  Start();
  Stop();
  BUFFER_HANDLE buffer = nullptr;
  EXPECT_GC_CODE(GC_ERR_INVALID_PARAMETER, Gc().DSAllocAndAnnounceBuffer(m_hStream, 0, nullptr, &buffer));
  const size_t mark = Script().Mark();
  Start();
  EXPECT_EQ(0U, Script().Count(Match(Op::ParameterSet, GRB_CACHE_FLUSH_BUFFERS), mark));
}

// What the pointers point to ------------------------------------------------------------------------------------------

TEST_F(StreamTest, DestinationListIsComplete) {
  const std::vector<BUFFER_HANDLE> buffers = AllocMany(10);
  for (const size_t index : {7U, 2U, 5U}) {
    Queue(buffers[index]);
  }
  std::vector<uint64_t> words;
  Script().On(Match(Op::ParameterSet, GRB_DST_LIST), Reply::Pass().Do([&](const Call &call) {
    const auto *const list = static_cast<const uint64_t *>(call.argument);
    words.assign(list, list + 8);
  }));
  Start();
  ASSERT_EQ(8U, words.size());
  const size_t order[] = {2, 5, 7};
  for (size_t i = 0; i < 3; ++i) {
    EXPECT_EQ(reinterpret_cast<uintptr_t>(BufferPointer(buffers[order[i]], BUFFER_INFO_BASE)), words[2 * i])
        << "in the order of announcement";
    EXPECT_NE(0U, words[2 * i + 1]) << "the buffer's record";
    for (size_t k = 0; k < i; ++k) {
      EXPECT_NE(words[2 * k + 1], words[2 * i + 1]);
    }
  }
  EXPECT_EQ(0U, words[6]) << "the terminating pair";
  EXPECT_EQ(0U, words[7]);

  const Stream stream = Script().StreamOf();
  EXPECT_EQ(3U, stream.numBuffers);
  EXPECT_TRUE(stream.terminated) << "the list stands until the start, and beyond";
  EXPECT_EQ(0xC0022702U, stream.listKind);
  EXPECT_EQ(64U, stream.lineBytes);
  EXPECT_EQ(48U, stream.lines);
  EXPECT_EQ(0x1004U, stream.eventMask);
  EXPECT_NE(nullptr, stream.context);
}

TEST_F(StreamTest, OneQueuedOfTenGoesToTheLibrary) {
  const std::vector<BUFFER_HANDLE> buffers = AllocMany(10);
  Queue(buffers[6]);
  Start();
  const Stream stream = Script().StreamOf();
  ASSERT_EQ(1U, stream.numBuffers);
  EXPECT_EQ(BufferPointer(buffers[6], BUFFER_INFO_BASE), stream.destinations[0].address);
  EXPECT_TRUE(stream.terminated);
}

TEST_F(StreamTest, ContextOfEveryStartIsTheSameEngine) {
  Run(1);
  const void *const context = Script().StreamOf().context;
  Stop();
  Start();
  EXPECT_EQ(context, Script().StreamOf().context);
}

TEST_F(StreamTest, CallbackMayComeAheadOfTheStartsReturn) {
  const EVENT_HANDLE event = NewBufferEvent();
  const std::vector<BUFFER_HANDLE> buffers = QueueBuffers(2);
  Script().On(Match(Op::StreamRead, GRB_STREAM_START),
              Reply::Pass().Do([](const Call &) { Script().FireCallback(GRB_EVENT_BUFFER_READY); }));
  Start();
  EXPECT_EQ(buffers[0], Take(event));
  EXPECT_EQ(1U, Delivered());
}

// The camera's own format ---------------------------------------------------------------------------------------------

Lines ReadsAt(std::initializer_list<uint64_t> addresses, const char *timeout) {
  Lines lines;
  for (const uint64_t address : addresses) {
    lines.push_back("ControlRead(C, GRB_PORT_CAMERA, " + Format("0x%llx", address) + ", 4, " + timeout + ")");
  }
  return lines;
}

class CameraFormat : public StreamTest {
 protected:
  static constexpr const char *kOwnTiming = "4294967294";  // GRB_TIMEOUT_CXP11

  void TearDown() override {
    if (m_bSettings) {
      // Values that have gone from the file keep what they were: put back what every other test relies on.
      CSettingsFile defaults;
      defaults.Dword("TimeOut", 800)
          .Dword("Cxpv11Enable", 0)
          .Dword("Cxpv11PixelFormatAddress", 0)
          .Dword("Cxpv11WidthAddress", 0)
          .Dword("Cxpv11HeightAddress", 0)
          .Write();
      Reinitialise();
    }
    StreamTest::TearDown();
  }

  /// Has the Producer read the settings.
  void Apply(CSettingsFile &settings) {
    m_bSettings = true;
    settings.Write();
    Reinitialise();
  }

  void OpenWith(const CCamera &camera) {
    Script().SetCamera(GRB_BOARD_1, GRB_CHANNEL_1, camera);
    QueueBuffers(1);
  }

  void ExpectCameraCalls(const Lines &camera) {
    const size_t mark = Script().Mark();
    Start();
    StartShape shape;
    shape.camera = camera;
    EXPECT_EQ(StartCalls(shape), Trace(mark));
  }

  static uint64_t Parameter(uint32_t identifier) { return Script().Parameter(GRB_BOARD_1, GRB_CHANNEL_1, identifier); }

 private:
  bool m_bSettings = false;
};

TEST_F(CameraFormat, Revision11IsAskedThroughItsOwnAddresses) {
  OpenWith(CCamera().Revision(0x10001).PixelFormat(0x01100011));
  ExpectCameraCalls(
      Join({ReadsAt({0x4, 0x3000, 0x3004, 0x3014, CCamera::kWidthAddress, CCamera::kHeightAddress,
                     CCamera::kPixelFormatAddress},
                    kOwnTiming),
            {"ParameterSet(S, GRB_CAM_SRC_DEPTH, 0xc)", "ParameterSet(S, GRB_CAM_SRC_COL, 0xc0021201)"}}));
  EXPECT_EQ(12U, Parameter(GRB_CAM_SRC_DEPTH));
  EXPECT_EQ(GRB_CAM_SRC_BAY_RGGB, Parameter(GRB_CAM_SRC_COL));
  EXPECT_EQ(GRB_USR_FORMAT_MONO8, Parameter(GRB_USR_FORMAT)) << "the buffer's format is the user's";
  EXPECT_EQ(64U, Parameter(GRB_CAM_ACTIVE_XLENGTH)) << "the camera's width is read and dropped";
}

TEST_F(CameraFormat, RevisionIsReadAnewAtEachStart) {
  OpenWith(CCamera().PixelFormat(0x01080001));
  Start();
  Stop();
  Script().WriteCameraU32(GRB_BOARD_1, GRB_CHANNEL_1, 0x4, 0x10001);
  const size_t mark = Script().Mark();
  Start();
  EXPECT_EQ(7U, Script().Count(Match(Op::ControlRead), mark));
  EXPECT_EQ(7U, Script().Count(Match(Op::ControlRead, GRB_PORT_CAMERA).Channel(GRB_CHANNEL_1), mark));
}

TEST_F(CameraFormat, OtherRevisionsAreNotAskedFurther) {
  QueueBuffers(1);
  for (const uint32_t revision : {0x10000U, 0x10002U, 0x20000U, 0U}) {
    Script().WriteCameraU32(GRB_BOARD_1, GRB_CHANNEL_1, 0x4, revision);
    const size_t mark = Script().Mark();
    Start();
    EXPECT_EQ(1U, Script().Count(Match(Op::ControlRead), mark)) << revision;
    EXPECT_EQ(1U, Script().Count(Match(Op::ControlRead).Address(0x4), mark)) << revision;
    EXPECT_EQ(0U, Script().Count(Match(Op::ParameterSet, GRB_CAM_SRC_DEPTH), mark)) << revision;
  }
}

TEST_F(CameraFormat, Revision11NeedsAKnownPfncValue) {
  OpenWith(CCamera().Revision(0x10001).PixelFormat(0x0101));
  EXPECT_GC(GC_ERR_ERROR, "Unknown or unsupported PFNC PixelFormat: 101",
            Gc().DSStartAcquisition(m_hStream, ACQ_START_FLAGS_DEFAULT, 1));
  EXPECT_FALSE(Grabbing());
}

TEST_F(CameraFormat, SettingsNameTheAddressesOfOlderCameras) {
  CSettingsFile settings;
  settings.Dword("Cxpv11Enable", 1)
      .Dword("Cxpv11PixelFormatAddress", 0x9100)
      .Dword("Cxpv11WidthAddress", 0x9104)
      .Dword("Cxpv11HeightAddress", 0x9108)
      .Dword("TimeOut", 555);
  Apply(settings);
  OpenWith(CCamera().U32(0x9100, 0x0323));
  ExpectCameraCalls(
      Join({ReadsAt({0x4, 0x9104, 0x9108, 0x9100}, "555"),
            {"ParameterSet(S, GRB_CAM_SRC_DEPTH, 0xc)", "ParameterSet(S, GRB_CAM_SRC_COL, 0xc0021201)"}}));
  Stop();
  Script().WriteCameraU32(GRB_BOARD_1, GRB_CHANNEL_1, 0x9100, 0x01100011);
  EXPECT_GC(GC_ERR_ERROR, "Unknown or unsupported CoaXPress PixelFormat: 1100011",
            Gc().DSStartAcquisition(m_hStream, ACQ_START_FLAGS_DEFAULT, 1))
      << "the settings' branch takes CoaXPress codes";
}

TEST_F(CameraFormat, Revision11GoesAheadOfTheSettings) {
  CSettingsFile settings;
  settings.Dword("Cxpv11Enable", 1).Dword("Cxpv11PixelFormatAddress", 0x9100);
  Apply(settings);
  OpenWith(CCamera().Revision(0x10001).PixelFormat(0x01080001));
  ExpectCameraCalls(Join({ReadsAt({0x4, 0x3000, 0x3004, 0x3014, CCamera::kWidthAddress, CCamera::kHeightAddress,
                                   CCamera::kPixelFormatAddress},
                                  kOwnTiming),
                          {"ParameterSet(S, GRB_CAM_SRC_DEPTH, 0x8)", "ParameterSet(S, GRB_CAM_SRC_COL, 0x1)"}}));
}

TEST_F(CameraFormat, DisabledSettingsAreNotUsed) {
  CSettingsFile settings;
  settings.Dword("Cxpv11Enable", 0).Dword("Cxpv11PixelFormatAddress", 0x9100);
  Apply(settings);
  QueueBuffers(1);
  ExpectCameraCalls(kReadRevision);
}

TEST_F(CameraFormat, TimeoutOfTheReadIsATimeout) {
  QueueBuffers(1);
  Script().On(Match(Op::ControlRead).Address(0x4), Reply::Failure(GRB_WARNING_TIMEOUT, kScriptedText).Moved(0));
  EXPECT_GC(GC_ERR_TIMEOUT,
            std::string("Timeout while reading 4 bytes from address 0x4 in camera, 0 bytes read, timeout value was "
                        "800.\n") +
                kScriptedText + " (GRB_ControlRead returned error code 0x8000)",
            Gc().DSStartAcquisition(m_hStream, ACQ_START_FLAGS_DEFAULT, 1));
  EXPECT_FALSE(Grabbing());
  Start();
}

// Failures ------------------------------------------------------------------------------------------------------------

/// The text of a failing call of a start, from its place in the record.
std::string FailureOf(const Call &call) {
  if (call.op == Op::StreamRead) {
    return ": " + LibraryText("GRB_StreamRead");
  }
  if (call.op == Op::ControlRead) {
    return "Error while reading 4 bytes from address " + Format("0x%llx", call.address) +
           " in camera, 0 bytes read.\n" + LibraryText("GRB_ControlRead");
  }
  if (call.op == Op::ParameterSet) {
    const bool incoming = call.code == GRB_CAM_SRC_DEPTH || call.code == GRB_CAM_SRC_COL;
    return (incoming ? "Failed writing Device feature: INCOMING_PIXELFORMAT: " : "") + LibraryText("GRB_ParameterSet");
  }
  static const std::map<uint32_t, const char *> names = {
      {GRB_ROI_XLENGTH, "WIDTH"},      {GRB_ACQ_XSUB, "DECIMATION_HORIZONTAL"},
      {GRB_ROI_YLENGTH, "HEIGHT"},     {GRB_ACQ_YSUB, "DECIMATION_VERTICAL"},
      {GRB_USR_FORMAT, "PIXELFORMAT"}, {GRB_ACQ_BLOCKING, "GRB_ACQ_BLOCKING"}};
  return std::string("Failed reading Device feature: ") + names.at(call.code) + ": " + LibraryText("GRB_ParameterGet");
}

constexpr size_t kCallsOfAStart = 40;   // of a start with all its steps
constexpr size_t kCallsOfTheCheck = 5;  // those that ask for the required size, ahead of the engine

class FailingStep : public StreamTest, public testing::WithParamInterface<size_t> {};

TEST_P(FailingStep, LeavesTheEngineIdleAndFitForAnotherStart) {
  // A camera of revision 1.1, so that every step has its calls; a run before, so that there is something to clear.
  Script().SetCamera(GRB_BOARD_1, GRB_CHANNEL_1, CCamera().Revision(0x10001).PixelFormat(0x01080001));
  const EVENT_HANDLE event = NewBufferEvent();
  Run(4);
  Frame();
  Frame();
  const BUFFER_HANDLE held = Take(event);
  Stop();

  // A start like the one that is to fail. Each announcement is told at the start behind it.
  AllocOf(1);
  size_t mark = Script().Mark();
  Start();
  std::vector<Call> good = Script().Calls(mark);
  ASSERT_EQ(kCallsOfAStart, good.size());
  Frame();
  Stop();
  AllocOf(1);
  ASSERT_EQ(1U, Delivered());
  ASSERT_EQ(1U, Queued());
  ASSERT_EQ(2U, Awaiting());

  const size_t step = GetParam();
  const Call &target = good[step];
  uint32_t nth = 1;
  for (size_t i = 0; i < step; ++i) {
    nth += good[i].op == target.op && good[i].code == target.code && good[i].address == target.address ? 1U : 0U;
  }
  Match match(target.op, target.code);
  if (target.op == Op::ControlRead) {
    match.Address(target.address);
  }
  Script().On(match, target.op == Op::ControlRead ? Broken().Moved(0) : Broken(), When::Nth(nth));
  EXPECT_GC(target.op == Op::ControlRead ? GC_ERR_IO : GC_ERR_ERROR, FailureOf(target),
            Gc().DSStartAcquisition(m_hStream, ACQ_START_FLAGS_DEFAULT, 7));
  EXPECT_FALSE(Grabbing());
  const bool beforeTheEngine = step < kCallsOfTheCheck;
  EXPECT_EQ(beforeTheEngine ? 1U : 0U, Delivered());
  EXPECT_EQ(beforeTheEngine ? 1U : 0U, Started());
  EXPECT_EQ(1U, Queued()) << "no buffer changes its state";
  EXPECT_EQ(2U, Awaiting());

  // Returning buffers behind a failed start makes no library call, as there is no ring.
  mark = Script().Mark();
  EXPECT_GC_OK(Gc().DSQueueBuffer(m_hStream, held));
  EXPECT_EQ(Lines{}, Trace(mark));
  EXPECT_GC_OK(Gc().DSFlushQueue(m_hStream, ACQ_QUEUE_OUTPUT_DISCARD));
  if (!beforeTheEngine) {
    EXPECT_EQ(Lines{}, Trace(mark));
  }
  EXPECT_GC_OK(Gc().DSStopAcquisition(m_hStream, ACQ_STOP_FLAGS_DEFAULT));
  EXPECT_EQ(0U, Count(GRB_STREAM_STOP, mark)) << "the engine is idle";

  Script().CancelAll();
  mark = Script().Mark();
  Start();
  EXPECT_TRUE(Grabbing());
  EXPECT_EQ(1U, Script().Count(Match(Op::ParameterSet, GRB_CACHE_FLUSH_BUFFERS), mark));
  EXPECT_EQ(2U, Script().StreamOf().numBuffers);
  Frame();
  EXPECT_EQ(1U, Delivered());
  EXPECT_NE(nullptr, Take(event));
}

INSTANTIATE_TEST_SUITE_P(EachCall, FailingStep, testing::Range(size_t{0}, kCallsOfAStart));

TEST_F(StreamTest, FailedStartOfARunningStreamLeavesItStopped) {
  const EVENT_HANDLE event = NewBufferEvent();
  const std::vector<BUFFER_HANDLE> buffers = Run(3);
  Frame();
  Script().On(Match(Op::ParameterSet, GRB_ACQ_NUM_BUFFERS), Broken());
  EXPECT_GC_FROM(GC_ERR_ERROR, LibraryText("GRB_ParameterSet"), "GenICam::Client::CGrbBaseHandle::ParameterSet",
                 Gc().DSStartAcquisition(m_hStream, ACQ_START_FLAGS_DEFAULT, 1));
  EXPECT_FALSE(Grabbing());
  EXPECT_EQ(1U, Count(GRB_STREAM_STOP));
  EXPECT_EQ(0U, Delivered());
  EXPECT_EQ(0U, Started());
  const size_t mark = Script().Mark();
  EXPECT_EQ(buffers[0], Take(event)) << "the list is as it was";
  Queue(buffers[0]);
  EXPECT_EQ(Lines{}, Trace(mark));
  Start(2);
  Frame();
  Frame();
  EXPECT_EQ(2U, Delivered());
}

TEST_F(StreamTest, FailedStreamStartLeavesTheParametersSet) {
  QueueBuffers(2);
  Script().On(Match(Op::StreamRead, GRB_STREAM_START), Broken());
  EXPECT_GC_FROM(GC_ERR_ERROR, ": " + LibraryText("GRB_StreamRead"), "GenICam::Client::CStreamImpl::Acquire",
                 Gc().DSStartAcquisition(m_hStream, ACQ_START_FLAGS_DEFAULT, 1));
  EXPECT_EQ(2U, Script().Parameter(GRB_BOARD_1, GRB_CHANNEL_1, GRB_ACQ_NUM_BUFFERS));
  EXPECT_EQ(64U, Script().Parameter(GRB_BOARD_1, GRB_CHANNEL_1, GRB_DST_LINE_BYTES));
  EXPECT_FALSE(Grabbing());
}

TEST_F(StreamTest, FailingStopEndsARestart) {
  Run(2);
  Script().On(Match(Op::StreamRead, GRB_STREAM_STOP), Broken());
  const size_t mark = Script().Mark();
  EXPECT_GC(GC_ERR_ERROR, "Error stopping acquisition: \n" + LibraryText("GRB_StreamRead"),
            Gc().DSStartAcquisition(m_hStream, ACQ_START_FLAGS_DEFAULT, 1));
  EXPECT_EQ(0U, Script().Count(Match(Op::ParameterSet, GRB_EVENT_CONTEXT), mark));
  EXPECT_FALSE(Grabbing());
  Start();
}

// Inside the start ----------------------------------------------------------------------------------------------------

TEST_F(StreamTest, BufferReturnedAheadOfTheStartsEndIsReleased) {
  // A library that delivers before its start is back, and a Consumer that is as fast: the slot must not be lost.
  const EVENT_HANDLE event = NewBufferEvent();
  const std::vector<BUFFER_HANDLE> buffers = QueueBuffers(2);
  size_t inside = 99;
  bool grabbing = true;
  Script().On(Match(Op::StreamRead, GRB_STREAM_START), Reply::Pass().Do([&](const Call &) {
    grabbing = Grabbing();
    Script().FireCallback(GRB_EVENT_BUFFER_READY);
    const size_t mark = Script().Mark();
    Queue(Take(event));
    inside = Releases(mark);
  }));
  Start();
  EXPECT_FALSE(grabbing) << "told behind the start only";
  EXPECT_EQ(1U, inside);
  EXPECT_EQ(1U, Delivered());
  EXPECT_EQ(2U, Queued());
  // The ring is in step: each further buffer is one release.
  for (size_t frame = 1; frame < 5; ++frame) {
    Frame();
    const BUFFER_HANDLE buffer = Take(event);
    EXPECT_EQ(buffers[frame % 2], buffer);
    const size_t mark = Script().Mark();
    Queue(buffer);
    EXPECT_EQ(1U, Releases(mark));
  }
}

TEST_F(StreamTest, BufferOfAStartThatFailsIsNotReleased) {
  const EVENT_HANDLE event = NewBufferEvent();
  QueueBuffers(2);
  Script().On(Match(Op::StreamRead, GRB_STREAM_START),
              Broken().KeepEffect().Do([](const Call &) { Script().FireCallback(GRB_EVENT_BUFFER_READY); }));
  EXPECT_GC(GC_ERR_ERROR, ": " + LibraryText("GRB_StreamRead"),
            Gc().DSStartAcquisition(m_hStream, ACQ_START_FLAGS_DEFAULT, GENTL_INFINITE));
  const BUFFER_HANDLE buffer = Take(event);
  const size_t mark = Script().Mark();
  Queue(buffer);
  EXPECT_EQ(Lines{}, Trace(mark)) << "the start is over, and nothing runs";
}

TEST_F(StreamTest, FeaturesOfARunningStreamGoThrough) {
  // Nothing at this level refuses a write during a run: locking is the description's.
  Run(1);
  const struct {
    uint64_t address;
    uint32_t value;
    uint32_t identifier;
  } kRows[] = {{0x604, 32, GRB_ROI_XLENGTH},
               {0x620, 0x01100003, GRB_USR_FORMAT},
               {0x61C, 0x01100011, GRB_CAM_SRC_DEPTH},
               {0x624, 2, GRB_ACQ_XSUB},
               {0x2004, 1, GRB_CAMTRIG_SRC}};
  for (const auto &row : kRows) {
    const size_t mark = Script().Mark();
    EXPECT_GC_OK(WriteU32(m_hDevice, row.address, row.value));
    EXPECT_EQ(1U, Script().Count(Match(Op::ParameterSet, row.identifier), mark)) << std::hex << row.address;
  }
  EXPECT_TRUE(Grabbing());
  Frame();
  EXPECT_EQ(1U, Delivered());
}

// Restart -------------------------------------------------------------------------------------------------------------

TEST_F(StreamTest, RestartBeginsTheFrameIdsAnew) {
  const EVENT_HANDLE event = NewBufferEvent();
  const std::vector<BUFFER_HANDLE> buffers = Run(4);
  Frame();
  Frame();
  EXPECT_EQ(2U, BufferNumber(buffers[1], BUFFER_INFO_FRAMEID));
  Start();
  EXPECT_TRUE(Grabbing());
  EXPECT_EQ(0U, Delivered());
  EXPECT_EQ(2U, Awaiting()) << "the list is left as it was";
  EXPECT_EQ(2U, Script().StreamOf().numBuffers) << "those still queued";
  Frame();
  EXPECT_EQ(1U, BufferNumber(buffers[2], BUFFER_INFO_FRAMEID));
  EXPECT_EQ(buffers[0], Take(event));
  EXPECT_EQ(buffers[1], Take(event));
  EXPECT_EQ(buffers[2], Take(event));
}

TEST_F(StreamTest, BuffersQueuedAtAStopJoinTheNextStart) {
  const EVENT_HANDLE event = NewBufferEvent();
  const std::vector<BUFFER_HANDLE> buffers = Run(3);
  Frame();
  Stop();
  EXPECT_EQ(2U, Queued());
  EXPECT_EQ(buffers[0], Take(event)) << "the list survives the stop";
  Queue(buffers[0]);
  Start();
  const Stream stream = Script().StreamOf();
  ASSERT_EQ(3U, stream.numBuffers);
  EXPECT_EQ(BufferPointer(buffers[0], BUFFER_INFO_BASE), stream.destinations[0].address);
}

TEST_F(StreamTest, BufferQueuedLateIsNotOfThisRun) {
  const std::vector<BUFFER_HANDLE> buffers = AllocMany(3);
  Queue(buffers[1]);
  Start();
  Queue(buffers[0]);
  EXPECT_EQ(1U, Script().StreamOf().numBuffers);
  EXPECT_EQ(2U, Queued());
  Stop();
  Start();
  EXPECT_EQ(2U, Script().StreamOf().numBuffers);
}

// Assertions ----------------------------------------------------------------------------------------------------------

TEST_F(StreamDeathTest, WidthOfZeroAtAStart) {
  QueueBuffers(1);
  SetSize(0, 48);
  EXPECT_DEATH(Gc().DSStartAcquisition(m_hStream, ACQ_START_FLAGS_DEFAULT, 1), "m_dwImageWidth != 0");
}

TEST_F(StreamDeathTest, HeightOfZeroAtAStart) {
  QueueBuffers(1);
  SetSize(64, 0);
  EXPECT_DEATH(Gc().DSStartAcquisition(m_hStream, ACQ_START_FLAGS_DEFAULT, 1), "m_dwImageHeight != 0");
}

// A failed load of a file gives the open stream's Device another handle. The next run is on that one.
TEST_F(StreamTest, StartBehindAFailedLoadRunsOnTheHandleOfNow) {
  OpenStream();
  const GRB_HANDLE before = StreamHandle();
  const CTempDirectory directory;
  ASSERT_GC_OK(WriteText(m_hDevice, 0x144C, directory.WriteFile("board.gcf", "[gcf]\n"), 1024));
  Script().On(Match(Op::Open), Broken());
  EXPECT_GC_CODE(GC_ERR_ERROR, WriteU32(m_hDevice, 0x1448, 1));
  const GRB_HANDLE now = StreamHandle();
  ASSERT_NE(before, now);
  const size_t mark = Script().Mark();
  Run(1);
  Frame();
  EXPECT_EQ(1U, Delivered());
  Stop();
  EXPECT_EQ(1U, Script().Count(Match(Op::StreamRead, GRB_STREAM_START).Handle(now), mark));
  EXPECT_EQ(0U, Script().Count(Match().Handle(before), mark));
}

TEST_F(StreamTest, DeliveryGoesOnWhileAStartHoldsTheBuffers) {
  const EVENT_HANDLE event = NewBufferEvent();
  const BUFFER_HANDLE buffer = QueueBuffers(2).front();
  std::future<BUFFER_HANDLE> taken;
  bool free = false;
  Script().On(Match(Op::StreamRead, GRB_STREAM_START), Reply::Pass().Do([&](const Call &) {
    Script().FireCallback(GRB_EVENT_BUFFER_READY);
    taken = std::async(std::launch::async, [this, event] { return Take(event); });
    free = taken.wait_for(kBound) == std::future_status::ready;
  }));
  Start();
  EXPECT_TRUE(free);
  EXPECT_EQ(buffer, taken.get());
}

}  // namespace
}  // namespace StreamTests
