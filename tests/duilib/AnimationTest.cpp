// Fades and slides: the values over time with a fake clock, what painting applies, and
// controls in a window driven by the timer queue at its 16 ms pace, deleted halfway too.
#include "duilib/Core/Animation.h"

#include <gtest/gtest.h>

#include <vector>

#include "FakeTimerPlatform.h"
#include "duilib/Core/Box.h"
#include "duilib/Core/Control.h"
#include "duilib/Core/Window.h"
#include "duilib/Core/WindowBuilder.h"

namespace {

using namespace mivo::duilib;

TEST(ControlAnimation, MovesAtOnePaceAndEndsExactlyWhereItGoes) {
  // Hot fades take 200 ms all the way, visibility fades 250 ms; one turned round goes back
  // at the same pace, so from 127 it is home after 99 ms.
  struct Row {
    const char* what;
    bool visibility;
    bool toward;     // hot or shown
    int turnAtMs;    // -1: not turned round
    int atMs;
    int expected;
    bool running;
  } rows[] = {
      {"hot, halfway", false, true, -1, 100, 127, true},
      {"hot, at the end", false, true, -1, 200, 255, false},
      {"hot, long after", false, true, -1, 900, 255, false},
      {"hot, turned round, halfway back", false, true, 100, 150, 63, true},
      {"hot, turned round, home", false, true, 100, 199, 0, false},
      {"hiding, halfway", true, false, -1, 125, 128, true},
      {"hiding, at the end", true, false, -1, 250, 0, false},
      {"hiding, turned round, shown again", true, false, 125, 250, 255, false},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.what);
    ControlAnimation animation;
    animation.SetHot(0);
    const int64_t t0 = 5000;
    auto start = [&](bool toward, int64_t at) {
      row.visibility ? animation.StartVisibility(toward, at) : animation.StartHot(toward, at);
    };
    start(row.toward, t0);
    if (row.turnAtMs >= 0) {
      animation.Step(t0 + row.turnAtMs);
      start(!row.toward, t0 + row.turnAtMs);
    }
    EXPECT_EQ(animation.Step(t0 + row.atMs), row.running);
    EXPECT_EQ(row.visibility ? animation.GetVisibility() : animation.GetHotAlpha(), row.expected);
  }
}

TEST(ControlAnimation, FrameForEachKindOfFade) {
  const UiRect pos{10, 20, 110, 60};  // 100 x 40
  struct Row {
    const char* what;
    FadeSettings fade;
    int visibility;
    int alpha;
    UiPoint offset;
    UiSize shown;
  } rows[] = {
      {"no kind set fades the alpha", {}, 128, 128, {0, 0}, {100, 40}},
      {"alpha, gone", {.alpha = true}, 0, 0, {0, 0}, {100, 40}},
      {"width, halfway", {.width = true}, 128, 255, {0, 0}, {50, 40}},
      {"height, halfway", {.height = true}, 128, 255, {0, 0}, {100, 20}},
      {"from the left, not yet in", {.inOutX = true}, 0, 255, {-100, 0}, {100, 40}},
      {"from the right, halfway", {.inOutX = true, .inOutXDirection = 1}, 128, 255, {50, 0}, {100, 40}},
      {"from the top, a quarter in", {.inOutY = true}, 64, 255, {0, -30}, {100, 40}},
      {"alpha and width together", {.alpha = true, .width = true}, 51, 51, {0, 0}, {20, 40}},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.what);
    const AnimationFrame frame = ControlAnimation::FrameFor(row.fade, row.visibility, pos);
    EXPECT_EQ(frame.alpha, row.alpha);
    EXPECT_EQ(frame.offset, row.offset);
    EXPECT_EQ(frame.shown, row.shown);
    EXPECT_FALSE(frame.IsIdentity(pos));
    EXPECT_TRUE(ControlAnimation::FrameFor(row.fade, 255, pos).IsIdentity(pos));
  }
}

// The timer queue with a fake clock, as the ticker of every animation.
class QueueTicker : public AnimationTicker {
 public:
  int64_t NowMs() override { return clock.now / (duilib_test::FakeClock::kFrequency / 1000); }
  void Every(const std::weak_ptr<nbase::WeakFlag>& owner, std::function<void()> tick) override {
    queue.AddTimer(owner, std::move(tick), ControlAnimation::kTickMs, -1);
  }
  // Polls every 16 ms, as the multimedia timer would.
  void Tick(int times = 1) {
    for (int i = 0; i < times; ++i) {
      clock.AdvanceMs(ControlAnimation::kTickMs);
      queue.Poll();
    }
  }
  duilib_test::FakeClock clock;
  duilib_test::FakeDriver driver;
  TimerQueue queue{clock, driver};
};

