// Stands in for the desktop shell: owns a top-level window of class "Progman", which the
// launcher looks for before it starts the client, until the file named by the first argument
// appears or two minutes pass. Hidden, so it works with Wine's null graphics driver.
#include <windows.h>
// after windows.h, which it needs
#include <shellapi.h>

#include "record.h"

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE, LPWSTR, int) {
  int argc = 0;
  wchar_t** argv = CommandLineToArgvW(GetCommandLineW(), &argc);
  if (!argv || argc < 2) return 1;
  const wchar_t* stopFile = argv[1];

  WNDCLASSW windowClass = {};
  windowClass.lpfnWndProc = DefWindowProcW;
  windowClass.hInstance = instance;
  windowClass.lpszClassName = L"Progman";
  if (!RegisterClassW(&windowClass)) return 3;
  HWND window =
      CreateWindowExW(0, L"Progman", L"Program Manager", WS_POPUP, 0, 0, 0, 0, nullptr, nullptr, instance, nullptr);
  if (!window) return 4;
  if (!mivo_e2e::Record("shell-ready")) return 2;

  if (!mivo_e2e::PumpUntilFileExists(stopFile, 120000)) mivo_e2e::Record("shell-timeout");
  DestroyWindow(window);
  LocalFree(argv);
  return 0;
}
