// The mouse and the keyboard as a window hands them to its controls: which control is hot,
// which one a press belongs to, clicks, handlers that delete controls or the whole tree
// mid-event, the tab order, the default and cancel buttons, and a list's selection keys.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "duilib/Core/Box.h"
#include "duilib/Core/Button.h"
#include "duilib/Core/CheckBox.h"
#include "duilib/Core/ListBox.h"
#include "duilib/Core/Window.h"
#include "duilib/Core/WindowBuilder.h"

namespace {

using namespace mivo::duilib;
using Events = std::vector<std::string>;

// A window built from a skin, whose controls write down what they hear as "name event".
class WindowTest : public ::testing::Test {
 protected:
  void Build(const char* skin, UiRect client) {
    WindowBuilder builder;
    Control* root = builder.CreateFromString(skin, nullptr, &window);
    ASSERT_NE(dynamic_cast<Box*>(root), nullptr);
    window.AttachRoot(static_cast<Box*>(root));
    window.ArrangeRoot(client);
  }
  void Record(const std::wstring& name, std::vector<std::pair<EventType, const char*>> kinds) {
    Control* control = window.FindControl(name);
    ASSERT_NE(control, nullptr);
    for (const auto& [type, what] : kinds)
      control->AttachEvent(type, [this, label = std::string(name.begin(), name.end()) + " " + what](EventArgs*) {
        heard.push_back(label);
        return true;
      });
  }
  void Mouse(EventType type, int x, int y) { window.HandleMouseEvent(type, UiPoint{x, y}); }
  std::string Focused() {
    Control* focus = window.GetFocus();
    return focus ? std::string(focus->GetName().begin(), focus->GetName().end()) : "-";
  }
  Events Take() { return std::exchange(heard, {}); }

  Window window;
  Events heard;
};

// A title band of 30 pixels (a label and a close button), then two buttons side by side and a
// plain control below them:
//   title (0,0)-(200,30): caption label (0,0)-(170,30), close (170,0)-(200,30)
//   left (0,30)-(100,60), right (100,30)-(200,60), bottom (0,60)-(200,100)
class WindowInput : public WindowTest {
 protected:
  void SetUp() override {
    Build(R"(<Window size="200,100" caption="0,0,0,30">
  <VBox name="root">
    <HBox name="title" height="30"><Label name="caption" text="Title"/><Button name="close" width="30"/></HBox>
    <HBox height="30"><Button name="left"/><Button name="right"/></HBox>
    <Control name="bottom"/>
  </VBox>
</Window>)",
          UiRect{0, 0, 200, 100});
    // (the caption label stays without handlers: one would make it a control that takes clicks)
    for (const wchar_t* name : {L"close", L"left", L"right", L"bottom"})
      Record(name, {{kEventMouseEnter, "enter"},
                    {kEventMouseLeave, "leave"},
                    {kEventMouseButtonDown, "down"},
                    {kEventMouseButtonUp, "up"},
                    {kEventClick, "click"}});
  }
};

TEST_F(WindowInput, HotFollowsTheMouseFromControlToControl) {
  Control* left = window.FindControl(L"left");
  Mouse(kEventMouseMove, 10, 40);
  EXPECT_EQ(Take(), (Events{"left enter"}));
  EXPECT_EQ(window.GetHotControl(), left);
  EXPECT_EQ(left->GetState(), kControlStateHot);
  Mouse(kEventMouseMove, 20, 45);  // within the same control: nothing new
  EXPECT_EQ(Take(), Events{});
  Mouse(kEventMouseMove, 150, 45);
  EXPECT_EQ(Take(), (Events{"left leave", "right enter"}));
  EXPECT_EQ(left->GetState(), kControlStateNormal);
  Mouse(kEventMouseLeave, 250, 45);  // out of the window
  EXPECT_EQ(Take(), (Events{"right leave"}));
  EXPECT_EQ(window.GetHotControl(), nullptr);
}

