// SPDX-License-Identifier: MIT
// Runs the benchmarks and closes with three tables: what each call costs beside its ingredients, requests to the heap,
// and memory written by opening a module. With --check a missed goal makes the program fail.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include <benchmark/benchmark.h>

#include "HeapCount.h"
#include "Memory.h"
#include "Samples.h"
#include "ScriptedGrb.h"
#include "Tree.h"

namespace Benchmarks {
namespace {

constexpr double kNoGoal = 0.0;

/// One ingredient: a benchmark, and how often it goes into the call.
struct Part {
  const char *name;
  double count = 1.0;
};

struct RatioRow {
  const char *title;
  const char *measured;
  std::vector<Part> ingredients;
  double atMost = kNoGoal;
};

constexpr const char *kSuccess = "SuccessExport";
constexpr double kXmlWords = 37686.0;  // of the Device's description

const std::vector<RatioRow> &RatioRows() {
  static const std::vector<RatioRow> rows = {
      {"read, first plain register", "ReadFirstPlain", {{kSuccess}, {"MapEntryRead"}}, 1.3},
      {"read, last plain register", "ReadLastPlain", {{kSuccess}, {"MapEntryRead"}}, 1.3},
      {"read, last word of the XML", "ReadLastOfXml", {{kSuccess}, {"MapEntryRead"}}, 1.3},
      {"read, to a success text by itself", "ReadLastPlain", {{"SuccessTss"}, {"MapEntryRead"}}, kNoGoal},
      {"last plain register to first", "ReadLastPlain", {{"ReadFirstPlain"}}, kNoGoal},
      {"read, virtual register", "ReadVirtual", {{kSuccess}, {"MapEntryRead"}, {"LibraryParameterGet"}}, kNoGoal},
      {"write, virtual register", "WriteVirtual", {{"LibraryParameterSet"}, {"WritePlain"}}, 1.3},
      {"write, first virtual register", "WriteFirstVirtual", {{"LibraryParameterSet"}, {"WritePlain"}}, 1.3},
      {"write, last virtual register", "WriteLastVirtual", {{"LibraryParameterSet"}, {"WritePlain"}}, 1.3},
      {"read, whole XML", "ReadXml", {{kSuccess}, {"MapEntryRead", kXmlWords}}, kNoGoal},
      {"GCGetInfo, vendor", "GetInfo", {{"SuccessTss"}}, kNoGoal},
      {"EventGetData, buffer waiting", "GetEvent/256", {{kSuccess}, {"LockAndUnlock"}}, kNoGoal},
      {"DSGetBufferInfo, frame id", "BufferInfo/256", {{kSuccess}}, kNoGoal},
      {"DSQueueBuffer, stopped", "QueueStopped/256", {{kSuccess}}, kNoGoal},
      {"DSQueueBuffer, running", "QueueRunning/256", {{kSuccess}, {"LibraryRelease"}}, kNoGoal},
      {"callback of a frame", "Frame/256", {{"LockAndUnlock"}}, kNoGoal},
      {"discovery of seven boards", "DiscoverSevenBoards", {{"LibraryOfDiscovery"}}, kNoGoal},
      {"whole tree, open and close", "OpenCloseTree", {{"LibraryOfOpenClose"}, {"FillMaps"}}, kNoGoal},
      {"EventGetData, 10,000 to 256 buffers", "GetEvent/10000", {{"GetEvent/256"}}, 1.15},
      {"DSGetBufferInfo, 10,000 to 256 buffers", "BufferInfo/10000", {{"BufferInfo/256"}}, 1.15},
      {"DSQueueBuffer running, 10,000 to 256", "QueueRunning/10000", {{"QueueRunning/256"}}, 1.15},
      {"DSQueueBuffer stopped, 10,000 to 256", "QueueStopped/10000", {{"QueueStopped/256"}}, kNoGoal},
      {"callback of a frame, 10,000 to 256", "Frame/10000", {{"Frame/256"}}, kNoGoal},
      {"Consumer's loop, 10,000 to 256 buffers", "Loop/10000", {{"Loop/256"}}, kNoGoal},
      {"time of a frame, 4 MiB to 64 KiB", "LoopOfFrameSize/2048", {{"LoopOfFrameSize/256"}}, 1.0 / 0.9},
  };
  return rows;
}

const char *Verdict(bool good, bool *allGood) {
  *allGood = *allGood && good;
  return good ? "met" : "MISSED";
}

bool PrintRatios(const CSamples &samples) {
  bool allGood = true;
  std::printf("\n%-40s %12s %12s %8s %8s\n", "call beside its ingredients", "call, ns", "parts, ns", "ratio", "goal");
  for (const RatioRow &row : RatioRows()) {
    const double call = samples.Nanoseconds(row.measured);
    double parts = 0.0;
    bool complete = call > 0.0;
    for (const Part &part : row.ingredients) {
      const double nanoseconds = samples.Nanoseconds(part.name);
      complete = complete && nanoseconds > 0.0;
      parts += part.count * nanoseconds;
    }
    if (!complete) {
      continue;
    }
    const double ratio = call / parts;
    std::printf("%-40s %12.1f %12.1f %8.2f", row.title, call, parts, ratio);
    if (row.atMost != kNoGoal) {
      std::printf(" %8.2f %s", row.atMost, Verdict(ratio <= row.atMost, &allGood));
    }
    std::printf("\n");
  }
  return allGood;
}

// Heap ---------------------------------------------------------------------------------------------------------------

constexpr int kWarmUp = 600;  // more than a block of any list has entries, and more than its ring has buffers
constexpr int kRounds = 10000;

/// Requests to the heap by many rounds of an action in steady state.
template <class Action>
size_t CountRequests(const Action &action) {
  for (int i = 0; i < kWarmUp; ++i) {
    action();
  }
  const size_t before = TestSupport::HeapRequestsOfThisThread();
  for (int i = 0; i < kRounds; ++i) {
    action();
  }
  return TestSupport::HeapRequestsOfThisThread() - before;
}

bool PrintHeapRequests() {
  CTree tree;
  tree.Announce(16);
  tree.QueueAll();
  tree.Start();
  const Functions &gc = Gc();
  const auto read = [&gc](PORT_HANDLE port, uint64_t address) {
    uint64_t value = 0;
    size_t size = sizeof(uint32_t);
    gc.GCReadPort(port, address, &value, &size);
  };
  const std::vector<std::pair<const char *, size_t>> counts = {
      {"frame: callback, EventGetData, DSQueueBuffer", CountRequests([&] {
         tree.Frame();
         gc.DSQueueBuffer(tree.Stream(), tree.Take());
       })},
      {"sixteen frames that pile up", CountRequests([&] {
         for (int i = 0; i < 16; ++i) {
           tree.Frame();
         }
         for (int i = 0; i < 16; ++i) {
           gc.DSQueueBuffer(tree.Stream(), tree.Take());
         }
       })},
      {"plain register read", CountRequests([&] { read(tree.Device(), 0x0); })},
      {"virtual register read", CountRequests([&] { read(tree.Device(), 0x62C); })},
      {"register read of the stream", CountRequests([&] { read(tree.Stream(), 0x34); })},
      {"virtual register write", CountRequests([&] {
         const uint32_t value = 0;
         size_t size = sizeof(value);
         gc.GCWritePort(tree.Device(), 0x62C, &value, &size);
       })},
      {"error event: callback, EventGetData", CountRequests([&] {
         tree.Overflow();
         char data[2048];
         size_t size = sizeof(data);
         gc.EventGetData(tree.ErrorEvent(), data, &size, 0);
       })},
      {"DSGetBufferInfo", CountRequests([&] {
         INFO_DATATYPE type = INFO_DATATYPE_UNKNOWN;
         uint64_t id = 0;
         size_t size = sizeof(id);
         gc.DSGetBufferInfo(tree.Stream(), tree.Buffers().front(), BUFFER_INFO_FRAMEID, &type, &id, &size);
       })},
  };
  bool allGood = true;
  std::printf("\n%-52s %10s %8s\n", "requests to the heap, in 10,000 rounds", "requests", "goal");
  for (const auto &[title, requests] : counts) {
    std::printf("%-52s %10zu %8d %s\n", title, requests, 0, Verdict(requests == 0, &allGood));
  }
  return allGood;
}

// Memory -------------------------------------------------------------------------------------------------------------

constexpr size_t kEntrySize = 40;
/// What a module may write beside its registers and the text on its way there: its objects, and pages begun.
constexpr size_t kAllowance = size_t{64} * 1024;

struct MemoryRow {
  const char *title;
  size_t first = 0;
  size_t again = 0;
  size_t needed = 0;
  size_t text = 0;
};

/// First: in a process that has opened nothing yet, which also wakes up code and tables that stay. Again: behind that,
/// when the heap has something to reuse.
bool PrintMemory() {
  MemoryRow rows[] = {{"System"}, {"Interface"}, {"Device"}, {"Data stream"}};
  Scripted::Script().SetQuiet(true);
  for (size_t MemoryRow::*column : {&MemoryRow::first, &MemoryRow::again}) {
    Must(Gc().GCInitLib(), "GCInitLib");
    size_t before = WrittenMemory();
    size_t row = 0;
    const auto add = [&](PORT_HANDLE port) {
      const size_t now = WrittenMemory();
      rows[row].*column = now > before ? now - before : 0;
      const Description description = DescriptionOf(port);
      rows[row].needed = (description.address + description.size) / sizeof(uint32_t) * kEntrySize;
      rows[row].text = description.size;
      ++row;
      before = WrittenMemory();
    };
    const TL_HANDLE system = CTree::OpenSystem();
    add(system);
    CTree::DiscoverInterfaces(system);
    before = WrittenMemory();
    const IF_HANDLE iface = CTree::OpenInterface(system);
    add(iface);
    CTree::DiscoverDevices(iface);
    before = WrittenMemory();
    const DEV_HANDLE device = CTree::OpenDevice(iface);
    add(device);
    add(CTree::OpenStream(device));
    Must(Gc().GCCloseLib(), "GCCloseLib");
  }
  bool allGood = true;
  std::printf("\n%-36s %8s %8s %10s %8s\n", "memory written by opening, in KiB", "first", "again", "registers", "goal");
  for (const MemoryRow &row : rows) {
    const size_t atMost = row.needed + row.text + kAllowance;
    std::printf("%-36s %8zu %8zu %10zu %8zu %s\n", row.title, row.first / 1024, row.again / 1024, row.needed / 1024,
                atMost / 1024, Verdict(row.first <= atMost && row.again <= atMost, &allGood));
  }
  return allGood;
}

int Run(int argc, char **argv) {
  bool check = false;
  // Ahead of the caller's own, which win. Interleaved repetitions: other load then falls on a call and its
  // ingredients alike.
  std::vector<std::string> defaults = {"--benchmark_repetitions=15", "--benchmark_min_time=0.02",
                                       "--benchmark_enable_random_interleaving=true"};
  std::vector<char *> arguments = {argv[0]};
  for (std::string &argument : defaults) {
    arguments.push_back(argument.data());
  }
  for (int i = 1; i < argc; ++i) {
    if (std::strcmp(argv[i], "--check") == 0) {
      check = true;
    } else {
      arguments.push_back(argv[i]);
    }
  }
  int count = static_cast<int>(arguments.size());
  arguments.push_back(nullptr);
  benchmark::Initialize(&count, arguments.data());
  if (benchmark::ReportUnrecognizedArguments(count, arguments.data())) {
    std::fprintf(stderr, "  --check   end with 1 when a goal is missed\n");
    return 2;
  }
  // Settings of this machine's user would change what is measured.
  setenv("LUMIVEX_GENTL_REG", "", 1);

  const bool memoryGood = PrintMemory();
  CSamples samples;
  benchmark::RunSpecifiedBenchmarks(&samples);
  const bool ratiosGood = PrintRatios(samples);
  const bool heapGood = PrintHeapRequests();
  benchmark::Shutdown();
  return check && !(ratiosGood && heapGood && memoryGood) ? 1 : 0;
}

}  // namespace
}  // namespace Benchmarks

int main(int argc, char **argv) { return Benchmarks::Run(argc, argv); }
