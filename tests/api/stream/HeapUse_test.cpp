// SPDX-License-Identifier: MIT
// In steady state no frame, no register read and no event asks the heap for anything.
#include "HeapCount.h"
#include "StreamFixture.h"

namespace StreamTests {
namespace {

class HeapUse : public StreamTest {
 protected:
  /// The heap requests of many rounds of an action, behind some rounds that may warm up.
  template <class Action>
  static size_t Count(Action action) {
    constexpr int kWarmUp = 300;  // more than a block of any list has entries
    constexpr int kRounds = 5000;
    for (int round = 0; round < kWarmUp; ++round) {
      action();
    }
    const size_t before = HeapRequestsOfThisThread();
    for (int round = 0; round < kRounds; ++round) {
      action();
    }
    return HeapRequestsOfThisThread() - before;
  }

  void TearDown() override {
    Script().SetQuiet(false);
    StreamTest::TearDown();
  }
};

TEST_F(HeapUse, RequestsOfTheProducerAreSeen) {
  // A failing call makes an exception and its text: without this, a count of 0 would prove nothing.
  OpenStream();
  HeapRequestsOfThisThread();  // installs what counts
  const size_t before = HeapRequestsOfThisThread();
  Gc().DSFlushQueue(m_hStream, 99);
  EXPECT_LT(before, HeapRequestsOfThisThread());
}

TEST_F(HeapUse, NoneForAFrame) {
  const EVENT_HANDLE event = NewBufferEvent();
  Run(4);
  Script().SetQuiet(true);
  GC_ERROR result = GC_ERR_SUCCESS;
  const size_t requests = Count([&] {
    Script().FireCallback(GRB_EVENT_BUFFER_READY);
    EVENT_NEW_BUFFER_DATA data{};
    size_t size = sizeof(data);
    result = Gc().EventGetData(event, &data, &size, 1000);
    for (const BUFFER_INFO_CMD cmd : {BUFFER_INFO_FRAMEID, BUFFER_INFO_WIDTH, BUFFER_INFO_BASE}) {
      INFO_DATATYPE type = 0;
      uint64_t value = 0;
      size = sizeof(value);
      Gc().DSGetBufferInfo(m_hStream, data.BufferHandle, cmd, &type, &value, &size);
    }
    Gc().DSQueueBuffer(m_hStream, data.BufferHandle);
  });
  EXPECT_EQ(GC_ERR_SUCCESS, result);
  EXPECT_EQ(0U, requests);
}

TEST_F(HeapUse, NoneForFramesThatPileUp) {
  const EVENT_HANDLE event = NewBufferEvent();
  constexpr size_t kBuffers = 8;
  Run(kBuffers);
  Script().SetQuiet(true);
  const size_t requests = Count([&] {
    for (size_t i = 0; i < kBuffers; ++i) {
      Script().FireCallback(GRB_EVENT_BUFFER_READY);
    }
    for (size_t i = 0; i < kBuffers; ++i) {
      EVENT_NEW_BUFFER_DATA data{};
      size_t size = sizeof(data);
      Gc().EventGetData(event, &data, &size, 1000);
      Gc().DSQueueBuffer(m_hStream, data.BufferHandle);
    }
  });
  EXPECT_EQ(0U, requests);
  EXPECT_EQ(0U, Awaiting());
}

struct ReadRow {
  const char *name;
  bool ofDevice;
  uint64_t address;
  size_t size;
};

class HeapUseOfReads : public HeapUse, public testing::WithParamInterface<ReadRow> {};

TEST_P(HeapUseOfReads, None) {
  const ReadRow &row = GetParam();
  OpenStream();
  const PORT_HANDLE port = row.ofDevice ? m_hDevice : m_hStream;
  Script().SetQuiet(true);
  GC_ERROR result = GC_ERR_SUCCESS;
  const size_t requests = Count([&] {
    uint8_t buffer[64];
    size_t size = row.size;
    result = Gc().GCReadPort(port, row.address, buffer, &size);
  });
  EXPECT_EQ(GC_ERR_SUCCESS, result);
  EXPECT_EQ(0U, requests);
}

INSTANTIATE_TEST_SUITE_P(All, HeapUseOfReads,
                         testing::Values(ReadRow{"AnnouncedCount", false, 0x4, 8},
                                         ReadRow{"PayloadSize", false, 0x34, 8}, ReadRow{"Name", false, 0x80, 64},
                                         ReadRow{"Xml", false, 0x200, 64}, ReadRow{"VirtualWidth", true, 0x604, 4},
                                         ReadRow{"VirtualPixelFormat", true, 0x620, 4}),
                         [](const auto &row) { return std::string(row.param.name); });

TEST_F(HeapUse, NoneForAVirtualWrite) {
  OpenStream();
  Script().SetQuiet(true);
  const size_t requests = Count([&] { WriteU32(m_hDevice, 0x604, 64); });
  EXPECT_EQ(0U, requests);
}

TEST_F(HeapUse, NoneForStreamInfos) {
  OpenStream();
  Script().SetQuiet(true);
  const size_t requests = Count([&] {
    for (const STREAM_INFO_CMD cmd : {STREAM_INFO_NUM_DELIVERED, STREAM_INFO_NUM_QUEUED, STREAM_INFO_PAYLOAD_SIZE}) {
      INFO_DATATYPE type = 0;
      uint64_t value = 0;
      size_t size = sizeof(value);
      Gc().DSGetInfo(m_hStream, cmd, &type, &value, &size);
    }
  });
  EXPECT_EQ(0U, requests);
}

}  // namespace
}  // namespace StreamTests
