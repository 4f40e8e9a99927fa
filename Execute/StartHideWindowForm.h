#pragma once
// The launcher's login-user window (Windows only). It holds the login-user store; its window,
// created hidden before the running clients are asked, is where their nickname replies
// arrive, and when the user must choose it lists the clients by nickname and sends the
// request to the one picked.
#include <windows.h>

#include <memory>
#include <vector>

#include "Execute/LoginUserList.h"
#include "Execute/LoginUserStore.h"
#include "duilib/Core/WindowImplBase.h"

namespace mivo::duilib {
class Box;
class ListBox;
struct EventArgs;
template <typename InheritType>
class LabelTemplate;
template <typename InheritType>
class CheckBoxTemplate;
class Control;
}  // namespace mivo::duilib

class CStartHideWindowForm : public mivo::duilib::WindowImplBase {
 public:
  static const wchar_t kClassName[];  // "TARNELL MIVO2006 StartHideWindowForm Form"

  // Reads "start.txt" in the launcher's folder.
  CStartHideWindowForm();
  // Writes the trace line and saves the store, destroying the window if it is still there.
  ~CStartHideWindowForm() override;

  // The login users and running clients behind the window; the replies its window receives
  // land here.
  LoginUserStore& Store() { return m_store; }
  const LoginUserStore& Store() const { return m_store; }

  std::wstring GetSkinFolder() override { return L"start_hide_window"; }
  std::wstring GetSkinFile() override { return L"start_hide_window.xml"; }
  // Nickname replies first, then the framework.
  LRESULT HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

  // Builds the window's skin the first time it is asked (the window itself exists from Create,
  // for the replies, and a start that only forwards never needs more); whether it could be
  // read. Without it the window shows nothing.
  bool BuildSkin();
  // Keeps the request text and fills the list with the running clients, selecting the last user.
  void PrepareUserList(const CString& text);
  bool OnOkClick(mivo::duilib::EventArgs* args);
  bool OnCancelClick(mivo::duilib::EventArgs* args);

  // Called once the window is gone (the application ends its loop then).
  void SetFinalMessageHook(std::function<void()> hook) { m_finalHook = std::move(hook); }

 protected:
  std::wstring GetWindowClassName() const override { return kClassName; }
  UINT GetClassStyle() const override { return CS_HREDRAW | CS_VREDRAW | CS_DBLCLKS; }
  LRESULT OnCreate(UINT message, WPARAM wParam, LPARAM lParam, bool& handled) override;
  void InitWindow() override;
  void OnFinalMessage(HWND hwnd) override;

 private:
  LoginUserStore m_store;
  mivo::duilib::LabelTemplate<mivo::duilib::Control>* m_titleLabel = nullptr;
  mivo::duilib::CheckBoxTemplate<mivo::duilib::Control>* m_rememberCheck = nullptr;
  mivo::duilib::Box* m_panelBox = nullptr;
  mivo::duilib::ListBox* m_listBox = nullptr;
  std::shared_ptr<LoginUserList> m_userList;
  std::vector<LoginUserItem> m_items;
  bool m_hasSkin = false;
  bool m_skinTried = false;
  HWND m_createdHwnd = nullptr;  // for the trace line, after the window is gone
  std::function<void()> m_finalHook;
};
