// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <utility>
#include <vector>

#include <boost/thread/condition_variable.hpp>
#include <boost/thread/mutex.hpp>

#include "DataStreamInfo.h"
#include "grblx64.h"

namespace GenICam::Client {

class CBufferInfo;
class CDataStream;
class CDeviceImpl;
class CGrbChannelHandle;
class CGrbStreamHandle;

/// All announced buffers of a stream, in announcement order; owns them.
using CBufferList = std::deque<std::unique_ptr<CBufferInfo>>;

/// The acquisition engine: hands the queued buffers to the library, starts and stops the stream, receives its
/// callbacks, and returns slots in the library's own order.
///
/// Owned by CDataStream, which it keeps alive through a run (m_pParentStream). A run ends with a handshake: after the
/// stop the library calls back once more, and Freeze waits for that, up to 200 ms.
/// Threads: Acquire, Freeze and ReleaseBuffer on Consumer threads, GRB_CallbackEvent on the library's one callback
/// thread. Locks: m_StopMutex for the handshake; the release ring has none.
/// Throws unknown_error with the library's text, and what each operation says; nothing leaves the callback.
class CStreamImpl {
 public:
  /// @throws unknown_error if one of the device's handles is not valid
  CStreamImpl(const std::shared_ptr<CDataStreamInfo> &pStreamInfo, const std::shared_ptr<CDeviceImpl> &pDeviceImpl);
  CStreamImpl(const CStreamImpl &) = delete;
  CStreamImpl &operator=(const CStreamImpl &) = delete;
  ~CStreamImpl();

  /// Starts a run with the buffers that are queued. The caller holds the lock of the list.
  /// @param nFlags 0, not looked at
  /// @param iNumToAcquire frames after which the library is stopped; GENTL_INFINITE: none
  /// @param bBufferSetChanged tells the library that its set of destinations is new
  /// @throws unknown_error, outofrange_error; the engine is idle then
  void Acquire(uint32_t nFlags, uint64_t iNumToAcquire, const CBufferList &BufferList,
               const std::weak_ptr<CDataStream> &pParentStream, bool bBufferSetChanged);

  /// A Consumer may take and return the first frames before its start is back: their slots have to get to the library.
  bool IsStartUnderWay() const { return m_bStartUnderWay; }
  /// The start is told.
  void EndStart() { m_bStartUnderWay = false; }

  /// Ends a run; nothing, when none is on. The engine is idle afterwards, also after a failure.
  /// @param bKill not looked at @throws unknown_error with a report of all that went wrong
  void Freeze(bool bKill);

  /// Gives a filled buffer's slot back to the library, as soon as all earlier ones are back. @throws unknown_error
  void ReleaseBuffer(CBufferInfo *pBufferInfo);

  /// Bytes of a line in a buffer: a multiple of 16. Brings the padding up to date. @throws unknown_error
  uint32_t GetBufferWidthSize();
  /// Bytes of a frame in a buffer.
  uint64_t GetPayloadSize();
  /// Frames of the current or latest run, delivered or not.
  uint64_t GetNumStarted() const;

 private:
  /// What the library calls. pvParams is the engine.
  static void GRB_CallbackEvent(GRB_HANDLE hGrbChannel, uint32_t nEvents, void *pvParams) noexcept;
  void OnEvents(uint32_t nEvents);
  // Kept: static, because its assertions name the engine pThis.
  static void OnBufferReady(CStreamImpl *pThis, CDataStream *pParentStream);
  void OnFinalCallback();
  void ReportFailure(const char *pText) noexcept;

  /// Gives back the stream held before: the caller lets go of it, outside this lock.
  std::shared_ptr<CDataStream> HoldParent(std::shared_ptr<CDataStream> pParentStream);
  void CollectQueuedBuffers(const CBufferList &BufferList);
  void ProgramLibrary(bool bBufferSetChanged);
  void StartStream();
  void BackToIdle();
  void UpdateIncomingPixelFormat();
  uint32_t ReadRegister(uint32_t nAddress) const;
  uint32_t ReadCamera(uint32_t nAddress) const;
  GRB_STATUS Stream(uint32_t nOperation) const;

  // Constant after construction.
  std::shared_ptr<CDataStreamInfo> m_pStreamInfo;
  std::shared_ptr<CDeviceImpl> m_pDeviceImpl;
  std::shared_ptr<CGrbStreamHandle> m_pGrbStreamHandle;
  std::shared_ptr<CGrbChannelHandle> m_pGrbChannelHandle;

  // Set ahead of the stream's start, emptied behind the final callback. Guarded by m_StopMutex.
  std::shared_ptr<CDataStream> m_pParentStream;
  // The same stream for the callback, which takes no lock: null when there is nobody left to deliver to.
  std::atomic<CDataStream *> m_pDeliverTo{nullptr};

  // Atomic: the callback looks at it without a lock, and the handshake covers a late look.
  std::atomic<bool> m_bAcquisitionRunning;
  // From the moment the stream starts until its start is told: see IsStartUnderWay.
  std::atomic<bool> m_bStartUnderWay;

  // Guarded by m_StopMutex.
  bool m_bFinalCallback;
  boost::mutex m_StopMutex;
  boost::condition_variable m_StopCondition;

  // Written ahead of the stream's start. Atomic where a Consumer may touch them during a run.
  std::atomic<uint32_t> m_iNumBuffers;
  const uint64_t m_iStartedBase;
  std::atomic<uint64_t> m_iFramesCounted;
  std::atomic<uint64_t> m_iFramesToAcquire;
  std::unique_ptr<std::atomic<uint32_t>[]> m_pReleasedIds;
  std::atomic<uint32_t> m_iNextReleaseId;
  std::vector<std::pair<void *, CBufferInfo *>> m_AcquisitionBuffers;
  uint64_t m_nAcquisitionBuffersIndex;
  uint32_t m_dwImageWidth;
  uint32_t m_dwImageHeight;
  uint32_t m_dwPixelFormat;
  std::atomic<uint64_t> m_iXPadding;
  uint64_t m_iPayloadSize;
  uint32_t m_dwBlockingMode;
};

}  // namespace GenICam::Client
