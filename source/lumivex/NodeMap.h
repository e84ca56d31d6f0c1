// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "ModulePort.h"

typedef struct _ArvGcNode ArvGcNode;

namespace Lumivex::Consumer {

/// What a feature is to the user.
enum class FeatureKind { Category, Integer, Float, Boolean, Enumeration, Text, Command, Raw, Other };

/// What can be done with a feature now.
struct FeatureAccess {
  bool available = false;  ///< Implemented, and its conditions hold.
  bool readable = false;
  bool writable = false;  ///< By its description; a lock may forbid it for now.
  bool locked = false;
  std::string doubt;  ///< Why it cannot be told, in one line; empty when it can.
};

/// What does not change about a feature.
struct FeatureText {
  std::string toolTip;
  std::string unit;
  bool hidden = false;  ///< Not meant for users.
};

/// Limits of a number, as texts in the number's own notation; empty where there is none, and all empty where only the
/// width of the register limits it.
struct FeatureLimits {
  std::string minimum;
  std::string maximum;
  std::string increment;
};

struct FeatureEntry {
  std::string name;
  int64_t value;
};

/// The features of a module: its description, brought to life on its port.
///
/// Names and values are texts as the user sees and types them. Set checks a value against kind, limits, entries, lock
/// and access before the module is touched, so that the answer is in the user's words and not in those of a library.
/// Ownership: owns the port. Threads: one.
/// Throws CCommandError: NoFeature, FeatureAccess, FeatureValue; and what the port throws, with the Producer's text.
class CNodeMap {
 public:
  explicit CNodeMap(std::unique_ptr<const CModulePort> pPort);
  CNodeMap(const CNodeMap &) = delete;
  CNodeMap &operator=(const CNodeMap &) = delete;
  ~CNodeMap();

  /// Whose features they are.
  Module ModuleKind() const noexcept;

  /// As CModulePort::CameraName.
  const std::string &CameraName() const noexcept;

  /// Whether the camera is busy, so that only what can be read without control is available.
  bool IsReduced() const noexcept;

  /// Names of what a category holds, in its order; what the description does not have is left out.
  std::vector<std::string> Features(const std::string &category) const;

  /// Names of all features in the tree.
  std::vector<std::string> AllFeatures() const;

  FeatureKind Kind(const std::string &name) const;
  FeatureAccess Access(const std::string &name) const;
  FeatureText Text(const std::string &name) const;
  std::vector<FeatureEntry> Entries(const std::string &name) const;
  FeatureLimits Limits(const std::string &name) const;

  /// The value as a text. An enumeration that stands on none of its entries answers with the number, and says so.
  std::string Get(const std::string &name) const;

  /// Writes a value; a command takes none and is executed.
  void Set(const std::string &name, const std::optional<std::string> &value) const;

 private:
  struct State;

  ArvGcNode *Find(const std::string &name) const;
  ArvGcNode *Require(const std::string &name) const;
  void CollectFeatures(const std::string &category, int depth, std::vector<std::string> &names) const;
  void AddConditions(ArvGcNode *pNode, int depth, FeatureAccess &access) const;
  CCommandError NoFeature(const std::string &name) const;
  CCommandError NotAvailable(const std::string &name) const;
  void RequireWritable(const std::string &name) const;
  void SetInteger(const std::string &name, ArvGcNode *pNode, const std::string &text) const;
  void SetFloat(const std::string &name, ArvGcNode *pNode, const std::string &text) const;
  void SetBoolean(const std::string &name, ArvGcNode *pNode, const std::string &text) const;
  void SetEnumeration(const std::string &name, ArvGcNode *pNode, const std::string &text) const;
  void SetText(const std::string &name, ArvGcNode *pNode, const std::string &text) const;

  const std::unique_ptr<State> m_pState;
};

/// "a whole number", "an enumeration": for messages.
const char *KindText(FeatureKind kind);

}  // namespace Lumivex::Consumer
