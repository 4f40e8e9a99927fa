// Emptying a folder tree under Wine: the library's EmptyFolder (what the launcher's
// EmptyFolderTree calls) against a bare FindFirstFileW/FindNextFileW walk that calls
// DeleteFileW and RemoveDirectoryW. The tree (100 small files in each of its folders) is
// built before each timed run, untimed, and checked to be gone after it. Median of 7 runs
// of each, alternating in both orders.
#include <windows.h>

#include <string>

#include "WineBench.h"
#include "common/FileUtil.h"

namespace {

constexpr int kFolders = 50, kFilesPerFolder = 100;

void BuildTree(const std::wstring& root) {
  CreateDirectoryW(root.c_str(), nullptr);
  wchar_t path[MAX_PATH];
  for (int d = 0; d < kFolders; ++d) {
    swprintf(path, MAX_PATH, L"%ls\\folder_%03d", root.c_str(), d);
    CreateDirectoryW(path, nullptr);
    for (int f = 0; f < kFilesPerFolder; ++f) {
      swprintf(path, MAX_PATH, L"%ls\\folder_%03d\\file_%03d.dat", root.c_str(), d, f);
      HANDLE h = CreateFileW(path, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
      DWORD written;
      WriteFile(h, "x", 1, &written, nullptr);
      CloseHandle(h);
    }
  }
}

// What a developer writes with nothing but the system's calls.
void BareWalk(const std::wstring& folder) {
  WIN32_FIND_DATAW data;
  HANDLE h = FindFirstFileW((folder + L"\\*.*").c_str(), &data);
  if (h != INVALID_HANDLE_VALUE) {
    do {
      const wchar_t* n = data.cFileName;
      if (n[0] == L'.' && (n[1] == 0 || (n[1] == L'.' && n[2] == 0))) continue;
      std::wstring path = folder + L"\\" + n;
      if (data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY)
        BareWalk(path);
      else
        DeleteFileW(path.c_str());
    } while (FindNextFileW(h, &data));
    FindClose(h);
  }
  RemoveDirectoryW(folder.c_str());
}

bool Gone(const std::wstring& root) { return GetFileAttributesW(root.c_str()) == INVALID_FILE_ATTRIBUTES; }

}  // namespace

int main() {
  std::wstring scratch = winbench::ScratchFolder(L"mivo_delete_wine_bench");
  std::wstring root = scratch + L"\\tree";
  std::vector<double> ours, bare;
  auto runOurs = [&] {
    BuildTree(root);
    ours.push_back(winbench::Milliseconds([&] { mivo::common::EmptyFolder(CString(root.c_str()), 1, 1); }));
    return Gone(root);
  };
  auto runBare = [&] {
    BuildTree(root);
    bare.push_back(winbench::Milliseconds([&] { BareWalk(root); }));
    return Gone(root);
  };
  for (int run = 0; run < 7; ++run) {
    // in turn and in both orders, so that the machine's ups and downs fall on both
    bool first = run % 2 ? runOurs() : runBare();
    bool second = run % 2 ? runBare() : runOurs();
    if (!first || !second) return std::fprintf(stderr, "delete_wine_bench: a walk left the tree\n"), 1;
  }
  RemoveDirectoryW(scratch.c_str());
  double o = winbench::Median(ours), b = winbench::Median(bare);
  winbench::Row("emptying a tree of 5,000 files in 50 folders (Wine, tmpfs)", winbench::Text("%.1f ms", o),
                winbench::Text("bare FindFirstFileW/DeleteFileW/RemoveDirectoryW walk: %.1f ms", b), o / b, 1.1);
  return 0;
}
