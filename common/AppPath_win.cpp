// The shell's special folders, through its item-id functions.
#include <windows.h>
// the shell headers need the base Windows types first
#include <shlobj.h>

#include <map>
#include <mutex>

#include "common/AppPath.h"

namespace mivo::common::detail {
namespace {

int AskTheShell(int csidl, CString& folder) {
  IMalloc* allocator = nullptr;
  if (FAILED(SHGetMalloc(&allocator)) || !allocator) return -1;
  LPITEMIDLIST items = nullptr;
  int found = 0;
  if (SUCCEEDED(SHGetSpecialFolderLocation(nullptr, csidl, &items)) && items) {
    wchar_t path[MAX_PATH] = {};
    if (SHGetPathFromIDListW(items, path) && path[0]) {
      folder = path;
      found = 1;
    }
    allocator->Free(items);
  }
  allocator->Release();
  return found;
}

}  // namespace

// A special folder's place does not move while a process runs, and asking the shell costs
// milliseconds (registry reads) at every call: each folder found is asked once per process.
int GetShellFolder(int csidl, CString& folder) {
  static std::mutex lock;
  static std::map<int, CString> found;
  {
    std::lock_guard<std::mutex> hold(lock);
    auto it = found.find(csidl);
    if (it != found.end()) {
      folder = it->second;
      return 1;
    }
  }
  int result = AskTheShell(csidl, folder);
  if (result > 0) {
    std::lock_guard<std::mutex> hold(lock);
    found.emplace(csidl, folder);
  }
  return result;
}

bool IsVistaOrLater() {
  OSVERSIONINFOW info = {sizeof(info)};
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
  if (!GetVersionExW(&info)) return false;
#pragma GCC diagnostic pop
  return info.dwPlatformId == VER_PLATFORM_WIN32_NT && info.dwMajorVersion >= 6;
}

}  // namespace mivo::common::detail
