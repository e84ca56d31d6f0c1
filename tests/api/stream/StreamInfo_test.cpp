// SPDX-License-Identifier: MIT
// What a stream tells about itself: DSGetInfo, DSGetBufferID, its port and its registers.
#include <cstring>

#include "StreamFixture.h"

namespace StreamTests {
namespace {

// DSGetInfo -----------------------------------------------------------------------------------------------------------

struct StreamInfoRow {
  STREAM_INFO_CMD cmd;
  INFO_DATATYPE type;
  size_t size;
  const char *text;  ///< null: a number
  uint64_t fresh;    ///< on a new stream
  uint64_t running;  ///< four announced, three queued, two frames delivered, one of them taken
};

void PrintTo(const StreamInfoRow &row, std::ostream *out) { *out << "STREAM_INFO_CMD " << row.cmd; }

constexpr StreamInfoRow kStreamInfos[] = {
    {STREAM_INFO_ID, INFO_DATATYPE_STRING, 2, "0", 0, 0},
    {STREAM_INFO_NUM_DELIVERED, INFO_DATATYPE_UINT64, 8, nullptr, 0, 2},
    {STREAM_INFO_NUM_UNDERRUN, INFO_DATATYPE_UINT64, 8, nullptr, 0, 0},
    {STREAM_INFO_NUM_ANNOUNCED, INFO_DATATYPE_SIZET, 8, nullptr, 0, 4},
    {STREAM_INFO_NUM_QUEUED, INFO_DATATYPE_SIZET, 8, nullptr, 0, 1},
    {STREAM_INFO_NUM_AWAIT_DELIVERY, INFO_DATATYPE_SIZET, 8, nullptr, 0, 1},
    {STREAM_INFO_NUM_STARTED, INFO_DATATYPE_UINT64, 8, nullptr, 0, 2},
    {STREAM_INFO_PAYLOAD_SIZE, INFO_DATATYPE_SIZET, 8, nullptr, 64 * 48, 64 * 48},
    {STREAM_INFO_IS_GRABBING, INFO_DATATYPE_BOOL8, 1, nullptr, 0, 1},
    {STREAM_INFO_DEFINES_PAYLOADSIZE, INFO_DATATYPE_BOOL8, 1, nullptr, 1, 1},
    {STREAM_INFO_TLTYPE, INFO_DATATYPE_STRING, 4, "CXP", 0, 0},
    {STREAM_INFO_BUF_ANNOUNCE_MIN, INFO_DATATYPE_SIZET, 8, nullptr, 1, 1},
};

class StreamInfoTable : public StreamTest, public testing::WithParamInterface<StreamInfoRow> {
 protected:
  void Check(uint64_t expected) {
    const StreamInfoRow &row = GetParam();
    const Info info = DsInfo(OpenStream(), row.cmd);
    ASSERT_EQ(GC_ERR_SUCCESS, info.result);
    EXPECT_EQ(row.type, info.type);
    ASSERT_EQ(row.size, info.size);
    if (row.text != nullptr) {
      EXPECT_EQ(row.text, info.Text());
    } else {
      uint64_t value = 0;
      std::memcpy(&value, info.bytes.data(), info.bytes.size());
      EXPECT_EQ(expected, value);
    }
  }
};

TEST_P(StreamInfoTable, NewStream) {
  OpenStream();
  Check(GetParam().fresh);
}

TEST_P(StreamInfoTable, RunningStream) {
  const EVENT_HANDLE event = NewBufferEvent();
  Alloc();
  Run(3);
  Frame();
  Frame();
  Take(event);
  Check(GetParam().running);
}

TEST_P(StreamInfoTable, SizeOneTooSmall) {
  const StreamInfoRow &row = GetParam();
  std::vector<uint8_t> buffer(row.size, 0xEE);
  INFO_DATATYPE type = Info::kUntouchedType;
  size_t size = row.size - 1;
  // A size of 0 does not get as far as the answer.
  const bool atTheEntry = size == 0;
  EXPECT_GC(GC_ERR_INVALID_PARAMETER, atTheEntry ? "Size of buffer cannot be null." : "Invalid Buffer Size.",
            Gc().DSGetInfo(OpenStream(), row.cmd, &type, buffer.data(), &size));
  EXPECT_EQ(atTheEntry ? Info::kUntouchedType : row.type, type) << "the type is written ahead of the size check";
  EXPECT_EQ(row.size - 1, size);
  EXPECT_EQ(std::vector<uint8_t>(row.size, 0xEE), buffer);
}

TEST_P(StreamInfoTable, LargerSizeShrinks) {
  const StreamInfoRow &row = GetParam();
  const InfoCall call = [&](INFO_DATATYPE *type, void *buffer, size_t *size) {
    return Gc().DSGetInfo(OpenStream(), row.cmd, type, buffer, size);
  };
  EXPECT_EQ(row.size, AskInfoOnce(call, row.size + 8).size);
}

TEST_P(StreamInfoTable, ArgumentsAreCheckedInOrder) {
  const StreamInfoRow &row = GetParam();
  const DS_HANDLE stream = OpenStream();
  INFO_DATATYPE type = 0;
  uint8_t buffer[64];
  size_t size = 0;
  const char *const function = "GenICam::Client::DSGetInfo";
  EXPECT_GC_FROM(GC_ERR_INVALID_PARAMETER, "Null type pointer.", function,
                 Gc().DSGetInfo(stream, row.cmd, nullptr, buffer, nullptr));
  EXPECT_GC_FROM(GC_ERR_INVALID_PARAMETER, "Null size pointer.", function,
                 Gc().DSGetInfo(stream, row.cmd, &type, buffer, nullptr));
  EXPECT_GC_FROM(GC_ERR_INVALID_PARAMETER, "Size of buffer cannot be null.", function,
                 Gc().DSGetInfo(stream, row.cmd, &type, buffer, &size));
  EXPECT_GC_OK(Gc().DSGetInfo(stream, row.cmd, &type, nullptr, &size));
  EXPECT_EQ(row.size, size) << "a null buffer asks for the size, whatever the size was";
}

INSTANTIATE_TEST_SUITE_P(All, StreamInfoTable, testing::ValuesIn(kStreamInfos));

TEST_F(StreamTest, UnsupportedStreamInfos) {
  OpenStream();
  INFO_DATATYPE type = Info::kUntouchedType;
  size_t size = 77;
  const std::string function = std::string(kModule) + "DSGetInfo";
  EXPECT_GC_FROM(GC_ERR_NOT_IMPLEMENTED, "STREAM_INFO_NUM_CHUNKS_MAX not supported.", function.c_str(),
                 Gc().DSGetInfo(m_hStream, STREAM_INFO_NUM_CHUNKS_MAX, &type, nullptr, &size));
  EXPECT_GC_FROM(GC_ERR_NOT_IMPLEMENTED, "STREAM_INFO_BUF_ALIGNMENT not supported.", function.c_str(),
                 Gc().DSGetInfo(m_hStream, STREAM_INFO_BUF_ALIGNMENT, &type, nullptr, &size));
  for (const int32_t cmd : {14, 15, 999, 1000, 1001, -1, INT32_MAX, INT32_MIN}) {
    EXPECT_GC_FROM(GC_ERR_INVALID_PARAMETER, FormatId("Invalid DataStream STREAM_INFO_CMD %ld", cmd), function.c_str(),
                   Gc().DSGetInfo(m_hStream, cmd, &type, nullptr, &size));
  }
  EXPECT_EQ(Info::kUntouchedType, type);
  EXPECT_EQ(77U, size);
}

TEST_F(StreamTest, NumStartedCountsTheRunAndStaysBehindIt) {
  Run(3);
  Frame();
  Frame();
  EXPECT_EQ(2U, Started());
  Stop();
  EXPECT_EQ(2U, Started()) << "the latest run's count";
  Start();
  EXPECT_EQ(0U, Started());
}

TEST_F(StreamTest, NumStartedLeavesTheLimitCallbackOut) {
  Run(3, 1);
  Frame();
  Frame();
  EXPECT_EQ(1U, Started());
}

// DSGetBufferID -------------------------------------------------------------------------------------------------------

TEST_F(StreamTest, BufferIdsFollowTheAnnouncement) {
  std::vector<BUFFER_HANDLE> buffers = AllocMany(4);
  const auto ids = [&] {
    std::vector<BUFFER_HANDLE> found;
    BUFFER_HANDLE buffer = nullptr;
    for (uint32_t i = 0; Gc().DSGetBufferID(m_hStream, i, &buffer) == GC_ERR_SUCCESS; ++i) {
      found.push_back(buffer);
    }
    return found;
  };
  EXPECT_EQ(buffers, ids());
  ASSERT_GC_OK(Gc().DSRevokeBuffer(m_hStream, buffers[1], nullptr, nullptr));
  buffers.erase(buffers.begin() + 1);
  EXPECT_EQ(buffers, ids()) << "the gap closes";
  buffers.push_back(Alloc());
  EXPECT_EQ(buffers, ids());
}

TEST_F(StreamTest, BufferIdPastTheEnd) {
  const std::string function = std::string(kModule) + "DSGetBufferID";
  BUFFER_HANDLE untouched = this;
  OpenStream();
  EXPECT_GC_FROM(GC_ERR_INVALID_BUFFER, "Invalid Buffer Index 0", function.c_str(),
                 Gc().DSGetBufferID(m_hStream, 0, &untouched));
  AllocMany(2);
  EXPECT_GC_FROM(GC_ERR_INVALID_BUFFER, "Invalid Buffer Index 2", function.c_str(),
                 Gc().DSGetBufferID(m_hStream, 2, &untouched));
  EXPECT_GC(GC_ERR_INVALID_BUFFER, "Invalid Buffer Index -1", Gc().DSGetBufferID(m_hStream, 0xFFFFFFFFU, &untouched));
  EXPECT_EQ(this, untouched);
  EXPECT_GC_FROM(GC_ERR_INVALID_PARAMETER, "Null BUFFER_HANDLE pointer.", "GenICam::Client::DSGetBufferID",
                 Gc().DSGetBufferID(m_hStream, 0, nullptr));
}

// Port ----------------------------------------------------------------------------------------------------------------

struct PortInfoRow {
  PORT_INFO_CMD cmd;
  const char *text;  ///< null: a flag
  bool flag;
};

void PrintTo(const PortInfoRow &row, std::ostream *out) { *out << "PORT_INFO_CMD " << row.cmd; }

constexpr PortInfoRow kPortInfos[] = {
    {PORT_INFO_ID, "Stream #1", false},
    {PORT_INFO_VENDOR, "Lumivex", false},
    {PORT_INFO_MODEL, "Lumivex Transport Layer", false},
    {PORT_INFO_TLTYPE, "CXP", false},
    {PORT_INFO_MODULE, "TLDataStream", false},
    {PORT_INFO_LITTLE_ENDIAN, nullptr, true},
    {PORT_INFO_BIG_ENDIAN, nullptr, false},
    {PORT_INFO_ACCESS_READ, nullptr, true},
    {PORT_INFO_ACCESS_WRITE, nullptr, true},
    {PORT_INFO_ACCESS_NA, nullptr, false},
    {PORT_INFO_ACCESS_NI, nullptr, false},
    {PORT_INFO_VERSION, "1.1.11.0", false},
    {PORT_INFO_PORTNAME, "StreamPort", false},
};

class StreamPortInfoTable : public StreamTest, public testing::WithParamInterface<PortInfoRow> {};

TEST_P(StreamPortInfoTable, Answer) {
  const PortInfoRow &row = GetParam();
  const Info info = PortInfo(OpenStream(), row.cmd);
  ASSERT_EQ(GC_ERR_SUCCESS, info.result);
  if (row.text != nullptr) {
    EXPECT_EQ(INFO_DATATYPE_STRING, info.type);
    EXPECT_EQ(row.text, info.Text());
    EXPECT_EQ(std::strlen(row.text) + 1, info.size);
  } else {
    EXPECT_EQ(INFO_DATATYPE_BOOL8, info.type);
    EXPECT_EQ(row.flag ? 1 : 0, info.As<uint8_t>());
  }
}

TEST_P(StreamPortInfoTable, SizeOneTooSmall) {
  const PortInfoRow &row = GetParam();
  char buffer[64];
  size_t size = row.text == nullptr ? 0 : std::strlen(row.text);
  INFO_DATATYPE type = 0;
  EXPECT_GC(GC_ERR_INVALID_PARAMETER, row.text == nullptr ? "Size of buffer cannot be null." : "Invalid Buffer Size.",
            Gc().GCGetPortInfo(OpenStream(), row.cmd, &type, buffer, &size));
}

INSTANTIATE_TEST_SUITE_P(All, StreamPortInfoTable, testing::ValuesIn(kPortInfos));

TEST_F(StreamTest, UnknownPortInfos) {
  OpenStream();
  INFO_DATATYPE type = 0;
  size_t size = 0;
  for (const int32_t cmd : {13, 1000, -1}) {
    EXPECT_GC_FROM(GC_ERR_INVALID_PARAMETER, Format("Invalid PORT_INFO_CMD Command %08llX", static_cast<uint32_t>(cmd)),
                   "GenICam::Client::CDataStream::GetPortInfo",
                   Gc().GCGetPortInfo(m_hStream, cmd, &type, nullptr, &size));
  }
}

TEST_F(StreamTest, UrlHasNoFinalSeparator) {
  const Info url = PortUrl(OpenStream());
  ASSERT_EQ(GC_ERR_SUCCESS, url.result);
  const std::optional<LocalUrl> parsed = ParseLocalUrl(url.Text());
  ASSERT_TRUE(parsed) << url.Text();
  EXPECT_EQ("LumivexTLDataStream.xml", parsed->name);
  EXPECT_EQ(0x200U, parsed->address);
  EXPECT_EQ(0U, parsed->size % 4);
  EXPECT_EQ(Format("Local:LumivexTLDataStream.xml;200;%llx", parsed->size), url.Text()) << "lower case, no prefix";
  EXPECT_EQ(url.Text().size() + 2, url.size) << "the size still counts the separator";

  uint32_t count = 0;
  EXPECT_GC_OK(Gc().GCGetNumPortURLs(m_hStream, &count));
  EXPECT_EQ(1U, count);
}

TEST_F(StreamTest, UrlSizes) {
  OpenStream();
  const std::string text = PortUrl(m_hStream).Text();
  const size_t needed = text.size() + 2;
  size_t size = 0;
  EXPECT_GC_OK(Gc().GCGetPortURL(m_hStream, nullptr, &size));
  EXPECT_EQ(needed, size);

  std::vector<char> buffer(needed + 1, '\x7f');
  size = needed - 1;
  EXPECT_GC_FROM(GC_ERR_INVALID_PARAMETER, "Invalid Buffer Size", "GenICam::Client::CDataStream::GetURL",
                 Gc().GCGetPortURL(m_hStream, buffer.data(), &size));
  EXPECT_EQ(needed, size) << "tells the need";
  EXPECT_EQ('\x7f', buffer[0]);
  EXPECT_GC_OK(Gc().GCGetPortURL(m_hStream, buffer.data(), &size));
  EXPECT_EQ(text, buffer.data());
  EXPECT_EQ('\x7f', buffer[needed - 1]) << "the size counts one byte more than is written";
  EXPECT_EQ('\x7f', buffer[needed]);

  size = 0;
  EXPECT_GC(GC_ERR_INVALID_PARAMETER, "Size of URL cannot be null.",
            Gc().GCGetPortURL(m_hStream, buffer.data(), &size));
  EXPECT_GC(GC_ERR_INVALID_PARAMETER, "Null size pointer.", Gc().GCGetPortURL(m_hStream, buffer.data(), nullptr));
}

TEST_F(StreamTest, UrlInfos) {
  OpenStream();
  const Info url = UrlInfo(m_hStream, 0, URL_INFO_URL);
  ASSERT_EQ(GC_ERR_SUCCESS, url.result);
  EXPECT_EQ(INFO_DATATYPE_STRING, url.type);
  EXPECT_EQ(PortUrl(m_hStream).Text(), url.Text());
  EXPECT_EQ(url.Text().size() + 1, url.size);

  constexpr struct {
    URL_INFO_CMD cmd;
    int32_t value;
  } kNumbers[] = {{URL_INFO_SCHEMA_VER_MAJOR, 1},
                  {URL_INFO_SCHEMA_VER_MINOR, 0},
                  {URL_INFO_FILE_VER_MAJOR, 2},
                  {URL_INFO_FILE_VER_MINOR, 0},
                  {URL_INFO_FILE_VER_SUBMINOR, 0}};
  for (const auto &row : kNumbers) {
    const Info info = UrlInfo(m_hStream, 0, row.cmd);
    EXPECT_EQ(INFO_DATATYPE_INT32, info.type) << row.cmd;
    EXPECT_EQ(row.value, info.As<int32_t>()) << row.cmd;
  }

  INFO_DATATYPE type = 0;
  size_t size = 0;
  for (const int32_t cmd : {6, 1000, -1}) {
    EXPECT_GC_FROM(GC_ERR_INVALID_PARAMETER, Format("Invalid URL_INFO_CMD Command %08llX", static_cast<uint32_t>(cmd)),
                   "GenICam::Client::CDataStream::GetPortURLInfo",
                   Gc().GCGetPortURLInfo(m_hStream, 0, cmd, &type, nullptr, &size));
  }
  EXPECT_GC_FROM(GC_ERR_INVALID_PARAMETER, "URL Index 1 is out of range",
                 "GenICam::Client::CDataStream::GetPortURLInfo",
                 Gc().GCGetPortURLInfo(m_hStream, 1, URL_INFO_URL, &type, nullptr, &size));
  EXPECT_GC(GC_ERR_INVALID_PARAMETER, "URL Index 7 is out of range",
            Gc().GCGetPortURLInfo(m_hStream, 7, -1, &type, nullptr, &size))
      << "the index comes ahead of the command";
}

TEST_F(StreamTest, PortFailuresNameTheModulesOperation) {
  // What the modules share names none of its own functions.
  OpenStream();
  const struct {
    PORT_HANDLE port;
    const char *module;
    bool shares;  ///< its URL as well
  } kModules[] = {{m_hSystem, "CTL", true},
                  {m_hInterface, "CInterface", true},
                  {m_hDevice, "CDevice", false},
                  {m_hStream, "CDataStream", true},
                  {OpenRemotePort(), "CDevicePortCxp", false}};
  for (const auto &row : kModules) {
    const std::string scope = std::string("GenICam::Client::") + row.module + "::";
    const auto functionOf = [](GC_ERROR result) {
      const std::string text = LastError().text;
      EXPECT_EQ(GC_ERR_INVALID_PARAMETER, result) << text;
      return SplitFailureText(text).value_or(FailureText{}).function;
    };
    INFO_DATATYPE type = 0;
    size_t size = 0;
    EXPECT_EQ(scope + "GetPortInfo", functionOf(Gc().GCGetPortInfo(row.port, 999, &type, nullptr, &size)));
    EXPECT_EQ(scope + "GetPortURLInfo", functionOf(Gc().GCGetPortURLInfo(row.port, 9, 0, &type, nullptr, &size)));
    EXPECT_EQ(scope + "GetPortURLInfo", functionOf(Gc().GCGetPortURLInfo(row.port, 0, 999, &type, nullptr, &size)));
    char url = 0;
    size = 1;
    if (row.shares) {
      EXPECT_EQ(scope + "GetURL", functionOf(Gc().GCGetPortURL(row.port, &url, &size)));
    }
  }
}

TEST_F(StreamTest, UnderrunsAreNeverCounted) {
  const EVENT_HANDLE event = NewBufferEvent();
  Run(1, 3);
  ASSERT_TRUE(Script().FireCallback(GRB_EVENT_BUFFER_READY | GRB_EVENT_FIFO_OVERFLOW));
  EXPECT_EQ(0U, StreamNumber(STREAM_INFO_NUM_UNDERRUN)) << "behind an overflow";
  Take(event);
  Frame();
  EXPECT_EQ(2U, Started());
  EXPECT_EQ(1U, Delivered());
  EXPECT_EQ(0U, StreamNumber(STREAM_INFO_NUM_UNDERRUN)) << "behind a frame for which no buffer was queued";
  Frame();
  Frame();
  EXPECT_EQ(3U, Started());
  EXPECT_EQ(1U, Count(GRB_STREAM_STOP));
  EXPECT_EQ(0U, StreamNumber(STREAM_INFO_NUM_UNDERRUN)) << "behind the limit";
  Stop();
  EXPECT_EQ(0U, StreamNumber(STREAM_INFO_NUM_UNDERRUN));
}

// Registers -----------------------------------------------------------------------------------------------------------

TEST_F(StreamTest, AnnouncedBufferCountRegister) {
  OpenStream();
  EXPECT_EQ(0U, ReadU64(m_hStream, 0x4));
  const std::vector<BUFFER_HANDLE> buffers = AllocMany(3);
  EXPECT_EQ(3U, ReadU64(m_hStream, 0x4));
  EXPECT_EQ(3U, ReadU32(m_hStream, 0x4)) << "low word first";
  EXPECT_EQ(0U, ReadU32(m_hStream, 0x8));
  ASSERT_GC_OK(Gc().DSRevokeBuffer(m_hStream, buffers[0], nullptr, nullptr));
  EXPECT_EQ(2U, ReadU64(m_hStream, 0x4));
}

TEST_F(StreamTest, PayloadSizeRegisterIsCurrent) {
  OpenStream();
  EXPECT_EQ(64U * 48U, ReadU64(m_hStream, 0x34));
  SetSize(60, 10);
  EXPECT_EQ(640U, ReadU64(m_hStream, 0x34));
  EXPECT_EQ(GC_ERR_SUCCESS, WriteU64(m_hStream, 0x34, 5)) << "the map lets it through, the description does not";
  EXPECT_EQ(640U, ReadU64(m_hStream, 0x34));
  Script().On(Match(Op::ParameterGet, GRB_ROI_XLENGTH), Broken());
  uint64_t value = 0;
  EXPECT_GC(GC_ERR_ERROR, "Failed reading Device feature: WIDTH: " + LibraryText("GRB_ParameterGet"),
            TryRead(m_hStream, 0x34, &value, 8));
}

TEST_F(StreamTest, NameRegisters) {
  OpenStream();
  EXPECT_EQ("Stream #1", ReadText(m_hStream, 0x80, 64));
  EXPECT_EQ("Stream #1", ReadText(m_hStream, 0x100, 256));
  for (const uint64_t address : {0x90U, 0xBCU, 0x110U, 0x1FCU}) {
    EXPECT_EQ(0U, ReadU32(m_hStream, address)) << "zeros behind the name, at " << address;
  }
}

TEST_F(StreamTest, UndescribedRegisterReadsZero) {
  OpenStream();
  EXPECT_EQ(0U, ReadU32(m_hStream, 0x50));
}

TEST_F(StreamTest, TestEventRegisterPostsAnErrorForAnyValue) {
  const EVENT_HANDLE event = ErrorEvent();
  for (const uint32_t value : {1U, 0U, 0xFFFFFFFFU}) {
    EXPECT_GC_OK(WriteU32(m_hStream, 0x14, value));
    const ErrorBlock block = TakeError(event);
    EXPECT_EQ(-10001, block.code);
    EXPECT_EQ("'Test Error' event detected.", block.text);
    EXPECT_EQ(value, ReadU32(m_hStream, 0x14));
  }
  EXPECT_EQ(GC_ERR_TIMEOUT, GetEvent(event, 0).result) << "one event for one write, none for a read";
}

TEST_F(StreamTest, TestEventOfADisabledEventIsLost) {
  OpenStream();
  EXPECT_GC_OK(WriteU32(m_hStream, 0x14, 1));
  const EVENT_HANDLE event = ErrorEvent();
  EXPECT_EQ(0U, EventNumber(event, EVENT_NUM_IN_QUEUE));
  EXPECT_EQ(0U, EventNumber(event, EVENT_NUM_FIRED));
}

TEST_F(StreamTest, HolesOfTheMap) {
  OpenStream();
  const uint64_t xmlEnd = 0x200 + ParseLocalUrl(PortUrl(m_hStream).Text())->size;
  uint32_t value = 0;
  for (const uint64_t address :
       {uint64_t{0x0}, uint64_t{0xC}, uint64_t{0x10}, uint64_t{0x18}, uint64_t{0x30}, uint64_t{0x3C}, uint64_t{0x4C},
        uint64_t{0x54}, uint64_t{0x7C}, uint64_t{0xC0}, uint64_t{0xFC}, xmlEnd, uint64_t{0x10000000}}) {
    const std::string message = Format("Register %llX is not available (does not exist).", address);
    EXPECT_GC(GC_ERR_ERROR, message, TryRead(m_hStream, address, &value, 4));
    EXPECT_GC(GC_ERR_ERROR, message, WriteU32(m_hStream, address, 1));
  }
}

TEST_F(StreamTest, ReadOnlyRegisters) {
  OpenStream();
  const uint64_t xmlEnd = 0x200 + ParseLocalUrl(PortUrl(m_hStream).Text())->size;
  for (const uint64_t address : {uint64_t{0x4}, uint64_t{0x8}, uint64_t{0x50}, uint64_t{0x80}, uint64_t{0xBC},
                                 uint64_t{0x100}, uint64_t{0x1FC}, uint64_t{0x200}, xmlEnd - 4}) {
    EXPECT_GC(GC_ERR_ERROR, Format("Register %llX is not writable.", address), WriteU32(m_hStream, address, 1));
  }
}

TEST_F(StreamTest, PortArguments) {
  OpenStream();
  uint64_t value = 0;
  size_t size = 2;
  EXPECT_GC(GC_ERR_INVALID_PARAMETER, "Address and/or uiSize have to be multiples of four.",
            Gc().GCReadPort(m_hStream, 0x4, &value, &size));
  size = 4;
  EXPECT_GC(GC_ERR_INVALID_PARAMETER, "Address and/or uiSize have to be multiples of four.",
            Gc().GCReadPort(m_hStream, 0x6, &value, &size));
  EXPECT_GC(GC_ERR_INVALID_PARAMETER, "Address is invalid.",
            Gc().GCReadPort(m_hStream, 0xFFFFFFFFFFFFFFFFU, &value, &size));
  EXPECT_GC(GC_ERR_INVALID_PARAMETER, "pBuffer is not valid.", Gc().GCReadPort(m_hStream, 0x4, nullptr, &size));
  EXPECT_GC(GC_ERR_INVALID_PARAMETER, "pBuffer is not valid.", Gc().GCWritePort(m_hStream, 0x14, nullptr, &size));
  EXPECT_GC(GC_ERR_INVALID_PARAMETER, "Null size pointer.", Gc().GCReadPort(m_hStream, 0x4, &value, nullptr));
  size = 0;
  EXPECT_GC(GC_ERR_INVALID_PARAMETER, "Size of buffer cannot be null.", Gc().GCReadPort(m_hStream, 0x4, &value, &size));
}

TEST_F(StreamTest, DescriptionIsReadInOneCall) {
  OpenStream();
  const std::optional<LocalUrl> url = ParseLocalUrl(PortUrl(m_hStream).Text());
  ASSERT_TRUE(url);
  std::vector<uint8_t> bytes(url->size);
  size_t size = bytes.size();
  ASSERT_GC_OK(Gc().GCReadPort(m_hStream, url->address, bytes.data(), &size));
  EXPECT_EQ(bytes.size(), size);
  EXPECT_EQ(0, bytes.back()) << "the block ends in zeros";
  const std::string xml = ReadXml(m_hStream);
  EXPECT_NE(std::string::npos, xml.find("ModelName=\"TL_Lumivex_DataStream\""));
  EXPECT_NE(std::string::npos, xml.find("</RegisterDescription>"));
  EXPECT_LT(url->size - xml.size(), 9U) << "rounded to four, and four";
}

}  // namespace
}  // namespace StreamTests
