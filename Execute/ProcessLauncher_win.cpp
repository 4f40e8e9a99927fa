// Starts programs for the launch plan: the desktop shell's token probed and used, client and executor created.
#include "Execute/ProcessLauncher.h"

#include <sddl.h>
#include <shellapi.h>

#include <vector>

#include "Execute/LaunchCommand.h"
#include "Execute/LaunchPlan.h"
#include "Execute/NamedEvent.h"
#include "Execute/PathTool.h"
#include "Execute/UpdateCheck.h"
#include "common/AppPath.h"
#include "common/Trace.h"

namespace {

constexpr DWORD kHighIntegrity = 0x3000;
constexpr DWORD kMediumIntegrity = 0x2000;

void TraceLine(const wchar_t* text) {
  if (g_ITrace) g_ITrace->Trace(3, true, L"%s", text);
}

HRESULT FromError(DWORD e) { return static_cast<HRESULT>(0x80070000u | (e & 0xFFFF)); }

// The mandatory integrity level (its RID) of a process's token; a negative result on failure.
HRESULT QueryIntegrityLevel(DWORD pid, DWORD& rid) {
  HANDLE process = OpenProcess(PROCESS_QUERY_INFORMATION, FALSE, pid);
  if (!process) return FromError(GetLastError());
  HANDLE token = nullptr;
  HRESULT hr = S_OK;
  if (!OpenProcessToken(process, TOKEN_QUERY, &token)) {
    hr = FromError(GetLastError());
  } else {
    DWORD size = 0;
    GetTokenInformation(token, TokenIntegrityLevel, nullptr, 0, &size);
    std::vector<BYTE> buffer(size ? size : 1);
    if (!GetTokenInformation(token, TokenIntegrityLevel, buffer.data(), size, &size)) {
      hr = FromError(GetLastError());
    } else {
      auto* label = reinterpret_cast<TOKEN_MANDATORY_LABEL*>(buffer.data());
      UCHAR count = *GetSidSubAuthorityCount(label->Label.Sid);
      rid = *GetSidSubAuthority(label->Label.Sid, count - 1);
    }
    CloseHandle(token);
  }
  CloseHandle(process);
  return hr;
}

using CreateProcessWithTokenFn = BOOL(WINAPI*)(HANDLE, DWORD, LPCWSTR, LPWSTR, DWORD, LPVOID, LPCWSTR, LPSTARTUPINFOW,
                                               LPPROCESS_INFORMATION);

// Starts the program with the shell's (medium) token; the result is negative on failure.
HRESULT StartWithShellToken(DWORD shellPid, const wchar_t* applicationName, wchar_t* commandLine, STARTUPINFOW& startup,
                            PROCESS_INFORMATION& info) {
  HANDLE shell = OpenProcess(PROCESS_QUERY_INFORMATION, FALSE, shellPid);
  if (!shell) return FromError(GetLastError());
  HANDLE shellToken = nullptr, primary = nullptr;
  HRESULT hr = S_OK;
  if (!OpenProcessToken(shell, TOKEN_DUPLICATE, &shellToken)) {
    hr = FromError(GetLastError());
  } else if (!DuplicateTokenEx(shellToken, 0xF01FF, nullptr, SecurityImpersonation, TokenPrimary, &primary)) {
    hr = FromError(GetLastError());
  } else {
    HMODULE advapi = LoadLibraryW(L"AdvApi32");
    auto create = advapi ? reinterpret_cast<CreateProcessWithTokenFn>(
                               reinterpret_cast<void*>(GetProcAddress(advapi, "CreateProcessWithTokenW")))
                         : nullptr;
    if (!create) {
      hr = static_cast<HRESULT>(0x8000FFFFu);
    } else if (!create(primary, 0, applicationName, commandLine, 0, nullptr, nullptr, &startup, &info)) {
      hr = FromError(GetLastError());
    }
    if (advapi) FreeLibrary(advapi);
  }
  if (primary) CloseHandle(primary);
  if (shellToken) CloseHandle(shellToken);
  CloseHandle(shell);
  return hr;
}

// Says in the trace log that a program was not started, and why.
void TraceNotStarted(const wchar_t* applicationName, const wchar_t* commandLine, const wchar_t* why, unsigned code) {
  if (g_ITrace)
    g_ITrace->Trace(3, true, L"CreateProcessAsDesktopUser %s not started: %s (0x%08x)",
                    commandLine ? commandLine : applicationName, why, code);
}

}  // namespace

CString CurrentUserSid() {
  std::vector<wchar_t> name(32767);
  DWORD length = static_cast<DWORD>(name.size());
  if (!GetUserNameW(name.data(), &length)) return CString();
  DWORD sidSize = 0, domainSize = 0;
  SID_NAME_USE use;
  LookupAccountNameW(nullptr, name.data(), nullptr, &sidSize, nullptr, &domainSize, &use);
  if (!sidSize) return CString();
  std::vector<BYTE> sid(sidSize);
  std::vector<wchar_t> domain(domainSize ? domainSize : 1);
  if (!LookupAccountNameW(nullptr, name.data(), sid.data(), &sidSize, domain.data(), &domainSize, &use))
    return CString();
  wchar_t* text = nullptr;
  if (!ConvertSidToStringSidW(sid.data(), &text)) return CString();
  CString result(text);
  LocalFree(text);
  return result;
}

