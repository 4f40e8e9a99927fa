// The exported conversion wrappers under Wine against the raw system calls that do the same
// work: one MultiByteToWideChar / WideCharToMultiByte into a string sized for the longest
// result, then cut to length; the same output, checked before timing. 48 bytes of mixed
// ASCII and Chinese. Median of 15 short runs of each, alternating.
#include <windows.h>

#include <string>

#include "WineBench.h"
#include "common/Conversion.h"

namespace {

constexpr int kCalls = 50000;
const std::string kUtf8 =
    "C:\\Users\\\xe5\xbc\xa0\xe4\xb8\x89\\Mivo\\\xe8\xae\xbe\xe7\xbd\xae\\\xe6\x97\xa5\xe5\xbf\x97\\trace_log.txt";

std::wstring RawToWide(const std::string& s) {
  std::wstring out(s.size(), L'\0');
  int n =
      MultiByteToWideChar(CP_UTF8, 0, s.data(), static_cast<int>(s.size()), out.data(), static_cast<int>(out.size()));
  out.resize(n > 0 ? static_cast<size_t>(n) : 0);
  return out;
}

std::string RawToUtf8(const std::wstring& w) {
  std::string out(w.size() * 3, '\0');
  int n = WideCharToMultiByte(CP_UTF8, 0, w.data(), static_cast<int>(w.size()), out.data(),
                              static_cast<int>(out.size()), nullptr, nullptr);
  out.resize(n > 0 ? static_cast<size_t>(n) : 0);
  return out;
}

template <typename F>
double NanosecondsPerCall(F&& f) {
  return winbench::Milliseconds([&] {
           for (int i = 0; i < kCalls; ++i) f();
         }) *
         1e6 / kCalls;
}

volatile size_t g_sink;

}  // namespace

int main() {
  const std::wstring wide = RawToWide(kUtf8);
  const CString text(wide.c_str());
  if (mivo::common::utf8_to_CString(kUtf8).str() != wide || mivo::common::CString_to_utf8(text) != kUtf8 ||
      RawToUtf8(wide) != kUtf8) {
    std::fprintf(stderr, "conversion_wine_bench: the wrappers and the raw calls disagree\n");
    return 1;
  }
  std::vector<double> toWide, rawToWide, toUtf8, rawToUtf8;
  for (int run = 0; run < 15; ++run) {
    // short runs, in turn and in both orders, so that the machine's ups and downs fall on both
    auto ours = [&] {
      toWide.push_back(NanosecondsPerCall([&] { g_sink = mivo::common::utf8_to_CString(kUtf8).GetLength(); }));
      toUtf8.push_back(NanosecondsPerCall([&] { g_sink = mivo::common::CString_to_utf8(text).size(); }));
    };
    auto raw = [&] {
      rawToWide.push_back(NanosecondsPerCall([&] { g_sink = RawToWide(kUtf8).size(); }));
      rawToUtf8.push_back(NanosecondsPerCall([&] { g_sink = RawToUtf8(wide).size(); }));
    };
    if (run % 2) {
      ours();
      raw();
    } else {
      raw();
      ours();
    }
  }
  double a = winbench::Median(toWide), b = winbench::Median(rawToWide);
  winbench::Row("utf8_to_CString, 48 bytes (Wine)", winbench::Text("%.0f ns", a),
                winbench::Text("MultiByteToWideChar into a std::wstring: %.0f ns", b), a / b, 1.1);
  double c = winbench::Median(toUtf8), d = winbench::Median(rawToUtf8);
  winbench::Row("CString_to_utf8, 36 characters (Wine)", winbench::Text("%.0f ns", c),
                winbench::Text("WideCharToMultiByte into a std::string: %.0f ns", d), c / d, 1.1);
  return 0;
}
