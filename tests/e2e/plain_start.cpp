// The least a launcher can do: CreateProcessW on the client and end. The launch benchmark
// measures MivoStart.exe against it.
#include <windows.h>

int WINAPI wWinMain(HINSTANCE, HINSTANCE, LPWSTR, int) {
  wchar_t line[] = L"MyMivo.exe /sf \"5C1D7E20-94AB-4f63-8E2D-17B0C3A9F456\" ";
  STARTUPINFOW startup = {sizeof(startup)};
  PROCESS_INFORMATION info = {};
  if (!CreateProcessW(nullptr, line, nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &info)) return 1;
  CloseHandle(info.hThread);
  CloseHandle(info.hProcess);
  return 0;
}
