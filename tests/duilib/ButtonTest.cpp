// Clicks: a button-up over a button that took the button-down. Check boxes and options do
// their part of a click before the click handlers hear of it.
#include "duilib/Core/Button.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "duilib/Core/CheckBox.h"
#include "duilib/Core/Option.h"
#include "duilib/Core/Window.h"

namespace {

using namespace mivo::duilib;

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
      {"mouse off", L"mouse=\"false\"", {{kDown, 10, 10}, {kUp, 10, 10}}, 0},
  };
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

TEST(ButtonClick, HandlersMayDeleteTheButton) {
  // by the click itself, or already by the button-up that makes it (then there is no click)
  for (EventType deletingEvent : {kEventClick, kEventMouseButtonUp}) {
    auto* button = new Button();
    button->SetPos(UiRect{0, 0, 10, 10});
    bool deleted = false;
    button->AttachEvent(deletingEvent, [button, &deleted](EventArgs*) {
      delete button;
      deleted = true;
      return true;
    });
    Feed(*button, {{kDown, 5, 5}, {kUp, 5, 5}});  // ASan watches the rest of HandleEvent
    EXPECT_TRUE(deleted);
  }
  // a check box, by the selection that comes before its click
  auto* box = new CheckBox();
  box->SetPos(UiRect{0, 0, 10, 10});
  int clicks = 0;
  box->AttachEvent(kEventSelect, [box](EventArgs*) {
    delete box;
    return true;
  });
  box->AttachClick([&clicks](EventArgs*) { return ++clicks > 0; });
  Feed(*box, {{kDown, 5, 5}, {kUp, 5, 5}});
  EXPECT_EQ(clicks, 0);
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

TEST(OptionClick, SelectsAndNeverDeselects) {
  Window window;
  window.AttachRoot(new HBox());
  auto* first = new Option();
  auto* second = new OptionBox();
  for (Control* option : {static_cast<Control*>(first), static_cast<Control*>(second)}) {
    option->SetAttribute(L"group", L"tabs");
    window.GetRoot()->Add(option);
  }
  first->SetPos(UiRect{0, 0, 10, 10});
  second->SetPos(UiRect{10, 0, 20, 10});
  std::vector<std::string> heard;
  first->AttachEvent(kEventUnSelect, [&heard](EventArgs*) {
    heard.push_back("first off");
    return true;
  });
  second->AttachClick([&heard](EventArgs*) {
    heard.push_back("second clicked");
    return true;
  });

  Feed(*first, {{kDown, 5, 5}, {kUp, 5, 5}});
  EXPECT_TRUE(first->IsSelected());
  Feed(*first, {{kDown, 5, 5}, {kUp, 5, 5}});  // a second click leaves it selected
  EXPECT_TRUE(first->IsSelected());
  Feed(*second, {{kDown, 15, 5}, {kUp, 15, 5}});
  EXPECT_TRUE(second->IsSelected());
  EXPECT_FALSE(first->IsSelected());
  EXPECT_EQ(heard, (std::vector<std::string>{"first off", "second clicked"}));
}

}  // namespace
