// SPDX-License-Identifier: MIT
// What the measured calls are made of, by itself.
#include <cstdint>
#include <cstdlib>
#include <new>
#include <vector>

#include <benchmark/benchmark.h>
#include <boost/thread/locks.hpp>
#include <boost/thread/recursive_mutex.hpp>

#include "LibraryReplay.h"
#include "ScriptedGrb.h"
#include "SuccessCall.h"
#include "Tree.h"

namespace Benchmarks {
namespace {

/// An entry of a register map: 40 bytes for a word of port memory.
struct MapEntry {
  uint32_t access;
  uint32_t value;
  void (*writeCallback)();
  void (*readCallback)();
  void *context;
  uint8_t byteOrder;
  uint8_t isVirtual;
};
static_assert(sizeof(MapEntry) == 40, "as wide as an entry of the Producer's map");

constexpr size_t kDeviceWords = 40000;

/// The look-up: address to entry, whether there is such a register, whether it may be read, its value.
__attribute__((noinline)) bool ReadEntry(const std::vector<MapEntry> &map, uint64_t address, uint32_t *value) {
  if (address % 4 != 0 || address / 4 >= map.size()) {
    return false;
  }
  const MapEntry &entry = map[address / 4];
  if ((entry.access & 1U) == 0) {
    return false;
  }
  *value = entry.value;
  return true;
}

void MapEntryRead(benchmark::State &state) {
  const std::vector<MapEntry> map(kDeviceWords, MapEntry{1, 7, nullptr, nullptr, nullptr, 0, 0});
  uint64_t address = 0x1C80;
  for (auto _ : state) {
    uint32_t value = 0;
    benchmark::DoNotOptimize(address);
    benchmark::DoNotOptimize(ReadEntry(map, address, &value));
    benchmark::DoNotOptimize(value);
  }
}
BENCHMARK(MapEntryRead);

void LockAndUnlock(benchmark::State &state) {
  boost::recursive_mutex mutex;
  for (auto _ : state) {
    const boost::unique_lock<boost::recursive_mutex> lock(mutex);
    benchmark::ClobberMemory();
  }
}
BENCHMARK(LockAndUnlock);

void SuccessTss(benchmark::State &state) {
  auto *volatile call = &StoreSuccessTss;
  for (auto _ : state) {
    benchmark::DoNotOptimize(call());
  }
}
BENCHMARK(SuccessTss);

void SuccessThreadLocal(benchmark::State &state) {
  auto *volatile call = &StoreSuccessThreadLocal;
  for (auto _ : state) {
    benchmark::DoNotOptimize(call());
  }
}
BENCHMARK(SuccessThreadLocal);

/// The Producer's own least call: frame, cast of the handle, success text.
void SuccessExport(benchmark::State &state) {
  const CTree tree;
  const PGCGetNumPortURLs call = Gc().GCGetNumPortURLs;
  const PORT_HANDLE port = tree.Device();
  uint32_t count = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(call(port, &count));
  }
}
BENCHMARK(SuccessExport);

void LibraryParameterSet(benchmark::State &state) {
  const CTree tree;
  const GRB_HANDLE handle = Scripted::Script().OpenHandle(GRB_BOARD_1, GRB_CHANNEL_1, GRB_MODE_ACQ_ONLY);
  uint32_t value = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(GRB_ParameterSet(handle, GRB_ROI_SRC_XOFFSET, &value));
  }
}
BENCHMARK(LibraryParameterSet);

void LibraryParameterGet(benchmark::State &state) {
  const CTree tree;
  const GRB_HANDLE handle = Scripted::Script().OpenHandle(GRB_BOARD_1, GRB_CHANNEL_1, GRB_MODE_ACQ_ONLY);
  uint32_t value = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(GRB_ParameterGet(handle, GRB_ROI_SRC_XOFFSET, &value));
  }
}
BENCHMARK(LibraryParameterGet);

void LibraryRelease(benchmark::State &state) {
  CTree tree;
  tree.Announce(4);
  tree.QueueAll();
  tree.Start();
  const GRB_HANDLE handle = tree.LibraryStream();
  for (auto _ : state) {
    benchmark::DoNotOptimize(GRB_StreamRead(handle, GRB_STREAM_RELEASE, nullptr));
  }
}
BENCHMARK(LibraryRelease);

/// Storage that is zero until used, and the entries of all four modules written to it.
void FillMaps(benchmark::State &state) {
  std::vector<size_t> words;
  {
    const CTree tree;
    for (PORT_HANDLE port : {PORT_HANDLE(tree.System()), PORT_HANDLE(tree.Interface()), PORT_HANDLE(tree.Device()),
                             PORT_HANDLE(tree.Stream())}) {
      const Description description = DescriptionOf(port);
      words.push_back((description.address + description.size) / 4);
    }
  }
  for (auto _ : state) {
    for (size_t count : words) {
      auto *entries = static_cast<MapEntry *>(std::calloc(count, sizeof(MapEntry)));
      for (size_t i = 0; i < count; ++i) {
        entries[i] = {1, static_cast<uint32_t>(i), nullptr, nullptr, nullptr, 0, 0};
      }
      benchmark::DoNotOptimize(entries);
      benchmark::ClobberMemory();
      std::free(entries);
    }
  }
}
BENCHMARK(FillMaps)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace Benchmarks
