// SPDX-License-Identifier: MIT
#pragma once

#include <cstdio>
#include <filesystem>

#include "Frame.h"

namespace Lumivex::Consumer {

/// Writes one picture to one PNG file, whole or not at all.
///
/// The constructor makes a file of a passing name in the target's folder; Write fills it and gives it its name, in
/// place of a file that had it. A writer that dies before leaves nothing behind. The folder must exist. So making a
/// writer and dropping it tells whether a picture could be written. Ownership: one per picture. Threads: one. Throws
/// CCommandError(Output) with the system's reason.
class CPngWriter {
 public:
  explicit CPngWriter(const std::filesystem::path &target);
  CPngWriter(const CPngWriter &) = delete;
  CPngWriter &operator=(const CPngWriter &) = delete;
  ~CPngWriter();

  void Write(const Picture &picture);

 private:
  [[noreturn]] void Fail(const std::string &reason) const;

  const std::filesystem::path m_Target;  // As the user knows it.
  std::filesystem::path m_Final;         // Where links in it lead to.
  std::filesystem::path m_Passing;       // Empty once the picture has its name.
  std::FILE *m_pFile = nullptr;
};

}  // namespace Lumivex::Consumer
