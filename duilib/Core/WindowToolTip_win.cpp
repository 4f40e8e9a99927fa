// Win32 half of the window's tips: one tracking tooltip window of comctl32 per window, shown
// and hidden when the tip plan says, and the timer manager for the hover delay.
#include <windows.h>
// after windows.h, which it needs
#include <commctrl.h>

#include "duilib/Core/Window.h"
#include "duilib/Utils/TimerManager.h"

namespace mivo::duilib {

namespace {

// Below the mouse pointer, as Windows places tips.
constexpr int kBelowPointer = 20;

TTTOOLINFOW ToolOf(HWND owner, const wchar_t* text) {
  TTTOOLINFOW tool{};
  tool.cbSize = TTTOOLINFOW_V2_SIZE;  // understood by every version of comctl32
  tool.uFlags = TTF_TRACK | TTF_ABSOLUTE;
  tool.hwnd = owner;
  tool.uId = 1;
  tool.lpszText = const_cast<wchar_t*>(text);
  return tool;
}

}  // namespace

void Window::ToolTipMouse(UINT message, UiPoint pt) {
  switch (message) {
    case WM_MOUSEMOVE:
      ActOnToolTip(m_toolTip.MouseMove(ControlAt(pt), pt, static_cast<int64_t>(GetTickCount64())));
      break;
    case WM_MOUSELEAVE:
      ActOnToolTip(m_toolTip.Leave());
      break;
    default:  // a button went down
      ActOnToolTip(m_toolTip.Press());
      break;
  }
}

void Window::ActOnToolTip(const ToolTipAction& action) {
  if (!m_hwnd) return;
  if (m_toolTipWindow && !IsWindow(m_toolTipWindow)) m_toolTipWindow = nullptr;  // went with the window
  if (action.hide && m_toolTipWindow) {
    TTTOOLINFOW tool = ToolOf(m_hwnd, nullptr);
    SendMessageW(m_toolTipWindow, TTM_TRACKACTIVATE, FALSE, reinterpret_cast<LPARAM>(&tool));
  }
  if (action.waitMs > 0) {
    m_toolTipWait.Cancel();
    TimerManager::GetInstance()->AddTimer(
        m_toolTipWait.GetWeakFlag(), [this] { ActOnToolTip(m_toolTip.Due(static_cast<int64_t>(GetTickCount64()))); },
        action.waitMs, 1);
  }
  if (!action.show) return;
  if (!m_toolTipWindow) {
    INITCOMMONCONTROLSEX classes{sizeof(classes), ICC_WIN95_CLASSES};
    InitCommonControlsEx(&classes);
    m_toolTipWindow = CreateWindowExW(WS_EX_TOPMOST, TOOLTIPS_CLASSW, nullptr, WS_POPUP | TTS_NOPREFIX | TTS_ALWAYSTIP,
                                      CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, m_hwnd, nullptr,
                                      GetModuleHandleW(nullptr), nullptr);
    if (!m_toolTipWindow) return;
    TTTOOLINFOW tool = ToolOf(m_hwnd, L"");
    SendMessageW(m_toolTipWindow, TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
    SendMessageW(m_toolTipWindow, TTM_SETMAXTIPWIDTH, 0, 400);  // long tips wrap
  }
  TTTOOLINFOW tool = ToolOf(m_hwnd, action.text.c_str());
  SendMessageW(m_toolTipWindow, TTM_UPDATETIPTEXTW, 0, reinterpret_cast<LPARAM>(&tool));
  POINT at{action.at.x, action.at.y + kBelowPointer};
  ClientToScreen(m_hwnd, &at);
  SendMessageW(m_toolTipWindow, TTM_TRACKPOSITION, 0, MAKELPARAM(at.x, at.y));
  SendMessageW(m_toolTipWindow, TTM_TRACKACTIVATE, TRUE, reinterpret_cast<LPARAM>(&tool));
}

}  // namespace mivo::duilib
