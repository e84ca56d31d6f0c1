// SPDX-License-Identifier: MIT
#include "FeatureListing.h"

#include <algorithm>
#include <cstddef>

#include "Platform.h"
#include "Text.h"

namespace Lumivex::Consumer {
namespace {

constexpr int kDeepest = 16;
constexpr std::size_t kIndent = 2;
constexpr std::size_t kLineWidth = 100;
constexpr std::size_t kMostValueCharacters = 80;

// Values of enumerations are bit patterns of the hardware or small numbers.
constexpr int64_t kSmallNumber = 0xFFFF;

struct Line {
  std::string name;    ///< With its indentation.
  std::string access;  ///< Empty for a category.
  std::string value;
  std::vector<std::string> notes;
};

std::string AccessText(const FeatureAccess &access) {
  if (!access.available) {
    return "--";
  }
  return std::string(access.readable ? "r" : "-") + (access.writable ? "w" : "-");
}

std::string EntryText(const FeatureEntry &entry) {
  return entry.name + " = " +
         (entry.value >= 0 && entry.value <= kSmallNumber ? std::to_string(entry.value)
                                                          : Hexadecimal(static_cast<uint64_t>(entry.value)));
}

/// "(16 to 2048, step 16)"
std::string LimitsText(const FeatureLimits &limits) {
  std::string text;
  if (!limits.minimum.empty() && !limits.maximum.empty()) {
    text = limits.minimum + " to " + limits.maximum;
  } else if (!limits.minimum.empty()) {
    text = "at least " + limits.minimum;
  } else if (!limits.maximum.empty()) {
    text = "at most " + limits.maximum;
  }
  if (!limits.increment.empty()) {
    text += (text.empty() ? "step " : ", step ") + limits.increment;
  }
  return text;
}

std::string Cut(const std::string &text, Detail detail) {
  if (detail == Detail::Verbose || text.size() <= kMostValueCharacters) {
    return text;
  }
  std::size_t end = kMostValueCharacters;
  // Not in the midst of a UTF-8 sequence.
  while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80U) {
    --end;
  }
  return text.substr(0, end) + "...";
}

void AddWrapped(const std::vector<std::string> &words, const std::string &separator, std::vector<std::string> &lines) {
  std::string line;
  for (const std::string &word : words) {
    if (line.empty()) {
      line = word;
    } else if (line.size() + separator.size() + word.size() <= kLineWidth) {
      line += separator + word;
    } else {
      // The blank of a separator is of no use at the end of a line.
      lines.push_back(line + separator.substr(0, separator.find_last_not_of(' ') + 1));
      line = word;
    }
  }
  if (!line.empty()) {
    lines.push_back(line);
  }
}

std::vector<std::string> Words(const std::string &text) {
  std::vector<std::string> words;
  for (std::size_t begin = 0; begin < text.size();) {
    const std::size_t end = std::min(text.find(' ', begin), text.size());
    words.push_back(text.substr(begin, end - begin));
    begin = end + 1;
  }
  return words;
}

/// The lines of a listing, collected category by category and laid out at the end, when the widest name is known.
///
/// What cannot be read says so in its line, so that one broken feature does not hide the others.
/// Ownership: local to FormatFeatures; the node map is its caller's. Threads: one.
/// Throws CCommandError(Interrupted) from AddCategory.
class CListing {
 public:
  CListing(const CNodeMap &nodeMap, Detail detail) : m_NodeMap(nodeMap), m_Detail(detail) {}

  void AddCategory(const std::string &category, std::size_t depth) {
    for (const std::string &name : m_NodeMap.Features(category)) {
      if (Interrupted()) {
        throw CCommandError(ExitCode::Interrupted, "interrupted while reading features");
      }
      const FeatureText text = m_NodeMap.Text(name);
      if (text.hidden && m_Detail == Detail::Short) {
        continue;
      }
      if (m_NodeMap.Kind(name) != FeatureKind::Category) {
        AddFeature(name, text, depth);
      } else if (depth < kDeepest) {
        m_Lines.push_back({std::string(depth * kIndent, ' ') + name, "", "", {}});
        const std::size_t before = m_Lines.size();
        AddNotes(text, {}, m_Lines.back());
        AddCategory(name, depth + 1);
        if (m_Lines.size() == before) {
          m_Lines.pop_back();
        }
      }
    }
  }

  std::vector<std::string> Lines() const {
    std::size_t width = 0;
    for (const Line &line : m_Lines) {
      if (!line.access.empty()) {
        width = std::max(width, line.name.size());
      }
    }
    std::vector<std::string> texts;
    for (const Line &line : m_Lines) {
      std::string text = line.name;
      if (!line.access.empty()) {
        text += std::string(width - text.size() + 2, ' ') + line.access;
        text += line.value.empty() ? "" : "  " + line.value;
      }
      texts.push_back(text);
      const std::size_t indent = line.name.find_first_not_of(' ') + 2 * kIndent;
      for (const std::string &note : line.notes) {
        texts.push_back(std::string(indent, ' ') + note);
      }
    }
    return texts;
  }

 private:
  void AddFeature(const std::string &name, const FeatureText &text, std::size_t depth) {
    const FeatureAccess access = m_NodeMap.Access(name);
    const FeatureKind kind = m_NodeMap.Kind(name);
    Line line{std::string(depth * kIndent, ' ') + name, AccessText(access), "", {}};
    if (!access.available) {
      line.value = "(not available)";
    } else if (kind == FeatureKind::Command) {
      line.value = "(command)";
    } else if (access.readable) {
      line.value = Value(name, text);
      if (access.writable) {
        const std::string limits = Limits(name);
        line.value += limits.empty() ? "" : "  (" + limits + ")";
      }
    }
    if (!access.doubt.empty()) {
      line.value += "  (locked or not cannot be told: " + access.doubt + ")";
    } else if (access.available && access.writable && access.locked) {
      line.value += "  (locked)";
    }
    AddNotes(text, m_NodeMap.Entries(name), line);
    m_Lines.push_back(line);
  }

  std::string Value(const std::string &name, const FeatureText &text) const {
    try {
      const std::string value = Cut(OneLine(m_NodeMap.Get(name)), m_Detail);
      if (value.empty()) {
        return "(empty)";
      }
      return text.unit.empty() ? value : value + " " + text.unit;
    } catch (const CCommandError &error) {
      return std::string("(cannot be read: ") + error.what() + ")";
    }
  }

  std::string Limits(const std::string &name) const {
    try {
      return LimitsText(m_NodeMap.Limits(name));
    } catch (const CCommandError &error) {
      return std::string("limits cannot be read: ") + error.what();
    }
  }

  void AddNotes(const FeatureText &text, const std::vector<FeatureEntry> &entries, Line &line) const {
    if (m_Detail == Detail::Short) {
      return;
    }
    AddWrapped(Words(text.toolTip), " ", line.notes);
    std::vector<std::string> words;
    words.reserve(entries.size());
    for (const FeatureEntry &entry : entries) {
      words.push_back(EntryText(entry));
    }
    AddWrapped(words, ", ", line.notes);
  }

  const CNodeMap &m_NodeMap;
  const Detail m_Detail;
  std::vector<Line> m_Lines;
};

}  // namespace

std::vector<std::string> FormatFeatures(const CNodeMap &nodeMap, Detail detail) {
  CListing listing(nodeMap, detail);
  listing.AddCategory("Root", 0);
  return listing.Lines();
}

}  // namespace Lumivex::Consumer
