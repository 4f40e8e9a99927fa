#pragma once
// The launcher's application object (Windows only).
#include "toolkit/CString.h"
#include "toolkit/WinApp.h"

class CStartApp : public CWinApp {
 public:
  CStartApp();
  BOOL InitInstance() override;
  int Run() override;
  int ExitInstance() override;

  int QuitRequested = 0;

 private:
  void CleanSharedFolders(const CString& source);
  int m_reserved;  // set to 1 and never read, as it always was
  // The login-user choice window takes this place; for now a hidden window of its class
  // marks the launcher for running clients.
  HWND m_pForm = nullptr;
};

int InitGlobalStruct();
void FreeGlobalStruct();
