// SPDX-License-Identifier: MIT
/// @file
/// The library as a whole: its three states, what each of the 52 functions does in them, GCGetInfo.
#include <set>
#include <string>
#include <vector>

#include "Tree.h"

using namespace FrameTests;

namespace {

TEST(ExportTable, HasAll52Once) {
  std::set<std::string> names;
  for (const ExportRow &row : Exports()) {
    names.insert(row.name);
  }
  EXPECT_EQ(52U, Exports().size());
  EXPECT_EQ(52U, names.size());
}

// ---------------------------------------------------------------------------------------------------------------------
// Loaded: nothing but GCInitLib
// ---------------------------------------------------------------------------------------------------------------------

class Uninitialised : public LoadedProducerTest, public testing::WithParamInterface<ExportRow> {
 protected:
  void ExpectRefused(void *handle) {
    EXPECT_GC_FROM(GC_ERR_NOT_INITIALIZED, kNotInitialised, "GenICam::Client::ThrowIfLibraryNotInitialised",
                   GetParam().call(Gc(), handle));
  }
};

TEST_P(Uninitialised, RefusesBeforeTheFirstGCInitLib) {
  CProducer::Instance().Reload();
  ExpectRefused(nullptr);
}

TEST_P(Uninitialised, RefusesBehindGCCloseLib) {
  ASSERT_GC_OK(Gc().GCInitLib());
  ASSERT_EQ(GC_ERR_SUCCESS, Gc().GCCloseLib());
  ExpectRefused(nullptr);
}

// The state comes ahead of the handle: a closed one is not looked at.
TEST_P(Uninitialised, RefusesAheadOfTheHandle) {
  ASSERT_GC_OK(Gc().GCInitLib());
  TL_HANDLE system = nullptr;
  ASSERT_GC_OK(Gc().TLOpen(&system));
  ASSERT_EQ(GC_ERR_SUCCESS, Gc().GCCloseLib());
  ExpectRefused(system);
}

std::vector<ExportRow> AllButInit() {
  std::vector<ExportRow> rows = Exports();
  rows.erase(rows.begin());
  return rows;
}

INSTANTIATE_TEST_SUITE_P(Exports, Uninitialised, testing::ValuesIn(AllButInit()), NameOfExport);

using LibraryLoaded = LoadedProducerTest;

TEST_F(LibraryLoaded, InitialisesOnceAndStaysInitialised) {
  EXPECT_GC_OK(Gc().GCInitLib());
  EXPECT_GC_FROM(GC_ERR_RESOURCE_IN_USE, "GenTL producer already initialised. Call GCCloseLib() first.",
                 "GenICam::Client::GCInitLib", Gc().GCInitLib());
  EXPECT_EQ("CXP", GcInfo(TL_INFO_TLTYPE).Text());
  EXPECT_EQ(GC_ERR_SUCCESS, Gc().GCCloseLib());
  EXPECT_GC(GC_ERR_NOT_INITIALIZED, kNotInitialised, Gc().GCCloseLib());
}

TEST_F(LibraryLoaded, TouchesNoHardwareAndOpensNoSystem) {
  const size_t mark = Script().Mark();
  ASSERT_GC_OK(Gc().GCInitLib());
  EXPECT_EQ(0U, Script().Calls(mark).size());
  uint32_t count = 0;
  EXPECT_GC(GC_ERR_INVALID_HANDLE, kNoSystem, Gc().TLGetNumInterfaces(nullptr, &count));
  EXPECT_EQ(GC_ERR_SUCCESS, Gc().GCCloseLib());
}

TEST_F(LibraryLoaded, OpensAndClosesWithoutLimit) {
  for (int i = 0; i < 50; ++i) {
    ASSERT_GC_OK(Gc().GCInitLib());
    if (i % 2 == 1) {
      TL_HANDLE system = nullptr;
      ASSERT_GC_OK(Gc().TLOpen(&system));
      if (i % 4 == 1) {
        ASSERT_GC_OK(Gc().TLClose(system));
      }
    }
    ASSERT_EQ(GC_ERR_SUCCESS, Gc().GCCloseLib());
  }
  EXPECT_EQ(0U, Script().CreatedHandles());
}

// ---------------------------------------------------------------------------------------------------------------------
// Initialised: no System module
// ---------------------------------------------------------------------------------------------------------------------

class WithoutSystem : public ProducerTest, public testing::WithParamInterface<ExportRow> {};

TEST_P(WithoutSystem, HandlesAreRefused) {
  EXPECT_GC_FROM(GC_ERR_INVALID_HANDLE, kNoSystem, "GenICam::Client::ThrowIfTLNotOpened",
                 GetParam().call(Gc(), nullptr));
}

TEST_P(WithoutSystem, ClosedHandlesAreRefused) {
  const TL_HANDLE system = OpenSystem();
  ASSERT_GC_OK(Gc().TLClose(system));
  m_hSystem = nullptr;
  EXPECT_GC_FROM(GC_ERR_INVALID_HANDLE, kNoSystem, "GenICam::Client::ThrowIfTLNotOpened",
                 GetParam().call(Gc(), system));
}

INSTANTIATE_TEST_SUITE_P(Exports, WithoutSystem, testing::ValuesIn(ExportsWithHandle()), NameOfExport);

// ---------------------------------------------------------------------------------------------------------------------
// Open: null handles and handles of another class
// ---------------------------------------------------------------------------------------------------------------------

class WrongHandle : public TreeTest, public testing::WithParamInterface<ExportRow> {};

TEST_P(WrongHandle, NullIsRefused) {
  EXPECT_GC_FROM(GC_ERR_INVALID_HANDLE, kInvalidHandle, "GenICam::Client::TypeCast", GetParam().call(Gc(), nullptr));
}

TEST_P(WrongHandle, AnotherClassIsRefused) {
  struct Candidate {
    const char *name;
    void *handle;
    std::set<Takes> good;
  };
  const Candidate candidates[] = {
      {"system", m_Tree.system, {Takes::System, Takes::Port, Takes::EventSource}},
      {"interface", m_Tree.iface, {Takes::Interface, Takes::Port, Takes::EventSource}},
      {"device", m_Tree.device, {Takes::Device, Takes::Port, Takes::EventSource}},
      {"remote port", m_Tree.remote, {Takes::Port, Takes::EventSource}},
      {"stream", m_Tree.stream, {Takes::Stream, Takes::Port, Takes::EventSource}},
      {"buffer", m_Tree.buffer, {Takes::Port, Takes::EventSource}},
      {"error event", m_Tree.errorEvent, {Takes::Event}},
      {"new buffer event", m_Tree.newBufferEvent, {Takes::Event}},
  };
  const size_t mark = Script().Mark();
  for (const Candidate &candidate : candidates) {
    if (candidate.good.count(GetParam().takes) == 0) {
      SCOPED_TRACE(candidate.name);
      EXPECT_GC_FROM(GC_ERR_INVALID_HANDLE, kInvalidHandle, "GenICam::Client::TypeCast",
                     GetParam().call(Gc(), candidate.handle));
    }
  }
  EXPECT_EQ(0U, Script().Calls(mark).size());
}

INSTANTIATE_TEST_SUITE_P(Exports, WrongHandle, testing::ValuesIn(ExportsWithHandle()), NameOfExport);

using OpenLibrary = TreeTest;

TEST_F(OpenLibrary, EveryModuleIsAPortAndAnEventSource) {
  for (void *handle : {m_Tree.system, m_Tree.iface, m_Tree.device, m_Tree.remote, m_Tree.stream}) {
    EXPECT_EQ(GC_ERR_SUCCESS, PortInfo(handle, PORT_INFO_MODULE).result);
    EVENT_HANDLE event = nullptr;
    EXPECT_NE(GC_ERR_INVALID_HANDLE, Gc().GCRegisterEvent(handle, EVENT_FEATURE_CHANGE, &event));
  }
}

TEST_F(OpenLibrary, GCCloseLibClosesAllThatIsOpen) {
  EXPECT_GT(Script().OpenHandles(), 0U);
  EXPECT_EQ(GC_ERR_SUCCESS, Gc().GCCloseLib());
  EXPECT_EQ(0U, Script().CreatedHandles());
  m_hSystem = m_hInterface = m_hDevice = m_hStream = nullptr;
  ASSERT_GC_OK(Gc().GCInitLib());
  EXPECT_GC(GC_ERR_INVALID_HANDLE, kNoSystem, Gc().TLClose(m_Tree.system));
}

TEST_F(OpenLibrary, GCCloseLibStopsARunningStream) {
  ASSERT_GC_OK(Gc().DSStartAcquisition(m_Tree.stream, ACQ_START_FLAGS_DEFAULT, GENTL_INFINITE));
  EXPECT_EQ(GC_ERR_SUCCESS, Gc().GCCloseLib());
  EXPECT_EQ(0U, Script().CreatedHandles());
  EXPECT_GE(Script().Count(Match(Op::StreamRead, GRB_STREAM_STOP)), 1U);
  m_hSystem = m_hInterface = m_hDevice = m_hStream = nullptr;
  ASSERT_GC_OK(Gc().GCInitLib());
}

TEST_F(OpenLibrary, TLCloseClosesAllThatIsOpen) {
  EXPECT_GC_OK(Gc().TLClose(m_Tree.system));
  EXPECT_EQ(0U, Script().CreatedHandles());
  m_hSystem = m_hInterface = m_hDevice = m_hStream = nullptr;
}

TEST_F(OpenLibrary, TLCloseOfADeviceHandleFailsInTheCast) {
  EXPECT_GC(GC_ERR_INVALID_HANDLE, kInvalidHandle, Gc().TLClose(m_Tree.device));
}

TEST_F(OpenLibrary, SecondGCInitLibLeavesTheTreeAlone) {
  EXPECT_GC_CODE(GC_ERR_RESOURCE_IN_USE, Gc().GCInitLib());
  EXPECT_EQ("Stream #1", PortInfo(m_Tree.stream, PORT_INFO_ID).Text());
}

// ---------------------------------------------------------------------------------------------------------------------
// GCGetInfo
// ---------------------------------------------------------------------------------------------------------------------

struct TextRow {
  TL_INFO_CMD command;
  const char *text;  ///< null: the file's name or path
  bool path;
};
std::ostream &operator<<(std::ostream &out, const TextRow &row) { return out << "command " << row.command; }

std::string Expected(const TextRow &row) {
  if (row.text != nullptr) {
    return row.text;
  }
  return row.path ? CProducer::Path() : CProducer::FileName();
}

constexpr TextRow kInfoRows[] = {
    {TL_INFO_ID, nullptr, false},
    {TL_INFO_VENDOR, "Lumivex", false},
    {TL_INFO_MODEL, "Lumivex Transport Layer", false},
    {TL_INFO_VERSION, kVersion, false},
    {TL_INFO_TLTYPE, "CXP", false},
    {TL_INFO_NAME, nullptr, false},
    {TL_INFO_PATHNAME, nullptr, true},
    {TL_INFO_DISPLAYNAME, "Lumivex GenTL", false},
};

class GcInfoCommand : public ProducerTest, public testing::WithParamInterface<TextRow> {};

TEST_P(GcInfoCommand, AnswersWithoutASystem) {
  const Info info = GcInfo(GetParam().command);
  EXPECT_EQ(GC_ERR_SUCCESS, info.result);
  EXPECT_EQ(INFO_DATATYPE_STRING, info.type);
  EXPECT_EQ(Expected(GetParam()), info.Text());
  EXPECT_EQ(Expected(GetParam()).size() + 1, info.size);
}

TEST_P(GcInfoCommand, AnswersTheSameWithASystem) {
  OpenSystem();
  EXPECT_EQ(Expected(GetParam()), GcInfo(GetParam().command).Text());
}

TEST_P(GcInfoCommand, OneByteTooFewFails) {
  const size_t needed = Expected(GetParam()).size() + 1;
  std::vector<char> buffer(needed, 'u');
  size_t size = needed - 1;
  INFO_DATATYPE type = -77;
  EXPECT_GC(GC_ERR_INVALID_PARAMETER, "Invalid Buffer Size.",
            Gc().GCGetInfo(GetParam().command, &type, buffer.data(), &size));
  EXPECT_EQ(needed - 1, size);
  EXPECT_EQ(INFO_DATATYPE_STRING, type);
  EXPECT_EQ(std::vector<char>(needed, 'u'), buffer);
}

TEST_P(GcInfoCommand, NullBufferAsksForTheSizeWhateverItWas) {
  for (const size_t before : {size_t{0}, size_t{1}, size_t{100000}}) {
    size_t size = before;
    INFO_DATATYPE type = -77;
    EXPECT_GC_OK(Gc().GCGetInfo(GetParam().command, &type, nullptr, &size));
    EXPECT_EQ(Expected(GetParam()).size() + 1, size);
    EXPECT_EQ(INFO_DATATYPE_STRING, type);
  }
}

INSTANTIATE_TEST_SUITE_P(Commands, GcInfoCommand, testing::ValuesIn(kInfoRows));

using GcInfoTest = ProducerTest;

TEST_F(GcInfoTest, OtherCommandsAreRefused) {
  for (const TL_INFO_CMD command : {-1, 8, 9, 10, 999, 1000, 0x7FFFFFFF}) {
    size_t size = 16;
    char buffer[16] = {};
    INFO_DATATYPE type = -77;
    EXPECT_GC_FROM(GC_ERR_INVALID_PARAMETER, "Unsupported GCInfo parameter", "GenICam::Client::GCGetInfo",
                   Gc().GCGetInfo(command, &type, buffer, &size))
        << command;
    EXPECT_EQ(16U, size);
    EXPECT_EQ(-77, type);
  }
}

TEST_F(GcInfoTest, PathIsAbsoluteAndNamesTheFile) {
  const std::string path = GcInfo(TL_INFO_PATHNAME).Text();
  EXPECT_EQ('/', path.front());
  EXPECT_EQ(path.substr(path.rfind('/') + 1), GcInfo(TL_INFO_ID).Text());
}

// ---------------------------------------------------------------------------------------------------------------------
// TLOpen and TLClose
// ---------------------------------------------------------------------------------------------------------------------

using SystemOpening = ProducerTest;

TEST_F(SystemOpening, TouchesNoHardware) {
  const size_t mark = Script().Mark();
  OpenSystem();
  EXPECT_EQ(0U, Script().Calls(mark).size());
}

TEST_F(SystemOpening, NullPointerFailsAndOpensNothing) {
  EXPECT_GC_FROM(GC_ERR_INVALID_PARAMETER, "Null TL_HANDLE pointer.", "GenICam::Client::TLOpen", Gc().TLOpen(nullptr));
  OpenSystem();
}

TEST_F(SystemOpening, SecondOpeningFailsAndTheFirstHandleStays) {
  const TL_HANDLE system = OpenSystem();
  TL_HANDLE second = &second;
  EXPECT_GC_FROM(GC_ERR_RESOURCE_IN_USE, "System module already opened in this process", "GenICam::Client::TLOpen",
                 Gc().TLOpen(&second));
  EXPECT_EQ(&second, second);
  EXPECT_GC(GC_ERR_RESOURCE_IN_USE, "System module already opened in this process", Gc().TLOpen(nullptr))
      << "the open module is looked at ahead of the pointer";
  EXPECT_EQ("Lumivex GenTL", TlInfo(system, TL_INFO_DISPLAYNAME).Text());
}

TEST_F(SystemOpening, ClosesAndOpensAgain) {
  for (int i = 0; i < 20; ++i) {
    OpenSystem();
    OpenInterface();
    ASSERT_GC_OK(Gc().TLClose(m_hSystem));
    m_hSystem = m_hInterface = nullptr;
  }
  EXPECT_EQ(0U, Script().CreatedHandles());
}

}  // namespace
