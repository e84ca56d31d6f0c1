// SPDX-License-Identifier: MIT
#include "InterfaceImpl.h"

#include "GenTL.h"
#include "GrbChannelHandle.h"
#include "GrbStreamHandle.h"
#include "GrbUtility.h"
#include "Platform.h"

namespace GenICam::Client {

namespace {

/// The trial open that tells whether a camera is free; it ends with this object.
class CTrialOpen {
 public:
  CTrialOpen(uint32_t nBoard, uint32_t nChannel) {
    try {
      m_pStreamHandle = std::make_unique<CGrbStreamHandle>(nBoard, nChannel, true);
    } catch (...) {
      // Without a handle there is no telling: the camera counts as taken.
    }
  }
  bool IsFree() const { return m_pStreamHandle != nullptr && m_pStreamHandle->IsValid(); }

 private:
  std::unique_ptr<CGrbStreamHandle> m_pStreamHandle;
};

}  // namespace

CInterfaceImpl::CInterfaceImpl(const std::shared_ptr<CInterfaceInfo> &pInterfaceInfo)
    : m_pInterfaceInfo(pInterfaceInfo) {
  LVX_ASSERT(pInterfaceInfo);
}

void CInterfaceImpl::CollectDevices(std::list<std::shared_ptr<CDeviceInfo>> &Devices) const {
  LVX_ASSERT(Devices.empty());
  for (const uint32_t nChannel : kChannelValues) {
    const std::shared_ptr<CDeviceInfo> pDeviceInfo = ProbeChannel(nChannel);
    if (pDeviceInfo != nullptr) {
      Devices.push_back(pDeviceInfo);
    }
  }
}

std::shared_ptr<CDeviceInfo> CInterfaceImpl::ProbeChannel(uint32_t nChannel) const {
  const uint32_t nBoard = m_pInterfaceInfo->GetBoard();
  try {
    const CGrbChannelHandle channel(nBoard, nChannel, true);
    if (channel.IsValid()) {
      const CTrialOpen trial(nBoard, nChannel);
      const uint32_t nAccessStatus = trial.IsFree() ? DEVICE_ACCESS_STATUS_READWRITE : DEVICE_ACCESS_STATUS_NOACCESS;
      return std::make_shared<CDeviceInfo>(nAccessStatus, channel.GetDisplayName(), channel.GetVendor(),
                                           channel.GetModel(), channel.GetId(), channel.GetTLType(), nBoard, nChannel);
    }
  } catch (...) {
    // A channel whose handle cannot be created counts as empty.
  }
  return nullptr;
}

}  // namespace GenICam::Client
