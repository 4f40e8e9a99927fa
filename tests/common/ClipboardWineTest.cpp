// The clipboard between two processes: this test and tests/helpers/clipboard_peer.exe.
#include "common/Clipboard.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "common/Conversion.h"

namespace mivo::common {
namespace {

std::wstring Beside(const wchar_t* name) {
  wchar_t self[MAX_PATH] = {};
  GetModuleFileNameW(nullptr, self, MAX_PATH);
  std::wstring path = self;
  return path.substr(0, path.find_last_of(L'\\') + 1) + name;
}

HANDLE StartPeer(const std::wstring& args) {
  std::wstring line = L"\"" + Beside(L"clipboard_peer.exe") + L"\" " + args;
  STARTUPINFOW si = {sizeof si};
  PROCESS_INFORMATION pi = {};
  if (!CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &si, &pi)) return nullptr;
  CloseHandle(pi.hThread);
  return pi.hProcess;
}

DWORD RunPeer(const std::wstring& args) {
  HANDLE process = StartPeer(args);
  if (!process) return 99;
  DWORD code = 98;
  if (WaitForSingleObject(process, 30000) == WAIT_OBJECT_0) GetExitCodeProcess(process, &code);
  CloseHandle(process);
  return code;
}

class ClipboardWine : public ::testing::Test {
 protected:
  void SetUp() override {
    wchar_t temp[MAX_PATH] = {};
    GetTempPathW(MAX_PATH, temp);
    file_ = std::wstring(temp) + L"mivo_clipboard_" + std::to_wstring(GetCurrentProcessId()) + L".txt";
  }
  void TearDown() override { DeleteFileW(file_.c_str()); }
  void WriteFile(const std::wstring& text) {
    FILE* f = _wfopen(file_.c_str(), L"wb");
    ASSERT_TRUE(f);
    std::fwrite(text.data(), sizeof(wchar_t), text.size(), f);
    std::fclose(f);
  }
  std::wstring ReadFile() {
    std::wstring text;
    if (FILE* f = _wfopen(file_.c_str(), L"rb")) {
      for (wchar_t c; std::fread(&c, sizeof c, 1, f) == 1;) text += c;
      std::fclose(f);
    }
    return text;
  }
  std::wstring file_;
};

TEST_F(ClipboardWine, TextCrossesToAndFromAnotherProcess) {
  const wchar_t* const rows[] = {
      L"plain text",
      L"\u4e2d\u6587 \u00dcn\u00efc\u00f6d\u00e9 \U0001F600",  // CJK, Latin accents, a surrogate pair
      L"two\r\nlines\ttab",
      L"",
  };
  for (const wchar_t* text : rows) {
    std::string label = CString_to_utf8(text);
    ASSERT_TRUE(CopyTextToClipborder(text)) << label;
    ASSERT_EQ(RunPeer(L"read \"" + file_ + L"\""), 0u) << label;
    EXPECT_EQ(ReadFile(), text) << label;

    std::wstring reversed(text);
    reversed.assign(reversed.rbegin(), reversed.rend());  // different from what we copied
    reversed += L"\u00e9";
    WriteFile(reversed);
    ASSERT_EQ(RunPeer(L"write \"" + file_ + L"\""), 0u) << label;
    CString read;
    ASSERT_TRUE(GetTextFromClipborder(read)) << label;
    EXPECT_EQ(read.str(), reversed) << label;
    EXPECT_EQ(GetTextFromClipborder().str(), reversed) << label;
  }
  // text after a zero is not part of it
  ASSERT_TRUE(CopyTextToClipborder(CString(L"cut\0here", 8)));
  EXPECT_STREQ(GetTextFromClipborder(), L"cut");
  // a clipboard without text reads as "" and still counts as read
  ASSERT_EQ(RunPeer(L"clear"), 0u);
  CString read = L"stale";
  EXPECT_TRUE(GetTextFromClipborder(read));
  EXPECT_STREQ(read, L"");
}

// Another process holds the clipboard open: a short hold is waited out, a long one is given up
// on after the retry bound, long before the holder lets go.
TEST_F(ClipboardWine, BusyClipboardIsWaitedForWithinTheBound) {
  struct Row {
    int holdMs;
    bool copy;  // CopyTextToClipborder, else GetTextFromClipborder
    bool ok;
  } const rows[] = {{150, true, true}, {150, false, true}, {2500, true, false}, {2500, false, false}};
  ASSERT_TRUE(CopyTextToClipborder(L"before"));
  for (const Row& row : rows) {
    std::wstring name = L"mivo_clipboard_held_" + std::to_wstring(GetCurrentProcessId());
    HANDLE held = CreateEventW(nullptr, TRUE, FALSE, name.c_str());
    ASSERT_TRUE(held);
    HANDLE peer = StartPeer(L"hold " + std::to_wstring(row.holdMs) + L" " + name);
    ASSERT_TRUE(peer);
    ASSERT_EQ(WaitForSingleObject(held, 30000), WAIT_OBJECT_0);
    ULONGLONG start = GetTickCount64();
    CString read;
    bool ok = row.copy ? CopyTextToClipborder(L"after") : GetTextFromClipborder(read);
    ULONGLONG elapsed = GetTickCount64() - start;
    EXPECT_EQ(ok, row.ok) << row.holdMs << (row.copy ? " copy" : " read");
    if (row.ok) {
      EXPECT_GE(elapsed, 100u) << "did not wait for the holder";
    } else {
      EXPECT_GE(elapsed, kClipboardWaitMs - 20) << "gave up early";
      EXPECT_LT(elapsed, 1500u) << "waited for the holder";
    }
    EXPECT_STREQ(read, row.ok && !row.copy ? L"before" : L"");
    WaitForSingleObject(peer, 30000);
    EXPECT_STREQ(GetTextFromClipborder(), row.ok && row.copy ? L"after" : L"before") << row.holdMs;
    CloseHandle(peer);
    CloseHandle(held);
    ASSERT_TRUE(CopyTextToClipborder(L"before"));
  }
}

}  // namespace
}  // namespace mivo::common
