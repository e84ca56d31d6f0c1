// SPDX-License-Identifier: MIT
#include "TL.h"

#include <exception>
#include <string>
#include <vector>

#include "Helper.h"
#include "Interface.h"
#include "ModuleDescription.h"
#include "Platform.h"
#include "SystemImpl.h"
#include "TLIException.h"

namespace GenICam::Client {

namespace Platform = Lumivex::Platform;

namespace {

enum SystemRegister : uint64_t {
  REG_INTERFACE_COUNT = 0x4,
  REG_INTERFACE_SELECTOR = 0x8,
  REG_INTERFACE_UPDATE_LIST = 0x44,
  REG_TL_VENDOR_NAME = 0x48,
  REG_TL_MODEL_NAME = 0x88,
  REG_TL_VERSION = 0xC8,
  REG_GENTL_VERSION_MINOR = 0xD8,
  REG_GENTL_VERSION_MAJOR = 0xDC,
  REG_TL_ID = 0x100,
  REG_TL_PATH = 0x200,
  REG_TL_DISPLAY_NAME = 0x600,
  REG_INTERFACE_ID = 0x740,
  REG_UNNAMED = 0x840,
};

/// Time-outs of the updates that the module runs by itself. Discovery ignores them.
constexpr uint64_t kQueryTimeout = 200;
constexpr uint64_t kRegisterTimeout = 500;

constexpr size_t kPathSize = 2048;
constexpr size_t kRegisterPathSize = 1024;

}  // namespace

CTL::CTL()
    : ICommonBase("System", MODULE_KIND_SYSTEM), m_bInterfaceListUpdated(false), m_RegisterMap(100), m_nXmlSize(0) {
  InitPort();
}

CTL::~CTL() {
  try {
    m_Children.CloseAll();
  } catch (const std::exception &error) {
    Platform::ShowMessage(error.what(), "Fatal Error");
  } catch (...) {
    Platform::ShowMessage("Unknown Exception.", "Fatal Error");
  }
}

void CTL::InitPort() {
  const std::vector<uint32_t> xml = LoadDescription(kSystemDescription, LVX_HERE);
  m_nXmlSize = static_cast<uint32_t>(xml.size() * sizeof(uint32_t));
  m_RegisterMap.Resize(kSystemDescription.nXmlAddress + m_nXmlSize);

  const auto addNumber = [this](uint64_t iAddress, uint32_t nValue) {
    m_RegisterMap.AddRegister(iAddress, ACCESS_READ, nValue, 0, nullptr, nullptr, nullptr, false);
  };
  const auto addCommand = [this](uint64_t iAddress) {
    m_RegisterMap.AddRegister(iAddress, ACCESS_READ_WRITE, 0, 0, &CTL::OnRegisterWrite, this, nullptr, false);
  };
  const auto addText = [this](uint64_t iAddress, uint64_t iSize, const std::string &strText) {
    m_RegisterMap.AddString(iAddress, ACCESS_READ, strText, iSize, 0, nullptr, nullptr, nullptr, false);
  };

  addNumber(REG_INTERFACE_COUNT, m_Children.GetNumChildren());
  addCommand(REG_INTERFACE_SELECTOR);
  addCommand(REG_INTERFACE_UPDATE_LIST);
  addText(REG_TL_VENDOR_NAME, 64, kVendorName);
  addText(REG_TL_MODEL_NAME, 64, kModelName);
  addText(REG_TL_VERSION, 16, GetModuleVersionText(Platform::LocalModuleHandle()));
  addText(REG_TL_DISPLAY_NAME, 256, "Lumivex GenTL");
  addNumber(REG_GENTL_VERSION_MINOR, GenTLMinorVersion);
  addNumber(REG_GENTL_VERSION_MAJOR, GenTLMajorVersion);
  addText(REG_TL_ID, 256, GetLibraryFileName(kRegisterPathSize, "Invalid Module Name", LVX_HERE));
  addText(REG_TL_PATH, 1024, GetLibraryPath(kRegisterPathSize));
  // Kept: the second text, trailing blank included, replaces the first 64 bytes of the one above.
  addText(REG_TL_DISPLAY_NAME, 64, "Lumivex TL ");
  addText(REG_INTERFACE_ID, 256, "");
  addText(REG_UNNAMED, 256, "");
  m_RegisterMap.AddBlock(kSystemDescription.nXmlAddress, ACCESS_READ, xml.data(), m_nXmlSize, 0, nullptr, nullptr,
                         nullptr, false);
}

void CTL::OnRegisterWrite(uint64_t iAddress, uint32_t *pValue, void *pContext) {
  CTL *pThis = static_cast<CTL *>(pContext);
  if (iAddress == REG_INTERFACE_SELECTOR) {
    pThis->SelectInterface(*pValue);
  } else if (iAddress == REG_INTERFACE_UPDATE_LIST) {
    pThis->UpdateInterfaceList(kRegisterTimeout);
  }
}

void CTL::SelectInterface(uint32_t iIndex) {
  m_RegisterMap.SetString(REG_INTERFACE_ID,
                          m_Children.GetNumChildren() == 0 ? std::string() : m_Children.GetChildName(iIndex));
}

bool CTL::UpdateInterfaceList(uint64_t) {
  std::list<std::shared_ptr<CInterfaceInfo>> Interfaces;
  CSystemImpl().CollectInterfaces(Interfaces);
  const bool bChanged = m_Children.UpdateChildList(Interfaces);
  const uint32_t nCount = m_Children.GetNumChildren();
  m_RegisterMap.SetValue(REG_INTERFACE_COUNT, nCount);
  if (nCount != 0) {
    m_RegisterMap.WriteReg(REG_INTERFACE_SELECTOR, 0);
  }
  m_bInterfaceListUpdated = true;
  return bChanged;
}

void CTL::EnsureInterfaceList() {
  if (!m_bInterfaceListUpdated) {
    UpdateInterfaceList(kQueryTimeout);
  }
}

uint32_t CTL::GetNumInterfaces() {
  EnsureInterfaceList();
  return m_Children.GetNumChildren();
}

void CTL::GetInterfaceID(uint32_t iIndex, char *sID, size_t *piSize) {
  EnsureInterfaceList();
  m_Children.GetChildName(iIndex, sID, piSize);
}

void CTL::GetInterfaceInfo(const char *sIfaceID, INTERFACE_INFO_CMD iInfoCmd, INFO_DATATYPE *piType, void *pBuffer,
                           size_t *piSize) {
  m_Children.FindChild(sIfaceID)->GetInfo(iInfoCmd, piType, pBuffer, piSize);
}

CInterface *CTL::GetInterface(const char *sIfaceID) {
  EnsureInterfaceList();
  const std::shared_ptr<CInterfaceInfo> pInterfaceInfo = m_Children.FindChild(sIfaceID);
  if (m_Children.IsOpened(pInterfaceInfo->GetId())) {
    throw resourceinuse_error(FormatMessageText("Interface '%s' is already opened.", sIfaceID), LVX_HERE);
  }
  const std::shared_ptr<CInterface> pInterface = CInterface::Create(shared_from_this(), pInterfaceInfo);
  m_Children.AddChild(pInterface);
  return pInterface.get();
}

void CTL::ReleaseInterface(const std::shared_ptr<CInterface> &pInterface) { m_Children.ReleaseChild(pInterface); }

void CTL::CloseAll() { m_Children.CloseAll(); }

void CTL::GetInfo(TL_INFO_CMD iInfoCmd, INFO_DATATYPE *piType, void *pBuffer, size_t *piSize) {
  switch (iInfoCmd) {
    case TL_INFO_VENDOR:
      return SetReturnParam(pBuffer, piSize, piType, kVendorName);
    case TL_INFO_MODEL:
      return SetReturnParam(pBuffer, piSize, piType, kModelName);
    case TL_INFO_VERSION:
      return SetReturnParam(pBuffer, piSize, piType, GetModuleVersionText(Platform::LocalModuleHandle()));
    case TL_INFO_TLTYPE:
      return SetReturnParam(pBuffer, piSize, piType, "CXP");
    case TL_INFO_NAME:
      return SetReturnParam(pBuffer, piSize, piType, GetLibraryFileName(kPathSize, "Invalid Module Name", LVX_HERE));
    case TL_INFO_PATHNAME:
      return SetReturnParam(pBuffer, piSize, piType, GetLibraryPath(kPathSize));
    case TL_INFO_DISPLAYNAME:
      return SetReturnParam(pBuffer, piSize, piType, "Lumivex GenTL");
    default:
      throw invalidparameter_error("Invalid cmd", LVX_HERE);
  }
}

void CTL::ReadData(uint64_t iAddress, void *pBuffer, size_t *piSize) {
  RequirePointer(piSize, "Null pointer for size", LVX_HERE);
  RequirePointer(pBuffer, "Null data pointer", LVX_HERE);
  m_RegisterMap.Read(iAddress, static_cast<uint32_t *>(pBuffer), *piSize);
}

void CTL::WriteData(uint64_t iAddress, const void *pBuffer, size_t *piSize) {
  RequirePointer(piSize, "Null pointer for size", LVX_HERE);
  RequirePointer(pBuffer, "Null data pointer", LVX_HERE);
  m_RegisterMap.Write(iAddress, static_cast<const uint32_t *>(pBuffer), *piSize);
}

void CTL::GetURL(char *sURL, size_t *piSize) {
  GetDescriptionUrl(kSystemDescription, m_nXmlSize, sURL, piSize, LVX_HERE);
}

void CTL::GetNumPortURLs(uint32_t *piNumURLs) { *piNumURLs = 1; }

void CTL::GetPortURLInfo(uint32_t iURLIndex, URL_INFO_CMD iInfoCmd, INFO_DATATYPE *piType, void *pBuffer,
                         size_t *piSize) {
  GetDescriptionUrlInfo(kSystemDescription, m_nXmlSize, iURLIndex, iInfoCmd, piType, pBuffer, piSize, LVX_HERE);
}

void CTL::GetPortInfo(PORT_INFO_CMD iInfoCmd, INFO_DATATYPE *piType, void *pBuffer, size_t *piSize) {
  AnswerPortInfo({"0", kVendorName, kModelName, "CXP", "TLSystem", false, true, "TLPort", "Invalid parameter"},
                 iInfoCmd, piType, pBuffer, piSize, LVX_HERE);
}

void CTL::Register(EVENT_TYPE iEventID, EVENT_HANDLE *) {
  throw notimplemented_error(UnknownEventText(iEventID), LVX_HERE);
}

void CTL::Unregister(EVENT_TYPE iEventID) { throw notimplemented_error(UnknownEventText(iEventID), LVX_HERE); }

}  // namespace GenICam::Client
