// SPDX-License-Identifier: MIT
#include "Settings.h"

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Producer.h"

using namespace TestSupport;
namespace Settings = GenICam::Client::Settings;

namespace {

constexpr const char *kKey = "SOFTWARE\\Lumivex\\GenTL";
constexpr const char *kHead = "Windows Registry Editor Version 5.00\r\n\r\n";
constexpr const char *kSection = "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Lumivex\\GenTL]\r\n";

/// All settings at once.
struct Values {
  std::string folder;
  std::string url;
  bool outputEnable = false;
  bool popups = false;
  bool urlEnable = false;
  uint32_t timeOut = 800;
  bool cxpv11 = false;
  uint32_t pixelFormat = 0;
  uint32_t width = 0;
  uint32_t height = 0;
};

bool operator==(const Values &a, const Values &b) {
  return a.folder == b.folder && a.url == b.url && a.outputEnable == b.outputEnable && a.popups == b.popups &&
         a.urlEnable == b.urlEnable && a.timeOut == b.timeOut && a.cxpv11 == b.cxpv11 &&
         a.pixelFormat == b.pixelFormat && a.width == b.width && a.height == b.height;
}

std::ostream &operator<<(std::ostream &out, const Values &v) {
  return out << "folder '" << v.folder << "' url '" << v.url << "' output " << v.outputEnable << " popups " << v.popups
             << " urlEnable " << v.urlEnable << " timeOut " << v.timeOut << " cxpv11 " << v.cxpv11 << " addresses "
             << v.pixelFormat << ' ' << v.width << ' ' << v.height;
}

Values Current() {
  return {Settings::DebugInfoOutputDir,   Settings::DebugCameraURL,
          Settings::DebugOutputEnable,    Settings::DebugAllowPopupsFromGrabline,
          Settings::EnableDebugCameraURL, Settings::TimeOut,
          Settings::Cxpv11Enable,         Settings::Cxpv11PixelFormatAddress,
          Settings::Cxpv11WidthAddress,   Settings::Cxpv11HeightAddress};
}

void Reset() {
  Settings::DebugInfoOutputDir.clear();
  Settings::DebugCameraURL.clear();
  Settings::DebugOutputEnable = false;
  Settings::DebugAllowPopupsFromGrabline = false;
  Settings::EnableDebugCameraURL = false;
  Settings::TimeOut = 800;
  Settings::Cxpv11Enable = false;
  Settings::Cxpv11PixelFormatAddress = 0;
  Settings::Cxpv11WidthAddress = 0;
  Settings::Cxpv11HeightAddress = 0;
}

class SettingsTest : public testing::Test {
 protected:
  void SetUp() override { m_Before = Current(); }
  void TearDown() override { Reset(); }
  static void Read(const CSettingsFile &) { Settings::ReadSettings(); }
  /// Writes the file as built and reads it.
  void WriteAndRead() {
    m_File.Write();
    Settings::ReadSettings();
  }
  /// Writes these bytes and reads them.
  void ReadBytesOf(const std::string &content) {
    m_File.WriteBytes(std::vector<uint8_t>(content.begin(), content.end()));
    Settings::ReadSettings();
  }
  CSettingsFile m_File;
  Values m_Before;
};

// The process has read nothing yet when the first test begins.
TEST_F(SettingsTest, ALoadedProcessStandsAtTheDefaults) { EXPECT_EQ(Values(), m_Before); }

// ---------------------------------------------------------------------------------------------------------------------
// The twelve values
// ---------------------------------------------------------------------------------------------------------------------

TEST_F(SettingsTest, AllValuesReachTheirVariables) {
  m_File.Key(kKey)
      .Text("DebugInfoOutputDir", "/tmp/dump")
      .Text("DebugCameraURL", "C:\\cams\\a.xml")
      .Dword("DebugOutputEnable", 1)
      .Dword("DebugAllowPopupsFromGrabline", 2)
      .Dword("EnableDebugCameraURL", 0xFFFFFFFFU)
      .Dword("TimeOut", 1234)
      .Dword("Cxpv11Enable", 1)
      .Dword("Cxpv11PixelFormatAddress", 0x8008)
      .Dword("Cxpv11WidthAddress", 0x8000)
      .Dword("Cxpv11HeightAddress", 0xFFFFFFFFU);
  WriteAndRead();
  EXPECT_EQ((Values{"/tmp/dump", "file:///C:\\cams\\a.xml", true, true, true, 1234, true, 0x8008, 0x8000, 0xFFFFFFFFU}),
            Current());
}

TEST_F(SettingsTest, NumbersOfZeroSwitchOff) {
  Settings::DebugOutputEnable = Settings::DebugAllowPopupsFromGrabline = Settings::EnableDebugCameraURL =
      Settings::Cxpv11Enable = true;
  Settings::TimeOut = Settings::Cxpv11PixelFormatAddress = Settings::Cxpv11WidthAddress =
      Settings::Cxpv11HeightAddress = 7;
  for (const char *name : {"DebugOutputEnable", "DebugAllowPopupsFromGrabline", "EnableDebugCameraURL", "TimeOut",
                           "Cxpv11Enable", "Cxpv11PixelFormatAddress", "Cxpv11WidthAddress", "Cxpv11HeightAddress"}) {
    m_File.Dword(name, 0);
  }
  WriteAndRead();
  EXPECT_EQ((Values{"", "", false, false, false, 0, false, 0, 0, 0}), Current());
}

TEST_F(SettingsTest, ValueThatIsGoneKeepsItsContent) {
  m_File.Text("DebugInfoOutputDir", "/d").Text("DebugCameraURL", "u").Dword("TimeOut", 5).Dword("Cxpv11Enable", 1);
  WriteAndRead();
  const Values first = Current();
  EXPECT_TRUE(first.urlEnable);
  m_File.Clear().Head("Windows Registry Editor Version 5.00").Key(kKey).Dword("DebugOutputEnable", 1);
  WriteAndRead();
  Values expected = first;
  expected.outputEnable = true;
  EXPECT_EQ(expected, Current());
}

TEST_F(SettingsTest, FlagOfTheDebugUrlIsComputedAnew) {
  m_File.Text("DebugCameraURL", "u").Dword("EnableDebugCameraURL", 0);
  WriteAndRead();
  EXPECT_FALSE(Settings::EnableDebugCameraURL);
  m_File.Clear().Head("Windows Registry Editor Version 5.00").Key(kKey);
  WriteAndRead();
  EXPECT_TRUE(Settings::EnableDebugCameraURL) << "the URL kept its content, so the absent flag follows it";
}

TEST_F(SettingsTest, FlagOfTheDebugUrlFollowsAnAbsentUrl) {
  Settings::EnableDebugCameraURL = true;
  m_File.Key(kKey);
  WriteAndRead();
  EXPECT_FALSE(Settings::EnableDebugCameraURL);
}

TEST_F(SettingsTest, MissingKeyLeavesTheFlagOfTheDebugUrlAlone) {
  Settings::EnableDebugCameraURL = true;
  m_File.Key("SOFTWARE\\Lumivex\\Other").Dword("TimeOut", 5);
  WriteAndRead();
  EXPECT_TRUE(Settings::EnableDebugCameraURL);
  EXPECT_EQ(800U, Settings::TimeOut);
}

// ---------------------------------------------------------------------------------------------------------------------
// Fallback pairs, absent and empty
// ---------------------------------------------------------------------------------------------------------------------

struct PairRow {
  const char *name;
  const char *lines;
  Values expected;
};
std::ostream &operator<<(std::ostream &out, const PairRow &row) { return out << row.name; }

Values WithFolder(const char *folder) {
  Values values;
  values.folder = folder;
  return values;
}
Values WithOutput(bool on) {
  Values values;
  values.outputEnable = on;
  return values;
}
Values WithUrl(const char *url, bool on) {
  Values values;
  values.url = url;
  values.urlEnable = on;
  return values;
}
Values WithTimeOut(uint32_t timeOut) {
  Values values;
  values.timeOut = timeOut;
  return values;
}

const PairRow kPairRows[] = {
    {"OlderFolderAlone", "\"DebugOutputXML\"=\"/old\"\r\n", WithFolder("/old")},
    {"NewerFolderWins", "\"DebugOutputXML\"=\"/old\"\r\n\"DebugInfoOutputDir\"=\"/new\"\r\n", WithFolder("/new")},
    {"NewerFolderOfNoBytesIsEmpty", "\"DebugInfoOutputDir\"=hex:\r\n\"DebugOutputXML\"=\"/old\"\r\n",
     WithFolder("/old")},
    // A text of one byte, its terminator, is not empty: the older name is not looked at.
    {"NewerFolderOfNoTextIsNotEmpty", "\"DebugInfoOutputDir\"=\"\"\r\n\"DebugOutputXML\"=\"/old\"\r\n", WithFolder("")},
    {"OlderOutputAlone", "\"DebugOutputDebugString\"=dword:00000001\r\n", WithOutput(true)},
    {"NewerOutputZeroWins", "\"DebugOutputEnable\"=dword:0\r\n\"DebugOutputDebugString\"=dword:1\r\n",
     WithOutput(false)},
    {"NewerOutputOfNoBytesIsEmpty", "\"DebugOutputEnable\"=hex:\r\n\"DebugOutputDebugString\"=dword:1\r\n",
     WithOutput(true)},
    {"UrlAloneIsOn", "\"DebugCameraURL\"=\"a.xml\"\r\n", WithUrl("file:///a.xml", true)},
    {"UrlSwitchedOff", "\"DebugCameraURL\"=\"a.xml\"\r\n\"EnableDebugCameraURL\"=dword:00000000\r\n",
     WithUrl("file:///a.xml", false)},
    {"UrlOfNoTextIsNoUrl", "\"DebugCameraURL\"=\"\"\r\n", WithUrl("", false)},
    {"UrlOfNoBytesIsNoUrl", "\"DebugCameraURL\"=hex:\r\n", WithUrl("", false)},
    {"EnabledWithoutUrl", "\"EnableDebugCameraURL\"=dword:1\r\n", WithUrl("", true)},
    {"EmptyEnableFollowsTheUrl", "\"DebugCameraURL\"=\"a\"\r\n\"EnableDebugCameraURL\"=hex:\r\n",
     WithUrl("file:///a", true)},
    {"EmptyNumberIsAbsent", "\"TimeOut\"=hex(4):\r\n", WithTimeOut(800)},
    {"NumberAsBytes", "\"TimeOut\"=hex(4):20,03,00,00\r\n", WithTimeOut(0x320)},
};

class SettingsPairs : public SettingsTest, public testing::WithParamInterface<PairRow> {};

TEST_P(SettingsPairs, FollowTheirRule) {
  ReadBytesOf(std::string(kHead) + kSection + GetParam().lines);
  EXPECT_EQ(GetParam().expected, Current());
}

INSTANTIATE_TEST_SUITE_P(Rows, SettingsPairs, testing::ValuesIn(kPairRows),
                         [](const testing::TestParamInfo<PairRow> &row) { return std::string(row.param.name); });

// ---------------------------------------------------------------------------------------------------------------------
// The order of reading, and where a fault ends it
// ---------------------------------------------------------------------------------------------------------------------

/// The numbers in the order in which they are read; a text in place of one ends the reading there.
class SettingsFault : public SettingsTest, public testing::WithParamInterface<std::tuple<size_t, const char *>> {};

constexpr const char *kNumbersInOrder[] = {
    "DebugOutputEnable", "DebugAllowPopupsFromGrabline", "EnableDebugCameraURL", "TimeOut",
    "Cxpv11Enable",      "Cxpv11PixelFormatAddress",     "Cxpv11WidthAddress",   "Cxpv11HeightAddress"};

TEST_P(SettingsFault, EndsTheReadingAtItsPlaceAndKeepsWhatWasBefore) {
  const auto &[at, fault] = GetParam();
  // The lines stand in the reverse of the reading order: the place in the file must not count.
  std::string content = std::string(kHead) + kSection;
  for (size_t i = std::size(kNumbersInOrder); i-- > 0;) {
    content += "\"" + std::string(kNumbersInOrder[i]) + "\"=" + (i == at ? fault : "dword:00000001") + "\r\n";
  }
  content += "\"DebugInfoOutputDir\"=\"/d\"\r\n\"DebugCameraURL\"=\"u\"\r\n";
  ReadBytesOf(content);
  Values expected = WithFolder("/d");
  expected.url = "file:///u";
  expected.outputEnable = at > 0;
  expected.popups = at > 1;
  expected.urlEnable = at > 2;
  expected.timeOut = at > 3 ? 1 : 800;
  expected.cxpv11 = at > 4;
  expected.pixelFormat = at > 5 ? 1 : 0;
  expected.width = at > 6 ? 1 : 0;
  expected.height = at > 7 ? 1 : 0;
  EXPECT_EQ(expected, Current());
}

INSTANTIATE_TEST_SUITE_P(Places, SettingsFault,
                         testing::Combine(testing::Range<size_t>(0, std::size(kNumbersInOrder) + 1),
                                          testing::Values("\"1\"", "hex:01,00,00,00", "\"\"", "hex(2):31,00,00,00")));

TEST_F(SettingsTest, TextsAreReadFromAnyType) {
  m_File.Key(kKey)
      .Line("\"DebugInfoOutputDir\"=hex(2):2f,00,64,00,00,00")
      .Line("\"DebugCameraURL\"=hex:61,62,00,63,64");
  WriteAndRead();
  EXPECT_EQ("/d", Settings::DebugInfoOutputDir);
  EXPECT_EQ("file:///ab", Settings::DebugCameraURL) << "the text ends at its first zero";
}

TEST_F(SettingsTest, TextWithoutATerminatorEndsWithItsBytes) {
  m_File.Key(kKey).Line("\"DebugCameraURL\"=hex:61,62,63");
  WriteAndRead();
  EXPECT_EQ("file:///abc", Settings::DebugCameraURL);
}

TEST_F(SettingsTest, NumberInPlaceOfATextIsTakenByItsBytes) {
  m_File.Key(kKey).Dword("DebugCameraURL", 0x00636261U);
  WriteAndRead();
  EXPECT_EQ("file:///abc", Settings::DebugCameraURL);
}

TEST_F(SettingsTest, NumberOfFewerBytesThanFourDoesNotReadBeyond) {
  m_File.Key(kKey).Line("\"TimeOut\"=hex(4):05").Dword("Cxpv11Enable", 1);
  WriteAndRead();
  EXPECT_EQ(5U, Settings::TimeOut) << "the bytes that are missing are zeros";
  EXPECT_TRUE(Settings::Cxpv11Enable) << "the reading goes on";
}

// ---------------------------------------------------------------------------------------------------------------------
// Forms of the file
// ---------------------------------------------------------------------------------------------------------------------

class SettingsEncoding : public SettingsTest,
                         public testing::WithParamInterface<std::tuple<CSettingsFile::Encoding, const char *>> {};

TEST_P(SettingsEncoding, IsRecognised) {
  m_File.Encode(std::get<0>(GetParam())).LineEnd(std::get<1>(GetParam()));
  m_File.Key(kKey).Dword("TimeOut", 1234).Text("DebugInfoOutputDir", "/tmp/\xC3\xA4\xE2\x82\xAC\xF0\x9F\x93\xB7");
  WriteAndRead();
  EXPECT_EQ(1234U, Settings::TimeOut);
  EXPECT_EQ("/tmp/\xC3\xA4\xE2\x82\xAC\xF0\x9F\x93\xB7", Settings::DebugInfoOutputDir);
}

INSTANTIATE_TEST_SUITE_P(
    Files, SettingsEncoding,
    testing::Combine(testing::Values(CSettingsFile::Encoding::Utf8, CSettingsFile::Encoding::Utf8Bom,
                                     CSettingsFile::Encoding::Utf16Le, CSettingsFile::Encoding::Utf16Be,
                                     CSettingsFile::Encoding::Utf16LeNoBom),
                     testing::Values("\r\n", "\n", "\r")));

struct FormRow {
  const char *name;
  std::string content;
  uint32_t timeOut;  ///< 800: as if the value were absent
};
std::ostream &operator<<(std::ostream &out, const FormRow &row) { return out << row.name; }

std::string InKey(const std::string &lines) { return std::string(kHead) + kSection + lines; }

std::vector<FormRow> FormRows() {
  const std::string value = "\"TimeOut\"=dword:000004d2\r\n";
  return {
      {"Plain", InKey(value), 1234},
      {"NoHead", kSection + value, 1234},
      {"OlderHead", std::string("REGEDIT4\r\n\r\n") + kSection + value, 1234},
      {"NoLineEndAtTheEnd", InKey("\"TimeOut\"=dword:000004d2"), 1234},
      {"UpperCaseDigits", InKey("\"TimeOut\"=dword:000004D2\r\n"), 1234},
      {"FewDigits", InKey("\"TimeOut\"=dword:4d2\r\n"), 1234},
      {"LargestNumber", InKey("\"TimeOut\"=dword:ffffffff\r\n"), 0xFFFFFFFFU},
      {"NameInAnotherCase", InKey("\"timeout\"=dword:4d2\r\n"), 1234},
      {"KeyInAnotherCase", "[hkey_local_machine\\software\\LUMIVEX\\gentl]\r\n" + value, 1234},
      {"BlanksAround", "  " + std::string(kSection) + " \t\"TimeOut\" = dword:4d2 \t\r\n", 1234},
      {"EmptyLines", "\r\n\r\n" + InKey("\r\n\r\n" + value + "\r\n"), 1234},
      {"CommentLine", InKey("; a comment\r\n" + value), 1234},
      {"CommentedOutValue", InKey(";\"TimeOut\"=dword:4d2\r\n"), 800},
      {"CommentBehindTheNumber", InKey("\"TimeOut\"=dword:4d2 ; in units\r\n"), 1234},
      {"CommentBehindAnotherText", InKey("\"DebugCameraURL\"=\"a;b\" ; words\r\n" + value), 1234},
      {"LaterLineWins", InKey("\"TimeOut\"=dword:5\r\n" + value), 1234},
      {"LaterSectionOfTheKeyWins", InKey("\"TimeOut\"=dword:5\r\n\r\n" + std::string(kSection) + value), 1234},
      {"DeletedValue", InKey(value + "\"TimeOut\"=-\r\n"), 800},
      {"DeletedAndSetAgain", InKey("\"TimeOut\"=-\r\n" + value), 1234},
      {"DeletedKey", InKey(value + "[-HKEY_LOCAL_MACHINE\\SOFTWARE\\Lumivex\\GenTL]\r\n"), 800},
      {"DeletedAndOpenedAgain",
       InKey("\"TimeOut\"=dword:5\r\n[-HKEY_LOCAL_MACHINE\\SOFTWARE\\Lumivex\\GenTL]\r\n" + std::string(kSection) +
             value),
       1234},
      {"ValueBehindADeletedKey", InKey("[-HKEY_LOCAL_MACHINE\\SOFTWARE\\Lumivex\\GenTL]\r\n" + value), 800},
      {"OtherKey", std::string(kHead) + "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Lumivex]\r\n" + value, 800},
      {"KeyBelow", std::string(kHead) + "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Lumivex\\GenTL\\Sub]\r\n" + value, 800},
      {"OtherRoot", std::string(kHead) + "[HKEY_CURRENT_USER\\SOFTWARE\\Lumivex\\GenTL]\r\n" + value, 800},
      {"ValueAheadOfAnyKey", kHead + value + kSection, 800},
      {"ValueOfTheKeyBehind", InKey("[HKEY_LOCAL_MACHINE\\SOFTWARE\\Lumivex\\Other]\r\n" + value), 800},
      {"KeyBehindAnother",
       std::string(kHead) + "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Other]\r\n\"TimeOut\"=dword:5\r\n" + kSection + value,
       1234},
      {"DefaultValueIsSkipped", InKey("@=\"words\"\r\n" + value), 1234},
      {"ContinuedBytes", InKey("\"Other\"=hex:01,02,\\\r\n  03,04,\\\r\n  05\r\n" + value), 1234},
      {"ContinuedNumber", InKey("\"TimeOut\"=hex(4):d2,04,\\\r\n  00,00\r\n"), 1234},
      {"QuoteInAText", InKey("\"DebugCameraURL\"=\"a\\\"b\"\r\n" + value), 1234},
      // Malformed: as if the value were absent.
      {"NoDigits", InKey("\"TimeOut\"=dword:\r\n"), 800},
      {"TooManyDigits", InKey("\"TimeOut\"=dword:0000004d2\r\n"), 800},
      {"NoHexDigits", InKey("\"TimeOut\"=dword:xyz\r\n"), 800},
      {"Rubbish", InKey("\"TimeOut\"=dword:4d2xyz\r\n"), 800},
      {"NoColon", InKey("\"TimeOut\"=dword\r\n"), 800},
      {"UnknownKind", InKey("\"TimeOut\"=qword:4d2\r\n"), 800},
      {"NoEqualSign", InKey("\"TimeOut\" dword:4d2\r\n"), 800},
      {"NoContent", InKey("\"TimeOut\"=\r\n"), 800},
      {"NoNameQuotes", InKey("TimeOut=dword:4d2\r\n"), 800},
      {"OpenName", InKey("\"TimeOut=dword:4d2\r\n"), 800},
      {"OpenNameAhead", InKey("\"Broken=dword:1\r\n" + value), 1234},
      {"OpenTextAhead", InKey("\"Broken\"=\"never closed\r\n" + value), 1234},
      {"OpenSection", std::string(kHead) + "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Lumivex\\GenTL\r\n" + value, 800},
      {"BadBytesAhead", InKey("\"Broken\"=hex:zz\r\n" + value), 1234},
      {"BadKindAhead", InKey("\"Broken\"=hex(zz):01\r\n" + value), 1234},
      {"OpenKindAhead", InKey("\"Broken\"=hex(2:01\r\n" + value), 1234},
      {"ContinuationAtTheEnd", InKey(value + "\"Broken\"=hex:01,\\"), 1234},
      {"MalformedKeepsTheEarlierLine", InKey(value + "\"TimeOut\"=dword:zz\r\n"), 1234},
      {"OnlyAName", InKey("\""), 800},
      {"OnlyABracket", "[", 800},
      {"Empty", "", 800},
      {"OnlyAByteOrderMark", "\xEF\xBB\xBF", 800},
      {"HalfAByteOrderMark", "\xEF", 800},
      {"Utf16MarkAndHalfAUnit", std::string("\xFF\xFE\x5B", 3), 800},
      {"Zeros", std::string(100, '\0'), 800},
      {"ZeroInALine", InKey(std::string("\"Broken\"=\"a\0b\"\r\n", 16) + value), 1234},
      {"OldMacLineEnds", "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Lumivex\\GenTL]\r\"TimeOut\"=dword:4d2\r", 1234},
  };
}

class SettingsForm : public SettingsTest, public testing::WithParamInterface<FormRow> {};

TEST_P(SettingsForm, GivesTheNumberOrLeavesIt) {
  ReadBytesOf(GetParam().content);
  EXPECT_EQ(GetParam().timeOut, Settings::TimeOut);
}

INSTANTIATE_TEST_SUITE_P(Files, SettingsForm, testing::ValuesIn(FormRows()),
                         [](const testing::TestParamInfo<FormRow> &row) { return std::string(row.param.name); });

TEST_F(SettingsTest, EscapesInTexts) {
  m_File.Key(kKey).Line("\"DebugCameraURL\"=\"C:\\\\a\\\\\\\"b\\\".xml\"");
  WriteAndRead();
  EXPECT_EQ("file:///C:\\a\\\"b\".xml", Settings::DebugCameraURL);
}

TEST_F(SettingsTest, LongTextComesWhole) {
  const std::string path = "/" + std::string(5000, 'p');
  m_File.Key(kKey).Text("DebugInfoOutputDir", path);
  WriteAndRead();
  EXPECT_EQ(path, Settings::DebugInfoOutputDir);
}

TEST_F(SettingsTest, MissingFileGivesTheDefaults) {
  m_File.Write();
  m_File.Remove();
  Settings::ReadSettings();
  EXPECT_EQ(Values(), Current());
}

TEST_F(SettingsTest, DirectoryInPlaceOfTheFileGivesTheDefaults) {
  const CTempDirectory directory;
  const CScopedVariable variable(kSettingsVariable, directory.Path());
  Settings::ReadSettings();
  EXPECT_EQ(Values(), Current());
}

TEST_F(SettingsTest, NamelessFileGivesTheDefaults) {
  const CScopedVariable variable(kSettingsVariable, std::string("/nowhere/at/all.reg"));
  Settings::ReadSettings();
  EXPECT_EQ(Values(), Current());
}

TEST_F(SettingsTest, EndlessFileIsGivenUp) {
  const CScopedVariable variable(kSettingsVariable, std::string("/dev/zero"));
  Settings::ReadSettings();
  EXPECT_EQ(Values(), Current());
}

TEST_F(SettingsTest, GarbageOfAnyKindIsSurvived) {
  // A fixed generator: the same bytes on each run, so that a failure comes back.
  uint32_t state = 12345;
  const auto next = [&state] {
    state = state * 1664525U + 1013904223U;
    return state >> 24U;
  };
  constexpr const char *kPieces[] = {
      "[",           "]", "\"", "=",  "dword:",   "hex:",         "hex(2):", "\\\r\n", ";",        "\r\n", "-",
      "\"TimeOut\"", ",", "@",  "\\", "\xFF\xFE", "\xEF\xBB\xBF", kSection,  "00,01",  "ffffffff", "\xD8", "\xDC\x00"};
  for (int round = 0; round < 200; ++round) {
    std::string content = round % 3 == 0 ? "\xFF\xFE" : round % 3 == 1 ? "" : std::string(kHead) + kSection;
    for (int i = 0; i < 200; ++i) {
      const uint32_t choice = next();
      if (choice % 2 == 0) {
        content += kPieces[choice / 2 % std::size(kPieces)];
      } else {
        content.push_back(static_cast<char>(next()));
      }
    }
    ReadBytesOf(content);
  }
  // And still a good file is read.
  ReadBytesOf(InKey("\"TimeOut\"=dword:4d2\r\n"));
  EXPECT_EQ(1234U, Settings::TimeOut);
}

TEST_F(SettingsTest, HugeGarbageIsSurvived) {
  ReadBytesOf(InKey(std::string(4U * 1024U * 1024U, '"')));
  EXPECT_EQ(800U, Settings::TimeOut);
  ReadBytesOf(InKey("\"DebugCameraURL\"=hex:" + std::string(1024U * 1024U, ',') + "\r\n"));
  EXPECT_EQ(800U, Settings::TimeOut);
}

// A quadratic reader would need minutes here.
TEST_F(SettingsTest, ManyOpenTextsAreReadInTime) {
  std::string content = InKey("");
  for (int i = 0; i < 20000; ++i) {
    content += "\"a\"=\"open\r\n";
  }
  content += "\"TimeOut\"=dword:4d2\r\n";
  ReadBytesOf(content);
  EXPECT_EQ(1234U, Settings::TimeOut) << "each open text ends with its line";
}

}  // namespace
