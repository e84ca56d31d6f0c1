// SPDX-License-Identifier: MIT
#include "Grabber.h"

#include <chrono>

#include <gtest/gtest.h>

namespace {

constexpr auto kBound = std::chrono::seconds(10);

void Hook(const char *function, GRB_STATUS status, const char *description) {
  HookRecord &record = LastHook();
  ++record.calls;
  record.function = function == nullptr ? "" : function;
  record.status = status;
  record.text = description == nullptr ? "" : description;
}

uint32_t BytesPerPixel(uint32_t usrFormat) {
  switch (usrFormat) {
    case GRB_USR_FORMAT_MONO8:
    case GRB_USR_FORMAT_BAYER_RG8:
    case GRB_USR_FORMAT_BAYER_GR8:
    case GRB_USR_FORMAT_BAYER_GB8:
    case GRB_USR_FORMAT_BAYER_BG8:
      return 1;
    case GRB_USR_FORMAT_RGB8:
    case GRB_USR_FORMAT_BGR8:
      return 3;
    case GRB_USR_FORMAT_RGBA8:
      return 4;
    case GRB_USR_FORMAT_RGB16:
      return 6;
    case GRB_USR_FORMAT_RGBA16:
      return 8;
    default:
      return 2;
  }
}

}  // namespace

HookRecord &LastHook() {
  thread_local HookRecord record;
  return record;
}

void ClearHook() { LastHook() = HookRecord(); }

CGrabber::CGrabber() { EXPECT_EQ(GRB_Create(&m_hHandle, &Hook), GRB_OK); }

CGrabber::CGrabber(uint32_t mode, uint32_t channel, uint32_t board) : CGrabber() {
  m_OpenStatus = Open(mode, channel, board);
}

CGrabber::~CGrabber() {
  GRB_Close(&m_hHandle);
  GRB_Destroy(&m_hHandle);
}

GRB_STATUS CGrabber::Open(uint32_t mode, uint32_t channel, uint32_t board) {
  EXPECT_EQ(Set(GRB_OPEN_BOARD, board), GRB_OK);
  EXPECT_EQ(Set(GRB_OPEN_CHANNEL, channel), GRB_OK);
  EXPECT_EQ(Set(GRB_OPEN_MODE, mode), GRB_OK);
  EXPECT_EQ(Set(GRB_OPEN_VARIANT, GRB_VARIANT_ANY), GRB_OK);
  return GRB_Open(m_hHandle);
}

uint32_t CGrabber::Get(uint32_t identifier) const {
  uint32_t value = 0;
  EXPECT_EQ(GRB_ParameterGet(m_hHandle, identifier, &value), GRB_OK) << std::hex << identifier;
  return value;
}

uint64_t CGrabber::Get64(uint32_t identifier) const {
  uint64_t value = 0;
  EXPECT_EQ(GRB_ParameterGet(m_hHandle, identifier, &value), GRB_OK) << std::hex << identifier;
  return value;
}

GRB_STATUS CGrabber::Read(uint32_t address, void *buffer, uint32_t &size, uint32_t timeout) {
  return GRB_ControlRead(m_hHandle, GRB_PORT_CAMERA, &address, static_cast<uint8_t *>(buffer), &size, timeout);
}

GRB_STATUS CGrabber::Write(uint32_t address, const void *buffer, uint32_t &size, uint32_t timeout) {
  std::vector<uint8_t> bytes(static_cast<const uint8_t *>(buffer), static_cast<const uint8_t *>(buffer) + size);
  return GRB_ControlWrite(m_hHandle, GRB_PORT_CAMERA, &address, bytes.data(), &size, timeout);
}

uint32_t CGrabber::ReadWord(uint32_t address) {
  uint8_t bytes[4] = {};
  uint32_t size = sizeof(bytes);
  EXPECT_EQ(Read(address, bytes, size), GRB_OK) << std::hex << address;
  EXPECT_EQ(size, 4U);
  return static_cast<uint32_t>(bytes[0]) << 24 | static_cast<uint32_t>(bytes[1]) << 16 |
         static_cast<uint32_t>(bytes[2]) << 8 | bytes[3];
}

GRB_STATUS CGrabber::WriteWord(uint32_t address, uint32_t value) {
  const uint8_t bytes[4] = {static_cast<uint8_t>(value >> 24), static_cast<uint8_t>(value >> 16),
                            static_cast<uint8_t>(value >> 8), static_cast<uint8_t>(value)};
  uint32_t size = sizeof(bytes);
  return Write(address, bytes, size);
}

CRun::CRun(CGrabber &grabber, size_t slots) : m_Grabber(grabber) {
  const size_t bytes = grabber.Get(GRB_ROI_XLENGTH) * BytesPerPixel(grabber.Get(GRB_USR_FORMAT));
  m_iLineBytes = (bytes + 15) / 16 * 16;
  m_iLines = grabber.Get(GRB_ROI_YLENGTH);
  m_Slots.assign(slots, std::vector<uint8_t>(m_iLineBytes * m_iLines + kGuardBytes, kGuard));
  for (std::vector<uint8_t> &slot : m_Slots) {
    m_List.push_back(reinterpret_cast<uintptr_t>(slot.data()));
    m_List.push_back(0x1234);  // the second word means nothing to the library
  }
  m_List.resize(m_List.size() + 2);
}

