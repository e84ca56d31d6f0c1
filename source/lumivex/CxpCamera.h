// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "Device.h"

namespace Lumivex::Consumer {

/// The camera's own start and stop of acquisition.
///
/// A CoaXPress camera tells in its bootstrap registers where its AcquisitionStart and AcquisitionStop registers are, so
/// neither its description nor a reader for it is needed. Cameras of other links, and those that do not answer, are
/// left alone: they may be running already, and if not, the wait for a frame ends with its time limit.
/// Ownership: belongs to the acquisition. Threads: one. Throws nothing.
class CCxpCamera {
 public:
  explicit CCxpCamera(const CDevice &device) noexcept;

  /// Whether the camera has taken the command.
  bool Start() const noexcept;
  bool Stop() const noexcept;

 private:
  bool ReadWord(uint64_t address, uint32_t &value) const noexcept;
  bool Command(uint64_t bootstrapRegister) const noexcept;

  const CProducer &m_Producer;
  GenTL::PORT_HANDLE m_hPort = GENTL_INVALID_HANDLE;
};

}  // namespace Lumivex::Consumer
