// SPDX-License-Identifier: MIT
// Opening and closing: handles that are none, calls in the wrong order, parents that go first.
#include <functional>

#include "StreamFixture.h"

namespace StreamTests {
namespace {

using Lines = std::vector<std::string>;

// Opening -------------------------------------------------------------------------------------------------------------

TEST_F(StreamTest, SecondOpenIsRefused) {
  OpenStream();
  DS_HANDLE again = this;
  EXPECT_GC_FROM(GC_ERR_RESOURCE_IN_USE, "Child is already opened (Stream #1).",
                 "GenICam::Client::CDevice::OpenDataStream", Gc().DevOpenDataStream(m_hDevice, "Stream #1", &again));
  EXPECT_EQ(this, again);
  EXPECT_EQ(0U, Announced());
}

TEST_F(StreamTest, OtherNamesAreRefused) {
  OpenDevice();
  DS_HANDLE stream = this;
  for (const char *const name : {"Stream #2", "", "stream #1", "Stream #1 ", "Stream #"}) {
    EXPECT_GC(GC_ERR_INVALID_PARAMETER, std::string("Invalid Child's name: ") + name,
              Gc().DevOpenDataStream(m_hDevice, name, &stream));
  }
  EXPECT_EQ(this, stream);
}

TEST_F(StreamTest, OpenArgumentsAreCheckedInOrder) {
  OpenDevice();
  DS_HANDLE stream = nullptr;
  EXPECT_GC_FROM(GC_ERR_INVALID_PARAMETER, "Null DS_HANDLE pointer.", "GenICam::Client::DevOpenDataStream",
                 Gc().DevOpenDataStream(m_hDevice, nullptr, nullptr));
  EXPECT_GC_FROM(GC_ERR_INVALID_PARAMETER, "Null pointer for Stream ID", "GenICam::Client::CDevice::OpenDataStream",
                 Gc().DevOpenDataStream(m_hDevice, nullptr, &stream));
}

TEST_F(StreamTest, ReadOnlyDeviceHasNoStream) {
  OpenDevice(DEVICE_ACCESS_READONLY);
  DS_HANDLE stream = this;
  EXPECT_GC(GC_ERR_INVALID_PARAMETER, "Null pointer for Stream ID",
            Gc().DevOpenDataStream(m_hDevice, nullptr, &stream));
  EXPECT_GC(GC_ERR_NOT_IMPLEMENTED, "DataStream not supported with current Device Access Flag.",
            Gc().DevOpenDataStream(m_hDevice, "Stream #1", &stream));
  EXPECT_EQ(this, stream);
}

TEST_F(StreamTest, ControlAccessGivesAStreamToo) {
  OpenDevice(DEVICE_ACCESS_CONTROL);
  Run(1);
  Frame();
  EXPECT_EQ(1U, Delivered());
}

TEST_F(StreamTest, OpeningAndClosingAStreamMakesNoLibraryCall) {
  OpenDevice();
  const size_t mark = Script().Mark();
  OpenStream();
  ASSERT_GC_OK(Gc().DSClose(m_hStream));
  m_hStream = nullptr;
  EXPECT_EQ(Lines{}, Trace(mark));
}

TEST_F(StreamTest, ClosedStreamCanBeOpenedAnewAndIsFresh) {
  for (int round = 0; round < 3; ++round) {
    const EVENT_HANDLE event = NewBufferEvent();
    EXPECT_EQ(0U, Announced());
    EXPECT_EQ(0U, Delivered());
    EXPECT_EQ(0U, Started());
    Run(3);
    Frame();
    Frame();
    Take(event);
    ASSERT_GC_OK(Gc().DSClose(m_hStream));
    m_hStream = nullptr;
  }
}

// Closing -------------------------------------------------------------------------------------------------------------

TEST_F(StreamTest, CloseOfARunningStream) {
  Run(3);
  Frame();
  const size_t mark = Script().Mark();
  ASSERT_GC_OK(Gc().DSClose(m_hStream));
  m_hStream = nullptr;
  EXPECT_EQ((Lines{"StreamRead(S, GRB_STREAM_STOP)", "ParameterSet(S, GRB_EVENT_MASK_NOW, 0x1)",
                   "StreamRead(S, GRB_STREAM_ABORT)"}),
            Trace(mark))
      << "nothing is released";
}

TEST_F(StreamTest, CloseLeavesTheConsumersMemoryAlone) {
  std::vector<uint8_t> memory(PayloadSize(), 0x77);
  BUFFER_HANDLE buffer = nullptr;
  ASSERT_GC_OK(Gc().DSAnnounceBuffer(m_hStream, memory.data(), memory.size(), nullptr, &buffer));
  Queue(buffer);
  Start();
  ASSERT_GC_OK(Gc().DSClose(m_hStream));
  m_hStream = nullptr;
  EXPECT_EQ(std::vector<uint8_t>(memory.size(), 0x77), memory);
}

/// How a parent is closed under an open stream.
struct ParentRow {
  const char *name;
  int level;  ///< 0 device, 1 interface, 2 system, 3 library
};

class ParentClose : public StreamTest, public testing::WithParamInterface<ParentRow> {
 protected:
  GC_ERROR Close() {
    switch (GetParam().level) {
      case 0:
        return Gc().DevClose(m_hDevice);
      case 1:
        return Gc().IFClose(m_hInterface);
      case 2:
        return Gc().TLClose(m_hSystem);
      default:
        return Gc().GCCloseLib();
    }
  }

