// Events as forms and the window use them: attached handlers, weak handlers of forms that go
// away, a control's own reaction to input, finding the control under the mouse, and clicks: a
// button-up over a button that took the button-down. Check boxes and options do their part of
// a click before the click handlers hear of it.
#include "duilib/Core/Events.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "base/callback/SupportWeakCallback.h"
#include "duilib/Core/Box.h"
#include "duilib/Core/Button.h"
#include "duilib/Core/CheckBox.h"
#include "duilib/Core/Control.h"
#include "duilib/Core/Option.h"
#include "duilib/Core/Window.h"

namespace {

using namespace mivo::duilib;

EventArgs Mouse(EventType type, int x, int y) {
  EventArgs args;
  args.Type = type;
  args.ptMouse = UiPoint{x, y};
  return args;
}

struct Input {
  EventType type;
  int x, y;
};

void Feed(Control& control, const std::vector<Input>& inputs) {
  for (const Input& input : inputs) {
    EventArgs args;
    args.Type = input.type;
    args.ptMouse = UiPoint{input.x, input.y};
    control.HandleEvent(args);
  }
}

constexpr EventType kDown = kEventMouseButtonDown, kUp = kEventMouseButtonUp, kEnter = kEventMouseEnter,
                    kLeave = kEventMouseLeave, kDouble = kEventMouseDoubleClick;

TEST(ControlEvents, HandlersRunInOrderUntilOneAnswersFalse) {
  Control control, other;
  std::vector<std::string> heard;
  auto record = [&heard](std::string what, bool answer) {
    return [&heard, what, answer](EventArgs* args) {
      heard.push_back(what + " " + std::to_string(args->wParam) + " " + std::to_string(args->lParam));
      return answer;
    };
  };
  control.AttachEvent(kEventClick, record("first", true));
  control.AttachClick([&control](EventArgs* args) { return args->pSender != &control; });  // answers false
  control.AttachClick(record("third", true));
  control.AttachEvent(kEventSelect, record("select", true));
  EXPECT_FALSE(control.SendEvent(kEventClick, 7, -3));
  control.DetachEvent(kEventClick);
  EXPECT_TRUE(control.SendEvent(kEventClick));
  EXPECT_TRUE(control.SendEvent(kEventSelect));
  EXPECT_EQ(heard, (std::vector<std::string>{"first 7 -3", "select 0 0"}));

  EventArgs args;  // a relayed event keeps the sender it has
  args.Type = kEventSelect;
  args.pSender = &other;
  control.AttachEvent(kEventSelect, [&other](EventArgs* a) { return a->pSender == &other; });
  EXPECT_TRUE(control.SendEvent(args));
}

TEST(ControlEvents, HandlersAttachedDuringAnEventHearTheNextOne) {
  Control kept;
  int added = 0;
  kept.AttachClick([&kept, &added](EventArgs*) {
    kept.AttachClick([&added](EventArgs*) { return ++added > 0; });
    return true;
  });
  kept.SendEvent(kEventClick);
  EXPECT_EQ(added, 0);
  kept.SendEvent(kEventClick);
  EXPECT_EQ(added, 1);
}

struct Form : nbase::SupportWeakCallback {};

// Attached as a weak callback, the handler of a form that is gone is passed over; stored as a
// plain EventCallback first, it answers false and the handlers after it are not heard. This is
// why AttachEvent takes weak callbacks as they are.
TEST(ControlEvents, WeakHandlersOfAFormThatIsGoneFallSilent) {
  for (const bool plain : {false, true}) {
    Control button;
    auto form = std::make_unique<Form>();
    int clicks = 0, after = 0;
    auto weak = form->ToWeakCallback([&clicks](EventArgs*) { return ++clicks > 0; });
    if (plain)
      button.AttachClick(EventCallback(weak));
    else
      button.AttachClick(weak);
    button.AttachClick([&after](EventArgs*) { return ++after > 0; });
    EXPECT_TRUE(button.SendEvent(kEventClick));
    form.reset();
    EXPECT_EQ(button.SendEvent(kEventClick), !plain) << plain;
    EXPECT_EQ(clicks, 1);
    EXPECT_EQ(after, plain ? 1 : 2) << plain;
  }
}

TEST(ControlInput, StateFollowsTheMouse) {
  struct Step {
    EventType type;
    int x, y;
    ControlStateType after;
  };
  struct Row {
    const char* what;
    std::vector<Step> steps;
  };
  constexpr ControlStateType kNormal = kControlStateNormal, kHot = kControlStateHot, kPushed = kControlStatePushed;
  // the control lies at (10,10)-(50,30)
  const Row rows[] = {
      {"hover", {{kEnter, 20, 20, kHot}, {kLeave, 60, 20, kNormal}}},
      {"press and release inside", {{kEnter, 20, 20, kHot}, {kDown, 20, 20, kPushed}, {kUp, 20, 20, kHot}}},
      {"release outside", {{kDown, 20, 20, kPushed}, {kUp, 50, 20, kNormal}}},
      {"release on the last pixel", {{kDown, 20, 20, kPushed}, {kUp, 49, 29, kHot}}},
      {"out and back while held",
       {{kDown, 20, 20, kPushed}, {kLeave, 70, 20, kNormal}, {kEnter, 20, 20, kPushed}, {kUp, 20, 20, kHot}}},
      {"entering after a release elsewhere",
       {{kDown, 20, 20, kPushed}, {kLeave, 70, 20, kNormal}, {kUp, 70, 20, kNormal}, {kEnter, 20, 20, kHot}}},
      {"second press of a double click", {{kDown, 20, 20, kPushed}, {kUp, 20, 20, kHot}, {kDouble, 20, 20, kPushed}}}};
  for (const Row& row : rows) {
    SCOPED_TRACE(row.what);
    Control control;
    control.SetPos(UiRect{10, 10, 50, 30});
    std::vector<EventType> heard;
    for (EventType type : {kEnter, kLeave, kDown, kUp, kDouble})
      control.AttachEvent(type, [&heard, &control, type](EventArgs* args) {
        EXPECT_EQ(args->pSender, &control);
        heard.push_back(args->Type);
        return type == args->Type;
      });
    for (size_t i = 0; i < row.steps.size(); ++i) {
      EventArgs args = Mouse(row.steps[i].type, row.steps[i].x, row.steps[i].y);
      control.HandleEvent(args);
      EXPECT_EQ(control.GetState(), row.steps[i].after) << "after step " << i;
    }
    EXPECT_EQ(heard.size(), row.steps.size());  // every input reaches the handlers too
  }
}

TEST(ControlInput, SwitchedOffControlsIgnoreTheirKindOfInput) {
  struct Row {
    const wchar_t* attribute;
    bool hearsMouse, hearsKeys;
  };
  const Row rows[] = {{L"enabled=\"false\"", false, false},
                      {L"mouse=\"false\"", false, true},
                      {L"keyboard=\"false\"", true, false},
                      {L"enabled=\"true\"", true, true}};
  for (const Row& row : rows) {
    SCOPED_TRACE(testing::Message() << row.attribute);
    Control control;
    control.SetPos(UiRect{0, 0, 10, 10});
    control.ApplyAttributeList(row.attribute);
    const ControlStateType before = control.GetState();
    int mouse = 0, keys = 0;
    control.AttachEvent(kEventMouseButtonDown, [&mouse](EventArgs*) { return ++mouse > 0; });
    control.AttachEvent(kEventKeyDown, [&keys](EventArgs*) { return ++keys > 0; });
    EventArgs down = Mouse(kEventMouseButtonDown, 5, 5);
    control.HandleEvent(down);
    EventArgs key;
    key.Type = kEventKeyDown;
    key.wParam = 0x0D;
    control.HandleEvent(key);
    EXPECT_EQ(mouse, row.hearsMouse ? 1 : 0);
    EXPECT_EQ(keys, row.hearsKeys ? 1 : 0);
    EXPECT_EQ(control.GetState(), row.hearsMouse ? kControlStatePushed : before);
  }
}

TEST(ControlInput, DisablingDropsAPressAndTheFocus) {
  Control control;
  control.SetPos(UiRect{0, 0, 10, 10});
  EventArgs focus;
  focus.Type = kEventSetFocus;
  control.HandleEvent(focus);
  EXPECT_TRUE(control.IsFocused());
  EventArgs down = Mouse(kEventMouseButtonDown, 5, 5);
  control.HandleEvent(down);
  control.SetEnabled(false);
  EXPECT_EQ(control.GetState(), kControlStateDisabled);
  EventArgs kill;
  kill.Type = kEventKillFocus;
  control.HandleEvent(kill);  // a disabled control still loses the focus
  EXPECT_FALSE(control.IsFocused());
  control.SetEnabled(true);
  EventArgs enter = Mouse(kEventMouseEnter, 5, 5);
  control.HandleEvent(enter);
  EXPECT_EQ(control.GetState(), kControlStateHot);  // the old press does not come back
}

// root (0,0)-(200,200): a at the top, then box b with c inside, an overlapping later sibling
// d, and a floating e that lies over a.
class FindControlAtTest : public ::testing::Test {
 protected:
  void SetUp() override {
    root.SetName(L"root");
    for (auto [control, name] :
         {std::pair<Control*, const wchar_t*>{a, L"a"}, {b, L"b"}, {c, L"c"}, {d, L"d"}, {e, L"e"}})
      control->SetName(name);
    e->SetFloat(true);
    root.Add(e);  // first child, but floating: it lies above the others
    root.Add(a);
    root.Add(b);
    root.Add(d);
    b->Add(c);
    Place();
  }
  // Rectangles set by hand, after the layout (which a change of visibility runs again).
  void Place() {
    root.SetPos(UiRect{0, 0, 200, 200});
    a->SetPos(UiRect{0, 0, 200, 50});
    e->SetPos(UiRect{0, 0, 20, 20});
    b->SetPos(UiRect{0, 50, 200, 150});
    c->SetPos(UiRect{10, 60, 100, 400});  // reaches past its box: clipped
    d->SetPos(UiRect{150, 100, 200, 200});
  }
  std::wstring At(int x, int y) {
    Control* found = root.FindControlAt(UiPoint{x, y});
    return found ? found->GetName() : L"(none)";
  }
  Box root;
  Control* a = new Control();
  Box* b = new Box();
  Control* c = new Control();
  Control* d = new Control();
  Control* e = new Control();
};

TEST_F(FindControlAtTest, DeepestTopmostControlWins) {
  struct Row {
    int x, y;
    const wchar_t* expected;
  };
  const Row rows[] = {{5, 5, L"e"},       {30, 5, L"a"},      {20, 70, L"c"},       {150, 70, L"b"},   {160, 120, L"d"},
                      {20, 160, L"root"}, {50, 199, L"root"}, {50, 200, L"(none)"}, {-1, 5, L"(none)"}};
  for (const Row& row : rows) EXPECT_EQ(At(row.x, row.y), row.expected) << row.x << "," << row.y;
}

TEST_F(FindControlAtTest, MouseSwitchesAndVisibility) {
  c->SetAttribute(L"mouse", L"false");
  EXPECT_EQ(At(20, 70), L"b");  // the point goes through c to its box
  b->SetAttribute(L"mouse", L"false");
  EXPECT_EQ(At(20, 70), L"root");  // and through b to the root
  c->SetAttribute(L"mouse", L"true");
  EXPECT_EQ(At(20, 70), L"c");  // a box with the mouse off still lets its children take it
  b->SetAttribute(L"mouse", L"true");
  b->SetAttribute(L"mousechild", L"false");
  EXPECT_EQ(At(20, 70), L"b");  // a row that takes its labels' clicks
  b->SetAttribute(L"mousechild", L"true");
  b->SetVisible(false);
  Place();
  EXPECT_EQ(At(20, 70), L"root");  // nothing of a hidden box takes the mouse
  root.SetVisible(false);
  EXPECT_EQ(At(30, 5), L"(none)");
}

template <typename T>
void ExpectClicks() {
  struct Row {
    const char* what;
    const wchar_t* attributes;
    std::vector<Input> inputs;
    int clicks;
  };
  // the button lies at (0,0)-(80,24)
  const Row rows[] = {
      {"down and up inside", L"", {{kDown, 10, 10}, {kUp, 10, 10}}, 1},
      {"up on the far edge pixel", L"", {{kDown, 10, 10}, {kUp, 79, 23}}, 1},
      {"up outside", L"", {{kDown, 10, 10}, {kUp, 80, 10}}, 0},
      {"up without a down", L"", {{kEnter, 10, 10}, {kUp, 10, 10}}, 0},
      {"out and back before the up", L"", {{kDown, 10, 10}, {kLeave, 90, 10}, {kEnter, 10, 10}, {kUp, 10, 10}}, 1},
      {"one down, two ups", L"", {{kDown, 10, 10}, {kUp, 10, 10}, {kUp, 10, 10}}, 1},
      {"double click counts twice", L"", {{kDown, 10, 10}, {kUp, 10, 10}, {kDouble, 10, 10}, {kUp, 10, 10}}, 2},
      {"disabled", L"enabled=\"false\"", {{kDown, 10, 10}, {kUp, 10, 10}}, 0},
      {"mouse off", L"mouse=\"false\"", {{kDown, 10, 10}, {kUp, 10, 10}}, 0}};
  for (const Row& row : rows) {
    SCOPED_TRACE(row.what);
    T button;
    button.ApplyAttributeList(row.attributes);
    button.SetPos(UiRect{0, 0, 80, 24});
    const ControlStateType before = button.GetState();
    int clicks = 0;
    button.AttachClick([&clicks, &button](EventArgs* args) {
      EXPECT_EQ(args->pSender, &button);
      EXPECT_EQ(args->Type, kEventClick);
      ++clicks;
      return true;
    });
    Feed(button, row.inputs);
    EXPECT_EQ(clicks, row.clicks);
    if (!button.IsEnabled()) {
      EXPECT_EQ(button.GetState(), before);
    }
  }
}

TEST(ButtonClick, PressesAndReleases) {
  ExpectClicks<Button>();
  ExpectClicks<ButtonBox>();
  ExpectClicks<CheckBox>();
}

// A handler may delete its control (a click that closes its form): nothing that was to come
// after it runs, neither later handlers nor the click the event would have led to.
TEST(ButtonClick, AHandlerMayDeleteItsControl) {
  struct Row {
    const char* what;
    Control* (*make)();
    EventType deleting;
  } rows[] = {{"a control's handlers", []() -> Control* { return new Control(); }, kUp},
              {"the button-up before the click", []() -> Control* { return new Button(); }, kUp},
              {"the click", []() -> Control* { return new Button(); }, kEventClick},
              {"a check box's selection before its click", []() -> Control* { return new CheckBox(); }, kEventSelect}};
  for (const Row& row : rows) {
    SCOPED_TRACE(row.what);
    Control* control = row.make();
    control->SetPos(UiRect{0, 0, 10, 10});
    int after = 0;
    control->AttachEvent(row.deleting, [control](EventArgs*) {
      delete control;
      return true;
    });
    control->AttachEvent(row.deleting, [&after](EventArgs*) { return ++after > 0; });
    if (row.deleting != kEventClick) control->AttachClick([&after](EventArgs*) { return ++after > 0; });
    Feed(*control, {{kDown, 5, 5}, {kUp, 5, 5}});  // ASan watches the rest of HandleEvent
    EXPECT_EQ(after, 0);
  }
}

TEST(CheckBoxClick, TurnsTheSelectionOverBeforeTheClickIsHeard) {
  CheckBox box;
  box.SetPos(UiRect{0, 0, 10, 10});
  std::vector<std::string> heard;
  box.AttachClick([&heard, &box](EventArgs*) {
    heard.push_back(box.IsSelected() ? "click on" : "click off");
    return true;
  });
  box.AttachEvent(kEventSelect, [&heard](EventArgs*) {
    heard.push_back("select");
    return true;
  });
  box.AttachEvent(kEventUnSelect, [&heard](EventArgs*) {
    heard.push_back("unselect");
    return true;
  });
  Feed(box, {{kDown, 5, 5}, {kUp, 5, 5}, {kDown, 5, 5}, {kUp, 5, 5}, {kDown, 5, 5}, {kUp, 50, 5}});
  EXPECT_EQ(heard, (std::vector<std::string>{"select", "click on", "unselect", "click off"}));
  box.Selected(true, false);  // a silent change stays silent
  EXPECT_EQ(heard.size(), 4u);
}

// A click on an option selects it and never deselects it; another option of its group takes
// the selection away, and the option hears of that before the other's click handlers.
TEST(OptionClick, SelectsAndNeverDeselects) {
  Window window;
  window.AttachRoot(new HBox());
  auto* first = new Option();
  auto* second = new OptionBox();
  window.GetRoot()->Add(first);
  window.GetRoot()->Add(second);
  first->SetAttribute(L"group", L"tabs");
  second->SetAttribute(L"group", L"tabs");
  second->SetPos(UiRect{10, 0, 20, 10});
  first->SetPos(UiRect{0, 0, 10, 10});
  std::vector<std::string> heard;
  first->AttachEvent(kEventUnSelect, [&heard](EventArgs*) { return heard.emplace_back("first off"), true; });
  second->AttachClick([&heard](EventArgs*) { return heard.emplace_back("second clicked"), true; });
  Feed(*first, {{kDown, 5, 5}, {kUp, 5, 5}, {kDown, 5, 5}, {kUp, 5, 5}});
  EXPECT_TRUE(first->IsSelected());
  Feed(*second, {{kDown, 15, 5}, {kUp, 15, 5}});
  EXPECT_TRUE(second->IsSelected());
  EXPECT_FALSE(first->IsSelected());
  EXPECT_EQ(heard, (std::vector<std::string>{"first off", "second clicked"}));
}

}  // namespace
