// SPDX-License-Identifier: MIT
#include "NodeMap.h"

#include <algorithm>

namespace {

/// The device that the node map asks for memory: a port of the Producer.
struct PortDevice {
  ArvDevice parent;
  GenICam::Client::PORT_HANDLE port;
  ArvGc *gc;  // not owned
  uint64_t writes;
};
struct PortDeviceClass {
  ArvDeviceClass parent;
};

GType port_device_get_type();
PortDevice *PortOf(ArvDevice *device) { return reinterpret_cast<PortDevice *>(device); }

gboolean Transfer(ArvDevice *device, guint64 address, guint32 size, void *buffer, bool write, GError **error) {
  using namespace SystemTest;  // NOLINT
  PortDevice *const self = PortOf(device);
  self->writes += write ? 1 : 0;
  size_t moved = size;
  const GC_ERROR result = write ? Gc().GCWritePort(self->port, address, buffer, &moved)
                                : Gc().GCReadPort(self->port, address, buffer, &moved);
  if (result == GC_ERR_SUCCESS && (moved == size || !write)) {
    // A text may be shorter than its register; Consumers fill up with zeros.
    std::fill(static_cast<uint8_t *>(buffer) + moved, static_cast<uint8_t *>(buffer) + size, uint8_t{0});
    return TRUE;
  }
  g_set_error(error, arv_device_error_quark(), ARV_DEVICE_ERROR_TRANSFER_ERROR, "%d: %s", result,
              LastError().text.c_str());
  return FALSE;
}

gboolean ReadMemory(ArvDevice *device, guint64 address, guint32 size, void *buffer, GError **error) {
  return Transfer(device, address, size, buffer, false, error);
}
gboolean WriteMemory(ArvDevice *device, guint64 address, guint32 size, void *buffer, GError **error) {
  return Transfer(device, address, size, buffer, true, error);
}
gboolean ReadRegister(ArvDevice *device, guint64 address, guint32 *value, GError **error) {
  return Transfer(device, address, sizeof(*value), value, false, error);
}
gboolean WriteRegister(ArvDevice *device, guint64 address, guint32 value, GError **error) {
  return Transfer(device, address, sizeof(value), &value, true, error);
}
ArvGc *Genicam(ArvDevice *device) { return PortOf(device)->gc; }

void ClassInit(gpointer generic, gpointer) {
  auto *const type = static_cast<ArvDeviceClass *>(generic);
  type->read_memory = ReadMemory;
  type->write_memory = WriteMemory;
  type->read_register = ReadRegister;
  type->write_register = WriteRegister;
  type->get_genicam = Genicam;
}

GType port_device_get_type() {
  static const GType type =
      g_type_register_static_simple(ARV_TYPE_DEVICE, "LumivexTestPortDevice", sizeof(PortDeviceClass), ClassInit,
                                    sizeof(PortDevice), nullptr, static_cast<GTypeFlags>(0));
  return type;
}

}  // namespace

