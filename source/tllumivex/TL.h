// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>

#include "BaseImplementation.h"
#include "ICommonBase.h"
#include "InterfaceInfo.h"
#include "RegisterMap.h"

namespace GenICam::Client {

class CInterface;

/// The GenTL System module: root of the module tree, list of the boards, owner of the open Interfaces.
///
/// Held by the one process-wide shared pointer, from TLOpen to TLClose or GCCloseLib. No board is touched before the
/// first list update, which the first query of the list brings about.
/// Threads: any Consumer thread. Locks: that of m_Children; the register map has none.
/// Throws what its operations say; discovery itself cannot fail.
class CTL : public std::enable_shared_from_this<CTL>, public ICommonBase {
 public:
  CTL();
  ~CTL() override;

  /// @name Interfaces
  /// The two list queries update a list that never was; the information query does not.
  /// @{
  uint32_t GetNumInterfaces();
  void GetInterfaceID(uint32_t iIndex, char *sID, size_t *piSize);
  void GetInterfaceInfo(const char *sIfaceID, INTERFACE_INFO_CMD iInfoCmd, INFO_DATATYPE *piType, void *pBuffer,
                        size_t *piSize);
  /// Runs board discovery. The time-out is accepted and ignored. @return whether a board came or went
  bool UpdateInterfaceList(uint64_t iTimeout);
  /// Opens the Interface with that id. @throws invalidparameter_error, resourceinuse_error
  CInterface *GetInterface(const char *sIfaceID);
  /// The end of an Interface's close.
  void ReleaseInterface(const std::shared_ptr<CInterface> &pInterface);
  /// Closes all Interfaces and empties the list.
  void CloseAll();
  /// @}

  /// Answers a TL_INFO_CMD, but for TL_INFO_ID, which the entry point keeps to itself.
  void GetInfo(TL_INFO_CMD iInfoCmd, INFO_DATATYPE *piType, void *pBuffer, size_t *piSize);

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
  void InitPort();
  void EnsureInterfaceList();
  static void OnRegisterWrite(uint64_t iAddress, uint32_t *pValue, void *pContext);
  void SelectInterface(uint32_t iIndex);

  CBaseImplementation<CInterface, CInterfaceInfo> m_Children;
  std::atomic<bool> m_bInterfaceListUpdated;
  CRegisterMap m_RegisterMap;
  uint32_t m_nXmlSize;
};

}  // namespace GenICam::Client
