// SPDX-License-Identifier: MIT
// The program's own allocation functions stand ahead of the C library's for every library in the process.
#include <cerrno>
#include <cstdlib>

#include "HeapCount.h"

namespace {

thread_local size_t t_nRequests = 0;

}  // namespace

extern "C" {
// NOLINTBEGIN: the C library's own names
void *__libc_malloc(size_t size);
void *__libc_calloc(size_t count, size_t size);
void *__libc_realloc(void *old, size_t size);
void *__libc_memalign(size_t alignment, size_t size);
// NOLINTEND

void *malloc(size_t size) noexcept {
  ++t_nRequests;
  return __libc_malloc(size);
}

void *calloc(size_t count, size_t size) noexcept {
  ++t_nRequests;
  return __libc_calloc(count, size);
}

void *realloc(void *old, size_t size) noexcept {
  ++t_nRequests;
  return __libc_realloc(old, size);
}

void *memalign(size_t alignment, size_t size) noexcept {
  ++t_nRequests;
  return __libc_memalign(alignment, size);
}

void *aligned_alloc(size_t alignment, size_t size) noexcept { return memalign(alignment, size); }

int posix_memalign(void **out, size_t alignment, size_t size) noexcept {
  void *const memory = memalign(alignment, size);
  if (memory == nullptr) {
    return ENOMEM;
  }
  *out = memory;
  return 0;
}
}

namespace Benchmarks {

size_t HeapRequests() { return t_nRequests; }

}  // namespace Benchmarks
