// The keyboard as a window hands it to its controls: the tab order, which key reaches which
// control, the default and cancel buttons, and a list's selection keys.
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "duilib/Core/Box.h"
#include "duilib/Core/CheckBox.h"
#include "duilib/Core/ListBox.h"
#include "duilib/Core/Window.h"
#include "duilib/Core/WindowBuilder.h"

namespace {

using namespace mivo::duilib;

// Buttons and a check box around a list of four rows, with controls that must never take the
// focus: a nofocus button, a disabled one, one that ignores the keyboard, a label and one in a
// hidden box.
constexpr char kSkin[] = R"(<Window size="200,300" defaultbutton="ok" cancelbutton="cancel">
  <VBox name="root">
    <HBox height="30">
      <Label name="title" text="Pick one"/>
      <Button name="close" width="30" nofocus="false"/>
    </HBox>
    <ListBox name="list" height="60">
      <ListContainerElement name="row0" height="20"/>
      <ListContainerElement name="row1" height="20"/>
      <ListContainerElement name="row2" height="20"/>
      <ListContainerElement name="row3" height="20"/>
    </ListBox>
    <CheckBox name="remember" height="20"/>
    <HBox name="hidden" height="20" visible="false"><Button name="inside"/></HBox>
    <HBox height="30">
      <Button name="off" enabled="false"/>
      <Button name="deaf" keyboard="false"/>
      <Button name="ok"/>
      <Button name="cancel"/>
    </HBox>
  </VBox>
</Window>)";

class Keyboard : public ::testing::Test {
 protected:
  void SetUp() override {
    WindowBuilder builder;
    Control* root = builder.CreateFromString(kSkin, nullptr, &window);
    ASSERT_NE(dynamic_cast<Box*>(root), nullptr);
    window.AttachRoot(static_cast<Box*>(root));
    window.ArrangeRoot(UiRect{0, 0, 200, 300});
    for (const wchar_t* name : {L"ok", L"cancel", L"off", L"deaf"})
      window.FindControl(name)->AttachClick([this, name](EventArgs*) {
        heard.push_back(std::string(name, name + wcslen(name)) + " click");
        return true;
      });
    list()->AttachEvent(kEventSelect, [this](EventArgs* args) {
      heard.push_back("select " + std::to_string(args->wParam));
      return true;
    });
  }
  ListBox* list() { return dynamic_cast<ListBox*>(window.FindControl(L"list")); }
  std::string Focused() {
    Control* focus = window.GetFocus();
    return focus ? std::string(focus->GetName().begin(), focus->GetName().end()) : "-";
  }
  std::vector<std::string> Take() { return std::exchange(heard, {}); }

  Window window;
  std::vector<std::string> heard;
};

using Heard = std::vector<std::string>;

TEST_F(Keyboard, TabWalksTheSkinOrderOverWhatCanTakeTheFocusAndWraps) {
  // "nofocus" takes the focus away whatever its value says.
  const std::vector<std::string> forward{"list", "remember", "ok", "cancel", "list"};
  for (const std::string& expected : forward) {
    window.HandleKeyDown(kVkTab, false);
    EXPECT_EQ(Focused(), expected);
  }
  for (const char* expected : {"cancel", "ok", "remember", "list", "cancel"}) {
    window.HandleKeyDown(kVkTab, true);
    EXPECT_EQ(Focused(), expected);
  }
  EXPECT_TRUE(window.FindControl(L"cancel")->IsFocused());
  EXPECT_FALSE(window.FindControl(L"list")->IsFocused());

  // What stops taking the focus drops out of the order, from wherever the focus is.
  dynamic_cast<Button*>(window.FindControl(L"ok"))->SetEnabled(false);
  window.FindControl(L"hidden")->SetVisible(true);
  window.HandleKeyDown(kVkTab, true);
  EXPECT_EQ(Focused(), "inside");
  EXPECT_FALSE(window.SetFocus(window.FindControl(L"title"))) << "a label takes no focus";
  EXPECT_FALSE(window.SetFocus(window.FindControl(L"row1"))) << "rows leave it to their list";
  EXPECT_EQ(Focused(), "inside");
}

