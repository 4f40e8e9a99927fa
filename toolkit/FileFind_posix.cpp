// POSIX half of CFileFind: readdir and lstat, with Windows attributes made up from the mode.
#include <dirent.h>
#include <sys/stat.h>

#include "toolkit/FileFind.h"
#include "toolkit/FileSys.h"

namespace toolkit {
namespace {

DWORD Attributes(const std::string& path, const std::wstring& name) {
  struct stat st;
  if (::lstat(path.c_str(), &st) != 0) return 0;
  DWORD a = 0;
  if (S_ISLNK(st.st_mode)) {
    a |= FILE_ATTRIBUTE_REPARSE_POINT;
    struct stat target;
    if (::stat(path.c_str(), &target) == 0 && S_ISDIR(target.st_mode)) a |= FILE_ATTRIBUTE_DIRECTORY;
  } else if (S_ISDIR(st.st_mode)) {
    a |= FILE_ATTRIBUTE_DIRECTORY;
  } else {
    a |= FILE_ATTRIBUTE_ARCHIVE;
  }
  if (!(st.st_mode & S_IWUSR)) a |= FILE_ATTRIBUTE_READONLY;
  if (!name.empty() && name[0] == L'.' && name != L"." && name != L"..") a |= FILE_ATTRIBUTE_HIDDEN;
  return a;
}

ULONGLONG Length(const std::string& path) {
  struct stat st;
  return (::lstat(path.c_str(), &st) == 0 && S_ISREG(st.st_mode)) ? static_cast<ULONGLONG>(st.st_size) : 0;
}

}  // namespace

bool ListMatches(const CString& pattern, std::vector<FindEntry>& out) {
  out.clear();
  int slash = pattern.ReverseFind(L'\\');
  CString folder = slash >= 0 ? pattern.Left(slash + 1) : CString();
  CString mask = slash >= 0 ? pattern.Mid(slash + 1) : pattern;
  std::string nativeFolder = folder.IsEmpty() ? std::string("./") : sys::ToNativePath(folder);

  if (mask.FindOneOf(L"*?") < 0) {  // a plain name finds that one entry
    std::string path = nativeFolder + sys::ToNativePath(mask);
    struct stat st;
    if (mask.IsEmpty() || ::lstat(path.c_str(), &st) != 0) return false;
    out.push_back({mask, Attributes(path, mask.str()), Length(path)});
    return true;
  }

  DIR* dir = ::opendir(nativeFolder.c_str());
  if (!dir) return false;
  while (dirent* d = ::readdir(dir)) {
    std::string nativeName = d->d_name;
    std::wstring name = sys::FromNativePath(nativeName);
    if (!WildcardMatch(mask, name.c_str())) continue;
    std::string path = nativeFolder + nativeName;
    out.push_back({CString(name.c_str()), Attributes(path, name), Length(path)});
  }
  ::closedir(dir);
  return !out.empty();
}

}  // namespace toolkit
