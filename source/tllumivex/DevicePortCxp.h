// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>

#include "ICommonBase.h"

namespace GenICam::Client {

class CDevice;
class CGrbChannelHandle;

/// A file of the camera that its URL named.
struct CLocalUrlEntry {
  uint64_t nSize;
  std::string strFileName;
};

/// The GenTL remote device port: the camera's own registers, as bytes on the wire, and its description.
///
/// Made by CDevice at the first request and kept by it; holds the channel handle, and its Device weakly. Beside the
/// transfers it answers the URL questions from the camera's bootstrap registers (CoaXPress 1.1), rounds the read of a
/// description up to whole words, and turns a write of ConnectionConfig into a change of the grabber's link settings.
/// Threads: any Consumer thread. Locks: none, also around m_LocalUrls and around a selection with the reads behind it.
/// Throws timeout_error and io_error of the transfers, and what its operations say.
class CDevicePortCxp : public ICommonBase {
 public:
  CDevicePortCxp(const std::shared_ptr<CGrbChannelHandle> &pGrbChannelHandle, uint32_t dwAccessFlags,
                 const std::shared_ptr<CDevice> &pParentDevice);
  ~CDevicePortCxp() override;

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
  uint32_t ReadRegister(uint64_t iAddress);
  void AnswerUrl(INFO_DATATYPE *piType, void *pBuffer, size_t *piSize);
  void NoteLocalUrl(const std::string &strUrl);
  void WriteConnectionConfig(const void *pBuffer, size_t iSize, const char *pFunction, const char *pFile,
                             uint32_t nLine);
  void DumpFile(const std::string &strFileName, const void *pBuffer, size_t iSize) const;

  const std::shared_ptr<CGrbChannelHandle> m_pGrbChannelHandle;
  const std::weak_ptr<CDevice> m_pParentDevice;
  const uint32_t m_dwAccessFlags;
  std::map<uint64_t, CLocalUrlEntry> m_LocalUrls;
};

}  // namespace GenICam::Client
