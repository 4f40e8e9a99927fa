#pragma once
// CFileFind: the framework's folder search. The pattern is a backslash path whose last part
// may hold the wildcards * and ? ("C:\dir\*.*"; "*.*" and "*" match every name). Names
// match without regard to case, as on Windows; "." and ".." are reported like any entry.
// Usage as in the framework:
//   BOOL more = finder.FindFile(pattern);
//   while (more) { more = finder.FindNextFile(); ... finder.GetFilePath() ... }
#include <vector>

#include "toolkit/CString.h"
#include "toolkit/export.h"
#include "toolkit/platform.h"

namespace toolkit {
struct FindEntry {
  CString name;
  DWORD attributes = 0;
  ULONGLONG length = 0;
};
// Platform half: every entry that matches the pattern; false when the folder cannot be read
// or nothing matches.
bool ListMatches(const CString& pattern, std::vector<FindEntry>& out);
bool WildcardMatch(const wchar_t* pattern, const wchar_t* name);
}  // namespace toolkit

class MIVO_COMMON_API CFileFind {
 public:
  CFileFind() = default;
  virtual ~CFileFind() = default;

  virtual BOOL FindFile(const wchar_t* pattern = nullptr, DWORD unused = 0);
  virtual BOOL FindNextFile();  // FALSE when the entry it moved to is the last one
  void Close();

  CString GetFileName() const;
  CString GetFilePath() const;
  CString GetFileTitle() const;
  CString GetRoot() const { return m_root; }
  ULONGLONG GetLength() const;

  BOOL IsDots() const;
  BOOL IsDirectory() const { return MatchesMask(FILE_ATTRIBUTE_DIRECTORY); }
  BOOL IsReadOnly() const { return MatchesMask(FILE_ATTRIBUTE_READONLY); }
  BOOL IsHidden() const { return MatchesMask(FILE_ATTRIBUTE_HIDDEN); }
  BOOL IsSystem() const { return MatchesMask(FILE_ATTRIBUTE_SYSTEM); }
  BOOL IsArchived() const { return MatchesMask(FILE_ATTRIBUTE_ARCHIVE); }
  // A symbolic link or junction; a walk that deletes must not descend into one.
  BOOL IsReparsePoint() const { return MatchesMask(FILE_ATTRIBUTE_REPARSE_POINT); }
  BOOL MatchesMask(DWORD mask) const;

 private:
  const toolkit::FindEntry* Current() const;
  std::vector<toolkit::FindEntry> m_entries;
  size_t m_next = 0;  // the entry FindNextFile moves to
  CString m_root;     // folder of the pattern, ending in a backslash
};
