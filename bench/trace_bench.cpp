// The trace log against spdlog with the same durability: each line reaches the operating
// system (one write) before the call returns, so spdlog flushes after every line. Both write
// the same text with the same "\r\n" line end and the same time stamp into a fresh file;
// this is checked before anything is timed. Medians of several runs, the two interleaved,
// pinned to one core by the caller (taskset -c 1). Prints the goal row at the end.
#include <spdlog/pattern_formatter.h>
#include <spdlog/sinks/basic_file_sink.h>
#include <spdlog/spdlog.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "bench/BenchRows.h"
#include "common/Trace.h"
#include "toolkit/FileSys.h"

namespace fs = std::filesystem;

namespace {

constexpr int kLines = 100000;
// tmpfs when there is one: the disk's write-back stalls would time the disk, not the loggers
const fs::path kRoot =
    (fs::is_directory("/dev/shm") ? fs::path("/dev/shm") : fs::temp_directory_path()) / "mivo_trace_bench";

fs::path FreshFolder(const std::string& name) {
  fs::path p = kRoot / name;
  fs::remove_all(p);
  fs::create_directories(p);
  return p;
}

CString AsLibraryPath(const fs::path& p) { return CString(toolkit::sys::FromNativePath(p.string() + "/").c_str()); }

void WriteMivo(const fs::path& dir, int lines) {
  ITrace_imp trace(AsLibraryPath(dir));
  for (int i = 0; i < lines; ++i)
    trace.Trace(3, false, L"CStartApp::InitInstance step %d of the launcher, path %s", i, L"C:\\Program Files\\Mivo\\");
}

// spdlog as a user who wants each line in the file at once would set it up: a file sink,
// flush on every level, the trace log's stamp and line end.
void WriteSpdlog(const fs::path& dir, int lines) {
  auto logger = spdlog::basic_logger_st("bench", (dir / "trace.txt").string(), true);
  logger->set_formatter(
      std::make_unique<spdlog::pattern_formatter>("[%Y/%m/%d %H:%M:%S]%v", spdlog::pattern_time_type::local, "\r\n"));
  logger->flush_on(spdlog::level::trace);
  for (int i = 0; i < lines; ++i)
    logger->info("CStartApp::InitInstance step {} of the launcher, path {}", i, "C:\\Program Files\\Mivo\\");
  spdlog::drop("bench");
}

std::string ReadOnlyFile(const fs::path& dir) {
  for (const auto& entry : fs::directory_iterator(dir)) {
    std::ifstream in(entry.path(), std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
  }
  return {};
}

// The same lines, time stamps aside, and stamps of the same shape.
bool SameOutput() {
  fs::path a = FreshFolder("check_mivo"), b = FreshFolder("check_spdlog");
  WriteMivo(a, 1000);
  WriteSpdlog(b, 1000);
  std::string x = ReadOnlyFile(a), y = ReadOnlyFile(b);
  if (x.size() != y.size() || x.empty()) return false;
  size_t pos = 0;
  while (pos < x.size()) {
    size_t end = x.find("\r\n", pos);
    if (end == std::string::npos || y.find("\r\n", pos) != end) return false;
    for (size_t i = pos; i < end; ++i) {
      bool digit = x[i] >= '0' && x[i] <= '9' && i < pos + 21;
      if (!(digit ? (y[i] >= '0' && y[i] <= '9') : x[i] == y[i])) return false;
    }
    pos = end + 2;
  }
  return true;
}

void MivoTrace(benchmark::State& state) {
  for (auto _ : state) {
    state.PauseTiming();
    fs::path dir = FreshFolder("mivo");
    state.ResumeTiming();
    WriteMivo(dir, kLines);
  }
  state.SetItemsProcessed(state.iterations() * kLines);
}

void SpdlogFlushEachLine(benchmark::State& state) {
  for (auto _ : state) {
    state.PauseTiming();
    fs::path dir = FreshFolder("spdlog");
    state.ResumeTiming();
    WriteSpdlog(dir, kLines);
  }
  state.SetItemsProcessed(state.iterations() * kLines);
}

// Keeps the medians and prints the goal row.

}  // namespace

BENCHMARK(MivoTrace)->Iterations(1)->Repetitions(7)->ReportAggregatesOnly(true)->UseRealTime()->Unit(
    benchmark::kMillisecond);
BENCHMARK(SpdlogFlushEachLine)
    ->Iterations(1)
    ->Repetitions(7)
    ->ReportAggregatesOnly(true)
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);

int main(int argc, char** argv) {
  if (!SameOutput()) {
    std::fprintf(stderr, "trace_bench: the trace log and spdlog do not write the same lines\n");
    return 1;
  }
  bench_rows::MedianReporter reporter;
  bench_rows::RunInterleaved(argc, argv, reporter);
  fs::remove_all(kRoot);
  double mivo = reporter.median["MivoTrace"], spd = reporter.median["SpdlogFlushEachLine"];
  if (mivo <= 0 || spd <= 0) return 1;
  double ratio = mivo / spd;
  bench_rows::PrintRow("trace log, one line per call, each line written to the OS (native, tmpfs)",
                       bench_rows::Text("%.0f ns/line", mivo * 1e6 / kLines),
                       bench_rows::Text("spdlog, flush every line: %.0f ns/line", spd * 1e6 / kLines), ratio, 1.0);
  return 0;
}
