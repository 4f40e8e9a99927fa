#include "Execute/PathTool.h"

#include <chrono>
#include <thread>

#include "common/AppPath.h"
#include "common/FileUtil.h"
#include "common/Trace.h"
#include "toolkit/FileFind.h"
#include "toolkit/FileSystem.h"

CString CPathTool::UpdateSourceFolder;

namespace {
bool g_queryOnly = false;
}  // namespace

void CPathTool::SetQueryOnly(bool queryOnly) { g_queryOnly = queryOnly; }

namespace {

CPathTool::CommandStarter& Starter() {
  static CPathTool::CommandStarter starter = launcher_platform::StartHidden;
  return starter;
}

void RealSleep(int ms) { std::this_thread::sleep_for(std::chrono::milliseconds(ms)); }

CPathTool::Sleeper& SleeperFn() {
  static CPathTool::Sleeper sleeper = RealSleep;
  return sleeper;
}

bool IsDirectory(const CString& path) { return mivo::common::IsFolderExist(path); }

void Debug(const CString& text) { toolkit::OutputDebugText(text); }

// A deletion can settle late (a file another process holds open goes when its last handle closes):
// waits until the folder is gone, looking every few milliseconds, for at most 200 ms.
void WaitUntilGone(const CString& folder) {
  constexpr int kStep = 4, kBound = 200;
  for (int waited = 0; waited < kBound && IsDirectory(folder); waited += kStep) SleeperFn()(kStep);
}

}  // namespace

void CPathTool::SetCommandStarter(CommandStarter starter) {
  Starter() = starter ? std::move(starter) : CommandStarter(launcher_platform::StartHidden);
}

void CPathTool::SetSleeper(Sleeper sleeper) { SleeperFn() = sleeper ? std::move(sleeper) : Sleeper(RealSleep); }

CString CPathTool::GetLauncherFolder() { return mivo::common::GetAppPath(); }

CString CPathTool::GetSharedDataFolder() {
  return g_queryOnly ? mivo::common::detail::CommonAppDataPath(false) : mivo::common::GetCommonAppDataPath();
}

CString CPathTool::GetVirtualStoreFolder() {
  if (!mivo::common::detail::IsVistaOrLater()) return CString();
  CString local;
  if (mivo::common::detail::GetShellFolder(0x1C, local) <= 0 || local.IsEmpty()) return CString();
  CString shared = GetSharedDataFolder();
  // the shared folder without its drive letter and colon
  CString rest = (shared.GetLength() >= 2 && shared[1] == L':') ? shared.Mid(2) : shared;
  CString result;
  result.Format(L"%s\\VirtualStore%s", local.GetString(), rest.GetString());
  return result;
}

CString CPathTool::GetUpdateFolder(bool create) { return GetUpdateFolderFor(GetLauncherFolder(), create); }

CString CPathTool::GetUpdateFolderFor(const CString& launcher, bool create) {
  if (!UpdateSourceFolder.IsEmpty()) return UpdateSourceFolder;
  CString shared = GetSharedDataFolder();
  if (shared.CompareNoCase(launcher) == 0) return shared;
  CString folder;
  folder.Format(L"%sUpdate\\%s\\", shared.GetString(), mivo::common::InstallFolderDigest(launcher).GetString());
  if (create && !g_queryOnly && !IsDirectory(folder)) {
    CString parent = shared + L"Update\\";
    if (!IsDirectory(parent)) toolkit::CreateFolder(parent);
    toolkit::CreateFolder(folder);
  }
  return folder;
}

void CPathTool::EmptyFolderTree(const CString& path) { mivo::common::EmptyFolder(path, 1, 1); }

