// The launch decision's whole target scan and progress check over an installation of N
// plug-ins, each with a pending update list of 50 components (and a marker), for N = 20,
// 200 and 2,000. The time should grow linearly with N.
#include <benchmark/benchmark.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "Execute/UpdateCheck.h"
#include "Execute/VersionManifest.h"
#include "bench/BenchTemp.h"
#include "common/MutiLanSupport.h"
#include "toolkit/FileSys.h"

namespace fs = std::filesystem;

namespace {

CString Lib(const fs::path& p) { return CString(toolkit::sys::FromNativePath(p.string() + "/").c_str()); }

void Put(const fs::path& p, const std::string& text) {
  fs::create_directories(p.parent_path());
  std::ofstream(p, std::ios::binary) << text;
}

// launcher/ with gdstrings.ini and plugin/pN/lang/zh_CN/PluginConfig.xml; update/ with the
// client's and every plug-in's marker and list.
fs::path Build(int plugins) {
  fs::path root = bench::Scratch("update_scan") / std::to_string(plugins);
  if (fs::exists(root / "ready")) return root;
  fs::remove_all(root);
  Put(root / "launcher" / "gdstrings.ini", "STRID_EIM_NAME=MIVO\nSTRID_EIM_MAIN=main\n");
  for (int p = 0; p < plugins; ++p) {
    std::string name = "p" + std::to_string(p);
    Put(root / "launcher" / "plugin" / name / "lang" / "zh_CN" / "PluginConfig.xml",
        "<Plugin-Config><Update url=\"http://u\"/><Info name=\"" + name +
            "\" detail=\"d.dll\" id=\"1\"/></Plugin-Config>");
    fs::path staged = root / "update" / "plugin" / name / "UpdateTemp";
    Put(staged / "UpdateFlag", "");
    UpdateVersionManifest list(Lib(staged) + L"StaticUpdateVersion.xml");
    for (int m = 0; m < 50; ++m) {
      ModuleVersionRecord r;
      r.name.Format(L"module%02d.dll", m);
      r.group = m % 5 ? L"common" : L"core";
      r.oldversion = L"1.0.0";
      r.currentversion = L"1.0.0";
      r.version = L"1.1.0";
      list.GetModules()[r.name] = r;
    }
    list.Write();
  }
  Put(root / "ready", "");
  return root;
}

void ScanAndCheck(benchmark::State& state) {
  int plugins = static_cast<int>(state.range(0));
  fs::path root = Build(plugins);
  CString launcher = Lib(root / "launcher"), update = Lib(root / "update");
  size_t pending = 0;
  for (auto _ : state) {
    PendingUpdates found = FindPendingUpdates(launcher, update);
    pending = found.pending.size();
    benchmark::DoNotOptimize(found);
  }
  state.counters["plugins"] = plugins;
  state.counters["pending"] = static_cast<double>(pending);
  state.counters["us_per_plugin"] = benchmark::Counter(
      static_cast<double>(plugins), benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

}  // namespace

BENCHMARK(ScanAndCheck)->Arg(20)->Arg(200)->Arg(2000)->Unit(benchmark::kMillisecond)->UseRealTime();

BENCHMARK_MAIN();
