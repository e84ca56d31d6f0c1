/* SPDX-License-Identifier: MIT */
/*
 * A Consumer in plain C: loads the Producer, walks from GCInitLib over the boards and cameras back to GCCloseLib.
 * Returns 0 when all of it went well.
 */
#include <dlfcn.h>
#include <stdio.h>
#include <string.h>

#include "GenTL.h"

static int g_failures = 0;

/* ISO C has no conversion from the result of dlsym to a function pointer: the bytes are copied. */
#define LOAD(name)                               \
  P##name name##Ptr = NULL;                      \
  do {                                           \
    void *symbol = dlsym(library, #name);        \
    if (symbol == NULL) {                        \
      fprintf(stderr, "no symbol %s\n", #name);  \
      return 2;                                  \
    }                                            \
    memcpy(&name##Ptr, &symbol, sizeof(symbol)); \
  } while (0)

#define EXPECT(condition)                                               \
  do {                                                                  \
    if (!(condition)) {                                                 \
      fprintf(stderr, "line %d: not true: %s\n", __LINE__, #condition); \
      ++g_failures;                                                     \
    }                                                                   \
  } while (0)

int main(void) {
  TL_HANDLE system = NULL;
  uint32_t interfaces = 0;
  uint32_t i = 0;
  uint32_t devicesSeen = 0;
  INFO_DATATYPE type = INFO_DATATYPE_UNKNOWN;
  GC_ERROR code = GC_ERR_ERROR;
  bool8_t changed = 0;
  char text[512];
  size_t size = 0;
  void *const library = dlopen(LUMIVEX_CTI_PATH, RTLD_LAZY | RTLD_LOCAL);
  if (library == NULL) {
    fprintf(stderr, "%s\n", dlerror());
    return 2;
  }
  {
    LOAD(GCInitLib);
    LOAD(GCCloseLib);
    LOAD(GCGetInfo);
    LOAD(GCGetLastError);
    LOAD(TLOpen);
    LOAD(TLClose);
    LOAD(TLUpdateInterfaceList);
    LOAD(TLGetNumInterfaces);
    LOAD(TLGetInterfaceID);
    LOAD(TLGetInterfaceInfo);
    LOAD(TLOpenInterface);
    LOAD(IFClose);
    LOAD(IFUpdateDeviceList);
    LOAD(IFGetNumDevices);
    LOAD(IFGetDeviceID);
    LOAD(IFGetDeviceInfo);

    EXPECT(sizeof(bool8_t) == 1);
    EXPECT(sizeof(GC_ERROR) == 4);
    EXPECT(sizeof(EVENT_NEW_BUFFER_DATA) == 2 * sizeof(void *));
    EXPECT(sizeof(PORT_REGISTER_STACK_ENTRY) == 24);
    EXPECT(GENTL_INFINITE == 0xFFFFFFFFFFFFFFFFULL);

    EXPECT(TLOpenPtr(&system) == GC_ERR_NOT_INITIALIZED);
    EXPECT(GCInitLibPtr() == GC_ERR_SUCCESS);
    size = sizeof(text);
    EXPECT(GCGetInfoPtr(TL_INFO_TLTYPE, &type, text, &size) == GC_ERR_SUCCESS);
    EXPECT(type == INFO_DATATYPE_STRING && size == 4 && strcmp(text, "CXP") == 0);

    EXPECT(TLOpenPtr(NULL) == GC_ERR_INVALID_PARAMETER);
    size = sizeof(text);
    EXPECT(GCGetLastErrorPtr(&code, text, &size) == GC_ERR_SUCCESS);
    EXPECT(code == GC_ERR_INVALID_PARAMETER && strncmp(text, "Null TL_HANDLE pointer.", 23) == 0);

    EXPECT(TLOpenPtr(&system) == GC_ERR_SUCCESS);
    EXPECT(TLUpdateInterfaceListPtr(system, &changed, 200) == GC_ERR_SUCCESS);
    EXPECT(changed == 1);
    EXPECT(TLGetNumInterfacesPtr(system, &interfaces) == GC_ERR_SUCCESS);
    EXPECT(interfaces >= 1);
    for (i = 0; i < interfaces; ++i) {
      IF_HANDLE iface = NULL;
      uint32_t devices = 0;
      uint32_t d = 0;
      char id[256];
      size = sizeof(id);
      EXPECT(TLGetInterfaceIDPtr(system, i, id, &size) == GC_ERR_SUCCESS);
      size = sizeof(text);
      EXPECT(TLGetInterfaceInfoPtr(system, id, INTERFACE_INFO_DISPLAYNAME, &type, text, &size) == GC_ERR_SUCCESS);
      printf("%s: %s\n", id, text);
      EXPECT(TLOpenInterfacePtr(system, id, &iface) == GC_ERR_SUCCESS);
      EXPECT(IFUpdateDeviceListPtr(iface, NULL, 200) == GC_ERR_SUCCESS);
      EXPECT(IFGetNumDevicesPtr(iface, &devices) == GC_ERR_SUCCESS);
      for (d = 0; d < devices; ++d) {
        int32_t status = 0;
        size = sizeof(id);
        EXPECT(IFGetDeviceIDPtr(iface, d, id, &size) == GC_ERR_SUCCESS);
        size = sizeof(status);
        EXPECT(IFGetDeviceInfoPtr(iface, id, DEVICE_INFO_ACCESS_STATUS, &type, &status, &size) == GC_ERR_SUCCESS);
        EXPECT(type == INFO_DATATYPE_INT32 && status == DEVICE_ACCESS_STATUS_READWRITE);
        printf("  %s: access status %d\n", id, (int)status);
        ++devicesSeen;
      }
      EXPECT(IFClosePtr(iface) == GC_ERR_SUCCESS);
    }
    EXPECT(devicesSeen >= 1);
    EXPECT(TLClosePtr(system) == GC_ERR_SUCCESS);
    EXPECT(GCCloseLibPtr() == GC_ERR_SUCCESS);
    EXPECT(GCCloseLibPtr() == GC_ERR_NOT_INITIALIZED);
  }
  EXPECT(dlclose(library) == 0);
  return g_failures == 0 ? 0 : 1;
}
