#pragma once
// The launcher's application object (Windows only).
#include <memory>

#include "Execute/StartHideWindowForm.h"
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
  void OnFormFinalMessage();
  int m_reserved;  // 1 from construction; nothing reads it
  // The login-user window, made when there is a request to hand over to a running client.
  std::unique_ptr<CStartHideWindowForm> m_pForm;
};

// Opens the module manager, starts the UI framework and makes the "Temp" and "users" folders.
// Always returns 1: no step reports a failure, and a launcher without those folders can still
// hand a request over or start the client, so there is no error box to show.
int InitGlobalStruct();
void FreeGlobalStruct();
