// Stands in for the person in front of the login-user window: waits until the window of
// class "TARNELL MIVO2006 StartHideWindowForm Form" is shown, records its title and size,
// then clicks through it with posted mouse messages, one step per argument:
//   row:N     the N-th account row (0 first)
//   remember  the "remember my choice" check box
//   ok, cancel, close   the buttons
//   key:NAME  a key pressed on the window (tab, up, down, home,
//             end, pgup, pgdn, space, enter, esc), with no mouse at all
// The positions follow the default skin's layout (a 340x300 client area).
#include <windows.h>
// after windows.h, which it needs
#include <shellapi.h>

#include <string>
#include <utility>

#include "record.h"

namespace {

const wchar_t kFormClass[] = L"TARNELL MIVO2006 StartHideWindowForm Form";

POINT Where(const std::wstring& step) {
  if (step.rfind(L"row:", 0) == 0) return POINT{170, 66 + 48 * _wtoi(step.c_str() + 4) + 24};
  if (step == L"remember") return POINT{20, 230};
  if (step == L"ok") return POINT{198, 268};
  if (step == L"cancel") return POINT{288, 268};
  if (step == L"close") return POINT{322, 17};
  return POINT{-1, -1};
}

// The virtual key a "key:" step names, or 0.
UINT KeyOf(const std::wstring& name) {
  const std::pair<const wchar_t*, UINT> keys[] = {
      {L"tab", VK_TAB},    {L"up", VK_UP},     {L"down", VK_DOWN},   {L"home", VK_HOME},    {L"end", VK_END},
      {L"pgup", VK_PRIOR}, {L"pgdn", VK_NEXT}, {L"space", VK_SPACE}, {L"enter", VK_RETURN}, {L"esc", VK_ESCAPE},
  };
  for (const auto& [key, vk] : keys)
    if (name == key) return vk;
  return 0;
}

void Press(HWND form, UINT vk) {
  PostMessageW(form, WM_KEYDOWN, vk, 1);
  PostMessageW(form, WM_KEYUP, vk, 0xC0000001);
  Sleep(150);
}

void Click(HWND form, POINT at) {
  LPARAM position = MAKELPARAM(at.x, at.y);
  PostMessageW(form, WM_MOUSEMOVE, 0, position);
  PostMessageW(form, WM_LBUTTONDOWN, MK_LBUTTON, position);
  PostMessageW(form, WM_LBUTTONUP, 0, position);
  Sleep(150);  // let the window handle the click before the next one
}

}  // namespace

int WINAPI wWinMain(HINSTANCE, HINSTANCE, LPWSTR, int) {
  int argc = 0;
  wchar_t** argv = CommandLineToArgvW(GetCommandLineW(), &argc);
  if (!argv) return 1;
  HWND form = nullptr;
  const ULONGLONG deadline = GetTickCount64() + 60000;
  while (GetTickCount64() < deadline) {
    form = FindWindowW(kFormClass, nullptr);
    if (form && IsWindowVisible(form)) break;
    form = nullptr;
    Sleep(50);
  }
  if (!form) {
    mivo_e2e::RecordText("user-no-form", "");
    return 2;
  }
  wchar_t title[256] = {};
  GetWindowTextW(form, title, 256);
  RECT client = {};
  GetClientRect(form, &client);
  mivo_e2e::RecordText("user-form-shown", mivo_e2e::Utf8(title) + " " + std::to_string(client.right) + "x" +
                                              std::to_string(client.bottom));
  Sleep(300);  // the window paints and settles
  for (int i = 1; i < argc; ++i) {
    const std::wstring step = argv[i];
    if (step.rfind(L"key:", 0) == 0) {
      const UINT vk = KeyOf(step.substr(4));
      if (!vk) return 3;
      Press(form, vk);
      mivo_e2e::RecordText("user-pressed", mivo_e2e::Utf8(argv[i]));
      continue;
    }
    POINT at = Where(step);
    if (at.x < 0) return 3;
    Click(form, at);
    mivo_e2e::RecordText("user-clicked", mivo_e2e::Utf8(argv[i]));
  }
  LocalFree(argv);
  return 0;
}
