#pragma once
// The framework's window object, as much as the library's signatures take (Windows only): a
// holder of a window handle that a caller passes where a parent or owner window is asked for.
#if defined(_WIN32)
#include "toolkit/platform.h"

class CWnd {
 public:
  CWnd() = default;
  explicit CWnd(HWND hwnd) : m_hWnd(hwnd) {}

  // The handle held, null when the object holds no window.
  HWND GetSafeHwnd() const { return m_hWnd; }

  HWND m_hWnd = nullptr;
};
#endif
