// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include <pugixml.hpp>

/// One GenICam description file, read and parsed for the tests.
///
/// Nodes are kept in the order of the file, each with the Group that it stands in; a node outside any group has an
/// empty one. Owned by the test that made it; one thread only. Throws std::runtime_error if the file cannot be read or
/// is not well-formed, so that a broken file fails every test that looks at it.
class CDescription {
 public:
  struct Node {
    std::string group;
    pugi::xml_node xml;

    std::string Kind() const { return xml.name(); }
    std::string Name() const { return xml.attribute("Name").value(); }
    std::string NameSpace() const { return xml.attribute("NameSpace").value(); }
    std::string Text(const char *element) const { return xml.child(element).text().get(); }
  };

  explicit CDescription(const std::string &fileName);

  /// The file, byte for byte.
  const std::string &Bytes() const { return m_Bytes; }
  pugi::xml_node Root() const { return m_Document.child("RegisterDescription"); }
  const std::vector<Node> &Nodes() const { return m_Nodes; }
  bool Has(const std::string &name) const { return m_Index.count(name) != 0; }
  /// The node of that name; throws std::runtime_error if there is none.
  const Node &At(const std::string &name) const;
  /// The address of a register, its band's base included.
  std::int64_t AddressOf(const Node &node) const;
  /// The first comment of the file, trimmed.
  std::string FirstComment() const;

 private:
  void Collect(pugi::xml_node parent, const std::string &group);

  std::string m_Bytes;
  pugi::xml_document m_Document;
  std::vector<Node> m_Nodes;
  std::map<std::string, std::size_t> m_Index;
};

/// The child elements of a node as "Element=value", sorted by element name; elements of one name keep their order.
/// Numbers are written in decimal, an entry of an enumeration as "EnumEntry=Name:value", a variable as
/// "pVariable=NAME:node". The elements named in `without` are left out.
std::vector<std::string> ElementsOf(pugi::xml_node node, const std::vector<std::string> &without = {});

/// The same list from a text of the form "Element=value|Element=value".
std::vector<std::string> ElementsFrom(const std::string &text);

/// Brings a list of "Element=value" into the order and the number form of ElementsOf.
std::vector<std::string> Normalised(std::vector<std::string> elements);

/// The pieces of a text between the separators, trimmed; none for an empty text or "-".
std::vector<std::string> Split(const std::string &text, const std::string &separator);

std::string Trimmed(const std::string &text);

std::int64_t Number(const std::string &text);
