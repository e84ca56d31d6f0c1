// SPDX-License-Identifier: MIT
// The generated page, read as a user reads it: what a description offers can be looked up there. That its text is the
// generator's is a test of its own; this one holds the generator to account.
#include <algorithm>
#include <fstream>
#include <map>
#include <ostream>
#include <regex>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Description.h"

namespace {

using Cells = std::vector<std::string>;

/// What the page says of one module.
struct Section {
  std::map<std::string, Cells> rows;                                   ///< by feature, in Markdown
  std::map<std::string, std::map<std::string, std::int64_t>> entries;  ///< by enumeration and name
  Cells twice;                                                         ///< features with more than one row
};

/// The cells of a line of a table; a bar within a cell has a backslash ahead of it.
Cells CellsOf(const std::string &line) {
  Cells cells(1);
  for (std::size_t i = 1; i < line.size(); ++i) {
    if (line[i] == '|' && line[i - 1] != '\\') {
      cells.back() = Trimmed(cells.back());
      cells.emplace_back();
    } else {
      cells.back() += line[i];
    }
  }
  cells.pop_back();
  return cells;
}

Section ReadSection(const std::string &fileName) {
  std::ifstream page(LUMIVEX_FEATURES_PAGE);
  const std::regex feature(R"(`(\w+)`)");
  const std::regex heading(R"(Entries of `(\w+)`:)");
  const std::regex entry(R"(- `(\w+)` = (\w+)(: .*)?)");
  Section section;
  bool inside = false;
  std::string enumeration;
  std::smatch parts;
  for (std::string line; std::getline(page, line);) {
    if (line.rfind("## ", 0) == 0) {
      inside = false;
    } else if (line.find("Description: `" + fileName + "`") != std::string::npos) {
      inside = true;
    } else if (inside && line.rfind("| `", 0) == 0) {
      const Cells cells = CellsOf(line);
      if (std::regex_match(cells[0], parts, feature) && !section.rows.emplace(parts[1], cells).second) {
        section.twice.push_back(parts[1]);
      }
    } else if (inside && std::regex_match(line, parts, heading)) {
      enumeration = parts[1];
    } else if (inside && std::regex_match(line, parts, entry)) {
      section.entries[enumeration][parts[1]] = Number(parts[2]);
    }
  }
  return section;
}

class FeaturesPage : public testing::TestWithParam<const char *> {
 protected:
  const CDescription m_Description{GetParam()};
  const Section m_Section = ReadSection(GetParam());
};

TEST_P(FeaturesPage, HasARowForEachFeatureAndForNothingElse) {
  // Behind a feature, not one itself.
  std::set<std::string> behind;
  for (const auto &node : m_Description.Nodes()) {
    behind.insert(node.Text("pValue"));
    behind.insert(node.Text("pAddress"));
  }
  std::set<std::string> expected;
  for (const auto &node : m_Description.Nodes()) {
    if (node.Kind() != "Category" && node.Kind() != "Port" && behind.count(node.Name()) == 0) {
      expected.insert(node.Name());
    }
  }
  std::set<std::string> found;
  for (const auto &[name, cells] : m_Section.rows) {
    found.insert(name);
    EXPECT_EQ(9U, cells.size()) << name;
  }
  EXPECT_EQ(expected, found);
  EXPECT_EQ(Cells(), m_Section.twice);
}

TEST_P(FeaturesPage, HasARowForEachNodeThatACellNames) {
  const std::regex quoted("`(\\w+)`");
  for (const auto &[name, cells] : m_Section.rows) {
    for (const std::size_t column : {3U, 4U}) {  // condition, range
      const std::string &cell = cells[column];
      // The names of a formula's variables are not those of nodes.
      const std::set<std::string> variables = [&, &feature = name] {
        std::set<std::string> names;
        for (const auto variable : m_Description.At(feature).xml.children("pVariable")) {
          names.insert(variable.attribute("Name").value());
        }
        return names;
      }();
      for (std::sregex_iterator it(cell.begin(), cell.end(), quoted); it != std::sregex_iterator(); ++it) {
        if (variables.count((*it)[1]) == 0) {
          EXPECT_EQ(1U, m_Section.rows.count((*it)[1])) << name << " refers to " << (*it)[1];
        }
      }
    }
  }
}

TEST_P(FeaturesPage, ListsTheEntriesOfEachEnumeration) {
  std::map<std::string, std::map<std::string, std::int64_t>> expected;
  for (const auto &node : m_Description.Nodes()) {
    for (const auto entry : node.xml.children("EnumEntry")) {
      expected[node.Name()][entry.attribute("Name").value()] = Number(entry.child("Value").text().get());
    }
  }
  EXPECT_EQ(expected, m_Section.entries);
}

INSTANTIATE_TEST_SUITE_P(Files, FeaturesPage,
                         testing::Values("LumivexTLSystem.xml", "LumivexTLInterface.xml", "LumivexTLDevice.xml",
                                         "LumivexTLDataStream.xml", "LumivexTLBuffer.xml"),
                         [](const auto &test) {
                           const std::string name = test.param;
                           return name.substr(0, name.find('.'));
                         });

/// Cells that are more than a copy of an element.
struct CellRow {
  const char *feature;
  std::size_t column;
  const char *text;
};
constexpr std::size_t kAccess = 2;
constexpr std::size_t kCondition = 3;
constexpr std::size_t kRange = 4;
constexpr std::size_t kRegister = 6;
constexpr std::size_t kParameter = 7;
constexpr CellRow kCells[] = {
    // Its value is where it starts, not all that it may be.
    {"TLParamsLocked", kAccess, "RW"},
    {"TLParamsLocked", kRange, "starts at 0"},
    {"DeviceType", kAccess, "constant"},
    {"DataStreamOpen", kAccess, "RO"},
    {"MaxStreamIndex", kRange, "`MAXINDEX - 1` where `MAXINDEX` is `StreamCount`"},
    // A formula is as available as its variables.
    {"WidthMax", kCondition, "if `DataStreamOpen`"},
    {"MaxStreamIndex", kCondition, ""},
    // The lock stands on the command, the condition on its register.
    {"GRB_CONFIG_FILE_SAVE", kCondition, "if `DataStreamOpen`, not while `TLParamsLocked`"},
    {"GRB_IO_IN_PORT", kParameter, ""},
    {"GRB_IO_IN_VALUE", kParameter, "the one that `GRB_IO_IN_PORT` chooses"},
    {"GRB_IO_OUT_METHOD", kParameter, "the one that `GRB_IO_OUT_PORT` chooses, at the bit of `GRB_IO_OUT_BIT`"},
    {"GRB_CONFIG_FILE_LOAD", kParameter, "all: the stream handle is made anew from the file"},
    {"GRB_CONFIG_FILE_SAVE", kParameter, "`GRB_ACTION_CONFIG_SAVE`"},
    {"Width", kParameter, "`GRB_ROI_XLENGTH`"},
    {"PixelFormat", kParameter, "`GRB_BUS_FORMAT`, `GRB_USR_FORMAT`"},
    // Kept: this feature stands on its twin's register.
    {"GRB_ACQ_YSUB", kRegister, "0x1428, 4 bytes"},
    {"GRB_ACQ_YSUB", kParameter, "`GRB_ACQ_XSUB`"},
};

TEST(FeaturesPageCells, SayWhatTheFeatureDoes) {
  const Section device = ReadSection("LumivexTLDevice.xml");
  for (const CellRow &row : kCells) {
    SCOPED_TRACE(std::string(row.feature) + " " + std::to_string(row.column));
    ASSERT_EQ(1U, device.rows.count(row.feature));
    EXPECT_EQ(row.text, device.rows.at(row.feature).at(row.column));
  }
}

}  // namespace
