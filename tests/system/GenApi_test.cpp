// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <map>
#include <ostream>
#include <set>
#include <thread>

#include "Camera.h"
#include "NodeMap.h"

/// A real GenApi over the real ports: what a user of a feature tree does. Most of it walks the tree as it is found, so
/// that a new feature is tested without being named.
namespace {

using namespace SystemTest;  // NOLINT

// Entries that the tests speak of by name.
constexpr const char *kDelayTime = "GRB_CAMTRIG_DELAY_TIME";
constexpr const char *kPulses = "GRB_TIMERA1_MODE_N_PULSES";

/// What has to be set before a feature can be written, because it is locked or has no room otherwise.
struct Condition {
  const char *feature;
  const char *other;
  const char *value;
};
constexpr Condition kConditions[] = {
    {"OffsetX", "Width", "16"},
    {"OffsetY", "Height", "16"},
    {"GRB_TIMERA1_PULSE_COUNT", "GRB_TIMERA1_MODE", kPulses},
    {"GRB_TIMERD1FG_VALUE_NS", "GRB_FGTRIG_DELAY_MODE", "GRB_FGTRIG_DELAY_TIME"},
    {"GRB_TIMERD1FG_COUNT", "GRB_FGTRIG_DELAY_MODE", "GRB_FGTRIG_DELAY_LINE"},
    {"GRB_TIMERD1CAM_VALUE_NS", "GRB_CAMTRIG_DELAY_MODE_D1CAM", kDelayTime},
    {"GRB_TIMERD2CAM_VALUE_NS", "GRB_CAMTRIG_DELAY_MODE_D2CAM", kDelayTime},
};

/// A value that does not read back as it was written.
struct Adjustment {
  const char *feature;
  int64_t (*read)(int64_t written);
};
constexpr Adjustment kAdjustments[] = {
    // The one width that the firmware has.
    {"GRB_CAMTRIG_ENCODER_FILTER_NS", [](int64_t written) -> int64_t { return written == 0 ? 0 : 2000; }},
    {"GRB_CAMTRIG_FILTER_NS",
     [](int64_t written) -> int64_t { return written == 0 ? 0 : std::max<int64_t>(written, 66); }},
    {"GRB_FGTRIG_FILTER_NS",
     [](int64_t written) -> int64_t { return written == 0 ? 0 : std::max<int64_t>(written, 66); }},
    // A command letter and a counter that any write clears.
    {"GRB_Register_Command", [](int64_t) -> int64_t { return 0; }},
    {"CxpTestErrorCount", [](int64_t) -> int64_t { return 0; }},
};

int64_t ReadBack(const std::string &feature, int64_t written) {
  for (const Adjustment &row : kAdjustments) {
    if (feature == row.feature) {
      return row.read(written);
    }
  }
  return written;
}

/// Its values are a few combinations, which have a test of their own.
bool IsLinkConfig(const std::string &feature) { return feature == "CxpConnectionConfig"; }

class GenApi : public SimulationTest {
 protected:
  void SetUp() override {
    SimulationTest::SetUp();
    OpenInterface();
    EXPECT_OK(Gc().IFUpdateDeviceList(m_hInterface, nullptr, 100));
  }

  /// Those that a user can write now or once their condition is met: not constants, not commands.
  static std::vector<std::string> Writable(CNodeMap &map, NodeKind kind) {
    std::vector<std::string> names;
    for (const std::string &name : map.Features()) {
      if (map.Kind(name) == kind && !map.RegisterOf(name).empty() && map.IsWritable(name) && map.IsAvailable(name)) {
        names.push_back(name);
      }
    }
    EXPECT_FALSE(names.empty());
    return names;
  }

  static void Prepare(CNodeMap &map, const std::string &feature) {
    for (const Condition &row : kConditions) {
      if (feature == row.feature && map.Has(row.other)) {
        EXPECT_TRUE(map.SetText(row.other, row.value)) << map.Failure();
      }
    }
    EXPECT_FALSE(map.IsLocked(feature)) << feature;
  }

  static size_t PayloadSize(DS_HANDLE stream) { return StreamValue<size_t>(stream, STREAM_INFO_PAYLOAD_SIZE); }
};

// Every port --------------------------------------------------------------------------------------------------------

enum class Port { System, Interface, Device, Stream, Camera };
struct PortRow {
  const char *name;
  Port port;
  uint32_t channel;
  size_t features;  // at least
};
// What a failing parameter is shown as.
std::ostream &operator<<(std::ostream &out, const PortRow &row) { return out << row.name; }
constexpr PortRow kPorts[] = {
    {"System", Port::System, 1, 16},       {"Interface", Port::Interface, 1, 12},
    {"FirstDevice", Port::Device, 1, 100}, {"SecondDevice", Port::Device, 2, 100},
    {"FirstStream", Port::Stream, 1, 8},   {"SecondStream", Port::Stream, 2, 8},
    {"FirstCamera", Port::Camera, 1, 25},  {"SecondCamera", Port::Camera, 2, 25},
};

class GenApiPort : public GenApi, public testing::WithParamInterface<PortRow> {
 protected:
  void SetUp() override {
    GenApi::SetUp();
    const PortRow &row = GetParam();
    m_hDevice = OpenDevice(row.channel);
    switch (row.port) {
      case Port::System:
        m_hPort = m_hSystem;
        break;
      case Port::Interface:
        m_hPort = m_hInterface;
        break;
      case Port::Device:
        m_hPort = m_hDevice;
        break;
      case Port::Stream:
        EXPECT_OK(Gc().DevOpenDataStream(m_hDevice, kStreamId, &m_hPort));
        break;
      case Port::Camera:
        m_hPort = RemotePort(m_hDevice);
        break;
    }
    m_pMap = std::make_unique<CNodeMap>(m_hPort);
    ASSERT_TRUE(m_pMap->IsBuilt());
  }
  void TearDown() override {
    m_pMap.reset();
    GenApi::TearDown();
  }

