// SPDX-License-Identifier: MIT
// The library in a program that loads it at run time: what is open then must not outlive it.
#include <atomic>
#include <chrono>
#include <dlfcn.h>
#include <elf.h>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <stdlib.h>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "grblx64.h"

namespace {

template <class Function>
Function Symbol(void *library, const char *name, Function) {
  void *symbol = dlsym(library, name);
  EXPECT_NE(symbol, nullptr) << name;
  return reinterpret_cast<Function>(symbol);
}

#define GRB_SYMBOL(NAME) Symbol(library, #NAME, decltype (&NAME)())

size_t ThreadCount() {
  const std::filesystem::directory_iterator tasks("/proc/self/task");
  return static_cast<size_t>(std::distance(begin(tasks), end(tasks)));
}

void CountFrames(GRB_HANDLE, uint32_t, void *context) { ++*static_cast<std::atomic<int> *>(context); }

template <class Predicate>
bool WaitUntil(const Predicate &predicate) {
  const auto bound = std::chrono::steady_clock::now() + std::chrono::seconds(30);
  while (!predicate() && std::chrono::steady_clock::now() < bound) {
    std::this_thread::yield();
  }
  return predicate();
}

TEST(Unload, RunningStreamsEndWithTheLibrary) {
  std::string folder = (std::filesystem::temp_directory_path() / "grbsim-unload-XXXXXX").string();
  ASSERT_NE(mkdtemp(folder.data()), nullptr);
  setenv("LUMIVEX_SIM_LOCK_DIR", folder.c_str(), 1);
  setenv("LUMIVEX_SIM_FPS", "500", 1);
  // A sanitizer's own thread comes with the first thread of the program. One that has been joined may be listed for a
  // moment still.
  size_t threads = 0;
  std::thread([&threads] { threads = ThreadCount() - 1; }).join();
  ASSERT_TRUE(WaitUntil([threads] { return ThreadCount() == threads; }));
  for (int cycle = 0; cycle < 10; ++cycle) {
    void *library = dlopen(GRBSIM_LIBRARY, RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(library, nullptr) << dlerror();
    std::vector<uint64_t> memory(64 * 8 / 8);
    uint64_t list[] = {reinterpret_cast<uintptr_t>(memory.data()), 0, 0, 0};
    std::atomic<int> frames{0};
    GRB_HANDLE handle = 0;
    ASSERT_EQ(GRB_SYMBOL(GRB_Create)(&handle, nullptr), GRB_OK);
    const auto set = [&](uint32_t identifier, uint32_t value) {
      EXPECT_EQ(GRB_SYMBOL(GRB_ParameterSet)(handle, identifier, &value), GRB_OK);
    };
    set(GRB_OPEN_BOARD, GRB_BOARD_1);
    set(GRB_OPEN_CHANNEL, GRB_CHANNEL_1);
    set(GRB_OPEN_MODE, GRB_MODE_ACQ_ONLY);
    set(GRB_OPEN_VARIANT, GRB_VARIANT_ANY);
    ASSERT_EQ(GRB_SYMBOL(GRB_Open)(handle), GRB_OK);
    EXPECT_EQ(GRB_SYMBOL(GRB_ParameterSet)(handle, GRB_EVENT_CONTEXT, &frames), GRB_OK);
    EXPECT_EQ(GRB_SYMBOL(GRB_ParameterSet)(handle, GRB_DST_LIST, list), GRB_OK);
    set(GRB_ACQ_NUM_BUFFERS, 1);
    set(GRB_ACQ_BLOCKING, GRB_ACQ_BLOCKING_OFF);
    set(GRB_ROI_XLENGTH, 64);
    set(GRB_ROI_YLENGTH, 8);
    set(GRB_DST_LINE_BYTES, 64);
    set(GRB_DST_LINES, 8);
    EXPECT_EQ(GRB_SYMBOL(GRB_ParameterSet)(handle, GRB_CACHE_FLUSH, nullptr), GRB_OK);
    ASSERT_EQ(GRB_SYMBOL(GRB_StreamRead)(handle, GRB_STREAM_START, reinterpret_cast<void *>(&CountFrames)), GRB_OK);
    EXPECT_TRUE(WaitUntil([&frames] { return frames >= 3; }));
    if (cycle % 2 == 0) {
      // Even a run that was aborted a moment ago must leave no thread behind.
      EXPECT_EQ(GRB_SYMBOL(GRB_StreamRead)(handle, GRB_STREAM_ABORT, nullptr), GRB_OK);
    }
    ASSERT_EQ(dlclose(library), 0);
    EXPECT_EQ(dlopen(GRBSIM_LIBRARY, RTLD_NOW | RTLD_NOLOAD), nullptr) << "the library stayed";
    EXPECT_TRUE(WaitUntil([threads] { return ThreadCount() == threads; })) << "a thread stayed";
  }
  std::filesystem::remove_all(folder);
}

// Whatever else the library showed could be taken for a symbol of the program that loads it.
TEST(Symbols, ElevenOperationsAndNothingElse) {
  std::ifstream file(GRBSIM_LIBRARY, std::ios::binary);
  const std::vector<char> image((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
  ASSERT_GE(image.size(), sizeof(Elf64_Ehdr));
  const auto *head = reinterpret_cast<const Elf64_Ehdr *>(image.data());
  const auto *sections = reinterpret_cast<const Elf64_Shdr *>(image.data() + head->e_shoff);
  std::set<std::string> defined;
  std::string soname;
  for (size_t i = 0; i < head->e_shnum; ++i) {
    const Elf64_Shdr &section = sections[i];
    if (section.sh_type != SHT_DYNSYM && section.sh_type != SHT_DYNAMIC) {
      continue;
    }
    const char *names = image.data() + sections[section.sh_link].sh_offset;
    if (section.sh_type == SHT_DYNSYM) {
      const auto *symbols = reinterpret_cast<const Elf64_Sym *>(image.data() + section.sh_offset);
      for (size_t s = 0; s < section.sh_size / sizeof(Elf64_Sym); ++s) {
        if (symbols[s].st_shndx != SHN_UNDEF && ELF64_ST_BIND(symbols[s].st_info) != STB_LOCAL) {
          defined.insert(names + symbols[s].st_name);
        }
      }
    } else {
      const auto *entries = reinterpret_cast<const Elf64_Dyn *>(image.data() + section.sh_offset);
      for (size_t e = 0; e < section.sh_size / sizeof(Elf64_Dyn); ++e) {
        if (entries[e].d_tag == DT_SONAME) {
          soname = names + entries[e].d_un.d_val;
        }
      }
    }
  }
  const std::set<std::string> expected = {
      "GRB_Create", "GRB_Destroy",    "GRB_Open",        "GRB_Close",        "GRB_ParameterSet",     "GRB_ParameterGet",
      "GRB_Action", "GRB_StreamRead", "GRB_ControlRead", "GRB_ControlWrite", "GRB_ErrHandlerDefault"};
  EXPECT_EQ(defined, expected);
  EXPECT_EQ(soname, "libgrblx64.so");
}

}  // namespace
