// SPDX-License-Identifier: MIT
// Discovery, and the whole tree opened and closed, each beside what the frame-grabber library takes of it.
#include <iterator>
#include <string>

#include <benchmark/benchmark.h>

#include "LibraryReplay.h"
#include "ScriptedGrb.h"
#include "Tree.h"

namespace Benchmarks {
namespace {

using Scripted::Script;

constexpr uint32_t kBoards[] = {GRB_BOARD_1, GRB_BOARD_2, GRB_BOARD_3, GRB_BOARD_4,
                                GRB_BOARD_5, GRB_BOARD_6, GRB_BOARD_7};

void OpenAndClose() {
  const TL_HANDLE system = CTree::OpenSystem();
  CTree::DiscoverInterfaces(system);
  const IF_HANDLE iface = CTree::OpenInterface(system);
  CTree::DiscoverDevices(iface);
  const DEV_HANDLE device = CTree::OpenDevice(iface);
  const DS_HANDLE stream = CTree::OpenStream(device);
  Must(Gc().DSClose(stream), "DSClose");
  Must(Gc().DevClose(device), "DevClose");
  Must(Gc().IFClose(iface), "IFClose");
  Must(Gc().TLClose(system), "TLClose");
}

/// A Producer behind GCInitLib, no module open.
class CInitialised {
 public:
  CInitialised() {
    Script().SetQuiet(true);
    Must(Gc().GCInitLib(), "GCInitLib");
  }
  ~CInitialised() {
    Must(Gc().GCCloseLib(), "GCCloseLib");
    Script().Reset();
  }
  CInitialised(const CInitialised &) = delete;
  CInitialised &operator=(const CInitialised &) = delete;
};

void OpenCloseTree(benchmark::State &state) {
  const CInitialised producer;
  for (auto _ : state) {
    OpenAndClose();
  }
}
BENCHMARK(OpenCloseTree)->Unit(benchmark::kMicrosecond);

void LibraryOfOpenClose(benchmark::State &state) {
  const CInitialised producer;
  const CLibraryReplay replay(OpenAndClose);
  for (auto _ : state) {
    replay.Run();
  }
}
BENCHMARK(LibraryOfOpenClose)->Unit(benchmark::kMicrosecond);

/// Puts seven boards into the machine, and opens the System module.
TL_HANDLE SevenBoards() {
  for (size_t i = 0; i < std::size(kBoards); ++i) {
    Script().SetBoard(kBoards[i], "Name=Grabline\nModel=GL-CXP4\nSerial=100" + std::to_string(i) + "\n");
  }
  const TL_HANDLE system = CTree::OpenSystem();
  CTree::DiscoverInterfaces(system);
  uint32_t count = 0;
  Must(Gc().TLGetNumInterfaces(system, &count), "TLGetNumInterfaces");
  if (count != std::size(kBoards)) {
    Must(GC_ERR_ERROR, "not seven boards");
  }
  return system;
}

void DiscoverSevenBoards(benchmark::State &state) {
  const CInitialised producer;
  const TL_HANDLE system = SevenBoards();
  for (auto _ : state) {
    CTree::DiscoverInterfaces(system);
  }
}
BENCHMARK(DiscoverSevenBoards)->Unit(benchmark::kMicrosecond);

void LibraryOfDiscovery(benchmark::State &state) {
  const CInitialised producer;
  const TL_HANDLE system = SevenBoards();
  const CLibraryReplay replay([system] { CTree::DiscoverInterfaces(system); });
  for (auto _ : state) {
    replay.Run();
  }
}
BENCHMARK(LibraryOfDiscovery)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace Benchmarks
