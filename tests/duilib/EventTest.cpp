// Events as forms and the window use them: attached handlers, weak handlers of forms that go
// away, a control's own reaction to input, and finding the control under the mouse.
#include "duilib/Core/Events.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "base/callback/SupportWeakCallback.h"
#include "duilib/Core/Box.h"
#include "duilib/Core/Control.h"

namespace {

using namespace mivo::duilib;

EventArgs Mouse(EventType type, int x, int y) {
  EventArgs args;
  args.Type = type;
  args.ptMouse = UiPoint{x, y};
  return args;
}

TEST(ControlEvents, HandlersRunInOrderUntilOneAnswersFalse) {
  Control control;
  std::vector<std::string> heard;
  control.AttachEvent(kEventClick, [&heard](EventArgs* args) {
    heard.push_back("first " + std::to_string(args->wParam) + " " + std::to_string(args->lParam));
    return true;
  });
  control.AttachClick([&heard, &control](EventArgs* args) {
    heard.push_back(args->pSender == &control ? "second" : "second, wrong sender");
    return false;
  });
  control.AttachClick([&heard](EventArgs*) {
    heard.push_back("third");
    return true;
  });
  control.AttachEvent(kEventSelect, [&heard](EventArgs*) {
    heard.push_back("select");
    return true;
  });

  EXPECT_FALSE(control.SendEvent(kEventClick, 7, -3));
  EXPECT_EQ(heard, (std::vector<std::string>{"first 7 -3", "second"}));

  heard.clear();
  control.DetachEvent(kEventClick);
  EXPECT_TRUE(control.SendEvent(kEventClick));
  EXPECT_TRUE(control.SendEvent(kEventSelect));
  EXPECT_EQ(heard, (std::vector<std::string>{"select"}));

  Control other;  // a relayed event keeps the sender it has
  EventArgs args;
  args.Type = kEventSelect;
  args.pSender = &other;
  control.AttachEvent(kEventSelect, [&other](EventArgs* a) { return a->pSender == &other; });
  EXPECT_TRUE(control.SendEvent(args));
}

TEST(ControlEvents, AHandlerMayDeleteTheControlOrAttachMore) {
  auto* control = new Control();
  int later = 0, added = 0;
  control->AttachClick([control](EventArgs*) {
    delete control;  // a click that closes the form
    return true;
  });
  control->AttachClick([&later](EventArgs*) { return ++later > 0; });
  EXPECT_FALSE(control->SendEvent(kEventClick));
  EXPECT_EQ(later, 0);

  Control kept;
  kept.AttachClick([&kept, &added](EventArgs*) {
    kept.AttachClick([&added](EventArgs*) { return ++added > 0; });
    return true;
  });
  kept.SendEvent(kEventClick);
  EXPECT_EQ(added, 0);  // attached during the event: heard from the next one on
  kept.SendEvent(kEventClick);
  EXPECT_EQ(added, 1);
}

class Form : public nbase::SupportWeakCallback {
 public:
  bool OnClick(EventArgs*) {
    ++clicks;
    return true;
  }
  int clicks = 0;
};

TEST(ControlEvents, WeakHandlersOfAFormThatIsGoneFallSilent) {
  Control button;
  auto form = std::make_unique<Form>();
  Form* raw = form.get();
  int after = 0, clicksBeforeClose = 0;
  button.AttachClick(form->ToWeakCallback([raw](EventArgs* args) { return raw->OnClick(args); }));
  button.AttachClick([&after](EventArgs*) { return ++after > 0; });

  EXPECT_TRUE(button.SendEvent(kEventClick));
  clicksBeforeClose = raw->clicks;
  EXPECT_EQ(clicksBeforeClose, 1);
  form.reset();  // the form closes; its handler must not touch it any more (ASan would see)
  EXPECT_TRUE(button.SendEvent(kEventClick));
  EXPECT_EQ(after, 2);  // attached as a weak callback, the dead handler is passed over

  // Stored as a plain EventCallback first, an expired weak handler answers false: the ones
  // after it are not heard. This is why AttachEvent takes weak callbacks as they are.
  Control other;
  auto second = std::make_unique<Form>();
  EventCallback stored = second->ToWeakCallback([](EventArgs*) { return true; });
  int behind = 0;
  other.AttachClick(stored);
  other.AttachClick([&behind](EventArgs*) { return ++behind > 0; });
  EXPECT_TRUE(other.SendEvent(kEventClick));
  second.reset();
  EXPECT_FALSE(other.SendEvent(kEventClick));
  EXPECT_EQ(behind, 1);
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
  constexpr EventType kEnter = kEventMouseEnter, kLeave = kEventMouseLeave, kDown = kEventMouseButtonDown,
                      kUp = kEventMouseButtonUp, kDouble = kEventMouseDoubleClick;
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
      {"second press of a double click", {{kDown, 20, 20, kPushed}, {kUp, 20, 20, kHot}, {kDouble, 20, 20, kPushed}}},
  };
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
  const Row rows[] = {
      {L"enabled=\"false\"", false, false},
      {L"mouse=\"false\"", false, true},
      {L"keyboard=\"false\"", true, false},
      {L"enabled=\"true\"", true, true},
  };
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
  const Row rows[] = {
      {5, 5, L"e"},       {30, 5, L"a"},      {20, 70, L"c"},       {150, 70, L"b"},    {160, 120, L"d"},
      {20, 160, L"root"}, {50, 199, L"root"}, {50, 200, L"(none)"}, {-1, 5, L"(none)"},
  };
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

}  // namespace
