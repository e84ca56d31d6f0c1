// SPDX-License-Identifier: MIT
#include "Description.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace {

const char *const kNumberElements[] = {"Address",     "CommandValue", "Length",   "Max",  "Min",
                                       "PollingTime", "OnValue",      "OffValue", "Value"};

}  // namespace

CDescription::CDescription(const std::string &fileName) {
  std::ifstream file(std::string(LUMIVEX_XML_DIR "/") + fileName, std::ios::binary);
  if (!file) {
    throw std::runtime_error("cannot read " + fileName);
  }
  m_Bytes.assign(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
  // parse_ws_pcdata_single keeps a text's own blanks; formulas are compared to the blank.
  const auto result = m_Document.load_buffer(
      m_Bytes.data(), m_Bytes.size(),
      pugi::parse_default | pugi::parse_comments | pugi::parse_declaration | pugi::parse_ws_pcdata_single,
      pugi::encoding_utf8);
  if (!result) {
    throw std::runtime_error(fileName + ": " + result.description());
  }
  Collect(Root(), "");
}

void CDescription::Collect(pugi::xml_node parent, const std::string &group) {
  for (const auto child : parent.children()) {
    if (child.type() != pugi::node_element) {
      continue;
    }
    if (std::string(child.name()) == "Group") {
      Collect(child, child.attribute("Comment").value());
    } else {
      m_Nodes.push_back({group, child});
      m_Index.emplace(m_Nodes.back().Name(), m_Nodes.size() - 1);
    }
  }
}

const CDescription::Node &CDescription::At(const std::string &name) const {
  const auto found = m_Index.find(name);
  if (found == m_Index.end()) {
    throw std::runtime_error("no node " + name);
  }
  return m_Nodes[found->second];
}

std::int64_t CDescription::AddressOf(const Node &node) const {
  const auto offset = Number(node.Text("Address"));
  return node.xml.child("pAddress") ? offset + Number(At(node.Text("pAddress")).Text("Value")) : offset;
}

std::string CDescription::FirstComment() const {
  for (const auto child : m_Document.children()) {
    if (child.type() == pugi::node_comment) {
      return Trimmed(child.value());
    }
  }
  return "";
}

std::vector<std::string> ElementsOf(pugi::xml_node node, const std::vector<std::string> &without) {
  std::vector<std::string> elements;
  for (const auto child : node.children()) {
    const std::string name = child.name();
    if (child.type() != pugi::node_element || std::count(without.begin(), without.end(), name) != 0) {
      continue;
    }
    if (name == "EnumEntry") {
      const auto value = std::to_string(Number(child.child("Value").text().get()));
      elements.push_back(name + "=" + child.attribute("Name").value() + ":" + value);
    } else if (name == "pVariable") {
      elements.push_back(name + "=" + child.attribute("Name").value() + ":" + child.text().get());
    } else {
      elements.push_back(name + "=" + child.text().get());
    }
  }
  return Normalised(std::move(elements));
}

std::vector<std::string> ElementsFrom(const std::string &text) {
  std::vector<std::string> elements;
  for (std::size_t from = 0; from < text.size();) {
    const auto to = std::min(text.find('|', from), text.size());
    elements.push_back(text.substr(from, to - from));
    from = to + 1;
  }
  return Normalised(std::move(elements));
}

std::vector<std::string> Normalised(std::vector<std::string> elements) {
  const auto nameOf = [](const std::string &element) { return element.substr(0, element.find('=')); };
  for (auto &element : elements) {
    const auto name = nameOf(element);
    if (std::find(std::begin(kNumberElements), std::end(kNumberElements), name) != std::end(kNumberElements)) {
      element = name + "=" + std::to_string(Number(element.substr(name.size() + 1)));
    }
  }
  std::stable_sort(elements.begin(), elements.end(),
                   [&](const std::string &a, const std::string &b) { return nameOf(a) < nameOf(b); });
  return elements;
}

std::vector<std::string> Split(const std::string &text, const std::string &separator) {
  std::vector<std::string> pieces;
  if (text.empty() || text == "-") {
    return pieces;
  }
  for (std::size_t from = 0;;) {
    const auto to = text.find(separator, from);
    pieces.push_back(Trimmed(text.substr(from, to - from)));
    if (to == std::string::npos) {
      return pieces;
    }
    from = to + separator.size();
  }
}

std::string Trimmed(const std::string &text) {
  const auto first = text.find_first_not_of(" \t\n");
  return first == std::string::npos ? "" : text.substr(first, text.find_last_not_of(" \t\n") - first + 1);
}

std::int64_t Number(const std::string &text) {
  char *end = nullptr;
  const auto value = std::strtoll(text.c_str(), &end, 0);
  if (text.empty() || *end != '\0') {
    throw std::runtime_error("not a number: '" + text + "'");
  }
  return value;
}
