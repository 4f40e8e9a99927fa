#pragma once
// Helpers of the benchmarks that run under Wine, where Google Benchmark is not built: a
// timer, medians, a scratch folder on tmpfs (Z:\dev\shm) when there is one, and the ROW line.
#include <windows.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <string>
#include <vector>

namespace winbench {

template <typename F>
double Milliseconds(F&& f) {
  auto start = std::chrono::steady_clock::now();
  f();
  return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

inline double Median(std::vector<double> v) {
  std::sort(v.begin(), v.end());
  size_t n = v.size();
  return n == 0 ? 0 : n % 2 ? v[n / 2] : (v[n / 2 - 1] + v[n / 2]) / 2;
}

// A fresh, empty folder for this benchmark, without a trailing backslash.
inline std::wstring ScratchFolder(const wchar_t* name) {
  std::wstring root = L"Z:\\dev\\shm";
  DWORD a = GetFileAttributesW(root.c_str());
  if (a == INVALID_FILE_ATTRIBUTES || !(a & FILE_ATTRIBUTE_DIRECTORY)) {
    wchar_t temp[MAX_PATH];
    DWORD n = GetTempPathW(MAX_PATH, temp);
    root.assign(temp, n);
    while (!root.empty() && root.back() == L'\\') root.pop_back();
  }
  std::wstring folder = root + L"\\" + name;
  CreateDirectoryW(folder.c_str(), nullptr);
  return folder;
}

// ratio = ours / peer as time cost
inline void Row(const char* metric, const std::string& ours, const std::string& peer, double ratio, double goal) {
  std::printf("ROW|%s|%s|%s|%.2fx|<= %gx|%s\n", metric, ours.c_str(), peer.c_str(), ratio, goal,
              ratio <= goal ? "yes" : "no");
  std::fflush(stdout);
}

inline std::string Text(const char* format, double value) {
  char buf[128];
  std::snprintf(buf, sizeof buf, format, value);
  return buf;
}

}  // namespace winbench
