// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Producer.h"
#include "ScriptedGrb.h"

namespace StreamTests {

using namespace TestSupport;  // NOLINT: every test of this folder speaks GenTL and of the script
using namespace Scripted;     // NOLINT

/// The status and the text of failures that these tests script, and what the Producer's text of them is.
constexpr GRB_STATUS kScriptedStatus = 0x8123;
constexpr const char *kScriptedText = "It broke.";
std::string LibraryText(const char *function);

/// Formats one number into a message's pattern.
std::string Format(const char *pattern, unsigned long long value);
std::string FormatId(const char *pattern, long value);

/// What can be seen of a buffer's flags.
struct Flags {
  bool queued = false;
  bool newData = false;
  bool present = false;
  bool acquiring = false;
  bool incomplete = false;
  size_t filled = 0;
};

/// An error event's block, taken apart.
struct ErrorBlock {
  int32_t code = 0;
  std::string text;  ///< without the terminator
};

/// A stream of the camera behind GRB_CHANNEL_1, 64 x 48 Mono8 at first, and short names for what tests do with it.
class StreamTest : public ProducerTest {
 protected:
  static constexpr const char *kModule = "GenICam::Client::CDataStream::";
  static constexpr const char *kEngine = "GenICam::Client::CStreamImpl::";

  // Buffers
  BUFFER_HANDLE Alloc(void *user = nullptr) { return AllocOf(PayloadSize(), user); }
  BUFFER_HANDLE AllocOf(size_t size, void *user = nullptr);
  std::vector<BUFFER_HANDLE> AllocMany(size_t count);
  void Queue(BUFFER_HANDLE buffer) { ASSERT_GC_OK(Gc().DSQueueBuffer(m_hStream, buffer)); }
  Flags FlagsOf(BUFFER_HANDLE buffer);
  uint64_t BufferNumber(BUFFER_HANDLE buffer, BUFFER_INFO_CMD cmd);
  void *BufferPointer(BUFFER_HANDLE buffer, BUFFER_INFO_CMD cmd);

  // Stream
  uint64_t StreamNumber(STREAM_INFO_CMD cmd);
  uint64_t Queued() { return StreamNumber(STREAM_INFO_NUM_QUEUED); }
  uint64_t Awaiting() { return StreamNumber(STREAM_INFO_NUM_AWAIT_DELIVERY); }
  uint64_t Announced() { return StreamNumber(STREAM_INFO_NUM_ANNOUNCED); }
  uint64_t Delivered() { return StreamNumber(STREAM_INFO_NUM_DELIVERED); }
  uint64_t Started() { return StreamNumber(STREAM_INFO_NUM_STARTED); }
  bool Grabbing() { return StreamNumber(STREAM_INFO_IS_GRABBING) != 0; }
  void Start(uint64_t frames = GENTL_INFINITE) {
    ASSERT_GC_OK(Gc().DSStartAcquisition(m_hStream, ACQ_START_FLAGS_DEFAULT, frames));
  }
  void Stop() { ASSERT_GC_OK(Gc().DSStopAcquisition(m_hStream, ACQ_STOP_FLAGS_DEFAULT)); }
  void Flush(ACQ_QUEUE_TYPE operation) { ASSERT_GC_OK(Gc().DSFlushQueue(m_hStream, operation)); }
  /// The library reports a filled buffer, on this thread.
  void Frame() { ASSERT_TRUE(Script().FireCallback(GRB_EVENT_BUFFER_READY)); }
  /// Everything that a first frame needs: count buffers queued, the stream running.
  std::vector<BUFFER_HANDLE> Run(size_t count, uint64_t frames = GENTL_INFINITE);

  // Events
  EVENT_HANDLE NewBufferEvent() { return RegisterEvent(OpenStream(), EVENT_NEW_BUFFER); }
  EVENT_HANDLE ErrorEvent() { return RegisterEvent(OpenStream(), EVENT_ERROR); }
  /// The oldest buffer of the delivery list; adds a failure and gives null when there is none.
  BUFFER_HANDLE Take(EVENT_HANDLE event);
  /// The oldest error; adds a failure when there is none.
  ErrorBlock TakeError(EVENT_HANDLE event);
  uint64_t EventNumber(EVENT_HANDLE event, EVENT_INFO_CMD cmd);

  // The library
  static GRB_HANDLE StreamHandle() { return Script().OpenHandle(GRB_BOARD_1, GRB_CHANNEL_1, GRB_MODE_ACQ_ONLY); }
  static GRB_HANDLE ChannelHandle() { return Script().OpenHandle(GRB_BOARD_1, GRB_CHANNEL_1, GRB_MODE_CONTROL); }
  /// The calls since the mark, one line each; the stream's handle reads S, the channel's C.
  static std::vector<std::string> Trace(size_t mark);
  static size_t Count(uint32_t streamOperation, size_t mark = 0) {
    return Script().Count(Match(Op::StreamRead, streamOperation), mark);
  }
  static size_t Releases(size_t mark = 0) { return Count(GRB_STREAM_RELEASE, mark); }
  static void SetParameter(uint32_t identifier, uint64_t value) {
    Script().SetParameter(GRB_BOARD_1, GRB_CHANNEL_1, identifier, value);
  }
  static void SetSize(uint32_t width, uint32_t height) {
    SetParameter(GRB_ROI_XLENGTH, width);
    SetParameter(GRB_ROI_YLENGTH, height);
  }
  static Reply Broken() { return Reply::Failure(kScriptedStatus, kScriptedText); }
};

/// For tests of assertions: the child begins the test anew, as threads are about.
class StreamDeathTest : public StreamTest {
 protected:
  StreamDeathTest() { GTEST_FLAG_SET(death_test_style, "threadsafe"); }
};

}  // namespace StreamTests
