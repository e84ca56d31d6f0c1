// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cstdlib>
#include <elf.h>
#include <fstream>
#include <iomanip>
#include <iterator>
#include <set>
#include <thread>

#include "Camera.h"

/// What users report about libraries like this one, each a test that would have found it.
namespace {

using namespace SystemTest;  // NOLINT

class Complaints : public SimulationTest {};

/// One of the five ports of the tree.
struct PortRow {
  const char *name;
  PORT_HANDLE (*open)(TL_HANDLE, IF_HANDLE, DEV_HANDLE);
};
const PortRow kPorts[] = {
    {"System", [](TL_HANDLE system, IF_HANDLE, DEV_HANDLE) -> PORT_HANDLE { return system; }},
    {"Interface", [](TL_HANDLE, IF_HANDLE iface, DEV_HANDLE) -> PORT_HANDLE { return iface; }},
    {"Device", [](TL_HANDLE, IF_HANDLE, DEV_HANDLE device) -> PORT_HANDLE { return device; }},
    {"Stream",
     [](TL_HANDLE, IF_HANDLE, DEV_HANDLE device) -> PORT_HANDLE {
       DS_HANDLE stream = nullptr;
       EXPECT_OK(Gc().DevOpenDataStream(device, kStreamId, &stream));
       return stream;
     }},
    {"Camera",
     [](TL_HANDLE, IF_HANDLE, DEV_HANDLE device) -> PORT_HANDLE {
       PORT_HANDLE port = nullptr;
       EXPECT_OK(Gc().DevGetPort(device, &port));
       return port;
     }},
};

// "Extra content at the end of the document": behind the last element only white space and zeros may stand.
TEST_F(Complaints, NothingStandsBehindTheXml) {
  constexpr std::string_view kEnd = "</RegisterDescription>";
  for (uint32_t channel = 1; channel <= 2; ++channel) {
    DEV_HANDLE const device = OpenDevice(channel);
    for (const PortRow &row : kPorts) {
      SCOPED_TRACE(row.name);
      const std::vector<char> bytes = ReadXmlRegister(row.open(m_hSystem, m_hInterface, device));
      const std::string text(bytes.begin(), bytes.end());
      // One of them begins with a byte order mark.
      ASSERT_EQ(text.find("<?xml"), text.rfind("\xEF\xBB\xBF", 0) == 0 ? 3U : 0U);
      const size_t end = text.find(kEnd);
      ASSERT_NE(end, std::string::npos);
      const size_t space = text.find_first_not_of(" \t\r\n", end + kEnd.size());
      EXPECT_TRUE(space == std::string::npos || text.find_first_not_of('\0', space) == std::string::npos);
      EXPECT_EQ(text.substr(0, end).find('\0'), std::string::npos) << "a zero within the text";
    }
  }
}

// Each failing start leaves the stream idle: a stop is harmless, and the next start works.
TEST_F(Complaints, StopsAndStartsAfterAFailedStart) {
  DEV_HANDLE const device = OpenDevice(1, 64, 8);
  CStream stream(device, 1);
  const auto expectIdle = [&] {
    EXPECT_EQ(StreamValue<uint8_t>(stream.Handle(), STREAM_INFO_IS_GRABBING), 0);
    EXPECT_OK(Gc().DSStopAcquisition(stream.Handle(), ACQ_STOP_FLAGS_DEFAULT));
    EXPECT_OK(Gc().DSStopAcquisition(stream.Handle(), ACQ_STOP_FLAGS_KILL));
  };
  const auto start = [&](ACQ_START_FLAGS flags, uint64_t frames) {
    return Gc().DSStartAcquisition(stream.Handle(), flags, frames);
  };
  EXPECT_FAILED(GC_ERR_INVALID_BUFFER, start(ACQ_START_FLAGS_DEFAULT, GENTL_INFINITE));
  expectIdle();
  stream.Announce(4);
  EXPECT_FAILED(GC_ERR_INVALID_PARAMETER, start(ACQ_START_FLAGS_DEFAULT, 0));
  expectIdle();
  EXPECT_FAILED(GC_ERR_INVALID_PARAMETER, start(1, GENTL_INFINITE));
  expectIdle();
  // The frame has become larger than its buffers.
  ASSERT_OK(WriteU32(device, kWidth, 128));
  EXPECT_FAILED(GC_ERR_INVALID_BUFFER, start(ACQ_START_FLAGS_DEFAULT, GENTL_INFINITE));
  expectIdle();
  // A buffer that comes back now finds no run to go to.
  EXPECT_OK(Gc().DSFlushQueue(stream.Handle(), ACQ_QUEUE_ALL_DISCARD));
  for (BUFFER_HANDLE const buffer : stream.Buffers()) {
    stream.Queue(buffer);
  }
  ASSERT_OK(WriteU32(device, kWidth, 64));
  stream.Start();
  for (uint64_t frame = 1; frame <= 3; ++frame) {
    BUFFER_HANDLE const buffer = stream.Next();
    ASSERT_NE(buffer, nullptr);
    EXPECT_TRUE(IsPicture(stream.Memory(buffer).Data(), stream.Shape(), frame, kFilling));
  }
  stream.Stop();
}

// This start fails half-way: the library has been told of the run, then the camera refuses a register.
TEST_F(Complaints, StopsAndStartsAfterAStartThatTheCameraFailed) {
  const std::string file = std::string(std::getenv("LUMIVEX_SIM_LOCK_DIR")) + "/settings.reg";
  const std::string old = std::getenv("LUMIVEX_GENTL_REG");
  ASSERT_EQ(setenv("LUMIVEX_GENTL_REG", file.c_str(), 1), 0);
  const auto begin = [&](uint32_t widthAddress) {
    std::ofstream(file) << "Windows Registry Editor Version 5.00\n\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\Lumivex\\GenTL]\n"
                        << "\"Cxpv11Enable\"=dword:00000001\n\"Cxpv11PixelFormatAddress\"=dword:00006008\n"
                        << "\"Cxpv11HeightAddress\"=dword:00006004\n\"Cxpv11WidthAddress\"=dword:" << std::hex
                        << std::setw(8) << std::setfill('0') << widthAddress << "\n";
    ASSERT_OK(Gc().GCCloseLib());
    ASSERT_OK(Gc().GCInitLib());
    m_hSystem = nullptr;
    m_hInterface = nullptr;
  };
  begin(0x9000);
  {
    CStream stream(OpenDevice(1, 64, 8), 1);
    stream.Announce(3);
    for (int i = 0; i < 3; ++i) {
      EXPECT_FAILED(GC_ERR_IO, Gc().DSStartAcquisition(stream.Handle(), ACQ_START_FLAGS_DEFAULT, GENTL_INFINITE));
      EXPECT_EQ(StreamValue<uint8_t>(stream.Handle(), STREAM_INFO_IS_GRABBING), 0);
      EXPECT_OK(Gc().DSStopAcquisition(stream.Handle(), ACQ_STOP_FLAGS_DEFAULT));
    }
    // A buffer that is queued, flushed and revoked now finds no run.
    EXPECT_OK(Gc().DSFlushQueue(stream.Handle(), ACQ_QUEUE_ALL_TO_INPUT));
    EXPECT_OK(Gc().DSFlushQueue(stream.Handle(), ACQ_QUEUE_ALL_DISCARD));
    stream.Queue(stream.Buffers()[0]);
    EXPECT_OK(Gc().DSRevokeBuffer(stream.Handle(), stream.Buffers()[1], nullptr, nullptr));
  }
  begin(0x6000);
  {
    CStream stream(OpenDevice(1, 64, 8), 1);
    stream.Announce(3);
    stream.Start();
    BUFFER_HANDLE const buffer = stream.Next();
    ASSERT_NE(buffer, nullptr);
    EXPECT_TRUE(IsPicture(stream.Memory(buffer).Data(), stream.Shape(), 1, kFilling));
    stream.Stop();
  }
  setenv("LUMIVEX_GENTL_REG", old.c_str(), 1);
}

TEST_F(Complaints, StopsAtOnceBehindAStart) {
  constexpr uint32_t kFrameRate = 0x6020;
  constexpr uint32_t kOneInTenSeconds = 0x3DCCCCCD;
  constexpr size_t kBuffers = 20;
  DEV_HANDLE const device = OpenDevice(1, 64, 8);
  // The first frame comes at once and races with the stop; those behind it must not use up the buffers.
  ASSERT_OK(WriteU32Be(RemotePort(device), kFrameRate, kOneInTenSeconds));
  CStream stream(device, 1);
  const PictureShape shape = stream.Shape();
  stream.Announce(kBuffers);
  for (int run = 0; run < 100; ++run) {
    stream.Start();
    stream.Stop();
    // A start on a running stream stops it first.
    stream.Start();
    stream.Start();
    stream.Stop();
    EXPECT_OK(Gc().DSFlushQueue(stream.Handle(), ACQ_QUEUE_ALL_TO_INPUT));
    ASSERT_EQ(StreamValue<size_t>(stream.Handle(), STREAM_INFO_NUM_QUEUED), kBuffers);
  }
  stream.Start();
  BUFFER_HANDLE const buffer = stream.Next();
  ASSERT_NE(buffer, nullptr);
  EXPECT_TRUE(IsPicture(stream.Memory(buffer).Data(), shape, 1, kFilling));
  stream.Stop();
}

TEST_F(Complaints, DiscardingIsNotRevoking) {
  CStream stream(OpenDevice(1, 64, 8), 1);
  stream.Announce(4);
  for (int round = 0; round < 3; ++round) {
    stream.Start();
    ASSERT_NE(stream.Next(), nullptr);
    EXPECT_OK(Gc().DSFlushQueue(stream.Handle(), ACQ_QUEUE_ALL_DISCARD));
    EXPECT_EQ(StreamValue<uint8_t>(stream.Handle(), STREAM_INFO_IS_GRABBING), 0) << "it stops first";
    EXPECT_EQ(StreamValue<size_t>(stream.Handle(), STREAM_INFO_NUM_ANNOUNCED), 4U);
    EXPECT_EQ(StreamValue<size_t>(stream.Handle(), STREAM_INFO_NUM_QUEUED), 0U);
    EXPECT_EQ(StreamValue<size_t>(stream.Handle(), STREAM_INFO_NUM_AWAIT_DELIVERY), 0U);
    for (uint32_t i = 0; i < 4; ++i) {
      BUFFER_HANDLE buffer = nullptr;
      EXPECT_OK(Gc().DSGetBufferID(stream.Handle(), i, &buffer));
      EXPECT_EQ(buffer, stream.Buffers()[i]);
      EXPECT_EQ(BufferValue<void *>(stream.Handle(), buffer, BUFFER_INFO_BASE), stream.Memory(buffer).Data());
      // Its memory is still announced.
      BUFFER_HANDLE second = nullptr;
      EXPECT_FAILED(GC_ERR_RESOURCE_IN_USE,
                    Gc().DSAnnounceBuffer(stream.Handle(), stream.Memory(buffer).Data(), 8192, nullptr, &second));
      stream.Queue(buffer);
    }
  }
  EXPECT_OK(Gc().DSFlushQueue(stream.Handle(), ACQ_QUEUE_ALL_DISCARD));
  for (BUFFER_HANDLE const buffer : stream.Buffers()) {
    EXPECT_OK(Gc().DSRevokeBuffer(stream.Handle(), buffer, nullptr, nullptr));
  }
  EXPECT_EQ(StreamValue<size_t>(stream.Handle(), STREAM_INFO_NUM_ANNOUNCED), 0U);
}

// Lists made anew while everything is open and frames flow.
TEST_F(Complaints, ListUpdatesKeepOpenHandles) {
  DEV_HANDLE const device = OpenDevice(1, 64, 8);
  CStream stream(device, 1);
  const PictureShape shape = stream.Shape();
  stream.Announce(4);
  stream.Start();
  for (int round = 0; round < 10; ++round) {
    bool8_t changed = true;
    EXPECT_OK(Gc().TLUpdateInterfaceList(m_hSystem, &changed, 100));
    EXPECT_FALSE(changed);
    EXPECT_OK(Gc().IFUpdateDeviceList(m_hInterface, &changed, 100));
    EXPECT_FALSE(changed) << "no camera has come or gone";
    uint32_t devices = 0;
    EXPECT_OK(Gc().IFGetNumDevices(m_hInterface, &devices));
    EXPECT_EQ(devices, 2U);
    EXPECT_EQ(ReadU32(device, kWidth), 64U);
    EXPECT_EQ(ReadU32Be(RemotePort(device), 0), 0xC0A79AE5U);
    BUFFER_HANDLE const buffer = stream.Next();
    ASSERT_NE(buffer, nullptr);
    EXPECT_NE(FrameInBuffer(stream.Memory(buffer).Data(), shape), 0U);
    stream.Queue(buffer);
  }
  // The other camera can be opened meanwhile, and is closed without harm to the first.
  DEV_HANDLE const second = OpenDevice(2);
  EXPECT_OK(Gc().IFUpdateDeviceList(m_hInterface, nullptr, 100));
  EXPECT_OK(Gc().DevClose(second));
  EXPECT_NE(stream.Next(), nullptr);
  stream.Stop();
}

// Every failure has a text, in the thread that failed and in no other.
TEST_F(Complaints, EveryFailureHasAText) {
  DEV_HANDLE const device = OpenDevice(1);
  CStream stream(device, 1);
  DS_HANDLE const handle = stream.Handle();
  EVENT_HANDLE const event = stream.Event();
  void *nothing = nullptr;
  size_t size = 1;
  uint32_t number = 0;
  INFO_DATATYPE type = 0;
  char buffer[8] = {};
  TL_HANDLE const system = m_hSystem;
  IF_HANDLE const iface = m_hInterface;
  PORT_HANDLE const camera = RemotePort(device);
  const std::vector<std::function<GC_ERROR()>> calls = {
      [&] { return Gc().GCInitLib(); },
      [&] { return Gc().GCGetInfo(1000, &type, buffer, &size); },
      [&] { return Gc().GCGetInfo(TL_INFO_VENDOR, &type, buffer, &size); },
      [&] { return Gc().TLOpen(&nothing); },
      [&] { return Gc().TLGetInfo(system, 99, &type, buffer, &size); },
      [&] { return Gc().TLGetInterfaceID(system, 7, buffer, &size); },
      [&] { return Gc().TLGetInterfaceInfo(system, "none", INTERFACE_INFO_ID, &type, buffer, &size); },
      [&] { return Gc().TLOpenInterface(system, "none", &nothing); },
      [&] { return Gc().TLOpenInterface(system, nullptr, &nothing); },
      [&] { return Gc().IFGetDeviceID(iface, 9, buffer, &size); },
      [&] { return Gc().IFGetDeviceInfo(iface, "none", DEVICE_INFO_ID, &type, buffer, &size); },
      [&] { return Gc().IFOpenDevice(iface, "none", DEVICE_ACCESS_CONTROL, &nothing); },
      [&] { return Gc().IFOpenDevice(iface, "Channel #1", DEVICE_ACCESS_CONTROL, &nothing); },
      [&] { return Gc().IFOpenDevice(iface, "Channel #2", DEVICE_ACCESS_NONE, &nothing); },
      [&] { return Gc().DevGetDataStreamID(device, 1, buffer, &size); },
      [&] { return Gc().DevOpenDataStream(device, "none", &nothing); },
      [&] { return Gc().DevOpenDataStream(device, "Stream #1", &nothing); },
      [&] { return Gc().DevGetInfo(device, 99, &type, buffer, &size); },
      [&] { return Gc().DevGetPort(device, nullptr); },
      [&] { return Gc().DevGetPort(iface, &nothing); },
      [&] { return Gc().DSAnnounceBuffer(handle, nullptr, 1, nullptr, &nothing); },
      [&] { return Gc().DSAllocAndAnnounceBuffer(handle, 0, nullptr, &nothing); },
      [&] { return Gc().DSStartAcquisition(handle, ACQ_START_FLAGS_DEFAULT, 1); },
      [&] { return Gc().DSStopAcquisition(handle, 5); },
      [&] { return Gc().DSFlushQueue(handle, 5); },
      [&] { return Gc().DSGetInfo(handle, STREAM_INFO_NUM_CHUNKS_MAX, &type, buffer, &size); },
      [&] { return Gc().DSGetBufferID(handle, 0, &nothing); },
      [&] { return Gc().DSGetBufferChunkData(handle, nullptr, nullptr, &size); },
      [&] { return Gc().DSQueueBuffer(handle, nullptr); },
      [&] { return Gc().GCRegisterEvent(handle, EVENT_NEW_BUFFER, &nothing); },
      [&] { return Gc().GCRegisterEvent(system, EVENT_ERROR, &nothing); },
      [&] { return Gc().GCUnregisterEvent(iface, EVENT_ERROR); },
      [&] { return Gc().EventGetData(event, buffer, &(size = sizeof(buffer)), 0); },
      [&] { return Gc().EventGetInfo(event, 99, &type, buffer, &size); },
      [&] { return Gc().EventKill(nullptr); },
      [&] { return Gc().GCReadPort(device, 0x500, buffer, &(size = 4)); },
      [&] { return Gc().GCWritePort(device, 0, buffer, &(size = 4)); },
      [&] { return Gc().GCReadPort(camera, 0x9000, buffer, &(size = 4)); },
      [&] { return Gc().GCWritePort(camera, 0, buffer, &(size = 4)); },
      [&] { return Gc().GCGetPortInfo(camera, 99, &type, buffer, &size); },
      [&] { return Gc().GCGetPortURLInfo(device, 1, URL_INFO_URL, &type, buffer, &size); },
      [&] { return Gc().GCGetNumPortURLs(device, nullptr); },
      [&] { return Gc().GCReadPort(nullptr, 0, buffer, &(size = 4)); },
  };
  for (size_t i = 0; i < calls.size(); ++i) {
    SCOPED_TRACE(i);
    EXPECT_OK(Gc().TLGetNumInterfaces(system, &number));
    const GC_ERROR result = calls[i]();
    EXPECT_NE(result, GC_ERR_SUCCESS);
    EXPECT_TRUE(CheckFailed({result}, result));
    size_t needed = 0;
    GC_ERROR code = GC_ERR_SUCCESS;
    EXPECT_EQ(Gc().GCGetLastError(&code, nullptr, &needed), GC_ERR_SUCCESS);
    EXPECT_GT(needed, 1U) << "an empty text";
    std::thread([] { EXPECT_EQ(LastError().code, GC_ERR_SUCCESS) << "another thread's failure"; }).join();
  }
}

// A camera that was off for a while is usable again without a new process.
TEST_F(Complaints, CameraIsUsableAgainAfterItsReset) {
  constexpr uint32_t kConnectionReset = 0x4000;
  DEV_HANDLE device = OpenDevice(1, 64, 8);
  for (int round = 0; round < 3; ++round) {
    SCOPED_TRACE(round);
    {
      CStream stream(device, 1);
      const PictureShape shape = stream.Shape();
      stream.Announce(4);
      stream.Start();
      ASSERT_NE(stream.Next(), nullptr);
      ASSERT_OK(WriteU32Be(RemotePort(device), kConnectionReset, 1));
      stream.Queue(stream.Buffers()[0]);
      for (int frame = 0; frame < 8; ++frame) {
        BUFFER_HANDLE const buffer = stream.Next();
        ASSERT_NE(buffer, nullptr);
        EXPECT_NE(FrameInBuffer(stream.Memory(buffer).Data(), shape), 0U);
        stream.Queue(buffer);
      }
      stream.Stop();
    }
    EXPECT_OK(Gc().DevClose(device));
    EXPECT_OK(Gc().IFUpdateDeviceList(m_hInterface, nullptr, 100));
    device = OpenDevice(1, 64, 8);
  }
}

/// The names of the symbols that a shared library defines for others.
std::set<std::string> ExportedSymbols(const std::string &path) {
  std::ifstream file(path, std::ios::binary);
  const std::vector<char> bytes((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
  const auto read = [&](auto &target, size_t offset) {
    ASSERT_LE(offset + sizeof(target), bytes.size());
    std::memcpy(&target, bytes.data() + offset, sizeof(target));
  };
  std::set<std::string> names;
  Elf64_Ehdr header{};
  read(header, 0);
  for (size_t i = 0; i < header.e_shnum; ++i) {
    Elf64_Shdr section{};
    read(section, header.e_shoff + i * sizeof(section));
    if (section.sh_type != SHT_DYNSYM) {
      continue;
    }
    Elf64_Shdr strings{};
    read(strings, header.e_shoff + section.sh_link * sizeof(strings));
    for (size_t j = 0; j < section.sh_size / sizeof(Elf64_Sym); ++j) {
      Elf64_Sym symbol{};
      read(symbol, section.sh_offset + j * sizeof(symbol));
      if (symbol.st_shndx != SHN_UNDEF && ELF64_ST_BIND(symbol.st_info) != STB_LOCAL) {
        names.insert(bytes.data() + strings.sh_offset + symbol.st_name);
      }
    }
  }
  return names;
}

// "Symbols of the library's C++ runtime collide with the application's": nothing but the 52 functions comes out.
TEST(Exports, AreTheFunctionsAndNothingElse) {
  std::set<std::string> functions;
#define SYSTEM_NAME(name) functions.insert(#name);
  LUMIVEX_GENTL_FUNCTIONS(SYSTEM_NAME)
#undef SYSTEM_NAME
  ASSERT_EQ(functions.size(), 52U);
  EXPECT_EQ(ExportedSymbols(CLoadedProducer::Path()), functions);
}

// Of later versions: a Consumer that finds one of these would call it.
TEST(Exports, HaveNoFunctionOfALaterVersion) {
  void *const library = dlopen(CLoadedProducer::Path().c_str(), kLazyLocal);
  ASSERT_NE(library, nullptr);
  for (const char *const name :
       {"IFGetParentTL", "DevGetParentIF", "DSGetParentDev", "DSGetNumBufferParts", "DSGetBufferPartInfo"}) {
    EXPECT_EQ(dlsym(library, name), nullptr) << name;
  }
  dlclose(library);
}

}  // namespace
