// Which tip shows and when: the mouse resting for the hover delay, moves that put it off,
// another control, leaving, pressing, tips through text ids and from the box above.
#include "duilib/Core/ToolTip.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "duilib/Core/Box.h"
#include "duilib/Core/GlobalManager.h"
#include "duilib/Core/Window.h"
#include "duilib/Core/WindowBuilder.h"

namespace {

using namespace mivo::duilib;

std::string Describe(const ToolTipAction& action) {
  std::string text = action.hide ? "hide" : "";
  if (action.waitMs) text += (text.empty() ? "wait " : " wait ") + std::to_string(action.waitMs);
  if (action.show) text += "show " + std::string(action.text.begin(), action.text.end());
  return text;
}

TEST(ToolTipPlan, ShowsAfterTheMouseRestsAndHidesOnLeaveOrPress) {
  GlobalManager::SetTextResolver([](const std::wstring& id) { return id == L"STRID_QUIT" ? L"Quit" : L""; });
  Window window;
  WindowBuilder builder;
  window.AttachRoot(static_cast<Box*>(builder.CreateFromString(R"(<Window><VBox>
    <Button name="chat" height="20" tooltiptext="Chat"/>
    <Button name="byid" height="20" tooltiptextid="STRID_QUIT"/>
    <Button name="none" height="20"/>
    <HBox height="20" tooltiptext="Row"><Button name="inrow"/></HBox></VBox></Window>)",
                                                               nullptr, &window)));
  // op: a control's name (the mouse moves over it; "-" for none), "due", "press" or "leave"
  struct Step {
    const wchar_t* op;
    int atMs;
    const char* expected;
  };
  const std::vector<std::vector<Step>> rows = {
      {{L"chat", 0, "wait 500"}, {L"chat", 300, ""}, {L"due", 500, "wait 300"}, {L"due", 800, "show Chat"}},
      {{L"chat", 0, "wait 500"},
       {L"due", 500, "show Chat"},
       {L"byid", 600, "hide wait 500"},
       {L"due", 1100, "show Quit"}},
      {{L"chat", 0, "wait 500"}, {L"due", 500, "show Chat"}, {L"none", 600, "hide"}, {L"-", 700, ""}},
      {{L"chat", 0, "wait 500"},
       {L"due", 500, "show Chat"},
       {L"press", 600, "hide"},
       {L"chat", 700, ""},  // no tip again over the control pressed
       {L"inrow", 800, "wait 500"},
       {L"due", 1300, "show Row"}},
      {{L"chat", 0, "wait 500"}, {L"leave", 200, ""}, {L"due", 500, ""}},
  };
  for (size_t i = 0; i < rows.size(); ++i) {
    ToolTipPlan plan;
    for (const Step& step : rows[i]) {
      const std::wstring op = step.op;
      ToolTipAction action;
      if (op == L"due")
        action = plan.Due(step.atMs);
      else if (op == L"press")
        action = plan.Press();
      else if (op == L"leave")
        action = plan.Leave();
      else
        action = plan.MouseMove(window.FindControl(op), UiPoint{1, 2}, step.atMs);
      EXPECT_EQ(Describe(action), step.expected) << "row " << i << " at " << step.atMs;
    }
  }
  GlobalManager::SetTextResolver(nullptr);
}

}  // namespace
