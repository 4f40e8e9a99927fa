// Holds a hot key in a process of its own: registers Ctrl+Alt+Shift+F15 for a window, sets the
// event named by argv[1], and keeps the key until the event named by argv[2] is set (10 s at
// most). Exit code 0 when it held the key, 1 when the registration failed.
#include <windows.h>

int main(int argc, char** argv) {
  if (argc < 3) return 2;
  HWND window = CreateWindowExW(0, L"STATIC", L"hotkey holder", WS_POPUP, 0, 0, 1, 1, nullptr, nullptr,
                                GetModuleHandleW(nullptr), nullptr);
  BOOL held = window && RegisterHotKey(window, 1, MOD_CONTROL | MOD_ALT | MOD_SHIFT, VK_F15);
  HANDLE ready = OpenEventA(EVENT_MODIFY_STATE, FALSE, argv[1]);
  HANDLE release = OpenEventA(SYNCHRONIZE, FALSE, argv[2]);
  if (ready) SetEvent(ready);
  if (held && release) WaitForSingleObject(release, 10000);
  return held ? 0 : 1;
}
