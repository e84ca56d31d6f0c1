// SPDX-License-Identifier: MIT
#include "Text.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "ExitCodes.h"
#include "GenTLError.h"
#include "GenTLNames.h"

namespace Lumivex::Consumer {
namespace {

// Messages of several lines would break the promise of one line per failure.
TEST(Text, OneLineJoinsLines) { EXPECT_EQ(OneLine("Error stopping: \n\n reason\r\n"), "Error stopping: reason"); }

// A camera that calls itself "\x1B[2J" would clear the user's terminal.
TEST(Text, OneLineDisarmsControlCharacters) { EXPECT_EQ(OneLine("a\x1B[2Jb\x7F"), "a?[2Jb?"); }

TEST(Text, OneLineKeepsUtf8) { EXPECT_EQ(OneLine("B\xC3\xBChne"), "B\xC3\xBChne"); }

TEST(Text, CountedKnowsSingular) {
  EXPECT_EQ(Counted(0, "frame"), "0 frames");
  EXPECT_EQ(Counted(1, "frame"), "1 frame");
  EXPECT_EQ(Counted(2, "frame"), "2 frames");
}

TEST(Text, HexadecimalHasEightDigits) { EXPECT_EQ(Hexadecimal(0x108001F), "0x0108001F"); }

TEST(Text, ColumnsStandUnderEachOther) {
  const std::vector<std::string> expected = {"a    bbb  c", "aaa  b    cc", "\xC3\xBC    b"};
  EXPECT_EQ(AlignColumns({{"a", "bbb", "c"}, {"aaa", "b", "cc"}, {"\xC3\xBC", "b", ""}}), expected);
}

TEST(GenTLNames, ErrorsHaveTheirStandardNames) {
  EXPECT_EQ(ErrorName(-1011), "GC_ERR_TIMEOUT");
  EXPECT_EQ(ErrorName(-1022), "GC_ERR_BUSY");
  EXPECT_EQ(ErrorName(-10002), "custom error");
  EXPECT_EQ(ErrorName(-5), "unknown error");
}

TEST(GenTLNames, AccessIsToldInWords) {
  EXPECT_EQ(AccessStatusText(GenTL::DEVICE_ACCESS_STATUS_READWRITE), "read/write");
  EXPECT_EQ(AccessStatusText(GenTL::DEVICE_ACCESS_STATUS_READONLY), "read only");
  EXPECT_EQ(AccessStatusText(GenTL::DEVICE_ACCESS_STATUS_NOACCESS), "busy");
  EXPECT_EQ(AccessStatusText(GenTL::DEVICE_ACCESS_STATUS_UNKNOWN), "unknown");
}

TEST(GenTLError, TellsFunctionCodeNameAndText) {
  const CGenTLError error("TLOpen", GenTL::GC_ERR_IO, "it is\nbroken");
  EXPECT_STREQ(error.what(), "TLOpen failed with -1010 (GC_ERR_IO): it is broken");
  EXPECT_EQ(error.Code(), ExitCode::GenTL);
}

}  // namespace
}  // namespace Lumivex::Consumer
