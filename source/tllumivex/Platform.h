// SPDX-License-Identifier: MIT
/// @file
/// All that the Producer asks of the operating system. One implementation file per platform stands behind it, and
/// no other source knows which platform it is on.
///
/// The settings store and the resources keep the shape of the Windows interfaces they were taken from (a status, 0 for
/// success; a size query ahead of the value), so that both platforms answer alike.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <string>

/// The signature of the enclosing function; CLVXException reduces it to the scoped name.
#if defined(_MSC_VER)
#define LVX_FUNCTION_SIGNATURE __FUNCSIG__
#else
#define LVX_FUNCTION_SIGNATURE __PRETTY_FUNCTION__
#endif

namespace Lumivex::Platform {

/// Identity of the library's own file; null until the file is loaded.
using ModuleHandle = const void *;

/// The handle of the file that this code stands in, stored when the file is loaded.
ModuleHandle LocalModuleHandle() noexcept;

/// Full path of the module's file, cut to nBufferSize - 1 characters.
std::string ModuleFileName(ModuleHandle module, size_t nBufferSize);

/// What stands between the folders of a path.
extern const char kFileSeparator;

/// The fixed part of a file's version record: four 16-bit numbers, high word first.
struct FixedFileVersion {
  uint32_t dwFileVersionMS;
  uint32_t dwFileVersionLS;
};

/// Reads the version record embedded in the module's file; false if there is none.
bool ReadFileVersion(ModuleHandle module, FixedFileVersion &version);

/// Error number of the platform's last failed operation on this thread.
uint32_t LastError() noexcept;

/// A resource of the module's file.
struct Resource;
/// A resource made ready for access.
struct LoadedResource;

/// Finds a resource by number and type name; null if there is none, with the reason in LastError.
const Resource *FindModuleResource(ModuleHandle module, uint16_t nNumber, const char *pType);
/// Loads a resource that was found; null on failure, with the reason in LastError.
const LoadedResource *LoadModuleResource(ModuleHandle module, const Resource *pResource);
/// First byte of a loaded resource; null on failure.
const void *LockModuleResource(const LoadedResource *pLoaded);
/// Bytes of a resource.
uint32_t SizeOfModuleResource(ModuleHandle module, const Resource *pResource);

/// @name Settings store
/// Statuses and type numbers are those of the Windows registry.
/// @{
struct RegistryKey;

constexpr uint32_t kErrorSuccess = 0;
constexpr uint32_t kErrorFileNotFound = 2;
constexpr uint32_t kErrorEnvVarNotFound = 203;
constexpr uint32_t kErrorMoreData = 234;

constexpr uint32_t kRegNone = 0;
constexpr uint32_t kRegText = 1;
constexpr uint32_t kRegExpandText = 2;
constexpr uint32_t kRegBinary = 3;
constexpr uint32_t kRegDword = 4;
constexpr uint32_t kRegMultiText = 7;

/// Opens a key below the machine-wide root for reading.
uint32_t RegOpenKey(const char *pSubKey, RegistryKey **ppKey);
/// Gives a value's type and size, and its bytes if pData is not null; kErrorMoreData if they do not fit into *pcbData.
uint32_t RegQueryValue(RegistryKey *pKey, const char *pName, uint32_t *pType, uint8_t *pData, uint32_t *pcbData);
/// Closes the key.
uint32_t RegCloseKey(RegistryKey *pKey);
/// The platform's words for an error number.
std::string ErrorText(uint32_t nError);
/// @}

/// Reads an environment variable. Returns the length of the content; the size needed, terminator included, if it does
/// not fit (the buffer is then left alone); 0 for an empty or absent one, told apart by LastError.
uint32_t ReadEnvironmentVariable(const char *pName, char *pBuffer, uint32_t nSize);

/// Raw count of the monotonic high-resolution counter.
uint64_t PerformanceCounter() noexcept;

/// Suspends the calling thread.
void SleepMilliseconds(uint32_t nMilliseconds);

/// Brings a text under a title to the user.
void ShowMessage(const char *pText, const char *pTitle) noexcept;

/// A pointer per thread, null until it is set. At the end of a thread that set it, a function is called with it; no
/// more once this object is closed.
class CThreadSlot {
 public:
  explicit CThreadSlot(void (*pAtThreadEnd)(void *pValue));
  CThreadSlot(const CThreadSlot &) = delete;
  CThreadSlot &operator=(const CThreadSlot &) = delete;
  ~CThreadSlot();

  /// Null also when it is closed.
  void *Get() const noexcept;
  /// @throws std::system_error when it is closed, or there is no memory
  void Set(void *pValue);
  void Close() noexcept;

 private:
  [[maybe_unused]] uint32_t m_nKey;
  std::atomic<bool> m_bClosed{false};
};

/// @name The end of the process
/// The library's own objects end when it is unloaded, and nobody is in here then; or when the process ends, and its
/// other threads may still be.
/// @{
/// From now on the end of the process is told from an unload.
void WatchForProcessEnd() noexcept;
bool IsProcessEnding() noexcept;
/// @}

/// Identity of the calling thread.
uint32_t CurrentThreadId() noexcept;

/// Reports a failed assertion and ends the process.
[[noreturn]] void AssertionFailed(const char *pCondition, const char *pFile, unsigned nLine) noexcept;

}  // namespace Lumivex::Platform

/// Active in every build type: a condition that, but for those marked as kept, only a fault of this system or of the
/// library can break.
#define LVX_ASSERT(condition) \
  (static_cast<bool>(condition) ? void() : ::Lumivex::Platform::AssertionFailed(#condition, __FILE__, __LINE__))
