// SPDX-License-Identifier: MIT
#include "FakePlatform.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <new>
#include <thread>

namespace FakePlatform {

namespace {

State g_State;

}  // namespace

State &Get() { return g_State; }

void Reset() {
  g_State = State();
  g_State.module = &g_State;
  g_State.path = kPath;
  g_State.versionMs = 0x00010002;
  g_State.versionLs = 0x00030004;
  g_State.resource = "<fake/>.x";
}

}  // namespace FakePlatform

namespace Lumivex::Platform {

using FakePlatform::Get;

struct Resource {};
struct LoadedResource {};
struct RegistryKey {};

namespace {

const Resource g_Resource = {};
const LoadedResource g_Loaded = {};
RegistryKey g_Key = {};

}  // namespace

const char kFileSeparator = '\\';

ModuleHandle LocalModuleHandle() noexcept { return Get().module; }

std::string ModuleFileName(ModuleHandle, size_t nBufferSize) {
  Get().pathSizes.push_back(nBufferSize);
  return Get().path.substr(0, nBufferSize - 1);
}

bool ReadFileVersion(ModuleHandle, FixedFileVersion &version) {
  version.dwFileVersionMS = Get().versionMs;
  version.dwFileVersionLS = Get().versionLs;
  return Get().hasVersion;
}

uint32_t LastError() noexcept { return Get().lastError; }

const Resource *FindModuleResource(ModuleHandle, uint16_t nNumber, const char *pType) {
  Get().resourcesAsked.emplace_back(nNumber, pType);
  if (Get().onFind) {
    Get().onFind();
  }
  return Get().failFind ? nullptr : &g_Resource;
}

const LoadedResource *LoadModuleResource(ModuleHandle, const Resource *) {
  return Get().failLoad ? nullptr : &g_Loaded;
}

const void *LockModuleResource(const LoadedResource *) { return Get().failLock ? nullptr : Get().resource.data(); }

uint32_t SizeOfModuleResource(ModuleHandle, const Resource *) { return static_cast<uint32_t>(Get().resource.size()); }

uint32_t RegOpenKey(const char *pSubKey, RegistryKey **ppKey) {
  Get().keysOpened.emplace_back(pSubKey);
  if (Get().openKeyResult == kErrorSuccess) {
    ++Get().keysOpen;
    *ppKey = &g_Key;
  }
  return Get().openKeyResult;
}

uint32_t RegQueryValue(RegistryKey *, const char *pName, uint32_t *pType, uint8_t *pData, uint32_t *pcbData) {
  const FakePlatform::Query query = {pName, pData != nullptr, pData == nullptr ? 0 : *pcbData};
  Get().queries.push_back(query);
  if (Get().onQuery) {
    Get().onQuery(query);
  }
  const auto entry = Get().values.find(pName);
  if (entry == Get().values.end()) {
    return kErrorFileNotFound;
  }
  const std::vector<uint8_t> &bytes = entry->second.bytes;
  const uint32_t nRoom = *pcbData;
  *pType = entry->second.type;
  *pcbData = static_cast<uint32_t>(bytes.size());
  if (pData != nullptr) {
    if (nRoom < bytes.size()) {
      return kErrorMoreData;
    }
    std::copy(bytes.begin(), bytes.end(), pData);
  }
  return kErrorSuccess;
}

uint32_t RegCloseKey(RegistryKey *) {
  --Get().keysOpen;
  return kErrorSuccess;
}

std::string ErrorText(uint32_t nError) {
  Get().errorTexts.push_back(nError);
  return "words";
}

uint32_t ReadEnvironmentVariable(const char *, char *pBuffer, uint32_t nSize) {
  std::snprintf(pBuffer, nSize, "%s", Get().environmentContent.c_str());
  return Get().environmentResult;
}

uint64_t PerformanceCounter() noexcept { return 0; }

void SleepMilliseconds(uint32_t) { std::this_thread::yield(); }

void ShowMessage(const char *pText, const char *pTitle) noexcept { Get().messages.emplace_back(pText, pTitle); }

// No thread of these tests outlives its record: nothing has to be told at its end. Records that live as long as the
// program look into their slot after the main thread's objects are gone, so the table is one that nothing destroys.
namespace {

struct Slot {
  const void *pOwner;
  void *pValue;
};

thread_local std::array<Slot, 8> t_Slots;

// The slot of `pOwner`, or the first free one.
Slot &SlotOf(const void *pOwner) noexcept {
  const auto slot = std::find_if(t_Slots.begin(), t_Slots.end(), [pOwner](const Slot &entry) {
    return entry.pOwner == pOwner || entry.pOwner == nullptr;
  });
  if (slot == t_Slots.end()) {
    std::abort();
  }
  return *slot;
}

}  // namespace

CThreadSlot::CThreadSlot(void (*)(void *)) : m_nKey(0) {}
CThreadSlot::~CThreadSlot() = default;
void *CThreadSlot::Get() const noexcept { return SlotOf(this).pValue; }
void CThreadSlot::Close() noexcept {}
void CThreadSlot::Set(void *pValue) {
  if (FakePlatform::Get().failSlot) {
    throw std::bad_alloc();
  }
  SlotOf(this) = {this, pValue};
}

void WatchForProcessEnd() noexcept {}
bool IsProcessEnding() noexcept { return false; }

uint32_t CurrentThreadId() noexcept {
  return static_cast<uint32_t>(std::hash<std::thread::id>()(std::this_thread::get_id()));
}

void AssertionFailed(const char *pCondition, const char *pFile, unsigned nLine) noexcept {
  std::fprintf(stderr, "%s:%u: Assertion failed: %s\n", pFile, nLine, pCondition);
  std::abort();
}

}  // namespace Lumivex::Platform
