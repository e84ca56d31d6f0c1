// SPDX-License-Identifier: MIT
#include "NodeMap.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <limits>
#include <utility>

#include <arv.h>

#include "NearestNames.h"
#include "PortDevice.h"
#include "Text.h"

namespace Lumivex::Consumer {
namespace {

// A description may hold a circle; nothing sensible lies deeper than this.
constexpr int kDeepest = 32;

constexpr std::size_t kMostRawBytes = 16;

// Numbers between these are read more easily without an exponent.
constexpr double kSmallestPlain = 1e-4;
constexpr double kLargestPlain = 1e15;

constexpr int64_t kLowest = std::numeric_limits<int64_t>::min();
constexpr int64_t kHighest = std::numeric_limits<int64_t>::max();

/// The GError of one call, cleared when it goes.
class CError {
 public:
  CError() = default;
  CError(const CError &) = delete;
  CError &operator=(const CError &) = delete;
  ~CError() { g_clear_error(&m_pError); }

  GError **Out() noexcept { return &m_pError; }
  bool Is() const noexcept { return m_pError != nullptr; }
  const char *Message() const noexcept { return m_pError->message; }

 private:
  GError *m_pError = nullptr;
};

/// Keeps what libraries say about a description off the error output, where lumivex answers in its own words.
class CQuietLog {
 public:
  CQuietLog() : m_pBefore(g_log_set_default_handler(Ignore, nullptr)) {}
  CQuietLog(const CQuietLog &) = delete;
  CQuietLog &operator=(const CQuietLog &) = delete;
  ~CQuietLog() { g_log_set_default_handler(m_pBefore, nullptr); }

 private:
  static void Ignore(const gchar *, GLogLevelFlags, const gchar *, gpointer) {}

