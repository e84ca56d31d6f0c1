// SPDX-License-Identifier: MIT
/// \file
/// The commands about features, run as a user runs them, with the fake Producer: each kind of feature, and the faults.

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "ExitCodes.h"
#include "FeatureOptions.h"
#include "RunProgram.h"
#include "TemporaryFolder.h"

namespace {

using Lumivex::Consumer::ChosenCameraLine;
using Lumivex::Consumer::ExitCode;
using Arguments = std::vector<std::string>;

ProgramEnd RunWithFake(const Arguments &arguments, const std::string &words = "", const std::string &log = "") {
  ProgramStart start;
  start.arguments = arguments;
  start.environment = {{"GENICAM_GENTL64_PATH", std::filesystem::path(FAKE_PRODUCER).parent_path().string()},
                       {"FAKE_PRODUCER", words},
                       {"FAKE_PRODUCER_LOG", log}};
  return RunLumivex(start);
}

size_t Writes(const std::string &log) {
  std::ostringstream text;
  text << std::ifstream(log).rdbuf();
  const std::vector<std::string> calls = Lines(text.str());
  return static_cast<size_t>(std::count(calls.begin(), calls.end(), "GCWritePort"));
}

// What the user sees of each kind of feature, and of those that cannot be had: one test for the layout as a whole.
TEST(LumivexFeatures, TreeOfAllKinds) {
  const ProgramEnd end = RunWithFake({"features"});
  EXPECT_EQ(end.exitCode, 0);
  EXPECT_EQ(end.errors, "");
  EXPECT_EQ(
      Lines(end.output),
      (std::vector<std::string>{
          "Control",
          "  Mode      rw  On",
          "  Gain      rw  2.5 dB  (0.5 to 100000)",
          "  Size      rw  32  (16 to 64, step 16)",
          "  Offset    rw  -5",
          "  Enabled   rw  false",
          "  Label     rw  first?[31m",
          "  Secret    -w",
          "  Broken    rw  (cannot be read: GCReadPort failed with -1010 (GC_ERR_IO): no camera)",
          "  Fixed     rw  32  (locked)",
          "  Absent    --  (not available)",
          "  Doubtful  rw  32  (locked or not cannot be told: GCReadPort failed with -1010 (GC_ERR_IO): no camera)",
          "  Blob      rw  4 bytes: 01 02 03 04",
          "  Serial    r-  16909060",
          "  Run       -w  (command)",
          "  Own       rw  3",
          "  Constant  r-  7",
      }));
}

TEST(LumivexFeatures, VerboseTellsToolTipsEntriesAndHiddenFeatures) {
  const ProgramEnd end = RunWithFake({"features", "--verbose"});
  EXPECT_EQ(end.exitCode, 0) << end.errors;
  const std::vector<std::string> lines = Lines(end.output);
  ASSERT_GT(lines.size(), 5U);
  EXPECT_EQ(lines[1], "  Mode      rw  On");
  EXPECT_EQ(lines[2], "      How it works.");
  EXPECT_EQ(lines[3], "      Off = 0, On = 1, Automatic = 0x80000000");
  EXPECT_EQ(lines[lines.size() - 2], "Nothing");
  EXPECT_EQ(lines.back(), "  Hidden    rw  0");
}

// An enumeration beside its entries must not hide the other features.
TEST(LumivexFeatures, EnumerationOnNoEntryIsTold) {
  const ProgramEnd end = RunWithFake({"features"}, "mode=5");
  EXPECT_EQ(end.exitCode, 0) << end.errors;
  const std::vector<std::string> lines = Lines(end.output);
  EXPECT_EQ(lines.at(1), "  Mode      rw  0x00000005, none of its entries");
  EXPECT_EQ(lines.size(), 17U);
}

TEST(LumivexFeatures, EnumerationOnNoEntryCanBeSet) {
  const ProgramEnd end = RunWithFake({"set", "Mode", "Automatic"}, "mode=5");
  EXPECT_EQ(end.exitCode, 0) << end.errors;
  EXPECT_EQ(end.output, "Automatic\n");
}

TEST(LumivexFeatures, BusyCameraIsRead) {
  const ProgramEnd end = RunWithFake({"features"}, "busy=1");
  EXPECT_NE(end.exitCode, static_cast<int>(ExitCode::Internal)) << end.errors;
  EXPECT_EQ(Lines(end.errors).size(), 1U) << end.errors;
  EXPECT_NE(end.errors.find("busy"), std::string::npos);
}

TEST(LumivexFeatures, BusyCameraIsNotWritten) {
  const ProgramEnd end = RunWithFake({"set", "Size", "16"}, "busy=1");
  EXPECT_EQ(end.exitCode, static_cast<int>(ExitCode::DeviceBusy)) << end.errors;
}

struct Success {
  Arguments arguments;
  std::string output;
};

class LumivexFeatureValue : public testing::TestWithParam<Success> {};

TEST_P(LumivexFeatureValue, IsPrinted) {
  const ProgramEnd end = RunWithFake(GetParam().arguments);
  EXPECT_EQ(end.exitCode, 0);
  EXPECT_EQ(end.errors, "");
  EXPECT_EQ(end.output, GetParam().output);
}

const Success kSuccesses[] = {
    {{"get", "Mode"}, "On\n"},
    {{"get", "Gain"}, "2.5\n"},
    {{"get", "Serial"}, "16909060\n"},
    {{"get", "Blob"}, "4 bytes: 01 02 03 04\n"},
    {{"get", "Size", "--module", "system"}, "32\n"},
    {{"get", "Size", "--module", "interface"}, "32\n"},
    {{"get", "Size", "--module", "stream"}, "32\n"},
    {{"get", "Size", "--module", "camera", "--device", "2"}, "32\n"},
    {{"set", "Mode", "Off"}, "Off\n"},
    {{"set", "Gain", "0.5"}, "0.5\n"},
    {{"set", "Gain", "1e5"}, "100000\n"},
    {{"set", "Size", "64"}, "64\n"},
    {{"set", "Size", "0x10"}, "16\n"},
    {{"set", "Offset", "--", "-2147483648"}, "-2147483648\n"},
    {{"set", "Enabled", "true"}, "true\n"},
    {{"set", "Enabled", "0"}, "false\n"},
    {{"set", "Label", "abc"}, "abc\n"},
    {{"set", "Label", "0123456789abcdef"}, "0123456789abcdef\n"},
    {{"set", "Label", ""}, "\n"},
    // The line has its end already.
    {{"set", "Label", "abc\n"}, "abc\n"},
    {{"set", "Secret", "1"}, ""},
    {{"set", "Run"}, ""},
    {{"set", "Hidden", "4294967295"}, "4294967295\n"},
};
INSTANTIATE_TEST_SUITE_P(Table, LumivexFeatureValue, testing::ValuesIn(kSuccesses));

// A lock of the features is such a number: it has no register, and changes in the node map of who sets it.
TEST(LumivexFeatures, NumberWithoutRegisterIsSetInTheNodeMap) {
  const CTemporaryFolder folder;
  const ProgramEnd end = RunWithFake({"set", "Own", "5"}, "", folder.File("log"));
  EXPECT_EQ(end.exitCode, 0);
  EXPECT_EQ(end.errors, "");
  EXPECT_EQ(end.output, "5\n");
  EXPECT_EQ(Writes(folder.File("log")), 0U);
}

struct Refusal {
  Arguments arguments;
  ExitCode code;
  std::string complaint;
};

class LumivexFeatureRefusal : public testing::TestWithParam<Refusal> {};

// One line, the code that scripts rely on, and nothing written to the module.
TEST_P(LumivexFeatureRefusal, SaysWhy) {
  const CTemporaryFolder folder;
  const ProgramEnd end = RunWithFake(GetParam().arguments, "", folder.File("log"));
  EXPECT_EQ(end.exitCode, static_cast<int>(GetParam().code));
  EXPECT_EQ(end.errors, "lumivex: " + GetParam().complaint + "\n");
  EXPECT_EQ(end.output, "");
  EXPECT_EQ(Writes(folder.File("log")), 0U);
}

const Refusal kRefusals[] = {
    {{"get", "Siez"},
     ExitCode::NoFeature,
     "the device module (the grabber) has no feature 'Siez'; did you mean Size? 'lumivex features --module camera' "
     "shows what the camera has"},
    {{"set", "mode", "On"},
     ExitCode::NoFeature,
     "the device module (the grabber) has no feature 'mode'; did you mean Mode? 'lumivex features --module camera' "
     "shows what the camera has"},
    {{"get", "Temperature"},
     ExitCode::NoFeature,
     "the device module (the grabber) has no feature 'Temperature'; 'lumivex features --module device' shows those it "
     "has, and 'lumivex features --module camera' what the camera has"},
    {{"get", "Temperature", "--module", "camera"},
     ExitCode::NoFeature,
     "the camera has no feature 'Temperature'; 'lumivex features --module camera' shows those it has, and 'lumivex "
     "features --module device' what the device module (the grabber) has"},
    {{"get", "Gone", "--module", "stream"},
     ExitCode::NoFeature,
     "the stream module has no feature 'Gone'; 'lumivex features --module stream' shows those it has"},
    {{"get", "", "--module", "system"},
     ExitCode::NoFeature,
     "the system module has no feature ''; 'lumivex features --module system' shows those it has"},
    {{"get", "Siez", "--module", "interface"},
     ExitCode::NoFeature,
     "the interface module (the board) has no feature 'Siez'; did you mean Size?"},
    {{"get", "Control"}, ExitCode::FeatureAccess, "Control is a category and has no value"},
    {{"get", "Run"}, ExitCode::FeatureAccess, "Run is a command and has no value"},
    {{"get", "Secret"}, ExitCode::FeatureAccess, "Secret can only be written"},
    {{"get", "Absent"}, ExitCode::FeatureAccess, "Absent is not available now"},
    {{"get", "Broken"}, ExitCode::GenTL, "GCReadPort failed with -1010 (GC_ERR_IO): no camera"},
    {{"set", "Control", "1"}, ExitCode::FeatureAccess, "Control is a category and cannot be set"},
    {{"set", "Blob", "1"}, ExitCode::FeatureAccess, "Blob is a block of bytes and cannot be set"},
    {{"set", "Serial", "1"}, ExitCode::FeatureAccess, "Serial can only be read"},
    {{"set", "Constant", "1"}, ExitCode::FeatureAccess, "Constant can only be read"},
    {{"set", "Fixed", "1"}, ExitCode::FeatureAccess, "Fixed is locked now"},
    {{"set", "Absent", "1"}, ExitCode::FeatureAccess, "Absent is not available now"},
    {{"set", "Doubtful", "1"},
     ExitCode::FeatureAccess,
     "whether Doubtful is locked cannot be told: GCReadPort failed with -1010 (GC_ERR_IO): no camera"},
    {{"set", "Run", "1"}, ExitCode::FeatureValue, "Run is a command: it takes no value"},
    {{"set", "Size"}, ExitCode::FeatureValue, "Size needs a value: it is a whole number"},
    {{"set", "Size", ""}, ExitCode::FeatureValue, "Size takes a whole number, not ''"},
    {{"set", "Size", "large"}, ExitCode::FeatureValue, "Size takes a whole number, not 'large'"},
    {{"set", "Size", "32x"}, ExitCode::FeatureValue, "Size takes a whole number, not '32x'"},
    {{"set", "Size", "0x"}, ExitCode::FeatureValue, "Size takes a whole number, not '0x'"},
    {{"set", "Size", "99999999999999999999"},
     ExitCode::FeatureValue,
     "Size takes a whole number, not '99999999999999999999'"},
    {{"set", "Size", "15"}, ExitCode::FeatureValue, "Size takes at least 16 now, not 15"},
    {{"set", "Size", "65"}, ExitCode::FeatureValue, "Size takes at most 64 now, not 65"},
    {{"set", "Size", "40"}, ExitCode::FeatureValue, "Size goes in steps of 16 from 16 and does not take 40"},
    {{"set", "Offset", "2147483648"}, ExitCode::FeatureValue, "Offset takes at most 2147483647 now, not 2147483648"},
    {{"set", "Hidden", "4294967296"}, ExitCode::FeatureValue, "Hidden takes at most 4294967295 now, not 4294967296"},
    {{"set", "Gain", "0.4"}, ExitCode::FeatureValue, "Gain takes at least 0.5 now, not 0.4"},
    {{"set", "Gain", "1e6"}, ExitCode::FeatureValue, "Gain takes at most 100000 now, not 1e6"},
    {{"set", "Gain", "nan"}, ExitCode::FeatureValue, "Gain takes a number, not 'nan'"},
    {{"set", "Gain", "1,5"}, ExitCode::FeatureValue, "Gain takes a number, not '1,5'"},
    {{"set", "Enabled", "maybe"}, ExitCode::FeatureValue, "Enabled takes true or false, not 'maybe'"},
    {{"set", "Mode", "Automatc"}, ExitCode::FeatureValue, "Mode has no entry 'Automatc'; did you mean Automatic?"},
    {{"set", "Mode", "1"},
     ExitCode::FeatureValue,
     "Mode has no entry '1'; 'lumivex features --verbose' shows those it has"},
    {{"set", "Label", "0123456789abcdefg"}, ExitCode::FeatureValue, "Label takes at most 16 characters, not 17"},
    {{"get", "Size", "--module", "table"},
     ExitCode::Usage,
     "--module: 'table' is none of system, interface, device, stream and camera; see lumivex --help"},
    {{"get"}, ExitCode::Usage, "NAME is required; see lumivex --help"},
    {{"get", "Size", "--module", "device", "--module", "camera"},
     ExitCode::Usage,
     "--module is given 2 times; see lumivex --help"},
    {{"features", "--device="}, ExitCode::Usage, "--device needs a value; see lumivex --help"},
    {{"features", "--device", "1", "2"}, ExitCode::Usage, "two cameras are named, '1' and '2'"},
    {{"set", "Size", "16", "a", "b"}, ExitCode::Usage, "not expected: a b; see lumivex --help"},
    {{"gte", "Size"}, ExitCode::Usage, "no command 'gte'; did you mean get? See lumivex --help"},
    {{"get", "Size", "--device", "9"},
     ExitCode::NoDevice,
     "no camera '9' found; 'lumivex list' shows those that are there"},
};
INSTANTIATE_TEST_SUITE_P(Table, LumivexFeatureRefusal, testing::ValuesIn(kRefusals));

struct Fault {
  Arguments arguments;
  std::string words;
  ExitCode code;
  std::string complaint;
};

class LumivexFeatureFault : public testing::TestWithParam<Fault> {};

TEST_P(LumivexFeatureFault, IsToldInOneLine) {
  const ProgramEnd end = RunWithFake(GetParam().arguments, GetParam().words);
  EXPECT_EQ(end.exitCode, static_cast<int>(GetParam().code));
  EXPECT_EQ(end.errors, "lumivex: " + GetParam().complaint + "\n");
  EXPECT_EQ(end.output, "");
}

const Fault kFaults[] = {
    {{"set", "Size", "16"},
     "fail=GCWritePort",
     ExitCode::GenTL,
     "GCWritePort failed with -1010 (GC_ERR_IO): told to fail in two lines"},
    {{"set", "Run"},
     "fail=GCWritePort",
     ExitCode::GenTL,
     "GCWritePort failed with -1010 (GC_ERR_IO): told to fail in two lines"},
    {{"set", "Broken", "1"}, "", ExitCode::GenTL, "GCWritePort failed with -1010 (GC_ERR_IO): no camera"},
    {{"features"},
     "fail=GCGetNumPortURLs",
     ExitCode::GenTL,
     "GCGetNumPortURLs failed with -1010 (GC_ERR_IO): told to fail in two lines"},
    {{"features"}, "description=none", ExitCode::GenTL, "the module has no description of its features"},
    {{"features"}, "description=broken", ExitCode::GenTL, "the module's description, 'fake.xml', cannot be understood"},
    {{"features"},
     "description=elsewhere",
     ExitCode::GenTL,
     "the module's description lies at an unknown place: http://localhost/fake.xml"},
    {{"features"},
     "description=missing",
     ExitCode::GenTL,
     "the device module (the grabber)'s description, the file '/no such/fake.xml', cannot be read: No such file or "
     "directory"},
    {{"features", "--module", "camera"},
     "description=missing",
     ExitCode::GenTL,
     "the camera's description, the file '/no such/fake.xml', cannot be read: No such file or directory; a "
     "setting of the Producer, such as DebugCameraURL, may name it"},
    {{"features"}, "boards=0", ExitCode::NoDevice, "no camera found"},
    {{"features", "--module", "interface"}, "boards=0", ExitCode::NoDevice, "no board found"},
};
INSTANTIATE_TEST_SUITE_P(Table, LumivexFeatureFault, testing::ValuesIn(kFaults));

// Cameras carry their description packed.
TEST(LumivexFeatures, ZippedDescriptionIsUnpacked) {
  const ProgramEnd end = RunWithFake({"get", "Size"}, "description=zip");
  EXPECT_EQ(end.exitCode, 0) << end.errors;
  EXPECT_EQ(end.output, "32\n");
}

TEST(LumivexFeatures, SystemNeedsNoBoard) {
  const ProgramEnd end = RunWithFake({"get", "Size", "--module", "system"}, "boards=0");
  EXPECT_EQ(end.exitCode, 0) << end.errors;
  EXPECT_EQ(end.output, "32\n");
}

TEST(LumivexFeatures, HelpTellsArgumentsAndExitCodes) {
  for (const char *command : {"features", "get", "set"}) {
    const ProgramEnd end = RunWithFake({command, "--help"});
    EXPECT_EQ(end.exitCode, 0);
    EXPECT_NE(end.output.find("-d,--device CAMERA "), std::string::npos) << end.output;
    for (const auto &row : Lumivex::Consumer::kExitCodes) {
      EXPECT_NE(end.output.find(row.text), std::string::npos) << command << ": " << row.text;
    }
  }
}

// A reader such as head, who has seen enough: no failure that anybody should read of.
TEST(LumivexFeatures, ReaderWhoHasGoneIsNoComplaint) {
  for (const Arguments &arguments :
       {Arguments{"features"}, Arguments{"get", "Size"}, Arguments{"set", "Size", "16"}, Arguments{"list"}}) {
    ProgramStart start;
    start.arguments = arguments;
    start.environment = {{"GENICAM_GENTL64_PATH", std::filesystem::path(FAKE_PRODUCER).parent_path().string()}};
    start.readerGone = true;
    const ProgramEnd end = RunLumivex(start);
    EXPECT_EQ(end.exitCode, static_cast<int>(ExitCode::ReaderGone)) << arguments.front();
    EXPECT_EQ(end.errors, "") << arguments.front();
  }
}

// Who sits at the terminal is told, and only where there was a choice. A program that reads the output gets nothing
// more: elsewhere in these tests the errors are expected to be empty.
TEST(LumivexFeatures, ChosenCameraIsTold) {
  EXPECT_EQ(ChosenCameraLine("", "'Board-#1/Channel #1'", 2), "lumivex: camera 'Board-#1/Channel #1'\n");
  EXPECT_EQ(ChosenCameraLine("2", "'Board-#1/Channel #2'", 2), "");
  EXPECT_EQ(ChosenCameraLine("", "'Board-#1/Channel #1'", 1), "");
  EXPECT_EQ(ChosenCameraLine("", "", 2), "");
}

/// `lumivex grab` with features that are to be set before.
class LumivexGrabSetting : public testing::Test {
 protected:
  ProgramEnd Grab(Arguments settings) {
    ProgramStart start;
    start.arguments = {"grab", "--output", m_Folder.File("a.png")};
    start.arguments.insert(start.arguments.end(), settings.begin(), settings.end());
    start.environment = {{"GENICAM_GENTL64_PATH", std::filesystem::path(FAKE_PRODUCER).parent_path().string()},
                         {"FAKE_PRODUCER", ""},
                         {"FAKE_PRODUCER_LOG", m_LogFolder.File("log")}};
    return RunLumivex(start);
  }

