// Entry point of MivoExplain.exe: runs the launcher's decision code on the installation it
// sits in, looking only, and prints the plan (Windows only).
#include <windows.h>
// after windows.h
#include <shellapi.h>

#include <algorithm>
#include <cstdio>
#include <vector>

#include "Execute/ClientWindows.h"
#include "Execute/CommandLineInfoEx.h"
#include "Execute/ExplainReport.h"
#include "Execute/LaunchCommand.h"
#include "Execute/LaunchPlan.h"
#include "Execute/LauncherStrings.h"
#include "Execute/NamedEvent.h"
#include "Execute/PathTool.h"
#include "Execute/ProcessLauncher.h"
#include "Execute/StartHideWindowForm.h"
#include "Execute/UpdateCheck.h"
#include "common/AppPath.h"
#include "common/Conversion.h"
#include "common/FileUtil.h"
#include "common/MutiLanSupport.h"
#include "common/Trace.h"
#include "toolkit/FileFind.h"
#include "toolkit/FileSystem.h"

#pragma GCC diagnostic ignored "-Wdeprecated-declarations"

namespace {

std::string U(const CString& text) { return mivo::common::CString_to_utf8(text); }

std::vector<CString> Tokens(const CString& commandLine) {
  std::vector<CString> tokens;
  if (commandLine.IsEmpty()) return tokens;
  int argc = 0;
  CString full = CString(L"MivoStart.exe ") + commandLine;
  LPWSTR* argv = CommandLineToArgvW(full, &argc);
  for (int i = 1; argv && i < argc; ++i) tokens.emplace_back(argv[i]);
  if (argv) LocalFree(argv);
  return tokens;
}

// What emptying a folder would delete: counts, size and the first few paths. Links are
// counted, never followed, as the deleting walk does.
struct Walk {
  ULONGLONG files = 0, folders = 0, bytes = 0;
  Json::Value first{Json::arrayValue};
  void Into(const CString& folder, int depth) {
    if (depth > 64) return;
    CFileFind finder;
    BOOL more = finder.FindFile(folder + L"\\*.*");
    while (more) {
      more = finder.FindNextFile();
      if (finder.IsDots()) continue;
      CString path = finder.GetFilePath();
      if (first.size() < 5) first.append(U(path));
      DWORD attributes = toolkit::GetAttributes(path);
      if (finder.IsDirectory()) {
        ++folders;
        if (!(attributes & FILE_ATTRIBUTE_REPARSE_POINT)) Into(path, depth + 1);
      } else {
        ++files;
        bytes += mivo::common::GetFileSize(path);
      }
    }
  }
};

Json::Value Strings(const std::vector<CString>& list) {
  Json::Value out(Json::arrayValue);
  for (const CString& s : list) out.append(U(s));
  return out;
}

const char* StateName(int state) {
  return state == kUpdatePending ? "pending" : state == kCoreHalfDone ? "halfDone" : "nothing";
}

// Nickname replies reach this window, of the class the clients reply to.
LoginUserStore* g_store = nullptr;
LRESULT CALLBACK ReplyProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_COPYDATA && g_store) {
    const auto* copy = reinterpret_cast<const COPYDATASTRUCT*>(lParam);
    if (copy) g_store->OnNicknameReply(copy->lpData, copy->cbData);
    return TRUE;
  }
  return DefWindowProcW(window, message, wParam, lParam);
}

const char* UserTypeRule(const LoginUserStore& store, size_t clients, const CString& lastUser,
                         const std::vector<CString>& stored) {
  if (clients == 0) return "no client answered";
  if (clients == 1) return "exactly one client";
  if (store.GetChoice() != 1) return "several clients, no remembered choice";
  if (!store.RunningClients().count(lastUser)) return "several clients, the remembered user is not among them";
  for (const auto& entry : store.RunningClients())
    if (std::find(stored.begin(), stored.end(), entry.first) == stored.end())
      return "several clients, one of them new since the choice was remembered";
  return "several clients, the remembered choice covers them all";
}

}  // namespace

