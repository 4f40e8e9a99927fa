// The application object: start-up in order, the launch plans carried out, the login-user window's loop.
#include "Execute/StartApp.h"

#include <shellapi.h>

#include <vector>

#include "Execute/CommandLineInfoEx.h"
#include "Execute/LaunchPlan.h"
#include "Execute/LauncherStrings.h"
#include "Execute/NamedEvent.h"
#include "Execute/PathTool.h"
#include "Execute/ProcessLauncher.h"
#include "Execute/StartProfile.h"
#include "Execute/UpdateCheck.h"
#include "common/FileUtil.h"
#include "common/ModuleManager.h"
#include "common/MutiLanSupport.h"
#include "common/Trace.h"
#include "duilib/Core/GlobalManager.h"
#include "toolkit/FileSystem.h"

namespace {

void Debug(const CString& text) { OutputDebugStringW(text); }

// Milliseconds since the system created this process: loading the program and its DLLs.
double SinceProcessCreation() {
  FILETIME created, exited, kernel, user, now;
  if (!GetProcessTimes(GetCurrentProcess(), &created, &exited, &kernel, &user)) return 0;
  GetSystemTimeAsFileTime(&now);
  auto ticks = [](const FILETIME& t) { return (static_cast<ULONGLONG>(t.dwHighDateTime) << 32) | t.dwLowDateTime; };
  return ticks(now) > ticks(created) ? static_cast<double>(ticks(now) - ticks(created)) / 10000.0 : 0;
}

std::vector<CString> Tokens(const wchar_t* commandLine) {
  std::vector<CString> tokens;
  if (!commandLine || !*commandLine) return tokens;
  int argc = 0;
  // a leading program name makes CommandLineToArgvW split the rest like the runtime does
  CString full = CString(L"MivoStart.exe ") + commandLine;
  LPWSTR* argv = CommandLineToArgvW(full, &argc);
  for (int i = 1; argv && i < argc; ++i) tokens.emplace_back(argv[i]);
  if (argv) LocalFree(argv);
  return tokens;
}

}  // namespace

CStartApp::CStartApp() : m_reserved(1) {}

BOOL CStartApp::InitInstance() {
  CStartProfile profile;
  profile.Add(L"program loaded", SinceProcessCreation());
  // one launcher at a time; a second one leaves without a word
  if (!CreateNamedEventOnce(kStartRunningEvent)) return FALSE;
  profile.Mark(L"event");
  // the command line
  if (g_ITrace)
    g_ITrace->Trace(3, true, L"CStartApp::InitInstance cmdLineString is %s", m_lpCmdLine ? m_lpCmdLine : L"");
  CCommandLineInfoEx info;
  info.ParseCommandLine(Tokens(m_lpCmdLine));
  bool silent = IsSilentLaunch(info);
  // where the update is staged
  CString up, source;
  if (info.Lookup(L"up", up) && !up.IsEmpty()) {
    CPathTool::UpdateSourceFolder = up;
    source = up;
  } else {
    source = CPathTool::GetUpdateFolder(false);
    if (IsEmptyMarkerFile(source + L"SilentFlag")) CPathTool::UpdateSourceFolder = source;
  }
  profile.Mark(L"command line and update folder");
  // stale shared data, unless "up" names the launcher's own folder
  if (CPathTool::GetLauncherFolder().CompareNoCase(source) != 0) CPathTool::CleanSharedFolders();
  profile.Mark(L"shared data clean-up");
  // strings and global state
  CMutiLanSupport* strings = CMutiLanSupport::GetInstance();
  strings->LoadLangSetting();
  // the launcher's own texts (window title, buttons, messages), loaded once for the whole run
  EnsureLauncherStrings(CPathTool::GetLauncherFolder());
  profile.Mark(L"strings");
  InitGlobalStruct();
  profile.Mark(L"global state");
  // no arguments: straight to the launch decision
  if (!m_lpCmdLine || !*m_lpCmdLine) {
    if (g_ITrace) g_ITrace->Trace(3, true, L"CStartApp::InitInstance cmd string is empty");
    RunLaunchDecision(silent, m_nCmdShow);
    profile.Mark(L"launch");
    ReleaseNamedEvent(kStartRunningEvent);
    profile.Report();
    return FALSE;
  }
  // with arguments the running clients come first: the window must exist before they
  // are asked, since their nickname replies are sent to it
  m_pForm = std::make_unique<CStartHideWindowForm>();
  m_pForm->SetFinalMessageHook([this] { OnFormFinalMessage(); });
  m_pForm->Create(nullptr, std::wstring(LauncherText(L"STRID_SELECTED_USER_FORM_TITLE").GetString()), 0x00CE0000, 0,
                  true);
  profile.Mark(L"window");
  m_pForm->Store().RefreshRunningClients();
  profile.Mark(L"asking the clients");
  int userType = m_pForm->Store().GetUserType();
  if (g_ITrace) g_ITrace->Trace(3, true, L"CStartApp::InitInstance usertype is %d", userType);
  const CString request(m_lpCmdLine);
  HandOverPlan plan = PlanHandOver(userType, m_pForm->Store().RunningClients(), m_pForm->Store().GetLastUser(),
                                   [this] { return m_pForm->BuildSkin(); });
  switch (plan.action) {
    case PlanAction::kForward:
      if (plan.userType == 2)
        m_pForm->Store().ForwardToSingleClient(request);
      else
        m_pForm->Store().ForwardToLastUser(request);
      break;
    case PlanAction::kShowWindow: {
      m_pForm->PrepareUserList(request);
      m_pForm->CenterWindow();
      m_pForm->ShowWindow(true, true);
      HWND form = m_pForm->GetHWND();
      SetForegroundWindow(form);
      BringWindowToTop(form);
      ReleaseNamedEvent(kStartRunningEvent);
      profile.Mark(L"showing the window");
      profile.Report();
      return TRUE;  // the window drives the process now, through Run
    }
    default:
      RunLaunchDecision(silent, m_nCmdShow);
      break;
  }
  profile.Mark(plan.action == PlanAction::kForward ? L"forward" : L"launch");
  ReleaseNamedEvent(kStartRunningEvent);
  profile.Report();
  return FALSE;
}

