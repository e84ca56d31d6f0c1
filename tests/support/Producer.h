// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <functional>
#include <future>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "GenTL.h"
#include "ScriptedGrb.h"

/// What tests of the built Producer need: loader, fixture, info and port helpers, failure matchers, settings files.
/// A test file says `using namespace TestSupport;` and, for the script, `using namespace Scripted;`.
///
///     TEST_F(ProducerTest, SecondOpenOfTheSystemFails) {
///       OpenSystem();
///       TL_HANDLE second = nullptr;
///       EXPECT_GC(GC_ERR_RESOURCE_IN_USE, "System module already opened in this process", Gc().TLOpen(&second));
///     }
namespace TestSupport {

using namespace GenICam::Client;  // NOLINT: tests speak GenTL

// ---------------------------------------------------------------------------------------------------------------------
// The loaded library
// ---------------------------------------------------------------------------------------------------------------------

/// The 52 functions, each once. The formatter has no stable way to break this list.
// clang-format off
#define LUMIVEX_GENTL_FUNCTIONS(X) \
  X(GCInitLib) X(GCCloseLib) X(GCGetInfo) X(GCGetLastError) X(GCReadPort) X(GCWritePort) X(GCGetPortURL) \
  X(GCGetPortInfo) X(GCGetNumPortURLs) X(GCGetPortURLInfo) X(GCReadPortStacked) X(GCWritePortStacked) \
  X(GCRegisterEvent) X(GCUnregisterEvent) X(EventGetData) X(EventGetDataInfo) X(EventGetInfo) X(EventFlush) \
  X(EventKill) X(TLOpen) X(TLClose) X(TLGetInfo) X(TLGetNumInterfaces) X(TLGetInterfaceID) X(TLGetInterfaceInfo) \
  X(TLOpenInterface) X(TLUpdateInterfaceList) X(IFClose) X(IFGetInfo) X(IFGetNumDevices) X(IFGetDeviceID) \
  X(IFUpdateDeviceList) X(IFGetDeviceInfo) X(IFOpenDevice) X(DevGetPort) X(DevGetNumDataStreams) \
  X(DevGetDataStreamID) X(DevOpenDataStream) X(DevGetInfo) X(DevClose) X(DSAnnounceBuffer) \
  X(DSAllocAndAnnounceBuffer) X(DSFlushQueue) X(DSStartAcquisition) X(DSStopAcquisition) X(DSGetInfo) \
  X(DSGetBufferID) X(DSClose) X(DSRevokeBuffer) X(DSQueueBuffer) X(DSGetBufferInfo) X(DSGetBufferChunkData)
// clang-format on

/// Pointers to the 52 functions, under their own names.
struct Functions {
#define LUMIVEX_MEMBER(name) P##name name = nullptr;
  LUMIVEX_GENTL_FUNCTIONS(LUMIVEX_MEMBER)
#undef LUMIVEX_MEMBER
};

/// How dlopen is to bind. Lazy and local is what most Consumers use, and the default.
enum class LoadMode { LazyLocal, NowLocal, LazyGlobal, NowGlobal };

/// The .cti in this process. It is loaded once, by the first use, and stays until Unload(); tests share it.
/// One thread at a time may load and unload. A failing load or a missing function throws std::runtime_error.
class CProducer {
 public:
  static CProducer &Instance();

  void Load(LoadMode mode = LoadMode::LazyLocal);  ///< nothing, when it is loaded
  void Unload();                                   ///< nothing, when it is not loaded; Gc() must not be used behind it
  void Reload(LoadMode mode = LoadMode::LazyLocal);
  bool IsLoaded() const { return m_pLibrary != nullptr; }
  /// Whether the system still has the file mapped: after Unload() it must not.
  static bool IsMapped();
  const Functions &Api() const { return m_Functions; }
  /// The address of any exported symbol, or null.
  void *Symbol(const char *name) const;
  static std::string Path();      ///< the .cti with its directory
  static std::string FileName();  ///< the .cti without its directory

