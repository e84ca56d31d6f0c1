// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>

#include "ICommonBase.h"

namespace GenICam::Client {

class CDataStream;

/// EVENT_NEW_BUFFER of a data stream: a face of the stream's delivery list, without a queue of its own.
///
/// Made disabled with the stream, and owned by it. Delivery does not depend on the event being enabled.
/// Threads: any Consumer thread. Locks: the stream's.
/// All but enabling and disabling throw invalidhandle_error while disabled.
class CDataStreamEventNewBuffer : public IEventObj {
 public:
  explicit CDataStreamEventNewBuffer(CDataStream *pDataStream);

  bool GetData(void *pBuffer, size_t *piSize, uint64_t iTimeout) override;
  void GetInfo(EVENT_INFO_CMD iInfoCmd, INFO_DATATYPE *piType, void *pBuffer, size_t *piSize) override;
  void GetDataInfo(const void *pInBuffer, size_t iInSize, EVENT_DATA_INFO_CMD iInfoCmd, INFO_DATATYPE *piType,
                   void *pOutBuffer, size_t *piOutSize) override;
  /// Gives the waiting buffers back to the library.
  void Flush() override;
  void Kill() override;

  /// @throws resourceinuse_error
  virtual void EnableEvent();
  virtual void DisableEvent();

 private:
  void RequireEnabled(const char *pFunction, const char *pFile, uint32_t nLine) const;

  CDataStream *const m_pDataStream;
  std::atomic<bool> m_bEnabled;
};

}  // namespace GenICam::Client
