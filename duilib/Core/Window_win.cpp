// Win32 half of the window: the window class and procedure, messages turned into layout,
// painting, mouse and key events, and the window's place on the screen.
#include <windows.h>
#include <windowsx.h>

#include <algorithm>

#include "duilib/Core/Box.h"
#include "duilib/Core/Control.h"
#include "duilib/Core/DpiScale.h"
#include "duilib/Core/GlobalManager.h"
#include "duilib/Core/Window.h"
#include "duilib/Render/GdiRender.h"

namespace mivo::duilib {

namespace {

#ifndef WM_DPICHANGED
constexpr UINT WM_DPICHANGED = 0x02E0;
#endif

UiRect ToUi(const RECT& r) { return UiRect{r.left, r.top, r.right, r.bottom}; }

UiPoint PointOf(LPARAM lParam) { return UiPoint{GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)}; }

// The message a window posts itself to lay out the boxes that wait; registered, so that it
// collides with no message of a form or a filter.
UINT ArrangeMessage() {
  static const UINT message = RegisterWindowMessageW(L"MivoUIArrangeWaiting");
  return message;
}

}  // namespace

void Window::InvalidateNative(const UiRect& rc) {
  if (!m_hwnd) return;
  RECT r{rc.left, rc.top, rc.right, rc.bottom};
  ::InvalidateRect(m_hwnd, &r, FALSE);
}

bool Window::ScheduleArrangeNative() { return m_hwnd && PostMessageW(m_hwnd, ArrangeMessage(), 0, 0); }

void Window::ReleaseNative() {
  if (!m_hwnd) return;
  // The object is going away: the window must not reach it any more.
  HWND hwnd = m_hwnd;
  m_hwnd = nullptr;
  SetWindowLongPtrW(hwnd, GWLP_USERDATA, 0);
  DestroyWindow(hwnd);
}

namespace {

// The first window takes the system's DPI as the scale of every skin, unless the program set
// one. The process says it is DPI-aware, so the system neither lies about the DPI nor
// stretches the window's pixels.
void UseSystemDpi() {
  static bool done = false;
  if (done) return;
  done = true;
  if (GlobalManager::IsDpiScaleEnabled()) return;
  SetProcessDPIAware();
  HDC screen = GetDC(nullptr);
  const int dpi = screen ? GetDeviceCaps(screen, LOGPIXELSY) : 96;
  if (screen) ReleaseDC(nullptr, screen);
  GlobalManager::SetDpiScale(true, DpiPercent(dpi));
}

}  // namespace

HWND Window::Create(HWND parent, const std::wstring& title, DWORD style, DWORD exStyle, bool layered, UiRect rc) {
  if (m_hwnd) return nullptr;
  UseSystemDpi();
  const std::wstring className = GetWindowClassName();
  WNDCLASSEXW wc{};
  wc.cbSize = sizeof(wc);
  wc.style = GetClassStyle();
  wc.lpfnWndProc = &Window::WndProc;
  wc.hInstance = GetModuleHandleW(nullptr);
  wc.hCursor = LoadCursorW(nullptr, IDC_ARROW);
  wc.lpszClassName = className.c_str();
  if (!RegisterClassExW(&wc) && GetLastError() != ERROR_CLASS_ALREADY_EXISTS) return nullptr;

  if (layered) exStyle |= WS_EX_LAYERED;
  m_createdWithoutRect = rc.GetWidth() <= 0 || rc.GetHeight() <= 0;
  // Top-level overlapped windows may leave position and size to the system; others may not.
  const bool overlapped = (style & (WS_CHILD | WS_POPUP)) == 0;
  int x = overlapped ? CW_USEDEFAULT : 0, y = overlapped ? CW_USEDEFAULT : 0;
  int width = overlapped ? CW_USEDEFAULT : 0, height = overlapped ? CW_USEDEFAULT : 0;
  if (!m_createdWithoutRect) {
    x = rc.left;
    y = rc.top;
    width = rc.GetWidth();
    height = rc.GetHeight();
  } else if (UiSize size = GetInitialSize(); size.cx > 0 && size.cy > 0) {
    RECT frame{0, 0, size.cx, size.cy};
    AdjustWindowRectEx(&frame, style, FALSE, exStyle);
    width = frame.right - frame.left;
    height = frame.bottom - frame.top;
  }
  HWND hwnd = CreateWindowExW(exStyle, className.c_str(), title.c_str(), style, x, y, width, height, parent, nullptr,
                              GetModuleHandleW(nullptr), this);
  if (!hwnd) return nullptr;
  // Layered windows are painted like others here; fully opaque, they show what WM_PAINT drew.
  if (layered) SetLayeredWindowAttributes(hwnd, 0, 255, LWA_ALPHA);
  // A window created hidden may get its first WM_SIZE only when shown: lay out now.
  RECT client;
  GetClientRect(hwnd, &client);
  ArrangeRoot(ToUi(client));
  return hwnd;
}

