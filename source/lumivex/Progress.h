// SPDX-License-Identifier: MIT

#ifndef LUMIVEX_CONSUMER_PROGRESS_H_
#define LUMIVEX_CONSUMER_PROGRESS_H_

#include <cstddef>
#include <cstdio>
#include <string>

namespace Lumivex::Consumer {

/// One line on a terminal that is written over again and again, and wiped at the end. Silent elsewhere.
///
/// Ownership: belongs to a command; what else is written to the terminal comes after Clear. Threads: one.
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

#endif  // LUMIVEX_CONSUMER_PROGRESS_H_
