// SPDX-License-Identifier: MIT

/// \file
/// Writes docs/features.md from the descriptions of the modules and the table of the virtual registers, or checks that
/// it is current. Usage: features_doc [--check] SOURCE-TREE FILE

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <exception>
#include <fstream>
#include <initializer_list>
#include <iomanip>
#include <iostream>
#include <map>
#include <regex>
#include <set>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include <pugixml.hpp>

namespace {

using Identifiers = std::vector<std::string>;
using Nodes = std::vector<pugi::xml_node>;

struct Description {
  const char *module;
  const char *file;
  const char *about;
};

constexpr Description kDescriptions[] = {
    {"System", "LumivexTLSystem.xml", "The Producer itself. Port: the handle that `TLOpen` gives."},
    {"Interface", "LumivexTLInterface.xml", "A board. Port: the handle that `TLOpenInterface` gives."},
    {"Device", "LumivexTLDevice.xml",
     "A channel of the board, and all that the frame-grabber library can do with it. Port: the handle that "
     "`IFOpenDevice` gives."},
    {"Data stream", "LumivexTLDataStream.xml",
     "The frames of a channel. Port: the handle that `DevOpenDataStream` gives."},
    {"Buffer", "LumivexTLBuffer.xml", "A buffer of a stream. The file is carried, but no port gives it."},
};

/// Code that reaches the library without the name of a parameter, and what it reaches.
struct OtherUse {
  const char *code;
  const char *meaning;
};

constexpr OtherUse kOtherUses[] = {
    {"et(m_dwIoInPort", "the one that `GRB_IO_IN_PORT` chooses"},
    {"et(m_dwIoOutPort", "the one that `GRB_IO_OUT_PORT` chooses, at the bit of `GRB_IO_OUT_BIT`"},
    {"->LoadGcf(", "all: the stream handle is made anew from the file"},
};

// Values of enumerations are small numbers or bit patterns of the hardware.
constexpr uint64_t kSmallNumber = 0xFFFF;

std::string ReadText(const std::string &file) {
  std::ifstream stream(file, std::ios::binary);
  std::ostringstream text;
  if (!(text << stream.rdbuf())) {
    throw std::runtime_error("cannot read " + file);
  }
  return text.str();
}

std::string Hex(uint64_t value, int digits) {
  std::ostringstream text;
  text << "0x" << std::hex << std::uppercase << std::setw(digits) << std::setfill('0') << value;
  return text.str();
}

std::string Quoted(const std::string &name) { return "`" + name + "`"; }

void AddOnce(Identifiers &identifiers, const std::string &name) {
  if (std::find(identifiers.begin(), identifiers.end(), name) == identifiers.end()) {
    identifiers.push_back(name);
  }
}

Identifiers Matches(const std::string &text, const std::regex &pattern) {
  Identifiers found;
  for (std::sregex_iterator it(text.begin(), text.end(), pattern); it != std::sregex_iterator(); ++it) {
    AddOnce(found, (*it)[1]);
  }
  return found;
}

/// The body of a member function; empty when there is none of this name.
std::string Body(const std::string &code, const std::string &function) {
  const size_t begin = code.find("void " + function + "(");
  return begin == std::string::npos ? "" : code.substr(begin, code.find("\n}", begin) - begin);
}

/// What of the library stands behind the virtual registers, by address, as the page shows it: taken from the code that
/// passes it on. A row without identifiers names functions, and these name what they set and get.
std::map<uint64_t, Identifiers> LibraryParameters(const std::string &tree) {
  const std::string code = ReadText(tree + "/source/tllumivex/DeviceImpl.cpp");
  const std::string header = ReadText(tree + "/source/grblx64/grblx64.h");
  const size_t begin = code.find("kRows[] = {");
  if (begin == std::string::npos) {
    throw std::runtime_error("DeviceImpl.cpp has no table kRows");
  }
  const std::string table = code.substr(begin, code.find("\n};", begin) - begin);

  const std::regex rowPattern(R"(\{0x([0-9A-F]+), "[^"]*", (\w+), (\w+), \d+,\s*&?([\w:]+),\s*&?([\w:]+)\})");
  const std::regex usePattern(R"((?:\b[SG]et\(|GRB_ACTION_CONFIG, )(GRB_\w+))");
  std::map<uint64_t, Identifiers> parameters;
  for (std::sregex_iterator it(table.begin(), table.end(), rowPattern); it != std::sregex_iterator(); ++it) {
    const std::smatch &row = *it;
    Identifiers identifiers;
    Identifiers others;
    for (const std::string &id : {row[2].str(), row[3].str()}) {
      if (id != "0") {
        AddOnce(identifiers, id);
      }
    }
    for (const std::string &function : {row[4].str(), row[5].str()}) {
      const std::string body = Body(code, function);
      for (const std::string &id : Matches(body, usePattern)) {
        AddOnce(identifiers, id);
      }
      for (const OtherUse &use : kOtherUses) {
        if (body.find(use.code) != std::string::npos) {
          AddOnce(others, use.meaning);
        }
      }
    }
    Identifiers &shown = parameters[std::stoull(row[1], nullptr, 16)];
    for (const std::string &id : identifiers) {
      if (!std::regex_search(header, std::regex("\\b" + id + "\\b"))) {
        throw std::runtime_error("grblx64.h has no " + id);
      }
      shown.push_back(Quoted(id));
    }
    shown.insert(shown.end(), others.begin(), others.end());
  }
  for (const OtherUse &use : kOtherUses) {
    if (code.find(use.code) == std::string::npos) {
      throw std::runtime_error(std::string("DeviceImpl.cpp has no ") + use.code);
    }
  }
  size_t rows = 0;
  for (size_t at = table.find("{0x"); at != std::string::npos; at = table.find("{0x", at + 1)) {
    ++rows;
  }
  if (rows == 0 || rows != parameters.size()) {
    throw std::runtime_error("the rows of kRows are not all of the form that is expected");
  }
  return parameters;
}

/// A description, with its nodes by name.
class CFeatures {
 public:
  CFeatures(const std::string &file, std::map<uint64_t, Identifiers> parameters) : m_Parameters(std::move(parameters)) {
    if (!m_Document.load_file(file.c_str(), pugi::parse_default | pugi::parse_trim_pcdata)) {
      throw std::runtime_error("cannot parse " + file);
    }
    AddNodes(m_Document.document_element());
  }

