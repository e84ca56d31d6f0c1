// SPDX-License-Identifier: MIT
/// \file
/// lumivex, run as a user runs it, with the Producer and the simulated frame-grabber library beneath it.

#include <csignal>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "ExitCodes.h"
#include "ReadPng.h"
#include "RunProgram.h"
#include "TemporaryFolder.h"

namespace {

using Lumivex::Consumer::ExitCode;

ProgramEnd RunWithSimulation(const CTemporaryFolder &folder, std::vector<std::string> arguments, int signal = 0) {
  arguments.insert(arguments.begin() + 1, {"--cti", SIMULATED_PRODUCER});
  ProgramStart start;
  start.arguments = arguments;
  start.folder = folder.Path();
  start.signalAfterOutput = signal;
  return RunLumivex(start);
}

/// Numbers of the cameras that the list shows as free.
std::vector<std::string> FreeCameras(const std::string &list) {
  std::vector<std::string> numbers;
  for (const std::string &line : Lines(list)) {
    if (line.find("  read/write  ") != std::string::npos) {
      numbers.push_back(line.substr(4, line.find(' ', 4) - 4));
    }
  }
  return numbers;
}

TEST(LumivexWithSimulation, ListShowsTwoFreeCameras) {
  const CTemporaryFolder folder;
  const ProgramEnd end = RunWithSimulation(folder, {"list"});
  EXPECT_EQ(end.exitCode, 0) << end.errors;
  EXPECT_EQ(end.output.find("Producer Lumivex GenTL "), 0U) << end.output;
  EXPECT_GE(FreeCameras(end.output).size(), 2U) << end.output;
}

// A still picture, or one that is all of one grey, would mean that no frame came through.
TEST(LumivexWithSimulation, GrabWritesMovingPictures) {
  const CTemporaryFolder folder;
  const ProgramEnd end = RunWithSimulation(folder, {"grab", "--count", "3"});
  ASSERT_EQ(end.exitCode, 0) << end.errors;
  EXPECT_EQ(end.output, "frame-001.png\nframe-002.png\nframe-003.png\n");
  const PngFile first = ReadPng(folder.File("frame-001.png"));
  const PngFile last = ReadPng(folder.File("frame-003.png"));
  EXPECT_GT(first.width, 1U);
  EXPECT_GT(first.height, 1U);
  ASSERT_FALSE(first.samples.empty());
  EXPECT_NE(first.samples, std::vector<unsigned>(first.samples.size(), first.samples.front()));
  EXPECT_NE(first.samples, last.samples);
}

TEST(LumivexWithSimulation, GrabsFromEachCamera) {
  const CTemporaryFolder folder;
  for (const std::string &number : FreeCameras(RunWithSimulation(folder, {"list"}).output)) {
    const std::string file = "camera-" + number + ".png";
    const ProgramEnd end = RunWithSimulation(folder, {"grab", "--output", file, number});
    EXPECT_EQ(end.exitCode, 0) << end.errors;
    EXPECT_NE(ReadPng(folder.File(file)).bitDepth, 0U) << file;
  }
}

TEST(LumivexWithSimulation, UnknownDevice) {
  const CTemporaryFolder folder;
  const ProgramEnd end = RunWithSimulation(folder, {"grab", "Channel #99"});
  EXPECT_EQ(end.exitCode, static_cast<int>(ExitCode::NoDevice));
  EXPECT_EQ(end.errors, "lumivex: no camera 'Channel #99' found; 'lumivex list' shows those that are there\n");
  EXPECT_TRUE(folder.Names().empty());
}

TEST(LumivexWithSimulation, InterruptEndsInOrder) {
  const CTemporaryFolder folder;
  const ProgramEnd end = RunWithSimulation(folder, {"grab", "--count", "1000000", "--output", "f%d.png"}, SIGINT);
  EXPECT_EQ(end.exitCode, static_cast<int>(ExitCode::Interrupted)) << end.errors;
  for (const std::string &name : folder.Names()) {
    EXPECT_NE(ReadPng(folder.File(name)).bitDepth, 0U) << name;
  }
}

}  // namespace
