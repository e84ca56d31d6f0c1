// SPDX-License-Identifier: MIT
// The scripted library has to be right before a test of the Producer can be believed.
#include <atomic>
#include <cstring>

#include <gtest/gtest.h>

#include "ScriptedGrb.h"

namespace {

using namespace Scripted;

using Lines = std::vector<std::string>;

struct HookCall {
  bool nullFunction = false;
  bool nullDescription = false;
  std::string function;
  GRB_STATUS status = GRB_OK;
  std::string description;
};

thread_local std::vector<HookCall> hookCalls;

void Hook(const char *function, GRB_STATUS status, const char *description) {
  hookCalls.push_back({function == nullptr, description == nullptr, function == nullptr ? "" : function, status,
                       description == nullptr ? "" : description});
}

/// What a callback's context points at.
struct Sink {
  std::atomic<uint32_t> events{0};
  std::atomic<uint32_t> calls{0};
  std::atomic<uint32_t> inside{0};
  std::atomic<bool> overlapped{false};
  std::atomic<GRB_HANDLE> handle{0};
  std::thread::id thread;
};

void Callback(GRB_HANDLE handle, uint32_t events, void *context) {
  auto &sink = *static_cast<Sink *>(context);
  if (sink.inside.fetch_add(1) != 0) {
    sink.overlapped = true;
  }
  sink.handle = handle;
  sink.events = events;
  sink.thread = std::this_thread::get_id();
  sink.calls.fetch_add(1);
  sink.inside.fetch_sub(1);
}

void *CallbackArgument() { return reinterpret_cast<void *>(&Callback); }

class ScriptedGrb : public testing::Test {
 protected:
  void SetUp() override {
    Script().Reset();
    hookCalls.clear();
  }
  void TearDown() override { Script().Reset(); }

  static GRB_STATUS Set(GRB_HANDLE handle, uint32_t identifier, uint32_t value) {
    return GRB_ParameterSet(handle, identifier, &value);
  }

  static uint32_t Get(GRB_HANDLE handle, uint32_t identifier) {
    uint32_t value = 0xEEEEEEEE;
    EXPECT_EQ(GRB_ParameterGet(handle, identifier, &value), GRB_OK);
    return value;
  }

  static GRB_HANDLE Create(uint32_t mode, uint32_t board = GRB_BOARD_1, uint32_t channel = GRB_CHANNEL_1) {
    GRB_HANDLE handle = 0;
    EXPECT_EQ(GRB_Create(&handle, Hook), GRB_OK);
    EXPECT_EQ(Set(handle, GRB_OPEN_BOARD, board), GRB_OK);
    EXPECT_EQ(Set(handle, GRB_OPEN_CHANNEL, channel), GRB_OK);
    EXPECT_EQ(Set(handle, GRB_OPEN_MODE, mode), GRB_OK);
    EXPECT_EQ(Set(handle, GRB_OPEN_VARIANT, GRB_VARIANT_ANY), GRB_OK);
    return handle;
  }

  static GRB_HANDLE Open(uint32_t mode, uint32_t board = GRB_BOARD_1, uint32_t channel = GRB_CHANNEL_1) {
    const GRB_HANDLE handle = Create(mode, board, channel);
    EXPECT_EQ(GRB_Open(handle), GRB_OK);
    return handle;
  }

  static GRB_STATUS Read(GRB_HANDLE handle, uint32_t address, std::vector<uint8_t> &bytes, uint32_t &size) {
    size = static_cast<uint32_t>(bytes.size());
    return GRB_ControlRead(handle, GRB_PORT_CAMERA, &address, bytes.data(), &size, 800);
  }

  /// Starts a stream over two destinations of 16 x 2 bytes.
  GRB_HANDLE StartStream() {
    const GRB_HANDLE handle = Open(GRB_MODE_ACQ_ONLY);
    m_List = {reinterpret_cast<uintptr_t>(m_Slots[0]), 0x11, reinterpret_cast<uintptr_t>(m_Slots[1]), 0x22, 0, 0};
    EXPECT_EQ(GRB_ParameterSet(handle, GRB_EVENT_CONTEXT, &m_Sink), GRB_OK);
    EXPECT_EQ(Set(handle, GRB_ACQ_NUM_BUFFERS, 2), GRB_OK);
    EXPECT_EQ(GRB_ParameterSet(handle, GRB_DST_LIST, m_List.data()), GRB_OK);
    EXPECT_EQ(Set(handle, GRB_DST_LIST_KIND, GRB_DST_LIST_USER_PAIRS), GRB_OK);
    EXPECT_EQ(Set(handle, GRB_DST_LINE_BYTES, 16), GRB_OK);
    EXPECT_EQ(Set(handle, GRB_DST_LINES, 2), GRB_OK);
    EXPECT_EQ(Set(handle, GRB_EVENT_MASK, 0x1004), GRB_OK);
    EXPECT_EQ(GRB_ParameterSet(handle, GRB_CACHE_FLUSH, nullptr), GRB_OK);
    EXPECT_EQ(GRB_StreamRead(handle, GRB_STREAM_START, CallbackArgument()), GRB_OK);
    return handle;
  }

