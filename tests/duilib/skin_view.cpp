// Shows a skin in a window of its own for a while, then saves what it paints, for pictures a
// person looks at (scripts/ui_shots.sh takes the screen's picture of the window meanwhile).
//   skin_view.exe RESOURCES FOLDER FILE PNG [MILLISECONDS]
// RESOURCES is the resource root (ending in a backslash), FOLDER the skin's folder below it and
// FILE its XML file there; the window shows for MILLISECONDS (default 4000).
#include <windows.h>

#include <cwchar>

#include "duilib/Core/Box.h"
#include "duilib/Core/GlobalManager.h"
#include "duilib/Core/Window.h"
#include "duilib/Core/WindowBuilder.h"

using namespace mivo::duilib;

int wmain(int argc, wchar_t** argv) {
  if (argc < 5) {
    std::fwprintf(stderr, L"usage: skin_view RESOURCES FOLDER FILE PNG [MILLISECONDS]\n");
    return 2;
  }
  const DWORD showMs = argc > 5 ? static_cast<DWORD>(std::wcstoul(argv[5], nullptr, 10)) : 4000;
  GlobalManager::Startup(argv[1], argv[2]);
  Window window;
  WindowBuilder builder;
  auto* root = dynamic_cast<Box*>(builder.Create(GlobalManager::GetResourcePath(), argv[3], nullptr, &window));
  if (!root) {
    std::fwprintf(stderr, L"skin_view: %ls%ls not built\n", GlobalManager::GetResourcePath().c_str(), argv[3]);
    return 1;
  }
  window.AttachRoot(root);
  if (!window.Create(nullptr, L"Mivo skin", WS_POPUP, 0)) return 1;
  window.CenterWindow();
  window.ShowWindow(true, false);
  const DWORD start = GetTickCount();
  while (GetTickCount() - start < showMs) {
    MSG msg;
    while (PeekMessageW(&msg, nullptr, 0, 0, PM_REMOVE)) {
      TranslateMessage(&msg);
      DispatchMessageW(&msg);
    }
    MsgWaitForMultipleObjects(0, nullptr, FALSE, 20, QS_ALLINPUT);
  }
  return window.RenderToPng(argv[4]) ? 0 : 1;
}
