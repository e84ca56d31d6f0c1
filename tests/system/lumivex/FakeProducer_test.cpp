// SPDX-License-Identifier: MIT
/// \file
/// lumivex, run as a user runs it, with the fake Producer: the faults, and the order of the calls.

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <unistd.h>
#include <vector>

#include <gtest/gtest.h>

#include "ExitCodes.h"
#include "ReadPng.h"
#include "RunProgram.h"
#include "TemporaryFolder.h"

namespace {

using Lumivex::Consumer::ExitCode;
using Names = std::vector<std::string>;

/// Runs `lumivex ...` in a folder of its own, with the fake Producer told what to do.
class LumivexWithFake : public testing::Test {
 protected:
  ProgramEnd RunWithFake(const std::vector<std::string> &arguments, const std::string &words = "", int signal = 0) {
    ProgramStart start;
    start.arguments = arguments;
    start.folder = m_Folder.Path();
    start.environment = {{"GENICAM_GENTL64_PATH", std::filesystem::path(FAKE_PRODUCER).parent_path().string()},
                         {"FAKE_PRODUCER", words},
                         {"FAKE_PRODUCER_LOG", m_LogFolder.File("log")}};
    start.signalAfterOutput = signal;
    return RunLumivex(start);
  }

  Names Calls() const {
    std::ostringstream text;
    text << std::ifstream(m_LogFolder.File("log")).rdbuf();
    return Lines(text.str());
  }

