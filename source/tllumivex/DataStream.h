// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include <boost/circular_buffer.hpp>
#include <boost/thread/condition_variable.hpp>
#include <boost/thread/locks.hpp>
#include <boost/thread/recursive_mutex.hpp>

#include "DataStreamInfo.h"
#include "ICommonBase.h"
#include "RegisterMap.h"
#include "StreamImpl.h"
#include "Wait.h"

namespace GenICam::Client {

class CDataStreamEventNewBuffer;
class CDevice;
class CEventError;

/// The buffers of one data stream, from announcement to revocation, and the way a filled one takes to the Consumer.
///
/// Made and owned by CDevice; holds its parent. Owns the announced CBufferInfo objects, the engine, and the stream's
/// two event objects. The front half of start and stop is here; what talks to the library is in CStreamImpl.
/// Threads: any Consumer thread; the library's callback thread enters DeliverBuffer and PostErrorEvent only.
/// Locks:   m_BufferListLock, then m_DeliverLock; neither is held while a run is being stopped. DSQueueBuffer takes
/// none: whoever holds a buffer owns its flags.
class CDataStream : public std::enable_shared_from_this<CDataStream>, public ICommonBase {
 public:
  /// @throws unknown_error if the device's handles are not valid
  static std::shared_ptr<CDataStream> Create(const std::shared_ptr<CDevice> &pParentDevice,
                                             const std::shared_ptr<CDataStreamInfo> &pDataStreamInfo);
  ~CDataStream() override;

  /// Stops, discards and revokes everything, then leaves the Device. A failing stop leaves all as it stands.
  void Close();

  /// @throws invalidparameter_error, accessdenied_error, resourceinuse_error
  void DSAnnounceBuffer(void *pBuffer, size_t iSize, void *pPrivate, BUFFER_HANDLE *phBuffer);
  /// A failed allocation shows when the buffer is used. @throws invalidparameter_error, accessdenied_error
  void DSAllocAndAnnounceBuffer(size_t iSize, void *pPrivate, BUFFER_HANDLE *phBuffer);
  /// Ends a buffer that is neither queued nor in delivery. @throws invalidparameter_error, resourceinuse_error
  void DSRevokeBuffer(BUFFER_HANDLE hBuffer, void **ppBuffer, void **ppPrivate);
  /// Puts a buffer into the input pool, and during a run its slot back to the library.
  void DSQueueBuffer(BUFFER_HANDLE hBuffer);
  /// @throws invalidparameter_error
  void DSFlushQueue(ACQ_QUEUE_TYPE iOperation);
  /// Starts a run with the queued buffers; ends one that is on. @throws invalidparameter_error, invalidbuffer_error
  void DSStartAcquisition(ACQ_START_FLAGS iStartFlags, uint64_t iNumToAcquire);
  /// Ends the run; the two flags do the same. @throws invalidparameter_error, unknown_error
  void DSStopAcquisition(ACQ_STOP_FLAGS iStopFlags);
  void DSGetInfo(STREAM_INFO_CMD iInfoCmd, INFO_DATATYPE *piType, void *pBuffer, size_t *piSize);
  void DSGetBufferInfo(BUFFER_HANDLE hBuffer, BUFFER_INFO_CMD iInfoCmd, INFO_DATATYPE *piType, void *pBuffer,
                       size_t *piSize);
  /// @throws invalidbuffer_error
  void DSGetBufferID(uint32_t iIndex, BUFFER_HANDLE *phBuffer);

  /// Puts a filled buffer on the delivery list. False, with a report on EVENT_ERROR, if it did not get there.
  bool DeliverBuffer(CBufferInfo *pBufferInfo);
  /// Takes the oldest filled buffer off the list; waits once, up to iTimeout milliseconds. False: there was none.
  /// @throws abort_error once after KillWait
  bool GetFilledBuffer(void *pBuffer, size_t *piSize, uint64_t iTimeout);
  /// Ends the current GetFilledBuffer, or the next one.
  void KillWait();
  /// Puts a report into EVENT_ERROR.
  void PostErrorEvent(int32_t iCode, const char *pText);

  void ReadData(uint64_t iAddress, void *pBuffer, size_t *piSize) override;
  void WriteData(uint64_t iAddress, const void *pBuffer, size_t *piSize) override;
  void GetURL(char *sURL, size_t *piSize) override;
  void GetPortInfo(PORT_INFO_CMD iInfoCmd, INFO_DATATYPE *piType, void *pBuffer, size_t *piSize) override;
  void GetNumPortURLs(uint32_t *piNumURLs) override;
  void GetPortURLInfo(uint32_t iURLIndex, URL_INFO_CMD iInfoCmd, INFO_DATATYPE *piType, void *pBuffer,
                      size_t *piSize) override;
  void Register(EVENT_TYPE iEventID, EVENT_HANDLE *phEvent) override;
  void Unregister(EVENT_TYPE iEventID) override;

 private:
  using Lock = boost::unique_lock<boost::recursive_mutex>;

  CDataStream(const std::shared_ptr<CDevice> &pParentDevice, const std::shared_ptr<CDataStreamInfo> &pDataStreamInfo);

  void InitPort();
  static void OnRegisterRead(uint64_t iAddress, uint32_t *pValue, void *pContext);
  static void OnRegisterWrite(uint64_t iAddress, uint32_t *pValue, void *pContext);

  void RequireNotAcquiring(const char *pFunction, const char *pFile, uint32_t nLine) const;
  /// The caller holds m_BufferListLock.
  void Announce(std::unique_ptr<CBufferInfo> pBufferInfo, BUFFER_HANDLE *phBuffer);
  /// The buffer behind a handle; it was announced to this stream.
  static CBufferInfo *BufferOf(BUFFER_HANDLE hBuffer);
  void RequireQueuedBuffers(const char *pFunction, const char *pFile, uint32_t nLine);
  size_t GetNumQueued();
  /// The caller holds m_DeliverLock.
  void AppendToDeliverList(CBufferInfo *pBufferInfo);

  void FlushInputToOutput();
  void FlushOutputDiscard();
  void FlushAllToInput();
  void FlushUnqueuedToInput();
  void FlushAllDiscard();

  // Constant after construction.
  std::shared_ptr<CStreamImpl> m_pStreamImpl;
  std::shared_ptr<CDevice> m_pParentDevice;
  std::shared_ptr<CDataStreamInfo> m_pDataStreamInfo;
  size_t m_iXmlSize;
  const uint64_t m_iNumUnderrun;
  const bool m_bDefinesPayloadSize;
  std::shared_ptr<CDataStreamEventNewBuffer> m_pEventNewBuffer;
  std::shared_ptr<CEventError> m_pEventError;

  // Atomic: looked at without a lock, and nothing else has to agree with them.
  std::atomic<bool> m_bAcquiring;
  std::atomic<bool> m_bBuffersAnnounced;

  // Guarded by m_BufferListLock.
  boost::recursive_mutex m_BufferListLock;
  CBufferList m_BufferList;

  // Guarded by m_DeliverLock. The list is a ring that only grows: a deque would ask the heap for storage as buffers
  // pass through it.
  boost::recursive_mutex m_DeliverLock;
  boost::condition_variable_any m_DeliverCondition;
  boost::circular_buffer<CBufferInfo *> m_DeliverBufferList;
  uint64_t m_iNumDelivered;
  bool m_bKillWait;
  Waiters m_Waiters;

  // No lock: one thread drives the port.
  CRegisterMap m_RegisterMap;
};

}  // namespace GenICam::Client
