// SPDX-License-Identifier: MIT
// Loading and saving the library's configuration files through the Device's registers.
#include <algorithm>
#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include "DeviceFixture.h"

namespace DeviceTests {
namespace {

constexpr uint32_t kLoad = 0x1448;
constexpr uint32_t kLoadName = 0x144C;
constexpr uint32_t kSave = 0x1C84;
constexpr uint32_t kSaveName = 0x1884;
constexpr size_t kNameSize = 1024;

class GcfTest : public OpenDeviceTest {
 protected:
  void SetUp() override {
    OpenDeviceTest::SetUp();
    m_strPath = m_Directory.WriteFile("board.gcf", "[gcf]\n");
  }

  GC_ERROR Load(const std::string &name, uint32_t value = 1) {
    EXPECT_GC_OK(WriteText(m_hDevice, kLoadName, name, kNameSize));
    m_nMark = Script().Mark();
    return WriteU32(m_hDevice, kLoad, value);
  }
  GC_ERROR Save(const std::string &name, uint32_t value = 1) {
    EXPECT_GC_OK(WriteText(m_hDevice, kSaveName, name, kNameSize));
    m_nMark = Script().Mark();
    return WriteU32(m_hDevice, kSave, value);
  }
  // Whatever happened, the grabber's features go on working.
  void ExpectUsable() {
    EXPECT_NE(StreamHandle(), 0U);
    EXPECT_EQ(ReadU32(m_hDevice, 0x4FC), StreamHandle());
    EXPECT_GC_OK(WriteU32(m_hDevice, 0x614, 123));
    EXPECT_EQ(ReadU32(m_hDevice, 0x614), 123U);
  }
  Lines Calls() const { return Script().Trace(m_nMark); }
  static Lines CloseAndConfigure(GRB_HANDLE handle, const std::string &path) {
    return {"Close(" + HandleName(handle) + ")",
            "ParameterSet(" + HandleName(handle) + ", GRB_OPEN_CONFIG_FILE, \"" + path + "\")"};
  }
  // A path to the same file with exactly this many characters.
  std::string PathOfLength(size_t length) const {
    std::string padding;
    while (m_strPath.size() + padding.size() < length) {
      padding += (length - m_strPath.size() - padding.size()) % 2 == 1 ? "/" : "/.";
    }
    const size_t at = m_strPath.rfind('/');
    return m_strPath.substr(0, at) + padding + m_strPath.substr(at);
  }
  static std::string LoadFailure(const std::string &words) {
    return "Failed loading GCF file (BoardNumber = c0010001 , ChannelNumber = c0010010): " + words;
  }

