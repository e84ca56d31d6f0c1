// SPDX-License-Identifier: MIT
/// @file
/// The Interface module: opening and closing, info answers, registers, device list.
#include <cstdio>
#include <future>
#include <string>
#include <vector>

#include "Tree.h"

using namespace FrameTests;

namespace {

constexpr const char *kNone = "No Device Selected";
constexpr const char *kDisplay1 = "Lumivex Optics Testcam 1(Channel #1)";
constexpr const char *kDisplay2 = "Lumivex Optics Testcam 2(Channel #2)";

class InterfaceTest : public ProducerTest {
 protected:
  void SetUp() override {
    ProducerTest::SetUp();
    OpenInterface();
  }
  bool Update(uint64_t timeout = 100) {
    bool8_t changed = true;
    EXPECT_GC_OK(Gc().IFUpdateDeviceList(m_hInterface, &changed, timeout));
    return changed;
  }
  uint32_t CountDevices() {
    uint32_t count = 77;
    EXPECT_GC_OK(Gc().IFGetNumDevices(m_hInterface, &count));
    return count;
  }
  std::vector<std::string> Ids() {
    std::vector<std::string> ids;
    const uint32_t count = CountDevices();
    for (uint32_t i = 0; i < count; ++i) {
      ids.push_back(DeviceId(m_hInterface, i).Text());
    }
    return ids;
  }
  int32_t Status(const char *id) { return DeviceInfo(m_hInterface, id, DEVICE_INFO_ACCESS_STATUS).As<int32_t>(); }

