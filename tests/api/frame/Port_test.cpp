// SPDX-License-Identifier: MIT
/// @file
/// The functions that work on any port or event: reads, writes, stacks, URLs, registration.
#include <cstring>
#include <new>
#include <string>
#include <sys/mman.h>
#include <vector>

#include "Tree.h"

using namespace FrameTests;

namespace {

constexpr const char *kMultiples = "Address and/or uiSize have to be multiples of four.";

// ---------------------------------------------------------------------------------------------------------------------
// Reading and writing a map
// ---------------------------------------------------------------------------------------------------------------------

using Ports = TreeTest;

TEST_F(Ports, SizeIsLeftAsItWas) {
  char text[64] = {};
  size_t size = sizeof(text);
  EXPECT_GC_OK(Gc().GCReadPort(m_Tree.system, 0x48, text, &size));
  EXPECT_EQ(sizeof(text), size);
  EXPECT_STREQ("Lumivex", text);
  uint32_t word = 0;
  size = 4;
  EXPECT_GC_OK(Gc().GCWritePort(m_Tree.system, 0x8, &word, &size));
  EXPECT_EQ(4U, size);
}

TEST_F(Ports, WordInsideATextGivesThatWord) {
  EXPECT_EQ(std::string("vex\0", 4), [&] {
    const auto bytes = ReadBytes(m_Tree.system, 0x4C, 4);
    return std::string(bytes.begin(), bytes.end());
  }());
}

TEST_F(Ports, NullBufferWithASizeIsTheModulesAnswer) {
  size_t size = 4;
  EXPECT_GC(GC_ERR_INVALID_PARAMETER, "Null data pointer", Gc().GCReadPort(m_Tree.system, 0x4, nullptr, &size));
  EXPECT_GC(GC_ERR_INVALID_PARAMETER, "Null data pointer", Gc().GCWritePort(m_Tree.system, 0x8, nullptr, &size));
  for (void *port : {m_Tree.iface, m_Tree.device, m_Tree.stream}) {
    EXPECT_GC(GC_ERR_INVALID_PARAMETER, "pBuffer is not valid.", Gc().GCReadPort(port, 0x4, nullptr, &size));
    EXPECT_GC(GC_ERR_INVALID_PARAMETER, "pBuffer is not valid.", Gc().GCWritePort(port, 0x4, nullptr, &size));
  }
  EXPECT_GC(GC_ERR_INVALID_PARAMETER, "Null pBuffer pointer", Gc().GCReadPort(m_Tree.remote, 0x4, nullptr, &size));
  EXPECT_GC(GC_ERR_INVALID_PARAMETER, "Null pBuffer pointer", Gc().GCWritePort(m_Tree.remote, 0x4, nullptr, &size));
}

TEST_F(Ports, NullBufferWithSizeZeroIsTheModulesAnswer) {
  size_t size = 0;
  EXPECT_GC(GC_ERR_INVALID_PARAMETER, "Null data pointer", Gc().GCReadPort(m_Tree.system, 0x4, nullptr, &size));
  EXPECT_GC(GC_ERR_INVALID_PARAMETER, "Null data pointer", Gc().GCWritePort(m_Tree.system, 0x8, nullptr, &size));
  for (void *port : {m_Tree.iface, m_Tree.device, m_Tree.stream}) {
    EXPECT_GC(GC_ERR_INVALID_PARAMETER, "pBuffer is not valid.", Gc().GCReadPort(port, 0x4, nullptr, &size));
    EXPECT_GC(GC_ERR_INVALID_PARAMETER, "pBuffer is not valid.", Gc().GCWritePort(port, 0x4, nullptr, &size));
  }
  EXPECT_EQ(0U, size);
}

struct AddressRow {
  const char *name;
  uint64_t address;
  size_t size;
  GC_ERROR code;
  const char *message;
};
std::ostream &operator<<(std::ostream &out, const AddressRow &row) { return out << row.name; }

class PortAddress : public TreeTest, public testing::WithParamInterface<AddressRow> {};

TEST_P(PortAddress, IsRefusedOnEveryMap) {
  const AddressRow &row = GetParam();
  for (void *port : {m_Tree.system, m_Tree.iface, m_Tree.device, m_Tree.stream}) {
    std::vector<uint8_t> buffer(row.size, 0xEE);
    size_t size = row.size;
    EXPECT_GC(row.code, row.message, Gc().GCReadPort(port, row.address, buffer.data(), &size));
    EXPECT_EQ(row.size, size);
    EXPECT_GC(row.code, row.message, Gc().GCWritePort(port, row.address, buffer.data(), &size));
    EXPECT_EQ(row.size, size);
    EXPECT_EQ(std::vector<uint8_t>(row.size, 0xEE), buffer);
  }
}

INSTANTIATE_TEST_SUITE_P(
    Rows, PortAddress,
    testing::Values(
        AddressRow{"TwoBytes", 0x8, 2, GC_ERR_INVALID_PARAMETER, kMultiples},
        AddressRow{"FiveBytes", 0x8, 5, GC_ERR_INVALID_PARAMETER, kMultiples},
        AddressRow{"OddAddress", 0x9, 4, GC_ERR_INVALID_PARAMETER, kMultiples},
        AddressRow{"OddBoth", 0xA, 1, GC_ERR_INVALID_PARAMETER, kMultiples},
        AddressRow{"AllOnes", 0xFFFFFFFFFFFFFFFFULL, 4, GC_ERR_INVALID_PARAMETER, "Address is invalid."},
        AddressRow{"AllOnesAheadOfTheSize", 0xFFFFFFFFFFFFFFFFULL, 3, GC_ERR_INVALID_PARAMETER, "Address is invalid."},
        AddressRow{"TooLarge", 0x199999999999999CULL, 4, GC_ERR_INVALID_PARAMETER,
                   "Address too large: 0 <= 1844674407370955164 <= 461168601842738790"},
        AddressRow{"Largest", 0x1999999999999998ULL, 4, GC_ERR_ERROR,
                   "Register 1999999999999998 is not available (does not exist)."},
        AddressRow{"FarBehind", 0xABCDEF0, 4, GC_ERR_ERROR, "Register ABCDEF0 is not available (does not exist)."}),
    [](const testing::TestParamInfo<AddressRow> &row) { return std::string(row.param.name); });

// ---------------------------------------------------------------------------------------------------------------------
// Stacks
// ---------------------------------------------------------------------------------------------------------------------

/// Reads or writes a stack; the two behave alike.
struct StackRow {
  const char *name;
  GC_ERROR (*call)(PORT_HANDLE port, PORT_REGISTER_STACK_ENTRY *entries, size_t *count);
};
std::ostream &operator<<(std::ostream &out, const StackRow &row) { return out << row.name; }

class Stacks : public TreeTest, public testing::WithParamInterface<StackRow> {
 protected:
  GC_ERROR Call(PORT_HANDLE port, PORT_REGISTER_STACK_ENTRY *entries, size_t *count) {
    return GetParam().call(port, entries, count);
  }
};

TEST_P(Stacks, NoEntriesSucceed) {
  PORT_REGISTER_STACK_ENTRY entry = {};
  size_t count = 0;
  EXPECT_GC_OK(Call(m_Tree.system, &entry, &count));
  EXPECT_EQ(0U, count);
}

TEST_P(Stacks, NullEntriesSetTheCountToZero) {
  size_t count = 5;
  EXPECT_GC(GC_ERR_INVALID_PARAMETER, "Null PORT_REGISTER_STACK_ENTRY pointer.", Call(m_Tree.system, nullptr, &count));
  EXPECT_EQ(0U, count);
}

TEST_P(Stacks, BadHandleSetsTheCountToZero) {
  PORT_REGISTER_STACK_ENTRY entry = {};
  for (void *handle : {static_cast<void *>(nullptr), m_Tree.errorEvent}) {
    size_t count = 5;
    EXPECT_GC(GC_ERR_INVALID_HANDLE, kInvalidHandle, Call(handle, &entry, &count));
    EXPECT_EQ(0U, count);
  }
}

TEST_P(Stacks, ClosedSystemSetsTheCountToZero) {
  PORT_REGISTER_STACK_ENTRY entry = {};
  ASSERT_GC_OK(Gc().TLClose(m_hSystem));
  m_hSystem = m_hInterface = m_hDevice = m_hStream = nullptr;
  size_t count = 5;
  EXPECT_GC(GC_ERR_INVALID_HANDLE, kNoSystem, Call(nullptr, &entry, &count));
  EXPECT_EQ(0U, count);
}

TEST_P(Stacks, UninitialisedLibrarySetsTheCountToZero) {
  PORT_REGISTER_STACK_ENTRY entry = {};
  ASSERT_EQ(GC_ERR_SUCCESS, Gc().GCCloseLib());
  m_hSystem = m_hInterface = m_hDevice = m_hStream = nullptr;
  size_t count = 5;
  EXPECT_EQ(GC_ERR_NOT_INITIALIZED, Call(nullptr, &entry, &count));
  EXPECT_EQ(0U, count);
  EXPECT_EQ(GC_ERR_SUCCESS, Gc().GCInitLib());
}

// The single entries go past the frame's buffer rule: the module has the word.
TEST_P(Stacks, EntriesAreCheckedByTheModule) {
  uint32_t word = 0;
  PORT_REGISTER_STACK_ENTRY entry = {0x8, &word, 0};
  size_t count = 1;
  EXPECT_GC(GC_ERR_INVALID_PARAMETER, "pBuffer is not valid.", Call(m_Tree.system, &entry, &count));
  EXPECT_EQ(0U, count);
  entry = {0x8, nullptr, 4};
  count = 1;
  EXPECT_GC(GC_ERR_INVALID_PARAMETER, "Null data pointer", Call(m_Tree.system, &entry, &count));
  EXPECT_EQ(0U, count);
}

/// A page that can be read only.
class CReadOnlyPage {
 public:
  explicit CReadOnlyPage(const PORT_REGISTER_STACK_ENTRY &entry)
      : m_pPage(mmap(nullptr, kSize, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0)) {
    if (m_pPage == MAP_FAILED) {
      throw std::bad_alloc();
    }
    std::memcpy(m_pPage, &entry, sizeof(entry));
    EXPECT_EQ(0, mprotect(m_pPage, kSize, PROT_READ));
  }
  ~CReadOnlyPage() { munmap(m_pPage, kSize); }
  CReadOnlyPage(const CReadOnlyPage &) = delete;
  CReadOnlyPage &operator=(const CReadOnlyPage &) = delete;
  PORT_REGISTER_STACK_ENTRY *Entries() const { return static_cast<PORT_REGISTER_STACK_ENTRY *>(m_pPage); }

