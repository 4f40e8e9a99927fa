// The statistics store under contention: 100,000 increments of one tag from two processes
// (50,000 each, at the same time), against the same 100,000 from one process and against
// the floor, 100,000 bare atomic rewrites (SaveFile) of a file of the same size. The final
// count is checked after every run. Rates are increments per second.
// Run pinned: taskset -c 1 build/h-match-release/bench/stat_store_bench
#include <sys/wait.h>
#include <unistd.h>

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <system_error>

#include "common/FileUtil.h"
#include "common/StatStore.h"
#include "toolkit/FileSys.h"

namespace {

constexpr int kIncrements = 100000;

struct Folder {
  Folder() {
    char pattern[] = "/tmp/mivo_stat_bench_XXXXXX";
    native = mkdtemp(pattern);
    path = CString((toolkit::sys::FromNativePath(native) + L"\\").c_str());
  }
  ~Folder() {
    std::error_code ec;
    std::filesystem::remove_all(native, ec);
  }
  std::string native;
  CString path;
};

void Adds(const CString& folder, int count) {
  mivo::common::CStatStore store(L"bench.dat", folder.GetString());
  for (int i = 0; i < count; ++i)
    if (store.Add(L"hits") <= 0) std::exit(1);
}

void Expect(const CString& folder, long long count) {
  long long got = mivo::common::CStatStore(L"bench.dat", folder.GetString()).Get(L"hits");
  if (got != count) {
    std::fprintf(stderr, "the store counted %lld, expected %lld\n", got, count);
    std::exit(1);
  }
}

void BM_TwoProcesses(benchmark::State& state) {
  for (auto _ : state) {
    Folder folder;
    pid_t children[2];
    for (auto& child : children)
      if ((child = fork()) == 0) {
        Adds(folder.path, kIncrements / 2);
        _exit(0);
      }
    for (pid_t child : children) {
      int status = 0;
      waitpid(child, &status, 0);
      if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) std::exit(1);
    }
    Expect(folder.path, kIncrements);
  }
  state.SetItemsProcessed(state.iterations() * kIncrements);
}

void BM_OneProcess(benchmark::State& state) {
  for (auto _ : state) {
    Folder folder;
    Adds(folder.path, kIncrements);
    Expect(folder.path, kIncrements);
  }
  state.SetItemsProcessed(state.iterations() * kIncrements);
}

void BM_BareSaveFile(benchmark::State& state) {
  for (auto _ : state) {
    Folder folder;
    CString path = folder.path + L"bench.dat";
    for (int i = 0; i < kIncrements; ++i)
      if (!mivo::common::SaveFile(path, "MivoStat 1\n" + std::to_string(i + 1) + "\thits\n")) std::exit(1);
  }
  state.SetItemsProcessed(state.iterations() * kIncrements);
}

}  // namespace

BENCHMARK(BM_TwoProcesses)->Iterations(1)->Repetitions(3)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BM_OneProcess)->Iterations(1)->Repetitions(3)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BM_BareSaveFile)->Iterations(1)->Repetitions(3)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK_MAIN();
