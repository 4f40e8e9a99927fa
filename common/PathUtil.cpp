#include "common/PathUtil.h"

namespace mivo::common {

CString ReparsePath(const CString& path) {
  CString s(path);
  s.Replace(L'/', L'\\');
  s.Replace(L"\\\\", L"\\");
  if (s.GetLength() >= 1 && s[0] == L'\\' && (s.GetLength() < 2 || s[1] != L'\\')) s.Insert(0, L'\\');
  return s;
}

CString GetFileDirFromPath(const CString& path) {
  int slash = path.ReverseFind(L'\\');
  return slash >= 0 ? path.Left(slash + 1) : CString();
}

CString GetFileNameFromPath(const CString& path) {
  int slash = path.ReverseFind(L'\\');
  return slash >= 0 ? path.Mid(slash + 1) : path;
}

CString GetFileExtFromPath(const CString& path) { return GetFileExtFromString(GetFileNameFromPath(path), false); }

CString GetFileNameFromString(const CString& name, bool withDot) {
  int dot = name.ReverseFind(L'.');
  if (dot < 0) return name;
  return name.Left(withDot ? dot + 1 : dot);
}

CString GetFileExtFromString(const CString& name, bool withDot) {
  int dot = name.ReverseFind(L'.');
  if (dot < 0) return CString();
  return name.Mid(withDot ? dot : dot + 1);
}

int ParseFileName(wchar_t* buffer, unsigned int length, CArray<CString, CString&>& names) {
  names.RemoveAll();
  if (!buffer || length == 0) return 0;
  CArray<CString, CString&> parts;
  unsigned int i = 0;
  while (i < length && buffer[i]) {
    unsigned int start = i;
    while (i < length && buffer[i]) ++i;
    CString part(buffer + start, static_cast<int>(i - start));
    parts.Add(part);
    ++i;  // past the NUL
  }
  if (parts.GetSize() == 1) {
    names.Add(parts[0]);
  } else {
    CString folder = parts[0];
    if (!folder.IsEmpty() && folder[folder.GetLength() - 1] == L'\\') folder = folder.Left(folder.GetLength() - 1);
    for (INT_PTR n = 1; n < parts.GetSize(); ++n) {
      CString full;
      full.Format(L"%s\\%s", folder.GetString(), parts[n].GetString());
      names.Add(full);
    }
  }
  return static_cast<int>(names.GetSize());
}

}  // namespace mivo::common
