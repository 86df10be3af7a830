#pragma once

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstddef>
#include <ctime>
#include <vector>

/// Measures two jobs in turn, so that whatever else the machine does meets both alike.
namespace paired {

/// Fewer runs than these make no median.
constexpr std::size_t kLeast = 3;

inline double cpuNanoseconds() {
  timespec now{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
  return 1e9 * static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec);
}

inline double median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

/// The processor time of one run of several in a row. A job that is shorter than reading the clock
/// takes is run often.
template <typename Job>
double timeOf(unsigned runs, const Job& job) {
  const double begin = cpuNanoseconds();
  for (unsigned i = 0; i < runs; ++i) job();
  return (cpuNanoseconds() - begin) / runs;
}

/// Runs job and baseline in turn, a pair once an iteration, after a pair that does not count. The
/// counter "ratio" is the median of their ratios, in processor time, each pair giving one; "job_ns"
/// and "baseline_ns" are medians too.
template <typename Job, typename Baseline>
void compare(benchmark::State& state, unsigned runs, const Job& job, const Baseline& baseline) {
  std::vector<double> ratios;
  std::vector<double> jobs;
  std::vector<double> baselines;
  const auto runPair = [&] {
    baselines.push_back(timeOf(runs, baseline));
    jobs.push_back(timeOf(runs, job));
    ratios.push_back(jobs.back() / baselines.back());
  };
  timeOf(runs, baseline);
  timeOf(runs, job);
  for (auto _ : state) runPair();
  while (ratios.size() < kLeast) runPair();
  state.counters["ratio"] = median(ratios);
  state.counters["job_ns"] = median(jobs);
  state.counters["baseline_ns"] = median(baselines);
}

/// Runs a job that has no peer once an iteration, after a run that does not count. The counter
/// "job_ns" is the median of its processor time.
template <typename Job>
void measure(benchmark::State& state, const Job& job) {
  std::vector<double> jobs;
  timeOf(1, job);
  for (auto _ : state) jobs.push_back(timeOf(1, job));
  while (jobs.size() < kLeast) jobs.push_back(timeOf(1, job));
  state.counters["job_ns"] = median(jobs);
}

}  // namespace paired