  void Write(std::ostream &out) const {
    if (m_Nodes.count("Root") == 0) {
      out << '\n';
      WriteFeatures(out, Outside({}));
      return;
    }
    std::set<std::string> listed;
    WriteCategory(out, Node("Root"), listed);
    const Nodes outside = Outside(listed);
    if (!outside.empty()) {
      out << "\n### Not in the tree\n\n"
             "No category of the tree leads to these: a GenApi finds them by name only. Conditions and ranges\n"
             "above name some of them.\n\n";
      WriteFeatures(out, outside);
    }
  }

 private:
  void AddNodes(pugi::xml_node parent) {
    for (const pugi::xml_node node : parent.children()) {
      if (std::strcmp(node.name(), "Group") == 0) {
        AddNodes(node);
      } else if (node.attribute("Name")) {
        m_Nodes[node.attribute("Name").value()] = node;
        m_Order.push_back(node);
      }
    }
  }

  pugi::xml_node Node(const std::string &name) const {
    const auto found = m_Nodes.find(name);
    if (found == m_Nodes.end()) {
      throw std::runtime_error("no node " + name);
    }
    return found->second;
  }

  /// What is a feature of its own and not among those listed, in the order of the file. None is what only carries one:
  /// categories, ports, registers that a value comes from, base addresses.
  Nodes Outside(const std::set<std::string> &listed) const {
    std::set<std::string> carriers;
    for (const pugi::xml_node node : m_Order) {
      for (const char *element : {"pValue", "pAddress", "pPort"}) {
        for (const pugi::xml_node carrier : node.children(element)) {
          carriers.insert(carrier.child_value());
        }
      }
    }
    Nodes nodes;
    for (const pugi::xml_node node : m_Order) {
      const std::string name = node.attribute("Name").value();
      if (listed.count(name) == 0 && carriers.count(name) == 0 && std::strcmp(node.name(), "Category") != 0) {
        nodes.push_back(node);
      }
    }
    return nodes;
  }

  /// The node at the end of the chain of pValue.
  pugi::xml_node Source(pugi::xml_node node) const {
    return node.child("pValue") ? Source(Node(node.child_value("pValue"))) : node;
  }

  static bool IsRegister(pugi::xml_node node) { return node.child("pPort"); }

  uint64_t Address(pugi::xml_node node) const {
    uint64_t address = 0;
    for (const pugi::xml_node part : node.children("Address")) {
      address += std::stoull(part.child_value(), nullptr, 0);
    }
    for (const pugi::xml_node part : node.children("pAddress")) {
      address += std::stoull(Node(part.child_value()).child_value("Value"), nullptr, 0);
    }
    return address;
  }

