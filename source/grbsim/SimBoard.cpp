// SPDX-License-Identifier: MIT
#include "SimBoard.h"

#include <cstdio>

#include "ParameterTable.h"
#include "SimError.h"

namespace grbsim {
namespace {

// The first registers tell what the board is; the rest of the space is scratch memory.
constexpr uint32_t kIdentifier = 0x4C583443U;  // "LX4C"
constexpr size_t kReadOnlyRegisters = 4;

std::string MakeProperties(uint32_t number) {
  char serial[32];
  std::snprintf(serial, sizeof(serial), "LX4-%06u", 2600 + number);
  return std::string("Name=Lumivex\nModel=LX-CXP-4\nSerialNumber=") + serial +
         "\nFirmware=2.4.3\nInterface=CoaXPress\nConnectors=4\nSlot=4\nSimulated=Yes\n";
}

}  // namespace

CSimBoard::CSimBoard(uint32_t number) : m_strProperties(MakeProperties(number)) {
  m_Registers[0] = kIdentifier;
  m_Registers[1] = kRevHw;
  m_Registers[2] = kBoardInfo;
  m_Registers[3] = kPcieInfo;
  for (uint32_t channel = 1; channel <= kChannels; ++channel) {
    m_Channels[channel - 1] = std::make_unique<CSimChannel>(*this, number, channel);
  }
}

CSimBoard::~CSimBoard() {
  for (const std::unique_ptr<CSimChannel> &channel : m_Channels) {
    channel->Engine().Close();
  }
}

uint32_t CSimBoard::ReadRegister(uint32_t address) const {
  if (address % 4 != 0 || address / 4 >= kRegisters) {
    Fail(kStatusInvalidArgument, "The grabber has no register at address 0x%08X.", address);
  }
  std::lock_guard<std::mutex> lock(m_RegisterLock);
  return m_Registers[address / 4];
}

void CSimBoard::WriteRegister(uint32_t address, uint32_t value) {
  if (address % 4 != 0 || address / 4 >= kRegisters) {
    Fail(kStatusInvalidArgument, "The grabber has no register at address 0x%08X.", address);
  }
  if (address / 4 < kReadOnlyRegisters) {
    Fail(kStatusAccess, "The grabber register at address 0x%08X is read-only.", address);
  }
  std::lock_guard<std::mutex> lock(m_RegisterLock);
  m_Registers[address / 4] = value;
}

void CSimBoard::TimerPulses(uint32_t channel, uint32_t count) {
  for (const std::unique_ptr<CSimChannel> &target : m_Channels) {
    if (target->TimerChannel() == channel) {
      target->Engine().AddPulses(count);
    }
  }
}

}  // namespace grbsim
