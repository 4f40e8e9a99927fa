// Tips and fades in a real window under Wine, with the real timer manager: the tip window of
// comctl32 appears with the control's text once the mouse has rested for the hover delay and
// goes on a press or when the mouse leaves; a fade runs on the 16 ms ticks and stops them.
#include <windows.h>
// after windows.h, which it needs
#include <commctrl.h>

#include <gtest/gtest.h>

#include <set>
#include <string>

#include "WineWindowSupport.h"
#include "duilib/Core/Box.h"
#include "duilib/Core/GlobalManager.h"
#include "duilib/Core/Window.h"
#include "duilib/Core/WindowBuilder.h"
#include "duilib/Utils/TimerManager.h"

namespace {

using namespace mivo::duilib;
using wine_window::PumpUntil;

constexpr char kSkin[] = R"(<Window size="200,120">
  <VBox>
    <Button name="chat" height="40" tooltiptextid="STRID_CHAT"/>
    <Button name="none" height="40"/>
    <Control name="fading" height="40" bkcolor="#FF00FF00" fadealpha="true"/>
  </VBox>
</Window>)";

class TippedWindow : public ::testing::Test {
 protected:
  void SetUp() override {
    GlobalManager::SetTextResolver([](const std::wstring& id) { return id == L"STRID_CHAT" ? L"打开聊天" : L""; });
    WindowBuilder builder;
    window.AttachRoot(static_cast<Box*>(builder.CreateFromString(kSkin, nullptr, &window)));
    hwnd = window.Create(nullptr, L"Tips", WS_POPUP, 0, false, UiRect{40, 40, 240, 160});
    ASSERT_NE(hwnd, nullptr);
    window.ShowWindow();
  }
  void TearDown() override {
    GlobalManager::SetTextResolver(nullptr);
    // The next test of the timer manager expects its queue empty.
    PumpUntil([] { return TimerManager::GetInstance()->GetMultimediaTimerId() == 0; }, 2000);
  }
  // Moves the pointer there too, so that Wine sees the mouse in the window and does not
  // report it gone.
  void MoveTo(int x, int y) {
    POINT screen{x, y};
    ClientToScreen(hwnd, &screen);
    SetCursorPos(screen.x, screen.y);
    SendMessageW(hwnd, WM_MOUSEMOVE, 0, MAKELPARAM(x, y));
  }
  HWND Tip() const {
    struct Search {
      HWND owner, found;
    } search{hwnd, nullptr};
    EnumThreadWindows(
        GetCurrentThreadId(),
        [](HWND candidate, LPARAM data) -> BOOL {
          auto* s = reinterpret_cast<Search*>(data);
          wchar_t name[64] = {};
          GetClassNameW(candidate, name, 64);
          if (std::wstring(name) != TOOLTIPS_CLASSW || GetWindow(candidate, GW_OWNER) != s->owner) return TRUE;
          s->found = candidate;
          return FALSE;
        },
        reinterpret_cast<LPARAM>(&search));
    return search.found;
  }
  bool TipShown() const {
    HWND tip = Tip();
    return tip && IsWindowVisible(tip);
  }
  std::wstring TipText() const {
    wchar_t text[128] = {};
    SendMessageW(Tip(), WM_GETTEXT, 128, reinterpret_cast<LPARAM>(text));
    return text;
  }

  Window window;
  HWND hwnd = nullptr;
};

TEST_F(TippedWindow, TheTipShowsAfterTheHoverDelayAndGoesOnAPressOrWhenTheMouseLeaves) {
  MoveTo(20, 20);
  const DWORD start = GetTickCount();
  ASSERT_TRUE(PumpUntil([this] { return TipShown(); }, 3000)) << "no tip window shown";
  EXPECT_GE(GetTickCount() - start, 400u) << "shown before the hover delay";
  EXPECT_EQ(TipText(), L"打开聊天");

  SendMessageW(hwnd, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(20, 20));
  SendMessageW(hwnd, WM_LBUTTONUP, 0, MAKELPARAM(20, 20));
  EXPECT_FALSE(TipShown());
  MoveTo(21, 21);  // still over the pressed control: no tip again
  PumpUntil([] { return false; }, 700);
  EXPECT_FALSE(TipShown());

  MoveTo(20, 60);  // a control without a tip, then back
  MoveTo(20, 20);
  ASSERT_TRUE(PumpUntil([this] { return TipShown(); }, 3000));
  SendMessageW(hwnd, WM_MOUSELEAVE, 0, 0);
  EXPECT_FALSE(TipShown());
}

TEST_F(TippedWindow, AFadeRunsOnTheTimerTicksAndEndsHidden) {
  Control* fading = window.FindControl(L"fading");
  fading->SetVisible(false);
  std::set<int> alphas;
  const DWORD start = GetTickCount();
  ASSERT_TRUE(PumpUntil(
      [&] {
        alphas.insert(fading->GetAnimationFrame().alpha);
        return !fading->IsVisible();
      },
      3000));
  const DWORD took = GetTickCount() - start;
  EXPECT_GE(took, 240u);
  EXPECT_LT(took, 1000u);
  // About one step a tick: 250 ms at 16 ms is 15 or 16 steps; allow for a slow machine.
  EXPECT_GE(alphas.size(), 6u);
  EXPECT_EQ(fading->GetAnimationFrame().alpha, 255) << "shown in full when next shown";
  EXPECT_TRUE(PumpUntil([] { return TimerManager::GetInstance()->GetMultimediaTimerId() == 0; }, 1000))
      << "the ticks go on after the fade";
}

}  // namespace
