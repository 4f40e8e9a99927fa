#pragma once
// The command lines the launcher gives the client and the update executor, and the choice
// between starting the client at once or running the update executor first.
#include "Execute/UpdateCheck.h"
#include "toolkit/CString.h"

// /sf "5C1D7E20-94AB-4f63-8E2D-17B0C3A9F456": how the children know the launcher started them.
CString GetLaunchToken();

// The launcher's arguments: the full command line after the first occurrence of argv[0]
// (and a closing quote right behind it), trimmed; "" when argv[0] is not in it.
CString ExtractLaunchArguments(const CString& argv0, const CString& commandLine);

// "MyMivo.exe <token> <arguments>".
CString BuildClientCommandLine(const CString& arguments);

// "<token> <arguments>"; without arguments and with a SilentFlag marker in the update
// folder: /up "<update folder>"; then /hky "<sid>" when the user's SID is known.
CString BuildUpdateExecParameters(const CString& arguments, const CString& updateFolder, const CString& sid);

enum class LaunchAction { kStartClient, kUpdateThenClient };
// Both lists empty, or a silent start: the client at once; else the update executor first.
LaunchAction DecideLaunch(const PendingUpdates& found, bool silent);
