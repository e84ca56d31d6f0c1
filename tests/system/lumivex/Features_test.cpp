// SPDX-License-Identifier: MIT
/// \file
/// The commands about features, run as a user runs them, with the Producer and the simulated library beneath it.

#include <algorithm>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Catalog.h"
#include "Device.h"
#include "ExitCodes.h"
#include "ReadPng.h"
#include "RunProgram.h"
#include "TemporaryFolder.h"

namespace {

using namespace Lumivex::Consumer;
using Arguments = std::vector<std::string>;

ProgramEnd RunWithSimulation(Arguments arguments) {
  arguments.insert(arguments.begin() + 1, {"--cti", SIMULATED_PRODUCER});
  ProgramStart start;
  start.arguments = std::move(arguments);
  return RunLumivex(start);
}

bool Holds(const std::string &text, const std::string &part) { return text.find(part) != std::string::npos; }

struct ModuleRow {
  std::string module;
  std::vector<std::string> lines;  ///< Some that must be there.
};

class LumivexModule : public testing::TestWithParam<ModuleRow> {};

TEST_P(LumivexModule, ListingShowsItsFeaturesAndNoFault) {
  const ProgramEnd end = RunWithSimulation({"features", "--module", GetParam().module});
  EXPECT_EQ(end.exitCode, 0);
  EXPECT_EQ(end.errors, "");
  const std::vector<std::string> lines = Lines(end.output);
  for (const std::string &line : GetParam().lines) {
    EXPECT_NE(std::find(lines.begin(), lines.end(), line), lines.end()) << line << "\nnot in\n" << end.output;
  }
  for (const std::string &line : lines) {
    EXPECT_FALSE(Holds(line, "cannot be")) << line;
    EXPECT_FALSE(Holds(line, "none of its entries")) << line;
    EXPECT_FALSE(Holds(line, "not available")) << line;
  }
}

// All features, the hidden ones too: whatever cannot be read shows here.
TEST_P(LumivexModule, VerboseListingShowsNoFault) {
  const ProgramEnd end = RunWithSimulation({"features", "--verbose", "--module", GetParam().module});
  EXPECT_EQ(end.exitCode, 0);
  EXPECT_EQ(end.errors, "");
  EXPECT_GT(Lines(end.output).size(),
            Lines(RunWithSimulation({"features", "--module", GetParam().module}).output).size());
  EXPECT_FALSE(Holds(end.output, "cannot be read:")) << end.output;
  EXPECT_FALSE(Holds(end.output, "cannot be told")) << end.output;
}

const ModuleRow kModules[] = {
    {"system", {"SystemInformation", "  GenTLVersionMajor         r-  1", "  InterfaceUpdateList       -w  (command)"}},
    {"interface", {"DeviceEnumeration", "  DeviceSelector        rw  0  (0 to 1)", "  DeviceType            r-  CXP"}},
    {"device",
     {"ImageFormatControl", "  PixelFormat                    rw  Mono8",
      "  Width                          rw  1280  (0 to 1280)", "  GRB_CXP_BITRATE_MODE           rw  AUTO",
      "  GRB_EXPOSE                     -w  (command)",
      "  GRB_TIMERA1_PULSE_COUNT        rw  1  (1 to 65535)  (locked)",
      "  GRB_CONFIG_FILE                rw  (empty)"}},
    {"stream", {"BufferHandlingControl", "  PayloadSize                  r-  1310720"}},
    {"camera",
     {"ImageFormatControl", "  Width                       rw  1280  (16 to 1280, step 16)",
      "  ExposureTime                rw  5000 us  (1 to 10000000)"}},
};
INSTANTIATE_TEST_SUITE_P(Modules, LumivexModule, testing::ValuesIn(kModules));

TEST(LumivexFeaturesWithSimulation, ToolTipsAndEntriesWithVerbose) {
  const ProgramEnd end = RunWithSimulation({"features", "--verbose"});
  EXPECT_TRUE(Holds(end.output, "      Layout of the pixels in the buffer.\n      Mono8 = 0x01080001, "));
}

TEST(LumivexFeaturesWithSimulation, CameraIsChosen) {
  EXPECT_EQ(RunWithSimulation({"get", "--module", "camera", "--device", "2", "DeviceModelName"}).output, "LX-C2000\n");
  EXPECT_TRUE(Holds(RunWithSimulation({"features", "--module", "camera", "2"}).output, "LX-C2000"));
  EXPECT_TRUE(Holds(RunWithSimulation({"features", "--module", "camera", "--device", "2"}).output, "LX-C2000"));
}

struct Setting {
  Arguments arguments;
  std::string output;
};

class LumivexSetting : public testing::TestWithParam<Setting> {};

TEST_P(LumivexSetting, IsTakenAndReadBack) {
  Arguments arguments = {"set"};
  arguments.insert(arguments.end(), GetParam().arguments.begin(), GetParam().arguments.end());
  const ProgramEnd end = RunWithSimulation(arguments);
  EXPECT_EQ(end.exitCode, 0);
  EXPECT_EQ(end.errors, "");
  EXPECT_EQ(end.output, GetParam().output);
}

const Setting kSettings[] = {
    {{"Width", "512"}, "512\n"},
    {{"PixelFormat", "Mono16"}, "Mono16\n"},
    {{"GRB_ACQ_BLOCKING", "false"}, "false\n"},
    {{"GRB_CAMTRIG_DIVIDER", "1023"}, "1023\n"},
    {{"GRB_TIMERA1_PERIOD_NS", "17179869000"}, "17179869000\n"},
    // The grabber raises what its filter cannot do.
    {{"GRB_CAMTRIG_FILTER_NS", "1"}, "66\n"},
    {{"GRB_CONFIG_FILE", "/a b.gcf"}, "/a b.gcf\n"},
    {{"GRB_EXPOSE"}, ""},
    // The lock lives in the node map of who sets it.
    {{"TLParamsLocked", "1"}, "1\n"},
    {{"--module", "system", "InterfaceUpdateList"}, ""},
    {{"--module", "interface", "DeviceSelector", "1"}, "1\n"},
    {{"--module", "camera", "Width", "640"}, "640\n"},
    {{"--module", "camera", "ExposureTime", "2500.5"}, "2500.5\n"},
    {{"--module", "camera", "DeviceUserID", "left"}, "left\n"},
};
INSTANTIATE_TEST_SUITE_P(Table, LumivexSetting, testing::ValuesIn(kSettings));

struct Refusal {
  Arguments arguments;
  ExitCode code;
  std::string words;
};

class LumivexSettingRefusal : public testing::TestWithParam<Refusal> {};

TEST_P(LumivexSettingRefusal, SaysWhyInOneLine) {
  const ProgramEnd end = RunWithSimulation(GetParam().arguments);
  EXPECT_EQ(end.exitCode, static_cast<int>(GetParam().code));
  EXPECT_EQ(Lines(end.errors).size(), 1U) << end.errors;
  EXPECT_EQ(end.errors.find("lumivex: "), 0U) << end.errors;
  EXPECT_TRUE(Holds(end.errors, GetParam().words)) << end.errors;
}

const Refusal kRefusals[] = {
    {{"get", "Widht"}, ExitCode::NoFeature, "did you mean Width"},
    {{"get", "Width", "--module", "system"}, ExitCode::NoFeature, "the system module has no feature 'Width'"},
    {{"get", "AcquisitionFrameRate"},
     ExitCode::NoFeature,
     "and 'lumivex features --module camera' what the camera has"},
    {{"set", "Width", "99999"}, ExitCode::FeatureValue, "Width takes at most 1280 now, not 99999"},
    {{"set", "Width", "wide"}, ExitCode::FeatureValue, "Width takes a whole number, not 'wide'"},
    {{"set", "WidthMax", "1"}, ExitCode::FeatureAccess, "WidthMax can only be read"},
    {{"set", "PixelFormat", "Mono9"}, ExitCode::FeatureValue, "did you mean Mono8"},
    {{"set", "GRB_TIMERA1_PULSE_COUNT", "2"}, ExitCode::FeatureAccess, "GRB_TIMERA1_PULSE_COUNT is locked now"},
    {{"set", "GRB_TIMERA1_SWTRIG"}, ExitCode::FeatureAccess, "GRB_TIMERA1_SWTRIG is locked now"},
    {{"set", "GRB_EXPOSE", "1"}, ExitCode::FeatureValue, "GRB_EXPOSE is a command"},
    {{"set", "GRB_CONFIG_FILE", std::string(1025, 'x')}, ExitCode::FeatureValue, "at most 1024 characters, not 1025"},
    // Nothing was chosen to be loaded: the Producer's own words must come through.
    {{"set", "GRB_CONFIG_FILE_LOAD"}, ExitCode::GenTL, "GCWritePort failed with "},
};
INSTANTIATE_TEST_SUITE_P(Table, LumivexSettingRefusal, testing::ValuesIn(kRefusals));

/// A camera that this process has, so that the program finds it busy.
class LumivexWithBusyCamera : public testing::Test {
 protected:
  LumivexWithBusyCamera() {
    const CCatalog catalog({SIMULATED_PRODUCER});
    const std::vector<CameraEntry> cameras = catalog.Cameras();
    const CameraEntry &camera = CCatalog::Select(cameras, "1");
    m_pDevice = std::make_shared<const CDevice>(camera.pInterface, camera.id, GenICam::Client::DEVICE_ACCESS_CONTROL);
  }

