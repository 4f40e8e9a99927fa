#pragma once
// The rows of the login-user window: one per running client, showing its nickname, built
// from the skin's row template.
#include <string>
#include <vector>

namespace mivo::duilib {
class ListBox;
class ListContainerElement;
class Window;
}  // namespace mivo::duilib

class LoginUserItem {
 public:
  LoginUserItem() = default;
  LoginUserItem(std::wstring accountName, std::wstring nickName)
      : account(std::move(accountName)), nickname(std::move(nickName)) {}
  virtual ~LoginUserItem() = default;

  std::wstring account;
  std::wstring nickname;
};

class LoginUserList {
 public:
  static constexpr const wchar_t* kRowTemplate = L"start_hide_window\\login_user_list_item.xml";
  static constexpr const wchar_t* kHeadImage = L"../start_hide_window/1.png";

  // `skinFolder` is the folder the row template is read from (ending in a separator).
  LoginUserList(mivo::duilib::ListBox& listBox, std::wstring skinFolder, mivo::duilib::Window* window);

  // Rebuilds the rows and selects the one of `selectAccount` (the first row when it is empty
  // or not among the items). False when a row cannot be built from the template.
  bool Fill(const std::vector<LoginUserItem>& items, const std::wstring& selectAccount);

 private:
  static void SetUpRow(mivo::duilib::ListContainerElement& row, const LoginUserItem& item);

  mivo::duilib::ListBox& m_listBox;
  std::wstring m_skinFolder;
  mivo::duilib::Window* m_window;
};
