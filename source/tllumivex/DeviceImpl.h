// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>

#include "grblx64.h"

namespace GenICam::Client {

class CGrbChannelHandle;
class CGrbStreamHandle;

/// The part of a Device that talks to the frame-grabber library: its handles, and the virtual registers.
///
/// Held by shared pointers of CDevice and CStreamImpl. Each virtual register is one row of a table: most pass one
/// library parameter through, some name a member function. No image parameter is kept here: the library's store is the
/// only place.
/// Threads: any Consumer thread, also at once. Locks: none; the library bears concurrent calls on one handle. The
/// latches of the register trio and of the I/O family are shared by all users of the Device.
/// Throws unknown_error with the library's text for a failed call, access_error without a stream handle.
class CDeviceImpl {
 public:
  /// @param pStreamHandle may be null: then only the register trio works
  CDeviceImpl(const std::shared_ptr<CGrbChannelHandle> &pChannelHandle,
              const std::shared_ptr<CGrbStreamHandle> &pStreamHandle);

  /// Passes a register write on. How many bytes the library takes from the buffer follows from the parameter.
  void SetVirtualRegister(uint32_t nAddress, void *pBuffer, size_t iSize);
  /// Reads a register through; *piSize becomes the bytes of the answer.
  void GetVirtualRegister(uint32_t nAddress, void *pBuffer, size_t *piSize);

  const std::shared_ptr<CGrbChannelHandle> &GetChannelHandle() const { return m_pChannelHandle; }
  const std::shared_ptr<CGrbStreamHandle> &GetStreamHandle() const { return m_pStreamHandle; }

  /// One virtual register. A null write or read means that there is no such case.
  struct Row {
    uint32_t nAddress;
    const char *pName;  ///< of the feature, in messages
    uint32_t nWriteId;
    uint32_t nReadId;
    uint32_t nBits;
    void (CDeviceImpl::*pWrite)(const Row &row, void *pBuffer);
    void (CDeviceImpl::*pRead)(const Row &row, void *pBuffer, size_t *piSize);
  };

 private:
  static const Row *FindRow(uint32_t nAddress);

  bool SetTrioRegister(uint32_t nAddress, const void *pBuffer);
  bool GetTrioRegister(uint32_t nAddress, void *pBuffer, size_t *piSize);
  uint32_t GetNested(uint32_t nAddress);

  void Set(uint32_t nId, void *pValue, const char *pName);
  void Get(uint32_t nId, void *pValue, const char *pName);
  uint32_t Get32(const Row &row);

  // What a row does.
  void WritePlain(const Row &row, void *pBuffer);
  void ReadPlain(const Row &row, void *pBuffer, size_t *piSize);
  void WriteScanType(const Row &row, void *pBuffer);
  void ReadScanType(const Row &row, void *pBuffer, size_t *piSize);
  void WriteWidth(const Row &row, void *pBuffer);
  void ReadWidth(const Row &row, void *pBuffer, size_t *piSize);
  void WriteHeight(const Row &row, void *pBuffer);
  void ReadHeight(const Row &row, void *pBuffer, size_t *piSize);
  void WriteIncomingPixelFormat(const Row &row, void *pBuffer);
  void ReadIncomingPixelFormat(const Row &row, void *pBuffer, size_t *piSize);
  void WritePixelFormat(const Row &row, void *pBuffer);
  void ReadPixelFormat(const Row &row, void *pBuffer, size_t *piSize);
  void WriteDecimation(const Row &row, void *pBuffer);
  void ReadDecimation(const Row &row, void *pBuffer, size_t *piSize);
  void ReadHandle(const Row &row, void *pBuffer, size_t *piSize);
  void ReadBoardProperties(const Row &row, void *pBuffer, size_t *piSize);
  void LoadConfigFile(const Row &row, void *pBuffer);
  void SaveConfigFile(const Row &row, void *pBuffer);
  void WriteIoOutPort(const Row &row, void *pBuffer);
  void ReadIoOutPort(const Row &row, void *pBuffer, size_t *piSize);
  void WriteIoOutBit(const Row &row, void *pBuffer);
  void ReadIoOutBit(const Row &row, void *pBuffer, size_t *piSize);
  void WriteIoInPort(const Row &row, void *pBuffer);
  void ReadIoInPort(const Row &row, void *pBuffer, size_t *piSize);
  void WriteIoOutMethod(const Row &row, void *pBuffer);
  void ReadIoOutMethod(const Row &row, void *pBuffer, size_t *piSize);
  void ReadIoInValue(const Row &row, void *pBuffer, size_t *piSize);
  void WriteFilter(const Row &row, void *pBuffer);
  void FlushCache(const Row &row, void *pBuffer);
  void Expose(const Row &row, void *pBuffer);
  void TriggerTimerA1(const Row &row, void *pBuffer);

  // The handles are constant after construction. The atomics stand alone: no two of them have to agree.
  const std::shared_ptr<CGrbChannelHandle> m_pChannelHandle;
  const std::shared_ptr<CGrbStreamHandle> m_pStreamHandle;
  std::atomic<uint32_t> m_dwRegisterAddress;
  std::atomic<uint32_t> m_dwRegisterData;
  std::atomic<uint32_t> m_dwIoInPort;
  const uint32_t m_dwIoInBit;  // Kept: no register writes it.
  std::atomic<uint32_t> m_dwIoOutPort;
  std::atomic<uint32_t> m_dwIoOutBit;

  static const Row kRows[];
};

}  // namespace GenICam::Client