int wmain(int, wchar_t**) {
  // looking only: no trace log, no folder made
  mivo::common::ExitCommonLib();
  CPathTool::SetQueryOnly(true);
  int argc = 0;
  LPWSTR* argv = CommandLineToArgvW(GetCommandLineW(), &argc);
  CString argv0 = (argv && argc > 0) ? CString(argv[0]) : CString();
  if (argv) LocalFree(argv);
  // the launcher's raw command line and the arguments its children get: the same text here
  CString commandLine = ExtractLaunchArguments(argv0, GetCommandLineW());
  const bool json = TakeJsonSwitch(commandLine);
  commandLine.Trim();

  Json::Value e(Json::objectValue);
  Json::Value problems(Json::arrayValue);
  e["version"] = kExplainVersion;
  e["commandLine"] = U(commandLine);
  HANDLE running = OpenEventW(SYNCHRONIZE, FALSE, kStartRunningEvent);
  e["startEventHeld"] = running != nullptr;
  if (running) CloseHandle(running);

  CCommandLineInfoEx info;
  info.ParseCommandLine(Tokens(commandLine));
  const bool silent = IsSilentLaunch(info);
  e["silent"] = silent;

  const CString launcher = CPathTool::GetLauncherFolder();
  const CString shared = CPathTool::GetSharedDataFolder();
  const CString store = CPathTool::GetVirtualStoreFolder();
  CString up, source, rule = L"computed";
  if (info.Lookup(L"up", up) && !up.IsEmpty()) {
    CPathTool::UpdateSourceFolder = up;
    source = up;
    rule = L"/up";
  } else {
    source = CPathTool::GetUpdateFolder(false);
    if (IsEmptyMarkerFile(source + L"SilentFlag")) {
      CPathTool::UpdateSourceFolder = source;
      rule = L"SilentFlag";
    }
  }
  const CString update = CPathTool::GetUpdateFolder(false);
  Json::Value& folders = e["folders"];
  folders["launcher"] = U(launcher);
  folders["sharedData"] = U(shared);
  folders["virtualStore"] = U(store);
  folders["update"] = U(update);
  folders["updateSource"] = U(source);
  folders["updateSourceRule"] = U(rule);

  Json::Value& cleanUp = e["cleanUp"];
  const bool cleans = launcher.CompareNoCase(source) != 0;
  cleanUp["skipped"] = !cleans;
  cleanUp["folders"] = Json::Value(Json::arrayValue);
  bool updateEmptied = false;
  if (!cleans) {
    cleanUp["reason"] = "/up names the launcher's own folder";
  } else {
    for (const CString& folder : {store, shared}) {
      if (folder.IsEmpty() || !mivo::common::IsFolderExist(folder)) continue;
      Walk walk;
      walk.Into(folder.Right(1) == L"\\" ? folder.Left(folder.GetLength() - 1) : folder, 0);
      Json::Value entry;
      entry["path"] = U(folder);
      entry["files"] = Json::UInt64(walk.files);
      entry["folders"] = Json::UInt64(walk.folders);
      entry["bytes"] = Json::UInt64(walk.bytes);
      entry["first"] = walk.first;
      cleanUp["folders"].append(entry);
      if (update.Left(folder.GetLength()).CompareNoCase(folder) == 0) updateEmptied = true;
    }
    if (cleanUp["folders"].empty()) cleanUp["reason"] = "nothing to delete";
  }

  // strings and language as the launcher loads them, without writing a missing lang.xml
  CMutiLanSupport* strings = CMutiLanSupport::GetInstance();
  if (mivo::common::IsFileExist(launcher + L"lang.xml")) {
    strings->LoadLangSetting();
  } else {
    LANG_SETTING setting = strings->GetLangSetting();
    setting.strLangInUse = g_szDefaultLang;
    strings->SetLangSetting(setting);
  }
  e["language"] = U(strings->GetLangSetting().strLangInUse);
  if (!EnsureLauncherStrings(launcher)) problems.append(U(L"gdstrings.ini missing or unreadable in " + launcher));

  std::vector<JudgedTarget> judged;
  PendingUpdates found = FindPendingUpdates(launcher, update, &judged);
  Json::Value& targets = e["updateTargets"] = Json::Value(Json::arrayValue);
  for (const JudgedTarget& j : judged) {
    Json::Value t;
    t["name"] = U(j.target.name);
    t["plugin"] = U(j.target.folder);
    t["state"] = StateName(j.target.state);
    t["marker"] = U(TargetUpdateFolder(j.target, update) + L"UpdateTemp\\UpdateFlag");
    t["markerPresent"] = j.evidence.markerPresent;
    t["pending"] = Strings(j.evidence.pending);
    t["coreDone"] = Strings(j.evidence.coreDone);
    t["finishedCommon"] = Strings(j.evidence.finishedCommon);
    static const char* const kListNames[] = {"read", "missing", "damaged", "empty"};
    t["list"] = kListNames[static_cast<int>(j.evidence.list)];
    if (j.evidence.markerPresent && j.evidence.list != ProgressEvidence::List::kRead) {
      const wchar_t* what = j.evidence.list == ProgressEvidence::List::kMissing   ? L"update list missing: "
                            : j.evidence.list == ProgressEvidence::List::kDamaged ? L"update list damaged: "
                                                                                  : L"update list empty: ";
      problems.append(U(what + TargetUpdateFolder(j.target, update) + L"UpdateTemp\\StaticUpdateVersion.xml"));
    }
    targets.append(t);
  }
  if (updateEmptied && (!found.pending.empty() || !found.halfDone.empty())) {
    // the clean-up runs first and takes the staged update with it
    problems.append(U(L"the shared-folder clean-up empties the update folder before it is read: " + update));
    found = PendingUpdates();
  }

  Json::Value& action = e["action"];
  bool launch = true;
  if (e["startEventHeld"].asBool()) {
    action["kind"] = U(PlanActionName(PlanAction::kExitSilently));
    launch = false;
  } else if (!commandLine.IsEmpty()) {
    WNDCLASSW windowClass = {};
    windowClass.lpfnWndProc = ReplyProc;
    windowClass.hInstance = GetModuleHandleW(nullptr);
    windowClass.lpszClassName = CStartHideWindowForm::kClassName;
    RegisterClassW(&windowClass);
    HWND window = CreateWindowExW(0, CStartHideWindowForm::kClassName, L"", WS_POPUP, 0, 0, 0, 0, nullptr, nullptr,
                                  windowClass.hInstance, nullptr);
    IClientWindows& windows = CSystemClientWindows::Get();
    LoginUserStore users(launcher, &windows);
    g_store = &users;
    // the accounts of every client window, the rule's verdict on each
    Json::Value& clients = e["clients"] = Json::Value(Json::arrayValue);
    std::vector<CString> admitted;
    HWND main = nullptr;
    for (int n = 0; n < 4096 && (main = windows.NextMainWindow(main)) != nullptr; ++n) {
      HWND tray = windows.FindTrayWindow(main);
      if (!tray || !windows.IsLiveWindow(tray)) continue;
      CString account = windows.GetText(tray);
      Json::Value client;
      client["account"] = U(account);
      client["admitted"] = LoginUserStore::IsKnownAccountName(account);
      clients.append(client);
    }
    Json::Value& remembered = e["store"];
    remembered["path"] = U(users.GetStartFilePath());
    remembered["lastUser"] = U(users.GetLastUser());
    remembered["choice"] = users.GetChoice();
    remembered["users"] = Strings(users.StoredUsers());
    std::string bytes;
    if (mivo::common::LoadFile(users.GetStartFilePath(), bytes) && !bytes.empty()) {
      Json::Value parsed;
      Json::Reader reader;
      if (!reader.parse(bytes, parsed, true) || !parsed.isObject())
        problems.append(U(L"start.txt is damaged: " + users.GetStartFilePath()));
    }
    const CString lastUser = users.GetLastUser();
    const std::vector<CString> stored = users.StoredUsers();
    users.RefreshRunningClients();  // the nickname request, as the launcher sends it
    int userType = users.GetUserType();
    e["userTypeRule"] = UserTypeRule(users, users.RunningClients().size(), lastUser, stored);
    for (Json::Value& client : clients) {
      auto it = users.RunningClients().find(mivo::common::utf8_to_CString(client["account"].asString()));
      client["nickname"] = it == users.RunningClients().end() ? std::string() : U(it->second.nickname);
      if (client["admitted"].asBool() && client["nickname"].asString().empty())
        problems.append("no nickname from " + client["account"].asString() + " within the time limit");
    }
    const CString skin = launcher + L"skins\\default\\start_hide_window\\start_hide_window.xml";
    HandOverPlan plan = PlanHandOver(userType, users.RunningClients(), users.GetLastUser(), [&] {
      bool readable = mivo::common::IsFileExist(skin);
      if (!readable) problems.append(U(L"the login-user window's skin is missing: " + skin));
      return readable;
    });
    e["userType"] = plan.userType;
    g_store = nullptr;
    if (window) DestroyWindow(window);
    if (plan.action != PlanAction::kStartClient) {
      launch = false;
      action["kind"] = U(PlanActionName(plan.action));
      action["account"] = U(plan.account);
      action["rows"] = Strings(plan.rows);
      action["preselected"] = U(plan.preselected);
    }
  }
  if (launch) {
    StartPlan plan = PlanStart(
        found, silent, commandLine, launcher, [&] { return update; }, CurrentUserSid);
    action["kind"] = U(PlanActionName(plan.action));
    action["clientCommandLine"] = U(plan.clientCommandLine);
    action["executorFile"] = U(plan.executorFile);
    action["executorParameters"] = U(plan.executorParameters);
    action["waitForExecutor"] = plan.waitForExecutor;
    DWORD shellPid = 0;
    TokenChoice token = ProbeDesktopToken(shellPid);
    e["token"]["kind"] = U(TokenChoiceName(token));
    const char* why = token == TokenChoice::kShellToken ? "the launcher runs elevated and the desktop shell does not"
                      : token == TokenChoice::kPlain    ? "no de-elevation needed at these integrity levels"
                      : token == TokenChoice::kNoShell  ? "no desktop shell window: nothing would start"
                      : token == TokenChoice::kShellElevated
                          ? "the shell runs elevated and the launcher does not: nothing would start"
                          : "an integrity level could not be read: nothing would start";
    e["token"]["reason"] = why;
    if (token != TokenChoice::kPlain && token != TokenChoice::kShellToken) problems.append(why);
    // the client is started by command line alone: the system searches for it as it would
    wchar_t clientPath[MAX_PATH] = {};
    if (!SearchPathW(nullptr, L"MyMivo.exe", nullptr, MAX_PATH, clientPath, nullptr))
      problems.append("MyMivo.exe is not found: the client would not start");
    if (plan.action == PlanAction::kUpdateThenClient && !mivo::common::IsFileExist(plan.executorFile))
      problems.append(U(L"the update executor is missing: " + plan.executorFile));
  }
  e["problems"] = problems;

  std::string out;
  if (json) {
    Json::StreamWriterBuilder builder;
    builder["indentation"] = "  ";
    builder["emitUTF8"] = true;
    out = Json::writeString(builder, e) + "\n";
  } else {
    out = RenderExplanation(e);
  }
  fwrite(out.data(), 1, out.size(), stdout);
  fflush(stdout);
  return 0;
}
