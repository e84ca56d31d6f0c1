// SPDX-License-Identifier: MIT
// The pixel formats: each row by each conversion, ties, and what is in no row.
#include "PixelFormat.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <ostream>
#include <set>

#include "GrabberFixture.h"
#include "PixelFormatTable.h"

namespace DeviceTests {

static std::ostream &operator<<(std::ostream &out, const PixelFormatRow &row) { return out << row.name; }

}  // namespace DeviceTests

namespace GrabberTests {
namespace {

using DeviceTests::kPixelFormats;
using DeviceTests::PixelFormatRow;

/// The first row that fits decides.
uint32_t FirstPfnc(const std::function<bool(const PixelFormatRow &)> &fits) {
  const auto *const row = std::find_if(std::begin(kPixelFormats), std::end(kPixelFormats), fits);
  return row == std::end(kPixelFormats) ? 0 : row->pfnc;
}

class PixelFormat : public testing::TestWithParam<PixelFormatRow> {};

TEST_P(PixelFormat, ByPfncGivesEveryColumn) {
  const PixelFormatRow &row = GetParam();
  EXPECT_EQ(CPixelFormat::To_GRB_BusFormat(row.pfnc), row.busFormat);
  EXPECT_EQ(CPixelFormat::To_GRB_UsrFormat(row.pfnc), row.usrFormat);
  EXPECT_EQ(CPixelFormat::To_GRB_SrcCol(row.pfnc), row.srcCol);
  EXPECT_EQ(CPixelFormat::To_GRB_DstFormat(row.pfnc), row.dstFormat);
  EXPECT_EQ(CPixelFormat::GetBitsPerComponent(row.pfnc), row.bits);
  EXPECT_EQ(CPixelFormat::GetBytesPerPixel(row.pfnc), row.bytes);
}

TEST_P(PixelFormat, IsFoundByCoaXPressCode) {
  const PixelFormatRow &row = GetParam();
  EXPECT_EQ(CPixelFormat::To_PFNC(CoaXPressFormat{row.coaXPress}),
            FirstPfnc([&](const PixelFormatRow &other) { return other.coaXPress == row.coaXPress; }));
}

TEST_P(PixelFormat, IsFoundByUserFormat) {
  EXPECT_EQ(CPixelFormat::To_PFNC(GrbUsrFormat{GetParam().usrFormat}), GetParam().pfnc);
}

TEST_P(PixelFormat, IsFoundByColourAndDepth) {
  EXPECT_EQ(CPixelFormat::To_PFNC(GetParam().srcCol, PixelDepth{GetParam().bits}), GetParam().pfnc);
}

TEST_P(PixelFormat, IsFoundByColourAndDestination) {
  const PixelFormatRow &row = GetParam();
  EXPECT_EQ(CPixelFormat::To_PFNC(row.srcCol, GrbDstFormat{row.dstFormat}), FirstPfnc([&](const PixelFormatRow &other) {
              return other.srcCol == row.srcCol && other.dstFormat == row.dstFormat;
            }));
}

INSTANTIATE_TEST_SUITE_P(Rows, PixelFormat, testing::ValuesIn(kPixelFormats));

TEST(PixelFormats, FirstRowDecidesTies) {
  EXPECT_EQ(CPixelFormat::To_PFNC(CoaXPressFormat{0xFFFFFFFF}), 0x02180015U);  // BGR8
  EXPECT_EQ(CPixelFormat::To_PFNC(3, GrbDstFormat{0}), 0x02300018U);           // RGB10
  EXPECT_EQ(CPixelFormat::To_PFNC(0, GrbDstFormat{0}), 0x02300019U);           // BGR10
  EXPECT_EQ(CPixelFormat::To_PFNC(0xC0021206, GrbDstFormat{0}), 0x02200016U);  // RGBa8
  EXPECT_EQ(CPixelFormat::To_PFNC(0, PixelDepth{8}), 0x02180015U);             // BGR8
}

// The table of this test itself: a slip in it must not pass as a slip of the other.
TEST(PixelFormats, AreFortyOneWithValuesOfTheirOwn) {
  std::set<uint32_t> pfnc;
  std::set<uint32_t> user;
  std::set<uint32_t> bus;
  for (const PixelFormatRow &row : kPixelFormats) {
    pfnc.insert(row.pfnc);
    user.insert(row.usrFormat);
    bus.insert(row.busFormat);
    EXPECT_EQ(row.usrFormat & 0xFFU, row.busFormat & 0xFFU) << row.name;
    // The standard's value tells the bits of a pixel.
    EXPECT_EQ(row.pfnc >> 16U & 0xFFU, row.bytes * 8) << row.name;
  }
  EXPECT_EQ(pfnc.size(), 41U);
  EXPECT_EQ(user.size(), 41U);
  EXPECT_EQ(bus.size(), 41U);
}

TEST(PixelFormats, UnknownPfncFailsInEachConversionAlike) {
  const struct {
    const char *function;
    uint32_t (*convert)(uint32_t);
  } kRows[] = {
      {"GenICam::Client::CPixelFormat::To_GRB_DstFormat", &CPixelFormat::To_GRB_DstFormat},
      {"GenICam::Client::CPixelFormat::To_GRB_SrcCol", &CPixelFormat::To_GRB_SrcCol},
      {"GenICam::Client::CPixelFormat::To_GRB_UsrFormat", &CPixelFormat::To_GRB_UsrFormat},
      {"GenICam::Client::CPixelFormat::To_GRB_BusFormat", &CPixelFormat::To_GRB_BusFormat},
      {"GenICam::Client::CPixelFormat::GetBitsPerComponent", &CPixelFormat::GetBitsPerComponent},
      {"GenICam::Client::CPixelFormat::GetBytesPerPixel", &CPixelFormat::GetBytesPerPixel},
  };
  for (const auto &row : kRows) {
    EXPECT_TRUE(
        Throws<unknown_error>("Unknown or unsupported PFNC PixelFormat: 0", row.function, [&] { row.convert(0); }));
    EXPECT_TRUE(Throws<unknown_error>("Unknown or unsupported PFNC PixelFormat: abcdef01", row.function,
                                      [&] { row.convert(0xABCDEF01); }));
    EXPECT_TRUE(Throws<unknown_error>("Unknown or unsupported PFNC PixelFormat: c0022601", row.function,
                                      [&] { row.convert(0xC0022601); }));
  }
}

TEST(PixelFormats, UnknownCodesFailWithTheirTexts) {
  constexpr const char *kFunction = "GenICam::Client::CPixelFormat::To_PFNC";
  EXPECT_TRUE(Throws<unknown_error>("Unknown or unsupported CoaXPress PixelFormat: 106", kFunction,
                                    [] { CPixelFormat::To_PFNC(CoaXPressFormat{0x106}); }));
  EXPECT_TRUE(Throws<unknown_error>("Unknown or unsupported GRB_USR_FORMAT: 0", kFunction,
                                    [] { CPixelFormat::To_PFNC(GrbUsrFormat{0}); }));
  EXPECT_TRUE(Throws<unknown_error>("Unknown or unsupported GRB_USR_FORMAT: c0029eff", kFunction,
                                    [] { CPixelFormat::To_PFNC(GrbUsrFormat{0xC0029EFF}); }));
  // The second value is in hexadecimal as well.
  EXPECT_TRUE(Throws<unknown_error>("Unknown or unsupported combination of GRB_SRC_COL: c0021205 and pixel depth of: c",
                                    kFunction, [] { CPixelFormat::To_PFNC(0xC0021205, PixelDepth{12}); }));
  EXPECT_TRUE(Throws<unknown_error>("Unknown or unsupported combination of GRB_SRC_COL: 1 and GRB_DST_FORMAT: c0022616",
                                    kFunction, [] { CPixelFormat::To_PFNC(1, GrbDstFormat{0xC0022616}); }));
}

}  // namespace
}  // namespace GrabberTests