  std::shared_ptr<const CDevice> m_pDevice;
};

TEST_F(LumivexWithBusyCamera, FeaturesShowWhatIsLeft) {
  const ProgramEnd end = RunWithSimulation({"features", "1"});
  EXPECT_EQ(end.exitCode, 0);
  EXPECT_EQ(end.errors,
            "lumivex: camera 'LX-CXP-4-#1/Channel #1' is busy: opened for reading only, where some features are not "
            "available\n");
  EXPECT_TRUE(Holds(end.output, "  DeviceID                       r-  Channel #1\n")) << end.output;
  EXPECT_TRUE(Holds(end.output, "  Width                          --  (not available)\n")) << end.output;
  EXPECT_FALSE(Holds(end.output, "cannot be")) << end.output;
}

TEST_F(LumivexWithBusyCamera, GetOfUnavailableFeatureSaysWhy) {
  const ProgramEnd end = RunWithSimulation({"get", "Width", "--device", "1"});
  EXPECT_EQ(end.exitCode, static_cast<int>(ExitCode::FeatureAccess));
  EXPECT_EQ(end.errors, "lumivex: Width is not available now: the camera is busy, and was opened for reading only\n");
}

TEST_F(LumivexWithBusyCamera, GetOfAvailableFeatureWorks) {
  const ProgramEnd end = RunWithSimulation({"get", "DeviceModelName", "--device", "1"});
  EXPECT_EQ(end.exitCode, 0) << end.errors;
  EXPECT_EQ(end.errors, "");
  EXPECT_EQ(end.output, "LX-M1300\n");
}

TEST_F(LumivexWithBusyCamera, SetIsRefused) {
  const ProgramEnd end = RunWithSimulation({"set", "Width", "512", "--device", "1"});
  EXPECT_EQ(end.exitCode, static_cast<int>(ExitCode::DeviceBusy)) << end.errors;
}

TEST_F(LumivexWithBusyCamera, StreamSaysThatTheCameraIsBusy) {
  const ProgramEnd end = RunWithSimulation({"features", "--module", "stream", "1"});
  EXPECT_EQ(end.exitCode, static_cast<int>(ExitCode::DeviceBusy)) << end.errors;
  EXPECT_EQ(
      end.errors,
      "lumivex: camera 'LX-CXP-4-#1/Channel #1' is busy: another program has opened it, and only that one can open "
      "its stream\n");
}

// Its lines have their ends already.
TEST(LumivexFeaturesWithSimulation, ValueOfSeveralLinesEndsOnce) {
  const ProgramEnd end = RunWithSimulation({"get", "GRB_BOARD_PROPERTIES"});
  const std::vector<std::string> lines = Lines(end.output);
  ASSERT_GT(lines.size(), 1U) << end.output;
  EXPECT_NE(lines.back(), "");
}

// What only the settings bring about: 16 bits, and another size, from cameras of both revisions.
TEST(LumivexFeaturesWithSimulation, GrabTakesSettings) {
  const CTemporaryFolder folder;
  for (const std::string camera : {"1", "2"}) {
    const std::string file = folder.File(camera + ".png");
    const ProgramEnd end = RunWithSimulation(
        {"grab", "--set", "PixelFormat=Mono16", "--set", "Width=640", "--set", "Height=48", "-o", file, camera});
    ASSERT_EQ(end.exitCode, 0) << end.errors;
    EXPECT_EQ(end.errors, "");
    const PngFile png = ReadPng(file);
    EXPECT_EQ(png.bitDepth, 16U);
    EXPECT_EQ(png.channels, 1U);
    EXPECT_EQ(png.width, 640U);
    EXPECT_EQ(png.height, 48U);
    EXPECT_GT(*std::max_element(png.samples.begin(), png.samples.end()), 255U);
  }
}

// A lock that is set first holds for what is set behind it.
TEST(LumivexFeaturesWithSimulation, GrabTakesSettingsInTheirOrder) {
  const CTemporaryFolder folder;
  const ProgramEnd end =
      RunWithSimulation({"grab", "--set", "TLParamsLocked=1", "--set", "Width=640", "-o", folder.File("a.png")});
  EXPECT_EQ(end.exitCode, static_cast<int>(ExitCode::FeatureAccess));
  EXPECT_EQ(end.errors, "lumivex: Width is locked now\n");
  EXPECT_TRUE(folder.Names().empty());
}

TEST(LumivexFeaturesWithSimulation, FreeCameraComesFirst) {
  EXPECT_EQ(RunWithSimulation({"get", "DeviceID"}).output, "Channel #1\n");
}

TEST_F(LumivexWithBusyCamera, FreeCameraComesFirst) {
  EXPECT_EQ(RunWithSimulation({"get", "DeviceID"}).output, "Channel #2\n");
}

}  // namespace
