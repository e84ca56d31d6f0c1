// SPDX-License-Identifier: MIT
/// @file
/// The calls that discovery makes of the frame-grabber library, one by one and in their order.
#include <string>
#include <vector>

#include "Tree.h"

using namespace FrameTests;

namespace {

using Trace = std::vector<std::string>;

constexpr uint32_t kChannels[] = {GRB_CHANNEL_1, GRB_CHANNEL_2, GRB_CHANNEL_3, GRB_CHANNEL_4,
                                  GRB_CHANNEL_5, GRB_CHANNEL_6, GRB_CHANNEL_7, GRB_CHANNEL_8};

/// A call in short, with the handle's number counted from the first of the list: "Open 2".
Trace Short(const std::vector<Call> &calls) {
  Trace trace;
  uint32_t first = 0;
  for (const Call &call : calls) {
    if (first == 0) {
      first = call.handle;
    }
    std::string line = std::string(NameOf(call.op)) + " " + std::to_string(call.handle - first + 1);
    if (call.op == Op::ParameterSet || call.op == Op::ParameterGet) {
      line += " " + NameOfCode(call.code);
      if (call.op == Op::ParameterSet && call.value) {
        line += " " + NameOfCode(static_cast<uint32_t>(*call.value));
      }
    } else if (call.op == Op::ControlRead || call.op == Op::ControlWrite) {
      line += " " + NameOfCode(call.code) + " " + std::to_string(call.address) + " " + std::to_string(call.size) + " " +
              std::to_string(call.timeout);
    }
    trace.push_back(line);
  }
  return trace;
}

/// Builds what is expected, in the same words.
class CExpected {
 public:
  CExpected &Create() {
    ++m_nHandle;
    return Add("Create");
  }
  CExpected &Open(uint32_t board, uint32_t channel, uint32_t mode) {
    Add("ParameterSet", " GRB_OPEN_BOARD " + NameOfCode(board));
    Add("ParameterSet", " GRB_OPEN_CHANNEL " + NameOfCode(channel));
    Add("ParameterSet", " GRB_OPEN_MODE " + NameOfCode(mode));
    Add("ParameterSet", " GRB_OPEN_VARIANT " + NameOfCode(GRB_VARIANT_ANY));
    return Add("Open");
  }
  CExpected &Get(uint32_t id) { return Add("ParameterGet", " " + NameOfCode(id)); }
  CExpected &Read(uint32_t address, uint32_t size, uint32_t timeout = 400) {
    return Add("ControlRead", " GRB_PORT_CAMERA " + std::to_string(address) + " " + std::to_string(size) + " " +
                                  std::to_string(timeout));
  }
  CExpected &Close() { return Add("Close"); }
  CExpected &Destroy() { return Add("Destroy"); }
  /// The next calls are of the handle created before the latest one.
  CExpected &BackTo(int back) {
    m_nBack = back;
    return *this;
  }
  const Trace &Lines() const { return m_Lines; }

