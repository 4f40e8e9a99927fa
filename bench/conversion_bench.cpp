// UTF-8 to wide for short strings: the exported utf8_to_CString against a loop over ICU's
// U8_NEXT that fills a std::wstring (the same allocation, the same output, checked before
// timing). 48 bytes of mixed ASCII and Chinese, as paths and names are. Medians of the CPU
// time of several runs (the work is all in this thread, and a shared machine's waits stay
// out), pinned to one core by the caller (taskset -c 1).
#include <unicode/utf8.h>

#include <cstdio>
#include <map>
#include <string>
#include <vector>

#include "bench/BenchRows.h"
#include "common/Conversion.h"

namespace {

// 48 bytes: 30 ASCII, 6 Chinese characters of 3 bytes each
const std::string kText =
    "C:\\Users\\\xe5\xbc\xa0\xe4\xb8\x89\\Mivo\\\xe8\xae\xbe\xe7\xbd\xae\\\xe6\x97\xa5\xe5\xbf\x97\\trace_log.txt";

std::wstring IcuToWide(const std::string& s) {
  std::wstring out(s.size(), L'\0');
  const auto* p = reinterpret_cast<const uint8_t*>(s.data());
  int32_t i = 0, n = static_cast<int32_t>(s.size());
  size_t k = 0;
  while (i < n) {
    UChar32 c;
    U8_NEXT(p, i, n, c);
    if constexpr (sizeof(wchar_t) == 2) {
      if (c > 0xFFFF) {
        out[k++] = static_cast<wchar_t>(U16_LEAD(c));
        out[k++] = static_cast<wchar_t>(U16_TRAIL(c));
        continue;
      }
    }
    out[k++] = static_cast<wchar_t>(c < 0 ? 0xFFFD : c);
  }
  out.resize(k);
  return out;
}

void Utf8ToCString(benchmark::State& state) {
  for (auto _ : state) {
    CString text = mivo::common::utf8_to_CString(kText);
    benchmark::DoNotOptimize(text);
  }
}

void IcuU8Next(benchmark::State& state) {
  for (auto _ : state) {
    std::wstring text = IcuToWide(kText);
    benchmark::DoNotOptimize(text);
  }
}

}  // namespace

BENCHMARK(Utf8ToCString)->Repetitions(31)->ReportAggregatesOnly(true)->MinTime(0.02);
BENCHMARK(IcuU8Next)->Repetitions(31)->ReportAggregatesOnly(true)->MinTime(0.02);

int main(int argc, char** argv) {
  if (kText.size() != 48 || mivo::common::utf8_to_CString(kText).str() != IcuToWide(kText)) {
    std::fprintf(stderr, "conversion_bench: the two conversions disagree\n");
    return 1;
  }
  bench_rows::MedianReporter reporter(true);
  bench_rows::RunInterleaved(argc, argv, reporter);
  double mivo = reporter.median["Utf8ToCString"], icu = reporter.median["IcuU8Next"];
  if (mivo <= 0 || icu <= 0) return 1;
  double ratio = mivo / icu;
  bench_rows::PrintRow("UTF-8 to wide, 48-byte strings (native)", bench_rows::Text("%.1f ns", mivo),
                       bench_rows::Text("ICU U8_NEXT loop: %.1f ns", icu), ratio, 1.2);
  return 0;
}
