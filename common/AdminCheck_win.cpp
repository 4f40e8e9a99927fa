// Asks the process token: Administrators membership (via the linked token under UAC), TokenElevation.
#include <windows.h>

#include "common/AdminCheck.h"

namespace mivo::common {
namespace {

// Closes a token handle on every path out.
struct Token {
  HANDLE handle = nullptr;
  ~Token() {
    if (handle) CloseHandle(handle);
  }
};

bool IsMember(HANDLE token) {
  BYTE sid[SECURITY_MAX_SID_SIZE];
  DWORD sidSize = sizeof(sid);
  if (!CreateWellKnownSid(WinBuiltinAdministratorsSid, nullptr, sid, &sidSize)) return false;
  BOOL member = FALSE;
  return CheckTokenMembership(token, sid, &member) && member;
}

}  // namespace

bool IsUserAdministrator() {
  Token process;
  if (!OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY | TOKEN_DUPLICATE, &process.handle)) return false;
  // A filtered token lists Administrators as deny-only; its full twin is the linked token.
  TOKEN_ELEVATION_TYPE type = TokenElevationTypeDefault;
  DWORD size = 0;
  if (GetTokenInformation(process.handle, TokenElevationType, &type, sizeof(type), &size) &&
      type == TokenElevationTypeLimited) {
    TOKEN_LINKED_TOKEN linked = {};
    if (GetTokenInformation(process.handle, TokenLinkedToken, &linked, sizeof(linked), &size)) {
      Token full;
      full.handle = linked.LinkedToken;  // an identification token: usable as it is
      return IsMember(full.handle);
    }
  }
  // CheckTokenMembership wants an impersonation token.
  Token impersonation;
  if (!DuplicateToken(process.handle, SecurityIdentification, &impersonation.handle)) return false;
  return IsMember(impersonation.handle);
}

bool IsProcessElevated() {
  Token process;
  if (!OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &process.handle)) return false;
  TOKEN_ELEVATION elevation = {};
  DWORD size = 0;
  if (!GetTokenInformation(process.handle, TokenElevation, &elevation, sizeof(elevation), &size)) return false;
  return elevation.TokenIsElevated != 0;
}

}  // namespace mivo::common
