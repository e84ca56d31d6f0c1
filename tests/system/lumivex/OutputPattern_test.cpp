// SPDX-License-Identifier: MIT
#include "OutputPattern.h"

#include <cstdint>
#include <string>

#include <gtest/gtest.h>

#include "CommandError.h"

namespace Lumivex::Consumer {
namespace {

struct GoodPattern {
  const char *pattern;
  uint64_t count;
  uint64_t number;
  const char *name;
};

class GoodOutputPattern : public testing::TestWithParam<GoodPattern> {};

TEST_P(GoodOutputPattern, GivesName) {
  EXPECT_EQ(COutputPattern(GetParam().pattern, GetParam().count).Name(GetParam().number), GetParam().name);
}

constexpr GoodPattern kGood[] = {
    {"frame-%03d.png", 9, 7, "frame-007.png"},
    {"frame-%03d.png", 9, 1234, "frame-1234.png"},  // longer numbers are not cut
    {"%d", 2, 1, "1"},
    {"%3d.png", 2, 7, "  7.png"},
    {"%0d.png", 2, 7, "7.png"},
    {"100%%-%d.png", 2, 7, "100%-7.png"},
    {"%d-100%%", 2, 7, "7-100%"},
    {"%%d-%d", 2, 7, "%d-7"},  // an escaped sign opens no place
    {"single.png", 1, 1, "single.png"},
    {"a/b/%02d.png", 1, 1, "a/b/01.png"},
};
INSTANTIATE_TEST_SUITE_P(Table, GoodOutputPattern, testing::ValuesIn(kGood));

struct BadPattern {
  const char *pattern;
  uint64_t count;
};

class BadOutputPattern : public testing::TestWithParam<BadPattern> {};

TEST_P(BadOutputPattern, IsUsageError) {
  try {
    const COutputPattern pattern(GetParam().pattern, GetParam().count);
    FAIL() << GetParam().pattern;
  } catch (const CCommandError &error) {
    EXPECT_EQ(error.Code(), ExitCode::Usage);
  }
}

constexpr BadPattern kBad[] = {
    {"", 1},        {"same.png", 2}, {"%d-%d.png", 2},
    {"%s.png", 1},  {"%n.png", 1},   {"%", 1},
    {"a%", 1},      {"%0", 1},       {"%-3d", 1},
    {"%+d", 1},     {"%5.3d", 1},    {"%ld", 1},
    {"%*d", 1},     {"%x", 2},       {"%100d", 1},
    {"%1$d", 1},    {"%d %s", 1},    {"%%d", 2},
    {"% d.png", 2}, {"%#d", 1},      {"%99999999999999999999d", 1},
};
INSTANTIATE_TEST_SUITE_P(Table, BadOutputPattern, testing::ValuesIn(kBad));

}  // namespace
}  // namespace Lumivex::Consumer
