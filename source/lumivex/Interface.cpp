// SPDX-License-Identifier: MIT
#include "Interface.h"

#include <utility>

namespace Lumivex::Consumer {
namespace {

constexpr uint64_t kDiscoveryMilliseconds = 1000;

}  // namespace

CInterface::CInterface(std::shared_ptr<const CSystem> pSystem, std::string id)
    : m_pSystem(std::move(pSystem)), m_Id(std::move(id)) {
  Producer().Call(Producer().Api().TLOpenInterface, m_pSystem->Handle(), m_Id.c_str(), &m_Handle);
}

CInterface::~CInterface() { Producer().Api().IFClose.address(m_Handle); }

std::string CInterface::DisplayName() const {
  return Producer().QueryText(Producer().Api().TLGetInterfaceInfo, m_pSystem->Handle(), m_Id.c_str(),
                              GenTL::INTERFACE_INFO_DISPLAYNAME);
}

std::vector<std::string> CInterface::FindDevices() const {
  const FunctionTable &api = Producer().Api();
  Producer().Call(api.IFUpdateDeviceList, m_Handle, nullptr, kDiscoveryMilliseconds);
  uint32_t count = 0;
  Producer().Call(api.IFGetNumDevices, m_Handle, &count);
  std::vector<std::string> ids;
  for (uint32_t i = 0; i < count; ++i) {
    ids.push_back(Producer().QueryId(api.IFGetDeviceID, m_Handle, i));
  }
  return ids;
}

std::string CInterface::DeviceText(const std::string &deviceId, GenTL::DEVICE_INFO_CMD command) const {
  return Producer().QueryText(Producer().Api().IFGetDeviceInfo, m_Handle, deviceId.c_str(), command);
}

GenTL::DEVICE_ACCESS_STATUS CInterface::DeviceAccessStatus(const std::string &deviceId) const {
  return static_cast<GenTL::DEVICE_ACCESS_STATUS>(Producer().QueryNumber(
      Producer().Api().IFGetDeviceInfo, m_Handle, deviceId.c_str(), GenTL::DEVICE_INFO_ACCESS_STATUS));
}

}  // namespace Lumivex::Consumer
