// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "System.h"

namespace Lumivex::Consumer {

/// An open interface, that is a board, from TLOpenInterface to IFClose.
///
/// Ownership: shared by its devices and by the catalog's entries; holds its system.
/// Threads: one; no locks. Looking for cameras may take as long as a channel without a camera is waited for.
/// Throws CGenTLError.
class CInterface {
 public:
  CInterface(std::shared_ptr<const CSystem> pSystem, std::string id);
  CInterface(const CInterface &) = delete;
  CInterface &operator=(const CInterface &) = delete;
  ~CInterface();

  const CProducer &Producer() const noexcept { return m_pSystem->Producer(); }
  GenTL::IF_HANDLE Handle() const noexcept { return m_Handle; }
  const std::shared_ptr<const CSystem> &System() const noexcept { return m_pSystem; }

  /// Name for people to read.
  std::string DisplayName() const;

  /// Looks for cameras; their ids in the Producer's order.
  std::vector<std::string> FindDevices() const;

  /// A text about a device, which need not be open.
  std::string DeviceText(const std::string &deviceId, GenTL::DEVICE_INFO_CMD command) const;

  /// The access that a device would grant now.
  GenTL::DEVICE_ACCESS_STATUS DeviceAccessStatus(const std::string &deviceId) const;

 private:
  const std::shared_ptr<const CSystem> m_pSystem;
  const std::string m_Id;
  GenTL::IF_HANDLE m_Handle = GENTL_INVALID_HANDLE;
};

}  // namespace Lumivex::Consumer
