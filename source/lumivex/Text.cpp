// SPDX-License-Identifier: MIT
#include "Text.h"

#include <algorithm>
#include <cstddef>
#include <iomanip>
#include <sstream>

namespace Lumivex::Consumer {
namespace {

bool IsBlank(unsigned char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

bool IsControl(unsigned char c) { return c < 0x20 || c == 0x7F; }

// Bytes that go on a UTF-8 sequence take no column of their own.
std::size_t Columns(const std::string &text) {
  return static_cast<std::size_t>(
      std::count_if(text.begin(), text.end(), [](unsigned char c) { return (c & 0xC0U) != 0x80U; }));
}

}  // namespace

std::string OneLine(const std::string &text) {
  std::string line;
  bool gap = false;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (IsBlank(byte)) {
      gap = true;
      continue;
    }
    if (gap && !line.empty()) {
      line += ' ';
    }
    gap = false;
    line += IsControl(byte) ? '?' : c;
  }
  return line;
}

std::string Counted(uint64_t count, const std::string &noun) {
  return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

std::string Hexadecimal(uint64_t value) {
  std::ostringstream text;
  text << "0x" << std::hex << std::uppercase << std::setw(8) << std::setfill('0') << value;
  return text.str();
}

std::vector<std::string> AlignColumns(const std::vector<std::vector<std::string>> &rows) {
  std::vector<std::size_t> widths;
  for (const auto &row : rows) {
    widths.resize(std::max(widths.size(), row.size()));
    for (std::size_t i = 0; i < row.size(); ++i) {
      widths[i] = std::max(widths[i], Columns(row[i]));
    }
  }
  std::vector<std::string> lines;
  for (const auto &row : rows) {
    std::string line;
    for (std::size_t i = 0; i < row.size(); ++i) {
      line += row[i] + std::string(widths[i] - Columns(row[i]) + 2, ' ');
    }
    line.erase(line.find_last_not_of(' ') + 1);
    lines.push_back(line);
  }
  return lines;
}

}  // namespace Lumivex::Consumer
