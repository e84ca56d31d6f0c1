// SPDX-License-Identifier: MIT
// Where the camera's description lies: the URL questions to the camera, their parsing, the debug URL and the dump.
#include <ostream>

#include "DeviceFixture.h"

namespace DeviceTests {
namespace {

class RemoteUrl : public DeviceTest {
 protected:
  void OpenPort() {
    m_hPort = OpenRemotePort();
    m_nMark = Script().Mark();
  }
  // Opens the port of a camera with this URL.
  void OpenPort(const std::string &url) {
    Script().SetCamera(kBoard, kChannel, CCamera().Url(0, url));
    OpenPort();
  }
  Lines Calls() {
    Lines calls = Script().Trace(m_nMark);
    m_nMark = Script().Mark();
    return calls;
  }
  static std::string Read(uint32_t address) {
    return "ControlRead(" + HandleName(ControlHandle()) + Format(", GRB_PORT_CAMERA, 0x%x, 4, %u)", address, kTimeOut);
  }
  static std::string Select(uint32_t index) {
    return "ControlWrite(" + HandleName(ControlHandle()) +
           Format(", GRB_PORT_CAMERA, 0xc, 4, %u, %08x)", kTimeOut, index);
  }
  // One question with a null buffer.
  Info Ask(URL_INFO_CMD command, uint32_t index = 0) {
    Info info;
    info.result = Gc().GCGetPortURLInfo(m_hPort, index, command, &info.type, nullptr, &info.size);
    return info;
  }
  Info Fetch(uint32_t index = 0) {
    return AskInfoOnce(
        [&](INFO_DATATYPE *type, void *buffer, size_t *size) {
          return Gc().GCGetPortURLInfo(m_hPort, index, URL_INFO_URL, type, buffer, size);
        },
        4096);
  }
  // How many bytes a read of five bytes asks of the camera.
  uint32_t SizeReadAt(uint64_t address) {
    uint8_t buffer[8];
    size_t size = 5;
    m_nMark = Script().Mark();
    EXPECT_GC_OK(Gc().GCReadPort(m_hPort, address, buffer, &size));
    const std::vector<Call> calls = Script().Calls(m_nMark);
    m_nMark = Script().Mark();
    return calls.size() == 1 ? calls[0].size : 0;
  }

