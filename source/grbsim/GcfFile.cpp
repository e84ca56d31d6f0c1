// SPDX-License-Identifier: MIT
#include "GcfFile.h"

#include <charconv>
#include <fstream>
#include <string_view>

#include "SimError.h"

namespace grbsim {
namespace {

constexpr std::string_view kHead = "[GRB_CONFIGURATION]";

std::string_view Trimmed(std::string_view text) {
  constexpr std::string_view kBlanks = " \t\r";
  const size_t begin = text.find_first_not_of(kBlanks);
  return begin == std::string_view::npos ? std::string_view()
                                         : text.substr(begin, text.find_last_not_of(kBlanks) - begin + 1);
}

bool ParseNumber(std::string_view text, uint64_t &value) {
  const bool hexadecimal = text.size() > 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X');
  if (hexadecimal) {
    text.remove_prefix(2);
  }
  const char *end = text.data() + text.size();
  const auto result = std::from_chars(text.data(), end, value, hexadecimal ? 16 : 10);
  return result.ec == std::errc() && result.ptr == end;
}

}  // namespace

void LoadGcfFile(const std::string &path, CParameterStore &store) {
  std::ifstream file(path, std::ios::binary);
  if (!file) {
    Fail(kStatusFile, "The GCF file '%s' cannot be opened.", path.c_str());
  }
  std::string line;
  unsigned number = 0;
  bool headSeen = false;
  while (std::getline(file, line)) {
    ++number;
    const std::string_view text = Trimmed(line);
    if (text.empty() || text.front() == '#') {
      continue;
    }
    if (!headSeen) {
      headSeen = text == kHead;
      if (!headSeen) {
        break;
      }
      continue;
    }
    const size_t equals = text.find('=');
    uint64_t value = 0;
    if (equals == std::string_view::npos || !ParseNumber(Trimmed(text.substr(equals + 1)), value)) {
      Fail(kStatusFile, "The GCF file '%s' is malformed at line %u.", path.c_str(), number);
    }
    bool known = false;
    try {
      known = store.SetByName(Trimmed(text.substr(0, equals)), value);
    } catch (const CSimError &error) {
      Fail(kStatusFile, "The GCF file '%s' is malformed at line %u: %s", path.c_str(), number, error.what());
    }
    if (!known) {
      Fail(kStatusFile, "The GCF file '%s' names an unknown parameter at line %u.", path.c_str(), number);
    }
  }
  if (!headSeen) {
    Fail(kStatusFile, "The file '%s' is no GCF file.", path.c_str());
  }
}

void SaveGcfFile(const std::string &path, const CParameterStore &store) {
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  if (!file) {
    Fail(kStatusFile, "The GCF file '%s' cannot be written.", path.c_str());
  }
  file << "# Configuration of a frame-grabber channel\n" << kHead << '\n' << std::hex << std::uppercase;
  for (const auto &[name, value] : store.FileValues()) {
    file << name << " = 0x" << value << '\n';
  }
  file.flush();
  if (!file) {
    Fail(kStatusFile, "The GCF file '%s' could not be written to its end.", path.c_str());
  }
}

}  // namespace grbsim
