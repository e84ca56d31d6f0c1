// SPDX-License-Identifier: MIT
// Buffers and frames. The argument is the number of announced buffers, or the edge of a frame.
#include <algorithm>
#include <ctime>
#include <limits>
#include <vector>

#include <benchmark/benchmark.h>

#include "Samples.h"
#include "Tree.h"

namespace Benchmarks {
namespace {

constexpr size_t kCalls = 128;  // of a batch: no more than half of the smallest number of buffers
constexpr size_t kFewBuffers = 256;
constexpr size_t kManyBuffers = 10000;
constexpr size_t kRing = 16;

double ProcessorSeconds() {
  timespec time{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
}

/// What an empty measurement shows.
double ClockSeconds() {
  static const double least = [] {
    double seconds = std::numeric_limits<double>::max();
    for (int i = 0; i < 1000; ++i) {
      const double begin = ProcessorSeconds();
      seconds = std::min(seconds, ProcessorSeconds() - begin);
    }
    return seconds;
  }();
  return least;
}

/// The processor time of an action.
template <class Action>
double Measure(const Action &action) {
  const double begin = ProcessorSeconds();
  action();
  return std::max(0.0, ProcessorSeconds() - begin - ClockSeconds());
}

/// Takes the times of batches, and keeps for the table what a call costs in the median one: a batch during which the
/// processor did something else says nothing.
class CBatchTimes {
 public:
  explicit CBatchTimes(benchmark::State &state) : m_State(state) { m_Seconds.reserve(100000); }
  ~CBatchTimes() {
    if (m_Seconds.empty()) {
      return;
    }
    const auto middle = m_Seconds.begin() + static_cast<ptrdiff_t>(m_Seconds.size() / 2);
    std::nth_element(m_Seconds.begin(), middle, m_Seconds.end());
    m_State.counters[kCallNanoseconds] = 1e9 * *middle / static_cast<double>(kCalls);
  }
  CBatchTimes(const CBatchTimes &) = delete;
  CBatchTimes &operator=(const CBatchTimes &) = delete;

  void Add(double seconds) {
    m_State.SetIterationTime(seconds);
    m_Seconds.push_back(seconds);
  }

 private:
  benchmark::State &m_State;
  std::vector<double> m_Seconds;
};

enum class Timed { Frame, EventGetData, BufferInfo, Queue };

/// Batches of frames that pile up, are taken, looked at and given back; one of the steps is timed.
void RunBatches(benchmark::State &state, Timed timed) {
  CTree tree;
  tree.Announce(static_cast<size_t>(state.range(0)));
  tree.QueueAll();
  tree.Start();
  const PDSQueueBuffer queue = Gc().DSQueueBuffer;
  const PDSGetBufferInfo info = Gc().DSGetBufferInfo;
  const DS_HANDLE stream = tree.Stream();
  std::vector<BUFFER_HANDLE> taken(kCalls);
  CBatchTimes times(state);
  for (auto _ : state) {
    double seconds[4];
    seconds[0] = Measure([&] {
      for (size_t i = 0; i < kCalls; ++i) {
        tree.Frame();
      }
    });
    seconds[1] = Measure([&] {
      for (BUFFER_HANDLE &buffer : taken) {
        buffer = tree.Take();
      }
    });
    seconds[2] = Measure([&] {
      for (BUFFER_HANDLE buffer : taken) {
        INFO_DATATYPE type = INFO_DATATYPE_UNKNOWN;
        uint64_t id = 0;
        size_t size = sizeof(id);
        info(stream, buffer, BUFFER_INFO_FRAMEID, &type, &id, &size);
      }
    });
    seconds[3] = Measure([&] {
      for (BUFFER_HANDLE buffer : taken) {
        queue(stream, buffer);
      }
    });
    times.Add(seconds[static_cast<size_t>(timed)]);
  }
}

void Frame(benchmark::State &state) { RunBatches(state, Timed::Frame); }
BENCHMARK(Frame)->Arg(kFewBuffers)->Arg(kManyBuffers)->UseManualTime();

void GetEvent(benchmark::State &state) { RunBatches(state, Timed::EventGetData); }
BENCHMARK(GetEvent)->Arg(kFewBuffers)->Arg(kManyBuffers)->UseManualTime();

void BufferInfo(benchmark::State &state) { RunBatches(state, Timed::BufferInfo); }
BENCHMARK(BufferInfo)->Arg(kFewBuffers)->Arg(kManyBuffers)->UseManualTime();

void QueueRunning(benchmark::State &state) { RunBatches(state, Timed::Queue); }
BENCHMARK(QueueRunning)->Arg(kFewBuffers)->Arg(kManyBuffers)->UseManualTime();

void QueueStopped(benchmark::State &state) {
  CTree tree;
  tree.Announce(static_cast<size_t>(state.range(0)));
  const PDSQueueBuffer queue = Gc().DSQueueBuffer;
  const DS_HANDLE stream = tree.Stream();
  const std::vector<BUFFER_HANDLE> &buffers = tree.Buffers();
  size_t first = 0;
  CBatchTimes times(state);
  for (auto _ : state) {
    if (first + kCalls > buffers.size()) {
      first = 0;
      Must(Gc().DSFlushQueue(stream, ACQ_QUEUE_ALL_DISCARD), "DSFlushQueue");
    }
    times.Add(Measure([&] {
      for (size_t i = first; i < first + kCalls; ++i) {
        queue(stream, buffers[i]);
      }
    }));
    first += kCalls;
  }
}
BENCHMARK(QueueStopped)->Arg(kFewBuffers)->Arg(kManyBuffers)->UseManualTime();

/// The Consumer's loop, a frame at a time: the callback, EventGetData, DSQueueBuffer.
void RunLoop(benchmark::State &state, size_t buffers, uint32_t edge) {
  CTree tree;
  CTree::SetFrameEdge(edge);
  tree.Announce(buffers);
  tree.QueueAll();
  tree.Start();
  const PDSQueueBuffer queue = Gc().DSQueueBuffer;
  for (auto _ : state) {
    tree.Frame();
    benchmark::DoNotOptimize(queue(tree.Stream(), tree.Take()));
  }
}

void Loop(benchmark::State &state) { RunLoop(state, static_cast<size_t>(state.range(0)), kSmallEdge); }
BENCHMARK(Loop)->Arg(kFewBuffers)->Arg(kManyBuffers);

void LoopOfFrameSize(benchmark::State &state) { RunLoop(state, kRing, static_cast<uint32_t>(state.range(0))); }
BENCHMARK(LoopOfFrameSize)->Arg(kSmallEdge)->Arg(kLargeEdge);

}  // namespace
}  // namespace Benchmarks
