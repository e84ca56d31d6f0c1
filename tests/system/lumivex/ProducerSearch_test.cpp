// SPDX-License-Identifier: MIT
#include "ProducerSearch.h"

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "CommandError.h"
#include "TemporaryFolder.h"

namespace Lumivex::Consumer {
namespace {

namespace fs = std::filesystem;

void Touch(const fs::path &file) { std::ofstream(file) << "x"; }

void ExpectNoProducer(const std::string &named, const std::string &list, const std::string &words) {
  try {
    ChooseProducerFiles(named, list);
    FAIL();
  } catch (const CCommandError &error) {
    EXPECT_EQ(error.Code(), ExitCode::NoProducer);
    EXPECT_NE(std::string(error.what()).find(words), std::string::npos) << error.what();
  }
}

TEST(ProducerSearch, SplitLeavesOutEmptyParts) {
  const std::vector<std::string> expected = {"/a", "/b c"};
  EXPECT_EQ(SplitPathList(":/a::/b c:", ':'), expected);
  EXPECT_TRUE(SplitPathList("", ':').empty());
}

TEST(ProducerSearch, FoldersInListOrderFilesByName) {
  const CTemporaryFolder first;
  const CTemporaryFolder second;
  for (const char *name : {"b.cti", "a.cti", "c.so", "cti", "d.CTI"}) {
    Touch(first.File(name));
  }
  Touch(second.File("0.cti"));
  const std::vector<fs::path> expected = {first.File("a.cti"), first.File("b.cti"), second.File("0.cti")};
  EXPECT_EQ(FindProducerFiles({first.Path(), "/no/such/folder", second.Path()}), expected);
}

// A folder named twice, or a link to a Producer, would show each camera twice.
TEST(ProducerSearch, SameFileIsFoundOnce) {
  const CTemporaryFolder folder;
  Touch(folder.File("a.cti"));
  fs::create_symlink(folder.File("a.cti"), folder.File("b.cti"));
  EXPECT_EQ(FindProducerFiles({folder.Path(), folder.Path()}).size(), 1U);
}

TEST(ProducerSearch, FoldersCalledLikeProducersAreNone) {
  const CTemporaryFolder folder;
  fs::create_directory(folder.File("a.cti"));
  EXPECT_TRUE(FindProducerFiles({folder.Path()}).empty());
}

// A bare file name handed to the loader would be looked for in the system's library folders.
TEST(ProducerSearch, NamedFileBecomesAbsolute) {
  const CTemporaryFolder folder;
  Touch(folder.File("a.cti"));
  const fs::path before = fs::current_path();
  fs::current_path(folder.Path());
  const auto files = ChooseProducerFiles("a.cti", "/elsewhere");
  fs::current_path(before);
  ASSERT_EQ(files.size(), 1U);
  EXPECT_TRUE(files.front().is_absolute());
  EXPECT_EQ(files.front().filename(), "a.cti");
}

TEST(ProducerSearch, NothingToLoadSaysWhy) {
  const CTemporaryFolder folder;
  ExpectNoProducer("", "", "GENICAM_GENTL64_PATH is not set, or empty");
  ExpectNoProducer("", folder.Path(), "no .cti file in the folders of GENICAM_GENTL64_PATH");
  ExpectNoProducer(folder.File("a.cti"), "", "there is no file");
  ExpectNoProducer(folder.Path(), "", "is a folder");
}

}  // namespace
}  // namespace Lumivex::Consumer
