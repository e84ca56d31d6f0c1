// SPDX-License-Identifier: MIT
// The acquisition engine by itself: what no export can bring about.
#include "StreamImpl.h"

#include <memory>

#include "BufferInfo.h"
#include "DataStreamInfo.h"
#include "DeviceImpl.h"
#include "Failures.h"
#include "GrbChannelHandle.h"
#include "GrbStreamHandle.h"
#include "ScriptedGrb.h"

namespace GenICam::Client {
namespace {

using Scripted::Match;
using Scripted::Op;
using Scripted::Reply;
using Scripted::Script;

constexpr const char *kAcquire = "GenICam::Client::CStreamImpl::Acquire";

class StreamImpl : public testing::Test {
 protected:
  StreamImpl() { GTEST_FLAG_SET(death_test_style, "threadsafe"); }

  void SetUp() override {
    Script().Reset();
    m_pInfo = std::make_shared<CDataStreamInfo>("Stream #1", GRB_BOARD_1, GRB_CHANNEL_1);
    m_pDeviceImpl = std::make_shared<CDeviceImpl>(Channel(GRB_BOARD_1), Stream(GRB_BOARD_1));
  }

  void TearDown() override {
    m_pDeviceImpl.reset();
    Script().Reset();
  }

  static std::shared_ptr<CGrbChannelHandle> Channel(uint32_t board) {
    return std::make_shared<CGrbChannelHandle>(board, GRB_CHANNEL_1, true);
  }
  static std::shared_ptr<CGrbStreamHandle> Stream(uint32_t board) {
    return std::make_shared<CGrbStreamHandle>(board, GRB_CHANNEL_1, true);
  }

  /// Something that is not null and that nothing looks at: the engine only holds its parent until a frame arrives.
  std::shared_ptr<CDataStream> Parent() {
    return {std::shared_ptr<int>(m_pOwner), reinterpret_cast<CDataStream *>(m_pOwner.get())};
  }

  static CBufferList OneBuffer(bool queued) {
    CBufferList list;
    list.push_back(std::make_unique<CBufferInfo>(size_t{64 * 48}, nullptr, false));
    list.back()->SetQueued(queued);
    return list;
  }

