// SPDX-License-Identifier: MIT
#include "BufferInfo.h"

#include <cstring>

#include "Failures.h"

namespace GenICam::Client {
namespace {

uint64_t Number(const CBufferInfo &buffer, BUFFER_INFO_CMD cmd) {
  uint64_t value = 0;
  size_t size = sizeof(value);
  INFO_DATATYPE type = 0;
  buffer.GetInfo(cmd, &type, &value, &size);
  return value;
}

TEST(BufferInfo, ConsumersMemory) {
  uint8_t memory[100];
  int user = 0;
  {
    const CBufferInfo buffer(memory, sizeof(memory), &user);
    EXPECT_EQ(memory, buffer.Buffer());
    EXPECT_EQ(sizeof(memory), buffer.Size());
    EXPECT_EQ(&user, buffer.UserPointer());
    EXPECT_FALSE(buffer.OwnsMemory());
    EXPECT_EQ("Buffer", buffer.GetName());
  }
  memory[0] = 1;  // not freed
}

TEST(BufferInfo, ProducersMemory) {
  const CBufferInfo buffer(size_t{100}, nullptr, false);
  EXPECT_TRUE(buffer.OwnsMemory());
  std::memset(buffer.Buffer(), 1, 100);  // all of it is there
}

TEST(BufferInfo, ExternalMemoryIsNotAllocated) {
  const CBufferInfo buffer(size_t{100}, nullptr, true);
  EXPECT_FALSE(buffer.OwnsMemory());
  EXPECT_FAILURE(unknown_error, "Invalid Memory Buffer", buffer.Buffer());
}

TEST(BufferInfo, NullMemoryShowsWhenAskedFor) {
  const CBufferInfo buffer(nullptr, 10, nullptr);
  EXPECT_EQ(nullptr, buffer.Base());
  EXPECT_FAILURE(unknown_error, "Invalid Memory Buffer", buffer.Buffer());
  EXPECT_FAILURE(unknown_error, "Invalid Memory Buffer", Number(buffer, BUFFER_INFO_BASE));
  EXPECT_EQ(10U, Number(buffer, BUFFER_INFO_SIZE));
}

TEST(BufferInfo, NewBufferIsARowOfBytes) {
  const CBufferInfo buffer(size_t{77}, nullptr, false);
  EXPECT_EQ(1U, Number(buffer, BUFFER_INFO_WIDTH));
  EXPECT_EQ(77U, Number(buffer, BUFFER_INFO_HEIGHT));
  EXPECT_EQ(0U, Number(buffer, BUFFER_INFO_DELIVERED_IMAGEHEIGHT));
  EXPECT_FALSE(buffer.IsQueued());
  EXPECT_FALSE(buffer.IsInDelivery());
  EXPECT_FALSE(buffer.HasNewData());
  EXPECT_EQ(0U, buffer.BufferId());
}

TEST(BufferInfo, QueueingClearsWhatTheNextFrameDecidesAndNothingElse) {
  CBufferInfo buffer(size_t{77}, nullptr, false);
  buffer.StampFilled({60, 48, 0x0110000C, 8, 6144});
  buffer.SetTimestamp(123);
  buffer.SetFrameId(9);
  buffer.SetBufferId(8);
  EXPECT_TRUE(buffer.IsInDelivery());
  EXPECT_TRUE(buffer.HasNewData());
  EXPECT_FALSE(buffer.IsQueued());
  buffer.ResetToQueued();
  EXPECT_TRUE(buffer.IsQueued());
  EXPECT_FALSE(buffer.IsInDelivery());
  EXPECT_FALSE(buffer.HasNewData());
  EXPECT_EQ(0U, Number(buffer, BUFFER_INFO_IMAGEPRESENT));
  EXPECT_EQ(0U, Number(buffer, BUFFER_INFO_SIZE_FILLED));
  EXPECT_EQ(60U, Number(buffer, BUFFER_INFO_WIDTH));
  EXPECT_EQ(48U, Number(buffer, BUFFER_INFO_HEIGHT));
  EXPECT_EQ(48U, Number(buffer, BUFFER_INFO_DELIVERED_IMAGEHEIGHT));
  EXPECT_EQ(8U, Number(buffer, BUFFER_INFO_XPADDING));
  EXPECT_EQ(0x0110000CU, Number(buffer, BUFFER_INFO_PIXELFORMAT));
  EXPECT_EQ(123U, Number(buffer, BUFFER_INFO_TIMESTAMP));
  EXPECT_EQ(9U, Number(buffer, BUFFER_INFO_FRAMEID));
  EXPECT_EQ(8U, buffer.BufferId()) << "the id of an earlier run stays too";
}

TEST(BufferInfo, DiscardClearsThreeFlagsOnly) {
  CBufferInfo buffer(size_t{77}, nullptr, false);
  buffer.StampFilled({60, 48, 1, 8, 6144});
  buffer.SetQueued(true);
  buffer.Discard();
  EXPECT_FALSE(buffer.IsQueued());
  EXPECT_FALSE(buffer.IsInDelivery());
  EXPECT_FALSE(buffer.HasNewData());
  EXPECT_EQ(1U, Number(buffer, BUFFER_INFO_IMAGEPRESENT));
  EXPECT_EQ(6144U, Number(buffer, BUFFER_INFO_SIZE_FILLED));
}

TEST(BufferInfo, StampFillsAllFields) {
  CBufferInfo buffer(size_t{77}, nullptr, false);
  buffer.SetQueued(true);
  buffer.StampFilled({3, 5, 0x01080001, 13, 80});
  constexpr struct {
    BUFFER_INFO_CMD cmd;
    uint64_t value;
  } kRows[] = {
      {BUFFER_INFO_NEW_DATA, 1},
      {BUFFER_INFO_IS_QUEUED, 0},
      {BUFFER_INFO_IS_ACQUIRING, 0},
      {BUFFER_INFO_IS_INCOMPLETE, 0},
      {BUFFER_INFO_SIZE_FILLED, 80},
      {BUFFER_INFO_WIDTH, 3},
      {BUFFER_INFO_HEIGHT, 5},
      {BUFFER_INFO_XOFFSET, 0},
      {BUFFER_INFO_YOFFSET, 0},
      {BUFFER_INFO_XPADDING, 13},
      {BUFFER_INFO_YPADDING, 0},
      {BUFFER_INFO_IMAGEPRESENT, 1},
      {BUFFER_INFO_IMAGEOFFSET, 0},
      {BUFFER_INFO_PAYLOADTYPE, 1},
      {BUFFER_INFO_PIXELFORMAT, 0x01080001},
      {BUFFER_INFO_PIXELFORMAT_NAMESPACE, 1},
      {BUFFER_INFO_DELIVERED_IMAGEHEIGHT, 5},
      {BUFFER_INFO_DELIVERED_CHUNKPAYLOADSIZE, 0},
      {BUFFER_INFO_CHUNKLAYOUTID, 0},
  };
  for (const auto &row : kRows) {
    EXPECT_EQ(row.value, Number(buffer, row.cmd)) << row.cmd;
  }
}

TEST(BufferInfo, EveryPortOperationRefuses) {
  CBufferInfo buffer(size_t{77}, nullptr, false);
  const char *const message = "Buffer Module does not support Port functions.";
  size_t size = 4;
  uint32_t value = 0;
  INFO_DATATYPE type = 0;
  EXPECT_FAILURE(notimplemented_error, message, buffer.ReadData(0, &value, &size));
  EXPECT_FAILURE(notimplemented_error, message, buffer.WriteData(0, &value, &size));
  EXPECT_FAILURE(notimplemented_error, message, buffer.GetURL(nullptr, &size));
  EXPECT_FAILURE(notimplemented_error, message, buffer.GetPortInfo(0, &type, nullptr, &size));
  EXPECT_FAILURE(notimplemented_error, message, buffer.GetNumPortURLs(&value));
  EXPECT_FAILURE(notimplemented_error, message, buffer.GetPortURLInfo(0, 0, &type, nullptr, &size));
}

TEST(BufferInfo, EventOperationsRefuseInTwoWays) {
  CBufferInfo buffer(size_t{77}, nullptr, false);
  EVENT_HANDLE event = nullptr;
  EXPECT_FAILURE(invalidparameter_error, "Event ID 1 not implemented", buffer.Register(EVENT_NEW_BUFFER, &event));
  EXPECT_FAILURE(unknown_error, "Event ID 1 not implemented", buffer.Unregister(EVENT_NEW_BUFFER));
}

}  // namespace
}  // namespace GenICam::Client