  Sink m_Sink;
  uint8_t m_Slots[2][32] = {};
  std::vector<uint64_t> m_List;
};

TEST_F(ScriptedGrb, RecordsTheCallsInOrderWithArguments) {
  const GRB_HANDLE handle = Create(GRB_MODE_CONTROL);
  GRB_HANDLE closing = handle;
  ASSERT_EQ(GRB_Open(handle), GRB_OK);
  uint32_t address = 0x4;
  uint32_t size = 4;
  uint8_t bytes[4] = {};
  ASSERT_EQ(GRB_ControlRead(handle, GRB_PORT_CAMERA, &address, bytes, &size, 400), GRB_OK);
  address = 0xC;
  bytes[0] = 0xAB;
  bytes[1] = bytes[2] = bytes[3] = 0;
  ASSERT_EQ(GRB_ControlWrite(handle, GRB_PORT_CAMERA, &address, bytes, &size, 800), GRB_OK);
  char path[] = "a.gcf";
  ASSERT_EQ(GRB_Action(handle, GRB_ACTION_CONFIG, GRB_ACTION_CONFIG_SAVE, path), GRB_OK);
  ASSERT_EQ(GRB_Close(&closing), GRB_OK);
  ASSERT_EQ(GRB_Destroy(&closing), GRB_OK);

  EXPECT_EQ(Script().Trace(), (Lines{
                                  "Create() -> h1",
                                  "ParameterSet(h1, GRB_OPEN_BOARD, 0xc0010001)",
                                  "ParameterSet(h1, GRB_OPEN_CHANNEL, 0xc0010010)",
                                  "ParameterSet(h1, GRB_OPEN_MODE, 0xc0010080)",
                                  "ParameterSet(h1, GRB_OPEN_VARIANT, 0xc0014000)",
                                  "Open(h1)",
                                  "ControlRead(h1, GRB_PORT_CAMERA, 0x4, 4, 400)",
                                  "ControlWrite(h1, GRB_PORT_CAMERA, 0xc, 4, 800, ab000000)",
                                  "Action(h1, 0xc0040100, 0xc0040007, \"a.gcf\")",
                                  "Close(h1)",
                                  "Destroy(h1)",
                              }));
  const std::vector<Call> calls = Script().Calls();
  EXPECT_EQ(calls[6].argument, bytes);
  EXPECT_EQ(calls[6].config, &address);
  EXPECT_EQ(calls[6].bytes, (std::vector<uint8_t>{0, 1, 0, 0}));
  EXPECT_EQ(calls[6].moved, 4U);
  EXPECT_EQ(calls[6].thread, std::this_thread::get_id());
  EXPECT_EQ(calls[8].argument, path);
}

TEST_F(ScriptedGrb, MarkAndMatchSelectCalls) {
  const GRB_HANDLE handle = Open(GRB_MODE_CONTROL);
  const size_t mark = Script().Mark();
  Get(handle, GRB_REV_SW);
  Get(handle, GRB_REV_HW);
  EXPECT_EQ(Script().Trace(mark), (Lines{"ParameterGet(h1, GRB_REV_SW)", "ParameterGet(h1, GRB_REV_HW)"}));
  EXPECT_EQ(Script().Count(Match(Op::ParameterGet, GRB_REV_HW), mark), 1U);
  EXPECT_EQ(Script().Count(Match(Op::ParameterSet)), 4U);
  EXPECT_EQ(Script().Count(Match(Op::ParameterSet), mark), 0U);
  EXPECT_EQ(Script().Count(Match(Op::ParameterGet).Mode(GRB_MODE_ACQ_ONLY)), 0U);
  Script().ClearCalls();
  EXPECT_EQ(Script().Mark(), 0U);
}

TEST_F(ScriptedGrb, RecordsThePointerAndTheThread) {
  const GRB_HANDLE handle = Open(GRB_MODE_ACQ_ONLY);
  uint32_t value = 5;
  std::thread::id other;
  std::thread([&] {
    other = std::this_thread::get_id();
    GRB_ParameterSet(handle, GRB_LUT_SHIFT, &value);
  }).join();
  const std::vector<Call> calls = Script().Calls(Match(Op::ParameterSet, GRB_LUT_SHIFT));
  ASSERT_EQ(calls.size(), 1U);
  EXPECT_EQ(calls[0].argument, &value);
  EXPECT_EQ(calls[0].value, 5U);
  EXPECT_EQ(calls[0].thread, other);
  EXPECT_EQ(calls[0].mode, GRB_MODE_ACQ_ONLY);
}

TEST_F(ScriptedGrb, OpenFailsWithoutABoardAndTellsTheHook) {
  const GRB_HANDLE handle = Create(GRB_MODE_ENUMERATE, GRB_BOARD_2);
  EXPECT_EQ(GRB_Open(handle), kStatusNoBoard);
  ASSERT_EQ(hookCalls.size(), 1U);
  EXPECT_EQ(hookCalls[0].function, "GRB_Open");
  EXPECT_EQ(hookCalls[0].status, kStatusNoBoard);
  EXPECT_EQ(hookCalls[0].description, "No such board or channel.");
  EXPECT_EQ(Script().Trace().back(), "Open(h1) = 0x9003");
}

TEST_F(ScriptedGrb, ChannelsCanRefuseEnumeration) {
  Script().SetEnumerable(GRB_BOARD_1, GRB_CHANNEL_1, false);
  EXPECT_EQ(GRB_Open(Create(GRB_MODE_ENUMERATE)), kStatusNoBoard);
  EXPECT_EQ(GRB_Open(Create(GRB_MODE_ENUMERATE, GRB_BOARD_1, GRB_CHANNEL_8)), GRB_OK);
}

TEST_F(ScriptedGrb, BoardPropertiesAnswerTextAndNull) {
  const GRB_HANDLE handle = Open(GRB_MODE_ENUMERATE);
  const char *text = nullptr;
  ASSERT_EQ(GRB_ParameterGet(handle, GRB_BOARD_PROPERTIES, &text), GRB_OK);
  EXPECT_STREQ(text, CScriptedGrb::kDefaultProperties);
  const char *const old = text;
  Script().SetBoard(GRB_BOARD_1, "Model=X\n");
  ASSERT_EQ(GRB_ParameterGet(handle, GRB_BOARD_PROPERTIES, &text), GRB_OK);
  EXPECT_STREQ(text, "Model=X\n");
  EXPECT_STREQ(old, CScriptedGrb::kDefaultProperties);
  Script().SetNullProperties(GRB_BOARD_1);
  ASSERT_EQ(GRB_ParameterGet(handle, GRB_BOARD_PROPERTIES, &text), GRB_OK);
  EXPECT_EQ(text, nullptr);
}

TEST_F(ScriptedGrb, OneHolderForAcquisitionAndControlBeside) {
  GRB_HANDLE first = Open(GRB_MODE_ACQ_ONLY);
  const GRB_HANDLE second = Create(GRB_MODE_ACQ_ONLY);
  EXPECT_EQ(GRB_Open(second), kStatusInUse);
  Open(GRB_MODE_CONTROL);
  Open(GRB_MODE_ACQ_ONLY, GRB_BOARD_1, GRB_CHANNEL_2);
  EXPECT_EQ(Script().OpenHandle(GRB_BOARD_1, GRB_CHANNEL_1, GRB_MODE_ACQ_ONLY), first);
  ASSERT_EQ(GRB_Close(&first), GRB_OK);
  EXPECT_EQ(GRB_Open(second), GRB_OK);
  EXPECT_EQ(Script().CreatedHandles(), 4U);
  EXPECT_EQ(Script().OpenHandles(), 3U);
}

TEST_F(ScriptedGrb, DestroyFreesTheChannelOfAnOpenHandle) {
  GRB_HANDLE first = Open(GRB_MODE_ACQ_ONLY);
  ASSERT_EQ(GRB_Destroy(&first), GRB_OK);
  Open(GRB_MODE_ACQ_ONLY);
  EXPECT_EQ(Script().CreatedHandles(), 1U);
  EXPECT_EQ(GRB_Open(first), kStatusUnknownHandle);
}

TEST_F(ScriptedGrb, AChannelCanBeHeldElsewhere) {
  Script().SetHeldElsewhere(GRB_BOARD_1, GRB_CHANNEL_1, true);
  const GRB_HANDLE handle = Create(GRB_MODE_ACQ_ONLY);
  EXPECT_EQ(GRB_Open(handle), kStatusInUse);
  Script().SetHeldElsewhere(GRB_BOARD_1, GRB_CHANNEL_1, false);
  EXPECT_EQ(GRB_Open(handle), GRB_OK);
}

TEST_F(ScriptedGrb, ParametersNeedAnOpenHandle) {
  GRB_HANDLE handle = Create(GRB_MODE_ACQ_ONLY);
  EXPECT_EQ(Set(handle, GRB_ROI_XLENGTH, 1), kStatusNotOpen);
  ASSERT_EQ(GRB_Open(handle), GRB_OK);
  EXPECT_EQ(Set(handle, GRB_ROI_XLENGTH, 1), GRB_OK);
  ASSERT_EQ(GRB_Close(&handle), GRB_OK);
  uint32_t value = 0;
  EXPECT_EQ(GRB_ParameterGet(handle, GRB_ROI_XLENGTH, &value), kStatusNotOpen);
}

TEST_F(ScriptedGrb, ParametersBelongToTheChannel) {
  const GRB_HANDLE handle = Open(GRB_MODE_ACQ_ONLY);
  EXPECT_EQ(Get(handle, GRB_ROI_XLENGTH), 64U);
  EXPECT_EQ(Get(handle, GRB_ROI_YLENGTH), 48U);
  EXPECT_EQ(Get(handle, GRB_REV_SW), 0x70511U);
  ASSERT_EQ(Set(handle, GRB_ROI_XLENGTH, 640), GRB_OK);
  EXPECT_EQ(Get(handle, GRB_ROI_XLENGTH), 640U);
  EXPECT_EQ(Get(Open(GRB_MODE_CONTROL), GRB_ROI_XLENGTH), 640U);
  EXPECT_EQ(Get(Open(GRB_MODE_ACQ_ONLY, GRB_BOARD_1, GRB_CHANNEL_2), GRB_ROI_XLENGTH), 64U);
  Script().SetParameter(GRB_BOARD_1, GRB_CHANNEL_1, GRB_ROI_XLENGTH, 7);
  EXPECT_EQ(Get(handle, GRB_ROI_XLENGTH), 7U);
  EXPECT_EQ(Get(handle, 0xC00FFF00U), 0U);
  ASSERT_EQ(Set(handle, 0xC00FFF00U, 9), GRB_OK);
  EXPECT_EQ(Script().Parameter(GRB_BOARD_1, GRB_CHANNEL_1, 0xC00FFF00U), 9U);
}

TEST_F(ScriptedGrb, WideParametersMoveEightBytesAndOthersFour) {
  const GRB_HANDLE handle = Open(GRB_MODE_ACQ_ONLY);
  uint64_t wide = 0x1122334455667788U;
  ASSERT_EQ(GRB_ParameterSet(handle, GRB_TIMERA1_PERIOD_NS, &wide), GRB_OK);
  uint64_t read = 0;
  ASSERT_EQ(GRB_ParameterGet(handle, GRB_TIMERA1_PERIOD_NS, &read), GRB_OK);
  EXPECT_EQ(read, wide);
  read = UINT64_MAX;
  ASSERT_EQ(GRB_ParameterGet(handle, GRB_REV_SW, &read), GRB_OK);
  uint32_t words[2];
  std::memcpy(words, &read, sizeof(words));
  EXPECT_EQ(words[0], 0x70511U);
  EXPECT_EQ(words[1], UINT32_MAX);
}

TEST_F(ScriptedGrb, ImmediateFormsShareTheValue) {
  const GRB_HANDLE handle = Open(GRB_MODE_ACQ_ONLY);
  ASSERT_EQ(Set(handle, GRB_CXP_DISCOVERY_MODE_NOW, GRB_CXP_DISCOVERY_2X), GRB_OK);
  EXPECT_EQ(Get(handle, GRB_CXP_DISCOVERY_MODE), GRB_CXP_DISCOVERY_2X);
}

TEST_F(ScriptedGrb, CameraAnswersItsRegisters) {
  const GRB_HANDLE handle = Open(GRB_MODE_CONTROL);
  std::vector<uint8_t> bytes(32);
  uint32_t size = 0;
  ASSERT_EQ(Read(handle, 0x2020, bytes, size), GRB_OK);
  EXPECT_STREQ(reinterpret_cast<const char *>(bytes.data()), "Testcam 1");
  bytes.assign(4, 0);
  ASSERT_EQ(Read(handle, 0x18, bytes, size), GRB_OK);
  const uint32_t url = FromBigEndian(bytes.data());
  bytes.assign(64, 0);
  ASSERT_EQ(Read(handle, url, bytes, size), GRB_OK);
  const CCamera camera = Script().Camera(GRB_BOARD_1, GRB_CHANNEL_1);
  char expected[64];
  std::snprintf(expected, sizeof(expected), "Local:testcam.xml;10000;%zx", camera.XmlText().size());
  EXPECT_STREQ(reinterpret_cast<const char *>(bytes.data()), expected);
  bytes.assign(camera.XmlText().size(), 0);
  ASSERT_EQ(Read(handle, CCamera::kXmlAddress, bytes, size), GRB_OK);
  EXPECT_EQ(std::string(bytes.begin(), bytes.end()), camera.XmlText());
}

TEST_F(ScriptedGrb, ManifestSelectorSwitchesTheEntry) {
  Script().SetCamera(GRB_BOARD_1, GRB_CHANNEL_1, CCamera().Url(1, "file:///two.xml", 0x00020304, 0x00010200));
  const GRB_HANDLE handle = Open(GRB_MODE_CONTROL);
  EXPECT_EQ(Script().ReadCameraU32(GRB_BOARD_1, GRB_CHANNEL_1, 0x8), 2U);
  EXPECT_EQ(Script().ReadCameraU32(GRB_BOARD_1, GRB_CHANNEL_1, 0x10), 0x00010000U);
  uint32_t address = 0xC;
  uint32_t size = 4;
  std::vector<uint8_t> one = BigEndian(1);
  ASSERT_EQ(GRB_ControlWrite(handle, GRB_PORT_CAMERA, &address, one.data(), &size, 800), GRB_OK);
  EXPECT_EQ(Script().ReadCameraU32(GRB_BOARD_1, GRB_CHANNEL_1, 0x10), 0x00020304U);
  EXPECT_EQ(Script().ReadCameraU32(GRB_BOARD_1, GRB_CHANNEL_1, 0x14), 0x00010200U);
  EXPECT_EQ(Script().ReadCameraU32(GRB_BOARD_1, GRB_CHANNEL_1, 0x18), CCamera::kUrlAddress + 0x1000U);
}

TEST_F(ScriptedGrb, NoCameraMeansATimeoutOfTheTransfer) {
  const GRB_HANDLE handle = Open(GRB_MODE_CONTROL, GRB_BOARD_1, GRB_CHANNEL_3);
  std::vector<uint8_t> bytes(4, 0x77);
  uint32_t size = 0;
  EXPECT_EQ(Read(handle, 0x4, bytes, size), GRB_WARNING_TIMEOUT);
  EXPECT_EQ(size, 0U);
  EXPECT_EQ(bytes[0], 0x77);
  ASSERT_EQ(hookCalls.size(), 1U);
  EXPECT_EQ(hookCalls[0].description, "No answer from the camera.");
}

TEST_F(ScriptedGrb, GrabberRegistersKeepTheirWords) {
  const GRB_HANDLE handle = Open(GRB_MODE_CONTROL);
  Script().WriteGrabberU32(GRB_BOARD_1, GRB_CHANNEL_1, 0x20, 0xCAFE0001);
  uint32_t address = 0x20;
  uint32_t size = 4;
  uint32_t value = 0;
  ASSERT_EQ(GRB_ControlRead(handle, GRB_PORT_GRABBER, &address, reinterpret_cast<uint8_t *>(&value), &size, 800),
            GRB_OK);
  EXPECT_EQ(value, 0xCAFE0001U);
  value = 5;
  ASSERT_EQ(GRB_ControlWrite(handle, GRB_PORT_GRABBER, &address, reinterpret_cast<uint8_t *>(&value), &size, 800),
            GRB_OK);
  EXPECT_EQ(Script().ReadGrabberU32(GRB_BOARD_1, GRB_CHANNEL_1, 0x20), 5U);
}

TEST_F(ScriptedGrb, ARuleFailsTheNextCallOnly) {
  const GRB_HANDLE handle = Open(GRB_MODE_ACQ_ONLY);
  const RuleId rule = Script().On(Match(Op::ParameterSet, GRB_ROI_XLENGTH), Reply::Failure(0x8123, "No."));
  EXPECT_EQ(Set(handle, GRB_ROI_YLENGTH, 2), GRB_OK);
  EXPECT_EQ(Set(handle, GRB_ROI_XLENGTH, 2), 0x8123U);
  EXPECT_EQ(Get(handle, GRB_ROI_XLENGTH), 64U);
  EXPECT_EQ(Set(handle, GRB_ROI_XLENGTH, 2), GRB_OK);
  EXPECT_EQ(Script().Hits(rule), 1U);
  ASSERT_EQ(hookCalls.size(), 1U);
  EXPECT_EQ(hookCalls[0].function, "GRB_ParameterSet");
  EXPECT_EQ(hookCalls[0].description, "No.");
}

TEST_F(ScriptedGrb, ARuleTakesTheCallsThatItsWhenNames) {
  const GRB_HANDLE handle = Open(GRB_MODE_CONTROL);
  std::vector<uint8_t> bytes(4);
  uint32_t size = 0;
  const Match reads = Match(Op::ControlRead).Address(0x4);
  struct Row {
    When when;
    std::vector<bool> fails;
  };
  const Row rows[] = {
      {When::Next(), {true, false, false, false}},  {When::Nth(3), {false, false, true, false}},
      {When::First(2), {true, true, false, false}}, {When::From(2), {false, true, true, true}},
      {When::Every(), {true, true, true, true}},
  };
  for (const Row &row : rows) {
    Script().CancelAll();
    Script().On(reads, Reply::Failure(0x9999), row.when);
    for (size_t i = 0; i < row.fails.size(); ++i) {
      EXPECT_EQ(Read(handle, 0x8, bytes, size), GRB_OK);
      EXPECT_EQ(Read(handle, 0x4, bytes, size) != GRB_OK, row.fails[i]) << i;
    }
  }
}

TEST_F(ScriptedGrb, TheLatestRuleComesFirstAndCancelEndsIt) {
  const GRB_HANDLE handle = Open(GRB_MODE_ACQ_ONLY);
  Script().On(Match(Op::ParameterGet), Reply::Value(1), When::Every());
  const RuleId second = Script().On(Match(Op::ParameterGet, GRB_REV_SW), Reply::Value(2), When::Every());
  EXPECT_EQ(Get(handle, GRB_REV_SW), 2U);
  EXPECT_EQ(Get(handle, GRB_REV_HW), 1U);
  Script().Cancel(second);
  EXPECT_EQ(Get(handle, GRB_REV_SW), 1U);
  Script().CancelAll();
  EXPECT_EQ(Get(handle, GRB_REV_SW), 0x70511U);
}

TEST_F(ScriptedGrb, TheHooksTextsCanBeNullOrTheHookLeftOut) {
  const GRB_HANDLE handle = Open(GRB_MODE_ACQ_ONLY);
  const Match gets(Op::ParameterGet);
  uint32_t value = 0;
  Script().On(gets, Reply::Failure(0x10, "d").NullFunction());
  EXPECT_EQ(GRB_ParameterGet(handle, GRB_REV_SW, &value), 0x10U);
  Script().On(gets, Reply::Failure(0x11, "d").NullDescription());
  EXPECT_EQ(GRB_ParameterGet(handle, GRB_REV_SW, &value), 0x11U);
  Script().On(gets, Reply::Failure(0x12, "d").Function("GRB_Other"));
  EXPECT_EQ(GRB_ParameterGet(handle, GRB_REV_SW, &value), 0x12U);
  Script().On(gets, Reply::Failure(0x13, "d").NoHook());
  EXPECT_EQ(GRB_ParameterGet(handle, GRB_REV_SW, &value), 0x13U);
  ASSERT_EQ(hookCalls.size(), 3U);
  EXPECT_TRUE(hookCalls[0].nullFunction);
  EXPECT_FALSE(hookCalls[0].nullDescription);
  EXPECT_TRUE(hookCalls[1].nullDescription);
  EXPECT_EQ(hookCalls[1].function, "GRB_ParameterGet");
  EXPECT_EQ(hookCalls[2].function, "GRB_Other");
}

TEST_F(ScriptedGrb, ARuleLeavesBytesAndCounts) {
  const GRB_HANDLE handle = Open(GRB_MODE_CONTROL);
  std::vector<uint8_t> bytes(8, 0x77);
  uint32_t size = 0;
  Script().On(Match(Op::ControlRead), Reply::Answer({1, 2, 3}));
  EXPECT_EQ(Read(handle, 0x4, bytes, size), GRB_OK);
  EXPECT_EQ(size, 3U);
  EXPECT_EQ(bytes, (std::vector<uint8_t>{1, 2, 3, 0x77, 0x77, 0x77, 0x77, 0x77}));
  Script().On(Match(Op::ControlRead), Reply::Failure(GRB_WARNING_TIMEOUT).Moved(5));
  EXPECT_EQ(Read(handle, 0x4, bytes, size), GRB_WARNING_TIMEOUT);
  EXPECT_EQ(size, 5U);
  Script().On(Match(Op::ControlRead), Reply::Failure(0x9123));
  EXPECT_EQ(Read(handle, 0x4, bytes, size), 0x9123U);
  EXPECT_EQ(size, 0U);
  Script().On(Match(Op::ControlRead), Reply::Pass().WithStatus(GRB_WARNING_PASSED));
  EXPECT_EQ(Read(handle, 0x4, bytes, size), GRB_WARNING_PASSED);
  EXPECT_EQ(size, 8U);
  EXPECT_EQ(bytes[1], 1U);
  EXPECT_TRUE(hookCalls.size() == 2U);
}

TEST_F(ScriptedGrb, ASideEffectRunsInsideTheCallAndMayCallTheLibrary) {
  const GRB_HANDLE handle = Open(GRB_MODE_ACQ_ONLY);
  uint32_t seen = 0;
  Script().On(Match(Op::ParameterSet, GRB_ROI_XLENGTH), Reply::Pass().Do([&](const Call &call) {
    seen = Get(call.handle, GRB_ROI_XLENGTH);
    Script().On(Match(Op::ParameterGet, GRB_REV_SW), Reply::Value(42));
  }));
  ASSERT_EQ(Set(handle, GRB_ROI_XLENGTH, 99), GRB_OK);
  EXPECT_EQ(seen, 99U);
  EXPECT_EQ(Get(handle, GRB_REV_SW), 42U);
}

TEST_F(ScriptedGrb, AFailingCreateLeavesWhatItIsTold) {
  GRB_HANDLE handle = 0x1234;
  Script().On(Match(Op::Create), Reply::Failure(0x9001, "Out of handles."));
  EXPECT_EQ(GRB_Create(&handle, Hook), 0x9001U);
  EXPECT_EQ(handle, 0x1234U);
  Script().On(Match(Op::Create), Reply::Failure(0x9001).HandleOut(77));
  EXPECT_EQ(GRB_Create(&handle, Hook), 0x9001U);
  EXPECT_EQ(handle, 77U);
  ASSERT_EQ(hookCalls.size(), 2U);
  EXPECT_EQ(hookCalls[0].description, "Out of handles.");
  EXPECT_EQ(Script().Trace(), (Lines{"Create() = 0x9001", "Create() = 0x9001"}));
  EXPECT_EQ(Script().CreatedHandles(), 0U);
}

TEST_F(ScriptedGrb, AStartCapturesTheDestinations) {
  const GRB_HANDLE handle = StartStream();
  const Stream stream = Script().StreamOf();
  EXPECT_EQ(stream.handle, handle);
  EXPECT_TRUE(stream.running);
  EXPECT_EQ(stream.callback, &Callback);
  EXPECT_EQ(stream.context, &m_Sink);
  EXPECT_EQ(stream.listPointer, m_List.data());
  ASSERT_EQ(stream.destinations.size(), 2U);
  EXPECT_EQ(stream.destinations[1].address, m_Slots[1]);
  EXPECT_TRUE(stream.terminated);
  EXPECT_EQ(stream.numBuffers, 2U);
  EXPECT_EQ(stream.lineBytes, 16U);
  EXPECT_EQ(stream.lines, 2U);
  EXPECT_EQ(stream.eventMask, 0x1004U);
  EXPECT_EQ(stream.listKind, GRB_DST_LIST_USER_PAIRS);
  EXPECT_EQ(stream.starts, 1U);
}

TEST_F(ScriptedGrb, AStartWithoutAListOrOnARunningStreamFails) {
  const GRB_HANDLE idle = Open(GRB_MODE_ACQ_ONLY, GRB_BOARD_1, GRB_CHANNEL_2);
  EXPECT_EQ(GRB_StreamRead(idle, GRB_STREAM_START, CallbackArgument()), kStatusBadState);
  const GRB_HANDLE handle = StartStream();
  EXPECT_EQ(GRB_StreamRead(handle, GRB_STREAM_START, CallbackArgument()), kStatusBadState);
  EXPECT_EQ(GRB_StreamRead(handle, 0xC0030000U, nullptr), kStatusBadArgument);
}

TEST_F(ScriptedGrb, MissingTerminatorIsSeen) {
  const GRB_HANDLE handle = StartStream();
  ASSERT_EQ(GRB_StreamRead(handle, GRB_STREAM_STOP, nullptr), GRB_OK);
  m_List[5] = 1;
  ASSERT_EQ(GRB_StreamRead(handle, GRB_STREAM_START, CallbackArgument()), GRB_OK);
  EXPECT_FALSE(Script().StreamOf().terminated);
}

TEST_F(ScriptedGrb, CallbacksComeOnTheThreadAskedFor) {
  const GRB_HANDLE handle = StartStream();
  ASSERT_TRUE(Script().FireCallback(GRB_EVENT_SYNC_LOST));
  EXPECT_EQ(m_Sink.events, GRB_EVENT_SYNC_LOST);
  EXPECT_EQ(m_Sink.handle, handle);
  EXPECT_EQ(m_Sink.thread, std::this_thread::get_id());
  Script().PostCallback(GRB_EVENT_BUFFER_READY).get();
  EXPECT_EQ(m_Sink.calls, 2U);
  EXPECT_NE(m_Sink.thread, std::this_thread::get_id());
  std::thread::id own;
  Script().Post([&own] { own = std::this_thread::get_id(); }).get();
  EXPECT_EQ(own, m_Sink.thread);
  EXPECT_EQ(Script().StreamOf().callbacks, 2U);
}

TEST_F(ScriptedGrb, CallbacksOfOneStreamNeverOverlap) {
  StartStream();
  std::vector<std::future<void>> posted;
  for (int i = 0; i < 50; ++i) {
    posted.push_back(Script().PostCallback(GRB_EVENT_BUFFER_READY));
  }
  for (int i = 0; i < 50; ++i) {
    Script().FireCallback(GRB_EVENT_BUFFER_READY);
  }
  ASSERT_TRUE(Script().WaitIdle());
  EXPECT_EQ(m_Sink.calls, 100U);
  EXPECT_FALSE(m_Sink.overlapped);
}

TEST_F(ScriptedGrb, TheImmediateMaskRaisesOneCallback) {
  const GRB_HANDLE handle = StartStream();
  ASSERT_EQ(GRB_StreamRead(handle, GRB_STREAM_STOP, nullptr), GRB_OK);
  ASSERT_EQ(Set(handle, GRB_EVENT_MASK_NOW, 1), GRB_OK);
  ASSERT_TRUE(Script().WaitFor([this] { return m_Sink.calls == 1; }));
  ASSERT_TRUE(Script().WaitIdle());
  EXPECT_EQ(m_Sink.calls, 1U);
  EXPECT_EQ(m_Sink.events, 0U);
  EXPECT_NE(m_Sink.thread, std::this_thread::get_id());

  Script().SetFinalCallback(FinalCallback::Inside, GRB_EVENT_BUFFER_READY);
  ASSERT_EQ(Set(handle, GRB_EVENT_MASK_NOW, 1), GRB_OK);
  EXPECT_EQ(m_Sink.calls, 2U);
  EXPECT_EQ(m_Sink.events, GRB_EVENT_BUFFER_READY);
  EXPECT_EQ(m_Sink.thread, std::this_thread::get_id());

  Script().SetFinalCallback(FinalCallback::None);
  ASSERT_EQ(Set(handle, GRB_EVENT_MASK_NOW, 1), GRB_OK);
  ASSERT_TRUE(Script().WaitIdle());
  EXPECT_EQ(m_Sink.calls, 2U);
}

TEST_F(ScriptedGrb, AFailingImmediateMaskRaisesNone) {
  const GRB_HANDLE handle = StartStream();
  Script().On(Match(Op::ParameterSet, GRB_EVENT_MASK_NOW), Reply::Failure(0x9123));
  EXPECT_EQ(Set(handle, GRB_EVENT_MASK_NOW, 1), 0x9123U);
  ASSERT_TRUE(Script().WaitIdle());
  EXPECT_EQ(m_Sink.calls, 0U);
}

TEST_F(ScriptedGrb, NoCallbackBehindTheClose) {
  GRB_HANDLE handle = StartStream();
  ASSERT_EQ(GRB_Close(&handle), GRB_OK);
  EXPECT_FALSE(Script().FireCallback(GRB_EVENT_BUFFER_READY));
  Script().PostCallback(GRB_EVENT_BUFFER_READY).get();
  EXPECT_EQ(m_Sink.calls, 0U);
  EXPECT_EQ(Script().StreamOf().starts, 1U);
}

TEST_F(ScriptedGrb, SlotsTakePixels) {
  StartStream();
  ASSERT_TRUE(Script().DeliverFrame(1, 0x3C));
  EXPECT_EQ(m_Slots[1][0], 0x3C);
  EXPECT_EQ(m_Slots[1][31], 0x3C);
  EXPECT_EQ(m_Slots[0][0], 0);
  EXPECT_EQ(m_Sink.events, GRB_EVENT_BUFFER_READY);
  ASSERT_TRUE(Script().WriteSlot(0, {9, 8, 7}));
  EXPECT_EQ(m_Slots[0][2], 7);
  EXPECT_EQ(m_Slots[0][3], 0);
  EXPECT_FALSE(Script().FillSlot(2, 1));
}

TEST_F(ScriptedGrb, CountsTheStreamOperations) {
  const GRB_HANDLE handle = StartStream();
  for (const uint32_t operation :
       {GRB_STREAM_RELEASE, GRB_STREAM_RELEASE, GRB_EXPOSE, GRB_STREAM_STOP, GRB_STREAM_ABORT}) {
    ASSERT_EQ(GRB_StreamRead(handle, operation, nullptr), GRB_OK);
  }
  const Stream stream = Script().StreamOf(handle);
  EXPECT_EQ(stream.releases, 2U);
  EXPECT_EQ(stream.exposes, 1U);
  EXPECT_EQ(stream.stops, 1U);
  EXPECT_EQ(stream.aborts, 1U);
  EXPECT_FALSE(stream.running);
}

TEST_F(ScriptedGrb, QuietRecordsNothingAndStillAnswers) {
  const GRB_HANDLE handle = Open(GRB_MODE_ACQ_ONLY);
  const size_t mark = Script().Mark();
  Script().SetQuiet(true);
  EXPECT_EQ(Get(handle, GRB_ROI_XLENGTH), 64U);
  EXPECT_EQ(Script().Mark(), mark);
  Script().On(Match(Op::ParameterGet), Reply::Value(3));
  EXPECT_EQ(Get(handle, GRB_ROI_XLENGTH), 3U);
  Script().SetQuiet(false);
  Get(handle, GRB_ROI_XLENGTH);
  EXPECT_EQ(Script().Mark(), mark + 1);
}

TEST_F(ScriptedGrb, HandlesOfManyCyclesAreNeverTheSame) {
  GRB_HANDLE last = 0;
  for (int i = 0; i < 3000; ++i) {
    GRB_HANDLE handle = 0;
    ASSERT_EQ(GRB_Create(&handle, Hook), GRB_OK);
    ASSERT_GT(handle, last);
    last = handle;
    ASSERT_EQ(GRB_Destroy(&handle), GRB_OK);
  }
  EXPECT_EQ(Script().CreatedHandles(), 0U);
}

TEST_F(ScriptedGrb, BearsManyThreadsOnOneHandle) {
  const GRB_HANDLE handle = Open(GRB_MODE_ACQ_ONLY);
  std::vector<std::thread> threads;
  for (uint32_t t = 0; t < 4; ++t) {
    threads.emplace_back([handle, t] {
      std::vector<uint8_t> bytes(16);
      uint32_t size = 0;
      for (uint32_t i = 0; i < 100; ++i) {
        Set(handle, GRB_LUT_SHIFT, t);
        Get(handle, GRB_LUT_SHIFT);
        Read(handle, 0x2000, bytes, size);
      }
    });
  }
  for (std::thread &thread : threads) {
    thread.join();
  }
  EXPECT_EQ(Script().Count(Match(Op::ControlRead)), 400U);
  EXPECT_LT(Get(handle, GRB_LUT_SHIFT), 4U);
}

TEST_F(ScriptedGrb, TheHookRunsOnTheCallingThread) {
  const GRB_HANDLE handle = Open(GRB_MODE_ACQ_ONLY);
  size_t there = 0;
  std::thread([&] {
    GRB_StreamRead(handle, 0, nullptr);
    there = hookCalls.size();
  }).join();
  EXPECT_EQ(there, 1U);
  EXPECT_EQ(hookCalls.size(), 0U);
}

TEST_F(ScriptedGrb, ResetPutsEverythingBack) {
  StartStream();
  Script().SetBoard(GRB_BOARD_3);
  Script().RemoveCamera(GRB_BOARD_1, GRB_CHANNEL_1);
  Script().On(Match(), Reply::Failure(0x9123), When::Every());
  Script().SetQuiet(true);
  Script().Reset();
  EXPECT_EQ(Script().Mark(), 0U);
  EXPECT_EQ(Script().CreatedHandles(), 0U);
  EXPECT_EQ(Script().LatestStream(), 0U);
  EXPECT_EQ(GRB_Open(Create(GRB_MODE_ENUMERATE, GRB_BOARD_3)), kStatusNoBoard);
  EXPECT_EQ(Script().Trace().front(), "Create() -> h1");
  EXPECT_EQ(Script().ReadCameraU32(GRB_BOARD_1, GRB_CHANNEL_1, 0x4), 0x10000U);
  EXPECT_EQ(Get(Open(GRB_MODE_ACQ_ONLY), GRB_ACQ_NUM_BUFFERS), 0U);
}

TEST_F(ScriptedGrb, TheDefaultErrorHandlerIsRecorded) {
  GRB_ErrHandlerDefault("GRB_Open", 0x9003, "Nothing there.");
  EXPECT_EQ(Script().Trace(), (Lines{"ErrHandlerDefault(\"GRB_Open\", 0x9003, \"Nothing there.\")"}));
}

}  // namespace
