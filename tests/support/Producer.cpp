// SPDX-License-Identifier: MIT
#include "Producer.h"

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>
#include <stdexcept>
#include <utility>

#if defined(_WIN32)
#include <windows.h>
#else
#include <dlfcn.h>
#endif

namespace TestSupport {

namespace {

namespace fs = std::filesystem;

// The system's side of loading and of the environment; the rest of this file does not know the platform.
#if defined(_WIN32)
void *OpenLibrary(const std::string &path, LoadMode) { return LoadLibraryA(path.c_str()); }
void CloseLibrary(void *library) { FreeLibrary(static_cast<HMODULE>(library)); }
void *FindSymbol(void *library, const char *name) {
  return reinterpret_cast<void *>(GetProcAddress(static_cast<HMODULE>(library), name));
}
std::string LoadFailure() { return "system error " + std::to_string(GetLastError()); }
bool IsLibraryMapped(const std::string &path) { return GetModuleHandleA(path.c_str()) != nullptr; }
void SetVariable(const std::string &name, const std::optional<std::string> &value) {
  _putenv_s(name.c_str(), value ? value->c_str() : "");
}
#else
int DlopenFlags(LoadMode mode) {
  switch (mode) {
    case LoadMode::LazyLocal:
      return RTLD_LAZY | RTLD_LOCAL;
    case LoadMode::NowLocal:
      return RTLD_NOW | RTLD_LOCAL;
    case LoadMode::LazyGlobal:
      return RTLD_LAZY | RTLD_GLOBAL;
    case LoadMode::NowGlobal:
      return RTLD_NOW | RTLD_GLOBAL;
  }
  return RTLD_LAZY;
}
void *OpenLibrary(const std::string &path, LoadMode mode) { return dlopen(path.c_str(), DlopenFlags(mode)); }
void CloseLibrary(void *library) { dlclose(library); }
void *FindSymbol(void *library, const char *name) { return dlsym(library, name); }
std::string LoadFailure() {
  const char *const text = dlerror();
  return text == nullptr ? "unknown failure" : text;
}
bool IsLibraryMapped(const std::string &path) {
  void *const library = dlopen(path.c_str(), RTLD_LAZY | RTLD_NOLOAD);
  if (library != nullptr) {
    dlclose(library);
  }
  return library != nullptr;
}
void SetVariable(const std::string &name, const std::optional<std::string> &value) {
  if (value) {
    setenv(name.c_str(), value->c_str(), 1);
  } else {
    unsetenv(name.c_str());
  }
}
#endif

/// A path below the temporary directory that nobody else uses.
std::string UniquePath(const char *kind) {
  std::random_device random;
  char name[64];
  std::snprintf(name, sizeof(name), "lumivex-%s-%08x%08x", kind, random(), random());
  return (fs::temp_directory_path() / name).string();
}

std::string HexByte(uint8_t value) {
  char text[4];
  std::snprintf(text, sizeof(text), "%02x", static_cast<unsigned>(value));
  return text;
}

struct ErrorName {
  GC_ERROR code;
  const char *name;
};

#define ROW(name) \
  { name, #name }
constexpr ErrorName kErrorNames[] = {
    ROW(GC_ERR_SUCCESS),
    ROW(GC_ERR_ERROR),
    ROW(GC_ERR_NOT_INITIALIZED),
    ROW(GC_ERR_NOT_IMPLEMENTED),
    ROW(GC_ERR_RESOURCE_IN_USE),
    ROW(GC_ERR_ACCESS_DENIED),
    ROW(GC_ERR_INVALID_HANDLE),
    ROW(GC_ERR_INVALID_ID),
    ROW(GC_ERR_NO_DATA),
    ROW(GC_ERR_INVALID_PARAMETER),
    ROW(GC_ERR_IO),
    ROW(GC_ERR_TIMEOUT),
    ROW(GC_ERR_ABORT),
    ROW(GC_ERR_INVALID_BUFFER),
    ROW(GC_ERR_NOT_AVAILABLE),
    ROW(GC_ERR_INVALID_ADDRESS),
    ROW(GC_ERR_CUSTOM_ID),
};
#undef ROW

/// The record behind a call that returned the code.
ErrorRecord RecordAfter(GC_ERROR code) {
  return code == GC_ERR_NOT_INITIALIZED ? LastErrorUninitialised() : LastError();
}

/// Success, if code and record are as expected.
testing::AssertionResult CheckCodes(GC_ERROR expected, GC_ERROR actual, const ErrorRecord &record) {
  if (actual != expected) {
    return testing::AssertionFailure() << "returned " << NameOfError(actual) << " in place of " << NameOfError(expected)
                                       << "\n  text: " << record.text << "\n  call: ";
  }
  if (record.result != GC_ERR_SUCCESS) {
    return testing::AssertionFailure() << "GCGetLastError failed with " << NameOfError(record.result) << "\n  call: ";
  }
  if (record.code != expected) {
    return testing::AssertionFailure() << "the record holds " << NameOfError(record.code) << " in place of "
                                       << NameOfError(expected) << "\n  text: " << record.text << "\n  call: ";
  }
  return testing::AssertionSuccess();
}

}  // namespace

// The loaded library --------------------------------------------------------------------------------------------------

CProducer &CProducer::Instance() {
  static CProducer producer;
  return producer;
}

void CProducer::Load(LoadMode mode) {
  if (m_pLibrary != nullptr) {
    return;
  }
  Scripted::Script();  // the scripted library has to be in the process before the Producer looks for one
  void *const library = OpenLibrary(Path(), mode);
  if (library == nullptr) {
    throw std::runtime_error("cannot load " + Path() + ": " + LoadFailure());
  }
  m_pLibrary = library;
  const char *missing = nullptr;
#define LUMIVEX_RESOLVE(name)                                  \
  m_Functions.name = reinterpret_cast<P##name>(Symbol(#name)); \
  missing = m_Functions.name == nullptr ? #name : missing;
  LUMIVEX_GENTL_FUNCTIONS(LUMIVEX_RESOLVE)
#undef LUMIVEX_RESOLVE
  if (missing != nullptr) {
    Unload();
    throw std::runtime_error(Path() + " has no function " + missing);
  }
}

void CProducer::Unload() {
  if (m_pLibrary != nullptr) {
    CloseLibrary(std::exchange(m_pLibrary, nullptr));
    m_Functions = Functions();
  }
}

void CProducer::Reload(LoadMode mode) {
  Unload();
  Load(mode);
}

bool CProducer::IsMapped() { return IsLibraryMapped(Path()); }

void *CProducer::Symbol(const char *name) const {
  return m_pLibrary == nullptr ? nullptr : FindSymbol(m_pLibrary, name);
}

std::string CProducer::Path() { return LUMIVEX_CTI_PATH; }

std::string CProducer::FileName() { return fs::path(Path()).filename().string(); }

const Functions &Gc() {
  CProducer &producer = CProducer::Instance();
  if (!producer.IsLoaded()) {
    producer.Load();
  }
  return producer.Api();
}

// Failures ------------------------------------------------------------------------------------------------------------

ErrorRecord LastError() {
  ErrorRecord record;
  size_t size = 0;
  GC_ERROR code = GC_ERR_CUSTOM_ID;
  record.result = Gc().GCGetLastError(&code, nullptr, &size);
  if (record.result != GC_ERR_SUCCESS) {
    return record;
  }
  std::vector<char> text(size, 'x');
  record.result = Gc().GCGetLastError(&code, text.data(), &size);
  if (record.result == GC_ERR_SUCCESS) {
    record.code = code;
    record.text = text.data();
  }
  return record;
}

ErrorRecord LastErrorUninitialised() {
  GC_ERROR begun = GC_ERR_ERROR;
  std::thread([&begun] { begun = Gc().GCInitLib(); }).join();
  ErrorRecord record = LastError();
  if (begun == GC_ERR_SUCCESS) {
    std::thread([] { Gc().GCCloseLib(); }).join();
  }
  return record;
}

namespace {

bool IsWord(char letter) { return std::isalnum(static_cast<unsigned char>(letter)) != 0 || letter == '_'; }

/// "Scope::Name", with any number of scopes, template arguments in a scope and "~" ahead of a destructor's name.
bool IsScopedName(const std::string &name) {
  size_t depth = 0;
  size_t wordLength = 0;
  size_t scopes = 0;
  for (size_t i = 0; i < name.size(); ++i) {
    const char letter = name[i];
    if (letter == '<' && wordLength > 0) {
      ++depth;
    } else if (letter == '>' && depth > 0) {
      --depth;
    } else if (depth > 0) {
      continue;
    } else if (IsWord(letter)) {
      ++wordLength;
    } else if (name.compare(i, 2, "::") == 0 && wordLength > 0) {
      ++i;
      ++scopes;
      wordLength = 0;
    } else if (letter != '~' || wordLength > 0) {
      return false;
    }
  }
  return depth == 0 && scopes > 0 && wordLength > 0 && name.find("operator") == std::string::npos;
}

bool IsSourceFile(const std::string &file) {
  const size_t dot = file.find('.');
  return dot != std::string::npos && dot > 0 &&
         std::all_of(file.begin(), file.begin() + static_cast<std::ptrdiff_t>(dot), IsWord) &&
         (file.substr(dot) == ".cpp" || file.substr(dot) == ".h");
}

/// Takes the text up to the mark off the rest; the mark goes with it. False: the mark is not there.
bool TakeUpTo(std::string &rest, std::string_view mark, std::string &taken) {
  const size_t place = rest.find(mark);
  if (place == std::string::npos) {
    return false;
  }
  taken = rest.substr(0, place);
  rest.erase(0, place + mark.size());
  return true;
}

}  // namespace

std::optional<FailureText> SplitFailureText(const std::string &text) {
  constexpr std::string_view kBegin = " (function '";
  const size_t begin = text.rfind(kBegin);
  if (begin == std::string::npos) {
    return std::nullopt;
  }
  FailureText parts;
  parts.message = text.substr(0, begin);
  std::string rest = text.substr(begin + kBegin.size());
  std::string line;
  if (!TakeUpTo(rest, "()', file '", parts.function) || !TakeUpTo(rest, "', line ", parts.file) ||
      !TakeUpTo(rest, ")", line) || !rest.empty()) {
    return std::nullopt;
  }
  const bool isNumber =
      !line.empty() && line.front() != '0' && line.find_first_not_of("0123456789") == std::string::npos;
  if (!IsScopedName(parts.function) || !IsSourceFile(parts.file) || !isNumber) {
    return std::nullopt;
  }
  parts.line = static_cast<unsigned>(std::strtoul(line.c_str(), nullptr, 10));
  return parts;
}

std::string NameOfError(GC_ERROR code) {
  for (const ErrorName &row : kErrorNames) {
    if (row.code == code) {
      return std::string(row.name) + " (" + std::to_string(code) + ")";
    }
  }
  return std::to_string(code);
}

testing::AssertionResult CheckGc(GC_ERROR expected, const std::string &message, const char *function, GC_ERROR actual) {
  if (expected == GC_ERR_SUCCESS) {
    return message.empty() ? CheckGcBare(expected, kSuccessText, actual)
                           : testing::AssertionFailure() << "a success has no message; the call: ";
  }
  const ErrorRecord record = RecordAfter(actual);
  testing::AssertionResult codes = CheckCodes(expected, actual, record);
  if (!codes) {
    return codes;
  }
  const std::optional<FailureText> text = SplitFailureText(record.text);
  if (!text) {
    return testing::AssertionFailure() << "the text has no proper tail: " << record.text << "\n  call: ";
  }
  if (text->message != message) {
    return testing::AssertionFailure() << "the message is\n  \"" << text->message << "\", wanted\n  \"" << message
                                       << "\"\n  from " << text->function << "\n  call: ";
  }
  if (function != nullptr && text->function != function) {
    return testing::AssertionFailure() << "the text names " << text->function << ", wanted " << function
                                       << "\n  call: ";
  }
  return testing::AssertionSuccess() << "as expected: " << record.text << "\n  call: ";
}

testing::AssertionResult CheckGcCode(GC_ERROR expected, GC_ERROR actual) {
  return CheckCodes(expected, actual, RecordAfter(actual));
}

testing::AssertionResult CheckGcBare(GC_ERROR expected, const std::string &text, GC_ERROR actual) {
  const ErrorRecord record = RecordAfter(actual);
  testing::AssertionResult codes = CheckCodes(expected, actual, record);
  if (codes && record.text != text) {
    return testing::AssertionFailure() << "the text is\n  \"" << record.text << "\", wanted\n  \"" << text
                                       << "\"\n  call: ";
  }
  return codes;
}

// Info functions ------------------------------------------------------------------------------------------------------

std::string Info::Text() const { return std::string(bytes.begin(), std::find(bytes.begin(), bytes.end(), uint8_t{0})); }

Info AskInfoOnce(const InfoCall &call, size_t capacity) {
  constexpr uint8_t kGuard = 0xA5;
  Info info;
  std::vector<uint8_t> room(capacity + 64, kGuard);
  info.size = capacity;
  info.result = call(&info.type, room.data(), &info.size);
  const auto end = room.begin() + static_cast<std::ptrdiff_t>(capacity);
  if (std::any_of(end, room.end(), [](uint8_t byte) { return byte != kGuard; })) {
    ADD_FAILURE() << "the answer ran over its buffer of " << capacity << " bytes";
  }
  if (info.result == GC_ERR_SUCCESS) {
    if (info.size > capacity) {
      ADD_FAILURE() << "a size of " << info.size << " bytes from a buffer of " << capacity;
      return info;
    }
    info.bytes.assign(room.begin(), room.begin() + static_cast<std::ptrdiff_t>(info.size));
  }
  return info;
}

Info AskInfo(const InfoCall &call) {
  Info question;
  question.result = call(&question.type, nullptr, &question.size);
  if (question.result != GC_ERR_SUCCESS || question.size == 0) {
    return question;
  }
  Info answer = AskInfoOnce(call, question.size);
  if (answer.result == GC_ERR_SUCCESS && (answer.size != question.size || answer.type != question.type)) {
    ADD_FAILURE() << "question and answer differ: type " << question.type << " and " << answer.type << ", size "
                  << question.size << " and " << answer.size;
  }
  return answer;
}

Info GcInfo(TL_INFO_CMD cmd) {
  return AskInfo(
      [=](INFO_DATATYPE *type, void *buffer, size_t *size) { return Gc().GCGetInfo(cmd, type, buffer, size); });
}

Info TlInfo(TL_HANDLE system, TL_INFO_CMD cmd) {
  return AskInfo(
      [=](INFO_DATATYPE *type, void *buffer, size_t *size) { return Gc().TLGetInfo(system, cmd, type, buffer, size); });
}

Info InterfaceInfo(TL_HANDLE system, const char *id, INTERFACE_INFO_CMD cmd) {
  return AskInfo([=](INFO_DATATYPE *type, void *buffer, size_t *size) {
    return Gc().TLGetInterfaceInfo(system, id, cmd, type, buffer, size);
  });
}

Info IfInfo(IF_HANDLE iface, INTERFACE_INFO_CMD cmd) {
  return AskInfo(
      [=](INFO_DATATYPE *type, void *buffer, size_t *size) { return Gc().IFGetInfo(iface, cmd, type, buffer, size); });
}

Info DeviceInfo(IF_HANDLE iface, const char *id, DEVICE_INFO_CMD cmd) {
  return AskInfo([=](INFO_DATATYPE *type, void *buffer, size_t *size) {
    return Gc().IFGetDeviceInfo(iface, id, cmd, type, buffer, size);
  });
}

Info DevInfo(DEV_HANDLE device, DEVICE_INFO_CMD cmd) {
  return AskInfo([=](INFO_DATATYPE *type, void *buffer, size_t *size) {
    return Gc().DevGetInfo(device, cmd, type, buffer, size);
  });
}

Info DsInfo(DS_HANDLE stream, STREAM_INFO_CMD cmd) {
  return AskInfo(
      [=](INFO_DATATYPE *type, void *buffer, size_t *size) { return Gc().DSGetInfo(stream, cmd, type, buffer, size); });
}

Info BufferInfo(DS_HANDLE stream, BUFFER_HANDLE buffer, BUFFER_INFO_CMD cmd) {
  return AskInfo([=](INFO_DATATYPE *type, void *answer, size_t *size) {
    return Gc().DSGetBufferInfo(stream, buffer, cmd, type, answer, size);
  });
}

Info PortInfo(PORT_HANDLE port, PORT_INFO_CMD cmd) {
  return AskInfo([=](INFO_DATATYPE *type, void *buffer, size_t *size) {
    return Gc().GCGetPortInfo(port, cmd, type, buffer, size);
  });
}

Info UrlInfo(PORT_HANDLE port, uint32_t index, URL_INFO_CMD cmd) {
  return AskInfo([=](INFO_DATATYPE *type, void *buffer, size_t *size) {
    return Gc().GCGetPortURLInfo(port, index, cmd, type, buffer, size);
  });
}

Info EventInfo(EVENT_HANDLE event, EVENT_INFO_CMD cmd) {
  return AskInfo([=](INFO_DATATYPE *type, void *buffer, size_t *size) {
    return Gc().EventGetInfo(event, cmd, type, buffer, size);
  });
}

Info EventDataInfo(EVENT_HANDLE event, const void *data, size_t size, EVENT_DATA_INFO_CMD cmd) {
  return AskInfo([=](INFO_DATATYPE *type, void *buffer, size_t *outSize) {
    return Gc().EventGetDataInfo(event, data, size, cmd, type, buffer, outSize);
  });
}

Info InterfaceId(TL_HANDLE system, uint32_t index) {
  return AskInfo([=](INFO_DATATYPE *, void *buffer, size_t *size) {
    return Gc().TLGetInterfaceID(system, index, static_cast<char *>(buffer), size);
  });
}

Info DeviceId(IF_HANDLE iface, uint32_t index) {
  return AskInfo([=](INFO_DATATYPE *, void *buffer, size_t *size) {
    return Gc().IFGetDeviceID(iface, index, static_cast<char *>(buffer), size);
  });
}

Info StreamId(DEV_HANDLE device, uint32_t index) {
  return AskInfo([=](INFO_DATATYPE *, void *buffer, size_t *size) {
    return Gc().DevGetDataStreamID(device, index, static_cast<char *>(buffer), size);
  });
}

Info PortUrl(PORT_HANDLE port) {
  return AskInfo([=](INFO_DATATYPE *, void *buffer, size_t *size) {
    return Gc().GCGetPortURL(port, static_cast<char *>(buffer), size);
  });
}

// Ports ---------------------------------------------------------------------------------------------------------------

GC_ERROR TryRead(PORT_HANDLE port, uint64_t address, void *buffer, size_t size) {
  return Gc().GCReadPort(port, address, buffer, &size);
}

std::vector<uint8_t> ReadBytes(PORT_HANDLE port, uint64_t address, size_t size) {
  std::vector<uint8_t> bytes(size);
  size_t moved = size;
  const GC_ERROR result = Gc().GCReadPort(port, address, bytes.data(), &moved);
  if (result != GC_ERR_SUCCESS) {
    ADD_FAILURE() << "reading " << size << " bytes at " << address << ": " << NameOfError(result) << ", "
                  << LastError().text;
    return {};
  }
  if (moved != size) {
    ADD_FAILURE() << "reading " << size << " bytes at " << address << " changed the size to " << moved;
  }
  return bytes;
}

uint32_t ReadU32(PORT_HANDLE port, uint64_t address) {
  uint32_t value = 0;
  const std::vector<uint8_t> bytes = ReadBytes(port, address, sizeof(value));
  if (bytes.size() == sizeof(value)) {
    std::memcpy(&value, bytes.data(), sizeof(value));
  }
  return value;
}

uint64_t ReadU64(PORT_HANDLE port, uint64_t address) {
  uint64_t value = 0;
  const std::vector<uint8_t> bytes = ReadBytes(port, address, sizeof(value));
  if (bytes.size() == sizeof(value)) {
    std::memcpy(&value, bytes.data(), sizeof(value));
  }
  return value;
}

uint32_t ReadU32Be(PORT_HANDLE port, uint64_t address) {
  const std::vector<uint8_t> bytes = ReadBytes(port, address, sizeof(uint32_t));
  return bytes.size() == sizeof(uint32_t) ? Scripted::FromBigEndian(bytes.data()) : 0;
}

std::string ReadText(PORT_HANDLE port, uint64_t address, size_t size) {
  const std::vector<uint8_t> bytes = ReadBytes(port, address, size);
  return std::string(bytes.begin(), std::find(bytes.begin(), bytes.end(), uint8_t{0}));
}

GC_ERROR WriteBytes(PORT_HANDLE port, uint64_t address, const std::vector<uint8_t> &bytes) {
  size_t size = bytes.size();
  return Gc().GCWritePort(port, address, bytes.data(), &size);
}

GC_ERROR WriteU32(PORT_HANDLE port, uint64_t address, uint32_t value) {
  size_t size = sizeof(value);
  return Gc().GCWritePort(port, address, &value, &size);
}

GC_ERROR WriteU64(PORT_HANDLE port, uint64_t address, uint64_t value) {
  size_t size = sizeof(value);
  return Gc().GCWritePort(port, address, &value, &size);
}

GC_ERROR WriteU32Be(PORT_HANDLE port, uint64_t address, uint32_t value) {
  return WriteBytes(port, address, Scripted::BigEndian(value));
}

GC_ERROR WriteText(PORT_HANDLE port, uint64_t address, std::string_view text, size_t size) {
  std::vector<uint8_t> bytes(text.begin(), text.end());
  bytes.resize(size);
  return WriteBytes(port, address, bytes);
}

std::optional<LocalUrl> ParseLocalUrl(const std::string &url) {
  constexpr std::string_view kScheme = "local:";
  const auto same = [](char left, char right) { return std::tolower(static_cast<unsigned char>(left)) == right; };
  if (url.size() < kScheme.size() || !std::equal(kScheme.begin(), kScheme.end(), url.begin(),
                                                 [&](char wanted, char found) { return same(found, wanted); })) {
    return std::nullopt;
  }
  std::string rest = url.substr(kScheme.size());
  std::string address;
  LocalUrl place;
  if (!TakeUpTo(rest, ";", place.name) || !TakeUpTo(rest, ";", address)) {
    return std::nullopt;
  }
  const std::string size = rest.substr(0, rest.find(';'));
  const auto isHex = [](const std::string &number) {
    return !number.empty() && number.find_first_not_of("0123456789abcdefABCDEF") == std::string::npos;
  };
  if (!isHex(address) || !isHex(size)) {
    return std::nullopt;
  }
  place.address = std::strtoull(address.c_str(), nullptr, 16);
  place.size = std::strtoull(size.c_str(), nullptr, 16);
  return place;
}

std::string ReadXml(PORT_HANDLE port) {
  const Info url = PortUrl(port);
  const std::optional<LocalUrl> place = ParseLocalUrl(url.Text());
  if (!place) {
    ADD_FAILURE() << "no local URL: \"" << url.Text() << "\"";
    return {};
  }
  return ReadText(port, place->address, static_cast<size_t>(place->size));
}

// Waiting -------------------------------------------------------------------------------------------------------------

bool WaitUntil(const std::function<bool()> &predicate, std::chrono::milliseconds bound) {
  return Scripted::Script().WaitFor(predicate, bound);
}

EVENT_NEW_BUFFER_DATA EventResult::NewBuffer() const {
  EVENT_NEW_BUFFER_DATA record = {};
  if (data.size() == sizeof(record)) {
    std::memcpy(&record, data.data(), sizeof(record));
  } else {
    ADD_FAILURE() << "event data of " << data.size() << " bytes, " << NameOfError(result) << ", " << error.text;
  }
  return record;
}

EventResult GetEvent(EVENT_HANDLE event, uint64_t timeout, size_t capacity) {
  EventResult result;
  std::vector<uint8_t> room(capacity);
  result.size = capacity;
  result.result = Gc().EventGetData(event, room.data(), &result.size, timeout);
  result.error = RecordAfter(result.result);
  if (result.result == GC_ERR_SUCCESS) {
    room.resize(std::min(capacity, result.size));
    result.data = std::move(room);
  }
  return result;
}

CEventWaiter::CEventWaiter(EVENT_HANDLE event, uint64_t timeout, size_t capacity) {
  std::packaged_task<EventResult()> task([=] { return GetEvent(event, timeout, capacity); });
  m_Future = task.get_future().share();
  m_Thread = std::thread(std::move(task));
}

CEventWaiter::~CEventWaiter() { m_Thread.join(); }

bool CEventWaiter::Done() const { return m_Future.wait_for(std::chrono::seconds(0)) == std::future_status::ready; }

EventResult CEventWaiter::Result(std::chrono::milliseconds bound) {
  if (m_Future.wait_for(bound) == std::future_status::ready) {
    return m_Future.get();
  }
  ADD_FAILURE() << "EventGetData has not returned within " << bound.count() << " ms";
  EventResult nothing;
  nothing.result = GC_ERR_CUSTOM_ID;
  return nothing;
}

// Settings ------------------------------------------------------------------------------------------------------------

CScopedVariable::CScopedVariable(std::string name, std::optional<std::string> value) : m_strName(std::move(name)) {
  if (const char *const old = std::getenv(m_strName.c_str())) {
    m_strOld = old;
  }
  SetVariable(m_strName, value);
}

CScopedVariable::~CScopedVariable() { SetVariable(m_strName, m_strOld); }

namespace {
constexpr std::string_view kSettingsHead = "Windows Registry Editor Version 5.00";
constexpr std::string_view kSettingsKey = "SOFTWARE\\Lumivex\\GenTL";
}  // namespace

CSettingsFile::CSettingsFile()
    : m_strPath(UniquePath("settings") + ".reg"), m_strHead(kSettingsHead), m_strLineEnd("\r\n") {}

CSettingsFile::~CSettingsFile() {
  m_pVariable.reset();
  Remove();
}

CSettingsFile &CSettingsFile::Head(std::string_view line) {
  m_strHead = line;
  return *this;
}

CSettingsFile &CSettingsFile::Key(std::string_view key) { return Section("HKEY_LOCAL_MACHINE\\" + std::string(key)); }

CSettingsFile &CSettingsFile::Section(std::string_view section) {
  m_Lines.emplace_back();
  m_Lines.push_back("[" + std::string(section) + "]");
  m_bSection = true;
  return *this;
}

void CSettingsFile::OpenSection() {
  if (!m_bSection) {
    Key(kSettingsKey);
  }
}

CSettingsFile &CSettingsFile::Dword(std::string_view name, uint32_t value) {
  OpenSection();
  char number[16];
  std::snprintf(number, sizeof(number), "%08x", static_cast<unsigned>(value));
  return Line("\"" + std::string(name) + "\"=dword:" + number);
}

CSettingsFile &CSettingsFile::Text(std::string_view name, std::string_view text) {
  OpenSection();
  std::string escaped;
  for (const char letter : text) {
    if (letter == '\\' || letter == '"') {
      escaped += '\\';
    }
    escaped += letter;
  }
  return Line("\"" + std::string(name) + "\"=\"" + escaped + "\"");
}

CSettingsFile &CSettingsFile::Hex(std::string_view name, const std::vector<uint8_t> &bytes, std::string_view kind) {
  OpenSection();
  std::string list;
  for (const uint8_t byte : bytes) {
    list += (list.empty() ? "" : ",") + HexByte(byte);
  }
  return Line("\"" + std::string(name) + "\"=" + std::string(kind) + ":" + list);
}

CSettingsFile &CSettingsFile::Line(std::string_view line) {
  m_Lines.emplace_back(line);
  return *this;
}

CSettingsFile &CSettingsFile::Encode(Encoding encoding) {
  m_Encoding = encoding;
  return *this;
}

CSettingsFile &CSettingsFile::LineEnd(std::string_view end) {
  m_strLineEnd = end;
  return *this;
}

CSettingsFile &CSettingsFile::Clear() {
  m_strHead.clear();
  m_Lines.clear();
  m_bSection = false;
  return *this;
}

std::string CSettingsFile::Content() const {
  std::string content;
  if (!m_strHead.empty()) {
    content += m_strHead + m_strLineEnd;
  }
  for (const std::string &line : m_Lines) {
    content += line + m_strLineEnd;
  }
  return content;
}

namespace {

/// The code points of a UTF-8 text as UTF-16 units; the builder's own texts are well-formed.
std::vector<uint16_t> ToUtf16(const std::string &text) {
  std::vector<uint16_t> units;
  for (size_t i = 0; i < text.size();) {
    const auto lead = static_cast<uint8_t>(text[i]);
    const size_t length = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    uint32_t point = length == 1 ? lead : lead & (0x7FU >> length);
    for (size_t k = 1; k < length && i + k < text.size(); ++k) {
      point = (point << 6U) | (static_cast<uint8_t>(text[i + k]) & 0x3FU);
    }
    if (point >= 0x10000) {
      point -= 0x10000;
      units.push_back(static_cast<uint16_t>(0xD800U + (point >> 10U)));
      units.push_back(static_cast<uint16_t>(0xDC00U + (point & 0x3FFU)));
    } else {
      units.push_back(static_cast<uint16_t>(point));
    }
    i += length;
  }
  return units;
}

}  // namespace

void CSettingsFile::Write() {
  const std::string content = Content();
  std::vector<uint8_t> bytes;
  const bool wide = m_Encoding != Encoding::Utf8 && m_Encoding != Encoding::Utf8Bom;
  const bool bigEndian = m_Encoding == Encoding::Utf16Be;
  const auto addUnit = [&](uint16_t unit) {
    const auto low = static_cast<uint8_t>(unit);
    const auto high = static_cast<uint8_t>(unit >> 8U);
    bytes.push_back(bigEndian ? high : low);
    bytes.push_back(bigEndian ? low : high);
  };
  if (!wide) {
    if (m_Encoding == Encoding::Utf8Bom) {
      bytes = {0xEF, 0xBB, 0xBF};
    }
    bytes.insert(bytes.end(), content.begin(), content.end());
  } else {
    if (m_Encoding != Encoding::Utf16LeNoBom) {
      addUnit(0xFEFF);
    }
    for (const uint16_t unit : ToUtf16(content)) {
      addUnit(unit);
    }
  }
  WriteBytes(bytes);
}

void CSettingsFile::WriteBytes(const std::vector<uint8_t> &bytes) {
  std::ofstream file(m_strPath, std::ios::binary | std::ios::trunc);
  file.write(reinterpret_cast<const char *>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
  file.close();
  if (!file) {
    throw std::runtime_error("cannot write " + m_strPath);
  }
  if (!m_pVariable) {
    m_pVariable = std::make_unique<CScopedVariable>(kSettingsVariable, m_strPath);
  }
}

void CSettingsFile::Remove() {
  std::error_code ignored;
  fs::remove(m_strPath, ignored);
}

CTempDirectory::CTempDirectory() : m_strPath(UniquePath("test")) { fs::create_directories(m_strPath); }

CTempDirectory::~CTempDirectory() {
  std::error_code ignored;
  fs::remove_all(m_strPath, ignored);
}

std::string CTempDirectory::File(std::string_view name) const { return (fs::path(m_strPath) / name).string(); }

std::string CTempDirectory::WriteFile(std::string_view name, std::string_view content) const {
  std::ofstream file(File(name), std::ios::binary | std::ios::trunc);
  file.write(content.data(), static_cast<std::streamsize>(content.size()));
  file.close();
  if (!file) {
    throw std::runtime_error("cannot write " + File(name));
  }
  return File(name);
}

std::optional<std::string> ReadFile(const std::string &path) {
  const std::ifstream file(path, std::ios::binary);
  if (!file) {
    return std::nullopt;
  }
  std::ostringstream content;
  content << file.rdbuf();
  return content.str();
}

// Fixtures ------------------------------------------------------------------------------------------------------------

LoadedProducerTest::LoadedProducerTest()
    : m_pSettings(std::make_unique<CScopedVariable>(kSettingsVariable, UniquePath("no-settings") + ".reg")) {}

LoadedProducerTest::~LoadedProducerTest() = default;

void LoadedProducerTest::SetUp() {
  Scripted::Script().Reset();
  CProducer::Instance().Load();
}

void LoadedProducerTest::TearDown() {
  Scripted::CScriptedGrb &script = Scripted::Script();
  script.CancelAll();
  script.SetFinalCallback(Scripted::FinalCallback::OwnThread);
  // A library whose callback is still on its way would not let the stream's handle close either.
  script.WaitIdle();
  if (CProducer::Instance().IsLoaded()) {
    const GC_ERROR result = Gc().GCCloseLib();
    EXPECT_TRUE(result == GC_ERR_SUCCESS || result == GC_ERR_NOT_INITIALIZED) << NameOfError(result);
  }
  script.Reset();
}

void ProducerTest::SetUp() {
  LoadedProducerTest::SetUp();
  ASSERT_GC_OK(Gc().GCInitLib());
}

TL_HANDLE ProducerTest::OpenSystem() {
  if (m_hSystem == nullptr) {
    EXPECT_GC_OK(Gc().TLOpen(&m_hSystem));
  }
  return m_hSystem;
}

IF_HANDLE ProducerTest::OpenInterface(const std::string &id) {
  if (m_hInterface == nullptr) {
    EXPECT_GC_OK(Gc().TLOpenInterface(OpenSystem(), id.c_str(), &m_hInterface));
  }
  return m_hInterface;
}

DEV_HANDLE ProducerTest::OpenDevice(DEVICE_ACCESS_FLAGS flags, const std::string &id) {
  if (m_hDevice == nullptr) {
    EXPECT_GC_OK(Gc().IFOpenDevice(OpenInterface(), id.c_str(), flags, &m_hDevice));
  }
  return m_hDevice;
}

PORT_HANDLE ProducerTest::OpenRemotePort() {
  PORT_HANDLE port = nullptr;
  EXPECT_GC_OK(Gc().DevGetPort(OpenDevice(), &port));
  return port;
}

DS_HANDLE ProducerTest::OpenStream() {
  if (m_hStream == nullptr) {
    EXPECT_GC_OK(Gc().DevOpenDataStream(OpenDevice(), "Stream #1", &m_hStream));
  }
  return m_hStream;
}

EVENT_HANDLE ProducerTest::RegisterEvent(EVENTSRC_HANDLE source, EVENT_TYPE type) {
  EVENT_HANDLE event = nullptr;
  EXPECT_GC_OK(Gc().GCRegisterEvent(source, type, &event));
  return event;
}

void ProducerTest::Reinitialise() {
  m_hSystem = nullptr;
  m_hInterface = nullptr;
  m_hDevice = nullptr;
  m_hStream = nullptr;
  EXPECT_GC_OK([] {
    Gc().GCCloseLib();
    return Gc().GCInitLib();
  }());
}

size_t ProducerTest::PayloadSize() { return DsInfo(OpenStream(), STREAM_INFO_PAYLOAD_SIZE).As<size_t>(); }

std::vector<BUFFER_HANDLE> ProducerTest::QueueBuffers(size_t count) {
  std::vector<BUFFER_HANDLE> buffers(count, nullptr);
  const size_t size = PayloadSize();
  for (BUFFER_HANDLE &buffer : buffers) {
    EXPECT_GC_OK(Gc().DSAllocAndAnnounceBuffer(m_hStream, size, nullptr, &buffer));
    EXPECT_GC_OK(Gc().DSQueueBuffer(m_hStream, buffer));
  }
  return buffers;
}

}  // namespace TestSupport
