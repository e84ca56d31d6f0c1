// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "GenTL.h"

namespace GenICam::Client {

/// What the Interface module keeps of one camera: what the last update of its list has found.
///
/// Made by CInterfaceImpl, and held by shared pointers: by the Interface's list, and by an open Device, which keeps its
/// own when the list is updated. Never changed after construction, so any thread may read it; takes no lock.
class CDeviceInfo {
 public:
  CDeviceInfo(uint32_t nAccessStatus, const std::string &strDisplayName, const std::string &strVendor,
              const std::string &strModel, const std::string &strId, const std::string &strTLType, uint32_t nBoard,
              uint32_t nChannel)
      : m_nAccessStatus(nAccessStatus),
        m_strDisplayName(strDisplayName),
        m_strVendor(strVendor),
        m_strModel(strModel),
        m_strId(strId),
        m_strTLType(strTLType),
        m_nBoard(nBoard),
        m_nChannel(nChannel) {}

  /// A DEVICE_ACCESS_STATUS, as found at enumeration.
  uint32_t GetAccessStatus() const { return m_nAccessStatus; }
  std::string GetDisplayName() const { return m_strDisplayName; }
  std::string GetVendor() const { return m_strVendor; }
  std::string GetModel() const { return m_strModel; }
  std::string GetId() const { return m_strId; }
  std::string GetTLType() const { return m_strTLType; }
  /// Board and channel as the library's enumeration values.
  uint32_t GetBoard() const { return m_nBoard; }
  uint32_t GetChannel() const { return m_nChannel; }

  /// Answers a DEVICE_INFO_CMD. @throws invalidparameter_error
  void GetInfo(DEVICE_INFO_CMD iInfoCmd, INFO_DATATYPE *piType, void *pBuffer, size_t *piSize) const;

 private:
  uint32_t m_nAccessStatus;
  std::string m_strDisplayName;
  std::string m_strVendor;
  std::string m_strModel;
  std::string m_strId;
  std::string m_strTLType;
  uint32_t m_nBoard;
  uint32_t m_nChannel;
};

}  // namespace GenICam::Client
