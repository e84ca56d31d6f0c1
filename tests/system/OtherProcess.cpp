// SPDX-License-Identifier: MIT
#include <cstdint>
#include <dlfcn.h>
#include <iostream>
#include <string>

#include "GenTL.h"

/// A Consumer in a process of its own: `system_other_process CTI DEVICE-ID`. It opens the Device, writes one line to
/// its standard output, and goes when its standard input ends:
///
///     open <devices> <access status>      the Device is open for control
///     refused <devices> <access status> <code> <code of an open for reading> <text>
namespace {

using namespace GenICam::Client;  // NOLINT

void *g_Library = nullptr;

template <class T>
T Function(const char *name) {
  return reinterpret_cast<T>(dlsym(g_Library, name));
}

std::string ErrorText() {
  GC_ERROR code = GC_ERR_SUCCESS;
  char text[1024] = {};
  size_t size = sizeof(text);
  Function<PGCGetLastError>("GCGetLastError")(&code, text, &size);
  return text;
}

bool Failed(GC_ERROR result, const char *what) {
  if (result != GC_ERR_SUCCESS) {
    std::cout << "failed " << what << ' ' << result << ' ' << ErrorText() << std::endl;
  }
  return result != GC_ERR_SUCCESS;
}

int Run(const std::string &id) {
  TL_HANDLE system = nullptr;
  IF_HANDLE iface = nullptr;
  char interfaceId[256] = {};
  size_t size = sizeof(interfaceId);
  if (Failed(Function<PGCInitLib>("GCInitLib")(), "GCInitLib") ||
      Failed(Function<PTLOpen>("TLOpen")(&system), "TLOpen") ||
      Failed(Function<PTLUpdateInterfaceList>("TLUpdateInterfaceList")(system, nullptr, 100),
             "TLUpdateInterfaceList") ||
      Failed(Function<PTLGetInterfaceID>("TLGetInterfaceID")(system, 0, interfaceId, &size), "TLGetInterfaceID") ||
      Failed(Function<PTLOpenInterface>("TLOpenInterface")(system, interfaceId, &iface), "TLOpenInterface") ||
      Failed(Function<PIFUpdateDeviceList>("IFUpdateDeviceList")(iface, nullptr, 100), "IFUpdateDeviceList")) {
    return 1;
  }
  uint32_t devices = 0;
  INFO_DATATYPE type = 0;
  int32_t status = 0;
  size = sizeof(status);
  if (Failed(Function<PIFGetNumDevices>("IFGetNumDevices")(iface, &devices), "IFGetNumDevices") ||
      Failed(Function<PIFGetDeviceInfo>("IFGetDeviceInfo")(iface, id.c_str(), DEVICE_INFO_ACCESS_STATUS, &type, &status,
                                                           &size),
             "IFGetDeviceInfo")) {
    return 1;
  }
  const auto open = Function<PIFOpenDevice>("IFOpenDevice");
  DEV_HANDLE device = nullptr;
  const GC_ERROR result = open(iface, id.c_str(), DEVICE_ACCESS_CONTROL, &device);
  const std::string text = ErrorText();
  if (result == GC_ERR_SUCCESS) {
    std::cout << "open " << devices << ' ' << status << std::endl;
  } else {
    const GC_ERROR reading = open(iface, id.c_str(), DEVICE_ACCESS_READONLY, &device);
    std::cout << "refused " << devices << ' ' << status << ' ' << result << ' ' << reading << ' ' << text << std::endl;
  }
  while (std::cin.get() != std::char_traits<char>::eof()) {
  }
  return Failed(Function<PGCCloseLib>("GCCloseLib")(), "GCCloseLib") ? 1 : 0;
}

}  // namespace

int main(int argc, char **argv) {
  if (argc != 3) {
    return 2;
  }
  g_Library = dlopen(argv[1], RTLD_LAZY | RTLD_LOCAL);
  if (g_Library == nullptr) {
    std::cout << "failed dlopen 0 " << dlerror() << std::endl;
    return 1;
  }
  const int result = Run(argv[2]);
  dlclose(g_Library);
  return result;
}
