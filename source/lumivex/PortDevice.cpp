// SPDX-License-Identifier: MIT
#include "PortDevice.h"

#include <exception>

namespace Lumivex::Consumer {
namespace {

// GObject's way to derive: each structure begins with that of its base.
struct PortDevice {
  ArvDevice parent;
  PortAccess *pAccess;
  ArvGc *pGc;
};

struct PortDeviceClass {
  ArvDeviceClass parent;
};

PortDevice *Self(ArvDevice *device) { return reinterpret_cast<PortDevice *>(device); }

// Aravis is C code: no exception may pass through it.
template <class Transfer>
gboolean Guarded(ArvDevice *device, GError **error, Transfer transfer) noexcept {
  PortAccess &access = *Self(device)->pAccess;
  try {
    try {
      transfer(*access.pPort);
      return TRUE;
    } catch (const CCommandError &failure) {
      access.failure = failure;
    } catch (const std::exception &failure) {
      access.failure = CCommandError(ExitCode::Internal, failure.what());
    }
    g_set_error_literal(error, arv_device_error_quark(), ARV_DEVICE_ERROR_TRANSFER_ERROR, access.failure->what());
  } catch (...) {
    g_set_error_literal(error, arv_device_error_quark(), ARV_DEVICE_ERROR_TRANSFER_ERROR, "out of memory");
  }
  return FALSE;
}

gboolean ReadMemory(ArvDevice *device, guint64 address, guint32 size, void *buffer, GError **error) {
  return Guarded(device, error, [&](const CModulePort &port) { port.Read(address, buffer, size); });
}

gboolean WriteMemory(ArvDevice *device, guint64 address, guint32 size, void *buffer, GError **error) {
  return Guarded(device, error, [&](const CModulePort &port) { port.Write(address, buffer, size); });
}

gboolean ReadRegister(ArvDevice *device, guint64 address, guint32 *value, GError **error) {
  return Guarded(device, error, [&](const CModulePort &port) {
    guint32 raw = 0;
    port.Read(address, &raw, sizeof(raw));
    *value = port.IsBigEndian() ? GUINT32_FROM_BE(raw) : GUINT32_FROM_LE(raw);
  });
}

gboolean WriteRegister(ArvDevice *device, guint64 address, guint32 value, GError **error) {
  return Guarded(device, error, [&](const CModulePort &port) {
    const guint32 raw = port.IsBigEndian() ? GUINT32_TO_BE(value) : GUINT32_TO_LE(value);
    port.Write(address, &raw, sizeof(raw));
  });
}

ArvGc *NodeMap(ArvDevice *device) { return Self(device)->pGc; }

void InitialiseClass(gpointer pClass, gpointer) {
  auto *const pDevice = static_cast<ArvDeviceClass *>(pClass);
  pDevice->read_memory = ReadMemory;
  pDevice->write_memory = WriteMemory;
  pDevice->read_register = ReadRegister;
  pDevice->write_register = WriteRegister;
  pDevice->get_genicam = NodeMap;
}

GType PortDeviceType() {
  static const GType type =
      g_type_register_static_simple(ARV_TYPE_DEVICE, "LumivexPortDevice", sizeof(PortDeviceClass), InitialiseClass,
                                    sizeof(PortDevice), nullptr, static_cast<GTypeFlags>(0));
  return type;
}

}  // namespace

ArvDevice *NewPortDevice(PortAccess &access) {
  auto *const device = static_cast<ArvDevice *>(g_object_new(PortDeviceType(), nullptr));
  Self(device)->pAccess = &access;
  return device;
}

void SetNodeMap(ArvDevice *device, ArvGc *gc) { Self(device)->pGc = gc; }

}  // namespace Lumivex::Consumer