CRun::~CRun() {
  // The memory must not go while the engine may still write to it.
  m_Grabber.Close();
}

void CRun::Prepare() {
  const GRB_HANDLE handle = m_Grabber.Handle();
  EXPECT_EQ(GRB_ParameterSet(handle, GRB_EVENT_CONTEXT, this), GRB_OK);
  EXPECT_EQ(m_Grabber.Set(GRB_ACQ_NUM_BUFFERS, static_cast<uint32_t>(m_Slots.size())), GRB_OK);
  EXPECT_EQ(GRB_ParameterSet(handle, GRB_DST_LIST, m_List.data()), GRB_OK);
  EXPECT_EQ(m_Grabber.Set(GRB_DST_LIST_KIND, GRB_DST_LIST_USER_PAIRS), GRB_OK);
  EXPECT_EQ(m_Grabber.Set(GRB_DST_LINE_BYTES, static_cast<uint32_t>(m_iLineBytes)), GRB_OK);
  EXPECT_EQ(m_Grabber.Set(GRB_DST_LINES, static_cast<uint32_t>(m_iLines)), GRB_OK);
  EXPECT_EQ(GRB_ParameterSet(handle, GRB_CACHE_FLUSH_BUFFERS, nullptr), GRB_OK);
  EXPECT_EQ(m_Grabber.Set(GRB_EVENT_MASK, GRB_EVENT_FIFO_OVERFLOW | GRB_EVENT_SYNC_LOST), GRB_OK);
  EXPECT_EQ(m_Grabber.Flush(), GRB_OK);
}

GRB_STATUS CRun::Start() {
  Prepare();
  return Restart();
}

GRB_STATUS CRun::Restart() {
  {
    std::lock_guard<std::mutex> lock(m_Lock);
    m_iNextSlot = 0;
  }
  return StartOnly();
}

GRB_STATUS CRun::StartOnly() {
  return GRB_StreamRead(m_Grabber.Handle(), GRB_STREAM_START, reinterpret_cast<void *>(&CRun::CallBack));
}

void CRun::CallBack(GRB_HANDLE handle, uint32_t events, void *context) {
  CRun &run = *static_cast<CRun *>(context);
  Event event{handle, events, std::this_thread::get_id(), {}};
  {
    std::lock_guard<std::mutex> lock(run.m_Lock);
    if ((events & GRB_EVENT_BUFFER_READY) != 0) {
      const std::vector<uint8_t> &slot = run.m_Slots[run.m_iNextSlot];
      event.firstLine.assign(slot.begin(), slot.begin() + static_cast<std::ptrdiff_t>(run.m_iLineBytes));
      run.m_iNextSlot = (run.m_iNextSlot + 1) % run.m_Slots.size();
    }
    run.m_Events.push_back(event);
    run.m_Changed.notify_all();
  }
  if (run.m_Handler) {
    run.m_Handler(run, event);
  }
}

bool CRun::WaitFor(const std::function<bool(const std::vector<Event> &)> &condition) {
  std::unique_lock<std::mutex> lock(m_Lock);
  return m_Changed.wait_for(lock, kBound, [&] { return condition(m_Events); });
}

bool CRun::WaitForFrames(size_t count) { return WaitForWord(GRB_EVENT_BUFFER_READY, count); }

bool CRun::WaitForWord(uint32_t word, size_t count) {
  return WaitFor([&](const std::vector<Event> &events) {
    size_t seen = 0;
    for (const Event &event : events) {
      seen += event.word == word ? 1 : 0;
    }
    return seen >= count;
  });
}

std::vector<CRun::Event> CRun::Events() {
  std::lock_guard<std::mutex> lock(m_Lock);
  return m_Events;
}

size_t CRun::Count(uint32_t word) {
  size_t seen = 0;
  for (const Event &event : Events()) {
    seen += event.word == word ? 1 : 0;
  }
  return seen;
}

bool CRun::GuardsAreWhole() const {
  for (const std::vector<uint8_t> &slot : m_Slots) {
    for (size_t i = m_iLineBytes * m_iLines; i < slot.size(); ++i) {
      if (slot[i] != kGuard) {
        return false;
      }
    }
  }
  return true;
}

void UseSmallImage(CGrabber &grabber, uint32_t width, uint32_t height, uint32_t usrFormat) {
  EXPECT_EQ(grabber.Set(GRB_ROI_XLENGTH, width), GRB_OK);
  EXPECT_EQ(grabber.Set(GRB_ROI_YLENGTH, height), GRB_OK);
  EXPECT_EQ(grabber.Set(GRB_USR_FORMAT, usrFormat), GRB_OK);
}

void StopCleanly(CRun &run) {
  const size_t before = run.Count(0);
  EXPECT_EQ(run.Grabber().Stream(GRB_STREAM_STOP), GRB_OK);
  EXPECT_EQ(run.Grabber().Set(GRB_EVENT_MASK_NOW, 1), GRB_OK);
  EXPECT_TRUE(run.WaitForWord(0, before + 1));
  EXPECT_EQ(run.Grabber().Stream(GRB_STREAM_ABORT), GRB_OK);
}