  void Forget() {
    m_hStream = nullptr;
    m_hDevice = nullptr;
    m_hInterface = GetParam().level >= 1 ? nullptr : m_hInterface;
    m_hSystem = GetParam().level >= 2 ? nullptr : m_hSystem;
  }
};

TEST_P(ParentClose, TakesARunningStreamAlong) {
  const EVENT_HANDLE event = NewBufferEvent();
  const EVENT_HANDLE errors = ErrorEvent();
  std::vector<uint8_t> memory(PayloadSize());
  BUFFER_HANDLE own = nullptr;
  ASSERT_GC_OK(Gc().DSAnnounceBuffer(m_hStream, memory.data(), memory.size(), nullptr, &own));
  Run(3);
  Frame();
  Frame();
  Take(event);
  ASSERT_TRUE(Script().FireCallback(GRB_EVENT_FIFO_OVERFLOW));
  EXPECT_EQ(1U, EventNumber(errors, EVENT_NUM_IN_QUEUE));
  const GRB_HANDLE stream = StreamHandle();
  const size_t mark = Script().Mark();
  ASSERT_EQ(GC_ERR_SUCCESS, Close());
  Forget();
  const std::vector<Call> calls = Script().Calls(Match().Handle(stream), mark);
  ASSERT_EQ(5U, calls.size());
  EXPECT_EQ(GRB_STREAM_STOP, calls[0].code);
  EXPECT_EQ(GRB_EVENT_MASK_NOW, calls[1].code);
  EXPECT_EQ(GRB_STREAM_ABORT, calls[2].code);
  EXPECT_EQ(Op::Close, calls[3].op);
  EXPECT_EQ(Op::Destroy, calls[4].op);
  EXPECT_EQ(0U, Script().OpenHandles()) << "the channel's handle is gone as well";
  EXPECT_EQ(0U, Script().CreatedHandles());
}

TEST_P(ParentClose, FailingStreamKeepsEverythingOpen) {
  OpenStream();
  const GC_ERROR stillOpen = GC_ERR_RESOURCE_IN_USE;
  uint32_t devices = 0;
  ASSERT_GC_OK(Gc().IFGetNumDevices(m_hInterface, &devices));
  EXPECT_EQ(2U, devices);
  const uint32_t count = ReadU32(m_hInterface, 0x480);
  EXPECT_EQ(2U, count);
  Run(2);
  Frame();
  Script().On(Match(Op::StreamRead, GRB_STREAM_STOP), Broken());
  EXPECT_GC_FROM(GC_ERR_ERROR, "Error stopping acquisition: \n" + LibraryText("GRB_StreamRead"),
                 "GenICam::Client::CStreamImpl::Freeze", Close());

  // Each module still answers, and none of their lists is emptied.
  EXPECT_EQ("CXP", TlInfo(m_hSystem, TL_INFO_TLTYPE).Text());
  EXPECT_EQ(CScriptedGrb::kDefaultInterfaceId, IfInfo(m_hInterface, INTERFACE_INFO_ID).Text());
  EXPECT_EQ("Channel #1", DevInfo(m_hDevice, DEVICE_INFO_ID).Text());
  EXPECT_EQ(2U, Announced());
  EXPECT_EQ(1U, Awaiting());
  EXPECT_FALSE(Grabbing());
  uint32_t number = 0;
  EXPECT_GC_OK(Gc().TLGetNumInterfaces(m_hSystem, &number));
  EXPECT_EQ(1U, number);
  EXPECT_GC_OK(Gc().IFGetNumDevices(m_hInterface, &number));
  EXPECT_EQ(devices, number);
  EXPECT_EQ(count, ReadU32(m_hInterface, 0x480));
  // Nobody can open anything a second time.
  void *second = this;
  EXPECT_GC_CODE(stillOpen, Gc().TLOpen(&second));
  EXPECT_GC_CODE(stillOpen, Gc().TLOpenInterface(m_hSystem, CScriptedGrb::kDefaultInterfaceId, &second));
  EXPECT_GC_CODE(stillOpen, Gc().IFOpenDevice(m_hInterface, "Channel #1", DEVICE_ACCESS_EXCLUSIVE, &second));
  EXPECT_GC_CODE(stillOpen, Gc().DevOpenDataStream(m_hDevice, "Stream #1", &second));
  EXPECT_GC(stillOpen, "GenTL producer already initialised. Call GCCloseLib() first.", Gc().GCInitLib());
  EXPECT_EQ(this, second);

  ASSERT_EQ(GC_ERR_SUCCESS, Close()) << "the engine is idle now";
  Forget();
  EXPECT_EQ(0U, Script().CreatedHandles());
}

INSTANTIATE_TEST_SUITE_P(All, ParentClose,
                         testing::Values(ParentRow{"Device", 0}, ParentRow{"Interface", 1}, ParentRow{"System", 2},
                                         ParentRow{"Library", 3}),
                         [](const auto &row) { return std::string(row.param.name); });

TEST_F(StreamTest, WholeTreeTenTimes) {
  for (int round = 0; round < 10; ++round) {
    const EVENT_HANDLE event = NewBufferEvent();
    Run(2);
    Frame();
    Take(event);
    Reinitialise();
    EXPECT_EQ(0U, Script().CreatedHandles());
  }
}

// Handles that are none -----------------------------------------------------------------------------------------------

/// Every function of the stream, with good arguments but for the stream's handle.
std::vector<std::pair<const char *, std::function<GC_ERROR(DS_HANDLE)>>> StreamCalls(BUFFER_HANDLE buffer) {
  static uint8_t memory[64];
  static BUFFER_HANDLE out;
  static INFO_DATATYPE type;
  static size_t size;
  return {
      {"DSAnnounceBuffer", [](DS_HANDLE h) { return Gc().DSAnnounceBuffer(h, memory, sizeof(memory), nullptr, &out); }},
      {"DSAllocAndAnnounceBuffer", [](DS_HANDLE h) { return Gc().DSAllocAndAnnounceBuffer(h, 16, nullptr, &out); }},
      {"DSFlushQueue", [](DS_HANDLE h) { return Gc().DSFlushQueue(h, ACQ_QUEUE_ALL_DISCARD); }},
      {"DSStartAcquisition", [](DS_HANDLE h) { return Gc().DSStartAcquisition(h, 0, 1); }},
      {"DSStopAcquisition", [](DS_HANDLE h) { return Gc().DSStopAcquisition(h, 0); }},
      {"DSGetInfo", [](DS_HANDLE h) { return Gc().DSGetInfo(h, STREAM_INFO_ID, &type, nullptr, &size); }},
      {"DSGetBufferID", [](DS_HANDLE h) { return Gc().DSGetBufferID(h, 0, &out); }},
      {"DSClose", [](DS_HANDLE h) { return Gc().DSClose(h); }},
      {"DSRevokeBuffer", [buffer](DS_HANDLE h) { return Gc().DSRevokeBuffer(h, buffer, nullptr, nullptr); }},
      {"DSQueueBuffer", [buffer](DS_HANDLE h) { return Gc().DSQueueBuffer(h, buffer); }},
      {"DSGetBufferInfo",
       [buffer](DS_HANDLE h) { return Gc().DSGetBufferInfo(h, buffer, BUFFER_INFO_SIZE, &type, nullptr, &size); }},
      {"DSGetBufferChunkData", [buffer](DS_HANDLE h) { return Gc().DSGetBufferChunkData(h, buffer, nullptr, &size); }},
  };
}

TEST_F(StreamTest, ForeignHandlesAreNoStreams) {
  const BUFFER_HANDLE buffer = Alloc();
  const EVENT_HANDLE event = NewBufferEvent();
  const PORT_HANDLE port = OpenRemotePort();
  for (const auto &[name, call] : StreamCalls(buffer)) {
    for (void *const handle : {static_cast<void *>(nullptr), m_hSystem, m_hInterface, m_hDevice, port, buffer, event}) {
      SCOPED_TRACE(name);
      EXPECT_GC_FROM(GC_ERR_INVALID_HANDLE, "Invalid Device Handle", "GenICam::Client::TypeCast", call(handle));
    }
  }
  EXPECT_EQ(1U, Announced());
  EXPECT_FALSE(FlagsOf(buffer).queued);
}

TEST_F(StreamTest, HandlesAreCheckedAheadOfThePointers) {
  OpenStream();
  EXPECT_GC(GC_ERR_INVALID_HANDLE, "Invalid Device Handle",
            Gc().DSGetInfo(nullptr, STREAM_INFO_ID, nullptr, nullptr, nullptr));
  EXPECT_GC(GC_ERR_INVALID_HANDLE, "Invalid Device Handle",
            Gc().DSGetBufferInfo(m_hDevice, nullptr, 0, nullptr, nullptr, nullptr));
  EXPECT_GC(GC_ERR_INVALID_HANDLE, "Invalid Device Handle", Gc().DSGetBufferID(nullptr, 0, nullptr));
  EXPECT_GC(GC_ERR_INVALID_HANDLE, "Invalid Device Handle", Gc().DSStartAcquisition(nullptr, 7, 0));
  EXPECT_GC(GC_ERR_INVALID_HANDLE, "Invalid Device Handle", Gc().DevOpenDataStream(m_hStream, nullptr, nullptr));
}

TEST_F(StreamTest, ForeignHandlesAreNoBuffers) {
  const BUFFER_HANDLE buffer = Alloc();
  const EVENT_HANDLE event = NewBufferEvent();
  INFO_DATATYPE type = 0;
  size_t size = 0;
  for (void *const handle : {static_cast<void *>(nullptr), m_hSystem, m_hInterface, m_hDevice, m_hStream, event}) {
    const char *const message = "Invalid Device Handle";
    EXPECT_GC(GC_ERR_INVALID_HANDLE, message, Gc().DSQueueBuffer(m_hStream, handle));
    EXPECT_GC(GC_ERR_INVALID_HANDLE, message, Gc().DSRevokeBuffer(m_hStream, handle, nullptr, nullptr));
    EXPECT_GC(GC_ERR_INVALID_HANDLE, message,
              Gc().DSGetBufferInfo(m_hStream, handle, BUFFER_INFO_SIZE, &type, nullptr, &size));
  }
  EXPECT_EQ(1U, Announced());
  EXPECT_FALSE(FlagsOf(buffer).queued);
}

TEST_F(StreamTest, ForeignHandlesAreNoEvents) {
  const BUFFER_HANDLE buffer = Alloc();
  uint8_t block[16];
  size_t size = sizeof(block);
  INFO_DATATYPE type = 0;
  const char *const message = "Invalid Device Handle";
  for (void *const handle : {static_cast<void *>(nullptr), m_hSystem, m_hDevice, m_hStream, buffer}) {
    EXPECT_GC(GC_ERR_INVALID_HANDLE, message, Gc().EventGetData(handle, block, &size, GENTL_INFINITE));
    EXPECT_GC(GC_ERR_INVALID_HANDLE, message, Gc().EventGetInfo(handle, EVENT_NUM_FIRED, &type, nullptr, &size));
    EXPECT_GC(GC_ERR_INVALID_HANDLE, message,
              Gc().EventGetDataInfo(handle, block, sizeof(block), EVENT_DATA_ID, &type, nullptr, &size));
    EXPECT_GC(GC_ERR_INVALID_HANDLE, message, Gc().EventFlush(handle));
    EXPECT_GC(GC_ERR_INVALID_HANDLE, message, Gc().EventKill(handle));
  }
}

TEST_F(StreamTest, EventsAreNoPortsAndNoEventSources) {
  const EVENT_HANDLE event = NewBufferEvent();
  uint32_t value = 0;
  EXPECT_GC(GC_ERR_INVALID_HANDLE, "Invalid Device Handle", TryRead(event, 0x4, &value, 4));
  EVENT_HANDLE other = nullptr;
  EXPECT_GC(GC_ERR_INVALID_HANDLE, "Invalid Device Handle", Gc().GCRegisterEvent(event, EVENT_ERROR, &other));
  EXPECT_GC(GC_ERR_INVALID_HANDLE, "Invalid Device Handle", Gc().GCUnregisterEvent(event, EVENT_ERROR));
}

// Handles that are closed ---------------------------------------------------------------------------------------------

TEST_F(StreamTest, ClosedStreamIsNoStream) {
  const BUFFER_HANDLE buffer = Alloc();
  const EVENT_HANDLE event = NewBufferEvent();
  const EVENT_HANDLE errors = ErrorEvent();
  const DS_HANDLE stream = m_hStream;
  ASSERT_GC_OK(Gc().DSClose(stream));
  m_hStream = nullptr;
  const char *const message = "Invalid Device Handle";
  for (const auto &[name, call] : StreamCalls(buffer)) {
    SCOPED_TRACE(name);
    EXPECT_GC(GC_ERR_INVALID_HANDLE, message, call(stream));
  }
  uint32_t value = 0;
  EXPECT_GC(GC_ERR_INVALID_HANDLE, message, TryRead(stream, 0x4, &value, 4));
  EXPECT_GC(GC_ERR_INVALID_HANDLE, message, TryRead(buffer, 0x10, &value, 4));
  uint8_t block[16];
  for (const EVENT_HANDLE closed : {event, errors}) {
    size_t size = sizeof(block);
    EXPECT_GC(GC_ERR_INVALID_HANDLE, message, Gc().EventGetData(closed, block, &size, GENTL_INFINITE));
    EXPECT_GC(GC_ERR_INVALID_HANDLE, message, Gc().EventFlush(closed));
    EXPECT_GC(GC_ERR_INVALID_HANDLE, message, Gc().EventKill(closed));
  }
  EVENT_HANDLE again = nullptr;
  EXPECT_GC(GC_ERR_INVALID_HANDLE, message, Gc().GCRegisterEvent(stream, EVENT_ERROR, &again));
  EXPECT_GC(GC_ERR_INVALID_HANDLE, message, Gc().GCUnregisterEvent(stream, EVENT_ERROR));
}

TEST_F(StreamTest, RevokedBufferIsNoBuffer) {
  const BUFFER_HANDLE buffer = Alloc();
  ASSERT_GC_OK(Gc().DSRevokeBuffer(m_hStream, buffer, nullptr, nullptr));
  const char *const message = "Invalid Device Handle";
  INFO_DATATYPE type = 0;
  size_t size = 0;
  EXPECT_GC(GC_ERR_INVALID_HANDLE, message, Gc().DSQueueBuffer(m_hStream, buffer));
  EXPECT_GC(GC_ERR_INVALID_HANDLE, message, Gc().DSRevokeBuffer(m_hStream, buffer, nullptr, nullptr));
  EXPECT_GC(GC_ERR_INVALID_HANDLE, message,
            Gc().DSGetBufferInfo(m_hStream, buffer, BUFFER_INFO_SIZE, &type, nullptr, &size));
}

TEST_F(StreamTest, AddressesThatAreNoHandles) {
  OpenStream();
  int something = 0;
  for (void *const wild : {static_cast<void *>(&something), reinterpret_cast<void *>(uintptr_t{8}),
                           reinterpret_cast<void *>(~uintptr_t{0})}) {
    EXPECT_GC(GC_ERR_INVALID_HANDLE, "Invalid Device Handle", Gc().DSStopAcquisition(wild, 0));
    EXPECT_GC(GC_ERR_INVALID_HANDLE, "Invalid Device Handle", Gc().DSQueueBuffer(m_hStream, wild));
    EXPECT_GC(GC_ERR_INVALID_HANDLE, "Invalid Device Handle", Gc().EventKill(wild));
  }
}

// Wrong order ---------------------------------------------------------------------------------------------------------

TEST_F(StreamTest, NothingWorksBehindTheSystemsClose) {
  const BUFFER_HANDLE buffer = Alloc();
  const DS_HANDLE stream = m_hStream;
  const EVENT_HANDLE event = NewBufferEvent();
  ASSERT_GC_OK(Gc().TLClose(m_hSystem));
  m_hStream = m_hDevice = m_hInterface = m_hSystem = nullptr;
  const char *const message = "No valid TL handle. Create one with TLOpen() first.";
  for (const auto &[name, call] : StreamCalls(buffer)) {
    SCOPED_TRACE(name);
    EXPECT_GC(GC_ERR_INVALID_HANDLE, message, call(stream));
  }
  uint8_t block[16];
  size_t size = sizeof(block);
  EXPECT_GC(GC_ERR_INVALID_HANDLE, message, Gc().EventGetData(event, block, &size, GENTL_INFINITE));
  EXPECT_GC(GC_ERR_INVALID_HANDLE, message, Gc().EventKill(event));
  EXPECT_GC(GC_ERR_INVALID_HANDLE, message, Gc().EventFlush(event));
}

TEST_F(StreamTest, NothingWorksBehindTheLibrarysClose) {
  const BUFFER_HANDLE buffer = Alloc();
  const DS_HANDLE stream = m_hStream;
  ASSERT_EQ(GC_ERR_SUCCESS, Gc().GCCloseLib());
  m_hStream = m_hDevice = m_hInterface = m_hSystem = nullptr;
  for (const auto &[name, call] : StreamCalls(buffer)) {
    SCOPED_TRACE(name);
    EXPECT_GC(GC_ERR_NOT_INITIALIZED, "GenTL Producer is not initialized. Call GCInitLib() first.", call(stream));
  }
}

}  // namespace
}  // namespace StreamTests
