/* SPDX-License-Identifier: MIT */
#pragma once

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/** Creates a handle, fails to open it with the hook looking on, closes and destroys it. 0: all as it should be. */
int PlainHeaderWalk(void);

/** How many operations of the library C code can name. */
uint32_t PlainHeaderOperations(void);

#ifdef __cplusplus
}
#endif
