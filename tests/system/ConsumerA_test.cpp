// SPDX-License-Identifier: MIT
#include <atomic>
#include <thread>

#include "Camera.h"

/// A C library with a GenApi of its own: sizes asked for first, a worker thread for each stream, and commands of later
/// versions of the standard, which have to be refused without damage.
namespace {

using namespace SystemTest;  // NOLINT

constexpr DEVICE_INFO_CMD kSerialNumber = 7;
constexpr DEVICE_INFO_CMD kTimestampFrequency = 9;
constexpr BUFFER_INFO_CMD kDataSize = 27;

struct Camera {
  std::string interfaceId;
  std::string deviceId;
  bool operator==(const Camera &other) const { return interfaceId == other.interfaceId && deviceId == other.deviceId; }
};

std::vector<Camera> Discover(GC_ERROR initResult) {
  std::vector<Camera> cameras;
  const GC_ERROR init = Gc().GCInitLib();
  EXPECT_EQ(init, initResult);
  TL_HANDLE system = nullptr;
  EXPECT_OK(Gc().TLOpen(&system));
  EXPECT_OK(Gc().TLUpdateInterfaceList(system, nullptr, 100));
  uint32_t interfaces = 0;
  EXPECT_OK(Gc().TLGetNumInterfaces(system, &interfaces));
  EXPECT_EQ(interfaces, 1U);
  for (uint32_t i = 0; i < interfaces; ++i) {
    const std::string id =
        SizedText([=](char *text, size_t *size) { return Gc().TLGetInterfaceID(system, i, text, size); });
    const auto ask = [&](INTERFACE_INFO_CMD cmd) {
      return SizedText([=, &id](INFO_DATATYPE *type, void *buffer, size_t *size) {
        return Gc().TLGetInterfaceInfo(system, id.c_str(), cmd, type, buffer, size);
      });
    };
    EXPECT_EQ(ask(INTERFACE_INFO_TLTYPE), "CXP");
    EXPECT_FALSE(ask(INTERFACE_INFO_DISPLAYNAME).empty());
    IF_HANDLE iface = nullptr;
    EXPECT_OK(Gc().TLOpenInterface(system, id.c_str(), &iface));
    EXPECT_OK(Gc().IFUpdateDeviceList(iface, nullptr, 100));
    uint32_t devices = 0;
    EXPECT_OK(Gc().IFGetNumDevices(iface, &devices));
    for (uint32_t j = 0; j < devices; ++j) {
      const std::string device =
          SizedText([=](char *text, size_t *size) { return Gc().IFGetDeviceID(iface, j, text, size); });
      const auto askDevice = [&](DEVICE_INFO_CMD cmd) {
        return [=, &device](INFO_DATATYPE *type, void *buffer, size_t *size) {
          return Gc().IFGetDeviceInfo(iface, device.c_str(), cmd, type, buffer, size);
        };
      };
      EXPECT_EQ(SizedText(askDevice(DEVICE_INFO_ID)), device);
      EXPECT_FALSE(SizedText(askDevice(DEVICE_INFO_MODEL)).empty());
      EXPECT_FALSE(SizedText(askDevice(DEVICE_INFO_VENDOR)).empty());
      ExpectRefused(GC_ERR_INVALID_PARAMETER, askDevice(kSerialNumber));
      EXPECT_EQ(SizedText(askDevice(DEVICE_INFO_ID)), device);
      cameras.push_back({id, device});
    }
    EXPECT_OK(Gc().IFClose(iface));
  }
  EXPECT_OK(Gc().TLClose(system));
  return cameras;
}

/// What the worker thread and its owner share.
struct Worker {
  std::atomic<EVENT_HANDLE> event{nullptr};
  std::atomic<uint64_t> frames{0};
  std::atomic<int> thread{0};
  GC_ERROR end = GC_ERR_SUCCESS;
};

void Work(DS_HANDLE stream, PictureShape shape, Worker &worker) {
  EVENT_HANDLE event = nullptr;
  EXPECT_OK(Gc().GCRegisterEvent(stream, EVENT_NEW_BUFFER, &event));
  worker.thread = ThreadNumber();
  worker.event = event;
  while (true) {
    BUFFER_HANDLE const buffer = NextBuffer(event, GENTL_INFINITE, &worker.end);
    if (buffer == nullptr) {
      return;
    }
    const uint64_t frame = ++worker.frames;
    EXPECT_EQ(BufferValue<uint64_t>(stream, buffer, BUFFER_INFO_FRAMEID), frame);
    EXPECT_NE(BufferValue<uint64_t>(stream, buffer, BUFFER_INFO_TIMESTAMP), 0U);
    EXPECT_EQ(BufferValue<uint8_t>(stream, buffer, BUFFER_INFO_IS_INCOMPLETE), 0);
    EXPECT_EQ(BufferValue<size_t>(stream, buffer, BUFFER_INFO_PAYLOADTYPE), static_cast<size_t>(PAYLOAD_TYPE_IMAGE));
    EXPECT_EQ(BufferValue<size_t>(stream, buffer, BUFFER_INFO_WIDTH), shape.width);
    EXPECT_EQ(BufferValue<size_t>(stream, buffer, BUFFER_INFO_HEIGHT), shape.height);
    EXPECT_EQ(BufferValue<size_t>(stream, buffer, BUFFER_INFO_XOFFSET), 0U);
    EXPECT_EQ(BufferValue<size_t>(stream, buffer, BUFFER_INFO_YOFFSET), 0U);
    EXPECT_EQ(BufferValue<size_t>(stream, buffer, BUFFER_INFO_XPADDING), 0U);
    EXPECT_EQ(BufferValue<size_t>(stream, buffer, BUFFER_INFO_YPADDING), 0U);
    EXPECT_EQ(BufferValue<uint64_t>(stream, buffer, BUFFER_INFO_PIXELFORMAT), shape.format->pfnc);
    EXPECT_EQ(BufferValue<size_t>(stream, buffer, BUFFER_INFO_SIZE_FILLED),
              LineBytes(*shape.format, shape.width) * shape.height);
    ExpectRefused(GC_ERR_INVALID_PARAMETER, [=](INFO_DATATYPE *type, void *data, size_t *size) {
      return Gc().DSGetBufferInfo(stream, buffer, kDataSize, type, data, size);
    });
    const auto *const data = static_cast<uint8_t *>(BufferValue<void *>(stream, buffer, BUFFER_INFO_BASE));
    EXPECT_NE(FrameInBuffer(data, shape), 0U) << "frame " << frame;
    EXPECT_OK(Gc().DSQueueBuffer(stream, buffer));
  }
}

void AcquireAndStop(DEV_HANDLE device, const PictureShape &shape, bool ownMemory) {
  constexpr size_t kBuffers = 5;
  constexpr uint64_t kFrames = 25;
  uint32_t streams = 0;
  EXPECT_OK(Gc().DevGetNumDataStreams(device, &streams));
  ASSERT_EQ(streams, 1U);
  const std::string id =
      SizedText([=](char *text, size_t *size) { return Gc().DevGetDataStreamID(device, 0, text, size); });
  DS_HANDLE stream = nullptr;
  ASSERT_OK(Gc().DevOpenDataStream(device, id.c_str(), &stream));
  ExpectRefused(GC_ERR_INVALID_PARAMETER, [=](INFO_DATATYPE *type, void *buffer, size_t *size) {
    return Gc().DevGetInfo(device, kTimestampFrequency, type, buffer, size);
  });
  const auto size = StreamValue<size_t>(stream, STREAM_INFO_PAYLOAD_SIZE);
  std::vector<std::vector<uint8_t>> memory(kBuffers, std::vector<uint8_t>(size));
  std::vector<BUFFER_HANDLE> buffers;
  for (size_t i = 0; i < kBuffers; ++i) {
    BUFFER_HANDLE buffer = nullptr;
    if (ownMemory) {
      ASSERT_OK(Gc().DSAnnounceBuffer(stream, memory[i].data(), size, nullptr, &buffer));
    } else {
      ASSERT_OK(Gc().DSAllocAndAnnounceBuffer(stream, size, nullptr, &buffer));
      EXPECT_NE(BufferValue<void *>(stream, buffer, BUFFER_INFO_BASE), nullptr);
    }
    buffers.push_back(buffer);
  }
  for (BUFFER_HANDLE const buffer : buffers) {
    ASSERT_OK(Gc().DSQueueBuffer(stream, buffer));
  }

  // Registration and start race: whichever comes first, no frame may be lost.
  Worker worker;
  std::thread thread([&] { Work(stream, shape, worker); });
  EXPECT_OK(Gc().DSStartAcquisition(stream, ACQ_START_FLAGS_DEFAULT, GENTL_INFINITE));
  EXPECT_TRUE(WaitUntil([&] { return worker.frames >= kFrames; }));
  EXPECT_OK(Gc().DSStopAcquisition(stream, ACQ_STOP_FLAGS_DEFAULT));
  // Nothing comes any more, so the worker ends up waiting for ever; only the kill gets it out.
  EXPECT_TRUE(WaitUntil([&] {
    return StreamValue<size_t>(stream, STREAM_INFO_NUM_AWAIT_DELIVERY) == 0 && IsThreadAsleep(worker.thread);
  }));
  EXPECT_OK(Gc().EventKill(worker.event));
  thread.join();
  EXPECT_EQ(worker.end, GC_ERR_ABORT);
  EXPECT_OK(Gc().GCUnregisterEvent(stream, EVENT_NEW_BUFFER));
  EXPECT_OK(Gc().DSFlushQueue(stream, ACQ_QUEUE_ALL_DISCARD));
  for (BUFFER_HANDLE const buffer : buffers) {
    EXPECT_OK(Gc().DSRevokeBuffer(stream, buffer, nullptr, nullptr));
  }
  EXPECT_OK(Gc().DSClose(stream));
}

class ConsumerA : public testing::TestWithParam<bool> {};

TEST_P(ConsumerA, DiscoversTwiceThenOpensAndAcquires) {
  const CLoadedProducer producer(kLazyLocal);
  const std::vector<Camera> cameras = Discover(GC_ERR_SUCCESS);
  ASSERT_EQ(cameras.size(), 2U);
  // The second pass begins like the first one and is told that the library is initialised.
  EXPECT_EQ(Discover(GC_ERR_RESOURCE_IN_USE), cameras);

  for (const Camera &camera : cameras) {
    SCOPED_TRACE(camera.deviceId);
    EXPECT_FAILED(GC_ERR_RESOURCE_IN_USE, Gc().GCInitLib());
    TL_HANDLE system = nullptr;
    ASSERT_OK(Gc().TLOpen(&system));
    EXPECT_OK(Gc().TLUpdateInterfaceList(system, nullptr, 100));
    IF_HANDLE iface = nullptr;
    ASSERT_OK(Gc().TLOpenInterface(system, camera.interfaceId.c_str(), &iface));
    EXPECT_OK(Gc().IFUpdateDeviceList(iface, nullptr, 100));
    DEV_HANDLE device = nullptr;
    ASSERT_OK(Gc().IFOpenDevice(iface, camera.deviceId.c_str(), DEVICE_ACCESS_CONTROL, &device));
    PORT_HANDLE port = nullptr;
    ASSERT_OK(Gc().DevGetPort(device, &port));
    uint32_t urls = 0;
    EXPECT_OK(Gc().GCGetNumPortURLs(port, &urls));
    EXPECT_EQ(urls, 1U);
    const std::string url = SizedText([=](INFO_DATATYPE *type, void *buffer, size_t *size) {
      return Gc().GCGetPortURLInfo(port, 0, URL_INFO_URL, type, buffer, size);
    });
    EXPECT_EQ(url.rfind("Local:", 0), 0U) << url;
    const std::string xml = ReadXml(port);
    EXPECT_EQ(xml.rfind("<?xml", 0), 0U);
    EXPECT_NE(xml.find("</RegisterDescription>"), std::string::npos);

    ASSERT_OK(WriteU32(device, kWidth, 160));
    ASSERT_OK(WriteU32(device, kHeight, 24));
    const PictureShape shape{FindPixelFormat(ReadU32(device, kPixelFormat)), 160, 24,
                             camera.deviceId == cameras[0].deviceId ? 1U : 2U};
    AcquireAndStop(device, shape, GetParam());
    EXPECT_OK(Gc().DevClose(device));
    EXPECT_OK(Gc().IFClose(iface));
    EXPECT_OK(Gc().TLClose(system));
  }
  EXPECT_OK(Gc().GCCloseLib());
}

INSTANTIATE_TEST_SUITE_P(Memory, ConsumerA, testing::Bool(), [](const testing::TestParamInfo<bool> &row) {
  return row.param ? std::string("OfTheConsumer") : std::string("OfTheProducer");
});

}  // namespace
