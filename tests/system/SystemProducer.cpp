// SPDX-License-Identifier: MIT
#include "SystemProducer.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <stdexcept>
#include <sys/syscall.h>
#include <thread>
#include <unistd.h>

namespace SystemTest {

namespace {

const Functions *g_Functions = nullptr;

constexpr char kGuard = '\x5A';

uint32_t Swapped(uint32_t value) { return __builtin_bswap32(value); }

}  // namespace

// Loading -------------------------------------------------------------------------------------------------------------

CLoadedProducer::CLoadedProducer(int flags, const std::string &path) : m_pLibrary(dlopen(path.c_str(), flags)) {
  if (m_pLibrary == nullptr) {
    throw std::runtime_error(dlerror());
  }
#define SYSTEM_RESOLVE(name)                                                        \
  m_Functions.name = reinterpret_cast<P##name>(dlsym(m_pLibrary, #name));           \
  if (m_Functions.name == nullptr) {                                                \
    throw std::runtime_error(std::string("the Producer has no function ") + #name); \
  }
  LUMIVEX_GENTL_FUNCTIONS(SYSTEM_RESOLVE)
#undef SYSTEM_RESOLVE
  g_Functions = &m_Functions;
}

CLoadedProducer::~CLoadedProducer() {
  g_Functions = nullptr;
  dlclose(m_pLibrary);
}

std::string CLoadedProducer::Path() { return LUMIVEX_CTI_PATH; }

bool CLoadedProducer::IsMapped() {
  void *const library = dlopen(Path().c_str(), RTLD_LAZY | RTLD_NOLOAD);
  if (library != nullptr) {
    dlclose(library);
  }
  return library != nullptr;
}

const Functions &Gc() { return *g_Functions; }

// Failures ------------------------------------------------------------------------------------------------------------

LastErrorRecord LastError() {
  LastErrorRecord record;
  char text[1024] = {};
  size_t size = sizeof(text);
  if (Gc().GCGetLastError(&record.code, text, &size) == GC_ERR_SUCCESS) {
    record.text = text;
  }
  return record;
}

testing::AssertionResult CheckOk(GC_ERROR actual) {
  if (actual == GC_ERR_SUCCESS) {
    return testing::AssertionSuccess();
  }
  return testing::AssertionFailure() << "returned " << actual << ": " << LastError().text << "\n  call: ";
}

testing::AssertionResult CheckFailed(const std::vector<GC_ERROR> &expected, GC_ERROR actual) {
  const LastErrorRecord record = LastError();
  if (std::find(expected.begin(), expected.end(), actual) == expected.end()) {
    return testing::AssertionFailure() << "returned " << actual << ": " << record.text << "\n  call: ";
  }
  if (record.code != actual) {
    return testing::AssertionFailure() << "returned " << actual << ", the record has " << record.code << "\n  call: ";
  }
  if (record.text.empty() || record.text.find("No error") == 0) {
    return testing::AssertionFailure() << "the text is \"" << record.text << "\"\n  call: ";
  }
  return testing::AssertionSuccess() << "failed as it should: " << record.text << "\n  call: ";
}

// Info functions ------------------------------------------------------------------------------------------------------

std::string SizedText(const TextCall &call) {
  size_t size = 0;
  EXPECT_OK(call(nullptr, &size));
  if (size == 0) {
    ADD_FAILURE() << "a text of size 0";
    return {};
  }
  std::vector<char> text(size, kGuard);
  EXPECT_OK(call(text.data(), &size));
  EXPECT_EQ(size, text.size());
  EXPECT_EQ(text.back(), '\0');
  return text.data();
}

std::string SizedText(const InfoCall &call) {
  return SizedText([&](char *text, size_t *size) {
    INFO_DATATYPE type = 0;
    const GC_ERROR result = call(&type, text, size);
    EXPECT_TRUE(type == INFO_DATATYPE_STRING || result != GC_ERR_SUCCESS) << type;
    return result;
  });
}

std::string TextWithin(size_t capacity, const TextCall &call) {
  std::vector<char> text(capacity + 1, kGuard);
  size_t size = capacity;
  EXPECT_OK(call(text.data(), &size));
  EXPECT_LE(size, capacity);
  EXPECT_EQ(text[capacity], kGuard) << "the text ran over its buffer";
  text[capacity] = '\0';
  return text.data();
}

std::string TextWithin(size_t capacity, const InfoCall &call) {
  return TextWithin(capacity, [&](char *text, size_t *size) {
    INFO_DATATYPE type = 0;
    return call(&type, text, size);
  });
}

void ExpectRefused(GC_ERROR code, const InfoCall &call) {
  char buffer[64];
  std::fill(std::begin(buffer), std::end(buffer), kGuard);
  INFO_DATATYPE type = 0;
  size_t size = sizeof(buffer);
  EXPECT_FAILED(code, call(&type, buffer, &size));
  EXPECT_TRUE(std::all_of(std::begin(buffer), std::end(buffer), [](char byte) { return byte == kGuard; }));
  EXPECT_EQ(size, sizeof(buffer));
}

// Ports ---------------------------------------------------------------------------------------------------------------

std::optional<UrlPieces> SplitUrl(const std::string &url) {
  const size_t colon = url.find(':');
  const size_t first = url.find(';');
  const size_t second = first == std::string::npos ? first : url.find(';', first + 1);
  if (colon == std::string::npos || second == std::string::npos) {
    return std::nullopt;
  }
  UrlPieces pieces;
  pieces.name = url.substr(colon + 1, first - colon - 1);
  pieces.address = std::strtoull(url.c_str() + first + 1, nullptr, 16);
  pieces.size = static_cast<size_t>(std::strtoull(url.c_str() + second + 1, nullptr, 16));
  return pieces;
}

std::string PortUrl(PORT_HANDLE port) {
  return TextWithin(4096, [=](INFO_DATATYPE *type, void *buffer, size_t *size) {
    return Gc().GCGetPortURLInfo(port, 0, URL_INFO_URL, type, buffer, size);
  });
}

std::vector<char> ReadXmlRegister(PORT_HANDLE port) {
  const std::optional<UrlPieces> url = SplitUrl(PortUrl(port));
  if (!url || url->size == 0) {
    ADD_FAILURE() << "no local URL";
    return {};
  }
  std::vector<char> bytes(url->size + 1, kGuard);
  size_t size = url->size;
  EXPECT_OK(Gc().GCReadPort(port, url->address, bytes.data(), &size));
  EXPECT_EQ(size, url->size);
  EXPECT_EQ(bytes.back(), kGuard) << "the read ran over its buffer";
  bytes.pop_back();
  return bytes;
}

std::string ReadXml(PORT_HANDLE port) {
  const std::vector<char> bytes = ReadXmlRegister(port);
  return std::string(bytes.begin(), std::find(bytes.begin(), bytes.end(), '\0'));
}

GC_ERROR WriteU32(PORT_HANDLE port, uint64_t address, uint32_t value) {
  size_t size = sizeof(value);
  return Gc().GCWritePort(port, address, &value, &size);
}

uint32_t ReadU32(PORT_HANDLE port, uint64_t address) {
  uint32_t value = 0;
  size_t size = sizeof(value);
  EXPECT_OK(Gc().GCReadPort(port, address, &value, &size));
  EXPECT_EQ(size, sizeof(value));
  return value;
}

GC_ERROR WriteU32Be(PORT_HANDLE port, uint64_t address, uint32_t value) {
  return WriteU32(port, address, Swapped(value));
}

uint32_t ReadU32Be(PORT_HANDLE port, uint64_t address) { return Swapped(ReadU32(port, address)); }

// Waiting -------------------------------------------------------------------------------------------------------------

bool WaitUntil(const std::function<bool()> &condition, std::chrono::milliseconds bound) {
  const auto end = std::chrono::steady_clock::now() + bound;
  while (!condition()) {
    if (std::chrono::steady_clock::now() > end) {
      return false;
    }
    std::this_thread::yield();
  }
  return true;
}

int ThreadNumber() { return static_cast<int>(syscall(SYS_gettid)); }

bool IsThreadAsleep(int number) {
  std::ifstream file("/proc/self/task/" + std::to_string(number) + "/stat");
  std::string line;
  std::getline(file, line);
  // The state stands behind the name, which is in parentheses and may hold anything.
  const size_t behindName = line.rfind(") ");
  return behindName != std::string::npos && line[behindName + 2] == 'S';
}

BUFFER_HANDLE NextBuffer(EVENT_HANDLE event, uint64_t timeout, GC_ERROR *result, void **user) {
  EVENT_NEW_BUFFER_DATA record = {};
  size_t size = sizeof(record);
  const GC_ERROR code = Gc().EventGetData(event, &record, &size, timeout);
  if (result != nullptr) {
    *result = code;
  }
  if (code != GC_ERR_SUCCESS) {
    return nullptr;
  }
  EXPECT_EQ(size, sizeof(record));
  if (user != nullptr) {
    *user = record.pUserPointer;
  }
  return record.BufferHandle;
}

}  // namespace SystemTest
