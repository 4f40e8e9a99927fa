#pragma once
// The client's windows on this desktop, reached through the window manager (Windows only).
#include "Execute/LoginUserStore.h"

class CSystemClientWindows : public IClientWindows {
 public:
  static const wchar_t kMainWindowClass[];  // "Tarnell Mivo2006 MainForm"
  static const wchar_t kTrayWindowClass[];  // "Tarnell Mivo2006 TrayIcon"

  // The one instance; it holds no state.
  static CSystemClientWindows& Get();

  HWND NextMainWindow(HWND previous) override;
  HWND FindTrayWindow(HWND mainWindow) override;
  bool IsLiveWindow(HWND window) override;
  CString GetText(HWND window) override;
  // SendMessageTimeoutW without SMTO_BLOCK, so the reply the client sends back while it
  // handles the message is taken in meanwhile; SMTO_ABORTIFHUNG gives up at once on a
  // client the system already knows to be hung.
  bool SendCopyData(HWND target, WPARAM wParam, const void* data, size_t size, unsigned timeoutMs) override;
};
