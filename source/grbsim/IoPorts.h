// SPDX-License-Identifier: MIT
#ifndef GRBSIM_IOPORTS_H
#define GRBSIM_IOPORTS_H

#include <array>
#include <cstdint>
#include <mutex>

namespace grbsim {

/// The input and output ports of one board. A port's value in the GRB_IO_IN_PORT or GRB_IO_OUT_PORT enumeration is the
/// identifier of its parameter.
///
/// Owned by CSimBoard; entered by any thread; one lock of its own. Each output of the kinds 422, OPTO and TTL is wired
/// back to the input of the same kind and channel. A CHX port is that of the handle's own channel.
class CIoPorts {
 public:
  static bool IsInput(uint32_t identifier) noexcept;
  static bool IsOutput(uint32_t identifier) noexcept;

  /// An input gives its four levels. An output gives the method of the lowest bit in `mask` and that bit's level in
  /// bit 0.
  uint32_t Get(uint32_t identifier, uint32_t channel, uint32_t mask) const;
  /// Sets the method in the high byte of `value` for the output bits in its low end. Fails if either is none.
  void Set(uint32_t identifier, uint32_t channel, uint32_t value);

 private:
  static constexpr size_t kBits = 4;
  static constexpr size_t kKinds = 4;     // 422, OPTO, TTL, CC
  static constexpr size_t kChannels = 8;  // CHX of a channel above 4 has a port of its own

  struct Port {
    std::array<uint32_t, kBits> methods;
    uint32_t levels;
  };
  static size_t Index(uint32_t identifier, uint32_t first, uint32_t channel) noexcept;

  mutable std::mutex m_Lock;
  std::array<Port, kKinds *kChannels> m_Ports = MakePorts();  // guarded by m_Lock

  static std::array<Port, kKinds * kChannels> MakePorts();
};

}  // namespace grbsim

#endif
