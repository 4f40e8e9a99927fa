#pragma once
// The user's default web browser: the program that opens "http" links.
//
// Windows: the ProgId of the user's choice (value "Progid" of the key
// HKCU\Software\Microsoft\Windows\Shell\Associations\UrlAssociations\http\UserChoice) and its
// HKCR\<ProgId>\shell\open\command;
// without a usable choice, the machine-wide HKCR\http\shell\open\command. Under Wine that is
// winebrowser.exe.
// The command text is turned into the program path by portable code (ProgramFromOpenCommand),
// so the rule is the same everywhere. Thread-safe; nothing throws.
#include <functional>

#include "toolkit/CString.h"
#include "toolkit/export.h"

namespace mivo::common {

// Gives the value of an environment variable; false when it is not set.
using EnvironmentLookup = std::function<bool(const CString& name, CString& value)>;

// The program of a shell "open" command: the text inside the leading quotes
// ("\"C:\Program Files\b.exe\" -url \"%1\""), or unquoted, everything up to the first ".exe"
// that ends a word (any case) or else up to the first blank. Then %NAME% is replaced by
// lookup's value; unknown names stay as written, as ExpandEnvironmentStrings leaves them.
// "" for a command without a program.
MIVO_COMMON_API CString ProgramFromOpenCommand(const CString& command, const EnvironmentLookup& lookup);

#if defined(_WIN32)
// The default browser's program path with the process's environment expanded; "" when no
// browser is registered.
MIVO_COMMON_API CString GetDefaultBrowserPath();
#endif

}  // namespace mivo::common
