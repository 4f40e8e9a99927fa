// Running clients as the system shows them: windows found by class, their texts, WM_COPYDATA with a time limit.
#include "Execute/ClientWindows.h"

#include <windows.h>

#include <vector>

const wchar_t CSystemClientWindows::kMainWindowClass[] = L"Tarnell Mivo2006 MainForm";
const wchar_t CSystemClientWindows::kTrayWindowClass[] = L"Tarnell Mivo2006 TrayIcon";

CSystemClientWindows& CSystemClientWindows::Get() {
  static CSystemClientWindows windows;
  return windows;
}

HWND CSystemClientWindows::NextMainWindow(HWND previous) {
  return FindWindowExW(nullptr, previous, kMainWindowClass, nullptr);
}

HWND CSystemClientWindows::FindTrayWindow(HWND mainWindow) {
  return FindWindowExW(mainWindow, nullptr, kTrayWindowClass, nullptr);
}

bool CSystemClientWindows::IsLiveWindow(HWND window) { return IsWindow(window) != FALSE; }

CString CSystemClientWindows::GetText(HWND window) {
  // The text of another process's window comes from the system, without a message to the
  // client, so a hung client cannot stall this.
  int length = GetWindowTextLengthW(window);
  if (length <= 0) return CString();
  std::vector<wchar_t> text(static_cast<size_t>(length) + 1, L'\0');
  int got = GetWindowTextW(window, text.data(), length + 1);
  return CString(text.data(), got > 0 ? got : 0);
}

bool CSystemClientWindows::SendCopyData(HWND target, WPARAM wParam, const void* data, size_t size, unsigned timeoutMs) {
  COPYDATASTRUCT copy = {};
  copy.dwData = 0;
  copy.cbData = static_cast<DWORD>(size);
  copy.lpData = const_cast<void*>(data);
  DWORD_PTR result = 0;
  return SendMessageTimeoutW(target, WM_COPYDATA, wParam, reinterpret_cast<LPARAM>(&copy),
                             SMTO_NORMAL | SMTO_ABORTIFHUNG, timeoutMs, &result) != 0;
}
