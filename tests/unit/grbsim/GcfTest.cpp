// SPDX-License-Identifier: MIT
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include <gtest/gtest.h>

#include "Grabber.h"

namespace {

class Gcf : public testing::Test {
 protected:
  Gcf() : m_Path((std::filesystem::path(getenv("LUMIVEX_SIM_LOCK_DIR")) / "channel.gcf").string()) {}
  ~Gcf() override { std::filesystem::remove(m_Path); }

  GRB_STATUS Save(const CGrabber &grabber, std::string path) {
    return GRB_Action(grabber.Handle(), GRB_ACTION_CONFIG, GRB_ACTION_CONFIG_SAVE, path.data());
  }
  static GRB_STATUS OpenWith(CGrabber &grabber, const std::string &path) {
    const char *text = path.c_str();
    EXPECT_EQ(GRB_ParameterSet(grabber.Handle(), GRB_OPEN_CONFIG_FILE, &text), GRB_OK);
    return grabber.Open(GRB_MODE_ACQ_ONLY, GRB_CHANNEL_1);
  }
  void Write(const std::string &text) { std::ofstream(m_Path, std::ios::binary) << text; }
  std::string Read() {
    std::ifstream file(m_Path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
  }

  const std::string m_Path;
};

TEST_F(Gcf, WhatIsSavedIsLoaded) {
  {
    CGrabber grabber(GRB_MODE_ACQ_ONLY, GRB_CHANNEL_1);
    EXPECT_EQ(grabber.Set(GRB_ROI_XLENGTH, 640), GRB_OK);
    EXPECT_EQ(grabber.Set(GRB_USR_FORMAT, GRB_USR_FORMAT_MONO12), GRB_OK);
    EXPECT_EQ(grabber.Set(GRB_CAMTRIG_SRC, GRB_CAMTRIG_SRC_SWTRIG_CHX), GRB_OK);
    EXPECT_EQ(grabber.Set64(GRB_TIMERA1_PERIOD_NS, 17179869000), GRB_OK);
    EXPECT_EQ(grabber.Set(GRB_CXP_BITRATE_MODE_NOW, GRB_CXP_BITRATE_MODE_CXP3), GRB_OK);
    ASSERT_EQ(Save(grabber, m_Path), GRB_OK);
  }
  const std::string text = Read();
  EXPECT_NE(text.find("[GRB_CONFIGURATION]\n"), std::string::npos);
  EXPECT_NE(text.find("GRB_ROI_XLENGTH = 0x280\n"), std::string::npos);
  EXPECT_EQ(text.find("GRB_REV_"), std::string::npos) << "what cannot be set does not belong in the file";
  EXPECT_EQ(text.find("GRB_DST_"), std::string::npos) << "destinations are no configuration";
  CGrabber grabber;
  ASSERT_EQ(OpenWith(grabber, m_Path), GRB_OK);
  EXPECT_EQ(grabber.Get(GRB_ROI_XLENGTH), 640U);
  EXPECT_EQ(grabber.Get(GRB_USR_FORMAT), GRB_USR_FORMAT_MONO12);
  EXPECT_EQ(grabber.Get(GRB_CAMTRIG_SRC), GRB_CAMTRIG_SRC_SWTRIG_CHX);
  EXPECT_EQ(grabber.Get64(GRB_TIMERA1_PERIOD_NS), 17179869000U);
  EXPECT_EQ(grabber.Get(GRB_CXP_BITRATE), GRB_CXP_BITRATE_MODE_CXP3);
  // The file counts for one opening.
  EXPECT_EQ(grabber.Close(), GRB_OK);
  ASSERT_EQ(GRB_Open(grabber.Handle()), GRB_OK);
  EXPECT_EQ(grabber.Get(GRB_ROI_XLENGTH), 1280U);
}

TEST_F(Gcf, BlankLinesCommentsAndDecimalNumbersAreRead) {
  Write("\n# a comment\r\n  [GRB_CONFIGURATION]\r\n\n  GRB_ROI_YLENGTH=480 \n# another\n");
  CGrabber grabber;
  ASSERT_EQ(OpenWith(grabber, m_Path), GRB_OK);
  EXPECT_EQ(grabber.Get(GRB_ROI_YLENGTH), 480U);
}

struct BadFile {
  const char *name;
  const char *content;  // null: there is no file
  const char *words;    // of the text that the hook gets
};

class BadGcf : public Gcf, public testing::WithParamInterface<BadFile> {};

TEST_P(BadGcf, FailsTheOpeningAndLeavesTheChannelFree) {
  if (GetParam().content != nullptr) {
    Write(GetParam().content);
  }
  CGrabber grabber;
  ClearHook();
  EXPECT_NE(OpenWith(grabber, m_Path), GRB_OK);
  EXPECT_EQ(LastHook().function, "GRB_Open");
  EXPECT_NE(LastHook().text.find(GetParam().words), std::string::npos) << LastHook().text;
  EXPECT_EQ(GRB_Open(grabber.Handle()), GRB_OK) << "the next opening is without the file";
  EXPECT_EQ(grabber.Get(GRB_ROI_XLENGTH), 1280U);
}

INSTANTIATE_TEST_SUITE_P(
    Table, BadGcf,
    testing::Values(
        BadFile{"missing", nullptr, "cannot be opened."}, BadFile{"empty", "", "is no GCF file."},
        BadFile{"other", "hello\n", "is no GCF file."}, BadFile{"binary", "\x7f\x45\x4c\x46", "is no GCF file."},
        BadFile{"noValue", "[GRB_CONFIGURATION]\nGRB_ROI_XLENGTH\n", "is malformed at line 2."},
        BadFile{"noNumber", "[GRB_CONFIGURATION]\nGRB_ROI_XLENGTH = wide\n", "is malformed at line 2."},
        BadFile{"trailing", "[GRB_CONFIGURATION]\nGRB_ROI_XLENGTH = 64 px\n", "is malformed at line 2."},
        BadFile{"refused", "[GRB_CONFIGURATION]\n\nGRB_ACQ_BLOCKING = 3\n", "not allowed for GRB_ACQ_BLOCKING"},
        BadFile{"tooWide", "[GRB_CONFIGURATION]\nGRB_ROI_XLENGTH = 0x100000040\n", "not allowed for GRB_ROI_XLENGTH"},
        BadFile{"unknown", "[GRB_CONFIGURATION]\nGRB_NOTHING = 1\n", "names an unknown parameter at line 2."},
        BadFile{"readOnly", "[GRB_CONFIGURATION]\nGRB_REV_SW = 1\n", "names an unknown parameter at line 2."}),
    [](const testing::TestParamInfo<BadFile> &row) { return row.param.name; });

TEST_F(Gcf, FolderIsNoFile) {
  CGrabber grabber;
  EXPECT_NE(OpenWith(grabber, std::filesystem::temp_directory_path().string()), GRB_OK);
}

TEST_F(Gcf, SaveToAPlaceThatCannotBeWrittenFails) {
  CGrabber grabber(GRB_MODE_ACQ_ONLY, GRB_CHANNEL_1);
  ClearHook();
  EXPECT_NE(Save(grabber, m_Path + "/below/a/file"), GRB_OK);
  EXPECT_EQ(LastHook().function, "GRB_Action");
  EXPECT_NE(LastHook().text.find("cannot be written."), std::string::npos) << LastHook().text;
  EXPECT_NE(Save(grabber, "/dev/full"), GRB_OK) << "a full disk";
  EXPECT_NE(Save(grabber, ""), GRB_OK);
}

TEST_F(Gcf, NullPathIsRefused) {
  CGrabber grabber;
  const char *text = nullptr;
  EXPECT_NE(GRB_ParameterSet(grabber.Handle(), GRB_OPEN_CONFIG_FILE, &text), GRB_OK);
  EXPECT_NE(GRB_ParameterSet(grabber.Handle(), GRB_OPEN_CONFIG_FILE, nullptr), GRB_OK);
}

}  // namespace
