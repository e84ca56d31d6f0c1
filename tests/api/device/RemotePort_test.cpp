// SPDX-License-Identifier: MIT
// The camera's port: its info, plain transfers, the rounding of the XML's read, and the guard of the link
// configuration.
#include <ostream>

#include "DeviceFixture.h"

namespace DeviceTests {
namespace {

class RemotePort : public DeviceTest {
 protected:
  void SetUp() override {
    DeviceTest::SetUp();
    Open(DEVICE_ACCESS_EXCLUSIVE);
  }
  void Open(DEVICE_ACCESS_FLAGS flags) {
    if (m_hDevice != nullptr) {
      CloseDevice();
    }
    OpenDevice(flags);
    m_hPort = OpenRemotePort();
    m_nMark = Script().Mark();
  }
  Lines Calls() {
    Lines calls = Script().Trace(m_nMark);
    m_nMark = Script().Mark();
    return calls;
  }
  static std::string Read(uint32_t address, uint32_t size = 4) {
    return "ControlRead(" + HandleName(ControlHandle()) +
           Format(", GRB_PORT_CAMERA, 0x%x, %u, %u)", address, size, kTimeOut);
  }
  static std::string Write(uint32_t address, const std::string &bytes) {
    return "ControlWrite(" + HandleName(ControlHandle()) +
           Format(", GRB_PORT_CAMERA, 0x%x, %zu, %u, ", address, bytes.size() / 2, kTimeOut) + bytes + ")";
  }
  // Has the port note the URL of the camera.
  void Parse() {
    EXPECT_EQ(UrlInfo(m_hPort, 0, URL_INFO_URL).result, GC_ERR_SUCCESS);
    Calls();
  }
  void SetCamera(const CCamera &camera) { Script().SetCamera(kBoard, kChannel, camera); }

