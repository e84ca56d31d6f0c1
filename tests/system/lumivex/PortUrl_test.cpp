// SPDX-License-Identifier: MIT
#include "PortUrl.h"

#include <string>

#include <gtest/gtest.h>

namespace Lumivex::Consumer {
namespace {

struct LocalUrl {
  std::string text;
  std::string name;
  uint64_t address;
  uint64_t size;
};

class LocalPortUrl : public testing::TestWithParam<LocalUrl> {};

TEST_P(LocalPortUrl, IsTakenApart) {
  const auto url = ParsePortUrl(GetParam().text);
  ASSERT_TRUE(url);
  EXPECT_TRUE(url->local);
  EXPECT_EQ(url->name, GetParam().name);
  EXPECT_EQ(url->address, GetParam().address);
  EXPECT_EQ(url->size, GetParam().size);
}

const LocalUrl kLocalUrls[] = {
    {"Local:a.xml;1000;20", "a.xml", 0x1000, 0x20},
    {"LOCAL:a.zip;0xFF;1A", "a.zip", 0xFF, 0x1A},
    {"local:///a.xml;0;1?SchemaVersion=1.0.0", "a.xml", 0, 1},
    {"Local:a b.xml;FFFFFFFFFFFFFFFF;1", "a b.xml", 0xFFFFFFFFFFFFFFFF, 1},
};
INSTANTIATE_TEST_SUITE_P(Table, LocalPortUrl, testing::ValuesIn(kLocalUrls));

struct FileUrl {
  std::string text;
  std::string path;
};

class FilePortUrl : public testing::TestWithParam<FileUrl> {};

TEST_P(FilePortUrl, GivesThePath) {
  const auto url = ParsePortUrl(GetParam().text);
  ASSERT_TRUE(url);
  EXPECT_FALSE(url->local);
  EXPECT_EQ(url->name, GetParam().path);
}

const FileUrl kFileUrls[] = {
    {"file:///a/b.xml", "/a/b.xml"},    {"File:///a%20b.xml?SchemaVersion=1.0.0", "/a b.xml"},
    {"file:////a//b.xml", "/a//b.xml"}, {"file://host/a.xml", "//host/a.xml"},
    {"file:///C:/a.xml", "C:/a.xml"},   {"file:a.xml", "a.xml"},
};
INSTANTIATE_TEST_SUITE_P(Table, FilePortUrl, testing::ValuesIn(kFileUrls));

class BadPortUrl : public testing::TestWithParam<std::string> {};

TEST_P(BadPortUrl, IsRefused) { EXPECT_FALSE(ParsePortUrl(GetParam())); }

INSTANTIATE_TEST_SUITE_P(Table, BadPortUrl,
                         testing::Values("", "local:", "local:a.xml", "local:a.xml;10", "local:a.xml;;",
                                         "local:a.xml;x;1", "local:a.xml;1;-1", "local:a.xml;1;11111111111111111",
                                         "http://a/b.xml", "file:"));

}  // namespace
}  // namespace Lumivex::Consumer
