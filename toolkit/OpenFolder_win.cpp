// Windows half of OpenFolder: FindFirstFileW/FindNextFileW, and the path-based calls on
// "folder\name".
#include <windows.h>

#include "toolkit/OpenFolder.h"

namespace toolkit {

OpenFolder::OpenFolder(const wchar_t* path) {
  if (!path || !*path) return;
  m_path = path;
  while (m_path.size() > 1 && m_path.back() == L'\\') m_path.pop_back();
  List();
}

OpenFolder::OpenFolder(const OpenFolder& parent, size_t entry) {
  if (!parent.m_open || entry >= parent.m_entries.size()) return;
  const Entry& e = parent.m_entries[entry];
  if (e.attributes & FILE_ATTRIBUTE_REPARSE_POINT) return;  // never through a link
  m_path = parent.m_path + L"\\" + e.name;
  List();
}

void OpenFolder::List() {
  WIN32_FIND_DATAW data;
  // the basic form: no short (8.3) names, which the walk never uses and which cost the most
  HANDLE h = FindFirstFileExW((m_path + L"\\*.*").c_str(), FindExInfoBasic, &data, FindExSearchNameMatch, nullptr,
                              FIND_FIRST_EX_LARGE_FETCH);
  if (h == INVALID_HANDLE_VALUE) return;
  m_open = true;
  do {
    const wchar_t* n = data.cFileName;
    if (n[0] == L'.' && (n[1] == 0 || (n[1] == L'.' && n[2] == 0))) continue;
    m_entries.push_back({n, data.dwFileAttributes});
  } while (FindNextFileW(h, &data));
  FindClose(h);
}

OpenFolder::~OpenFolder() = default;

const wchar_t* OpenFolder::EntryPath(size_t entry) {
  m_scratch.assign(m_path);
  m_scratch.push_back(L'\\');
  m_scratch.append(m_entries[entry].name);
  return m_scratch.c_str();
}

bool OpenFolder::DeleteEntry(size_t entry) { return m_open && DeleteFileW(EntryPath(entry)) != FALSE; }

bool OpenFolder::RemoveFolderEntry(size_t entry) {
  // on a junction or folder link this removes the link, not the target
  return m_open && RemoveDirectoryW(EntryPath(entry)) != FALSE;
}

bool OpenFolder::ClearReadOnly(size_t entry) {
  return m_open && SetFileAttributesW(EntryPath(entry), FILE_ATTRIBUTE_NORMAL) != FALSE;
}

}  // namespace toolkit
