// SPDX-License-Identifier: MIT
// What holds for each of the five descriptions: sizes, heads, references, and the rules that a GenApi asks for.
#include "Description.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <iterator>
#include <map>
#include <ostream>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace {

constexpr std::size_t kAnySize = 0;

struct FileRow {
  const char *fileName;
  std::size_t size;
  bool byteOrderMark;
  const char *className;
  const char *modelName;
  const char *schemaVersion[3];
  const char *fileVersion[3];
  const char *port;
};

constexpr FileRow kFiles[] = {
    {"LumivexTLSystem.xml", 9404, false, "CTL", "TL_Lumivex_System", {"1", "1", "1"}, {"2", "0", "0"}, "TLPort"},
    {"LumivexTLInterface.xml",
     7300,
     false,
     "CInterface",
     "TL_Lumivex_Interface",
     {"1", "1", "1"},
     {"2", "0", "0"},
     "InterfacePort"},
    {"LumivexTLDevice.xml",
     150740,
     true,
     "CDevice",
     "TL_Lumivex_Device",
     {"1", "1", "1"},
     {"2", "0", "0"},
     "DevicePort"},
    {"LumivexTLDataStream.xml",
     kAnySize,
     false,
     "CDataStream",
     "TL_Lumivex_DataStream",
     {"1", "1", "0"},
     {"2", "0", "0"},
     "StreamPort"},
    {"LumivexTLBuffer.xml",
     kAnySize,
     false,
     "CBufferInfo",
     "TL_Lumivex_Buffer",
     {"1", "1", "0"},
     {"1", "0", "8"},
     "BufferPort"},
};

std::ostream &operator<<(std::ostream &out, const FileRow &row) { return out << row.fileName; }

// The elements of GenApi schema 1.1 in its order, as far as the descriptions use them.
const std::vector<std::string> kCommonOrder = {"ToolTip",      "Description", "DisplayName",
                                               "Visibility",   "EventID",     "pIsImplemented",
                                               "pIsAvailable", "pIsLocked",   "ImposedAccessMode"};
const std::vector<std::string> kRegisterOrder = {"Streamable", "pAddress", "Address",     "Length",      "AccessMode",
                                                 "pPort",      "Cachable", "PollingTime", "pInvalidator"};
const std::map<std::string, std::vector<std::string>> kOrder = {
    {"Category", {"pInvalidator", "pFeature"}},
    {"Integer",
     {"pInvalidator", "Streamable", "Value", "pValue", "Min", "pMin", "Max", "pMax", "Inc", "Unit", "Representation",
      "pSelected"}},
    {"IntReg", {"Sign", "Endianess", "Unit", "Representation", "pSelected"}},
    {"StringReg", {}},
    {"Register", {}},
    {"Boolean", {"pInvalidator", "Streamable", "pValue", "OnValue", "OffValue"}},
    {"Command", {"pInvalidator", "pValue", "CommandValue", "PollingTime"}},
    {"Enumeration", {"pInvalidator", "Streamable", "EnumEntry", "Value", "pValue", "pSelected", "PollingTime"}},
    {"EnumEntry", {"Value"}},
    {"IntSwissKnife", {"pInvalidator", "Streamable", "pVariable", "Formula", "Unit", "Representation"}},
    {"Port", {}},
};

const std::map<std::string, std::vector<std::string>> kRequired = {
    {"Category", {"pFeature"}},
    {"Integer", {}},
    {"IntReg", {"Address", "Length", "AccessMode", "pPort", "Endianess"}},
    {"StringReg", {"Address", "Length", "AccessMode", "pPort"}},
    {"Register", {"Address", "Length", "AccessMode", "pPort"}},
    {"Boolean", {"pValue"}},
    {"Command", {"pValue", "CommandValue"}},
    {"Enumeration", {"EnumEntry"}},
    {"EnumEntry", {"Value"}},
    {"IntSwissKnife", {"pVariable", "Formula"}},
    {"Port", {}},
};

const std::map<std::string, std::set<std::string>> kWords = {
    {"Visibility", {"Beginner", "Expert", "Guru", "Invisible"}},
    {"AccessMode", {"RO", "WO", "RW"}},
    {"ImposedAccessMode", {"RO", "WO", "RW"}},
    {"Cachable", {"NoCache", "WriteThrough", "WriteAround"}},
    {"Sign", {"Signed", "Unsigned"}},
    {"Endianess", {"LittleEndian"}},
    {"Streamable", {"Yes", "No"}},
    {"Representation", {"PureNumber"}},
};

