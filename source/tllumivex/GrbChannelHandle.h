// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>

#include "GrbBaseHandle.h"

namespace GenICam::Client {

/// The way to one camera: who it is, and every read and write of its register space.
///
/// Made for a moment by discovery, and held by shared pointers through the whole life of an open Device. Without a
/// camera the object is not valid, which is no error. The identity is read once; a camera that goes away makes the
/// transfers fail.
/// Threads: any. Locks: none in the camera transfers; the library bears concurrent ones.
/// Transfers throw timeout_error or io_error; the constructor only when no library handle can be created.
class CGrbChannelHandle : public CGrbBaseHandle {
 public:
  CGrbChannelHandle(uint32_t nBoard, uint32_t nChannel, bool bQuietErrors);
  ~CGrbChannelHandle() override;

  bool IsValid() const override { return !m_strId.empty(); }

  /// "Channel #<m>"
  std::string GetId() const { return m_strId; }
  /// "<Vendor> <Model>(Channel #<m>)"
  std::string GetDisplayName() const { return m_strDisplayName; }
  std::string GetVendor() const { return m_strVendor; }
  std::string GetModel() const { return m_strModel; }
  /// "CXP"
  std::string GetTLType() const { return m_strTLType; }

  /// Reads bytes as they stand on the wire. Fewer bytes than asked for are no failure.
  /// @param nTimeout in the library's unit; the library's own timing takes its place for a revision 1.1 camera
  void CameraRead(void *pvBuffer, uint64_t nSize, uint64_t nAddress, uint32_t nTimeout);
  /// Writes bytes as they stand on the wire, in one transfer.
  void CameraWrite(void *pvBuffer, uint64_t nSize, uint64_t nAddress, uint32_t nTimeout);
  /// Reads a big-endian register (CoaXPress 1.1). @return pValue
  uint32_t *CameraReadUInt32(uint32_t *pValue, uint64_t nAddress, uint32_t nTimeout);
  /// Writes a big-endian register (CoaXPress 1.1).
  void CameraWriteUInt32(uint32_t nValue, uint64_t nAddress, uint32_t nTimeout);

 private:
  void OpenHandle();
  void GetInfo();
  std::string ReadText(uint64_t nAddress);
  bool HasOwnTiming() const;

  uint32_t m_nBoard;
  uint32_t m_nChannel;
  std::string m_strId;
  std::string m_strDisplayName;
  std::string m_strVendor;
  std::string m_strModel;
  std::string m_strTLType;
  bool m_bCxpv11;
  uint32_t m_nRevSw;
};

}  // namespace GenICam::Client
