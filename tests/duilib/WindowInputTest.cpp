// The mouse as a window hands it to its controls: which control is hot, which one a press
// belongs to, clicks, and handlers that delete controls or the whole tree mid-event.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "duilib/Core/Box.h"
#include "duilib/Core/Button.h"
#include "duilib/Core/Window.h"
#include "duilib/Core/WindowBuilder.h"

namespace {

using namespace mivo::duilib;

// A title band of 30 pixels (a label and a close button), then two buttons side by side and a
// plain control below them:
//   title (0,0)-(200,30): caption label (0,0)-(170,30), close (170,0)-(200,30)
//   left (0,30)-(100,60), right (100,30)-(200,60), bottom (0,60)-(200,100)
constexpr char kSkin[] = R"(<Window size="200,100" caption="0,0,0,30">
  <VBox name="root">
    <HBox name="title" height="30">
      <Label name="caption" text="Title"/>
      <Button name="close" width="30"/>
    </HBox>
    <HBox height="30">
      <Button name="left"/>
      <Button name="right"/>
    </HBox>
    <Control name="bottom"/>
  </VBox>
</Window>)";

class WindowInput : public ::testing::Test {
 protected:
  void SetUp() override {
    WindowBuilder builder;
    Control* root = builder.CreateFromString(kSkin, nullptr, &window);
    ASSERT_NE(dynamic_cast<Box*>(root), nullptr);
    window.AttachRoot(static_cast<Box*>(root));
    window.ArrangeRoot(UiRect{0, 0, 200, 100});
    // (the caption label stays without handlers: one would make it a control that takes clicks)
    for (const wchar_t* name : {L"close", L"left", L"right", L"bottom"}) Record(name);
  }

  // Every mouse event and click a control hears, as "name event".
  void Record(const std::wstring& name) {
    Control* control = window.FindControl(name);
    ASSERT_NE(control, nullptr);
    const std::string label(name.begin(), name.end());
    const std::pair<EventType, const char*> kinds[] = {
        {kEventMouseEnter, "enter"}, {kEventMouseLeave, "leave"}, {kEventMouseButtonDown, "down"},
        {kEventMouseButtonUp, "up"}, {kEventClick, "click"},
    };
    for (const auto& [type, what] : kinds) {
      control->AttachEvent(type, [this, label, what = std::string(what)](EventArgs*) {
        heard.push_back(label + " " + what);
        return true;
      });
    }
  }
  void Mouse(EventType type, int x, int y) { window.HandleMouseEvent(type, UiPoint{x, y}); }
  std::vector<std::string> Take() { return std::exchange(heard, {}); }

  Window window;
  std::vector<std::string> heard;
};

using Events = std::vector<std::string>;

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

TEST_F(WindowInput, AClickHandlerMayDeleteItsButton) {
  Control* left = window.FindControl(L"left");
  left->AttachClick([left](EventArgs*) {
    left->GetParent()->Remove(left);  // deletes it; ASan watches the window's next steps
    return true;
  });
  Mouse(kEventMouseButtonDown, 10, 40);
  Mouse(kEventMouseButtonUp, 10, 40);
  EXPECT_EQ(window.FindControl(L"left"), nullptr);
  EXPECT_EQ(window.GetHotControl(), window.FindControl(L"right"));  // it took the whole row
  EXPECT_EQ(window.GetPushedControl(), nullptr);
  Take();
  Mouse(kEventMouseMove, 190, 80);
  EXPECT_EQ(Take(), (Events{"right leave", "bottom enter"}));
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

}  // namespace
