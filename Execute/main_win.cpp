// Entry point of MivoStart.exe. The launcher's start-up arrives here later; for now the
// program only has to start, carry the library's exports, and end.
#include <windows.h>

int WINAPI wWinMain(HINSTANCE, HINSTANCE, LPWSTR, int) { return 0; }
