#pragma once

#include <benchmark/benchmark.h>

#include <algorithm>
#include <ctime>
#include <vector>

/// Measures two jobs in turn, so that whatever else the machine does meets both alike.
namespace paired {

inline double cpuSeconds() {
  timespec now{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

inline double median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

/// Runs job and baseline once an iteration. The counter "ratio" is the median of their ratios, in
/// processor time, each pair of runs giving one; "job_ms" and "baseline_ms" are medians too.
template <typename Job, typename Baseline>
void compare(benchmark::State& state, Job job, Baseline baseline) {
  std::vector<double> ratios;
  std::vector<double> jobs;
  std::vector<double> baselines;
  for (auto _ : state) {
    const double begin = cpuSeconds();
    benchmark::DoNotOptimize(baseline());
    const double between = cpuSeconds();
    benchmark::DoNotOptimize(job());
    const double end = cpuSeconds();
    baselines.push_back(between - begin);
    jobs.push_back(end - between);
    ratios.push_back((end - between) / (between - begin));
  }
  state.counters["ratio"] = median(ratios);
  state.counters["job_ms"] = 1e3 * median(jobs);
  state.counters["baseline_ms"] = 1e3 * median(baselines);
}

}  // namespace paired
