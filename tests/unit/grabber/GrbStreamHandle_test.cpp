// SPDX-License-Identifier: MIT
// The stream handle: the trial open, and the reload of a configuration file.
#include "GrbStreamHandle.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>
#include <random>
#include <string>
#include <thread>

#include "GrabberFixture.h"

namespace GrabberTests {
namespace {

/// Shows the lock.
class CTestStream : public CGrbStreamHandle {
 public:
  using CGrbStreamHandle::CGrbStreamHandle;
  boost::recursive_mutex &Lock() { return m_Lock; }
};

class GrbStreamHandle : public GrabberTest {
 protected:
  void SetUp() override {
    GrabberTest::SetUp();
    const auto *const info = testing::UnitTest::GetInstance()->current_test_info();
    m_strFile = testing::TempDir() + "lumivex-" + info->name() + std::to_string(std::random_device{}()) + ".gcf";
    std::ofstream(m_strFile) << "[gcf]\n";
  }
  void TearDown() override {
    std::remove(m_strFile.c_str());
    GrabberTest::TearDown();
  }
  std::string m_strFile;
};

TEST_F(GrbStreamHandle, HoldsTheChannelWhileItLives) {
  {
    const CGrbStreamHandle first(kBoard, kChannel, true);
    EXPECT_TRUE(first.IsValid());
    const CGrbStreamHandle second(kBoard, kChannel, true);
    EXPECT_FALSE(second.IsValid());
    const CGrbStreamHandle other(kBoard, GRB_CHANNEL_2, true);
    EXPECT_TRUE(other.IsValid());
  }
  EXPECT_TRUE(CGrbStreamHandle(kBoard, kChannel, true).IsValid());
}

TEST_F(GrbStreamHandle, OpenSequenceStopsAtTheFirstFailure) {
  const struct {
    Match match;
    size_t calls;
  } kRows[] = {{Match(Op::ParameterSet, GRB_OPEN_BOARD), 1},
               {Match(Op::ParameterSet, GRB_OPEN_CHANNEL), 2},
               {Match(Op::ParameterSet, GRB_OPEN_MODE), 3},
               {Match(Op::ParameterSet, GRB_OPEN_VARIANT), 4},
               {Match(Op::Open), 5}};
  for (const auto &row : kRows) {
    Script().On(row.match, Bang(GRB_WARNING_PASSED));
    const size_t mark = Script().Mark();
    {
      const CGrbStreamHandle stream(kBoard, kChannel, true);
      EXPECT_FALSE(stream.IsValid());
    }
    // GRB_Create ahead, GRB_Close and GRB_Destroy behind.
    EXPECT_EQ(Script().Calls(mark).size(), row.calls + 3);
  }
}

TEST_F(GrbStreamHandle, CreationThatFailsThrows) {
  Script().On(Match(Op::Create), Bang());
  EXPECT_TRUE(Throws<unknown_error>(LibraryText("GRB_Create"), nullptr,
                                    [] { const CGrbStreamHandle stream(kBoard, kChannel, true); }));
}

TEST_F(GrbStreamHandle, LoadOfANullPathThrows) {
  CGrbStreamHandle stream(kBoard, kChannel, true);
  const size_t mark = Script().Mark();
  EXPECT_TRUE(Throws<unknown_error>("Null pointer for GCF file.", "GenICam::Client::CGrbStreamHandle::LoadGcf",
                                    [&] { stream.LoadGcf(nullptr); }));
  EXPECT_EQ(Script().Trace(mark), Lines());
}

TEST_F(GrbStreamHandle, LoadOfAMissingFileThrowsTheNameAsGiven) {
  CGrbStreamHandle stream(kBoard, kChannel, true);
  const size_t mark = Script().Mark();
  for (const std::string &name : {std::string("/none/a.gcf"), std::string("\"/none/a.gcf\""), std::string()}) {
    EXPECT_TRUE(Throws<invalidparameter_error>("Configuration file specified does not exist: " + name,
                                               "GenICam::Client::CGrbStreamHandle::LoadGcf",
                                               [&] { stream.LoadGcf(name.c_str()); }));
  }
  EXPECT_EQ(Script().Trace(mark), Lines());
}

TEST_F(GrbStreamHandle, LoadPassesThePathWithoutQuotes) {
  CGrbStreamHandle stream(kBoard, kChannel, true);
  const size_t mark = Script().Mark();
  stream.LoadGcf(("\"" + m_strFile + "\"").c_str());
  EXPECT_TRUE(stream.IsValid());
  EXPECT_EQ(Script().Calls(Match(Op::ParameterSet, GRB_OPEN_CONFIG_FILE), mark)[0].text, m_strFile);
  EXPECT_EQ(Script().Calls(mark)[0].op, Op::Close);
  EXPECT_EQ(Script().Calls(mark).size(), 7U);
}

TEST_F(GrbStreamHandle, FailedLoadReopensAndReports) {
  CGrbStreamHandle stream(GRB_BOARD_1, GRB_CHANNEL_2, true);
  const GRB_HANDLE before = stream.GetHandle();
  Script().On(Match(Op::Open), Bang());
  EXPECT_TRUE(Throws<unknown_error>(
      "Failed loading GCF file (BoardNumber = c0010001 , ChannelNumber = c0010020): " + LibraryText("GRB_Open"),
      "GenICam::Client::CGrbStreamHandle::LoadGcf", [&] { stream.LoadGcf(m_strFile.c_str()); }));
  EXPECT_NE(stream.GetHandle(), before);
  EXPECT_TRUE(stream.IsValid());
  EXPECT_EQ(Script().OpenHandle(GRB_BOARD_1, GRB_CHANNEL_2, GRB_MODE_ACQ_ONLY), stream.GetHandle());
  uint32_t value = 7;
  EXPECT_NO_THROW(stream.ParameterSet(GRB_LUT_SHIFT, &value));
}

// Whether the object is valid was decided when it was made.
TEST_F(GrbStreamHandle, LoadWhoseReopeningFailsTooLeavesItValid) {
  CGrbStreamHandle stream(kBoard, kChannel, true);
  Script().On(Match(Op::Open), Reply::Failure(1, "First."), When::Nth(1));
  Script().On(Match(Op::Open), Reply::Failure(2, "Second."), When::Nth(2));
  EXPECT_THROW(stream.LoadGcf(m_strFile.c_str()), unknown_error);
  EXPECT_EQ(Script().OpenHandles(), 0U);
  EXPECT_TRUE(stream.IsValid());
}

TEST_F(GrbStreamHandle, LoadDoesNotMakeAnInvalidHandleValid) {
  Script().SetHeldElsewhere(kBoard, kChannel, true);
  CGrbStreamHandle stream(kBoard, kChannel, true);
  EXPECT_FALSE(stream.IsValid());
  Script().SetHeldElsewhere(kBoard, kChannel, false);
  EXPECT_NO_THROW(stream.LoadGcf(m_strFile.c_str()));
  EXPECT_FALSE(stream.IsValid());
}

TEST_F(GrbStreamHandle, FailuresOfItsEndAreNone) {
  auto stream = std::make_unique<CGrbStreamHandle>(kBoard, kChannel, true);
  const std::string h = "h" + std::to_string(stream->GetHandle());
  Script().On(Match(Op::Close), Bang());
  Script().On(Match(Op::Destroy), Bang().KeepEffect());
  const size_t mark = Script().Mark();
  EXPECT_NO_THROW(stream.reset());
  EXPECT_EQ(Script().Trace(mark), (Lines{"Close(" + h + ") = 0x8123", "Destroy(" + h + ") = 0x8123"}));
}

TEST_F(GrbStreamHandle, RecreationThatFailsEndsTheLoadWithItsWords) {
  CGrbStreamHandle stream(kBoard, kChannel, true);
  Script().On(Match(Op::Open), Reply::Failure(1, "First."));
  Script().On(Match(Op::Create), Bang());
  EXPECT_TRUE(Throws<unknown_error>(LibraryText("GRB_Create"), "GenICam::Client::CGrbBaseHandle::RecreateHandle",
                                    [&] { stream.LoadGcf(m_strFile.c_str()); }));
}

// From the close to the end of the reopening; not while the file is looked for.
TEST_F(GrbStreamHandle, LoadHoldsTheLock) {
  CTestStream stream(kBoard, kChannel, true);
  for (const Match &match : {Match(Op::Close), Match(Op::ParameterSet, GRB_OPEN_CONFIG_FILE), Match(Op::Open)}) {
    bool free = true;
    Script().On(match, Reply::Pass().Do([&](const Call &) { free = IsFree(stream.Lock()); }));
    stream.LoadGcf(m_strFile.c_str());
    EXPECT_FALSE(free);
  }
  bool free = true;
  Script().On(Match(Op::Open), Reply::Pass().Do([&](const Call &) { free = IsFree(stream.Lock()); }));
  Script().On(Match(Op::Open), Bang());  // made last, so it takes the first call
  EXPECT_THROW(stream.LoadGcf(m_strFile.c_str()), unknown_error);
  EXPECT_FALSE(free);
  EXPECT_TRUE(IsFree(stream.Lock()));
}

TEST_F(GrbStreamHandle, FailedOpenKeepsItsWordsToItsThread) {
  Script().SetHeldElsewhere(kBoard, kChannel, true);
  std::thread([] { const CGrbStreamHandle stream(kBoard, kChannel, true); }).join();
  EXPECT_EQ(Words(), "");
  const CGrbStreamHandle stream(kBoard, kChannel, true);
  EXPECT_EQ(Words(), "The channel is in use. (GRB_Open returned error code 0x9004)");
}

using GrbStreamHandleDeathTest = GrabberTest;

TEST_F(GrbStreamHandleDeathTest, NoHandleInSpiteOfSuccessIsAnAssertion) {
  Script().On(Match(Op::Create), Reply::Status(GRB_OK).HandleOut(0), When::Every());
  EXPECT_DEATH(CGrbStreamHandle(kBoard, kChannel, true), "m_hGrbChannel != 0");
}

}  // namespace
}  // namespace GrabberTests