bool IsRegister(const std::string &kind) { return kind == "IntReg" || kind == "StringReg" || kind == "Register"; }

std::vector<std::string> OrderOf(const std::string &kind) {
  auto order = kCommonOrder;
  if (IsRegister(kind)) {
    order.insert(order.end(), kRegisterOrder.begin(), kRegisterOrder.end());
  }
  const auto &own = kOrder.at(kind);
  order.insert(order.end(), own.begin(), own.end());
  return order;
}

/// The nodes of a file and the entries of its enumerations.
std::vector<pugi::xml_node> NodesAndEntries(const CDescription &description) {
  std::vector<pugi::xml_node> all;
  for (const auto &node : description.Nodes()) {
    all.push_back(node.xml);
    for (const auto entry : node.xml.children("EnumEntry")) {
      all.push_back(entry);
    }
  }
  return all;
}

/// pValue, pFeature and so on: elements that hold the name of a node.
bool IsReference(const std::string &element) {
  return element.size() > 1 && element[0] == 'p' && std::isupper(static_cast<unsigned char>(element[1])) != 0;
}

std::set<std::string> Identifiers(const std::string &formula) {
  std::set<std::string> found;
  std::string word;
  for (const char c : formula + ' ') {
    if (std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_') {
      word += c;
    } else {
      if (!word.empty() && std::isdigit(static_cast<unsigned char>(word[0])) == 0) {
        found.insert(word);
      }
      word.clear();
    }
  }
  return found;
}

class DescriptionFile : public testing::TestWithParam<FileRow> {
 protected:
  const CDescription m_Description{GetParam().fileName};
};

TEST(DescriptionFolder, HoldsTheFiveFilesAndNoOther) {
  std::set<std::string> expected;
  for (const auto &row : kFiles) {
    expected.insert(row.fileName);
  }
  std::set<std::string> found;
  for (const auto &entry : std::filesystem::directory_iterator(LUMIVEX_XML_DIR)) {
    found.insert(entry.path().filename().string());
  }
  EXPECT_EQ(expected, found);
}

TEST(DescriptionFolder, GuidsDifferBetweenAnyTwoFiles) {
  std::set<std::string> guids;
  for (const auto &row : kFiles) {
    const CDescription description(row.fileName);
    for (const char *attribute : {"ProductGuid", "VersionGuid"}) {
      const std::string guid = description.Root().attribute(attribute).value();
      EXPECT_EQ(36u, guid.size()) << row.fileName << ' ' << attribute;
      EXPECT_TRUE(guids.insert(guid).second) << row.fileName << ' ' << attribute << " stands elsewhere too";
    }
  }
}

TEST_P(DescriptionFile, HasItsPublishedSize) {
  if (GetParam().size != kAnySize) {
    EXPECT_EQ(GetParam().size, m_Description.Bytes().size()) << "run scripts/fill-xml";
  } else {
    EXPECT_FALSE(m_Description.Bytes().empty());
  }
}

// A Consumer's parser refuses content behind the root's end: the fill stands ahead of it.
TEST_P(DescriptionFile, EndsWithTheRootsEndTag) {
  const std::string end = "</RegisterDescription>\n";
  const auto &bytes = m_Description.Bytes();
  ASSERT_GE(bytes.size(), end.size());
  EXPECT_EQ(end, bytes.substr(bytes.size() - end.size()));
}

TEST_P(DescriptionFile, OnlyTheDevicesBeginsWithAByteOrderMark) {
  const std::string declaration = "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n";
  const auto expected = (GetParam().byteOrderMark ? "\xEF\xBB\xBF" : "") + declaration;
  EXPECT_EQ(expected, m_Description.Bytes().substr(0, expected.size()));
}

TEST_P(DescriptionFile, HoldsNoZeroByteAndNoCarriageReturn) {
  EXPECT_EQ(std::string::npos, m_Description.Bytes().find('\0'));
  EXPECT_EQ(std::string::npos, m_Description.Bytes().find('\r'));
}

