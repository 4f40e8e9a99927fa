// The system's open/save and folder dialogs behind the library's dialog functions.
#include <windows.h>
// after windows.h, which they need
#include <commdlg.h>
#include <shlobj.h>

#include <vector>

#include "common/Dialogs.h"
#include "common/MutiLanSupport.h"

namespace mivo::common {
namespace {

int CALLBACK SelectStart(HWND window, UINT message, LPARAM, LPARAM data) {
  if (message == BFFM_INITIALIZED && data) SendMessageW(window, BFFM_SETSELECTIONW, TRUE, data);
  return 0;
}

}  // namespace

CString OpenFileDialog(int open, const wchar_t* defExt, const wchar_t* fileName, const wchar_t* filter,
                       const wchar_t* title, unsigned long flags, CWnd* parent) {
  // The filter uses "|" between its parts, as the framework's dialogs do.
  std::vector<wchar_t> filterBuf;
  for (const wchar_t* p = filter; p && *p; ++p) filterBuf.push_back(*p == L'|' ? L'\0' : *p);
  filterBuf.push_back(L'\0');
  filterBuf.push_back(L'\0');
  std::vector<wchar_t> file(32768, L'\0');
  if (fileName) lstrcpynW(file.data(), fileName, static_cast<int>(file.size()));
  OPENFILENAMEW ofn = {};
  ofn.lStructSize = sizeof(ofn);
  ofn.hwndOwner = parent ? parent->GetSafeHwnd() : GetActiveWindow();
  ofn.lpstrFilter = filter ? filterBuf.data() : nullptr;
  ofn.lpstrFile = file.data();
  ofn.nMaxFile = static_cast<DWORD>(file.size());
  ofn.lpstrTitle = title;
  ofn.lpstrDefExt = defExt;
  ofn.Flags = flags | OFN_EXPLORER;
  BOOL ok = open ? GetOpenFileNameW(&ofn) : GetSaveFileNameW(&ofn);
  return ok ? CString(file.data()) : CString();
}

CString BrowseFolder(HWND owner, const CString& start) {
  CString title = CMutiLanSupport::GetInstance()->GetStringViaID(L"STRID_SESSION_FOLDER_TITLE");
  BROWSEINFOW info = {};
  info.hwndOwner = owner;
  info.lpszTitle = title;
  info.ulFlags = BIF_RETURNONLYFSDIRS | BIF_NEWDIALOGSTYLE;
  info.lpfn = SelectStart;
  info.lParam = reinterpret_cast<LPARAM>(start.GetString());
  LPITEMIDLIST items = SHBrowseForFolderW(&info);
  if (!items) return CString();
  wchar_t path[MAX_PATH] = {};
  BOOL ok = SHGetPathFromIDListW(items, path);
  CoTaskMemFree(items);
  if (!ok || !path[0]) return CString();
  CString folder(path);
  if (folder[folder.GetLength() - 1] != L'\\') folder += L'\\';
  return folder;
}

}  // namespace mivo::common
