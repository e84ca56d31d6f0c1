/* SPDX-License-Identifier: MIT */
/* The header of the frame-grabber library as a C compiler reads it. */
#include "PlainHeader.h"

#include <stddef.h>

#include "grblx64.h"

static uint32_t g_hookStatus = 0;

static void Hook(const char *function, GRB_STATUS status, const char *description) {
  (void)function;
  (void)description;
  g_hookStatus = status;
}

int PlainHeaderWalk(void) {
  GRB_HANDLE handle = 0;
  GRB_STATUS status = GRB_OK;
  uint32_t board = GRB_BOARD_7;
  g_hookStatus = GRB_OK;
  if (GRB_Create(&handle, &Hook) != GRB_OK || handle == 0) {
    return 1;
  }
  if (GRB_ParameterSet(handle, GRB_OPEN_BOARD, &board) != GRB_OK) {
    return 2;
  }
  status = GRB_Open(handle);
  if (status == GRB_OK || g_hookStatus != status) {
    return 3;
  }
  (void)GRB_Close(&handle);
  return GRB_Destroy(&handle) == GRB_OK ? 0 : 4;
}

uint32_t PlainHeaderOperations(void) {
  uint32_t (*const create)(uint32_t *, void (*)(const char *, uint32_t, const char *)) = &GRB_Create;
  uint32_t (*const ofPointer[])(uint32_t *) = {&GRB_Destroy, &GRB_Close};
  uint32_t (*const open)(uint32_t) = &GRB_Open;
  uint32_t (*const ofWord[])(uint32_t, uint32_t, void *) = {&GRB_ParameterSet, &GRB_ParameterGet, &GRB_StreamRead};
  uint32_t (*const transfers[])(uint32_t, uint32_t, void *, uint8_t *, uint32_t *, uint32_t) = {&GRB_ControlRead,
                                                                                                &GRB_ControlWrite};
  uint32_t (*const action)(uint32_t, uint32_t, uint32_t, void *) = &GRB_Action;
  void (*const report)(const char *, uint32_t, const char *) = &GRB_ErrHandlerDefault;
  const size_t lists = sizeof(ofPointer) / sizeof(*ofPointer) + sizeof(ofWord) / sizeof(*ofWord) +
                       sizeof(transfers) / sizeof(*transfers);
  return (uint32_t)(lists + (create != NULL) + (open != NULL) + (action != NULL) + (report != NULL));
}
