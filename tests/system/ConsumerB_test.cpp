// SPDX-License-Identifier: MIT
#include <cstdlib>
#include <filesystem>
#include <sstream>

#include "Camera.h"

/// A C++ library over the reference GenApi: every .cti of every folder of the path, symbols bound at once, texts asked
/// for once with a large buffer, buffers revoked by index until there is none.
namespace {

using namespace SystemTest;  // NOLINT
namespace fs = std::filesystem;

// The sanitizers refuse to load anything with RTLD_DEEPBIND: their own symbols have to be found first.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr int kFlags = RTLD_NOW | RTLD_LOCAL;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
constexpr int kFlags = RTLD_NOW | RTLD_LOCAL;
#else
constexpr int kFlags = RTLD_NOW | RTLD_DEEPBIND;
#endif
#else
constexpr int kFlags = RTLD_NOW | RTLD_DEEPBIND;
#endif

constexpr size_t kText = 1024;

std::vector<std::string> FilesOnThePath(const std::string &path) {
  std::vector<std::string> files;
  std::istringstream folders(path);
  for (std::string folder; std::getline(folders, folder, ':');) {
    std::error_code ignored;
    for (const fs::directory_entry &entry : fs::directory_iterator(folder, ignored)) {
      if (entry.path().extension() == ".cti") {
        files.push_back(entry.path().string());
      }
    }
  }
  return files;
}

/// A read that has to give all that was asked for; nothing at all counts as an error there.
std::vector<char> ReadAll(PORT_HANDLE port, uint64_t address, size_t bytes) {
  std::vector<char> data(bytes);
  size_t size = bytes;
  EXPECT_OK(Gc().GCReadPort(port, address, data.data(), &size));
  EXPECT_EQ(size, bytes) << "a short read";
  return data;
}

void WriteAll(PORT_HANDLE port, uint64_t address, const std::vector<char> &data) {
  size_t size = data.size();
  EXPECT_OK(Gc().GCWritePort(port, address, data.data(), &size));
  EXPECT_EQ(size, data.size()) << "a short write";
}

/// The first access that is granted; an answer other than "not implemented" ends the attempts.
DEV_HANDLE OpenWithAnyAccess(IF_HANDLE iface, const std::string &id, DEVICE_ACCESS_FLAGS &granted) {
  for (const DEVICE_ACCESS_FLAGS flags : {DEVICE_ACCESS_READONLY, DEVICE_ACCESS_CONTROL, DEVICE_ACCESS_EXCLUSIVE}) {
    DEV_HANDLE device = nullptr;
    granted = flags;
    const GC_ERROR result = Gc().IFOpenDevice(iface, id.c_str(), flags, &device);
    if (result != GC_ERR_NOT_IMPLEMENTED) {
      EXPECT_TRUE(CheckOk(result));
      return device;
    }
  }
  return nullptr;
}

/// Each port gives its XML, and a read of nothing is an error that harms no later read.
void CheckPort(PORT_HANDLE port) {
  const std::string url = TextWithin(kText, [=](INFO_DATATYPE *type, void *buffer, size_t *size) {
    return Gc().GCGetPortURLInfo(port, 0, URL_INFO_URL, type, buffer, size);
  });
  const std::optional<UrlPieces> place = SplitUrl(url);
  ASSERT_TRUE(place) << url;
  char untouched = 'u';
  size_t nothing = 0;
  EXPECT_FAILED(GC_ERR_INVALID_PARAMETER, Gc().GCReadPort(port, place->address, &untouched, &nothing));
  EXPECT_EQ(untouched, 'u');
  EXPECT_EQ(nothing, 0U);
  const std::vector<char> bytes = ReadAll(port, place->address, place->size);
  const std::string xml(bytes.begin(), bytes.end());
  EXPECT_NE(xml.find("</RegisterDescription>"), std::string::npos) << url;
}

void Acquire(DEV_HANDLE device, uint32_t channel) {
  const std::string id =
      TextWithin(kText, [=](char *text, size_t *size) { return Gc().DevGetDataStreamID(device, 0, text, size); });
  DS_HANDLE stream = nullptr;
  ASSERT_OK(Gc().DevOpenDataStream(device, id.c_str(), &stream));
  CheckPort(stream);
  EXPECT_EQ(StreamValue<uint8_t>(stream, STREAM_INFO_DEFINES_PAYLOADSIZE), 1);
  const auto size = StreamValue<size_t>(stream, STREAM_INFO_PAYLOAD_SIZE);
  const auto least = StreamValue<size_t>(stream, STREAM_INFO_BUF_ANNOUNCE_MIN);
  EXPECT_EQ(least, 1U);
  const PictureShape shape{FindPixelFormat(ReadU32(device, kPixelFormat)), ReadU32(device, kWidth),
                           ReadU32(device, kHeight), channel};
  EXPECT_EQ(size, LineBytes(*shape.format, shape.width) * shape.height);

  std::vector<std::vector<uint8_t>> memory(least + 3, std::vector<uint8_t>(size));
  for (std::vector<uint8_t> &bytes : memory) {
    BUFFER_HANDLE buffer = nullptr;
    ASSERT_OK(Gc().DSAnnounceBuffer(stream, bytes.data(), size, nullptr, &buffer));
    ASSERT_OK(Gc().DSQueueBuffer(stream, buffer));
  }
  EVENT_HANDLE event = nullptr;
  ASSERT_OK(Gc().GCRegisterEvent(stream, EVENT_NEW_BUFFER, &event));
  ASSERT_OK(Gc().DSStartAcquisition(stream, ACQ_START_FLAGS_DEFAULT, GENTL_INFINITE));
  for (int frame = 0; frame < 20; ++frame) {
    GC_ERROR result = GC_ERR_SUCCESS;
    BUFFER_HANDLE const buffer = NextBuffer(event, kFrameTimeout, &result);
    ASSERT_OK(result);
    EXPECT_NE(FrameInBuffer(static_cast<uint8_t *>(BufferValue<void *>(stream, buffer, BUFFER_INFO_BASE)), shape), 0U);
    EXPECT_OK(Gc().DSQueueBuffer(stream, buffer));
  }
  EXPECT_OK(Gc().DSStopAcquisition(stream, ACQ_STOP_FLAGS_DEFAULT));
  EXPECT_OK(Gc().DSFlushQueue(stream, ACQ_QUEUE_ALL_DISCARD));
  EXPECT_OK(Gc().GCUnregisterEvent(stream, EVENT_NEW_BUFFER));
  size_t revoked = 0;
  BUFFER_HANDLE buffer = nullptr;
  GC_ERROR result = Gc().DSGetBufferID(stream, 0, &buffer);
  for (; result == GC_ERR_SUCCESS && revoked < 100; ++revoked) {
    ASSERT_OK(Gc().DSRevokeBuffer(stream, buffer, nullptr, nullptr));
    result = Gc().DSGetBufferID(stream, 0, &buffer);
  }
  EXPECT_FAILED(GC_ERR_INVALID_BUFFER, result);
  EXPECT_EQ(revoked, memory.size());
  EXPECT_OK(Gc().DSClose(stream));
}

TEST(ConsumerB, WalksThePathAndAcquires) {
  const fs::path folder = fs::path(CLoadedProducer::Path()).parent_path();
  const std::string path = "/no/such/folder::" + folder.string();
  ASSERT_EQ(setenv("GENICAM_GENTL64_PATH", path.c_str(), 1), 0);
  const std::vector<std::string> files = FilesOnThePath(std::getenv("GENICAM_GENTL64_PATH"));
  ASSERT_EQ(files, std::vector<std::string>{CLoadedProducer::Path()});

  const CLoadedProducer producer(kFlags, files[0]);
  ASSERT_OK(Gc().GCInitLib());
  for (const TL_INFO_CMD cmd : {TL_INFO_ID, TL_INFO_VENDOR, TL_INFO_MODEL, TL_INFO_VERSION, TL_INFO_TLTYPE,
                                TL_INFO_NAME, TL_INFO_PATHNAME, TL_INFO_DISPLAYNAME}) {
    EXPECT_FALSE(TextWithin(kText, [=](INFO_DATATYPE *type, void *buffer, size_t *size) {
                   return Gc().GCGetInfo(cmd, type, buffer, size);
                 }).empty());
  }
  TL_HANDLE system = nullptr;
  ASSERT_OK(Gc().TLOpen(&system));
  CheckPort(system);
  bool8_t changed = false;
  EXPECT_OK(Gc().TLUpdateInterfaceList(system, &changed, 1000));
  EXPECT_TRUE(changed);
  const std::string interfaceId =
      TextWithin(kText, [=](char *text, size_t *size) { return Gc().TLGetInterfaceID(system, 0, text, size); });
  IF_HANDLE iface = nullptr;
  ASSERT_OK(Gc().TLOpenInterface(system, interfaceId.c_str(), &iface));
  CheckPort(iface);
  EXPECT_OK(Gc().IFUpdateDeviceList(iface, &changed, 1000));
  EXPECT_TRUE(changed);
  for (uint32_t i = 0; i < 2; ++i) {
    const std::string id =
        TextWithin(kText, [=](char *text, size_t *size) { return Gc().IFGetDeviceID(iface, i, text, size); });
    SCOPED_TRACE(id);
    DEVICE_ACCESS_FLAGS granted = DEVICE_ACCESS_NONE;
    DEV_HANDLE device = OpenWithAnyAccess(iface, id, granted);
    ASSERT_NE(device, nullptr);
    EXPECT_EQ(granted, DEVICE_ACCESS_READONLY);
    PORT_HANDLE port = nullptr;
    ASSERT_OK(Gc().DevGetPort(device, &port));
    CheckPort(device);
    CheckPort(port);
    EXPECT_OK(Gc().DevClose(device));

    ASSERT_OK(Gc().IFOpenDevice(iface, id.c_str(), DEVICE_ACCESS_CONTROL, &device));
    ASSERT_OK(Gc().DevGetPort(device, &port));
    CheckPort(port);
    // Whole words, there and back, on the grabber's side and on the camera's.
    WriteAll(device, kWidth, ReadAll(device, kWidth, 4));
    constexpr uint64_t kUserId = 0x20C0;
    WriteAll(port, kUserId, std::vector<char>(16, 'u'));
    EXPECT_EQ(ReadAll(port, kUserId, 16), std::vector<char>(16, 'u'));
    ASSERT_OK(WriteU32(device, kWidth, 48));
    ASSERT_OK(WriteU32(device, kHeight, 16));
    Acquire(device, i + 1);
    EXPECT_OK(Gc().DevClose(device));
  }
  EXPECT_OK(Gc().IFClose(iface));
  EXPECT_OK(Gc().TLClose(system));
  EXPECT_OK(Gc().GCCloseLib());
}

}  // namespace