void Window::ApplyInitialSize() {
  const UiSize size = GetInitialSize();
  if (!m_hwnd || size.cx <= 0 || size.cy <= 0) return;
  RECT frame{0, 0, size.cx, size.cy};
  AdjustWindowRectEx(&frame, static_cast<DWORD>(GetWindowLongPtrW(m_hwnd, GWL_STYLE)), FALSE,
                     static_cast<DWORD>(GetWindowLongPtrW(m_hwnd, GWL_EXSTYLE)));
  SetWindowPos(m_hwnd, nullptr, 0, 0, frame.right - frame.left, frame.bottom - frame.top,
               SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
}

void Window::CenterWindow() {
  if (!m_hwnd) return;
  RECT window;
  GetWindowRect(m_hwnd, &window);
  MONITORINFO monitor{};
  monitor.cbSize = sizeof(monitor);
  GetMonitorInfoW(MonitorFromWindow(m_hwnd, MONITOR_DEFAULTTONEAREST), &monitor);
  UiRect around = ToUi(monitor.rcWork);
  HWND owner = (GetWindowLongPtrW(m_hwnd, GWL_STYLE) & WS_CHILD) ? ::GetParent(m_hwnd) : ::GetWindow(m_hwnd, GW_OWNER);
  if (owner && IsWindowVisible(owner) && !IsIconic(owner)) {
    RECT ownerRect;
    GetWindowRect(owner, &ownerRect);
    around = ToUi(ownerRect);
  }
  UiRect placed = CenterRect(ToUi(window), around, ToUi(monitor.rcWork));
  SetWindowPos(m_hwnd, nullptr, placed.left, placed.top, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

void Window::ShowWindow(bool show, bool takeFocus) {
  if (m_hwnd) ::ShowWindow(m_hwnd, show ? (takeFocus ? SW_SHOWNORMAL : SW_SHOWNOACTIVATE) : SW_HIDE);
}

void Window::Close() {
  if (m_hwnd) PostMessageW(m_hwnd, WM_CLOSE, 0, 0);
}

void Window::AddMessageFilter(IUIMessageFilter* filter) {
  if (filter && std::find(m_filters.begin(), m_filters.end(), filter) == m_filters.end()) m_filters.push_back(filter);
}

bool Window::RemoveMessageFilter(IUIMessageFilter* filter) {
  auto found = std::find(m_filters.begin(), m_filters.end(), filter);
  if (found == m_filters.end()) return false;
  m_filters.erase(found);
  return true;
}

LRESULT CALLBACK Window::WndProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
  Window* window = nullptr;
  if (message == WM_NCCREATE) {
    window = static_cast<Window*>(reinterpret_cast<CREATESTRUCTW*>(lParam)->lpCreateParams);
    if (window) {
      window->m_hwnd = hwnd;
      SetWindowLongPtrW(hwnd, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(window));
    }
  } else {
    window = reinterpret_cast<Window*>(GetWindowLongPtrW(hwnd, GWLP_USERDATA));
  }
  if (!window) return DefWindowProcW(hwnd, message, wParam, lParam);
  if (message == ArrangeMessage() && message != 0) {  // the window's own: forms and filters never see it
    window->m_arrangePosted = false;
    window->ArrangeWaiting();
    return 0;
  }
  if (message != WM_NCDESTROY) return window->HandleMessage(message, wParam, lParam);
  const LRESULT result = window->HandleMessage(message, wParam, lParam);
  SetWindowLongPtrW(hwnd, GWLP_USERDATA, 0);
  window->m_hwnd = nullptr;
  window->m_trackingMouse = false;
  window->m_arrangePosted = false;  // its message went with the window
  window->OnFinalMessage(hwnd);     // may delete the window object: nothing after this
  return result;
}

LRESULT Window::HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  std::weak_ptr<nbase::WeakFlag> alive = GetWeakFlag();
  HWND hwnd = m_hwnd;
  // A filter may remove itself or others: ask the ones still there, in order.
  const std::vector<IUIMessageFilter*> filters = m_filters;
  for (IUIMessageFilter* filter : filters) {
    if (std::find(m_filters.begin(), m_filters.end(), filter) == m_filters.end()) continue;
    bool handled = false;
    const LRESULT result = filter->MessageHandler(message, wParam, lParam, handled);
    if (handled) return result;
    if (alive.expired()) return DefWindowProcW(hwnd, message, wParam, lParam);
  }
  LRESULT result = 0;
  if (HandleOwnMessage(message, wParam, lParam, result)) return result;
  return DefWindowProcW(hwnd, message, wParam, lParam);
}

bool Window::HandleOwnMessage(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) {
  switch (message) {
    case WM_SIZE:
      if (wParam != SIZE_MINIMIZED) ArrangeRoot(UiRect{0, 0, LOWORD(lParam), HIWORD(lParam)});
      return false;
    case WM_ERASEBKGND:
      result = 1;  // WM_PAINT covers everything
      return true;
    case WM_PAINT:
      OnPaint();
      return true;
    case WM_NCHITTEST: {
      result = DefWindowProcW(m_hwnd, message, wParam, lParam);
      POINT pt{GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)};
      ScreenToClient(m_hwnd, &pt);
      if (result == HTCLIENT && IsCaptionAt(UiPoint{pt.x, pt.y})) result = HTCAPTION;
      return true;
    }
    case WM_SETCURSOR: {
      // Over a control, its "cursortype"; elsewhere (and for "arrow") the class's arrow.
      Control* hot = GetHotControl();
      if (LOWORD(lParam) != HTCLIENT || !hot || hot->GetCursorType() == kCursorArrow) return false;
      SetCursor(LoadCursorW(nullptr, hot->GetCursorType() == kCursorHand ? IDC_HAND : IDC_IBEAM));
      result = TRUE;
      return true;
    }
    case WM_MOUSEMOVE:
      ToolTipMouse(message, PointOf(lParam));
      if (!m_trackingMouse) {
        TRACKMOUSEEVENT track{sizeof(track), TME_LEAVE, m_hwnd, 0};
        m_trackingMouse = TrackMouseEvent(&track) != FALSE;
      }
      HandleMouseEvent(kEventMouseMove, PointOf(lParam));
      return true;
    case WM_MOUSELEAVE:
      ToolTipMouse(message, UiPoint{-1, -1});
      m_trackingMouse = false;
      HandleMouseEvent(kEventMouseLeave, UiPoint{-1, -1});
      return true;
    case WM_LBUTTONDOWN:
    case WM_LBUTTONDBLCLK:
      ToolTipMouse(message, PointOf(lParam));
      SetCapture(m_hwnd);
      HandleMouseEvent(message == WM_LBUTTONDOWN ? kEventMouseButtonDown : kEventMouseDoubleClick, PointOf(lParam));
      return true;
    case WM_LBUTTONUP: {
      HWND hwnd = m_hwnd;
      HandleMouseEvent(kEventMouseButtonUp, PointOf(lParam));
      // The handlers may have destroyed the window; the capture goes only if it is ours.
      if (GetCapture() == hwnd) ReleaseCapture();
      return true;
    }
    case WM_CAPTURECHANGED:
      if (reinterpret_cast<HWND>(lParam) != m_hwnd) CancelPress();
      return true;
    case WM_DPICHANGED: {
      // Moved to a monitor of another scale (or the scale changed): the skin follows, and the
      // window takes the rectangle the system suggests for it.
      ApplyDpiScale(DpiPercent(LOWORD(wParam)));
      if (const auto* suggested = reinterpret_cast<const RECT*>(lParam))
        SetWindowPos(m_hwnd, nullptr, suggested->left, suggested->top, suggested->right - suggested->left,
                     suggested->bottom - suggested->top, SWP_NOZORDER | SWP_NOACTIVATE);
      Invalidate(m_clientArea);
      return true;
    }
    case WM_MOUSEWHEEL: {
      POINT pt{GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)};  // on the screen, unlike other mouse messages
      ScreenToClient(m_hwnd, &pt);
      HandleWheel(UiPoint{pt.x, pt.y}, GET_WHEEL_DELTA_WPARAM(wParam));
      return true;
    }
    case WM_KEYDOWN:
      HandleKeyDown(static_cast<uint32_t>(wParam), GetKeyState(VK_SHIFT) < 0);
      return true;
    case WM_SETFOCUS:
      // Back to the window: the focus is where it was, or on the first control that takes it.
      if (!GetFocus()) SetFocus(NextFocusable(nullptr, true));
      return false;
    case WM_CLOSE:
      DestroyWindow(m_hwnd);
      return true;
    default:
      return false;
  }
}

