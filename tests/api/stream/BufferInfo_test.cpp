// SPDX-License-Identifier: MIT
// DSGetBufferInfo: every command in every state of a buffer; and what a buffer refuses.
#include <cstring>

#include "StreamFixture.h"

namespace StreamTests {
namespace {

/// Values that only the test at hand knows.
enum Special : uint64_t {
  kBase = 0xF000000000000000U,  ///< the address announced
  kUser,                        ///< the private pointer announced
  kSize,                        ///< the size announced
  kPayload,                     ///< the payload size of the run
  kStamped                      ///< anything but 0
};

/// The states of a buffer's life that these tests look at.
enum State : size_t { kFresh, kQueued, kFilled, kHeld, kRequeued, kStates };
constexpr const char *kStateNames[kStates] = {"Fresh", "Queued", "Filled", "Held", "Requeued"};

struct BufferInfoRow {
  BUFFER_INFO_CMD cmd;
  INFO_DATATYPE type;
  const char *text;  ///< null: a number
  uint64_t value[kStates];
};

// A run of 60 x 48 pixels of BayerGR10, 120 bytes to a line and 8 to fill it up; the second frame is looked at.
constexpr uint64_t kFormat = 0x0110000C;
constexpr BufferInfoRow kBufferInfos[] = {
    // command                        type                 text     fresh  queued filled held   requeued
    {BUFFER_INFO_BASE, INFO_DATATYPE_PTR, nullptr, {kBase, kBase, kBase, kBase, kBase}},
    {BUFFER_INFO_SIZE, INFO_DATATYPE_SIZET, nullptr, {kSize, kSize, kSize, kSize, kSize}},
    {BUFFER_INFO_USER_PTR, INFO_DATATYPE_PTR, nullptr, {kUser, kUser, kUser, kUser, kUser}},
    {BUFFER_INFO_TIMESTAMP, INFO_DATATYPE_UINT64, nullptr, {0, 0, kStamped, kStamped, kStamped}},
    {BUFFER_INFO_NEW_DATA, INFO_DATATYPE_BOOL8, nullptr, {0, 0, 1, 1, 0}},
    {BUFFER_INFO_IS_QUEUED, INFO_DATATYPE_BOOL8, nullptr, {0, 1, 0, 0, 1}},
    {BUFFER_INFO_IS_ACQUIRING, INFO_DATATYPE_BOOL8, nullptr, {0, 0, 0, 0, 0}},
    {BUFFER_INFO_IS_INCOMPLETE, INFO_DATATYPE_BOOL8, nullptr, {0, 0, 0, 0, 0}},
    {BUFFER_INFO_TLTYPE, INFO_DATATYPE_STRING, "CXP", {}},
    {BUFFER_INFO_SIZE_FILLED, INFO_DATATYPE_SIZET, nullptr, {0, 0, kPayload, kPayload, 0}},
    {BUFFER_INFO_WIDTH, INFO_DATATYPE_SIZET, nullptr, {1, 1, 60, 60, 60}},
    {BUFFER_INFO_HEIGHT, INFO_DATATYPE_SIZET, nullptr, {kSize, kSize, 48, 48, 48}},
    {BUFFER_INFO_XOFFSET, INFO_DATATYPE_SIZET, nullptr, {0, 0, 0, 0, 0}},
    {BUFFER_INFO_YOFFSET, INFO_DATATYPE_SIZET, nullptr, {0, 0, 0, 0, 0}},
    {BUFFER_INFO_XPADDING, INFO_DATATYPE_SIZET, nullptr, {0, 0, 8, 8, 8}},
    {BUFFER_INFO_YPADDING, INFO_DATATYPE_SIZET, nullptr, {0, 0, 0, 0, 0}},
    {BUFFER_INFO_FRAMEID, INFO_DATATYPE_UINT64, nullptr, {0, 0, 2, 2, 2}},
    {BUFFER_INFO_IMAGEPRESENT, INFO_DATATYPE_BOOL8, nullptr, {0, 0, 1, 1, 0}},
    {BUFFER_INFO_IMAGEOFFSET, INFO_DATATYPE_SIZET, nullptr, {0, 0, 0, 0, 0}},
    {BUFFER_INFO_PAYLOADTYPE, INFO_DATATYPE_SIZET, nullptr, {1, 1, 1, 1, 1}},
    {BUFFER_INFO_PIXELFORMAT, INFO_DATATYPE_UINT64, nullptr, {0, 0, kFormat, kFormat, kFormat}},
    {BUFFER_INFO_PIXELFORMAT_NAMESPACE, INFO_DATATYPE_UINT64, nullptr, {1, 1, 1, 1, 1}},
    {BUFFER_INFO_DELIVERED_IMAGEHEIGHT, INFO_DATATYPE_SIZET, nullptr, {0, 0, 48, 48, 48}},
    {BUFFER_INFO_DELIVERED_CHUNKPAYLOADSIZE, INFO_DATATYPE_SIZET, nullptr, {0, 0, 0, 0, 0}},
    {BUFFER_INFO_CHUNKLAYOUTID, INFO_DATATYPE_UINT64, nullptr, {0, 0, 0, 0, 0}},
    {BUFFER_INFO_FILENAME, INFO_DATATYPE_STRING, "ImageFileName.img", {}},
};

size_t SizeOf(const BufferInfoRow &row) {
  return row.text != nullptr ? std::strlen(row.text) + 1 : row.type == INFO_DATATYPE_BOOL8 ? 1 : 8;
}

struct BufferInfoCase {
  BufferInfoRow row;
  State state;
};

std::vector<BufferInfoCase> Cases() {
  std::vector<BufferInfoCase> cases;
  for (const BufferInfoRow &row : kBufferInfos) {
    for (size_t state = 0; state < kStates; ++state) {
      cases.push_back({row, static_cast<State>(state)});
    }
  }
  return cases;
}

void PrintTo(const BufferInfoRow &row, std::ostream *out) { *out << "BUFFER_INFO_CMD " << row.cmd; }
void PrintTo(const BufferInfoCase &row, std::ostream *out) {
  PrintTo(row.row, out);
  *out << ", " << kStateNames[row.state];
}

class BufferInfoTable : public StreamTest, public testing::WithParamInterface<BufferInfoCase> {
 protected:
  static constexpr size_t kAnnounced = 128 * 48 + 100;

