// SPDX-License-Identifier: MIT
#include <array>

#include "Camera.h"

/// A Python library over the reference binding: every module with its description, events that are tried and may be
/// refused, memory of no alignment, polling, and objects that are freed in any order.
namespace {

using namespace SystemTest;  // NOLINT

constexpr EVENT_TYPE kModuleEvent = 5;
constexpr BUFFER_INFO_CMD kContainsChunkData = 30;
constexpr uint64_t kPoll = 1;  // ms

/// Those are taken for "has no such event"; any other failure would end the program.
void TryEvents(EVENTSRC_HANDLE source) {
  for (const EVENT_TYPE type : {kModuleEvent, static_cast<EVENT_TYPE>(EVENT_REMOTE_DEVICE)}) {
    EVENT_HANDLE event = nullptr;
    const GC_ERROR result = Gc().GCRegisterEvent(source, type, &event);
    EXPECT_TRUE(CheckFailed({GC_ERR_NOT_IMPLEMENTED, GC_ERR_RESOURCE_IN_USE, GC_ERR_INVALID_PARAMETER}, result));
    EXPECT_EQ(event, nullptr);
  }
}

void ReadDescription(PORT_HANDLE port) { EXPECT_NE(ReadXml(port).find("</RegisterDescription>"), std::string::npos); }

/// Polls until a frame is there.
BUFFER_HANDLE Poll(EVENT_HANDLE event) {
  BUFFER_HANDLE buffer = nullptr;
  EXPECT_TRUE(WaitUntil([&] {
    GC_ERROR result = GC_ERR_SUCCESS;
    buffer = NextBuffer(event, kPoll, &result);
    EXPECT_TRUE(result == GC_ERR_SUCCESS || result == GC_ERR_TIMEOUT) << result;
    return buffer != nullptr || (result != GC_ERR_SUCCESS && result != GC_ERR_TIMEOUT);
  }));
  return buffer;
}

class ConsumerC : public SimulationTest {
 protected:
  /// Everything open, both streams acquiring, one frame of each still held.
  void OpenAll() {
    TL_HANDLE const system = OpenSystem();
    TryEvents(system);
    ReadDescription(system);
    IF_HANDLE const iface = OpenInterface();
    TryEvents(iface);
    ReadDescription(iface);
    EXPECT_OK(Gc().IFUpdateDeviceList(iface, nullptr, 100));
    for (uint32_t channel = 1; channel <= 2; ++channel) {
      OpenOne(channel);
    }
  }

  void OpenOne(uint32_t channel) {
    SCOPED_TRACE(channel);
    DEV_HANDLE const device = OpenDevice(channel, 40, 12);
    m_Devices[channel - 1] = device;
    TryEvents(device);
    ReadDescription(device);
    ReadDescription(RemotePort(device));
    DS_HANDLE stream = nullptr;
    ASSERT_OK(Gc().DevOpenDataStream(device, kStreamId, &stream));
    m_Streams[channel - 1] = stream;
    TryEvents(stream);
    ReadDescription(stream);
    EVENT_HANDLE event = nullptr;
    ASSERT_OK(Gc().GCRegisterEvent(stream, EVENT_NEW_BUFFER, &event));
    m_Events[channel - 1] = event;
    const auto size = StreamValue<size_t>(stream, STREAM_INFO_PAYLOAD_SIZE);
    for (size_t i = 0; i < 4; ++i) {
      m_Memory.push_back(std::make_unique<CGuardedMemory>(size, 1 + 2 * i));
      BUFFER_HANDLE buffer = nullptr;
      ASSERT_OK(Gc().DSAnnounceBuffer(stream, m_Memory.back()->Data(), size, nullptr, &buffer));
      ASSERT_OK(Gc().DSQueueBuffer(stream, buffer));
    }
    ASSERT_OK(Gc().DSStartAcquisition(stream, ACQ_START_FLAGS_DEFAULT, 0xFFFFFFFFFFFFFFFFU));
    m_Held[channel - 1] = Poll(event);
    ASSERT_NE(m_Held[channel - 1], nullptr);
  }

