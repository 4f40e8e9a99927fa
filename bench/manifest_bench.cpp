// An update list of 10,000 components written and read back, as the launcher's update check
// does with "UpdateTemp\StaticUpdateVersion.xml". Run from the native-release build.
#include <benchmark/benchmark.h>

#include <filesystem>
#include <string>

#include "Execute/VersionManifest.h"
#include "bench/BenchTemp.h"
#include "toolkit/FileSys.h"

namespace fs = std::filesystem;

namespace {

constexpr int kComponents = 10000;

struct Fixture {
  Fixture() : dir(bench::Scratch("manifest") / "list") {
    fs::remove_all(dir);
    fs::create_directories(dir);
    path = CString(toolkit::sys::FromNativePath((dir / "StaticUpdateVersion.xml").string()).c_str());
    UpdateVersionManifest list(path);
    CString name;
    for (int i = 0; i < kComponents; ++i) {
      name.Format(L"component%05d", i);
      ModuleVersionRecord& r = list.GetModules()[name];
      r.name = name;
      r.version = L"6.2.0.1180";
      r.group = i % 10 ? L"common" : L"core";
      r.type = L"dll";
      r.dest_dir = L"bin\\";
      r.detail = L"component of the client";
      r.url = L"http://update.example.com/6.2.0.1180/" + name + L".cab";
      r.md5 = L"0123456789abcdef0123456789abcdef";
      r.size = L"1048576";
      r.oldversion = L"6.1.9.1102";
      r.currentversion = L"6.1.9.1102";
      r.local = L"bin\\" + name + L".dll";
      r.package = name + L".cab";
      r.backup = r.local + L".bak";
    }
    list.SetDetail(L"release notes");
    list.SetMainVersion(L"6.2.0.1180");
    modules = list.GetModules();
  }
  ~Fixture() { fs::remove_all(dir); }

  fs::path dir;
  CString path;
  ModuleVersionMap modules;
};

void WriteThenRead(benchmark::State& state) {
  Fixture f;
  UpdateVersionManifest out(f.path);
  out.GetModules() = f.modules;
  for (auto _ : state) {
    if (!out.Write()) state.SkipWithError("write failed");
    UpdateVersionManifest in(f.path);
    if (!in.Read() || in.GetModules().size() != kComponents) state.SkipWithError("read failed");
    benchmark::DoNotOptimize(in.GetModules());
  }
  state.SetItemsProcessed(state.iterations() * kComponents);
}

void WriteOnly(benchmark::State& state) {
  Fixture f;
  UpdateVersionManifest out(f.path);
  out.GetModules() = f.modules;
  for (auto _ : state)
    if (!out.Write()) state.SkipWithError("write failed");
  state.SetItemsProcessed(state.iterations() * kComponents);
}

void ReadOnly(benchmark::State& state) {
  Fixture f;
  UpdateVersionManifest out(f.path);
  out.GetModules() = f.modules;
  if (!out.Write()) state.SkipWithError("write failed");
  for (auto _ : state) {
    UpdateVersionManifest in(f.path);
    if (!in.Read() || in.GetModules().size() != kComponents) state.SkipWithError("read failed");
    benchmark::DoNotOptimize(in.GetModules());
  }
  state.SetItemsProcessed(state.iterations() * kComponents);
}

}  // namespace

BENCHMARK(WriteThenRead)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(WriteOnly)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(ReadOnly)->UseRealTime()->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