  const GLogFunc m_pBefore;
};

ArvGcFeatureNode *AsFeature(ArvGcNode *pNode) { return ARV_GC_FEATURE_NODE(pNode); }

std::string NullAsEmpty(const char *text) { return text == nullptr ? "" : text; }

FeatureKind KindOf(ArvGcNode *pNode) {
  if (ARV_IS_GC_CATEGORY(pNode)) {
    return FeatureKind::Category;
  }
  if (ARV_IS_GC_COMMAND(pNode)) {
    return FeatureKind::Command;
  }
  if (ARV_IS_GC_ENUMERATION(pNode)) {
    return FeatureKind::Enumeration;
  }
  if (ARV_IS_GC_BOOLEAN(pNode)) {
    return FeatureKind::Boolean;
  }
  if (ARV_IS_GC_STRING(pNode)) {
    return FeatureKind::Text;
  }
  if (ARV_IS_GC_INTEGER(pNode)) {
    return FeatureKind::Integer;
  }
  if (ARV_IS_GC_FLOAT(pNode)) {
    return FeatureKind::Float;
  }
  return ARV_IS_GC_REGISTER(pNode) ? FeatureKind::Raw : FeatureKind::Other;
}

/// The nodes that a node names with one kind of element, such as pValue.
std::vector<ArvGcNode *> LinkedNodes(ArvGcNode *pNode, ArvGcPropertyNodeType type) {
  std::vector<ArvGcNode *> nodes;
  for (ArvDomNode *pChild = arv_dom_node_get_first_child(ARV_DOM_NODE(pNode)); pChild != nullptr;
       pChild = arv_dom_node_get_next_sibling(pChild)) {
    if (ARV_IS_GC_PROPERTY_NODE(pChild) && arv_gc_property_node_get_node_type(ARV_GC_PROPERTY_NODE(pChild)) == type) {
      ArvGcNode *const pLinked = arv_gc_property_node_get_linked_node(ARV_GC_PROPERTY_NODE(pChild));
      if (ARV_IS_GC_FEATURE_NODE(pLinked)) {
        nodes.push_back(pLinked);
      }
    }
  }
  return nodes;
}

bool HasElement(ArvGcNode *pNode, ArvGcPropertyNodeType type) {
  for (ArvDomNode *pChild = arv_dom_node_get_first_child(ARV_DOM_NODE(pNode)); pChild != nullptr;
       pChild = arv_dom_node_get_next_sibling(pChild)) {
    if (ARV_IS_GC_PROPERTY_NODE(pChild) && arv_gc_property_node_get_node_type(ARV_GC_PROPERTY_NODE(pChild)) == type) {
      return true;
    }
  }
  return false;
}

/// Whether a number lives in the node map alone and is meant to be changed there.
bool IsVariable(ArvGcNode *pNode) {
  return HasElement(pNode, ARV_GC_PROPERTY_NODE_TYPE_VALUE) &&
         HasElement(pNode, ARV_GC_PROPERTY_NODE_TYPE_IMPOSED_ACCESS_MODE);
}

bool IsUnsigned(ArvGcNode *pRegister) {
  for (ArvDomNode *pChild = arv_dom_node_get_first_child(ARV_DOM_NODE(pRegister)); pChild != nullptr;
       pChild = arv_dom_node_get_next_sibling(pChild)) {
    if (ARV_IS_GC_PROPERTY_NODE(pChild) &&
        arv_gc_property_node_get_node_type(ARV_GC_PROPERTY_NODE(pChild)) == ARV_GC_PROPERTY_NODE_TYPE_SIGN) {
      return arv_gc_property_node_get_sign(ARV_GC_PROPERTY_NODE(pChild), ARV_GC_SIGNEDNESS_UNSIGNED) ==
             ARV_GC_SIGNEDNESS_UNSIGNED;
    }
  }
  return true;
}

/// The register that a node's number stands in as it is; null when there is none.
ArvGcNode *PlainRegister(ArvGcNode *pNode) {
  for (int depth = 0; depth < kDeepest; ++depth) {
    if (ARV_IS_GC_INT_REG_NODE(pNode)) {
      return pNode;
    }
    if (!ARV_IS_GC_INTEGER_NODE(pNode) && !ARV_IS_GC_ENUMERATION(pNode)) {
      return nullptr;
    }
    const std::vector<ArvGcNode *> values = LinkedNodes(pNode, ARV_GC_PROPERTY_NODE_TYPE_P_VALUE);
    if (values.empty()) {
      return nullptr;
    }
    pNode = values.front();
  }
  return nullptr;
}

struct Range {
  int64_t lowest = kLowest;
  int64_t highest = kHighest;
};

/// What fits into a node's register.
Range RegisterRange(ArvGcNode *pNode) {
  Range range;
  ArvGcNode *const pRegister = PlainRegister(pNode);
  if (pRegister == nullptr) {
    return range;
  }
  CError error;
  const guint64 bytes = arv_gc_register_get_length(ARV_GC_REGISTER(pRegister), error.Out());
  const bool isUnsigned = IsUnsigned(pRegister);
  if (!error.Is() && bytes > 0 && bytes < sizeof(int64_t)) {
    const unsigned bits = static_cast<unsigned>(bytes) * 8U;
    range.lowest = isUnsigned ? 0 : -(int64_t{1} << (bits - 1));
    range.highest = (int64_t{1} << (isUnsigned ? bits : bits - 1)) - 1;
  } else if (isUnsigned) {
    range.lowest = 0;
  }
  return range;
}

bool ParseInteger(const std::string &text, int64_t &value) {
  const bool negative = !text.empty() && text[0] == '-';
  std::size_t begin = negative ? 1 : 0;
  int base = 10;
  if (text.size() > begin + 2 && text[begin] == '0' && (text[begin + 1] == 'x' || text[begin + 1] == 'X')) {
    begin += 2;
    base = 16;
  }
  uint64_t magnitude = 0;
  const char *const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data() + begin, end, magnitude, base);
  const uint64_t most = static_cast<uint64_t>(kHighest) + (negative ? 1 : 0);
  if (error != std::errc() || stop != end || magnitude > most) {
    return false;
  }
  value = static_cast<int64_t>(negative ? uint64_t{0} - magnitude : magnitude);
  return true;
}

bool ParseFloat(const std::string &text, double &value) {
  const char *const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, value);
  return error == std::errc() && stop == end && std::isfinite(value);
}

std::string FormatFloat(double value) {
  std::array<char, 32> text{};
  const double magnitude = std::fabs(value);
  const bool plain = magnitude == 0 || (magnitude >= kSmallestPlain && magnitude < kLargestPlain);
  const auto [end, error] = std::to_chars(text.data(), text.data() + text.size(), value,
                                          plain ? std::chars_format::fixed : std::chars_format::scientific);
  return error == std::errc() ? std::string(text.data(), end) : std::to_string(value);
}

