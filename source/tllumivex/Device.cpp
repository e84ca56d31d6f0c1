// SPDX-License-Identifier: MIT
#include "Device.h"

#include <string>
#include <vector>

#include "DataStream.h"
#include "DeviceImpl.h"
#include "DevicePortCxp.h"
#include "DeviceRegisters.h"
#include "EventError.h"
#include "GrbChannelHandle.h"
#include "GrbStreamHandle.h"
#include "Helper.h"
#include "Interface.h"
#include "ModuleDescription.h"
#include "Platform.h"
#include "TLIException.h"

namespace GenICam::Client {

namespace {

constexpr const char *kStreamName = "Stream #1";
constexpr const char *kNoStreamName = "-";
constexpr const char *kNoStreams = "DataStream not supported with current Device Access Flag.";

}  // namespace

std::shared_ptr<CDevice> CDevice::Create(const std::shared_ptr<CInterface> &pParentInterface,
                                         const std::shared_ptr<CDeviceInfo> &pDeviceInfo, uint32_t dwAccessFlags) {
  LVX_ASSERT(pParentInterface);
  LVX_ASSERT(pDeviceInfo);
  return std::shared_ptr<CDevice>(new CDevice(pParentInterface, pDeviceInfo, dwAccessFlags));
}

CDevice::CDevice(const std::shared_ptr<CInterface> &pParentInterface, const std::shared_ptr<CDeviceInfo> &pDeviceInfo,
                 uint32_t dwAccessFlags)
    : ICommonBase(pDeviceInfo->GetId(), MODULE_KIND_DEVICE),
      m_pDeviceInfo(pDeviceInfo),
      m_pParentInterface(pParentInterface),
      m_RegisterMap(100),
      m_dwXmlSize(0),
      m_dwStreamCount(0),
      m_dwAccessFlags(dwAccessFlags),
      m_pEventError(std::make_shared<CEventError>()) {
  OpenHandles(LVX_HERE);
  m_dwStreamCount = m_Children.GetNumChildren();
  m_pDeviceImpl = std::make_shared<CDeviceImpl>(m_pGrbChannelHandle, m_pGrbStreamHandle);
  InitPort();
  m_RegisterMap.SetValue(REG_DATA_STREAM_OPEN, m_dwStreamCount != 0 ? 1 : 0);
}

CDevice::~CDevice() = default;

void CDevice::OpenHandles(const char *pFunction, const char *pFile, uint32_t nLine) {
  const uint32_t nBoard = m_pDeviceInfo->GetBoard();
  const uint32_t nChannel = m_pDeviceInfo->GetChannel();
  m_pGrbChannelHandle = std::make_shared<CGrbChannelHandle>(nBoard, nChannel, true);
  LVX_ASSERT(m_pGrbChannelHandle != 0);
  if (!m_pGrbChannelHandle->IsValid()) {
    throw unknown_error("Attempting to use a Device but GRB Channel handle not valid.", pFunction, pFile, nLine);
  }
  if (m_dwAccessFlags != DEVICE_ACCESS_CONTROL && m_dwAccessFlags != DEVICE_ACCESS_EXCLUSIVE) {
    return;
  }
  const auto pGrbStreamHandle = std::make_shared<CGrbStreamHandle>(nBoard, nChannel, true);
  m_pGrbStreamHandle = pGrbStreamHandle;
  LVX_ASSERT(pGrbStreamHandle != 0);
  if (!pGrbStreamHandle->IsValid()) {
    throw unknown_error(
        "Opening Device in DEVICE_ACCESS_CONTROL or DEVICE_ACCESS_EXCLUSIVE access mode but GRB Stream handle not "
        "valid.",
        pFunction, pFile, nLine);
  }
  m_Children.UpdateChildList({std::make_shared<CDataStreamInfo>(kStreamName, nBoard, nChannel)});
}

void CDevice::InitPort() {
  const std::vector<uint32_t> xml = LoadDescription(kDeviceDescription, LVX_HERE);
  m_dwXmlSize = static_cast<uint32_t>(xml.size() * sizeof(uint32_t));
  m_RegisterMap.Resize(m_dwXmlSize + kDeviceDescription.nXmlAddress);
  AddRegisters();
  m_RegisterMap.AddBlock(kDeviceDescription.nXmlAddress, ACCESS_READ, xml.data(), m_dwXmlSize, 0, nullptr, nullptr,
                         nullptr, false);
}

void CDevice::AddRegisters() {
  const struct {
    uint32_t nAddress;
    std::string strText;
  } kTexts[] = {
      {REG_DEVICE_ID, m_pDeviceInfo->GetId()},
      {REG_DEVICE_VENDOR_NAME, m_pDeviceInfo->GetVendor()},
      {REG_DEVICE_MODEL_NAME, m_pDeviceInfo->GetModel()},
      {REG_DEVICE_DISPLAY_NAME, m_pDeviceInfo->GetDisplayName()},
      {REG_STREAM_ID, m_dwStreamCount != 0 ? m_Children.GetChildName(0) : kNoStreamName},
  };
  const auto textOf = [&kTexts](uint32_t nAddress) {
    for (const auto &row : kTexts) {
      if (row.nAddress == nAddress) {
        return row.strText;
      }
    }
    return std::string();
  };

  for (const DeviceRegister &row : kDeviceRegisters) {
    const bool bVirtual = row.backing == Backing::Virtual;
    const RegisterCallback pCallback = row.backing == Backing::Callback ? &CDevice::RegCB_WriteAccessParam : nullptr;
    void *pContext = row.backing == Backing::Callback ? this : nullptr;
    if (row.nBytes == 4) {
      m_RegisterMap.AddRegister(row.nAddress, row.nAccess, 0, 0, pCallback, pContext, nullptr, bVirtual);
    } else if (row.nBytes == 8) {
      m_RegisterMap.AddRegister64(row.nAddress, row.nAccess, 0, 0, false, pCallback, pContext, nullptr, bVirtual);
    } else {
      m_RegisterMap.AddString(row.nAddress, row.nAccess, textOf(row.nAddress), row.nBytes, 0, pCallback, pContext,
                              nullptr, bVirtual);
    }
  }
  m_RegisterMap.SetValue(REG_UNNAMED_ONE, 1);
  m_RegisterMap.SetValue(REG_STREAM_COUNT, m_dwStreamCount);
}

void CDevice::Close() {
  m_Children.CloseAll();
  m_pPort.reset();
  m_pEventError->EndAllWaits();
  // The object ends with this pointer.
  const std::shared_ptr<CDevice> pThis = shared_from_this();
  m_pParentInterface->ReleaseChild(pThis);
}

void CDevice::GetPort(PORT_HANDLE *phRemoteDevice) {
  RequirePointer(phRemoteDevice, "Null pointer for Port handle", LVX_HERE);
  if (m_pPort == nullptr) {
    if (m_pDeviceInfo->GetTLType() != "CXP") {
      throw notimplemented_error("Unsupported TL technology.", LVX_HERE);
    }
    m_pPort = std::make_shared<CDevicePortCxp>(m_pGrbChannelHandle, m_dwAccessFlags, shared_from_this());
  }
  *phRemoteDevice = HandleOf(m_pPort.get());
}

void CDevice::GetDataStreamID(uint32_t iIndex, char *sDataStreamID, size_t *piSize) const {
  if (m_Children.GetNumChildren() == 0) {
    throw notimplemented_error(kNoStreams, LVX_HERE);
  }
  m_Children.GetChildName(iIndex, sDataStreamID, piSize);
}

CDataStream *CDevice::OpenDataStream(const char *sDataStreamID) {
  RequirePointer(sDataStreamID, "Null pointer for Stream ID", LVX_HERE);
  if (m_Children.GetNumChildren() == 0) {
    throw notimplemented_error(kNoStreams, LVX_HERE);
  }
  const std::shared_ptr<CDataStreamInfo> pDataStreamInfo = m_Children.FindChild(sDataStreamID);
  if (m_Children.IsOpened(pDataStreamInfo->GetId())) {
    throw resourceinuse_error(FormatMessageText("Child is already opened (%s).", sDataStreamID), LVX_HERE);
  }
  const std::shared_ptr<CDataStream> pDataStream = CDataStream::Create(shared_from_this(), pDataStreamInfo);
  m_Children.AddChild(pDataStream);
  return pDataStream.get();
}

void CDevice::ReleaseChild(const std::shared_ptr<CDataStream> &pDataStream) { m_Children.ReleaseChild(pDataStream); }

void CDevice::GetInfo(DEVICE_INFO_CMD iInfoCmd, INFO_DATATYPE *piType, void *pBuffer, size_t *piSize) const {
  if (iInfoCmd != DEVICE_INFO_ACCESS_STATUS) {
    m_pDeviceInfo->GetInfo(iInfoCmd, piType, pBuffer, piSize);
    return;
  }
  int32_t iStatus = DEVICE_ACCESS_STATUS_NOACCESS;
  if (m_dwAccessFlags == DEVICE_ACCESS_READONLY) {
    iStatus = DEVICE_ACCESS_STATUS_READONLY;
  } else if (m_dwAccessFlags == DEVICE_ACCESS_CONTROL || m_dwAccessFlags == DEVICE_ACCESS_EXCLUSIVE) {
    iStatus = DEVICE_ACCESS_STATUS_READWRITE;
  }
  SetReturnParam(pBuffer, piSize, piType, iStatus);
}

void CDevice::RequireWriteAccess(const char *pFunction, const char *pFile, uint32_t nLine) const {
  if (m_dwAccessFlags < DEVICE_ACCESS_CONTROL) {
    throw accessdenied_error("Cannot write to device in READONLY mode.", pFunction, pFile, nLine);
  }
}

void CDevice::ReadData(uint64_t iAddress, void *pBuffer, size_t *piSize) {
  if (m_RegisterMap.Read(iAddress, static_cast<uint32_t *>(pBuffer), *piSize)) {
    m_pDeviceImpl->GetVirtualRegister(static_cast<uint32_t>(iAddress), pBuffer, piSize);
  }
}

void CDevice::WriteData(uint64_t iAddress, const void *pBuffer, size_t *piSize) {
  RequireWriteAccess(LVX_HERE);
  if (m_RegisterMap.Write(iAddress, static_cast<const uint32_t *>(pBuffer), *piSize)) {
    // The library takes its values by plain pointers, and only reads through them.
    m_pDeviceImpl->SetVirtualRegister(static_cast<uint32_t>(iAddress), const_cast<void *>(pBuffer), *piSize);
  }
}

void CDevice::RegCB_WriteAccessParam(uint64_t iAddress, uint32_t *, void *pContext) {
  CDevice *pThis = static_cast<CDevice *>(pContext);
  if (pThis == nullptr) {
    return;
  }
  pThis->RequireWriteAccess(LVX_HERE);
  // Kept: the stream selector has no callback; StreamID stays the name of stream 0 whatever it says.
  if (iAddress == REG_CONFIG_FILE_LOAD) {
    pThis->RunConfigFileCommand(REG_CONFIG_FILE_LOAD, REG_CONFIG_FILE);
  } else if (iAddress == REG_CONFIG_FILE_SAVE) {
    pThis->RunConfigFileCommand(REG_CONFIG_FILE_SAVE, REG_CONFIG_FILE_SAVE_NAME);
  }
}

void CDevice::RunConfigFileCommand(uint32_t nCommandAddress, uint32_t nNameAddress) {
  // A name may fill its register: the word behind it is the terminator.
  uint32_t name[kConfigFileNameSize / sizeof(uint32_t) + 1] = {};
  m_RegisterMap.GetValues(nNameAddress, name, kConfigFileNameSize);
  m_pDeviceImpl->SetVirtualRegister(nCommandAddress, name, kConfigFileNameSize);
}

void CDevice::GetURL(char *sURL, size_t *piSize) {
  // Kept: one byte more than the text and its terminator, so that the answer ends in two zeros.
  std::string strUrl = FormatDescriptionUrl(kDeviceDescription, m_dwXmlSize);
  strUrl.back() = '\0';
  INFO_DATATYPE iType = INFO_DATATYPE_UNKNOWN;
  SetReturnParam(sURL, piSize, &iType, INFO_DATATYPE_UNKNOWN, strUrl.c_str(), strUrl.size() + 1);
}

void CDevice::GetNumPortURLs(uint32_t *piNumURLs) { *piNumURLs = 1; }

void CDevice::GetPortURLInfo(uint32_t iURLIndex, URL_INFO_CMD iInfoCmd, INFO_DATATYPE *piType, void *pBuffer,
                             size_t *piSize) {
  GetDescriptionUrlInfo(kDeviceDescription, m_dwXmlSize, iURLIndex, iInfoCmd, piType, pBuffer, piSize, LVX_HERE);
}

void CDevice::GetPortInfo(PORT_INFO_CMD iInfoCmd, INFO_DATATYPE *piType, void *pBuffer, size_t *piSize) {
  const bool bAccessWrite = m_dwAccessFlags > DEVICE_ACCESS_READONLY;
  AnswerPortInfo({m_pDeviceInfo->GetId(), kVendorName, kModelName, "CXP", "TLDevice", false, bAccessWrite, "DevicePort",
                  "Invalid Port Info Command %d"},
                 iInfoCmd, piType, pBuffer, piSize, LVX_HERE);
}

void CDevice::Register(EVENT_TYPE iEventID, EVENT_HANDLE *phEvent) {
  if (iEventID != EVENT_ERROR) {
    throw notimplemented_error(UnknownEventText(iEventID), LVX_HERE);
  }
  m_pEventError->EnableEvent();
  *phEvent = HandleOf(m_pEventError.get());
}

void CDevice::Unregister(EVENT_TYPE iEventID) {
  if (iEventID != EVENT_ERROR) {
    throw notimplemented_error(UnknownEventText(iEventID), LVX_HERE);
  }
  m_pEventError->DisableEvent();
}

}  // namespace GenICam::Client
