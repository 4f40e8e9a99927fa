// Windows half of CFileFind: FindFirstFileW and FindNextFileW.
#include <windows.h>

#include "toolkit/FileFind.h"

namespace toolkit {

bool ListMatches(const CString& pattern, std::vector<FindEntry>& out) {
  out.clear();
  WIN32_FIND_DATAW data;
  HANDLE h = FindFirstFileW(pattern, &data);
  if (h == INVALID_HANDLE_VALUE) return false;
  do {
    ULONGLONG length = (static_cast<ULONGLONG>(data.nFileSizeHigh) << 32) | data.nFileSizeLow;
    out.push_back({CString(data.cFileName), data.dwFileAttributes, length});
  } while (FindNextFileW(h, &data));
  FindClose(h);
  return true;
}

}  // namespace toolkit