std::string FormatInteger(int64_t value, bool hexadecimal) {
  return hexadecimal ? Hexadecimal(static_cast<uint64_t>(value)) : std::to_string(value);
}

bool IsHexadecimal(ArvGcNode *pNode) {
  return arv_gc_integer_get_representation(ARV_GC_INTEGER(pNode)) == ARV_GC_REPRESENTATION_HEX_NUMBER;
}

CCommandError NoValue(const std::string &name, const std::string &why) {
  return {ExitCode::FeatureValue, name + " " + why};
}

std::string Quoted(const std::string &text) { return "'" + text + "'"; }

}  // namespace

struct CNodeMap::State {
  PortAccess access;
  ArvDevice *pDevice = nullptr;
  ArvGc *pGc = nullptr;

  ~State() {
    g_clear_object(&pGc);
    g_clear_object(&pDevice);
  }

  /// Calls Aravis; throws the failure of the port, or else Aravis' own complaint.
  template <class Operation>
  auto Call(Operation operation) {
    access.failure.reset();
    CError error;
    const auto result = operation(error.Out());
    if (error.Is()) {
      if (access.failure) {
        throw CCommandError(*access.failure);
      }
      throw CCommandError(ExitCode::FeatureAccess, error.Message());
    }
    return result;
  }

  template <class Operation>
  void Do(Operation operation) {
    Call([&](GError **ppError) {
      operation(ppError);
      return true;
    });
  }
};

CNodeMap::CNodeMap(std::unique_ptr<const CModulePort> pPort) : m_pState(std::make_unique<State>()) {
  const CQuietLog quiet;
  PortFile description = pPort->Description();
  if (description.bytes.compare(0, 2, "PK") == 0) {
    ArvZip *const pZip = arv_zip_new(description.bytes.data(), description.bytes.size());
    const GSList *const pFiles = arv_zip_get_file_list(pZip);
    std::size_t size = 0;
    auto *const pText = pFiles == nullptr
                            ? nullptr
                            : static_cast<char *>(arv_zip_get_file(
                                  pZip, arv_zip_file_get_name(static_cast<ArvZipFile *>(pFiles->data)), &size));
    description.bytes = pText == nullptr ? "" : std::string(pText, size);
    g_free(pText);
    arv_zip_free(pZip);
  }
  // A register that is longer than its file ends with zeros.
  description.bytes.erase(std::find(description.bytes.begin(), description.bytes.end(), '\0'), description.bytes.end());

  m_pState->access.pPort = std::move(pPort);
  m_pState->pDevice = NewPortDevice(m_pState->access);
  m_pState->pGc = arv_gc_new(m_pState->pDevice, description.bytes.data(), description.bytes.size());
  if (m_pState->pGc == nullptr || !ARV_IS_GC_CATEGORY(Find("Root"))) {
    throw CCommandError(ExitCode::GenTL, "the module's description, '" + description.name + "', cannot be understood");
  }
  SetNodeMap(m_pState->pDevice, m_pState->pGc);
}

CNodeMap::~CNodeMap() = default;

Module CNodeMap::ModuleKind() const noexcept { return m_pState->access.pPort->Kind(); }

const std::string &CNodeMap::CameraName() const noexcept { return m_pState->access.pPort->CameraName(); }

bool CNodeMap::IsReduced() const noexcept { return m_pState->access.pPort->IsReduced(); }

ArvGcNode *CNodeMap::Find(const std::string &name) const { return arv_gc_get_node(m_pState->pGc, name.c_str()); }

ArvGcNode *CNodeMap::Require(const std::string &name) const {
  ArvGcNode *const pNode = Find(name);
  if (!ARV_IS_GC_FEATURE_NODE(pNode)) {
    throw NoFeature(name);
  }
  return pNode;
}

std::vector<std::string> CNodeMap::Features(const std::string &category) const {
  std::vector<std::string> names;
  const GSList *pEntry = arv_gc_category_get_features(ARV_GC_CATEGORY(Find(category)));
  for (; pEntry != nullptr; pEntry = pEntry->next) {
    const auto *const name = static_cast<const char *>(pEntry->data);
    if (ARV_IS_GC_FEATURE_NODE(Find(name))) {
      names.emplace_back(name);
    }
  }
  return names;
}

std::vector<std::string> CNodeMap::AllFeatures() const {
  std::vector<std::string> names;
  CollectFeatures("Root", 0, names);
  return names;
}

