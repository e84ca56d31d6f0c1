// SPDX-License-Identifier: MIT
// The base of the library handles: creation, parameters, registers of the grabber, and its lock.
#include "GrbBaseHandle.h"

#include <atomic>
#include <memory>
#include <thread>

#include "GrabberFixture.h"

namespace GrabberTests {
namespace {

/// The smallest handle: opened like a control handle, so that parameters and registers answer.
class CTestHandle : public CGrbBaseHandle {
 public:
  explicit CTestHandle(bool quiet = true) : CGrbBaseHandle(quiet) {
    if (m_hGrbChannel != 0) {
      SetParametersAndOpen(kBoard, kChannel, GRB_MODE_CONTROL);
    }
  }
  ~CTestHandle() override { CloseHandle(); }
  bool IsValid() const override { return true; }
  boost::recursive_mutex &Lock() { return m_Lock; }
};

using GrbBaseHandle = GrabberTest;

constexpr uint32_t kRegister = 0xABCD;

struct Failure {
  GRB_STATUS status;
  const char *digits;
};

constexpr Failure kFailures[] = {{kStatus, "8123"}, {GRB_WARNING_TIMEOUT, "8000"}, {GRB_WARNING_PASSED, "8005"}};

TEST_F(GrbBaseHandle, CreatesAndDestroysOneHandle) {
  {
    const CTestHandle handle;
    EXPECT_NE(handle.GetHandle(), 0U);
    EXPECT_EQ(Script().CreatedHandles(), 1U);
    EXPECT_EQ(Script().Calls()[0].handle, handle.GetHandle());
  }
  EXPECT_EQ(Script().CreatedHandles(), 0U);
  EXPECT_EQ(Script().Trace().back().substr(0, 8), "Destroy(");
}

// A warning is a failure here.
TEST_F(GrbBaseHandle, CreationThatFailsThrowsTheLibrarysWords) {
  for (const auto &[status, digits] : kFailures) {
    Script().On(Match(Op::Create), Bang(status));
    EXPECT_TRUE(Throws<unknown_error>(LibraryText("GRB_Create", digits),
                                      "GenICam::Client::CGrbBaseHandle::CGrbBaseHandle",
                                      [] { const CTestHandle handle; }));
  }
  EXPECT_EQ(Script().Count(Match(Op::Destroy)), 0U);
}

// Nobody looks at the status, and nothing leaves the destructor.
TEST_F(GrbBaseHandle, DestructionThatFailsIsNoFailure) {
  for (const auto &[status, digits] : kFailures) {
    SCOPED_TRACE(digits);
    auto handle = std::make_unique<CTestHandle>();
    const std::string h = "h" + std::to_string(handle->GetHandle());
    Script().On(Match(Op::Destroy), Bang(status).KeepEffect());
    const size_t mark = Script().Mark();
    EXPECT_NO_THROW(handle.reset());
    EXPECT_EQ(Script().Trace(mark), (Lines{"Close(" + h + ")", "Destroy(" + h + ") = 0x" + digits}));
  }
}

TEST_F(GrbBaseHandle, QuietHandleOnlyRecords) {
  CTestHandle handle(true);
  Script().On(Match(Op::ParameterGet), Bang());
  uint32_t value = 0;
  EXPECT_TRUE(Throws<unknown_error>(LibraryText("GRB_ParameterGet"), nullptr,
                                    [&] { handle.ParameterGet(GRB_REV_SW, &value); }));
  EXPECT_EQ(Script().Count(Match(Op::ErrHandlerDefault)), 0U);
}

TEST_F(GrbBaseHandle, LoudHandleTellsTheLibrarysHandlerToo) {
  CTestHandle handle(false);
  Script().On(Match(Op::ParameterGet), Bang());
  uint32_t value = 0;
  EXPECT_TRUE(Throws<unknown_error>(LibraryText("GRB_ParameterGet"), nullptr,
                                    [&] { handle.ParameterGet(GRB_REV_SW, &value); }));
  EXPECT_EQ(Script().Trace(Match(Op::ErrHandlerDefault)),
            (Lines{"ErrHandlerDefault(\"GRB_ParameterGet\", 0x8123, \"Bang.\")"}));
}

TEST_F(GrbBaseHandle, ParametersAreHandedThrough) {
  CTestHandle handle;
  uint32_t value = 0x1234;
  size_t mark = Script().Mark();
  handle.ParameterSet(GRB_LUT_SHIFT, &value);
  ASSERT_EQ(Script().Calls(mark).size(), 1U);
  EXPECT_EQ(Script().Calls(mark)[0].argument, &value);
  uint32_t read = 0;
  mark = Script().Mark();
  handle.ParameterGet(GRB_LUT_SHIFT, &read);
  EXPECT_EQ(read, 0x1234U);
  EXPECT_EQ(Script().Calls(mark)[0].argument, &read);
}

TEST_F(GrbBaseHandle, FlushHasNoValue) {
  CTestHandle handle;
  const size_t mark = Script().Mark();
  handle.FlushParameters();
  EXPECT_EQ(Script().Trace(mark),
            (Lines{"ParameterSet(h" + std::to_string(handle.GetHandle()) + ", GRB_CACHE_FLUSH, null)"}));
}

// Every status but success, the two warnings included.
TEST_F(GrbBaseHandle, EveryStatusOfAParameterIsAFailure) {
  CTestHandle handle;
  uint32_t value = 0;
  const struct {
    GRB_STATUS status;
    const char *digits;
  } kRows[] = {{GRB_WARNING_TIMEOUT, "8000"}, {GRB_WARNING_PASSED, "8005"}, {1, "1"}, {0xFFFFFFFF, "ffffffff"}};
  for (const auto &row : kRows) {
    Script().On(Match(Op::ParameterSet), Bang(row.status));
    EXPECT_TRUE(Throws<unknown_error>(LibraryText("GRB_ParameterSet", row.digits),
                                      "GenICam::Client::CGrbBaseHandle::ParameterSet",
                                      [&] { handle.ParameterSet(GRB_LUT_SHIFT, &value); }));
    Script().On(Match(Op::ParameterGet), Bang(row.status));
    EXPECT_TRUE(Throws<unknown_error>(LibraryText("GRB_ParameterGet", row.digits),
                                      "GenICam::Client::CGrbBaseHandle::ParameterGet",
                                      [&] { handle.ParameterGet(GRB_LUT_SHIFT, &value); }));
    Script().On(Match(Op::ParameterSet), Bang(row.status));
    EXPECT_TRUE(Throws<unknown_error>(LibraryText("GRB_ParameterSet", row.digits),
                                      "GenICam::Client::CGrbBaseHandle::FlushParameters",
                                      [&] { handle.FlushParameters(); }));
  }
}

// Registers of the grabber --------------------------------------------------------------------------------------------

TEST_F(GrbBaseHandle, GrabberReadIsOneTransferOfFourBytes) {
  CTestHandle handle;
  Script().WriteGrabberU32(kBoard, kChannel, kRegister, 0x01020304);
  const size_t mark = Script().Mark();
  uint32_t value = 0;
  handle.GrabberRead(&value, kRegister, 123);
  EXPECT_EQ(value, 0x01020304U);
  EXPECT_EQ(Script().Trace(mark),
            (Lines{"ControlRead(h" + std::to_string(handle.GetHandle()) + ", GRB_PORT_GRABBER, 0xabcd, 4, 123)"}));
  EXPECT_EQ(Script().Calls(mark)[0].argument, &value);
}

TEST_F(GrbBaseHandle, GrabberWriteIsOneTransferOfFourBytes) {
  CTestHandle handle;
  const size_t mark = Script().Mark();
  handle.GrabberWrite(0x01020304, kRegister, 123);
  EXPECT_EQ(Script().ReadGrabberU32(kBoard, kChannel, kRegister), 0x01020304U);
  ASSERT_EQ(Script().Calls(mark).size(), 1U);
  EXPECT_EQ(Script().Calls(mark)[0].op, Op::ControlWrite);
  EXPECT_EQ(Script().Calls(mark)[0].code, GRB_PORT_GRABBER);
  EXPECT_EQ(Script().Calls(mark)[0].size, 4U);
  EXPECT_EQ(Script().Calls(mark)[0].timeout, 123U);
}

// The words of the library are not in these messages.
TEST_F(GrbBaseHandle, TimeoutsOfTheGrabber) {
  CTestHandle handle;
  uint32_t value = 0;
  Script().On(Match(Op::ControlRead), Bang(GRB_WARNING_TIMEOUT).Moved(3));
  EXPECT_TRUE(Throws<timeout_error>(
      "Timeout while reading register 0xabcd in grabber, 3 bytes read, timeout value was 123.",
      "GenICam::Client::CGrbBaseHandle::GrabberRead", [&] { handle.GrabberRead(&value, kRegister, 123); }));
  Script().On(Match(Op::ControlWrite), Bang(GRB_WARNING_TIMEOUT).Moved(0));
  EXPECT_TRUE(Throws<timeout_error>(
      "Timeout while writing register 0xabcd in grabber, 0 bytes written, timeout value was 4294967294.",
      "GenICam::Client::CGrbBaseHandle::GrabberWrite", [&] { handle.GrabberWrite(1, kRegister, GRB_TIMEOUT_CXP11); }));
}

// Passed is no success here.
TEST_F(GrbBaseHandle, ErrorsOfTheGrabber) {
  CTestHandle handle;
  uint32_t value = 0;
  for (const GRB_STATUS status : {GRB_WARNING_PASSED, 1U, 0x8001U, 0xFFFFFFFFU}) {
    Script().On(Match(Op::ControlRead), Bang(status).Moved(2));
    EXPECT_TRUE(Throws<io_error>("Error while reading register 0x0 in grabber, 2 bytes read.", nullptr,
                                 [&] { handle.GrabberRead(&value, 0, 123); }));
    Script().On(Match(Op::ControlWrite), Bang(status).Moved(4));
    EXPECT_TRUE(Throws<io_error>("Error while writing register 0xffffffff in grabber, 4 bytes written.", nullptr,
                                 [&] { handle.GrabberWrite(1, 0xFFFFFFFF, 123); }));
  }
}

TEST_F(GrbBaseHandle, ShortTransferOfTheGrabberIsNoFailure) {
  CTestHandle handle;
  uint32_t value = 0;
  Script().On(Match(Op::ControlRead), Reply::Status(GRB_OK).Moved(0));
  EXPECT_NO_THROW(handle.GrabberRead(&value, kRegister, 1));
  Script().On(Match(Op::ControlWrite), Reply::Status(GRB_OK).Moved(0));
  EXPECT_NO_THROW(handle.GrabberWrite(1, kRegister, 1));
}

// Recreation ----------------------------------------------------------------------------------------------------------

TEST_F(GrbBaseHandle, RecreationDestroysThenCreatesWithTheSameHook) {
  for (const bool quiet : {true, false}) {
    CTestHandle handle(quiet);
    const GRB_HANDLE before = handle.GetHandle();
    size_t mark = Script().Mark();
    handle.RecreateHandle();
    EXPECT_NE(handle.GetHandle(), before);
    EXPECT_EQ(Script().Trace(mark), (Lines{"Destroy(h" + std::to_string(before) + ")",
                                           "Create() -> h" + std::to_string(handle.GetHandle())}));
    mark = Script().Mark();
    uint32_t value = 0;
    EXPECT_THROW(handle.ParameterGet(GRB_REV_SW, &value), unknown_error);
    EXPECT_EQ(Script().Count(Match(Op::ErrHandlerDefault), mark), quiet ? 0U : 1U);
  }
}

TEST_F(GrbBaseHandle, RecreationThatFailsKeepsWhatTheLibraryLeft) {
  auto handle = std::make_unique<CTestHandle>();
  Script().On(Match(Op::Create), Bang().HandleOut(77));
  EXPECT_TRUE(Throws<unknown_error>(LibraryText("GRB_Create"), "GenICam::Client::CGrbBaseHandle::RecreateHandle",
                                    [&] { handle->RecreateHandle(); }));
  EXPECT_EQ(handle->GetHandle(), 77U);
}

// The status of GRB_Destroy is not looked at: a new handle is made all the same.
TEST_F(GrbBaseHandle, RecreationPassesOverAFailingDestruction) {
  CTestHandle handle;
  const std::string before = "h" + std::to_string(handle.GetHandle());
  Script().On(Match(Op::Destroy), Bang().KeepEffect());
  const size_t mark = Script().Mark();
  EXPECT_NO_THROW(handle.RecreateHandle());
  EXPECT_EQ(Script().Trace(mark),
            (Lines{"Destroy(" + before + ") = 0x8123", "Create() -> h" + std::to_string(handle.GetHandle())}));
}

TEST_F(GrbBaseHandle, RecreationTakesAWarningForAFailure) {
  auto handle = std::make_unique<CTestHandle>();
  Script().On(Match(Op::Create), Bang(GRB_WARNING_PASSED).HandleOut(0));
  EXPECT_TRUE(Throws<unknown_error>(LibraryText("GRB_Create", "8005"),
                                    "GenICam::Client::CGrbBaseHandle::RecreateHandle",
                                    [&] { handle->RecreateHandle(); }));
}

TEST_F(GrbBaseHandle, RecreationThatFailedMayLeaveNoHandle) {
  auto handle = std::make_unique<CTestHandle>();
  Script().On(Match(Op::Create), Bang().HandleOut(0));
  EXPECT_THROW(handle->RecreateHandle(), unknown_error);
  const size_t mark = Script().Mark();
  handle.reset();
  // Without a handle there is nothing to close or to destroy.
  EXPECT_EQ(Script().Trace(mark), Lines());
}

// Lock ----------------------------------------------------------------------------------------------------------------

TEST_F(GrbBaseHandle, OperationsHoldTheLockThroughTheCall) {
  CTestHandle handle;
  uint32_t value = 0;
  const struct {
    const char *what;
    Match match;
    std::function<void()> action;
  } kRows[] = {
      {"get", Match(Op::ParameterGet), [&] { handle.ParameterGet(GRB_REV_SW, &value); }},
      {"set", Match(Op::ParameterSet), [&] { handle.ParameterSet(GRB_LUT_SHIFT, &value); }},
      {"flush", Match(Op::ParameterSet), [&] { handle.FlushParameters(); }},
      {"read", Match(Op::ControlRead), [&] { handle.GrabberRead(&value, 0, 1); }},
      {"write", Match(Op::ControlWrite), [&] { handle.GrabberWrite(0, 0, 1); }},
      {"destroy", Match(Op::Destroy), [&] { handle.RecreateHandle(); }},
      {"create", Match(Op::Create), [&] { handle.RecreateHandle(); }},
  };
  for (const auto &row : kRows) {
    SCOPED_TRACE(row.what);
    bool free = true;
    Script().On(row.match, Reply::Pass().Do([&](const Call &) { free = IsFree(handle.Lock()); }));
    try {
      row.action();
    } catch (const unknown_error &) {  // the handle is not open any more behind a recreation
    }
    EXPECT_FALSE(free);
    EXPECT_TRUE(IsFree(handle.Lock()));
  }
}

TEST_F(GrbBaseHandle, FailureReleasesTheLock) {
  CTestHandle handle;
  uint32_t value = 0;
  Script().On(Match(Op::ParameterGet), Bang());
  EXPECT_THROW(handle.ParameterGet(GRB_REV_SW, &value), unknown_error);
  EXPECT_TRUE(IsFree(handle.Lock()));
}

// The lock may be taken again on its own thread, and it is the handle's own.
TEST_F(GrbBaseHandle, LockIsRecursiveAndPerHandle) {
  CTestHandle handle;
  CTestHandle other;
  uint32_t value = 0;
  bool free = false;
  Script().On(Match(Op::ParameterGet), Reply::Pass().Do([&](const Call &) {
    uint32_t inner = 0;
    handle.ParameterGet(GRB_LUT_SHIFT, &inner);
    free = IsFree(other.Lock());
  }));
  handle.ParameterGet(GRB_REV_SW, &value);
  EXPECT_TRUE(free);
}

// Two handles fail at one moment on two threads: each thread has the words of its own failure.
TEST_F(GrbBaseHandle, WordsOfTwoHandlesDoNotMix) {
  CTestHandle first;
  CTestHandle second;
  std::atomic<int> inside{0};
  const auto meet = [&inside](const Call &) {
    ++inside;
    EXPECT_TRUE(Script().WaitFor([&inside] { return inside.load() >= 2; }));
  };
  Script().On(Match(Op::ParameterGet).Handle(first.GetHandle()), Reply::Failure(1, "First.").Do(meet));
  Script().On(Match(Op::ParameterGet).Handle(second.GetHandle()), Reply::Failure(2, "Second.").Do(meet));
  uint32_t value = 0;
  std::thread other([&second] {
    uint32_t inner = 0;
    EXPECT_TRUE(Throws<unknown_error>("Second. (GRB_ParameterGet returned error code 0x2)", nullptr,
                                      [&] { second.ParameterGet(GRB_REV_SW, &inner); }));
  });
  EXPECT_TRUE(Throws<unknown_error>("First. (GRB_ParameterGet returned error code 0x1)", nullptr,
                                    [&] { first.ParameterGet(GRB_REV_SW, &value); }));
  other.join();
}

TEST_F(GrbBaseHandle, RawHandleIsGivenWithoutTheLock) {
  CTestHandle handle;
  const boost::unique_lock<boost::recursive_mutex> held(handle.Lock());
  const GRB_HANDLE seen = std::async(std::launch::async, [&handle] { return handle.GetHandle(); }).get();
  EXPECT_EQ(seen, handle.GetHandle());
}

}  // namespace
}  // namespace GrabberTests
