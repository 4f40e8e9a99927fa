// The application object's message loop on the system's message queue.
#include "toolkit/WinApp.h"

namespace {
CWinApp* g_app = nullptr;
}

CWinApp::CWinApp() { g_app = this; }

CWinApp* AfxGetApp() { return g_app; }

BOOL CWinApp::PumpMessage() {
  if (!GetMessageW(&m_msgCur, nullptr, 0, 0)) return FALSE;
  TranslateMessage(&m_msgCur);
  DispatchMessageW(&m_msgCur);
  return TRUE;
}

int CWinApp::Run() {
  for (;;) {
    if (!PumpMessage()) return ExitInstance();
  }
}

int CWinApp::Main(HINSTANCE instance, LPWSTR commandLine, int showCommand) {
  m_hInstance = instance;
  m_lpCmdLine = commandLine;
  m_nCmdShow = showCommand;
  if (!InitInstance()) return ExitInstance();
  return Run();
}
