// SPDX-License-Identifier: MIT
#include <chrono>

#include <gtest/gtest.h>

#include "Grabber.h"

namespace {

constexpr uint32_t kAcquisitionMode = 0x600C;
constexpr uint32_t kAcquisitionStart = 0x6010;
constexpr uint32_t kAcquisitionStop = 0x6014;
constexpr uint32_t kAcquisitionFrameCount = 0x6034;
constexpr uint32_t kConnectionReset = 0x4000;

class Trigger : public testing::Test {
 protected:
  Trigger() : m_Grabber(GRB_MODE_ACQ_ONLY, GRB_CHANNEL_1), m_Camera(GRB_MODE_CONTROL, GRB_CHANNEL_1) {
    UseSmallImage(m_Grabber);
  }
  ~Trigger() override { EXPECT_EQ(m_Camera.WriteWord(kConnectionReset, 1), GRB_OK); }

  // A stream that waits: one that does not would have sent more than asked by the time of the last callback.
  void ExpectNoMoreThan(CRun &run, size_t frames) {
    StopCleanly(run);
    EXPECT_EQ(run.Count(GRB_EVENT_BUFFER_READY), frames);
  }

  CGrabber m_Grabber;
  CGrabber m_Camera;
};

TEST_F(Trigger, EachExposeMakesOneFrame) {
  EXPECT_EQ(m_Grabber.Set(GRB_CAMTRIG_SRC, GRB_CAMTRIG_SRC_SWTRIG_CHX), GRB_OK);
  CRun run(m_Grabber, 8);
  ASSERT_EQ(run.Start(), GRB_OK);
  for (size_t i = 1; i <= 5; ++i) {
    EXPECT_EQ(m_Grabber.Stream(GRB_EXPOSE), GRB_OK);
    ASSERT_TRUE(run.WaitForFrames(i));
  }
  ExpectNoMoreThan(run, 5);
}

TEST_F(Trigger, ExposesThatComeTooFastAreServedOneAfterTheOther) {
  EXPECT_EQ(m_Grabber.Set(GRB_CAMTRIG_SRC, GRB_CAMTRIG_SRC_SWTRIG_CHX), GRB_OK);
  CRun run(m_Grabber, 8);
  ASSERT_EQ(run.Start(), GRB_OK);
  for (int i = 0; i < 6; ++i) {
    EXPECT_EQ(m_Grabber.Stream(GRB_EXPOSE), GRB_OK);
  }
  ASSERT_TRUE(run.WaitForFrames(6));
  ExpectNoMoreThan(run, 6);
}

TEST_F(Trigger, ExposeIsNothingToACameraTriggeredFromOutside) {
  EXPECT_EQ(m_Grabber.Set(GRB_CAMTRIG_SRC, GRB_CAMTRIG_SRC_TTLIN_CHX_0_RISE), GRB_OK);
  CRun run(m_Grabber, 8);
  ASSERT_EQ(run.Start(), GRB_OK);
  EXPECT_EQ(m_Grabber.Stream(GRB_EXPOSE), GRB_OK);
  ExpectNoMoreThan(run, 0);
}

// A trigger that nobody waits for is lost, and not kept for the day when somebody does.
TEST_F(Trigger, ExposeOfAFreeRunningCameraIsNotKept) {
  EXPECT_EQ(m_Camera.WriteWord(kAcquisitionStop, 1), GRB_OK);
  CRun run(m_Grabber, 8);
  ASSERT_EQ(run.Start(), GRB_OK);
  EXPECT_EQ(m_Grabber.Stream(GRB_EXPOSE), GRB_OK);
  EXPECT_EQ(m_Grabber.Set(GRB_CAMTRIG_SRC, GRB_CAMTRIG_SRC_SWTRIG_CHX), GRB_OK);
  EXPECT_EQ(m_Grabber.Flush(), GRB_OK);
  EXPECT_EQ(m_Grabber.Stream(GRB_EXPOSE), GRB_OK);
  EXPECT_EQ(m_Camera.WriteWord(kAcquisitionStart, 1), GRB_OK);
  EXPECT_EQ(m_Grabber.Stream(GRB_EXPOSE), GRB_OK);
  ASSERT_TRUE(run.WaitForFrames(1));
  ExpectNoMoreThan(run, 1);
}

class TimerSource : public Trigger, public testing::WithParamInterface<uint32_t> {};

TEST_P(TimerSource, SoftwareTriggerOfTheTimerMakesItsPulses) {
  EXPECT_EQ(m_Grabber.Set(GRB_CAMTRIG_SRC, GetParam()), GRB_OK);
  EXPECT_EQ(m_Grabber.Set(GRB_TIMERA1_MODE, GRB_TIMERA1_MODE_N_PULSES), GRB_OK);
  EXPECT_EQ(m_Grabber.Set(GRB_TIMERA1_PULSE_COUNT, 3), GRB_OK);
  EXPECT_EQ(m_Grabber.Set64(GRB_TIMERA1_PERIOD_NS, 1000000), GRB_OK);
  CRun run(m_Grabber, 8);
  ASSERT_EQ(run.Start(), GRB_OK);
  EXPECT_EQ(m_Grabber.Set(GRB_TIMERA1_SWTRIG_NOW, 1), GRB_OK);
  ASSERT_TRUE(run.WaitForFrames(3));
  EXPECT_EQ(m_Grabber.Set(GRB_TIMERA1_SWTRIG_NOW, 1), GRB_OK);
  ASSERT_TRUE(run.WaitForFrames(6));
  EXPECT_EQ(m_Grabber.Set(GRB_TIMERA1_SWTRIG_NOW, 0), GRB_OK);
  ExpectNoMoreThan(run, 6);
}

INSTANTIATE_TEST_SUITE_P(Table, TimerSource, testing::Values(GRB_CAMTRIG_SRC_TIMERA1_CHX, GRB_CAMTRIG_SRC_TIMERA1_CH1));

TEST_F(Trigger, TimerOfAnotherChannelMakesFramesHere) {
  CGrabber other(GRB_MODE_ACQ_ONLY, GRB_CHANNEL_2);
  EXPECT_EQ(other.Set(GRB_TIMERA1_MODE, GRB_TIMERA1_MODE_N_PULSES), GRB_OK);
  EXPECT_EQ(other.Set(GRB_TIMERA1_PULSE_COUNT, 2), GRB_OK);
  EXPECT_EQ(other.Flush(), GRB_OK);
  EXPECT_EQ(m_Grabber.Set(GRB_CAMTRIG_SRC, GRB_CAMTRIG_SRC_TIMERA1_CH2), GRB_OK);
  CRun run(m_Grabber, 8);
  ASSERT_EQ(run.Start(), GRB_OK);
  EXPECT_EQ(other.Set(GRB_TIMERA1_SWTRIG_NOW, 1), GRB_OK);
  ASSERT_TRUE(run.WaitForFrames(2));
  ExpectNoMoreThan(run, 2);
}

TEST_F(Trigger, RunningTimerSetsThePeriod) {
  EXPECT_EQ(m_Grabber.Set(GRB_CAMTRIG_SRC, GRB_CAMTRIG_SRC_TIMERA1_CHX), GRB_OK);
  EXPECT_EQ(m_Grabber.Set64(GRB_TIMERA1_PERIOD_NS, 20000000), GRB_OK);
  CRun run(m_Grabber, 8);
  const auto begin = std::chrono::steady_clock::now();
  ASSERT_EQ(run.Start(), GRB_OK);
  ASSERT_TRUE(run.WaitForFrames(4));
  EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(60));
}