  CTemporaryFolder m_Folder;
  CTemporaryFolder m_LogFolder;
};

void ExpectOneComplaint(const ProgramEnd &end, ExitCode code, const std::string &words) {
  EXPECT_EQ(end.exitCode, static_cast<int>(code)) << end.errors;
  EXPECT_EQ(Lines(end.errors).size(), 1U) << end.errors;
  EXPECT_EQ(end.errors.find("lumivex: "), 0U) << end.errors;
  EXPECT_NE(end.errors.find(words), std::string::npos) << end.errors;
}

TEST_F(LumivexWithFake, ListShowsAllCameras) {
  const ProgramEnd end = RunWithFake({"list"}, "boards=2;cameras=1");
  EXPECT_EQ(end.exitCode, 0) << end.errors;
  EXPECT_EQ(end.errors, "");
  const Names lines = Lines(end.output);
  ASSERT_EQ(lines.size(), 7U) << end.output;
  EXPECT_EQ(lines[0], std::string("Producer Fake 9.9 (") + FAKE_PRODUCER + ")");
  EXPECT_EQ(lines[1], "  Board Board-#1 (Fake Board-#1)");
  EXPECT_EQ(lines[3], "    1    Channel #1  read/write  Fake    Fake   Camera on Channel #1");
  EXPECT_EQ(lines[6], "    2    Channel #1  read/write  Fake    Fake   Camera on Channel #1");
}

TEST_F(LumivexWithFake, ListOfNothingSucceeds) {
  const ProgramEnd end = RunWithFake({"list"}, "boards=0");
  EXPECT_EQ(end.exitCode, 0);
  EXPECT_EQ(Lines(end.output).at(1), "  no boards");
}

TEST_F(LumivexWithFake, ListOpensNoCamera) {
  RunWithFake({"list"});
  const Names calls = Calls();
  EXPECT_EQ(std::count(calls.begin(), calls.end(), "IFOpenDevice"), 0);
  EXPECT_EQ(calls.back(), "GCCloseLib");
}

TEST_F(LumivexWithFake, GrabWritesFramesWithoutPadding) {
  const ProgramEnd end = RunWithFake({"grab", "--count", "3"});
  EXPECT_EQ(end.exitCode, 0) << end.errors;
  EXPECT_EQ(end.errors, "");
  EXPECT_EQ(end.output, "frame-001.png\nframe-002.png\nframe-003.png\n");
  EXPECT_EQ(m_Folder.Names(), (Names{"frame-001.png", "frame-002.png", "frame-003.png"}));
  const PngFile png = ReadPng(m_Folder.File("frame-003.png"));
  EXPECT_EQ(png.samples, (std::vector<unsigned>{3, 4, 5, 6, 7, 19, 20, 21, 22, 23, 35, 36, 37, 38, 39}));
}

// Without XPADDING the lines' length has to be had from the size of the whole.
TEST_F(LumivexWithFake, GrabFindsPaddingThatIsNotTold) {
  const ProgramEnd end = RunWithFake({"grab"}, "tellpadding=0");
  EXPECT_EQ(end.exitCode, 0) << end.errors;
  const PngFile png = ReadPng(m_Folder.File("frame-001.png"));
  EXPECT_EQ(png.samples, (std::vector<unsigned>{1, 2, 3, 4, 5, 17, 18, 19, 20, 21, 33, 34, 35, 36, 37}));
}

// More frames than buffers: each buffer has to go back into the queue.
TEST_F(LumivexWithFake, GrabGoesOnBeyondItsBuffers) {
  const ProgramEnd end = RunWithFake({"grab", "-n", "100", "-o", "f%d.png"});
  EXPECT_EQ(end.exitCode, 0) << end.errors;
  EXPECT_EQ(m_Folder.Names().size(), 100U);
}

TEST_F(LumivexWithFake, GrabGivesAllBackInTurn) {
  EXPECT_EQ(RunWithFake({"grab", "Channel #2"}).exitCode, 0);
  const Names expected = {"GCInitLib",
                          "TLOpen",
                          "TLUpdateInterfaceList",
                          "TLOpenInterface",
                          "IFUpdateDeviceList",
                          "Channel #2",
                          "IFOpenDevice",
                          "DevOpenDataStream",
                          "GCRegisterEvent",
                          "GCRegisterEvent",
                          "DSAnnounceBuffer",
                          "DSAnnounceBuffer",
                          "DSAnnounceBuffer",
                          "DSAnnounceBuffer",
                          "DSStartAcquisition",
                          "DSStopAcquisition",
                          "DSFlushQueue",
                          "DSRevokeBuffer",
                          "DSRevokeBuffer",
                          "DSRevokeBuffer",
                          "DSRevokeBuffer",
                          "GCUnregisterEvent",
                          "GCUnregisterEvent",
                          "DSClose",
                          "DevClose",
                          "IFClose",
                          "TLClose",
                          "GCCloseLib"};
  EXPECT_EQ(Calls(), expected);
}

class LumivexInterrupted : public LumivexWithFake, public testing::WithParamInterface<int> {};

TEST_P(LumivexInterrupted, EndsInOrder) {
  // It waits for more frames when the signal comes: its output never does.
  const ProgramEnd end = RunWithFake({"grab", "-n", "1000000", "-t", "60", "-o", "f%d.png"}, "frames=200", GetParam());
  ExpectOneComplaint(end, ExitCode::Interrupted, "interrupted after ");
  for (const std::string &name : m_Folder.Names()) {
    EXPECT_EQ(ReadPng(m_Folder.File(name)).bitDepth, 8U) << name;
  }
  const Names calls = Calls();
  const auto stop = std::find(calls.begin(), calls.end(), "DSStopAcquisition");
  const auto revoke = std::find(calls.begin(), calls.end(), "DSRevokeBuffer");
  const auto close = std::find(calls.begin(), calls.end(), "DSClose");
  ASSERT_NE(close, calls.end());
  EXPECT_LT(stop, revoke);
  EXPECT_LT(revoke, close);
  EXPECT_EQ(calls.back(), "GCCloseLib");
}
INSTANTIATE_TEST_SUITE_P(Signals, LumivexInterrupted, testing::Values(SIGINT, SIGTERM, SIGHUP));

// The system and the shell both tell that the terminal has gone.
TEST_F(LumivexWithFake, HangUpToldTwiceEndsInOrder) {
  ProgramStart start;
  start.arguments = {"grab", "--cti", FAKE_PRODUCER, "-n", "1000000", "-t", "60", "-o", m_Folder.File("f%d.png")};
  start.environment = {{"FAKE_PRODUCER", "frames=200"}, {"FAKE_PRODUCER_LOG", m_LogFolder.File("log")}};
  start.signalAfterOutput = SIGHUP;
  start.signalCount = 2;
  ExpectOneComplaint(RunLumivex(start), ExitCode::Interrupted, "interrupted after ");
  EXPECT_EQ(Calls().back(), "GCCloseLib");
}

// As in 'lumivex grab | less': the signal ends the wait of the output.
TEST_P(LumivexInterrupted, EndsInOrderWhileItsOutputWaits) {
  ProgramStart start;
  start.arguments = {"grab", "--cti", FAKE_PRODUCER, "-n", "1000000", "-o", "f%d.png"};
  start.folder = m_Folder.Path();
  start.environment = {{"FAKE_PRODUCER_LOG", m_LogFolder.File("log")}};
  start.signalAfterOutput = GetParam();
  start.signalWhenFull = true;
  ExpectOneComplaint(RunLumivex(start), ExitCode::Interrupted, "interrupted ");
  EXPECT_EQ(Calls().back(), "GCCloseLib");
}

// As under nohup, or in a script's background: who asked for that gets all frames.
TEST_P(LumivexInterrupted, IsIgnoredWhereItWas) {
  ProgramStart start;
  start.arguments = {"grab", "--cti", FAKE_PRODUCER, "-n", "20", "-o", m_Folder.File("f%d.png")};
  start.ignoredSignal = GetParam();
  start.signalAfterOutput = GetParam();
  EXPECT_EQ(RunLumivex(start).exitCode, 0);
  EXPECT_EQ(m_Folder.Names().size(), 20U);
}

// The wait for a frame that never comes must notice the signal as well.
TEST_F(LumivexWithFake, InterruptEndsTheWait) {
  const ProgramEnd end = RunWithFake({"grab", "-n", "2", "-t", "60"}, "frames=1", SIGINT);
  ExpectOneComplaint(end, ExitCode::Interrupted, "interrupted after 1 of 2 frames");
}

TEST_F(LumivexWithFake, NoFrameInTime) {
  const ProgramEnd end = RunWithFake({"grab", "-n", "3", "-t", "0.05"}, "frames=2");
  ExpectOneComplaint(end, ExitCode::Timeout, "no frame came within 50 ms (after 2 of 3 frames)");
  EXPECT_EQ(m_Folder.Names().size(), 2U);
  EXPECT_EQ(Calls().back(), "GCCloseLib");
}

TEST_F(LumivexWithFake, LostFramesAreToldAtTheEnd) {
  const ProgramEnd end = RunWithFake({"grab", "-n", "2"}, "lost=3");
  EXPECT_EQ(end.exitCode, 0);
  EXPECT_EQ(end.errors, "lumivex: frames were lost 3 times: overflow\n");
}

TEST_F(LumivexWithFake, LostFramesAreNotToldWhenTheReaderHasGone) {
  ProgramStart start;
  start.arguments = {"grab", "--cti", FAKE_PRODUCER, "-n", "2", "-o", m_Folder.File("f%d.png")};
  start.environment = {{"FAKE_PRODUCER", "lost=3"}};
  start.readerGone = true;
  const ProgramEnd end = RunLumivex(start);
  EXPECT_EQ(end.exitCode, static_cast<int>(ExitCode::ReaderGone));
  EXPECT_EQ(end.errors, "");
}

// A leading 0 is no octal number: "010" would be 8 then, and "08" none.
TEST_F(LumivexWithFake, CountIsDecimal) {
  EXPECT_EQ(Lines(RunWithFake({"grab", "--count", "010"}).output).size(), 10U);
  EXPECT_EQ(Lines(RunWithFake({"grab", "--count", "08"}).output).size(), 8U);
}

TEST_F(LumivexWithFake, IncompleteFramesAreLeftOut) {
  const ProgramEnd end = RunWithFake({"grab", "-n", "2"}, "incomplete=6");
  EXPECT_EQ(end.exitCode, 0);
  EXPECT_EQ(end.errors, "lumivex: 6 incomplete frames left out\n");
  EXPECT_EQ(ReadPng(m_Folder.File("frame-001.png")).samples.at(0), 7U);
}

// A camera whose frames are all damaged must not keep the user waiting for ever.
TEST_F(LumivexWithFake, IncompleteFramesDoNotCountAsInTime) {
  const ProgramEnd end = RunWithFake({"grab", "-t", "0.05"}, "incomplete=1000000000;frames=1000000000");
  EXPECT_EQ(end.exitCode, static_cast<int>(ExitCode::Timeout)) << end.errors;
}

TEST_F(LumivexWithFake, ColourBecomesColour) {
  const ProgramEnd end = RunWithFake({"grab"}, "format=0x02180015;bytes=3");
  EXPECT_EQ(end.exitCode, 0) << end.errors;
  const PngFile png = ReadPng(m_Folder.File("frame-001.png"));
  EXPECT_EQ(png.channels, 3U);
  EXPECT_EQ(png.samples.at(0), 3U);
  EXPECT_EQ(png.samples.at(2), 1U);
}

TEST_F(LumivexWithFake, UnknownFormatIsOutputError) {
  ExpectOneComplaint(RunWithFake({"grab"}, "format=0x010C0047"), ExitCode::Output, "pixel format 0x010C0047");
  EXPECT_EQ(m_Folder.Names(), Names{});
}

TEST_F(LumivexWithFake, UnknownDevice) {
  ExpectOneComplaint(RunWithFake({"grab", "Channel #9"}), ExitCode::NoDevice, "no camera 'Channel #9' found");
}

TEST_F(LumivexWithFake, AmbiguousDevice) {
  ExpectOneComplaint(RunWithFake({"grab", "Channel #1"}, "boards=2"), ExitCode::NoDevice,
                     "'Board-#1/Channel #1', 'Board-#2/Channel #1'");
}

TEST_F(LumivexWithFake, BusyInTheList) {
  EXPECT_NE(RunWithFake({"list"}, "busy=1").output.find("  busy  "), std::string::npos);
  ExpectOneComplaint(RunWithFake({"grab"}, "busy=1"), ExitCode::DeviceBusy, "no camera is free: all 2 are busy");
  ExpectOneComplaint(RunWithFake({"grab", "1"}, "busy=1"), ExitCode::DeviceBusy,
                     "camera 'Board-#1/Channel #1' is busy");
}

TEST_F(LumivexWithFake, BusyWhenOpened) {
  ExpectOneComplaint(RunWithFake({"grab"}, "busy=2"), ExitCode::DeviceBusy,
                     "IFOpenDevice failed with -1004 (GC_ERR_RESOURCE_IN_USE): somebody has it");
}

class LumivexFailure : public LumivexWithFake, public testing::WithParamInterface<const char *> {};

// Whatever fails, it is told with function, code, name and text, and what was opened is closed.
TEST_P(LumivexFailure, IsToldInOneLine) {
  const std::string function = GetParam();
  const ProgramEnd end = RunWithFake({"grab"}, "fail=" + function);
  const std::string words = function == "EventGetData" ? " failed with -1012 (GC_ERR_ABORT): told to fail"
                                                       : " failed with -1010 (GC_ERR_IO): told to fail";
  ExpectOneComplaint(end, ExitCode::GenTL, function + words);
  const Names calls = Calls();
  const auto opened = std::count(calls.begin(), calls.end(), "TLOpen");
  EXPECT_EQ(std::count(calls.begin(), calls.end(), "TLClose"), function == "TLOpen" ? 0 : opened);
}
INSTANTIATE_TEST_SUITE_P(Functions, LumivexFailure,
                         testing::Values("GCInitLib", "TLOpen", "TLUpdateInterfaceList", "TLOpenInterface",
                                         "IFUpdateDeviceList", "IFOpenDevice", "DevOpenDataStream", "DSAnnounceBuffer",
                                         "DSQueueBuffer", "DSStartAcquisition", "EventGetData", "DSStopAcquisition"));

TEST_F(LumivexWithFake, UnwritableOutputTouchesNoCamera) {
  ExpectOneComplaint(RunWithFake({"grab", "-o", "missing/%d.png"}), ExitCode::Output, "cannot write 'missing/1.png'");
  EXPECT_EQ(m_Folder.Names(), Names{});
  EXPECT_EQ(Calls(), Names{});
}

// The second name is a folder: the first picture stays whole, the run ends in order.
TEST_F(LumivexWithFake, OutputThatFailsLaterEndsInOrder) {
  std::filesystem::create_directory(m_Folder.File("2.png"));
  ExpectOneComplaint(RunWithFake({"grab", "-n", "3", "-o", "%d.png"}), ExitCode::Output, "cannot write '2.png'");
  EXPECT_EQ(m_Folder.Names(), (Names{"1.png", "2.png"}));
  EXPECT_EQ(Calls().back(), "GCCloseLib");
}

TEST_F(LumivexWithFake, TwoProducersWithOneBroken) {
  std::ofstream(m_Folder.File("0broken.cti")) << "no library";
  std::filesystem::copy_file(FAKE_PRODUCER, m_Folder.File("good.cti"));
  ProgramStart start;
  start.arguments = {"grab", "-o", m_Folder.File("%d.png")};
  start.environment = {{"GENICAM_GENTL64_PATH", m_Folder.Path().string()}};
  const ProgramEnd end = RunLumivex(start);
  ExpectOneComplaint(end, ExitCode::Success, "cannot load '" + m_Folder.File("0broken.cti"));
  EXPECT_EQ(ReadPng(m_Folder.File("1.png")).bitDepth, 8U);
}

// A program that reads the names would otherwise take a part for the whole.
TEST(Lumivex, OutputThatCannotBeWrittenIsTold) {
  const CTemporaryFolder folder;
  ProgramStart start;
  start.arguments = {"list", "--cti", FAKE_PRODUCER};
  start.outputFile = "/dev/full";
  ExpectOneComplaint(RunLumivex(start), ExitCode::Output, "cannot write to the standard output");
  start.arguments = {"grab", "--cti", FAKE_PRODUCER, "--output", folder.File("a.png")};
  ExpectOneComplaint(RunLumivex(start), ExitCode::Output, "cannot write to the standard output");
}

TEST(Lumivex, HelpThatCannotBeWrittenIsTold) {
  for (const char *option : {"--help", "--version"}) {
    ProgramStart start;
    start.arguments = {option};
    start.outputFile = "/dev/full";
    ExpectOneComplaint(RunLumivex(start), ExitCode::Output, "cannot write to the standard output");
  }
}

// The first file that is opened would get the number of the stream that is missing, and what is printed with it.
TEST_F(LumivexWithFake, ClosedOutputIsToldAndGoesNowhereElse) {
  for (const std::vector<std::string> &arguments :
       {std::vector<std::string>{"list"}, {"grab", "--output", m_Folder.File("a.png")}}) {
    ProgramStart start;
    start.arguments = arguments;
    start.arguments.insert(start.arguments.end(), {"--cti", SIMULATED_PRODUCER});
    start.environment = {{"LUMIVEX_SIM_LOCK_DIR", m_LogFolder.Path().string()}};
    start.closedFiles = {STDOUT_FILENO};
    ExpectOneComplaint(RunLumivex(start), ExitCode::Output, "cannot write to the standard output");
  }
  EXPECT_FALSE(m_LogFolder.Names().empty());
  for (const std::string &name : m_LogFolder.Names()) {
    EXPECT_EQ(std::filesystem::file_size(m_LogFolder.File(name)), 0U) << name;
  }
}

TEST_F(LumivexWithFake, ClosedErrorsGoNowhereElse) {
  ProgramStart start;
  start.arguments = {"grab", "--cti", SIMULATED_PRODUCER, "--output", m_Folder.File("a.png")};
  start.environment = {{"LUMIVEX_SIM_LOCK_DIR", m_LogFolder.Path().string()}};
  start.closedFiles = {STDOUT_FILENO, STDERR_FILENO};
  EXPECT_EQ(RunLumivex(start).exitCode, static_cast<int>(ExitCode::Output));
  EXPECT_FALSE(m_LogFolder.Names().empty());
  for (const std::string &name : m_LogFolder.Names()) {
    EXPECT_EQ(std::filesystem::file_size(m_LogFolder.File(name)), 0U) << name;
  }
}

// A reader such as head, who has seen enough: the run ends in order, without a word.
TEST_F(LumivexWithFake, ReaderWhoHasGoneEndsTheGrab) {
  ProgramStart start;
  start.arguments = {"grab", "-n", "1000000", "-o", m_Folder.File("f%d.png")};
  start.environment = {{"GENICAM_GENTL64_PATH", std::filesystem::path(FAKE_PRODUCER).parent_path().string()},
                       {"FAKE_PRODUCER_LOG", m_LogFolder.File("log")}};
  start.readerGone = true;
  const ProgramEnd end = RunLumivex(start);
  EXPECT_EQ(end.exitCode, static_cast<int>(ExitCode::ReaderGone));
  EXPECT_EQ(end.errors, "");
  EXPECT_EQ(m_Folder.Names(), Names{"f1.png"});
  EXPECT_EQ(Calls().back(), "GCCloseLib");
}

// The system's limit for files would end the program in the midst of one, and leave half of it.
TEST_F(LumivexWithFake, PictureBeyondTheLimitForFilesLeavesNothing) {
  ProgramStart start;
  start.arguments = {"grab", "--cti", SIMULATED_PRODUCER, "--output", m_Folder.File("a.png")};
  start.largestFile = 4096;
  ExpectOneComplaint(RunLumivex(start), ExitCode::Output, "cannot write '" + m_Folder.File("a.png") + "'");
  EXPECT_EQ(m_Folder.Names(), Names{});
}

TEST(Lumivex, NoProducer) {
  ProgramStart start;
  start.arguments = {"list"};
  start.environment = {{"GENICAM_GENTL64_PATH", ""}};
  ExpectOneComplaint(RunLumivex(start), ExitCode::NoProducer, "GENICAM_GENTL64_PATH is not set, or empty");
  start.arguments = {"grab", "--cti", "/no/such.cti"};
  ExpectOneComplaint(RunLumivex(start), ExitCode::NoProducer, "there is no file '/no/such.cti'");
  start.arguments = {"list", "--cti", LUMIVEX_PROGRAM};
  ExpectOneComplaint(RunLumivex(start), ExitCode::NoProducer, "cannot load");
}

TEST(Lumivex, HelpAndVersionGoToOutput) {
  ProgramStart start;
  start.arguments = {"--version"};
  const ProgramEnd version = RunLumivex(start);
  EXPECT_EQ(version.exitCode, 0);
  EXPECT_EQ(version.output.find("lumivex "), 0U);
  for (const std::vector<std::string> &arguments :
       {std::vector<std::string>{"--help"}, {"list", "--help"}, {"grab", "--help"}}) {
    start.arguments = arguments;
    const ProgramEnd help = RunLumivex(start);
    EXPECT_EQ(help.exitCode, 0);
    EXPECT_EQ(help.errors, "");
    for (const auto &row : Lumivex::Consumer::kExitCodes) {
      EXPECT_NE(help.output.find(row.text), std::string::npos) << row.text;
    }
  }
}

class LumivexMisuse : public testing::TestWithParam<std::vector<std::string>> {};

TEST_P(LumivexMisuse, IsUsageErrorInOneLine) {
  ProgramStart start;
  start.arguments = GetParam();
  ExpectOneComplaint(RunLumivex(start), ExitCode::Usage, "");
}
INSTANTIATE_TEST_SUITE_P(Table, LumivexMisuse,
                         testing::ValuesIn(std::vector<std::vector<std::string>>{
                             {},
                             {"nonsense"},
                             {"list", "extra"},
                             {"grab", "a", "b"},
                             {"grab", "--count"},
                             {"grab", "--count", "0"},
                             {"grab", "--count", "-1"},
                             {"grab", "--count", "many"},
                             {"grab", "--count", "0x10"},
                             {"grab", "--count", "1.5"},
                             {"grab", "--count", ""},
                             {"grab", "--count", "2", "--output", "same.png"},
                             {"grab", "--output", "%s.png"},
                             {"grab", "--output", ""},
                             {"grab", "--timeout", "0"},
                             {"grab", "--timeout", "nan"},
                             {"grab", "--nonsense"},
                             {"list", "grab"},
                         }));

struct Misuse {
  std::vector<std::string> arguments;
  std::string complaint;
};

class LumivexFault : public testing::TestWithParam<Misuse> {};

TEST_P(LumivexFault, IsToldInOurWords) {
  ProgramStart start;
  start.arguments = GetParam().arguments;
  const ProgramEnd end = RunLumivex(start);
  EXPECT_EQ(end.exitCode, static_cast<int>(ExitCode::Usage));
  EXPECT_EQ(end.errors, "lumivex: " + GetParam().complaint + " lumivex --help\n");
}
const Misuse kMisuses[] = {
    {{"foo"}, "no command 'foo'; see"},
    {{"foo", "list"}, "no command 'foo'; see"},
    {{"lsit"}, "no command 'lsit'; did you mean list? See"},
    {{"--nonsense", "list"}, "not expected: --nonsense; see"},
    {{"list", "b", "a"}, "not expected: b a; see"},
    {{"grab", "--ouput", "x"}, "not expected: --ouput; did you mean --output? See"},
    {{"grab", "--count", "abc"}, "--count: 'abc' is no number from 1 to 1000000000; see"},
    {{"grab", "-n", "0"}, "--count: '0' is no number from 1 to 1000000000; see"},
    {{"grab", "-n", "1000000001"}, "--count: '1000000001' is no number from 1 to 1000000000; see"},
    {{"grab", "-n", "1", "--count", "2"}, "--count is given 2 times; see"},
    {{"grab", "--count"}, "--count needs a value; see"},
    {{"grab", "--output="}, "--output needs a value; see"},
    {{"list", "--cti", ""}, "--cti: the path is empty; see"},
};
INSTANTIATE_TEST_SUITE_P(Table, LumivexFault, testing::ValuesIn(kMisuses));

}  // namespace
