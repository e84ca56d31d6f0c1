// SPDX-License-Identifier: MIT
/// @file
/// What every export of the Producer does in any case: it stores the success text in the record of its thread.
#pragma once

#include <cstdint>

extern "C" {
/// The record behind a thread-specific pointer of Boost.
__attribute__((visibility("default"))) int32_t StoreSuccessTss(void);
/// The record in storage that the compiler reaches by itself.
__attribute__((visibility("default"))) int32_t StoreSuccessThreadLocal(void);
}
