#pragma once
// The launcher's own string table, "gdstrings.ini" in its folder, loaded into the language
// singleton once: start-up and the update targets both need it. Its texts fall back to
// built-in English ones, so a missing table never leaves the window without words.
#include "toolkit/CString.h"

// Loads the table of `launcherFolder` unless it is loaded already. A missing or unreadable
// table gets a trace line naming it, never a message box (the launcher may be holding its
// start event). False when it is not loaded.
bool EnsureLauncherStrings(const CString& launcherFolder);

// The text of one of the launcher's ids: the loaded table's, else the built-in English one,
// else empty.
CString LauncherText(const CString& id);

// The built-in English text of one of the launcher's ids, or empty.
CString BuiltInLauncherText(const CString& id);
