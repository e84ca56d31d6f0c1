// SPDX-License-Identifier: MIT
#include "IoPorts.h"

#include "SimError.h"
#include "ValueRange.h"

namespace grbsim {
namespace {

constexpr uint32_t kStep = 0x100;        // between two ports
constexpr uint32_t kPortsOfOneKind = 5;  // CHX, CH1 to CH4
constexpr uint32_t kMethodMask = 0xFF000000U;

constexpr ValueRange kMethods[] = {{GRB_IO_METHOD_BIT_SET >> 24, GRB_IO_METHOD_BIT_CLEAR >> 24},
                                   {GRB_IO_METHOD_BIT_TIMERMX_POS >> 24, GRB_IO_METHOD_BIT_FIFO_WARN_POS >> 24},
                                   {GRB_IO_METHOD_BIT_TIMERMX_NEG >> 24, GRB_IO_METHOD_BIT_FIFO_WARN_NEG >> 24},
                                   {GRB_IO_METHOD_BIT_TIMERM1_POS_CHX >> 24, GRB_IO_METHOD_BIT_FGTRIGD_NEG_CH4 >> 24}};

bool IsPort(uint32_t identifier, uint32_t first, uint32_t last) {
  return identifier >= first && identifier <= last && (identifier - first) % kStep == 0;
}

}  // namespace

std::array<CIoPorts::Port, CIoPorts::kKinds * CIoPorts::kChannels> CIoPorts::MakePorts() {
  std::array<Port, kKinds * kChannels> ports{};
  for (Port &port : ports) {
    port.methods.fill(GRB_IO_METHOD_BIT_CLEAR);
  }
  return ports;
}

bool CIoPorts::IsInput(uint32_t identifier) noexcept { return IsPort(identifier, GRB_IO_422IN_CHX, GRB_IO_TTLIN_CH4); }

bool CIoPorts::IsOutput(uint32_t identifier) noexcept {
  return IsPort(identifier, GRB_IO_422OUT_CHX, GRB_IO_CCOUT_CH4);
}

size_t CIoPorts::Index(uint32_t identifier, uint32_t first, uint32_t channel) noexcept {
  const uint32_t port = (identifier - first) / kStep;
  const uint32_t place = port % kPortsOfOneKind;
  return (port / kPortsOfOneKind) * kChannels + (place == 0 ? channel : place) - 1;
}

uint32_t CIoPorts::Get(uint32_t identifier, uint32_t channel, uint32_t mask) const {
  std::lock_guard<std::mutex> lock(m_Lock);
  if (IsInput(identifier)) {
    return m_Ports[Index(identifier, GRB_IO_422IN_CHX, channel)].levels;
  }
  const Port &port = m_Ports[Index(identifier, GRB_IO_422OUT_CHX, channel)];
  for (size_t bit = 0; bit < kBits; ++bit) {
    if ((mask >> bit & 1U) != 0) {
      return port.methods[bit] | (port.levels >> bit & 1U);
    }
  }
  Fail(kStatusValue, "The value 0x%08X names no bit of output port 0x%08X.", mask, identifier);
}

void CIoPorts::Set(uint32_t identifier, uint32_t channel, uint32_t value) {
  const uint32_t bits = value & ~kMethodMask;
  if (!IsInRanges(kMethods, value >> 24)) {
    Fail(kStatusValue, "The value 0x%08X names no method of output port 0x%08X.", value, identifier);
  }
  if (bits == 0 || bits >= 1U << kBits) {
    Fail(kStatusValue, "The value 0x%08X names no bit of output port 0x%08X.", value, identifier);
  }
  std::lock_guard<std::mutex> lock(m_Lock);
  Port &port = m_Ports[Index(identifier, GRB_IO_422OUT_CHX, channel)];
  for (size_t bit = 0; bit < kBits; ++bit) {
    if ((bits >> bit & 1U) != 0) {
      port.methods[bit] = value & kMethodMask;
    }
  }
  if ((value & kMethodMask) == GRB_IO_METHOD_BIT_SET) {
    port.levels |= bits;
  } else {
    port.levels &= ~bits;
  }
}

}  // namespace grbsim
