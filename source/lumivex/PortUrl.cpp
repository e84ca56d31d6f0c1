// SPDX-License-Identifier: MIT
#include "PortUrl.h"

#include <algorithm>
#include <charconv>
#include <cstddef>

namespace Lumivex::Consumer {
namespace {

bool StartsWith(const std::string &text, const std::string &smallStart) {
  return text.size() >= smallStart.size() &&
         std::equal(smallStart.begin(), smallStart.end(), text.begin(),
                    [](char a, char b) { return a == (b >= 'A' && b <= 'Z' ? static_cast<char>(b - 'A' + 'a') : b); });
}

bool ParseHexadecimal(const std::string &text, uint64_t &value) {
  const std::size_t begin = StartsWith(text, "0x") ? 2 : 0;
  const char *const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data() + begin, end, value, 16);
  return error == std::errc() && stop == end;
}

// "%20" and the like.
std::string Decoded(const std::string &text) {
  std::string decoded;
  for (std::size_t i = 0; i < text.size(); ++i) {
    unsigned value = 0;
    if (text[i] == '%' && i + 2 < text.size() &&
        std::from_chars(&text[i + 1], &text[i + 3], value, 16).ptr == &text[i + 3]) {
      decoded += static_cast<char>(value);
      i += 2;
    } else {
      decoded += text[i];
    }
  }
  return decoded;
}

}  // namespace

std::optional<PortUrl> ParsePortUrl(const std::string &url) {
  PortUrl parts;
  std::string text = url.substr(0, url.find('?'));
  if (StartsWith(text, "file:")) {
    text.erase(0, 5);
    if (StartsWith(text, "///")) {
      // One slash is the root; more of them come from who put a path with its slash behind "file:///".
      text.erase(0, std::min(text.find_first_not_of('/'), text.size()) - 1);
      // A drive letter needs no slash before it.
      if (text.size() > 2 && text[2] == ':') {
        text.erase(0, 1);
      }
    }
    parts.name = Decoded(text);
    return parts.name.empty() ? std::nullopt : std::optional<PortUrl>(parts);
  }
  if (!StartsWith(text, "local:")) {
    return std::nullopt;
  }
  text.erase(0, 6);
  text.erase(0, std::min(text.find_first_not_of('/'), text.size()));
  const std::size_t first = text.find(';');
  const std::size_t second = first == std::string::npos ? first : text.find(';', first + 1);
  if (second == std::string::npos) {
    return std::nullopt;
  }
  parts.local = true;
  parts.name = text.substr(0, first);
  if (!ParseHexadecimal(text.substr(first + 1, second - first - 1), parts.address) ||
      !ParseHexadecimal(text.substr(second + 1), parts.size)) {
    return std::nullopt;
  }
  return parts;
}

}  // namespace Lumivex::Consumer
