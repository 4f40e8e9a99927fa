// One million trace lines through the library's trace log, with and without a flush after
// each line, against the same lines through spdlog's basic file sink in the same run.
// Prints lines per second for each and the ratio. Run from the native-release build.
#include <benchmark/benchmark.h>
#include <spdlog/sinks/basic_file_sink.h>
#include <spdlog/spdlog.h>

#include <cstdio>
#include <filesystem>
#include <map>
#include <string>

#include "common/Trace.h"
#include "toolkit/FileSys.h"

namespace fs = std::filesystem;

namespace {

constexpr int kLines = 1000000;

fs::path Folder(const std::string& name) {
  fs::path p = fs::temp_directory_path() / ("mivo_trace_bench_" + name);
  fs::remove_all(p);
  fs::create_directories(p);
  return p;
}

CString AsLibraryPath(const fs::path& p) { return CString(toolkit::sys::FromNativePath(p.string() + "/").c_str()); }

void MivoTrace(benchmark::State& state, bool flush) {
  fs::path dir = Folder(flush ? "mivo_flush" : "mivo");
  for (auto _ : state) {
    ITrace_imp trace(AsLibraryPath(dir));
    for (int i = 0; i < kLines; ++i) trace.Trace(3, flush, L"CStartApp::InitInstance step %d of the launcher, path %s", i, L"C:\\Program Files\\Mivo\\");
  }
  state.SetItemsProcessed(state.iterations() * kLines);
  fs::remove_all(dir);
}

void Spdlog(benchmark::State& state, bool flush) {
  fs::path dir = Folder(flush ? "spdlog_flush" : "spdlog");
  for (auto _ : state) {
    auto logger = spdlog::basic_logger_mt("bench", (dir / "trace.txt").string());
    logger->set_pattern("[%Y/%m/%d %H:%M:%S]%v");
    if (flush) logger->flush_on(spdlog::level::info);
    for (int i = 0; i < kLines; ++i)
      logger->info("CStartApp::InitInstance step {} of the launcher, path {}", i, "C:\\Program Files\\Mivo\\");
    spdlog::drop("bench");
  }
  state.SetItemsProcessed(state.iterations() * kLines);
  fs::remove_all(dir);
}

// Keeps each run's lines per second so main can print the ratios.
class RateReporter : public benchmark::ConsoleReporter {
 public:
  void ReportRuns(const std::vector<Run>& runs) override {
    for (const auto& run : runs) {
      auto it = run.counters.find("items_per_second");
      if (it != run.counters.end()) rates[run.benchmark_name()] = it->second.value;
    }
    ConsoleReporter::ReportRuns(runs);
  }
  std::map<std::string, double> rates;
};

}  // namespace

BENCHMARK_CAPTURE(MivoTrace, no_flush, false)->Iterations(1)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Spdlog, no_flush, false)->Iterations(1)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(MivoTrace, flush, true)->Iterations(1)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Spdlog, flush, true)->Iterations(1)->UseRealTime()->Unit(benchmark::kMillisecond);

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  RateReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  for (const char* mode : {"no_flush", "flush"}) {
    double mivo = reporter.rates[std::string("MivoTrace/") + mode + "/iterations:1/real_time"];
    double spd = reporter.rates[std::string("Spdlog/") + mode + "/iterations:1/real_time"];
    if (mivo > 0 && spd > 0)
      std::printf("%-8s trace log %.0f lines/s, spdlog %.0f lines/s, trace/spdlog = %.2f\n", mode, mivo, spd, mivo / spd);
  }
  benchmark::Shutdown();
  return 0;
}