void CStartApp::OnFormFinalMessage() {
  // The choice is made (or the window closed): leave the loop; a message wakes it up.
  QuitRequested = 1;
  PostThreadMessageW(GetCurrentThreadId(), WM_NULL, 0, 0);
}

int CStartApp::Run() {
  LONG idle = 0;
  MSG msg;
  for (;;) {
    while (!PeekMessageW(&msg, nullptr, 0, 0, PM_NOREMOVE) && OnIdle(idle++)) {
    }
    do {
      if (!PumpMessage() || QuitRequested) return ExitInstance();
      if (IsIdleMessage(&m_msgCur)) idle = 0;
    } while (PeekMessageW(&msg, nullptr, 0, 0, PM_NOREMOVE));
  }
}

int CStartApp::ExitInstance() {
  if (m_pForm) {
    // The object goes even when its window never came up: its destructor saves the store.
    try {
      if (IsWindow(m_pForm->GetHWND())) {
        Debug(L"CMivoApp::ExitInstance() release main form...\n");
        DestroyWindow(m_pForm->GetHWND());
      }
      m_pForm.reset();
    } catch (...) {
      Debug(L"CMivoApp::ExitInstance() release main form occur error!!!\n");
      if (g_ITrace) g_ITrace->Trace(3, true, L"CMivoApp::ExitInstance() release main form occur error!!!");
    }
  }
  FreeGlobalStruct();
  return CWinApp::ExitInstance();
}

int InitGlobalStruct() {
  MoudleManager::Open();
  CString app = CPathTool::GetLauncherFolder();
  // The UI framework: skins below the launcher's folder, texts from the launcher's table.
  mivo::duilib::GlobalManager::Startup(std::wstring(app.GetString()), L"skins\\default");
  mivo::duilib::GlobalManager::SetTextResolver(
      [](const std::wstring& id) { return std::wstring(LauncherText(CString(id.c_str())).GetString()); });
  CString temp;
  temp.Format(L"%sTemp", app.GetString());
  if (!mivo::common::IsFolderExist(temp)) toolkit::CreateFolder(temp);
  toolkit::SetAttributes(temp, FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN);
  CString users;
  users.Format(L"%susers", app.GetString());
  if (!mivo::common::IsFolderExist(users)) toolkit::CreateFolder(users);
  return 1;
}

void FreeGlobalStruct() {
  try {
    mivo::common::EmptyFolder(CPathTool::GetLauncherFolder() + L"Temp", 0, 1);
    MoudleManager::Close();
  } catch (...) {
    OutputDebugStringW(L"-------------------FreeGlobalStruct exception");
  }
}
