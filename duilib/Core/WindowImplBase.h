#pragma once
// The base of the launcher's forms (Windows only): a window whose tree comes from a skin file.
// A form names its skin folder and file and its window class; on WM_CREATE the skin is built
// (tags the builder does not know go to CreateControl), attached as the root and laid out,
// and then InitWindow runs, where the form finds its controls and attaches its handlers. The
// form is also the first of its own message filters: MessageHandler sees every message after
// WM_CREATE before the window does.
#include <string>

#include "duilib/Core/Window.h"
#include "toolkit/export.h"
#include "toolkit/platform.h"

namespace mivo::duilib {

class Control;

class MIVO_COMMON_API WindowImplBase : public Window, public IUIMessageFilter {
 public:
  WindowImplBase() = default;
  ~WindowImplBase() override = default;

  // The folder of the form's skin below GlobalManager::GetResourcePath(), and its XML file.
  std::wstring GetSkinFolder() override = 0;
  virtual std::wstring GetSkinFile() = 0;

  LRESULT MessageHandler(UINT message, WPARAM wParam, LPARAM lParam, bool& handled) override;
  LRESULT HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

 protected:
  std::wstring GetWindowClassName() const override = 0;
  // After the skin is built and attached.
  virtual void InitWindow() {}
  // The control for a tag of the skin that the builder does not know; null leaves it out.
  virtual Control* CreateControl(const std::wstring& tag) { return nullptr; }
  // Builds the skin; -1 (the window is not created) when it cannot be read or its root is no box.
  virtual LRESULT OnCreate(UINT message, WPARAM wParam, LPARAM lParam, bool& handled);
};

}  // namespace mivo::duilib
