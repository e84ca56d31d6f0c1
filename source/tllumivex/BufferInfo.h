// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>

#include "ICommonBase.h"

namespace GenICam::Client {

/// The GenTL Buffer module: one announced buffer, and what a Consumer can ask about it. Holds no pixels of its own
/// making; the memory is the Consumer's, or the Producer's when it was allocated here.
///
/// Owned by CDataStream, from announcement to revocation.
/// Threads: at any moment one party owns the record: the Consumer (announced, held), the library's callback (queued
/// during a run), or the delivery list under its lock. Fields that change are atomic, since a Consumer may look at a
/// buffer that it has not got back; no two of them have to agree then, but for is-queued and in-delivery. Takes no
/// lock. The port and event operations refuse: a buffer has neither.
class CBufferInfo final : public ICommonBase {
 public:
  /// What a run stamps on a filled buffer.
  struct Stamp {
    size_t iWidth;   ///< pixels
    size_t iHeight;  ///< lines
    uint64_t nPixelFormat;
    size_t iXPadding;    ///< bytes at the end of each line
    size_t iSizeFilled;  ///< bytes
  };

  /// Memory of the Consumer.
  CBufferInfo(void *pBase, size_t iSize, void *pUserPointer);
  /// Memory of the Producer's own, unless bExternal is set. A failed allocation shows when the base is asked for.
  CBufferInfo(size_t iSize, void *pUserPointer, bool bExternal);
  ~CBufferInfo() override;

  /// From CBufferPool.
  static void *operator new(size_t iSize);
  static void operator delete(void *pMemory) noexcept;

  /// The image memory. @throws unknown_error if there is none
  void *Buffer() const;
  /// The same, or null.
  void *Base() const { return m_pBase; }
  size_t Size() const { return m_iSize; }
  void *UserPointer() const { return m_pUserPointer; }
  bool OwnsMemory() const { return m_bOwnsMemory; }

  /// The stream that it was announced to, set once at announcement.
  const void *Owner() const { return m_pOwner; }
  void SetOwner(const void *pOwner) { m_pOwner = pOwner; }

  bool IsQueued() const { return m_bIsQueued; }
  void SetQueued(bool bIsQueued) { m_bIsQueued = bIsQueued; }
  bool IsInDelivery() const { return m_bInDelivery; }
  void SetInDelivery(bool bInDelivery) { m_bInDelivery = bInDelivery; }
  bool HasNewData() const { return m_bNewData; }
  void SetTimestamp(uint64_t nTimestamp) { m_nTimestamp = nTimestamp; }
  void SetFrameId(uint64_t nFrameId) { m_nFrameId = nFrameId; }
  /// Sequence number within the run, for the release ring.
  uint32_t BufferId() const { return m_iBufferId; }
  void SetBufferId(uint32_t iBufferId) { m_iBufferId = iBufferId; }

  /// Puts the buffer into the input pool. Sizes, format, timestamp and frame id keep their last values.
  void ResetToQueued();
  /// Takes it out of the input pool and of the delivery; it holds nothing new.
  void Discard();
  /// Marks it as filled and on its way to the Consumer.
  void StampFilled(const Stamp &stamp);

  /// Answers a BUFFER_INFO_CMD. @throws invalidparameter_error
  void GetInfo(BUFFER_INFO_CMD iInfoCmd, INFO_DATATYPE *piType, void *pBuffer, size_t *piSize) const;

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
  // Relaxed: the list's lock or the library's release orders what one owner leaves to the next; the atomic only keeps
  // a curious reader from a torn value. The one exception is m_bIsQueued.
  template <class Value, std::memory_order kStore = std::memory_order_relaxed,
            std::memory_order kLoad = std::memory_order_relaxed>
  class Field {
   public:
    explicit Field(Value value) : m_Value(value) {}
    Field &operator=(Value value) {
      m_Value.store(value, kStore);
      return *this;
    }
    operator Value() const { return m_Value.load(kLoad); }

   private:
    std::atomic<Value> m_Value;
  };

  // Constant after construction.
  void *const m_pBase;
  const size_t m_iSize;
  void *const m_pUserPointer;
  const bool m_bOwnsMemory;
  const void *m_pOwner = nullptr;

  Field<uint64_t> m_nTimestamp{0};
  Field<bool> m_bNewData{false};
  // Who finds it false finds what was written ahead of it: a buffer on its way to the Consumer is never seen with
  // neither this nor m_bInDelivery set.
  Field<bool, std::memory_order_release, std::memory_order_acquire> m_bIsQueued{false};
  Field<bool> m_bIsAcquiring{false};
  Field<bool> m_bIsIncomplete{false};
  Field<size_t> m_iSizeFilled{0};
  Field<bool> m_bInDelivery{false};
  // Kept: until the first frame a buffer claims to be one pixel wide.
  Field<size_t> m_iWidth{1};
  Field<size_t> m_iHeight;
  Field<size_t> m_iXOffset{0};
  Field<size_t> m_iYOffset{0};
  Field<size_t> m_iXPadding{0};
  Field<size_t> m_iYPadding{0};
  Field<uint64_t> m_nFrameId{0};
  Field<bool> m_bImagePresent{false};
  Field<size_t> m_iImageOffset{0};
  Field<uint64_t> m_nPixelFormat{0};
  Field<size_t> m_iDeliveredImageHeight{0};
  Field<size_t> m_iDeliveredChunkPayloadSize{0};
  Field<uint64_t> m_nChunkLayoutId{0};
  Field<uint32_t> m_iBufferId{0};
};

}  // namespace GenICam::Client
