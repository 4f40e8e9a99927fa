// Stands in for the update executor UpdateExec.exe: records its start, whether the launcher's
// "update executed" event exists while it runs, and its end after MIVO_E2E_UPDATE_MS
// milliseconds; with MIVO_E2E_UPDATE_CRASH set it crashes instead of ending.
#include <windows.h>

#include "record.h"

namespace {

[[noreturn]] void Crash() {
  // A real access violation, not abort(): the runtime's abort may show a message box that
  // nobody closes. No Windows fault dialog either; the harness's Wine prefix runs winedbg
  // without its crash dialog.
  SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX);
  *static_cast<volatile int*>(nullptr) = 0;
  TerminateProcess(GetCurrentProcess(), 0xC0000005);
  for (;;) Sleep(INFINITE);
}

}  // namespace

int WINAPI wWinMain(HINSTANCE, HINSTANCE, LPWSTR, int) {
  bool recorded = mivo_e2e::Record("update");
  HANDLE event = OpenEventW(SYNCHRONIZE, FALSE, L"MIVO6 Do Update Executed Event");
  recorded = mivo_e2e::Record(event ? "update-event-seen" : "update-event-missing") && recorded;
  if (event) CloseHandle(event);
  if (DWORD ms = mivo_e2e::EnvMs(L"MIVO_E2E_UPDATE_MS", 0)) Sleep(ms);
  if (!mivo_e2e::Env(L"MIVO_E2E_UPDATE_CRASH").empty()) Crash();
  recorded = mivo_e2e::Record("update-end") && recorded;
  return recorded ? 0 : 2;
}
