// SPDX-License-Identifier: MIT
#include "Producer.h"

#include <cstdio>
#include <cstdlib>
#include <dlfcn.h>

namespace Benchmarks {

namespace {

[[noreturn]] void Die(const char *what, const char *why) {
  std::fprintf(stderr, "lumivex_benchmarks: %s: %s\n", what, why);
  std::exit(2);
}

Functions Load() {
  void *library = dlopen(LUMIVEX_CTI_PATH, RTLD_NOW | RTLD_LOCAL);
  if (library == nullptr) {
    Die("no Producer", dlerror());
  }
  Functions functions;
#define LUMIVEX_LOAD(name)                                           \
  functions.name = reinterpret_cast<P##name>(dlsym(library, #name)); \
  if (functions.name == nullptr) {                                   \
    Die("no such function", #name);                                  \
  }
  LUMIVEX_BENCHMARK_FUNCTIONS(LUMIVEX_LOAD)
#undef LUMIVEX_LOAD
  return functions;
}

}  // namespace

const Functions &Gc() {
  static const Functions functions = Load();
  return functions;
}

void Must(GC_ERROR result, const char *what) {
  if (result == GC_ERR_SUCCESS) {
    return;
  }
  GC_ERROR code = GC_ERR_SUCCESS;
  char text[1024] = "no text";
  size_t size = sizeof(text);
  Gc().GCGetLastError(&code, text, &size);
  Die(what, text);
}

}  // namespace Benchmarks