  std::shared_ptr<CDataStreamInfo> m_pInfo;
  std::shared_ptr<CDeviceImpl> m_pDeviceImpl;
  std::shared_ptr<int> m_pOwner = std::make_shared<int>(0);
};

using StreamImplDeathTest = StreamImpl;

TEST_F(StreamImplDeathTest, NeedsTheDevice) { EXPECT_DEATH(CStreamImpl(m_pInfo, nullptr), "m_pDeviceImpl != 0"); }

TEST_F(StreamImplDeathTest, NeedsTheInfo) { EXPECT_DEATH(CStreamImpl(nullptr, m_pDeviceImpl), "m_pStreamInfo != 0"); }

TEST_F(StreamImplDeathTest, NeedsTheStreamHandle) {
  EXPECT_DEATH(CStreamImpl(m_pInfo, std::make_shared<CDeviceImpl>(m_pDeviceImpl->GetChannelHandle(), nullptr)),
               "m_pGrbStreamHandle != 0");
}

TEST_F(StreamImplDeathTest, ReleaseNeedsABuffer) {
  CStreamImpl engine(m_pInfo, m_pDeviceImpl);
  EXPECT_DEATH(engine.ReleaseBuffer(nullptr), "pBufferInfo != 0");
}

TEST_F(StreamImplDeathTest, AnnouncedBufferThatIsNone) {
  CStreamImpl engine(m_pInfo, m_pDeviceImpl);
  CBufferList list;
  list.emplace_back();
  EXPECT_DEATH(engine.Acquire(0, 1, list, Parent(), false), "pB != 0");
}

TEST_F(StreamImpl, InvalidStreamHandle) {
  const auto device = std::make_shared<CDeviceImpl>(m_pDeviceImpl->GetChannelHandle(), Stream(GRB_BOARD_7));
  EXPECT_FAILURE(unknown_error, "Attempting to use a DataStream but the Stream handle is invalid.",
                 CStreamImpl(m_pInfo, device));
}

TEST_F(StreamImpl, InvalidChannelHandle) {
  const auto device = std::make_shared<CDeviceImpl>(Channel(GRB_BOARD_7), m_pDeviceImpl->GetStreamHandle());
  EXPECT_FAILURE(unknown_error, "Attempting to use a DataStream but the Channel handle is invalid.",
                 CStreamImpl(m_pInfo, device));
}

TEST_F(StreamImpl, StreamHandleIsAskedFirst) {
  const auto device = std::make_shared<CDeviceImpl>(Channel(GRB_BOARD_7), Stream(GRB_BOARD_7));
  EXPECT_FAILURE(unknown_error, "Attempting to use a DataStream but the Stream handle is invalid.",
                 CStreamImpl(m_pInfo, device));
}

TEST_F(StreamImpl, ParentThatIsGone) {
  CStreamImpl engine(m_pInfo, m_pDeviceImpl);
  const size_t mark = Script().Mark();
  EXPECT_FAILURE_FROM(unknown_error, "Unable to lock pointer to parent Stream", kAcquire,
                      engine.Acquire(0, 1, OneBuffer(true), std::weak_ptr<CDataStream>(), true));
  EXPECT_EQ(0U, Script().Calls(mark).size());
}

TEST_F(StreamImpl, NoQueuedBuffer) {
  CStreamImpl engine(m_pInfo, m_pDeviceImpl);
  const size_t mark = Script().Mark();
  EXPECT_FAILURE_FROM(outofrange_error, "No acquisition buffers queued.", kAcquire,
                      engine.Acquire(0, 1, OneBuffer(false), Parent(), true));
  EXPECT_EQ(0U, Script().Calls(mark).size());
  EXPECT_EQ(1, m_pOwner.use_count()) << "the parent is let go";
}

TEST_F(StreamImpl, FlagsAreNotLookedAt) {
  CStreamImpl engine(m_pInfo, m_pDeviceImpl);
  const CBufferList list = OneBuffer(true);
  engine.Acquire(0xFFFFFFFFU, 1, list, Parent(), true);
  engine.Freeze(false);
}

TEST_F(StreamImpl, ParentIsHeldThroughARun) {
  CStreamImpl engine(m_pInfo, m_pDeviceImpl);
  const CBufferList list = OneBuffer(true);
  engine.Acquire(0, GENTL_INFINITE, list, Parent(), false);
  EXPECT_EQ(2, m_pOwner.use_count());
  long during = 0;
  Script().On(Match(Op::StreamRead, GRB_STREAM_ABORT),
              Reply::Pass().Do([&](const Scripted::Call &) { during = m_pOwner.use_count(); }));
  engine.Freeze(true);
  EXPECT_EQ(2, during) << "through the wait for the final callback";
  EXPECT_EQ(1, m_pOwner.use_count());
}

TEST_F(StreamImpl, ReleaseBeforeAnyRunIsHarmless) {
  CStreamImpl engine(m_pInfo, m_pDeviceImpl);
  const CBufferList list = OneBuffer(true);
  const size_t mark = Script().Mark();
  engine.ReleaseBuffer(list.front().get());
  EXPECT_EQ(0U, Script().Calls(mark).size());
}

TEST_F(StreamImpl, EndOfARunningEngineStopsIt) {
  const size_t mark = Script().Mark();
  const CBufferList list = OneBuffer(true);
  {
    CStreamImpl engine(m_pInfo, m_pDeviceImpl);
    engine.Acquire(0, GENTL_INFINITE, list, Parent(), true);
  }
  EXPECT_EQ(1U, Script().Count(Match(Op::StreamRead, GRB_STREAM_STOP), mark));
  EXPECT_EQ(1U, Script().Count(Match(Op::StreamRead, GRB_STREAM_ABORT), mark));
  EXPECT_EQ(1, m_pOwner.use_count());
}

TEST_F(StreamImpl, FailingEndReportsToTheUser) {
  const CBufferList list = OneBuffer(true);
  testing::internal::CaptureStderr();
  {
    CStreamImpl engine(m_pInfo, m_pDeviceImpl);
    engine.Acquire(0, GENTL_INFINITE, list, Parent(), true);
    Script().On(Match(Op::StreamRead, GRB_STREAM_STOP), Reply::Failure(0x8123, "It broke."));
  }
  const std::string report = testing::internal::GetCapturedStderr();
  EXPECT_EQ(0U, report.find("Fatal Error: Error stopping acquisition: ")) << report;
  EXPECT_NE(std::string::npos, report.find("It broke. (GRB_StreamRead returned error code 0x8123)")) << report;
}

TEST_F(StreamImpl, EndThatFailsWithSomethingElseReportsToo) {
  // What comes out of the library's operation is no exception of the standard.
  const CBufferList list = OneBuffer(true);
  testing::internal::CaptureStderr();
  {
    CStreamImpl engine(m_pInfo, m_pDeviceImpl);
    engine.Acquire(0, GENTL_INFINITE, list, Parent(), true);
    Script().On(Match(Op::StreamRead, GRB_STREAM_STOP), Reply::Pass().Do([](const Scripted::Call &) { throw 1; }));
  }
  const std::string report = testing::internal::GetCapturedStderr();
  EXPECT_EQ("Fatal Error: Unknown Exception.", report.substr(0, report.find('\n'))) << report;
  EXPECT_EQ(1, m_pOwner.use_count()) << "the parent is let go all the same";
}

TEST_F(StreamImpl, StopOfAnIdleEngineDoesNothing) {
  CStreamImpl engine(m_pInfo, m_pDeviceImpl);
  const size_t mark = Script().Mark();
  engine.Freeze(true);
  engine.Freeze(false);
  EXPECT_EQ(0U, Script().Calls(mark).size());
}

TEST_F(StreamImpl, CountsAreClearedByAFailedStart) {
  CStreamImpl engine(m_pInfo, m_pDeviceImpl);
  EXPECT_EQ(0U, engine.GetNumStarted());
  const CBufferList list = OneBuffer(true);
  Script().On(Match(Op::StreamRead, GRB_STREAM_START), Reply::Failure(0x8123, "It broke."));
  EXPECT_FAILURE_FROM(unknown_error, ": It broke. (GRB_StreamRead returned error code 0x8123)", kAcquire,
                      engine.Acquire(0, 1, list, Parent(), true));
  EXPECT_EQ(0U, engine.GetNumStarted());
  EXPECT_EQ(1, m_pOwner.use_count());
  const size_t mark = Script().Mark();
  engine.ReleaseBuffer(list.front().get());
  EXPECT_EQ(0U, Script().Calls(mark).size());
}

}  // namespace
}  // namespace GenICam::Client
