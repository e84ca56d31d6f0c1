// SPDX-License-Identifier: MIT
#ifndef GRBSIM_SIMBOARD_H
#define GRBSIM_SIMBOARD_H

#include <array>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>

#include "IoPorts.h"
#include "SimChannel.h"

namespace grbsim {

/// One frame-grabber board: its properties, its own registers, its ports and its eight channels.
///
/// Owned by CSimLibrary from the first use to the unloading of the library. Entered by any thread. One lock, for the
/// registers; the ports and channels have theirs.
class CSimBoard {
 public:
  static constexpr uint32_t kChannels = 8;

  explicit CSimBoard(uint32_t number);
  /// Ends all streams before the first channel goes: a channel's thread may look at the timers of another.
  ~CSimBoard();
  CSimBoard(const CSimBoard &) = delete;
  CSimBoard &operator=(const CSimBoard &) = delete;

  /// "key=value" lines; the pointer is good until the library is unloaded.
  const char *Properties() const noexcept { return m_strProperties.c_str(); }
  /// A channel by its number, 1 to 8.
  CSimChannel &Channel(uint32_t number) { return *m_Channels.at(number - 1); }
  CIoPorts &Ports() noexcept { return m_Ports; }

  uint32_t ReadRegister(uint32_t address) const;
  void WriteRegister(uint32_t address, uint32_t value);

  /// Gives the pulses of a channel's timer A1 to every channel of the board that is triggered by it.
  void TimerPulses(uint32_t channel, uint32_t count);

 private:
  static constexpr size_t kRegisters = 64;

  const std::string m_strProperties;
  CIoPorts m_Ports;
  mutable std::mutex m_RegisterLock;
  std::array<uint32_t, kRegisters> m_Registers{};  // guarded by m_RegisterLock
  std::array<std::unique_ptr<CSimChannel>, kChannels> m_Channels;
};

}  // namespace grbsim

#endif
