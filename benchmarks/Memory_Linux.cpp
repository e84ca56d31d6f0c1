// SPDX-License-Identifier: MIT
#include <cstdio>

#include "Memory.h"

namespace Benchmarks {

size_t WrittenMemory() {
  std::FILE *file = std::fopen("/proc/self/smaps_rollup", "r");
  if (file == nullptr) {
    return 0;
  }
  size_t kibibytes = 0;
  char line[256];
  while (std::fgets(line, sizeof(line), file) != nullptr) {
    if (std::sscanf(line, "Private_Dirty: %zu kB", &kibibytes) == 1) {
      break;
    }
  }
  std::fclose(file);
  return kibibytes * 1024;
}

}  // namespace Benchmarks