TEST_F(Trigger, NewSourceTakesEffectWithTheFlushDuringARun) {
  EXPECT_EQ(m_Grabber.Set(GRB_CAMTRIG_SRC, GRB_CAMTRIG_SRC_SWTRIG_CHX), GRB_OK);
  CRun run(m_Grabber, 8);
  ASSERT_EQ(run.Start(), GRB_OK);
  EXPECT_EQ(m_Grabber.Set(GRB_CAMTRIG_SRC, GRB_CAMTRIG_SRC_NONE), GRB_OK);
  EXPECT_EQ(run.Count(GRB_EVENT_BUFFER_READY), 0U);
  EXPECT_EQ(m_Grabber.Flush(), GRB_OK);
  ASSERT_TRUE(run.WaitForFrames(3)) << "a waiting engine has to wake up";
}

TEST_F(Trigger, LinkLimitsTheFrameRate) {
  // 64 x 8 pixels take far less than 1/500 s, 4000 x 312 RGB pixels take 30 ms on one link of the lowest speed.
  EXPECT_EQ(m_Grabber.Set(GRB_CXP_BITRATE_MODE_NOW, GRB_CXP_BITRATE_MODE_CXP1), GRB_OK);
  EXPECT_EQ(m_Grabber.Set(GRB_CXP_DISCOVERY_MODE_NOW, GRB_CXP_DISCOVERY_1X), GRB_OK);
  UseSmallImage(m_Grabber, 4000, 312, GRB_USR_FORMAT_RGB8);
  CRun run(m_Grabber, 4);
  const auto begin = std::chrono::steady_clock::now();
  ASSERT_EQ(run.Start(), GRB_OK);
  ASSERT_TRUE(run.WaitForFrames(3));
  EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(60));
}

TEST_F(Trigger, CameraStopsAndStartsItsFrames) {
  EXPECT_EQ(m_Camera.WriteWord(kAcquisitionStop, 1), GRB_OK);
  CRun run(m_Grabber, 8);
  ASSERT_EQ(run.Start(), GRB_OK);
  EXPECT_EQ(m_Camera.WriteWord(kAcquisitionMode, 2), GRB_OK);
  EXPECT_EQ(m_Camera.WriteWord(kAcquisitionFrameCount, 3), GRB_OK);
  EXPECT_EQ(m_Camera.WriteWord(kAcquisitionStart, 1), GRB_OK);
  ASSERT_TRUE(run.WaitForFrames(3));
  EXPECT_EQ(m_Camera.WriteWord(kAcquisitionMode, 1), GRB_OK);
  EXPECT_EQ(m_Camera.WriteWord(kAcquisitionStart, 1), GRB_OK);
  ASSERT_TRUE(run.WaitForFrames(4));
  ExpectNoMoreThan(run, 4);
}

}  // namespace