  struct Selection {
    std::string id;
    std::string vendor;
    std::string model;
    std::string display;
    uint32_t status = 0;
    bool operator==(const Selection &other) const {
      return id == other.id && vendor == other.vendor && model == other.model && display == other.display &&
             status == other.status;
    }
    friend std::ostream &operator<<(std::ostream &out, const Selection &s) {
      return out << s.id << '|' << s.vendor << '|' << s.model << '|' << s.display << '|' << s.status;
    }
  };
  Selection Selected() {
    return {ReadText(m_hInterface, 0x380, 256), ReadText(m_hInterface, 0x488, 64), ReadText(m_hInterface, 0x4C8, 64),
            ReadText(m_hInterface, 0x52C, 256), ReadU32(m_hInterface, 0x62C)};
  }
  const Selection kNothingSelected = {kNone, kNone, kNone, kNone, 0};
  const Selection kFirst = {"Channel #1", "Lumivex Optics", "Testcam 1", kDisplay1, 1};
  const Selection kSecond = {"Channel #2", "Lumivex Optics", "Testcam 2", kDisplay2, 1};
};

using Names = std::vector<std::string>;

// ---------------------------------------------------------------------------------------------------------------------
// Opening and closing
// ---------------------------------------------------------------------------------------------------------------------

using InterfaceOpening = ProducerTest;

TEST_F(InterfaceOpening, FindsTheBoardsFirst) {
  OpenSystem();
  IF_HANDLE iface = nullptr;
  EXPECT_GC_OK(Gc().TLOpenInterface(m_hSystem, CScriptedGrb::kDefaultInterfaceId, &iface));
  m_hInterface = iface;
  EXPECT_EQ(1U, ReadU32(m_hSystem, 0x4));
}

TEST_F(InterfaceOpening, RunsNoDiscoveryBehindTheFirst) {
  OpenSystem();
  ASSERT_GC_OK(Gc().TLUpdateInterfaceList(m_hSystem, nullptr, 0));
  const size_t mark = Script().Mark();
  OpenInterface();
  EXPECT_EQ(0U, Script().Calls(mark).size()) << "opening an Interface touches no hardware";
}

TEST_F(InterfaceOpening, TwiceFailsWithTheId) {
  OpenInterface();
  IF_HANDLE second = &second;
  EXPECT_GC(GC_ERR_RESOURCE_IN_USE, "Interface 'GL-CXP4-#1' is already opened.",
            Gc().TLOpenInterface(m_hSystem, "GL-CXP4-#1", &second));
  EXPECT_EQ(&second, second);
  EXPECT_EQ("TLInterface", PortInfo(m_hInterface, PORT_INFO_MODULE).Text());
}

TEST_F(InterfaceOpening, ClosedInterfaceCanBeOpenedAgain) {
  for (int i = 0; i < 10; ++i) {
    OpenInterface();
    ASSERT_GC_OK(Gc().IFClose(m_hInterface));
    m_hInterface = nullptr;
  }
}

TEST_F(InterfaceOpening, TwoBoardsStandSideBySide) {
  Script().SetBoard(GRB_BOARD_2, "Name=Other\nModel=Plain\n");
  Script().SetCamera(GRB_BOARD_2, GRB_CHANNEL_1, CCamera().Model("Eye"));
  const IF_HANDLE first = OpenInterface();
  IF_HANDLE second = nullptr;
  ASSERT_GC_OK(Gc().TLOpenInterface(m_hSystem, "Plain-#2", &second));
  EXPECT_NE(first, second);
  ASSERT_GC_OK(Gc().IFUpdateDeviceList(first, nullptr, 0));
  ASSERT_GC_OK(Gc().IFUpdateDeviceList(second, nullptr, 0));
  // Device ids are unique within one Interface only.
  EXPECT_EQ("Channel #1", DeviceId(first, 0).Text());
  EXPECT_EQ("Channel #1", DeviceId(second, 0).Text());
  EXPECT_EQ("Testcam 1", DeviceInfo(first, "Channel #1", DEVICE_INFO_MODEL).Text());
  EXPECT_EQ("Eye", DeviceInfo(second, "Channel #1", DEVICE_INFO_MODEL).Text());
  EXPECT_EQ("", ReadText(second, 0x508, 32));
  EXPECT_GC_OK(Gc().IFClose(second));
  EXPECT_EQ("Channel #1", DeviceId(first, 0).Text());
}

// Catches an Interface that looks its record up in the list, which has a new one by then.
TEST_F(InterfaceOpening, OpenInterfaceKeepsItsRecord) {
  OpenInterface();
  Script().SetBoard(GRB_BOARD_1, "Name=Renamed\nModel=GL-CXP4\n");
  bool8_t changed = true;
  ASSERT_GC_OK(Gc().TLUpdateInterfaceList(m_hSystem, &changed, 0));
  EXPECT_FALSE(changed) << "the id is the same";
  EXPECT_EQ("Renamed GL-CXP4 #1", InterfaceInfo(m_hSystem, "GL-CXP4-#1", INTERFACE_INFO_DISPLAYNAME).Text());
  EXPECT_EQ("Grabline GL-CXP4 #1", IfInfo(m_hInterface, INTERFACE_INFO_DISPLAYNAME).Text());
  EXPECT_EQ("Grabline GL-CXP4 #1", ReadText(m_hInterface, 0x100, 256));
}

TEST_F(InterfaceOpening, VanishedBoardStaysOpenAndCanBeClosed) {
  OpenInterface();
  Script().RemoveAllBoards();
  bool8_t changed = false;
  EXPECT_GC_OK(Gc().TLUpdateInterfaceList(m_hSystem, &changed, 0));
  EXPECT_TRUE(changed);
  EXPECT_EQ("GL-CXP4-#1", IfInfo(m_hInterface, INTERFACE_INFO_ID).Text());
  EXPECT_EQ("GL-CXP4-#1", ReadText(m_hInterface, 0x0, 256));
  EXPECT_GC_OK(Gc().IFUpdateDeviceList(m_hInterface, nullptr, 0));
  EXPECT_GC_OK(Gc().IFClose(m_hInterface));
  m_hInterface = nullptr;
  IF_HANDLE iface = nullptr;
  EXPECT_GC(GC_ERR_INVALID_PARAMETER, "Invalid Child's name: GL-CXP4-#1",
            Gc().TLOpenInterface(m_hSystem, "GL-CXP4-#1", &iface));
}

TEST_F(InterfaceOpening, ReturnedBoardIsStillOpen) {
  OpenInterface();
  Script().RemoveAllBoards();
  ASSERT_GC_OK(Gc().TLUpdateInterfaceList(m_hSystem, nullptr, 0));
  Script().SetBoard(GRB_BOARD_1);
  ASSERT_GC_OK(Gc().TLUpdateInterfaceList(m_hSystem, nullptr, 0));
  IF_HANDLE iface = nullptr;
  EXPECT_GC(GC_ERR_RESOURCE_IN_USE, "Interface 'GL-CXP4-#1' is already opened.",
            Gc().TLOpenInterface(m_hSystem, "GL-CXP4-#1", &iface));
}

// What is not known is not looked for among what is open: the id is refused, not the second opening.
TEST_F(InterfaceOpening, VanishedBoardIsUnknownWhileItIsOpen) {
  OpenInterface();
  Script().RemoveAllBoards();
  ASSERT_GC_OK(Gc().TLUpdateInterfaceList(m_hSystem, nullptr, 0));
  IF_HANDLE iface = this;
  EXPECT_GC(GC_ERR_INVALID_PARAMETER, "Invalid Child's name: GL-CXP4-#1",
            Gc().TLOpenInterface(m_hSystem, "GL-CXP4-#1", &iface));
  EXPECT_EQ(this, iface);
  EXPECT_EQ("GL-CXP4-#1", IfInfo(m_hInterface, INTERFACE_INFO_ID).Text());
}

TEST_F(InterfaceOpening, CloseClosesDeviceAndStream) {
  OpenStream();
  const IF_HANDLE iface = m_hInterface;
  EXPECT_GC_OK(Gc().IFClose(iface));
  m_hInterface = m_hDevice = m_hStream = nullptr;
  EXPECT_EQ(0U, Script().CreatedHandles());
  OpenStream();
}

// ---------------------------------------------------------------------------------------------------------------------
// Info
// ---------------------------------------------------------------------------------------------------------------------

TEST_F(InterfaceTest, Information) {
  const struct {
    INTERFACE_INFO_CMD command;
    const char *text;
  } rows[] = {{INTERFACE_INFO_ID, "GL-CXP4-#1"},
              {INTERFACE_INFO_DISPLAYNAME, "Grabline GL-CXP4 #1"},
              {INTERFACE_INFO_TLTYPE, "CXP"}};
  for (const auto &row : rows) {
    const Info info = IfInfo(m_hInterface, row.command);
    EXPECT_EQ(INFO_DATATYPE_STRING, info.type);
    EXPECT_EQ(row.text, info.Text());
  }
  INFO_DATATYPE type = -77;
  size_t size = 0;
  EXPECT_GC(GC_ERR_INVALID_PARAMETER, "Invalid INTERFACE_INFO_CMD 0x00000003",
            Gc().IFGetInfo(m_hInterface, 3, &type, nullptr, &size));
  EXPECT_EQ(-77, type);
}

struct PortTextRow {
  PORT_INFO_CMD command;
  const char *text;
};
struct PortFlagRow {
  PORT_INFO_CMD command;
  bool value;
};

constexpr PortTextRow kPortTexts[] = {
    {PORT_INFO_ID, "GL-CXP4-#1"},
    {PORT_INFO_VENDOR, "Lumivex"},
    {PORT_INFO_MODEL, "Lumivex Transport Layer"},
    {PORT_INFO_TLTYPE, "CXP"},
    {PORT_INFO_MODULE, "TLInterface"},
    {PORT_INFO_VERSION, kVersion},
    {PORT_INFO_PORTNAME, "InterfacePort"},
};
constexpr PortFlagRow kPortFlags[] = {
    {PORT_INFO_LITTLE_ENDIAN, true}, {PORT_INFO_BIG_ENDIAN, false}, {PORT_INFO_ACCESS_READ, true},
    {PORT_INFO_ACCESS_WRITE, true},  {PORT_INFO_ACCESS_NA, false},  {PORT_INFO_ACCESS_NI, false},
};

class InterfacePortText : public InterfaceTest, public testing::WithParamInterface<PortTextRow> {};

TEST_P(InterfacePortText, IsAnswered) {
  const Info info = PortInfo(m_hInterface, GetParam().command);
  EXPECT_EQ(INFO_DATATYPE_STRING, info.type);
  EXPECT_EQ(GetParam().text, info.Text());
}

INSTANTIATE_TEST_SUITE_P(Commands, InterfacePortText, testing::ValuesIn(kPortTexts),
                         [](const testing::TestParamInfo<PortTextRow> &row) {
                           return "Command" + std::to_string(row.param.command);
                         });

class InterfacePortFlag : public InterfaceTest, public testing::WithParamInterface<PortFlagRow> {};

TEST_P(InterfacePortFlag, IsAnswered) {
  const Info info = PortInfo(m_hInterface, GetParam().command);
  EXPECT_EQ(INFO_DATATYPE_BOOL8, info.type);
  EXPECT_EQ(GetParam().value ? 1 : 0, info.As<uint8_t>());
}

INSTANTIATE_TEST_SUITE_P(Commands, InterfacePortFlag, testing::ValuesIn(kPortFlags),
                         [](const testing::TestParamInfo<PortFlagRow> &row) {
                           return "Command" + std::to_string(row.param.command);
                         });

TEST_F(InterfaceTest, OtherPortCommandsAreRefused) {
  for (const PORT_INFO_CMD command : {-1, 13, 1000}) {
    INFO_DATATYPE type = -77;
    size_t size = 77;
    EXPECT_GC(GC_ERR_INVALID_PARAMETER, "Invalid Port Info Command " + std::to_string(command),
              Gc().GCGetPortInfo(m_hInterface, command, &type, nullptr, &size));
    EXPECT_EQ(-77, type);
    EXPECT_EQ(77U, size);
  }
}

TEST_F(InterfaceTest, OtherUrlCommandsAreRefusedInDecimal) {
  INFO_DATATYPE type = -77;
  size_t size = 0;
  for (const URL_INFO_CMD command : {-1, 6, 10, 1000}) {
    EXPECT_GC(GC_ERR_INVALID_PARAMETER, "Invalid URL Info Command " + std::to_string(command),
              Gc().GCGetPortURLInfo(m_hInterface, 0, command, &type, nullptr, &size));
  }
}

// ---------------------------------------------------------------------------------------------------------------------
// Registers
// ---------------------------------------------------------------------------------------------------------------------

struct RegisterRow {
  const char *name;
  uint64_t address;
  size_t length;
  bool writable;
  const char *text;  ///< as it stands behind the opening; null: a word of 0
};
std::ostream &operator<<(std::ostream &out, const RegisterRow &row) { return out << row.name; }

constexpr RegisterRow kRegisters[] = {
    {"InterfaceID", 0x000, 256, false, "GL-CXP4-#1"},
    {"InterfaceDisplayName", 0x100, 256, false, "Grabline GL-CXP4 #1"},
    {"r_UpdateDeviceList", 0x280, 4, true, nullptr},
    {"DeviceID", 0x380, 256, false, kNone},
    {"DeviceCount", 0x480, 4, false, nullptr},
    {"r_DeviceSelector", 0x484, 4, true, nullptr},
    {"DeviceVendorName", 0x488, 64, false, kNone},
    {"DeviceModelName", 0x4C8, 64, false, kNone},
    {"DeviceType", 0x508, 32, false, "CXP"},
    {"DeviceDisplayName", 0x52C, 256, false, kNone},
    {"DeviceAccessStatusReg", 0x62C, 4, false, nullptr},
};

class InterfaceRegister : public InterfaceTest, public testing::WithParamInterface<RegisterRow> {
 protected:
  void ExpectInitial() {
    const RegisterRow &row = GetParam();
    if (row.text == nullptr) {
      EXPECT_EQ(0U, ReadU32(m_hInterface, row.address));
      return;
    }
    const std::vector<uint8_t> bytes = ReadBytes(m_hInterface, row.address, row.length);
    std::string expected = row.text;
    expected.resize(row.length, '\0');
    EXPECT_EQ(expected, std::string(bytes.begin(), bytes.end()));
  }
};

TEST_P(InterfaceRegister, HasItsInitialValue) { ExpectInitial(); }

TEST_P(InterfaceRegister, IsWritableOrNot) {
  if (GetParam().writable) {
    ASSERT_TRUE(Update());
    EXPECT_EQ(GC_ERR_SUCCESS, WriteU32(m_hInterface, GetParam().address, 1));
    return;
  }
  for (uint64_t at = GetParam().address; at < GetParam().address + GetParam().length; at += 4) {
    char message[64] = {};
    std::snprintf(message, sizeof(message), "Register %llX is not writable.", static_cast<unsigned long long>(at));
    ASSERT_GC(GC_ERR_ERROR, message, WriteU32(m_hInterface, at, 0xFFFFFFFF));
  }
  ExpectInitial();
}

INSTANTIATE_TEST_SUITE_P(Registers, InterfaceRegister, testing::ValuesIn(kRegisters),
                         [](const testing::TestParamInfo<RegisterRow> &row) { return std::string(row.param.name); });

TEST_F(InterfaceTest, NothingElseIsInTheMap) {
  for (uint64_t at = 0; at < 0x700; at += 4) {
    bool named = false;
    for (const RegisterRow &row : kRegisters) {
      named = named || (at >= row.address && at < row.address + row.length);
    }
    if (!named) {
      char message[80] = {};
      std::snprintf(message, sizeof(message), "Register %llX is not available (does not exist).",
                    static_cast<unsigned long long>(at));
      uint32_t word = 0;
      ASSERT_GC(GC_ERR_ERROR, message, TryRead(m_hInterface, at, &word, 4));
      ASSERT_GC(GC_ERR_ERROR, message, WriteU32(m_hInterface, at, 0));
    }
  }
}

TEST_F(InterfaceTest, SelectionShowsTheDevice) {
  EXPECT_EQ(kNothingSelected, Selected());
  Update();
  EXPECT_EQ(kFirst, Selected());
  EXPECT_EQ(GC_ERR_SUCCESS, WriteU32(m_hInterface, 0x484, 1));
  EXPECT_EQ(kSecond, Selected());
  EXPECT_EQ("CXP", ReadText(m_hInterface, 0x508, 32)) << "selection does not change the type";
  EXPECT_EQ(GC_ERR_SUCCESS, WriteU32(m_hInterface, 0x484, 0));
  EXPECT_EQ(kFirst, Selected());
  Update();
  EXPECT_EQ(0U, ReadU32(m_hInterface, 0x484));
}

TEST_F(InterfaceTest, UpdateSelectsTheFirstDevice) {
  Update();
  ASSERT_EQ(GC_ERR_SUCCESS, WriteU32(m_hInterface, 0x484, 1));
  Update();
  EXPECT_EQ(0U, ReadU32(m_hInterface, 0x484));
  EXPECT_EQ(kFirst, Selected());
}

TEST_F(InterfaceTest, SelectorBeyondTheListFailsWithItsValueStored) {
  Script().RemoveCamera(GRB_BOARD_1, GRB_CHANNEL_2);
  Update();
  EXPECT_GC(GC_ERR_INVALID_PARAMETER, "Child #1 does not exist.", WriteU32(m_hInterface, 0x484, 1));
  EXPECT_EQ(1U, ReadU32(m_hInterface, 0x484));
  EXPECT_EQ(kFirst, Selected());
}

TEST_F(InterfaceTest, SelectorOfAnEmptyListFails) {
  EXPECT_GC(GC_ERR_INVALID_PARAMETER, "Child #0 does not exist.", WriteU32(m_hInterface, 0x484, 0));
  EXPECT_EQ(kNothingSelected, Selected());
}

TEST_F(InterfaceTest, ShorterNamesEndWhereTheyEnd) {
  Script().SetCamera(GRB_BOARD_1, GRB_CHANNEL_2, CCamera().Vendor("V").Model("M"));
  Update();
  ASSERT_EQ(GC_ERR_SUCCESS, WriteU32(m_hInterface, 0x484, 1));
  EXPECT_EQ((Selection{"Channel #2", "V", "M", "V M(Channel #2)", 1}), Selected());
}

// The register keeps the tail of a longer text behind the end of a shorter one.
TEST_F(InterfaceTest, TailOfTheLongerTextStaysInTheRegister) {
  Update();
  const std::vector<uint8_t> bytes = ReadBytes(m_hInterface, 0x380, 256);
  std::string expected = std::string("Channel #1\0\0", 12) + "lected";
  expected.resize(256, '\0');
  EXPECT_EQ(expected, std::string(bytes.begin(), bytes.end()));
}

// The callback runs behind each word: a later word that is refused takes nothing back.
TEST_F(InterfaceTest, SelectionStandsWhenTheNextWordIsRefused) {
  Update();
  EXPECT_GC(GC_ERR_ERROR, "Register 488 is not writable.", WriteBytes(m_hInterface, 0x484, {1, 0, 0, 0, 'X', 0, 0, 0}));
  EXPECT_EQ(kSecond, Selected());
  EXPECT_GC(GC_ERR_ERROR, "Register 480 is not writable.", WriteBytes(m_hInterface, 0x480, {9, 0, 0, 0, 0, 0, 0, 0}));
  EXPECT_EQ(1U, ReadU32(m_hInterface, 0x484));
  EXPECT_EQ(kSecond, Selected());
}

// ---------------------------------------------------------------------------------------------------------------------
// The list
// ---------------------------------------------------------------------------------------------------------------------

TEST_F(InterfaceTest, ListIsEmptyUntilAnUpdate) {
  const size_t mark = Script().Mark();
  EXPECT_EQ(0U, CountDevices());
  EXPECT_EQ(0U, ReadU32(m_hInterface, 0x480));
  size_t size = 0;
  INFO_DATATYPE type = 0;
  EXPECT_GC(GC_ERR_INVALID_PARAMETER, "Child #0 does not exist.", Gc().IFGetDeviceID(m_hInterface, 0, nullptr, &size));
  EXPECT_GC(GC_ERR_INVALID_PARAMETER, "Invalid Child's name: Channel #1",
            Gc().IFGetDeviceInfo(m_hInterface, "Channel #1", DEVICE_INFO_ID, &type, nullptr, &size));
  EXPECT_EQ(0U, Script().Calls(mark).size());
}

TEST_F(InterfaceTest, FirstUpdateReportsAChangeAndLaterOnesNone) {
  EXPECT_TRUE(Update());
  EXPECT_EQ((Names{"Channel #1", "Channel #2"}), Ids());
  EXPECT_EQ(2U, ReadU32(m_hInterface, 0x480));
  EXPECT_FALSE(Update());
  EXPECT_FALSE(Update(GENTL_INFINITE));
}

TEST_F(InterfaceTest, NoCameras) {
  Script().RemoveCamera(GRB_BOARD_1, GRB_CHANNEL_1);
  Script().RemoveCamera(GRB_BOARD_1, GRB_CHANNEL_2);
  EXPECT_FALSE(Update());
  EXPECT_EQ(0U, CountDevices());
  EXPECT_EQ(0U, ReadU32(m_hInterface, 0x480));
  EXPECT_EQ(kNothingSelected, Selected());
}

TEST_F(InterfaceTest, LastSelectionStaysWhenAllCamerasGo) {
  Update();
  Script().RemoveCamera(GRB_BOARD_1, GRB_CHANNEL_1);
  Script().RemoveCamera(GRB_BOARD_1, GRB_CHANNEL_2);
  EXPECT_TRUE(Update());
  EXPECT_EQ(0U, ReadU32(m_hInterface, 0x480));
  EXPECT_EQ(kFirst, Selected());
}

// Catches a selector that is reset though the list is empty.
TEST_F(InterfaceTest, SelectorStaysWhenAllCamerasGo) {
  Update();
  ASSERT_EQ(GC_ERR_SUCCESS, WriteU32(m_hInterface, 0x484, 1));
  Script().RemoveCamera(GRB_BOARD_1, GRB_CHANNEL_1);
  Script().RemoveCamera(GRB_BOARD_1, GRB_CHANNEL_2);
  EXPECT_TRUE(Update());
  EXPECT_EQ(0U, ReadU32(m_hInterface, 0x480));
  EXPECT_EQ(1U, ReadU32(m_hInterface, 0x484));
  EXPECT_EQ(kSecond, Selected());
}

// Catches a list that counts as found only when something was found: each opening would search the hardware anew.
TEST_F(InterfaceTest, EmptyListIsFoundOnceToo) {
  Script().RemoveCamera(GRB_BOARD_1, GRB_CHANNEL_1);
  Script().RemoveCamera(GRB_BOARD_1, GRB_CHANNEL_2);
  EXPECT_FALSE(Update());
  const size_t mark = Script().Mark();
  DEV_HANDLE device = nullptr;
  EXPECT_GC(GC_ERR_INVALID_PARAMETER, "Invalid Child's name: Channel #1",
            Gc().IFOpenDevice(m_hInterface, "Channel #1", DEVICE_ACCESS_EXCLUSIVE, &device));
  EXPECT_EQ(0U, Script().Calls(mark).size());
  EXPECT_EQ(nullptr, device);
}

TEST_F(InterfaceTest, OpeningThatFailsHasFoundTheListAllTheSame) {
  size_t mark = Script().Mark();
  DEV_HANDLE device = nullptr;
  const auto open = [&] { return Gc().IFOpenDevice(m_hInterface, "Channel #3", DEVICE_ACCESS_EXCLUSIVE, &device); };
  EXPECT_GC(GC_ERR_INVALID_PARAMETER, "Invalid Child's name: Channel #3", open());
  EXPECT_GT(Script().Calls(mark).size(), 0U);
  EXPECT_EQ(2U, CountDevices());
  mark = Script().Mark();
  EXPECT_GC(GC_ERR_INVALID_PARAMETER, "Invalid Child's name: Channel #3", open());
  EXPECT_EQ(0U, Script().Calls(mark).size());
}

TEST_F(InterfaceTest, BadPointersAreRefusedAheadOfTheFirstDiscovery) {
  const size_t mark = Script().Mark();
  DEV_HANDLE device = nullptr;
  EXPECT_GC(GC_ERR_INVALID_PARAMETER, "Null pointer for Device name.",
            Gc().IFOpenDevice(m_hInterface, nullptr, DEVICE_ACCESS_EXCLUSIVE, &device));
  EXPECT_GC(GC_ERR_INVALID_PARAMETER, "Null DEV_HANDLE pointer.",
            Gc().IFOpenDevice(m_hInterface, "Channel #1", DEVICE_ACCESS_EXCLUSIVE, nullptr));
  EXPECT_EQ(0U, Script().Calls(mark).size());
  EXPECT_EQ(0U, CountDevices());
}

TEST_F(InterfaceTest, NewCamerasStandBehindTheKnown) {
  Script().RemoveCamera(GRB_BOARD_1, GRB_CHANNEL_1);
  Update();
  EXPECT_EQ((Names{"Channel #2"}), Ids());
  Script().SetCamera(GRB_BOARD_1, GRB_CHANNEL_1, CCamera());
  Script().SetCamera(GRB_BOARD_1, GRB_CHANNEL_5, CCamera());
  EXPECT_TRUE(Update());
  EXPECT_EQ((Names{"Channel #2", "Channel #1", "Channel #5"}), Ids());
  EXPECT_FALSE(Update());
  EXPECT_EQ((Names{"Channel #1", "Channel #2", "Channel #5"}), Ids());
}

TEST_F(InterfaceTest, NewRecordTakesThePlaceOfTheOld) {
  Update();
  Script().SetCamera(GRB_BOARD_1, GRB_CHANNEL_1, CCamera().Model("Other"));
  EXPECT_FALSE(Update()) << "the id is the same";
  EXPECT_EQ("Other", DeviceInfo(m_hInterface, "Channel #1", DEVICE_INFO_MODEL).Text());
  EXPECT_EQ("Other", Selected().model);
}

TEST_F(InterfaceTest, CommandUpdatesWithAnyValue) {
  for (const uint32_t value : {1U, 0U, 77U}) {
    const size_t mark = Script().Mark();
    EXPECT_EQ(GC_ERR_SUCCESS, WriteU32(m_hInterface, 0x280, value));
    EXPECT_GT(Script().Count(Match(Op::Open), mark), 0U);
    EXPECT_EQ(value, ReadU32(m_hInterface, 0x280));
  }
  EXPECT_EQ(2U, CountDevices());
  EXPECT_EQ(kFirst, Selected());
}

TEST_F(InterfaceTest, ReadingRegistersRunsNoDiscovery) {
  const size_t mark = Script().Mark();
  ReadU32(m_hInterface, 0x480);
  ReadU32(m_hInterface, 0x280);
  ReadU32(m_hInterface, 0x484);
  EXPECT_EQ(0U, Script().Calls(mark).size());
}

TEST_F(InterfaceTest, FirstOpeningOfADeviceUpdates) {
  OpenDevice();
  EXPECT_EQ(2U, CountDevices());
  EXPECT_EQ(2U, ReadU32(m_hInterface, 0x480));
  EXPECT_EQ(kFirst, Selected());
}

TEST_F(InterfaceTest, IndexAtTheEndDoesNotExist) {
  Update();
  size_t size = 0;
  EXPECT_GC(GC_ERR_INVALID_PARAMETER, "Child #2 does not exist.", Gc().IFGetDeviceID(m_hInterface, 2, nullptr, &size));
}

TEST_F(InterfaceTest, SystemUpdateLeavesTheDevicesAlone) {
  Update();
  ASSERT_GC_OK(Gc().TLUpdateInterfaceList(m_hSystem, nullptr, 0));
  EXPECT_EQ(2U, CountDevices());
}

// Close sets the count to 0 and forgets the devices; a new opening begins anew.
TEST_F(InterfaceTest, ReopenedInterfaceBeginsAnew) {
  Update();
  ASSERT_GC_OK(Gc().IFClose(m_hInterface));
  m_hInterface = nullptr;
  OpenInterface();
  EXPECT_EQ(0U, CountDevices());
  EXPECT_EQ(kNothingSelected, Selected());
  EXPECT_TRUE(Update());
}

// Catches a flag that only IFUpdateDeviceList sets: the opening would search all channels once more.
TEST_F(InterfaceTest, UpdateByTheRegisterCountsAsTheFirst) {
  ASSERT_EQ(GC_ERR_SUCCESS, WriteU32(m_hInterface, 0x280, 1));
  const size_t mark = Script().Mark();
  OpenDevice(DEVICE_ACCESS_READONLY);
  EXPECT_EQ(1U, Script().Count(Match(Op::Create), mark));
}

// Catches a lock of the lists that is held across the search of the hardware, which can take seconds.
TEST_F(InterfaceTest, ListsAreAnsweredWhileADiscoveryRuns) {
  Update();
  const auto ask = [this] {
    return CountDevices() == 2 && DeviceId(m_hInterface, 0).Text() == "Channel #1" &&
           InterfaceId(m_hSystem, 0).Text() == "GL-CXP4-#1";
  };
  // Kept outside: one that is held up ends behind the discovery.
  std::vector<std::future<bool>> answers;
  const auto askMeanwhile = [&](const Call &) {
    answers.push_back(std::async(std::launch::async, ask));
    EXPECT_EQ(std::future_status::ready, answers.back().wait_for(kBound));
  };
  Script().On(Match(Op::Open).Channel(GRB_CHANNEL_2).Mode(GRB_MODE_CONTROL), Reply::Pass().Do(askMeanwhile));
  Update();
  Script().On(Match(Op::Open).Board(GRB_BOARD_3).Mode(GRB_MODE_ENUMERATE), Reply::Pass().Do(askMeanwhile));
  EXPECT_GC_OK(Gc().TLUpdateInterfaceList(m_hSystem, nullptr, 0));
  EXPECT_EQ(2U, answers.size());
  for (std::future<bool> &answer : answers) {
    EXPECT_TRUE(answer.get());
  }
}

// ---------------------------------------------------------------------------------------------------------------------
// Device information
// ---------------------------------------------------------------------------------------------------------------------

struct DeviceRow {
  DEVICE_INFO_CMD command;
  const char *text;
};

constexpr DeviceRow kDeviceTexts[] = {
    {DEVICE_INFO_ID, "Channel #2"}, {DEVICE_INFO_VENDOR, "Lumivex Optics"}, {DEVICE_INFO_MODEL, "Testcam 2"},
    {DEVICE_INFO_TLTYPE, "CXP"},    {DEVICE_INFO_DISPLAYNAME, kDisplay2},
};

class InterfaceDeviceText : public InterfaceTest, public testing::WithParamInterface<DeviceRow> {};

TEST_P(InterfaceDeviceText, IsAnsweredForADeviceThatIsNotOpen) {
  Update();
  const size_t mark = Script().Mark();
  const Info info = DeviceInfo(m_hInterface, "Channel #2", GetParam().command);
  EXPECT_EQ(INFO_DATATYPE_STRING, info.type);
  EXPECT_EQ(GetParam().text, info.Text());
  EXPECT_EQ(0U, Script().Calls(mark).size());
}

INSTANTIATE_TEST_SUITE_P(Commands, InterfaceDeviceText, testing::ValuesIn(kDeviceTexts),
                         [](const testing::TestParamInfo<DeviceRow> &row) {
                           return "Command" + std::to_string(row.param.command);
                         });

TEST_F(InterfaceTest, AccessStatusIsAnInt32) {
  Update();
  const Info info = DeviceInfo(m_hInterface, "Channel #1", DEVICE_INFO_ACCESS_STATUS);
  EXPECT_EQ(INFO_DATATYPE_INT32, info.type);
  EXPECT_EQ(DEVICE_ACCESS_STATUS_READWRITE, info.As<int32_t>());
}

TEST_F(InterfaceTest, OtherDeviceCommandsAreRefused) {
  Update();
  INFO_DATATYPE type = -77;
  size_t size = 0;
  EXPECT_GC(GC_ERR_INVALID_PARAMETER, "Unknown DEVICE_INFO_CMD 0x00000006.",
            Gc().IFGetDeviceInfo(m_hInterface, "Channel #1", 6, &type, nullptr, &size));
  EXPECT_GC(GC_ERR_INVALID_PARAMETER, "Unknown DEVICE_INFO_CMD 0xFFFFFFFF.",
            Gc().IFGetDeviceInfo(m_hInterface, "Channel #1", -1, &type, nullptr, &size));
  EXPECT_EQ(-77, type);
}

TEST_F(InterfaceTest, ChannelHeldElsewhereIsNoAccess) {
  Script().SetHeldElsewhere(GRB_BOARD_1, GRB_CHANNEL_1, true);
  Update();
  EXPECT_EQ(DEVICE_ACCESS_STATUS_NOACCESS, Status("Channel #1"));
  EXPECT_EQ(DEVICE_ACCESS_STATUS_READWRITE, Status("Channel #2"));
  EXPECT_EQ(3U, Selected().status);
  Script().SetHeldElsewhere(GRB_BOARD_1, GRB_CHANNEL_1, false);
  EXPECT_FALSE(Update());
  EXPECT_EQ(DEVICE_ACCESS_STATUS_READWRITE, Status("Channel #1"));
}

TEST_F(InterfaceTest, OwnOpenDeviceShowsAsNoAccessInALaterUpdate) {
  OpenDevice(DEVICE_ACCESS_EXCLUSIVE, "Channel #1");
  EXPECT_EQ(DEVICE_ACCESS_STATUS_READWRITE, Status("Channel #1")) << "as enumeration found it";
  EXPECT_FALSE(Update());
  EXPECT_EQ(DEVICE_ACCESS_STATUS_NOACCESS, Status("Channel #1"));
  ASSERT_GC_OK(Gc().DevClose(m_hDevice));
  m_hDevice = nullptr;
  Update();
  EXPECT_EQ(DEVICE_ACCESS_STATUS_READWRITE, Status("Channel #1"));
}

TEST_F(InterfaceTest, VanishedDeviceStaysOpen) {
  OpenDevice();
  Script().RemoveCamera(GRB_BOARD_1, GRB_CHANNEL_1);
  EXPECT_TRUE(Update());
  EXPECT_EQ((Names{"Channel #2"}), Ids());
  EXPECT_EQ("Testcam 1", DevInfo(m_hDevice, DEVICE_INFO_MODEL).Text());
  EXPECT_GC_OK(Gc().DevClose(m_hDevice));
  m_hDevice = nullptr;
}

// What is not known is not looked for among what is open: the id is refused, not the second opening.
TEST_F(InterfaceTest, VanishedDeviceIsUnknownWhileItIsOpen) {
  OpenDevice();
  Script().RemoveCamera(GRB_BOARD_1, GRB_CHANNEL_1);
  EXPECT_TRUE(Update());
  DEV_HANDLE device = this;
  EXPECT_GC(GC_ERR_INVALID_PARAMETER, "Invalid Child's name: Channel #1",
            Gc().IFOpenDevice(m_hInterface, "Channel #1", DEVICE_ACCESS_READONLY, &device));
  EXPECT_EQ(this, device);
  // Back again, it is still open, and listed behind the one that stayed.
  Script().SetCamera(GRB_BOARD_1, GRB_CHANNEL_1, CCamera());
  EXPECT_TRUE(Update());
  EXPECT_EQ((Names{"Channel #2", "Channel #1"}), Ids());
  EXPECT_GC(GC_ERR_RESOURCE_IN_USE, "Device (Channel #1) is already open.",
            Gc().IFOpenDevice(m_hInterface, "Channel #1", DEVICE_ACCESS_READONLY, &device));
}

// ---------------------------------------------------------------------------------------------------------------------
// Flags of IFOpenDevice
// ---------------------------------------------------------------------------------------------------------------------

struct FlagRow {
  DEVICE_ACCESS_FLAGS flags;
  bool passes;
};

class OpenFlags : public InterfaceTest, public testing::WithParamInterface<FlagRow> {};

TEST_P(OpenFlags, AreCheckedAsASignedNumber) {
  DEV_HANDLE device = nullptr;
  if (GetParam().passes) {
    EXPECT_GC_OK(Gc().IFOpenDevice(m_hInterface, "Channel #1", GetParam().flags, &device));
    EXPECT_NE(nullptr, device);
  } else {
    const size_t mark = Script().Mark();
    EXPECT_GC(GC_ERR_INVALID_PARAMETER, "Invalid DEVICE_ACCESS_FLAGS.",
              Gc().IFOpenDevice(m_hInterface, "Channel #1", GetParam().flags, &device));
    EXPECT_EQ(nullptr, device);
    EXPECT_EQ(0U, Script().Calls(mark).size());
  }
}

constexpr FlagRow kFlags[] = {{-2147483647 - 1, false},
                              {-1, false},
                              {0, false},
                              {1, false},
                              {2, true},
                              {3, true},
                              {4, true},
                              {5, false},
                              {999, false},
                              {1000, true},
                              {1001, true},
                              {0x7FFFFFFF, true}};

INSTANTIATE_TEST_SUITE_P(Values, OpenFlags, testing::ValuesIn(kFlags));

}  // namespace
