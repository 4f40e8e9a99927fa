// Emptying a folder tree: the library's EmptyFolder (what the launcher's EmptyFolderTree
// calls) against `rm -rf` on the same tree, 20,000 small files in 200 folders on tmpfs.
// The tree is built before each timed run (untimed) and checked to be gone after it.
// Medians of several runs, pinned to one core by the caller (taskset -c 1).
#include <fcntl.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "bench/BenchRows.h"
#include "common/FileUtil.h"
#include "toolkit/FileSys.h"

extern char** environ;

namespace fs = std::filesystem;

namespace {

constexpr int kFolders = 200, kFilesPerFolder = 100;
const fs::path kRoot =
    (fs::is_directory("/dev/shm") ? fs::path("/dev/shm") : fs::temp_directory_path()) / "mivo_delete_bench";

void BuildTree() {
  fs::remove_all(kRoot);
  fs::create_directories(kRoot);
  std::string root = kRoot.string();
  char path[512];
  for (int d = 0; d < kFolders; ++d) {
    std::snprintf(path, sizeof path, "%s/folder_%03d", root.c_str(), d);
    ::mkdir(path, 0777);
    for (int f = 0; f < kFilesPerFolder; ++f) {
      std::snprintf(path, sizeof path, "%s/folder_%03d/file_%03d.dat", root.c_str(), d, f);
      int fd = ::open(path, O_CREAT | O_WRONLY | O_CLOEXEC, 0666);
      if (fd >= 0) {
        (void)::write(fd, "x", 1);
        ::close(fd);
      }
    }
  }
}

bool Gone() { return !fs::exists(kRoot); }

void MivoEmptyFolder(benchmark::State& state) {
  CString root(toolkit::sys::FromNativePath(kRoot.string()).c_str());
  for (auto _ : state) {
    state.PauseTiming();
    BuildTree();
    state.ResumeTiming();
    mivo::common::EmptyFolder(root, 1, 1);
    state.PauseTiming();
    if (!Gone()) state.SkipWithError("the tree is still there");
    state.ResumeTiming();
  }
}

void RmRf(benchmark::State& state) {
  std::string root = kRoot.string();
  for (auto _ : state) {
    state.PauseTiming();
    BuildTree();
    state.ResumeTiming();
    char rm[] = "rm", rf[] = "-rf";
    char* argv[] = {rm, rf, root.data(), nullptr};
    pid_t pid;
    int status = 0;
    if (posix_spawnp(&pid, "rm", nullptr, nullptr, argv, environ) == 0) ::waitpid(pid, &status, 0);
    state.PauseTiming();
    if (!Gone()) state.SkipWithError("the tree is still there");
    state.ResumeTiming();
  }
}

}  // namespace

BENCHMARK(MivoEmptyFolder)
    ->Iterations(1)
    ->Repetitions(7)
    ->ReportAggregatesOnly(true)
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(RmRf)->Iterations(1)->Repetitions(7)->ReportAggregatesOnly(true)->UseRealTime()->Unit(
    benchmark::kMillisecond);

int main(int argc, char** argv) {
  bench_rows::MedianReporter reporter;
  bench_rows::RunInterleaved(argc, argv, reporter);
  fs::remove_all(kRoot);
  double mivo = reporter.median["MivoEmptyFolder"], rm = reporter.median["RmRf"];
  if (mivo <= 0 || rm <= 0) return 1;
  double ratio = mivo / rm;
  bench_rows::PrintRow("emptying a tree of 20,000 files in 200 folders (native, tmpfs)",
                       bench_rows::Text("%.1f ms", mivo), bench_rows::Text("rm -rf: %.1f ms", rm), ratio, 1.2);
  return 0;
}