 private:
  CProducer() = default;
  void *m_pLibrary = nullptr;
  Functions m_Functions;
};

/// The functions of the loaded Producer; loads it where needed.
const Functions &Gc();

// ---------------------------------------------------------------------------------------------------------------------
// Failures
// ---------------------------------------------------------------------------------------------------------------------

/// What a successful call leaves as the last error's text.
constexpr const char *kSuccessText = "No error, last function reset the last error to GC_ERR_SUCCESS.";

/// The calling thread's record.
struct ErrorRecord {
  GC_ERROR result = GC_ERR_SUCCESS;  ///< what GCGetLastError itself returned; the rest holds only after GC_ERR_SUCCESS
  GC_ERROR code = GC_ERR_SUCCESS;
  std::string text;
};

/// Reads the calling thread's record with GCGetLastError. In a library that is not initialised that call would write
/// the record over; LastErrorUninitialised() therefore has another thread initialise the library around the reading.
ErrorRecord LastError();
ErrorRecord LastErrorUninitialised();

/// A failure's text in its four pieces; empty when the text does not end in
/// " (function '<scoped name>()', file '<name>.cpp', line <n>)", or .h in place of .cpp.
struct FailureText {
  std::string message;
  std::string function;  ///< without parentheses: "GenICam::Client::GCReadPort"
  std::string file;
  unsigned line = 0;
};
std::optional<FailureText> SplitFailureText(const std::string &text);

/// "GC_ERR_TIMEOUT (-1011)"
std::string NameOfError(GC_ERROR code);

/// The checks behind the macros; function null: any function.
testing::AssertionResult CheckGc(GC_ERROR expected, const std::string &message, const char *function, GC_ERROR actual);
testing::AssertionResult CheckGcCode(GC_ERROR expected, GC_ERROR actual);
testing::AssertionResult CheckGcBare(GC_ERROR expected, const std::string &text, GC_ERROR actual);

/// The call returns the code; the record of this thread has the same code; its text is the message and a proper tail.
/// With GC_ERR_NOT_INITIALIZED the record is read by LastErrorUninitialised(). With GC_ERR_SUCCESS the message must be
/// "" and the text is kSuccessText. Do not wrap calls of GCGetLastError: see EXPECT_GC_CODE.
#define EXPECT_GC(code, message, call) EXPECT_TRUE(::TestSupport::CheckGc((code), (message), nullptr, (call))) << #call
#define ASSERT_GC(code, message, call) ASSERT_TRUE(::TestSupport::CheckGc((code), (message), nullptr, (call))) << #call
/// The same, and the text names this function, scoped and without parentheses.
#define EXPECT_GC_FROM(code, message, function, call) \
  EXPECT_TRUE(::TestSupport::CheckGc((code), (message), (function), (call))) << #call
/// The call succeeds and resets the record.
#define EXPECT_GC_OK(call) \
  EXPECT_TRUE(::TestSupport::CheckGc(::GenICam::Client::GC_ERR_SUCCESS, "", nullptr, (call))) << #call
#define ASSERT_GC_OK(call) \
  ASSERT_TRUE(::TestSupport::CheckGc(::GenICam::Client::GC_ERR_SUCCESS, "", nullptr, (call))) << #call
/// The call returns the code and the record has it; the text is free.
#define EXPECT_GC_CODE(code, call) EXPECT_TRUE(::TestSupport::CheckGcCode((code), (call))) << #call
/// The call returns the code and the record has it with exactly this text, without a tail
/// ("GenTL Producer: unknown exception").
#define EXPECT_GC_BARE(code, text, call) EXPECT_TRUE(::TestSupport::CheckGcBare((code), (text), (call))) << #call

// ---------------------------------------------------------------------------------------------------------------------
// Info functions
// ---------------------------------------------------------------------------------------------------------------------

/// An answer of an info function.
struct Info {
  static constexpr INFO_DATATYPE kUntouchedType = -77;

  GC_ERROR result = GC_ERR_SUCCESS;
  INFO_DATATYPE type = kUntouchedType;  ///< kUntouchedType: the call did not write it
  size_t size = 0;                      ///< as the call left it
  std::vector<uint8_t> bytes;           ///< the answer, size bytes of it; empty after a failure

