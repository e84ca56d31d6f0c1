// SPDX-License-Identifier: MIT
// Long random walks through a stream's operations beside a model of its rules: flags, list, counts and releases must
// agree behind every step. Finds what a table of single steps cannot: states that only a history leads to.
#include <algorithm>
#include <deque>

#include "StreamFixture.h"

namespace StreamTests {
namespace {

/// A stream as the rules have it, in blocking mode.
class CModel {
 public:
  struct Buffer {
    BUFFER_HANDLE handle = nullptr;
    bool queued = false;
    bool inDelivery = false;
    bool newData = false;
    bool present = false;
    uint32_t id = 0;
    uint64_t frameId = 0;
  };

  Buffer &At(size_t index) { return m_Buffers[index]; }
  size_t Size() const { return m_Buffers.size(); }
  bool Acquiring() const { return m_bAcquiring; }
  const std::deque<BUFFER_HANDLE> &List() const { return m_List; }
  uint64_t Delivered() const { return m_iDelivered; }
  uint64_t Started() const { return m_iCounted; }
  size_t Releases() const { return m_nReleases; }
  size_t Errors() const { return m_nErrors; }
  size_t Queued() const {
    return static_cast<size_t>(
        std::count_if(m_Buffers.begin(), m_Buffers.end(), [](const Buffer &buffer) { return buffer.queued; }));
  }

  Buffer &Find(BUFFER_HANDLE handle) {
    return *std::find_if(m_Buffers.begin(), m_Buffers.end(),
                         [handle](const Buffer &buffer) { return buffer.handle == handle; });
  }

  /// Whether a revocation would leave the list or the running library with a dead buffer.
  bool RevocationIsAHazard(const Buffer &buffer) const {
    const bool listed = std::find(m_List.begin(), m_List.end(), buffer.handle) != m_List.end();
    const bool inRun = m_bRunning && std::find(m_Slots.begin(), m_Slots.end(), buffer.handle) != m_Slots.end();
    return !buffer.queued && !buffer.inDelivery && (listed || inRun);
  }

  void Announce(BUFFER_HANDLE handle) {
    m_Buffers.emplace_back();
    m_Buffers.back().handle = handle;
  }
  void Revoke(size_t index) { m_Buffers.erase(m_Buffers.begin() + static_cast<std::ptrdiff_t>(index)); }

  void Queue(Buffer &buffer) {
    if (buffer.queued) {
      return;
    }
    Reset(buffer);
    if (m_bAcquiring) {
      Release(buffer.id);
    }
  }

  void Flush(ACQ_QUEUE_TYPE operation) {
    if (operation != ACQ_QUEUE_OUTPUT_DISCARD && operation != ACQ_QUEUE_UNQUEUED_TO_INPUT) {
      Stop();
    }
    switch (operation) {
      case ACQ_QUEUE_INPUT_TO_OUTPUT:
        for (Buffer &buffer : m_Buffers) {
          if (buffer.queued) {
            m_List.push_back(buffer.handle);
            buffer.queued = false;
          }
        }
        break;
      case ACQ_QUEUE_OUTPUT_DISCARD:
        while (!m_List.empty()) {
          Buffer &buffer = Find(m_List.back());
          m_List.pop_back();
          if (buffer.newData) {
            Release(buffer.id);
          }
          buffer.queued = buffer.inDelivery = buffer.newData = false;
        }
        break;
      case ACQ_QUEUE_ALL_TO_INPUT:
        m_List.clear();
        for (Buffer &buffer : m_Buffers) {
          Reset(buffer);
        }
        break;
      case ACQ_QUEUE_UNQUEUED_TO_INPUT:
        for (Buffer &buffer : m_Buffers) {
          if (!buffer.queued && !buffer.inDelivery) {
            Reset(buffer);
          }
        }
        break;
      default:
        for (Buffer &buffer : m_Buffers) {
          buffer.queued = buffer.inDelivery = buffer.newData = false;
        }
        m_List.clear();
        break;
    }
  }

