#pragma once
// The launcher's folder rules: its own folder, the folder shared by all users, the per-user
// virtual-store copy of it, the update folder of this installation, and write access for
// everyone on the update folders, granted with "cacls" and checked through a probe file.
#include <functional>

#include "toolkit/CString.h"

class CPathTool {
 public:
  static CString GetLauncherFolder();
  // The all-users data folder + "TarnellMIVO\" (created if missing), the launcher folder on
  // older systems, "" without a shell allocator.
  static CString GetSharedDataFolder();
  // "%s\VirtualStore%s": the local application-data folder and the shared folder without
  // its drive; "" when the local folder is unknown.
  static CString GetVirtualStoreFolder();
  // UpdateSourceFolder when set; else the shared folder + "Update\<md5 of the launcher
  // folder's UTF-8>\" (the shared folder itself when it is the launcher folder).
  static CString GetUpdateFolder(bool create);
  // The same for an installation in another folder.
  static CString GetUpdateFolderFor(const CString& launcherFolder, bool create);
  static void EmptyFolderTree(const CString& path);
  // Empties the virtual-store copy and the shared folder. A shared folder that survives is
  // handed to an elevated "CMD.EXE /c rd /s /q", unless a link is left in it that rd could
  // follow out of the folder; that case is traced and the folder stays.
  static void CleanSharedFolders();

  // Starts "cacls" on a folder without waiting.
  static void GrantEveryoneFullControl(const CString& path, bool thisFolderOnly);
  // Lets "CMD.EXE" write what cacls says into <path>CaclsEveryOneFlag, waits 300 ms, and
  // looks for "Everyone:" in it.
  static bool ProbeEveryoneFullControl(const CString& path);
  static bool EnableFloderEveryOnePrivilegeForcely(const CString& path, bool thisFolderOnly);
  static bool EnableUpdatePathEveryOnePrivilegeForWin7();

  // While set, the folder queries above create nothing (a missing folder is only named):
  // for a program that looks at an installation without changing it.
  static void SetQueryOnly(bool queryOnly);

  // Where the update is staged when the command line names one ("up"); empty otherwise.
  static CString UpdateSourceFolder;

  // Starts a program hidden, without waiting: ShellExecuteW on Windows, nothing elsewhere.
  // Tests put a recorder in its place.
  using CommandStarter = std::function<void(const CString& file, const CString& verb, const CString& parameters)>;
  static void SetCommandStarter(CommandStarter starter);
  // Waits between a command and its check; tests shorten it.
  using Sleeper = std::function<void(int milliseconds)>;
  static void SetSleeper(Sleeper sleeper);
};

namespace launcher_platform {
void StartHidden(const CString& file, const CString& verb, const CString& parameters);
}