  PORT_HANDLE m_hPort = nullptr;
  size_t m_nMark = 0;
};

// The port object -----------------------------------------------------------------------------------------------------

TEST_F(RemotePort, IsTheSameObjectAtEachRequest) {
  PORT_HANDLE again = nullptr;
  EXPECT_GC_OK(Gc().DevGetPort(m_hDevice, &again));
  EXPECT_EQ(again, m_hPort);
  EXPECT_NE(again, m_hDevice);
  EXPECT_EQ(Calls(), Lines());
}

TEST_F(RemotePort, NeedsAPlaceForItsHandle) {
  EXPECT_GC(GC_ERR_INVALID_PARAMETER, "Null pointer for Port handle", Gc().DevGetPort(m_hDevice, nullptr));
}

TEST_F(RemotePort, BelongsToItsDevice) {
  DEV_HANDLE other = nullptr;
  ASSERT_GC_OK(Gc().IFOpenDevice(m_hInterface, "Channel #2", DEVICE_ACCESS_READONLY, &other));
  PORT_HANDLE otherPort = nullptr;
  ASSERT_GC_OK(Gc().DevGetPort(other, &otherPort));
  EXPECT_NE(otherPort, m_hPort);
  EXPECT_EQ(PortInfo(otherPort, PORT_INFO_MODEL).Text(), "Testcam 2");
  Script().WriteCameraU32(kBoard, GRB_CHANNEL_2, 0x9000, 22);
  EXPECT_EQ(ReadU32Be(otherPort, 0x9000), 22U);
  EXPECT_EQ(ReadU32Be(m_hPort, 0x9000), 0U);
}

TEST_F(RemotePort, HasNoEvents) {
  for (const EVENT_TYPE type : {0, 1, 2, 3, 4, 5, 1000, -1}) {
    const std::string message = Format("Event ID %d not implemented", type);
    EVENT_HANDLE event = nullptr;
    EXPECT_GC(GC_ERR_ERROR, message, Gc().GCRegisterEvent(m_hPort, type, &event));
    EXPECT_EQ(event, nullptr);
    EXPECT_GC(GC_ERR_ERROR, message, Gc().GCUnregisterEvent(m_hPort, type));
  }
}

// Port info -----------------------------------------------------------------------------------------------------------

struct PortRow {
  PORT_INFO_CMD command;
  const char *text;  // null: a flag
  uint8_t flag;
};

constexpr PortRow kPortInfo[] = {
    {PORT_INFO_ID, "Channel #1", 0},    {PORT_INFO_VENDOR, "Lumivex Optics", 0}, {PORT_INFO_MODEL, "Testcam 1", 0},
    {PORT_INFO_TLTYPE, "CXP", 0},       {PORT_INFO_MODULE, "Device", 0},         {PORT_INFO_LITTLE_ENDIAN, nullptr, 0},
    {PORT_INFO_BIG_ENDIAN, nullptr, 1}, {PORT_INFO_ACCESS_READ, nullptr, 1},     {PORT_INFO_ACCESS_WRITE, nullptr, 1},
    {PORT_INFO_ACCESS_NA, nullptr, 0},  {PORT_INFO_ACCESS_NI, nullptr, 0},       {PORT_INFO_VERSION, "1.1.11.0", 0},
    {PORT_INFO_PORTNAME, "Device", 0},
};

TEST_F(RemotePort, InfoIsAnsweredWithoutTheCamera) {
  for (const PortRow &row : kPortInfo) {
    SCOPED_TRACE(row.command);
    const Info info = PortInfo(m_hPort, row.command);
    EXPECT_EQ(info.result, GC_ERR_SUCCESS);
    if (row.text != nullptr) {
      EXPECT_EQ(info.type, INFO_DATATYPE_STRING);
      EXPECT_EQ(info.Text(), row.text);
      EXPECT_EQ(info.size, std::string(row.text).size() + 1);
    } else {
      EXPECT_EQ(info.type, INFO_DATATYPE_BOOL8);
      EXPECT_EQ(info.As<uint8_t>(), row.flag);
    }
  }
  EXPECT_EQ(Calls(), Lines());
}

TEST_F(RemotePort, UnknownInfoFails) {
  INFO_DATATYPE type = 0;
  size_t size = 0;
  for (const PORT_INFO_CMD command : {13, 14, 1000, -1}) {
    EXPECT_GC_FROM(GC_ERR_INVALID_PARAMETER, Format("Invalid PORT_INFO_CMD 0x%08X.", static_cast<unsigned>(command)),
                   "GenICam::Client::CDevicePortCxp::GetPortInfo",
                   Gc().GCGetPortInfo(m_hPort, command, &type, nullptr, &size));
  }
}

struct AccessRow {
  DEVICE_ACCESS_FLAGS flags;
  uint8_t isWritable;
  bool isGuarded;
};

std::ostream &operator<<(std::ostream &out, const AccessRow &row) { return out << row.flags; }

constexpr AccessRow kAccess[] = {{DEVICE_ACCESS_READONLY, 0, false},
                                 {DEVICE_ACCESS_CONTROL, 1, true},
                                 {DEVICE_ACCESS_EXCLUSIVE, 1, true},
                                 {1000, 1, true},
                                 {1001, 1, false},
                                 {1002, 1, true}};

class RemotePortAccess : public RemotePort, public testing::WithParamInterface<AccessRow> {};

TEST_P(RemotePortAccess, IsReported) {
  Open(GetParam().flags);
  EXPECT_EQ(PortInfo(m_hPort, PORT_INFO_ACCESS_WRITE).As<uint8_t>(), GetParam().isWritable);
  EXPECT_EQ(PortInfo(m_hPort, PORT_INFO_ACCESS_READ).As<uint8_t>(), 1);
}

// Nothing checks it: a Consumer can write through the port of a Device that is open for reading.
TEST_P(RemotePortAccess, DoesNotKeepAnyoneFromWriting) {
  Open(GetParam().flags);
  EXPECT_GC_OK(WriteU32Be(m_hPort, 0x9000, 0x01020304));
  EXPECT_EQ(Calls(), (Lines{Write(0x9000, "01020304")}));
  EXPECT_EQ(Script().ReadCameraU32(kBoard, kChannel, 0x9000), 0x01020304U);
}

TEST_P(RemotePortAccess, DecidesOnTheGuardOfTheLinkConfiguration) {
  Open(GetParam().flags);
  const GC_ERROR result = WriteU32Be(m_hPort, 0x4014, 0x00020040);
  if (!GetParam().isGuarded) {
    EXPECT_GC_OK(result);
    EXPECT_EQ(Calls(), (Lines{Write(0x4014, "00020040")}));
  } else if (StreamHandle() != 0) {
    EXPECT_GC_OK(result);
    const std::string h = HandleName(StreamHandle());
    EXPECT_EQ(Calls(), (Lines{"ParameterSet(" + h + ", GRB_CXP_DISCOVERY_MODE_NOW, 0xc0091203)",
                              "ParameterSet(" + h + ", GRB_CXP_BITRATE_MODE_NOW, 0xc0091005)"}));
  } else {
    EXPECT_GC(GC_ERR_ERROR, NoHandleToWrite(0x2210), result);
    EXPECT_EQ(Calls(), Lines());
  }
}

INSTANTIATE_TEST_SUITE_P(Flags, RemotePortAccess, testing::ValuesIn(kAccess));

// Plain transfers -----------------------------------------------------------------------------------------------------

class RemoteSizes : public RemotePort, public testing::WithParamInterface<size_t> {};

TEST_P(RemoteSizes, ReadsPassBytesAsTheyStand) {
  const size_t size = GetParam();
  std::vector<uint8_t> bytes(size);
  for (size_t i = 0; i < size; ++i) {
    bytes[i] = static_cast<uint8_t>(i + 1);
  }
  SetCamera(CCamera().Bytes(0x9003, bytes));
  std::vector<uint8_t> buffer(size + 1, 0xEE);
  size_t now = size;
  EXPECT_GC_OK(Gc().GCReadPort(m_hPort, 0x9003, buffer.data(), &now));
  EXPECT_EQ(now, size);
  EXPECT_EQ(buffer.back(), 0xEE);
  buffer.pop_back();
  EXPECT_EQ(buffer, bytes);
  EXPECT_EQ(Calls(), (Lines{Read(0x9003, static_cast<uint32_t>(size))}));
}

TEST_P(RemoteSizes, WritesPassBytesAsTheyStand) {
  std::vector<uint8_t> bytes(GetParam());
  std::string digits;
  for (size_t i = 0; i < bytes.size(); ++i) {
    bytes[i] = static_cast<uint8_t>(0x80 + i);
    digits += Format("%02x", bytes[i]);
  }
  EXPECT_GC_OK(WriteBytes(m_hPort, 0x9003, bytes));
  EXPECT_EQ(Calls(), (Lines{Write(0x9003, digits)}));
}

INSTANTIATE_TEST_SUITE_P(Sizes, RemoteSizes, testing::Values(1, 2, 3, 4, 5, 7, 8, 64, 65, 1000));

TEST_F(RemotePort, RefusesNullBuffers) {
  size_t size = 4;
  EXPECT_GC(GC_ERR_INVALID_PARAMETER, "Null pBuffer pointer", Gc().GCReadPort(m_hPort, 0x9000, nullptr, &size));
  EXPECT_GC(GC_ERR_INVALID_PARAMETER, "Null pBuffer pointer", Gc().GCWritePort(m_hPort, 0x9000, nullptr, &size));
  EXPECT_GC(GC_ERR_INVALID_PARAMETER, "Null pBuffer pointer", Gc().GCWritePort(m_hPort, 0x4014, nullptr, &size));
  EXPECT_GC_FROM(GC_ERR_INVALID_PARAMETER, "Null size pointer.", "GenICam::Client::GCReadPort",
                 Gc().GCReadPort(m_hPort, 0x9000, &size, nullptr));
  EXPECT_EQ(Calls(), Lines());
}

TEST_F(RemotePort, FailedReadLeavesTheBuffer) {
  Script().On(Match(Op::ControlRead), Bang().Bytes({9, 9, 9, 9}));
  uint32_t word = 0x11223344;
  EXPECT_GC(
      GC_ERR_IO,
      "Error while reading 4 bytes from address 0x9000 in camera, 4 bytes read.\n" + LibraryText("GRB_ControlRead"),
      TryRead(m_hPort, 0x9000, &word, sizeof(word)));
  EXPECT_EQ(word, 0x11223344U);
}

// Where whole words are read, neither the bytes beyond the wanted ones nor the greater size come through a failure.
TEST_F(RemotePort, FailedReadAtANotedAddressLeavesBufferAndSize) {
  SetCamera(CCamera().Url(0, "Local:a.xml;9000;D"));
  Parse();
  const std::vector<uint8_t> before = {1, 2, 3, 4, 5, 0xEE, 0xEE, 0xEE};
  for (const GRB_STATUS status : {kStatus, GRB_WARNING_TIMEOUT}) {
    const GC_ERROR code = status == kStatus ? GC_ERR_IO : GC_ERR_TIMEOUT;
    std::vector<uint8_t> buffer = before;
    size_t size = 5;
    Script().On(Match(Op::ControlRead).Address(0x9000), Bang(status).Bytes(std::vector<uint8_t>(8, 9)));
    EXPECT_GC_CODE(code, Gc().GCReadPort(m_hPort, 0x9000, buffer.data(), &size));
    EXPECT_EQ(buffer, before);
    EXPECT_EQ(size, 5U);
    EXPECT_EQ(Calls(), (Lines{Read(0x9000, 8) + Format(" = 0x%x", status)}));

    uint32_t word = 0;
    PORT_REGISTER_STACK_ENTRY entries[] = {{0x2000, &word, 4}, {0x9000, buffer.data(), 5}, {0x2000, &word, 4}};
    size_t count = 3;
    Script().On(Match(Op::ControlRead).Address(0x9000), Bang(status).Bytes(std::vector<uint8_t>(8, 9)));
    EXPECT_GC_CODE(code, Gc().GCReadPortStacked(m_hPort, entries, &count));
    EXPECT_EQ(count, 1U);
    EXPECT_EQ(buffer, before);
    EXPECT_EQ(entries[1].Size, 5U);
    EXPECT_EQ(Calls().size(), 2U);
  }
}

// More than any memory holds: refused ahead of the camera, and the port goes on.
TEST_F(RemotePort, ReadOfAnAbsurdSizeFails) {
  uint32_t word = 0x11223344;
  size_t size = SIZE_MAX;
  EXPECT_GC_BARE(GC_ERR_ERROR, "GenTL Producer: unknown exception", Gc().GCReadPort(m_hPort, 0x9000, &word, &size));
  EXPECT_EQ(word, 0x11223344U);
  EXPECT_EQ(Calls(), Lines());
  EXPECT_EQ(ReadU32Be(m_hPort, 0x2000), 0x4C756D69U);
}

// The library takes 32 bits of the address.
TEST_F(RemotePort, AddressesPassTheirLow32Bits) {
  EXPECT_EQ(ReadU32Be(m_hPort, 0xFFFFFFF000002000ULL), 0x4C756D69U);
  EXPECT_GC_OK(WriteU32Be(m_hPort, 0x1234567800009000ULL, 5));
  EXPECT_EQ(Calls(), (Lines{Read(0x2000), Write(0x9000, "00000005")}));
}

TEST_F(RemotePort, StackedEntriesStopAtTheFirstFailure) {
  Script().On(Match(Op::ControlRead).Address(0x9004), Bang());
  uint32_t words[3] = {1, 2, 3};
  PORT_REGISTER_STACK_ENTRY entries[] = {{0x2000, &words[0], 4}, {0x9004, &words[1], 4}, {0x2000, &words[2], 4}};
  size_t count = 3;
  EXPECT_GC_CODE(GC_ERR_IO, Gc().GCReadPortStacked(m_hPort, entries, &count));
  EXPECT_EQ(count, 1U);
  EXPECT_NE(words[0], 1U);
  EXPECT_EQ(words[1], 2U);
  EXPECT_EQ(words[2], 3U);
}

class RemotePortDeathTest : public RemotePort {
 protected:
  void SetUp() override {
    RemotePort::SetUp();
    testing::FLAGS_gtest_death_test_style = "threadsafe";
  }
};

// Only the stacked forms let a size of 0 pass to the port.
TEST_F(RemotePortDeathTest, TransferOfNothingIsAnAssertion) {
  uint32_t word = 0;
  PORT_REGISTER_STACK_ENTRY entry{0x9000, &word, 0};
  size_t count = 1;
  EXPECT_DEATH(Gc().GCReadPortStacked(m_hPort, &entry, &count), "nSize != 0");
  EXPECT_DEATH(Gc().GCWritePortStacked(m_hPort, &entry, &count), "nSize != 0");
}

// Rounding leaves a size of nothing at nothing.
TEST_F(RemotePortDeathTest, ReadOfNothingAtANotedAddressIsAnAssertion) {
  SetCamera(CCamera().Url(0, "Local:a.xml;9000;D"));
  Parse();
  uint32_t word = 0;
  PORT_REGISTER_STACK_ENTRY entry{0x9000, &word, 0};
  size_t count = 1;
  EXPECT_DEATH(Gc().GCReadPortStacked(m_hPort, &entry, &count), "nSize != 0");
}

// Rounding of the XML's read ------------------------------------------------------------------------------------------

class RemoteRounding : public RemotePort, public testing::WithParamInterface<size_t> {};

TEST_P(RemoteRounding, AtANotedAddressWholeWordsAreRead) {
  SetCamera(CCamera().Url(0, "Local:a.xml;9000;D").Text(0x9000, "0123456789ABCDEFGHIJ", 20));
  Parse();
  const size_t size = GetParam();
  std::vector<uint8_t> buffer(size + 4, 0xEE);
  size_t now = size;
  EXPECT_GC_OK(Gc().GCReadPort(m_hPort, 0x9000, buffer.data(), &now));
  EXPECT_EQ(now, size);
  EXPECT_EQ(std::string(buffer.begin(), buffer.begin() + static_cast<std::ptrdiff_t>(size)),
            std::string("0123456789ABCDEFGHIJ").substr(0, size));
  EXPECT_EQ(std::vector<uint8_t>(buffer.end() - 4, buffer.end()), std::vector<uint8_t>(4, 0xEE));
  EXPECT_EQ(Calls(), (Lines{Read(0x9000, static_cast<uint32_t>((size + 3) / 4 * 4))}));
}

INSTANTIATE_TEST_SUITE_P(Sizes, RemoteRounding, testing::Values(1, 2, 3, 4, 5, 8, 13, 16, 17));

TEST_F(RemotePort, OnlyAReadThatBeginsAtTheNotedAddressIsRounded) {
  SetCamera(CCamera().Url(0, "Local:a.xml;9000;D"));
  std::vector<uint8_t> buffer(16);
  const auto read = [&](uint64_t address) {
    size_t size = 5;
    EXPECT_GC_OK(Gc().GCReadPort(m_hPort, address, buffer.data(), &size));
    return Calls();
  };
  EXPECT_EQ(read(0x9000), (Lines{Read(0x9000, 5)}));  // not yet
  Parse();
  EXPECT_EQ(read(0x9000), (Lines{Read(0x9000, 8)}));
  EXPECT_EQ(read(0x9004), (Lines{Read(0x9004, 5)}));
  EXPECT_EQ(read(0x8FFC), (Lines{Read(0x8FFC, 5)}));
  EXPECT_EQ(read(0x100009000ULL), (Lines{Read(0x9000, 5)}));
}

TEST_F(RemotePort, NotedAddressesHave64Bits) {
  SetCamera(CCamera().Url(0, "Local:a.xml;100009000;D"));
  Parse();
  std::vector<uint8_t> buffer(16);
  size_t size = 5;
  EXPECT_GC_OK(Gc().GCReadPort(m_hPort, 0x100009000ULL, buffer.data(), &size));
  EXPECT_EQ(Calls(), (Lines{Read(0x9000, 8)}));
  EXPECT_GC_OK(Gc().GCReadPort(m_hPort, 0x9000, buffer.data(), &size));
  EXPECT_EQ(Calls(), (Lines{Read(0x9000, 5)}));
}

TEST_F(RemotePort, AddressesOfAllUrlsStayNoted) {
  SetCamera(CCamera().Url(0, "Local:a.xml;9000;D").Url(1, "Local:b.xml;A000;5"));
  EXPECT_EQ(UrlInfo(m_hPort, 0, URL_INFO_URL).result, GC_ERR_SUCCESS);
  EXPECT_EQ(UrlInfo(m_hPort, 1, URL_INFO_URL).result, GC_ERR_SUCCESS);
  Calls();
  for (const uint32_t address : {0x9000U, 0xA000U}) {
    std::vector<uint8_t> buffer(16);
    size_t size = 5;
    EXPECT_GC_OK(Gc().GCReadPort(m_hPort, address, buffer.data(), &size));
    EXPECT_EQ(Calls(), (Lines{Read(address, 8)}));
  }
}

TEST_F(RemotePort, NotedAddressesGoWithTheDevice) {
  SetCamera(CCamera().Url(0, "Local:a.xml;9000;D"));
  Parse();
  Open(DEVICE_ACCESS_EXCLUSIVE);
  std::vector<uint8_t> buffer(16);
  size_t size = 5;
  EXPECT_GC_OK(Gc().GCReadPort(m_hPort, 0x9000, buffer.data(), &size));
  EXPECT_EQ(Calls(), (Lines{Read(0x9000, 5)}));
}

TEST_F(RemotePort, WritesAreNeverRounded) {
  SetCamera(CCamera().Url(0, "Local:a.xml;9000;D"));
  Parse();
  EXPECT_GC_OK(WriteBytes(m_hPort, 0x9000, {1, 2, 3}));
  EXPECT_EQ(Calls(), (Lines{Write(0x9000, "010203")}));
}

TEST_F(RemotePort, TheCamerasDescriptionArrivesWhole) {
  const CCamera camera = Script().Camera(kBoard, kChannel);
  EXPECT_EQ(ReadXml(m_hPort), camera.XmlText());
}

// Link configuration --------------------------------------------------------------------------------------------------

struct LinkRow {
  uint32_t value;
  uint32_t discovery;
  uint32_t bitrate;
};

std::ostream &operator<<(std::ostream &out, const LinkRow &row) { return out << Format("0x%08X", row.value); }

constexpr LinkRow kLinks[] = {
    {0x00010028, 0xC0091202, 0xC0091002},
    {0x00020028, 0xC0091203, 0xC0091002},
    {0x00040028, 0xC0091204, 0xC0091002},
    {0x00010030, 0xC0091202, 0xC0091003},
    {0x00020030, 0xC0091203, 0xC0091003},
    {0x00040030, 0xC0091204, 0xC0091003},
    {0x00010038, 0xC0091202, 0xC0091004},
    {0x00020038, 0xC0091203, 0xC0091004},
    {0x00040038, 0xC0091204, 0xC0091004},
    {0x00010040, 0xC0091202, 0xC0091005},
    {0x00020040, 0xC0091203, 0xC0091005},
    {0x00040040, 0xC0091204, 0xC0091005},
    {0x00010048, 0xC0091202, 0xC0091006},
    {0x00020048, 0xC0091203, 0xC0091006},
    {0x00040048, 0xC0091204, 0xC0091006},
    // Bits beside the two fields do not count.
    {0x00090028, 0xC0091202, 0xC0091002},
    {0xFFFAFF40, 0xC0091203, 0xC0091005},
};

class LinkConfiguration : public RemotePort, public testing::WithParamInterface<LinkRow> {};

TEST_P(LinkConfiguration, BecomesTheGrabbersDiscoveryThenItsBitrate) {
  const std::string h = HandleName(StreamHandle());
  EXPECT_GC_OK(WriteU32Be(m_hPort, 0x4014, GetParam().value));
  EXPECT_EQ(Calls(), (Lines{"ParameterSet(" + h + Format(", GRB_CXP_DISCOVERY_MODE_NOW, 0x%x)", GetParam().discovery),
                            "ParameterSet(" + h + Format(", GRB_CXP_BITRATE_MODE_NOW, 0x%x)", GetParam().bitrate)}));
  EXPECT_EQ(ReadU32(m_hDevice, 0x2210), GetParam().discovery);
  EXPECT_EQ(ReadU32(m_hDevice, 0x2204), GetParam().bitrate);
}

INSTANTIATE_TEST_SUITE_P(Values, LinkConfiguration, testing::ValuesIn(kLinks));

struct BadLinkRow {
  uint32_t value;
  const char *message;
};

std::ostream &operator<<(std::ostream &out, const BadLinkRow &row) { return out << Format("0x%08X", row.value); }

constexpr BadLinkRow kBadLinks[] = {
    {0x00000028, "Invalid configuration: invalid number of links: 0"},
    {0x00030028, "Invalid configuration: invalid number of links: 3"},
    {0x00050028, "Invalid configuration: invalid number of links: 5"},
    {0x00060028, "Invalid configuration: invalid number of links: 6"},
    {0x00070028, "Invalid configuration: invalid number of links: 7"},
    {0x00080028, "Invalid configuration: invalid number of links: 0"},
    {0x00030041, "Invalid configuration: invalid number of links: 3"},
    {0x00020041, "Invalid configuration: invalid CXP speed: 65"},
    {0x00020000, "Invalid configuration: invalid CXP speed: 0"},
    {0x000200FF, "Invalid configuration: invalid CXP speed: 255"},
    {0x00022800, "Invalid configuration: invalid CXP speed: 0"},
};

class BadLinkConfiguration : public RemotePort, public testing::WithParamInterface<BadLinkRow> {};

TEST_P(BadLinkConfiguration, ChangesNothing) {
  const uint32_t discovery = ReadU32(m_hDevice, 0x2210);
  const uint32_t bitrate = ReadU32(m_hDevice, 0x2204);
  Calls();
  EXPECT_GC(GC_ERR_INVALID_PARAMETER, GetParam().message, WriteU32Be(m_hPort, 0x4014, GetParam().value));
  EXPECT_EQ(Calls(), Lines());
  EXPECT_EQ(ReadU32(m_hDevice, 0x2210), discovery);
  EXPECT_EQ(ReadU32(m_hDevice, 0x2204), bitrate);
}

INSTANTIATE_TEST_SUITE_P(Values, BadLinkConfiguration, testing::ValuesIn(kBadLinks));

TEST_F(RemotePort, LinkConfigurationOfAnotherSizeIsDropped) {
  for (const size_t size : {1U, 2U, 3U, 5U, 8U}) {
    EXPECT_GC_OK(WriteBytes(m_hPort, 0x4014, std::vector<uint8_t>(size, 0xFF)));
    EXPECT_EQ(Calls(), Lines());
  }
}

TEST_F(RemotePort, OnlyAWriteThatBeginsAtTheLinkConfigurationIsKeptFromTheCamera) {
  EXPECT_GC_OK(WriteBytes(m_hPort, 0x4010, {0, 0, 4, 0, 0, 2, 0, 0x40}));
  EXPECT_EQ(Calls(), (Lines{Write(0x4010, "0000040000020040")}));
  EXPECT_GC_OK(WriteU32Be(m_hPort, 0x100004014ULL, 0x00020040));
  EXPECT_EQ(Calls(), (Lines{Write(0x4014, "00020040")}));
  EXPECT_GC_OK(WriteU32Be(m_hPort, 0x4018, 0x00020040));
  EXPECT_EQ(Calls(), (Lines{Write(0x4018, "00020040")}));
}

TEST_F(RemotePort, LinkConfigurationIsReadFromTheCamera) {
  Script().WriteCameraU32(kBoard, kChannel, 0x4014, 0x00010028);
  EXPECT_EQ(ReadU32Be(m_hPort, 0x4014), 0x00010028U);
  EXPECT_EQ(Calls(), (Lines{Read(0x4014)}));
}

TEST_F(RemotePort, FailureOfTheFirstLinkSettingLeavesTheSecondUndone) {
  Script().On(Match(Op::ParameterSet, GRB_CXP_DISCOVERY_MODE_NOW), Bang());
  EXPECT_GC(GC_ERR_ERROR, FailedWrite("CXP_DISCOVERY_MODE"), WriteU32Be(m_hPort, 0x4014, 0x00020040));
  EXPECT_EQ(Calls().size(), 1U);
  EXPECT_EQ(Parameter(GRB_CXP_BITRATE_MODE), GRB_CXP_BITRATE_MODE_AUTO);
}

TEST_F(RemotePort, FailureOfTheSecondLinkSettingLeavesTheFirstInForce) {
  Script().On(Match(Op::ParameterSet, GRB_CXP_BITRATE_MODE_NOW), Bang());
  EXPECT_GC(GC_ERR_ERROR, FailedWrite("CXP_BITRATE_MODE"), WriteU32Be(m_hPort, 0x4014, 0x00020040));
  EXPECT_EQ(Parameter(GRB_CXP_DISCOVERY_MODE), 0xC0091203U);
  EXPECT_EQ(Parameter(GRB_CXP_BITRATE_MODE), GRB_CXP_BITRATE_MODE_AUTO);
}

}  // namespace
}  // namespace DeviceTests
