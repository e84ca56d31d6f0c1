// SPDX-License-Identifier: MIT
#include <thread>

#include "Camera.h"

namespace {

using namespace SystemTest;  // NOLINT

class Frames : public SimulationTest {};

/// All that a Consumer can ask about a frame of the shape, and its pixels.
void ExpectFrame(const CStream &stream, BUFFER_HANDLE buffer, const PictureShape &shape, uint64_t frame) {
  DS_HANDLE const handle = stream.Handle();
  const size_t line = LineBytes(*shape.format, shape.width);
  EXPECT_EQ(BufferValue<uint64_t>(handle, buffer, BUFFER_INFO_FRAMEID), frame);
  EXPECT_EQ(BufferValue<size_t>(handle, buffer, BUFFER_INFO_WIDTH), shape.width);
  EXPECT_EQ(BufferValue<size_t>(handle, buffer, BUFFER_INFO_HEIGHT), shape.height);
  EXPECT_EQ(BufferValue<size_t>(handle, buffer, BUFFER_INFO_DELIVERED_IMAGEHEIGHT), shape.height);
  EXPECT_EQ(BufferValue<size_t>(handle, buffer, BUFFER_INFO_XPADDING), line - shape.width * shape.format->bytes);
  EXPECT_EQ(BufferValue<size_t>(handle, buffer, BUFFER_INFO_YPADDING), 0U);
  EXPECT_EQ(BufferValue<size_t>(handle, buffer, BUFFER_INFO_XOFFSET), 0U);
  EXPECT_EQ(BufferValue<size_t>(handle, buffer, BUFFER_INFO_YOFFSET), 0U);
  EXPECT_EQ(BufferValue<size_t>(handle, buffer, BUFFER_INFO_IMAGEOFFSET), 0U);
  EXPECT_EQ(BufferValue<size_t>(handle, buffer, BUFFER_INFO_SIZE_FILLED), line * shape.height);
  EXPECT_EQ(BufferValue<uint64_t>(handle, buffer, BUFFER_INFO_PIXELFORMAT), shape.format->pfnc);
  EXPECT_EQ(BufferValue<size_t>(handle, buffer, BUFFER_INFO_PAYLOADTYPE), static_cast<size_t>(PAYLOAD_TYPE_IMAGE));
  EXPECT_EQ(BufferValue<uint8_t>(handle, buffer, BUFFER_INFO_IMAGEPRESENT), 1);
  EXPECT_EQ(BufferValue<uint8_t>(handle, buffer, BUFFER_INFO_NEW_DATA), 1);
  EXPECT_EQ(BufferValue<uint8_t>(handle, buffer, BUFFER_INFO_IS_INCOMPLETE), 0);
  EXPECT_EQ(BufferValue<uint8_t>(handle, buffer, BUFFER_INFO_IS_QUEUED), 0);
  CGuardedMemory &memory = stream.Memory(buffer);
  EXPECT_EQ(BufferValue<void *>(handle, buffer, BUFFER_INFO_BASE), memory.Data());
  EXPECT_TRUE(IsPicture(memory.Data(), shape, frame, kFilling));
  EXPECT_TRUE(memory.IsUntouchedBeyond(line * shape.height)) << "frame " << frame << " ran over its payload";
}

/// The first frames of a run, none of which can be lost: there is room for more than are taken.
void ExpectFirstFrames(CStream &stream, const PictureShape &shape, uint64_t count) {
  stream.Start();
  for (uint64_t frame = 1; frame <= count; ++frame) {
    BUFFER_HANDLE const buffer = stream.Next();
    ASSERT_NE(buffer, nullptr);
    ExpectFrame(stream, buffer, shape, frame);
  }
  stream.Stop();
}

class FramesOfFormat : public Frames, public testing::WithParamInterface<PixelFormatRow> {};

// Sizes that fill no line: a wrong number of bytes for a pixel, a wrong order of components, a wrong filling and a
// write beyond the payload each show in one format or another.
TEST_P(FramesOfFormat, HaveTheirPixelsPaddingAndSize) {
  const PixelFormatRow &format = GetParam();
  const uint32_t channel = 1 + format.pfnc % 2;
  DEV_HANDLE const device = OpenDevice(channel, 37, 7);
  ASSERT_OK(WriteU32(device, kPixelFormat, format.pfnc));
  CStream stream(device, channel);
  const PictureShape shape = stream.Shape();
  ASSERT_NE(shape.format, nullptr);
  ASSERT_EQ(shape.format->pfnc, format.pfnc);
  EXPECT_EQ(stream.PayloadSize(), LineBytes(format, 37) * 7);
  stream.Announce(5, 100);
  ExpectFirstFrames(stream, shape, 3);
}

INSTANTIATE_TEST_SUITE_P(All, FramesOfFormat, testing::ValuesIn(kPixelFormats),
                         [](const testing::TestParamInfo<PixelFormatRow> &row) { return row.param.name; });

TEST_F(Frames, OfTheMonochromeCameraHaveTheWholeSensor) {
  CStream stream(OpenDevice(1), 1);
  const PictureShape shape{FindPixelFormat(0x01080001), 1280, 1024, 1};
  EXPECT_EQ(stream.PayloadSize(), 1280U * 1024U);
  stream.Announce(6);
  ExpectFirstFrames(stream, shape, 4);
}

TEST_F(Frames, OfTheColourCameraHaveTheWholeSensor) {
  CStream stream(OpenDevice(2), 2);
  const PictureShape shape{FindPixelFormat(0x02180014), 1920, 1080, 2};
  EXPECT_EQ(stream.PayloadSize(), 1920U * 1080U * 3U);
  stream.Announce(4);
  ExpectFirstFrames(stream, shape, 2);
}

// A picture that stands still, or is the same for both cameras, would make all other checks of content worthless.
TEST_F(Frames, MoveAndDifferBetweenTheCameras) {
  std::vector<std::vector<uint8_t>> pictures;
  for (const uint32_t channel : {1U, 2U}) {
    DEV_HANDLE const device = OpenDevice(channel, 256, 16);
    ASSERT_OK(WriteU32(device, kPixelFormat, 0x01080001));
    CStream stream(device, channel);
    stream.Announce(4);
    stream.Start();
    for (int frame = 0; frame < 2; ++frame) {
      const CGuardedMemory &memory = stream.Memory(stream.Next());
      const uint8_t *const data = const_cast<CGuardedMemory &>(memory).Data();
      pictures.emplace_back(data, data + memory.Size());
    }
    stream.Stop();
  }
  for (size_t one = 0; one < pictures.size(); ++one) {
    for (size_t other = one + 1; other < pictures.size(); ++other) {
      EXPECT_NE(pictures[one], pictures[other]) << one << " and " << other;
    }
  }
}

// While the Consumer holds a buffer the library must not write into it, however late the Consumer is.
TEST_F(Frames, StayWholeWhileTheConsumerHoldsThem) {
  CStream stream(OpenDevice(1, 256, 64), 1);
  const PictureShape shape = stream.Shape();
  stream.Announce(3);
  stream.Start();
  uint64_t lastStamp = 0;
  for (uint64_t frame = 1; frame <= 300; ++frame) {
    BUFFER_HANDLE const buffer = stream.Next();
    ASSERT_NE(buffer, nullptr);
    uint8_t *const data = stream.Memory(buffer).Data();
    const uint64_t number = FrameInBuffer(data, shape);
    ASSERT_NE(number, 0U) << "frame " << frame;
    ASSERT_TRUE(IsPicture(data, shape, number, kFilling)) << "frame " << frame;
    ASSERT_EQ(BufferValue<uint64_t>(stream.Handle(), buffer, BUFFER_INFO_FRAMEID), frame);
    const auto stamp = BufferValue<uint64_t>(stream.Handle(), buffer, BUFFER_INFO_TIMESTAMP);
    ASSERT_GT(stamp, lastStamp);
    lastStamp = stamp;
    stream.Queue(buffer);
  }
  stream.Stop();
}

TEST_F(Frames, AreAsManyAsWereAskedFor) {
  CStream stream(OpenDevice(1, 64, 8), 1);
  const PictureShape shape = stream.Shape();
  stream.Announce(6);
  for (int run = 0; run < 3; ++run) {
    stream.Start(3);
    for (uint64_t frame = 1; frame <= 3; ++frame) {
      BUFFER_HANDLE const buffer = stream.Next();
      ASSERT_NE(buffer, nullptr);
      ExpectFrame(stream, buffer, shape, frame);
    }
    GC_ERROR result = GC_ERR_SUCCESS;
    EXPECT_EQ(NextBuffer(stream.Event(), 50, &result), nullptr);
    EXPECT_EQ(result, GC_ERR_TIMEOUT);
    EXPECT_EQ(StreamValue<uint8_t>(stream.Handle(), STREAM_INFO_IS_GRABBING), 1);
    stream.Stop();
    EXPECT_EQ(StreamValue<uint8_t>(stream.Handle(), STREAM_INFO_IS_GRABBING), 0);
    EXPECT_OK(Gc().DSFlushQueue(stream.Handle(), ACQ_QUEUE_ALL_TO_INPUT));
  }
}

// Buffers that are too large are no fault, and those without alignment neither.
TEST_F(Frames, ComeInMemoryOfAnyAlignmentAndSize) {
  for (const size_t misalignment : {1U, 3U, 7U, 33U}) {
    SCOPED_TRACE(misalignment);
    DEV_HANDLE const device = OpenDevice(1, 33, 5);
    {
      CStream stream(device, 1);
      stream.Announce(4, 4096 + misalignment, misalignment);
      ExpectFirstFrames(stream, stream.Shape(), 2);
    }
    EXPECT_OK(Gc().DevClose(device));
  }
}

// A camera of revision 1.1 tells its format, which a start takes over; the older one is left alone.
TEST_F(Frames, StartTakesOverTheFormatOfTheNewerCamera) {
  constexpr uint32_t kCameraPixelFormat = 0x6008;
  constexpr uint32_t kBayerRg12 = 0x01100011;
  for (const uint32_t channel : {1U, 2U}) {
    DEV_HANDLE const device = OpenDevice(channel, 64, 8);
    ASSERT_OK(WriteU32(device, kIncomingPixelFormat, 0x01080001));
    ASSERT_OK(WriteU32Be(RemotePort(device), kCameraPixelFormat, channel == 1 ? 0x0103 : kBayerRg12));
    CStream stream(device, channel);
    stream.Announce(3);
    ExpectFirstFrames(stream, stream.Shape(), 1);
    EXPECT_EQ(ReadU32(device, kIncomingPixelFormat), channel == 1 ? 0x01080001 : kBayerRg12);
  }
}

// Two threads, two streams, no lock in common: neither must wait for the other nor get the other's frames.
TEST_F(Frames, OfTwoStreamsAtOnceDoNotMix) {
  DEV_HANDLE const devices[] = {OpenDevice(1, 128, 32), OpenDevice(2, 96, 48)};
  std::vector<std::thread> threads;
  for (uint32_t channel = 1; channel <= 2; ++channel) {
    threads.emplace_back([&devices, channel] {
      CStream stream(devices[channel - 1], channel);
      const PictureShape shape = stream.Shape();
      stream.Announce(6);
      stream.Start();
      for (uint64_t frame = 1; frame <= 200; ++frame) {
        BUFFER_HANDLE const buffer = stream.Next();
        ASSERT_NE(buffer, nullptr);
        uint8_t *const data = stream.Memory(buffer).Data();
        const uint64_t number = FrameInBuffer(data, shape);
        ASSERT_TRUE(number != 0 && IsPicture(data, shape, number, kFilling)) << "channel " << channel;
        stream.Queue(buffer);
      }
      stream.Stop();
    });
  }
  for (std::thread &thread : threads) {
    thread.join();
  }
}

// Without blocking the library fills what the Consumer holds; the Consumer gets frames all the same.
TEST_F(Frames, FlowWithoutBlockingThoughNothingIsQueuedAgain) {
  constexpr uint64_t kAcqBlocking = 0x184C;
  DEV_HANDLE const device = OpenDevice(1, 64, 8);
  ASSERT_OK(WriteU32(device, kAcqBlocking, 2));
  CStream stream(device, 1);
  stream.Announce(2);
  stream.Start();
  for (uint64_t frame = 1; frame <= 10; ++frame) {
    ASSERT_NE(stream.Next(), nullptr);
  }
  EXPECT_GE(StreamValue<uint64_t>(stream.Handle(), STREAM_INFO_NUM_DELIVERED), 10U);
  stream.Stop();
}

}  // namespace
