#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "Execute/LoginUserList.h"
#include "duilib/Core/Button.h"
#include "duilib/Core/CheckBox.h"
#include "duilib/Core/GlobalManager.h"
#include "duilib/Core/Label.h"
#include "duilib/Core/ListBox.h"
#include "duilib/Core/Window.h"
#include "duilib/Core/WindowBuilder.h"
#include "support/Files.h"
#include "support/TempDir.h"
#include "toolkit/FileSys.h"

using namespace mivo::duilib;
using testing_support::TempDir;

namespace {

const char kRow[] =
    "<ListContainerElement height=\"40\"><HBox>"
    "<Control name=\"user_head_icon\" width=\"36\"/><Label name=\"show_name_label\"/>"
    "</HBox></ListContainerElement>";

std::wstring NameShownIn(ListBox& list, int index) {
  auto* row = dynamic_cast<Box*>(list.GetItemAt(static_cast<size_t>(index)));
  auto* label = row ? dynamic_cast<Label*>(row->FindSubControl(L"show_name_label")) : nullptr;
  return label ? label->GetText() : L"<none>";
}

class LoginUserListTest : public ::testing::Test {
 protected:
  void SetUp() override { testing_support::Write(dir.NativeOf(L"start_hide_window\\login_user_list_item.xml"), kRow); }
  TempDir dir;
  Window window;
  ListBox* list = new ListBox();
  std::unique_ptr<Box> holder{[this] {
    auto* box = new VBox();
    box->Add(list);
    return box;
  }()};
};

TEST_F(LoginUserListTest, ARowPerItemShowingTheNicknameWithTheLastUserSelected) {
  LoginUserList users(*list, dir.Path().GetString(), &window);
  std::vector<LoginUserItem> items = {{L"a@gmail.com", L"Alice"}, {L"b@qq.com", L"Bob"}, {L"c@163.com", L"Carol"}};
  ASSERT_TRUE(users.Fill(items, L"b@qq.com"));
  ASSERT_EQ(3u, list->GetCount());
  EXPECT_EQ(L"Alice", NameShownIn(*list, 0));
  EXPECT_EQ(L"Carol", NameShownIn(*list, 2));
  EXPECT_EQ(1, list->GetCurSel());

  auto* row = dynamic_cast<ListContainerElement*>(list->GetItemAt(1));
  ASSERT_NE(nullptr, row);
  EXPECT_EQ(L"white", row->GetStateColor(kControlStateNormal));
  EXPECT_EQ(L"d8ebeb", row->GetStateColor(kControlStateHot));
  EXPECT_EQ(L"c8e4e4", row->GetStateColor(kControlStatePushed));
  EXPECT_EQ(L"bk_listitem_selected", row->GetImage(kImageSetSelected, kControlStateNormal));
  Control* head = row->FindSubControl(L"user_head_icon");
  ASSERT_NE(nullptr, head);
  EXPECT_EQ(L"../start_hide_window/1.png", head->GetImage(kImageSetBackground, kControlStateNormal));
  EXPECT_EQ(L"../start_hide_window/1.png", head->GetImage(kImageSetBackground, kControlStatePushed));
}

TEST_F(LoginUserListTest, WithoutAKnownLastUserTheFirstRowIsSelectedAndRefillingStartsOver) {
  LoginUserList users(*list, dir.Path().GetString(), &window);
  ASSERT_TRUE(users.Fill({{L"a@gmail.com", L"Alice"}, {L"b@qq.com", L"Bob"}}, L"gone@qq.com"));
  EXPECT_EQ(0, list->GetCurSel());
  ASSERT_TRUE(users.Fill({{L"b@qq.com", L"Bob"}}, L""));
  EXPECT_EQ(1u, list->GetCount());
  EXPECT_EQ(0, list->GetCurSel());
  ASSERT_TRUE(users.Fill({}, L"b@qq.com"));
  EXPECT_EQ(0u, list->GetCount());
  EXPECT_EQ(-1, list->GetCurSel());
}

TEST_F(LoginUserListTest, AMissingOrWrongRowTemplateFillsNothing) {
  LoginUserList missing(*list, (dir.Path() + L"nowhere\\").GetString(), &window);
  EXPECT_FALSE(missing.Fill({{L"a@gmail.com", L"Alice"}}, L""));
  EXPECT_EQ(0u, list->GetCount());
  testing_support::Write(dir.NativeOf(L"start_hide_window\\login_user_list_item.xml"), "<Label name=\"x\"/>");
  LoginUserList wrong(*list, dir.Path().GetString(), &window);
  EXPECT_FALSE(wrong.Fill({{L"a@gmail.com", L"Alice"}}, L""));
}

#if defined(MIVO_RESOURCE_DIR)
// The skin that ships: its row template has the named controls the list fills.
TEST(ShippedSkinTest, TheRowTemplateHasTheControlsTheListFills) {
  std::wstring skin = toolkit::sys::FromNativePath(std::string(MIVO_RESOURCE_DIR) + "/skins/default/");
  Window window;
  ListBox* list = new ListBox();
  VBox holder;
  holder.Add(list);
  LoginUserList users(*list, skin, &window);
  ASSERT_TRUE(users.Fill({{L"a@gmail.com", L"Alice"}}, L""));
  EXPECT_EQ(L"Alice", NameShownIn(*list, 0));
}

TEST(ShippedSkinTest, TheWindowHasEveryControlTheFormLooksFor) {
  std::wstring skin = toolkit::sys::FromNativePath(std::string(MIVO_RESOURCE_DIR) + "/skins/default/");
  Window window;
  WindowBuilder builder;
  auto* root = dynamic_cast<Box*>(builder.Create(skin, L"start_hide_window\\start_hide_window.xml", nullptr, &window));
  ASSERT_NE(nullptr, root);
  window.AttachRoot(root);
  EXPECT_NE(nullptr, dynamic_cast<Label*>(window.FindControl(L"login_user_title_label")));
  EXPECT_NE(nullptr, dynamic_cast<CheckBox*>(window.FindControl(L"remember_choice_checkbox")));
  EXPECT_NE(nullptr, dynamic_cast<Box*>(window.FindControl(L"login_user_panel_box")));
  EXPECT_NE(nullptr, dynamic_cast<ListBox*>(window.FindControl(L"login_user_listbox")));
  for (const wchar_t* name : {L"ok_button", L"cancel_button", L"close_btn"})
    EXPECT_NE(nullptr, dynamic_cast<Button*>(window.FindControl(name))) << name;
  EXPECT_EQ(L"340,300", builder.WindowAttributes().at(L"size"));
}
#endif

}  // namespace

