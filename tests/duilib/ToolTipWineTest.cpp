// Tips and fades in a real window under Wine with the real timer manager: comctl32's tip window
// shows the control's text after the hover delay and goes on a press or when the mouse leaves;
// a fade runs on the 16 ms ticks and stops them.
#include <windows.h>
// after windows.h, which it needs
#include <commctrl.h>

#include <gtest/gtest.h>

#include <functional>
#include <set>
#include <string>

#include "WineWindowSupport.h"
#include "duilib/Core/Animation.h"
#include "duilib/Core/Box.h"
#include "duilib/Core/GlobalManager.h"
#include "duilib/Core/Window.h"
#include "duilib/Core/WindowBuilder.h"
#include "duilib/Utils/TimerManager.h"

namespace {

using namespace mivo::duilib;
using wine_window::Picture;
using wine_window::ProgramFolder;
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
  // The window's tooltip window, found as a test finds any window: by class and owner.
  HWND Tip() const {
    for (HWND w = FindWindowExW(nullptr, nullptr, TOOLTIPS_CLASSW, nullptr); w;
         w = FindWindowExW(nullptr, w, TOOLTIPS_CLASSW, nullptr))
      if (GetWindow(w, GW_OWNER) == hwnd) return w;
    return nullptr;
  }
  bool TipShown() const { return Tip() && IsWindowVisible(Tip()); }
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

TEST_F(TippedWindow, AFadeRunsOnTheTimerTicksAndStopsThem) {
  Control* fading = window.FindControl(L"fading");
  fading->SetVisible(false);
  std::set<int> alphas;
  const DWORD start = GetTickCount();
  ASSERT_TRUE(PumpUntil([&] { return alphas.insert(fading->GetAnimationFrame().alpha), !fading->IsVisible(); }, 3000));
  EXPECT_GE(GetTickCount() - start, 240u);
  EXPECT_GE(alphas.size(), 6u) << "15 or 16 steps of 16 ms; a slow machine may miss some";
  EXPECT_TRUE(PumpUntil([] { return TimerManager::GetInstance()->GetMultimediaTimerId() == 0; }, 1000));
}

// A ticker moved by hand: the fade stands where the test leaves it.
struct StillTicker : AnimationTicker {
  int64_t NowMs() override { return now; }
  void Every(const std::weak_ptr<nbase::WeakFlag>&, std::function<void()> callback) override { tick = callback; }
  int64_t now = 0;
  std::function<void()> tick;
};

TEST_F(TippedWindow, HalfwayThroughAFadeTheControlIsPaintedHalfBlended) {
  StillTicker ticker;
  SetAnimationTicker(&ticker);
  window.FindControl(L"fading")->SetVisible(false);
  ticker.now = 125;  // half of 250 ms: alpha 128
  ticker.tick();
  const std::wstring png = ProgramFolder() + L"fade_halfway.png";
  const bool rendered = window.RenderToPng(png);
  SetAnimationTicker(nullptr);
  ASSERT_TRUE(rendered);
  const uint32_t rgb = Picture(png).At(100, 100);  // green over the white window
  EXPECT_EQ((rgb >> 8) & 0xFF, 255u);
  EXPECT_NEAR(static_cast<int>(rgb >> 16), 127, 4);
}

}  // namespace
