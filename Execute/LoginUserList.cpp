#include "Execute/LoginUserList.h"

#include "duilib/Core/Label.h"
#include "duilib/Core/ListBox.h"
#include "duilib/Core/WindowBuilder.h"

using namespace mivo::duilib;

LoginUserList::LoginUserList(ListBox& listBox, std::wstring skinFolder, Window* window)
    : m_listBox(listBox), m_skinFolder(std::move(skinFolder)), m_window(window) {}

void LoginUserList::SetUpRow(ListContainerElement& row, const LoginUserItem& item) {
  // The account itself is never shown, only the nickname.
  if (auto* name = dynamic_cast<Label*>(row.FindSubControl(L"show_name_label"))) name->SetText(item.nickname);
  if (Control* head = row.FindSubControl(L"user_head_icon")) {
    head->SetAttribute(L"normalimage", kHeadImage);
    head->SetAttribute(L"pushedimage", kHeadImage);
  }
  row.SetAttribute(L"normalcolor", L"white");
  row.SetAttribute(L"hotcolor", L"d8ebeb");
  row.SetAttribute(L"pushedcolor", L"c8e4e4");
  row.SetAttribute(L"selectednormalimage", L"bk_listitem_selected");
  row.SetAttribute(L"selectednormalcolor", L"c8e4e4");
}

bool LoginUserList::Fill(const std::vector<LoginUserItem>& items, const std::wstring& selectAccount) {
  m_listBox.RemoveAll();
  int selected = 0;
  for (size_t i = 0; i < items.size(); ++i) {
    WindowBuilder builder;
    Control* built = builder.Create(m_skinFolder, kRowTemplate, nullptr, m_window);
    auto* row = dynamic_cast<ListContainerElement*>(built);
    if (!row) {
      delete built;
      return false;
    }
    SetUpRow(*row, items[i]);
    m_listBox.Add(row);
    if (!selectAccount.empty() && items[i].account == selectAccount) selected = static_cast<int>(i);
  }
  if (!items.empty()) m_listBox.SelectItem(selected, false);
  return true;
}
