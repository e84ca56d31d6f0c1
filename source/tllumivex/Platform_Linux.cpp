// SPDX-License-Identifier: MIT
#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <cxxabi.h>
#include <dlfcn.h>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <pthread.h>
#include <semaphore.h>
#include <sys/mman.h>
#include <system_error>
#include <unistd.h>
#include <utility>
#include <vector>

#include <climits>

#include "Platform.h"

namespace Lumivex::Platform {

// The rows and the record stand in Resources.S.
struct Resource {
  const char *pType;
  const uint8_t *pBegin;
  uint32_t nNumber;
  uint32_t nSize;
};

namespace {

struct VersionRecord {
  uint32_t dwSignature;
  FixedFileVersion version;
};

extern "C" {
extern const Resource lumivex_resources[];
extern const Resource lumivex_resources_end[];
extern const VersionRecord lumivex_version_record;
}

constexpr uint32_t kVersionSignature = 0xFEEF04BD;

// No object with a constructor: it is filled when the file is loaded, ahead of the other initialisations.
struct LoadedModule {
  ModuleHandle handle;
  char path[PATH_MAX];
};
LoadedModule g_Module;

thread_local uint32_t t_nLastError = 0;

/// The file as it was named to the loader, with its folder made absolute while the current one is still that of the
/// load. Links to the file itself are not followed: its name is what the user sees.
__attribute__((constructor)) void StoreModuleIdentity() {
  Dl_info info = {};
  if (dladdr(&g_Module, &info) == 0 || info.dli_fname == nullptr) {
    return;
  }
  g_Module.handle = info.dli_fbase;
  const char *pSeparator = std::strrchr(info.dli_fname, '/');
  const char *pName = pSeparator == nullptr ? info.dli_fname : pSeparator + 1;
  char folder[PATH_MAX] = ".";
  if (pSeparator != nullptr) {
    const auto nLength = static_cast<size_t>(pSeparator - info.dli_fname);
    if (nLength >= sizeof(folder)) {
      return;
    }
    std::memcpy(folder, info.dli_fname, nLength);
    folder[nLength] = '\0';
    if (nLength == 0) {
      std::memcpy(folder, "/", 2);
    }
  }
  char absolute[PATH_MAX] = {};
  if (realpath(folder, absolute) == nullptr) {
    return;
  }
  const size_t nFolder = std::strcmp(absolute, "/") == 0 ? 0 : std::strlen(absolute);
  const size_t nName = std::strlen(pName);
  if (nFolder + nName + 2 > sizeof(g_Module.path)) {
    return;
  }
  std::memcpy(g_Module.path, absolute, nFolder);
  g_Module.path[nFolder] = '/';
  std::memcpy(g_Module.path + nFolder + 1, pName, nName + 1);
}

void AppendUtf8(std::string &strText, uint32_t nCodePoint) {
  const auto put = [&strText](uint32_t nByte) { strText.push_back(static_cast<char>(nByte)); };
  if (nCodePoint < 0x80) {
    put(nCodePoint);
  } else if (nCodePoint < 0x800) {
    put(0xC0U | (nCodePoint >> 6U));
    put(0x80U | (nCodePoint & 0x3FU));
  } else if (nCodePoint < 0x10000) {
    put(0xE0U | (nCodePoint >> 12U));
    put(0x80U | ((nCodePoint >> 6U) & 0x3FU));
    put(0x80U | (nCodePoint & 0x3FU));
  } else {
    put(0xF0U | (nCodePoint >> 18U));
    put(0x80U | ((nCodePoint >> 12U) & 0x3FU));
    put(0x80U | ((nCodePoint >> 6U) & 0x3FU));
    put(0x80U | (nCodePoint & 0x3FU));
  }
}

/// UTF-16 to UTF-8. A surrogate without its partner becomes the replacement character; an odd last byte is dropped.
std::string FromUtf16(const std::string &strBytes, size_t nBegin, bool bBigEndian) {
  constexpr uint32_t kReplacement = 0xFFFD;
  const auto unit = [&](size_t i) {
    const uint32_t nFirst = static_cast<uint8_t>(strBytes[i]);
    const uint32_t nSecond = static_cast<uint8_t>(strBytes[i + 1]);
    return bBigEndian ? (nFirst << 8U) | nSecond : (nSecond << 8U) | nFirst;
  };
  const auto isHigh = [](uint32_t n) { return n >= 0xD800 && n < 0xDC00; };
  const auto isLow = [](uint32_t n) { return n >= 0xDC00 && n < 0xE000; };

  std::string strText;
  for (size_t i = nBegin; i + 1 < strBytes.size(); i += 2) {
    const uint32_t nUnit = unit(i);
    if (isHigh(nUnit) && i + 3 < strBytes.size() && isLow(unit(i + 2))) {
      AppendUtf8(strText, 0x10000U + ((nUnit - 0xD800U) << 10U) + (unit(i + 2) - 0xDC00U));
      i += 2;
    } else {
      AppendUtf8(strText, isHigh(nUnit) || isLow(nUnit) ? kReplacement : nUnit);
    }
  }
  return strText;
}

/// The text of a file that a registry editor or a person wrote: UTF-8 or UTF-16, marked or not.
std::string DecodeText(const std::string &strBytes) {
  if (strBytes.compare(0, 3, "\xEF\xBB\xBF") == 0) {
    return strBytes.substr(3);
  }
  if (strBytes.compare(0, 2, "\xFF\xFE") == 0) {
    return FromUtf16(strBytes, 2, false);
  }
  if (strBytes.compare(0, 2, "\xFE\xFF") == 0) {
    return FromUtf16(strBytes, 2, true);
  }
  if (strBytes.size() >= 2 && strBytes[0] != '\0' && strBytes[1] == '\0') {
    return FromUtf16(strBytes, 0, false);
  }
  if (strBytes.size() >= 2 && strBytes[0] == '\0' && strBytes[1] != '\0') {
    return FromUtf16(strBytes, 0, true);
  }
  return strBytes;
}

/// Names of keys and values do not tell upper from lower case.
std::string FoldCase(std::string strText) {
  std::transform(strText.begin(), strText.end(), strText.begin(),
                 [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
  return strText;
}

struct RegistryValue {
  uint32_t nType = kRegNone;
  std::string strBytes;
};
using RegistryValues = std::map<std::string, RegistryValue>;

int HexDigit(char c) {
  if (c >= '0' && c <= '9') {
    return c - '0';
  }
  const char cLower = static_cast<char>(c | 0x20);
  return cLower >= 'a' && cLower <= 'f' ? cLower - 'a' + 10 : -1;
}

/// Reads up to nMaxDigits hexadecimal digits. @return how many there were
size_t ReadHex(const std::string &strText, size_t nAt, size_t nMaxDigits, uint32_t &nValue) {
  size_t nDigits = 0;
  nValue = 0;
  while (nDigits < nMaxDigits && nAt + nDigits < strText.size() && HexDigit(strText[nAt + nDigits]) >= 0) {
    nValue = nValue * 16 + static_cast<uint32_t>(HexDigit(strText[nAt + nDigits]));
    ++nDigits;
  }
  return nDigits;
}

/// The values of one key in a text of the form that the Windows registry editor exports. What is malformed is left
/// out, as if it were absent.
class CRegistryExport {
 public:
  CRegistryExport(std::string strText, const std::string &strKey)
      : m_strText(std::move(strText)), m_strKey(FoldCase(strKey)) {
    Parse();
  }

  bool HasKey() const { return m_bKeyFound; }
  const RegistryValues &Values() const { return m_Values; }

 private:
  void Parse() {
    m_bRawTexts = m_strText.compare(0, 8, "REGEDIT4") == 0;
    bool bInKey = false;
    while (SkipWhiteSpace()) {
      const char c = m_strText[m_nAt];
      if (c == '[') {
        bInKey = ReadKey();
      } else if (c == '"') {
        ReadValue(bInKey);
      } else {
        ReadLine();
      }
    }
  }

  bool SkipWhiteSpace() {
    m_nAt = std::min(m_strText.find_first_not_of(" \t\r\n", m_nAt), m_strText.size());
    return m_nAt < m_strText.size();
  }

  void SkipBlanks() { m_nAt = std::min(m_strText.find_first_not_of(" \t", m_nAt), m_strText.size()); }

  /// The rest of the line, without trailing blanks.
  std::string ReadLine() {
    const size_t nEnd = std::min(m_strText.find_first_of("\r\n", m_nAt), m_strText.size());
    std::string strLine = m_strText.substr(m_nAt, nEnd - m_nAt);
    m_nAt = nEnd;
    strLine.erase(strLine.find_last_not_of(" \t") + 1);
    return strLine;
  }

  /// `[key]` opens a key, `[-key]` takes it away.
  bool ReadKey() {
    std::string strLine = FoldCase(ReadLine());
    const size_t nEnd = strLine.find(']');
    if (nEnd == std::string::npos) {
      return false;
    }
    strLine = strLine.substr(1, nEnd - 1);
    // Taking a key away takes those below it along.
    if (strLine == "-" + m_strKey || (strLine[0] == '-' && m_strKey.rfind(strLine.substr(1) + "\\", 0) == 0)) {
      m_bKeyFound = false;
      m_Values.clear();
    }
    if (strLine != m_strKey) {
      return false;
    }
    m_bKeyFound = true;
    return true;
  }

  /// Reads a text in quotation marks, which may hold line ends.
  bool ReadQuoted(std::string &strResult) {
    for (++m_nAt; m_nAt < m_strText.size(); ++m_nAt) {
      char c = m_strText[m_nAt];
      if (c == '"') {
        ++m_nAt;
        return true;
      }
      const char cNext = m_nAt + 1 < m_strText.size() ? m_strText[m_nAt + 1] : '\0';
      if (c == '\\' && (cNext == '\\' || cNext == '"')) {
        c = cNext;
        ++m_nAt;
      }
      strResult.push_back(c);
    }
    return false;
  }

  /// The rest of the line is blank or a comment.
  bool IsLineDone() {
    const std::string strRest = ReadLine();
    const size_t nFirst = strRest.find_first_not_of(" \t");
    return nFirst == std::string::npos || strRest[nFirst] == ';';
  }

  void ReadValue(bool bInKey) {
    const size_t nLineBegin = m_nAt;
    std::string strName;
    RegistryValue value;
    bool bGood = ReadQuoted(strName);
    SkipBlanks();
    if (bGood && m_nAt < m_strText.size() && m_strText[m_nAt] == '=') {
      ++m_nAt;
      SkipBlanks();
      if (m_nAt < m_strText.size() && m_strText[m_nAt] == '-') {
        ++m_nAt;
        if (IsLineDone() && bInKey) {
          m_Values.erase(FoldCase(strName));
        }
        return;
      }
      bGood = ReadContent(value);
    } else {
      bGood = false;
    }
    if (!bGood) {
      // A mark that is never closed must not swallow the lines behind it.
      m_nAt = nLineBegin;
      ReadLine();
    } else if (bInKey) {
      m_Values[FoldCase(strName)] = value;
    }
  }

  bool ReadContent(RegistryValue &value) {
    if (m_nAt < m_strText.size() && m_strText[m_nAt] == '"') {
      value.nType = kRegText;
      if (!ReadQuoted(value.strBytes)) {
        return false;
      }
      value.strBytes.push_back('\0');
      return IsLineDone();
    }
    const std::string strContent = FoldCase(ReadContinuedLine());
    if (strContent.compare(0, 6, "dword:") == 0) {
      return ReadDword(strContent, value);
    }
    if (strContent.compare(0, 3, "hex") == 0) {
      return ReadBytes(strContent, value);
    }
    return false;
  }

  /// A line, joined with those behind it as long as it ends in a backslash; without its comment.
  std::string ReadContinuedLine() {
    std::string strLine = ReadLineWithoutComment();
    while (!strLine.empty() && strLine.back() == '\\') {
      strLine.pop_back();
      SkipWhiteSpace();
      strLine += ReadLineWithoutComment();
    }
    return strLine;
  }

  std::string ReadLineWithoutComment() {
    std::string strLine = ReadLine();
    strLine.erase(std::min(strLine.find(';'), strLine.size()));
    strLine.erase(strLine.find_last_not_of(" \t") + 1);
    return strLine;
  }

  static bool ReadDword(const std::string &strContent, RegistryValue &value) {
    constexpr size_t kPrefix = 6;
    uint32_t nNumber = 0;
    const size_t nDigits = ReadHex(strContent, kPrefix, 8, nNumber);
    if (nDigits == 0 || kPrefix + nDigits != strContent.size()) {
      return false;
    }
    value.nType = kRegDword;
    value.strBytes.assign(reinterpret_cast<const char *>(&nNumber), sizeof(nNumber));
    return true;
  }

  /// `hex:` with bytes, or `hex(type):`.
  bool ReadBytes(const std::string &strContent, RegistryValue &value) const {
    size_t nAt = 3;
    value.nType = kRegBinary;
    if (nAt < strContent.size() && strContent[nAt] == '(') {
      const size_t nDigits = ReadHex(strContent, nAt + 1, 8, value.nType);
      nAt += nDigits + 1;
      if (nDigits == 0 || nAt >= strContent.size() || strContent[nAt] != ')') {
        return false;
      }
      ++nAt;
    }
    if (nAt >= strContent.size() || strContent[nAt] != ':') {
      return false;
    }
    ++nAt;
    while (nAt < strContent.size()) {
      if (strContent[nAt] == ' ' || strContent[nAt] == '\t') {
        ++nAt;
        continue;
      }
      uint32_t nByte = 0;
      const size_t nDigits = ReadHex(strContent, nAt, 2, nByte);
      nAt += nDigits;
      if (nDigits == 0 || (nAt < strContent.size() && strContent[nAt] != ',')) {
        return false;
      }
      ++nAt;
      value.strBytes.push_back(static_cast<char>(nByte));
    }
    const bool bText = value.nType == kRegText || value.nType == kRegExpandText || value.nType == kRegMultiText;
    if (bText && !m_bRawTexts) {
      value.strBytes = FromUtf16(value.strBytes, 0, false);
    }
    return true;
  }

  std::string m_strText;
  std::string m_strKey;
  size_t m_nAt = 0;
  bool m_bRawTexts = false;
  bool m_bKeyFound = false;
  RegistryValues m_Values;
};

/// Reads the settings file; false if it is no regular file, cannot be read, or is too large to be one.
bool ReadSettingsFile(std::string &strBytes) {
  constexpr size_t kLimit = size_t{16} * 1024 * 1024;
  const char *pName = std::getenv("LUMIVEX_GENTL_REG");
  const std::string strPath = pName != nullptr && *pName != '\0' ? pName : "/etc/lumivex/gentl.reg";
  std::error_code error;
  if (!std::filesystem::is_regular_file(strPath, error)) {
    return false;
  }
  std::ifstream file(strPath, std::ios::binary);
  std::array<char, 4096> chunk = {};
  while (file.read(chunk.data(), chunk.size()), file.gcount() > 0) {
    strBytes.append(chunk.data(), static_cast<size_t>(file.gcount()));
    if (strBytes.size() > kLimit) {
      return false;
    }
  }
  return file.eof();
}

}  // namespace

struct RegistryKey {
  RegistryValues values;
};

// A resource of an ELF file is mapped with it: loading and locking have nothing left to do.
struct LoadedResource {};

const char kFileSeparator = '/';

ModuleHandle LocalModuleHandle() noexcept { return g_Module.handle; }

std::string ModuleFileName(ModuleHandle module, size_t nBufferSize) {
  if (module != g_Module.handle || nBufferSize == 0) {
    return std::string();
  }
  return std::string(g_Module.path, strnlen(g_Module.path, nBufferSize - 1));
}

bool ReadFileVersion(ModuleHandle module, FixedFileVersion &version) {
  if (module != g_Module.handle || lumivex_version_record.dwSignature != kVersionSignature) {
    return false;
  }
  version = lumivex_version_record.version;
  return true;
}

uint32_t LastError() noexcept { return t_nLastError; }

const Resource *FindModuleResource(ModuleHandle module, uint16_t nNumber, const char *pType) {
  if (module == g_Module.handle) {
    for (const Resource *pRow = lumivex_resources; pRow != lumivex_resources_end; ++pRow) {
      if (pRow->nNumber == nNumber && std::strcmp(pRow->pType, pType) == 0) {
        return pRow;
      }
    }
  }
  t_nLastError = ENOENT;
  return nullptr;
}

const LoadedResource *LoadModuleResource(ModuleHandle, const Resource *pResource) {
  return reinterpret_cast<const LoadedResource *>(pResource->pBegin);
}

const void *LockModuleResource(const LoadedResource *pLoaded) { return pLoaded; }

uint32_t SizeOfModuleResource(ModuleHandle, const Resource *pResource) { return pResource->nSize; }

uint32_t RegOpenKey(const char *pSubKey, RegistryKey **ppKey) {
  std::string strBytes;
  if (!ReadSettingsFile(strBytes)) {
    return kErrorFileNotFound;
  }
  const CRegistryExport content(DecodeText(strBytes), std::string("HKEY_LOCAL_MACHINE\\") + pSubKey);
  if (!content.HasKey()) {
    return kErrorFileNotFound;
  }
  *ppKey = new RegistryKey{content.Values()};
  return kErrorSuccess;
}

uint32_t RegQueryValue(RegistryKey *pKey, const char *pName, uint32_t *pType, uint8_t *pData, uint32_t *pcbData) {
  const auto entry = pKey->values.find(FoldCase(pName));
  if (entry == pKey->values.end()) {
    return kErrorFileNotFound;
  }
  const std::string &strBytes = entry->second.strBytes;
  const auto nSize = static_cast<uint32_t>(strBytes.size());
  const uint32_t nRoom = *pcbData;
  *pType = entry->second.nType;
  *pcbData = nSize;
  if (pData != nullptr) {
    if (nRoom < nSize) {
      return kErrorMoreData;
    }
    std::memcpy(pData, strBytes.data(), nSize);
  }
  return kErrorSuccess;
}

uint32_t RegCloseKey(RegistryKey *pKey) {
  delete pKey;
  return kErrorSuccess;
}

std::string ErrorText(uint32_t nError) { return std::system_category().message(static_cast<int>(nError)); }

uint32_t ReadEnvironmentVariable(const char *pName, char *pBuffer, uint32_t nSize) {
  const char *pContent = std::getenv(pName);
  if (pContent == nullptr) {
    t_nLastError = kErrorEnvVarNotFound;
    return 0;
  }
  const size_t nLength = std::strlen(pContent);
  if (nLength >= nSize) {
    return static_cast<uint32_t>(nLength + 1);
  }
  std::memcpy(pBuffer, pContent, nLength + 1);
  t_nLastError = kErrorSuccess;
  return static_cast<uint32_t>(nLength);
}

uint64_t PerformanceCounter() noexcept {
  constexpr uint64_t kNanosecondsPerSecond = 1000000000;
  timespec now = {};
  clock_gettime(CLOCK_MONOTONIC, &now);
  return static_cast<uint64_t>(now.tv_sec) * kNanosecondsPerSecond + static_cast<uint64_t>(now.tv_nsec);
}

void SleepMilliseconds(uint32_t nMilliseconds) {
  timespec left = {static_cast<time_t>(nMilliseconds / 1000), static_cast<long>(nMilliseconds % 1000) * 1000000L};
  while (nanosleep(&left, &left) != 0 && errno == EINTR) {
  }
}

void ShowMessage(const char *pText, const char *pTitle) noexcept {
  try {
    std::string strLine(pText);
    std::replace(strLine.begin(), strLine.end(), '\n', ' ');
    std::fprintf(stderr, "%s: %s\n", pTitle, strLine.c_str());
  } catch (...) {
    // No memory for the copy: the text goes out with its line ends.
    std::fprintf(stderr, "%s: %s\n", pTitle, pText);
  }
}

static_assert(sizeof(pthread_key_t) == sizeof(uint32_t), "the key has to fit its member");

CThreadSlot::CThreadSlot(void (*pAtThreadEnd)(void *pValue)) : m_nKey(0) {
  const int iError = pthread_key_create(&m_nKey, pAtThreadEnd);
  if (iError != 0) {
    throw std::system_error(iError, std::system_category());
  }
}

CThreadSlot::~CThreadSlot() { Close(); }

void *CThreadSlot::Get() const noexcept { return m_bClosed ? nullptr : pthread_getspecific(m_nKey); }

void CThreadSlot::Set(void *pValue) {
  const int iError = m_bClosed ? EINVAL : pthread_setspecific(m_nKey, pValue);
  if (iError != 0) {
    throw std::system_error(iError, std::system_category());
  }
}

void CThreadSlot::Close() noexcept {
  if (!m_bClosed.exchange(true)) {
    pthread_key_delete(m_nKey);
  }
}

namespace {

/// Posted when the process ends. It outlives the library, so it has a page of its own, which stays: one for each load
/// that was initialised.
std::atomic<sem_t *> g_pProcessEnd{nullptr};

}  // namespace

void WatchForProcessEnd() noexcept {
  if (g_pProcessEnd != nullptr) {
    return;
  }
  void *pPage = mmap(nullptr, sizeof(sem_t), PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (pPage == MAP_FAILED) {
    return;
  }
  auto *pProcessEnd = static_cast<sem_t *>(pPage);
  // A function under a handle that no library has is called at the end of the process only (Itanium C++ ABI, 3.3.6),
  // ahead of the destructors of all that was made before. It must not be one of ours: we may be gone by then. Its
  // result is not looked at, so it may have one.
  const auto pPost = reinterpret_cast<void (*)(void *)>(reinterpret_cast<void (*)()>(&sem_post));
  if (sem_init(pProcessEnd, 0, 0) != 0 || abi::__cxa_atexit(pPost, pProcessEnd, pProcessEnd) != 0) {
    munmap(pPage, sizeof(sem_t));
    return;
  }
  g_pProcessEnd = pProcessEnd;
}

bool IsProcessEnding() noexcept {
  sem_t *pProcessEnd = g_pProcessEnd;
  int nPosted = 0;
  return pProcessEnd != nullptr && sem_getvalue(pProcessEnd, &nPosted) == 0 && nPosted > 0;
}

uint32_t CurrentThreadId() noexcept { return static_cast<uint32_t>(gettid()); }

void AssertionFailed(const char *pCondition, const char *pFile, unsigned nLine) noexcept {
  std::fprintf(stderr, "%s:%u: Assertion failed: %s\n", pFile, nLine, pCondition);
  std::abort();
}

}  // namespace Lumivex::Platform
