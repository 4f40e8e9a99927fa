#pragma once
// The system's folders. Every result ends in a backslash.
//
// Windows: the install folder is the executable's; per-user data lives under the roaming
// application-data folder (CSIDL_APPDATA) and machine-wide data under the all-users one
// (CSIDL_COMMON_APPDATA, C:\ProgramData).
// Linux: per-user data lives under $XDG_DATA_HOME (default ~/.local/share) and machine-wide
// data under $MIVO_COMMON_APPDATA (default /var/lib), the natural counterparts.
#include "toolkit/CString.h"
#include "toolkit/export.h"

namespace mivo::common {

MIVO_COMMON_API CString GetAppPath();  // cached on first use, never changed afterwards
MIVO_COMMON_API CString GetAppDataPath();
MIVO_COMMON_API CString GetCommonAppDataPath();
MIVO_COMMON_API CString GetUpdatePath(bool create);
MIVO_COMMON_API void InitCommonAppPath();

// The MD5 of the folder's UTF-8 text as 32 lower-case hexadecimal digits: the name of an
// installation's update folder.
MIVO_COMMON_API CString InstallFolderDigest(const CString& folder);

namespace detail {
// Platform half. 1 with the folder, 0 when the system names none, -1 when the shell
// allocator is missing. csidl is 26 (roaming application data), 0x1C (local application
// data) or 35 (all users).
int GetShellFolder(int csidl, CString& folder);
bool IsVistaOrLater();  // an NT system of major version 6 or later
// GetCommonAppDataPath, creating the folder only when asked to.
CString CommonAppDataPath(bool create);
}  // namespace detail

}  // namespace mivo::common