  void Start(uint64_t limit) {
    m_iDelivered = 0;
    m_iCounted = 0;
    m_iLimit = limit;
    m_Slots.clear();
    for (const Buffer &buffer : m_Buffers) {
      if (buffer.queued) {
        m_Slots.push_back(buffer.handle);
      }
    }
    m_nSlot = 0;
    m_Ring.assign(m_Slots.size(), 0);
    m_nNext = 0;
    m_bRunning = m_bAcquiring = true;
  }

  void Stop() { m_bRunning = m_bAcquiring = false; }

  void Frame() {
    if (!m_bRunning || (m_iLimit != GENTL_INFINITE && m_iCounted >= m_iLimit)) {
      return;
    }
    ++m_iCounted;
    Buffer &buffer = Find(m_Slots[m_nSlot]);
    if (!buffer.queued) {
      ++m_nErrors;
      return;
    }
    buffer.present = buffer.newData = buffer.inDelivery = true;
    buffer.queued = false;
    buffer.id = static_cast<uint32_t>(m_iCounted - 1);
    buffer.frameId = ++m_iDelivered;
    m_List.push_back(buffer.handle);
    m_nSlot = (m_nSlot + 1) % m_Slots.size();
  }

  BUFFER_HANDLE Take() {
    if (m_List.empty()) {
      return nullptr;
    }
    Buffer &buffer = Find(m_List.front());
    m_List.pop_front();
    buffer.queued = buffer.inDelivery = false;
    return buffer.handle;
  }

 private:
  static void Reset(Buffer &buffer) {
    buffer.queued = true;
    buffer.inDelivery = buffer.newData = buffer.present = false;
  }

  void Release(uint32_t id) {
    const auto size = static_cast<uint32_t>(m_Ring.size());
    m_Ring[id % size] = id;
    while (m_Ring[m_nNext % size] == m_nNext) {
      ++m_nNext;
      ++m_nReleases;
    }
  }

  std::vector<Buffer> m_Buffers;
  std::deque<BUFFER_HANDLE> m_List;
  std::vector<BUFFER_HANDLE> m_Slots;
  std::vector<uint32_t> m_Ring;
  uint32_t m_nNext = 0;
  size_t m_nSlot = 0;
  bool m_bRunning = false;
  bool m_bAcquiring = false;
  uint64_t m_iLimit = 0;
  uint64_t m_iCounted = 0;
  uint64_t m_iDelivered = 0;
  size_t m_nReleases = 0;
  size_t m_nErrors = 0;
};

class StreamWalk : public StreamTest, public testing::WithParamInterface<uint32_t> {
 protected:
  size_t Below(size_t bound) {
    m_nState = m_nState * 1664525U + 1013904223U;
    return (m_nState >> 8U) % bound;
  }