namespace SystemTest {

CNodeMap::CNodeMap(PORT_HANDLE port)
    : m_pDevice(ARV_DEVICE(g_object_new(port_device_get_type(), nullptr))), m_strXml(ReadXml(port)), m_pGc(nullptr) {
  PortOf(m_pDevice)->port = port;
  m_pGc = arv_gc_new(m_pDevice, m_strXml.data(), m_strXml.size());
  if (m_pGc != nullptr) {
    PortOf(m_pDevice)->gc = m_pGc;
    arv_gc_set_range_check_policy(m_pGc, ARV_RANGE_CHECK_POLICY_ENABLE);
    arv_gc_set_access_check_policy(m_pGc, ARV_ACCESS_CHECK_POLICY_ENABLE);
  }
}

CNodeMap::~CNodeMap() {
  g_clear_object(&m_pGc);
  g_object_unref(m_pDevice);
}

ArvGcNode *CNodeMap::Node(const std::string &name) const { return arv_gc_get_node(m_pGc, name.c_str()); }

bool CNodeMap::Has(const std::string &name) const { return Node(name) != nullptr; }

uint64_t CNodeMap::Writes() const { return PortOf(m_pDevice)->writes; }

bool CNodeMap::Finish(GError *error) {
  m_strFailure.clear();
  if (error == nullptr) {
    return true;
  }
  m_strFailure = error->message;
  g_error_free(error);
  return false;
}

void CNodeMap::Collect(const std::string &category, std::vector<std::string> &features) const {
  const GSList *entry = arv_gc_category_get_features(ARV_GC_CATEGORY(Node(category)));
  for (; entry != nullptr; entry = entry->next) {
    const std::string name = static_cast<const char *>(entry->data);
    if (!Has(name)) {
      ADD_FAILURE() << category << " names " << name << ", which is not there";
    } else if (Kind(name) == NodeKind::Category) {
      Collect(name, features);
    } else if (std::find(features.begin(), features.end(), name) == features.end()) {
      features.push_back(name);
    }
  }
}

std::vector<std::string> CNodeMap::Features() const {
  std::vector<std::string> features;
  Collect("Root", features);
  return features;
}

NodeKind CNodeMap::Kind(const std::string &name) const {
  ArvGcNode *const node = Node(name);
  if (ARV_IS_GC_CATEGORY(node)) {
    return NodeKind::Category;
  }
  if (ARV_IS_GC_ENUMERATION(node)) {
    return NodeKind::Enumeration;
  }
  if (ARV_IS_GC_BOOLEAN(node)) {
    return NodeKind::Boolean;
  }
  if (ARV_IS_GC_COMMAND(node)) {
    return NodeKind::Command;
  }
  if (ARV_IS_GC_STRING(node)) {
    return NodeKind::String;
  }
  if (ARV_IS_GC_FLOAT(node)) {
    return NodeKind::Float;
  }
  if (ARV_IS_GC_INTEGER(node)) {
    return NodeKind::Integer;
  }
  return ARV_IS_GC_REGISTER(node) ? NodeKind::Register : NodeKind::Other;
}

ArvGcAccessMode CNodeMap::Access(const std::string &name) const {
  return arv_gc_feature_node_get_actual_access_mode(ARV_GC_FEATURE_NODE(Node(name)));
}

bool CNodeMap::IsReadable(const std::string &name) const {
  return Kind(name) != NodeKind::Command && Access(name) != ARV_GC_ACCESS_MODE_WO;
}

bool CNodeMap::IsWritable(const std::string &name) const { return Access(name) != ARV_GC_ACCESS_MODE_RO; }

std::vector<std::string> CNodeMap::References(const std::string &name, const char *element) const {
  std::vector<std::string> names;
  ArvDomNode *child = arv_dom_node_get_first_child(ARV_DOM_NODE(Node(name)));
  for (; child != nullptr; child = arv_dom_node_get_next_sibling(child)) {
    ArvDomNode *const text = arv_dom_node_get_first_child(child);
    if (std::string(arv_dom_node_get_node_name(child)) == element && ARV_IS_DOM_TEXT(text)) {
      names.emplace_back(arv_dom_character_data_get_data(ARV_DOM_CHARACTER_DATA(text)));
    }
  }
  return names;
}

std::string CNodeMap::RegisterOf(const std::string &name) const {
  if (ARV_IS_GC_REGISTER(Node(name))) {
    return name;
  }
  const std::vector<std::string> behind = References(name, "pValue");
  return behind.empty() ? "" : RegisterOf(behind[0]);
}

bool CNodeMap::IsAvailable(const std::string &name) {
  GError *error = nullptr;
  if (arv_gc_feature_node_is_available(ARV_GC_FEATURE_NODE(Node(name)), &error) == FALSE || !Finish(error)) {
    g_clear_error(&error);
    return false;
  }
  for (const char *const element : {"pValue", "pVariable"}) {
    for (const std::string &behind : References(name, element)) {
      if (!IsAvailable(behind)) {
        return false;
      }
    }
  }
  return true;
}

bool CNodeMap::IsLocked(const std::string &name) {
  GError *error = nullptr;
  if (arv_gc_feature_node_is_locked(ARV_GC_FEATURE_NODE(Node(name)), &error) != FALSE || !Finish(error)) {
    g_clear_error(&error);
    return true;
  }
  const std::vector<std::string> behind = References(name, "pValue");
  return !behind.empty() && IsLocked(behind[0]);
}

bool CNodeMap::IsSelector(const std::string &name) const {
  ArvGcNode *const node = Node(name);
  return ARV_IS_GC_SELECTOR(node) && arv_gc_selector_is_selector(ARV_GC_SELECTOR(node)) != FALSE;
}

int64_t CNodeMap::Integer(const std::string &name) {
  GError *error = nullptr;
  ArvGcNode *const node = Node(name);
  const int64_t value = ARV_IS_GC_ENUMERATION(node) ? arv_gc_enumeration_get_int_value(ARV_GC_ENUMERATION(node), &error)
                        : ARV_IS_GC_BOOLEAN(node)   ? arv_gc_boolean_get_value(ARV_GC_BOOLEAN(node), &error)
                                                    : arv_gc_integer_get_value(ARV_GC_INTEGER(node), &error);
  Finish(error);
  return value;
}

int64_t CNodeMap::Minimum(const std::string &name) {
  GError *error = nullptr;
  const int64_t value = arv_gc_integer_get_min(ARV_GC_INTEGER(Node(name)), &error);
  Finish(error);
  return value;
}

int64_t CNodeMap::Maximum(const std::string &name) {
  GError *error = nullptr;
  const int64_t value = arv_gc_integer_get_max(ARV_GC_INTEGER(Node(name)), &error);
  Finish(error);
  return value;
}

int64_t CNodeMap::Increment(const std::string &name) {
  GError *error = nullptr;
  const int64_t value = arv_gc_integer_get_inc(ARV_GC_INTEGER(Node(name)), &error);
  Finish(error);
  return value;
}

double CNodeMap::FloatMinimum(const std::string &name) {
  GError *error = nullptr;
  const double value = arv_gc_float_get_min(ARV_GC_FLOAT(Node(name)), &error);
  Finish(error);
  return value;
}

double CNodeMap::FloatMaximum(const std::string &name) {
  GError *error = nullptr;
  const double value = arv_gc_float_get_max(ARV_GC_FLOAT(Node(name)), &error);
  Finish(error);
  return value;
}

double CNodeMap::Float(const std::string &name) {
  GError *error = nullptr;
  const double value = arv_gc_float_get_value(ARV_GC_FLOAT(Node(name)), &error);
  Finish(error);
  return value;
}

std::string CNodeMap::Text(const std::string &name) {
  GError *error = nullptr;
  const char *const text = arv_gc_feature_node_get_value_as_string(ARV_GC_FEATURE_NODE(Node(name)), &error);
  const bool good = Finish(error);
  return good && text != nullptr ? text : "";
}

std::vector<EntryValue> CNodeMap::Entries(const std::string &name) {
  std::vector<EntryValue> entries;
  const GSList *entry = arv_gc_enumeration_get_entries(ARV_GC_ENUMERATION(Node(name)));
  for (; entry != nullptr; entry = entry->next) {
    GError *error = nullptr;
    auto *const node = static_cast<ArvGcEnumEntry *>(entry->data);
    const int64_t value = arv_gc_enum_entry_get_value(node, &error);
    if (Finish(error)) {
      entries.push_back({arv_gc_feature_node_get_name(ARV_GC_FEATURE_NODE(node)), value});
    }
  }
  return entries;
}

bool CNodeMap::SetInteger(const std::string &name, int64_t value) {
  GError *error = nullptr;
  ArvGcNode *const node = Node(name);
  if (ARV_IS_GC_ENUMERATION(node)) {
    arv_gc_enumeration_set_int_value(ARV_GC_ENUMERATION(node), value, &error);
  } else if (ARV_IS_GC_BOOLEAN(node)) {
    arv_gc_boolean_set_value(ARV_GC_BOOLEAN(node), value != 0, &error);
  } else {
    arv_gc_integer_set_value(ARV_GC_INTEGER(node), value, &error);
  }
  return Finish(error);
}

bool CNodeMap::SetFloat(const std::string &name, double value) {
  GError *error = nullptr;
  arv_gc_float_set_value(ARV_GC_FLOAT(Node(name)), value, &error);
  return Finish(error);
}

bool CNodeMap::SetText(const std::string &name, const std::string &text) {
  GError *error = nullptr;
  arv_gc_feature_node_set_value_from_string(ARV_GC_FEATURE_NODE(Node(name)), text.c_str(), &error);
  return Finish(error);
}

bool CNodeMap::Execute(const std::string &name) {
  GError *error = nullptr;
  arv_gc_command_execute(ARV_GC_COMMAND(Node(name)), &error);
  return Finish(error);
}

}  // namespace SystemTest
