#include "Execute/LauncherStrings.h"

#include "common/FileUtil.h"
#include "common/MutiLanSupport.h"
#include "toolkit/FileSystem.h"

bool EnsureLauncherStrings(const CString& launcherFolder) {
  static CString loadedFrom;
  if (!loadedFrom.IsEmpty() && loadedFrom.CompareNoCase(launcherFolder) == 0) return true;
  CString path = launcherFolder + L"gdstrings.ini";
  if (!mivo::common::IsFileExist(path) || !CMutiLanSupport::GetInstance()->LoadStringTable(path)) {
    toolkit::OutputDebugText(L"Load gdstrings.ini failed!!!\n");
    return false;
  }
  loadedFrom = launcherFolder;
  return true;
}