  /// The text up to the first zero byte, or all bytes.
  std::string Text() const;
  /// The value, if the size is that of T; adds a failure and gives T() if it is not.
  template <class T>
  T As() const {
    T value{};
    if (bytes.size() != sizeof(T)) {
      ADD_FAILURE() << "answer of " << bytes.size() << " bytes, wanted " << sizeof(T);
      return value;
    }
    std::memcpy(&value, bytes.data(), sizeof(T));
    return value;
  }
};

/// One info function with everything bound but its last three arguments.
using InfoCall = std::function<GC_ERROR(INFO_DATATYPE *, void *, size_t *)>;

/// Asks for the size with a null buffer, then for the answer in a buffer of exactly that size. Adds a failure when type
/// or size differ between the two or a byte behind the buffer changes. A failing call ends it; nothing is added then.
Info AskInfo(const InfoCall &call);
/// Asks once, with a buffer of the capacity.
Info AskInfoOnce(const InfoCall &call, size_t capacity);

/// AskInfo of the named function.
Info GcInfo(TL_INFO_CMD cmd);
Info TlInfo(TL_HANDLE system, TL_INFO_CMD cmd);
Info InterfaceInfo(TL_HANDLE system, const char *id, INTERFACE_INFO_CMD cmd);  ///< TLGetInterfaceInfo
Info IfInfo(IF_HANDLE iface, INTERFACE_INFO_CMD cmd);                          ///< IFGetInfo
Info DeviceInfo(IF_HANDLE iface, const char *id, DEVICE_INFO_CMD cmd);         ///< IFGetDeviceInfo
Info DevInfo(DEV_HANDLE device, DEVICE_INFO_CMD cmd);                          ///< DevGetInfo
Info DsInfo(DS_HANDLE stream, STREAM_INFO_CMD cmd);
Info BufferInfo(DS_HANDLE stream, BUFFER_HANDLE buffer, BUFFER_INFO_CMD cmd);
Info PortInfo(PORT_HANDLE port, PORT_INFO_CMD cmd);
Info UrlInfo(PORT_HANDLE port, uint32_t index, URL_INFO_CMD cmd);
Info EventInfo(EVENT_HANDLE event, EVENT_INFO_CMD cmd);
Info EventDataInfo(EVENT_HANDLE event, const void *data, size_t size, EVENT_DATA_INFO_CMD cmd);
/// The functions that answer with a text and no type; type stays kUntouchedType.
Info InterfaceId(TL_HANDLE system, uint32_t index);  ///< TLGetInterfaceID
Info DeviceId(IF_HANDLE iface, uint32_t index);      ///< IFGetDeviceID
Info StreamId(DEV_HANDLE device, uint32_t index);    ///< DevGetDataStreamID
Info PortUrl(PORT_HANDLE port);                      ///< GCGetPortURL

// ---------------------------------------------------------------------------------------------------------------------
// Ports
// ---------------------------------------------------------------------------------------------------------------------

/// Reads; a failing read, or one that changes the size, adds a failure with the Producer's text and gives 0 or nothing.
uint32_t ReadU32(PORT_HANDLE port, uint64_t address);
uint64_t ReadU64(PORT_HANDLE port, uint64_t address);
uint32_t ReadU32Be(PORT_HANDLE port, uint64_t address);  ///< big-endian, for the remote port
std::vector<uint8_t> ReadBytes(PORT_HANDLE port, uint64_t address, size_t size);
std::string ReadText(PORT_HANDLE port, uint64_t address, size_t size);  ///< up to the first zero byte
/// Writes and reads that may fail: the code of GCReadPort and GCWritePort.
GC_ERROR TryRead(PORT_HANDLE port, uint64_t address, void *buffer, size_t size);
GC_ERROR WriteU32(PORT_HANDLE port, uint64_t address, uint32_t value);
GC_ERROR WriteU64(PORT_HANDLE port, uint64_t address, uint64_t value);
GC_ERROR WriteU32Be(PORT_HANDLE port, uint64_t address, uint32_t value);
GC_ERROR WriteBytes(PORT_HANDLE port, uint64_t address, const std::vector<uint8_t> &bytes);
GC_ERROR WriteText(PORT_HANDLE port, uint64_t address, std::string_view text, size_t size);  ///< zero filled to size

/// A local URL in its pieces: "Local:LumivexTLSystem.xml;940;24c0".
struct LocalUrl {
  std::string name;
  uint64_t address = 0;
  uint64_t size = 0;
};
std::optional<LocalUrl> ParseLocalUrl(const std::string &url);
/// The XML that the port's URL names, read with one call, its filling zeros removed.
std::string ReadXml(PORT_HANDLE port);

// ---------------------------------------------------------------------------------------------------------------------
// Waiting
// ---------------------------------------------------------------------------------------------------------------------

constexpr std::chrono::milliseconds kBound{10000};  ///< for conditions that a working system meets at once

/// Looks at the predicate until it holds. False: the bound ran out.
bool WaitUntil(const std::function<bool()> &predicate, std::chrono::milliseconds bound = kBound);

/// What EventGetData gave.
struct EventResult {
  GC_ERROR result = GC_ERR_SUCCESS;
  ErrorRecord error;          ///< the waiting thread's record behind the call
  size_t size = 0;            ///< as the call left it
  std::vector<uint8_t> data;  ///< size bytes; empty after a failure
  /// The data as EVENT_NEW_BUFFER_DATA; adds a failure when the size is another.
  EVENT_NEW_BUFFER_DATA NewBuffer() const;
};

/// EventGetData on the calling thread.
EventResult GetEvent(EVENT_HANDLE event, uint64_t timeout, size_t capacity = 512);

/// A thread in EventGetData. The destructor waits for it: kill the event before.
class CEventWaiter {
 public:
  explicit CEventWaiter(EVENT_HANDLE event, uint64_t timeout = GENTL_INFINITE, size_t capacity = 512);
  ~CEventWaiter();
  CEventWaiter(const CEventWaiter &) = delete;
  CEventWaiter &operator=(const CEventWaiter &) = delete;
  /// Whether the call has returned.
  bool Done() const;
  /// The result; adds a failure and gives GC_ERR_CUSTOM_ID when it is not there within the bound.
  EventResult Result(std::chrono::milliseconds bound = kBound);

