// The host of the sample module that sdk/sample builds against the installed kit: this program
// is named MivoStart.exe and exports the library as the launcher does, and the module sits in
// its folder.
#include <windows.h>

#include <gtest/gtest.h>

#include <string>

#include "common/ModuleManager.h"

namespace {

constexpr UINT kSampleMessage = WM_APP + 0x51;  // the message the sample takes for itself

std::wstring OwnFolder() {
  wchar_t path[MAX_PATH];
  DWORD n = GetModuleFileNameW(nullptr, path, MAX_PATH);
  std::wstring p(path, n);
  return p.substr(0, p.rfind(L'\\') + 1);
}

HMODULE LoadSample() { return LoadLibraryW((OwnFolder() + L"sample_module.dll").c_str()); }

template <typename Fn>
Fn Find(HMODULE module, const char* name) {
  return reinterpret_cast<Fn>(reinterpret_cast<void*>(GetProcAddress(module, name)));
}

TEST(SampleModule, DigestIsWorkedOutByTheExecutablesLibrary) {
  HMODULE module = LoadSample();
  ASSERT_NE(module, nullptr) << GetLastError();
  using DigestFn = int (*)(const wchar_t*, char*, unsigned);
  auto digest = Find<DigestFn>(module, "SampleDigest");
  ASSERT_NE(digest, nullptr);

  char out[64];
  // U+4E2D U+6587 " abc" is ten bytes of UTF-8
  EXPECT_EQ(digest(L"\u4e2d\u6587 abc", out, sizeof out), 35);
  EXPECT_STREQ(out, "5a3781edcbc9176eabf0d323ee5e677c 10");
  EXPECT_EQ(digest(L"", out, sizeof out), 34);
  EXPECT_STREQ(out, "d41d8cd98f00b204e9800998ecf8427e 0");
  EXPECT_EQ(digest(L"abc", out, 34), -1);  // 34 characters and no room for the terminator
  EXPECT_TRUE(FreeLibrary(module));
}

// The matcher and the clipboard of the executable, used from the module.
TEST(SampleModule, WordsAreCountedAndTextGoesThroughTheClipboard) {
  HMODULE module = LoadSample();
  ASSERT_NE(module, nullptr) << GetLastError();
  auto count = Find<int (*)(const wchar_t*, const wchar_t*)>(module, "SampleCountWords");
  auto clip = Find<int (*)(const wchar_t*)>(module, "SampleClipboardRoundTrip");
  ASSERT_NE(count, nullptr);
  ASSERT_NE(clip, nullptr);
  EXPECT_EQ(count(L"Ana banana, ANA!", L"ana"), 4);  // overlapping, any case, across the halves
  EXPECT_EQ(count(L"\u4e2d\u6587 chat \u4e2d\u6587", L"\u4e2d\u6587|chat|x"), 3);
  EXPECT_EQ(count(L"abc", L"a||b"), -1);  // an empty word
  EXPECT_EQ(clip(L"\u4e2d\u6587 sample"), 1);
  EXPECT_TRUE(FreeLibrary(module));
}

TEST(SampleModule, HookIsOfferedMessagesWhileTheModuleIsLoaded) {
  MSG message = {};
  message.message = kSampleMessage;
  ASSERT_EQ(mivo::common::DoMyPreTranslateMessage(&message), 0);  // nothing registered yet

  HMODULE module = LoadSample();
  ASSERT_NE(module, nullptr) << GetLastError();
  auto handled = Find<int (*)()>(module, "SampleHandledCount");
  ASSERT_NE(handled, nullptr);
  EXPECT_EQ(mivo::common::DoMyPreTranslateMessage(&message), 1);
  message.message = WM_KEYDOWN;
  EXPECT_EQ(mivo::common::DoMyPreTranslateMessage(&message), 0);
  EXPECT_EQ(handled(), 1);

  // unloading unregisters the module: its hook is no longer called
  EXPECT_TRUE(FreeLibrary(module));
  message.message = kSampleMessage;
  EXPECT_EQ(mivo::common::DoMyPreTranslateMessage(&message), 0);
}

}  // namespace
