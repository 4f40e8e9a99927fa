// Starts the path rules' helper commands (cacls, an elevated "rd") hidden through the shell.
#include <windows.h>
// the shell headers need the base Windows types first
#include <shellapi.h>

#include "Execute/PathTool.h"

namespace launcher_platform {

void StartHidden(const CString& file, const CString& verb, const CString& parameters) {
  ShellExecuteW(nullptr, verb, file, parameters, nullptr, SW_HIDE);
}

}  // namespace launcher_platform