TEST_F(WindowInput, TheControlThatTookTheDownDecidesTheClick) {
  Mouse(kEventMouseMove, 10, 40);
  Mouse(kEventMouseButtonDown, 10, 40);
  Mouse(kEventMouseButtonUp, 12, 41);
  EXPECT_EQ(Take(), (Events{"left enter", "left down", "left up", "left click"}));
  EXPECT_EQ(window.GetPushedControl(), nullptr);

  // Down on the left, dragged over the right and let go there: the left button hears the
  // move out and the up (no click); the right one hears nothing until the press is over.
  Control* left = window.FindControl(L"left");
  Mouse(kEventMouseButtonDown, 10, 40);
  EXPECT_EQ(window.GetPushedControl(), left);
  EXPECT_EQ(left->GetState(), kControlStatePushed);
  Mouse(kEventMouseMove, 150, 40);
  EXPECT_EQ(left->GetState(), kControlStateNormal);
  Mouse(kEventMouseMove, 20, 40);  // back over it while the button is down: pushed again
  EXPECT_EQ(left->GetState(), kControlStatePushed);
  Mouse(kEventMouseMove, 150, 40);
  Mouse(kEventMouseButtonUp, 150, 40);
  EXPECT_EQ(Take(), (Events{"left down", "left leave", "left enter", "left leave", "left up", "right enter"}));
  EXPECT_EQ(window.GetHotControl(), window.FindControl(L"right"));

  // A double click presses the control again, and its up is a second click.
  Mouse(kEventMouseButtonDown, 150, 40);
  Mouse(kEventMouseButtonUp, 150, 40);
  Mouse(kEventMouseDoubleClick, 150, 40);
  Mouse(kEventMouseButtonUp, 150, 40);
  Events clicks = Take();
  EXPECT_EQ(std::count(clicks.begin(), clicks.end(), "right click"), 2);
}

TEST_F(WindowInput, APressTakenAwayIsNoClick) {
  Mouse(kEventMouseButtonDown, 10, 40);
  window.CancelPress();
  Mouse(kEventMouseButtonUp, 10, 40);
  EXPECT_EQ(Take(), (Events{"left enter", "left down", "left up"}));
  EXPECT_EQ(window.GetPushedControl(), nullptr);
}

TEST_F(WindowInput, AClickHandlerMayReplaceTheWholeTree) {
  Control* close = window.FindControl(L"close");
  close->AttachClick([this](EventArgs*) {
    window.AttachRoot(new VBox());  // the old tree, this button included, is deleted
    window.GetRoot()->Add(new Button());
    window.GetRoot()->GetItemAt(0)->SetName(L"fresh");
    return true;
  });
  Mouse(kEventMouseMove, 180, 10);
  Mouse(kEventMouseButtonDown, 180, 10);
  Mouse(kEventMouseButtonUp, 180, 10);
  EXPECT_EQ(Take(), (Events{"close enter", "close down", "close up", "close click"}));
  // The new root was laid out in the client area; the fresh button is under the mouse now.
  EXPECT_EQ(window.GetRoot()->GetPos(), (UiRect{0, 0, 200, 100}));
  EXPECT_EQ(window.GetHotControl(), window.FindControl(L"fresh"));
  window.AttachRoot(nullptr);
  Mouse(kEventMouseMove, 10, 10);
  EXPECT_EQ(window.GetHotControl(), nullptr);
}

TEST_F(WindowInput, ALeaveHandlerMayDeleteTheControlBeingEntered) {
  Control* left = window.FindControl(L"left");
  Control* right = window.FindControl(L"right");
  bool removed = false;
  left->AttachEvent(kEventMouseLeave, [right, &removed](EventArgs*) {
    if (!removed) right->GetParent()->Remove(right);
    removed = true;
    return true;
  });
  Mouse(kEventMouseMove, 10, 40);
  Mouse(kEventMouseMove, 150, 40);  // right would be entered, but is gone
  EXPECT_EQ(Take(), (Events{"left enter", "left leave"}));
  EXPECT_EQ(window.GetHotControl(), nullptr);
  Mouse(kEventMouseMove, 160, 41);  // the left button fills the row now
  EXPECT_EQ(Take(), (Events{"left enter"}));
}

TEST_F(WindowInput, StateChangesAskForARepaintOfTheControl) {
  window.ClearUpdate();
  EXPECT_FALSE(window.IsUpdateNeeded());
  Mouse(kEventMouseMove, 150, 40);
  EXPECT_TRUE(window.IsUpdateNeeded());
  EXPECT_EQ(window.GetUpdateRect(), (UiRect{100, 30, 200, 60}));
  window.ClearUpdate();
  // hiding the bottom control repaints where it was
  window.FindControl(L"bottom")->SetVisible(false);
  EXPECT_EQ(window.GetUpdateRect(), (UiRect{0, 60, 200, 100}));
  window.ClearUpdate();
  window.ArrangeRoot(UiRect{0, 0, 300, 120});
  EXPECT_EQ(window.GetUpdateRect(), (UiRect{0, 0, 300, 120}));
  EXPECT_EQ(window.FindControl(L"right")->GetPos(), (UiRect{150, 30, 300, 60}));
}