  Arguments Calls() const {
    std::ostringstream text;
    text << std::ifstream(m_LogFolder.File("log")).rdbuf();
    return Lines(text.str());
  }

  CTemporaryFolder m_Folder;
  CTemporaryFolder m_LogFolder;
};

// Later the stream would have asked for the size of the frames already.
TEST_F(LumivexGrabSetting, IsWrittenBeforeTheStreamOpens) {
  // The camera's name stands between, so an option that takes all that follows would show.
  const ProgramEnd end = Grab({"--set", "Size=16", "Channel #2", "--set", "Label=a=b", "--set", "Run"});
  EXPECT_EQ(end.exitCode, 0) << end.errors;
  const Arguments calls = Calls();
  const auto open = std::find(calls.begin(), calls.end(), "DevOpenDataStream");
  ASSERT_NE(open, calls.end());
  // A register of text is written as a whole; how often is the library's choice, so only the order is looked at.
  EXPECT_GE(std::count(calls.begin(), open, "GCWritePort"), 3);
  EXPECT_EQ(std::count(open, calls.end(), "GCWritePort"), 0);
  EXPECT_EQ(std::count(calls.begin(), calls.end(), "Channel #2"), 1);
}

TEST_F(LumivexGrabSetting, RefusalGrabsNothing) {
  const struct {
    const char *setting;
    ExitCode code;
    const char *complaint;
  } rows[] = {
      {"Size=65", ExitCode::FeatureValue, "Size takes at most 64 now, not 65"},
      {"Size", ExitCode::FeatureValue, "Size needs a value: it is a whole number"},
      {"Run=1", ExitCode::FeatureValue, "Run is a command: it takes no value"},
      {"Serial=1", ExitCode::FeatureAccess, "Serial can only be read"},
      {"Siez=1", ExitCode::NoFeature,
       "the device module (the grabber) has no feature 'Siez'; did you mean Size? 'lumivex features --module camera' "
       "shows what the camera has"},
  };
  for (const auto &row : rows) {
    const ProgramEnd end = Grab({"--set", row.setting});
    EXPECT_EQ(end.exitCode, static_cast<int>(row.code)) << row.setting;
    EXPECT_EQ(end.errors, std::string("lumivex: ") + row.complaint + "\n");
    EXPECT_EQ(end.output, "");
  }
  EXPECT_EQ(m_Folder.Names(), Arguments{});
  const Arguments calls = Calls();
  EXPECT_EQ(std::count(calls.begin(), calls.end(), "DevOpenDataStream"), 0);
  EXPECT_EQ(std::count(calls.begin(), calls.end(), "DevClose"), 5);
  EXPECT_EQ(calls.back(), "GCCloseLib");
}

// What is wrong without any camera is told without one.
TEST_F(LumivexGrabSetting, WithoutANameTouchesNoHardware) {
  for (const std::string setting : {"", "=", "=5"}) {
    const ProgramEnd end = Grab({"--set", "Size=16", "--set", setting});
    EXPECT_EQ(end.exitCode, static_cast<int>(ExitCode::Usage)) << setting;
    EXPECT_EQ(end.errors, "lumivex: --set: '" + setting + "' names no feature; see lumivex --help\n");
  }
  EXPECT_EQ(Calls(), Arguments{});
}

TEST(LumivexFeatures, FullDiskIsTold) {
  for (const Arguments &arguments : {Arguments{"features"}, Arguments{"get", "Size"}, Arguments{"set", "Size", "16"}}) {
    ProgramStart start;
    start.arguments = arguments;
    start.environment = {{"GENICAM_GENTL64_PATH", std::filesystem::path(FAKE_PRODUCER).parent_path().string()}};
    start.outputFile = "/dev/full";
    EXPECT_EQ(RunLumivex(start).exitCode, static_cast<int>(ExitCode::Output)) << arguments.front();
  }
}

}  // namespace
