// SPDX-License-Identifier: MIT
// Announcing, queueing and revoking buffers: the checks in their order, and who owns the memory.
#include <array>

#include "StreamFixture.h"

namespace StreamTests {
namespace {

constexpr const char *kRunning =
    "You cannot announce new buffers while the acquisition is running. Stop the acquisition first.";

// The checks ----------------------------------------------------------------------------------------------------------

/// One call with some of its faults at once; the earliest must show.
struct AnnounceRow {
  const char *name;
  bool nullMemory;
  bool nullHandle;
  bool sizeZero;
  bool running;
  bool duplicate;
  GC_ERROR code;
  const char *message;
};

void PrintTo(const AnnounceRow &row, std::ostream *out) { *out << row.name; }

constexpr AnnounceRow kAnnounceRows[] = {
    {"NoFault", false, false, false, false, false, GC_ERR_SUCCESS, ""},
    {"NullMemory", true, false, false, false, false, GC_ERR_INVALID_PARAMETER, "Invalid Memory Buffer."},
    {"NullHandle", false, true, false, false, false, GC_ERR_INVALID_PARAMETER, "Invalid Buffer Handle."},
    {"SizeZero", false, false, true, false, false, GC_ERR_INVALID_PARAMETER, "Size of buffer cannot be null."},
    {"Running", false, false, false, true, false, GC_ERR_ACCESS_DENIED, kRunning},
    {"Duplicate", false, false, false, false, true, GC_ERR_RESOURCE_IN_USE, "Buffer already in use"},
    {"AllFaults", true, true, true, true, true, GC_ERR_INVALID_PARAMETER, "Invalid Memory Buffer."},
    {"AllButMemory", false, true, true, true, true, GC_ERR_INVALID_PARAMETER, "Invalid Buffer Handle."},
    {"SizeRunningDuplicate", false, false, true, true, true, GC_ERR_INVALID_PARAMETER,
     "Size of buffer cannot be null."},
    {"RunningDuplicate", false, false, false, true, true, GC_ERR_ACCESS_DENIED, kRunning},
};

class AnnounceChecks : public StreamTest, public testing::WithParamInterface<AnnounceRow> {
 protected:
  std::array<uint8_t, 64> m_Memory{};
  std::array<uint8_t, 64> m_Other{};
};

TEST_P(AnnounceChecks, EarliestFaultShows) {
  const AnnounceRow &row = GetParam();
  BUFFER_HANDLE first = nullptr;
  ASSERT_GC_OK(Gc().DSAnnounceBuffer(OpenStream(), m_Memory.data(), m_Memory.size(), nullptr, &first));
  if (row.running) {
    Run(1);
  }
  const uint64_t before = Announced();
  void *const memory = row.nullMemory ? nullptr : row.duplicate ? m_Memory.data() : m_Other.data();
  BUFFER_HANDLE buffer = this;
  const GC_ERROR result = Gc().DSAnnounceBuffer(m_hStream, memory, row.sizeZero ? 0 : m_Other.size(), this,
                                                row.nullHandle ? nullptr : &buffer);
  if (row.code == GC_ERR_SUCCESS) {
    EXPECT_TRUE(CheckGc(GC_ERR_SUCCESS, "", nullptr, result));
    EXPECT_EQ(before + 1, Announced());
    EXPECT_EQ(m_Other.data(), BufferPointer(buffer, BUFFER_INFO_BASE));
    return;
  }
  EXPECT_TRUE(CheckGc(row.code, row.message, "GenICam::Client::CDataStream::DSAnnounceBuffer", result));
  EXPECT_EQ(before, Announced());
  EXPECT_EQ(this, buffer);
}

INSTANTIATE_TEST_SUITE_P(All, AnnounceChecks, testing::ValuesIn(kAnnounceRows),
                         [](const auto &row) { return std::string(row.param.name); });

constexpr AnnounceRow kAllocRows[] = {
    {"NoFault", false, false, false, false, false, GC_ERR_SUCCESS, ""},
    {"NullHandle", false, true, false, false, false, GC_ERR_INVALID_PARAMETER, "Invalid Buffer Handle."},
    {"SizeZero", false, false, true, false, false, GC_ERR_INVALID_PARAMETER, "Size of buffer cannot be null."},
    {"Running", false, false, false, true, false, GC_ERR_ACCESS_DENIED, kRunning},
    {"AllFaults", false, true, true, true, false, GC_ERR_INVALID_PARAMETER, "Invalid Buffer Handle."},
    {"SizeRunning", false, false, true, true, false, GC_ERR_INVALID_PARAMETER, "Size of buffer cannot be null."},
};

class AllocChecks : public StreamTest, public testing::WithParamInterface<AnnounceRow> {};

TEST_P(AllocChecks, EarliestFaultShows) {
  const AnnounceRow &row = GetParam();
  OpenStream();
  if (row.running) {
    Run(1);
  }
  const uint64_t before = Announced();
  BUFFER_HANDLE buffer = this;
  const GC_ERROR result =
      Gc().DSAllocAndAnnounceBuffer(m_hStream, row.sizeZero ? 0 : 16, this, row.nullHandle ? nullptr : &buffer);
  if (row.code == GC_ERR_SUCCESS) {
    EXPECT_TRUE(CheckGc(GC_ERR_SUCCESS, "", nullptr, result));
    EXPECT_EQ(before + 1, Announced());
    EXPECT_NE(this, buffer);
    return;
  }
  EXPECT_TRUE(CheckGc(row.code, row.message, "GenICam::Client::CDataStream::DSAllocAndAnnounceBuffer", result));
  EXPECT_EQ(before, Announced());
  EXPECT_EQ(this, buffer);
}

INSTANTIATE_TEST_SUITE_P(All, AllocChecks, testing::ValuesIn(kAllocRows),
                         [](const auto &row) { return std::string(row.param.name); });

// Announcing ----------------------------------------------------------------------------------------------------------

TEST_F(StreamTest, AnnouncedMemoryNeedsNoAlignment) {
  std::vector<uint8_t> memory(PayloadSize() + 1);
  BUFFER_HANDLE buffer = nullptr;
  ASSERT_GC_OK(Gc().DSAnnounceBuffer(m_hStream, memory.data() + 1, memory.size() - 1, nullptr, &buffer));
  EXPECT_EQ(memory.data() + 1, BufferPointer(buffer, BUFFER_INFO_BASE));
  Queue(buffer);
  Start();
  ASSERT_TRUE(Script().DeliverFrame(0, 0x3C));
  EXPECT_EQ(0, memory[0]);
  EXPECT_EQ(0x3C, memory[1]);
  EXPECT_EQ(0x3C, memory.back());
  Flush(ACQ_QUEUE_ALL_DISCARD);
  EXPECT_GC_OK(Gc().DSRevokeBuffer(m_hStream, buffer, nullptr, nullptr));
}

TEST_F(StreamTest, MemoryCanBeAnnouncedAgainAfterRevocation) {
  std::array<uint8_t, 32> memory{};
  BUFFER_HANDLE buffer = nullptr;
  ASSERT_GC_OK(Gc().DSAnnounceBuffer(OpenStream(), memory.data(), memory.size(), nullptr, &buffer));
  ASSERT_GC_OK(Gc().DSRevokeBuffer(m_hStream, buffer, nullptr, nullptr));
  EXPECT_GC_OK(Gc().DSAnnounceBuffer(m_hStream, memory.data(), memory.size(), nullptr, &buffer));
}

TEST_F(StreamTest, OverlappingMemoryIsNoDuplicate) {
  std::array<uint8_t, 32> memory{};
  BUFFER_HANDLE buffer = nullptr;
  EXPECT_GC_OK(Gc().DSAnnounceBuffer(OpenStream(), memory.data(), 16, nullptr, &buffer));
  EXPECT_GC_OK(Gc().DSAnnounceBuffer(m_hStream, memory.data() + 1, 16, nullptr, &buffer));
}

TEST_F(StreamTest, ProducerAllocationsNeverCollide) {
  const BUFFER_HANDLE first = AllocOf(16);
  const BUFFER_HANDLE second = AllocOf(16);
  EXPECT_NE(first, second);
  EXPECT_NE(BufferPointer(first, BUFFER_INFO_BASE), BufferPointer(second, BUFFER_INFO_BASE));
}

TEST_F(StreamTest, FailedAllocationShowsOnlyWhenTheMemoryIsAskedFor) {
  constexpr size_t kTooMuch = size_t{1} << 62U;
  const BUFFER_HANDLE buffer = AllocOf(kTooMuch);
  ASSERT_NE(nullptr, buffer);
  EXPECT_EQ(1U, Announced());
  EXPECT_EQ(kTooMuch, BufferNumber(buffer, BUFFER_INFO_SIZE));
  INFO_DATATYPE type = 0;
  size_t size = 0;
  EXPECT_GC_FROM(GC_ERR_ERROR, "Invalid Memory Buffer", "GenICam::Client::CBufferInfo::Buffer",
                 Gc().DSGetBufferInfo(m_hStream, buffer, BUFFER_INFO_BASE, &type, nullptr, &size));
  Queue(buffer);
  EXPECT_GC(GC_ERR_ERROR, "Invalid Memory Buffer",
            Gc().DSStartAcquisition(m_hStream, ACQ_START_FLAGS_DEFAULT, GENTL_INFINITE));
  EXPECT_FALSE(Grabbing());
  Flush(ACQ_QUEUE_ALL_DISCARD);
  void *base = this;
  EXPECT_GC_OK(Gc().DSRevokeBuffer(m_hStream, buffer, &base, nullptr));
  EXPECT_EQ(nullptr, base);
}

TEST_F(StreamTest, ProducersMemoryIsNotAnnouncedAgain) {
  const BUFFER_HANDLE buffer = AllocOf(64);
  void *const base = BufferPointer(buffer, BUFFER_INFO_BASE);
  ASSERT_NE(nullptr, base);
  BUFFER_HANDLE again = this;
  EXPECT_GC_FROM(GC_ERR_RESOURCE_IN_USE, "Buffer already in use", "GenICam::Client::CDataStream::DSAnnounceBuffer",
                 Gc().DSAnnounceBuffer(m_hStream, base, 64, nullptr, &again));
  EXPECT_EQ(this, again);
  EXPECT_EQ(1U, Announced());
}

// Revoking ------------------------------------------------------------------------------------------------------------

TEST_F(StreamTest, RevocationGivesTheConsumersMemoryBack) {
  std::array<uint8_t, 32> memory{};
  int user = 0;
  BUFFER_HANDLE buffer = nullptr;
  ASSERT_GC_OK(Gc().DSAnnounceBuffer(OpenStream(), memory.data(), memory.size(), &user, &buffer));
  void *base = nullptr;
  void *priv = nullptr;
  EXPECT_GC_OK(Gc().DSRevokeBuffer(m_hStream, buffer, &base, &priv));
  EXPECT_EQ(memory.data(), base);
  EXPECT_EQ(&user, priv);
  EXPECT_EQ(0U, Announced());
}

TEST_F(StreamTest, RevocationKeepsTheProducersMemoryBack) {
  int user = 0;
  void *base = this;
  void *priv = nullptr;
  const BUFFER_HANDLE buffer = AllocOf(16, &user);
  EXPECT_GC_OK(Gc().DSRevokeBuffer(m_hStream, buffer, &base, &priv));
  EXPECT_EQ(nullptr, base);
  EXPECT_EQ(&user, priv);
}

TEST_F(StreamTest, RevocationTakesNullPointersForItsAnswers) {
  OpenStream();
  std::array<uint8_t, 32> memory{};
  int user = 0;
  const auto announce = [&] {
    BUFFER_HANDLE buffer = nullptr;
    EXPECT_GC_OK(Gc().DSAnnounceBuffer(OpenStream(), memory.data(), memory.size(), &user, &buffer));
    return buffer;
  };
  void *answer = nullptr;
  EXPECT_GC_OK(Gc().DSRevokeBuffer(m_hStream, announce(), nullptr, nullptr));
  EXPECT_GC_OK(Gc().DSRevokeBuffer(m_hStream, announce(), &answer, nullptr));
  EXPECT_EQ(memory.data(), answer);
  EXPECT_GC_OK(Gc().DSRevokeBuffer(m_hStream, announce(), nullptr, &answer));
  EXPECT_EQ(&user, answer);
}

TEST_F(StreamTest, QueuedBufferIsNotRevoked) {
  const BUFFER_HANDLE buffer = Alloc();
  Queue(buffer);
  void *base = this;
  EXPECT_GC_FROM(GC_ERR_RESOURCE_IN_USE, "Buffer is still queued.", "GenICam::Client::CDataStream::DSRevokeBuffer",
                 Gc().DSRevokeBuffer(m_hStream, buffer, &base, nullptr));
  EXPECT_EQ(this, base);
  EXPECT_EQ(1U, Announced());
}

TEST_F(StreamTest, BufferInDeliveryIsNotRevoked) {
  const EVENT_HANDLE event = NewBufferEvent();
  const BUFFER_HANDLE buffer = Run(2).front();
  Frame();
  EXPECT_FALSE(FlagsOf(buffer).queued);
  EXPECT_GC(GC_ERR_RESOURCE_IN_USE, "Buffer is still queued.",
            Gc().DSRevokeBuffer(m_hStream, buffer, nullptr, nullptr));
  EXPECT_EQ(buffer, Take(event));
  EXPECT_GC_OK(Gc().DSRevokeBuffer(m_hStream, buffer, nullptr, nullptr)) << "taken: not refused, though it runs";
  EXPECT_TRUE(Grabbing());
  EXPECT_EQ(1U, Announced());
}

TEST_F(StreamTest, AnotherStreamsBufferIsNotRevoked) {
  const BUFFER_HANDLE foreign = Alloc();
  DEV_HANDLE device = nullptr;
  ASSERT_GC_OK(Gc().IFOpenDevice(OpenInterface(), "Channel #2", DEVICE_ACCESS_EXCLUSIVE, &device));
  DS_HANDLE stream = nullptr;
  ASSERT_GC_OK(Gc().DevOpenDataStream(device, "Stream #1", &stream));
  EXPECT_GC(GC_ERR_INVALID_PARAMETER, "Invalid Buffer Handle.", Gc().DSRevokeBuffer(stream, foreign, nullptr, nullptr));
  EXPECT_GC_FROM(GC_ERR_INVALID_PARAMETER, "Invalid Buffer Handle.", "GenICam::Client::CDataStream::DSQueueBuffer",
                 Gc().DSQueueBuffer(stream, foreign))
      << "nor queued";
  EXPECT_FALSE(FlagsOf(foreign).queued);
  const Info size = BufferInfo(stream, foreign, BUFFER_INFO_SIZE);
  EXPECT_EQ(GC_ERR_SUCCESS, size.result) << "a question is the buffer's, whatever the stream";
  EXPECT_EQ(PayloadSize(), size.As<size_t>());
  EXPECT_EQ(1U, Announced());
  EXPECT_GC_OK(Gc().DevClose(device));
}

TEST_F(StreamTest, RevokingByTheFirstIdEmptiesTheStream) {
  AllocMany(3);
  BUFFER_HANDLE buffer = nullptr;
  size_t revoked = 0;
  while (Gc().DSGetBufferID(m_hStream, 0, &buffer) == GC_ERR_SUCCESS) {
    ASSERT_GC_OK(Gc().DSRevokeBuffer(m_hStream, buffer, nullptr, nullptr));
    ++revoked;
  }
  EXPECT_EQ(3U, revoked);
}

// Queueing ------------------------------------------------------------------------------------------------------------

TEST_F(StreamTest, QueueingTwiceDoesNothingTheSecondTime) {
  const BUFFER_HANDLE buffer = Alloc();
  Queue(buffer);
  Queue(buffer);
  EXPECT_TRUE(FlagsOf(buffer).queued);
  EXPECT_EQ(1U, Queued());
  Start();
  const size_t mark = Script().Mark();
  Queue(buffer);
  EXPECT_EQ(0U, Releases(mark)) << "also while the library runs";
}

TEST_F(StreamTest, QueueingOutsideARunMakesNoLibraryCall) {
  const BUFFER_HANDLE buffer = Alloc();
  const size_t mark = Script().Mark();
  Queue(buffer);
  EXPECT_EQ(std::vector<std::string>{}, Trace(mark));
}

TEST_F(StreamTest, QueueingAfterAStopMakesNoLibraryCall) {
  const EVENT_HANDLE event = NewBufferEvent();
  Run(2);
  Frame();
  const BUFFER_HANDLE buffer = Take(event);
  Stop();
  const size_t mark = Script().Mark();
  Queue(buffer);
  EXPECT_EQ(0U, Releases(mark));
  EXPECT_TRUE(FlagsOf(buffer).queued);
}

TEST_F(StreamTest, FailedReleaseReachesTheCallerBehindTheFlags) {
  const EVENT_HANDLE event = NewBufferEvent();
  Run(2);
  Frame();
  const BUFFER_HANDLE buffer = Take(event);
  Script().On(Match(Op::StreamRead, GRB_STREAM_RELEASE), Broken());
  EXPECT_GC_FROM(GC_ERR_ERROR, "Failed releasing buffer ID 0x00000000.: " + LibraryText("GRB_StreamRead"),
                 "GenICam::Client::CStreamImpl::ReleaseBuffer", Gc().DSQueueBuffer(m_hStream, buffer));
  const Flags flags = FlagsOf(buffer);
  EXPECT_TRUE(flags.queued);
  EXPECT_FALSE(flags.newData);
  EXPECT_FALSE(flags.present);
  EXPECT_EQ(0U, flags.filled);
}

}  // namespace
}  // namespace StreamTests
