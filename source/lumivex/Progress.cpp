// SPDX-License-Identifier: MIT
#include "Progress.h"

#include <algorithm>

#include "Platform.h"

namespace Lumivex::Consumer {

CProgress::CProgress(std::FILE *pFile) noexcept : m_pFile(pFile), m_bVisible(IsTerminal(pFile)) {}

CProgress::~CProgress() { Clear(); }

void CProgress::Show(const std::string &line) {
  if (!m_bVisible) {
    return;
  }
  const std::size_t leftover = m_Length - std::min(m_Length, line.size());
  std::fprintf(m_pFile, "\r%s%*s", line.c_str(), static_cast<int>(leftover), "");
  std::fflush(m_pFile);
  m_Length = line.size();
}

void CProgress::Clear() {
  if (m_Length > 0) {
    std::fprintf(m_pFile, "\r%*s\r", static_cast<int>(m_Length), "");
    std::fflush(m_pFile);
    m_Length = 0;
  }
}

}  // namespace Lumivex::Consumer
