// SPDX-License-Identifier: MIT
/// @file
/// The maintenance settings, as far as a Consumer or the frame-grabber library sees them.
#include <cstdint>
#include <string>
#include <vector>

#include "Tree.h"

using namespace FrameTests;

namespace {

class SettingsTest : public ProducerTest {
 protected:
  /// Writes the file as built and initialises with it.
  void Apply() {
    m_File.Write();
    Reinitialise();
  }
  /// The time-outs with which a read and a write of a camera register reach the library.
  std::vector<uint32_t> TimeOuts() {
    OpenRemotePort();
    PORT_HANDLE port = nullptr;
    EXPECT_GC_OK(Gc().DevGetPort(m_hDevice, &port));
    const size_t mark = Script().Mark();
    uint32_t word = 0;
    EXPECT_EQ(GC_ERR_SUCCESS, TryRead(port, CCamera::kWidthAddress, &word, 4));
    EXPECT_EQ(GC_ERR_SUCCESS, WriteU32Be(port, CCamera::kWidthAddress, 64));
    std::vector<uint32_t> timeouts;
    for (const Call &call : Script().Calls(mark)) {
      if (call.op == Op::ControlRead || call.op == Op::ControlWrite) {
        timeouts.push_back(call.timeout);
      }
    }
    return timeouts;
  }
  std::string CameraUrl() { return UrlInfo(OpenRemotePort(), 0, URL_INFO_URL).Text(); }
  /// Reads the camera's XML at its URL, which is what writes the dump.
  void FetchXml() { EXPECT_NE("", ReadXml(OpenRemotePort())); }
  /// The addresses of the camera that a start reads.
  std::vector<uint32_t> AddressesReadAtStart() {
    OpenStream();
    QueueBuffers(1);
    const size_t mark = Script().Mark();
    EXPECT_GC_OK(Gc().DSStartAcquisition(m_hStream, ACQ_START_FLAGS_DEFAULT, GENTL_INFINITE));
    std::vector<uint32_t> addresses;
    for (const Call &call : Script().Calls(Match(Op::ControlRead, GRB_PORT_CAMERA), mark)) {
      if (call.address != 0x4) {
        addresses.push_back(call.address);
      }
    }
    EXPECT_GC_OK(Gc().DSStopAcquisition(m_hStream, ACQ_STOP_FLAGS_KILL));
    return addresses;
  }
  CSettingsFile m_File;
};

using Numbers = std::vector<uint32_t>;

TEST_F(SettingsTest, WithoutAFileTheTimeOutIs800) { EXPECT_EQ((Numbers{800, 800}), TimeOuts()); }

TEST_F(SettingsTest, TimeOutReachesTheLibraryAsItStands) {
  for (const uint32_t timeOut : {50U, 0U, 0xFFFFFFFFU}) {
    m_File.Clear().Dword("TimeOut", timeOut);
    Apply();
    EXPECT_EQ((Numbers{timeOut, timeOut}), TimeOuts());
  }
}

TEST_F(SettingsTest, TimeOutIsReadByInitialisationOnly) {
  m_File.Dword("TimeOut", 50);
  Apply();
  m_File.Clear().Dword("TimeOut", 60).Write();
  EXPECT_EQ((Numbers{50, 50}), TimeOuts());
  EXPECT_GC_CODE(GC_ERR_RESOURCE_IN_USE, Gc().GCInitLib());
  EXPECT_EQ((Numbers{50, 50}), TimeOuts());
  Reinitialise();
  EXPECT_EQ((Numbers{60, 60}), TimeOuts());
}

TEST_F(SettingsTest, ValueThatIsGoneKeepsItsContentUntilTheUnload) {
  m_File.Dword("TimeOut", 50);
  Apply();
  m_File.Clear().Key("SOFTWARE\\Lumivex\\GenTL");
  Apply();
  EXPECT_EQ((Numbers{50, 50}), TimeOuts());
  m_File.Remove();
  Reinitialise();
  EXPECT_EQ((Numbers{50, 50}), TimeOuts());
  // A freshly loaded library stands at the defaults.
  ASSERT_EQ(GC_ERR_SUCCESS, Gc().GCCloseLib());
  m_hSystem = m_hInterface = m_hDevice = m_hStream = nullptr;
  CProducer::Instance().Reload();
  ASSERT_GC_OK(Gc().GCInitLib());
  EXPECT_EQ((Numbers{800, 800}), TimeOuts());
}

TEST_F(SettingsTest, TextInPlaceOfTheTimeOutEndsTheReadingSilently) {
  CProducer::Instance();
  m_File.Text("DebugCameraURL", "cam.xml")
      .Text("TimeOut", "50")
      .Dword("Cxpv11Enable", 1)
      .Dword("Cxpv11WidthAddress", CCamera::kWidthAddress);
  ASSERT_EQ(GC_ERR_SUCCESS, Gc().GCCloseLib());
  CProducer::Instance().Reload();
  m_File.Write();
  EXPECT_GC_OK(Gc().GCInitLib());
  EXPECT_EQ((Numbers{800, 800}), TimeOuts());
  EXPECT_EQ("file:///cam.xml", CameraUrl()) << "values before the fault hold";
  EXPECT_EQ(Numbers{}, AddressesReadAtStart()) << "values behind it do not";
}

/// The URL of the camera, as the settings turn it.
struct UrlRow {
  const char *name;
  std::vector<std::string> lines;
  const char *url;  ///< null: the camera's own
};
std::ostream &operator<<(std::ostream &out, const UrlRow &row) { return out << row.name; }

class DebugUrl : public SettingsTest, public testing::WithParamInterface<UrlRow> {
 protected:
  void SetUp() override {
    CProducer::Instance().Reload();  // settings outlive GCCloseLib, not the library
    SettingsTest::SetUp();
  }
};

TEST_P(DebugUrl, TakesThePlaceOfTheCamerasOrNot) {
  const std::string own = CameraUrl();
  EXPECT_EQ(0U, own.find("Local:testcam.xml;"));
  m_File.Key("SOFTWARE\\Lumivex\\GenTL");
  for (const std::string &line : GetParam().lines) {
    m_File.Line(line);
  }
  Apply();
  EXPECT_EQ(GetParam().url == nullptr ? own : GetParam().url, CameraUrl());
}

INSTANTIATE_TEST_SUITE_P(
    Rows, DebugUrl,
    testing::Values(
        UrlRow{"Nothing", {}, nullptr},
        UrlRow{"UrlAlone", {"\"DebugCameraURL\"=\"C:\\\\a b.xml\""}, "file:///C:\\a b.xml"},
        UrlRow{"UrlOn", {"\"DebugCameraURL\"=\"/a.xml\"", "\"EnableDebugCameraURL\"=dword:1"}, "file:////a.xml"},
        UrlRow{"UrlOff", {"\"DebugCameraURL\"=\"/a.xml\"", "\"EnableDebugCameraURL\"=dword:0"}, nullptr},
        UrlRow{"OnWithoutUrl", {"\"EnableDebugCameraURL\"=dword:1"}, nullptr},
        UrlRow{"EmptyUrl", {"\"DebugCameraURL\"=\"\""}, nullptr}),
    [](const testing::TestParamInfo<UrlRow> &row) { return std::string(row.param.name); });

TEST_F(DebugUrl, DumpGoesIntoTheFolder) {
  struct {
    const char *name;
    const char *folder;
    const char *enable;
    uint32_t value;
    bool written;
  } const rows[] = {
      {"off", "DebugInfoOutputDir", "DebugOutputEnable", 0, false},
      {"on", "DebugInfoOutputDir", "DebugOutputEnable", 1, true},
      {"older folder", "DebugOutputXML", "DebugOutputEnable", 2, true},
      {"older flag", "DebugInfoOutputDir", "DebugOutputDebugString", 0x80000000U, true},
  };
  for (const auto &row : rows) {
    SCOPED_TRACE(row.name);
    const CTempDirectory directory;
    m_File.Clear().Text(row.folder, directory.Path()).Dword(row.enable, row.value);
    ASSERT_EQ(GC_ERR_SUCCESS, Gc().GCCloseLib());
    m_hSystem = m_hInterface = m_hDevice = m_hStream = nullptr;
    CProducer::Instance().Reload();
    m_File.Write();
    ASSERT_GC_OK(Gc().GCInitLib());
    FetchXml();
    const auto content = ReadFile(directory.File("testcam.xml"));
    EXPECT_EQ(row.written, content.has_value());
    if (content) {
      EXPECT_EQ(0U, content->find(Script().Camera(GRB_BOARD_1, GRB_CHANNEL_1).XmlText()));
    }
  }
}

TEST_F(DebugUrl, NewerFlagOfZeroWinsOverTheOlder) {
  const CTempDirectory directory;
  m_File.Text("DebugInfoOutputDir", directory.Path()).Dword("DebugOutputEnable", 0).Dword("DebugOutputDebugString", 1);
  Apply();
  FetchXml();
  EXPECT_FALSE(ReadFile(directory.File("testcam.xml")).has_value());
}

TEST_F(DebugUrl, FallbackAddressesAreReadAtAStart) {
  m_File.Dword("Cxpv11Enable", 1)
      .Dword("Cxpv11PixelFormatAddress", CCamera::kPixelFormatAddress)
      .Dword("Cxpv11WidthAddress", CCamera::kWidthAddress)
      .Dword("Cxpv11HeightAddress", CCamera::kHeightAddress);
  Apply();
  Script().WriteCameraU32(GRB_BOARD_1, GRB_CHANNEL_1, CCamera::kPixelFormatAddress, 0x0101);
  EXPECT_EQ((Numbers{CCamera::kWidthAddress, CCamera::kHeightAddress, CCamera::kPixelFormatAddress}),
            AddressesReadAtStart());
}

TEST_F(DebugUrl, WithoutTheFlagNoFallbackAddressIsRead) {
  m_File.Dword("Cxpv11PixelFormatAddress", CCamera::kPixelFormatAddress)
      .Dword("Cxpv11WidthAddress", CCamera::kWidthAddress)
      .Dword("Cxpv11HeightAddress", CCamera::kHeightAddress);
  Apply();
  EXPECT_EQ(Numbers{}, AddressesReadAtStart());
}

TEST_F(DebugUrl, MalformedFilesAreNeverAnError) {
  for (const std::string &content :
       {std::string(), std::string(5000, '\0'), std::string(5000, '['), std::string("\xFF\xFE["),
        std::string("[HKEY_LOCAL_MACHINE\\SOFTWARE\\Lumivex\\GenTL]\n\"TimeOut\"=dword:zz\n")}) {
    m_File.WriteBytes(std::vector<uint8_t>(content.begin(), content.end()));
    Reinitialise();
    EXPECT_EQ((Numbers{800, 800}), TimeOuts());
  }
}

}  // namespace
