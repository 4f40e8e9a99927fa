// Entry point of MivoStart.exe.
#include <windows.h>

#include "Execute/StartApp.h"

namespace {
CStartApp theApp;
}

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE, LPWSTR commandLine, int showCommand) {
  return theApp.Main(instance, commandLine, showCommand);
}
