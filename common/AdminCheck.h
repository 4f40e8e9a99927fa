#pragma once
// Whether the process runs for an administrator, and whether it runs elevated.
//
// Windows: IsUserAdministrator is true when the user belongs to the Administrators group,
// also when UAC gave the process a filtered token (the linked full token is asked then), so
// it says "could elevate". IsProcessElevated is true when the process token itself is
// elevated (TokenElevation), i.e. it holds administrator rights now. Under Wine both are true:
// every process runs at high integrity.
// Linux: both are true exactly when the effective user is root.
// false also means "could not be determined". Thread-safe; nothing throws.
#include "toolkit/export.h"

namespace mivo::common {

MIVO_COMMON_API bool IsUserAdministrator();
MIVO_COMMON_API bool IsProcessElevated();

}  // namespace mivo::common
