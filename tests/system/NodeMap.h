// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <arv.h>

#include "SystemProducer.h"

namespace SystemTest {

/// What a node is for a user.
enum class NodeKind { Category, Integer, Float, Boolean, Enumeration, String, Command, Register, Other };

/// One value of an enumeration.
struct EntryValue {
  std::string name;
  int64_t value;
};

/// The node map of one port, built from the XML that the port gives, with access and range checks on.
///
/// Every access goes through GCReadPort and GCWritePort of the port. An operation that fails throws nothing: it gives a
/// neutral value and leaves the text in Failure(), which each operation clears at its begin. One thread at a time.
class CNodeMap {
 public:
  explicit CNodeMap(PORT_HANDLE port);
  ~CNodeMap();
  CNodeMap(const CNodeMap &) = delete;
  CNodeMap &operator=(const CNodeMap &) = delete;

  bool IsBuilt() const { return m_pGc != nullptr; }
  bool Has(const std::string &name) const;
  /// All nodes that categories lead to, in their order, categories left out, each once.
  std::vector<std::string> Features() const;
  NodeKind Kind(const std::string &name) const;
  ArvGcAccessMode Access(const std::string &name) const;
  bool IsReadable(const std::string &name) const;
  /// Whether the access mode allows writes; available and locked are other questions.
  bool IsWritable(const std::string &name) const;
  /// Of the node and of those that its value comes from: Aravis asks the node alone, other GenApis all of them.
  bool IsAvailable(const std::string &name);
  bool IsLocked(const std::string &name);
  /// The register at the end of the way that a value takes; "" for a constant and a formula.
  std::string RegisterOf(const std::string &name) const;
  bool IsSelector(const std::string &name) const;

  int64_t Integer(const std::string &name);
  int64_t Minimum(const std::string &name);
  int64_t Maximum(const std::string &name);
  int64_t Increment(const std::string &name);
  double Float(const std::string &name);
  double FloatMinimum(const std::string &name);
  double FloatMaximum(const std::string &name);
  std::string Text(const std::string &name);  ///< any feature: string, entry, number
  std::vector<EntryValue> Entries(const std::string &name);

  bool SetInteger(const std::string &name, int64_t value);
  bool SetFloat(const std::string &name, double value);
  bool SetText(const std::string &name, const std::string &text);
  bool Execute(const std::string &name);

  const std::string &Failure() const { return m_strFailure; }
  /// Writes to the port so far.
  uint64_t Writes() const;

 private:
  ArvGcNode *Node(const std::string &name) const;
  bool Finish(GError *error);
  /// What elements of that name in the node name.
  std::vector<std::string> References(const std::string &name, const char *element) const;
  void Collect(const std::string &category, std::vector<std::string> &features) const;

  ArvDevice *m_pDevice;
  std::string m_strXml;
  ArvGc *m_pGc;
  std::string m_strFailure;
};

}  // namespace SystemTest