 private:
  std::shared_future<EventResult> m_Future;
  std::thread m_Thread;
};

// ---------------------------------------------------------------------------------------------------------------------
// Settings
// ---------------------------------------------------------------------------------------------------------------------

/// The environment variable that names the settings file.
constexpr const char *kSettingsVariable = "LUMIVEX_GENTL_REG";

/// Sets an environment variable for a scope, or removes it, and puts the old state back.
class CScopedVariable {
 public:
  CScopedVariable(std::string name, std::optional<std::string> value);
  ~CScopedVariable();
  CScopedVariable(const CScopedVariable &) = delete;
  CScopedVariable &operator=(const CScopedVariable &) = delete;

 private:
  std::string m_strName;
  std::optional<std::string> m_strOld;
};

/// Builds a settings file, an export of the registry, in a temporary place:
///     CSettingsFile settings;
///     settings.Dword("TimeOut", 50).Text("DebugCameraURL", "cam.xml").Write();
/// Write() also has LUMIVEX_GENTL_REG name the file; GCInitLib reads it then. The destructor removes the file and puts
/// the variable back.
class CSettingsFile {
 public:
  enum class Encoding { Utf8, Utf8Bom, Utf16Le, Utf16Be, Utf16LeNoBom };

  CSettingsFile();
  ~CSettingsFile();
  CSettingsFile(const CSettingsFile &) = delete;
  CSettingsFile &operator=(const CSettingsFile &) = delete;

