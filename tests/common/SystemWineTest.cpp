// The Win32 system families against Wine's real token, registry, window station and winmm.
#include <gtest/gtest.h>
#include <windows.h>

#include <mmsystem.h>

#include "common/AdminCheck.h"
#include "common/AudioDevices.h"
#include "common/Browser.h"
#include "common/Dialogs.h"
#include "common/HotKey.h"

namespace mc = mivo::common;

namespace {

// Wine runs every process at high integrity, as an administrator.
TEST(AdminCheckWine, AdministratorAndElevated) {
  EXPECT_TRUE(mc::IsUserAdministrator());
  EXPECT_TRUE(mc::IsProcessElevated());
}

const wchar_t kUserChoice[] = L"Software\\Microsoft\\Windows\\Shell\\Associations\\UrlAssociations\\http\\UserChoice";

bool EndsWithNoCase(const CString& text, const wchar_t* tail) {
  int length = lstrlenW(tail);
  return text.GetLength() >= length && text.Right(length).CompareNoCase(tail) == 0;
}

// Wine's prefix already names a user choice ("http"): it is replaced for the test and put back.
TEST(BrowserWine, TheUsersChoiceThenTheMachineHandler) {
  CString machine = mc::GetDefaultBrowserPath();
  EXPECT_TRUE(EndsWithNoCase(machine, L"\\winebrowser.exe")) << machine.GetString();
  EXPECT_NE(GetFileAttributesW(machine), INVALID_FILE_ATTRIBUTES) << machine.GetString();

  HKEY choice = nullptr;
  ASSERT_EQ(
      RegCreateKeyExW(HKEY_CURRENT_USER, kUserChoice, 0, nullptr, 0, KEY_READ | KEY_WRITE, nullptr, &choice, nullptr),
      ERROR_SUCCESS);
  wchar_t saved[256] = {};
  DWORD savedBytes = sizeof(saved) - sizeof(wchar_t);
  bool hadChoice = RegQueryValueExW(choice, L"ProgId", nullptr, nullptr, reinterpret_cast<BYTE*>(saved), &savedBytes) ==
                   ERROR_SUCCESS;
  CString progId;
  progId.Format(L"MivoTestBrowser.%lu", GetCurrentProcessId());
  RegSetValueExW(choice, L"ProgId", 0, REG_SZ, reinterpret_cast<const BYTE*>(progId.GetString()),
                 (progId.GetLength() + 1) * sizeof(wchar_t));
  CString missingClass = mc::GetDefaultBrowserPath();  // no such class yet: the machine's handler
  HKEY command = nullptr;
  ASSERT_EQ(RegCreateKeyExW(HKEY_CLASSES_ROOT, progId + L"\\shell\\open\\command", 0, nullptr, 0, KEY_WRITE, nullptr,
                            &command, nullptr),
            ERROR_SUCCESS);
  const wchar_t text[] = L"\"%SystemRoot%\\Fake Browser\\fake.exe\" --url \"%1\"";
  RegSetValueExW(command, nullptr, 0, REG_EXPAND_SZ, reinterpret_cast<const BYTE*>(text), sizeof(text));
  RegCloseKey(command);
  CString chosen = mc::GetDefaultBrowserPath();

  RegDeleteTreeW(HKEY_CLASSES_ROOT, progId);
  if (hadChoice)
    RegSetValueExW(choice, L"ProgId", 0, REG_SZ, reinterpret_cast<const BYTE*>(saved),
                   (lstrlenW(saved) + 1) * sizeof(wchar_t));
  else
    RegDeleteValueW(choice, L"ProgId");
  RegCloseKey(choice);

  EXPECT_EQ(missingClass, machine);
  wchar_t windows[MAX_PATH] = {};
  GetWindowsDirectoryW(windows, MAX_PATH);
  EXPECT_EQ(chosen, CString(windows) + L"\\Fake Browser\\fake.exe");
  EXPECT_EQ(mc::GetDefaultBrowserPath(), machine);
}

HWND MakeWindow() {
  return CreateWindowExW(0, L"STATIC", L"hotkey test", WS_POPUP, 0, 0, 10, 10, nullptr, nullptr,
                         GetModuleHandleW(nullptr), nullptr);
}

// A combination nobody else uses, so that parallel test programs cannot collide.
TEST(HotKeyWine, RegistrationAndConflicts) {
  HWND first = MakeWindow(), second = MakeWindow();
  ASSERT_TRUE(first && second);
  EXPECT_TRUE(mc::RegisterAppHotKey(first, 1, L"Ctrl+Alt+Shift+F13"));
  EXPECT_FALSE(mc::RegisterAppHotKey(second, 1, L"ctrl + shift + alt + f13"));  // taken
  EXPECT_TRUE(mc::RegisterAppHotKey(second, 2, L"Ctrl+Alt+Shift+F14"));
  EXPECT_FALSE(mc::RegisterAppHotKey(second, 3, L"Ctrl+Alt"));  // not a hot key
  EXPECT_TRUE(mc::UnregisterAppHotKey(first, 1));
  EXPECT_FALSE(mc::UnregisterAppHotKey(first, 1));
  EXPECT_TRUE(mc::RegisterAppHotKey(second, 1, mc::kHotKeyControl | mc::kHotKeyAlt | mc::kHotKeyShift, 0x7C));
  EXPECT_TRUE(mc::UnregisterAppHotKey(second, 1));
  EXPECT_TRUE(mc::UnregisterAppHotKey(second, 2));
  DestroyWindow(first);
  DestroyWindow(second);
}

// Another process holding the combination: refused until that process ends.
TEST(HotKeyWine, ConflictWithAnotherProcess) {
  CString ready, release;
  ready.Format(L"MivoHotKeyHeld.%lu", GetCurrentProcessId());
  release.Format(L"MivoHotKeyRelease.%lu", GetCurrentProcessId());
  HANDLE readyEvent = CreateEventW(nullptr, TRUE, FALSE, ready);
  HANDLE releaseEvent = CreateEventW(nullptr, TRUE, FALSE, release);
  wchar_t self[MAX_PATH] = {};
  GetModuleFileNameW(nullptr, self, MAX_PATH);
  CString helper(self);
  helper = helper.Left(helper.ReverseFind(L'\\') + 1) + L"hotkey_holder.exe";
  CString commandLine;
  commandLine.Format(L"\"%s\" %s %s", helper.GetString(), ready.GetString(), release.GetString());
  STARTUPINFOW startup = {sizeof(startup)};
  PROCESS_INFORMATION process = {};
  ASSERT_TRUE(CreateProcessW(helper, commandLine.GetBuffer(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                             &process));
  commandLine.ReleaseBuffer();
  ASSERT_EQ(WaitForSingleObject(readyEvent, 10000), WAIT_OBJECT_0);
  HWND window = MakeWindow();
  EXPECT_FALSE(mc::RegisterAppHotKey(window, 1, L"Ctrl+Alt+Shift+F15"));
  SetEvent(releaseEvent);
  WaitForSingleObject(process.hProcess, 10000);
  DWORD exitCode = 99;
  GetExitCodeProcess(process.hProcess, &exitCode);
  EXPECT_EQ(exitCode, 0u);                                               // the helper did hold the key
  EXPECT_TRUE(mc::RegisterAppHotKey(window, 1, L"Ctrl+Alt+Shift+F15"));  // freed with its process
  EXPECT_TRUE(mc::UnregisterAppHotKey(window, 1));
  DestroyWindow(window);
  CloseHandle(process.hProcess);
  CloseHandle(process.hThread);
  CloseHandle(readyEvent);
  CloseHandle(releaseEvent);
}

TEST(AudioDevicesWine, ListsEveryDeviceByName) {
  std::vector<CString> outputs(1), inputs(1);
  ASSERT_TRUE(mc::GetAudioDevices(outputs, inputs));
  EXPECT_EQ(outputs.size(), waveOutGetNumDevs());
  EXPECT_EQ(inputs.size(), waveInGetNumDevs());
  for (const CString& name : outputs) EXPECT_FALSE(name.IsEmpty());
  for (const CString& name : inputs) EXPECT_FALSE(name.IsEmpty());
}

// The file dialog's top-level window, seen as it is made: its owner is kept and it is told to
// cancel at once.
HHOOK g_dialogHook = nullptr;
bool g_dialogSeen = false;
HWND g_dialogOwner = nullptr;

LRESULT CALLBACK CancelFileDialog(int code, WPARAM wParam, LPARAM lParam) {
  if (code == HCBT_CREATEWND && !g_dialogSeen) {
    HWND window = reinterpret_cast<HWND>(wParam);
    const CREATESTRUCTW* create = reinterpret_cast<CBT_CREATEWNDW*>(lParam)->lpcs;
    wchar_t name[16] = {};
    GetClassNameW(window, name, 16);
    if (lstrcmpW(name, L"#32770") == 0 && !(create->style & WS_CHILD)) {
      g_dialogSeen = true;
      g_dialogOwner = create->hwndParent;
      PostMessageW(window, WM_COMMAND, IDCANCEL, 0);
    }
  }
  return CallNextHookEx(g_dialogHook, code, wParam, lParam);
}

TEST(DialogsWine, TheOpenFileDialogBelongsToTheGivenParent) {
  HWND parent =
      CreateWindowW(L"STATIC", L"parent", WS_OVERLAPPEDWINDOW, 0, 0, 200, 100, nullptr, nullptr, nullptr, nullptr);
  ASSERT_NE(parent, nullptr);
  CWnd wnd(parent);
  g_dialogHook = SetWindowsHookExW(WH_CBT, CancelFileDialog, nullptr, GetCurrentThreadId());
  ASSERT_NE(g_dialogHook, nullptr);
  EXPECT_TRUE(mc::OpenFileDialog(TRUE, L"txt", nullptr, L"Text|*.txt|", L"Pick", 0, &wnd).IsEmpty());
  UnhookWindowsHookEx(g_dialogHook);
  EXPECT_TRUE(g_dialogSeen);
  EXPECT_EQ(g_dialogOwner, parent);
  DestroyWindow(parent);
}

}  // namespace
