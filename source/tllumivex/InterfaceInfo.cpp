// SPDX-License-Identifier: MIT
#include "InterfaceInfo.h"

#include "Helper.h"
#include "TLIException.h"

namespace GenICam::Client {

void CInterfaceInfo::GetInfo(INTERFACE_INFO_CMD iInfoCmd, INFO_DATATYPE *piType, void *pBuffer, size_t *piSize) const {
  switch (iInfoCmd) {
    case INTERFACE_INFO_ID:
      return SetReturnParam(pBuffer, piSize, piType, m_strId);
    case INTERFACE_INFO_DISPLAYNAME:
      return SetReturnParam(pBuffer, piSize, piType, m_strDisplayName);
    case INTERFACE_INFO_TLTYPE:
      return SetReturnParam(pBuffer, piSize, piType, m_strTLType);
    default:
      throw invalidparameter_error(FormatMessageText("Invalid INTERFACE_INFO_CMD 0x%08X", iInfoCmd), LVX_HERE);
  }
}

}  // namespace GenICam::Client
