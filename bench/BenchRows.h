#pragma once
// What the benchmarks with a goal share: a console reporter that keeps each benchmark's median,
// a run with the sides taking turns, and the ROW line that ./mivo bench collects.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <map>
#include <string>
#include <vector>

namespace bench_rows {

// The console output as usual, and the median of each benchmark by its function name, in the
// benchmark's own unit: wall time, or the process's CPU time (which a busy machine disturbs less).
class MedianReporter : public benchmark::ConsoleReporter {
 public:
  explicit MedianReporter(bool cpuTime = false) : m_cpuTime(cpuTime) {}
  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs)
      if (run.aggregate_name == "median")
        median[run.run_name.function_name] = m_cpuTime ? run.GetAdjustedCPUTime() : run.GetAdjustedRealTime();
    ConsoleReporter::ReportRuns(runs);
  }
  std::map<std::string, double> median;

 private:
  bool m_cpuTime;
};

// Runs every registered benchmark, the repetitions of the sides interleaved at random.
inline void RunInterleaved(int argc, char** argv, benchmark::BenchmarkReporter& reporter) {
  std::vector<char*> args(argv, argv + argc);
  char interleave[] = "--benchmark_enable_random_interleaving=true";
  args.push_back(interleave);
  int count = static_cast<int>(args.size());
  benchmark::Initialize(&count, args.data());
  benchmark::RunSpecifiedBenchmarks(&reporter);
  benchmark::Shutdown();
}

// "ROW|metric|ours|peer|ratio|goal|met": the ratio is our cost over the peer's, met at or below
// the goal.
inline void PrintRow(const std::string& metric, const std::string& ours, const std::string& peer, double ratio,
                     double goal) {
  std::printf("ROW|%s|%s|%s|%.2fx|<= %gx|%s\n", metric.c_str(), ours.c_str(), peer.c_str(), ratio, goal,
              ratio <= goal ? "yes" : "no");
}

// printf into a std::string, for the ours and peer columns.
template <typename... Args>
std::string Text(const char* format, Args... args) {
  char buffer[256];
  std::snprintf(buffer, sizeof buffer, format, args...);
  return buffer;
}

}  // namespace bench_rows
