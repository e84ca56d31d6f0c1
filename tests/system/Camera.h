// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Picture.h"
#include "SystemProducer.h"

namespace SystemTest {

constexpr uint64_t kFrameTimeout = 30000;  // ms; a frame takes about one
constexpr uint8_t kFilling = 0xA5;         // what memory holds before a frame is written

// Registers of the Device.
constexpr uint64_t kWidth = 0x604;
constexpr uint64_t kHeight = 0x60C;
constexpr uint64_t kIncomingPixelFormat = 0x61C;
constexpr uint64_t kPixelFormat = 0x620;
constexpr const char *kStreamId = "Stream #1";

/// Memory for a frame with guards around it, at an address of no alignment if one is asked for.
class CGuardedMemory {
 public:
  explicit CGuardedMemory(size_t size, size_t misalignment = 0);
  uint8_t *Data() { return m_Bytes.data() + m_iBegin; }
  size_t Size() const { return m_iSize; }
  void Fill();
  /// Whether nothing but the first `used` bytes has been written.
  bool IsUntouchedBeyond(size_t used) const;

 private:
  static constexpr size_t kGuardBytes = 64;
  size_t m_iSize;
  size_t m_iBegin;
  std::vector<uint8_t> m_Bytes;
};

/// An open stream with its new-buffer event and buffers in memory of its own. Closes the stream at its end, unless
/// Forget() was called because somebody else has. For one thread at a time, but Next(), which may have its own.
class CStream {
 public:
  CStream(DEV_HANDLE device, uint32_t channel);
  ~CStream();
  CStream(const CStream &) = delete;
  CStream &operator=(const CStream &) = delete;

  DS_HANDLE Handle() const { return m_hStream; }
  EVENT_HANDLE Event() const { return m_hEvent; }
  size_t PayloadSize() const { return StreamValue<size_t>(m_hStream, STREAM_INFO_PAYLOAD_SIZE); }
  PictureShape Shape() const;

  /// Announces that many buffers of the payload size and `extra` bytes, and queues them.
  void Announce(size_t count, size_t extra = 0, size_t misalignment = 0);
  void Queue(BUFFER_HANDLE buffer) { EXPECT_OK(Gc().DSQueueBuffer(m_hStream, buffer)); }
  void Start(uint64_t frames = GENTL_INFINITE);
  void Stop() { EXPECT_OK(Gc().DSStopAcquisition(m_hStream, ACQ_STOP_FLAGS_DEFAULT)); }
  /// The next frame's buffer; a failure is added when none comes.
  BUFFER_HANDLE Next(uint64_t timeout = kFrameTimeout);
  CGuardedMemory &Memory(BUFFER_HANDLE buffer) const;
  const std::vector<BUFFER_HANDLE> &Buffers() const { return m_Buffers; }
  void Forget() { m_hStream = nullptr; }

 private:
  DEV_HANDLE m_hDevice;
  uint32_t m_iChannel;
  DS_HANDLE m_hStream = nullptr;
  EVENT_HANDLE m_hEvent = nullptr;
  std::vector<std::unique_ptr<CGuardedMemory>> m_Memory;
  std::vector<BUFFER_HANDLE> m_Buffers;
};

/// A loaded, initialised Producer. What is open at the end is closed by GCCloseLib.
class SimulationTest : public testing::Test {
 protected:
  void SetUp() override;
  void TearDown() override;

  TL_HANDLE OpenSystem();
  IF_HANDLE OpenInterface();  ///< the one board
  DEV_HANDLE OpenDevice(uint32_t channel, DEVICE_ACCESS_FLAGS flags = DEVICE_ACCESS_CONTROL);
  /// The same, with the size of the frames set; small ones are quick.
  DEV_HANDLE OpenDevice(uint32_t channel, uint32_t width, uint32_t height);
  static std::string DeviceId(uint32_t channel) { return "Channel #" + std::to_string(channel); }
  static PORT_HANDLE RemotePort(DEV_HANDLE device);

  std::unique_ptr<CLoadedProducer> m_pProducer;
  TL_HANDLE m_hSystem = nullptr;
  IF_HANDLE m_hInterface = nullptr;
};

}  // namespace SystemTest
