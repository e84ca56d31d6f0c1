// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <memory>

#include "BaseImplementation.h"
#include "DataStreamInfo.h"
#include "DeviceInfo.h"
#include "ICommonBase.h"
#include "RegisterMap.h"

namespace GenICam::Client {

class CDataStream;
class CDeviceImpl;
class CDevicePortCxp;
class CEventError;
class CGrbChannelHandle;
class CGrbStreamHandle;
class CInterface;

/// The GenTL Device module: one channel of a board, with the camera on it.
///
/// Made and owned by CInterface; holds its parent. Owns the library handles (shared with CDeviceImpl and the remote
/// port), the port by which the grabber is configured, the error event, and the one data stream.
/// Threads: any Consumer thread. Locks: that of m_Children only; the library handles look after themselves.
/// Opened READONLY or with a custom flag it has no stream handle, and so no stream and no grabber features.
class CDevice : public std::enable_shared_from_this<CDevice>, public ICommonBase {
 public:
  /// @throws unknown_error if the camera or, with control rights, the channel cannot be had
  static std::shared_ptr<CDevice> Create(const std::shared_ptr<CInterface> &pParentInterface,
                                         const std::shared_ptr<CDeviceInfo> &pDeviceInfo, uint32_t dwAccessFlags);
  ~CDevice() override;

  /// Closes the stream, drops the remote port, then leaves the Interface.
  void Close();

  /// The remote port, the same on each call. @throws invalidparameter_error, notimplemented_error
  void GetPort(PORT_HANDLE *phRemoteDevice);

  /// Number of data streams, 0 or 1.
  uint32_t GetNumDataStreams() const { return m_dwStreamCount; }
  void GetDataStreamID(uint32_t iIndex, char *sDataStreamID, size_t *piSize) const;
  /// Opens the stream with that name. @throws invalidparameter_error, notimplemented_error, resourceinuse_error
  CDataStream *OpenDataStream(const char *sDataStreamID);
  /// The end of a stream's close.
  void ReleaseChild(const std::shared_ptr<CDataStream> &pDataStream);

  void GetInfo(DEVICE_INFO_CMD iInfoCmd, INFO_DATATYPE *piType, void *pBuffer, size_t *piSize) const;

  const std::shared_ptr<CDeviceImpl> &GetDeviceImpl() const { return m_pDeviceImpl; }

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
  CDevice(const std::shared_ptr<CInterface> &pParentInterface, const std::shared_ptr<CDeviceInfo> &pDeviceInfo,
          uint32_t dwAccessFlags);

  void OpenHandles(const char *pFunction, const char *pFile, uint32_t nLine);
  void InitPort();
  void AddRegisters();
  void RequireWriteAccess(const char *pFunction, const char *pFile, uint32_t nLine) const;
  static void RegCB_WriteAccessParam(uint64_t iAddress, uint32_t *pValue, void *pContext);
  void RunConfigFileCommand(uint32_t nCommandAddress, uint32_t nNameAddress);

  // The order matters at the end: the library handles close with their last holder, m_pDeviceImpl, the stream's first.
  CBaseImplementation<CDataStream, CDataStreamInfo> m_Children;
  std::shared_ptr<CDeviceInfo> m_pDeviceInfo;
  std::shared_ptr<CInterface> m_pParentInterface;
  std::shared_ptr<CDeviceImpl> m_pDeviceImpl;
  std::shared_ptr<CGrbChannelHandle> m_pGrbChannelHandle;
  std::shared_ptr<CGrbStreamHandle> m_pGrbStreamHandle;
  std::shared_ptr<CDevicePortCxp> m_pPort;
  CRegisterMap m_RegisterMap;
  uint32_t m_dwXmlSize;
  uint32_t m_dwStreamCount;
  uint32_t m_dwAccessFlags;
  std::shared_ptr<CEventError> m_pEventError;
};

}  // namespace GenICam::Client
