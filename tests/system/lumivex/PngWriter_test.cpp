// SPDX-License-Identifier: MIT
#include "PngWriter.h"

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "CommandError.h"
#include "ReadPng.h"
#include "TemporaryFolder.h"

namespace Lumivex::Consumer {
namespace {

namespace fs = std::filesystem;
using Names = std::vector<std::string>;

const Picture kGrey8 = {3, 2, 1, 8, 8, "Mono8", {0, 1, 2, 253, 254, 255}};
const Picture kGrey16 = {2, 1, 1, 16, 12, "Mono12", {0xAB, 0xCA, 0x00, 0x01}};
const Picture kColour8 = {1, 2, 3, 8, 8, "RGB8", {1, 2, 3, 4, 5, 6}};

void ExpectRefused(const fs::path &target) {
  try {
    const CPngWriter writer(target);
    FAIL() << target;
  } catch (const CCommandError &error) {
    EXPECT_EQ(error.Code(), ExitCode::Output);
    EXPECT_EQ(std::string(error.what()).find("cannot write '" + target.string() + "'"), 0U) << error.what();
  }
}

TEST(PngWriter, WritesGreyOf8Bits) {
  const CTemporaryFolder folder;
  CPngWriter(folder.File("a.png")).Write(kGrey8);
  const PngFile png = ReadPng(folder.File("a.png"));
  EXPECT_EQ(png.width, 3U);
  EXPECT_EQ(png.height, 2U);
  EXPECT_EQ(png.bitDepth, 8U);
  EXPECT_EQ(png.channels, 1U);
  EXPECT_EQ(png.samples, (std::vector<unsigned>{0, 1, 2, 253, 254, 255}));
}

TEST(PngWriter, WritesGreyOf16BitsAndTellsTheSource) {
  const CTemporaryFolder folder;
  CPngWriter(folder.File("a.png")).Write(kGrey16);
  const PngFile png = ReadPng(folder.File("a.png"));
  EXPECT_EQ(png.bitDepth, 16U);
  EXPECT_EQ(png.significantBits, 12U);
  EXPECT_EQ(png.samples, (std::vector<unsigned>{0xABCA, 0x0001}));
}

TEST(PngWriter, WritesColour) {
  const CTemporaryFolder folder;
  CPngWriter(folder.File("a.png")).Write(kColour8);
  const PngFile png = ReadPng(folder.File("a.png"));
  EXPECT_EQ(png.channels, 3U);
  EXPECT_EQ(png.samples, (std::vector<unsigned>{1, 2, 3, 4, 5, 6}));
}

TEST(PngWriter, LeavesOnlyThePicture) {
  const CTemporaryFolder folder;
  CPngWriter(folder.File("a.png")).Write(kGrey8);
  EXPECT_EQ(folder.Names(), Names{"a.png"});
}

TEST(PngWriter, DroppedWriterLeavesNothing) {
  const CTemporaryFolder folder;
  { const CPngWriter writer(folder.File("a.png")); }
  EXPECT_EQ(folder.Names(), Names{});
}

TEST(PngWriter, FailureLeavesTheOldFile) {
  const CTemporaryFolder folder;
  CPngWriter(folder.File("a.png")).Write(kGrey8);
  Picture impossible = kGrey8;
  impossible.width = 0;
  EXPECT_THROW(CPngWriter(folder.File("a.png")).Write(impossible), CCommandError);
  EXPECT_EQ(folder.Names(), Names{"a.png"});
  EXPECT_EQ(ReadPng(folder.File("a.png")).width, 3U);
}

TEST(PngWriter, TakesThePlaceOfAnOldFile) {
  const CTemporaryFolder folder;
  std::ofstream(folder.File("a.png")) << "old";
  CPngWriter(folder.File("a.png")).Write(kGrey8);
  EXPECT_EQ(ReadPng(folder.File("a.png")).width, 3U);
}

// A rename onto the link itself would cut the user's link.
TEST(PngWriter, WritesThroughALink) {
  const CTemporaryFolder folder;
  std::ofstream(folder.File("real.png")) << "old";
  fs::create_symlink("real.png", folder.File("link.png"));
  CPngWriter(folder.File("link.png")).Write(kGrey8);
  EXPECT_TRUE(fs::is_symlink(folder.File("link.png")));
  EXPECT_EQ(ReadPng(folder.File("real.png")).width, 3U);
}

TEST(PngWriter, WritesBesideLeftovers) {
  const CTemporaryFolder folder;
  const CPngWriter other(folder.File("b.png"));
  CPngWriter(folder.File("a.png")).Write(kGrey8);
  EXPECT_EQ(ReadPng(folder.File("a.png")).width, 3U);
}

// Run by the super-user, a rename onto a device would replace the device.
TEST(PngWriter, RefusesWhatIsNoFile) {
  const CTemporaryFolder folder;
  ExpectRefused("/dev/null");
  ExpectRefused(folder.Path());
  ExpectRefused(folder.Path() / "");
  ExpectRefused(folder.File("missing/a.png"));
  std::ofstream(folder.File("file")) << "x";
  ExpectRefused(folder.File("file/a.png"));
}

TEST(PngWriter, FullDiskIsToldAndLeavesNothing) {
  const CTemporaryFolder folder;
  fs::create_symlink("/dev/full", folder.File("a.png"));
  ExpectRefused(folder.File("a.png"));
  EXPECT_EQ(folder.Names(), Names{"a.png"});
}

}  // namespace
}  // namespace Lumivex::Consumer
