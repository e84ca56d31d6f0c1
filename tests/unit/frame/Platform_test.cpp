// SPDX-License-Identifier: MIT
/// @file
/// The Producer over a platform that fails: resources, names, versions, settings store, and exceptions of every class
/// on their way to the exported boundary.
#include <cstdio>
#include <functional>
#include <memory>
#include <new>
#include <ostream>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "FakePlatform.h"
#include "GenTL.h"
#include "Helper.h"
#include "Producer.h"
#include "ScriptedGrb.h"
#include "Settings.h"
#include "TL.h"
#include "TLIException.h"

using namespace GenICam::Client;
using FakePlatform::Get;
namespace Platform = Lumivex::Platform;

namespace {

struct Record {
  GC_ERROR code = 0;
  std::string text;
};

Record LastRecord() {
  char text[1024] = {};
  size_t size = sizeof(text);
  Record record;
  EXPECT_EQ(GC_ERR_SUCCESS, GCGetLastError(&record.code, text, &size));
  record.text = text;
  return record;
}

/// function and file null: any
testing::AssertionResult Fails(GC_ERROR expected, const std::string &message, GC_ERROR actual,
                               const char *function = nullptr, const char *file = nullptr) {
  const Record record = LastRecord();
  const auto pieces = TestSupport::SplitFailureText(record.text);
  if (actual != expected || record.code != expected || !pieces || pieces->message != message) {
    return testing::AssertionFailure() << "returned " << actual << ", record " << record.code << " '" << record.text
                                       << "'\n  wanted " << expected << " '" << message << "'";
  }
  if ((function != nullptr && pieces->function != function) || (file != nullptr && pieces->file != file)) {
    return testing::AssertionFailure() << "'" << record.text << "' names another place";
  }
  return testing::AssertionSuccess();
}

/// The answer of an info function as a text.
std::string TextOf(const std::function<GC_ERROR(INFO_DATATYPE *, void *, size_t *)> &call) {
  char text[4096] = {};
  size_t size = sizeof(text);
  INFO_DATATYPE type = -77;
  EXPECT_EQ(GC_ERR_SUCCESS, call(&type, text, &size)) << LastRecord().text;
  EXPECT_EQ(INFO_DATATYPE_STRING, type);
  return text;
}

class FakePlatformTest : public testing::Test {
 protected:
  void SetUp() override {
    FakePlatform::Reset();
    Scripted::Script().Reset();
    ASSERT_EQ(GC_ERR_SUCCESS, GCInitLib());
  }
  void TearDown() override {
    Get().onFind = nullptr;
    EXPECT_EQ(GC_ERR_SUCCESS, GCCloseLib());
    EXPECT_TRUE(Get().messages.empty());
    EXPECT_EQ(0U, Scripted::Script().CreatedHandles());
  }
  TL_HANDLE OpenSystem() {
    TL_HANDLE handle = nullptr;
    EXPECT_EQ(GC_ERR_SUCCESS, TLOpen(&handle)) << LastRecord().text;
    return handle;
  }
  IF_HANDLE OpenInterface(TL_HANDLE system) {
    IF_HANDLE handle = nullptr;
    EXPECT_EQ(GC_ERR_SUCCESS, TLOpenInterface(system, Scripted::CScriptedGrb::kDefaultInterfaceId, &handle))
        << LastRecord().text;
    return handle;
  }
  DEV_HANDLE OpenDevice(IF_HANDLE iface) {
    DEV_HANDLE handle = nullptr;
    EXPECT_EQ(GC_ERR_SUCCESS, IFOpenDevice(iface, "Channel #1", DEVICE_ACCESS_EXCLUSIVE, &handle)) << LastRecord().text;
    return handle;
  }
};

// ---------------------------------------------------------------------------------------------------------------------
// Resources
// ---------------------------------------------------------------------------------------------------------------------

struct ResourceRow {
  const char *name;
  uint16_t number;
  const char *type;
  uint64_t address;
  const char *file;
  const char *lockText;
  const char *thrower;  ///< whom the failures name, and in which file
  const char *source;
};
std::ostream &operator<<(std::ostream &out, const ResourceRow &row) { return out << row.name; }

constexpr ResourceRow kResourceRows[] = {
    {"System", 115, "TLREGS", 0x940, "LumivexTLSystem.xml", "Unable Lock Resource", "GenICam::Client::CTL::InitPort",
     "TL.cpp"},
    {"Interface", 116, "INTERFACEREGS", 0x700, "LumivexTLInterface.xml", "Unable Lock Resource",
     "GenICam::Client::CInterface::InitPort", "Interface.cpp"},
    {"Device", 118, "DEVTLREGS", 0x222C, "LumivexTLDevice.xml", "Unable to Lock Resource",
     "GenICam::Client::CDevice::InitPort", "Device.cpp"},
    {"DataStream", 121, "DSREGS", 0x200, "LumivexTLDataStream.xml", "Unable Lock Resource",
     "GenICam::Client::CDataStream::InitPort", "DataStream.cpp"},
};

class ModuleResource : public FakePlatformTest, public testing::WithParamInterface<ResourceRow> {
 protected:
  /// Opens the tree above the row's module.
  void OpenParents() {
    const std::string name = GetParam().name;
    if (name == "System") {
      return;
    }
    m_hSystem = FakePlatformTest::OpenSystem();
    if (name == "Interface") {
      return;
    }
    m_hInterface = FakePlatformTest::OpenInterface(m_hSystem);
    if (name == "Device") {
      return;
    }
    m_hDevice = FakePlatformTest::OpenDevice(m_hInterface);
  }
  /// Opens the row's module.
  GC_ERROR Open(void **pHandle) const {
    const std::string name = GetParam().name;
    if (name == "System") {
      return TLOpen(pHandle);
    }
    if (name == "Interface") {
      return TLOpenInterface(m_hSystem, Scripted::CScriptedGrb::kDefaultInterfaceId, pHandle);
    }
    if (name == "Device") {
      return IFOpenDevice(m_hInterface, "Channel #1", DEVICE_ACCESS_EXCLUSIVE, pHandle);
    }
    return DevOpenDataStream(m_hDevice, "Stream #1", pHandle);
  }
  /// After a failed opening: nothing is left behind, and the next opening succeeds.
  void ExpectGoodOpening() {
    Get().failFind = Get().failLoad = Get().failLock = false;
    Get().onFind = nullptr;
    void *handle = nullptr;
    EXPECT_EQ(GC_ERR_SUCCESS, Open(&handle)) << LastRecord().text;
    EXPECT_NE(nullptr, handle);
  }
  TL_HANDLE m_hSystem = nullptr;
  IF_HANDLE m_hInterface = nullptr;
  DEV_HANDLE m_hDevice = nullptr;
};

TEST_P(ModuleResource, IsAskedForByNumberAndType) {
  OpenParents();
  Get().resourcesAsked.clear();
  void *handle = nullptr;
  ASSERT_EQ(GC_ERR_SUCCESS, Open(&handle)) << LastRecord().text;
  EXPECT_EQ((std::vector<std::pair<uint16_t, std::string>>{{GetParam().number, GetParam().type}}),
            Get().resourcesAsked);
}

TEST_P(ModuleResource, MissingFailsTheOpeningWithTheLastError) {
  OpenParents();
  Get().failFind = true;
  Get().lastError = 1812;
  void *handle = nullptr;
  const size_t handles = Scripted::Script().CreatedHandles();
  EXPECT_TRUE(Fails(GC_ERR_INVALID_PARAMETER, "Unable to find Resource, Error 1812", Open(&handle), GetParam().thrower,
                    GetParam().source));
  EXPECT_EQ(nullptr, handle);
  EXPECT_EQ(handles, Scripted::Script().CreatedHandles()) << "a failed opening leaves nothing behind";
  ExpectGoodOpening();
}

TEST_P(ModuleResource, UnloadableFailsTheOpeningWithTheLastError) {
  OpenParents();
  Get().failLoad = true;
  Get().lastError = 7;
  void *handle = nullptr;
  EXPECT_TRUE(Fails(GC_ERR_INVALID_PARAMETER, "Unable to load Resource, Error 7", Open(&handle), GetParam().thrower,
                    GetParam().source));
  ExpectGoodOpening();
}

TEST_P(ModuleResource, UnlockableFailsTheOpening) {
  OpenParents();
  Get().failLock = true;
  void *handle = nullptr;
  EXPECT_TRUE(
      Fails(GC_ERR_INVALID_PARAMETER, GetParam().lockText, Open(&handle), GetParam().thrower, GetParam().source));
  ExpectGoodOpening();
}

TEST_P(ModuleResource, BadAllocIsAnUnknownException) {
  OpenParents();
  Get().onFind = [] { throw std::bad_alloc(); };
  void *handle = nullptr;
  EXPECT_EQ(GC_ERR_ERROR, Open(&handle));
  const Record record = LastRecord();
  EXPECT_EQ(GC_ERR_ERROR, record.code);
  EXPECT_EQ("GenTL Producer: unknown exception", record.text);
  ExpectGoodOpening();
}

// The XML size exceeds that of the resource by 1 to 4 bytes, and is a multiple of 4.
TEST_P(ModuleResource, SizeIsRoundedDownPlusFour) {
  OpenParents();
  for (const auto &[resource, xml] :
       {std::pair<size_t, size_t>{8, 12}, {9, 12}, {10, 12}, {11, 12}, {12, 16}, {1, 4}}) {
    Get().resource = std::string(resource, 'x');
    void *handle = nullptr;
    ASSERT_EQ(GC_ERR_SUCCESS, Open(&handle)) << LastRecord().text;
    char url[256] = {};
    char expected[256] = {};
    std::snprintf(expected, sizeof(expected), "Local:%s;%llx;%zx", GetParam().file,
                  static_cast<unsigned long long>(GetParam().address), xml);
    size_t size = sizeof(url);
    ASSERT_EQ(GC_ERR_SUCCESS, GCGetPortURL(handle, url, &size)) << LastRecord().text;
    EXPECT_STREQ(expected, url);

    std::string text(xml, '?');
    size = xml;
    ASSERT_EQ(GC_ERR_SUCCESS, GCReadPort(handle, GetParam().address, text.data(), &size)) << LastRecord().text;
    EXPECT_EQ(Get().resource + std::string(xml - resource, '\0'), text);
    size = xml + 4;
    std::string more(xml + 4, '?');
    EXPECT_EQ(GC_ERR_ERROR, GCReadPort(handle, GetParam().address, more.data(), &size)) << "the map ends with the text";

    const std::string name = GetParam().name;
    ASSERT_EQ(GC_ERR_SUCCESS, name == "System"      ? TLClose(handle)
                              : name == "Interface" ? IFClose(handle)
                              : name == "Device"    ? DevClose(handle)
                                                    : DSClose(handle));
  }
}

TEST_P(ModuleResource, ByteOrderMarkStays) {
  OpenParents();
  Get().resource = "\xEF\xBB\xBF<fake/>";
  void *handle = nullptr;
  ASSERT_EQ(GC_ERR_SUCCESS, Open(&handle)) << LastRecord().text;
  char text[12] = {};
  size_t size = sizeof(text);
  ASSERT_EQ(GC_ERR_SUCCESS, GCReadPort(handle, GetParam().address, text, &size)) << LastRecord().text;
  EXPECT_STREQ("\xEF\xBB\xBF<fake/>", text);
}

INSTANTIATE_TEST_SUITE_P(Modules, ModuleResource, testing::ValuesIn(kResourceRows),
                         [](const testing::TestParamInfo<ResourceRow> &row) { return std::string(row.param.name); });

TEST_F(FakePlatformTest, InterfaceWithoutAModuleHandleFails) {
  const TL_HANDLE system = OpenSystem();
  Get().module = nullptr;
  IF_HANDLE iface = nullptr;
  EXPECT_TRUE(Fails(GC_ERR_INVALID_PARAMETER, "Invalid Module Handle",
                    TLOpenInterface(system, Scripted::CScriptedGrb::kDefaultInterfaceId, &iface)));
  Get().module = &Get();
  OpenInterface(system);
}

// ---------------------------------------------------------------------------------------------------------------------
// A System module that is not the library's
// ---------------------------------------------------------------------------------------------------------------------

TEST_F(FakePlatformTest, OnlyTheSystemOfTheLibraryCanBeClosed) {
  const TL_HANDLE system = OpenSystem();
  const auto pOther = std::make_shared<CTL>();
  EXPECT_TRUE(Fails(GC_ERR_INVALID_HANDLE, "Handle different from unique handle held by library.",
                    TLClose(static_cast<ICommonBaseType *>(pOther.get()))));
  EXPECT_EQ(GC_ERR_SUCCESS, TLClose(system));
}

// ---------------------------------------------------------------------------------------------------------------------
// Names and versions
// ---------------------------------------------------------------------------------------------------------------------

TEST_F(FakePlatformTest, NamesComeFromThePath) {
  const TL_HANDLE system = OpenSystem();
  for (const TL_INFO_CMD command : {TL_INFO_ID, TL_INFO_NAME}) {
    EXPECT_EQ("fake.cti", TextOf([&](auto *t, auto *b, auto *s) { return GCGetInfo(command, t, b, s); }));
    EXPECT_EQ("fake.cti", TextOf([&](auto *t, auto *b, auto *s) { return TLGetInfo(system, command, t, b, s); }));
  }
  EXPECT_EQ(FakePlatform::kPath,
            TextOf([&](auto *t, auto *b, auto *s) { return GCGetInfo(TL_INFO_PATHNAME, t, b, s); }));
  EXPECT_EQ(FakePlatform::kPath,
            TextOf([&](auto *t, auto *b, auto *s) { return TLGetInfo(system, TL_INFO_PATHNAME, t, b, s); }));
  char text[1024] = {};
  size_t size = 256;
  ASSERT_EQ(GC_ERR_SUCCESS, GCReadPort(system, 0x100, text, &size));
  EXPECT_STREQ("fake.cti", text);
  size = 1024;
  ASSERT_EQ(GC_ERR_SUCCESS, GCReadPort(system, 0x200, text, &size));
  EXPECT_STREQ(FakePlatform::kPath, text);
}

TEST_F(FakePlatformTest, PathIsReadWithTheBufferOfEachPlace) {
  const auto sizesOf = [](const std::function<void()> &action) {
    Get().pathSizes.clear();
    action();
    return Get().pathSizes;
  };
  using Sizes = std::vector<size_t>;
  const auto gc = [](TL_INFO_CMD command) {
    TextOf([&](auto *t, auto *b, auto *s) { return GCGetInfo(command, t, b, s); });
  };
  EXPECT_EQ(Sizes{4096}, sizesOf([&] { gc(TL_INFO_ID); }));
  EXPECT_EQ(Sizes{4096}, sizesOf([&] { gc(TL_INFO_NAME); }));
  EXPECT_EQ(Sizes{2048}, sizesOf([&] { gc(TL_INFO_PATHNAME); }));
  TL_HANDLE system = nullptr;
  for (const size_t size : sizesOf([&] { system = OpenSystem(); })) {
    EXPECT_EQ(1024U, size);
  }
  const auto tl = [&](TL_INFO_CMD command) {
    TextOf([&](auto *t, auto *b, auto *s) { return TLGetInfo(system, command, t, b, s); });
  };
  EXPECT_EQ(Sizes{2048}, sizesOf([&] { tl(TL_INFO_ID); }));
  EXPECT_EQ(Sizes{2048}, sizesOf([&] { tl(TL_INFO_NAME); }));
  EXPECT_EQ(Sizes{2048}, sizesOf([&] { tl(TL_INFO_PATHNAME); }));
}

TEST_F(FakePlatformTest, PathWithoutASeparatorFailsWithTheTextOfEachPlace) {
  const TL_HANDLE system = OpenSystem();
  Get().path = "fake.cti";
  char text[64] = {};
  size_t size = sizeof(text);
  INFO_DATATYPE type = -77;
  EXPECT_TRUE(Fails(GC_ERR_ERROR, "Unable to parse filename", GCGetInfo(TL_INFO_ID, &type, text, &size)));
  EXPECT_TRUE(Fails(GC_ERR_ERROR, "Unable to parse filename", GCGetInfo(TL_INFO_NAME, &type, text, &size)));
  EXPECT_TRUE(Fails(GC_ERR_ERROR, "Failed to extract module name.", TLGetInfo(system, TL_INFO_ID, &type, text, &size)));
  EXPECT_TRUE(Fails(GC_ERR_ERROR, "Invalid Module Name", TLGetInfo(system, TL_INFO_NAME, &type, text, &size)));
  EXPECT_EQ("fake.cti", TextOf([&](auto *t, auto *b, auto *s) { return GCGetInfo(TL_INFO_PATHNAME, t, b, s); }));
  ASSERT_EQ(GC_ERR_SUCCESS, TLClose(system));
  TL_HANDLE second = nullptr;
  EXPECT_TRUE(Fails(GC_ERR_ERROR, "Invalid Module Name", TLOpen(&second)));
  Get().path = FakePlatform::kPath;
  OpenSystem();
}

TEST_F(FakePlatformTest, VersionIsFourNumbersHighWordFirst) {
  Get().versionMs = 0xFFFF0000;
  Get().versionLs = 0x000A0100;
  EXPECT_EQ("65535.0.10.256", TextOf([&](auto *t, auto *b, auto *s) { return GCGetInfo(TL_INFO_VERSION, t, b, s); }));
}

TEST_F(FakePlatformTest, VersionWithoutARecordIsFourZeros) {
  Get().hasVersion = false;
  EXPECT_EQ("0.0.0.0", TextOf([&](auto *t, auto *b, auto *s) { return GCGetInfo(TL_INFO_VERSION, t, b, s); }));
  const TL_HANDLE system = OpenSystem();
  EXPECT_EQ("0.0.0.0", TextOf([&](auto *t, auto *b, auto *s) { return TLGetInfo(system, TL_INFO_VERSION, t, b, s); }));
  EXPECT_EQ("0.0.0.0",
            TextOf([&](auto *t, auto *b, auto *s) { return GCGetPortInfo(system, PORT_INFO_VERSION, t, b, s); }));
  char text[16] = {};
  size_t size = sizeof(text);
  ASSERT_EQ(GC_ERR_SUCCESS, GCReadPort(system, 0xC8, text, &size));
  EXPECT_STREQ("0.0.0.0", text);
}

// The register has 16 bytes: a text that fills them is cut and still ends in a zero.
TEST_F(FakePlatformTest, LongVersionIsCutInTheRegister) {
  Get().versionMs = Get().versionLs = 0xFFFFFFFF;
  const TL_HANDLE system = OpenSystem();
  char text[16] = {};
  size_t size = sizeof(text);
  ASSERT_EQ(GC_ERR_SUCCESS, GCReadPort(system, 0xC8, text, &size));
  EXPECT_STREQ("65535.65535.655", text);
}

// ---------------------------------------------------------------------------------------------------------------------
// The catch sequence
// ---------------------------------------------------------------------------------------------------------------------

struct CatchRow {
  const char *name;
  std::function<void()> thrower;
  GC_ERROR code;
};
std::ostream &operator<<(std::ostream &out, const CatchRow &row) { return out << row.name; }

template <class Error>
std::function<void()> Throw() {
  return [] { throw Error("the words", "Space::Thrower", "/d/Thrower.cpp", 42U); };
}

class CatchSequence : public FakePlatformTest, public testing::WithParamInterface<CatchRow> {};

TEST_P(CatchSequence, GivesTheCodeAndTheTextUnchanged) {
  Get().onFind = GetParam().thrower;
  TL_HANDLE system = nullptr;
  EXPECT_EQ(GetParam().code, TLOpen(&system));
  const Record record = LastRecord();
  EXPECT_EQ(GetParam().code, record.code);
  EXPECT_EQ("the words (function 'Space::Thrower()', file 'Thrower.cpp', line 42)", record.text);
  EXPECT_EQ(nullptr, system);
  Get().onFind = nullptr;
  EXPECT_NE(nullptr, OpenSystem()) << "a failed construction leaves no System module";
}

INSTANTIATE_TEST_SUITE_P(Classes, CatchSequence,
                         testing::Values(CatchRow{"dynamic_cast_error", Throw<dynamic_cast_error>(), -1001},
                                         CatchRow{"unknown_error", Throw<unknown_error>(), -1001},
                                         CatchRow{"outofrange_error", Throw<outofrange_error>(), -1001},
                                         CatchRow{"access_error", Throw<access_error>(), -1001},
                                         CatchRow{"notinitialized_error", Throw<notinitialized_error>(), -1002},
                                         CatchRow{"notimplemented_error", Throw<notimplemented_error>(), -1003},
                                         CatchRow{"resourceinuse_error", Throw<resourceinuse_error>(), -1004},
                                         CatchRow{"accessdenied_error", Throw<accessdenied_error>(), -1005},
                                         CatchRow{"invalidhandle_error", Throw<invalidhandle_error>(), -1006},
                                         CatchRow{"invalidparameter_error", Throw<invalidparameter_error>(), -1009},
                                         CatchRow{"io_error", Throw<io_error>(), -1010},
                                         CatchRow{"timeout_error", Throw<timeout_error>(), -1011},
                                         CatchRow{"abort_error", Throw<abort_error>(), -1012},
                                         CatchRow{"invalidbuffer_error", Throw<invalidbuffer_error>(), -1013}),
                         [](const testing::TestParamInfo<CatchRow> &row) { return std::string(row.param.name); });

class CatchAll : public FakePlatformTest, public testing::WithParamInterface<CatchRow> {};

TEST_P(CatchAll, LosesTheWords) {
  Get().onFind = GetParam().thrower;
  TL_HANDLE system = nullptr;
  EXPECT_EQ(GC_ERR_ERROR, TLOpen(&system));
  const Record record = LastRecord();
  EXPECT_EQ(GC_ERR_ERROR, record.code);
  EXPECT_EQ("GenTL Producer: unknown exception", record.text);
}

INSTANTIATE_TEST_SUITE_P(Foreign, CatchAll,
                         testing::Values(CatchRow{"bad_alloc", [] { throw std::bad_alloc(); }, 0},
                                         CatchRow{"length_error", [] { throw std::length_error("words"); }, 0},
                                         CatchRow{"out_of_range", [] { throw std::out_of_range("words"); }, 0},
                                         CatchRow{"runtime_error", [] { throw std::runtime_error("words"); }, 0},
                                         CatchRow{"text", [] { throw "words"; }, 0},
                                         CatchRow{"string", [] { throw std::string("words"); }, 0},
                                         // The base class itself has no clause.
                                         CatchRow{"base",
                                                  [] { throw Lumivex::CLVXException("words", "f", "x.cpp", 1U); }, 0}),
                         [](const testing::TestParamInfo<CatchRow> &row) { return std::string(row.param.name); });

// ---------------------------------------------------------------------------------------------------------------------
// A thread that has no place for its record
// ---------------------------------------------------------------------------------------------------------------------

// The words are lost. The code is that of what was done: a caller who read a failure would do it again.
TEST_F(FakePlatformTest, CallWithoutAPlaceForItsTextKeepsItsCode) {
  Get().failSlot = true;
  std::thread([] {
    TL_HANDLE system = nullptr;
    EXPECT_EQ(GC_ERR_RESOURCE_IN_USE, GCInitLib());
    EXPECT_EQ(GC_ERR_INVALID_PARAMETER, TLOpen(nullptr));
    EXPECT_EQ(GC_ERR_SUCCESS, TLOpen(&system));
    EXPECT_NE(nullptr, system);
    EXPECT_EQ(GC_ERR_INVALID_HANDLE, TLClose(nullptr));
    EXPECT_EQ(GC_ERR_SUCCESS, TLClose(system));
    GC_ERROR code = 77;
    size_t size = 0;
    EXPECT_EQ(GC_ERR_ERROR, GCGetLastError(&code, nullptr, &size)) << "there is nothing to be asked";
    EXPECT_EQ(77, code);
    EXPECT_EQ(GC_ERR_SUCCESS, GCCloseLib());
    EXPECT_EQ(GC_ERR_NOT_INITIALIZED, GCCloseLib());
    EXPECT_EQ(GC_ERR_SUCCESS, GCInitLib());
  }).join();
  Get().failSlot = false;
  EXPECT_NE(nullptr, OpenSystem()) << "the next call is as ever";
}

// ---------------------------------------------------------------------------------------------------------------------
// The settings store
// ---------------------------------------------------------------------------------------------------------------------

class SettingsStore : public testing::Test {
 protected:
  void SetUp() override {
    FakePlatform::Reset();
    Get().openKeyResult = Platform::kErrorSuccess;
  }
  void TearDown() override {
    EXPECT_EQ(0, Get().keysOpen) << "the key is closed on every path";
    Settings::DebugInfoOutputDir.clear();
    Settings::DebugCameraURL.clear();
    Settings::TimeOut = 800;
    Settings::Cxpv11Enable = Settings::EnableDebugCameraURL = false;
  }
  static FakePlatform::StoredValue Dword(uint8_t value) { return {Platform::kRegDword, {value, 0, 0, 0}}; }
  static FakePlatform::StoredValue Text(const std::string &text) {
    return {Platform::kRegText, std::vector<uint8_t>(text.c_str(), text.c_str() + text.size() + 1)};
  }
  static std::vector<std::string> NamesAsked() {
    std::vector<std::string> names;
    for (const FakePlatform::Query &query : Get().queries) {
      if (names.empty() || names.back() != query.name) {
        names.push_back(query.name);
      }
    }
    return names;
  }
};

TEST_F(SettingsStore, KeyIsOpenedOnceByItsName) {
  Settings::ReadSettings();
  EXPECT_EQ((std::vector<std::string>{"SOFTWARE\\Lumivex\\GenTL"}), Get().keysOpened);
}

TEST_F(SettingsStore, KeyThatCannotBeOpenedHasItsWordsFetchedAndDropped) {
  Get().openKeyResult = 5;
  Get().values["TimeOut"] = Dword(1);
  Settings::ReadSettings();
  EXPECT_EQ(std::vector<uint32_t>{5}, Get().errorTexts);
  EXPECT_TRUE(Get().queries.empty());
  EXPECT_EQ(800U, Settings::TimeOut);
  EXPECT_TRUE(Get().messages.empty());
}

TEST_F(SettingsStore, AbsentValuesAreAskedForInOrderWithTheOlderNames) {
  Settings::ReadSettings();
  EXPECT_EQ((std::vector<std::string>{"DebugInfoOutputDir", "DebugOutputXML", "DebugCameraURL", "DebugOutputEnable",
                                      "DebugOutputDebugString", "DebugAllowPopupsFromGrabline", "EnableDebugCameraURL",
                                      "TimeOut", "Cxpv11Enable", "Cxpv11PixelFormatAddress", "Cxpv11WidthAddress",
                                      "Cxpv11HeightAddress"}),
            NamesAsked());
}

TEST_F(SettingsStore, OlderNamesAreNotAskedForWhenTheNewerAreThere) {
  Get().values["DebugInfoOutputDir"] = Text("/d");
  Get().values["DebugOutputEnable"] = Dword(0);
  Settings::ReadSettings();
  for (const std::string &name : NamesAsked()) {
    EXPECT_NE("DebugOutputXML", name);
    EXPECT_NE("DebugOutputDebugString", name);
  }
}

TEST_F(SettingsStore, SizeIsAskedForAheadOfTheBytes) {
  Get().values["TimeOut"] = Dword(9);
  Settings::ReadSettings();
  std::vector<FakePlatform::Query> queries;
  for (const FakePlatform::Query &query : Get().queries) {
    if (query.name == "TimeOut") {
      queries.push_back(query);
    }
  }
  ASSERT_EQ(2U, queries.size());
  EXPECT_FALSE(queries[0].withBuffer);
  EXPECT_TRUE(queries[1].withBuffer);
  EXPECT_EQ(4U, queries[1].room);
  EXPECT_EQ(9U, Settings::TimeOut);
}

TEST_F(SettingsStore, ValueThatGrowsIsReadAgainOnce) {
  Get().values["DebugInfoOutputDir"] = Text("/short");
  Get().onQuery = [](const FakePlatform::Query &query) {
    if (query.name == "DebugInfoOutputDir" && query.withBuffer) {
      Get().values["DebugInfoOutputDir"] = Text("/a/longer/text");
    }
  };
  Settings::ReadSettings();
  EXPECT_EQ("/a/longer/text", Settings::DebugInfoOutputDir);
}

TEST_F(SettingsStore, ValueThatVanishesBetweenTheQueriesIsNotTakenForRubbish) {
  Get().values["TimeOut"] = Dword(9);
  Get().onQuery = [](const FakePlatform::Query &query) {
    if (query.name == "TimeOut" && query.withBuffer) {
      Get().values.erase("TimeOut");
    }
  };
  Settings::ReadSettings();
  EXPECT_EQ(800U, Settings::TimeOut);
}

TEST_F(SettingsStore, KeyIsClosedAlsoAfterAFault) {
  Get().values["TimeOut"] = Text("text");
  Get().values["Cxpv11Enable"] = Dword(1);
  Settings::ReadSettings();
  EXPECT_FALSE(Settings::Cxpv11Enable);
}

TEST_F(SettingsStore, WhateverTheStoreThrowsIsSwallowed) {
  Get().values["DebugInfoOutputDir"] = Text("/d");
  Get().onQuery = [](const FakePlatform::Query &query) {
    if (query.name == "TimeOut") {
      throw std::bad_alloc();
    }
  };
  EXPECT_EQ(GC_ERR_SUCCESS, GCInitLib());
  EXPECT_EQ(GC_ERR_SUCCESS, GCCloseLib());
  EXPECT_EQ("/d", Settings::DebugInfoOutputDir);
}

TEST_F(SettingsStore, OnlyInitialisationReads) {
  EXPECT_TRUE(Get().keysOpened.empty());
  EXPECT_EQ(GC_ERR_SUCCESS, GCInitLib());
  EXPECT_EQ(1U, Get().keysOpened.size());
  EXPECT_EQ(GC_ERR_RESOURCE_IN_USE, GCInitLib());
  EXPECT_EQ(1U, Get().keysOpened.size());
  TL_HANDLE system = nullptr;
  EXPECT_EQ(GC_ERR_SUCCESS, TLOpen(&system));
  EXPECT_EQ(GC_ERR_SUCCESS, GCCloseLib());
  EXPECT_EQ(1U, Get().keysOpened.size());
  EXPECT_EQ(GC_ERR_SUCCESS, GCInitLib());
  EXPECT_EQ(2U, Get().keysOpened.size());
  EXPECT_EQ(GC_ERR_SUCCESS, GCCloseLib());
}

// ---------------------------------------------------------------------------------------------------------------------
// Environment variables
// ---------------------------------------------------------------------------------------------------------------------

std::string EnvironmentFailure() {
  try {
    ReplaceEnvironmentVariables("$(NAME)", false);
  } catch (const unknown_error &failure) {
    return failure.GetDescription();
  }
  return "nothing thrown";
}

TEST(EnvironmentOfThePlatform, ResultOfZeroIsToldApartByTheLastError) {
  FakePlatform::Reset();
  Get().lastError = 5;
  EXPECT_EQ("Unknown error 5 while reading environment variable 'NAME'", EnvironmentFailure());
  Get().lastError = 203;
  EXPECT_EQ("Environment variable 'NAME' not found", EnvironmentFailure());
}

TEST(EnvironmentOfThePlatform, ResultOfExactly256IsTooLarge) {
  FakePlatform::Reset();
  Get().environmentResult = 256;
  EXPECT_EQ("Environment variable's content too large (must be <256 chars)", EnvironmentFailure());
  Get().environmentResult = 255;
  Get().environmentContent = std::string(255, 'c');
  EXPECT_EQ(std::string(255, 'c'), ReplaceEnvironmentVariables("$(NAME)", false));
  Get().environmentResult = 257;
  Get().environmentContent = "rest";
  EXPECT_EQ("rest", ReplaceEnvironmentVariables("$(NAME)", false)) << "a larger result passes unnoticed";
}

}  // namespace