void CNodeMap::CollectFeatures(const std::string &category, int depth, std::vector<std::string> &names) const {
  for (const std::string &name : Features(category)) {
    if (Kind(name) != FeatureKind::Category) {
      names.push_back(name);
    } else if (depth < kDeepest) {
      CollectFeatures(name, depth + 1, names);
    }
  }
}

FeatureKind CNodeMap::Kind(const std::string &name) const { return KindOf(Require(name)); }

// Aravis looks at a node's own conditions only; those of the nodes that its value comes from hold for it too.
void CNodeMap::AddConditions(ArvGcNode *pNode, int depth, FeatureAccess &access) const {
  if (depth > kDeepest) {
    return;
  }
  const auto holds = [&](auto condition) {
    return m_pState->Call([&](GError **ppError) { return condition(AsFeature(pNode), ppError) != FALSE; });
  };
  access.available =
      access.available && holds(arv_gc_feature_node_is_implemented) && holds(arv_gc_feature_node_is_available);
  if (!access.available) {
    return;
  }
  access.locked = access.locked || holds(arv_gc_feature_node_is_locked);
  const ArvGcAccessMode imposed = arv_gc_feature_node_get_imposed_access_mode(AsFeature(pNode));
  access.readable = access.readable && imposed != ARV_GC_ACCESS_MODE_WO;
  access.writable = access.writable && imposed != ARV_GC_ACCESS_MODE_RO;
  if (ARV_IS_GC_REGISTER(pNode)) {
    const ArvGcAccessMode own = arv_gc_feature_node_get_actual_access_mode(AsFeature(pNode));
    access.readable = access.readable && own != ARV_GC_ACCESS_MODE_WO;
    access.writable = access.writable && own != ARV_GC_ACCESS_MODE_RO;
    return;
  }
  const std::vector<ArvGcNode *> values = LinkedNodes(pNode, ARV_GC_PROPERTY_NODE_TYPE_P_VALUE);
  if (values.empty() && !IsVariable(pNode)) {
    // A constant or a formula: there is nothing that a write could reach.
    access.writable = false;
  }
  for (ArvGcNode *pValue : values) {
    AddConditions(pValue, depth + 1, access);
  }
  for (ArvGcNode *pVariable : LinkedNodes(pNode, ARV_GC_PROPERTY_NODE_TYPE_P_VARIABLE)) {
    FeatureAccess variable{true, true, true, false, ""};
    AddConditions(pVariable, depth + 1, variable);
    access.available = access.available && variable.available;
  }
}

FeatureAccess CNodeMap::Access(const std::string &name) const {
  ArvGcNode *const pNode = Require(name);
  FeatureAccess access{true, true, true, false, ""};
  try {
    AddConditions(pNode, 0, access);
  } catch (const CCommandError &error) {
    access.doubt = error.what();
  }
  if (KindOf(pNode) == FeatureKind::Command) {
    access.readable = false;
  }
  return access;
}

FeatureText CNodeMap::Text(const std::string &name) const {
  ArvGcNode *const pNode = Require(name);
  FeatureText text;
  text.toolTip = OneLine(NullAsEmpty(arv_gc_feature_node_get_tooltip(AsFeature(pNode))));
  text.hidden = arv_gc_feature_node_get_visibility(AsFeature(pNode)) == ARV_GC_VISIBILITY_INVISIBLE;
  if (KindOf(pNode) == FeatureKind::Integer) {
    text.unit = OneLine(NullAsEmpty(arv_gc_integer_get_unit(ARV_GC_INTEGER(pNode))));
  } else if (KindOf(pNode) == FeatureKind::Float) {
    text.unit = OneLine(NullAsEmpty(arv_gc_float_get_unit(ARV_GC_FLOAT(pNode))));
  }
  return text;
}

std::vector<FeatureEntry> CNodeMap::Entries(const std::string &name) const {
  ArvGcNode *const pNode = Require(name);
  std::vector<FeatureEntry> entries;
  if (KindOf(pNode) != FeatureKind::Enumeration) {
    return entries;
  }
  // Aravis' own list of entries has them in another order than the description.
  for (ArvDomNode *pChild = arv_dom_node_get_first_child(ARV_DOM_NODE(pNode)); pChild != nullptr;
       pChild = arv_dom_node_get_next_sibling(pChild)) {
    if (ARV_IS_GC_ENUM_ENTRY(pChild)) {
      entries.push_back({NullAsEmpty(arv_gc_feature_node_get_name(ARV_GC_FEATURE_NODE(pChild))),
                         m_pState->Call([&](GError **ppError) {
                           return arv_gc_enum_entry_get_value(ARV_GC_ENUM_ENTRY(pChild), ppError);
                         })});
    }
  }
  return entries;
}

