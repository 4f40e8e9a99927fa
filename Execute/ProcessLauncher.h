#pragma once
// Starting the client and the update executor (Windows only).
#include <windows.h>

#include "toolkit/CString.h"

CString GetLaunchArguments();
void StartLoadMivo(int showCommand);
HANDLE StartLoadUpdateExecEx();
void CreateProcessAsDesktopUser(const wchar_t* applicationName, const wchar_t* commandLine, int showCommand);
// Builds the target lists, then starts the client, or the update executor, waits for it
// to end and starts the client.
void RunLaunchDecision(bool silent, int showCommand);
