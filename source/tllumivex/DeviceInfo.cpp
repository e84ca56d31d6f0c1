// SPDX-License-Identifier: MIT
#include "DeviceInfo.h"

#include "Helper.h"
#include "TLIException.h"

namespace GenICam::Client {

void CDeviceInfo::GetInfo(DEVICE_INFO_CMD iInfoCmd, INFO_DATATYPE *piType, void *pBuffer, size_t *piSize) const {
  switch (iInfoCmd) {
    case DEVICE_INFO_ID:
      return SetReturnParam(pBuffer, piSize, piType, m_strId);
    case DEVICE_INFO_VENDOR:
      return SetReturnParam(pBuffer, piSize, piType, m_strVendor);
    case DEVICE_INFO_MODEL:
      return SetReturnParam(pBuffer, piSize, piType, m_strModel);
    case DEVICE_INFO_TLTYPE:
      return SetReturnParam(pBuffer, piSize, piType, m_strTLType);
    case DEVICE_INFO_DISPLAYNAME:
      return SetReturnParam(pBuffer, piSize, piType, m_strDisplayName);
    case DEVICE_INFO_ACCESS_STATUS:
      return SetReturnParam(pBuffer, piSize, piType, static_cast<int32_t>(m_nAccessStatus));
    default:
      throw invalidparameter_error(FormatMessageText("Unknown DEVICE_INFO_CMD 0x%08X.", iInfoCmd), LVX_HERE);
  }
}

}  // namespace GenICam::Client