  static std::string Type(pugi::xml_node node) {
    const std::string name = node.name();
    if (name == "StringReg" || name == "String") {
      return "string";
    }
    if (name.find("Int") != std::string::npos) {
      return "integer";
    }
    if (name == "Converter" || name == "SwissKnife" || name.find("Float") == 0) {
      return "float";
    }
    std::string type = name;
    std::transform(type.begin(), type.end(), type.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return type;
  }

  std::string Access(pugi::xml_node node) const {
    if (std::strcmp(node.name(), "Command") == 0) {
      return "WO";
    }
    for (const pugi::xml_node place : {node, Source(node)}) {
      for (const char *element : {"ImposedAccessMode", "AccessMode"}) {
        if (place.child(element)) {
          return place.child_value(element);
        }
      }
    }
    return Source(node).child("Value") ? "constant" : "RO";
  }

  std::string Limit(pugi::xml_node node, const char *value, const char *reference) const {
    if (node.child(value)) {
      return node.child_value(value);
    }
    return node.child(reference) ? Quoted(node.child_value(reference)) : "";
  }

  /// The formula, with what its variables stand for where their names do not say it.
  static std::string Formula(pugi::xml_node node) {
    std::string text = Code(node.child_value("Formula"));
    const char *separator = " where ";
    for (const pugi::xml_node variable : node.children("pVariable")) {
      const std::string name = variable.attribute("Name").value();
      if (name != variable.child_value()) {
        text += separator + Quoted(name) + " is " + Quoted(variable.child_value());
        separator = ", ";
      }
    }
    return text;
  }

  std::string Range(pugi::xml_node node) const {
    if (node.child("Formula")) {
      return Formula(node);
    }
    if (node.child("Value") && std::strcmp(node.name(), "Enumeration") != 0) {
      return std::string(Access(node) == "RW" ? "starts at " : "") + node.child_value("Value");
    }
    const std::string lowest = Limit(node, "Min", "pMin");
    const std::string highest = Limit(node, "Max", "pMax");
    const std::string step = Limit(node, "Inc", "pInc");
    std::string range;
    if (!lowest.empty() && !highest.empty()) {
      range = lowest + " to " + highest;
    } else if (!lowest.empty()) {
      range = "from " + lowest;
    } else if (!highest.empty()) {
      range = "up to " + highest;
    }
    if (!step.empty()) {
      range += (range.empty() ? "step " : ", step ") + step;
    }
    if (range.empty() && Type(node) == "string" && node.child("Length")) {
      range = std::string("up to ") + node.child_value("Length") + " bytes";
    }
    return range;
  }

  /// A bar would end the cell.
  static std::string Escaped(std::string text) {
    for (size_t at = text.find('|'); at != std::string::npos; at = text.find('|', at + 2)) {
      text.insert(at, "\\");
    }
    return text;
  }

  static std::string Code(const std::string &text) { return Quoted(Escaped(text)); }

  /// The nodes that elements of that name give, in this node and in those that its value comes from by the others.
  void AddConditions(Identifiers &names, pugi::xml_node node, const char *element,
                     std::initializer_list<const char *> ways) const {
    for (const pugi::xml_node condition : node.children(element)) {
      AddOnce(names, condition.child_value());
    }
    for (const char *way : ways) {
      for (const pugi::xml_node behind : node.children(way)) {
        AddConditions(names, Node(behind.child_value()), element, ways);
      }
    }
  }

  /// A formula is there if its variables are; nothing locks it.
  std::string Conditions(pugi::xml_node node) const {
    Identifiers needed;
    Identifiers locks;
    AddConditions(needed, node, "pIsAvailable", {"pValue", "pVariable"});
    AddConditions(locks, node, "pIsLocked", {"pValue"});
    std::string text;
    for (const std::string &name : needed) {
      text += (text.empty() ? "if " : ", if ") + Quoted(name);
    }
    for (const std::string &name : locks) {
      text += (text.empty() ? "not while " : ", not while ") + Quoted(name);
    }
    return text;
  }

  std::string Parameter(pugi::xml_node node) const {
    const pugi::xml_node source = Source(node);
    const auto found = IsRegister(source) ? m_Parameters.find(Address(source)) : m_Parameters.end();
    std::string text;
    if (found != m_Parameters.end()) {
      for (const std::string &parameter : found->second) {
        text += (text.empty() ? "" : ", ") + parameter;
      }
    }
    return text;
  }

  static std::string Cell(const std::string &text) { return text.empty() ? " | " : text + " | "; }

  void WriteFeature(std::ostream &out, pugi::xml_node node) const {
    const pugi::xml_node source = Source(node);
    out << "| `" << node.attribute("Name").value() << "` | " << Cell(Type(node)) << Cell(Access(node))
        << Cell(Conditions(node)) << Cell(Range(node)) << Cell(node.child_value("Unit"))
        << Cell(IsRegister(source) ? Hex(Address(source), 4) + ", " + source.child_value("Length") + " bytes" : "")
        << Cell(Parameter(node)) << Escaped(node.child_value("ToolTip")) << " |\n";
  }

  void WriteEntries(std::ostream &out, pugi::xml_node node) const {
    if (!node.child("EnumEntry")) {
      return;
    }
    out << "\nEntries of `" << node.attribute("Name").value() << "`:\n\n";
    for (const pugi::xml_node entry : node.children("EnumEntry")) {
      const uint64_t value = std::stoull(entry.child_value("Value"), nullptr, 0);
      out << "- `" << entry.attribute("Name").value()
          << "` = " << (value <= kSmallNumber ? std::to_string(value) : Hex(value, 8));
      if (entry.child("ToolTip")) {
        out << ": " << entry.child_value("ToolTip");
      }
      out << '\n';
    }
  }

  void WriteFeatures(std::ostream &out, const Nodes &features) const {
    out << "| Feature | Type | Access | Condition | Range | Unit | Register | Library parameter | Tool tip |\n"
        << "|---|---|---|---|---|---|---|---|---|\n";
    for (const pugi::xml_node feature : features) {
      WriteFeature(out, feature);
    }
    for (const pugi::xml_node feature : features) {
      WriteEntries(out, feature);
    }
  }

  void WriteCategory(std::ostream &out, pugi::xml_node category, std::set<std::string> &listed) const {
    Nodes features;
    Nodes categories;
    for (const pugi::xml_node feature : category.children("pFeature")) {
      listed.insert(feature.child_value());
      const pugi::xml_node node = Node(feature.child_value());
      (std::strcmp(node.name(), "Category") == 0 ? categories : features).push_back(node);
    }
    if (!features.empty()) {
      out << "\n### " << category.attribute("Name").value() << "\n\n";
      if (category.child("ToolTip")) {
        out << category.child_value("ToolTip") << "\n\n";
      }
      WriteFeatures(out, features);
    }
    for (const pugi::xml_node next : categories) {
      WriteCategory(out, next, listed);
    }
  }

  const std::map<uint64_t, Identifiers> m_Parameters;
  pugi::xml_document m_Document;
  std::map<std::string, pugi::xml_node> m_Nodes;
  Nodes m_Order;  ///< of the file
};

std::string Document(const std::string &tree) {
  std::ostringstream out;
  out << "# Features\n\n"
         "<!-- Generated by the target features_doc. Change the descriptions in source/tllumivex/xml and build it. "
         "-->\n\n"
         "All features that the modules of the Producer describe, in the order of their categories, and behind them\n"
         "those that no category lists. `lumivex features` shows the ones of the categories with their present "
         "values;\n"
         "the camera brings a description of its own.\n\n"
         "- Access: RO read, WO write, RW both; a constant stands in the description itself. RW without a register: "
         "the\n"
         "  value lives in the program that reads the description, and the Producer never sees it.\n"
         "- Condition: the feature is there only if, and can be changed only while not, the named node is true.\n"
         "- Range: a name in it is that of the node that has the limit. Without one, what fits into the register. For "
         "a\n"
         "  feature that is computed, the formula.\n"
         "- Library parameter: what the register sets or gets in the frame-grabber library; empty where there is "
         "none.\n";
  for (const Description &description : kDescriptions) {
    const bool device = std::strcmp(description.module, "Device") == 0;
    const CFeatures features(tree + "/source/tllumivex/xml/" + description.file,
                             device ? LibraryParameters(tree) : std::map<uint64_t, Identifiers>());
    out << "\n## " << description.module << "\n\n"
        << description.about << " Description: `" << description.file << "`.\n";
    features.Write(out);
  }
  return out.str();
}

int Run(const std::vector<std::string> &arguments) {
  const bool check = !arguments.empty() && arguments[0] == "--check";
  if (arguments.size() != (check ? 3U : 2U)) {
    std::cerr << "usage: features_doc [--check] SOURCE-TREE FILE\n";
    return 2;
  }
  const std::string &file = arguments.back();
  const std::string text = Document(arguments[check ? 1 : 0]);
  if (check) {
    if (ReadText(file) == text) {
      return 0;
    }
    std::cerr << file << " is not current: build the target features_doc\n";
    return 1;
  }
  std::ofstream stream(file, std::ios::binary);
  if (!(stream << text << std::flush)) {
    throw std::runtime_error("cannot write " + file);
  }
  return 0;
}

}  // namespace

int main(int argc, char **argv) {
  try {
    return Run({argv + 1, argv + argc});
  } catch (const std::exception &error) {
    std::cerr << "features_doc: " << error.what() << '\n';
    return 2;
  }
}
