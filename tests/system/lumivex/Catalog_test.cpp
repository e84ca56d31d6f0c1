// SPDX-License-Identifier: MIT
#include "Catalog.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "ListCommand.h"

namespace Lumivex::Consumer {
namespace {

CameraEntry Camera(size_t number, const std::string &board, const std::string &id, const std::string &name,
                   GenTL::DEVICE_ACCESS_STATUS status = GenTL::DEVICE_ACCESS_STATUS_READWRITE) {
  return {number, nullptr, board, "Name of " + board, id, name, "Maker", "Model", status};
}

const std::vector<CameraEntry> kCameras = {
    Camera(1, "A", "Channel #1", "first", GenTL::DEVICE_ACCESS_STATUS_NOACCESS),
    Camera(2, "A", "Channel #2", "second"),
    Camera(3, "B", "Channel #1", "third"),
    Camera(4, "B", "3", "fourth"),
};

struct Choice {
  const char *wish;
  size_t number;
};

class CatalogChoice : public testing::TestWithParam<Choice> {};

TEST_P(CatalogChoice, FindsCamera) { EXPECT_EQ(CCatalog::Select(kCameras, GetParam().wish).number, GetParam().number); }

constexpr Choice kChoices[] = {
    {"", 2},  // the first that is free
    {"Channel #2", 2},
    {"third", 3},
    {"B/Channel #1", 3},
    {"Name of B/Channel #1", 3},
    {"B/fourth", 4},
    {"Name of A/second", 2},
    {"2", 2},
    {"3", 4},  // a name goes before a number
    {"4", 4},
};
INSTANTIATE_TEST_SUITE_P(Table, CatalogChoice, testing::ValuesIn(kChoices));

struct Refusal {
  const char *wish;
  ExitCode code;
  const char *words;
};

class CatalogRefusal : public testing::TestWithParam<Refusal> {};

TEST_P(CatalogRefusal, SaysWhy) {
  try {
    CCatalog::Select(kCameras, GetParam().wish);
    FAIL();
  } catch (const CCommandError &error) {
    EXPECT_EQ(error.Code(), GetParam().code);
    EXPECT_NE(std::string(error.what()).find(GetParam().words), std::string::npos) << error.what();
  }
}

constexpr Refusal kRefusals[] = {
    {"Channel #9", ExitCode::NoDevice, "no camera 'Channel #9' found"},
    {"0", ExitCode::NoDevice, "no camera '0' found"},
    {"5", ExitCode::NoDevice, "no camera '5' found"},
    {"Channel #1", ExitCode::NoDevice, "fits several cameras: 'A/Channel #1', 'B/Channel #1'"},
    {"first", ExitCode::DeviceBusy, "camera 'A/Channel #1' is busy"},
    {"1", ExitCode::DeviceBusy, "is busy"},
};
INSTANTIATE_TEST_SUITE_P(Table, CatalogRefusal, testing::ValuesIn(kRefusals));

TEST(Catalog, WithoutCamerasThereIsNothingToSelect) {
  try {
    CCatalog::Select({}, "");
    FAIL();
  } catch (const CCommandError &error) {
    EXPECT_EQ(error.Code(), ExitCode::NoDevice);
    EXPECT_STREQ(error.what(), "no camera found");
  }
}

TEST(Catalog, AllBusyIsTold) {
  try {
    CCatalog::Select({kCameras[0], kCameras[0]}, "");
    FAIL();
  } catch (const CCommandError &error) {
    EXPECT_EQ(error.Code(), ExitCode::DeviceBusy);
    EXPECT_STREQ(error.what(), "no camera is free: all 2 are busy");
  }
}

TEST(Catalog, OnlyCameraBusyIsTold) {
  try {
    CCatalog::Select({kCameras[0]}, "");
    FAIL();
  } catch (const CCommandError &error) {
    EXPECT_EQ(error.Code(), ExitCode::DeviceBusy);
    EXPECT_STREQ(error.what(), "the only camera, 'A/Channel #1', is busy");
  }
}

// Line breaks and control characters of a Producer must not reach the terminal.
TEST(List, ShowsProducersBoardsAndCameras) {
  const std::vector<ProducerEntry> producers = {
      {"/p/a.cti", "Producer A", "1.0", {{"A", "Board A", {kCameras[0], kCameras[1]}}, {"E", "Board E", {}}}},
      {"/p/b.cti", "Producer\nB\x1B[2J", "2.0\r", {}},
  };
  const std::vector<std::string> expected = {
      "Producer Producer A 1.0 (/p/a.cti)",
      "  Board A (Board A)",
      "    No.  Camera      Access      Vendor  Model  Name",
      "    1    Channel #1  busy        Maker   Model  first",
      "    2    Channel #2  read/write  Maker   Model  second",
      "  Board E (Board E)",
      "    no cameras",
      "Producer Producer B?[2J 2.0 (/p/b.cti)",
      "  no boards",
  };
  EXPECT_EQ(FormatCatalog(producers), expected);
}

}  // namespace
}  // namespace Lumivex::Consumer
