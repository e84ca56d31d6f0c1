// SPDX-License-Identifier: MIT
// The values of the Device's enumerations are those of the frame-grabber library's header: two names exchanged in one
// of them would go through the simulated library unseen, for it has its values from the same header.
#include <fstream>
#include <map>
#include <regex>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Description.h"

namespace {

using Values = std::map<std::string, std::int64_t>;

/// The macros of the header that are a number.
Values HeaderValues() {
  const std::regex macro(R"(#define (GRB_\w+)\s+(0x[0-9A-Fa-f]+|[0-9]+)U?\b.*)");
  Values values;
  std::ifstream header(LUMIVEX_LIBRARY_HEADER);
  std::smatch parts;
  for (std::string line; std::getline(header, line);) {
    if (std::regex_match(line, parts, macro)) {
      values[parts[1]] = Number(parts[2]);
    }
  }
  return values;
}

/// What the header may call an entry: by its own name, or with what its enumeration is called ahead of it. The values
/// in force are those of the mode that asks for them.
std::vector<std::string> NamesInHeader(const std::string &enumeration, const std::string &entry) {
  return {entry, enumeration + "_" + entry, "GRB_" + entry, enumeration + "_MODE_" + entry};
}

TEST(LibraryValues, EntriesHaveTheValuesOfTheHeader) {
  const CDescription device("LumivexTLDevice.xml");
  const Values values = HeaderValues();
  std::size_t entries = 0;
  Values other;
  for (const auto &node : device.Nodes()) {
    if (node.Kind() != "Enumeration" || node.Name().rfind("GRB_", 0) != 0) {
      continue;
    }
    for (const auto entry : node.xml.children("EnumEntry")) {
      const std::string name = entry.attribute("Name").value();
      auto found = values.end();
      for (const auto &candidate : NamesInHeader(node.Name(), name)) {
        found = found == values.end() ? values.find(candidate) : found;
      }
      ASSERT_NE(values.end(), found) << node.Name() << ": " << name;
      const auto value = Number(entry.child("Value").text().get());
      if (found->second != value) {
        other[name] = value;
      }
      ++entries;
    }
  }
  EXPECT_GT(entries, 300U);
  // Kept: this one has the value of another.
  EXPECT_EQ(Values({{"GRB_BUS_FORMAT_BAYER_RG16", 0xC0022636}}), other);
  EXPECT_EQ(0xC0022639, values.at("GRB_BUS_FORMAT_BAYER_RG16"));
}

}  // namespace
