// SPDX-License-Identifier: MIT
#include "OutputPattern.h"

#include "CommandError.h"

namespace Lumivex::Consumer {
namespace {

// A wider number would be no file name any more.
constexpr std::size_t kLargestWidth = 99;

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

[[noreturn]] void Refuse(const std::string &pattern, const std::string &reason) {
  throw CCommandError(ExitCode::Usage, "output pattern '" + pattern + "': " + reason);
}

}  // namespace

COutputPattern::COutputPattern(const std::string &pattern, uint64_t count) {
  if (pattern.empty()) {
    Refuse(pattern, "it is empty");
  }
  std::size_t position = 0;
  while (position < pattern.size()) {
    std::string &part = m_bNumbered ? m_After : m_Before;
    const char c = pattern[position++];
    if (c == '\0') {
      Refuse(pattern, "it holds a zero byte");
    }
    if (c != '%') {
      part += c;
    } else if (position < pattern.size() && pattern[position] == '%') {
      part += '%';
      ++position;
    } else {
      ReadConversion(pattern, position);
    }
  }
  if (count > 1 && !m_bNumbered) {
    Refuse(pattern, "for more than one frame it needs a place for the number, such as %03d");
  }
}

void COutputPattern::ReadConversion(const std::string &pattern, std::size_t &position) {
  if (position < pattern.size() && pattern[position] == '0') {
    m_Fill = '0';
    ++position;
  }
  while (position < pattern.size() && IsDigit(pattern[position]) && m_Width <= kLargestWidth) {
    m_Width = m_Width * 10 + static_cast<std::size_t>(pattern[position] - '0');
    ++position;
  }
  if (m_Width > kLargestWidth) {
    Refuse(pattern, "a number can be at most " + std::to_string(kLargestWidth) + " digits wide");
  }
  if (position == pattern.size() || pattern[position] != 'd') {
    Refuse(pattern, "only %d is understood, as in %d or %03d; %% stands for a per cent sign");
  }
  if (m_bNumbered) {
    Refuse(pattern, "it can have only one place for the number");
  }
  m_bNumbered = true;
  ++position;
}

std::string COutputPattern::Name(uint64_t number) const {
  if (!m_bNumbered) {
    return m_Before;
  }
  const std::string digits = std::to_string(number);
  const std::string fill(m_Width > digits.size() ? m_Width - digits.size() : 0, m_Fill);
  return m_Before + fill + digits + m_After;
}

}  // namespace Lumivex::Consumer
