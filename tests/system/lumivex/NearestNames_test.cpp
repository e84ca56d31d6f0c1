// SPDX-License-Identifier: MIT
#include "NearestNames.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace Lumivex::Consumer {
namespace {

using Names = std::vector<std::string>;

TEST(EditDistance, CountsWhatHasToChange) {
  EXPECT_EQ(EditDistance("", ""), 0U);
  EXPECT_EQ(EditDistance("Width", ""), 5U);
  EXPECT_EQ(EditDistance("", "Width"), 5U);
  EXPECT_EQ(EditDistance("Width", "Width"), 0U);
  EXPECT_EQ(EditDistance("Wdth", "Width"), 1U);
  EXPECT_EQ(EditDistance("Wxdth", "Width"), 1U);
  EXPECT_EQ(EditDistance("Widtth", "Width"), 1U);
  EXPECT_EQ(EditDistance("kitten", "sitting"), 3U);
}

TEST(EditDistance, SwappedNeighboursAreOneSlip) { EXPECT_EQ(EditDistance("Widht", "Width"), 1U); }

TEST(EditDistance, CapitalsAreNoSlip) { EXPECT_EQ(EditDistance("GRB_Expose", "GRB_EXPOSE"), 0U); }

const Names kNames = {"Width", "WidthMax", "Height", "PixelFormat", "IncomingPixelFormat", "GRB_EXPOSE"};

TEST(NearestNames, NearestFirst) { EXPECT_EQ(NearestNames("Widht", kNames).at(0), "Width"); }

TEST(NearestNames, PartOfANameIsNear) {
  EXPECT_EQ(NearestNames("expose", kNames), (Names{"GRB_EXPOSE"}));
  EXPECT_EQ(NearestNames("pixelformat", kNames), (Names{"PixelFormat", "IncomingPixelFormat"}));
}

TEST(NearestNames, NothingNearIsNothing) {
  EXPECT_TRUE(NearestNames("Temperature", kNames).empty());
  EXPECT_TRUE(NearestNames("", kNames).empty());
  EXPECT_TRUE(NearestNames("Width", {}).empty());
}

TEST(NearestNames, AtMostThreeAndNoneTwice) {
  EXPECT_EQ(NearestNames("Mono9", {"Mono8", "Mono8", "Mono7", "Mono6", "Mono5"}).size(), 3U);
}

TEST(DidYouMean, ReadsAsASentence) {
  EXPECT_EQ(DidYouMean("Abcd", {"Abce"}), "; did you mean Abce?");
  EXPECT_EQ(DidYouMean("Abcd", {"Abce", "Abcf"}), "; did you mean Abce or Abcf?");
  EXPECT_EQ(DidYouMean("Abcd", {"Abce", "Abcf", "Abcg"}), "; did you mean Abce, Abcf or Abcg?");
  EXPECT_EQ(DidYouMean("Abcd", {"Wxyz"}), "");
}

}  // namespace
}  // namespace Lumivex::Consumer