TEST_F(Keyboard, KeysGoToTheFocusedControlOrToTheDefaultAndCancelButtons) {
  struct Row {
    const wchar_t* focus;  // null: nothing focused
    uint32_t vk;
    Heard expected;
  };
  const Row rows[] = {
      {L"ok", kVkSpace, {"ok click"}},
      {L"cancel", kVkReturn, {"cancel click"}},  // Enter presses the focused button, not the default one
      {L"list", kVkReturn, {"ok click"}},
      {L"remember", kVkReturn, {"ok click"}},  // a check box leaves Enter to the default button
      {L"list", kVkEscape, {"cancel click"}},
      {nullptr, kVkReturn, {"ok click"}},
      {nullptr, kVkEscape, {"cancel click"}},
      {L"list", kVkSpace, {}},
      {nullptr, kVkDown, {}},  // arrows without a focused list do nothing
      {L"ok", kVkDown, {}},
  };
  for (const Row& row : rows) {
    window.SetFocus(row.focus ? window.FindControl(row.focus) : nullptr);
    window.HandleKeyDown(row.vk, false);
    EXPECT_EQ(Take(), row.expected) << (row.focus ? "focus on a control" : "no focus") << ", key " << row.vk;
  }

  // Space turns the focused check box over.
  auto* remember = dynamic_cast<CheckBox*>(window.FindControl(L"remember"));
  window.SetFocus(remember);
  window.HandleKeyDown(kVkSpace, false);
  EXPECT_TRUE(remember->IsSelected());
  window.HandleKeyDown(kVkSpace, false);
  EXPECT_FALSE(remember->IsSelected());

  // A disabled default button is not pressed.
  dynamic_cast<Button*>(window.FindControl(L"ok"))->SetEnabled(false);
  window.SetFocus(list());
  window.HandleKeyDown(kVkReturn, false);
  EXPECT_EQ(Take(), Heard{});
}

TEST_F(Keyboard, ThePressedControlOrItsListTakesTheFocus) {
  window.HandleMouseEvent(kEventMouseButtonDown, UiPoint{50, 55});  // on row1
  window.HandleMouseEvent(kEventMouseButtonUp, UiPoint{50, 55});
  EXPECT_EQ(Focused(), "list");
  EXPECT_EQ(list()->GetCurSel(), 1);
  window.HandleMouseEvent(kEventMouseButtonDown, UiPoint{10, 10});  // the title label: the focus stays
  window.HandleMouseEvent(kEventMouseButtonUp, UiPoint{10, 10});
  EXPECT_EQ(Focused(), "list");
  window.HandleKeyDown(kVkDown, false);
  EXPECT_EQ(list()->GetCurSel(), 2);
}

TEST_F(Keyboard, ListKeysMoveTheSelectionWithinTheRows) {
  struct Row {
    uint32_t vk;
    int current, count, page, expected;
  };
  const Row rows[] = {
      {kVkDown, 0, 4, 3, 1},     {kVkDown, 3, 4, 3, 3},    {kVkUp, 0, 4, 3, 0},        {kVkUp, 2, 4, 3, 1},
      {kVkHome, 3, 4, 3, 0},     {kVkEnd, 0, 4, 3, 3},     {kVkPageDown, 0, 12, 3, 3}, {kVkPageDown, 10, 12, 3, 11},
      {kVkPageUp, 10, 12, 3, 7}, {kVkPageUp, 2, 12, 3, 0}, {kVkPageDown, 0, 12, 0, 1},  // a page is one row at least
      {kVkDown, -1, 4, 3, 0},    {kVkUp, -1, 4, 3, 0},     {kVkEnd, -1, 4, 3, 3},      {kVkDown, -1, 0, 3, -1},
      {kVkSpace, 2, 4, 3, 2},
  };
  for (const Row& row : rows)
    EXPECT_EQ(ListBox::KeyTarget(row.vk, row.current, row.count, row.page), row.expected)
        << "key " << row.vk << " from " << row.current << " of " << row.count << ", page " << row.page;

  // In the list: three rows of four fit its 60 pixels, so a page is three rows.
  EXPECT_EQ(list()->RowsPerPage(), 3);
  window.SetFocus(list());
  for (uint32_t vk : {kVkDown, kVkPageDown, kVkHome, kVkEnd}) window.HandleKeyDown(vk, false);
  EXPECT_EQ(Take(), (Heard{"select 0", "select 3", "select 0", "select 3"}));
}

}  // namespace