  /// Closed by somebody else: the fixture must not look at it.
  void CloseSystem() {
    EXPECT_OK(Gc().TLClose(m_hSystem));
    m_hSystem = nullptr;
    m_hInterface = nullptr;
  }

  /// Opens all anew and takes a frame: the same process can go on.
  void ExpectAllWorks() {
    CloseSystem();
    m_Memory.clear();
    OpenAll();
  }

  std::array<DEV_HANDLE, 2> m_Devices{};
  std::array<DS_HANDLE, 2> m_Streams{};
  std::array<EVENT_HANDLE, 2> m_Events{};
  std::array<BUFFER_HANDLE, 2> m_Held{};
  std::vector<std::unique_ptr<CGuardedMemory>> m_Memory;
};

TEST_F(ConsumerC, OpensEveryModuleAndPolls) {
  OpenAll();
  for (uint32_t channel = 1; channel <= 2; ++channel) {
    SCOPED_TRACE(channel);
    DS_HANDLE const stream = m_Streams[channel - 1];
    const PictureShape shape{FindPixelFormat(ReadU32(m_Devices[channel - 1], kPixelFormat)), 40, 12, channel};
    EXPECT_OK(Gc().DSQueueBuffer(stream, m_Held[channel - 1]));
    for (int frame = 0; frame < 20; ++frame) {
      BUFFER_HANDLE const buffer = Poll(m_Events[channel - 1]);
      ASSERT_NE(buffer, nullptr);
      EXPECT_EQ(BufferValue<uint8_t>(stream, buffer, BUFFER_INFO_IS_INCOMPLETE), 0);
      ExpectRefused(GC_ERR_INVALID_PARAMETER, [=](INFO_DATATYPE *type, void *data, size_t *size) {
        return Gc().DSGetBufferInfo(stream, buffer, kContainsChunkData, type, data, size);
      });
      size_t chunks = 0;
      EXPECT_FAILED(GC_ERR_NOT_IMPLEMENTED, Gc().DSGetBufferChunkData(stream, buffer, nullptr, &chunks));
      EXPECT_EQ(BufferValue<size_t>(stream, buffer, BUFFER_INFO_PAYLOADTYPE), static_cast<size_t>(PAYLOAD_TYPE_IMAGE));
      EXPECT_EQ(BufferValue<uint64_t>(stream, buffer, BUFFER_INFO_PIXELFORMAT), shape.format->pfnc);
      EXPECT_EQ(BufferValue<size_t>(stream, buffer, BUFFER_INFO_WIDTH), shape.width);
      EXPECT_EQ(BufferValue<size_t>(stream, buffer, BUFFER_INFO_HEIGHT), shape.height);
      const auto *const data = static_cast<uint8_t *>(BufferValue<void *>(stream, buffer, BUFFER_INFO_BASE));
      const uint64_t number = FrameInBuffer(data, shape);
      EXPECT_TRUE(number != 0 && IsPicture(data, shape, number, kFilling));
      EXPECT_OK(Gc().DSQueueBuffer(stream, buffer));
    }
    EXPECT_OK(Gc().DSStopAcquisition(stream, ACQ_STOP_FLAGS_KILL));
    EXPECT_OK(Gc().DSFlushQueue(stream, ACQ_QUEUE_ALL_DISCARD));
    EXPECT_OK(Gc().EventFlush(m_Events[channel - 1]));
    BUFFER_HANDLE buffer = nullptr;
    size_t revoked = 0;
    while (Gc().DSGetBufferID(stream, 0, &buffer) == GC_ERR_SUCCESS && revoked < 100) {
      void *memory = nullptr;
      void *user = this;
      EXPECT_OK(Gc().DSRevokeBuffer(stream, buffer, &memory, &user));
      EXPECT_NE(memory, nullptr);
      EXPECT_EQ(user, nullptr);
      ++revoked;
    }
    EXPECT_EQ(revoked, 4U);
    EXPECT_OK(Gc().GCUnregisterEvent(stream, EVENT_NEW_BUFFER));
    EXPECT_OK(Gc().DSClose(stream));
    EXPECT_OK(Gc().DevClose(m_Devices[channel - 1]));
  }
}

// A parent goes while its children, their events and their buffers are open and frames flow.
TEST_F(ConsumerC, ClosesADeviceWithAllThatIsBelowIt) {
  OpenAll();
  EXPECT_OK(Gc().DevClose(m_Devices[0]));
  EXPECT_NE(Poll(m_Events[1]), nullptr) << "the other Device went too";
  EXPECT_OK(Gc().DevClose(m_Devices[1]));
  OpenOne(1);
  OpenOne(2);
}

TEST_F(ConsumerC, ClosesAnInterfaceWithAllThatIsBelowIt) {
  OpenAll();
  EXPECT_OK(Gc().IFClose(m_hInterface));
  m_hInterface = nullptr;
  m_Memory.clear();
  OpenAll();
}

// The handles of what was below the System are still in the hands of objects that are freed later.
TEST_F(ConsumerC, ClosesTheSystemAndThenWhatWasBelowIt) {
  OpenAll();
  IF_HANDLE const iface = m_hInterface;
  CloseSystem();
  for (size_t i = 0; i < 2; ++i) {
    EXPECT_FAILED(GC_ERR_INVALID_HANDLE, Gc().EventKill(m_Events[i]));
    EXPECT_FAILED(GC_ERR_INVALID_HANDLE, Gc().GCUnregisterEvent(m_Streams[i], EVENT_NEW_BUFFER));
    EXPECT_FAILED(GC_ERR_INVALID_HANDLE, Gc().DSStopAcquisition(m_Streams[i], ACQ_STOP_FLAGS_KILL));
    EXPECT_FAILED(GC_ERR_INVALID_HANDLE, Gc().DSClose(m_Streams[i]));
    EXPECT_FAILED(GC_ERR_INVALID_HANDLE, Gc().DevClose(m_Devices[i]));
  }
  EXPECT_FAILED(GC_ERR_INVALID_HANDLE, Gc().IFClose(iface));
  m_Memory.clear();
  OpenAll();
}

TEST_F(ConsumerC, ClosesTheLibraryAndThenWhatWasInIt) {
  OpenAll();
  ASSERT_OK(Gc().GCCloseLib());
  for (size_t i = 0; i < 2; ++i) {
    EXPECT_EQ(Gc().EventKill(m_Events[i]), GC_ERR_NOT_INITIALIZED);
    EXPECT_EQ(Gc().DSClose(m_Streams[i]), GC_ERR_NOT_INITIALIZED);
    EXPECT_EQ(Gc().DevClose(m_Devices[i]), GC_ERR_NOT_INITIALIZED);
  }
  EXPECT_EQ(Gc().IFClose(m_hInterface), GC_ERR_NOT_INITIALIZED);
  EXPECT_EQ(Gc().TLClose(m_hSystem), GC_ERR_NOT_INITIALIZED);
  m_hSystem = nullptr;
  m_hInterface = nullptr;
  m_Memory.clear();
  ASSERT_OK(Gc().GCInitLib());
  OpenAll();
}

// From the bottom up and in mixed order: events behind their stream's buffers, one stream before the other's Device.
TEST_F(ConsumerC, ClosesInMixedOrder) {
  OpenAll();
  EXPECT_OK(Gc().GCUnregisterEvent(m_Streams[0], EVENT_NEW_BUFFER));
  EXPECT_OK(Gc().DSClose(m_Streams[1]));
  EXPECT_OK(Gc().DSClose(m_Streams[0]));
  EXPECT_OK(Gc().DevClose(m_Devices[1]));
  EXPECT_OK(Gc().DevClose(m_Devices[0]));
  EXPECT_OK(Gc().IFClose(m_hInterface));
  ExpectAllWorks();
}

}  // namespace
