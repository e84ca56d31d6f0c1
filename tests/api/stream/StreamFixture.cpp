// SPDX-License-Identifier: MIT
#include "StreamFixture.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

// A failed allocation is part of the tests: the sanitizers' allocators must answer with null, as the plain one does.
extern "C" const char *__asan_default_options();  // NOLINT: the sanitizers' own name
extern "C" const char *__tsan_default_options();  // NOLINT
const char *__asan_default_options() { return "allocator_may_return_null=1"; }
const char *__tsan_default_options() { return "allocator_may_return_null=1"; }

namespace StreamTests {

std::string LibraryText(const char *function) {
  return std::string(kScriptedText) + " (" + function + " returned error code 0x8123)";
}

std::string Format(const char *pattern, unsigned long long value) {
  char text[256];
  const int length = std::snprintf(text, sizeof(text), pattern, value);
  return {text, static_cast<size_t>(length)};
}

std::string FormatId(const char *pattern, long value) {
  char text[256];
  const int length = std::snprintf(text, sizeof(text), pattern, value);
  return {text, static_cast<size_t>(length)};
}

BUFFER_HANDLE StreamTest::AllocOf(size_t size, void *user) {
  BUFFER_HANDLE buffer = nullptr;
  EXPECT_GC_OK(Gc().DSAllocAndAnnounceBuffer(OpenStream(), size, user, &buffer));
  EXPECT_NE(nullptr, buffer);
  return buffer;
}

std::vector<BUFFER_HANDLE> StreamTest::AllocMany(size_t count) {
  std::vector<BUFFER_HANDLE> buffers;
  for (size_t i = 0; i < count; ++i) {
    buffers.push_back(Alloc());
  }
  return buffers;
}

uint64_t StreamTest::BufferNumber(BUFFER_HANDLE buffer, BUFFER_INFO_CMD cmd) {
  const Info info = BufferInfo(m_hStream, buffer, cmd);
  EXPECT_EQ(GC_ERR_SUCCESS, info.result) << "command " << cmd;
  uint64_t value = 0;
  EXPECT_LE(info.bytes.size(), sizeof(value));
  std::memcpy(&value, info.bytes.data(), std::min(info.bytes.size(), sizeof(value)));
  return value;
}

void *StreamTest::BufferPointer(BUFFER_HANDLE buffer, BUFFER_INFO_CMD cmd) {
  return BufferInfo(m_hStream, buffer, cmd).As<void *>();
}

Flags StreamTest::FlagsOf(BUFFER_HANDLE buffer) {
  Flags flags;
  flags.queued = BufferNumber(buffer, BUFFER_INFO_IS_QUEUED) != 0;
  flags.newData = BufferNumber(buffer, BUFFER_INFO_NEW_DATA) != 0;
  flags.present = BufferNumber(buffer, BUFFER_INFO_IMAGEPRESENT) != 0;
  flags.acquiring = BufferNumber(buffer, BUFFER_INFO_IS_ACQUIRING) != 0;
  flags.incomplete = BufferNumber(buffer, BUFFER_INFO_IS_INCOMPLETE) != 0;
  flags.filled = BufferNumber(buffer, BUFFER_INFO_SIZE_FILLED);
  return flags;
}

uint64_t StreamTest::StreamNumber(STREAM_INFO_CMD cmd) {
  const Info info = DsInfo(OpenStream(), cmd);
  EXPECT_EQ(GC_ERR_SUCCESS, info.result) << "command " << cmd;
  uint64_t value = 0;
  EXPECT_LE(info.bytes.size(), sizeof(value));
  std::memcpy(&value, info.bytes.data(), std::min(info.bytes.size(), sizeof(value)));
  return value;
}

std::vector<BUFFER_HANDLE> StreamTest::Run(size_t count, uint64_t frames) {
  std::vector<BUFFER_HANDLE> buffers = QueueBuffers(count);
  Start(frames);
  return buffers;
}

BUFFER_HANDLE StreamTest::Take(EVENT_HANDLE event) {
  const EventResult taken = GetEvent(event, 0);
  EXPECT_EQ(GC_ERR_SUCCESS, taken.result) << taken.error.text;
  return taken.result == GC_ERR_SUCCESS ? taken.NewBuffer().BufferHandle : nullptr;
}

ErrorBlock StreamTest::TakeError(EVENT_HANDLE event) {
  ErrorBlock block;
  const EventResult taken = GetEvent(event, 0, 4096);
  EXPECT_EQ(GC_ERR_SUCCESS, taken.result) << taken.error.text;
  if (taken.result != GC_ERR_SUCCESS || taken.data.size() < 5) {
    ADD_FAILURE() << "no error block, " << taken.data.size() << " bytes";
    return block;
  }
  std::memcpy(&block.code, taken.data.data(), sizeof(block.code));
  EXPECT_EQ(0, taken.data.back()) << "the text's terminator";
  block.text.assign(reinterpret_cast<const char *>(taken.data.data()) + 4, taken.data.size() - 5);
  return block;
}

uint64_t StreamTest::EventNumber(EVENT_HANDLE event, EVENT_INFO_CMD cmd) {
  const Info info = EventInfo(event, cmd);
  EXPECT_EQ(GC_ERR_SUCCESS, info.result) << "command " << cmd;
  uint64_t value = 0;
  EXPECT_LE(info.bytes.size(), sizeof(value));
  std::memcpy(&value, info.bytes.data(), std::min(info.bytes.size(), sizeof(value)));
  return value;
}

std::vector<std::string> StreamTest::Trace(size_t mark) {
  const std::string stream = "(h" + std::to_string(StreamHandle());
  const std::string channel = "(h" + std::to_string(ChannelHandle());
  std::vector<std::string> lines = Script().Trace(mark);
  for (std::string &line : lines) {
    const size_t at = line.find("(h");
    if (at == std::string::npos) {
      continue;
    }
    const size_t end = line.find_first_of(",)", at);
    const std::string handle = line.substr(at, end - at);
    if (handle == stream) {
      line.replace(at, end - at, "(S");
    } else if (handle == channel) {
      line.replace(at, end - at, "(C");
    }
  }
  return lines;
}

}  // namespace StreamTests
