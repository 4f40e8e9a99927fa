#include "common/ModuleManager.h"

#include <map>

#include "common/AppPath.h"
#include "common/PathUtil.h"
#include "toolkit/Collections.h"

namespace {

struct NoCaseLess {
  bool operator()(const CString& a, const CString& b) const { return a.CompareNoCase(b) < 0; }
};

std::map<CString, HINSTANCE, NoCaseLess>& Modules() {
  static std::map<CString, HINSTANCE, NoCaseLess> modules;
  return modules;
}

CArray<HINSTANCE, HINSTANCE>& MsgInstances() {
  static CArray<HINSTANCE, HINSTANCE> instances;
  return instances;
}

AFX_MODULE_STATE* g_mainModuleState = nullptr;

}  // namespace

int MoudleManager::Open() {
  Modules().clear();
  return 1;
}

int MoudleManager::Close() {
  Modules().clear();
  return 1;
}

HINSTANCE MoudleManager::Load(const CString& path) {
  CString key = mivo::common::ReparsePath(path);
  auto found = Modules().find(key);
  if (found != Modules().end()) return found->second;
  HINSTANCE module = mivo::common::detail::LoadModuleLibrary(key);
  if (module) Modules()[key] = module;
  return module;
}

int MoudleManager::UnLoad(const CString& path) {
  Modules().erase(mivo::common::ReparsePath(path));
  return 1;
}

HINSTANCE MoudleManager::GetLibModule(CString name) {
  CString path;
  path.Format(L"%s%s.dll", mivo::common::GetAppPath().GetString(), name.GetString());
  auto found = Modules().find(mivo::common::ReparsePath(path));
  return found != Modules().end() ? found->second : nullptr;
}

void MoudleManager::SetMainMoudleState(AFX_MODULE_STATE* state) { g_mainModuleState = state; }

AFX_MODULE_STATE* MoudleManager::GetMainMoudleState() { return g_mainModuleState; }

namespace mivo::common {

void RegisterMsgInstance(HINSTANCE instance) { MsgInstances().Add(instance); }

void UnRegisterMsgInstance(HINSTANCE instance) {
  auto& instances = MsgInstances();
  for (INT_PTR i = 0; i < instances.GetSize(); ++i) {
    if (instances[i] == instance) {
      instances.RemoveAt(i);
      return;
    }
  }
}

int DoMyPreTranslateMessage(MSG* message) {
  using PreTranslate = int (*)(MSG*);
  auto& instances = MsgInstances();
  for (INT_PTR i = 0; i < instances.GetSize(); ++i) {
    auto function = reinterpret_cast<PreTranslate>(detail::FindModuleFunction(instances[i], "MyPreTranslateMessage"));
    if (function && function(message)) return 1;
  }
  return 0;
}

}  // namespace mivo::common