  DEV_HANDLE m_hDevice = nullptr;
  PORT_HANDLE m_hPort = nullptr;
  std::unique_ptr<CNodeMap> m_pMap;
};

TEST_P(GenApiPort, EveryFeatureIsRead) {
  const std::vector<std::string> features = m_pMap->Features();
  EXPECT_GE(features.size(), GetParam().features);
  for (const std::string &name : features) {
    SCOPED_TRACE(name);
    EXPECT_TRUE(m_pMap->IsAvailable(name)) << m_pMap->Failure();
    if (!m_pMap->IsReadable(name)) {
      continue;
    }
    const std::string text = m_pMap->Text(name);
    EXPECT_EQ(m_pMap->Failure(), "");
    if (m_pMap->Kind(name) == NodeKind::Integer) {
      const int64_t value = m_pMap->Integer(name);
      EXPECT_EQ(m_pMap->Failure(), "");
      EXPECT_GE(value, m_pMap->Minimum(name));
      EXPECT_LE(value, m_pMap->Maximum(name));
    } else if (m_pMap->Kind(name) == NodeKind::Enumeration) {
      // An enumeration that stands on no entry fails in a user's tree.
      const std::vector<EntryValue> entries = m_pMap->Entries(name);
      EXPECT_TRUE(std::any_of(entries.begin(), entries.end(), [&](const EntryValue &entry) {
        return entry.name == text && entry.value == m_pMap->Integer(name);
      })) << text;
    }
  }
}

TEST_P(GenApiPort, WhatIsReadOnlyIsNotWritten) {
  const uint64_t writes = m_pMap->Writes();
  for (const std::string &name : m_pMap->Features()) {
    if (m_pMap->IsWritable(name) || !m_pMap->IsReadable(name)) {
      continue;
    }
    SCOPED_TRACE(name);
    EXPECT_FALSE(m_pMap->SetText(name, m_pMap->Text(name)));
    EXPECT_NE(m_pMap->Failure(), "");
  }
  EXPECT_EQ(m_pMap->Writes(), writes);
}

INSTANTIATE_TEST_SUITE_P(Of, GenApiPort, testing::ValuesIn(kPorts),
                         [](const testing::TestParamInfo<PortRow> &row) { return row.param.name; });

// Values ------------------------------------------------------------------------------------------------------------

constexpr PortRow kWritablePorts[] = {
    {"FirstDevice", Port::Device, 1, 0},
    {"SecondDevice", Port::Device, 2, 0},
    {"FirstCamera", Port::Camera, 1, 0},
    {"SecondCamera", Port::Camera, 2, 0},
};

class GenApiValues : public GenApiPort {};

TEST_P(GenApiValues, IntegersTakeTheirLimitsAndOneBetween) {
  for (const std::string &name : Writable(*m_pMap, NodeKind::Integer)) {
    if (IsLinkConfig(name)) {
      continue;
    }
    SCOPED_TRACE(name);
    Prepare(*m_pMap, name);
    const int64_t before = m_pMap->Integer(name);
    const int64_t low = m_pMap->Minimum(name);
    const int64_t high = m_pMap->Maximum(name);
    const int64_t step = std::max<int64_t>(m_pMap->Increment(name), 1);
    ASSERT_LE(low, high);
    const int64_t middle =
        low + static_cast<int64_t>((static_cast<uint64_t>(high) - static_cast<uint64_t>(low)) / 2) / step * step;
    for (const int64_t value : {low, middle, high}) {
      EXPECT_TRUE(m_pMap->SetInteger(name, value)) << value << ": " << m_pMap->Failure();
      EXPECT_EQ(m_pMap->Integer(name), ReadBack(name, value));
      EXPECT_EQ(m_pMap->Failure(), "");
    }
    EXPECT_TRUE(m_pMap->SetInteger(name, before)) << m_pMap->Failure();
  }
}

TEST_P(GenApiValues, IntegersRefuseWhatIsOutOfRange) {
  for (const std::string &name : Writable(*m_pMap, NodeKind::Integer)) {
    SCOPED_TRACE(name);
    Prepare(*m_pMap, name);
    const int64_t before = m_pMap->Integer(name);
    const uint64_t writes = m_pMap->Writes();
    EXPECT_FALSE(m_pMap->SetInteger(name, m_pMap->Minimum(name) - 1));
    EXPECT_NE(m_pMap->Failure(), "");
    EXPECT_FALSE(m_pMap->SetInteger(name, m_pMap->Maximum(name) + 1));
    EXPECT_NE(m_pMap->Failure(), "");
    EXPECT_EQ(m_pMap->Writes(), writes) << "it reached the port";
    EXPECT_EQ(m_pMap->Integer(name), before);
  }
}

TEST_P(GenApiValues, EnumerationsTakeEachEntryAndNothingElse) {
  for (const std::string &name : Writable(*m_pMap, NodeKind::Enumeration)) {
    SCOPED_TRACE(name);
    Prepare(*m_pMap, name);
    const std::string before = m_pMap->Text(name);
    for (const EntryValue &entry : m_pMap->Entries(name)) {
      EXPECT_TRUE(m_pMap->SetText(name, entry.name)) << entry.name << ": " << m_pMap->Failure();
      EXPECT_EQ(m_pMap->Text(name), entry.name) << m_pMap->Failure();
      EXPECT_EQ(m_pMap->Integer(name), entry.value);
    }
    EXPECT_TRUE(m_pMap->SetText(name, before)) << m_pMap->Failure();
    EXPECT_FALSE(m_pMap->SetText(name, "NoSuchEntry"));
    EXPECT_FALSE(m_pMap->SetInteger(name, 0x5A5A5A5A));
    EXPECT_EQ(m_pMap->Text(name), before);
  }
}

INSTANTIATE_TEST_SUITE_P(Of, GenApiValues, testing::ValuesIn(kWritablePorts),
                         [](const testing::TestParamInfo<PortRow> &row) { return row.param.name; });

/// The node maps of one open Device.
class GenApiDevice : public GenApi, public testing::WithParamInterface<uint32_t> {
 protected:
  void Open(uint32_t channel, DEVICE_ACCESS_FLAGS flags = DEVICE_ACCESS_CONTROL) {
    m_hDevice = OpenDevice(channel, flags);
    m_pDevice = std::make_unique<CNodeMap>(m_hDevice);
    m_pCamera = std::make_unique<CNodeMap>(RemotePort(m_hDevice));
  }
  void TearDown() override {
    m_pCamera.reset();
    m_pDevice.reset();
    GenApi::TearDown();
  }
  CNodeMap &Device() { return *m_pDevice; }
  CNodeMap &CameraMap() { return *m_pCamera; }
  void Set(const std::string &name, int64_t value) {
    EXPECT_TRUE(Device().SetInteger(name, value)) << name << ": " << Device().Failure();
  }
  void Set(const std::string &name, const std::string &entry) {
    EXPECT_TRUE(Device().SetText(name, entry)) << name << ": " << Device().Failure();
  }
  void Execute(const std::string &name) { EXPECT_TRUE(Device().Execute(name)) << name << ": " << Device().Failure(); }

