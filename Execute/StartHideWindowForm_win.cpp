// The login-user window: nickname replies received, its skin built when it must be shown, the user's choice sent on.
#include "Execute/StartHideWindowForm.h"

#include "Execute/ClientWindows.h"
#include "Execute/LauncherStrings.h"
#include "common/AppPath.h"
#include "common/Conversion.h"
#include "common/MutiLanSupport.h"
#include "common/Trace.h"
#include "duilib/Core/Button.h"
#include "duilib/Core/CheckBox.h"
#include "duilib/Core/GlobalManager.h"
#include "duilib/Core/Label.h"
#include "duilib/Core/ListBox.h"

using namespace mivo::duilib;

const wchar_t CStartHideWindowForm::kClassName[] = L"TARNELL MIVO2006 StartHideWindowForm Form";

namespace {

// Wide text of the form as the list's items hold it, through UTF-8 like the store's files.
std::wstring ItemText(const CString& text) {
  return std::wstring(mivo::common::utf8_to_CString(mivo::common::CString_to_utf8(text)).GetString());
}

std::wstring Text(const wchar_t* id) { return std::wstring(LauncherText(id).GetString()); }

}  // namespace

CStartHideWindowForm::CStartHideWindowForm() : m_store(mivo::common::GetAppPath(), &CSystemClientWindows::Get()) {}

CStartHideWindowForm::~CStartHideWindowForm() {
  m_finalHook = nullptr;
  if (GetHWND() && IsWindow(GetHWND())) DestroyWindow(GetHWND());
  if (g_ITrace)
    g_ITrace->Trace(3, true, L"CStartHideWindowForm dealloc hwnd is %0x",
                    static_cast<unsigned>(reinterpret_cast<UINT_PTR>(m_createdHwnd)));
  m_store.SaveStartFile();
}

LRESULT CStartHideWindowForm::HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_COPYDATA) {
    const auto* copy = reinterpret_cast<const COPYDATASTRUCT*>(lParam);
    if (copy) m_store.OnNicknameReply(copy->lpData, copy->cbData);
  }
  return WindowImplBase::HandleMessage(message, wParam, lParam);
}

LRESULT CStartHideWindowForm::OnCreate(UINT, WPARAM, LPARAM, bool& handled) {
  // The window exists for the replies of running clients; its skin waits for BuildSkin.
  m_createdHwnd = GetHWND();
  handled = true;
  return 0;
}

bool CStartHideWindowForm::BuildSkin() {
  if (m_skinTried) return m_hasSkin;
  m_skinTried = true;
  bool handled = false;
  m_hasSkin = WindowImplBase::OnCreate(WM_CREATE, 0, 0, handled) != -1;
  if (!m_hasSkin && g_ITrace)
    g_ITrace->Trace(3, true, L"CStartHideWindowForm skin %s%s\\%s missing or unreadable",
                    GlobalManager::GetResourcePath().c_str(), GetSkinFolder().c_str(), GetSkinFile().c_str());
  return m_hasSkin;
}

void CStartHideWindowForm::InitWindow() {
  // Each step needs the one before: a skin without a control skips the rest.
  m_titleLabel = dynamic_cast<Label*>(FindControl(L"login_user_title_label"));
  if (!m_titleLabel) return;
  m_titleLabel->SetText(GlobalManager::GetTextById(L"STRID_SELECTED_USER_FORM_LOGIN_USER_TIP"));
  m_rememberCheck = dynamic_cast<CheckBox*>(FindControl(L"remember_choice_checkbox"));
  if (!m_rememberCheck) return;
  m_rememberCheck->SetText(GlobalManager::GetTextById(L"STRID_SELECTED_USER_FORM_REMEMBER_CHOICE_TIP"));
  m_panelBox = dynamic_cast<Box*>(FindControl(L"login_user_panel_box"));
  if (!m_panelBox) return;
  m_listBox = dynamic_cast<ListBox*>(FindControl(L"login_user_listbox"));
  if (!m_listBox) return;
  m_userList = std::make_shared<LoginUserList>(*m_listBox, GlobalManager::GetResourcePath(), this);
  auto* ok = dynamic_cast<Button*>(FindControl(L"ok_button"));
  if (!ok) return;
  ok->AttachClick(ToWeakCallback([this](EventArgs* args) { return OnOkClick(args); }));
  auto* cancel = dynamic_cast<Button*>(FindControl(L"cancel_button"));
  if (!cancel) return;
  cancel->AttachClick(ToWeakCallback([this](EventArgs* args) { return OnCancelClick(args); }));
  auto* close = dynamic_cast<Button*>(FindControl(L"close_btn"));
  if (!close) return;
  close->AttachClick(ToWeakCallback([this](EventArgs* args) { return OnCancelClick(args); }));
}

void CStartHideWindowForm::PrepareUserList(const CString& text) {
  m_store.SetForwardedText(text);
  if (m_userList) {
    m_items.clear();
    for (const auto& [account, client] : m_store.RunningClients())
      m_items.emplace_back(ItemText(account), ItemText(client.nickname));
    m_userList->Fill(m_items, std::wstring(m_store.GetLastUser().GetString()));
  }
  if (m_rememberCheck) m_rememberCheck->Selected(m_store.GetChoice() != 0, false);
}

bool CStartHideWindowForm::OnOkClick(EventArgs*) {
  int selected = m_listBox ? m_listBox->GetCurSel() : -1;
  if (selected < 0 || selected >= static_cast<int>(m_items.size())) {
    MessageBoxW(GetHWND(), Text(L"STRID_SELECTED_USER_FORM_SELECT_ONE_TIP").c_str(),
                Text(L"STRID_SELECTED_USER_FORM_TITLE").c_str(), MB_OK);
    return true;
  }
  CString account(m_items[static_cast<size_t>(selected)].account.c_str());
  auto client = m_store.RunningClients().find(account);
  if (client != m_store.RunningClients().end()) m_store.SendTextTo(client->second, m_store.ForwardedText());
  m_store.SetLastUser(account);
  m_store.SetChoice(m_rememberCheck && m_rememberCheck->IsSelected() ? 1 : 0);
  PostMessageW(GetHWND(), WM_CLOSE, 0, 0);
  return true;
}

bool CStartHideWindowForm::OnCancelClick(EventArgs*) {
  PostMessageW(GetHWND(), WM_CLOSE, 0, 0);
  return true;
}

void CStartHideWindowForm::OnFinalMessage(HWND hwnd) {
  WindowImplBase::OnFinalMessage(hwnd);
  if (m_finalHook) m_finalHook();
}
