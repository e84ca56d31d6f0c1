// SPDX-License-Identifier: MIT
#include "Interface.h"

#include <list>
#include <string>
#include <vector>

#include "Device.h"
#include "Helper.h"
#include "InterfaceImpl.h"
#include "ModuleDescription.h"
#include "Platform.h"
#include "TL.h"
#include "TLIException.h"

namespace GenICam::Client {

namespace Platform = Lumivex::Platform;

namespace {

enum InterfaceRegister : uint64_t {
  REG_INTERFACE_ID = 0x000,
  REG_INTERFACE_DISPLAY_NAME = 0x100,
  REG_UPDATE_DEVICE_LIST = 0x280,
  REG_DEVICE_ID = 0x380,
  REG_DEVICE_COUNT = 0x480,
  REG_DEVICE_SELECTOR = 0x484,
  REG_DEVICE_VENDOR_NAME = 0x488,
  REG_DEVICE_MODEL_NAME = 0x4C8,
  REG_DEVICE_TYPE = 0x508,
  REG_DEVICE_DISPLAY_NAME = 0x52C,
  REG_DEVICE_ACCESS_STATUS = 0x62C,
};

/// Time-outs of the updates that the module runs by itself. Discovery ignores them.
constexpr uint64_t kOpenTimeout = 200;
constexpr uint64_t kRegisterTimeout = 500;

constexpr const char *kNoDevice = "No Device Selected";

}  // namespace

std::shared_ptr<CInterface> CInterface::Create(const std::shared_ptr<CTL> &pParentTL,
                                               const std::shared_ptr<CInterfaceInfo> &pInterfaceInfo) {
  LVX_ASSERT(pParentTL);
  LVX_ASSERT(pInterfaceInfo);
  return std::shared_ptr<CInterface>(new CInterface(pParentTL, pInterfaceInfo));
}

CInterface::CInterface(const std::shared_ptr<CTL> &pParentTL, const std::shared_ptr<CInterfaceInfo> &pInterfaceInfo)
    : ICommonBase(pInterfaceInfo->GetId(), MODULE_KIND_INTERFACE),
      m_pInterfaceInfo(pInterfaceInfo),
      m_pParentTL(pParentTL),
      m_pInterfaceImpl(std::make_shared<CInterfaceImpl>(pInterfaceInfo)),
      m_RegisterMap(100),
      m_nXmlSize(0),
      m_bDeviceListUpdated(false) {
  InitPort();
}

CInterface::~CInterface() = default;

void CInterface::InitPort() {
  if (Platform::LocalModuleHandle() == nullptr) {
    throw invalidparameter_error("Invalid Module Handle", LVX_HERE);
  }
  const std::vector<uint32_t> xml = LoadDescription(kInterfaceDescription, LVX_HERE);
  m_nXmlSize = static_cast<uint32_t>(xml.size() * sizeof(uint32_t));
  m_RegisterMap.Resize(kInterfaceDescription.nXmlAddress + m_nXmlSize);

  const auto addNumber = [this](uint64_t iAddress, uint32_t nValue) {
    m_RegisterMap.AddRegister(iAddress, ACCESS_READ, nValue, 0, nullptr, nullptr, nullptr, false);
  };
  const auto addCommand = [this](uint64_t iAddress) {
    m_RegisterMap.AddRegister(iAddress, ACCESS_READ_WRITE, 0, 0, &CInterface::OnRegisterWrite, this,
                              &CInterface::OnRegisterRead, false);
  };
  const auto addText = [this](uint64_t iAddress, uint64_t iSize, const std::string &strText) {
    m_RegisterMap.AddString(iAddress, ACCESS_READ, strText, iSize, 0, nullptr, nullptr, nullptr, false);
  };

  addCommand(REG_UPDATE_DEVICE_LIST);
  addText(REG_INTERFACE_ID, 256, m_pInterfaceInfo->GetId());
  addText(REG_INTERFACE_DISPLAY_NAME, 256, m_pInterfaceInfo->GetDisplayName());
  addNumber(REG_DEVICE_COUNT, m_Children.GetNumChildren());
  addCommand(REG_DEVICE_SELECTOR);
  addText(REG_DEVICE_ID, 256, kNoDevice);
  addText(REG_DEVICE_VENDOR_NAME, 64, kNoDevice);
  addText(REG_DEVICE_MODEL_NAME, 64, kNoDevice);
  addText(REG_DEVICE_TYPE, 32, m_pInterfaceInfo->GetTLType());
  addText(REG_DEVICE_DISPLAY_NAME, 256, kNoDevice);
  addNumber(REG_DEVICE_ACCESS_STATUS, 0);
  m_RegisterMap.AddBlock(kInterfaceDescription.nXmlAddress, ACCESS_READ, xml.data(), m_nXmlSize, 0, nullptr, nullptr,
                         nullptr, false);
}

void CInterface::Close() {
  m_Children.CloseAll();
  m_RegisterMap.SetValue(REG_DEVICE_COUNT, m_Children.GetNumChildren());
  // The object ends with this pointer.
  const std::shared_ptr<CInterface> pThis = shared_from_this();
  m_pParentTL->ReleaseInterface(pThis);
}

uint32_t CInterface::GetNumDevices() const { return m_Children.GetNumChildren(); }

void CInterface::GetDeviceID(uint32_t iIndex, char *sDeviceID, size_t *piSize) const {
  m_Children.GetChildName(iIndex, sDeviceID, piSize);
}

void CInterface::GetDeviceInfo(const char *sDeviceID, DEVICE_INFO_CMD iInfoCmd, INFO_DATATYPE *piType, void *pBuffer,
                               size_t *piSize) const {
  m_Children.FindChild(sDeviceID)->GetInfo(iInfoCmd, piType, pBuffer, piSize);
}

void CInterface::UpdateDeviceList(bool8_t *pbChanged, uint64_t) {
  std::list<std::shared_ptr<CDeviceInfo>> Devices;
  m_pInterfaceImpl->CollectDevices(Devices);
  const bool bChanged = m_Children.UpdateChildList(Devices);
  if (pbChanged != nullptr) {
    *pbChanged = bChanged;
  }
  const uint32_t nCount = m_Children.GetNumChildren();
  m_RegisterMap.SetValue(REG_DEVICE_COUNT, nCount);
  if (nCount != 0) {
    m_RegisterMap.WriteReg(REG_DEVICE_SELECTOR, 0);
  }
  m_bDeviceListUpdated = true;
}

CDevice *CInterface::OpenDevice(const char *sDeviceID, DEVICE_ACCESS_FLAGS iOpenFlags) {
  if (!m_bDeviceListUpdated) {
    UpdateDeviceList(nullptr, kOpenTimeout);
  }
  const std::shared_ptr<CDeviceInfo> pDeviceInfo = m_Children.FindChild(sDeviceID);
  if (m_Children.IsOpened(pDeviceInfo->GetId())) {
    throw resourceinuse_error(FormatMessageText("Device (%s) is already open.", sDeviceID), LVX_HERE);
  }
  const std::shared_ptr<CDevice> pDevice =
      CDevice::Create(shared_from_this(), pDeviceInfo, static_cast<uint32_t>(iOpenFlags));
  m_Children.AddChild(pDevice);
  return pDevice.get();
}

void CInterface::ReleaseChild(const std::shared_ptr<CDevice> &pDevice) { m_Children.ReleaseChild(pDevice); }

void CInterface::GetInfo(INTERFACE_INFO_CMD iInfoCmd, INFO_DATATYPE *piType, void *pBuffer, size_t *piSize) const {
  m_pInterfaceInfo->GetInfo(iInfoCmd, piType, pBuffer, piSize);
}

void CInterface::OnRegisterWrite(uint64_t iAddress, uint32_t *pValue, void *pContext) {
  if (pContext == nullptr) {
    return;
  }
  CInterface *pThis = static_cast<CInterface *>(pContext);
  if (iAddress == REG_UPDATE_DEVICE_LIST) {
    pThis->UpdateDeviceList(nullptr, kRegisterTimeout);
  } else if (iAddress == REG_DEVICE_SELECTOR) {
    pThis->SelectDevice(*pValue);
  }
}

// Kept: a read has nothing to bring up to date.
void CInterface::OnRegisterRead(uint64_t, uint32_t *, void *) {}

void CInterface::SelectDevice(uint32_t iIndex) {
  const std::string strId = m_Children.GetChildName(iIndex);
  const std::shared_ptr<CDeviceInfo> pDeviceInfo = m_Children.FindChild(strId.c_str());
  m_RegisterMap.SetString(REG_DEVICE_VENDOR_NAME, pDeviceInfo->GetVendor());
  m_RegisterMap.SetString(REG_DEVICE_MODEL_NAME, pDeviceInfo->GetModel());
  m_RegisterMap.SetString(REG_DEVICE_ID, pDeviceInfo->GetId());
  m_RegisterMap.SetString(REG_DEVICE_DISPLAY_NAME, pDeviceInfo->GetDisplayName());
  m_RegisterMap.SetValue(REG_DEVICE_ACCESS_STATUS, pDeviceInfo->GetAccessStatus());
}

void CInterface::ReadData(uint64_t iAddress, void *pBuffer, size_t *piSize) {
  m_RegisterMap.Read(iAddress, static_cast<uint32_t *>(pBuffer), *piSize);
}

void CInterface::WriteData(uint64_t iAddress, const void *pBuffer, size_t *piSize) {
  m_RegisterMap.Write(iAddress, static_cast<const uint32_t *>(pBuffer), *piSize);
}

void CInterface::GetURL(char *sURL, size_t *piSize) {
  GetDescriptionUrl(kInterfaceDescription, m_nXmlSize, sURL, piSize, LVX_HERE);
}

void CInterface::GetNumPortURLs(uint32_t *piNumURLs) { *piNumURLs = 1; }

void CInterface::GetPortURLInfo(uint32_t iURLIndex, URL_INFO_CMD iInfoCmd, INFO_DATATYPE *piType, void *pBuffer,
                                size_t *piSize) {
  GetDescriptionUrlInfo(kInterfaceDescription, m_nXmlSize, iURLIndex, iInfoCmd, piType, pBuffer, piSize, LVX_HERE);
}

void CInterface::GetPortInfo(PORT_INFO_CMD iInfoCmd, INFO_DATATYPE *piType, void *pBuffer, size_t *piSize) {
  AnswerPortInfo({m_pInterfaceInfo->GetId(), kVendorName, kModelName, m_pInterfaceInfo->GetTLType(), "TLInterface",
                  false, true, "InterfacePort", "Invalid Port Info Command %d"},
                 iInfoCmd, piType, pBuffer, piSize, LVX_HERE);
}

void CInterface::Register(EVENT_TYPE iEventID, EVENT_HANDLE *) {
  throw notimplemented_error(UnknownEventText(iEventID), LVX_HERE);
}

void CInterface::Unregister(EVENT_TYPE iEventID) { throw notimplemented_error(UnknownEventText(iEventID), LVX_HERE); }

}  // namespace GenICam::Client
