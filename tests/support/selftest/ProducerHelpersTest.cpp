// SPDX-License-Identifier: MIT
// The helpers that judge the Producer, judged where they need no Producer.
#include <cstdlib>

#include "Producer.h"

namespace {

using namespace TestSupport;

constexpr const char *kTail = " (function 'GenICam::Client::CTL::Close', file 'TL.cpp', line 12)";

TEST(FailureText, SplitsIntoItsPieces) {
  const auto text =
      SplitFailureText("Null size pointer. (function 'GenICam::Client::GCGetInfo()', file 'TLIClient.cpp', line 123)");
  ASSERT_TRUE(text);
  EXPECT_EQ(text->message, "Null size pointer.");
  EXPECT_EQ(text->function, "GenICam::Client::GCGetInfo");
  EXPECT_EQ(text->file, "TLIClient.cpp");
  EXPECT_EQ(text->line, 123U);
}

TEST(FailureText, TakesTemplatesDestructorsAndManyLines) {
  EXPECT_TRUE(SplitFailureText("a (function 'G::C<int, A::B<2>>::Find()', file 'B.h', line 1)"));
  EXPECT_TRUE(SplitFailureText("a (function 'G::C::~C()', file 'B.h', line 1)"));
  const auto text = SplitFailureText("a\n(b) (function 'x')\nc (function 'G::f()', file 'B.cpp', line 7)");
  ASSERT_TRUE(text);
  EXPECT_EQ(text->message, "a\n(b) (function 'x')\nc");
}

TEST(FailureText, RefusesWhatIsNotATail) {
  const char *const texts[] = {
      "",
      "a",
      kTail,
      "a (function 'f()', file 'B.cpp', line 7)",
      "a (function 'G::f::operator()()', file 'B.cpp', line 7)",
      "a (function 'G::f()', file 'dir/B.cpp', line 7)",
      "a (function 'G::f()', file 'B.cc', line 7)",
      "a (function 'G::f()', file 'B.cpp', line 0)",
      "a (function 'G::f()', file 'B.cpp', line x)",
      "a (function 'G::f()', file 'B.cpp', line 7) ",
      "a (function 'G::f()', file 'B.cpp', line 7",
      "a (function 'G f()', file 'B.cpp', line 7)",
  };
  for (const char *const text : texts) {
    EXPECT_FALSE(SplitFailureText(text)) << text;
  }
}

TEST(LocalUrl, IsParsedWithAndWithoutTheLastSeparator) {
  for (const char *const text : {"Local:a.xml;940;24c0", "local:a.xml;940;24C0;"}) {
    const auto url = ParseLocalUrl(text);
    ASSERT_TRUE(url) << text;
    EXPECT_EQ(url->name, "a.xml");
    EXPECT_EQ(url->address, 0x940U);
    EXPECT_EQ(url->size, 0x24C0U);
  }
  EXPECT_FALSE(ParseLocalUrl("file:///a.xml"));
  EXPECT_FALSE(ParseLocalUrl("Local:a.xml;940"));
  EXPECT_FALSE(ParseLocalUrl("Local:a.xml;x;1"));
}

TEST(AskInfo, AsksForTheSizeAndThenForTheAnswer) {
  int calls = 0;
  const Info info = AskInfo([&](INFO_DATATYPE *type, void *buffer, size_t *size) -> GC_ERROR {
    ++calls;
    *type = INFO_DATATYPE_STRING;
    if (buffer != nullptr) {
      EXPECT_EQ(*size, 4U);
      std::memcpy(buffer, "abc", 4);
    }
    *size = 4;
    return GC_ERR_SUCCESS;
  });
  EXPECT_EQ(calls, 2);
  EXPECT_EQ(info.type, INFO_DATATYPE_STRING);
  EXPECT_EQ(info.Text(), "abc");
  EXPECT_EQ(info.As<uint32_t>() & 0xFFU, uint32_t{'a'});
}

TEST(ScopedVariable, PutsTheOldStateBack) {
  const char *const name = "LUMIVEX_TEST_VARIABLE";
  {
    const CScopedVariable outer(name, "1");
    EXPECT_STREQ(std::getenv(name), "1");
    {
      const CScopedVariable inner(name, std::nullopt);
      EXPECT_EQ(std::getenv(name), nullptr);
    }
    EXPECT_STREQ(std::getenv(name), "1");
  }
  EXPECT_EQ(std::getenv(name), nullptr);
}

TEST(SettingsFile, WritesTheLinesAndNamesTheFile) {
  const CScopedVariable unset(kSettingsVariable, std::nullopt);
  std::string path;
  {
    CSettingsFile settings;
    path = settings.Path();
    settings.Dword("TimeOut", 800).Text("DebugCameraURL", "C:\\a \"b\"").Hex("Empty", {}).Hex("Two", {1, 0xAB}).Write();
    EXPECT_EQ(ReadFile(path),
              "Windows Registry Editor Version 5.00\r\n\r\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\Lumivex\\GenTL]\r\n"
              "\"TimeOut\"=dword:00000320\r\n\"DebugCameraURL\"=\"C:\\\\a \\\"b\\\"\"\r\n\"Empty\"=hex:\r\n"
              "\"Two\"=hex:01,ab\r\n");
    EXPECT_EQ(path, std::getenv(kSettingsVariable));
  }
  EXPECT_EQ(std::getenv(kSettingsVariable), nullptr);
  EXPECT_FALSE(ReadFile(path));
}

TEST(SettingsFile, EncodesItsText) {
  using Encoding = CSettingsFile::Encoding;
  struct Row {
    Encoding encoding;
    std::string bytes;
  };
  const Row rows[] = {
      {Encoding::Utf8, std::string("\xC3\xA4\n", 3)},
      {Encoding::Utf8Bom, std::string("\xEF\xBB\xBF\xC3\xA4\n", 6)},
      {Encoding::Utf16Le, std::string("\xFF\xFE\xE4\0\n\0", 6)},
      {Encoding::Utf16Be, std::string("\xFE\xFF\0\xE4\0\n", 6)},
      {Encoding::Utf16LeNoBom, std::string("\xE4\0\n\0", 4)},
  };
  for (const Row &row : rows) {
    CSettingsFile settings;
    settings.Clear().LineEnd("\n").Line("\xC3\xA4").Encode(row.encoding).Write();
    EXPECT_EQ(ReadFile(settings.Path()), row.bytes) << static_cast<int>(row.encoding);
  }
}

TEST(TempDirectory, GoesWithItsFiles) {
  std::string path;
  {
    const CTempDirectory directory;
    path = directory.WriteFile("a.txt", "text");
    EXPECT_EQ(ReadFile(path), "text");
  }
  EXPECT_FALSE(ReadFile(path));
}

TEST(WaitUntil, EndsWithTheConditionOrTheBound) {
  int looks = 0;
  EXPECT_TRUE(WaitUntil([&looks] { return ++looks == 3; }));
  EXPECT_FALSE(WaitUntil([] { return false; }, std::chrono::milliseconds(1)));
}

}  // namespace
