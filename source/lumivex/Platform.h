// SPDX-License-Identifier: MIT

/// \file
/// All that lumivex asks of the operating system beyond the C++ library. One implementation file per platform; no
/// other file may know which one it is.

#ifndef LUMIVEX_CONSUMER_PLATFORM_H_
#define LUMIVEX_CONSUMER_PLATFORM_H_

#include <cstdio>
#include <filesystem>
#include <string>

namespace Lumivex::Consumer {

/// A shared library, loaded for as long as the object lives.
///
/// Owned by CProducer. Its symbols stay its own: they serve neither the program nor other libraries. The constructor
/// throws CCommandError(NoProducer) with the system's reason when the file cannot be loaded. Not thread-safe.
class CDynamicLibrary {
 public:
  explicit CDynamicLibrary(const std::filesystem::path &file);
  CDynamicLibrary(const CDynamicLibrary &) = delete;
  CDynamicLibrary &operator=(const CDynamicLibrary &) = delete;
  ~CDynamicLibrary();

  /// Address of an exported symbol; null if there is none of this name.
  void *Symbol(const char *name) const noexcept;

 private:
  void *m_pHandle;
};

/// What separates the folders in a list of folders.
char PathListSeparator() noexcept;

/// Value of an environment variable; empty when it is not set.
std::string EnvironmentValue(const char *name);

/// Whether a person reads what is written there.
bool IsTerminal(std::FILE *file) noexcept;

/// A number that no other running process has.
unsigned long ProcessNumber() noexcept;

/// Opens a new file for writing; null, with errno set, when that fails or when the file exists.
std::FILE *CreateNewFile(const std::filesystem::path &file) noexcept;

/// From now on the first request to end (Ctrl-C and the like) only sets the mark that Interrupted() reads. The second
/// one ends the program at once. A reader of our output who has gone is an error of writing from now on, not our end.
void CatchInterrupts() noexcept;

/// Whether the user has asked for the end. Any thread may ask.
bool Interrupted() noexcept;

}  // namespace Lumivex::Consumer

#endif  // LUMIVEX_CONSUMER_PLATFORM_H_