FeatureLimits CNodeMap::Limits(const std::string &name) const {
  ArvGcNode *const pNode = Require(name);
  FeatureLimits limits;
  if (KindOf(pNode) == FeatureKind::Integer) {
    ArvGcInteger *const pInteger = ARV_GC_INTEGER(pNode);
    const Range range = RegisterRange(pNode);
    const bool hexadecimal = IsHexadecimal(pNode);
    const int64_t lowest = m_pState->Call([&](GError **p) { return arv_gc_integer_get_min(pInteger, p); });
    const int64_t highest = m_pState->Call([&](GError **p) { return arv_gc_integer_get_max(pInteger, p); });
    const int64_t step = m_pState->Call([&](GError **p) { return arv_gc_integer_get_inc(pInteger, p); });
    if (lowest <= range.lowest && highest >= range.highest && step <= 1) {
      return limits;
    }
    if (std::max(lowest, range.lowest) != kLowest) {
      limits.minimum = FormatInteger(std::max(lowest, range.lowest), hexadecimal);
    }
    if (std::min(highest, range.highest) != kHighest) {
      limits.maximum = FormatInteger(std::min(highest, range.highest), hexadecimal);
    }
    if (step > 1) {
      limits.increment = FormatInteger(step, false);
    }
  } else if (KindOf(pNode) == FeatureKind::Float) {
    ArvGcFloat *const pFloat = ARV_GC_FLOAT(pNode);
    const double lowest = m_pState->Call([&](GError **p) { return arv_gc_float_get_min(pFloat, p); });
    const double highest = m_pState->Call([&](GError **p) { return arv_gc_float_get_max(pFloat, p); });
    if (lowest > -std::numeric_limits<double>::max()) {
      limits.minimum = FormatFloat(lowest);
    }
    if (highest < std::numeric_limits<double>::max()) {
      limits.maximum = FormatFloat(highest);
    }
  }
  return limits;
}

std::string CNodeMap::Get(const std::string &name) const {
  ArvGcNode *const pNode = Require(name);
  const FeatureKind kind = KindOf(pNode);
  if (kind == FeatureKind::Category || kind == FeatureKind::Command) {
    throw CCommandError(ExitCode::FeatureAccess, name + " is " + KindText(kind) + " and has no value");
  }
  const FeatureAccess access = Access(name);
  if (!access.available) {
    throw NotAvailable(name);
  }
  if (!access.readable) {
    throw CCommandError(ExitCode::FeatureAccess, name + " can only be written");
  }
  switch (kind) {
    case FeatureKind::Enumeration: {
      const int64_t value =
          m_pState->Call([&](GError **p) { return arv_gc_enumeration_get_int_value(ARV_GC_ENUMERATION(pNode), p); });
      for (const FeatureEntry &entry : Entries(name)) {
        if (entry.value == value) {
          return entry.name;
        }
      }
      return Hexadecimal(static_cast<uint64_t>(value)) + ", none of its entries";
    }
    case FeatureKind::Boolean:
      return m_pState->Call([&](GError **p) { return arv_gc_boolean_get_value(ARV_GC_BOOLEAN(pNode), p); }) != FALSE
                 ? "true"
                 : "false";
    case FeatureKind::Integer:
      return FormatInteger(
          m_pState->Call([&](GError **p) { return arv_gc_integer_get_value(ARV_GC_INTEGER(pNode), p); }),
          IsHexadecimal(pNode));
    case FeatureKind::Float:
      return FormatFloat(m_pState->Call([&](GError **p) { return arv_gc_float_get_value(ARV_GC_FLOAT(pNode), p); }));
    case FeatureKind::Text:
      return NullAsEmpty(m_pState->Call([&](GError **p) { return arv_gc_string_get_value(ARV_GC_STRING(pNode), p); }));
    case FeatureKind::Raw: {
      const guint64 length =
          m_pState->Call([&](GError **p) { return arv_gc_register_get_length(ARV_GC_REGISTER(pNode), p); });
      std::vector<unsigned char> bytes(static_cast<std::size_t>(length));
      m_pState->Do([&](GError **p) { arv_gc_register_get(ARV_GC_REGISTER(pNode), bytes.data(), bytes.size(), p); });
      std::string text = Counted(bytes.size(), "byte") + ":";
      for (std::size_t i = 0; i < std::min(bytes.size(), kMostRawBytes); ++i) {
        text += std::string(" ") + "0123456789ABCDEF"[bytes[i] >> 4U] + "0123456789ABCDEF"[bytes[i] & 15U];
      }
      return text + (bytes.size() > kMostRawBytes ? " ..." : "");
    }
    default:
      throw CCommandError(ExitCode::FeatureAccess, name + " is of a kind that cannot be shown");
  }
}

