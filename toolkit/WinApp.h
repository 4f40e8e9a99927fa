#pragma once
// The framework's application object, as much as the launcher uses (Windows only): the
// start-up arguments, InitInstance, the message loop in Run, and ExitInstance.
#if defined(_WIN32)
#include <windows.h>

class CWinApp {
 public:
  CWinApp();
  virtual ~CWinApp() = default;
  virtual BOOL InitInstance() { return TRUE; }
  virtual int Run();
  virtual int ExitInstance() { return 0; }
  virtual BOOL OnIdle(LONG) { return FALSE; }
  virtual BOOL PumpMessage();
  virtual BOOL IsIdleMessage(MSG*) { return TRUE; }

  // Drives the object: InitInstance, then Run or ExitInstance. Called from wWinMain.
  int Main(HINSTANCE instance, LPWSTR commandLine, int showCommand);

  HINSTANCE m_hInstance = nullptr;
  LPWSTR m_lpCmdLine = nullptr;
  int m_nCmdShow = SW_SHOWNORMAL;

 protected:
  MSG m_msgCur = {};
};

CWinApp* AfxGetApp();
#endif