TEST_F(WindowInput, TheCaptionDragsWhereNothingTakesClicks) {
  EXPECT_TRUE(window.IsCaptionAt(UiPoint{10, 10}));    // the label
  EXPECT_FALSE(window.IsCaptionAt(UiPoint{180, 10}));  // the close button
  EXPECT_FALSE(window.IsCaptionAt(UiPoint{10, 30}));   // below the band
  Control* caption = window.FindControl(L"caption");
  caption->AttachClick([](EventArgs*) { return true; });  // now the label takes clicks
  EXPECT_FALSE(window.IsCaptionAt(UiPoint{10, 10}));
  caption->DetachEvent(kEventClick);
  caption->SetAttribute(L"mouse", L"false");  // the point goes through to the title box
  EXPECT_TRUE(window.IsCaptionAt(UiPoint{10, 10}));
  window.SetAttribute(L"caption", L"20,0,40,30");  // insets from the left and the right
  EXPECT_FALSE(window.IsCaptionAt(UiPoint{10, 10}));
  EXPECT_TRUE(window.IsCaptionAt(UiPoint{25, 10}));
  EXPECT_FALSE(window.IsCaptionAt(UiPoint{165, 10}));

  EXPECT_EQ(window.GetInitialSize(), (UiSize{200, 100}));
  Window bare;
  EXPECT_EQ(bare.GetInitialSize(), (UiSize{0, 0}));
  EXPECT_FALSE(bare.IsCaptionAt(UiPoint{0, 0}));
}

TEST(WindowPlacement, CentredOnWhatItBelongsToAndKeptOnTheScreen) {
  const UiRect work{0, 0, 1000, 700};
  struct Row {
    UiRect window, around, expected;
  } rows[] = {
      {{0, 0, 300, 200}, work, {350, 250, 650, 450}},                    // the work area
      {{50, 50, 150, 150}, {100, 100, 500, 300}, {250, 150, 350, 250}},  // an owner
      {{0, 0, 300, 200}, {800, 600, 1000, 700}, {700, 500, 1000, 700}},  // pushed back inside
      {{0, 0, 300, 200}, {-400, -300, -200, -100}, {0, 0, 300, 200}},
      {{0, 0, 1200, 800}, work, {0, 0, 1200, 800}},  // too large: its top left shows
  };
  for (const Row& row : rows) EXPECT_EQ(Window::CenterRect(row.window, row.around, work), row.expected);
}

// Buttons and a check box around a list of four rows, with controls that must never take the
// focus: a nofocus button, a disabled one, one that ignores the keyboard, a label and one in a
// hidden box.
constexpr char kKeyboardSkin[] = R"(<Window size="200,300" defaultbutton="ok" cancelbutton="cancel">
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

class Keyboard : public WindowTest {
 protected:
  void SetUp() override {
    Build(kKeyboardSkin, UiRect{0, 0, 200, 300});
    for (const wchar_t* name : {L"ok", L"cancel", L"off", L"deaf"}) Record(name, {{kEventClick, "click"}});
    list()->AttachEvent(kEventSelect, [this](EventArgs* args) {
      heard.push_back("select " + std::to_string(args->wParam));
      return true;
    });
  }
  ListBox* list() { return dynamic_cast<ListBox*>(window.FindControl(L"list")); }
};

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
    Events expected;
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
      {L"ok", kVkDown, {}}};
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
  EXPECT_EQ(Take(), Events{});
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
  const Row rows[] = {{kVkDown, 0, 4, 3, 1},      {kVkDown, 3, 4, 3, 3},        {kVkUp, 0, 4, 3, 0},
                      {kVkUp, 2, 4, 3, 1},        {kVkHome, 3, 4, 3, 0},        {kVkEnd, 0, 4, 3, 3},
                      {kVkPageDown, 0, 12, 3, 3}, {kVkPageDown, 10, 12, 3, 11}, {kVkPageUp, 10, 12, 3, 7},
                      {kVkPageUp, 2, 12, 3, 0},   {kVkPageDown, 0, 12, 0, 1},  // a page is one row at least
                      {kVkDown, -1, 4, 3, 0},     {kVkUp, -1, 4, 3, 0},         {kVkEnd, -1, 4, 3, 3},
                      {kVkDown, -1, 0, 3, -1},    {kVkSpace, 2, 4, 3, 2}};
  for (const Row& row : rows)
    EXPECT_EQ(ListBox::KeyTarget(row.vk, row.current, row.count, row.page), row.expected)
        << "key " << row.vk << " from " << row.current << " of " << row.count << ", page " << row.page;

  // In the list: three rows of four fit its 60 pixels, so a page is three rows.
  EXPECT_EQ(list()->RowsPerPage(), 3);
  window.SetFocus(list());
  for (uint32_t vk : {kVkDown, kVkPageDown, kVkHome, kVkEnd}) window.HandleKeyDown(vk, false);
  EXPECT_EQ(Take(), (Events{"select 0", "select 3", "select 0", "select 3"}));
}

}  // namespace
