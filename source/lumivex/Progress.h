// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdio>
#include <string>

namespace Lumivex::Consumer {

/// One line on a terminal that is written over again and again, and wiped at the end. Silent elsewhere.
///
/// What else is written to the terminal comes after Clear.
/// Ownership: local to a command's run; the file stays its caller's. Threads: one. Throws nothing; a terminal that
/// takes no more text is no reason to stop.
class CProgress {
 public:
  explicit CProgress(std::FILE *pFile) noexcept;
  CProgress(const CProgress &) = delete;
  CProgress &operator=(const CProgress &) = delete;
  ~CProgress();

  bool Visible() const noexcept { return m_bVisible; }
  void Show(const std::string &line);
  void Clear();

 private:
  std::FILE *m_pFile;
  bool m_bVisible;
  std::size_t m_Length = 0;
};

}  // namespace Lumivex::Consumer
