// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

namespace Benchmarks {

/// The counter of a benchmark that takes its own times: nanoseconds of a call in the median batch.
constexpr const char *kCallNanoseconds = "call_ns";

/// Shows the runs as Google Benchmark does, and keeps for the closing table what a call cost in each repetition.
class CSamples : public benchmark::ConsoleReporter {
 public:
  CSamples() : ConsoleReporter(OO_Tabular) {}

  void ReportRuns(const std::vector<Run> &runs) override;

  /// Nanoseconds of processor time that a call costs: the least of the repetitions, as other load only adds to it.
  /// 0: no such benchmark was run.
  double Nanoseconds(const std::string &name) const;

 private:
  std::map<std::string, double> m_Least;
};

}  // namespace Benchmarks
