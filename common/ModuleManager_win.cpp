// Loads a module DLL (its dependencies beside it) and finds its exported functions, for the module manager.
#include <windows.h>

#include "common/ModuleManager.h"

namespace mivo::common::detail {

HINSTANCE LoadModuleLibrary(const CString& path) {
  return LoadLibraryExW(path, nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
}

void* FindModuleFunction(HINSTANCE module, const char* name) {
  return module ? reinterpret_cast<void*>(GetProcAddress(module, name)) : nullptr;
}

}  // namespace mivo::common::detail
