// Linux counterparts of the shell folders: $XDG_DATA_HOME (or ~/.local/share) for the
// roaming application data, $MIVO_LOCAL_APPDATA, $XDG_STATE_HOME (or ~/.local/state) for the
// local one, $MIVO_COMMON_APPDATA (or /var/lib) for all users.
#include <cstdlib>
#include <string>

#include "common/AppPath.h"
#include "toolkit/FileSys.h"

namespace mivo::common::detail {

int GetShellFolder(int csidl, CString& folder) {
  std::string native;
  if (csidl == 26) {
    if (const char* xdg = std::getenv("XDG_DATA_HOME"); xdg && *xdg) {
      native = xdg;
    } else if (const char* home = std::getenv("HOME"); home && *home) {
      native = std::string(home) + "/.local/share";
    }
  } else if (csidl == 0x1C) {  // local (not roaming) application data
    if (const char* local = std::getenv("MIVO_LOCAL_APPDATA"); local && *local) {
      native = local;
    } else if (const char* state = std::getenv("XDG_STATE_HOME"); state && *state) {
      native = state;
    } else if (const char* home = std::getenv("HOME"); home && *home) {
      native = std::string(home) + "/.local/state";
    }
  } else if (csidl == 35) {
    const char* common = std::getenv("MIVO_COMMON_APPDATA");
    native = (common && *common) ? common : "/var/lib";
  }
  while (native.size() > 1 && native.back() == '/') native.pop_back();
  if (native.empty()) return 0;
  folder = toolkit::sys::FromNativePath(native).c_str();
  return 1;
}

bool IsVistaOrLater() { return true; }

}  // namespace mivo::common::detail
