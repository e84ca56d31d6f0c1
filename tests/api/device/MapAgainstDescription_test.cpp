// SPDX-License-Identifier: MIT
// What a port's own description says of its registers against what the port's map answers, word by word and both ways:
// a register entered at a wrong address, with a wrong length or access, one forgotten, and one too many show here.
#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <map>

#include <pugixml.hpp>

#include "DeviceFixture.h"
#include "DeviceRegisterTable.h"

namespace DeviceTests {

namespace {

constexpr uint32_t kWord = 4;

/// A register as the description has it.
struct Node {
  std::string name;
  uint32_t address = 0;
  uint32_t bytes = 0;
  Access access = Access::None;
};

/// What is known of one word; a word without access is not in the list.
using Words = std::map<uint32_t, Access>;

/// A place where map and description differ, and stay so.
struct Difference {
  uint32_t address;
  uint32_t bytes;
  const char *node;  ///< the node that begins there; "": none
  Access described;  ///< None: no node
  Access mapped;     ///< None: the node has no entry of its own
  const char *reason;
};

const char *ToText(Access access) {
  constexpr const char *kTexts[] = {"none", "R", "W", "RW"};
  return kTexts[static_cast<size_t>(access)];
}

Access AccessOf(bool readable, bool writable) {
  return readable ? (writable ? Access::RW : Access::R) : (writable ? Access::W : Access::None);
}

// The description ---------------------------------------------------------------------------------------------------

uint32_t Number(const std::string &text) {
  char *end = nullptr;
  const unsigned long value = std::strtoul(text.c_str(), &end, 0);
  EXPECT_TRUE(!text.empty() && *end == '\0') << "not a number: '" << text << "'";
  return static_cast<uint32_t>(value);
}

Access AccessNamed(const std::string &mode) {
  return AccessOf(mode == "RO" || mode == "RW", mode == "WO" || mode == "RW");
}

/// All nodes with an address. The port's own name is the one that each has to give.
std::vector<Node> NodesOf(PORT_HANDLE port) {
  pugi::xml_document document;
  const std::string xml = ReadXml(port);
  EXPECT_TRUE(document.load_buffer(xml.data(), xml.size()));
  const std::string portName = PortInfo(port, PORT_INFO_PORTNAME).Text();

  std::map<std::string, uint32_t> constants;
  for (const pugi::xpath_node &found : document.select_nodes("//Integer[@Name][Value]")) {
    constants[found.node().attribute("Name").value()] = Number(found.node().child("Value").text().get());
  }
  std::vector<Node> nodes;
  for (const pugi::xpath_node &found : document.select_nodes("//*[Address or pAddress]")) {
    const pugi::xml_node element = found.node();
    Node node;
    node.name = element.attribute("Name").value();
    SCOPED_TRACE(node.name);
    const std::string kind = element.name();
    EXPECT_TRUE(kind == "IntReg" || kind == "StringReg" || kind == "Register") << kind;
    for (const pugi::xml_node offset : element.children("Address")) {
      node.address += Number(offset.text().get());
    }
    for (const pugi::xml_node base : element.children("pAddress")) {
      EXPECT_EQ(constants.count(base.text().get()), 1U) << base.text().get();
      node.address += constants[base.text().get()];
    }
    node.bytes = Number(element.child("Length").text().get());
    node.access = AccessNamed(element.child("AccessMode").text().get());
    EXPECT_TRUE(node.address % kWord == 0 && node.bytes % kWord == 0 && node.bytes != 0);
    EXPECT_NE(node.access, Access::None) << "no AccessMode";
    EXPECT_STREQ(element.child("pPort").text().get(), portName.c_str());
    nodes.push_back(node);
  }
  EXPECT_FALSE(nodes.empty());
  return nodes;
}

void Enter(uint32_t address, uint32_t bytes, Access access, Words &words) {
  for (uint32_t word = address; word < address + bytes; word += kWord) {
    words[word] = access;
  }
}

/// The words that the map has to know: those of the nodes, with the differences put in, and the description itself.
/// A difference that the description does not show is a failure.
Words ExpectedWords(std::vector<Node> nodes, const std::vector<Difference> &differences, const LocalUrl &url) {
  for (const Difference &difference : differences) {
    SCOPED_TRACE(Format("0x%04X ", difference.address) + difference.reason);
    EXPECT_NE(difference.described, difference.mapped);
    const auto node = std::find_if(nodes.begin(), nodes.end(), [&](const Node &candidate) {
      return difference.described == Access::None ? candidate.address == difference.address
                                                  : candidate.name == difference.node;
    });
    if (difference.described == Access::None) {
      EXPECT_EQ(node, nodes.end()) << "there is a node";
      nodes.push_back({"", difference.address, difference.bytes, difference.mapped});
    } else if (node == nodes.end()) {
      ADD_FAILURE() << "there is no node " << difference.node;
    } else {
      EXPECT_EQ(node->address, difference.address);
      EXPECT_EQ(node->bytes, difference.bytes);
      EXPECT_STREQ(ToText(node->access), ToText(difference.described));
      node->access = difference.mapped;
    }
  }
  Words words;
  for (const Node &node : nodes) {
    for (uint32_t word = node.address; node.access != Access::None && word < node.address + node.bytes; word += kWord) {
      EXPECT_TRUE(words.emplace(word, node.access).second) << node.name << Format(" lies over 0x%04X", word);
      EXPECT_LT(word, url.address) << node.name;
    }
  }
  Enter(static_cast<uint32_t>(url.address), static_cast<uint32_t>(url.size), Access::R, words);
  return words;
}

// The map -----------------------------------------------------------------------------------------------------------

/// Whether an access got past the map. Behind it, the library or the word's own action may still have failed.
bool Passed(GC_ERROR result, const std::string &refusal, uint32_t address) {
  if (result == GC_ERR_SUCCESS) {
    return true;
  }
  const auto failure = SplitFailureText(LastError().text);
  if (!failure) {
    ADD_FAILURE() << Format("0x%04X: no proper text", address);
    return false;
  }
  return failure->message != refusal && failure->message != NotAvailable(address);
}

/// The words that the map knows up to an end. Each is written with what was read there, so that all have their contents
/// afterwards; the commands among them run, and find what they found before.
Words MappedWords(PORT_HANDLE port, uint32_t end) {
  Words words;
  std::map<uint32_t, uint32_t> contents;
  for (uint32_t address = 0; address < end; address += kWord) {
    uint32_t value = 0;
    GC_ERROR result = TryRead(port, address, &value, sizeof(value));
    const bool readable = Passed(result, NotReadable(address), address);
    if (result == GC_ERR_SUCCESS) {
      contents[address] = value;
    }
    result = WriteU32(port, address, value);
    const Access access = AccessOf(readable, Passed(result, NotWritable(address), address));
    if (access != Access::None) {
      words[address] = access;
    } else {
      // Neither readable nor writable is a hole, and says so.
      EXPECT_GC(GC_ERR_ERROR, NotAvailable(address), TryRead(port, address, &value, sizeof(value)));
    }
  }
  for (const auto &[address, value] : contents) {
    EXPECT_EQ(ReadU32(port, address), value) << Format("0x%04X was changed by the looking", address);
  }
  return words;
}

void ExpectMapAsDescribed(PORT_HANDLE port, const std::vector<Difference> &differences) {
  const std::optional<LocalUrl> url = ParseLocalUrl(PortUrl(port).Text());
  ASSERT_TRUE(url);
  const std::vector<Node> nodes = NodesOf(port);
  const Words expected = ExpectedWords(nodes, differences, *url);
  const auto end = static_cast<uint32_t>(url->address + url->size);
  const Words mapped = MappedWords(port, end + kWord);

  const auto access = [](const Words &words, uint32_t address) {
    const auto found = words.find(address);
    return found == words.end() ? Access::None : found->second;
  };
  Lines wrong;
  for (uint32_t address = 0; address < end + kWord; address += kWord) {
    if (access(mapped, address) != access(expected, address)) {
      const auto node = std::find_if(nodes.begin(), nodes.end(), [&](const Node &candidate) {
        return address >= candidate.address && address < candidate.address + candidate.bytes;
      });
      wrong.push_back(Format("0x%04X: %s, and not %s, ", address, ToText(access(mapped, address)),
                             ToText(access(expected, address))) +
                      (node == nodes.end() ? "without a node" : node->name));
    }
  }
  EXPECT_EQ(wrong, Lines());
}

// The differences ---------------------------------------------------------------------------------------------------

constexpr const char *kNoNode = "served, and named by nothing";
constexpr const char *kUnreferred = "in a category that no other leads to; never served";
constexpr const char *kOnlyGenApi = "the map lets writes pass to the library; only GenApi refuses them";
constexpr const char *kCommand = "a command that can be read back";

constexpr Difference kSystem[] = {
    {0x0840, 256, "", Access::None, Access::R, kNoNode},
};

constexpr Difference kDevice[] = {
    {0x03E4, 4, "", Access::None, Access::R, kNoNode},
    {0x0500, 4, "GRB_INTRPT_TEST", Access::R, Access::None, kUnreferred},
    {0x0608, 4, "", Access::None, Access::RW, "WidthMax is a formula of the description"},
    {0x0610, 4, "", Access::None, Access::RW, "HeightMax is a formula of the description"},
    {0x1408, 4, "GRB_REV_HW_MAJOR", Access::R, Access::RW, kOnlyGenApi},
    {0x140C, 4, "GRB_REV_HW_MINOR", Access::R, Access::RW, kOnlyGenApi},
    {0x1410, 4, "GRB_REV_HW_SUBMINOR", Access::R, Access::RW, kOnlyGenApi},
    {0x1414, 4, "GRB_REV_HW", Access::R, Access::RW, kOnlyGenApi},
    {0x1418, 4, "GRB_Cam_TypeReg", Access::R, Access::RW, kOnlyGenApi},
    {0x141C, 4, "GRB_Cam_Src_Depth_Reg", Access::R, Access::RW, kOnlyGenApi},
    {0x1420, 4, "GRB_Cam_Active_XLength_Reg", Access::R, Access::RW, kOnlyGenApi},
    {0x1424, 4, "GRB_Cam_Active_YLength_Reg", Access::R, Access::RW, kOnlyGenApi},
    {0x1428, 4, "GRB_Acq_XSub_Reg", Access::R, Access::RW, kOnlyGenApi},
    {0x142C, 4, "GRB_Acq_YSub_Reg", Access::R, Access::RW, kOnlyGenApi},
    {0x1430, 4, "GRB_ROI_XLength_Reg", Access::R, Access::RW, kOnlyGenApi},
    {0x1434, 4, "GRB_ROI_YLength_Reg", Access::R, Access::RW, kOnlyGenApi},
    {0x143C, 4, "GRB_Cam_Src_Col_Reg", Access::R, Access::RW, kOnlyGenApi},
    {0x1440, 4, "GRB_PCIE_INFO", Access::R, Access::RW, kOnlyGenApi},
    {0x1448, 4, "GRB_Config_File_Load_Reg", Access::W, Access::RW, kCommand},
    {0x1504, 4, "GRB_Intrpt_Test_Test_Reg", Access::RW, Access::None, "lies inside GRB_CONFIG_FILE, whose word it is"},
    {0x185C, 4, "GRB_IO_Out_Bit_Reg", Access::R, Access::RW, kOnlyGenApi},
    {0x186C, 4, "GRB_ROI_SRC_XOFFSET_Reg", Access::R, Access::RW, kOnlyGenApi},
    {0x1870, 4, "GRB_ROI_SRC_YOFFSET_Reg", Access::R, Access::RW, kOnlyGenApi},
    {0x1C84, 4, "GRB_Config_File_Save_Name_Reg", Access::W, Access::RW, kCommand},
    {0x1C90, 4, "", Access::None, Access::RW, "the look-up table's bypass, left to raw access"},
    {0x2074, 4, "GRB_Expose_Reg", Access::W, Access::RW, kCommand},
    {0x20A4, 4, "GRB_TimerA1_Swtrig_Reg", Access::W, Access::RW, kCommand},
    {0x2220, 4, "GRB_CXP_INFO", Access::R, Access::RW, kOnlyGenApi},
};

constexpr Difference kStream[] = {
    {0x0034, 8, "PayloadSize", Access::R, Access::RW, "a write is kept until the next read asks anew"},
    {0x0050, 4, "", Access::None, Access::R, kNoNode},
};

// The lists are filled first, so that the update commands among the registers find nothing new.
using MapAgainstDescription = DeviceTest;

TEST_F(MapAgainstDescription, System) {
  ASSERT_GC_OK(Gc().TLUpdateInterfaceList(OpenSystem(), nullptr, 0));
  ExpectMapAsDescribed(m_hSystem, {std::begin(kSystem), std::end(kSystem)});
}

TEST_F(MapAgainstDescription, Interface) {
  Discover();
  ExpectMapAsDescribed(m_hInterface, {});
}

// Without a stream every write to the library ends behind the map, and so does every command.
TEST_F(MapAgainstDescription, Device) {
  OpenDevice(kCustomAccess);
  const size_t mark = Script().Mark();
  ExpectMapAsDescribed(m_hDevice, {std::begin(kDevice), std::end(kDevice)});
  EXPECT_EQ(Script().Trace(mark), Lines());
}

TEST_F(MapAgainstDescription, DataStream) {
  ExpectMapAsDescribed(OpenStream(), {std::begin(kStream), std::end(kStream)});
}

}  // namespace

}  // namespace DeviceTests