 private:
  static constexpr size_t kSize = 4096;
  void *m_pPage;
};

// No port changes a size, so none is written back: tables of entries may be constant, and threads may share one.
TEST_P(Stacks, EntriesAreOnlyRead) {
  uint32_t word = 0;
  const CReadOnlyPage page({0x8, &word, 4});
  size_t count = 1;
  EXPECT_GC_OK(Call(m_Tree.system, page.Entries(), &count));
  EXPECT_EQ(1U, count);
}

// The record is packed: a table may begin at any address.
TEST_P(Stacks, EntriesMayStandAtAnOddAddress) {
  uint32_t words[2] = {};
  const PORT_REGISTER_STACK_ENTRY entries[2] = {{0x8, &words[0], 4}, {0x8, &words[1], 4}};
  alignas(16) uint8_t bytes[sizeof(entries) + 2];
  std::memset(bytes, 0xEE, sizeof(bytes));
  std::memcpy(bytes + 1, entries, sizeof(entries));
  size_t count = 2;
  EXPECT_GC_OK(Call(m_Tree.system, reinterpret_cast<PORT_REGISTER_STACK_ENTRY *>(bytes + 1), &count));
  EXPECT_EQ(2U, count);
  EXPECT_EQ(0, std::memcmp(bytes + 1, entries, sizeof(entries)));
  EXPECT_EQ(0xEE, bytes[0]);
  EXPECT_EQ(0xEE, bytes[sizeof(bytes) - 1]);
}

INSTANTIATE_TEST_SUITE_P(
    Functions, Stacks,
    testing::Values(
        StackRow{"GCReadPortStacked", [](PORT_HANDLE port, PORT_REGISTER_STACK_ENTRY *entries,
                                         size_t *count) { return Gc().GCReadPortStacked(port, entries, count); }},
        StackRow{"GCWritePortStacked", [](PORT_HANDLE port, PORT_REGISTER_STACK_ENTRY *entries,
                                          size_t *count) { return Gc().GCWritePortStacked(port, entries, count); }}),
    [](const testing::TestParamInfo<StackRow> &row) { return std::string(row.param.name); });

TEST_F(Ports, StackIsReadInOrderAndKeepsItsSizes) {
  char vendor[64] = {};
  char model[64] = {};
  uint32_t major = 0;
  PORT_REGISTER_STACK_ENTRY entries[] = {{0x48, vendor, 64}, {0x88, model, 64}, {0xDC, &major, 4}};
  size_t count = 3;
  EXPECT_GC_OK(Gc().GCReadPortStacked(m_Tree.system, entries, &count));
  EXPECT_EQ(3U, count);
  EXPECT_STREQ("Lumivex", vendor);
  EXPECT_STREQ("Lumivex Transport Layer", model);
  EXPECT_EQ(1U, major);
  EXPECT_EQ(64U, entries[0].Size);
  EXPECT_EQ(4U, entries[2].Size);
}

TEST_F(Ports, StackedReadStopsAtAHole) {
  uint32_t words[3] = {77, 77, 77};
  PORT_REGISTER_STACK_ENTRY entries[] = {{0xDC, &words[0], 4}, {0x3C, &words[1], 4}, {0xD8, &words[2], 4}};
  size_t count = 3;
  EXPECT_GC(GC_ERR_ERROR, "Register 3C is not available (does not exist).",
            Gc().GCReadPortStacked(m_Tree.system, entries, &count));
  EXPECT_EQ(1U, count);
  EXPECT_EQ(1U, words[0]);
  EXPECT_EQ(77U, words[1]);
  EXPECT_EQ(77U, words[2]);
}

TEST_F(Ports, StackedWriteKeepsWhatWasWrittenBeforeTheFailure) {
  Script().SetBoard(GRB_BOARD_2);
  ASSERT_GC_OK(Gc().TLUpdateInterfaceList(m_Tree.system, nullptr, 0));
  uint32_t one = 1;
  uint32_t zero = 0;
  PORT_REGISTER_STACK_ENTRY entries[] = {{0x8, &one, 4}, {0x48, &one, 4}, {0x8, &zero, 4}};
  size_t count = 3;
  EXPECT_GC(GC_ERR_ERROR, "Register 48 is not writable.", Gc().GCWritePortStacked(m_Tree.system, entries, &count));
  EXPECT_EQ(1U, count);
  EXPECT_EQ(1U, ReadU32(m_Tree.system, 0x8));
}

TEST_F(Ports, StackedWriteToAReadOnlyDeviceDoesNone) {
  DEV_HANDLE device = nullptr;
  ASSERT_GC_OK(Gc().IFOpenDevice(m_Tree.iface, "Channel #2", DEVICE_ACCESS_READONLY, &device));
  uint32_t one = 1;
  PORT_REGISTER_STACK_ENTRY entries[] = {{0x3EC, &one, 4}, {0x3EC, &one, 4}};
  size_t count = 2;
  EXPECT_GC(GC_ERR_ACCESS_DENIED, "Cannot write to device in READONLY mode.",
            Gc().GCWritePortStacked(device, entries, &count));
  EXPECT_EQ(0U, count);
  EXPECT_EQ(0U, ReadU32(device, 0x3EC));
}

TEST_F(Ports, StackedWriteRunsTheCallbacksInOrder) {
  Script().SetBoard(GRB_BOARD_2);
  uint32_t any = 99;
  uint32_t one = 1;
  PORT_REGISTER_STACK_ENTRY entries[] = {{0x44, &any, 4}, {0x8, &one, 4}};
  size_t count = 2;
  EXPECT_GC_OK(Gc().GCWritePortStacked(m_Tree.system, entries, &count));
  EXPECT_EQ(2U, count);
  EXPECT_EQ("GL-CXP4-#2", ReadText(m_Tree.system, 0x740, 256));
}

TEST_F(Ports, StackOfTheCameraGoesToTheCamera) {
  uint32_t words[2] = {};
  PORT_REGISTER_STACK_ENTRY entries[] = {{0x4, &words[0], 4}, {0x8, &words[1], 4}};
  size_t count = 2;
  const size_t mark = Script().Mark();
  EXPECT_GC_OK(Gc().GCReadPortStacked(m_Tree.remote, entries, &count));
  EXPECT_EQ(2U, count);
  const std::vector<Call> calls = Script().Calls(Match(Op::ControlRead, GRB_PORT_CAMERA), mark);
  ASSERT_EQ(2U, calls.size());
  EXPECT_EQ(0x4U, calls[0].address);
  EXPECT_EQ(0x8U, calls[1].address);
}

// ---------------------------------------------------------------------------------------------------------------------
// URLs of the modules
// ---------------------------------------------------------------------------------------------------------------------

struct UrlRow {
  const char *name;
  void *Tree::*handle;
  const char *url;
  const char *file;
  const char *unknownCommands[3];  ///< the texts for the commands 6, -1 and 1000
};
std::ostream &operator<<(std::ostream &out, const UrlRow &row) { return out << row.name; }

const UrlRow kUrls[] = {
    {"System",
     &Tree::system,
     "Local:LumivexTLSystem.xml;940;24c0",
     "LumivexTLSystem.xml",
     {"Invalid URL_INFO_CMD Command 00000006", "Invalid URL_INFO_CMD Command FFFFFFFF",
      "Invalid URL_INFO_CMD Command 000003E8"}},
    {"Interface",
     &Tree::iface,
     "Local:LumivexTLInterface.xml;700;1c88",
     "LumivexTLInterface.xml",
     {"Invalid URL Info Command 6", "Invalid URL Info Command -1", "Invalid URL Info Command 1000"}},
};

class ModuleUrl : public TreeTest, public testing::WithParamInterface<UrlRow> {
 protected:
  void *Port() { return m_Tree.*GetParam().handle; }
  /// Length of the text with the separator that the terminator takes the place of.
  static size_t Length() { return std::strlen(GetParam().url) + 1; }
};

TEST_P(ModuleUrl, ThereIsOne) {
  uint32_t count = 77;
  EXPECT_GC_OK(Gc().GCGetNumPortURLs(Port(), &count));
  EXPECT_EQ(1U, count);
}

TEST_P(ModuleUrl, NullTextAsksForTheSize) {
  size_t size = 0;
  EXPECT_GC_OK(Gc().GCGetPortURL(Port(), nullptr, &size));
  EXPECT_EQ(Length() + 1, size);
}

TEST_P(ModuleUrl, ExactSizeFitsAndTheSeparatorIsLost) {
  std::string url(Length() + 2, 'u');
  size_t size = Length() + 1;
  EXPECT_GC_OK(Gc().GCGetPortURL(Port(), url.data(), &size));
  EXPECT_STREQ(GetParam().url, url.c_str());
  EXPECT_EQ(Length() + 1, size) << "the size counts the lost separator";
  EXPECT_EQ('u', url[Length()]) << "the size counts one byte more than is written";
  EXPECT_EQ('u', url.back());
}

TEST_P(ModuleUrl, LargerSizeShrinks) {
  char url[512] = {};
  size_t size = sizeof(url);
  EXPECT_GC_OK(Gc().GCGetPortURL(Port(), url, &size));
  EXPECT_EQ(Length() + 1, size);
}

TEST_P(ModuleUrl, OneByteTooFewTellsTheNeed) {
  std::string url(Length(), 'u');
  for (const size_t room : {Length(), size_t{1}}) {
    size_t size = room;
    EXPECT_GC(GC_ERR_INVALID_PARAMETER, "Invalid Buffer Size", Gc().GCGetPortURL(Port(), url.data(), &size));
    EXPECT_EQ(Length() + 1, size);
    EXPECT_EQ(std::string(Length(), 'u'), url);
  }
}

TEST_P(ModuleUrl, InfoGivesTheSameText) {
  const Info info = UrlInfo(Port(), 0, URL_INFO_URL);
  EXPECT_EQ(INFO_DATATYPE_STRING, info.type);
  EXPECT_EQ(GetParam().url, info.Text());
  EXPECT_EQ(std::strlen(GetParam().url) + 1, info.size);
}

TEST_P(ModuleUrl, NumbersAreThoseKeptByHand) {
  const int32_t expected[] = {1, 0, 2, 0, 0};
  for (URL_INFO_CMD command = URL_INFO_SCHEMA_VER_MAJOR; command <= URL_INFO_FILE_VER_SUBMINOR; ++command) {
    const Info info = UrlInfo(Port(), 0, command);
    EXPECT_EQ(INFO_DATATYPE_INT32, info.type) << command;
    EXPECT_EQ(expected[command - 1], info.As<int32_t>()) << command;
  }
}

TEST_P(ModuleUrl, OtherIndicesAreOutOfRange) {
  INFO_DATATYPE type = -77;
  char buffer[64] = {};
  for (const URL_INFO_CMD command : {URL_INFO_URL + 0, URL_INFO_FILE_VER_MAJOR + 0, 99}) {
    size_t size = sizeof(buffer);
    EXPECT_GC(GC_ERR_INVALID_PARAMETER, "URL Index 1 is out of range",
              Gc().GCGetPortURLInfo(Port(), 1, command, &type, buffer, &size));
    EXPECT_GC(GC_ERR_INVALID_PARAMETER, "URL Index 77 is out of range",
              Gc().GCGetPortURLInfo(Port(), 77, command, &type, nullptr, &size));
    EXPECT_GC(GC_ERR_INVALID_PARAMETER, "URL Index -1 is out of range",
              Gc().GCGetPortURLInfo(Port(), 0xFFFFFFFFU, command, &type, nullptr, &size));
    EXPECT_GC(GC_ERR_INVALID_PARAMETER, "URL Index -2147483648 is out of range",
              Gc().GCGetPortURLInfo(Port(), 0x80000000U, command, &type, nullptr, &size));
  }
  EXPECT_EQ(-77, type);
}

TEST_P(ModuleUrl, OtherCommandsAreRefused) {
  INFO_DATATYPE type = -77;
  size_t size = 0;
  EXPECT_GC(GC_ERR_INVALID_PARAMETER, GetParam().unknownCommands[0],
            Gc().GCGetPortURLInfo(Port(), 0, 6, &type, nullptr, &size));
  EXPECT_GC(GC_ERR_INVALID_PARAMETER, GetParam().unknownCommands[1],
            Gc().GCGetPortURLInfo(Port(), 0, -1, &type, nullptr, &size));
  EXPECT_GC(GC_ERR_INVALID_PARAMETER, GetParam().unknownCommands[2],
            Gc().GCGetPortURLInfo(Port(), 0, 1000, &type, nullptr, &size));
  EXPECT_EQ(-77, type);
}

TEST_P(ModuleUrl, NamesTheWholeText) {
  const auto url = ParseLocalUrl(PortUrl(Port()).Text());
  ASSERT_TRUE(url);
  EXPECT_EQ(0U, url->size % 4);
  const std::vector<uint8_t> bytes = ReadBytes(Port(), url->address, url->size);
  ASSERT_EQ(url->size, bytes.size());
  const std::string text = ReadXml(Port());
  EXPECT_LT(text.size(), url->size);
  EXPECT_LE(url->size - text.size(), 4U);
  EXPECT_EQ(0, bytes.back());
  auto file = ReadFile(std::string(LUMIVEX_XML_DIR "/") + GetParam().file);
  ASSERT_TRUE(file);
  file->resize(url->size, '\0');
  EXPECT_TRUE(*file == std::string(bytes.begin(), bytes.end())) << "not the file, byte for byte, and zeros";
}

TEST_P(ModuleUrl, TextEndsTheMap) {
  const auto url = ParseLocalUrl(PortUrl(Port()).Text());
  ASSERT_TRUE(url);
  uint32_t word = 0;
  EXPECT_EQ(GC_ERR_ERROR, TryRead(Port(), url->address + url->size, &word, 4));
}

TEST_P(ModuleUrl, TextIsReadInPiecesToo) {
  const auto url = ParseLocalUrl(PortUrl(Port()).Text());
  ASSERT_TRUE(url);
  const std::vector<uint8_t> whole = ReadBytes(Port(), url->address, url->size);
  std::vector<uint8_t> pieces;
  for (uint64_t at = 0; at < url->size; at += 256) {
    const auto piece = ReadBytes(Port(), url->address + at, std::min<uint64_t>(256, url->size - at));
    pieces.insert(pieces.end(), piece.begin(), piece.end());
  }
  EXPECT_EQ(whole, pieces);
}

TEST_P(ModuleUrl, TextCannotBeWritten) {
  const auto url = ParseLocalUrl(PortUrl(Port()).Text());
  ASSERT_TRUE(url);
  char message[64] = {};
  std::snprintf(message, sizeof(message), "Register %llX is not writable.",
                static_cast<unsigned long long>(url->address));
  EXPECT_GC(GC_ERR_ERROR, message, WriteU32(Port(), url->address, 0));
}

INSTANTIATE_TEST_SUITE_P(Modules, ModuleUrl, testing::ValuesIn(kUrls),
                         [](const testing::TestParamInfo<UrlRow> &row) { return std::string(row.param.name); });

TEST_F(Ports, EveryMapHasOneUrl) {
  for (void *port : {m_Tree.system, m_Tree.iface, m_Tree.device, m_Tree.stream}) {
    uint32_t count = 0;
    EXPECT_GC_OK(Gc().GCGetNumPortURLs(port, &count));
    EXPECT_EQ(1U, count);
  }
}

TEST_F(Ports, DeviceAndStreamDeliverTheirFilesToo) {
  const struct {
    PORT_HANDLE port;
    const char *file;
  } rows[] = {{m_Tree.device, "LumivexTLDevice.xml"}, {m_Tree.stream, "LumivexTLDataStream.xml"}};
  for (const auto &row : rows) {
    const auto file = ReadFile(std::string(LUMIVEX_XML_DIR "/") + row.file);
    ASSERT_TRUE(file) << row.file;
    EXPECT_TRUE(*file == ReadXml(row.port)) << row.file;
  }
}

// ---------------------------------------------------------------------------------------------------------------------
// Whom a failure names
// ---------------------------------------------------------------------------------------------------------------------

/// What the modules have in common is written once, yet a failure names the module's own operation and its file.
struct ThrowerRow {
  const char *name;
  void *Tree::*handle;
  const char *module;    ///< its class
  const char *file;      ///< the class' own
  const char *urlMaker;  ///< who refuses a URL's buffer, and in which file
  const char *urlFile;
};
std::ostream &operator<<(std::ostream &out, const ThrowerRow &row) { return out << row.name; }

class Thrower : public TreeTest, public testing::WithParamInterface<ThrowerRow> {
 protected:
  void *Port() { return m_Tree.*GetParam().handle; }
  /// "function in file" of this thread's failure.
  static std::string Place() {
    const ErrorRecord record = LastError();
    const auto pieces = SplitFailureText(record.text);
    return pieces ? pieces->function + " in " + pieces->file : record.text;
  }
  static std::string Own(const char *operation) {
    return Exported(GetParam().module) + "::" + operation + " in " + GetParam().file;
  }
  INFO_DATATYPE m_iType = 0;
  size_t m_iSize = 0;
};

TEST_P(Thrower, OfAnUnknownPortCommandIsTheModule) {
  EXPECT_EQ(GC_ERR_INVALID_PARAMETER, Gc().GCGetPortInfo(Port(), 99, &m_iType, nullptr, &m_iSize));
  EXPECT_EQ(Own("GetPortInfo"), Place());
}

TEST_P(Thrower, OfAnUnknownUrlCommandIsTheModule) {
  EXPECT_EQ(GC_ERR_INVALID_PARAMETER, Gc().GCGetPortURLInfo(Port(), 0, 99, &m_iType, nullptr, &m_iSize));
  EXPECT_EQ(Own("GetPortURLInfo"), Place());
}

TEST_P(Thrower, OfAUrlIndexIsTheModule) {
  EXPECT_EQ(GC_ERR_INVALID_PARAMETER, Gc().GCGetPortURLInfo(Port(), 77, URL_INFO_URL, &m_iType, nullptr, &m_iSize));
  EXPECT_EQ(Own("GetPortURLInfo"), Place());
}

TEST_P(Thrower, OfASmallBufferForTheUrl) {
  char url[1] = {};
  m_iSize = sizeof(url);
  EXPECT_EQ(GC_ERR_INVALID_PARAMETER, Gc().GCGetPortURL(Port(), url, &m_iSize));
  EXPECT_EQ(Exported(GetParam().urlMaker) + " in " + GetParam().urlFile, Place());
}

TEST_P(Thrower, OfAnUnknownEventIsTheModule) {
  EVENT_HANDLE event = nullptr;
  EXPECT_NE(GC_ERR_SUCCESS, Gc().GCRegisterEvent(Port(), 99, &event));
  EXPECT_EQ(Own("Register"), Place());
  EXPECT_NE(GC_ERR_SUCCESS, Gc().GCUnregisterEvent(Port(), 99));
  EXPECT_EQ(Own("Unregister"), Place());
}

INSTANTIATE_TEST_SUITE_P(Modules, Thrower,
                         testing::Values(ThrowerRow{"System", &Tree::system, "CTL", "TL.cpp", "CTL::GetURL", "TL.cpp"},
                                         ThrowerRow{"Interface", &Tree::iface, "CInterface", "Interface.cpp",
                                                    "CInterface::GetURL", "Interface.cpp"},
                                         // Device and camera hand their URL out in the way of the other answers.
                                         ThrowerRow{"Device", &Tree::device, "CDevice", "Device.cpp", "SetReturnParam",
                                                    "Helper.cpp"},
                                         ThrowerRow{"Camera", &Tree::remote, "CDevicePortCxp", "DevicePortCxp.cpp",
                                                    "SetReturnParam", "Helper.cpp"},
                                         ThrowerRow{"DataStream", &Tree::stream, "CDataStream", "DataStream.cpp",
                                                    "CDataStream::GetURL", "DataStream.cpp"}),
                         [](const testing::TestParamInfo<ThrowerRow> &row) { return std::string(row.param.name); });

// ---------------------------------------------------------------------------------------------------------------------
// Events
// ---------------------------------------------------------------------------------------------------------------------

struct EventlessRow {
  const char *name;
  void *Tree::*handle;
};
std::ostream &operator<<(std::ostream &out, const EventlessRow &row) { return out << row.name; }

class Eventless : public TreeTest, public testing::WithParamInterface<EventlessRow> {};

TEST_P(Eventless, RefusesEveryEvent) {
  void *module = m_Tree.*GetParam().handle;
  for (const EVENT_TYPE id : {0, 1, 2, 3, 4, 5, 1000, -1}) {
    const std::string message = "Event ID " + std::to_string(id) + " not implemented";
    EVENT_HANDLE event = &event;
    EXPECT_GC(GC_ERR_NOT_IMPLEMENTED, message, Gc().GCRegisterEvent(module, id, &event));
    EXPECT_EQ(&event, event);
    EXPECT_GC(GC_ERR_NOT_IMPLEMENTED, message, Gc().GCUnregisterEvent(module, id));
  }
}

INSTANTIATE_TEST_SUITE_P(Modules, Eventless,
                         testing::Values(EventlessRow{"System", &Tree::system},
                                         EventlessRow{"Interface", &Tree::iface}),
                         [](const testing::TestParamInfo<EventlessRow> &row) { return std::string(row.param.name); });

TEST_F(Ports, EmptyEventTimesOut) {
  for (EVENT_HANDLE event : {m_Tree.errorEvent, m_Tree.newBufferEvent}) {
    char buffer[4096] = {};
    for (const uint64_t timeout : {0U, 1U}) {
      size_t size = sizeof(buffer);
      EXPECT_GC_FROM(GC_ERR_TIMEOUT, "Timeout while acquiring data", "GenICam::Client::EventGetData",
                     Gc().EventGetData(event, buffer, &size, timeout));
    }
  }
}

TEST_F(Ports, KilledWaitAborts) {
  CEventWaiter waiter(m_Tree.errorEvent, GENTL_INFINITE, 4096);
  EXPECT_GC_OK(Gc().EventKill(m_Tree.errorEvent));
  const EventResult result = waiter.Result();
  EXPECT_EQ(GC_ERR_ABORT, result.result);
  EXPECT_EQ(GC_ERR_ABORT, result.error.code);
  EXPECT_EQ(0U, result.error.text.find("Wait terminated (function '")) << result.error.text;
}

TEST_F(Ports, WaitHoldsNothingOfTheFrame) {
  CEventWaiter waiter(m_Tree.newBufferEvent, GENTL_INFINITE);
  EXPECT_EQ("TLSystem", PortInfo(m_Tree.system, PORT_INFO_MODULE).Text());
  EXPECT_GC_OK(Gc().EventFlush(m_Tree.newBufferEvent));
  EXPECT_GC_OK(Gc().EventKill(m_Tree.newBufferEvent));
  EXPECT_EQ(GC_ERR_ABORT, waiter.Result().result);
}

}  // namespace
