// SPDX-License-Identifier: MIT
// The program's own allocation functions stand ahead of the C library's for every library in the process. Under a
// sanitizer they are the sanitizer's, which calls a hook.
#include <cerrno>
#include <cstdlib>

#include "HeapCount.h"

#if defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#define LUMIVEX_SANITIZED
#endif
#endif
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define LUMIVEX_SANITIZED
#endif

namespace {

thread_local size_t t_nRequests = 0;

}  // namespace

#if defined(LUMIVEX_SANITIZED)

extern "C" int __sanitizer_install_malloc_and_free_hooks(  // NOLINT: the sanitizers' own name
    void (*malloc_hook)(const volatile void *, size_t), void (*free_hook)(const volatile void *));

namespace {

void CountRequest(const volatile void *, size_t) { ++t_nRequests; }
void IgnoreRelease(const volatile void *) {}

}  // namespace

namespace TestSupport {

size_t HeapRequestsOfThisThread() {
  static const int installed = __sanitizer_install_malloc_and_free_hooks(CountRequest, IgnoreRelease);
  return installed == 0 ? 0 : t_nRequests;
}

}  // namespace TestSupport

#else

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

namespace TestSupport {

size_t HeapRequestsOfThisThread() { return t_nRequests; }

}  // namespace TestSupport

#endif
