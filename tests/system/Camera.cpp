// SPDX-License-Identifier: MIT
#include "Camera.h"

#include <algorithm>

namespace SystemTest {

// Memory --------------------------------------------------------------------------------------------------------------

CGuardedMemory::CGuardedMemory(size_t size, size_t misalignment)
    : m_iSize(size), m_iBegin(kGuardBytes + misalignment), m_Bytes(m_iBegin + size + kGuardBytes, kFilling) {}

void CGuardedMemory::Fill() { std::fill(m_Bytes.begin(), m_Bytes.end(), kFilling); }

bool CGuardedMemory::IsUntouchedBeyond(size_t used) const {
  const auto isFilling = [](uint8_t byte) { return byte == kFilling; };
  const auto begin = m_Bytes.begin() + static_cast<std::ptrdiff_t>(m_iBegin);
  return std::all_of(m_Bytes.begin(), begin, isFilling) &&
         std::all_of(begin + static_cast<std::ptrdiff_t>(used), m_Bytes.end(), isFilling);
}

// Stream --------------------------------------------------------------------------------------------------------------

CStream::CStream(DEV_HANDLE device, uint32_t channel) : m_hDevice(device), m_iChannel(channel) {
  EXPECT_OK(Gc().DevOpenDataStream(device, kStreamId, &m_hStream));
  EXPECT_OK(Gc().GCRegisterEvent(m_hStream, EVENT_NEW_BUFFER, &m_hEvent));
}

CStream::~CStream() {
  if (m_hStream != nullptr) {
    EXPECT_OK(Gc().DSClose(m_hStream));
  }
}

PictureShape CStream::Shape() const {
  return {FindPixelFormat(ReadU32(m_hDevice, kPixelFormat)), ReadU32(m_hDevice, kWidth), ReadU32(m_hDevice, kHeight),
          m_iChannel};
}

void CStream::Announce(size_t count, size_t extra, size_t misalignment) {
  const size_t size = PayloadSize() + extra;
  for (size_t i = 0; i < count; ++i) {
    m_Memory.push_back(std::make_unique<CGuardedMemory>(size, misalignment));
    BUFFER_HANDLE buffer = nullptr;
    EXPECT_OK(Gc().DSAnnounceBuffer(m_hStream, m_Memory.back()->Data(), size, m_Memory.back().get(), &buffer));
    Queue(buffer);
    m_Buffers.push_back(buffer);
  }
}

void CStream::Start(uint64_t frames) { EXPECT_OK(Gc().DSStartAcquisition(m_hStream, ACQ_START_FLAGS_DEFAULT, frames)); }

BUFFER_HANDLE CStream::Next(uint64_t timeout) {
  GC_ERROR result = GC_ERR_SUCCESS;
  BUFFER_HANDLE const buffer = NextBuffer(m_hEvent, timeout, &result);
  EXPECT_TRUE(CheckOk(result)) << "EventGetData";
  return buffer;
}

CGuardedMemory &CStream::Memory(BUFFER_HANDLE buffer) const {
  return *static_cast<CGuardedMemory *>(BufferValue<void *>(m_hStream, buffer, BUFFER_INFO_USER_PTR));
}

// Fixture -------------------------------------------------------------------------------------------------------------

void SimulationTest::SetUp() {
  m_pProducer = std::make_unique<CLoadedProducer>();
  ASSERT_OK(Gc().GCInitLib());
}

void SimulationTest::TearDown() {
  if (m_pProducer != nullptr) {
    EXPECT_OK(Gc().GCCloseLib());
  }
}

TL_HANDLE SimulationTest::OpenSystem() {
  if (m_hSystem == nullptr) {
    EXPECT_OK(Gc().TLOpen(&m_hSystem));
  }
  return m_hSystem;
}

IF_HANDLE SimulationTest::OpenInterface() {
  if (m_hInterface == nullptr) {
    TL_HANDLE const system = OpenSystem();
    EXPECT_OK(Gc().TLUpdateInterfaceList(system, nullptr, 100));
    const std::string id =
        SizedText([=](char *text, size_t *size) { return Gc().TLGetInterfaceID(system, 0, text, size); });
    EXPECT_OK(Gc().TLOpenInterface(system, id.c_str(), &m_hInterface));
  }
  return m_hInterface;
}

DEV_HANDLE SimulationTest::OpenDevice(uint32_t channel, DEVICE_ACCESS_FLAGS flags) {
  DEV_HANDLE device = nullptr;
  EXPECT_OK(Gc().IFOpenDevice(OpenInterface(), DeviceId(channel).c_str(), flags, &device));
  return device;
}

DEV_HANDLE SimulationTest::OpenDevice(uint32_t channel, uint32_t width, uint32_t height) {
  DEV_HANDLE const device = OpenDevice(channel);
  EXPECT_OK(WriteU32(device, kWidth, width));
  EXPECT_OK(WriteU32(device, kHeight, height));
  return device;
}

PORT_HANDLE SimulationTest::RemotePort(DEV_HANDLE device) {
  PORT_HANDLE port = nullptr;
  EXPECT_OK(Gc().DevGetPort(device, &port));
  return port;
}

}  // namespace SystemTest
