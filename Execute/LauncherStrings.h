#pragma once
// The launcher's own string table, "gdstrings.ini" in its folder, loaded into the language
// singleton once: start-up and the update targets both need it.
#include "toolkit/CString.h"

// Loads the table of `launcherFolder` unless it is loaded already; a missing or unreadable
// one is reported on the debugger output only. False when it is not loaded.
bool EnsureLauncherStrings(const CString& launcherFolder);
