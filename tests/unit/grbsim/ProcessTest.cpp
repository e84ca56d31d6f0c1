// SPDX-License-Identifier: MIT
// The claim on a channel must reach beyond the process: a second one is to find the camera busy.
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "Grabber.h"

namespace {

/// This program in another process, holding channel 1 until it is told to end or killed.
class CHolder {
 public:
  CHolder() {
    int input[2];
    int output[2];
    EXPECT_EQ(pipe(input), 0);
    EXPECT_EQ(pipe(output), 0);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, input[0], STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&actions, output[1], STDOUT_FILENO);
    for (const int file : {input[0], input[1], output[0], output[1]}) {
      posix_spawn_file_actions_addclose(&actions, file);
    }
    char program[] = "/proc/self/exe";
    char option[] = "--hold-channel-1";
    char *arguments[] = {program, option, nullptr};
    EXPECT_EQ(posix_spawn(&m_Process, program, &actions, nullptr, arguments, environ), 0);
    posix_spawn_file_actions_destroy(&actions);
    close(input[0]);
    close(output[1]);
    m_iInput = input[1];
    m_iOutput = output[0];
  }
  ~CHolder() { End(0); }

  /// 'o' once the other process has opened the channel, 'b' if it was refused.
  char Answer() {
    char answer = 0;
    EXPECT_EQ(read(m_iOutput, &answer, 1), 1);
    return answer;
  }

  /// Ends the process, by a signal or, with 0, by the end of its input.
  void End(int signalNumber) {
    if (m_Process == 0) {
      return;
    }
    if (signalNumber != 0) {
      kill(m_Process, signalNumber);
    }
    close(m_iInput);
    close(m_iOutput);
    waitpid(m_Process, nullptr, 0);
    m_Process = 0;
  }

 private:
  pid_t m_Process = 0;
  int m_iInput = -1;
  int m_iOutput = -1;
};

TEST(Process, SecondProcessFindsTheChannelBusy) {
  CGrabber grabber(GRB_MODE_ACQ_ONLY, GRB_CHANNEL_1);
  ASSERT_EQ(grabber.OpenStatus(), GRB_OK);
  EXPECT_EQ(CHolder().Answer(), 'b');
  EXPECT_EQ(grabber.Close(), GRB_OK);
  EXPECT_EQ(CHolder().Answer(), 'o');
}

TEST(Process, ChannelHeldElsewhereIsBusyHereAndItsCameraStillAnswers) {
  CHolder holder;
  ASSERT_EQ(holder.Answer(), 'o');
  CGrabber grabber;
  ClearHook();
  EXPECT_NE(grabber.Open(GRB_MODE_ACQ_ONLY, GRB_CHANNEL_1), GRB_OK);
  EXPECT_EQ(LastHook().text, "Board 1 channel 1 is open for acquisition in another process.");
  CGrabber control(GRB_MODE_CONTROL, GRB_CHANNEL_1);
  EXPECT_EQ(control.ReadWord(4), 0x00010000U);
  CGrabber neighbour(GRB_MODE_ACQ_ONLY, GRB_CHANNEL_2);
  EXPECT_EQ(neighbour.OpenStatus(), GRB_OK);
  holder.End(0);
  EXPECT_EQ(grabber.Open(GRB_MODE_ACQ_ONLY, GRB_CHANNEL_1), GRB_OK);
}

TEST(Process, DeathOfTheHolderFreesTheChannel) {
  CHolder holder;
  ASSERT_EQ(holder.Answer(), 'o');
  holder.End(SIGKILL);
  CGrabber grabber(GRB_MODE_ACQ_ONLY, GRB_CHANNEL_1);
  EXPECT_EQ(grabber.OpenStatus(), GRB_OK);
}

}  // namespace
