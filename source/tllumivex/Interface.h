// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>

#include "BaseImplementation.h"
#include "DeviceInfo.h"
#include "ICommonBase.h"
#include "InterfaceInfo.h"
#include "RegisterMap.h"

namespace GenICam::Client {

class CDevice;
class CInterfaceImpl;
class CTL;

/// The GenTL Interface module: one frame-grabber board, the list of its cameras, and the open Devices.
///
/// Made and owned by CTL; holds its parent. The list stays empty until an update: by IFUpdateDeviceList, by a write of
/// the update register, or by the first OpenDevice.
/// Threads: any Consumer thread. Locks: that of m_Children, not held across discovery; the register map has none.
/// Throws what its operations say; a missing camera is no failure.
class CInterface : public std::enable_shared_from_this<CInterface>, public ICommonBase {
 public:
  static std::shared_ptr<CInterface> Create(const std::shared_ptr<CTL> &pParentTL,
                                            const std::shared_ptr<CInterfaceInfo> &pInterfaceInfo);
  ~CInterface() override;

  /// Closes the open Devices, then leaves the System module.
  void Close();

  /// Number of known Devices; does not update the list.
  uint32_t GetNumDevices() const;
  void GetDeviceID(uint32_t iIndex, char *sDeviceID, size_t *piSize) const;
  void GetDeviceInfo(const char *sDeviceID, DEVICE_INFO_CMD iInfoCmd, INFO_DATATYPE *piType, void *pBuffer,
                     size_t *piSize) const;
  /// Runs camera discovery. pbChanged may be null; the time-out is accepted and ignored.
  void UpdateDeviceList(bool8_t *pbChanged, uint64_t nTimeout);
  /// Opens the Device with that id. @throws invalidparameter_error, resourceinuse_error, unknown_error
  CDevice *OpenDevice(const char *sDeviceID, DEVICE_ACCESS_FLAGS iOpenFlags);
  /// The end of a Device's close.
  void ReleaseChild(const std::shared_ptr<CDevice> &pDevice);

  void GetInfo(INTERFACE_INFO_CMD iInfoCmd, INFO_DATATYPE *piType, void *pBuffer, size_t *piSize) const;

  void ReadData(uint64_t iAddress, void *pBuffer, size_t *piSize) override;
  void WriteData(uint64_t iAddress, const void *pBuffer, size_t *piSize) override;
  void GetURL(char *sURL, size_t *piSize) override;
  void GetPortInfo(PORT_INFO_CMD iInfoCmd, INFO_DATATYPE *piType, void *pBuffer, size_t *piSize) override;
  void GetNumPortURLs(uint32_t *piNumURLs) override;
  void GetPortURLInfo(uint32_t iURLIndex, URL_INFO_CMD iInfoCmd, INFO_DATATYPE *piType, void *pBuffer,
                      size_t *piSize) override;
  void Register(EVENT_TYPE iEventID, EVENT_HANDLE *phEvent) override;
  void Unregister(EVENT_TYPE iEventID) override;

 private:
  CInterface(const std::shared_ptr<CTL> &pParentTL, const std::shared_ptr<CInterfaceInfo> &pInterfaceInfo);

  void InitPort();
  void SelectDevice(uint32_t iIndex);
  static void OnRegisterWrite(uint64_t iAddress, uint32_t *pValue, void *pContext);
  static void OnRegisterRead(uint64_t iAddress, uint32_t *pValue, void *pContext);

  CBaseImplementation<CDevice, CDeviceInfo> m_Children;
  std::shared_ptr<CInterfaceInfo> m_pInterfaceInfo;
  std::shared_ptr<CTL> m_pParentTL;
  std::shared_ptr<CInterfaceImpl> m_pInterfaceImpl;
  CRegisterMap m_RegisterMap;
  uint32_t m_nXmlSize;
  std::atomic<bool> m_bDeviceListUpdated;
};

}  // namespace GenICam::Client
