// SPDX-License-Identifier: MIT
#include "CxpCamera.h"

#include <array>
#include <cstddef>
#include <exception>

namespace Lumivex::Consumer {
namespace {

// Bootstrap registers: 32 bits, big-endian.
constexpr uint64_t kStandard = 0x0000;
constexpr uint64_t kAcquisitionStartAddress = 0x300C;
constexpr uint64_t kAcquisitionStopAddress = 0x3010;
constexpr uint32_t kCoaXPress = 0xC0A79AE5;

}  // namespace

CCxpCamera::CCxpCamera(const CDevice &device) noexcept : m_Producer(device.Producer()) {
  try {
    if (device.TransportLayerType() != "CXP") {
      return;
    }
    m_hPort = device.RemotePort();
    uint32_t standard = 0;
    if (!ReadWord(kStandard, standard) || standard != kCoaXPress) {
      m_hPort = GENTL_INVALID_HANDLE;
    }
  } catch (const std::exception &) {
    m_hPort = GENTL_INVALID_HANDLE;
  }
}

bool CCxpCamera::Start() const noexcept { return Command(kAcquisitionStartAddress); }

bool CCxpCamera::Stop() const noexcept { return Command(kAcquisitionStopAddress); }

bool CCxpCamera::ReadWord(uint64_t address, uint32_t &value) const noexcept {
  std::array<unsigned char, 4> bytes{};
  std::size_t size = bytes.size();
  if (m_Producer.Api().GCReadPort.address(m_hPort, address, bytes.data(), &size) != GenTL::GC_ERR_SUCCESS) {
    return false;
  }
  value = 0;
  for (const unsigned char byte : bytes) {
    value = value << 8U | byte;
  }
  return true;
}

bool CCxpCamera::Command(uint64_t bootstrapRegister) const noexcept {
  uint32_t command = 0;
  if (m_hPort == GENTL_INVALID_HANDLE || !ReadWord(bootstrapRegister, command) || command == 0) {
    return false;
  }
  constexpr std::array<unsigned char, 4> kOne = {0, 0, 0, 1};
  std::size_t size = kOne.size();
  return m_Producer.Api().GCWritePort.address(m_hPort, command, kOne.data(), &size) == GenTL::GC_ERR_SUCCESS;
}

}  // namespace Lumivex::Consumer