void Window::PaintInto(HDC dc, int width, int height) {
  RECT all{0, 0, width, height};
  ::FillRect(dc, &all, static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH)));
  GdiRenderContext render(dc, width, height);
  Paint(render);
}

void Window::OnPaint() {
  // Before BeginPaint, so that what the layout moves is part of this paint.
  ArrangeWaiting();
  PAINTSTRUCT ps;
  HDC dc = BeginPaint(m_hwnd, &ps);
  RECT client;
  GetClientRect(m_hwnd, &client);
  OffscreenBitmap buffer(client.right, client.bottom);
  if (dc && buffer.IsValid()) {
    PaintInto(buffer.GetDC(), buffer.GetWidth(), buffer.GetHeight());
    const RECT& r = ps.rcPaint;
    BitBlt(dc, r.left, r.top, r.right - r.left, r.bottom - r.top, buffer.GetDC(), r.left, r.top, SRCCOPY);
  }
  EndPaint(m_hwnd, &ps);
  ClearUpdate();
}

bool Window::RenderToPng(const std::wstring& path) {
  UiRect client = m_clientArea;
  if (m_hwnd) {
    RECT r;
    GetClientRect(m_hwnd, &r);
    client = ToUi(r);
  }
  OffscreenBitmap buffer(client.GetWidth(), client.GetHeight());
  if (!buffer.IsValid()) return false;
  PaintInto(buffer.GetDC(), buffer.GetWidth(), buffer.GetHeight());
  GdiFlush();
  return SavePixelsAsPng(buffer.GetBits(), buffer.GetWidth(), buffer.GetHeight(), path);
}

}  // namespace mivo::duilib