TEST_P(DescriptionFile, FirstCommentRemindsOfTheNumbersKeptByHand) {
  EXPECT_EQ(std::string("Also change the version of the file and the schema in ") + GetParam().className +
                "::GetPortURLInfo()",
            m_Description.FirstComment());
}

TEST_P(DescriptionFile, RootAttributesAreTheTables) {
  const auto &row = GetParam();
  const std::map<std::string, std::string> expected = {
      {"ModelName", row.modelName},
      {"VendorName", "Lumivex"},
      {"ToolTip", "Lumivex GenTL Producer"},
      {"StandardNameSpace", "None"},
      {"SchemaMajorVersion", row.schemaVersion[0]},
      {"SchemaMinorVersion", row.schemaVersion[1]},
      {"SchemaSubMinorVersion", row.schemaVersion[2]},
      {"MajorVersion", row.fileVersion[0]},
      {"MinorVersion", row.fileVersion[1]},
      {"SubMinorVersion", row.fileVersion[2]},
      {"xmlns", "http://www.genicam.org/GenApi/Version_1_1"},
      {"xmlns:xsi", "http://www.w3.org/2001/XMLSchema-instance"},
      {"xsi:schemaLocation",
       "http://www.genicam.org/GenApi/Version_1_1 http://www.genicam.org/GenApi/GenApiSchema_Version_1_1.xsd"},
  };
  std::map<std::string, std::string> found;
  for (const auto attribute : m_Description.Root().attributes()) {
    const std::string name = attribute.name();
    if (name != "ProductGuid" && name != "VersionGuid") {
      found[name] = attribute.value();
    }
  }
  EXPECT_EQ(expected, found);
}

TEST_P(DescriptionFile, NodeNamesAreUnique) {
  std::set<std::string> names;
  for (const auto &node : m_Description.Nodes()) {
    EXPECT_FALSE(node.Name().empty()) << node.Kind();
    EXPECT_TRUE(names.insert(node.Name()).second) << node.Name() << " stands twice";
  }
}

TEST_P(DescriptionFile, EntryNamesAndValuesAreUniqueWithinAnEnumeration) {
  for (const auto &node : m_Description.Nodes()) {
    std::set<std::string> names;
    std::set<std::int64_t> values;
    for (const auto entry : node.xml.children("EnumEntry")) {
      const std::string name = entry.attribute("Name").value();
      EXPECT_TRUE(names.insert(name).second) << node.Name() << '.' << name;
      const bool isNew = values.insert(Number(entry.child("Value").text().get())).second;
      // Kept: this bus format shares its value with GRB_BUS_FORMAT_BAYER_GB14, which stands behind it.
      EXPECT_EQ(name != "GRB_BUS_FORMAT_BAYER_GB14", isNew) << node.Name() << '.' << name;
    }
  }
}

TEST_P(DescriptionFile, EveryReferenceNamesANodeOfTheFile) {
  for (const auto &node : m_Description.Nodes()) {
    for (const auto element : node.xml.children()) {
      if (IsReference(element.name())) {
        EXPECT_TRUE(m_Description.Has(element.text().get()))
            << node.Name() << ": " << element.name() << " names " << element.text().get();
      }
    }
  }
}

TEST_P(DescriptionFile, EveryRegisterStandsOnTheOnePort) {
  int ports = 0;
  for (const auto &node : m_Description.Nodes()) {
    if (node.Kind() == "Port") {
      ++ports;
      EXPECT_EQ(GetParam().port, node.Name());
    } else if (IsRegister(node.Kind())) {
      EXPECT_EQ(GetParam().port, node.Text("pPort")) << node.Name();
    }
  }
  EXPECT_EQ(1, ports);
}

TEST_P(DescriptionFile, ElementsStandInTheOrderOfTheSchema) {
  for (const auto node : NodesAndEntries(m_Description)) {
    ASSERT_EQ(1u, kOrder.count(node.name())) << "unknown kind of node " << node.name();
    const auto order = OrderOf(node.name());
    std::ptrdiff_t last = 0;
    for (const auto element : node.children()) {
      if (element.type() != pugi::node_element) {
        continue;
      }
      const auto place = std::find(order.begin(), order.end(), element.name()) - order.begin();
      ASSERT_LT(place, static_cast<std::ptrdiff_t>(order.size()))
          << node.attribute("Name").value() << " has a " << element.name();
      EXPECT_LE(last, place) << node.attribute("Name").value() << ": " << element.name() << " stands too late";
      last = place;
    }
  }
}

