// Which tip shows and when: the mouse resting over a control for the hover delay, moves that
// put it off, leaving, pressing, tips found through text ids and boxes above.
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

constexpr char kSkin[] = R"(<Window size="200,100">
  <VBox>
    <Button name="chat" height="20" tooltiptext="Open the chat"/>
    <Button name="byid" height="20" tooltiptextid="STRID_QUIT"/>
    <Button name="none" height="20"/>
    <HBox height="20" tooltiptext="The whole row">
      <Button name="inrow"/>
    </HBox>
  </VBox>
</Window>)";

std::string Describe(const ToolTipAction& action) {
  std::string text;
  if (action.hide) text += "hide ";
  if (action.waitMs) text += "wait " + std::to_string(action.waitMs) + " ";
  if (action.show) text += "show " + std::string(action.text.begin(), action.text.end());
  while (!text.empty() && text.back() == ' ') text.pop_back();
  return text;
}

TEST(ToolTipPlan, ShowsAfterTheMouseRestsAndHidesOnLeaveOrPress) {
  GlobalManager::SetTextResolver([](const std::wstring& id) { return id == L"STRID_QUIT" ? L"Quit" : L""; });
  Window window;
  WindowBuilder builder;
  window.AttachRoot(static_cast<Box*>(builder.CreateFromString(kSkin, nullptr, &window)));
  window.ArrangeRoot(UiRect{0, 0, 200, 100});

  struct Step {
    const char* op;      // move (over `name`, none for no control), due, press, leave
    const wchar_t* name;
    int atMs;
    const char* expected;
  };
  struct Row {
    const char* what;
    std::vector<Step> steps;
  } rows[] = {
      {"rests, then shows", {{"move", L"chat", 0, "wait 500"}, {"due", nullptr, 500, "show Open the chat"}}},
      {"moves during the wait put it off",
       {{"move", L"chat", 0, "wait 500"},
        {"move", L"chat", 300, ""},
        {"due", nullptr, 500, "wait 300"},
        {"due", nullptr, 800, "show Open the chat"}}},
      {"another control's tip replaces it after a wait of its own",
       {{"move", L"chat", 0, "wait 500"},
        {"due", nullptr, 500, "show Open the chat"},
        {"move", L"byid", 600, "hide wait 500"},
        {"due", nullptr, 1100, "show Quit"}}},
      {"leaving the control hides it",
       {{"move", L"chat", 0, "wait 500"}, {"due", nullptr, 500, "show Open the chat"}, {"move", L"none", 600, "hide"}}},
      {"a press hides it until the mouse is over another control",
       {{"move", L"chat", 0, "wait 500"},
        {"due", nullptr, 500, "show Open the chat"},
        {"press", nullptr, 600, "hide"},
        {"move", L"chat", 700, ""},
        {"move", L"inrow", 800, "wait 500"},
        {"due", nullptr, 1300, "show The whole row"}}},
      {"leaving the window during the wait",
       {{"move", L"chat", 0, "wait 500"}, {"leave", nullptr, 200, ""}, {"due", nullptr, 500, ""}}},
      {"no tip, no wait", {{"move", L"none", 0, ""}, {"move", nullptr, 100, ""}}},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.what);
    ToolTipPlan plan;
    for (const Step& step : row.steps) {
      const std::string op = step.op;
      ToolTipAction action;
      if (op == "move")
        action = plan.MouseMove(step.name ? window.FindControl(step.name) : nullptr, UiPoint{1, 2}, step.atMs);
      else if (op == "due")
        action = plan.Due(step.atMs);
      else if (op == "press")
        action = plan.Press();
      else
        action = plan.Leave();
      EXPECT_EQ(Describe(action), step.expected) << op << " at " << step.atMs;
    }
  }
  GlobalManager::SetTextResolver(nullptr);
}

}  // namespace
