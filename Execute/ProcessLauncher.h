#pragma once
// Starting the client and the update executor (Windows only).
#include <windows.h>

#include "Execute/LaunchPlan.h"
#include "toolkit/CString.h"

CString GetLaunchArguments();
void StartLoadMivo(int showCommand);
HANDLE StartLoadUpdateExecEx();
HANDLE StartUpdateExecutor(const CString& file, const CString& parameters);
// The account the launcher runs under, as "S-1-5-...", or empty.
CString CurrentUserSid();
// Finds the desktop shell's window and compares integrity levels: how a program would start.
// `failure` receives the failed level query's code, if any.
TokenChoice ProbeDesktopToken(DWORD& shellPid, long* failure = nullptr);
void CreateProcessAsDesktopUser(const wchar_t* applicationName, const wchar_t* commandLine, int showCommand);
// Starts the client, or the update executor, waits for it to end and starts the client.
void CarryOutStart(const StartPlan& plan, int showCommand);
// Builds the target lists, plans the start and carries it out.
void RunLaunchDecision(bool silent, int showCommand);