TEST_P(DescriptionFile, NoNodeLacksARequiredElement) {
  for (const auto node : NodesAndEntries(m_Description)) {
    for (const auto &element : kRequired.at(node.name())) {
      EXPECT_TRUE(node.child(element.c_str())) << node.attribute("Name").value() << " has no " << element;
    }
    if (std::string(node.name()) == "Integer" || std::string(node.name()) == "Enumeration") {
      EXPECT_NE(!node.child("Value"), !node.child("pValue")) << node.attribute("Name").value();
    }
  }
}

TEST_P(DescriptionFile, NoElementIsEmptyOrUnknown) {
  for (const auto node : NodesAndEntries(m_Description)) {
    const std::string nameSpace = node.attribute("NameSpace").value();
    EXPECT_TRUE(nameSpace.empty() || nameSpace == "Standard" || nameSpace == "Custom") << nameSpace;
    for (const auto element : node.children()) {
      if (element.type() != pugi::node_element || std::string(element.name()) == "EnumEntry") {
        continue;
      }
      const std::string text = element.text().get();
      EXPECT_FALSE(text.empty()) << node.attribute("Name").value() << '.' << element.name();
      const auto words = kWords.find(element.name());
      if (words != kWords.end()) {
        EXPECT_EQ(1u, words->second.count(text))
            << node.attribute("Name").value() << '.' << element.name() << ' ' << text;
      }
    }
  }
}

TEST_P(DescriptionFile, StandardFeaturesAreDescribed) {
  for (const auto &node : m_Description.Nodes()) {
    if (node.NameSpace() == "Standard") {
      for (const char *element : {"ToolTip", "Description", "DisplayName"}) {
        EXPECT_TRUE(node.xml.child(element)) << node.Name() << " has no " << element;
      }
    }
  }
}

// A variable that the formula does not use, or a name in it that is no variable, makes a Consumer's formula fail.
TEST_P(DescriptionFile, FormulasUseTheirVariables) {
  for (const auto &node : m_Description.Nodes()) {
    if (node.Kind() != "IntSwissKnife") {
      continue;
    }
    std::set<std::string> variables;
    for (const auto variable : node.xml.children("pVariable")) {
      variables.insert(variable.attribute("Name").value());
    }
    EXPECT_EQ(variables, Identifiers(node.Text("Formula"))) << node.Name();
  }
}

// Two registers that share a byte show each other's value.
TEST_P(DescriptionFile, RegistersDoNotOverlap) {
  std::map<std::int64_t, std::pair<std::int64_t, std::string>> ranges;
  for (const auto &node : m_Description.Nodes()) {
    if (!IsRegister(node.Kind())) {
      continue;
    }
    const auto address = m_Description.AddressOf(node);
    EXPECT_EQ(0, address % 4) << node.Name();
    // Kept: this one lies inside the text of GRB_CONFIG_FILE and is not served.
    if (node.Name() != "GRB_Intrpt_Test_Test_Reg") {
      const auto end = address + Number(node.Text("Length"));
      EXPECT_TRUE(ranges.emplace(address, std::make_pair(end, node.Name())).second) << node.Name();
    }
  }
  for (auto it = ranges.begin(); it != ranges.end() && std::next(it) != ranges.end(); ++it) {
    EXPECT_LE(it->second.first, std::next(it)->first) << it->second.second << " and " << std::next(it)->second.second;
  }
}

TEST_P(DescriptionFile, EveryCategoryButTheTopAndTheTestsStandsInACategory) {
  std::set<std::string> listed;
  for (const auto &node : m_Description.Nodes()) {
    for (const auto feature : node.xml.children("pFeature")) {
      EXPECT_TRUE(listed.insert(feature.text().get()).second) << feature.text().get() << " is listed twice";
    }
  }
  for (const auto &node : m_Description.Nodes()) {
    if (node.Kind() == "Category") {
      const bool isTop = node.Name() == "Root" || node.Name() == "GRB_INTRPT_TESTData";
      EXPECT_EQ(isTop ? 0u : 1u, listed.count(node.Name())) << node.Name();
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Files, DescriptionFile, testing::ValuesIn(kFiles), [](const auto &test) {
  const std::string name = test.param.fileName;
  return name.substr(0, name.find('.'));
});

}  // namespace