 private:
  CExpected &Add(const std::string &name, const std::string &rest = "") {
    m_Lines.push_back(name + " " + std::to_string(m_nHandle - m_nBack) + rest);
    return *this;
  }
  Trace m_Lines;
  int m_nHandle = 0;
  int m_nBack = 0;
};

class DiscoveryTest : public ProducerTest {
 protected:
  std::vector<Call> UpdateSystem() {
    OpenSystem();
    const size_t mark = Script().Mark();
    EXPECT_GC_OK(Gc().TLUpdateInterfaceList(m_hSystem, nullptr, 0));
    return Script().Calls(mark);
  }
  std::vector<Call> UpdateInterface() {
    OpenInterface();
    const size_t mark = Script().Mark();
    EXPECT_GC_OK(Gc().IFUpdateDeviceList(m_hInterface, nullptr, 0));
    return Script().Calls(mark);
  }
  std::vector<std::string> DeviceIds() {
    std::vector<std::string> ids;
    uint32_t count = 0;
    EXPECT_GC_OK(Gc().IFGetNumDevices(m_hInterface, &count));
    for (uint32_t i = 0; i < count; ++i) {
      ids.push_back(DeviceId(m_hInterface, i).Text());
    }
    return ids;
  }
};

// ---------------------------------------------------------------------------------------------------------------------
// Boards
// ---------------------------------------------------------------------------------------------------------------------

TEST_F(DiscoveryTest, SevenBoardsInOrderEachWithItsOwnHandle) {
  Script().RemoveAllBoards();
  Script().SetBoard(GRB_BOARD_3);
  CExpected expected;
  for (uint32_t board = GRB_BOARD_1; board <= GRB_BOARD_7; ++board) {
    expected.Create();
    if (board == GRB_BOARD_3) {
      expected.Open(board, GRB_CHANNEL_1, GRB_MODE_ENUMERATE).Get(GRB_BOARD_PROPERTIES);
    } else {
      for (const uint32_t channel : kChannels) {
        expected.Open(board, channel, GRB_MODE_ENUMERATE);
      }
    }
    expected.Close().Destroy();
  }
  EXPECT_EQ(expected.Lines(), Short(UpdateSystem()));
  EXPECT_EQ(0U, Script().CreatedHandles());
}

TEST_F(DiscoveryTest, FirstChannelThatOpensIsTaken) {
  for (const uint32_t channel : {GRB_CHANNEL_1, GRB_CHANNEL_2, GRB_CHANNEL_3}) {
    Script().SetEnumerable(GRB_BOARD_1, channel, false);
  }
  const std::vector<Call> calls = UpdateSystem();
  std::vector<uint32_t> channels;
  for (const Call &call : calls) {
    if (call.op == Op::Open && call.board == GRB_BOARD_1) {
      channels.push_back(call.channel);
    }
  }
  EXPECT_EQ((std::vector<uint32_t>{GRB_CHANNEL_1, GRB_CHANNEL_2, GRB_CHANNEL_3, GRB_CHANNEL_4}), channels);
  EXPECT_EQ("GL-CXP4-#1", InterfaceId(m_hSystem, 0).Text());
}

TEST_F(DiscoveryTest, BoardThatOpensOnNoChannelIsNotAskedForItsProperties) {
  for (const uint32_t channel : kChannels) {
    Script().SetEnumerable(GRB_BOARD_1, channel, false);
  }
  const std::vector<Call> calls = UpdateSystem();
  EXPECT_EQ(0U, Script().Count(Match(Op::ParameterGet, GRB_BOARD_PROPERTIES)));
  EXPECT_EQ(7U, Script().Count(Match(Op::Destroy)));
  uint32_t count = 77;
  EXPECT_GC_OK(Gc().TLGetNumInterfaces(m_hSystem, &count));
  EXPECT_EQ(0U, count);
}

TEST_F(DiscoveryTest, FailingPropertiesLeaveTheBoardOut) {
  Script().On(Match(Op::ParameterGet, GRB_BOARD_PROPERTIES), Reply::Failure(0x8123), When::Every());
  UpdateSystem();
  uint32_t count = 77;
  EXPECT_GC_OK(Gc().TLGetNumInterfaces(m_hSystem, &count));
  EXPECT_EQ(0U, count);
  EXPECT_EQ(0U, Script().CreatedHandles());
}

// A parameter that is refused ends the attempt on that channel: no GRB_Open, and the next channel is tried.
TEST_F(DiscoveryTest, RefusedOpenParameterEndsTheAttempt) {
  for (const uint32_t id : {GRB_OPEN_BOARD, GRB_OPEN_CHANNEL, GRB_OPEN_MODE, GRB_OPEN_VARIANT}) {
    Script().CancelAll();
    OpenSystem();
    Script().On(Match(Op::ParameterSet, id), Reply::Failure(0x8123));
    const size_t mark = Script().Mark();
    EXPECT_GC_OK(Gc().TLUpdateInterfaceList(m_hSystem, nullptr, 0));
    const std::vector<Call> opens = Script().Calls(Match(Op::Open), mark);
    ASSERT_FALSE(opens.empty());
    EXPECT_EQ(GRB_CHANNEL_2, opens[0].channel) << NameOfCode(id);
    EXPECT_EQ(GRB_BOARD_1, opens[0].board);
  }
}

TEST_F(DiscoveryTest, BoardWhoseHandleCannotBeCreatedIsLeftOut) {
  Script().SetBoard(GRB_BOARD_2);
  Script().On(Match(Op::Create), Reply::Failure(0x8123));
  const std::vector<Call> calls = UpdateSystem();
  EXPECT_EQ("GL-CXP4-#2", InterfaceId(m_hSystem, 0).Text());
  uint32_t count = 77;
  EXPECT_GC_OK(Gc().TLGetNumInterfaces(m_hSystem, &count));
  EXPECT_EQ(1U, count);
  EXPECT_EQ(0U, Script().CreatedHandles());
}

TEST_F(DiscoveryTest, NoErrorReachesTheUser) {
  Script().RemoveAllBoards();
  UpdateSystem();
  EXPECT_EQ(0U, Script().Count(Match(Op::ErrHandlerDefault)));
  EXPECT_EQ(kSuccessText, LastError().text);
}

// ---------------------------------------------------------------------------------------------------------------------
// Cameras
// ---------------------------------------------------------------------------------------------------------------------

/// Calls for one channel with a camera: who it is, and a trial open that tells whether it is free.
void Camera(CExpected &expected, uint32_t channel, uint32_t timeout = 400) {
  expected.BackTo(0).Create().Open(GRB_BOARD_1, channel, GRB_MODE_CONTROL).Get(GRB_REV_SW);
  expected.Read(0x4, 4).Read(0x2000, 32, timeout).Read(0x2020, 32, timeout);
  expected.Create().Open(GRB_BOARD_1, channel, GRB_MODE_ACQ_ONLY).Close().Destroy();
  expected.BackTo(1).Close().Destroy();
}

/// Calls for one without: the failed handle is closed by its constructor, and by its destructor once more.
void NoCamera(CExpected &expected, uint32_t channel) {
  expected.BackTo(0).Create().Open(GRB_BOARD_1, channel, GRB_MODE_CONTROL).Get(GRB_REV_SW);
  expected.Read(0x4, 4).Close().Close().Destroy();
}

TEST_F(DiscoveryTest, EightChannelsInOrder) {
  Script().SetCamera(GRB_BOARD_1, GRB_CHANNEL_7, CCamera());
  CExpected expected;
  for (const uint32_t channel : kChannels) {
    if (channel == GRB_CHANNEL_1 || channel == GRB_CHANNEL_2 || channel == GRB_CHANNEL_7) {
      Camera(expected, channel);
    } else {
      NoCamera(expected, channel);
    }
  }
  EXPECT_EQ(expected.Lines(), Short(UpdateInterface()));
  EXPECT_EQ(0U, Script().CreatedHandles());
  EXPECT_EQ((Trace{"Channel #1", "Channel #2", "Channel #7"}), DeviceIds());
}

TEST_F(DiscoveryTest, BoardOfTheInterfaceIsAsked) {
  Script().RemoveAllBoards();
  Script().SetBoard(GRB_BOARD_5);
  OpenInterface("GL-CXP4-#5");
  const size_t mark = Script().Mark();
  EXPECT_GC_OK(Gc().IFUpdateDeviceList(m_hInterface, nullptr, 0));
  const std::vector<Call> opens = Script().Calls(Match(Op::Open), mark);
  EXPECT_EQ(8U, opens.size());
  for (const Call &call : opens) {
    EXPECT_EQ(GRB_BOARD_5, call.board);
  }
}

TEST_F(DiscoveryTest, ChannelsOneToSevenHaveTheirNumbers) {
  for (const uint32_t channel : kChannels) {
    Script().SetCamera(GRB_BOARD_1, channel, CCamera());
  }
  UpdateInterface();
  // The eighth has no number: a camera there is left out.
  EXPECT_EQ((Trace{"Channel #1", "Channel #2", "Channel #3", "Channel #4", "Channel #5", "Channel #6", "Channel #7"}),
            DeviceIds());
  EXPECT_EQ(0U, Script().CreatedHandles());
}

TEST_F(DiscoveryTest, CameraOnTheEighthChannelIsGivenUpBehindItsRevision) {
  Script().SetCamera(GRB_BOARD_1, GRB_CHANNEL_8, CCamera());
  const std::vector<Call> calls = UpdateInterface();
  std::vector<uint32_t> addresses;
  for (const Call &call : calls) {
    if (call.op == Op::ControlRead && call.channel == GRB_CHANNEL_8) {
      addresses.push_back(call.address);
    }
  }
  EXPECT_EQ(std::vector<uint32_t>{0x4}, addresses);
  EXPECT_EQ(0U, Script().Count(Match(Op::Open).Channel(GRB_CHANNEL_8).Mode(GRB_MODE_ACQ_ONLY)));
}

TEST_F(DiscoveryTest, SettingOfTheTimeOutDoesNotCountForTheIdentity) {
  CSettingsFile settings;
  settings.Dword("TimeOut", 50).Write();
  Reinitialise();
  for (const Call &call : UpdateInterface()) {
    if (call.op == Op::ControlRead) {
      EXPECT_EQ(400U, call.timeout);
    }
  }
}

/// Each step of the identification, failing: the channel is left out, and nothing stays open.
struct StepRow {
  const char *name;
  Match match;
};
std::ostream &operator<<(std::ostream &out, const StepRow &row) { return out << row.name; }

class IdentificationStep : public DiscoveryTest, public testing::WithParamInterface<StepRow> {};

TEST_P(IdentificationStep, FailingLeavesTheChannelOut) {
  OpenInterface();
  Script().On(GetParam().match, Reply::Failure(0x8123), When::Every());
  bool8_t changed = false;
  EXPECT_GC_OK(Gc().IFUpdateDeviceList(m_hInterface, &changed, 0));
  EXPECT_TRUE(changed);
  EXPECT_EQ((Trace{"Channel #2"}), DeviceIds());
  EXPECT_EQ(0U, Script().CreatedHandles());
  EXPECT_EQ(0U, Script().Count(Match(Op::ErrHandlerDefault)));
  Script().CancelAll();
  EXPECT_GC_OK(Gc().IFUpdateDeviceList(m_hInterface, &changed, 0));
  EXPECT_TRUE(changed);
  EXPECT_EQ((Trace{"Channel #2", "Channel #1"}), DeviceIds()) << "found by the next discovery";
}

std::vector<StepRow> Steps() {
  const auto control = [](Op op, uint32_t code) {
    return Match(op, code).Channel(GRB_CHANNEL_1).Mode(GRB_MODE_CONTROL);
  };
  return {
      {"Variant", Match(Op::ParameterSet, GRB_OPEN_VARIANT).Channel(GRB_CHANNEL_1).Mode(GRB_MODE_CONTROL)},
      {"Open", Match(Op::Open).Channel(GRB_CHANNEL_1).Mode(GRB_MODE_CONTROL)},
      {"Revision", control(Op::ParameterGet, GRB_REV_SW)},
      {"CameraRevision", control(Op::ControlRead, GRB_PORT_CAMERA).Address(0x4)},
      {"Vendor", control(Op::ControlRead, GRB_PORT_CAMERA).Address(0x2000)},
      {"Model", control(Op::ControlRead, GRB_PORT_CAMERA).Address(0x2020)},
  };
}

INSTANTIATE_TEST_SUITE_P(Steps, IdentificationStep, testing::ValuesIn(Steps()),
                         [](const testing::TestParamInfo<StepRow> &row) { return std::string(row.param.name); });

TEST_F(DiscoveryTest, ChannelWhoseHandleCannotBeCreatedIsLeftOut) {
  OpenInterface();
  Script().On(Match(Op::Create), Reply::Failure(0x8123));
  EXPECT_GC_OK(Gc().IFUpdateDeviceList(m_hInterface, nullptr, 0));
  EXPECT_EQ((Trace{"Channel #2"}), DeviceIds());
  EXPECT_EQ(0U, Script().CreatedHandles());
}

/// Each step of the trial open, failing: the camera is there, and not free.
class TrialStep : public DiscoveryTest, public testing::WithParamInterface<StepRow> {};

TEST_P(TrialStep, FailingMeansNoAccess) {
  OpenInterface();
  Script().On(GetParam().match, Reply::Failure(0x8123), When::Every());
  EXPECT_GC_OK(Gc().IFUpdateDeviceList(m_hInterface, nullptr, 0));
  EXPECT_EQ((Trace{"Channel #1", "Channel #2"}), DeviceIds());
  EXPECT_EQ(DEVICE_ACCESS_STATUS_NOACCESS,
            DeviceInfo(m_hInterface, "Channel #1", DEVICE_INFO_ACCESS_STATUS).As<int32_t>());
  EXPECT_EQ(DEVICE_ACCESS_STATUS_READWRITE,
            DeviceInfo(m_hInterface, "Channel #2", DEVICE_INFO_ACCESS_STATUS).As<int32_t>());
  EXPECT_EQ(0U, Script().CreatedHandles());
}

INSTANTIATE_TEST_SUITE_P(
    Steps, TrialStep,
    testing::Values(StepRow{"Variant",
                            Match(Op::ParameterSet, GRB_OPEN_VARIANT).Channel(GRB_CHANNEL_1).Mode(GRB_MODE_ACQ_ONLY)},
                    StepRow{"Open", Match(Op::Open).Channel(GRB_CHANNEL_1).Mode(GRB_MODE_ACQ_ONLY)}),
    [](const testing::TestParamInfo<StepRow> &row) { return std::string(row.param.name); });

TEST_F(DiscoveryTest, NamesOfThirtyTwoCharactersComeWhole) {
  const std::string vendor(32, 'v');
  const std::string model(32, 'm');
  Script().SetCamera(GRB_BOARD_1, GRB_CHANNEL_1, CCamera().Vendor(vendor).Model(model));
  UpdateInterface();
  EXPECT_EQ(vendor, DeviceInfo(m_hInterface, "Channel #1", DEVICE_INFO_VENDOR).Text());
  EXPECT_EQ(model, DeviceInfo(m_hInterface, "Channel #1", DEVICE_INFO_MODEL).Text());
  EXPECT_EQ(vendor + " " + model + "(Channel #1)",
            DeviceInfo(m_hInterface, "Channel #1", DEVICE_INFO_DISPLAYNAME).Text());
  EXPECT_EQ(vendor, ReadText(m_hInterface, 0x488, 64));
}

TEST_F(DiscoveryTest, NamelessCameraIsListed) {
  Script().SetCamera(GRB_BOARD_1, GRB_CHANNEL_1, CCamera().Vendor("").Model(""));
  UpdateInterface();
  EXPECT_EQ("", DeviceInfo(m_hInterface, "Channel #1", DEVICE_INFO_VENDOR).Text());
  EXPECT_EQ(" (Channel #1)", DeviceInfo(m_hInterface, "Channel #1", DEVICE_INFO_DISPLAYNAME).Text());
}

TEST_F(DiscoveryTest, OpensNothingThatItDoesNotClose) {
  UpdateInterface();
  EXPECT_EQ(Script().Count(Match(Op::Create)), Script().Count(Match(Op::Destroy)));
  EXPECT_EQ(0U, Script().OpenHandles());
}

}  // namespace