  DEV_HANDLE m_hDevice = nullptr;
  std::unique_ptr<CNodeMap> m_pDevice;
  std::unique_ptr<CNodeMap> m_pCamera;
};

TEST_F(GenApiDevice, FiltersHaveTheirFloors) {
  Open(1);
  const std::tuple<const char *, int64_t, int64_t> rows[] = {
      {"GRB_FGTRIG_FILTER_NS", 10, 66},       {"GRB_FGTRIG_FILTER_NS", 65, 66},
      {"GRB_FGTRIG_FILTER_NS", 67, 67},       {"GRB_CAMTRIG_FILTER_NS", 1, 66},
      {"GRB_CAMTRIG_FILTER_NS", 0, 0},        {"GRB_CAMTRIG_ENCODER_FILTER_NS", 1, 2000},
      {"GRB_CAMTRIG_ENCODER_FILTER_NS", 0, 0}};
  for (const auto &[name, written, read] : rows) {
    Set(name, written);
    EXPECT_EQ(Device().Integer(name), read) << name << ' ' << written;
  }
}

TEST_F(GenApiDevice, BlockingIsABooleanOfItsOwnValues) {
  constexpr uint64_t kAcqBlocking = 0x184C;
  Open(1);
  EXPECT_EQ(Device().Kind("GRB_ACQ_BLOCKING"), NodeKind::Boolean);
  for (const bool value : {false, true, false}) {
    Set("GRB_ACQ_BLOCKING", value ? 1 : 0);
    EXPECT_EQ(Device().Integer("GRB_ACQ_BLOCKING"), value ? 1 : 0);
    EXPECT_EQ(ReadU32(m_hDevice, kAcqBlocking), value ? 1U : 2U);
  }
}

TEST_F(GenApiDevice, TextsAndFloatsAreReadBack) {
  Open(2);
  for (const char *const name : {"GRB_CONFIG_FILE", "GRB_CONFIG_FILE_SAVE_NAME"}) {
    for (const std::string &text : {std::string("a b.gcf"), std::string(1023, 'x'), std::string()}) {
      EXPECT_TRUE(Device().SetText(name, text)) << Device().Failure();
      EXPECT_EQ(Device().Text(name), text);
    }
  }
  EXPECT_TRUE(CameraMap().SetText("DeviceUserID", "bench 7")) << CameraMap().Failure();
  EXPECT_EQ(CameraMap().Text("DeviceUserID"), "bench 7");
  for (const char *const name : {"AcquisitionFrameRate", "ExposureTime"}) {
    const double low = CameraMap().FloatMinimum(name);
    const double high = CameraMap().FloatMaximum(name);
    for (const double value : {low, high, 250.0}) {
      EXPECT_TRUE(CameraMap().SetFloat(name, value)) << name << ": " << CameraMap().Failure();
      EXPECT_NEAR(CameraMap().Float(name), value, value * 1e-6);
    }
    EXPECT_FALSE(CameraMap().SetFloat(name, high * 2));
    EXPECT_FALSE(CameraMap().SetFloat(name, low / 2));
    EXPECT_NEAR(CameraMap().Float(name), 250.0, 1e-3);
  }
}

// One value, many features --------------------------------------------------------------------------------------------

/// What the library calls a pixel format: MONO8, BAYER_GR10, RGBA16.
std::string LibraryName(std::string format) {
  const std::string bayer = "Bayer";
  const std::string pattern = format.rfind(bayer, 0) == 0 ? "BAYER_" : "";
  format.erase(0, pattern.empty() ? 0 : bayer.size());
  std::transform(format.begin(), format.end(), format.begin(),
                 [](unsigned char letter) { return static_cast<char>(std::toupper(letter)); });
  return pattern + format;
}

// The tables of the Producer and the entries of the description stand in two places: a format of the one must be an
// entry of the other.
TEST_F(GenApiDevice, FormatsOfTheLibraryFollowThePixelFormat) {
  constexpr uint64_t kBusFormat = 0x1CA4;
  constexpr uint32_t kGb14 = 0xC0022636;
  constexpr uint32_t kRg16 = 0xC0022639;
  Open(1);
  const std::vector<EntryValue> formats = Device().Entries("PixelFormat");
  EXPECT_EQ(formats.size(), 41U);
  for (const EntryValue &format : formats) {
    SCOPED_TRACE(format.name);
    const std::string name = LibraryName(format.name);
    Set("PixelFormat", format.name);
    EXPECT_EQ(Device().Text("GRB_USR_FORMAT"), "GRB_USR_FORMAT_" + name);
    EXPECT_EQ(Device().Integer("GRB_USR_FORMAT"), ReadU32(m_hDevice, 0x1CA8));
    EXPECT_EQ(Device().Integer("GRB_BUS_FORMAT"), ReadU32(m_hDevice, kBusFormat));
    if (format.name == "BayerRG16") {
      // Kept: the entry has another's value, so what the library is set to is none.
      EXPECT_EQ(ReadU32(m_hDevice, kBusFormat), kRg16);
      EXPECT_EQ(Device().Text("GRB_BUS_FORMAT"), "");
    } else if (format.name == "BayerGB14") {
      // Two entries have this value: which of them is shown is the GenApi's own.
      EXPECT_EQ(ReadU32(m_hDevice, kBusFormat), kGb14);
    } else {
      EXPECT_EQ(Device().Text("GRB_BUS_FORMAT"), "GRB_BUS_FORMAT_" + name);
    }
  }
}

TEST_F(GenApiDevice, ColourAndDepthFollowTheIncomingFormat) {
  const std::pair<const char *, const char *> colours[] = {
      {"BayerGR", "GRB_CAM_SRC_BAY_GRBG"}, {"BayerRG", "GRB_CAM_SRC_BAY_RGGB"}, {"BayerGB", "GRB_CAM_SRC_BAY_GBRG"},
      {"BayerBG", "GRB_CAM_SRC_BAY_BGGR"}, {"Mono", "GRB_CAM_SRC_MONO"},        {"RGBa", "GRB_CAM_SRC_RGBA"},
      {"RGB", "GRB_CAM_SRC_RGB"},          {"YUV422_", "GRB_CAM_SRC_YUV"}};
  Open(1);
  const std::vector<EntryValue> formats = Device().Entries("IncomingPixelFormat");
  EXPECT_EQ(formats.size(), 36U);
  for (const EntryValue &format : formats) {
    SCOPED_TRACE(format.name);
    const auto *const colour = std::find_if(std::begin(colours), std::end(colours),
                                            [&](const auto &row) { return format.name.rfind(row.first, 0) == 0; });
    ASSERT_NE(colour, std::end(colours));
    Set("IncomingPixelFormat", format.name);
    EXPECT_EQ(Device().Text("GRB_CAM_SRC_COL"), colour->second);
    EXPECT_EQ(Device().Text("GRB_CAM_SRC_DEPTH"), format.name.substr(std::string(colour->first).size()));
  }
}

TEST_F(GenApiDevice, CameraTypeFollowsTheScanType) {
  Open(1);
  for (const char *const type : {"LINESCAN", "AREASCAN", "LINESCAN"}) {
    Set("DeviceScanType", std::string(type) == "LINESCAN" ? "Linescan" : "Areascan");
    EXPECT_EQ(Device().Text("GRB_CAM_TYPE"), std::string("GRB_CAM_") + type + "_ROI");
  }
}

// The tree stays at 1; a register write does not.
TEST_F(GenApiDevice, BothDecimationsOfTheLibraryShowTheHorizontalOne) {
  constexpr uint64_t kHorizontal = 0x624;
  constexpr uint64_t kVertical = 0x628;
  constexpr uint64_t kXSub = 0x1428;
  constexpr uint64_t kYSub = 0x142C;
  constexpr uint32_t kX1 = 0xC0020701;
  Open(1);
  uint32_t value = kX1;
  for (const uint32_t factor : {1U, 2U, 4U, 8U}) {
    SCOPED_TRACE(factor);
    const std::string entry = "GRB_ACQ_X" + std::to_string(factor);
    ASSERT_OK(WriteU32(m_hDevice, kHorizontal, factor));
    EXPECT_EQ(ReadU32(m_hDevice, kXSub), value);
    EXPECT_EQ(Device().Text("GRB_ACQ_XSUB"), entry);
    // Kept: the vertical feature stands on the horizontal register.
    EXPECT_EQ(Device().Text("GRB_ACQ_YSUB"), entry);
    EXPECT_EQ(ReadU32(m_hDevice, kYSub), kX1);
    ++value;
  }
  ASSERT_OK(WriteU32(m_hDevice, kVertical, 2));
  EXPECT_EQ(ReadU32(m_hDevice, kYSub), kX1 + 1);
  EXPECT_EQ(Device().Text("GRB_ACQ_YSUB"), "GRB_ACQ_X8");
  ASSERT_OK(WriteU32(m_hDevice, kXSub, kX1 + 2));
  EXPECT_EQ(Device().Text("GRB_ACQ_YSUB"), "GRB_ACQ_X4");
}

TEST_F(GenApiDevice, ShiftHasTwoNames) {
  Open(1);
  const std::string names[] = {"GRB_BIT_SHIFT", "GRB_LUT_SHIFT"};
  for (const int64_t shift : {3, -2, 0}) {
    for (size_t i = 0; i < 2; ++i) {
      Set(names[i], shift + static_cast<int64_t>(i));
      EXPECT_EQ(Device().Integer(names[1 - i]), shift + static_cast<int64_t>(i)) << names[i];
    }
  }
}

// Size of the image -------------------------------------------------------------------------------------------------

TEST_P(GenApiDevice, PayloadSizeFollowsEachChangeOfTheImage) {
  Open(GetParam());
  DS_HANDLE stream = nullptr;
  ASSERT_OK(Gc().DevOpenDataStream(m_hDevice, kStreamId, &stream));
  CNodeMap map(stream);
  const auto check = [&] {
    const PixelFormatRow *const format = FindPixelFormat(static_cast<uint64_t>(Device().Integer("PixelFormat")));
    ASSERT_NE(format, nullptr);
    const auto width = static_cast<uint32_t>(Device().Integer("Width"));
    const size_t size = LineBytes(*format, width) * static_cast<size_t>(Device().Integer("Height"));
    EXPECT_EQ(PayloadSize(stream), size) << format->name << ' ' << width;
    EXPECT_EQ(map.Integer("PayloadSize"), static_cast<int64_t>(size));
    EXPECT_EQ(Device().Integer("GRB_ROI_XLENGTH"), width);
    EXPECT_EQ(Device().Integer("GRB_ROI_YLENGTH"), Device().Integer("Height"));
  };
  check();
  for (const int64_t width : {16, 37, 334, 640, 1279}) {
    Set("Width", width);
    check();
  }
  for (const int64_t height : {1, 7, 1000}) {
    Set("Height", height);
    check();
  }
  for (const EntryValue &entry : Device().Entries("PixelFormat")) {
    Set("PixelFormat", entry.name);
    check();
  }
}

TEST_P(GenApiDevice, WidthAndOffsetLimitEachOther) {
  struct Axis {
    const char *size;
    const char *most;
    const char *offset;
    const char *incoming;
    const char *source;
    int64_t sensor[2];
  };
  constexpr Axis kAxes[] = {{"Width", "WidthMax", "OffsetX", "IncomingWidth", "GRB_ROI_SRC_XOFFSET", {1280, 1920}},
                            {"Height", "HeightMax", "OffsetY", "IncomingHeight", "GRB_ROI_SRC_YOFFSET", {1024, 1080}}};
  Open(GetParam());
  for (const Axis &axis : kAxes) {
    SCOPED_TRACE(axis.size);
    const int64_t sensor = axis.sensor[GetParam() - 1];
    EXPECT_EQ(Device().Integer(axis.most), sensor);
    EXPECT_EQ(Device().Maximum(axis.size), sensor);
    EXPECT_EQ(Device().Maximum(axis.offset), 0);
    EXPECT_FALSE(Device().SetInteger(axis.offset, 1));
    EXPECT_FALSE(Device().SetInteger(axis.size, sensor + 1));
    Set(axis.size, 400);
    EXPECT_EQ(Device().Maximum(axis.offset), sensor - 400);
    Set(axis.offset, sensor - 400);
    EXPECT_EQ(Device().Integer(axis.source), sensor - 400);
    EXPECT_FALSE(Device().SetInteger(axis.offset, sensor - 399));
    EXPECT_EQ(Device().Integer(axis.offset), sensor - 400);
    // What comes in is the limit, not the sensor that the tree knows nothing of.
    Set(axis.incoming, 500);
    EXPECT_EQ(Device().Integer(axis.most), 500);
    EXPECT_EQ(Device().Maximum(axis.offset), 100);
    EXPECT_FALSE(Device().SetInteger(axis.size, 501));
    Set(axis.incoming, sensor);
    Set(axis.offset, 0);
    Set(axis.size, sensor);
  }
}

// The filling bytes that the tree's width makes are those of the frames.
TEST_P(GenApiDevice, LinesAreFilledUpAsTheWidthSays) {
  Open(GetParam());
  CameraMap().SetText("TestPattern", "Off");
  Set("Height", 4);
  for (const int64_t width : {16, 33, 47, 48}) {
    Set("Width", width);
    CStream stream(m_hDevice, GetParam());
    const PictureShape shape = stream.Shape();
    const size_t pixels = shape.width * shape.format->bytes;
    EXPECT_EQ(shape.width, width);
    stream.Announce(3);
    stream.Start();
    BUFFER_HANDLE const buffer = stream.Next();
    ASSERT_NE(buffer, nullptr);
    EXPECT_EQ(BufferValue<size_t>(stream.Handle(), buffer, BUFFER_INFO_XPADDING), (16 - pixels % 16) % 16);
    EXPECT_TRUE(IsPicture(stream.Memory(buffer).Data(), shape, 1, kFilling));
    stream.Stop();
  }
}

// Locks and availability --------------------------------------------------------------------------------------------

std::set<std::string> Locked(CNodeMap &map) {
  std::set<std::string> names;
  for (const std::string &name : map.Features()) {
    if (map.IsLocked(name)) {
      names.insert(name);
    }
  }
  return names;
}

TEST_P(GenApiDevice, LocksHoldWhileFramesFlowAndNoLonger) {
  // What a user has to be able to do while frames flow, and to read.
  const std::set<std::string> kFree = {
      "GRB_EXPOSE",     "GRB_Register_Address", "GRB_Register_Data", "GRB_Register_Command",
      "StreamSelector", "TLParamsLocked",       "DeviceType"};
  // Timers that mean nothing in the present modes.
  const std::set<std::string> kIdle = {"GRB_TIMERA1_PULSE_COUNT", "GRB_TIMERA1_SWTRIG",      "GRB_TIMERD1FG_VALUE_NS",
                                       "GRB_TIMERD1FG_COUNT",     "GRB_TIMERD1CAM_VALUE_NS", "GRB_TIMERD2CAM_VALUE_NS"};
  Open(GetParam());
  Set("Width", 64);
  Set("Height", 8);
  EXPECT_EQ(Locked(Device()), kIdle);
  CStream stream(m_hDevice, GetParam());
  stream.Announce(4);
  stream.Start();
  Set("TLParamsLocked", 1);
  for (const std::string &name : Device().Features()) {
    SCOPED_TRACE(name);
    if (Device().IsWritable(name)) {
      EXPECT_EQ(Device().IsLocked(name), kFree.count(name) == 0);
    }
    if (Device().IsReadable(name)) {
      Device().Text(name);
      EXPECT_EQ(Device().Failure(), "");
    }
  }
  ASSERT_NE(stream.Next(), nullptr);
  stream.Stop();
  Set("TLParamsLocked", 0);
  EXPECT_EQ(Locked(Device()), kIdle);
  Set("Width", 128);
}

// A timer's lock goes with the one mode that gives the timer a meaning, and is back under TLParamsLocked.
TEST_F(GenApiDevice, TimersAreLockedByTheirModes) {
  Open(1);
  for (const Condition &row : kConditions) {
    if (Device().Kind(row.other) != NodeKind::Enumeration) {
      continue;
    }
    for (const EntryValue &entry : Device().Entries(row.other)) {
      SCOPED_TRACE(std::string(row.feature) + " with " + entry.name);
      Set(row.other, entry.name);
      // Lines are counted as well behind a timer of the first kind.
      const bool free = entry.name == row.value || (std::string(row.feature) == "GRB_TIMERD1FG_COUNT" &&
                                                    entry.name == "GRB_FGTRIG_DELAY_TIMERM1_CHX");
      EXPECT_EQ(Device().IsLocked(row.feature), !free);
      Set("TLParamsLocked", 1);
      EXPECT_TRUE(Device().IsLocked(row.feature));
      Set("TLParamsLocked", 0);
    }
  }
  // The software trigger of the timer is for use while frames flow.
  Set("GRB_TIMERA1_MODE", kPulses);
  Set("TLParamsLocked", 1);
  EXPECT_FALSE(Device().IsLocked("GRB_TIMERA1_SWTRIG"));
  Set("TLParamsLocked", 0);
  Set("GRB_TIMERA1_MODE", "GRB_TIMERA1_MODE_RUN");
  EXPECT_TRUE(Device().IsLocked("GRB_TIMERA1_SWTRIG"));
}

// No other node refers to these three, but they can be asked for.
TEST_F(GenApiDevice, FormulasThatNothingRefersToHaveTheirValues) {
  Open(1);
  EXPECT_EQ(Device().Integer("StreramIndexAvailable"), 1);
  for (const EntryValue &entry : Device().Entries("GRB_CAMTRIG_SRC")) {
    Set("GRB_CAMTRIG_SRC", entry.name);
    EXPECT_EQ(Device().Integer("SwTrigLocked"), entry.name == "GRB_CAMTRIG_SRC_SWTRIG_CHX" ? 0 : 1) << entry.name;
    EXPECT_EQ(Device().Failure(), "");
  }
  // The mode that would free it is none of the entries.
  for (const EntryValue &entry : Device().Entries("GRB_CAMTRIG_DELAY_MODE_D1CAM")) {
    Set("GRB_CAMTRIG_DELAY_MODE_D1CAM", entry.name);
    EXPECT_EQ(Device().Integer("TimerD1CamCountLocked"), 1) << entry.name;
    EXPECT_EQ(Device().Failure(), "");
  }
}

// Without a stream handle what needs one vanishes from the tree, and what is left can be read.
TEST_P(GenApiDevice, OpenForReadingHidesWhatNeedsTheStream) {
  const std::set<std::string> kLeft = {"TLParamsLocked",
                                       "DeviceID",
                                       "DeviceVendorName",
                                       "DeviceModelName",
                                       "DeviceType",
                                       "DeviceDisplayName",
                                       "StreamCount",
                                       "StreamID",
                                       "GRB_CONFIG_FILE",
                                       "StreamSelector",
                                       "GRB_CONFIG_FILE_SAVE_NAME",
                                       "GRB_Register_Address",
                                       "GRB_Register_Data",
                                       "GRB_Register_Command"};
  Open(GetParam(), DEVICE_ACCESS_READONLY);
  std::set<std::string> left;
  for (const std::string &name : Device().Features()) {
    SCOPED_TRACE(name);
    if (!Device().IsAvailable(name)) {
      EXPECT_EQ(Device().Failure(), "") << "the question itself failed";
      continue;
    }
    left.insert(name);
    if (Device().IsReadable(name)) {
      Device().Text(name);
      EXPECT_EQ(Device().Failure(), "");
    }
  }
  EXPECT_EQ(left, kLeft);
  EXPECT_EQ(Device().Integer("DataStreamOpen"), 0);
  EXPECT_EQ(Device().Integer("StreamCount"), 0);
  EXPECT_EQ(Device().Text("StreamID"), "-");
  EXPECT_EQ(Device().Maximum("StreamSelector"), -1);
  EXPECT_EQ(Device().Integer("StreramIndexAvailable"), 0);
  EXPECT_FALSE(Device().SetText("GRB_CONFIG_FILE", "x.gcf"));
  EXPECT_NE(Device().Failure().find("Cannot write to device in READONLY mode."), std::string::npos)
      << Device().Failure();
  // The camera's own tree is there all the same.
  EXPECT_FALSE(CameraMap().Text("DeviceModelName").empty());
}

// An access of the maker's own: no stream, yet what needs none can be written.
TEST_P(GenApiDevice, OpenWithACustomAccessLeavesTheCameraRegisters) {
  constexpr int64_t kRead = 0x52;
  Open(GetParam(), DEVICE_ACCESS_CUSTOM_ID);
  EXPECT_FALSE(Device().IsAvailable("Width"));
  EXPECT_FALSE(Device().IsAvailable("GRB_EXPOSE"));
  EXPECT_FALSE(Device().SetInteger("IncomingWidth", 64));
  EXPECT_NE(Device().Failure().find("there is no ACQ_ONLY handle"), std::string::npos) << Device().Failure();
  Set("GRB_Register_Address", 0x6000);
  Set("GRB_Register_Command", kRead);
  EXPECT_EQ(Device().Integer("GRB_Register_Data"), CameraMap().Integer("Width"));
}

TEST_P(GenApiDevice, OpenForControlShowsAll) {
  Open(GetParam());
  EXPECT_EQ(Device().Integer("DataStreamOpen"), 1);
  for (const std::string &name : Device().Features()) {
    EXPECT_TRUE(Device().IsAvailable(name)) << name;
  }
}

INSTANTIATE_TEST_SUITE_P(Channel, GenApiDevice, testing::Values(1U, 2U));

// Selectors ---------------------------------------------------------------------------------------------------------

/// Trees of modules whose lists nobody has asked for yet.
class GenApiBeforeAnUpdate : public SimulationTest {
 protected:
  /// Features of the tree that are not available, and no others fail to be read.
  static std::set<std::string> Hidden(CNodeMap &map) {
    std::set<std::string> names;
    for (const std::string &name : map.Features()) {
      if (!map.IsAvailable(name)) {
        EXPECT_EQ(map.Failure(), "") << name << ": the question itself failed";
        names.insert(name);
      } else if (map.IsReadable(name)) {
        map.Text(name);
        EXPECT_EQ(map.Failure(), "") << name;
      }
    }
    return names;
  }
};

TEST_F(GenApiBeforeAnUpdate, SystemHidesItsSelector) {
  CNodeMap map(OpenSystem());
  ASSERT_TRUE(map.IsBuilt());
  EXPECT_EQ(map.Integer("InterfaceCount"), 0);
  EXPECT_EQ(map.Integer("TLIndexAvailable"), 0);
  EXPECT_EQ(map.Maximum("InterfaceSelector"), -1);
  EXPECT_EQ(Hidden(map), std::set<std::string>{"InterfaceSelector"});
  EXPECT_EQ(map.Text("InterfaceID"), "");
  EXPECT_TRUE(map.Execute("InterfaceUpdateList")) << map.Failure();
  EXPECT_EQ(map.Maximum("InterfaceSelector"), 0);
  EXPECT_EQ(Hidden(map), std::set<std::string>());
}

TEST_F(GenApiBeforeAnUpdate, InterfaceHidesWhatItShowsOfADevice) {
  CNodeMap map(OpenInterface());
  ASSERT_TRUE(map.IsBuilt());
  EXPECT_EQ(map.Integer("DeviceCount"), 0);
  EXPECT_EQ(map.Integer("DeviceIndexAvailable"), 0);
  EXPECT_EQ(map.Maximum("DeviceSelector"), -1);
  EXPECT_EQ(Hidden(map), (std::set<std::string>{"DeviceSelector", "DeviceID", "DeviceVendorName", "DeviceModelName",
                                                "DeviceDisplayName", "DeviceAccessStatus"}));
  EXPECT_TRUE(map.Execute("DeviceUpdateList")) << map.Failure();
  EXPECT_EQ(map.Maximum("DeviceSelector"), 1);
  EXPECT_EQ(Hidden(map), std::set<std::string>());
}

TEST_F(GenApi, InterfaceSelectorShowsTheBoard) {
  CNodeMap map(m_hSystem);
  EXPECT_TRUE(map.Execute("InterfaceUpdateList")) << map.Failure();
  EXPECT_EQ(map.Integer("InterfaceCount"), 1);
  EXPECT_TRUE(map.SetInteger("InterfaceSelector", 0)) << map.Failure();
  const std::string id =
      SizedText([=](char *text, size_t *size) { return Gc().TLGetInterfaceID(m_hSystem, 0, text, size); });
  EXPECT_EQ(map.Text("InterfaceID"), id);
  EXPECT_FALSE(map.SetInteger("InterfaceSelector", 1));
}

TEST_F(GenApi, DeviceSelectorShowsOneCameraAfterTheOther) {
  CNodeMap map(m_hInterface);
  EXPECT_TRUE(map.Execute("DeviceUpdateList")) << map.Failure();
  EXPECT_EQ(map.Integer("DeviceCount"), 2);
  EXPECT_EQ(map.Maximum("DeviceSelector"), 1);
  EXPECT_TRUE(map.IsSelector("DeviceSelector"));
  for (const int64_t index : {1, 0, 1}) {
    ASSERT_TRUE(map.SetInteger("DeviceSelector", index)) << map.Failure();
    const std::string id = DeviceId(static_cast<uint32_t>(index) + 1);
    const auto info = [&](DEVICE_INFO_CMD cmd) {
      return SizedText([=](INFO_DATATYPE *type, void *buffer, size_t *size) {
        return Gc().IFGetDeviceInfo(m_hInterface, id.c_str(), cmd, type, buffer, size);
      });
    };
    EXPECT_EQ(map.Text("DeviceID"), id);
    EXPECT_EQ(map.Text("DeviceVendorName"), info(DEVICE_INFO_VENDOR));
    EXPECT_EQ(map.Text("DeviceModelName"), info(DEVICE_INFO_MODEL));
    EXPECT_EQ(map.Text("DeviceDisplayName"), info(DEVICE_INFO_DISPLAYNAME));
    EXPECT_EQ(map.Text("DeviceAccessStatus"), "ReadWrite");
  }
  EXPECT_FALSE(map.SetInteger("DeviceSelector", 2));
  EXPECT_FALSE(map.SetInteger("DeviceSelector", -1));
  EXPECT_EQ(map.Text("DeviceID"), DeviceId(2));
  // Open, it is busy, for this process as for any other.
  DEV_HANDLE const device = OpenDevice(2);
  EXPECT_TRUE(map.Execute("DeviceUpdateList")) << map.Failure();
  EXPECT_TRUE(map.SetInteger("DeviceSelector", 1)) << map.Failure();
  EXPECT_EQ(map.Text("DeviceAccessStatus"), "NoAccess");
  EXPECT_OK(Gc().DevClose(device));
}

TEST_F(GenApiDevice, StreamSelectorShowsTheOneStream) {
  Open(1);
  EXPECT_TRUE(Device().IsSelector("StreamSelector"));
  EXPECT_EQ(Device().Integer("StreamCount"), 1);
  Set("StreamSelector", 0);
  EXPECT_EQ(Device().Text("StreamID"), kStreamId);
  EXPECT_FALSE(Device().SetInteger("StreamSelector", 1));
}

// The selected output port keeps what was set for it, and the others keep theirs.
TEST_F(GenApiDevice, OutputPortsHaveAMethodEach) {
  Open(1);
  const std::pair<const char *, const char *> rows[] = {{"GRB_IO_TTLOUT_CHX", "GRB_IO_METHOD_BIT_SET"},
                                                        {"GRB_IO_OPTOOUT_CH2", "GRB_IO_METHOD_BIT_FGTRIGD_POS"},
                                                        {"GRB_IO_422OUT_CH4", "GRB_IO_METHOD_BIT_TIMERMX_NEG"}};
  for (const auto &[port, method] : rows) {
    Set("GRB_IO_OUT_PORT", port);
    Set("GRB_IO_OUT_METHOD", method);
  }
  for (const auto &[port, method] : rows) {
    Set("GRB_IO_OUT_PORT", port);
    EXPECT_EQ(Device().Text("GRB_IO_OUT_METHOD"), method) << port;
  }
  for (const EntryValue &entry : Device().Entries("GRB_IO_IN_PORT")) {
    Set("GRB_IO_IN_PORT", entry.name);
    const int64_t level = Device().Integer("GRB_IO_IN_VALUE");
    EXPECT_TRUE(level == 0 || level == 1) << entry.name << ' ' << level;
  }
}

// The link ----------------------------------------------------------------------------------------------------------

// Written to the camera's register, the link goes to the grabber's two modes, and both sides agree on what it is.
TEST_P(GenApiDevice, ConnectionConfigReachesTheLinkOfTheGrabber) {
  const std::pair<int64_t, const char *> links[] = {{1, "1X"}, {2, "2X"}, {4, "4X"}};
  const std::pair<int64_t, const char *> speeds[] = {
      {0x28, "CXP1"}, {0x30, "CXP2"}, {0x38, "CXP3"}, {0x40, "CXP5"}, {0x48, "CXP6"}};
  Open(GetParam());
  const uint64_t cameraWrites = CameraMap().Writes();
  uint64_t count = 0;
  for (const auto &[number, linkName] : links) {
    for (const auto &[code, speedName] : speeds) {
      SCOPED_TRACE(std::string(linkName) + ' ' + speedName);
      const int64_t config = number << 16 | code;
      ASSERT_TRUE(CameraMap().SetInteger("CxpConnectionConfig", config)) << CameraMap().Failure();
      ++count;
      EXPECT_EQ(Device().Text("GRB_CXP_DISCOVERY_MODE"), std::string("CXP_DISCOVERY_") + linkName);
      EXPECT_EQ(Device().Text("GRB_CXP_BITRATE_MODE"), speedName);
      EXPECT_EQ(Device().Text("GRB_CXP_DISCOVERY"), std::string("CXP_DISCOVERY_") + linkName);
      EXPECT_EQ(Device().Text("GRB_CXP_BITRATE"), speedName);
      EXPECT_EQ(Device().Integer("GRB_CXP_INFO"), config);
      EXPECT_EQ(CameraMap().Integer("CxpConnectionConfig"), config);
    }
  }
  EXPECT_EQ(CameraMap().Writes(), cameraWrites + count);
  const int64_t good = CameraMap().Integer("CxpConnectionConfig");
  for (const int64_t config : {int64_t{0x00020041}, int64_t{0x00030048}, int64_t{0}}) {
    EXPECT_FALSE(CameraMap().SetInteger("CxpConnectionConfig", config)) << config;
    EXPECT_EQ(CameraMap().Integer("CxpConnectionConfig"), good);
    EXPECT_EQ(Device().Integer("GRB_CXP_INFO"), good);
  }
}

// Commands ----------------------------------------------------------------------------------------------------------

TEST_F(GenApiDevice, ExposeMakesOneFrameEach) {
  Open(1);
  Set("Width", 64);
  Set("Height", 8);
  Set("GRB_CAMTRIG_SRC", "GRB_CAMTRIG_SRC_SWTRIG_CHX");
  CStream stream(m_hDevice, 1);
  stream.Announce(6);
  stream.Start();
  GC_ERROR result = GC_ERR_SUCCESS;
  EXPECT_EQ(NextBuffer(stream.Event(), 50, &result), nullptr) << "a frame without a trigger";
  for (int64_t frame = 1; frame <= 4; ++frame) {
    Execute("GRB_EXPOSE");
    ASSERT_NE(stream.Next(), nullptr);
    EXPECT_EQ(Device().Integer("GRB_COUNT_BUFFER_READY_NOW"), frame);
  }
  EXPECT_EQ(NextBuffer(stream.Event(), 50, &result), nullptr) << "one frame too many";
  stream.Stop();
}

TEST_F(GenApiDevice, PulsesOfTheTimerMakeAFrameEach) {
  Open(1);
  Set("Width", 64);
  Set("Height", 8);
  Set("GRB_CAMTRIG_SRC", "GRB_CAMTRIG_SRC_TIMERA1_CHX");
  Set("GRB_TIMERA1_MODE", kPulses);
  Set("GRB_TIMERA1_PULSE_COUNT", 3);
  Set("GRB_TIMERA1_PERIOD_NS", 1000000);
  CStream stream(m_hDevice, 1);
  stream.Announce(8);
  stream.Start();
  for (int round = 0; round < 2; ++round) {
    Execute("GRB_TIMERA1_SWTRIG");
    for (int frame = 0; frame < 3; ++frame) {
      ASSERT_NE(stream.Next(), nullptr) << round << ' ' << frame;
    }
    GC_ERROR result = GC_ERR_SUCCESS;
    EXPECT_EQ(NextBuffer(stream.Event(), 50, &result), nullptr) << "one frame too many";
  }
  stream.Stop();
}

TEST_F(GenApiDevice, CacheIsFlushedByCommand) {
  Open(1);
  Set("Width", 64);
  Execute("GRB_CACHE_FLUSH");
  EXPECT_EQ(Device().Integer("Width"), 64);
}

TEST_F(GenApiDevice, ConfigurationIsSavedAndLoaded) {
  Open(2);
  const std::string path = std::string(std::getenv("LUMIVEX_SIM_LOCK_DIR")) + "/saved values.gcf";
  Set("Width", 320);
  Set("PixelFormat", "Mono12");
  Set("GRB_CAMTRIG_DIVIDER", 17);
  EXPECT_TRUE(Device().SetText("GRB_CONFIG_FILE_SAVE_NAME", "\"" + path + "\""));
  Execute("GRB_CONFIG_FILE_SAVE");
  EXPECT_TRUE(std::ifstream(path).good()) << path;
  Set("Width", 640);
  Set("PixelFormat", "RGB8");
  Set("GRB_CAMTRIG_DIVIDER", 1);
  EXPECT_TRUE(Device().SetText("GRB_CONFIG_FILE", path));
  Execute("GRB_CONFIG_FILE_LOAD");
  EXPECT_EQ(Device().Integer("Width"), 320);
  EXPECT_EQ(Device().Text("PixelFormat"), "Mono12");
  EXPECT_EQ(Device().Integer("GRB_CAMTRIG_DIVIDER"), 17);
  // No file, or a folder: told so, and all is as it was.
  for (const std::string &wrong : {path + ".none", std::string(), std::string(std::getenv("LUMIVEX_SIM_LOCK_DIR"))}) {
    EXPECT_TRUE(Device().SetText("GRB_CONFIG_FILE", wrong));
    EXPECT_FALSE(Device().Execute("GRB_CONFIG_FILE_LOAD")) << wrong;
    EXPECT_NE(Device().Failure(), "");
    EXPECT_GT(Device().Integer("Width"), 0) << Device().Failure();
  }
  Set("Height", 8);
  CStream stream(m_hDevice, 2);
  stream.Announce(3);
  stream.Start();
  EXPECT_NE(stream.Next(), nullptr) << "the handle is of no use any more";
  stream.Stop();
}

// Address, letter, data: a register of the camera without the camera's tree.
TEST_P(GenApiDevice, RegisterCommandReachesTheCamera) {
  constexpr int64_t kRead = 0x52;
  constexpr int64_t kWrite = 0x57;
  constexpr int64_t kCameraWidth = 0x6000;
  Open(GetParam());
  Set("GRB_Register_Address", kCameraWidth);
  Set("GRB_Register_Command", kRead);
  EXPECT_EQ(Device().Integer("GRB_Register_Data"), CameraMap().Integer("Width"));
  Set("GRB_Register_Data", 160);
  EXPECT_NE(CameraMap().Integer("Width"), 160);
  Set("GRB_Register_Command", kWrite);
  EXPECT_EQ(CameraMap().Integer("Width"), 160);
  Set("GRB_Register_Address", 0x9000);
  EXPECT_FALSE(Device().SetInteger("GRB_Register_Command", kRead));
  EXPECT_NE(Device().Failure(), "");
}

// The grabber waits for a camera that sends nothing, and takes what it sends from its own start on.
TEST_F(GenApiDevice, CameraStartsAndStopsItsFrames) {
  Open(2);
  Set("Width", 64);
  Set("Height", 8);
  EXPECT_TRUE(CameraMap().Execute("AcquisitionStop")) << CameraMap().Failure();
  EXPECT_TRUE(CameraMap().SetText("AcquisitionMode", "MultiFrame")) << CameraMap().Failure();
  EXPECT_TRUE(CameraMap().SetInteger("AcquisitionFrameCount", 3)) << CameraMap().Failure();
  CStream stream(m_hDevice, 2);
  stream.Announce(10);
  stream.Start();
  GC_ERROR result = GC_ERR_SUCCESS;
  EXPECT_EQ(NextBuffer(stream.Event(), 50, &result), nullptr);
  EXPECT_EQ(result, GC_ERR_TIMEOUT);
  for (int round = 0; round < 2; ++round) {
    EXPECT_TRUE(CameraMap().Execute("AcquisitionStart")) << CameraMap().Failure();
    for (int frame = 0; frame < 3; ++frame) {
      ASSERT_NE(stream.Next(), nullptr) << round << ' ' << frame;
    }
    EXPECT_EQ(NextBuffer(stream.Event(), 50, &result), nullptr) << "one frame too many";
  }
  stream.Stop();
  EXPECT_TRUE(CameraMap().Execute("DeviceReset")) << CameraMap().Failure();
  EXPECT_EQ(CameraMap().Text("AcquisitionMode"), "Continuous");
  EXPECT_OK(Gc().DSFlushQueue(stream.Handle(), ACQ_QUEUE_ALL_TO_INPUT));
  stream.Start();
  EXPECT_NE(stream.Next(), nullptr);
  stream.Stop();
}

// The stream's own tree ---------------------------------------------------------------------------------------------

TEST_F(GenApi, StreamCountsItsBuffersAndRaisesItsTestEvent) {
  DEV_HANDLE const device = OpenDevice(1, 64, 8);
  CStream stream(device, 1);
  CNodeMap map(stream.Handle());
  EXPECT_EQ(map.Integer("StreamAnnouncedBufferCount"), 0);
  stream.Announce(3);
  EXPECT_EQ(map.Integer("StreamAnnouncedBufferCount"), 3);
  EXPECT_EQ(map.Integer("StreamAnnounceBufferMinimum"), 1);
  EXPECT_EQ(map.Text("StreamBufferHandlingMode"), "OldestFirst");
  EVENT_HANDLE event = nullptr;
  ASSERT_OK(Gc().GCRegisterEvent(stream.Handle(), EVENT_ERROR, &event));
  for (int round = 0; round < 3; ++round) {
    EXPECT_TRUE(map.Execute("TestEventError")) << map.Failure();
    char data[4096] = {};
    size_t size = sizeof(data);
    ASSERT_OK(Gc().EventGetData(event, data, &size, kFrameTimeout));
    int32_t code = 0;
    std::memcpy(&code, data, sizeof(code));
    EXPECT_EQ(code, -10001);
    EXPECT_STREQ(data + sizeof(code), "'Test Error' event detected.");
  }
}

// One file, many maps: the same XML built again and again leaves nothing behind in the Producer.
TEST_F(GenApi, NodeMapsAreBuiltAndFreedAgainAndAgain) {
  for (int round = 0; round < 5; ++round) {
    DEV_HANDLE const device = OpenDevice(1);
    {
      CNodeMap map(device);
      ASSERT_TRUE(map.IsBuilt());
      EXPECT_EQ(map.Integer("Width"), 1280);
    }
    EXPECT_OK(Gc().DevClose(device));
  }
}

}  // namespace
