#include <gtest/gtest.h>

#if defined(_WIN32)
#include <windows.h>
#else
#include <dlfcn.h>
#endif

#include "common/AppPath.h"
#include "common/ModuleManager.h"
#include "toolkit/FileSys.h"

namespace {

// Modules built beside the test program (tests/helpers/msg_module.cpp); the test program's
// folder is its install folder.
CString ModulePath(const wchar_t* name) { return mivo::common::GetAppPath() + name + L".dll"; }

// Whether the system has the module loaded, without loading it.
bool SystemHasLoaded(const wchar_t* name) {
#if defined(_WIN32)
  return GetModuleHandleW(ModulePath(name)) != nullptr;
#else
  std::string native = toolkit::sys::ToNativePath(ModulePath(name).GetString());
  void* handle = dlopen(native.c_str(), RTLD_NOW | RTLD_NOLOAD);
  if (handle) dlclose(handle);
  return handle != nullptr;
#endif
}

int AskedCount(HINSTANCE module) {
  using Count = int (*)();
  auto count = reinterpret_cast<Count>(mivo::common::detail::FindModuleFunction(module, "AskedCount"));
  return count ? count() : -1;
}

class ModuleManagerTest : public ::testing::Test {
 protected:
  void SetUp() override { MoudleManager::Open(); }
  void TearDown() override {
    for (HINSTANCE module : registered) mivo::common::UnRegisterMsgInstance(module);
    MoudleManager::Close();
  }
  HINSTANCE LoadAndRegister(const wchar_t* name) {
    HINSTANCE module = MoudleManager::Load(ModulePath(name));
    EXPECT_NE(nullptr, module) << "cannot load the test module";
    mivo::common::RegisterMsgInstance(module);
    registered.push_back(module);
    return module;
  }
  std::vector<HINSTANCE> registered;
};

TEST_F(ModuleManagerTest, AModuleIsLoadedOnceWhateverTheSpellingOfItsPath) {
  HINSTANCE module = MoudleManager::Load(ModulePath(L"msg_consumer"));
  ASSERT_NE(nullptr, module);
  CString other = ModulePath(L"MSG_CONSUMER");
  other.Replace(L'\\', L'/');
  other.Replace(L"/msg", L"//msg");
  EXPECT_EQ(module, MoudleManager::Load(other));  // found in the table, not loaded again
  EXPECT_EQ(module, MoudleManager::GetLibModule(L"Msg_Consumer"));
}

TEST_F(ModuleManagerTest, LookingUpByNameNeverLoads) {
  ASSERT_FALSE(SystemHasLoaded(L"msg_no_hook"));
  EXPECT_EQ(nullptr, MoudleManager::GetLibModule(L"msg_no_hook"));
  EXPECT_FALSE(SystemHasLoaded(L"msg_no_hook"));
  HINSTANCE module = MoudleManager::Load(ModulePath(L"msg_no_hook"));
  ASSERT_NE(nullptr, module);
  EXPECT_EQ(module, MoudleManager::GetLibModule(L"msg_no_hook"));
}

TEST_F(ModuleManagerTest, ForgettingAModuleLeavesItLoaded) {
  EXPECT_EQ(1, MoudleManager::UnLoad(ModulePath(L"never_loaded")));
  HINSTANCE module = MoudleManager::Load(ModulePath(L"msg_passer"));
  ASSERT_NE(nullptr, module);
  EXPECT_EQ(1, MoudleManager::UnLoad(ModulePath(L"MSG_PASSER")));
  EXPECT_EQ(nullptr, MoudleManager::GetLibModule(L"msg_passer"));
  EXPECT_TRUE(SystemHasLoaded(L"msg_passer"));
  EXPECT_EQ(module, MoudleManager::Load(ModulePath(L"msg_passer")));  // the same instance again

  MoudleManager::Close();
  EXPECT_EQ(nullptr, MoudleManager::GetLibModule(L"msg_passer"));
  EXPECT_TRUE(SystemHasLoaded(L"msg_passer"));
}

TEST_F(ModuleManagerTest, AModuleThatCannotBeLoadedIsNotKept) {
  EXPECT_EQ(nullptr, MoudleManager::Load(ModulePath(L"missing_module")));
  EXPECT_EQ(nullptr, MoudleManager::GetLibModule(L"missing_module"));
  EXPECT_EQ(nullptr, MoudleManager::Load(CString()));
}

TEST_F(ModuleManagerTest, TheFirstModuleToHandleAMessageEndsTheRound) {
  HINSTANCE noHook = LoadAndRegister(L"msg_no_hook");
  HINSTANCE passer = LoadAndRegister(L"msg_passer");
  HINSTANCE consumer = LoadAndRegister(L"msg_consumer");
  ASSERT_TRUE(noHook && passer && consumer);
  HINSTANCE second = MoudleManager::Load(ModulePath(L"msg_passer"));  // registered twice
  mivo::common::RegisterMsgInstance(second);
  registered.push_back(second);

  MSG key = {};
  key.message = 0x0100;  // WM_KEYDOWN
  int passerBefore = AskedCount(passer), consumerBefore = AskedCount(consumer);
  EXPECT_EQ(1, mivo::common::DoMyPreTranslateMessage(&key));
  EXPECT_EQ(passerBefore + 1, AskedCount(passer));
  EXPECT_EQ(consumerBefore + 1, AskedCount(consumer));
  EXPECT_EQ(passerBefore + 1, AskedCount(second));  // the one after the consumer was not asked

  MSG paint = {};
  paint.message = 0x000F;  // WM_PAINT: nobody handles it, so everybody is asked
  EXPECT_EQ(0, mivo::common::DoMyPreTranslateMessage(&paint));
  EXPECT_EQ(passerBefore + 3, AskedCount(passer));

  mivo::common::UnRegisterMsgInstance(consumer);
  EXPECT_EQ(0, mivo::common::DoMyPreTranslateMessage(&key));
  mivo::common::UnRegisterMsgInstance(consumer);  // no longer there: nothing happens
}

TEST_F(ModuleManagerTest, TheMainModuleStateIsKept) {
  auto* state = reinterpret_cast<AFX_MODULE_STATE*>(0x1234);
  MoudleManager::SetMainMoudleState(state);
  EXPECT_EQ(state, MoudleManager::GetMainMoudleState());
  MoudleManager::SetMainMoudleState(nullptr);
}

}  // namespace
