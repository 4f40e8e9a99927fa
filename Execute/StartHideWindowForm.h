#pragma once
// The launcher's login-user window: it holds the login-user store, and its (hidden) window
// is where running clients send their nickname replies. The choice list it shows when the
// user must pick a client comes with the UI framework.
#include <windows.h>

#include "Execute/LoginUserStore.h"

class CStartHideWindowForm : public LoginUserStore {
 public:
  static const wchar_t kClassName[];  // "TARNELL MIVO2006 StartHideWindowForm Form"

  // Reads "start.txt" in the launcher's folder.
  CStartHideWindowForm();
  // Writes the trace line and saves the store, destroying the window if it is still there.
  ~CStartHideWindowForm() override;

  // Creates the window, not shown; null on failure.
  HWND Create(HWND parent, const CString& title, DWORD style, DWORD exStyle);
  HWND GetHWND() const { return m_hwnd; }

 private:
  static LRESULT CALLBACK WindowProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);
  HWND m_hwnd = nullptr;
};
