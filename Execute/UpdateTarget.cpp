#include "Execute/UpdateTarget.h"

#include "Execute/LauncherStrings.h"
#include "Execute/PathTool.h"
#include "Execute/VersionManifest.h"
#include "common/FileUtil.h"
#include "common/MutiLanSupport.h"
#include "toolkit/FileFind.h"
#include "toolkit/FileSystem.h"

namespace {

CString LauncherFolderOr(const CString& folder) { return folder.IsEmpty() ? CPathTool::GetLauncherFolder() : folder; }

CString LanguageOr(const CString& language) {
  if (!language.IsEmpty()) return language;
  CString inUse = CMutiLanSupport::GetInstance()->GetLangSetting().strLangInUse;
  return inUse.IsEmpty() ? CString(g_szDefaultLang) : inUse;
}

}  // namespace

void AddMainTarget(UpdateTargetList& list, const CString& launcherFolder) {
  if (!EnsureLauncherStrings(LauncherFolderOr(launcherFolder))) return;
  CMutiLanSupport* strings = CMutiLanSupport::GetInstance();
  UpdateTarget target;
  target.name = strings->GetStringViaID(L"STRID_EIM_NAME");
  target.main = strings->GetStringViaID(L"STRID_EIM_MAIN");
  target.isMain = 1;
  target.firstFlag = 1;
  target.secondFlag = 0;
  list.push_back(target);
}

void ScanPluginConfigs(UpdateTargetList& list, const CString& launcherFolder, const CString& language) {
  CString plugins = LauncherFolderOr(launcherFolder) + L"plugin\\";
  CString code = LanguageOr(language);
  CFileFind finder;
  BOOL more = finder.FindFile(plugins + L"*.*");
  while (more) {
    more = finder.FindNextFile();
    if (finder.IsDots() || !finder.IsDirectory()) continue;
    PluginConfigFile config(finder.GetFilePath() + L"\\lang\\" + code + L"\\PluginConfig.xml");
    if (!config.Read() || config.GetName().IsEmpty()) continue;
    UpdateTarget target;
    target.name = config.GetName();
    target.main = config.GetDetail();
    target.isMain = 0;
    target.folder = finder.GetFileName();
    list.push_back(target);
  }
}

void AddPluginTargets(UpdateTargetList& list, const CString& launcherFolder, const CString& language) {
  UpdateTargetList found;
  ScanPluginConfigs(found, launcherFolder, language);
  for (UpdateTarget target : found) {
    target.firstFlag = 1;
    target.secondFlag = 0;
    list.push_back(target);
  }
}
