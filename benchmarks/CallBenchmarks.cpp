// SPDX-License-Identifier: MIT
// Calls that no frame is needed for.
#include <cstdint>
#include <vector>

#include <benchmark/benchmark.h>

#include "Tree.h"

namespace Benchmarks {
namespace {

// Addresses of the Device's port.
constexpr uint64_t kFirstPlain = 0x0;
constexpr uint64_t kLastPlain = 0x1C80;
constexpr uint64_t kWritablePlain = 0x3EC;
constexpr uint64_t kOffsetX = 0x62C;
constexpr uint64_t kFirstVirtual = 0x614;
constexpr uint64_t kLastVirtual = 0x2210;

void ReadWord(benchmark::State &state, PORT_HANDLE port, uint64_t address) {
  const PGCReadPort call = Gc().GCReadPort;
  uint32_t value = 0;
  size_t size = sizeof(value);
  Must(call(port, address, &value, &size), "GCReadPort");
  for (auto _ : state) {
    size = sizeof(value);
    benchmark::DoNotOptimize(call(port, address, &value, &size));
  }
}

void WriteWord(benchmark::State &state, PORT_HANDLE port, uint64_t address) {
  const PGCWritePort call = Gc().GCWritePort;
  const uint32_t value = 0;
  size_t size = sizeof(value);
  Must(call(port, address, &value, &size), "GCWritePort");
  for (auto _ : state) {
    size = sizeof(value);
    benchmark::DoNotOptimize(call(port, address, &value, &size));
  }
}

void ReadFirstPlain(benchmark::State &state) {
  const CTree tree;
  ReadWord(state, tree.Device(), kFirstPlain);
}
BENCHMARK(ReadFirstPlain);

void ReadLastPlain(benchmark::State &state) {
  const CTree tree;
  ReadWord(state, tree.Device(), kLastPlain);
}
BENCHMARK(ReadLastPlain);

void ReadLastOfXml(benchmark::State &state) {
  const CTree tree;
  const Description description = DescriptionOf(tree.Device());
  ReadWord(state, tree.Device(), description.address + description.size - sizeof(uint32_t));
}
BENCHMARK(ReadLastOfXml);

void ReadVirtual(benchmark::State &state) {
  const CTree tree;
  ReadWord(state, tree.Device(), kOffsetX);
}
BENCHMARK(ReadVirtual);

void WritePlain(benchmark::State &state) {
  const CTree tree;
  WriteWord(state, tree.Device(), kWritablePlain);
}
BENCHMARK(WritePlain);

void WriteVirtual(benchmark::State &state) {
  const CTree tree;
  WriteWord(state, tree.Device(), kOffsetX);
}
BENCHMARK(WriteVirtual);

void WriteFirstVirtual(benchmark::State &state) {
  const CTree tree;
  WriteWord(state, tree.Device(), kFirstVirtual);
}
BENCHMARK(WriteFirstVirtual);

void WriteLastVirtual(benchmark::State &state) {
  const CTree tree;
  WriteWord(state, tree.Device(), kLastVirtual);
}
BENCHMARK(WriteLastVirtual);

void ReadXml(benchmark::State &state) {
  const CTree tree;
  const PGCReadPort call = Gc().GCReadPort;
  const PORT_HANDLE port = tree.Device();
  const Description description = DescriptionOf(port);
  std::vector<char> text(description.size);
  size_t size = text.size();
  Must(call(port, description.address, text.data(), &size), "GCReadPort");
  for (auto _ : state) {
    size = text.size();
    benchmark::DoNotOptimize(call(port, description.address, text.data(), &size));
  }
}
BENCHMARK(ReadXml)->Unit(benchmark::kMicrosecond);

void GetInfo(benchmark::State &state) {
  const CTree tree;
  const PGCGetInfo call = Gc().GCGetInfo;
  char text[64];
  INFO_DATATYPE type = INFO_DATATYPE_UNKNOWN;
  for (auto _ : state) {
    size_t size = sizeof(text);
    benchmark::DoNotOptimize(call(TL_INFO_VENDOR, &type, text, &size));
  }
}
BENCHMARK(GetInfo);

}  // namespace
}  // namespace Benchmarks
