// SPDX-License-Identifier: MIT
// Opening and closing a Device: flags, what each access mode opens, the order of the library's calls, failures.
#include <future>
#include <ostream>

#include <climits>

#include "DeviceFixture.h"

namespace {

using namespace DeviceTests;  // NOLINT

constexpr const char *kNoStreams = "DataStream not supported with current Device Access Flag.";

// Flags ---------------------------------------------------------------------------------------------------------------

class RefusedFlags : public DeviceTest, public testing::WithParamInterface<DEVICE_ACCESS_FLAGS> {};

TEST_P(RefusedFlags, FailAtTheEntryWithoutACallOfTheLibrary) {
  OpenInterface();
  const size_t mark = Script().Mark();
  DEV_HANDLE device = Marker();
  EXPECT_GC_FROM(GC_ERR_INVALID_PARAMETER, "Invalid DEVICE_ACCESS_FLAGS.", "GenICam::Client::IFOpenDevice",
                 Gc().IFOpenDevice(m_hInterface, "Channel #1", GetParam(), &device));
  EXPECT_EQ(Script().Trace(mark), Lines());
  EXPECT_EQ(device, Marker());
}

INSTANTIATE_TEST_SUITE_P(Flags, RefusedFlags, testing::Values(INT_MIN, -1, 0, 1, 5, 6, 999));

struct AccessRow {
  DEVICE_ACCESS_FLAGS flags;
  bool hasStream;
  bool canWrite;
};

std::ostream &operator<<(std::ostream &out, const AccessRow &row) { return out << row.flags; }

constexpr AccessRow kAccess[] = {
    {DEVICE_ACCESS_READONLY, false, false},
    {DEVICE_ACCESS_CONTROL, true, true},
    {DEVICE_ACCESS_EXCLUSIVE, true, true},
    {1000, false, true},
    {1001, false, true},
    {INT_MAX, false, true},
};

class AccessMode : public DeviceTest, public testing::WithParamInterface<AccessRow> {};

TEST_P(AccessMode, DecidesWhichHandlesAreOpened) {
  OpenDevice(GetParam().flags);
  EXPECT_NE(ControlHandle(), 0U);
  EXPECT_EQ(StreamHandle() != 0, GetParam().hasStream);
  EXPECT_EQ(Script().OpenHandles(), GetParam().hasStream ? 2U : 1U);
}

TEST_P(AccessMode, DecidesOnTheStream) {
  OpenDevice(GetParam().flags);
  uint32_t count = 99;
  EXPECT_GC_OK(Gc().DevGetNumDataStreams(m_hDevice, &count));
  EXPECT_EQ(count, GetParam().hasStream ? 1U : 0U);
  EXPECT_EQ(ReadU32(m_hDevice, 0x3E8), count);
  EXPECT_EQ(ReadU32(m_hDevice, 0x508), count);
  EXPECT_EQ(ReadText(m_hDevice, 0x3F0, 256), GetParam().hasStream ? "Stream #1" : "-");
  if (GetParam().hasStream) {
    EXPECT_EQ(StreamId(m_hDevice, 0).Text(), "Stream #1");
    EXPECT_NE(OpenStream(), nullptr);
  } else {
    size_t size = 64;
    char name[64];
    EXPECT_GC(GC_ERR_NOT_IMPLEMENTED, kNoStreams, Gc().DevGetDataStreamID(m_hDevice, 0, name, &size));
    DS_HANDLE stream = Marker();
    EXPECT_GC(GC_ERR_NOT_IMPLEMENTED, kNoStreams, Gc().DevOpenDataStream(m_hDevice, "Stream #1", &stream));
    EXPECT_GC(GC_ERR_NOT_IMPLEMENTED, kNoStreams, Gc().DevOpenDataStream(m_hDevice, "nonsense", &stream));
    EXPECT_EQ(stream, Marker());
  }
}

TEST_P(AccessMode, DecidesOnPortWrites) {
  OpenDevice(GetParam().flags);
  EXPECT_EQ(PortInfo(m_hDevice, PORT_INFO_ACCESS_WRITE).As<bool8_t>(), GetParam().canWrite);
  if (GetParam().canWrite) {
    EXPECT_GC_OK(WriteU32(m_hDevice, 0x3EC, 5));
    EXPECT_EQ(ReadU32(m_hDevice, 0x3EC), 5U);
  } else {
    EXPECT_GC(GC_ERR_ACCESS_DENIED, "Cannot write to device in READONLY mode.", WriteU32(m_hDevice, 0x3EC, 5));
  }
}

TEST_P(AccessMode, DecidesOnTheFeaturesOfTheGrabber) {
  SetParameter(GRB_CAM_ACTIVE_XLENGTH, 640);
  OpenDevice(GetParam().flags);
  if (GetParam().hasStream) {
    EXPECT_EQ(ReadU32(m_hDevice, 0x614), 640U);
  } else {
    uint32_t value = 0;
    EXPECT_GC(GC_ERR_ERROR, NoHandleToRead(0x614), TryRead(m_hDevice, 0x614, &value, sizeof(value)));
  }
}

INSTANTIATE_TEST_SUITE_P(Flags, AccessMode, testing::ValuesIn(kAccess));

using DeviceOpen = DeviceTest;

TEST_F(DeviceOpen, ChecksItsArgumentsInTheirOrder) {
  OpenInterface();
  constexpr const char *kFunction = "GenICam::Client::IFOpenDevice";
  EXPECT_GC_FROM(GC_ERR_INVALID_PARAMETER, "Null pointer for Device name.", kFunction,
                 Gc().IFOpenDevice(m_hInterface, nullptr, 1, nullptr));
  EXPECT_GC_FROM(GC_ERR_INVALID_PARAMETER, "Null DEV_HANDLE pointer.", kFunction,
                 Gc().IFOpenDevice(m_hInterface, "Channel #1", 1, nullptr));
}

// With the list empty, so that the flags are seen to be looked at ahead of the name.
TEST_F(DeviceOpen, UnknownNameFailsBehindTheFlags) {
  OpenInterface();
  DEV_HANDLE device = Marker();
  EXPECT_GC(GC_ERR_INVALID_PARAMETER, "Invalid DEVICE_ACCESS_FLAGS.",
            Gc().IFOpenDevice(m_hInterface, "Channel #9", 1, &device));
  EXPECT_GC(GC_ERR_INVALID_PARAMETER, "Invalid Child's name: Channel #9",
            Gc().IFOpenDevice(m_hInterface, "Channel #9", DEVICE_ACCESS_CONTROL, &device));
  EXPECT_EQ(device, Marker());
}

TEST_F(DeviceOpen, FillsTheListWhenNoUpdateHasRun) {
  OpenInterface();
  uint32_t count = 99;
  EXPECT_GC_OK(Gc().IFGetNumDevices(m_hInterface, &count));
  EXPECT_EQ(count, 0U);
  OpenDevice();
  EXPECT_GC_OK(Gc().IFGetNumDevices(m_hInterface, &count));
  EXPECT_EQ(count, 2U);
}

// Once a list is there, an open must not search again: a search costs the time of eight channels.
TEST_F(DeviceOpen, DoesNotSearchASecondTime) {
  Discover();
  const size_t mark = Script().Mark();
  OpenDevice(DEVICE_ACCESS_READONLY);
  EXPECT_EQ(Created(mark).size(), 1U);
}

TEST_F(DeviceOpen, TwiceIsRefusedAndTouchesNothing) {
  OpenDevice(DEVICE_ACCESS_CONTROL);
  const size_t mark = Script().Mark();
  DEV_HANDLE second = Marker();
  for (const DEVICE_ACCESS_FLAGS flags : {DEVICE_ACCESS_READONLY, DEVICE_ACCESS_CONTROL, DEVICE_ACCESS_EXCLUSIVE}) {
    EXPECT_GC(GC_ERR_RESOURCE_IN_USE, "Device (Channel #1) is already open.",
              Gc().IFOpenDevice(m_hInterface, "Channel #1", flags, &second));
  }
  EXPECT_EQ(Script().Trace(mark), Lines());
  EXPECT_EQ(second, Marker());
  EXPECT_EQ(ReadU32(m_hDevice, 0x3E8), 1U);
}

TEST_F(DeviceOpen, AgainAfterACloseGivesAFreshDevice) {
  OpenDevice();
  EXPECT_GC_OK(WriteU32(m_hDevice, 0x3EC, 7));
  EXPECT_GC_OK(WriteU32(m_hDevice, 0x4F0, 0x1234));
  EXPECT_GC_OK(WriteU32(m_hDevice, 0x185C, 3));
  CloseDevice();
  OpenDevice();
  EXPECT_EQ(ReadU32(m_hDevice, 0x3EC), 0U);
  EXPECT_EQ(ReadU32(m_hDevice, 0x4F0), 0U);
  EXPECT_EQ(ReadU32(m_hDevice, 0x185C), 1U);
}

TEST_F(DeviceOpen, BothChannelsOfABoardAreOpenedSideBySide) {
  OpenDevice();
  DEV_HANDLE other = nullptr;
  ASSERT_GC_OK(Gc().IFOpenDevice(m_hInterface, "Channel #2", DEVICE_ACCESS_EXCLUSIVE, &other));
  EXPECT_NE(other, m_hDevice);
  EXPECT_EQ(ReadText(other, 0x0, 256), "Channel #2");
  EXPECT_NE(Script().OpenHandle(kBoard, GRB_CHANNEL_2, GRB_MODE_ACQ_ONLY), 0U);
  // Each goes to its own channel.
  EXPECT_GC_OK(WriteU32(other, 0x614, 320));
  EXPECT_EQ(Script().Parameter(kBoard, GRB_CHANNEL_2, GRB_CAM_ACTIVE_XLENGTH), 320U);
  EXPECT_EQ(Parameter(GRB_CAM_ACTIVE_XLENGTH), 64U);
  EXPECT_GC_OK(Gc().DevClose(other));
}

TEST_F(DeviceOpen, TheSameIdOnTwoBoardsIsTwoDevices) {
  Script().SetBoard(GRB_BOARD_2, "Name=Second\nModel=GL-CXP4\n");
  Script().SetCamera(GRB_BOARD_2, kChannel, CCamera().Model("On board two"));
  OpenDevice();
  IF_HANDLE secondInterface = nullptr;
  ASSERT_GC_OK(Gc().TLOpenInterface(m_hSystem, "GL-CXP4-#2", &secondInterface));
  DEV_HANDLE second = nullptr;
  ASSERT_GC_OK(Gc().IFOpenDevice(secondInterface, "Channel #1", DEVICE_ACCESS_CONTROL, &second));
  EXPECT_EQ(DevInfo(second, DEVICE_INFO_MODEL).Text(), "On board two");
  EXPECT_EQ(DevInfo(m_hDevice, DEVICE_INFO_MODEL).Text(), "Testcam 1");
  EXPECT_NE(Script().OpenHandle(GRB_BOARD_2, kChannel, GRB_MODE_ACQ_ONLY), 0U);
}

// Order of the library's calls ----------------------------------------------------------------------------------------

class DeviceCallOrder : public DeviceTest, public testing::WithParamInterface<AccessRow> {};

TEST_P(DeviceCallOrder, OfAnOpen) {
  Discover();
  const size_t mark = Script().Mark();
  OpenDevice(GetParam().flags);
  const std::vector<GRB_HANDLE> handles = Created(mark);
  ASSERT_EQ(handles.size(), GetParam().hasStream ? 2U : 1U);
  Lines expected = CreateAndOpenCalls(handles[0], GRB_MODE_CONTROL) + IdentityCalls(handles[0]);
  if (GetParam().hasStream) {
    expected = expected + CreateAndOpenCalls(handles[1], GRB_MODE_ACQ_ONLY);
  }
  EXPECT_EQ(Script().Trace(mark), expected);
}

TEST_P(DeviceCallOrder, OfAClose) {
  OpenDevice(GetParam().flags);
  const GRB_HANDLE control = ControlHandle();
  const GRB_HANDLE stream = StreamHandle();
  const size_t mark = Script().Mark();
  CloseDevice();
  EXPECT_EQ(Script().Trace(mark), (GetParam().hasStream ? CloseCalls(stream) : Lines()) + CloseCalls(control));
  EXPECT_EQ(Script().CreatedHandles(), 0U);
}

INSTANTIATE_TEST_SUITE_P(Flags, DeviceCallOrder, testing::ValuesIn(kAccess));

using DeviceCalls = DeviceTest;

TEST_F(DeviceCalls, HandlesReportToOneHookAndSayItToNobody) {
  OpenDevice();
  // A handle made for loud errors would pass each failure to the library's own handler.
  Script().On(Match(Op::ParameterGet), Bang());
  uint32_t value = 0;
  EXPECT_GC(GC_ERR_ERROR, FailedRead("INCOMING_WIDTH"), TryRead(m_hDevice, 0x614, &value, sizeof(value)));
  EXPECT_EQ(Script().Count(Match(Op::ErrHandlerDefault)), 0U);
}

TEST_F(DeviceCalls, CloseWithARemotePortAndAnOpenStreamReleasesAll) {
  OpenRemotePort();
  OpenStream();
  RegisterEvent(m_hDevice, EVENT_ERROR);
  const GRB_HANDLE control = ControlHandle();
  const GRB_HANDLE stream = StreamHandle();
  const size_t mark = Script().Mark();
  CloseDevice();
  const Lines calls = Script().Trace(Match().Handle(control), mark) + Script().Trace(Match(Op::Destroy), mark);
  const Lines destroys = {"Destroy(" + HandleName(stream) + ")", "Destroy(" + HandleName(control) + ")"};
  EXPECT_EQ(calls, CloseCalls(control) + destroys);
  EXPECT_EQ(Script().CreatedHandles(), 0U);
  // The stream went with the Device: its name is free again.
  OpenStream();
}

// Failures ------------------------------------------------------------------------------------------------------------

constexpr const char *kConstructor = "GenICam::Client::CDevice::CDevice";

class OpenFailure : public DeviceTest, public testing::WithParamInterface<AccessRow> {
 protected:
  GC_ERROR Open() {
    m_hDevice = Marker();
    return Gc().IFOpenDevice(m_hInterface, "Channel #1", GetParam().flags, &m_hDevice);
  }
  // Whatever failed: nothing is left behind, and the next open succeeds.
  void ExpectUnharmed() {
    EXPECT_EQ(m_hDevice, Marker());
    EXPECT_EQ(Script().CreatedHandles(), 0U);
    EXPECT_EQ(Script().OpenHandles(), 0U);
    Script().CancelAll();
    Script().SetHeldElsewhere(kBoard, kChannel, false);
    Script().SetCamera(kBoard, kChannel, CCamera());
    m_hDevice = nullptr;
    EXPECT_NE(OpenDevice(GetParam().flags), nullptr);
    CloseDevice();
  }
};

TEST_P(OpenFailure, OfTheChannelHandle) {
  Discover();
  struct {
    const char *what;
    Match match;
  } const kCases[] = {{"open", Match(Op::Open).Mode(GRB_MODE_CONTROL)},
                      {"board", Match(Op::ParameterSet, GRB_OPEN_BOARD)},
                      {"channel", Match(Op::ParameterSet, GRB_OPEN_CHANNEL)},
                      {"mode", Match(Op::ParameterSet, GRB_OPEN_MODE)},
                      {"variant", Match(Op::ParameterSet, GRB_OPEN_VARIANT)},
                      {"revision of the library", Match(Op::ParameterGet, GRB_REV_SW)},
                      {"revision of the camera", Match(Op::ControlRead).Address(0x4)},
                      {"vendor", Match(Op::ControlRead).Address(0x2000)},
                      {"model", Match(Op::ControlRead).Address(0x2020)}};
  for (const auto &row : kCases) {
    SCOPED_TRACE(row.what);
    Script().On(row.match, Bang());
    EXPECT_GC(GC_ERR_ERROR, "Attempting to use a Device but GRB Channel handle not valid.", Open());
    EXPECT_TRUE(ComesFrom(kConstructor, "Device.cpp"));
    ExpectUnharmed();
  }
}

TEST_P(OpenFailure, OfTheChannelHandleStopsAtTheFirstFailingCall) {
  Discover();
  Script().On(Match(Op::ParameterSet, GRB_OPEN_CHANNEL), Bang());
  const size_t mark = Script().Mark();
  EXPECT_GC_CODE(GC_ERR_ERROR, Open());
  m_hDevice = nullptr;
  ASSERT_EQ(Created(mark).size(), 1U);
  const GRB_HANDLE handle = Created(mark)[0];
  const std::string h = HandleName(handle);
  // The constructor closes what it could not open, and the destructor closes again.
  EXPECT_EQ(Script().Trace(mark), (Lines{"Create() -> " + h, "ParameterSet(" + h + ", GRB_OPEN_BOARD, 0xc0010001)",
                                         "ParameterSet(" + h + ", GRB_OPEN_CHANNEL, 0xc0010010) = 0x8123"}) +
                                      CloseCalls(handle, 2));
}

TEST_P(OpenFailure, OfACameraThatHasGone) {
  Discover();
  Script().RemoveCamera(kBoard, kChannel);
  EXPECT_GC(GC_ERR_ERROR, "Attempting to use a Device but GRB Channel handle not valid.", Open());
  EXPECT_TRUE(ComesFrom(kConstructor, "Device.cpp"));
  ExpectUnharmed();
}

TEST_P(OpenFailure, OfTheStreamHandle) {
  Discover();
  Script().SetHeldElsewhere(kBoard, kChannel, true);
  if (!GetParam().hasStream) {
    EXPECT_GC_OK(Open());
    CloseDevice();
    return;
  }
  EXPECT_GC(GC_ERR_ERROR,
            "Opening Device in DEVICE_ACCESS_CONTROL or DEVICE_ACCESS_EXCLUSIVE access mode but GRB Stream handle not "
            "valid.",
            Open());
  EXPECT_TRUE(ComesFrom(kConstructor, "Device.cpp"));
  ExpectUnharmed();
}

// The text comes through unchanged: a handle that cannot be created is no absent camera.
TEST_P(OpenFailure, OfTheCreationOfAHandle) {
  Discover();
  const uint32_t handles = GetParam().hasStream ? 2 : 1;
  for (uint32_t nth = 1; nth <= handles; ++nth) {
    SCOPED_TRACE(nth);
    Script().On(Match(Op::Create), Bang(), When::Nth(nth));
    EXPECT_GC(GC_ERR_ERROR, LibraryText("GRB_Create"), Open());
    ExpectUnharmed();
  }
}

INSTANTIATE_TEST_SUITE_P(Flags, OpenFailure, testing::ValuesIn(kAccess));

// What was open is closed in the order of a close: the stream's handle, then the channel's.
TEST_F(DeviceCalls, TrialOfAHeldStreamHandleIsClosedAgain) {
  Discover();
  Script().SetHeldElsewhere(kBoard, kChannel, true);
  const size_t mark = Script().Mark();
  DEV_HANDLE device = nullptr;
  EXPECT_GC_CODE(GC_ERR_ERROR, Gc().IFOpenDevice(m_hInterface, "Channel #1", DEVICE_ACCESS_CONTROL, &device));
  const std::vector<GRB_HANDLE> handles = Created(mark);
  ASSERT_EQ(handles.size(), 2U);
  Lines opens = OpenCalls(handles[1], GRB_MODE_ACQ_ONLY);
  opens.back() += " = 0x9004";
  EXPECT_EQ(Script().Trace(mark), CreateAndOpenCalls(handles[0], GRB_MODE_CONTROL) + IdentityCalls(handles[0]) +
                                      Lines{"Create() -> " + HandleName(handles[1])} + opens + CloseCalls(handles[1]) +
                                      CloseCalls(handles[0]));
}

TEST_F(DeviceCalls, ChannelHandleIsClosedWhenNoStreamHandleCanBeCreated) {
  Discover();
  Script().On(Match(Op::Create), Bang(), When::Nth(2));
  const size_t mark = Script().Mark();
  DEV_HANDLE device = nullptr;
  EXPECT_GC_CODE(GC_ERR_ERROR, Gc().IFOpenDevice(m_hInterface, "Channel #1", DEVICE_ACCESS_CONTROL, &device));
  const GRB_HANDLE control = Created(mark).at(0);
  EXPECT_EQ(Script().Trace(mark), CreateAndOpenCalls(control, GRB_MODE_CONTROL) + IdentityCalls(control) +
                                      Lines{"Create() = 0x8123"} + CloseCalls(control));
}

// No status of the end is looked at.
TEST_F(DeviceCalls, CloseThatFailsInTheLibraryIsNoFailure) {
  OpenDevice();
  const GRB_HANDLE control = ControlHandle();
  const GRB_HANDLE stream = StreamHandle();
  Script().On(Match(Op::Close), Bang(), When::First(2));
  Script().On(Match(Op::Destroy), Bang().KeepEffect(), When::First(2));
  const size_t mark = Script().Mark();
  CloseDevice();
  Lines expected = CloseCalls(stream) + CloseCalls(control);
  for (std::string &call : expected) {
    call += " = 0x8123";
  }
  EXPECT_EQ(Script().Trace(mark), expected);
  EXPECT_EQ(Script().CreatedHandles(), 0U);
  EXPECT_NE(OpenDevice(), nullptr);
}

// Two threads open one Device at once: both find it closed, and the one that comes second loses its handles again.
TEST_F(DeviceOpen, OvertakenByAnotherThreadIsRefused) {
  Discover();
  DEV_HANDLE winner = nullptr;
  std::future<GC_ERROR> other;
  const auto overtake = [&](const Call &) {
    other = std::async(std::launch::async,
                       [&] { return Gc().IFOpenDevice(m_hInterface, "Channel #1", DEVICE_ACCESS_READONLY, &winner); });
    EXPECT_EQ(other.wait_for(kBound), std::future_status::ready);
  };
  Script().On(Match(Op::Open).Mode(GRB_MODE_CONTROL), Reply::Pass().Do(overtake));
  DEV_HANDLE device = Marker();
  EXPECT_GC(GC_ERR_RESOURCE_IN_USE, "Child already opened.",
            Gc().IFOpenDevice(m_hInterface, "Channel #1", DEVICE_ACCESS_READONLY, &device));
  EXPECT_EQ(device, Marker());
  ASSERT_EQ(other.get(), GC_ERR_SUCCESS);
  EXPECT_EQ(Script().OpenHandles(), 1U);
  EXPECT_EQ(DevInfo(winner, DEVICE_INFO_ID).Text(), "Channel #1");
}

// Entry functions of the Device ---------------------------------------------------------------------------------------

using DeviceEntries = OpenDeviceTest;

TEST_F(DeviceEntries, StreamCountNeedsAPlace) {
  EXPECT_GC_FROM(GC_ERR_INVALID_PARAMETER, "Null pointer for 'number of channels' variable",
                 "GenICam::Client::DevGetNumDataStreams", Gc().DevGetNumDataStreams(m_hDevice, nullptr));
}

TEST_F(DeviceEntries, StreamIdFollowsTheRuleOfTexts) {
  size_t size = 0;
  EXPECT_GC_OK(Gc().DevGetDataStreamID(m_hDevice, 0, nullptr, &size));
  EXPECT_EQ(size, sizeof("Stream #1"));
  char name[32] = "";
  EXPECT_GC_OK(Gc().DevGetDataStreamID(m_hDevice, 0, name, &size));
  EXPECT_STREQ(name, "Stream #1");
  size = sizeof(name);
  EXPECT_GC_OK(Gc().DevGetDataStreamID(m_hDevice, 0, name, &size));
  EXPECT_EQ(size, sizeof("Stream #1"));
  size = sizeof("Stream #1") - 1;
  EXPECT_GC(GC_ERR_INVALID_PARAMETER, "Invalid Buffer Size.", Gc().DevGetDataStreamID(m_hDevice, 0, name, &size));
  EXPECT_EQ(size, sizeof("Stream #1") - 1);
}

TEST_F(DeviceEntries, StreamIdChecksItsArguments) {
  constexpr const char *kFunction = "GenICam::Client::DevGetDataStreamID";
  char name[32];
  size_t size = 0;
  EXPECT_GC_FROM(GC_ERR_INVALID_PARAMETER, "Null size pointer.", kFunction,
                 Gc().DevGetDataStreamID(m_hDevice, 0, name, nullptr));
  EXPECT_GC_FROM(GC_ERR_INVALID_PARAMETER, "Size of buffer cannot be null.", kFunction,
                 Gc().DevGetDataStreamID(m_hDevice, 7, name, &size));
  size = sizeof(name);
  EXPECT_GC(GC_ERR_INVALID_PARAMETER, "Child #1 does not exist.", Gc().DevGetDataStreamID(m_hDevice, 1, name, &size));
  EXPECT_GC(GC_ERR_INVALID_PARAMETER, "Child #1000 does not exist.",
            Gc().DevGetDataStreamID(m_hDevice, 1000, nullptr, &size));
}

TEST_F(DeviceEntries, OfNoStreamsEveryIndexFailsAlike) {
  CloseDevice();
  OpenDevice(DEVICE_ACCESS_READONLY);
  size_t size = 0;
  for (const uint32_t index : {0U, 1U, 0xFFFFFFFFU}) {
    EXPECT_GC(GC_ERR_NOT_IMPLEMENTED, kNoStreams, Gc().DevGetDataStreamID(m_hDevice, index, nullptr, &size));
  }
}

// Every Dev function, with null and with a live handle of another kind.
TEST_F(DeviceEntries, TakeNoOtherHandle) {
  PORT_HANDLE remote = OpenRemotePort();
  void *const handles[] = {nullptr, m_hSystem,    m_hInterface,
                           remote,  OpenStream(), RegisterEvent(m_hDevice, EVENT_ERROR)};
  uint32_t count = 0;
  size_t size = 0;
  INFO_DATATYPE type = 0;
  void *out = Marker();
  constexpr GC_ERROR kCode = GC_ERR_INVALID_HANDLE;
  constexpr const char *kText = "Invalid Device Handle";
  constexpr const char *kFunction = "GenICam::Client::TypeCast";
  for (void *const handle : handles) {
    EXPECT_GC_FROM(kCode, kText, kFunction, Gc().DevGetNumDataStreams(handle, &count));
    EXPECT_GC_FROM(kCode, kText, kFunction, Gc().DevGetNumDataStreams(handle, nullptr));
    EXPECT_GC_FROM(kCode, kText, kFunction, Gc().DevGetDataStreamID(handle, 0, nullptr, &size));
    EXPECT_GC_FROM(kCode, kText, kFunction, Gc().DevGetInfo(handle, DEVICE_INFO_ID, &type, nullptr, &size));
    EXPECT_GC_FROM(kCode, kText, kFunction, Gc().DevGetPort(handle, &out));
    EXPECT_GC_FROM(kCode, kText, kFunction, Gc().DevOpenDataStream(handle, "Stream #1", &out));
    EXPECT_GC_FROM(kCode, kText, kFunction, Gc().DevClose(handle));
  }
  for (void *const handle : {m_hSystem, m_hDevice, remote}) {
    EXPECT_GC_FROM(kCode, kText, kFunction, Gc().IFOpenDevice(handle, "Channel #1", DEVICE_ACCESS_CONTROL, &out));
  }
  EXPECT_EQ(out, Marker());
}

// Whatever went with the Device is no handle any more: its port, its stream, its event.
TEST_F(DeviceEntries, TakeNoClosedHandle) {
  DEV_HANDLE device = m_hDevice;
  PORT_HANDLE remote = OpenRemotePort();
  DS_HANDLE stream = OpenStream();
  EVENT_HANDLE event = RegisterEvent(m_hDevice, EVENT_ERROR);
  CloseDevice();
  constexpr const char *kText = "Invalid Device Handle";
  uint32_t word = 0;
  size_t size = sizeof(word);
  INFO_DATATYPE type = 0;
  EXPECT_GC(GC_ERR_INVALID_HANDLE, kText, Gc().DevClose(device));
  EXPECT_GC(GC_ERR_INVALID_HANDLE, kText, Gc().DevGetInfo(device, DEVICE_INFO_ID, &type, nullptr, &size));
  EXPECT_GC(GC_ERR_INVALID_HANDLE, kText, Gc().GCReadPort(device, 0x3E4, &word, &size));
  EXPECT_GC(GC_ERR_INVALID_HANDLE, kText, Gc().GCReadPort(remote, 0x4, &word, &size));
  EXPECT_GC(GC_ERR_INVALID_HANDLE, kText, Gc().DSClose(stream));
  EXPECT_GC(GC_ERR_INVALID_HANDLE, kText, Gc().EventKill(event));
  // A second close leaves the others alone.
  EXPECT_NE(OpenDevice(), nullptr);
}

TEST_F(DeviceEntries, ADeviceHandleIsPortAndEventSource) {
  EXPECT_EQ(ReadText(m_hDevice, 0x0, 256), "Channel #1");
  EVENT_HANDLE event = RegisterEvent(m_hDevice, EVENT_ERROR);
  EXPECT_NE(event, nullptr);
  EXPECT_EQ(EventInfo(event, EVENT_EVENT_TYPE).As<int32_t>(), EVENT_ERROR);
  EXPECT_GC_OK(Gc().GCUnregisterEvent(m_hDevice, EVENT_ERROR));
}

// The Device never fires it; all the rest is that of an event.
TEST_F(DeviceEntries, ErrorEventIsAWholeEvent) {
  EVENT_HANDLE event = RegisterEvent(m_hDevice, EVENT_ERROR);
  EVENT_HANDLE again = Marker();
  EXPECT_GC(GC_ERR_RESOURCE_IN_USE, "Event already enabled.", Gc().GCRegisterEvent(m_hDevice, EVENT_ERROR, &again));
  EXPECT_EQ(again, Marker());
  char block[2048];
  size_t size = sizeof(block);
  EXPECT_GC(GC_ERR_TIMEOUT, "Timeout while acquiring data", Gc().EventGetData(event, block, &size, 0));
  EXPECT_EQ(EventInfo(event, EVENT_NUM_IN_QUEUE).As<size_t>(), 0U);
  EXPECT_GC_OK(Gc().EventKill(event));
  EXPECT_GC(GC_ERR_ABORT, "Wait terminated", Gc().EventGetData(event, block, &size, GENTL_INFINITE));

  EXPECT_GC_OK(Gc().GCUnregisterEvent(m_hDevice, EVENT_ERROR));
  constexpr const char *kDisabled = "Event is not enabled.";
  INFO_DATATYPE type = 0;
  EXPECT_GC(GC_ERR_INVALID_HANDLE, kDisabled, Gc().EventGetInfo(event, EVENT_EVENT_TYPE, &type, block, &size));
  EXPECT_GC(GC_ERR_INVALID_HANDLE, kDisabled, Gc().EventGetData(event, block, &size, 0));
  EXPECT_GC(GC_ERR_INVALID_HANDLE, kDisabled, Gc().EventFlush(event));
  EXPECT_GC(GC_ERR_INVALID_HANDLE, kDisabled, Gc().EventKill(event));
  EXPECT_GC_OK(Gc().GCUnregisterEvent(m_hDevice, EVENT_ERROR));
  EXPECT_EQ(RegisterEvent(m_hDevice, EVENT_ERROR), event);
}

TEST_F(DeviceEntries, ErrorEventIsNotTheStreams) {
  EVENT_HANDLE ofDevice = RegisterEvent(m_hDevice, EVENT_ERROR);
  EVENT_HANDLE ofStream = RegisterEvent(OpenStream(), EVENT_ERROR);
  EXPECT_NE(ofDevice, ofStream);
  EXPECT_GC_OK(WriteU32(m_hStream, 0x14, 1));  // the stream's test error
  EXPECT_EQ(EventInfo(ofStream, EVENT_NUM_IN_QUEUE).As<size_t>(), 1U);
  EXPECT_EQ(EventInfo(ofDevice, EVENT_NUM_IN_QUEUE).As<size_t>(), 0U);
  EXPECT_EQ(EventInfo(ofDevice, EVENT_NUM_FIRED).As<uint64_t>(), 0U);
}

class DeviceEventTypes : public OpenDeviceTest, public testing::WithParamInterface<EVENT_TYPE> {};

TEST_P(DeviceEventTypes, OtherThanErrorsAreNotImplemented) {
  const std::string message = Format("Event ID %d not implemented", GetParam());
  EVENT_HANDLE event = Marker();
  EXPECT_GC(GC_ERR_NOT_IMPLEMENTED, message, Gc().GCRegisterEvent(m_hDevice, GetParam(), &event));
  EXPECT_EQ(event, Marker());
  EXPECT_GC(GC_ERR_NOT_IMPLEMENTED, message, Gc().GCUnregisterEvent(m_hDevice, GetParam()));
}

INSTANTIATE_TEST_SUITE_P(Types, DeviceEventTypes, testing::Values(1, 2, 3, 4, 5, 1000, -1));

// Closing from above --------------------------------------------------------------------------------------------------

using DeviceCloseFromAbove = OpenDeviceTest;

TEST_F(DeviceCloseFromAbove, ByTheInterface) {
  OpenStream();
  OpenRemotePort();
  EXPECT_GC_OK(Gc().IFClose(m_hInterface));
  m_hInterface = nullptr;
  m_hDevice = nullptr;
  m_hStream = nullptr;
  EXPECT_EQ(Script().CreatedHandles(), 0U);
  OpenDevice();
}

// Opened in the other order, closed in that of the names; of each Device the stream's handle goes first.
TEST_F(DeviceCloseFromAbove, InTheOrderOfTheNames) {
  CloseDevice();
  DEV_HANDLE second = nullptr;
  ASSERT_GC_OK(Gc().IFOpenDevice(m_hInterface, "Channel #2", DEVICE_ACCESS_CONTROL, &second));
  OpenDevice();
  const GRB_HANDLE secondStream = Script().OpenHandle(kBoard, GRB_CHANNEL_2, GRB_MODE_ACQ_ONLY);
  const GRB_HANDLE secondControl = Script().OpenHandle(kBoard, GRB_CHANNEL_2, GRB_MODE_CONTROL);
  const Lines expected =
      CloseCalls(StreamHandle()) + CloseCalls(ControlHandle()) + CloseCalls(secondStream) + CloseCalls(secondControl);
  const size_t mark = Script().Mark();
  EXPECT_GC_OK(Gc().IFClose(m_hInterface));
  m_hInterface = nullptr;
  m_hDevice = nullptr;
  EXPECT_EQ(Script().Trace(mark), expected);
}

TEST_F(DeviceCloseFromAbove, ByTheSystem) {
  OpenStream();
  EXPECT_GC_OK(Gc().TLClose(m_hSystem));
  m_hSystem = nullptr;
  m_hInterface = nullptr;
  m_hDevice = nullptr;
  m_hStream = nullptr;
  EXPECT_EQ(Script().CreatedHandles(), 0U);
  OpenDevice();
}

TEST_F(DeviceCloseFromAbove, ByTheLibrary) {
  OpenStream();
  Reinitialise();
  EXPECT_EQ(Script().CreatedHandles(), 0U);
  OpenDevice();
}

// A discovery that no longer finds the camera must not take the open Device away.
TEST_F(DeviceCloseFromAbove, NotByADiscoveryThatMissesTheCamera) {
  Script().RemoveCamera(kBoard, kChannel);
  bool8_t changed = 0;
  EXPECT_GC_OK(Gc().IFUpdateDeviceList(m_hInterface, &changed, 0));
  EXPECT_TRUE(changed);
  EXPECT_EQ(DevInfo(m_hDevice, DEVICE_INFO_ID).Text(), "Channel #1");
  EXPECT_GC_OK(WriteU32(m_hDevice, 0x614, 32));
  CloseDevice();
}

}  // namespace
