// Shows what Google Benchmark's console shows, and keeps the medians for ratios.

#pragma once

#include <benchmark/benchmark.h>

#include <map>
#include <string>
#include <vector>

namespace cvl::bench {

/// Each benchmark is repeated this often; its median counts.
inline constexpr int Repetitions = 9;

class MedianKeeper : public benchmark::ConsoleReporter {
 public:
  void ReportRuns(const std::vector<Run> &runs) override {
    for (const Run &run : runs) {
      if (run.aggregate_name == "median")
        Medians_[run.run_name.function_name] = run.GetAdjustedCPUTime();
    }
    ConsoleReporter::ReportRuns(runs);
  }

  /// Nanoseconds of processor time; 0 for a benchmark that hasn't run.
  double operator[](const std::string &name) const {
    const auto found = Medians_.find(name);
    return found == Medians_.end() ? 0 : found->second;
  }

 private:
  std::map<std::string, double> Medians_;
};

}  // namespace cvl::bench
