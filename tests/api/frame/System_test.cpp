// SPDX-License-Identifier: MIT
/// @file
/// The System module: info answers, registers, interface list.
#include <cstdio>
#include <string>
#include <vector>

#include "Tree.h"

using namespace FrameTests;

namespace {

class SystemTest : public ProducerTest {
 protected:
  void SetUp() override {
    ProducerTest::SetUp();
    OpenSystem();
  }
  uint32_t CountInterfaces() {
    uint32_t count = 77;
    EXPECT_GC_OK(Gc().TLGetNumInterfaces(m_hSystem, &count));
    return count;
  }
  bool Update(uint64_t timeout = 100) {
    bool8_t changed = true;
    EXPECT_GC_OK(Gc().TLUpdateInterfaceList(m_hSystem, &changed, timeout));
    return changed;
  }
  std::vector<std::string> Ids() {
    std::vector<std::string> ids;
    const uint32_t count = CountInterfaces();
    for (uint32_t i = 0; i < count; ++i) {
      ids.push_back(InterfaceId(m_hSystem, i).Text());
    }
    return ids;
  }
  std::string SelectedId() { return ReadText(m_hSystem, 0x740, 256); }
};

using Names = std::vector<std::string>;

// ---------------------------------------------------------------------------------------------------------------------
// TLGetInfo
// ---------------------------------------------------------------------------------------------------------------------

struct TlRow {
  TL_INFO_CMD command;
  std::string (*text)();
};
std::ostream &operator<<(std::ostream &out, const TlRow &row) { return out << "command " << row.command; }

class TlInfoCommand : public SystemTest, public testing::WithParamInterface<TlRow> {};

TEST_P(TlInfoCommand, AnswersWithAText) {
  const Info info = TlInfo(m_hSystem, GetParam().command);
  EXPECT_EQ(GC_ERR_SUCCESS, info.result);
  EXPECT_EQ(INFO_DATATYPE_STRING, info.type);
  EXPECT_EQ(GetParam().text(), info.Text());
  EXPECT_EQ(GetParam().text().size() + 1, info.size);
}

const TlRow kTlRows[] = {
    {TL_INFO_ID, [] { return CProducer::FileName(); }},
    {TL_INFO_VENDOR, [] { return std::string("Lumivex"); }},
    {TL_INFO_MODEL, [] { return std::string("Lumivex Transport Layer"); }},
    {TL_INFO_VERSION, [] { return std::string(kVersion); }},
    {TL_INFO_TLTYPE, [] { return std::string("CXP"); }},
    {TL_INFO_NAME, [] { return CProducer::FileName(); }},
    {TL_INFO_PATHNAME, [] { return CProducer::Path(); }},
    {TL_INFO_DISPLAYNAME, [] { return std::string("Lumivex GenTL"); }},
};

INSTANTIATE_TEST_SUITE_P(Commands, TlInfoCommand, testing::ValuesIn(kTlRows));

TEST_F(SystemTest, OtherTlCommandsAreRefused) {
  for (const TL_INFO_CMD command : {-1, 8, 9, 10, 1000}) {
    INFO_DATATYPE type = -77;
    size_t size = 0;
    EXPECT_GC(GC_ERR_INVALID_PARAMETER, "Invalid cmd", Gc().TLGetInfo(m_hSystem, command, &type, nullptr, &size));
    EXPECT_EQ(-77, type);
  }
}

// ---------------------------------------------------------------------------------------------------------------------
// Port info
// ---------------------------------------------------------------------------------------------------------------------

struct PortTextRow {
  PORT_INFO_CMD command;
  const char *text;
};
struct PortFlagRow {
  PORT_INFO_CMD command;
  bool value;
};

constexpr PortTextRow kPortTexts[] = {
    {PORT_INFO_ID, "0"},
    {PORT_INFO_VENDOR, "Lumivex"},
    {PORT_INFO_MODEL, "Lumivex Transport Layer"},
    {PORT_INFO_TLTYPE, "CXP"},
    {PORT_INFO_MODULE, "TLSystem"},
    {PORT_INFO_VERSION, kVersion},
    {PORT_INFO_PORTNAME, "TLPort"},
};
constexpr PortFlagRow kPortFlags[] = {
    {PORT_INFO_LITTLE_ENDIAN, true}, {PORT_INFO_BIG_ENDIAN, false}, {PORT_INFO_ACCESS_READ, true},
    {PORT_INFO_ACCESS_WRITE, true},  {PORT_INFO_ACCESS_NA, false},  {PORT_INFO_ACCESS_NI, false},
};

class SystemPortText : public SystemTest, public testing::WithParamInterface<PortTextRow> {};

TEST_P(SystemPortText, IsAnswered) {
  const Info info = PortInfo(m_hSystem, GetParam().command);
  EXPECT_EQ(INFO_DATATYPE_STRING, info.type);
  EXPECT_EQ(GetParam().text, info.Text());
}

INSTANTIATE_TEST_SUITE_P(Commands, SystemPortText, testing::ValuesIn(kPortTexts),
                         [](const testing::TestParamInfo<PortTextRow> &row) {
                           return "Command" + std::to_string(row.param.command);
                         });

class SystemPortFlag : public SystemTest, public testing::WithParamInterface<PortFlagRow> {};

TEST_P(SystemPortFlag, IsAnswered) {
  const Info info = PortInfo(m_hSystem, GetParam().command);
  EXPECT_EQ(INFO_DATATYPE_BOOL8, info.type);
  EXPECT_EQ(GetParam().value ? 1 : 0, info.As<uint8_t>());
}

INSTANTIATE_TEST_SUITE_P(Commands, SystemPortFlag, testing::ValuesIn(kPortFlags),
                         [](const testing::TestParamInfo<PortFlagRow> &row) {
                           return "Command" + std::to_string(row.param.command);
                         });

TEST_F(SystemTest, OtherPortCommandsAreRefused) {
  for (const PORT_INFO_CMD command : {-1, 13, 1000}) {
    INFO_DATATYPE type = -77;
    size_t size = 77;
    EXPECT_GC(GC_ERR_INVALID_PARAMETER, "Invalid parameter",
              Gc().GCGetPortInfo(m_hSystem, command, &type, nullptr, &size));
    EXPECT_EQ(-77, type);
    EXPECT_EQ(77U, size);
  }
}

// ---------------------------------------------------------------------------------------------------------------------
// Registers
// ---------------------------------------------------------------------------------------------------------------------

enum class Kind { Word, Text };

struct RegisterRow {
  const char *name;
  uint64_t address;
  size_t length;
  bool writable;
  Kind kind;
  uint32_t word;          ///< as it stands behind TLOpen
  std::string (*text)();  ///< likewise
};
std::ostream &operator<<(std::ostream &out, const RegisterRow &row) { return out << row.name; }

std::string Empty() { return {}; }

const RegisterRow kRegisters[] = {
    {"InterfaceCount", 0x4, 4, false, Kind::Word, 0, Empty},
    {"r_InterfaceSelector", 0x8, 4, true, Kind::Word, 0, Empty},
    {"r_InterfaceUpdateList", 0x44, 4, true, Kind::Word, 0, Empty},
    {"TLVendorName", 0x48, 64, false, Kind::Text, 0, [] { return std::string("Lumivex"); }},
    {"TLModelName", 0x88, 64, false, Kind::Text, 0, [] { return std::string("Lumivex Transport Layer"); }},
    {"TLVersion", 0xC8, 16, false, Kind::Text, 0, [] { return std::string(kVersion); }},
    {"GenTLVersionMinor", 0xD8, 4, false, Kind::Word, 3, Empty},
    {"GenTLVersionMajor", 0xDC, 4, false, Kind::Word, 1, Empty},
    {"TLID", 0x100, 256, false, Kind::Text, 0, [] { return CProducer::FileName(); }},
    {"TLPath", 0x200, 1024, false, Kind::Text, 0, [] { return CProducer::Path(); }},
    // The second text took the place of the first one's first 64 bytes, its trailing blank included.
    {"TLDisplayName", 0x600, 256, false, Kind::Text, 0, [] { return std::string("Lumivex TL "); }},
    {"InterfaceID", 0x740, 256, false, Kind::Text, 0, Empty},
    {"unnamed", 0x840, 256, false, Kind::Text, 0, Empty},
};

class SystemRegister : public SystemTest, public testing::WithParamInterface<RegisterRow> {
 protected:
  void ExpectInitial() {
    const RegisterRow &row = GetParam();
    if (row.kind == Kind::Word) {
      EXPECT_EQ(row.word, ReadU32(m_hSystem, row.address));
      return;
    }
    const std::vector<uint8_t> bytes = ReadBytes(m_hSystem, row.address, row.length);
    std::string expected = row.text();
    expected.resize(row.length, '\0');
    EXPECT_EQ(expected, std::string(bytes.begin(), bytes.end()));
  }
};

TEST_P(SystemRegister, HasItsInitialValue) { ExpectInitial(); }

TEST_P(SystemRegister, EveryWordIsThere) {
  for (uint64_t at = GetParam().address; at < GetParam().address + GetParam().length; at += 4) {
    uint32_t word = 0;
    EXPECT_EQ(GC_ERR_SUCCESS, TryRead(m_hSystem, at, &word, 4)) << at;
  }
}

TEST_P(SystemRegister, IsWritableOrNot) {
  if (GetParam().writable) {
    EXPECT_EQ(GC_ERR_SUCCESS, WriteU32(m_hSystem, GetParam().address, 0));
    return;
  }
  for (uint64_t at = GetParam().address; at < GetParam().address + GetParam().length; at += 4) {
    char message[64] = {};
    std::snprintf(message, sizeof(message), "Register %llX is not writable.", static_cast<unsigned long long>(at));
    ASSERT_GC(GC_ERR_ERROR, message, WriteU32(m_hSystem, at, 0xFFFFFFFF));
  }
  ExpectInitial();
}

INSTANTIATE_TEST_SUITE_P(Registers, SystemRegister, testing::ValuesIn(kRegisters),
                         [](const testing::TestParamInfo<RegisterRow> &row) { return std::string(row.param.name); });

// Every word of the map that no row names is a hole.
TEST_F(SystemTest, NothingElseIsInTheMap) {
  for (uint64_t at = 0; at < 0x940; at += 4) {
    bool named = false;
    for (const RegisterRow &row : kRegisters) {
      named = named || (at >= row.address && at < row.address + row.length);
    }
    if (!named) {
      char message[80] = {};
      std::snprintf(message, sizeof(message), "Register %llX is not available (does not exist).",
                    static_cast<unsigned long long>(at));
      uint32_t word = 0;
      ASSERT_GC(GC_ERR_ERROR, message, TryRead(m_hSystem, at, &word, 4));
      ASSERT_GC(GC_ERR_ERROR, message, WriteU32(m_hSystem, at, 0));
    }
  }
}

TEST_F(SystemTest, DisplayNameOfRegisterAndAnswerDiffer) {
  EXPECT_EQ("Lumivex TL ", ReadText(m_hSystem, 0x600, 256));
  EXPECT_EQ("Lumivex GenTL", TlInfo(m_hSystem, TL_INFO_DISPLAYNAME).Text());
}

TEST_F(SystemTest, RegistersThatAreFixedStayFixed) {
  const auto before = ReadBytes(m_hSystem, 0x48, 0x98);
  Update();
  EXPECT_EQ(before, ReadBytes(m_hSystem, 0x48, 0x98));
  EXPECT_EQ("Lumivex TL ", ReadText(m_hSystem, 0x600, 256));
  EXPECT_EQ("", ReadText(m_hSystem, 0x840, 256));
}

// ---------------------------------------------------------------------------------------------------------------------
// The list
// ---------------------------------------------------------------------------------------------------------------------

TEST_F(SystemTest, FirstQueryOfTheCountFindsTheBoards) {
  EXPECT_EQ(0U, ReadU32(m_hSystem, 0x4));
  EXPECT_EQ(1U, CountInterfaces());
  EXPECT_EQ(1U, ReadU32(m_hSystem, 0x4));
  EXPECT_EQ(CScriptedGrb::kDefaultInterfaceId, SelectedId());
}

TEST_F(SystemTest, FirstQueryOfAnIdFindsTheBoards) {
  EXPECT_EQ(CScriptedGrb::kDefaultInterfaceId, InterfaceId(m_hSystem, 0).Text());
}

TEST_F(SystemTest, QueryOfTheInformationDoesNotFindTheBoards) {
  const size_t mark = Script().Mark();
  INFO_DATATYPE type = 0;
  size_t size = 0;
  EXPECT_GC(
      GC_ERR_INVALID_PARAMETER, std::string("Invalid Child's name: ") + CScriptedGrb::kDefaultInterfaceId,
      Gc().TLGetInterfaceInfo(m_hSystem, CScriptedGrb::kDefaultInterfaceId, INTERFACE_INFO_ID, &type, nullptr, &size));
  EXPECT_EQ(0U, Script().Calls(mark).size());
  CountInterfaces();
  EXPECT_EQ(CScriptedGrb::kDefaultInterfaceId,
            InterfaceInfo(m_hSystem, CScriptedGrb::kDefaultInterfaceId, INTERFACE_INFO_ID).Text());
}

TEST_F(SystemTest, LaterQueriesUseTheListAsItStands) {
  CountInterfaces();
  const size_t mark = Script().Mark();
  Script().SetBoard(GRB_BOARD_2);
  EXPECT_EQ(1U, CountInterfaces());
  EXPECT_EQ("GL-CXP4-#1", InterfaceId(m_hSystem, 0).Text());
  EXPECT_EQ(0U, Script().Calls(mark).size());
  EXPECT_TRUE(Update());
  EXPECT_EQ(2U, CountInterfaces());
}

TEST_F(SystemTest, NoBoards) {
  Script().RemoveAllBoards();
  EXPECT_EQ(0U, CountInterfaces());
  EXPECT_EQ(0U, ReadU32(m_hSystem, 0x4));
  EXPECT_EQ("", SelectedId());
  EXPECT_EQ(GC_ERR_SUCCESS, WriteU32(m_hSystem, 0x8, 0));
  EXPECT_EQ("", SelectedId());
  EXPECT_EQ(GC_ERR_SUCCESS, WriteU32(m_hSystem, 0x8, 5)) << "an empty list refuses no index";
  EXPECT_EQ(5U, ReadU32(m_hSystem, 0x8));
  EXPECT_FALSE(Update());
  EXPECT_EQ(5U, ReadU32(m_hSystem, 0x8)) << "with no board the selector is not touched";
  size_t size = 0;
  EXPECT_GC(GC_ERR_INVALID_PARAMETER, "Child #0 does not exist.", Gc().TLGetInterfaceID(m_hSystem, 0, nullptr, &size));
}

// A list that has been emptied is not one that was empty from the begin: 0x8 and 0x740 hold what they held.
TEST_F(SystemTest, LastSelectionStaysWhenAllBoardsGo) {
  Script().SetBoard(GRB_BOARD_2);
  Update();
  ASSERT_EQ(GC_ERR_SUCCESS, WriteU32(m_hSystem, 0x8, 1));
  Script().RemoveAllBoards();
  EXPECT_TRUE(Update());
  EXPECT_EQ(0U, ReadU32(m_hSystem, 0x4));
  EXPECT_EQ(1U, ReadU32(m_hSystem, 0x8));
  EXPECT_EQ("GL-CXP4-#2", SelectedId());
}

TEST_F(SystemTest, SelectorOfAnEmptiedListEmptiesTheId) {
  Script().SetBoard(GRB_BOARD_2);
  Update();
  ASSERT_EQ(GC_ERR_SUCCESS, WriteU32(m_hSystem, 0x8, 1));
  Script().RemoveAllBoards();
  Update();
  EXPECT_EQ(GC_ERR_SUCCESS, WriteU32(m_hSystem, 0x8, 9));
  EXPECT_EQ(9U, ReadU32(m_hSystem, 0x8));
  EXPECT_EQ("", SelectedId());
  const std::vector<uint8_t> bytes = ReadBytes(m_hSystem, 0x740, 12);
  EXPECT_EQ(std::string("\0\0\0\0XP4-#2\0\0", 12), std::string(bytes.begin(), bytes.end()))
      << "one word is written, the tail of the longer text stays";
}

// Catches a list that counts as found only when something was found: each query would search the hardware anew.
TEST_F(SystemTest, EmptyListIsFoundOnceToo) {
  Script().RemoveAllBoards();
  EXPECT_EQ(0U, CountInterfaces());
  const size_t mark = Script().Mark();
  EXPECT_EQ(0U, CountInterfaces());
  size_t size = 0;
  EXPECT_GC(GC_ERR_INVALID_PARAMETER, "Child #0 does not exist.", Gc().TLGetInterfaceID(m_hSystem, 0, nullptr, &size));
  IF_HANDLE iface = nullptr;
  EXPECT_GC(GC_ERR_INVALID_PARAMETER, "Invalid Child's name: GL-CXP4-#1",
            Gc().TLOpenInterface(m_hSystem, "GL-CXP4-#1", &iface));
  EXPECT_EQ(0U, Script().Calls(mark).size());
}

// With a list that has been found these calls reach no hardware in any case; here they would.
TEST_F(SystemTest, BadPointersAreRefusedAheadOfTheFirstDiscovery) {
  const size_t mark = Script().Mark();
  char text[8] = {};
  size_t zero = 0;
  size_t some = sizeof(text);
  INFO_DATATYPE type = -77;
  IF_HANDLE iface = nullptr;
  EXPECT_GC(GC_ERR_INVALID_PARAMETER, "Null pointer for number of interface.",
            Gc().TLGetNumInterfaces(m_hSystem, nullptr));
  EXPECT_GC(GC_ERR_INVALID_PARAMETER, "Null size pointer.", Gc().TLGetInterfaceID(m_hSystem, 0, text, nullptr));
  EXPECT_GC(GC_ERR_INVALID_PARAMETER, "Size of buffer cannot be null.",
            Gc().TLGetInterfaceID(m_hSystem, 0, text, &zero));
  EXPECT_GC(GC_ERR_INVALID_PARAMETER, "Null pointer for Interface name.",
            Gc().TLOpenInterface(m_hSystem, nullptr, &iface));
  EXPECT_GC(GC_ERR_INVALID_PARAMETER, "Null IF_HANDLE pointer.",
            Gc().TLOpenInterface(m_hSystem, CScriptedGrb::kDefaultInterfaceId, nullptr));
  EXPECT_GC(GC_ERR_INVALID_PARAMETER, "Null pointer for Interface name.",
            Gc().TLGetInterfaceInfo(m_hSystem, nullptr, INTERFACE_INFO_ID, &type, text, &some));
  EXPECT_GC(
      GC_ERR_INVALID_PARAMETER, "Null type pointer.",
      Gc().TLGetInterfaceInfo(m_hSystem, CScriptedGrb::kDefaultInterfaceId, INTERFACE_INFO_ID, nullptr, text, &some));
  EXPECT_EQ(0U, Script().Calls(mark).size());
  EXPECT_EQ(0U, ReadU32(m_hSystem, 0x4)) << "nothing has been found";
  EXPECT_EQ(nullptr, iface);
}

TEST_F(SystemTest, UnknownIdIsRefusedBehindTheFirstDiscovery) {
  const size_t mark = Script().Mark();
  IF_HANDLE iface = nullptr;
  EXPECT_GC(GC_ERR_INVALID_PARAMETER, "Invalid Child's name: nope", Gc().TLOpenInterface(m_hSystem, "nope", &iface));
  EXPECT_GT(Script().Calls(mark).size(), 0U);
  EXPECT_EQ(1U, ReadU32(m_hSystem, 0x4));
}

TEST_F(SystemTest, ChangeIsToldOnce) {
  EXPECT_TRUE(Update());
  EXPECT_FALSE(Update());
  Script().SetBoard(GRB_BOARD_3);
  EXPECT_TRUE(Update());
  EXPECT_FALSE(Update());
  Script().RemoveBoard(GRB_BOARD_1);
  EXPECT_TRUE(Update());
  EXPECT_FALSE(Update());
}

TEST_F(SystemTest, TimeoutOfAnUpdateIsIgnored) {
  for (const uint64_t timeout : std::initializer_list<uint64_t>{0, 500, GENTL_INFINITE}) {
    Update(timeout);
  }
  EXPECT_EQ(1U, CountInterfaces());
}

TEST_F(SystemTest, IndexAtTheEndDoesNotExist) {
  size_t size = 0;
  EXPECT_GC(GC_ERR_INVALID_PARAMETER, "Child #1 does not exist.", Gc().TLGetInterfaceID(m_hSystem, 1, nullptr, &size));
  EXPECT_GC(GC_ERR_INVALID_PARAMETER, "Child #-1 does not exist.",
            Gc().TLGetInterfaceID(m_hSystem, 0xFFFFFFFF, nullptr, &size));
}

TEST_F(SystemTest, NewBoardsStandBehindTheKnown) {
  Script().RemoveAllBoards();
  Script().SetBoard(GRB_BOARD_4, "Model=D\nName=N\n");
  EXPECT_EQ((Names{"D-#4"}), Ids());
  Script().SetBoard(GRB_BOARD_2, "Model=B\nName=N\n");
  Script().SetBoard(GRB_BOARD_7, "Model=G\nName=N\n");
  Update();
  EXPECT_EQ((Names{"D-#4", "B-#2", "G-#7"}), Ids());
  Update();
  EXPECT_EQ((Names{"B-#2", "D-#4", "G-#7"}), Ids()) << "known ones take the order of the discovery";
}

TEST_F(SystemTest, AllSevenBoards) {
  for (uint32_t board = GRB_BOARD_1; board <= GRB_BOARD_7; ++board) {
    Script().SetBoard(board);
  }
  Names expected;
  for (int n = 1; n <= 7; ++n) {
    expected.push_back("GL-CXP4-#" + std::to_string(n));
  }
  EXPECT_EQ(expected, Ids());
  EXPECT_EQ(7U, ReadU32(m_hSystem, 0x4));
}

TEST_F(SystemTest, UpdateSelectsTheFirstBoard) {
  Script().SetBoard(GRB_BOARD_2);
  Update();
  EXPECT_EQ(GC_ERR_SUCCESS, WriteU32(m_hSystem, 0x8, 1));
  EXPECT_EQ("GL-CXP4-#2", SelectedId());
  Update();
  EXPECT_EQ(0U, ReadU32(m_hSystem, 0x8));
  EXPECT_EQ("GL-CXP4-#1", SelectedId());
}

TEST_F(SystemTest, SelectorBeyondTheListFailsWithItsValueStored) {
  Script().SetBoard(GRB_BOARD_2);
  Update();
  EXPECT_GC(GC_ERR_INVALID_PARAMETER, "Child #7 does not exist.", WriteU32(m_hSystem, 0x8, 7));
  EXPECT_EQ(7U, ReadU32(m_hSystem, 0x8));
  EXPECT_EQ("GL-CXP4-#1", SelectedId());
}

// A shorter id leaves no tail of a longer one that could be seen as a text.
TEST_F(SystemTest, SelectedIdEndsWhereItEnds) {
  Script().SetBoard(GRB_BOARD_2, "Model=X\nName=N\n");
  Update();
  ASSERT_EQ(GC_ERR_SUCCESS, WriteU32(m_hSystem, 0x8, 1));
  EXPECT_EQ("X-#2", SelectedId());
}

TEST_F(SystemTest, SelectorWithoutAnUpdateSeesAnEmptyList) {
  const size_t mark = Script().Mark();
  EXPECT_EQ(GC_ERR_SUCCESS, WriteU32(m_hSystem, 0x8, 3));
  EXPECT_EQ("", SelectedId());
  EXPECT_EQ(0U, Script().Calls(mark).size());
}

TEST_F(SystemTest, AnyValueOfTheCommandUpdates) {
  for (const uint32_t value : {1U, 0U, 0xFFFFFFFFU}) {
    const size_t mark = Script().Mark();
    EXPECT_EQ(GC_ERR_SUCCESS, WriteU32(m_hSystem, 0x44, value));
    EXPECT_GT(Script().Calls(mark).size(), 0U);
    EXPECT_EQ(value, ReadU32(m_hSystem, 0x44));
  }
  EXPECT_EQ(1U, ReadU32(m_hSystem, 0x4));
  const size_t mark = Script().Mark();
  EXPECT_EQ(1U, CountInterfaces());
  EXPECT_EQ(0U, Script().Calls(mark).size()) << "the list has been updated";
}

TEST_F(SystemTest, ReadingTheCountRunsNoDiscovery) {
  const size_t mark = Script().Mark();
  ReadU32(m_hSystem, 0x4);
  ReadU32(m_hSystem, 0x44);
  EXPECT_EQ(0U, Script().Calls(mark).size());
}

// ---------------------------------------------------------------------------------------------------------------------
// TLGetInterfaceInfo
// ---------------------------------------------------------------------------------------------------------------------

TEST_F(SystemTest, InterfaceInformation) {
  CountInterfaces();
  const struct {
    INTERFACE_INFO_CMD command;
    const char *text;
  } rows[] = {{INTERFACE_INFO_ID, "GL-CXP4-#1"},
              {INTERFACE_INFO_DISPLAYNAME, "Grabline GL-CXP4 #1"},
              {INTERFACE_INFO_TLTYPE, "CXP"}};
  for (const auto &row : rows) {
    const Info info = InterfaceInfo(m_hSystem, "GL-CXP4-#1", row.command);
    EXPECT_EQ(INFO_DATATYPE_STRING, info.type);
    EXPECT_EQ(row.text, info.Text());
    EXPECT_EQ(info.Text().size() + 1, info.size);
  }
}

TEST_F(SystemTest, OtherInterfaceCommandsAreRefused) {
  CountInterfaces();
  INFO_DATATYPE type = -77;
  size_t size = 0;
  EXPECT_GC(GC_ERR_INVALID_PARAMETER, "Invalid INTERFACE_INFO_CMD 0x00000003",
            Gc().TLGetInterfaceInfo(m_hSystem, "GL-CXP4-#1", 3, &type, nullptr, &size));
  EXPECT_GC(GC_ERR_INVALID_PARAMETER, "Invalid INTERFACE_INFO_CMD 0xFFFFFFFF",
            Gc().TLGetInterfaceInfo(m_hSystem, "GL-CXP4-#1", -1, &type, nullptr, &size));
  EXPECT_GC(GC_ERR_INVALID_PARAMETER, "Invalid INTERFACE_INFO_CMD 0x000003E8",
            Gc().TLGetInterfaceInfo(m_hSystem, "GL-CXP4-#1", 1000, &type, nullptr, &size));
  EXPECT_EQ(-77, type);
}

TEST_F(SystemTest, UnknownIdIsRefused) {
  CountInterfaces();
  INFO_DATATYPE type = -77;
  size_t size = 0;
  for (const std::string id : {"", "gl-cxp4-#1", "GL-CXP4-#2", "GL-CXP4-#1 "}) {
    EXPECT_GC(GC_ERR_INVALID_PARAMETER, "Invalid Child's name: " + id,
              Gc().TLGetInterfaceInfo(m_hSystem, id.c_str(), INTERFACE_INFO_ID, &type, nullptr, &size));
    IF_HANDLE iface = nullptr;
    EXPECT_GC(GC_ERR_INVALID_PARAMETER, "Invalid Child's name: " + id,
              Gc().TLOpenInterface(m_hSystem, id.c_str(), &iface));
    EXPECT_EQ(nullptr, iface);
  }
}

// A name longer than any message has room for: the text is cut, nothing else happens.
TEST_F(SystemTest, EndlessIdIsCutInTheMessage) {
  CountInterfaces();
  const std::string id(5000, 'n');
  IF_HANDLE iface = nullptr;
  EXPECT_GC(GC_ERR_INVALID_PARAMETER, ("Invalid Child's name: " + id).substr(0, 255),
            Gc().TLOpenInterface(m_hSystem, id.c_str(), &iface));
}

// ---------------------------------------------------------------------------------------------------------------------
// What a board calls itself
// ---------------------------------------------------------------------------------------------------------------------

struct BoardRow {
  const char *name;
  const char *properties;
  const char *id;  ///< null: not listed
  const char *display;
  const char *type;
};
std::ostream &operator<<(std::ostream &out, const BoardRow &row) { return out << row.name; }

constexpr BoardRow kBoards[] = {
    {"Usual", "Name=N\nModel=M-CXP\nSerial=1\n", "M-CXP-#2", "N M-CXP #2", "CXP"},
    {"TypeAnywhere", "Name=N\nModel=aCXPb\n", "aCXPb-#2", "N aCXPb #2", "CXP"},
    {"NoType", "Name=N\nModel=M\n", "M-#2", "N M #2", ""},
    {"TypeInAnotherCase", "Name=N\nModel=Mcxp\n", "Mcxp-#2", "N Mcxp #2", ""},
    {"NoModel", "Name=N\n", "-#2", "N  #2", ""},
    {"NoName", "Model=M\n", "M-#2", " M #2", ""},
    {"Nothing", "", "-#2", "  #2", ""},
    {"OrderIsFree", "Model=M\nOther=x\nName=N\n", "M-#2", "N M #2", ""},
    {"KeyInAnotherCase", "model=M\nName=N\n", "-#2", "N  #2", ""},
    {"NoLineEnd", "Name=N\nModel=M", "M-#2", "N M #2", ""},
    {"EmptyLines", "\n\nName=N\n\n\nModel=M\n\n", "M-#2", "N M #2", ""},
    {"BlanksStay", "Name= N x \nModel= M y \n", " M y -#2", " N x   M y  #2", ""},
    // What follows the second sign is taken for a key.
    {"SecondEqualEndsTheValue", "Model=M=Name\nName=N\n", "M-#2", "Name M #2", ""},
    {"EmptyValueTakesTheNextKey", "Name=\nModel=M\n", "-#2", "Model  #2", ""},
    {"ModelWithoutValue", "Name=N\nModel=", nullptr, nullptr, nullptr},
    {"NameWithoutValue", "Model=M\nName", nullptr, nullptr, nullptr},
};

class BoardNames : public ProducerTest, public testing::WithParamInterface<BoardRow> {};

TEST_P(BoardNames, ComeFromItsProperties) {
  Script().RemoveAllBoards();
  Script().SetBoard(GRB_BOARD_2, GetParam().properties);
  OpenSystem();
  uint32_t count = 77;
  ASSERT_GC_OK(Gc().TLGetNumInterfaces(m_hSystem, &count));
  if (GetParam().id == nullptr) {
    EXPECT_EQ(0U, count);
    return;
  }
  ASSERT_EQ(1U, count);
  EXPECT_EQ(GetParam().id, InterfaceId(m_hSystem, 0).Text());
  EXPECT_EQ(GetParam().display, InterfaceInfo(m_hSystem, GetParam().id, INTERFACE_INFO_DISPLAYNAME).Text());
  EXPECT_EQ(GetParam().type, InterfaceInfo(m_hSystem, GetParam().id, INTERFACE_INFO_TLTYPE).Text());
  const IF_HANDLE iface = OpenInterface(GetParam().id);
  EXPECT_EQ(GetParam().type, PortInfo(iface, PORT_INFO_TLTYPE).Text());
}

INSTANTIATE_TEST_SUITE_P(Boards, BoardNames, testing::ValuesIn(kBoards),
                         [](const testing::TestParamInfo<BoardRow> &row) { return std::string(row.param.name); });

TEST_F(SystemTest, BoardWithNullPropertiesIsLeftOut) {
  Script().SetNullProperties(GRB_BOARD_1);
  EXPECT_EQ(0U, CountInterfaces());
}

TEST_F(SystemTest, IdTooLongForItsRegisterIsSurvived) {
  Script().SetBoard(GRB_BOARD_1, "Name=N\nModel=" + std::string(300, 'M') + "\n");
  EXPECT_EQ(1U, CountInterfaces());
  const std::string id = InterfaceId(m_hSystem, 0).Text();
  EXPECT_EQ(std::string(256, 'M') + "-#1", id) << "256 bytes of a value are copied, and no terminator";
  // The selected id is stored whole: its end stands in the register behind.
  const std::vector<uint8_t> bytes = ReadBytes(m_hSystem, 0x740, 512);
  EXPECT_EQ(id + std::string(512 - id.size(), '\0'), std::string(bytes.begin(), bytes.end()));
  OpenInterface(id);
  EXPECT_EQ(id, IfInfo(m_hInterface, INTERFACE_INFO_ID).Text());
  EXPECT_EQ(std::string(255, 'M'), ReadText(m_hInterface, 0x0, 256)) << "the register keeps room for its terminator";
}

}  // namespace
