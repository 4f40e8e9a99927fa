// POSIX half of CFileFind: readdir and lstat, with Windows attributes made up from the mode.
#include <dirent.h>
#include <sys/stat.h>

#include "toolkit/FileFind.h"
#include "toolkit/FileSys.h"
#include "toolkit/FileSystem.h"

namespace toolkit {
namespace {

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
    out.push_back({mask, GetAttributes(folder + mask), Length(path)});
    return true;
  }

  DIR* dir = ::opendir(nativeFolder.c_str());
  if (!dir) return false;
  while (dirent* d = ::readdir(dir)) {
    std::string nativeName = d->d_name;
    std::wstring name = sys::FromNativePath(nativeName);
    if (!WildcardMatch(mask, name.c_str())) continue;
    std::string path = nativeFolder + nativeName;
    out.push_back({CString(name.c_str()), GetAttributes(folder + name.c_str()), Length(path)});
  }
  ::closedir(dir);
  return !out.empty();
}

}  // namespace toolkit
