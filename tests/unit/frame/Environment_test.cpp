// SPDX-License-Identifier: MIT
#include <optional>
#include <ostream>
#include <string>

#include <gtest/gtest.h>

#include "Helper.h"
#include "Producer.h"
#include "TLIException.h"

using GenICam::Client::ReplaceEnvironmentVariables;
using GenICam::Client::unknown_error;
using TestSupport::CScopedVariable;

namespace {

constexpr const char *kA = "LUMIVEX_TEST_A";
constexpr const char *kB = "LUMIVEX_TEST_B";
constexpr const char *kAbsent = "LUMIVEX_TEST_ABSENT";

struct Row {
  const char *text;
  bool replaceSpaces;
  const char *result;
};
std::ostream &operator<<(std::ostream &out, const Row &row) { return out << '"' << row.text << '"'; }

class EnvironmentText : public testing::TestWithParam<Row> {};

TEST_P(EnvironmentText, IsReplaced) {
  const CScopedVariable a(kA, std::string("alpha beta"));
  const CScopedVariable b(kB, std::string("gamma"));
  EXPECT_EQ(GetParam().result, ReplaceEnvironmentVariables(GetParam().text, GetParam().replaceSpaces));
}

constexpr Row kRows[] = {
    {"", false, ""},
    {"", true, ""},
    {"plain", false, "plain"},
    {"a b", false, "a b"},
    {"a b", true, "a%20b"},
    {"  a  b ", true, "%20%20a%20%20b%20"},
    {"a%20b", true, "a%20b"},
    {"$(LUMIVEX_TEST_B)", false, "gamma"},
    {"x/$(LUMIVEX_TEST_B)/y", false, "x/gamma/y"},
    // Only the first variable, and then the blanks stay, those of the content too.
    {"$(LUMIVEX_TEST_A)$(LUMIVEX_TEST_B)", false, "alpha beta$(LUMIVEX_TEST_B)"},
    {"$(LUMIVEX_TEST_B) b", true, "gamma b"},
    {"$(LUMIVEX_TEST_A) b", true, "alpha beta b"},
    {"$(LUMIVEX_TEST_B)$(", false, "gamma$("},
    {"$(LUMIVEX_TEST_B", false, "$(LUMIVEX_TEST_B"},
    {"$(LUMIVEX TEST", true, "$(LUMIVEX%20TEST"},
    {") $(open", true, ")%20$(open"},
    {"$LUMIVEX_TEST_B)", false, "$LUMIVEX_TEST_B)"},
    {"$ (LUMIVEX_TEST_B)", false, "$ (LUMIVEX_TEST_B)"},
};

INSTANTIATE_TEST_SUITE_P(Rows, EnvironmentText, testing::ValuesIn(kRows));

std::string FailureOf(const std::string &text) {
  try {
    ReplaceEnvironmentVariables(text, false);
  } catch (const unknown_error &failure) {
    return failure.GetDescription();
  }
  return "nothing thrown";
}

TEST(Environment, AbsentVariableFailsWithItsName) {
  const CScopedVariable none(kAbsent, std::nullopt);
  EXPECT_EQ("Environment variable 'LUMIVEX_TEST_ABSENT' not found", FailureOf("x $(LUMIVEX_TEST_ABSENT) y"));
}

TEST(Environment, NameIsWhatStandsBetweenTheBrackets) {
  EXPECT_EQ("Environment variable 'LUMIVEX $(B' not found", FailureOf("$(LUMIVEX $(B)"));
  EXPECT_EQ("Environment variable '' not found", FailureOf("$()"));
}

TEST(Environment, EmptyVariableIsAnUnknownError) {
  const CScopedVariable a(kA, std::string());
  EXPECT_EQ("Unknown error 0 while reading environment variable 'LUMIVEX_TEST_A'", FailureOf("$(LUMIVEX_TEST_A)"));
}

TEST(Environment, ContentOf254And255CharactersFits) {
  for (const size_t length : {size_t{254}, size_t{255}}) {
    const std::string content(length, 'c');
    const CScopedVariable a(kA, content);
    EXPECT_EQ("<" + content + ">", ReplaceEnvironmentVariables("<$(LUMIVEX_TEST_A)>", false)) << length;
  }
}

// One character more needs 257 bytes with its terminator: a result that is not 256 passes the test unnoticed.
TEST(Environment, LongerContentPassesUnnoticed) {
  const CScopedVariable a(kA, std::string(300, 'c'));
  std::string result;
  EXPECT_NO_THROW(result = ReplaceEnvironmentVariables("<$(LUMIVEX_TEST_A)>", false));
  ASSERT_GE(result.size(), 2U);
  EXPECT_EQ('<', result.front());
  EXPECT_EQ('>', result.back());
}

}  // namespace