TokenChoice ProbeDesktopToken(DWORD& shellPid, long* failure) {
  shellPid = 0;
  if (!mivo::common::detail::IsVistaOrLater()) return ChooseToken(false, false, false, 0, 0);
  if (HWND shell = FindWindowW(L"Progman", nullptr)) GetWindowThreadProcessId(shell, &shellPid);
  DWORD shellLevel = kHighIntegrity, ownLevel = kHighIntegrity;
  HRESULT hr = QueryIntegrityLevel(shellPid, shellLevel);
  if (SUCCEEDED(hr)) hr = QueryIntegrityLevel(GetCurrentProcessId(), ownLevel);
  if (failure) *failure = hr;
  return ChooseToken(true, shellPid != 0, SUCCEEDED(hr), shellLevel, ownLevel);
}

CString GetLaunchArguments() {
  int argc = 0;
  LPWSTR* argv = CommandLineToArgvW(GetCommandLineW(), &argc);
  CString argv0 = (argv && argc > 0) ? CString(argv[0]) : CString();
  if (argv) LocalFree(argv);
  return ExtractLaunchArguments(argv0, GetCommandLineW());
}

void CreateProcessAsDesktopUser(const wchar_t* applicationName, const wchar_t* commandLine, int showCommand) {
  if (!applicationName && !commandLine) return;
  STARTUPINFOW startup = {};
  startup.cb = 0x44;
  startup.wShowWindow = static_cast<WORD>(showCommand);  // dwFlags stays 0, so the system does not apply it
  PROCESS_INFORMATION info = {};
  std::vector<wchar_t> line;
  if (commandLine) line.assign(commandLine, commandLine + wcslen(commandLine) + 1);
  wchar_t* writable = commandLine ? line.data() : nullptr;
  DWORD shellPid = 0;
  long failure = S_OK;
  switch (ProbeDesktopToken(shellPid, &failure)) {
    case TokenChoice::kNoShell:
    case TokenChoice::kLevelUnknown:
      TraceNotStarted(applicationName, commandLine, shellPid ? L"integrity level unknown" : L"no desktop shell window",
                      static_cast<unsigned>(failure));
      return;
    case TokenChoice::kShellToken: {
      HRESULT hr = StartWithShellToken(shellPid, applicationName, writable, startup, info);
      if (FAILED(hr)) {
        TraceNotStarted(applicationName, commandLine, L"start with the desktop user's token failed",
                        static_cast<unsigned>(hr));
        return;
      }
      break;
    }
    case TokenChoice::kShellElevated:
      TraceNotStarted(applicationName, commandLine, L"the desktop shell runs elevated and the launcher does not", 0);
      return;
    case TokenChoice::kPlain:
      break;
  }
  if (info.dwProcessId == 0) {
    if (!CreateProcessW(applicationName, writable, nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &info)) {
      TraceNotStarted(applicationName, commandLine, L"CreateProcessW failed", static_cast<unsigned>(GetLastError()));
      return;
    }
  }
  if (info.hThread) CloseHandle(info.hThread);
  if (info.hProcess) CloseHandle(info.hProcess);
}

void StartLoadMivo(int showCommand) {
  CString line = BuildClientCommandLine(GetLaunchArguments());
  CreateProcessAsDesktopUser(nullptr, line, showCommand);
}

HANDLE StartLoadUpdateExecEx() {
  return StartUpdateExecutor(
      CPathTool::GetLauncherFolder() + L"UpdateExec.exe",
      BuildUpdateExecParameters(GetLaunchArguments(), CPathTool::GetUpdateFolder(false), CurrentUserSid()));
}

HANDLE StartUpdateExecutor(const CString& file, const CString& parameters) {
  SHELLEXECUTEINFOW info = {};
  info.cbSize = sizeof(info);
  info.fMask = SEE_MASK_NOCLOSEPROCESS | SEE_MASK_FLAG_NO_UI;
  info.lpVerb = L"open";
  info.lpFile = file;
  info.lpParameters = parameters;
  info.nShow = SW_SHOW;
  if (!ShellExecuteExW(&info)) {
    if (g_ITrace)
      g_ITrace->Trace(3, true, L"StartLoadUpdateExecEx %s not started: error %lu", file.GetString(), GetLastError());
    return nullptr;
  }
  // the greater-than-32 rule of instance values, applied to the process handle on purpose
  if (reinterpret_cast<INT_PTR>(info.hProcess) <= 32) {
    if (g_ITrace) g_ITrace->Trace(3, true, L"StartLoadUpdateExecEx %s gave no process handle", file.GetString());
    return nullptr;
  }
  return info.hProcess;
}

void CarryOutStart(const StartPlan& plan, int showCommand) {
  if (plan.action == PlanAction::kStartClient) {
    TraceLine(L"StartLoadMivo");
    CreateProcessAsDesktopUser(nullptr, plan.clientCommandLine, showCommand);
    return;
  }
  TraceLine(L"do StartLoadUpdateExecEx");
  HANDLE executed = CreateEventW(nullptr, TRUE, FALSE, kUpdateExecutedEvent);
  if (HANDLE process = StartUpdateExecutor(plan.executorFile, plan.executorParameters)) {
    WaitForSingleObject(process, INFINITE);
    if (executed) WaitForSingleObject(executed, 0);
    CreateProcessAsDesktopUser(nullptr, plan.clientCommandLine, showCommand);
    CloseHandle(process);
  }
  if (executed) CloseHandle(executed);
}

void RunLaunchDecision(bool silent, int showCommand) {
  PendingUpdates found = FindPendingUpdates();
  if (g_ITrace)
    g_ITrace->Trace(3, true, L"listRecoverComponentData size is %d,listUpdateComponentData size is %d, bSilent is %d",
                    static_cast<int>(found.pending.size()), static_cast<int>(found.halfDone.size()), silent ? 1 : 0);
  CarryOutStart(PlanStart(
                    found, silent, GetLaunchArguments(), CPathTool::GetLauncherFolder(),
                    [] { return CPathTool::GetUpdateFolder(false); }, CurrentUserSid),
                showCommand);
}
