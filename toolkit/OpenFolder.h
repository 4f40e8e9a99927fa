#pragma once
// A folder held open for a walk that removes what it holds. Its entries come with the
// attributes the listing itself gives (readdir's type / FindFirstFileW's attributes), with
// no look-up per entry, and they are removed and opened by name inside the open folder.
// On POSIX the folder is an open descriptor and every call is relative to it (unlinkat,
// openat with O_NOFOLLOW), so a sub-folder swapped for a link meanwhile is never followed.
#include <cstddef>
#include <string>
#include <vector>

#include "toolkit/platform.h"

namespace toolkit {

class OpenFolder {
 public:
  // Opens and lists a folder ("." and ".." left out); a link to a folder is followed here,
  // as a listing of "path\*.*" does.
  explicit OpenFolder(const wchar_t* path);
  // Opens and lists the sub-folder `entry` of `parent`, never through a link.
  OpenFolder(const OpenFolder& parent, size_t entry);
  ~OpenFolder();
  OpenFolder(const OpenFolder&) = delete;
  OpenFolder& operator=(const OpenFolder&) = delete;

  bool IsOpen() const { return m_open; }
  size_t Count() const { return m_entries.size(); }
  // FILE_ATTRIBUTE_DIRECTORY, FILE_ATTRIBUTE_REPARSE_POINT (with DIRECTORY for a link to a
  // folder), FILE_ATTRIBUTE_READONLY where the listing tells it (Windows: elsewhere a file's
  // own mode does not stop its removal), otherwise FILE_ATTRIBUTE_ARCHIVE.
  DWORD Attributes(size_t entry) const { return m_entries[entry].attributes; }

  // A file, or a link as the link itself (DeleteFileW).
  bool DeleteEntry(size_t entry);
  // An empty sub-folder, or a link to a folder as the link itself (RemoveDirectoryW).
  bool RemoveFolderEntry(size_t entry);
  // Clears the read-only attribute (SetFileAttributesW with FILE_ATTRIBUTE_NORMAL).
  bool ClearReadOnly(size_t entry);

 private:
#if defined(_WIN32)
  using Name = std::wstring;
#else
  using Name = std::string;  // the system's own bytes, never converted
#endif
  struct Entry {
    Name name;
    DWORD attributes;
  };
  void List();

  bool m_open = false;
  std::vector<Entry> m_entries;
#if defined(_WIN32)
  const wchar_t* EntryPath(size_t entry);  // "folder\name", in m_scratch
  std::wstring m_path;                     // no trailing backslash
  std::wstring m_scratch;
#else
  int m_fd = -1;             // the open folder
  void* m_dir = nullptr;     // its DIR stream, which owns m_fd
#endif
};

}  // namespace toolkit
