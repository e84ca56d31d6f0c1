// SPDX-License-Identifier: MIT
#pragma once

#include <list>
#include <memory>

#include "DeviceInfo.h"
#include "InterfaceInfo.h"

namespace GenICam::Client {

/// Camera discovery for one Interface: tries the channels of its board, one after the other.
///
/// Owned by its CInterface; keeps nothing between two discoveries, the library's handles included. Runs on the calling
/// thread, takes no lock of its own; the Interface sees to it that lists are built one at a time. A channel that cannot
/// be opened is left out, not reported.
class CInterfaceImpl {
 public:
  explicit CInterfaceImpl(const std::shared_ptr<CInterfaceInfo> &pInterfaceInfo);

  /// Appends a description of each camera on the board's channels, in the order of the channel values, with its access
  /// status as a trial open found it. Never fails for want of a camera.
  void CollectDevices(std::list<std::shared_ptr<CDeviceInfo>> &Devices) const;

 private:
  std::shared_ptr<CDeviceInfo> ProbeChannel(uint32_t nChannel) const;

  std::shared_ptr<CInterfaceInfo> m_pInterfaceInfo;
};

}  // namespace GenICam::Client