CCommandError CNodeMap::NoFeature(const std::string &name) const {
  const ModuleRow &module = RowOf(ModuleKind());
  const std::string meant = DidYouMean(name, AllFeatures());
  const std::string listing = std::string("; 'lumivex features --module ") + module.name + "' shows those it has";
  std::string text = std::string(module.text) + " has no feature " + Quoted(name) + (meant.empty() ? listing : meant);
  // These two are easily taken for each other.
  if (module.module == Module::Device || module.module == Module::Camera) {
    const ModuleRow &other = RowOf(module.module == Module::Device ? Module::Camera : Module::Device);
    text += std::string(meant.empty() ? ", and" : "") + " 'lumivex features --module " + other.name + "' " +
            (meant.empty() ? "" : "shows ") + "what " + other.text + " has";
  }
  return {ExitCode::NoFeature, text};
}

CCommandError CNodeMap::NotAvailable(const std::string &name) const {
  return {ExitCode::FeatureAccess, name + " is not available now" +
                                       (IsReduced() ? ": the camera is busy, and was opened for reading only" : "")};
}

void CNodeMap::RequireWritable(const std::string &name) const {
  const FeatureAccess access = Access(name);
  if (!access.doubt.empty()) {
    throw CCommandError(ExitCode::FeatureAccess, "whether " + name + " is locked cannot be told: " + access.doubt);
  }
  if (!access.available) {
    throw NotAvailable(name);
  }
  if (!access.writable) {
    throw CCommandError(ExitCode::FeatureAccess, name + " can only be read");
  }
  if (access.locked) {
    throw CCommandError(ExitCode::FeatureAccess, name + " is locked now");
  }
}

void CNodeMap::Set(const std::string &name, const std::optional<std::string> &value) const {
  ArvGcNode *const pNode = Require(name);
  const FeatureKind kind = KindOf(pNode);
  if (kind == FeatureKind::Category || kind == FeatureKind::Raw || kind == FeatureKind::Other) {
    throw CCommandError(ExitCode::FeatureAccess, name + " is " + KindText(kind) + " and cannot be set");
  }
  if (kind == FeatureKind::Command) {
    if (value) {
      throw NoValue(name, "is a command: it takes no value");
    }
    RequireWritable(name);
    m_pState->Do([&](GError **p) { arv_gc_command_execute(ARV_GC_COMMAND(pNode), p); });
    return;
  }
  RequireWritable(name);
  if (!value) {
    throw NoValue(name, std::string("needs a value: it is ") + KindText(kind));
  }
  switch (kind) {
    case FeatureKind::Integer:
      return SetInteger(name, pNode, *value);
    case FeatureKind::Float:
      return SetFloat(name, pNode, *value);
    case FeatureKind::Boolean:
      return SetBoolean(name, pNode, *value);
    case FeatureKind::Enumeration:
      return SetEnumeration(name, pNode, *value);
    default:
      return SetText(name, pNode, *value);
  }
}

