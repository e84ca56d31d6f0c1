// SPDX-License-Identifier: MIT
#include "NearestNames.h"

#include <algorithm>
#include <utility>

namespace Lumivex::Consumer {
namespace {

constexpr std::size_t kMostNames = 3;

// Below this many letters a part of a name says too little.
constexpr std::size_t kShortestPart = 4;

std::string Small(std::string text) {
  for (char &c : text) {
    if (c >= 'A' && c <= 'Z') {
      c = static_cast<char>(c - 'A' + 'a');
    }
  }
  return text;
}

bool IsPart(const std::string &part, const std::string &whole) {
  return part.size() >= kShortestPart && whole.find(part) != std::string::npos;
}

}  // namespace

std::size_t EditDistance(const std::string &one, const std::string &other) {
  const std::string a = Small(one);
  const std::string b = Small(other);
  // Three rows of the table are enough: the one in work and the two above it, for swaps.
  std::vector<std::size_t> before(b.size() + 1);
  std::vector<std::size_t> above(b.size() + 1);
  std::vector<std::size_t> row(b.size() + 1);
  for (std::size_t j = 0; j <= b.size(); ++j) {
    above[j] = j;
  }
  for (std::size_t i = 1; i <= a.size(); ++i) {
    row[0] = i;
    for (std::size_t j = 1; j <= b.size(); ++j) {
      const std::size_t replaced = above[j - 1] + (a[i - 1] == b[j - 1] ? 0 : 1);
      row[j] = std::min({above[j] + 1, row[j - 1] + 1, replaced});
      if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1]) {
        row[j] = std::min(row[j], before[j - 2] + 1);
      }
    }
    std::swap(before, above);
    std::swap(above, row);
  }
  return above[b.size()];
}

std::vector<std::string> NearestNames(const std::string &wish, const std::vector<std::string> &names) {
  const std::string small = Small(wish);
  const std::size_t farthest = std::max<std::size_t>(1, wish.size() / 3);
  std::vector<std::pair<std::size_t, std::string>> near;
  for (const std::string &name : names) {
    const std::size_t distance = EditDistance(wish, name);
    const std::string smallName = Small(name);
    if (distance <= farthest && distance < wish.size()) {
      near.emplace_back(distance, name);
    } else if (IsPart(small, smallName) || IsPart(smallName, small)) {
      near.emplace_back(farthest + distance, name);
    }
  }
  std::stable_sort(near.begin(), near.end(), [](const auto &a, const auto &b) { return a.first < b.first; });
  std::vector<std::string> nearest;
  for (const auto &[distance, name] : near) {
    if (nearest.size() < kMostNames && std::find(nearest.begin(), nearest.end(), name) == nearest.end()) {
      nearest.push_back(name);
    }
  }
  return nearest;
}

std::string DidYouMean(const std::string &wish, const std::vector<std::string> &names) {
  const std::vector<std::string> nearest = NearestNames(wish, names);
  if (nearest.empty()) {
    return "";
  }
  std::string text = "; did you mean ";
  for (std::size_t i = 0; i < nearest.size(); ++i) {
    text += (i == 0 ? "" : i + 1 == nearest.size() ? " or " : ", ") + nearest[i];
  }
  return text + "?";
}

}  // namespace Lumivex::Consumer
