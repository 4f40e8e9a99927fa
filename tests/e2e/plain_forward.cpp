// The least a launcher can do when a client runs: find the client's tray window and send it the
// command line (UTF-8, with its zero) in one WM_COPYDATA. The forward benchmark measures
// MivoStart.exe against it.
#include <windows.h>

#include <string>

int WINAPI wWinMain(HINSTANCE, HINSTANCE, LPWSTR commandLine, int) {
  HWND main = FindWindowExW(nullptr, nullptr, L"Tarnell Mivo2006 MainForm", nullptr);
  HWND tray = main ? FindWindowExW(main, nullptr, L"Tarnell Mivo2006 TrayIcon", nullptr) : nullptr;
  if (!tray) return 1;
  int size = WideCharToMultiByte(CP_UTF8, 0, commandLine, -1, nullptr, 0, nullptr, nullptr);
  std::string text(static_cast<size_t>(size > 0 ? size : 1), '\0');
  WideCharToMultiByte(CP_UTF8, 0, commandLine, -1, text.data(), size, nullptr, nullptr);
  COPYDATASTRUCT copy = {0, static_cast<DWORD>(text.size()), text.data()};
  DWORD_PTR result = 0;
  return SendMessageTimeoutW(tray, WM_COPYDATA, 0, reinterpret_cast<LPARAM>(&copy), SMTO_NORMAL, 5000, &result) ? 0 : 1;
}
