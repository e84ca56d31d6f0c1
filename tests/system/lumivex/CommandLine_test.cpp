// SPDX-License-Identifier: MIT
#include "CommandLine.h"

#include <string>

#include <gtest/gtest.h>

namespace {

using Lumivex::Consumer::ExplainFault;

// No other fault of an option's arguments may be told as a missing value.
TEST(CommandLine, OnlyAMissingValueIsToldAsOne) {
  const CLI::App app;
  EXPECT_EQ(ExplainFault(app, CLI::ArgumentMismatch::TypedAtLeast("--count", 1, "N")),
            "--count needs a value; see lumivex --help");
  const auto other = CLI::ArgumentMismatch::FlagOverride("--verbose");
  EXPECT_EQ(ExplainFault(app, other), std::string(other.what()) + "; see lumivex --help");
}

}  // namespace