  CTempDirectory m_Directory;
  std::string m_strPath;
  size_t m_nMark = 0;
};

class GcfStatus : public GcfTest, public testing::WithParamInterface<GRB_STATUS> {};

// Load ----------------------------------------------------------------------------------------------------------------

TEST_F(GcfTest, LoadReopensTheStreamHandleWithTheFile) {
  const GRB_HANDLE handle = StreamHandle();
  EXPECT_GC_OK(Load(m_strPath));
  EXPECT_EQ(Calls(), CloseAndConfigure(handle, m_strPath) + OpenCalls(handle, GRB_MODE_ACQ_ONLY));
  EXPECT_EQ(StreamHandle(), handle);
  ExpectUsable();
}

TEST_F(GcfTest, LoadRunsWhateverIsWritten) {
  for (const uint32_t value : {0U, 1U, 0xFFFFFFFFU}) {
    EXPECT_GC_OK(Load(m_strPath, value));
    EXPECT_EQ(Calls().size(), 7U);
    EXPECT_EQ(ReadU32(m_hDevice, kLoad), value);
  }
}

TEST_F(GcfTest, LoadDropsEveryDoubleQuote) {
  const GRB_HANDLE handle = StreamHandle();
  std::string inner = m_strPath;
  inner.insert(inner.size() / 2, "\"\"");
  for (const std::string &name : {"\"" + m_strPath + "\"", m_strPath + "\"", inner}) {
    SCOPED_TRACE(name);
    EXPECT_GC_OK(Load(name));
    EXPECT_EQ(Calls(), CloseAndConfigure(handle, m_strPath) + OpenCalls(handle, GRB_MODE_ACQ_ONLY));
  }
}

TEST_F(GcfTest, LoadOfAMissingFileNamesItAsGivenAndTouchesNothing) {
  const std::string missing = m_Directory.File("none.gcf");
  for (const std::string &name : {missing, "\"" + missing + "\"", std::string(), std::string("\"\"")}) {
    SCOPED_TRACE(name);
    EXPECT_GC(GC_ERR_INVALID_PARAMETER, "Configuration file specified does not exist: " + name, Load(name));
    EXPECT_EQ(Calls(), Lines());
    ExpectUsable();
  }
}

TEST_F(GcfTest, ValueWrittenStaysStoredWhenTheLoadFails) {
  EXPECT_GC_CODE(GC_ERR_INVALID_PARAMETER, Load("", 7));
  EXPECT_EQ(ReadU32(m_hDevice, kLoad), 7U);
}

// A folder is no file, on systems too that let it be opened like one.
TEST_F(GcfTest, LoadOfAFolderLeavesAUsableHandle) {
  EXPECT_GC(GC_ERR_INVALID_PARAMETER, "Configuration file specified does not exist: " + m_Directory.Path(),
            Load(m_Directory.Path()));
  EXPECT_EQ(Calls(), Lines());
  ExpectUsable();
}

// The register may be filled to its last byte.
TEST_F(GcfTest, LoadTakesNamesUpToTheWholeRegister) {
  const GRB_HANDLE handle = StreamHandle();
  for (const size_t length : {size_t{1022}, size_t{1023}, size_t{1024}}) {
    SCOPED_TRACE(length);
    const std::string path = PathOfLength(length);
    ASSERT_EQ(path.size(), length);
    EXPECT_GC_OK(Load(path));
    EXPECT_EQ(Calls(), CloseAndConfigure(handle, path) + OpenCalls(handle, GRB_MODE_ACQ_ONLY));
  }
}

TEST_F(GcfTest, LoadOfAMissingNameThatFillsTheRegisterStaysInside) {
  const std::string name = "/" + std::string(kNameSize - 1, 'x');
  EXPECT_GC_CODE(GC_ERR_INVALID_PARAMETER, Load(name));
  const std::optional<FailureText> text = SplitFailureText(LastError().text);
  ASSERT_TRUE(text.has_value());
  const std::string whole = "Configuration file specified does not exist: " + name;
  // No more than the name: what stands behind the register in the map is none of it.
  EXPECT_EQ(text->message, whole);
  ExpectUsable();
}

// Every call of the reopening that can fail: the handle is made anew and opened without the file. The two warnings
// are failures like any other.
TEST_P(GcfStatus, OfALoadRecreatesTheHandleAndIsReported) {
  struct {
    const char *function;
    Match match;
    size_t calls;  // until the failure, it included
  } const kCases[] = {{"GRB_Close", Match(Op::Close), 1},
                      {"GRB_ParameterSet", Match(Op::ParameterSet, GRB_OPEN_CONFIG_FILE), 2},
                      {"GRB_ParameterSet", Match(Op::ParameterSet, GRB_OPEN_BOARD), 3},
                      {"GRB_ParameterSet", Match(Op::ParameterSet, GRB_OPEN_CHANNEL), 4},
                      {"GRB_ParameterSet", Match(Op::ParameterSet, GRB_OPEN_MODE), 5},
                      {"GRB_ParameterSet", Match(Op::ParameterSet, GRB_OPEN_VARIANT), 6},
                      {"GRB_Open", Match(Op::Open), 7}};
  for (const auto &row : kCases) {
    SCOPED_TRACE(row.calls);
    const GRB_HANDLE handle = StreamHandle();
    Script().On(row.match, Bang(GetParam()));
    EXPECT_GC_FROM(GC_ERR_ERROR, LoadFailure(LibraryText(row.function, GetParam())),
                   "GenICam::Client::CGrbStreamHandle::LoadGcf", Load(m_strPath));

    Lines expected = CloseAndConfigure(handle, m_strPath) + OpenCalls(handle, GRB_MODE_ACQ_ONLY);
    expected.resize(row.calls);
    expected.back() += Format(" = 0x%x", GetParam());
    const std::vector<GRB_HANDLE> created = Created(m_nMark);
    ASSERT_EQ(created.size(), 1U);
    EXPECT_NE(created[0], handle);
    EXPECT_EQ(Calls(), expected + Lines{"Destroy(" + HandleName(handle) + ")"} +
                           CreateAndOpenCalls(created[0], GRB_MODE_ACQ_ONLY));
    EXPECT_EQ(StreamHandle(), created[0]);
    ExpectUsable();
  }
}

TEST_P(GcfStatus, OfASaveIsReported) {
  Script().On(Match(Op::Action), Bang(GetParam()));
  EXPECT_GC(GC_ERR_ERROR, "Failed saving GCF file: " + LibraryText("GRB_Action", GetParam()), Save("a.gcf"));
  EXPECT_TRUE(ComesFrom(kFeatureWrite, kFeatureFile));
  ExpectUsable();
}

INSTANTIATE_TEST_SUITE_P(Statuses, GcfStatus, testing::Values(kStatus, GRB_WARNING_PASSED, GRB_WARNING_TIMEOUT));

// The words are those that stand there when the failure is raised: the reopening's, if it fails as well.
TEST_F(GcfTest, LoadWhoseReopeningFailsTooHasTheReopeningsWords) {
  Script().On(Match(Op::Open), Reply::Failure(1, "First."), When::Nth(1));
  Script().On(Match(Op::Open), Reply::Failure(2, "Second."), When::Nth(2));
  EXPECT_GC(GC_ERR_ERROR, LoadFailure(LibraryText("GRB_Open", 2, "Second.")), Load(m_strPath));
  EXPECT_EQ(StreamHandle(), 0U);
  // A stream can be opened on the handle all the same: that it is valid was decided with the Device.
  OpenStream();
  // It can be loaded again later.
  EXPECT_GC_OK(Load(m_strPath));
  ExpectUsable();
}

TEST_F(GcfTest, LoadWhoseRecreationFailsReportsThat) {
  Script().On(Match(Op::Open), Reply::Failure(1, "First."));
  Script().On(Match(Op::Create), Bang());
  EXPECT_GC(GC_ERR_ERROR, LibraryText("GRB_Create"), Load(m_strPath));
}

TEST_F(GcfTest, LoadOnTheSecondBoardNamesItsNumbers) {
  Script().SetBoard(GRB_BOARD_2, "Name=Second\nModel=GL-CXP4\n");
  Script().SetCamera(GRB_BOARD_2, GRB_CHANNEL_7, CCamera());
  bool8_t changed = 0;
  ASSERT_GC_OK(Gc().TLUpdateInterfaceList(m_hSystem, &changed, 0));
  IF_HANDLE secondInterface = nullptr;
  ASSERT_GC_OK(Gc().TLOpenInterface(m_hSystem, "GL-CXP4-#2", &secondInterface));
  DEV_HANDLE device = nullptr;
  ASSERT_GC_OK(Gc().IFOpenDevice(secondInterface, "Channel #7", DEVICE_ACCESS_CONTROL, &device));
  EXPECT_GC_OK(WriteText(device, kLoadName, m_strPath, kNameSize));
  Script().On(Match(Op::Open), Bang());
  EXPECT_GC(GC_ERR_ERROR,
            "Failed loading GCF file (BoardNumber = c0010002 , ChannelNumber = c0010025): " + LibraryText("GRB_Open"),
            WriteU32(device, kLoad, 1));
}

TEST_F(GcfTest, CloseAfterALoadReleasesTheHandleOfNow) {
  Script().On(Match(Op::Open), Bang());
  EXPECT_GC_CODE(GC_ERR_ERROR, Load(m_strPath));
  const GRB_HANDLE stream = StreamHandle();
  const GRB_HANDLE control = ControlHandle();
  const size_t mark = Script().Mark();
  CloseDevice();
  EXPECT_EQ(Script().Trace(mark), CloseCalls(stream) + CloseCalls(control));
  EXPECT_EQ(Script().CreatedHandles(), 0U);
}

// Save ----------------------------------------------------------------------------------------------------------------

TEST_F(GcfTest, SaveIsOneActionWithTheName) {
  EXPECT_GC_OK(Save("/somewhere/save.gcf"));
  EXPECT_EQ(Calls(),
            (Lines{"Action(" + HandleName(StreamHandle()) + ", 0xc0040100, 0xc0040007, \"/somewhere/save.gcf\")"}));
}

TEST_F(GcfTest, SaveRunsWhateverIsWritten) {
  for (const uint32_t value : {0U, 1U, 0xFFFFFFFFU}) {
    EXPECT_GC_OK(Save("a.gcf", value));
    EXPECT_EQ(Calls().size(), 1U);
    EXPECT_EQ(ReadU32(m_hDevice, kSave), value);
  }
}

TEST_F(GcfTest, SaveDropsEveryDoubleQuote) {
  for (const char *name : {"\"a b.gcf\"", "a b.gcf\"", "a\" b.gc\"\"f", "\"\"\"a b.gcf"}) {
    SCOPED_TRACE(name);
    EXPECT_GC_OK(Save(name));
    EXPECT_EQ(Calls(), (Lines{"Action(" + HandleName(StreamHandle()) + ", 0xc0040100, 0xc0040007, \"a b.gcf\")"}));
  }
}

// Nothing looks at the name ahead of the library.
TEST_F(GcfTest, SaveWithoutANameReachesTheLibrary) {
  EXPECT_GC_OK(Save(""));
  EXPECT_EQ(Calls(), (Lines{"Action(" + HandleName(StreamHandle()) + ", 0xc0040100, 0xc0040007, \"\")"}));
}

TEST_F(GcfTest, SaveTakesNamesUpToTheWholeRegister) {
  for (const size_t length : {size_t{1023}, size_t{1024}}) {
    SCOPED_TRACE(length);
    const std::string name(length, 'n');
    EXPECT_GC_OK(Save(name));
    ASSERT_EQ(Script().Calls(m_nMark).size(), 1U);
    EXPECT_EQ(Script().Calls(m_nMark)[0].text, name);
  }
}

// The name ends at its first zero.
TEST_F(GcfTest, SaveIgnoresWhatStandsBehindAZero) {
  EXPECT_GC_OK(WriteText(m_hDevice, kSaveName, "a much longer name.gcf", kNameSize));
  EXPECT_GC_OK(WriteBytes(m_hDevice, kSaveName, {'b', 0, 'c', 'd'}));
  const size_t mark = Script().Mark();
  EXPECT_GC_OK(WriteU32(m_hDevice, kSave, 1));
  EXPECT_EQ(Script().Trace(mark), (Lines{"Action(" + HandleName(StreamHandle()) + ", 0xc0040100, 0xc0040007, \"b\")"}));
}

// The two names do not mix.
TEST_F(GcfTest, LoadAndSaveHaveNamesOfTheirOwn) {
  EXPECT_GC_OK(WriteText(m_hDevice, kLoadName, m_strPath, kNameSize));
  EXPECT_GC_OK(Save("b.gcf"));
  EXPECT_EQ(Script().Calls(m_nMark)[0].text, "b.gcf");
  const size_t mark = Script().Mark();
  EXPECT_GC_OK(WriteU32(m_hDevice, kLoad, 1));
  EXPECT_EQ(Script().Calls(Match(Op::ParameterSet, GRB_OPEN_CONFIG_FILE), mark)[0].text, m_strPath);
}

// A load holds the handle's lock; the features take none and do not wait for it.
TEST_F(GcfTest, LoadDoesNotHoldUpTheFeatures) {
  SetParameter(GRB_CAM_ACTIVE_XLENGTH, 640);
  std::atomic<bool> isRead{false};
  std::thread reader;
  Script().On(Match(Op::Open), Reply::Pass().Do([&](const Call &) {
    reader = std::thread([&] {
      EXPECT_EQ(ReadU32(m_hDevice, 0x614), 640U);
      isRead = true;
    });
    EXPECT_TRUE(WaitUntil([&] { return isRead.load(); }));
  }));
  EXPECT_GC_OK(Load(m_strPath));
  ASSERT_TRUE(reader.joinable());
  reader.join();
}

// Longer writes -------------------------------------------------------------------------------------------------------

// Each word is stored, and its command runs, ahead of the next word.

TEST_F(GcfTest, LoadRunsAheadOfTheNextWordOfTheName) {
  EXPECT_GC_OK(WriteText(m_hDevice, kLoadName, m_strPath, kNameSize));
  const std::vector<uint8_t> letters = {'n', 'e', 'w', '!'};
  m_nMark = Script().Mark();
  EXPECT_GC_OK(WriteBytes(m_hDevice, kLoad, {1, 0, 0, 0, 'n', 'e', 'w', '!'}));
  const GRB_HANDLE handle = StreamHandle();
  EXPECT_EQ(Calls(), CloseAndConfigure(handle, m_strPath) + OpenCalls(handle, GRB_MODE_ACQ_ONLY));
  EXPECT_EQ(ReadBytes(m_hDevice, kLoadName, 4), letters);
}

// The first word decides what becomes of the whole: here a parameter, set behind the load.
TEST_F(GcfTest, LoadRunsAheadOfTheParameterInFrontOfIt) {
  EXPECT_GC_OK(WriteText(m_hDevice, kLoadName, m_strPath, kNameSize));
  const GRB_HANDLE handle = StreamHandle();
  m_nMark = Script().Mark();
  EXPECT_GC_OK(WriteBytes(m_hDevice, kLoad - 4, {3, 0, 0, 0, 1, 0, 0, 0}));
  EXPECT_EQ(Calls(), CloseAndConfigure(handle, m_strPath) + OpenCalls(handle, GRB_MODE_ACQ_ONLY) +
                         Lines{"ParameterSet(" + HandleName(handle) + ", GRB_LUT_SHIFT, 0x3)"});
}

TEST_F(GcfTest, FailedLoadKeepsTheParameterInFrontOfItFromTheLibrary) {
  EXPECT_GC_OK(WriteText(m_hDevice, kLoadName, m_strPath, kNameSize));
  Script().On(Match(Op::Open), Bang());
  m_nMark = Script().Mark();
  EXPECT_GC(GC_ERR_ERROR, LoadFailure(LibraryText("GRB_Open")),
            WriteBytes(m_hDevice, kLoad - 4, {3, 0, 0, 0, 1, 0, 0, 0}));
  EXPECT_EQ(Script().Count(Match(Op::ParameterSet, GRB_LUT_SHIFT), m_nMark), 0U);
  EXPECT_EQ(ReadU32(m_hDevice, kLoad), 1U);
}

TEST_F(GcfTest, FailedLoadKeepsTheNextWordFromTheMap) {
  EXPECT_GC_CODE(GC_ERR_INVALID_PARAMETER, WriteBytes(m_hDevice, kLoad, {1, 0, 0, 0, 'n', 'e', 'w', '!'}));
  EXPECT_EQ(ReadU32(m_hDevice, kLoad), 1U);
  EXPECT_EQ(ReadU32(m_hDevice, kLoadName), 0U);
}

TEST_F(GcfTest, ParameterBehindASaveStaysInTheMap) {
  SetParameter(GRB_CAM_FORMAT, GRB_CAM_INTERLACED);
  EXPECT_GC_OK(WriteText(m_hDevice, kSaveName, "a.gcf", kNameSize));
  m_nMark = Script().Mark();
  EXPECT_GC_OK(WriteBytes(m_hDevice, kSave, {1, 0, 0, 0, 0x77, 0, 0, 0}));
  EXPECT_EQ(Calls(), (Lines{"Action(" + HandleName(StreamHandle()) + ", 0xc0040100, 0xc0040007, \"a.gcf\")"}));
  EXPECT_EQ(ReadBytes(m_hDevice, kSave, 8), (std::vector<uint8_t>{1, 0, 0, 0, 0x77, 0, 0, 0}));
  EXPECT_EQ(ReadU32(m_hDevice, kSave + 4), GRB_CAM_INTERLACED);
}

TEST_F(GcfTest, NothingHappensWithoutAStream) {
  CloseDevice();
  OpenDevice(kCustomAccess);
  EXPECT_GC(GC_ERR_ERROR, NoHandleToWrite(kLoad), Load(m_strPath));
  EXPECT_EQ(Calls(), Lines());
  EXPECT_GC(GC_ERR_ERROR, NoHandleToWrite(kSave), Save("a.gcf"));
  EXPECT_EQ(Calls(), Lines());
  CloseDevice();
  OpenDevice(DEVICE_ACCESS_READONLY);
  for (const uint32_t address : {kLoad, kSave, kLoadName, kSaveName}) {
    EXPECT_GC(GC_ERR_ACCESS_DENIED, "Cannot write to device in READONLY mode.", WriteU32(m_hDevice, address, 1));
  }
}

// The command's word is the last of the write: the name is in the map before it runs.
TEST_F(GcfTest, SaveAtTheEndOfAWriteOfItsNameHasThatName) {
  EXPECT_GC_OK(WriteText(m_hDevice, kSaveName, "old.gcf", kNameSize));
  std::vector<uint8_t> bytes(kNameSize + 4);
  const std::string name = "new.gcf";
  std::copy(name.begin(), name.end(), bytes.begin());
  m_nMark = Script().Mark();
  EXPECT_GC_OK(WriteBytes(m_hDevice, kSaveName, bytes));
  EXPECT_EQ(Calls(), (Lines{"Action(" + HandleName(StreamHandle()) + ", 0xc0040100, 0xc0040007, \"new.gcf\")"}));
}

// The messages are joined and not formatted: none of the library's words is cut off.
TEST_F(GcfTest, WordsOfAFailureAreWhole) {
  const std::string words(1000, 'w');
  Script().On(Match(Op::Open), Reply::Failure(kStatus, words).NullFunction());
  EXPECT_GC(GC_ERR_ERROR, LoadFailure(words), Load(m_strPath));
  Script().On(Match(Op::Action), Reply::Failure(kStatus, words).NullFunction());
  EXPECT_GC(GC_ERR_ERROR, "Failed saving GCF file: " + words, Save("a.gcf"));
}

}  // namespace
}  // namespace DeviceTests
