// SPDX-License-Identifier: MIT
// Conversions of enumeration values: both ways, and what they do not know.
#include <cstdio>

#include "GrabberFixture.h"
#include "GrbUtility.h"
#include "grbhelper.h"

namespace GrabberTests {
namespace {

struct Pair {
  uint32_t from;
  uint32_t to;
};

std::string Format(const char *format, uint32_t value) {
  char text[128];
  std::snprintf(text, sizeof(text), format, value);
  return text;
}

TEST(GrbUtility, BoardValuesHaveNumbers) {
  for (uint32_t number = 1; number <= 7; ++number) {
    EXPECT_EQ(CGrbUtility::GrbBoardEnumValueToInt(0xC0010000 + number), number);
  }
}

TEST(GrbUtility, OtherBoardValuesThrow) {
  for (const uint32_t value : {0xC0010000U, 0xC0010008U, 0U, 1U, 0xFFFFFFFFU}) {
    EXPECT_TRUE(Throws<unknown_error>(Format("Unknown board number: %x", value),
                                      "GenICam::Client::CGrbUtility::GrbBoardEnumValueToInt",
                                      [=] { CGrbUtility::GrbBoardEnumValueToInt(value); }));
  }
}

constexpr Pair kChannels[] = {{0xC0010010, 1}, {0xC0010020, 2}, {0xC0010021, 3}, {0xC0010022, 4},
                              {0xC0010023, 5}, {0xC0010024, 6}, {0xC0010025, 7}};

TEST(GrbUtility, ChannelValuesHaveNumbers) {
  for (const Pair &row : kChannels) {
    EXPECT_EQ(CGrbUtility::GrbChannelEnumValueToInt(row.from), row.to);
  }
}

// The eighth channel has none, though the searches try it.
TEST(GrbUtility, OtherChannelValuesThrow) {
  for (const uint32_t value : {0xC0010026U, 0xC001000FU, 0xC0010011U, 0xC001001FU, 0U, 1U, 0xFFFFFFFFU}) {
    EXPECT_TRUE(Throws<unknown_error>(Format("Unknown channel number: %x", value),
                                      "GenICam::Client::CGrbUtility::GrbChannelEnumValueToInt",
                                      [=] { CGrbUtility::GrbChannelEnumValueToInt(value); }));
  }
}

constexpr Pair kLinks[] = {{1, 0xC0091202}, {2, 0xC0091203}, {4, 0xC0091204}};

// Every other bit may stand as it likes.
TEST(GrbUtility, LinkCountsBecomeDiscoveryModes) {
  for (const Pair &row : kLinks) {
    for (const uint32_t others : {0U, 0xFFF8FFFFU, 0x00080000U, 0x0000FFFFU}) {
      EXPECT_EQ(CGrbUtility::GetCXPDiscoveryModeGrbParam(row.from << 16U | others), row.to);
    }
  }
}

TEST(GrbUtility, OtherLinkCountsThrow) {
  for (const uint32_t links : {0U, 3U, 5U, 6U, 7U}) {
    EXPECT_TRUE(Throws<invalidparameter_error>(Format("Invalid configuration: invalid number of links: %u", links),
                                               "GenICam::Client::CGrbUtility::GetCXPDiscoveryModeGrbParam", [=] {
                                                 CGrbUtility::GetCXPDiscoveryModeGrbParam(links << 16U | 0xFFF80028U);
                                               }));
  }
}

constexpr Pair kSpeeds[] = {{40, 0xC0091002}, {48, 0xC0091003}, {56, 0xC0091004}, {64, 0xC0091005}, {72, 0xC0091006}};

TEST(GrbUtility, SpeedsBecomeBitrateModes) {
  for (const Pair &row : kSpeeds) {
    for (const uint32_t others : {0U, 0xFFFFFF00U, 0x00010000U}) {
      EXPECT_EQ(CGrbUtility::GetCXPBitrateModeGrbParam(row.from | others), row.to);
    }
  }
}

TEST(GrbUtility, OtherSpeedsThrow) {
  for (uint32_t speed = 0; speed < 256; ++speed) {
    if (speed >= 40 && speed <= 72 && speed % 8 == 0) {
      continue;
    }
    EXPECT_TRUE(Throws<invalidparameter_error>(Format("Invalid configuration: invalid CXP speed: %u", speed),
                                               "GenICam::Client::CGrbUtility::GetCXPBitrateModeGrbParam",
                                               [=] { CGrbUtility::GetCXPBitrateModeGrbParam(speed | 0x00012800U); }));
  }
}

constexpr Pair kDecimations[] = {{1, 0xC0020701}, {2, 0xC0020702}, {4, 0xC0020703}, {8, 0xC0020704}};

TEST(GrbHelper, DecimationsConvertBothWays) {
  for (const Pair &row : kDecimations) {
    EXPECT_EQ(CGRBHelper::ConvertInt2GrbDecimation(row.from), row.to);
    EXPECT_EQ(CGRBHelper::ConvertGrbDecimation2Int(row.to), row.from);
  }
}

TEST(GrbHelper, OtherDecimationsThrow) {
  for (const uint32_t value : {0U, 3U, 5U, 16U, 0xC0020701U, 0xFFFFFFFFU}) {
    EXPECT_TRUE(Throws<unknown_error>(Format("Unknown or unsupported decimation value 0x%08X", value),
                                      "GenICam::Client::CGRBHelper::ConvertInt2GrbDecimation",
                                      [=] { CGRBHelper::ConvertInt2GrbDecimation(value); }));
  }
  for (const uint32_t value : {0U, 1U, 0xC0020700U, 0xC0020705U, 0xFFFFFFFFU}) {
    EXPECT_TRUE(Throws<unknown_error>(Format("Unknown or unsupported decimation value 0x%08X", value),
                                      "GenICam::Client::CGRBHelper::ConvertGrbDecimation2Int",
                                      [=] { CGRBHelper::ConvertGrbDecimation2Int(value); }));
  }
}

constexpr Pair kScanTypes[] = {{0, 0xC0021901}, {1, 0xC0021903}};

TEST(GrbHelper, ScanTypesConvertBothWays) {
  for (const Pair &row : kScanTypes) {
    EXPECT_EQ(CGRBHelper::ConvertGenICamScanType2Grb(row.from), row.to);
    EXPECT_EQ(CGRBHelper::ConvertGrbScanType2GenICam(row.to), row.from);
  }
}

TEST(GrbHelper, OtherScanTypesThrow) {
  for (const uint32_t value : {2U, 0xC0021901U, 0xFFFFFFFFU}) {
    EXPECT_TRUE(Throws<unknown_error>(Format("Unknown or unsupported scantype value 0x%08X", value),
                                      "GenICam::Client::CGRBHelper::ConvertGenICamScanType2Grb",
                                      [=] { CGRBHelper::ConvertGenICamScanType2Grb(value); }));
  }
  for (const uint32_t value : {0U, 1U, 0xC0021900U, 0xC0021902U, 0xC0021904U}) {
    EXPECT_TRUE(Throws<unknown_error>(Format("Unknown or unsupported scantype value 0x%08X", value),
                                      "GenICam::Client::CGRBHelper::ConvertGrbScanType2GenICam",
                                      [=] { CGRBHelper::ConvertGrbScanType2GenICam(value); }));
  }
}

}  // namespace
}  // namespace GrabberTests
