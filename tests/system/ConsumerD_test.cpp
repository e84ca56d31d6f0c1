// SPDX-License-Identifier: MIT
#include "Camera.h"

/// A media-pipeline plug-in: texts of 256 bytes, one size variable for several reads, and a flush to the input in place
/// of queueing.
namespace {

using namespace SystemTest;  // NOLINT

constexpr size_t kText = 256;

class ConsumerD : public SimulationTest {};

TEST_F(ConsumerD, ReadsItsTextsInto256Bytes) {
  TL_HANDLE const system = OpenSystem();
  EXPECT_OK(Gc().TLUpdateInterfaceList(system, nullptr, 100));
  uint32_t interfaces = 0;
  EXPECT_OK(Gc().TLGetNumInterfaces(system, &interfaces));
  ASSERT_EQ(interfaces, 1U);
  const std::string id =
      TextWithin(kText, [=](char *text, size_t *size) { return Gc().TLGetInterfaceID(system, 0, text, size); });
  EXPECT_FALSE(TextWithin(kText, [&](INFO_DATATYPE *type, void *buffer, size_t *size) {
                 return Gc().TLGetInterfaceInfo(system, id.c_str(), INTERFACE_INFO_DISPLAYNAME, type, buffer, size);
               }).empty());
  IF_HANDLE const iface = OpenInterface();
  EXPECT_OK(Gc().IFUpdateDeviceList(iface, nullptr, 100));
  for (uint32_t i = 0; i < 2; ++i) {
    const std::string device =
        TextWithin(kText, [=](char *text, size_t *size) { return Gc().IFGetDeviceID(iface, i, text, size); });
    for (const DEVICE_INFO_CMD cmd :
         {DEVICE_INFO_ID, DEVICE_INFO_VENDOR, DEVICE_INFO_MODEL, DEVICE_INFO_TLTYPE, DEVICE_INFO_DISPLAYNAME}) {
      EXPECT_FALSE(TextWithin(kText, [&](INFO_DATATYPE *type, void *buffer, size_t *size) {
                     return Gc().IFGetDeviceInfo(iface, device.c_str(), cmd, type, buffer, size);
                   }).empty());
    }
    DEV_HANDLE handle = nullptr;
    ASSERT_OK(Gc().IFOpenDevice(iface, device.c_str(), DEVICE_ACCESS_EXCLUSIVE, &handle));
    EXPECT_EQ(
        TextWithin(kText, [=](char *text, size_t *size) { return Gc().DevGetDataStreamID(handle, 0, text, size); }),
        kStreamId);
    for (PORT_HANDLE const port : {static_cast<PORT_HANDLE>(handle), RemotePort(handle)}) {
      EXPECT_FALSE(TextWithin(kText, [=](INFO_DATATYPE *type, void *buffer, size_t *size) {
                     return Gc().GCGetPortURLInfo(port, 0, URL_INFO_URL, type, buffer, size);
                   }).empty());
    }
  }
}

// A read that changes the size, as a read rounded up to whole words might, spoils the next one.
TEST_F(ConsumerD, ReadsAgainAndAgainWithOneSizeVariable) {
  for (uint32_t channel = 1; channel <= 2; ++channel) {
    DEV_HANDLE const device = OpenDevice(channel);
    PORT_HANDLE const camera = RemotePort(device);
    size_t size = sizeof(uint32_t);
    for (int round = 0; round < 3; ++round) {
      for (const uint64_t address : {kWidth, kHeight, kPixelFormat, kIncomingPixelFormat}) {
        uint32_t value = 0;
        EXPECT_OK(Gc().GCReadPort(device, address, &value, &size));
        ASSERT_EQ(size, sizeof(value));
        EXPECT_NE(value, 0U);
      }
      for (const uint64_t address : {0x0000U, 0x0004U, 0x3000U, 0x6000U}) {
        uint32_t value = 0;
        EXPECT_OK(Gc().GCReadPort(camera, address, &value, &size));
        ASSERT_EQ(size, sizeof(value));
        EXPECT_NE(value, 0U);
      }
    }
    // The camera's file has a length of its own, and an odd one is asked for as well.
    const std::optional<UrlPieces> url = SplitUrl(PortUrl(camera));
    ASSERT_TRUE(url);
    for (const size_t wanted : {url->size, url->size - 1, size_t{5}}) {
      std::vector<char> first(wanted);
      std::vector<char> second(wanted);
      size = wanted;
      EXPECT_OK(Gc().GCReadPort(camera, url->address, first.data(), &size));
      ASSERT_EQ(size, wanted);
      EXPECT_OK(Gc().GCReadPort(camera, url->address, second.data(), &size));
      ASSERT_EQ(size, wanted);
      EXPECT_EQ(first, second);
    }
  }
}

TEST_F(ConsumerD, FlushesAllToTheInputBeforeItsStart) {
  DEV_HANDLE const device = OpenDevice(1, 72, 9);
  DS_HANDLE stream = nullptr;
  ASSERT_OK(Gc().DevOpenDataStream(device, kStreamId, &stream));
  const auto size = StreamValue<size_t>(stream, STREAM_INFO_PAYLOAD_SIZE);
  for (int i = 0; i < 5; ++i) {
    BUFFER_HANDLE buffer = nullptr;
    ASSERT_OK(Gc().DSAllocAndAnnounceBuffer(stream, size, nullptr, &buffer));
  }
  EVENT_HANDLE event = nullptr;
  ASSERT_OK(Gc().GCRegisterEvent(stream, EVENT_NEW_BUFFER, &event));
  const PictureShape shape{FindPixelFormat(0x01080001), 72, 9, 1};
  for (int run = 0; run < 5; ++run) {
    ASSERT_OK(Gc().DSFlushQueue(stream, ACQ_QUEUE_ALL_TO_INPUT));
    EXPECT_EQ(StreamValue<size_t>(stream, STREAM_INFO_NUM_QUEUED), 5U);
    EXPECT_EQ(StreamValue<size_t>(stream, STREAM_INFO_NUM_AWAIT_DELIVERY), 0U);
    ASSERT_OK(Gc().DSStartAcquisition(stream, ACQ_START_FLAGS_DEFAULT, GENTL_INFINITE));
    for (uint64_t frame = 1; frame <= 10; ++frame) {
      GC_ERROR result = GC_ERR_SUCCESS;
      BUFFER_HANDLE const buffer = NextBuffer(event, kFrameTimeout, &result);
      ASSERT_OK(result);
      EXPECT_EQ(BufferValue<uint64_t>(stream, buffer, BUFFER_INFO_FRAMEID), frame);
      EXPECT_NE(FrameInBuffer(static_cast<uint8_t *>(BufferValue<void *>(stream, buffer, BUFFER_INFO_BASE)), shape),
                0U);
      EXPECT_OK(Gc().DSQueueBuffer(stream, buffer));
    }
    EXPECT_OK(Gc().DSStopAcquisition(stream, ACQ_STOP_FLAGS_DEFAULT));
  }
  EXPECT_OK(Gc().GCUnregisterEvent(stream, EVENT_NEW_BUFFER));
  EXPECT_OK(Gc().DSClose(stream));
  EXPECT_OK(Gc().DevClose(device));
}

}  // namespace