  /// Announces two buffers and leads the second to the state.
  void Lead(State state) {
    const EVENT_HANDLE event = NewBufferEvent();
    SetSize(60, 48);
    SetParameter(GRB_USR_FORMAT, GRB_USR_FORMAT_BAYER_GR10);
    m_Memory.resize(2 * kAnnounced);
    BUFFER_HANDLE first = nullptr;
    ASSERT_GC_OK(Gc().DSAnnounceBuffer(m_hStream, m_Memory.data(), kAnnounced, nullptr, &first));
    ASSERT_GC_OK(Gc().DSAnnounceBuffer(m_hStream, m_Memory.data() + kAnnounced, kAnnounced, this, &m_hBuffer));
    if (state == kFresh) {
      return;
    }
    Queue(first);
    Queue(m_hBuffer);
    if (state == kQueued) {
      return;
    }
    Start();
    Frame();
    Frame();
    if (state == kFilled) {
      return;
    }
    ASSERT_EQ(first, Take(event));
    ASSERT_EQ(m_hBuffer, Take(event));
    if (state == kRequeued) {
      Queue(m_hBuffer);
    }
  }

  std::vector<uint8_t> m_Memory;
  BUFFER_HANDLE m_hBuffer = nullptr;
};

TEST_P(BufferInfoTable, Answer) {
  const BufferInfoRow &row = GetParam().row;
  Lead(GetParam().state);
  const Info info = BufferInfo(m_hStream, m_hBuffer, row.cmd);
  ASSERT_EQ(GC_ERR_SUCCESS, info.result);
  EXPECT_EQ(row.type, info.type);
  ASSERT_EQ(SizeOf(row), info.size);
  if (row.text != nullptr) {
    EXPECT_EQ(row.text, info.Text());
    return;
  }
  uint64_t value = 0;
  std::memcpy(&value, info.bytes.data(), info.bytes.size());
  switch (const uint64_t expected = row.value[GetParam().state]) {
    case kBase:
      EXPECT_EQ(m_Memory.data() + kAnnounced, info.As<uint8_t *>());
      break;
    case kUser:
      EXPECT_EQ(this, info.As<void *>());
      break;
    case kSize:
      EXPECT_EQ(kAnnounced, value);
      break;
    case kPayload:
      EXPECT_EQ(128U * 48U, value);
      break;
    case kStamped:
      EXPECT_NE(0U, value);
      break;
    default:
      EXPECT_EQ(expected, value);
      break;
  }
}

INSTANTIATE_TEST_SUITE_P(All, BufferInfoTable, testing::ValuesIn(Cases()), [](const auto &row) {
  return "Command" + std::to_string(row.param.row.cmd) + kStateNames[row.param.state];
});

class BufferInfoSizes : public StreamTest, public testing::WithParamInterface<BufferInfoRow> {};

TEST_P(BufferInfoSizes, OneTooSmallAndMoreThanEnough) {
  const BufferInfoRow &row = GetParam();
  const BUFFER_HANDLE buffer = AllocOf(32);
  const size_t needed = SizeOf(row);
  std::vector<uint8_t> answer(needed + 8, 0xEE);
  INFO_DATATYPE type = Info::kUntouchedType;
  size_t size = needed - 1;
  if (size != 0) {
    EXPECT_GC(GC_ERR_INVALID_PARAMETER, "Invalid Buffer Size.",
              Gc().DSGetBufferInfo(m_hStream, buffer, row.cmd, &type, answer.data(), &size));
    EXPECT_EQ(row.type, type);
    EXPECT_EQ(needed - 1, size);
    EXPECT_EQ(std::vector<uint8_t>(needed + 8, 0xEE), answer);
  }
  size = answer.size();
  EXPECT_GC_OK(Gc().DSGetBufferInfo(m_hStream, buffer, row.cmd, &type, answer.data(), &size));
  EXPECT_EQ(needed, size);
  EXPECT_EQ(0xEE, answer[needed]);
}

TEST_P(BufferInfoSizes, ArgumentsAreCheckedInOrder) {
  const BufferInfoRow &row = GetParam();
  const BUFFER_HANDLE buffer = AllocOf(32);
  INFO_DATATYPE type = 0;
  uint8_t answer[64];
  size_t size = 0;
  const char *const function = "GenICam::Client::DSGetBufferInfo";
  EXPECT_GC_FROM(GC_ERR_INVALID_PARAMETER, "Null type pointer.", function,
                 Gc().DSGetBufferInfo(m_hStream, buffer, row.cmd, nullptr, answer, nullptr));
  EXPECT_GC_FROM(GC_ERR_INVALID_PARAMETER, "Null size pointer.", function,
                 Gc().DSGetBufferInfo(m_hStream, buffer, row.cmd, &type, answer, nullptr));
  EXPECT_GC_FROM(GC_ERR_INVALID_PARAMETER, "Size of buffer cannot be null.", function,
                 Gc().DSGetBufferInfo(m_hStream, nullptr, row.cmd, &type, answer, &size));
  EXPECT_GC_OK(Gc().DSGetBufferInfo(m_hStream, buffer, row.cmd, &type, nullptr, &size));
  EXPECT_EQ(SizeOf(row), size);
}

INSTANTIATE_TEST_SUITE_P(All, BufferInfoSizes, testing::ValuesIn(kBufferInfos),
                         [](const auto &row) { return "Command" + std::to_string(row.param.cmd); });

TEST_F(StreamTest, UnknownBufferInfos) {
  const BUFFER_HANDLE buffer = AllocOf(32);
  INFO_DATATYPE type = Info::kUntouchedType;
  size_t size = 9;
  for (const int32_t cmd : {26, 27, 28, 29, 30, 999, 1000, -1, INT32_MIN}) {
    EXPECT_GC_FROM(GC_ERR_INVALID_PARAMETER, FormatId("Invalid DataStream BUFFER_INFO_CMD %ld", cmd),
                   "GenICam::Client::CBufferInfo::GetInfo",
                   Gc().DSGetBufferInfo(m_hStream, buffer, cmd, &type, nullptr, &size));
  }
  EXPECT_EQ(Info::kUntouchedType, type);
  EXPECT_EQ(9U, size);
}

TEST_F(StreamTest, QueueingKeepsTheStampsOfTheLastFrame) {
  const EVENT_HANDLE event = NewBufferEvent();
  const BUFFER_HANDLE buffer = Run(1).front();
  Frame();
  Take(event);
  const uint64_t timestamp = BufferNumber(buffer, BUFFER_INFO_TIMESTAMP);
  Queue(buffer);
  EXPECT_EQ(timestamp, BufferNumber(buffer, BUFFER_INFO_TIMESTAMP));
  Frame();
  EXPECT_GE(BufferNumber(buffer, BUFFER_INFO_TIMESTAMP), timestamp);
  EXPECT_EQ(2U, BufferNumber(buffer, BUFFER_INFO_FRAMEID));
}

TEST_F(StreamTest, TimestampsDoNotRunBackwards) {
  const std::vector<BUFFER_HANDLE> buffers = Run(4);
  uint64_t last = 0;
  for (const BUFFER_HANDLE buffer : buffers) {
    Frame();
    const uint64_t timestamp = BufferNumber(buffer, BUFFER_INFO_TIMESTAMP);
    EXPECT_GE(timestamp, last);
    last = timestamp;
  }
}

// What a buffer refuses -----------------------------------------------------------------------------------------------

TEST_F(StreamTest, BufferIsNoPort) {
  const BUFFER_HANDLE buffer = AllocOf(32);
  const char *const message = "Buffer Module does not support Port functions.";
  uint64_t value = 0;
  size_t size = 8;
  uint32_t count = 0;
  INFO_DATATYPE type = 0;
  const auto from = [](const char *name) { return std::string("GenICam::Client::CBufferInfo::") + name; };
  EXPECT_GC_FROM(GC_ERR_NOT_IMPLEMENTED, message, from("ReadData").c_str(),
                 Gc().GCReadPort(buffer, 0x10, &value, &size));
  EXPECT_GC_FROM(GC_ERR_NOT_IMPLEMENTED, message, from("WriteData").c_str(),
                 Gc().GCWritePort(buffer, 0x10, &value, &size));
  EXPECT_GC_FROM(GC_ERR_NOT_IMPLEMENTED, message, from("GetURL").c_str(), Gc().GCGetPortURL(buffer, nullptr, &size));
  EXPECT_GC_FROM(GC_ERR_NOT_IMPLEMENTED, message, from("GetPortInfo").c_str(),
                 Gc().GCGetPortInfo(buffer, PORT_INFO_ID, &type, nullptr, &size));
  EXPECT_GC_FROM(GC_ERR_NOT_IMPLEMENTED, message, from("GetNumPortURLs").c_str(),
                 Gc().GCGetNumPortURLs(buffer, &count));
  EXPECT_GC_FROM(GC_ERR_NOT_IMPLEMENTED, message, from("GetPortURLInfo").c_str(),
                 Gc().GCGetPortURLInfo(buffer, 0, URL_INFO_URL, &type, nullptr, &size));
  PORT_REGISTER_STACK_ENTRY entry{0x10, &value, 8};
  size_t entries = 1;
  EXPECT_GC(GC_ERR_NOT_IMPLEMENTED, message, Gc().GCReadPortStacked(buffer, &entry, &entries));
  EXPECT_EQ(0U, entries);
  EXPECT_EQ(8U, size);
}

TEST_F(StreamTest, BufferIsNoEventSource) {
  const BUFFER_HANDLE buffer = AllocOf(32);
  EVENT_HANDLE event = this;
  for (const int32_t id : {0, 1, 4, 5, 1000, -1}) {
    const std::string message = FormatId("Event ID %ld not implemented", id);
    EXPECT_GC_FROM(GC_ERR_INVALID_PARAMETER, message, "GenICam::Client::CBufferInfo::Register",
                   Gc().GCRegisterEvent(buffer, id, &event));
    EXPECT_GC_FROM(GC_ERR_ERROR, message, "GenICam::Client::CBufferInfo::Unregister",
                   Gc().GCUnregisterEvent(buffer, id));
  }
  EXPECT_EQ(this, event);
}

TEST_F(StreamTest, ChunkDataIsNotSupported) {
  const BUFFER_HANDLE buffer = AllocOf(32);
  SINGLE_CHUNK_DATA chunk{};
  size_t count = 1;
  EXPECT_GC_FROM(GC_ERR_NOT_IMPLEMENTED, "Function is not supported.", "GenICam::Client::DSGetBufferChunkData",
                 Gc().DSGetBufferChunkData(m_hStream, buffer, &chunk, &count));
  EXPECT_GC(GC_ERR_NOT_IMPLEMENTED, "Function is not supported.",
            Gc().DSGetBufferChunkData(m_hStream, nullptr, nullptr, nullptr));
  EXPECT_GC(GC_ERR_INVALID_HANDLE, "Invalid Device Handle", Gc().DSGetBufferChunkData(nullptr, buffer, &chunk, &count));
  EXPECT_GC(GC_ERR_INVALID_HANDLE, "Invalid Device Handle",
            Gc().DSGetBufferChunkData(m_hDevice, buffer, &chunk, &count));
}

}  // namespace
}  // namespace StreamTests
