// SPDX-License-Identifier: MIT
#include "Samples.h"

#include <algorithm>

namespace Benchmarks {

void CSamples::ReportRuns(const std::vector<Run> &runs) {
  std::vector<Run> shown;
  for (const Run &run : runs) {
    if (run.run_type != Run::RT_Iteration) {
      // Of a benchmark's repetitions, one line is enough for the eye.
      if (run.aggregate_name == "median") {
        shown.push_back(run);
      }
      continue;
    }
    if (run.repetitions <= 1) {
      shown.push_back(run);
    }
    const auto counter = run.counters.find(kCallNanoseconds);
    const double nanoseconds = counter != run.counters.end()
                                   ? counter->second.value
                                   : 1e9 * run.cpu_accumulated_time / static_cast<double>(run.iterations);
    std::string name = run.run_name.function_name;
    if (!run.run_name.args.empty()) {
      name += "/" + run.run_name.args;
    }
    const auto entry = m_Least.emplace(name, nanoseconds).first;
    entry->second = std::min(entry->second, nanoseconds);
  }
  if (!shown.empty()) {
    ConsoleReporter::ReportRuns(shown);
  }
}

double CSamples::Nanoseconds(const std::string &name) const {
  const auto entry = m_Least.find(name);
  return entry == m_Least.end() ? 0.0 : entry->second;
}

}  // namespace Benchmarks
