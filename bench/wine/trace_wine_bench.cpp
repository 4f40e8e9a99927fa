// The trace log under Wine against a bare loop that formats the same line (time stamp,
// message, "\r\n") and writes it with one WriteFile, on a handle opened for appending as
// the log is (each line lands at the end of the file, whoever else writes there). The same
// bytes, time stamps aside, are checked before timing. Median of 5 runs of each,
// alternating, each into a fresh file. A second line shows the bare loop on a plain handle,
// which writes wherever its position is, for reference.
#include <windows.h>

#include <fstream>
#include <iterator>
#include <string>

#include "WineBench.h"
#include "common/Trace.h"

namespace {

constexpr int kLines = 20000;

void Ours(const std::wstring& folder, int lines) {
  ITrace_imp trace(CString((folder + L"\\").c_str()));
  for (int i = 0; i < lines; ++i)
    trace.Trace(3, false, L"CStartApp::InitInstance step %d of the launcher, path %s", i, L"C:\\Program Files\\Mivo\\");
}

void Bare(const std::wstring& path, int lines, bool append) {
  DWORD access =
      append ? (FILE_GENERIC_READ | (FILE_GENERIC_WRITE & ~FILE_WRITE_DATA)) : (GENERIC_READ | GENERIC_WRITE);
  HANDLE h = CreateFileW(path.c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_ALWAYS,
                         FILE_ATTRIBUTE_NORMAL, nullptr);
  char line[1200];
  for (int i = 0; i < lines; ++i) {
    SYSTEMTIME t;
    GetLocalTime(&t);
    int n = std::snprintf(line, sizeof line,
                          "[%04d/%02d/%02d %02d:%02d:%02d]CStartApp::InitInstance step %d of the launcher, path %s\r\n",
                          t.wYear, t.wMonth, t.wDay, t.wHour, t.wMinute, t.wSecond, i, "C:\\Program Files\\Mivo\\");
    DWORD written;
    WriteFile(h, line, static_cast<DWORD>(n), &written, nullptr);
  }
  CloseHandle(h);
}

std::wstring OnlyFile(const std::wstring& folder) {
  WIN32_FIND_DATAW data;
  HANDLE h = FindFirstFileW((folder + L"\\*.txt").c_str(), &data);
  if (h == INVALID_HANDLE_VALUE) return L"";
  FindClose(h);
  return folder + L"\\" + data.cFileName;
}

std::string Read(const std::wstring& path) {
  std::ifstream in(path.c_str(), std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), {});
}

// The same bytes, digits of the time stamps aside.
bool SameLines(const std::string& x, const std::string& y) {
  if (x.size() != y.size() || x.empty()) return false;
  size_t lineStart = 0;
  for (size_t i = 0; i < x.size(); ++i) {
    bool stamp = i < lineStart + 21 && x[i] >= '0' && x[i] <= '9';
    if (stamp ? !(y[i] >= '0' && y[i] <= '9') : x[i] != y[i]) return false;
    if (x[i] == '\n') lineStart = i + 1;
  }
  return true;
}

}  // namespace

int main() {
  std::wstring scratch = winbench::ScratchFolder(L"mivo_trace_wine_bench");
  std::wstring mine = scratch + L"\\mivo", bare = scratch + L"\\bare";
  CreateDirectoryW(mine.c_str(), nullptr);
  CreateDirectoryW(bare.c_str(), nullptr);
  std::wstring barePath = bare + L"\\trace.txt";

  Ours(mine, 500);
  Bare(barePath, 500, true);
  std::wstring minePath = OnlyFile(mine);
  bool same = SameLines(Read(minePath), Read(barePath));
  DeleteFileW(minePath.c_str());
  DeleteFileW(barePath.c_str());
  if (!same)
    return std::fprintf(stderr, "trace_wine_bench: the trace log and the bare loop write different lines\n"), 1;

  std::vector<double> ours, appending, plain;
  for (int run = 0; run < 5; ++run) {
    ours.push_back(winbench::Milliseconds([&] { Ours(mine, kLines); }));
    DeleteFileW(OnlyFile(mine).c_str());
    appending.push_back(winbench::Milliseconds([&] { Bare(barePath, kLines, true); }));
    DeleteFileW(barePath.c_str());
    plain.push_back(winbench::Milliseconds([&] { Bare(barePath, kLines, false); }));
    DeleteFileW(barePath.c_str());
  }
  RemoveDirectoryW(mine.c_str());
  RemoveDirectoryW(bare.c_str());
  RemoveDirectoryW(scratch.c_str());
  double o = winbench::Median(ours) * 1000 / kLines, a = winbench::Median(appending) * 1000 / kLines,
         p = winbench::Median(plain) * 1000 / kLines;
  std::printf("reference: the bare loop on a plain handle (no end-of-file guarantee): %.2f us/line\n", p);
  winbench::Row("trace log, one line per call (Wine)", winbench::Text("%.2f us/line", o),
                winbench::Text("format + WriteFile per line, append handle: %.2f us/line", a), o / a, 1.2);
  return 0;
}
