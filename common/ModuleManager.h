#pragma once
// The client's module libraries: each is loaded at most once, kept by its path (letter case
// ignored) and handed out by name. Modules that want a look at the main loop's messages
// before they are dispatched register their instance here. Used from the UI thread only.
#include "toolkit/CString.h"
#include "toolkit/export.h"
#include "toolkit/platform.h"

struct AFX_MODULE_STATE;  // the framework's module state; opaque here

class MIVO_COMMON_API MoudleManager {
 public:
  MoudleManager() = default;
  ~MoudleManager() = default;

  static int Open();   // an empty table; non-zero
  static int Close();  // forgets every module, none is released (others may hold them); non-zero
  // The module at `path`, loaded on first use with its own folder searched for its
  // dependencies; null when it cannot be loaded (nothing is kept then).
  static HINSTANCE Load(const CString& path);
  // Forgets the module without releasing it; 1 always.
  static int UnLoad(const CString& path);
  // An already loaded "<install folder><name>.dll", or null; never loads.
  static HINSTANCE GetLibModule(CString name);

  static void SetMainMoudleState(AFX_MODULE_STATE* state);
  static AFX_MODULE_STATE* GetMainMoudleState();
};

namespace mivo::common {

MIVO_COMMON_API void RegisterMsgInstance(HINSTANCE instance);
MIVO_COMMON_API void UnRegisterMsgInstance(HINSTANCE instance);
// Offers the message to each registered module's exported "MyPreTranslateMessage"
// (int (MSG*), non-zero when it handled the message), in registration order; 1 as soon as
// one handled it, else 0.
MIVO_COMMON_API int DoMyPreTranslateMessage(MSG* message);

namespace detail {
// The platform half: load a library, look up one of its exported functions.
HINSTANCE LoadModuleLibrary(const CString& path);
void* FindModuleFunction(HINSTANCE module, const char* name);
}  // namespace detail

}  // namespace mivo::common
