#include "common/AppPath.h"

#include <mutex>

#include "common/Conversion.h"
#include "common/FileUtil.h"
#include "common/Md5.h"
#include "toolkit/FileSystem.h"

namespace mivo::common {
namespace {

CString FolderOf(const CString& path) {
  int slash = path.ReverseFind(L'\\');
  return slash >= 0 ? path.Left(slash + 1) : CString();
}

void EnsureFolder(const CString& folder) {
  if (!IsFolderExist(folder)) toolkit::CreateFolder(folder);
}

// The data folder `sub` (one or two levels) under a shell folder, or the install folder
// on systems without one.
CString DataFolder(int csidl, const CString& parentSub, const CString& sub, bool create = true) {
  if (detail::IsVistaOrLater()) {
    CString base;
    int found = detail::GetShellFolder(csidl, base);
    if (found < 0) return CString();
    if (found > 0 && !base.IsEmpty()) {
      CString result;
      result.Format(L"%s\\%s", base.GetString(), sub.GetString());
      if (create && !IsFolderExist(result)) {
        if (!parentSub.IsEmpty()) {
          CString parent;
          parent.Format(L"%s\\%s", base.GetString(), parentSub.GetString());
          EnsureFolder(parent);
        }
        toolkit::CreateFolder(result);
      }
      return result;
    }
  }
  return GetAppPath();
}

}  // namespace

CString InstallFolderDigest(const CString& folder) {
  std::string utf8 = CString_to_utf8(folder);
  return MBCS2CString(MakeMD5Value(utf8.data(), static_cast<unsigned int>(utf8.size())), 65001);
}

CString GetAppPath() {
  static CString cached;
  static std::once_flag once;
  std::call_once(once, [] { cached = FolderOf(toolkit::GetModulePath()); });
  return cached;
}

void InitCommonAppPath() { GetAppPath(); }

CString GetAppDataPath() { return DataFolder(26, L"Tarnell", L"Tarnell\\Mivo\\"); }

CString GetCommonAppDataPath() { return DataFolder(35, CString(), L"TarnellMIVO\\"); }

CString detail::CommonAppDataPath(bool create) { return DataFolder(35, CString(), L"TarnellMIVO\\", create); }

CString GetUpdatePath(bool create) {
  CString common = GetCommonAppDataPath();
  CString install = GetAppPath();
  if (common.Compare(install) == 0) return install;
  CString result;
  result.Format(L"%sUpdate\\%s\\", common.GetString(), InstallFolderDigest(install).GetString());
  if (create) {
    EnsureFolder(common + L"Update\\");
    EnsureFolder(result);
  }
  return result;
}

}  // namespace mivo::common