void CNodeMap::SetInteger(const std::string &name, ArvGcNode *pNode, const std::string &text) const {
  int64_t value = 0;
  if (!ParseInteger(text, value)) {
    throw NoValue(name, std::string("takes ") + KindText(FeatureKind::Integer) + ", not " + Quoted(text));
  }
  ArvGcInteger *const pInteger = ARV_GC_INTEGER(pNode);
  const Range range = RegisterRange(pNode);
  const int64_t lowest =
      std::max(range.lowest, m_pState->Call([&](GError **p) { return arv_gc_integer_get_min(pInteger, p); }));
  const int64_t highest =
      std::min(range.highest, m_pState->Call([&](GError **p) { return arv_gc_integer_get_max(pInteger, p); }));
  const bool hexadecimal = IsHexadecimal(pNode);
  if (value < lowest || value > highest) {
    const bool tooLow = value < lowest;
    throw NoValue(name, std::string("takes ") + (tooLow ? "at least " : "at most ") +
                            FormatInteger(tooLow ? lowest : highest, hexadecimal) + " now, not " + text);
  }
  const int64_t step = m_pState->Call([&](GError **p) { return arv_gc_integer_get_inc(pInteger, p); });
  const auto from = static_cast<uint64_t>(lowest == kLowest ? 0 : lowest);
  if (step > 1 && (static_cast<uint64_t>(value) - from) % static_cast<uint64_t>(step) != 0) {
    throw NoValue(name, "goes in steps of " + std::to_string(step) + " from " +
                            FormatInteger(static_cast<int64_t>(from), hexadecimal) + " and does not take " + text);
  }
  m_pState->Do([&](GError **p) { arv_gc_integer_set_value(pInteger, value, p); });
}

void CNodeMap::SetFloat(const std::string &name, ArvGcNode *pNode, const std::string &text) const {
  double value = 0;
  if (!ParseFloat(text, value)) {
    throw NoValue(name, std::string("takes ") + KindText(FeatureKind::Float) + ", not " + Quoted(text));
  }
  ArvGcFloat *const pFloat = ARV_GC_FLOAT(pNode);
  const double lowest = m_pState->Call([&](GError **p) { return arv_gc_float_get_min(pFloat, p); });
  const double highest = m_pState->Call([&](GError **p) { return arv_gc_float_get_max(pFloat, p); });
  if (value < lowest || value > highest) {
    const bool tooLow = value < lowest;
    throw NoValue(name, std::string("takes ") + (tooLow ? "at least " : "at most ") +
                            FormatFloat(tooLow ? lowest : highest) + " now, not " + text);
  }
  m_pState->Do([&](GError **p) { arv_gc_float_set_value(pFloat, value, p); });
}

void CNodeMap::SetBoolean(const std::string &name, ArvGcNode *pNode, const std::string &text) const {
  const bool yes = text == "true" || text == "1";
  if (!yes && text != "false" && text != "0") {
    throw NoValue(name, "takes true or false, not " + Quoted(text));
  }
  m_pState->Do([&](GError **p) { arv_gc_boolean_set_value(ARV_GC_BOOLEAN(pNode), yes ? TRUE : FALSE, p); });
}

void CNodeMap::SetEnumeration(const std::string &name, ArvGcNode *pNode, const std::string &text) const {
  std::vector<std::string> names;
  for (const FeatureEntry &entry : Entries(name)) {
    if (entry.name == text) {
      m_pState->Do([&](GError **p) { arv_gc_enumeration_set_int_value(ARV_GC_ENUMERATION(pNode), entry.value, p); });
      return;
    }
    names.push_back(entry.name);
  }
  const std::string meant = DidYouMean(text, names);
  throw NoValue(name, "has no entry " + Quoted(text) +
                          (meant.empty() ? "; 'lumivex features --verbose' shows those it has" : meant));
}

void CNodeMap::SetText(const std::string &name, ArvGcNode *pNode, const std::string &text) const {
  const int64_t most =
      m_pState->Call([&](GError **p) { return arv_gc_string_get_max_length(ARV_GC_STRING(pNode), p); });
  if (most > 0 && text.size() > static_cast<uint64_t>(most)) {
    throw NoValue(name, "takes at most " + Counted(static_cast<uint64_t>(most), "character") + ", not " +
                            std::to_string(text.size()));
  }
  m_pState->Do([&](GError **p) { arv_gc_string_set_value(ARV_GC_STRING(pNode), text.c_str(), p); });
}

const char *KindText(FeatureKind kind) {
  switch (kind) {
    case FeatureKind::Category:
      return "a category";
    case FeatureKind::Integer:
      return "a whole number";
    case FeatureKind::Float:
      return "a number";
    case FeatureKind::Boolean:
      return "true or false";
    case FeatureKind::Enumeration:
      return "an enumeration";
    case FeatureKind::Text:
      return "a text";
    case FeatureKind::Command:
      return "a command";
    case FeatureKind::Raw:
      return "a block of bytes";
    default:
      return "of an unknown kind";
  }
}

}  // namespace Lumivex::Consumer
