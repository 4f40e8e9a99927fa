#include "toolkit/FileFind.h"

#include <string_view>

#include "toolkit/CodePage.h"

namespace toolkit {

bool WildcardMatch(const wchar_t* pattern, const wchar_t* name) {
  if (std::wstring_view(pattern) == L"*.*") return true;  // the DOS spelling of "everything"
  const wchar_t* star = nullptr;
  const wchar_t* resume = nullptr;
  while (*name) {
    if (*pattern == L'*') {
      star = pattern++;
      resume = name;
    } else if (*pattern == L'?' || (*pattern && ToLowerChar(*pattern) == ToLowerChar(*name))) {
      ++pattern, ++name;
    } else if (star) {
      pattern = star + 1;
      name = ++resume;
    } else {
      return false;
    }
  }
  while (*pattern == L'*') ++pattern;
  return *pattern == 0;
}

}  // namespace toolkit

BOOL CFileFind::FindFile(const wchar_t* pattern, DWORD) {
  Close();
  CString p = (pattern && *pattern) ? CString(pattern) : CString(L"*.*");
  int slash = p.ReverseFind(L'\\');
  m_root = slash >= 0 ? p.Left(slash + 1) : CString();
  if (!toolkit::ListMatches(p, m_entries)) {
    m_entries.clear();
    return FALSE;
  }
  return m_entries.empty() ? FALSE : TRUE;
}

BOOL CFileFind::FindNextFile() {
  if (m_next >= m_entries.size()) return FALSE;
  ++m_next;
  return m_next < m_entries.size() ? TRUE : FALSE;
}

void CFileFind::Close() {
  m_entries.clear();
  m_next = 0;
  m_root.Empty();
}

const toolkit::FindEntry* CFileFind::Current() const {
  return (m_next >= 1 && m_next <= m_entries.size()) ? &m_entries[m_next - 1] : nullptr;
}

CString CFileFind::GetFileName() const {
  const auto* e = Current();
  return e ? e->name : CString();
}

CString CFileFind::GetFilePath() const {
  const auto* e = Current();
  return e ? m_root + e->name : CString();
}

CString CFileFind::GetFileTitle() const {
  CString name = GetFileName();
  int dot = name.ReverseFind(L'.');
  return dot > 0 ? name.Left(dot) : name;
}

ULONGLONG CFileFind::GetLength() const {
  const auto* e = Current();
  return e ? e->length : 0;
}

BOOL CFileFind::IsDots() const {
  CString name = GetFileName();
  return (IsDirectory() && (name == L"." || name == L"..")) ? TRUE : FALSE;
}

BOOL CFileFind::MatchesMask(DWORD mask) const {
  const auto* e = Current();
  return (e && (e->attributes & mask)) ? TRUE : FALSE;
}
