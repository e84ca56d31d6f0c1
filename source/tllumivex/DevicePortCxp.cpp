// SPDX-License-Identifier: MIT
#include "DevicePortCxp.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <cstring>
#include <vector>

#include "CxpRegisters.h"
#include "Device.h"
#include "DeviceRegisters.h"
#include "GrbChannelHandle.h"
#include "GrbUtility.h"
#include "Helper.h"
#include "ModuleDescription.h"
#include "Platform.h"
#include "Settings.h"
#include "TLIException.h"

namespace GenICam::Client {

namespace {

constexpr size_t kWordSize = 4;

/// Longest URL that is read out of a camera; two zeros follow it.
constexpr size_t kUrlSize = 2048;
constexpr size_t kUrlZeros = 2;

/// A custom access flag that writes ConnectionConfig through to the camera.
constexpr uint32_t kAccessUnguarded = 1001;

/// The fields of XmlVersion and XmlSchemaVersion (CoaXPress 1.1).
struct VersionFieldRow {
  URL_INFO_CMD iInfoCmd;
  uint32_t nRegister;
  uint32_t nShift;
};
constexpr VersionFieldRow kVersionFields[] = {
    {URL_INFO_SCHEMA_VER_MAJOR, CXP_XML_SCHEMA_VERSION, 16}, {URL_INFO_SCHEMA_VER_MINOR, CXP_XML_SCHEMA_VERSION, 8},
    {URL_INFO_FILE_VER_MAJOR, CXP_XML_VERSION, 16},          {URL_INFO_FILE_VER_MINOR, CXP_XML_VERSION, 8},
    {URL_INFO_FILE_VER_SUBMINOR, CXP_XML_VERSION, 0},
};

bool IsLocalUrl(const std::string &strUrl) {
  constexpr const char kPrefix[] = "LOCAL:";
  std::string strHead = strUrl.substr(0, sizeof(kPrefix) - 1);
  std::transform(strHead.begin(), strHead.end(), strHead.begin(),
                 [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; });
  return strHead == kPrefix;
}

/// A number of a URL; one of more than sixteen digits is cut to what an address can hold.
uint64_t HexNumber(const std::string &strText) {
  uint64_t nNumber = 0;
  for (const char c : strText) {
    uint8_t nDigit = 0;
    if (std::from_chars(&c, &c + 1, nDigit, 16).ptr == &c) {
      break;
    }
    nNumber = nNumber << 4U | nDigit;
  }
  return nNumber;
}

}  // namespace

CDevicePortCxp::CDevicePortCxp(const std::shared_ptr<CGrbChannelHandle> &pGrbChannelHandle, uint32_t dwAccessFlags,
                               const std::shared_ptr<CDevice> &pParentDevice)
    : ICommonBase("Remote Device", MODULE_KIND_REMOTE_DEVICE),
      m_pGrbChannelHandle(pGrbChannelHandle),
      m_pParentDevice(pParentDevice),
      m_dwAccessFlags(dwAccessFlags) {
  LVX_ASSERT(pGrbChannelHandle);
}

CDevicePortCxp::~CDevicePortCxp() = default;

uint32_t CDevicePortCxp::ReadRegister(uint64_t iAddress) {
  uint32_t nValue = 0;
  return *m_pGrbChannelHandle->CameraReadUInt32(&nValue, iAddress, Settings::TimeOut);
}

void CDevicePortCxp::ReadData(uint64_t iAddress, void *pBuffer, size_t *piSize) {
  RequirePointer(pBuffer, "Null pBuffer pointer", LVX_HERE);
  RequirePointer(piSize, "Null iSize pointer", LVX_HERE);
  const size_t iWanted = *piSize;
  const auto localUrl = m_LocalUrls.find(iAddress);
  const bool bFound = localUrl != m_LocalUrls.end();
  // A size that cannot be rounded up is one for which there is no memory either.
  const bool bRounded = bFound && iWanted <= SIZE_MAX - kWordSize;
  const size_t iRead = bRounded ? (iWanted + kWordSize - 1) / kWordSize * kWordSize : iWanted;
  // Never without memory: a read of no bytes has to trip over its size.
  std::vector<uint8_t> bytes(std::max(iRead, size_t{1}), 0);
  m_pGrbChannelHandle->CameraRead(bytes.data(), iRead, iAddress, Settings::TimeOut);
  std::memcpy(pBuffer, bytes.data(), iWanted);
  if (bFound && Settings::DebugOutputEnable && !Settings::DebugInfoOutputDir.empty()) {
    DumpFile(localUrl->second.strFileName, pBuffer, iWanted);
  }
}

void CDevicePortCxp::DumpFile(const std::string &strFileName, const void *pBuffer, size_t iSize) const {
  const std::string strPath = Settings::DebugInfoOutputDir + Lumivex::Platform::kFileSeparator + strFileName;
  const std::unique_ptr<std::FILE, int (*)(std::FILE *)> file(std::fopen(strPath.c_str(), "wb+"), &std::fclose);
  if (file != nullptr) {
    std::fwrite(pBuffer, 1, iSize, file.get());
  }
}

void CDevicePortCxp::WriteData(uint64_t iAddress, const void *pBuffer, size_t *piSize) {
  RequirePointer(pBuffer, "Null pBuffer pointer", LVX_HERE);
  RequirePointer(piSize, "Null iSize pointer", LVX_HERE);
  const bool bGuarded = m_dwAccessFlags >= DEVICE_ACCESS_CONTROL && m_dwAccessFlags != kAccessUnguarded;
  if (bGuarded && iAddress == CXP_CONNECTION_CONFIG) {
    WriteConnectionConfig(pBuffer, *piSize, LVX_HERE);
    return;
  }
  // Kept: the access flags are only reported, so a Consumer can write to the camera of a read-only Device. The library
  // takes its bytes by a plain pointer, and only reads through it.
  m_pGrbChannelHandle->CameraWrite(const_cast<void *>(pBuffer), *piSize, iAddress, Settings::TimeOut);
}

void CDevicePortCxp::WriteConnectionConfig(const void *pBuffer, size_t iSize, const char *pFunction, const char *pFile,
                                           uint32_t nLine) {
  if (iSize != kWordSize) {
    // Kept: nothing happens, and nothing is reported.
    return;
  }
  const std::shared_ptr<CDevice> pParentDevice = m_pParentDevice.lock();
  if (pParentDevice == nullptr) {
    throw unknown_error("Writing to remote device LinkConfig register (0x" + ToHex(CXP_CONNECTION_CONFIG) +
                            "): failed to retrieve handle to parent Device",
                        pFunction, pFile, nLine);
  }
  uint32_t nConnectionConfig = 0;
  std::memcpy(&nConnectionConfig, pBuffer, sizeof(nConnectionConfig));
  nConnectionConfig = SwapBytes(nConnectionConfig);
  const uint32_t nDiscoveryMode = CGrbUtility::GetCXPDiscoveryModeGrbParam(nConnectionConfig);
  const uint32_t nBitrateMode = CGrbUtility::GetCXPBitrateModeGrbParam(nConnectionConfig);
  size_t iRegisterSize = sizeof(nDiscoveryMode);
  pParentDevice->WriteData(REG_CXP_DISCOVERY_MODE, &nDiscoveryMode, &iRegisterSize);
  pParentDevice->WriteData(REG_CXP_BITRATE_MODE, &nBitrateMode, &iRegisterSize);
}

void CDevicePortCxp::GetURL(char *sURL, size_t *piSize) {
  RequirePointer(piSize, "Null size pointer", LVX_HERE);
  INFO_DATATYPE iType = INFO_DATATYPE_UNKNOWN;
  GetPortURLInfo(0, URL_INFO_URL, &iType, sURL, piSize);
}

void CDevicePortCxp::GetNumPortURLs(uint32_t *piNumURLs) {
  m_pGrbChannelHandle->CameraReadUInt32(piNumURLs, CXP_XML_MANIFEST_SIZE, Settings::TimeOut);
}

void CDevicePortCxp::GetPortURLInfo(uint32_t iURLIndex, URL_INFO_CMD iInfoCmd, INFO_DATATYPE *piType, void *pBuffer,
                                    size_t *piSize) {
  // Kept: a manifest of no entries wraps around, and every index passes.
  if (iURLIndex > ReadRegister(CXP_XML_MANIFEST_SIZE) - 1) {
    throw invalidparameter_error(UnknownUrlText(iURLIndex), LVX_HERE);
  }
  m_pGrbChannelHandle->CameraWriteUInt32(iURLIndex, CXP_XML_MANIFEST_SELECTOR, Settings::TimeOut);
  if (iInfoCmd == URL_INFO_URL) {
    AnswerUrl(piType, pBuffer, piSize);
    return;
  }
  for (const VersionFieldRow &row : kVersionFields) {
    if (row.iInfoCmd == iInfoCmd) {
      const auto iField = static_cast<int32_t>((ReadRegister(row.nRegister) >> row.nShift) & 0xFFU);
      SetReturnParam(pBuffer, piSize, piType, iField);
      return;
    }
  }
  throw invalidparameter_error(FormatMessageText("Invalid URL_INFO_CMD Command %08X", iInfoCmd), LVX_HERE);
}

void CDevicePortCxp::AnswerUrl(INFO_DATATYPE *piType, void *pBuffer, size_t *piSize) {
  if (Settings::EnableDebugCameraURL && !Settings::DebugCameraURL.empty()) {
    const std::string strUrl = Settings::DebugCameraURL + std::string(kUrlZeros, '\0');
    SetReturnParam(pBuffer, piSize, piType, INFO_DATATYPE_STRING, strUrl.data(), strUrl.size());
    return;
  }
  const uint32_t nUrlAddress = ReadRegister(CXP_XML_URL_ADDRESS);
  char url[kUrlSize + kUrlZeros] = {};
  size_t iLength = 0;
  bool bEnd = false;
  while (!bEnd && iLength < kUrlSize) {
    char *pWord = url + iLength;
    m_pGrbChannelHandle->CameraRead(pWord, kWordSize, uint64_t{nUrlAddress} + iLength, Settings::TimeOut);
    bEnd = std::find(pWord, pWord + kWordSize, '\0') != pWord + kWordSize;
    iLength += kWordSize;
  }
  // Kept: the answer is the whole last word and two zeros, not just the text.
  std::fill_n(url + iLength, kUrlZeros, '\0');
  SetReturnParam(pBuffer, piSize, piType, INFO_DATATYPE_STRING, url, iLength + kUrlZeros);
  if (pBuffer != nullptr) {
    NoteLocalUrl(url);
  }
}

void CDevicePortCxp::NoteLocalUrl(const std::string &strUrl) {
  constexpr size_t kNameBegin = 6;
  if (!IsLocalUrl(strUrl)) {
    return;
  }
  const size_t nNameEnd = strUrl.find(';', kNameBegin);
  if (nNameEnd == std::string::npos) {
    return;
  }
  const size_t nAddressEnd = std::min(strUrl.find(';', nNameEnd + 1), strUrl.size());
  const std::string strAddress = strUrl.substr(nNameEnd + 1, nAddressEnd - nNameEnd - 1);
  const std::string strSize = nAddressEnd < strUrl.size() ? strUrl.substr(nAddressEnd + 1) : std::string();
  m_LocalUrls[HexNumber(strAddress)] = {HexNumber(strSize), strUrl.substr(kNameBegin, nNameEnd - kNameBegin)};
}

void CDevicePortCxp::GetPortInfo(PORT_INFO_CMD iInfoCmd, INFO_DATATYPE *piType, void *pBuffer, size_t *piSize) {
  AnswerPortInfo({m_pGrbChannelHandle->GetId(), m_pGrbChannelHandle->GetVendor(), m_pGrbChannelHandle->GetModel(),
                  m_pGrbChannelHandle->GetTLType(), "Device", true, m_dwAccessFlags > DEVICE_ACCESS_READONLY, "Device",
                  "Invalid PORT_INFO_CMD 0x%08X."},
                 iInfoCmd, piType, pBuffer, piSize, LVX_HERE);
}

void CDevicePortCxp::Register(EVENT_TYPE iEventID, EVENT_HANDLE *) {
  // Kept: not the class that the other modules use.
  throw unknown_error(UnknownEventText(iEventID), LVX_HERE);
}

void CDevicePortCxp::Unregister(EVENT_TYPE iEventID) { throw unknown_error(UnknownEventText(iEventID), LVX_HERE); }

}  // namespace GenICam::Client
