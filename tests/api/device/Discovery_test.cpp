// SPDX-License-Identifier: MIT
// The library's calls while boards and cameras are searched, in their order.
#include <ostream>

#include "DeviceFixture.h"

namespace DeviceTests {
namespace {

constexpr uint32_t kChannels[] = {0xC0010010, 0xC0010020, 0xC0010021, 0xC0010022,
                                  0xC0010023, 0xC0010024, 0xC0010025, 0xC0010026};

class Discovery : public DeviceTest {
 protected:
  // The ids of the Interfaces that a search finds.
  Lines SearchBoards() {
    bool8_t changed = 0;
    EXPECT_GC_OK(Gc().TLUpdateInterfaceList(OpenSystem(), &changed, 0));
    uint32_t count = 0;
    EXPECT_GC_OK(Gc().TLGetNumInterfaces(m_hSystem, &count));
    Lines ids;
    for (uint32_t i = 0; i < count; ++i) {
      ids.push_back(InterfaceId(m_hSystem, i).Text());
    }
    return ids;
  }
  Lines SearchCameras() {
    EXPECT_GC_OK(Gc().IFUpdateDeviceList(OpenInterface(), nullptr, 0));
    uint32_t count = 0;
    EXPECT_GC_OK(Gc().IFGetNumDevices(m_hInterface, &count));
    Lines ids;
    for (uint32_t i = 0; i < count; ++i) {
      ids.push_back(DeviceId(m_hInterface, i).Text());
    }
    return ids;
  }
  static Lines WithStatus(Lines calls, const char *status) {
    calls.back() += std::string(" = ") + status;
    return calls;
  }
  // A channel whose camera is silent: opened, asked for its revision, closed by the constructor and the destructor.
  static Lines SilentCamera(GRB_HANDLE handle, uint32_t channel) {
    const std::string h = HandleName(handle);
    return CreateAndOpenCalls(handle, GRB_MODE_CONTROL, channel) +
           Lines{"ParameterGet(" + h + ", GRB_REV_SW)",
                 "ControlRead(" + h + ", GRB_PORT_CAMERA, 0x4, 4, 400) = 0x8000"} +
           CloseCalls(handle, 2);
  }
  static Lines Camera(GRB_HANDLE control, GRB_HANDLE stream, uint32_t channel) {
    return CreateAndOpenCalls(control, GRB_MODE_CONTROL, channel) + IdentityCalls(control) +
           CreateAndOpenCalls(stream, GRB_MODE_ACQ_ONLY, channel) + CloseCalls(stream) + CloseCalls(control);
  }
};

TEST_F(Discovery, OfBoardsTriesEightChannelsOfSevenBoards) {
  OpenSystem();
  const size_t mark = Script().Mark();
  EXPECT_EQ(SearchBoards(), (Lines{"GL-CXP4-#1"}));
  const std::vector<GRB_HANDLE> handles = Created(mark);
  ASSERT_EQ(handles.size(), 7U);
  Lines expected = CreateAndOpenCalls(handles[0], GRB_MODE_ENUMERATE) +
                   Lines{"ParameterGet(" + HandleName(handles[0]) + ", GRB_BOARD_PROPERTIES)"} + CloseCalls(handles[0]);
  for (uint32_t board = 1; board < 7; ++board) {
    expected.push_back("Create() -> " + HandleName(handles[board]));
    for (const uint32_t channel : kChannels) {
      expected =
          expected + WithStatus(OpenCalls(handles[board], GRB_MODE_ENUMERATE, channel, GRB_BOARD_1 + board), "0x9003");
    }
    expected = expected + CloseCalls(handles[board]);
  }
  EXPECT_EQ(Script().Trace(mark), expected);
  EXPECT_EQ(Script().CreatedHandles(), 0U);
}

TEST_F(Discovery, OfBoardsStopsAtTheFirstChannelThatOpens) {
  for (size_t first = 1; first < std::size(kChannels); ++first) {
    Script().SetEnumerable(kBoard, kChannels[first - 1], false);
    OpenSystem();
    const size_t mark = Script().Mark();
    EXPECT_EQ(SearchBoards(), (Lines{"GL-CXP4-#1"}));
    EXPECT_EQ(Script().Count(Match(Op::Open).Board(kBoard), mark), first + 1);
    EXPECT_EQ(Script().Count(Match(Op::ParameterGet, GRB_BOARD_PROPERTIES), mark), 1U);
  }
}

TEST_F(Discovery, OfABoardWithoutAnOpenChannelDoesNotAskForItsName) {
  for (const uint32_t channel : kChannels) {
    Script().SetEnumerable(kBoard, channel, false);
  }
  OpenSystem();
  const size_t mark = Script().Mark();
  EXPECT_EQ(SearchBoards(), Lines());
  EXPECT_EQ(Script().Count(Match(Op::ParameterGet), mark), 0U);
  EXPECT_EQ(Script().CreatedHandles(), 0U);
}

struct BoardRow {
  const char *properties;
  const char *id;  // null: the board is left out
  const char *displayName;
  const char *type;
};

std::ostream &operator<<(std::ostream &out, const BoardRow &row) { return out << row.properties; }

constexpr BoardRow kBoards[] = {
    {"Name=N\nModel=M\n", "M-#3", "N M #3", ""},
    {"Name=N\nModel=GL-CXP4\n", "GL-CXP4-#3", "N GL-CXP4 #3", "CXP"},
    {"Model=CXP\nName=N\n", "CXP-#3", "N CXP #3", "CXP"},
    {"Model=aCXPb\n", "aCXPb-#3", " aCXPb #3", "CXP"},
    {"Model=cxp\n", "cxp-#3", " cxp #3", ""},
    {"Name=N\n", "-#3", "N  #3", ""},
    {"", "-#3", "  #3", ""},
    {"model=M\nName=N\n", "-#3", "N  #3", ""},
    {"Serial=7\nName=With blanks\nModel=M 1\nMore=x\n", "M 1-#3", "With blanks M 1 #3", ""},
    {"Model=A=Name\nName=N\n", "A-#3", "Name A #3", ""},  // a second separator ends the value
    {"Model=\nName=N\n", "Name-#3", " Name #3", ""},      // runs of separators count as one
    {"Model=M\nModel=K\nName=N\n", "M-#3", "N M #3", ""},
    {"Name=N\nModel=", nullptr, nullptr, nullptr},
    {"Name=N\nModel=\n", nullptr, nullptr, nullptr},
    {"Name=N\nModel", nullptr, nullptr, nullptr},
    {"Model=M\nName=", nullptr, nullptr, nullptr},
};

class BoardNames : public Discovery, public testing::WithParamInterface<BoardRow> {};

TEST_P(BoardNames, FollowFromTheProperties) {
  Script().RemoveAllBoards();
  Script().SetBoard(GRB_BOARD_3, GetParam().properties);
  const Lines ids = SearchBoards();
  EXPECT_EQ(Script().CreatedHandles(), 0U);
  if (GetParam().id == nullptr) {
    EXPECT_EQ(ids, Lines());
    return;
  }
  ASSERT_EQ(ids, (Lines{GetParam().id}));
  EXPECT_EQ(InterfaceInfo(m_hSystem, GetParam().id, INTERFACE_INFO_DISPLAYNAME).Text(), GetParam().displayName);
  EXPECT_EQ(InterfaceInfo(m_hSystem, GetParam().id, INTERFACE_INFO_TLTYPE).Text(), GetParam().type);
}

INSTANTIATE_TEST_SUITE_P(Properties, BoardNames, testing::ValuesIn(kBoards));

TEST_F(Discovery, OfABoardWithoutPropertiesLeavesItOut) {
  Script().SetNullProperties(kBoard);
  EXPECT_EQ(SearchBoards(), Lines());
  Script().SetBoard(kBoard);
  Script().On(Match(Op::ParameterGet, GRB_BOARD_PROPERTIES), Bang());
  EXPECT_EQ(SearchBoards(), Lines());
  EXPECT_EQ(SearchBoards(), (Lines{"GL-CXP4-#1"}));
}

TEST_F(Discovery, OfBoardsKeepsTheOrderOfTheirNumbers) {
  Script().SetBoard(GRB_BOARD_7, "Model=Last\n");
  Script().SetBoard(GRB_BOARD_2, "Model=Second\n");
  EXPECT_EQ(SearchBoards(), (Lines{"GL-CXP4-#1", "Second-#2", "Last-#7"}));
}

TEST_F(Discovery, LeavesOutABoardWhoseHandleCannotBeCreated) {
  Script().SetBoard(GRB_BOARD_2, "Model=Second\n");
  Script().On(Match(Op::Create), Bang());
  EXPECT_EQ(SearchBoards(), (Lines{"Second-#2"}));
  EXPECT_EQ(Script().CreatedHandles(), 0U);
}

// Cameras -------------------------------------------------------------------------------------------------------------

TEST_F(Discovery, OfCamerasTriesEightChannels) {
  OpenInterface();
  const size_t mark = Script().Mark();
  EXPECT_EQ(SearchCameras(), (Lines{"Channel #1", "Channel #2"}));
  const std::vector<GRB_HANDLE> handles = Created(mark);
  ASSERT_EQ(handles.size(), 10U);
  Lines expected = Camera(handles[0], handles[1], kChannels[0]) + Camera(handles[2], handles[3], kChannels[1]);
  for (size_t i = 2; i < std::size(kChannels); ++i) {
    expected = expected + SilentCamera(handles[i + 2], kChannels[i]);
  }
  EXPECT_EQ(Script().Trace(mark), expected);
  EXPECT_EQ(Script().CreatedHandles(), 0U);
}

TEST_F(Discovery, OfCamerasNumbersThemByTheirChannel) {
  for (const uint32_t channel : kChannels) {
    Script().SetCamera(kBoard, channel, CCamera());
  }
  EXPECT_EQ(SearchCameras(),
            (Lines{"Channel #1", "Channel #2", "Channel #3", "Channel #4", "Channel #5", "Channel #6", "Channel #7"}));
}

// The eighth channel is tried, and its camera has no number.
TEST_F(Discovery, OfCamerasLeavesTheEighthChannelOut) {
  Script().RemoveCamera(kBoard, GRB_CHANNEL_1);
  Script().RemoveCamera(kBoard, GRB_CHANNEL_2);
  Script().SetCamera(kBoard, GRB_CHANNEL_8, CCamera());
  OpenInterface();
  const size_t mark = Script().Mark();
  EXPECT_EQ(SearchCameras(), Lines());
  EXPECT_EQ(Created(mark).size(), 8U);
  const GRB_HANDLE last = Created(mark).back();
  const std::string h = HandleName(last);
  const Lines asked = {"ParameterGet(" + h + ", GRB_REV_SW)", "ControlRead(" + h + ", GRB_PORT_CAMERA, 0x4, 4, 400)"};
  EXPECT_EQ(Script().Trace(Match().Handle(last), mark),
            CreateAndOpenCalls(last, GRB_MODE_CONTROL, GRB_CHANNEL_8) + asked + CloseCalls(last, 2));
}

// Whatever step of a probe fails, the camera is left out and the others are found.
TEST_F(Discovery, LeavesOutACameraWhoseProbeFails) {
  struct {
    const char *what;
    Match match;
  } const kRows[] = {{"create", Match(Op::Create)},
                     {"board", Match(Op::ParameterSet, GRB_OPEN_BOARD)},
                     {"open", Match(Op::Open)},
                     {"library", Match(Op::ParameterGet, GRB_REV_SW)},
                     {"revision", Match(Op::ControlRead).Address(0x4)},
                     {"vendor", Match(Op::ControlRead).Address(0x2000)},
                     {"model", Match(Op::ControlRead).Address(0x2020)}};
  OpenInterface();
  for (const auto &row : kRows) {
    SCOPED_TRACE(row.what);
    Script().On(row.match, Bang());
    EXPECT_EQ(SearchCameras(), (Lines{"Channel #2"}));
    EXPECT_EQ(Script().CreatedHandles(), 0U);
    EXPECT_EQ(SearchCameras().size(), 2U);
  }
}

TEST_F(Discovery, OfACameraThatIsHeldFindsItAllTheSame) {
  Script().SetHeldElsewhere(kBoard, kChannel, true);
  OpenInterface();
  const size_t mark = Script().Mark();
  EXPECT_EQ(SearchCameras().size(), 2U);
  const std::vector<GRB_HANDLE> handles = Created(mark);
  EXPECT_EQ(Script().Trace(Match().Handle(handles[1]), mark),
            WithStatus(CreateAndOpenCalls(handles[1], GRB_MODE_ACQ_ONLY), "0x9004") + CloseCalls(handles[1]));
}

// The camera's own handle could be made, so the camera is there; that it is free could not be found out.
TEST_F(Discovery, OfACameraWhoseTrialHandleCannotBeCreatedFindsItWithoutAccess) {
  OpenInterface();
  Script().On(Match(Op::Create), Bang(), When::Nth(2));
  EXPECT_EQ(SearchCameras(), (Lines{"Channel #1", "Channel #2"}));
  EXPECT_EQ(DeviceInfo(m_hInterface, "Channel #1", DEVICE_INFO_ACCESS_STATUS).As<int32_t>(),
            DEVICE_ACCESS_STATUS_NOACCESS);
  EXPECT_EQ(DeviceInfo(m_hInterface, "Channel #2", DEVICE_INFO_ACCESS_STATUS).As<int32_t>(),
            DEVICE_ACCESS_STATUS_READWRITE);
  EXPECT_EQ(Script().CreatedHandles(), 0U);
}

// A probe in flight must not disturb a Device that is open.
TEST_F(Discovery, BesideAnOpenDeviceLeavesItAlone) {
  OpenDevice();
  const GRB_HANDLE control = ControlHandle();
  const GRB_HANDLE stream = StreamHandle();
  SearchCameras();
  EXPECT_EQ(ControlHandle(), control);
  EXPECT_EQ(StreamHandle(), stream);
  EXPECT_GC_OK(WriteU32(m_hDevice, 0x614, 5));
}

}  // namespace
}  // namespace DeviceTests