  void Step() {
    switch (const size_t choice = Below(16); choice) {
      case 0: {
        BUFFER_HANDLE handle = nullptr;
        if (m_Model.Acquiring()) {
          ASSERT_EQ(GC_ERR_ACCESS_DENIED, Gc().DSAllocAndAnnounceBuffer(m_hStream, m_iPayload, nullptr, &handle));
        } else if (m_Model.Size() < 6) {
          ASSERT_EQ(GC_ERR_SUCCESS, Gc().DSAllocAndAnnounceBuffer(m_hStream, m_iPayload, nullptr, &handle));
          m_Model.Announce(handle);
        }
        break;
      }
      case 1: {
        if (m_Model.Size() == 0) {
          break;
        }
        const size_t index = Below(m_Model.Size());
        const CModel::Buffer buffer = m_Model.At(index);
        if (m_Model.RevocationIsAHazard(buffer)) {
          break;
        }
        const bool refused = buffer.queued || buffer.inDelivery;
        ASSERT_EQ(refused ? GC_ERR_RESOURCE_IN_USE : GC_ERR_SUCCESS,
                  Gc().DSRevokeBuffer(m_hStream, buffer.handle, nullptr, nullptr));
        if (!refused) {
          m_Model.Revoke(index);
        }
        break;
      }
      case 2: {
        const auto operation = static_cast<ACQ_QUEUE_TYPE>(Below(5));
        ASSERT_EQ(GC_ERR_SUCCESS, Gc().DSFlushQueue(m_hStream, operation)) << "flush " << operation;
        m_Model.Flush(operation);
        break;
      }
      case 3: {
        const uint64_t limit = Below(3) == 0 ? 1 + Below(6) : GENTL_INFINITE;
        const bool possible = m_Model.Queued() > 0;
        ASSERT_EQ(possible ? GC_ERR_SUCCESS : GC_ERR_INVALID_BUFFER, Gc().DSStartAcquisition(m_hStream, 0, limit));
        if (possible) {
          m_Model.Start(limit);
        }
        break;
      }
      case 4:
        if (Below(3) == 0) {
          ASSERT_EQ(GC_ERR_SUCCESS, Gc().DSStopAcquisition(m_hStream, static_cast<ACQ_STOP_FLAGS>(Below(2))));
          m_Model.Stop();
        }
        break;
      case 5:
      case 6:
      case 7:
      case 8:
        // The last buffers of a run may be gone once it has been stopped; its callback then looks at none.
        Script().FireCallback(GRB_EVENT_BUFFER_READY);
        m_Model.Frame();
        break;
      case 9:
      case 10:
      case 11: {
        const BUFFER_HANDLE expected = m_Model.Take();
        const EventResult taken = GetEvent(m_hEvent, 0);
        ASSERT_EQ(expected == nullptr ? GC_ERR_TIMEOUT : GC_ERR_SUCCESS, taken.result) << taken.error.text;
        if (expected != nullptr) {
          ASSERT_EQ(expected, taken.NewBuffer().BufferHandle);
        }
        break;
      }
      default:
        if (m_Model.Size() != 0) {
          CModel::Buffer &buffer = m_Model.At(Below(m_Model.Size()));
          ASSERT_EQ(GC_ERR_SUCCESS, Gc().DSQueueBuffer(m_hStream, buffer.handle));
          m_Model.Queue(buffer);
        }
        break;
    }
  }

  void Compare() {
    ASSERT_EQ(m_Model.Acquiring(), Grabbing());
    ASSERT_EQ(m_Model.Size(), Announced());
    ASSERT_EQ(m_Model.Queued(), Queued());
    ASSERT_EQ(m_Model.List().size(), Awaiting());
    ASSERT_EQ(m_Model.Delivered(), Delivered());
    ASSERT_EQ(m_Model.Started(), Started());
    ASSERT_EQ(m_Model.Releases(), Releases());
    ASSERT_EQ(m_Model.Errors(), EventNumber(m_hErrors, EVENT_NUM_FIRED));
    for (size_t index = 0; index < m_Model.Size(); ++index) {
      const CModel::Buffer &buffer = m_Model.At(index);
      const Flags flags = FlagsOf(buffer.handle);
      ASSERT_EQ(buffer.queued, flags.queued) << "buffer " << index;
      ASSERT_EQ(buffer.newData, flags.newData) << "buffer " << index;
      ASSERT_EQ(buffer.present, flags.present) << "buffer " << index;
      ASSERT_EQ(buffer.present ? m_iPayload : 0, flags.filled) << "buffer " << index;
      ASSERT_EQ(buffer.frameId, BufferNumber(buffer.handle, BUFFER_INFO_FRAMEID)) << "buffer " << index;
    }
  }

  CModel m_Model;
  uint32_t m_nState = 0;
  size_t m_iPayload = 0;
  EVENT_HANDLE m_hEvent = nullptr;
  EVENT_HANDLE m_hErrors = nullptr;
};

TEST_P(StreamWalk, AgreesWithTheModel) {
  m_nState = GetParam();
  m_hEvent = NewBufferEvent();
  m_hErrors = ErrorEvent();
  SetSize(16, 2);
  m_iPayload = PayloadSize();
  for (int step = 0; step < 500; ++step) {
    SCOPED_TRACE("step " + std::to_string(step));
    ASSERT_NO_FATAL_FAILURE(Step());
    ASSERT_NO_FATAL_FAILURE(Compare());
  }
}

INSTANTIATE_TEST_SUITE_P(Seeds, StreamWalk, testing::Range(1U, 21U));

}  // namespace
}  // namespace StreamTests