#if defined(MIVO_RESOURCE_DIR_WIN)
// The login-user window as the user sees it: the shipped skin, three accounts with the
// second one chosen last, rendered to login_user_window.png beside the test program.
TEST(ShippedSkinWineTest, TheWindowRendersWithItsRows) {
  GlobalManager::Startup(L"" MIVO_RESOURCE_DIR_WIN, L"skins\\default");
  GlobalManager::SetTextResolver([](const std::wstring& id) {
    if (id == L"STRID_SELECTED_USER_FORM_OK") return std::wstring(L"OK");
    if (id == L"STRID_SELECTED_USER_FORM_CANCEL") return std::wstring(L"Cancel");
    if (id == L"STRID_SELECTED_USER_FORM_TITLE") return std::wstring(L"Choose a user");
    return id;
  });
  struct FormLike : Window {  // images resolve against the form's skin folder
    std::wstring GetSkinFolder() override { return L"start_hide_window"; }
  } window;
  WindowBuilder builder;
  auto* root = dynamic_cast<Box*>(
      builder.Create(GlobalManager::GetResourcePath(), L"start_hide_window\\start_hide_window.xml", nullptr, &window));
  ASSERT_NE(nullptr, root);
  window.AttachRoot(root);
  dynamic_cast<Label*>(window.FindControl(L"login_user_title_label"))->SetText(L"Choose the signed-in account to use:");
  auto* remember = dynamic_cast<CheckBox*>(window.FindControl(L"remember_choice_checkbox"));
  remember->SetText(L"Remember my choice and do not ask again");
  remember->Selected(true, false);
  auto* list = dynamic_cast<ListBox*>(window.FindControl(L"login_user_listbox"));
  LoginUserList users(*list, GlobalManager::GetResourcePath(), &window);
  ASSERT_TRUE(users.Fill({{L"a@gmail.com", L"Alice"}, {L"b@qq.com", L"Bob"}, {L"c@163.com", L"Carol"}}, L"b@qq.com"));
  window.ArrangeRoot(UiRect{0, 0, 340, 300});
  ASSERT_TRUE(window.RenderToPng(L"" MIVO_FORM_RENDER_PNG));
  GlobalManager::SetTextResolver(nullptr);
  EXPECT_EQ(1, list->GetCurSel());
  // the second 48-pixel band of the list, where the person at the window clicks for it
  EXPECT_EQ((UiRect{12, 114, 328, 162}), list->GetItemAt(1)->GetPos());
}
#endif
