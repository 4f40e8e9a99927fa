// Stands in for the client MyMivo.exe: records its command line and ends, after staying
// alive MIVO_E2E_CLIENT_MS milliseconds (default 0) so a test can see it running.
#include <windows.h>

#include "record.h"

int WINAPI wWinMain(HINSTANCE, HINSTANCE, LPWSTR, int) {
  bool recorded = mivo_e2e::Record("client");
  if (DWORD stay = mivo_e2e::EnvMs(L"MIVO_E2E_CLIENT_MS", 0)) Sleep(stay);
  return recorded ? 0 : 2;
}
