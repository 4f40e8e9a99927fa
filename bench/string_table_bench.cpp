// Loads a string table of 100,000 entries and reads back every id.
#include <benchmark/benchmark.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "bench/BenchTemp.h"
#include "common/MutiLanSupport.h"
#include "toolkit/FileSys.h"

namespace fs = std::filesystem;

namespace {

constexpr int kEntries = 100000;

std::string TablePath() {
  fs::path p = bench::Scratch("string_table") / "table.ini";
  if (!fs::exists(p)) {
    std::ofstream out(p, std::ios::binary);
    for (int i = 0; i < kEntries; ++i)
      out << "STRID_BENCH_" << i << " = \xe6\x96\x87\xe6\x9c\xac text number " << i << " ; comment\n";
  }
  return p.string();
}

void LoadTable(benchmark::State& state) {
  CString path = toolkit::sys::FromNativePath(TablePath()).c_str();
  CMutiLanSupport* lang = CMutiLanSupport::GetInstance();
  for (auto _ : state) {
    lang->ClearAll();
    benchmark::DoNotOptimize(lang->LoadStringTable(path));
  }
  state.SetItemsProcessed(state.iterations() * kEntries);
}

void LookUpEveryId(benchmark::State& state) {
  CMutiLanSupport* lang = CMutiLanSupport::GetInstance();
  lang->ClearAll();
  lang->LoadStringTable(toolkit::sys::FromNativePath(TablePath()).c_str());
  std::vector<CString> ids;
  for (int i = 0; i < kEntries; ++i) {
    CString id;
    id.Format(L"STRID_BENCH_%d", i);
    ids.push_back(id);
  }
  size_t found = 0;
  for (auto _ : state) {
    for (const CString& id : ids) found += !lang->GetStringViaID(id).IsEmpty();
  }
  if (found != static_cast<size_t>(state.iterations()) * kEntries) state.SkipWithError("an id was missing");
  state.SetItemsProcessed(state.iterations() * kEntries);
}

}  // namespace

BENCHMARK(LoadTable)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(LookUpEveryId)->Unit(benchmark::kMillisecond)->UseRealTime();

BENCHMARK_MAIN();
