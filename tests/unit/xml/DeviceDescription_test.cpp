// SPDX-License-Identifier: MIT
// The Device's description, held against the tables of DeviceTables.h, row by row and column by column.
#include <algorithm>
#include <iterator>
#include <map>
#include <ostream>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "Description.h"
#include "DeviceTables.h"

void PrintTo(const RegisterRow &row, std::ostream *out) { *out << row.node; }
void PrintTo(const CategoryRow &row, std::ostream *out) { *out << row.name; }
void PrintTo(const FeatureRow &row, std::ostream *out) { *out << row.name; }
void PrintTo(const FormulaRow &row, std::ostream *out) { *out << row.name; }
void PrintTo(const EnumerationRow &row, std::ostream *out) { *out << row.name; }
void PrintTo(const ToolTipRow &row, std::ostream *out) { *out << row.node; }

namespace {

using Entries = std::vector<std::pair<std::string, std::int64_t>>;
using Names = std::vector<std::string>;

const Names kWords = {"ToolTip", "Description", "DisplayName"};

const CDescription &Device() {
  static const CDescription description("LumivexTLDevice.xml");
  return description;
}

bool IsStandard(const std::string &name) {
  return std::find(std::begin(kStandardNodes), std::end(kStandardNodes), name) != std::end(kStandardNodes);
}

/// The name space that a node may have: Custom may be said or left out.
bool NameSpaceFits(const CDescription::Node &node) {
  return IsStandard(node.Name()) ? node.NameSpace() == "Standard" : node.NameSpace() != "Standard";
}

Names WordsAnd(const char *element) {
  auto names = kWords;
  names.push_back(element);
  return names;
}

Entries Expand(const std::string &runs) {
  Entries entries;
  for (const auto &run : Split(runs, ";")) {
    if (run.rfind("from ", 0) == 0) {
      const auto colon = run.find(": ");
      const auto words = Split(run.substr(0, colon), " ");  // from VALUE in steps of STEP
      auto value = Number(words.at(1));
      for (const auto &name : Split(run.substr(colon + 2), ",")) {
        entries.emplace_back(name, value);
        value += Number(words.at(5));
      }
    } else {
      const auto words = Split(run, " ");
      entries.emplace_back(words.at(0), Number(words.at(1)));
    }
  }
  return entries;
}

Entries EntriesOf(const CDescription::Node &node) {
  Entries entries;
  for (const auto entry : node.xml.children("EnumEntry")) {
    entries.emplace_back(entry.attribute("Name").value(), Number(entry.child("Value").text().get()));
  }
  return entries;
}

/// The nodes of the file that are named, in the file's order.
Names InFileOrder(const Names &names) {
  const std::set<std::string> wanted(names.begin(), names.end());
  Names found;
  for (const auto &node : Device().Nodes()) {
    if (wanted.count(node.Name()) != 0) {
      found.push_back(node.Name());
    }
  }
  return found;
}

/// The category that lists a feature, or an empty text.
std::string CategoryOf(const std::string &feature) {
  for (const auto &row : kCategories) {
    const auto features = Split(row.features, ",");
    if (std::find(features.begin(), features.end(), feature) != features.end()) {
      return row.name;
    }
  }
  return "";
}

template <typename Row>
Names NamesOf(const Row *begin, const Row *end) {
  Names names;
  std::transform(begin, end, std::back_inserter(names), [](const Row &row) { return row.name; });
  return names;
}

TEST(DeviceDescription, HoldsTheNodesOfTheTablesAndNoOther) {
  std::set<std::string> expected = {"DevicePort"};
  for (const auto &row : kBands) {
    expected.insert(row.name);
  }
  for (const auto &row : kRegisters) {
    expected.insert(row.node);
  }
  for (const auto &row : kCategories) {
    expected.insert(row.name);
  }
  for (const auto &row : kFeatures) {
    expected.insert(row.name);
  }
  for (const auto &row : kFormulas) {
    expected.insert(row.name);
  }
  std::set<std::string> found;
  for (const auto &node : Device().Nodes()) {
    found.insert(node.Name());
  }
  EXPECT_EQ(expected, found);
}

TEST(DeviceDescription, CategoriesAndFeaturesStandInTheOrderOfTheirTables) {
  const auto categories = NamesOf(std::begin(kCategories), std::end(kCategories));
  EXPECT_EQ(categories, InFileOrder(categories));
  const auto features = NamesOf(std::begin(kFeatures), std::end(kFeatures));
  EXPECT_EQ(features, InFileOrder(features));
}

TEST(DeviceDescription, FormulasKeepTheirOrderWithinAGroup) {
  std::map<std::string, Names> expected;
  for (const auto &row : kFormulas) {
    const auto &node = Device().At(row.name);
    expected[node.group].push_back(row.name);
  }
  for (const auto &[group, names] : expected) {
    EXPECT_EQ(names, InFileOrder(names)) << group;
  }
}

TEST(DeviceDescription, BandsHoldTheirBase) {
  for (const auto &row : kBands) {
    const auto &node = Device().At(row.name);
    EXPECT_EQ("Integer", node.Kind()) << row.name;
    EXPECT_EQ("", node.group) << row.name;
    EXPECT_EQ(ElementsFrom("Value=" + std::to_string(row.base)), ElementsOf(node.xml)) << row.name;
  }
}

TEST(DeviceDescription, PortIsInvisibleAndReadableAndWritable) {
  const auto &node = Device().At("DevicePort");
  EXPECT_EQ("Port", node.Kind());
  EXPECT_EQ("SpecialFeatures", node.group);
  EXPECT_EQ(ElementsFrom("Visibility=Invisible|ImposedAccessMode=RW"), ElementsOf(node.xml, kWords));
}

TEST(DeviceDescription, OnlyTheListedNodesAreStandard) {
  for (const auto &node : Device().Nodes()) {
    EXPECT_TRUE(NameSpaceFits(node)) << node.Name() << " has name space '" << node.NameSpace() << "'";
    for (const auto entry : node.xml.children("EnumEntry")) {
      EXPECT_STRNE("Standard", entry.attribute("NameSpace").value()) << node.Name();
    }
  }
  EXPECT_EQ("Custom", Device().At("DataStreamOpen").NameSpace());
}

// A register belongs to the group of the feature that stands on it, a formula to that of what it limits or locks.
TEST(DeviceDescription, NodesStandInTheGroupOfTheirCategory) {
  const std::map<std::string, std::string> withoutCategory = {{"Root", "Root"},
                                                              {"GRB_INTRPT_TESTData", "GRB_INTRPT_TESTData"},
                                                              {"GRB_LUT_SHIFT", "GRB_ImageDataControl"},
                                                              {"TLParamsLocked", "SpecialFeatures"},
                                                              {"DataStreamOpen", ""}};
  const auto groupOfFeature = [&](const std::string &feature) {
    const auto special = withoutCategory.find(feature);
    return special != withoutCategory.end() ? special->second : CategoryOf(feature);
  };
  for (const auto &row : kFeatures) {
    EXPECT_EQ(groupOfFeature(row.name), Device().At(row.name).group) << row.name;
  }
  for (const auto &row : kCategories) {
    EXPECT_EQ(row.name, Device().At(row.name).group) << row.name;
  }
  for (const auto &row : kRegisters) {
    const auto features = Split(row.features, ",");
    // GRB_Acq_YSub_Reg has no feature; it stands beside its horizontal twin.
    const std::string feature = features.empty()                        ? "GRB_ACQ_XSUB"
                                : row.features == std::string("itself") ? row.node
                                                                        : features.front();
    EXPECT_EQ(groupOfFeature(feature), Device().At(row.node).group) << row.node;
  }
  for (const auto &row : kFormulas) {
    EXPECT_EQ(row.group, Device().At(row.name).group) << row.name;
  }
}

TEST(DeviceDescription, NoNodeNamesTheAddressesThatHaveNone) {
  for (const auto address : kAddressesWithoutNode) {
    for (const auto &node : Device().Nodes()) {
      if (node.xml.child("Address")) {
        EXPECT_NE(address, Device().AddressOf(node)) << node.Name();
      }
    }
  }
}

// The registers whose value changes by their own feature only; all other integer registers are read anew each time.
TEST(DeviceDescription, OnlyTheseRegistersMayBeCached) {
  std::set<std::string> cached;
  for (const auto &node : Device().Nodes()) {
    if (node.Kind() == "IntReg" && !node.xml.child("Cachable")) {
      cached.insert(node.Name());
    }
    if (node.Kind() == "StringReg") {
      EXPECT_FALSE(node.xml.child("Cachable")) << node.Name();
    }
  }
  const std::set<std::string> expected = {
      "r_StreamSelector", "GRB_Register_Address", "GRB_Register_Command",     "GRB_INTRPT_TEST",
      "GRB_REV_HW_MAJOR", "GRB_REV_HW_MINOR",     "GRB_REV_HW_SUBMINOR",      "GRB_REV_HW",
      "GRB_REV_SW_MAJOR", "GRB_REV_SW_MINOR",     "GRB_REV_SW_SUBMINOR",      "GRB_REV_SW",
      "GRB_PCIE_INFO",    "GRB_CXP_INFO",         "DecimationHorizontal_Reg", "DecimationVertical_Reg",
  };
  EXPECT_EQ(expected, cached);
}

// Kept: one entry of the bus formats has the value of another.
TEST(DeviceDescription, BusFormatBayerRG16HasTheValueOfGB14) {
  const auto entries = EntriesOf(Device().At("GRB_BUS_FORMAT"));
  EXPECT_EQ(1,
            std::count(entries.begin(), entries.end(), Entries::value_type("GRB_BUS_FORMAT_BAYER_RG16", 0xC0022636)));
  EXPECT_EQ(1,
            std::count(entries.begin(), entries.end(), Entries::value_type("GRB_BUS_FORMAT_BAYER_GB14", 0xC0022636)));
}

// Kept: a reader of the vertical setting gets the horizontal one.
TEST(DeviceDescription, YSubStandsOnTheRegisterOfXSub) {
  EXPECT_EQ("GRB_Acq_XSub_Reg", Device().At("GRB_ACQ_YSUB").Text("pValue"));
}

TEST(DeviceDescription, OnlyTheListedGrabberNodesHaveAToolTip) {
  std::set<std::string> listed;
  for (const auto &row : kToolTips) {
    listed.insert(row.node);
  }
  for (const auto &node : Device().Nodes()) {
    const bool described = listed.count(node.Name()) != 0 || IsStandard(node.Name());
    EXPECT_EQ(described, static_cast<bool>(node.xml.child("ToolTip"))) << node.Name();
    EXPECT_EQ(described, static_cast<bool>(node.xml.child("Description"))) << node.Name();
    EXPECT_EQ(IsStandard(node.Name()), static_cast<bool>(node.xml.child("DisplayName"))) << node.Name();
    for (const auto entry : node.xml.children("EnumEntry")) {
      const std::string name = entry.attribute("Name").value();
      EXPECT_EQ(listed.count(name) != 0, static_cast<bool>(entry.child("ToolTip"))) << node.Name() << '.' << name;
    }
  }
}

class DeviceCategory : public testing::TestWithParam<CategoryRow> {};

TEST_P(DeviceCategory, ListsItsFeaturesInOrder) {
  const auto &row = GetParam();
  const auto &node = Device().At(row.name);
  EXPECT_EQ("Category", node.Kind());
  Names expected;
  for (const auto &feature : Split(row.features, ",")) {
    expected.push_back("pFeature=" + feature);
  }
  EXPECT_EQ(expected, ElementsOf(node.xml, kWords));
}

INSTANTIATE_TEST_SUITE_P(Rows, DeviceCategory, testing::ValuesIn(kCategories),
                         [](const auto &test) { return std::string(test.param.name); });

class DeviceRegister : public testing::TestWithParam<RegisterRow> {};

TEST_P(DeviceRegister, StandsAsInTheTable) {
  const auto &row = GetParam();
  const auto &node = Device().At(row.node);
  const bool isText = row.bytes > 8;
  EXPECT_EQ(isText ? "StringReg" : "IntReg", node.Kind());

  const auto *const band = std::find_if(std::begin(kBands), std::end(kBands),
                                        [&](const BandRow &b) { return b.name == std::string(row.band); });
  ASSERT_NE(std::end(kBands), band);
  Names expected = {"pAddress=" + std::string(row.band), "Address=" + std::to_string(row.address - band->base),
                    "Length=" + std::to_string(row.bytes), "AccessMode=" + std::string(row.access), "pPort=DevicePort"};
  bool isSigned = false;
  for (const auto &mark : Split(row.marks, " ")) {
    if (mark == "N") {
      expected.push_back("Cachable=NoCache");
    } else if (mark == "A") {
      expected.push_back("pIsAvailable=DataStreamOpen");
    } else if (mark == "L") {
      expected.push_back("pIsLocked=TLParamsLocked");
    } else if (mark == "signed") {
      isSigned = true;
    } else {
      expected.push_back("pIsLocked=" + mark);
    }
  }
  if (!isText) {
    expected.push_back("Endianess=LittleEndian");
    const std::set<std::string> withoutSign = {"OffsetX_Reg",
                                               "OffsetY_Reg",
                                               "GRB_ROI_SRC_XOFFSET_Reg",
                                               "GRB_ROI_SRC_YOFFSET_Reg",
                                               "GRB_Roi_Dst_XOffset_Reg",
                                               "GRB_Roi_Dst_YOffset_Reg"};
    if (withoutSign.count(row.node) == 0) {
      expected.push_back(isSigned ? "Sign=Signed" : "Sign=Unsigned");
    }
  }
  EXPECT_EQ(Normalised(expected), ElementsOf(node.xml, kWords));
}

TEST_P(DeviceRegister, IsWhereTheFeaturesOfTheTableTakeTheirValue) {
  const auto &row = GetParam();
  std::set<std::string> expected;
  if (row.features != std::string("itself")) {
    for (const auto &feature : Split(row.features, ",")) {
      expected.insert(feature);
    }
  }
  std::set<std::string> found;
  for (const auto &node : Device().Nodes()) {
    if (node.Text("pValue") == row.node) {
      found.insert(node.Name());
    }
  }
  EXPECT_EQ(expected, found);
}

INSTANTIATE_TEST_SUITE_P(Rows, DeviceRegister, testing::ValuesIn(kRegisters),
                         [](const auto &test) { return std::string(test.param.node); });

class DeviceFeature : public testing::TestWithParam<FeatureRow> {};

TEST_P(DeviceFeature, StandsAsInTheTable) {
  const auto &row = GetParam();
  const auto &node = Device().At(row.name);
  EXPECT_EQ(row.kind, node.Kind());

  Names expected;
  const auto add = [&](const std::string &element, const std::string &value) {
    expected.push_back(element + "=" + value);
  };
  const auto addCell = [&](const char *element, const char *cell) {
    for (const auto &value : Split(cell, ",")) {
      add(element, value);
    }
  };
  addCell("pValue", row.valueFrom);
  addCell("Visibility", row.visibility);
  addCell("Streamable", row.streamable);
  addCell("pInvalidator", row.invalidators);
  const auto limits = Split(row.limits, " .. ");
  if (!limits.empty()) {
    if (limits.at(0) != "-") {
      add("Min", limits.at(0));
    }
    add(limits.at(1).find_first_not_of("0123456789") == std::string::npos ? "Max" : "pMax", limits.at(1));
  }
  bool imposed = false;
  for (const auto &other : Split(row.other, ";")) {
    const auto last = other.substr(other.rfind(' ') + 1);
    if (other == "on 1, off 2") {
      add("OnValue", "1");
      add("OffValue", "2");
    } else if (other.rfind("selects ", 0) == 0) {
      add("pSelected", last);
    } else if (other.rfind("writes ", 0) == 0) {
      add("CommandValue", last);
    } else if (other.rfind("imposed ", 0) == 0) {
      add("ImposedAccessMode", last);
      imposed = true;
    } else if (other.rfind("locked by ", 0) == 0) {
      add("pIsLocked", last);
    } else if (other.rfind("constant ", 0) == 0) {
      add("Value", last);
    } else {
      FAIL() << "unread cell: " << other;
    }
  }
  // The constant of DeviceType stands with the enumerations.
  if (row.name == std::string("DeviceType")) {
    add("Value", "1");
  }
  if (row.kind == std::string("Integer") && !imposed) {
    add("Representation", "PureNumber");
  }
  EXPECT_EQ(Normalised(expected), ElementsOf(node.xml, WordsAnd("EnumEntry")));
}

INSTANTIATE_TEST_SUITE_P(Rows, DeviceFeature, testing::ValuesIn(kFeatures),
                         [](const auto &test) { return std::string(test.param.name); });

class DeviceFormula : public testing::TestWithParam<FormulaRow> {};

TEST_P(DeviceFormula, StandsAsInTheTable) {
  const auto &row = GetParam();
  const auto &node = Device().At(row.name);
  EXPECT_EQ("IntSwissKnife", node.Kind());
  EXPECT_EQ(row.nameSpace == std::string("-") ? "" : row.nameSpace, node.NameSpace());
  Names expected;
  if (row.visibility != std::string("-")) {
    expected.push_back("Visibility=" + std::string(row.visibility));
  }
  for (const auto &variable : Split(row.variables, ",")) {
    const auto sides = Split(variable, "=");
    expected.push_back("pVariable=" + sides.at(0) + ":" + sides.at(1));
  }
  EXPECT_EQ(Normalised(expected), ElementsOf(node.xml, WordsAnd("Formula")));
  // Blanks may differ, the formula may not.
  const auto withoutBlanks = [](std::string text) {
    text.erase(std::remove(text.begin(), text.end(), ' '), text.end());
    return text;
  };
  EXPECT_EQ(withoutBlanks(row.formula), withoutBlanks(node.Text("Formula")));
}

INSTANTIATE_TEST_SUITE_P(Rows, DeviceFormula, testing::ValuesIn(kFormulas),
                         [](const auto &test) { return std::string(test.param.name); });

TEST(DeviceEnumerations, AreThoseOfTheTableInItsOrder) {
  Names found;
  for (const auto &node : Device().Nodes()) {
    if (node.Kind() == "Enumeration") {
      found.push_back(node.Name());
    }
  }
  EXPECT_EQ(NamesOf(std::begin(kEnumerations), std::end(kEnumerations)), found);
  EXPECT_EQ(32u, found.size());
}

class DeviceEnumeration : public testing::TestWithParam<EnumerationRow> {};

TEST_P(DeviceEnumeration, HoldsItsEntriesInOrder) {
  const auto &row = GetParam();
  const auto &node = Device().At(row.name);
  EXPECT_EQ(row.valueFrom == std::string("-") ? "" : row.valueFrom, node.Text("pValue"));
  EXPECT_EQ(row.count, EntriesOf(node).size());
  EXPECT_EQ(Expand(row.entries), EntriesOf(node));
}

INSTANTIATE_TEST_SUITE_P(Rows, DeviceEnumeration, testing::ValuesIn(kEnumerations),
                         [](const auto &test) { return std::string(test.param.name); });

class DeviceToolTip : public testing::TestWithParam<ToolTipRow> {};

TEST_P(DeviceToolTip, IsWordForWordThatOfTheTable) {
  const auto &row = GetParam();
  std::vector<pugi::xml_node> found;
  for (const auto &node : Device().Nodes()) {
    if (node.Name() == row.node) {
      found.push_back(node.xml);
    }
    if (const auto entry = node.xml.find_child_by_attribute("EnumEntry", "Name", row.node)) {
      found.push_back(entry);
    }
  }
  ASSERT_EQ(1u, found.size());
  EXPECT_STREQ(row.toolTip, found.front().child("ToolTip").text().get());
  EXPECT_STREQ(row.toolTip, found.front().child("Description").text().get());
}

INSTANTIATE_TEST_SUITE_P(Rows, DeviceToolTip, testing::ValuesIn(kToolTips),
                         [](const auto &test) { return std::string(test.param.node); });

}  // namespace
