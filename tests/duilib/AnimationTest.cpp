// Fades and slides: values over time with a fake clock, what painting applies, and controls in
// a window driven by the timer queue at its 16 ms pace, one of them deleted halfway.
#include "duilib/Core/Animation.h"

#include <gtest/gtest.h>

#include "FakeTimerPlatform.h"
#include "duilib/Core/Box.h"
#include "duilib/Core/Control.h"
#include "duilib/Core/Window.h"
#include "duilib/Core/WindowBuilder.h"

namespace {

using namespace mivo::duilib;

TEST(ControlAnimation, MovesAtOnePaceAndEndsExactlyWhereItGoes) {
  // Hot fades take 200 ms all the way, visibility fades 250 ms; turned round at 127, a fade
  // goes back at the same pace and is home after 99 ms.
  struct Row {
    const char* what;
    bool visibility, toward;
    int turnAtMs, atMs, expected;
    bool running;
  } rows[] = {
      {"hot, halfway", false, true, -1, 100, 127, true},
      {"hot, at the end", false, true, -1, 200, 255, false},
      {"hot, turned round, halfway back", false, true, 100, 150, 63, true},
      {"hot, turned round, home", false, true, 100, 199, 0, false},
      {"hiding, halfway", true, false, -1, 125, 128, true},
      {"hiding, at the end", true, false, -1, 250, 0, false},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.what);
    ControlAnimation animation;
    auto start = [&](bool toward, int64_t at) {
      row.visibility ? animation.StartVisibility(toward, at) : animation.StartHot(toward, at);
    };
    start(row.toward, 5000);
    if (row.turnAtMs >= 0) {
      animation.Step(5000 + row.turnAtMs);
      start(!row.toward, 5000 + row.turnAtMs);
    }
    EXPECT_EQ(animation.Step(5000 + row.atMs), row.running);
    EXPECT_EQ(row.visibility ? animation.GetVisibility() : animation.GetHotAlpha(), row.expected);
  }
}

TEST(ControlAnimation, FrameForEachKindOfFade) {
  const UiRect pos{10, 20, 110, 60};  // 100 x 40
  struct Row {
    FadeSettings fade;
    int visibility, alpha;
    UiPoint offset;
    UiSize shown;
  } rows[] = {
      {{}, 128, 128, {0, 0}, {100, 40}},  // no kind set: the alpha
      {{.alpha = true, .width = true}, 51, 51, {0, 0}, {20, 40}},
      {{.height = true}, 128, 255, {0, 0}, {100, 20}},
      {{.inOutX = true}, 0, 255, {-100, 0}, {100, 40}},
      {{.inOutX = true, .inOutXDirection = 1}, 128, 255, {50, 0}, {100, 40}},
      {{.inOutY = true}, 64, 255, {0, -30}, {100, 40}},
  };
  for (const Row& row : rows) {
    const AnimationFrame frame = ControlAnimation::FrameFor(row.fade, row.visibility, pos);
    EXPECT_EQ(frame.alpha, row.alpha);
    EXPECT_EQ(frame.offset, row.offset);
    EXPECT_EQ(frame.shown, row.shown);
    EXPECT_TRUE(ControlAnimation::FrameFor(row.fade, 255, pos).IsIdentity(pos));
  }
}

// The timer queue with a fake clock as the ticker of every animation.
class AnimatedWindow : public ::testing::Test, public AnimationTicker {
 protected:
  int64_t NowMs() override { return clock.now / (duilib_test::FakeClock::kFrequency / 1000); }
  void Every(const std::weak_ptr<nbase::WeakFlag>& owner, std::function<void()> tick) override {
    queue.AddTimer(owner, std::move(tick), ControlAnimation::kTickMs, -1);
  }
  void Tick(int times) {  // as the multimedia timer polls
    for (int i = 0; i < times; ++i) {
      clock.AdvanceMs(ControlAnimation::kTickMs);
      queue.Poll();
    }
  }
  void SetUp() override {
    SetAnimationTicker(this);
    WindowBuilder builder;
    window.AttachRoot(static_cast<Box*>(builder.CreateFromString(R"(<Window><VBox>
      <Button name="hot" height="30" normalcolor="#FF000000" hotcolor="#FFFFFFFF"/>
      <Control name="fading" height="30" fadealpha="true"/>
      <Control name="plain" height="30"/></VBox></Window>)",
                                                                 nullptr, &window)));
    window.ArrangeRoot(UiRect{0, 0, 200, 100});
  }
  void TearDown() override { SetAnimationTicker(nullptr); }

  duilib_test::FakeClock clock;
  duilib_test::FakeDriver driver;
  TimerQueue queue{clock, driver};
  Window window;
};

TEST_F(AnimatedWindow, TheHotLookFadesInAndOutAtTheTimersPace) {
  Control* button = window.FindControl(L"hot");
  window.HandleMouseEvent(kEventMouseMove, UiPoint{5, 5});
  Tick(1);
  EXPECT_EQ(button->GetHotAlpha(), 20);  // 16 of 200 ms
  Tick(11);
  EXPECT_EQ(button->GetHotAlpha(), 244);
  Tick(2);  // hot exactly on the 13th tick; the 14th finds no more to do
  EXPECT_EQ(button->GetHotAlpha(), 255);
  EXPECT_EQ(queue.Size(), 0u);

  window.HandleMouseEvent(kEventMouseMove, UiPoint{5, 95});
  Tick(6);
  EXPECT_EQ(button->GetHotAlpha(), 255 - 255 * 96 / 200);
  Tick(7);
  EXPECT_EQ(button->GetHotAlpha(), 0);
}

TEST_F(AnimatedWindow, HidingAndShowingEndInTheStateAskedAndStopWithTheControl) {
  Control* fading = window.FindControl(L"fading");
  fading->SetVisible(false);
  Tick(8);
  EXPECT_TRUE(fading->IsVisible()) << "still on its way out";
  EXPECT_EQ(fading->GetAnimationFrame().alpha, 255 - 255 * 128 / 250);
  Tick(8);
  EXPECT_FALSE(fading->IsVisible());
  EXPECT_TRUE(fading->GetAnimationFrame().IsIdentity(fading->GetPos()));

  fading->SetAttribute(L"fadevisible", L"true");
  EXPECT_EQ(fading->GetAnimationFrame().alpha, 0);
  Tick(17);  // the first tick only drops the ticks of the fade before
  EXPECT_TRUE(fading->IsVisible());
  EXPECT_EQ(fading->GetAnimationFrame().alpha, 255);

  // "fadevisible" fades a control with no kind set; deleted halfway, its ticks stop (a tick
  // that reached it would be caught by the sanitizer).
  Control* plain = window.FindControl(L"plain");
  plain->SetAttribute(L"fadevisible", L"false");
  Tick(4);
  EXPECT_LT(plain->GetAnimationFrame().alpha, 255);
  ASSERT_TRUE(window.GetRoot()->Remove(plain));
  Tick(20);
  EXPECT_EQ(queue.Size(), 0u);
  EXPECT_TRUE(driver.running.empty());
}

}  // namespace
