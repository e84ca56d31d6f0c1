// SPDX-License-Identifier: MIT
// The words of a library failure: how the hooks put them together and for whom they are kept.
#include "GrbError.h"

#include <thread>

#include "GrabberFixture.h"
#include "GrbUtility.h"

namespace GrabberTests {
namespace {

using GrbErrorText = GrabberTest;

constexpr const char *kNothingSaid = "No description of error provided by GRB library.";

TEST_F(GrbErrorText, IsPutTogetherFromTheHooksArguments) {
  const struct {
    const char *function;
    GRB_STATUS status;
    const char *description;
    std::string text;
  } kRows[] = {
      {"GRB_Open", 0x8ABC, "Words.", "Words. (GRB_Open returned error code 0x8abc)"},
      {"GRB_Open", 0, "Words.", "Words. (GRB_Open returned error code 0x0)"},
      {"GRB_Open", 0xFFFFFFFF, "Words.", "Words. (GRB_Open returned error code 0xffffffff)"},
      {"GRB_Open", 0x10, nullptr, std::string(kNothingSaid) + " (GRB_Open returned error code 0x10)"},
      {nullptr, 0x10, "Words.", "Words."},
      {nullptr, 0x10, nullptr, kNothingSaid},
      {"", 1, "", " ( returned error code 0x1)"},
  };
  for (const auto &row : kRows) {
    GrbErrorHook(row.function, row.status, row.description);
    EXPECT_EQ(Words(), row.text);
  }
}

// Nothing cuts a long description: only formatted messages have a bound.
TEST_F(GrbErrorText, KeepsLongDescriptionsWhole) {
  const std::string description(5000, 'x');
  GrbErrorHook("GRB_Open", 1, description.c_str());
  EXPECT_EQ(Words(), description + " (GRB_Open returned error code 0x1)");
}

TEST_F(GrbErrorText, IsReplacedNotAppended) {
  GrbErrorHook("A", 1, "First.");
  GrbErrorHook("B", 2, "Second.");
  EXPECT_EQ(Words(), "Second. (B returned error code 0x2)");
}

// Nothing clears it either.
TEST_F(GrbErrorText, StaysThroughSuccessfulCalls) {
  GrbErrorHook("A", 1, "First.");
  GRB_HANDLE handle = 0;
  EXPECT_EQ(GRB_Create(&handle, &GrbErrorHook), GRB_OK);
  EXPECT_EQ(GRB_Destroy(&handle), GRB_OK);
  EXPECT_EQ(Words(), "First. (A returned error code 0x1)");
}

TEST_F(GrbErrorText, IsEmptyOnAFreshThread) {
  GrbErrorHook("A", 1, "First.");
  std::thread([] { EXPECT_EQ(CGrbError::GetText(), ""); }).join();
}

TEST_F(GrbErrorText, BelongsToItsThread) {
  GrbErrorHook("A", 1, "Mine.");
  std::thread([] {
    GrbErrorHook("B", 2, "Theirs.");
    EXPECT_EQ(CGrbError::GetText(), "Theirs. (B returned error code 0x2)");
  }).join();
  EXPECT_EQ(Words(), "Mine. (A returned error code 0x1)");
}

TEST_F(GrbErrorText, VerboseHookTellsTheLibrarysHandlerFirst) {
  GrbErrorHookVerbose("GRB_Open", 0x8ABC, "Words.");
  EXPECT_EQ(Script().Trace(), (Lines{"ErrHandlerDefault(\"GRB_Open\", 0x8abc, \"Words.\")"}));
  EXPECT_EQ(Words(), "Words. (GRB_Open returned error code 0x8abc)");
  std::string before;
  Script().On(Match(Op::ErrHandlerDefault), Reply::Pass().Do([&before](const Call &) { before = Words(); }));
  GrbErrorHookVerbose(nullptr, 1, nullptr);
  EXPECT_EQ(Script().Trace().back(), "ErrHandlerDefault(\"null\", 0x1, \"null\")");
  EXPECT_EQ(before, "Words. (GRB_Open returned error code 0x8abc)");
  EXPECT_EQ(Words(), kNothingSaid);
}

TEST_F(GrbErrorText, PlainHookTellsNobody) {
  GrbErrorHook("GRB_Open", 1, "Words.");
  EXPECT_EQ(Script().Trace(), Lines());
}

}  // namespace
}  // namespace GrabberTests
