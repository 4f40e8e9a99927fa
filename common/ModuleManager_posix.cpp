// Loads a module as a shared object and finds its functions, for the module manager.
#include <dlfcn.h>

#include "common/ModuleManager.h"
#include "toolkit/FileSys.h"

namespace mivo::common::detail {

// A module here is a shared object; the dynamic linker finds its dependencies through the
// module's own run path, which stands in for the altered search path of Windows.
HINSTANCE LoadModuleLibrary(const CString& path) {
  if (path.IsEmpty()) return nullptr;
  std::string native = toolkit::sys::ToNativePath(path.GetString());
  return static_cast<HINSTANCE>(dlopen(native.c_str(), RTLD_NOW | RTLD_LOCAL));
}

void* FindModuleFunction(HINSTANCE module, const char* name) { return module ? dlsym(module, name) : nullptr; }

}  // namespace mivo::common::detail
