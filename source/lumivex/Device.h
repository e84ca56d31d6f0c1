// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "Interface.h"

namespace Lumivex::Consumer {

/// An open device, that is a camera as the host sees it, from IFOpenDevice to DevClose.
///
/// Ownership: shared by its streams and by the port of its registers; holds its interface.
/// Threads: one; no locks. While it is open for control, no other program can control the camera.
/// Throws CGenTLError; CCommandError(DeviceBusy) from the constructor when another program has it.
class CDevice {
 public:
  CDevice(std::shared_ptr<const CInterface> pInterface, const std::string &id, GenTL::DEVICE_ACCESS_FLAGS access);
  CDevice(const CDevice &) = delete;
  CDevice &operator=(const CDevice &) = delete;
  ~CDevice();

  const CProducer &Producer() const noexcept { return m_pInterface->Producer(); }
  GenTL::DEV_HANDLE Handle() const noexcept { return m_Handle; }

  std::string TransportLayerType() const;

  /// Ids of the data streams in the Producer's order.
  std::vector<std::string> StreamIds() const;

  /// The port to the camera's own registers; good until the device closes.
  GenTL::PORT_HANDLE RemotePort() const;

 private:
  const std::shared_ptr<const CInterface> m_pInterface;
  GenTL::DEV_HANDLE m_Handle = GENTL_INVALID_HANDLE;
};

}  // namespace Lumivex::Consumer