  PORT_HANDLE m_hPort = nullptr;
  size_t m_nMark = 0;
};

// Count ---------------------------------------------------------------------------------------------------------------

class RemoteUrlCount : public RemoteUrl, public testing::WithParamInterface<uint32_t> {};

TEST_P(RemoteUrlCount, IsTheManifestSizeOfTheCamera) {
  Script().SetCamera(kBoard, kChannel, CCamera().ManifestSize(GetParam()));
  OpenPort();
  uint32_t count = 99;
  EXPECT_GC_OK(Gc().GCGetNumPortURLs(m_hPort, &count));
  EXPECT_EQ(count, GetParam());
  EXPECT_EQ(Calls(), (Lines{Read(0x8)}));
}

INSTANTIATE_TEST_SUITE_P(Counts, RemoteUrlCount, testing::Values(0, 1, 3, 0x01020304));

TEST_F(RemoteUrl, CountOfASilentCameraFails) {
  OpenPort();
  Script().RemoveCamera(kBoard, kChannel);
  uint32_t count = 99;
  EXPECT_GC(GC_ERR_TIMEOUT,
            "Timeout while reading 4 bytes from address 0x8 in camera, 0 bytes read, timeout value was 800.\n" +
                LibraryText("GRB_ControlRead", GRB_WARNING_TIMEOUT, "No answer from the camera."),
            Gc().GCGetNumPortURLs(m_hPort, &count));
}

// Versions ------------------------------------------------------------------------------------------------------------

struct VersionRow {
  URL_INFO_CMD command;
  uint32_t address;
  int32_t value;
};

constexpr VersionRow kVersions[] = {
    {URL_INFO_SCHEMA_VER_MAJOR, 0x14, 0xB1},  {URL_INFO_SCHEMA_VER_MINOR, 0x14, 0xC2},
    {URL_INFO_FILE_VER_MAJOR, 0x10, 0x91},    {URL_INFO_FILE_VER_MINOR, 0x10, 0x82},
    {URL_INFO_FILE_VER_SUBMINOR, 0x10, 0x73},
};

// Bytes above 0x7F and a top byte that does not count: a shift or a mask that is wrong shows.
TEST_F(RemoteUrl, VersionsAreBytesOfTheCamerasRegisters) {
  Script().SetCamera(kBoard, kChannel, CCamera().Url(0, "Local:a.xml;9000;10", 0xAA918273, 0xBBB1C2D3));
  OpenPort();
  for (const VersionRow &row : kVersions) {
    SCOPED_TRACE(row.command);
    int32_t value = 0;
    size_t size = sizeof(value);
    INFO_DATATYPE type = 0;
    Calls();
    EXPECT_GC_OK(Gc().GCGetPortURLInfo(m_hPort, 0, row.command, &type, &value, &size));
    EXPECT_EQ(value, row.value);
    EXPECT_EQ(type, INFO_DATATYPE_INT32);
    EXPECT_EQ(size, 4U);
    EXPECT_EQ(Calls(), (Lines{Read(0x8), Select(0), Read(row.address)}));
  }
}

TEST_F(RemoteUrl, VersionsAreThoseOfTheEntryAskedFor) {
  Script().SetCamera(kBoard, kChannel, CCamera().Url(0, "Local:a.xml;9000;10", 0x00010000).Url(1, "x", 0x00050000));
  OpenPort();
  EXPECT_EQ(UrlInfo(m_hPort, 1, URL_INFO_FILE_VER_MAJOR).As<int32_t>(), 5);
  EXPECT_EQ(UrlInfo(m_hPort, 0, URL_INFO_FILE_VER_MAJOR).As<int32_t>(), 1);
}

// Index and command ---------------------------------------------------------------------------------------------------

TEST_F(RemoteUrl, IndexBehindTheManifestFailsAndSelectsNothing) {
  Script().SetCamera(kBoard, kChannel, CCamera().ManifestSize(2));
  OpenPort();
  // The message takes the index for a signed number.
  for (const uint32_t index : {2U, 3U, 1000U, 0x7FFFFFFFU, 0x80000000U, 0xFFFFFFFFU}) {
    for (const URL_INFO_CMD command : {0, 1, 5, 6, 1000}) {
      INFO_DATATYPE type = 0;
      size_t size = 0;
      EXPECT_GC_FROM(GC_ERR_INVALID_PARAMETER, Format("URL Index %d is out of range", static_cast<int32_t>(index)),
                     "GenICam::Client::CDevicePortCxp::GetPortURLInfo",
                     Gc().GCGetPortURLInfo(m_hPort, index, command, &type, nullptr, &size));
      EXPECT_EQ(Calls(), (Lines{Read(0x8)}));
    }
  }
}

// The subtraction wraps: every index passes.
TEST_F(RemoteUrl, ManifestOfSizeZeroLetsEveryIndexPass) {
  Script().SetCamera(kBoard, kChannel, CCamera().ManifestSize(0));
  OpenPort();
  for (const uint32_t index : {0U, 1U, 0xFFFFFFFFU}) {
    EXPECT_EQ(Ask(URL_INFO_FILE_VER_MAJOR, index).result, GC_ERR_SUCCESS);
    EXPECT_EQ(Calls(), (Lines{Read(0x8), Select(index), Read(0x10)}));
  }
  EXPECT_EQ(PortUrl(m_hPort).result, GC_ERR_SUCCESS);
  uint32_t count = 99;
  EXPECT_GC_OK(Gc().GCGetNumPortURLs(m_hPort, &count));
  EXPECT_EQ(count, 0U);
}

TEST_F(RemoteUrl, UnknownCommandFailsBehindTheSelection) {
  OpenPort();
  for (const URL_INFO_CMD command : {6, 7, 1000, -1}) {
    INFO_DATATYPE type = 0;
    size_t size = 0;
    EXPECT_GC(GC_ERR_INVALID_PARAMETER, Format("Invalid URL_INFO_CMD Command %08X", static_cast<unsigned>(command)),
              Gc().GCGetPortURLInfo(m_hPort, 0, command, &type, nullptr, &size));
    EXPECT_EQ(Calls(), (Lines{Read(0x8), Select(0)}));
  }
}

TEST_F(RemoteUrl, FailingTransfersEndTheQuestion) {
  OpenPort();
  struct {
    Match match;
    const char *message;
    const char *function;
  } const kRows[] = {
      {Match(Op::ControlRead).Address(0x8), "Error while reading 4 bytes from address 0x8 in camera, 4 bytes read.\n",
       "GRB_ControlRead"},
      {Match(Op::ControlWrite).Address(0xC), "Error while writing 4 bytes to address 0xc in camera, 4 bytes written.\n",
       "GRB_ControlWrite"},
      {Match(Op::ControlRead).Address(0x18), "Error while reading 4 bytes from address 0x18 in camera, 4 bytes read.\n",
       "GRB_ControlRead"},
      {Match(Op::ControlRead).Address(CCamera::kUrlAddress + 4),
       "Error while reading 4 bytes from address 0x6004 in camera, 4 bytes read.\n", "GRB_ControlRead"},
  };
  for (const auto &row : kRows) {
    SCOPED_TRACE(row.message);
    Script().On(row.match, Bang().Moved(4));
    INFO_DATATYPE type = 0;
    char buffer[64] = "untouched";
    size_t size = sizeof(buffer);
    EXPECT_GC(GC_ERR_IO, row.message + LibraryText(row.function),
              Gc().GCGetPortURLInfo(m_hPort, 0, URL_INFO_URL, &type, buffer, &size));
    EXPECT_STREQ(buffer, "untouched");
  }
}

// The text ------------------------------------------------------------------------------------------------------------

class RemoteUrlLength : public RemoteUrl, public testing::WithParamInterface<size_t> {};

// Read word by word up to the word with the zero; the size counts that whole word and two bytes more.
TEST_P(RemoteUrlLength, IsCountedInWords) {
  const std::string url = "http:" + std::string(GetParam(), 'u');
  const size_t words = url.size() / 4 + 1;
  OpenPort(url);
  Lines expected = {Read(0x8), Select(0), Read(0x18)};
  for (size_t i = 0; i < words; ++i) {
    expected.push_back(Read(static_cast<uint32_t>(CCamera::kUrlAddress + 4 * i)));
  }
  const Info size = Ask(URL_INFO_URL);
  EXPECT_EQ(size.result, GC_ERR_SUCCESS);
  EXPECT_EQ(size.type, INFO_DATATYPE_STRING);
  EXPECT_EQ(size.size, words * 4 + 2);
  EXPECT_EQ(Calls(), expected);

  const Info info = UrlInfo(m_hPort, 0, URL_INFO_URL);
  EXPECT_EQ(info.type, INFO_DATATYPE_STRING);
  EXPECT_EQ(info.size, words * 4 + 2);
  EXPECT_EQ(info.Text(), url);
  ASSERT_GE(info.bytes.size(), 2U);
  EXPECT_EQ(info.bytes[info.bytes.size() - 1], 0);
  EXPECT_EQ(info.bytes[info.bytes.size() - 2], 0);
}

INSTANTIATE_TEST_SUITE_P(Lengths, RemoteUrlLength, testing::Values(0, 1, 2, 3, 4, 5, 6, 7, 60, 2041, 2042));

// A zero anywhere in the word ends it, also at its begin; what follows in the word is delivered.
TEST_F(RemoteUrl, WordWithTheZeroIsDeliveredWhole) {
  Script().SetCamera(kBoard, kChannel,
                     CCamera().Bytes(CCamera::kUrlAddress, {'a', 'b', 'c', 'd', 0, 'x', 'y', 'z', 'q'}));
  OpenPort();
  const Info info = Fetch();
  EXPECT_EQ(info.bytes, (std::vector<uint8_t>{'a', 'b', 'c', 'd', 0, 'x', 'y', 'z', 0, 0}));
}

TEST_F(RemoteUrl, TextWithoutAZeroIsCutAt2048Characters) {
  for (const size_t length : {size_t{2048}, size_t{2049}, size_t{3000}}) {
    SCOPED_TRACE(length);
    Script().SetCamera(kBoard, kChannel, CCamera().Url(0, std::string(length, 'u')));
    OpenPort();
    const Info info = Fetch();
    EXPECT_EQ(info.size, 2050U);
    EXPECT_EQ(info.Text(), std::string(2048, 'u'));
    EXPECT_EQ(Calls().size(), 3U + 512U);
  }
}

TEST_F(RemoteUrl, OfTheWholeMarshalling) {
  OpenPort("Local:a.xml;9000;1");
  // 18 characters: five words and two bytes.
  const Info info = Ask(URL_INFO_URL);
  ASSERT_EQ(info.size, 22U);
  char buffer[64] = "untouched";
  size_t size = 21;
  INFO_DATATYPE type = Info::kUntouchedType;
  EXPECT_GC(GC_ERR_INVALID_PARAMETER, "Invalid Buffer Size.",
            Gc().GCGetPortURLInfo(m_hPort, 0, URL_INFO_URL, &type, buffer, &size));
  EXPECT_EQ(type, INFO_DATATYPE_STRING);
  EXPECT_EQ(size, 21U);
  EXPECT_STREQ(buffer, "untouched");
  EXPECT_EQ(SizeReadAt(0x9000), 5U);  // a refused answer is not parsed
  size = sizeof(buffer);
  EXPECT_GC_OK(Gc().GCGetPortURLInfo(m_hPort, 0, URL_INFO_URL, &type, buffer, &size));
  EXPECT_EQ(size, 22U);
  EXPECT_STREQ(buffer, "Local:a.xml;9000;1");
}

TEST_F(RemoteUrl, ShortFormIsTheUrlOfEntryZero) {
  Script().SetCamera(kBoard, kChannel, CCamera().Url(0, "Local:a.xml;9000;1").Url(1, "http:other"));
  OpenPort();
  size_t size = 3;
  EXPECT_GC_OK(Gc().GCGetPortURL(m_hPort, nullptr, &size));
  EXPECT_EQ(size, 22U);
  EXPECT_EQ(SizeReadAt(0x9000), 5U);
  EXPECT_EQ(PortUrl(m_hPort).Text(), "Local:a.xml;9000;1");
  EXPECT_EQ(SizeReadAt(0x9000), 8U);
  char small[8];
  size = sizeof(small);
  EXPECT_GC(GC_ERR_INVALID_PARAMETER, "Invalid Buffer Size.", Gc().GCGetPortURL(m_hPort, small, &size));
  EXPECT_EQ(size, sizeof(small));
}

TEST_F(RemoteUrl, OfEachEntryIsItsOwn) {
  Script().SetCamera(kBoard, kChannel, CCamera().Url(0, "http:zero").Url(1, "http:one").Url(2, "http:two"));
  OpenPort();
  EXPECT_EQ(Fetch(2).Text(), "http:two");
  EXPECT_EQ(Fetch(0).Text(), "http:zero");
  EXPECT_EQ(Fetch(1).Text(), "http:one");
}

// Parsing -------------------------------------------------------------------------------------------------------------

struct ParseRow {
  const char *url;
  uint64_t address;  // where the URL says that the file lies; 0: it says nothing
};

std::ostream &operator<<(std::ostream &out, const ParseRow &row) { return out << row.url; }

constexpr ParseRow kParsed[] = {
    {"Local:a.xml;9000;10", 0x9000},
    {"local:a.xml;9000;10", 0x9000},
    {"LOCAL:a.xml;9000;10", 0x9000},
    {"lOcAl:a.xml;9000;10", 0x9000},
    {"Local:a.xml;9AbC;10", 0x9ABC},
    {"Local:a.xml;00009000;10", 0x9000},
    {"Local:a.xml;9000;10?SchemaVersion=1.1.0", 0x9000},
    {"Local:a.xml;9000 ;10", 0x9000},
    {"Local:a.xml;9000h;10", 0x9000},
    {"Local:;9000;10", 0x9000},
    {"Local:with blank.xml;9000;10", 0x9000},
    {"Local:a.xml;9000;", 0x9000},
    {"Local:a.xml;fedcba9876543210;10", 0xFEDCBA9876543210ULL},
    {"Local:a.xml;100000000000009000;10", 0x9000},  // of more than 64 bits the low ones
    {"file:///a.xml;9000;10", 0},
    {"http://a.xml;9000;10", 0},
    {"Loca:a.xml;9000;10", 0},
    {" Local:a.xml;9000;10", 0},
    {"Local;a.xml;9000;10", 0},
    {"", 0},
};

class RemoteUrlParsing : public RemoteUrl, public testing::WithParamInterface<ParseRow> {};

TEST_P(RemoteUrlParsing, NotesTheAddressOfALocalFile) {
  OpenPort(GetParam().url);
  const uint64_t address = GetParam().address == 0 ? 0x9000 : GetParam().address;
  EXPECT_EQ(Ask(URL_INFO_URL).result, GC_ERR_SUCCESS);
  EXPECT_EQ(SizeReadAt(address), 5U);  // a question for the size parses nothing
  EXPECT_EQ(Fetch().Text(), GetParam().url);
  EXPECT_EQ(SizeReadAt(address), GetParam().address == 0 ? 5U : 8U);
}

INSTANTIATE_TEST_SUITE_P(Urls, RemoteUrlParsing, testing::ValuesIn(kParsed));

// Whatever is missing, the text is delivered and nothing breaks.
class RemoteUrlFragments : public RemoteUrl, public testing::WithParamInterface<const char *> {};

TEST_P(RemoteUrlFragments, AreDeliveredAsTheyStand) {
  OpenPort(GetParam());
  EXPECT_EQ(Fetch().Text(), GetParam());
  EXPECT_EQ(SizeReadAt(0x9000), 5U);
  EXPECT_EQ(UrlInfo(m_hPort, 0, URL_INFO_FILE_VER_MAJOR).As<int32_t>(), 1);
}

INSTANTIATE_TEST_SUITE_P(Urls, RemoteUrlFragments,
                         testing::Values("Local:", "Local:a.xml", "Local:a.xml;", "Local:;;", "Local:a.xml;;",
                                         "Local:;", "Local:a;zz;zz", "L", "Local"));

TEST_F(RemoteUrl, LocalTextThatFillsTheBufferIsParsedInside) {
  OpenPort("Local:" + std::string(3000, 'x'));
  const Info info = Fetch();
  EXPECT_EQ(info.size, 2050U);
  EXPECT_EQ(SizeReadAt(0x9000), 5U);
}

// Settings ------------------------------------------------------------------------------------------------------------

class RemoteUrlSettings : public SettingsTest {
 protected:
  Lines Calls(const std::function<void()> &action) {
    const size_t mark = Script().Mark();
    action();
    return Script().Trace(mark);
  }
  static std::string Call(const char *call) { return Format(call, HandleName(ControlHandle()).c_str()); }
  CTempDirectory m_Directory;
};

TEST_F(RemoteUrlSettings, TimeOutGoesWithEveryTransfer) {
  m_Settings.Dword("TimeOut", 50);
  Apply();
  PORT_HANDLE port = OpenRemotePort();
  const size_t mark = Script().Mark();
  uint32_t word = 0;
  EXPECT_GC_OK(Gc().GCGetNumPortURLs(port, &word));
  EXPECT_EQ(UrlInfo(port, 0, URL_INFO_URL).result, GC_ERR_SUCCESS);
  EXPECT_EQ(UrlInfo(port, 0, URL_INFO_FILE_VER_MAJOR).result, GC_ERR_SUCCESS);
  EXPECT_GC_OK(TryRead(port, 0x9000, &word, sizeof(word)));
  EXPECT_GC_OK(WriteU32Be(port, 0x9000, 1));
  const std::vector<Scripted::Call> calls = Script().Calls(mark);
  EXPECT_GT(calls.size(), 10U);
  for (const Scripted::Call &call : calls) {
    EXPECT_EQ(call.timeout, 50U) << call;
  }
}

// The identity reads keep their own.
TEST_F(RemoteUrlSettings, TimeOutLeavesTheIdentityReadsAlone) {
  m_Settings.Dword("TimeOut", 50);
  Apply();
  Discover();
  const size_t mark = Script().Mark();
  OpenDevice();
  for (const Scripted::Call &call : Script().Calls(Match(Op::ControlRead), mark)) {
    EXPECT_EQ(call.timeout, 400U) << call;
  }
}

TEST_F(RemoteUrlSettings, DebugUrlTakesThePlaceOfTheCameras) {
  m_Settings.Text("DebugCameraURL", "/some/cam.xml").Dword("EnableDebugCameraURL", 1);
  Apply();
  PORT_HANDLE port = OpenRemotePort();
  const std::string url = "file:////some/cam.xml";
  Info info;
  const Lines calls = Calls([&] {
    info = AskInfoOnce([&](INFO_DATATYPE *type, void *buffer,
                           size_t *size) { return Gc().GCGetPortURLInfo(port, 0, URL_INFO_URL, type, buffer, size); },
                       512);
  });
  EXPECT_EQ(info.type, INFO_DATATYPE_STRING);
  EXPECT_EQ(info.size, url.size() + 2);
  ASSERT_EQ(info.bytes.size(), url.size() + 2);
  EXPECT_EQ(info.Text(), url);
  EXPECT_EQ(info.bytes[url.size()], 0);
  EXPECT_EQ(info.bytes[url.size() + 1], 0);
  // The manifest is asked and selected, the URL is not read.
  EXPECT_EQ(calls, (Lines{Call("ControlRead(%s, GRB_PORT_CAMERA, 0x8, 4, 800)"),
                          Call("ControlWrite(%s, GRB_PORT_CAMERA, 0xc, 4, 800, 00000000)")}));
  EXPECT_EQ(PortUrl(port).Text(), url);
  EXPECT_EQ(UrlInfo(port, 0, URL_INFO_FILE_VER_MAJOR).As<int32_t>(), 1);
  INFO_DATATYPE type = 0;
  size_t size = 0;
  EXPECT_GC(GC_ERR_INVALID_PARAMETER, "URL Index 1 is out of range",
            Gc().GCGetPortURLInfo(port, 1, URL_INFO_URL, &type, nullptr, &size));
}

TEST_F(RemoteUrlSettings, DebugUrlNeedsRoomForItsTwoZeros) {
  m_Settings.Text("DebugCameraURL", "cam.xml");
  Apply();
  PORT_HANDLE port = OpenRemotePort();
  const std::string url = "file:///cam.xml";
  const auto ask = [port](size_t capacity) {
    return AskInfoOnce(
        [port](INFO_DATATYPE *type, void *buffer, size_t *size) {
          return Gc().GCGetPortURLInfo(port, 0, URL_INFO_URL, type, buffer, size);
        },
        capacity);
  };
  for (const size_t size : {size_t{1}, url.size(), url.size() + 1}) {
    SCOPED_TRACE(size);
    const Info info = ask(size);
    EXPECT_EQ(info.result, GC_ERR_INVALID_PARAMETER);
    EXPECT_EQ(info.type, INFO_DATATYPE_STRING);
    EXPECT_EQ(info.size, size);
    const std::optional<FailureText> text = SplitFailureText(LastError().text);
    ASSERT_TRUE(text.has_value());
    EXPECT_EQ(text->message, "Invalid Buffer Size.");
  }
  const Info info = ask(url.size() + 2);
  EXPECT_EQ(info.result, GC_ERR_SUCCESS);
  EXPECT_EQ(info.size, url.size() + 2);
  EXPECT_EQ(info.Text(), url);
}

TEST_F(RemoteUrlSettings, DebugUrlIsOnWhenNothingElseIsSaid) {
  m_Settings.Text("DebugCameraURL", "cam.xml");
  Apply();
  EXPECT_EQ(PortUrl(OpenRemotePort()).Text(), "file:///cam.xml");
}

TEST_F(RemoteUrlSettings, DebugUrlCanBeTurnedOff) {
  m_Settings.Text("DebugCameraURL", "cam.xml").Dword("EnableDebugCameraURL", 0);
  Apply();
  EXPECT_EQ(PortUrl(OpenRemotePort()).Text().substr(0, 6), "Local:");
}

TEST_F(RemoteUrlSettings, DebugUrlThatIsEmptyIsNone) {
  m_Settings.Text("DebugCameraURL", "").Dword("EnableDebugCameraURL", 1);
  Apply();
  EXPECT_EQ(PortUrl(OpenRemotePort()).Text().substr(0, 6), "Local:");
}

// Dump ----------------------------------------------------------------------------------------------------------------

class RemoteDump : public RemoteUrlSettings {
 protected:
  void OpenAt(const std::string &folder, uint32_t enable) {
    m_Settings.Text("DebugInfoOutputDir", folder).Dword("DebugOutputEnable", enable);
    Apply();
    Script().SetCamera(kBoard, kChannel, CCamera().Url(0, "Local:dump.xml;9000;7").Text(0x9000, "<a></a>tail.", 12));
    m_hPort = OpenRemotePort();
  }
  void Parse() { EXPECT_EQ(UrlInfo(m_hPort, 0, URL_INFO_URL).result, GC_ERR_SUCCESS); }
  // The file, whatever separates folder and name on this platform.
  std::optional<std::string> Dump(const std::string &name = "dump.xml") const {
    for (const char *separator : {"/", "\\"}) {
      if (std::optional<std::string> content = ReadFile(m_Directory.Path() + separator + name)) {
        return content;
      }
    }
    return std::nullopt;
  }
  PORT_HANDLE m_hPort = nullptr;
};

TEST_F(RemoteDump, HoldsTheBytesAskedFor) {
  OpenAt(m_Directory.Path(), 1);
  EXPECT_EQ(ReadText(m_hPort, 0x9000, 7), "<a></a>");
  EXPECT_EQ(Dump(), std::nullopt);  // the address is not noted yet
  Parse();
  EXPECT_EQ(Dump(), std::nullopt);
  EXPECT_EQ(ReadText(m_hPort, 0x9000, 7), "<a></a>");
  EXPECT_EQ(Dump(), "<a></a>");
}

TEST_F(RemoteDump, HoldsTheLatestReadOnly) {
  OpenAt(m_Directory.Path(), 1);
  Parse();
  ReadBytes(m_hPort, 0x9000, 12);
  EXPECT_EQ(Dump(), "<a></a>tail.");
  ReadBytes(m_hPort, 0x9000, 3);
  EXPECT_EQ(Dump(), "<a>");
  ReadBytes(m_hPort, 0x9004, 4);
  EXPECT_EQ(Dump(), "<a>");
}

TEST_F(RemoteDump, NeedsItsSwitch) {
  OpenAt(m_Directory.Path(), 0);
  Parse();
  ReadBytes(m_hPort, 0x9000, 7);
  EXPECT_EQ(Dump(), std::nullopt);
}

// Without a folder the file would land wherever its name leads from the root.
TEST_F(RemoteDump, NeedsAFolder) {
  OpenAt("", 1);
  const std::string path = m_Directory.Path() + "/dump.xml";
  Script().SetCamera(kBoard, kChannel,
                     CCamera().Url(0, "Local:" + path.substr(1) + ";9000;7").Text(0x9000, "<a></a>", 7));
  Parse();
  EXPECT_EQ(ReadText(m_hPort, 0x9000, 7), "<a></a>");
  EXPECT_EQ(Dump(), std::nullopt);
}

// A URL takes the place of an earlier one that named the same address.
TEST_F(RemoteDump, HasTheNameOfTheLatestUrl) {
  OpenAt(m_Directory.Path(), 1);
  Script().SetCamera(
      kBoard, kChannel,
      CCamera().Url(0, "Local:first.xml;9000;7").Url(1, "Local:second.xml;9000;7").Text(0x9000, "<a></a>", 7));
  for (const uint32_t index : {0U, 1U}) {
    EXPECT_EQ(UrlInfo(m_hPort, index, URL_INFO_URL).result, GC_ERR_SUCCESS);
  }
  ReadBytes(m_hPort, 0x9000, 7);
  EXPECT_EQ(Dump("first.xml"), std::nullopt);
  EXPECT_EQ(Dump("second.xml"), "<a></a>");
  Parse();
  ReadBytes(m_hPort, 0x9000, 3);
  EXPECT_EQ(Dump("first.xml"), "<a>");
  EXPECT_EQ(Dump("second.xml"), "<a></a>");
}

TEST_F(RemoteDump, IntoAFolderThatIsNotThereIsNoFailure) {
  OpenAt(m_Directory.Path() + "/none", 1);
  Parse();
  EXPECT_EQ(ReadText(m_hPort, 0x9000, 7), "<a></a>");
}

TEST_F(RemoteDump, OfAFailedReadDoesNotHappen) {
  OpenAt(m_Directory.Path(), 1);
  Parse();
  Script().On(Match(Op::ControlRead).Address(0x9000), Bang());
  uint32_t word = 0;
  EXPECT_GC_CODE(GC_ERR_IO, TryRead(m_hPort, 0x9000, &word, sizeof(word)));
  EXPECT_EQ(Dump(), std::nullopt);
}

TEST_F(RemoteDump, OlderNamesOfTheSettingsWork) {
  m_Settings.Text("DebugOutputXML", m_Directory.Path()).Dword("DebugOutputDebugString", 1);
  Apply();
  Script().SetCamera(kBoard, kChannel, CCamera().Url(0, "Local:dump.xml;9000;7").Text(0x9000, "<a></a>", 7));
  m_hPort = OpenRemotePort();
  Parse();
  ReadBytes(m_hPort, 0x9000, 7);
  EXPECT_EQ(Dump(), "<a></a>");
}

}  // namespace
}  // namespace DeviceTests
