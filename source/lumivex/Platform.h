// SPDX-License-Identifier: MIT
#pragma once

/// \file
/// All that lumivex asks of the operating system beyond the C++ library. One implementation file per platform; no
/// other file may know which one it is.

#include <cstdio>
#include <filesystem>
#include <string>

namespace Lumivex::Consumer {

/// A shared library, loaded for as long as the object lives.
///
/// Its symbols stay its own: they serve neither the program nor other libraries.
/// Ownership: member of CProducer, which ends the Producer before the library goes. Threads: one.
/// Throws CCommandError(NoProducer) with the system's reason when the file cannot be loaded.
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

/// Gives each standard stream that was closed at the start a place where reading and writing fails as before.
/// Otherwise the first file that is opened would take their number, and get what is printed. Call it before anything is
/// opened.
void ReserveStandardFiles() noexcept;

/// Whether nobody can read any more what is written there.
bool IsReaderGone(std::FILE *file) noexcept;

/// Whether a person reads what is written there.
bool IsTerminal(std::FILE *file) noexcept;

/// A number that no other running process has.
unsigned long ProcessNumber() noexcept;

/// Opens a new file for writing; null, with errno set, when that fails or when the file exists.
std::FILE *CreateNewFile(const std::filesystem::path &file) noexcept;

/// From now on the first request to end (Ctrl-C and the like) only sets the mark that Interrupted() reads, and the
/// second one ends the program at once. That the terminal has gone is one such request, however often it is told. What
/// whoever started us has ignored stays ignored.
/// A reader of our output who has gone, and a file that is longer than the system lets us write, are errors of writing
/// from now on, not our end.
void CatchInterrupts() noexcept;

/// Whether the user has asked for the end. Any thread may ask.
bool Interrupted() noexcept;

}  // namespace Lumivex::Consumer
