// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "GenTL.h"

namespace GenICam::Client {

/// What the System module keeps of one board: what the last update of its list has found.
///
/// Made by CSystemImpl, and held by shared pointers: by the System's list, and by an open Interface, which keeps its
/// own when the list is updated. Never changed after construction, so any thread may read it; takes no lock.
class CInterfaceInfo {
 public:
  CInterfaceInfo(const std::string &strId, const std::string &strDisplayName, const std::string &strTLType,
                 uint32_t nBoard)
      : m_strId(strId), m_strDisplayName(strDisplayName), m_strTLType(strTLType), m_nBoard(nBoard) {}

  std::string GetId() const { return m_strId; }
  std::string GetDisplayName() const { return m_strDisplayName; }
  std::string GetTLType() const { return m_strTLType; }
  uint32_t GetBoard() const { return m_nBoard; }

  /// Answers an INTERFACE_INFO_CMD. @throws invalidparameter_error
  void GetInfo(INTERFACE_INFO_CMD iInfoCmd, INFO_DATATYPE *piType, void *pBuffer, size_t *piSize) const;

 private:
  std::string m_strId;
  std::string m_strDisplayName;
  std::string m_strTLType;
  uint32_t m_nBoard;
};

}  // namespace GenICam::Client