void CPathTool::CleanSharedFolders() {
  Debug(L"CStartApp::InitInstance(): Win7 Processing...\n");
  CString store = GetVirtualStoreFolder();
  if (!store.IsEmpty() && IsDirectory(store)) {
    Debug(L"CStartApp::InitInstance(): Empty Common AppData VirtualStore Folder: " + store + L"\n");
    EmptyFolderTree(store);
  }
  CString shared = GetSharedDataFolder();
  if (shared.IsEmpty() || !IsDirectory(shared)) return;
  Debug(L"CStartApp::InitInstance(): Empty Common AppData Folder: " + shared + L"\n");
  EmptyFolderTree(shared);
  WaitUntilGone(shared);
  if (!IsDirectory(shared)) return;
  // "rd /s" follows links (Wine's wipes what they point at): it runs only on a folder that
  // holds none, and a link that cannot be removed keeps it from running at all.
  if (int left = mivo::common::RemoveFolderLinks(shared)) {
    if (g_ITrace)
      g_ITrace->Trace(3, true, L"CPathTool::CleanSharedFolders %d link(s) left in %s, not removed as administrator",
                      left, shared.GetString());
    return;
  }
  Debug(L"CStartApp::InitInstance(): Run as administrator to empty common appData folder: " + shared + L"\n");
  CString parameters;
  parameters.Format(L"/c rd \"%s\" /s /q", shared.GetString());
  Starter()(L"CMD.EXE", L"runas", parameters);
  SleeperFn()(200);
}

void CPathTool::GrantEveryoneFullControl(const CString& path, bool thisFolderOnly) {
  if (!IsDirectory(path)) return;
  CString folder = path;
  if (!folder.IsEmpty() && folder[folder.GetLength() - 1] == L'\\') folder = folder.Left(folder.GetLength() - 1);
  CString parameters;
  parameters.Format(thisFolderOnly ? L"\"%s\" /e /g everyone:F" : L"\"%s\" /e /t /g everyone:F", folder.GetString());
  Starter()(L"cacls", L"open", parameters);
}

bool CPathTool::ProbeEveryoneFullControl(const CString& path) {
  if (!IsDirectory(path)) return false;
  CString parameters;
  parameters.Format(L"/c cacls \"%s\" | findstr /i everyone:.*F > \"%sCaclsEveryOneFlag\"", path.GetString(),
                    path.GetString());
  Starter()(L"CMD.EXE", L"Open", parameters);
  SleeperFn()(300);
  std::string bytes;
  // the exact, case-sensitive bytes, though findstr matched without regard to case
  bool granted =
      mivo::common::LoadFile(path + L"CaclsEveryOneFlag", bytes) && bytes.find("Everyone:") != std::string::npos;
  CString line;
  line.Format(L"Path Cacls: EveryOne:.*F=%d, Path=%s", granted ? 1 : 0, path.GetString());
  Debug(line);
  return granted;
}

bool CPathTool::EnableFloderEveryOnePrivilegeForcely(const CString& path, bool thisFolderOnly) {
  if (!IsDirectory(path)) return false;
  bool everyone = false;
  for (int round = 0; round < 5; ++round) {
    if (ProbeEveryoneFullControl(path)) {
      everyone = true;
      break;
    }
    GrantEveryoneFullControl(path, thisFolderOnly);
    SleeperFn()(200);
  }
  CString line;
  line.Format(L"CPathTool::EnableFloderEveryOnePrivilegeForcely: bEveryOne=%d, path=%s\n", everyone ? 1 : 0,
              path.GetString());
  Debug(line);
  return everyone;
}

bool CPathTool::EnableUpdatePathEveryOnePrivilegeForWin7() {
  CString launcher = GetLauncherFolder();
  CString shared = GetSharedDataFolder();
  CString update = GetUpdateFolder(true);
  if (update.CompareNoCase(launcher) == 0) return false;
  Debug(L"CPathTool::EnableUpdatePathEveryOnePrivilegeForWin7: Win7 Processing...\n");
  CString store = GetVirtualStoreFolder();
  if (!store.IsEmpty() && IsDirectory(store)) EmptyFolderTree(store);
  bool all = true;
  for (const CString& folder : {shared, shared + L"Update\\", update, update + L"UpdateTemp\\", update + L"plugin\\"})
    all = EnableFloderEveryOnePrivilegeForcely(folder, true) && all;
  CFileFind finder;
  BOOL more = finder.FindFile(update + L"plugin\\*.*");
  while (more) {
    more = finder.FindNextFile();
    if (!finder.IsDirectory() || finder.IsDots()) continue;
    CString plugin = finder.GetFilePath() + L"\\";
    EnableFloderEveryOnePrivilegeForcely(plugin, true);
    EnableFloderEveryOnePrivilegeForcely(plugin + L"UpdateTemp\\", true);
  }
  return all;
}
