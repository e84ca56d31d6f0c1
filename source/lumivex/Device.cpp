// SPDX-License-Identifier: MIT
#include "Device.h"

#include <utility>

namespace Lumivex::Consumer {

CDevice::CDevice(std::shared_ptr<const CInterface> pInterface, const std::string &id, GenTL::DEVICE_ACCESS_FLAGS access)
    : m_pInterface(std::move(pInterface)) {
  try {
    Producer().Call(Producer().Api().IFOpenDevice, m_pInterface->Handle(), id.c_str(), access, &m_Handle);
  } catch (const CGenTLError &error) {
    if (error.Result() == GenTL::GC_ERR_RESOURCE_IN_USE || error.Result() == GenTL::GC_ERR_ACCESS_DENIED) {
      throw CCommandError(ExitCode::DeviceBusy, "camera '" + id + "' is busy: " + error.what());
    }
    throw;
  }
}

CDevice::~CDevice() { Producer().Api().DevClose.address(m_Handle); }

std::string CDevice::TransportLayerType() const {
  return Producer().QueryText(Producer().Api().DevGetInfo, m_Handle, GenTL::DEVICE_INFO_TLTYPE);
}

std::vector<std::string> CDevice::StreamIds() const {
  const FunctionTable &api = Producer().Api();
  uint32_t count = 0;
  Producer().Call(api.DevGetNumDataStreams, m_Handle, &count);
  std::vector<std::string> ids;
  for (uint32_t i = 0; i < count; ++i) {
    ids.push_back(Producer().QueryId(api.DevGetDataStreamID, m_Handle, i));
  }
  return ids;
}

GenTL::PORT_HANDLE CDevice::RemotePort() const {
  GenTL::PORT_HANDLE port = GENTL_INVALID_HANDLE;
  Producer().Call(Producer().Api().DevGetPort, m_Handle, &port);
  return port;
}

}  // namespace Lumivex::Consumer
