// The shell's special folders, through its item-id functions.
#include <windows.h>
#include <shlobj.h>

#include "common/AppPath.h"

namespace mivo::common::detail {

int GetShellFolder(int csidl, CString& folder) {
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

bool IsVistaOrLater() {
  OSVERSIONINFOW info = {sizeof(info)};
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
  if (!GetVersionExW(&info)) return false;
#pragma GCC diagnostic pop
  return info.dwPlatformId == VER_PLATFORM_WIN32_NT && info.dwMajorVersion >= 6;
}

}  // namespace mivo::common::detail