  CSettingsFile &Head(std::string_view line);                   ///< first line; "Windows Registry Editor Version 5.00"
  CSettingsFile &Key(std::string_view key);                     ///< begins the section [HKEY_LOCAL_MACHINE\<key>]
  CSettingsFile &Section(std::string_view section);             ///< begins the section [<section>], root and all
  CSettingsFile &Dword(std::string_view name, uint32_t value);  ///< "name"=dword:0000abcd
  CSettingsFile &Text(std::string_view name, std::string_view text);  ///< "name"="text", \ and " escaped
  CSettingsFile &Hex(std::string_view name, const std::vector<uint8_t> &bytes,
                     std::string_view kind = "hex");   ///< "name"=hex:01,02; kind may be "hex(2)"
  CSettingsFile &Line(std::string_view line);          ///< a line as it is
  CSettingsFile &Encode(Encoding encoding);            ///< Utf8 at first
  CSettingsFile &LineEnd(std::string_view end);        ///< "\r\n" at first
  CSettingsFile &Clear();                              ///< no head, no section, no lines
  void Write();                                        ///< may be repeated after changes
  void WriteBytes(const std::vector<uint8_t> &bytes);  ///< exactly these bytes in place of everything built
  void Remove();                                       ///< the file goes, the variable stays
  const std::string &Path() const { return m_strPath; }
  std::string Content() const;  ///< as built, before encoding

 private:
  void OpenSection();
  std::string m_strPath;
  std::string m_strHead;
  std::string m_strLineEnd;
  std::vector<std::string> m_Lines;
  bool m_bSection = false;
  Encoding m_Encoding = Encoding::Utf8;
  std::unique_ptr<CScopedVariable> m_pVariable;
};

/// A directory for a test's files; it goes with all that is in it.
class CTempDirectory {
 public:
  CTempDirectory();
  ~CTempDirectory();
  CTempDirectory(const CTempDirectory &) = delete;
  CTempDirectory &operator=(const CTempDirectory &) = delete;
  const std::string &Path() const { return m_strPath; }
  std::string File(std::string_view name) const;                                 ///< path of a file in it
  std::string WriteFile(std::string_view name, std::string_view content) const;  ///< writes it; gives its path

 private:
  std::string m_strPath;
};
std::optional<std::string> ReadFile(const std::string &path);

// ---------------------------------------------------------------------------------------------------------------------
// Fixtures
// ---------------------------------------------------------------------------------------------------------------------

/// A Producer that is loaded and not initialised, over a script at its default. LUMIVEX_GENTL_REG names no file.
/// The end: GCCloseLib when the test left the library initialised, then Reset() of the script.
class LoadedProducerTest : public testing::Test {
 protected:
  LoadedProducerTest();
  ~LoadedProducerTest() override;
  void SetUp() override;
  void TearDown() override;

 private:
  std::unique_ptr<CScopedVariable> m_pSettings;
};

/// A Producer behind GCInitLib. The openers build the tree step by step: each opens what is missing above it, asserts
/// success and gives the handle; a second call gives the open one. Whatever is open is closed at the end.
/// A test that closes a module itself sets the member to null: the openers and the end look at it.
class ProducerTest : public LoadedProducerTest {
 protected:
  void SetUp() override;

  TL_HANDLE OpenSystem();
  IF_HANDLE OpenInterface(const std::string &id = Scripted::CScriptedGrb::kDefaultInterfaceId);
  DEV_HANDLE OpenDevice(DEVICE_ACCESS_FLAGS flags = DEVICE_ACCESS_EXCLUSIVE, const std::string &id = "Channel #1");
  PORT_HANDLE OpenRemotePort();  ///< the camera's port of OpenDevice()
  DS_HANDLE OpenStream();        ///< "Stream #1" of OpenDevice()
  EVENT_HANDLE RegisterEvent(EVENTSRC_HANDLE source, EVENT_TYPE type);

  /// Closes what is open and the library, and initialises it anew: for settings.
  void Reinitialise();
  /// DSAllocAndAnnounceBuffer of the stream's payload size and DSQueueBuffer, count times.
  std::vector<BUFFER_HANDLE> QueueBuffers(size_t count);
  size_t PayloadSize();  ///< STREAM_INFO_PAYLOAD_SIZE of the stream

  TL_HANDLE m_hSystem = nullptr;
  IF_HANDLE m_hInterface = nullptr;
  DEV_HANDLE m_hDevice = nullptr;
  DS_HANDLE m_hStream = nullptr;
};

}  // namespace TestSupport