constexpr char kSkin[] = R"(<Window size="200,100">
  <VBox>
    <Button name="hot" height="30" normalcolor="#FF000000" hotcolor="#FFFFFFFF"/>
    <Control name="fading" height="30" bkcolor="#FF00FF00" fadealpha="true"/>
    <Control name="plain" height="30" bkcolor="#FF0000FF"/>
  </VBox>
</Window>)";

class AnimatedWindow : public ::testing::Test {
 protected:
  void SetUp() override {
    SetAnimationTicker(&ticker);
    WindowBuilder builder;
    window.AttachRoot(static_cast<Box*>(builder.CreateFromString(kSkin, nullptr, &window)));
    window.ArrangeRoot(UiRect{0, 0, 200, 100});
  }
  void TearDown() override { SetAnimationTicker(nullptr); }
  Control* Find(const wchar_t* name) { return window.FindControl(name); }

  QueueTicker ticker;
  Window window;
};

TEST_F(AnimatedWindow, TheHotLookFadesInAndOutAtTheTimersPace) {
  Control* button = Find(L"hot");
  window.HandleMouseEvent(kEventMouseMove, UiPoint{5, 5});
  EXPECT_EQ(button->GetState(), kControlStateHot);
  std::vector<int> seen;
  for (int i = 0; i < 14; ++i) {
    ticker.Tick();
    seen.push_back(button->GetHotAlpha());
  }
  // 16, 32, ... ms of 200: up by 20 or 21 a tick, exactly hot on the 13th tick (208 ms).
  EXPECT_EQ(seen.front(), 20);
  EXPECT_EQ(seen[11], 244);
  EXPECT_EQ(seen[12], 255);
  EXPECT_EQ(ticker.queue.Size(), 0u) << "the ticks stop with the fade";

  window.HandleMouseEvent(kEventMouseMove, UiPoint{5, 95});  // over the plain control
  EXPECT_EQ(button->GetState(), kControlStateNormal);
  ticker.Tick(6);
  EXPECT_EQ(button->GetHotAlpha(), 255 - 255 * 96 / 200);
  ticker.Tick(7);
  EXPECT_EQ(button->GetHotAlpha(), 0);
}

TEST_F(AnimatedWindow, HidingAndShowingWithAFadeEndInTheStateAsked) {
  Control* fading = Find(L"fading");
  fading->SetVisible(false);
  ticker.Tick(8);  // 128 of 250 ms
  EXPECT_TRUE(fading->IsVisible()) << "still on its way out";
  EXPECT_EQ(fading->GetAnimationFrame().alpha, 255 - 255 * 128 / 250);
  ticker.Tick(8);
  EXPECT_FALSE(fading->IsVisible());
  EXPECT_TRUE(fading->GetAnimationFrame().IsIdentity(fading->GetPos()));

  fading->SetAttribute(L"fadevisible", L"true");
  EXPECT_TRUE(fading->IsVisible());
  EXPECT_EQ(fading->GetAnimationFrame().alpha, 0);
  ticker.Tick(17);  // the first tick only drops the ticks of the fade before
  EXPECT_EQ(fading->GetAnimationFrame().alpha, 255);
  EXPECT_EQ(ticker.queue.Size(), 0u);

  // Without a fade set, "fadevisible" still fades; "visible" does not.
  Control* plain = Find(L"plain");
  plain->SetAttribute(L"fadevisible", L"false");
  ticker.Tick();
  EXPECT_TRUE(plain->IsVisible());
  EXPECT_LT(plain->GetAnimationFrame().alpha, 255);
  plain->SetAttribute(L"visible", L"false");
  EXPECT_FALSE(plain->IsVisible());
}

TEST_F(AnimatedWindow, AControlDeletedHalfwayStopsItsAnimation) {
  Control* fading = Find(L"fading");
  fading->SetVisible(false);
  ticker.Tick(4);
  ASSERT_EQ(ticker.queue.Size(), 1u);
  ASSERT_TRUE(window.GetRoot()->Remove(fading));  // deletes it
  ticker.Tick(20);  // a tick that reached the deleted control would be caught by the sanitizer
  EXPECT_EQ(ticker.queue.Size(), 0u);
  EXPECT_TRUE(ticker.driver.running.empty()) << "no timer left running";
}

}  // namespace
