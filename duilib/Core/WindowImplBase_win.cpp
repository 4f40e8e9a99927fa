// Builds a form's control tree from its skin when its window is created, for WindowImplBase.
#include "duilib/Core/WindowImplBase.h"

#include <windows.h>

#include "duilib/Core/Box.h"
#include "duilib/Core/GlobalManager.h"
#include "duilib/Core/WindowBuilder.h"

namespace mivo::duilib {

LRESULT WindowImplBase::MessageHandler(UINT, WPARAM, LPARAM, bool& handled) {
  handled = false;
  return 0;
}

LRESULT WindowImplBase::HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_CREATE) {
    bool handled = false;
    const LRESULT result = OnCreate(message, wParam, lParam, handled);
    if (handled) return result;
  }
  return Window::HandleMessage(message, wParam, lParam);
}

LRESULT WindowImplBase::OnCreate(UINT, WPARAM, LPARAM, bool& handled) {
  handled = true;
  WindowBuilder builder;
  Control* root = builder.Create(
      GlobalManager::GetResourcePath() + GetSkinFolder(), GetSkinFile(),
      [this](const std::wstring& tag) { return CreateControl(tag); }, this);
  auto* box = dynamic_cast<Box*>(root);
  if (!box) {
    delete root;
    return -1;
  }
  AttachRoot(box);
  AddMessageFilter(this);
  // The skin's "size" reaches the window only now, from its Window element.
  if (IsCreatedWithoutRect()) ApplyInitialSize();
  RECT client;
  GetClientRect(GetHWND(), &client);
  ArrangeRoot(UiRect{0, 0, client.right, client.bottom});
  InitWindow();
  // The keyboard starts on the first control of the tab order.
  if (!GetFocus()) SetFocus(NextFocusable(nullptr, true));
  return 0;
}

}  // namespace mivo::duilib
