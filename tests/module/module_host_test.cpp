#include <windows.h>

#include <gtest/gtest.h>

#include <string>

namespace {

std::wstring OwnFolder() {
  wchar_t path[MAX_PATH];
  DWORD n = GetModuleFileNameW(nullptr, path, MAX_PATH);
  std::wstring p(path, n);
  return p.substr(0, p.rfind(L'\\') + 1);
}

TEST(ModuleLinking, ModuleImportsResolveFromTheExecutable) {
  HMODULE module = LoadLibraryW((OwnFolder() + L"test_module.dll").c_str());
  ASSERT_NE(module, nullptr) << GetLastError();
  using HexFn = int (*)(const void*, unsigned, char*, unsigned);
  using Utf8Fn = int (*)(const wchar_t*, char*, unsigned);
  auto hex = reinterpret_cast<HexFn>(reinterpret_cast<void*>(GetProcAddress(module, "ModuleHex")));
  auto utf8 = reinterpret_cast<Utf8Fn>(reinterpret_cast<void*>(GetProcAddress(module, "ModuleUtf8")));
  ASSERT_NE(hex, nullptr);
  ASSERT_NE(utf8, nullptr);

  char out[64];
  const unsigned char bytes[] = {0x00, 0xAB, 0x7F};
  EXPECT_EQ(hex(bytes, 3, out, sizeof out), 6);
  EXPECT_STREQ(out, "00ab7f");
  EXPECT_EQ(utf8(L"\u4e2d", out, sizeof out), 3);
  EXPECT_STREQ(out, "\xe4\xb8\xad");
  FreeLibrary(module);
}

}  // namespace
