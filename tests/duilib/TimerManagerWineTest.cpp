// The timer manager with the real multimedia timer, performance counter and hidden window
// under Wine: the test thread owns the window and pumps its messages, as a UI thread would.
#include <windows.h>
// after windows.h, which it needs
#include <mmsystem.h>

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <vector>

#include "duilib/Utils/TimerManager.h"

namespace {

using mivo::duilib::TimerManager;

double NowMs() {
  LARGE_INTEGER counter, frequency;
  QueryPerformanceCounter(&counter);
  QueryPerformanceFrequency(&frequency);
  return counter.QuadPart * 1000.0 / frequency.QuadPart;
}

class TimerManagerUnderWine : public ::testing::Test {
 protected:
  void SetUp() override {
    manager = TimerManager::GetInstance();
    window = manager->GetWindow();
    ASSERT_NE(window, nullptr);
    ASSERT_EQ(manager->GetMultimediaTimerId(), 0u) << "a timer of an earlier test is still queued";
  }

  // Dispatches this thread's messages until done() or timeoutMs; counts the poll messages.
  bool PumpUntil(const std::function<bool()>& done, double timeoutMs) {
    const double start = NowMs();
    for (;;) {
      MSG msg;
      while (PeekMessageW(&msg, nullptr, 0, 0, PM_REMOVE)) {
        if (msg.hwnd == window && msg.message == TimerManager::kPollMessage) ++polls;
        DispatchMessageW(&msg);
      }
      if (done()) return true;
      if (NowMs() - start >= timeoutMs) return false;
      MsgWaitForMultipleObjects(0, nullptr, FALSE, 5, QS_ALLINPUT);
    }
  }
  void Add(const std::weak_ptr<nbase::WeakFlag>& owner, UINT delayMs, int repeatCount,
           const TimerManager::TimerCallback& callback) {
    ASSERT_TRUE(manager->AddTimer(owner, callback, delayMs, repeatCount));
  }
  void PumpFor(double ms) {
    PumpUntil([] { return false; }, ms);
  }

  // True when no poll message arrives within ms once those already posted are handled.
  bool StaysQuiet(DWORD ms) {
    PumpFor(0);
    Sleep(ms);
    MSG msg;
    return !PeekMessageW(&msg, window, TimerManager::kPollMessage, TimerManager::kPollMessage, PM_NOREMOVE);
  }

  TimerManager* manager = nullptr;
  HWND window = nullptr;
  int polls = 0;
};

TEST_F(TimerManagerUnderWine, HiddenWindowOfItsOwnClassAnswersThePollMessage) {
  wchar_t name[64] = {};
  GetClassNameW(window, name, 64);
  EXPECT_STREQ(name, L"UI_ANIMATION_TIMERMANAGER_H_");
  EXPECT_FALSE(IsWindowVisible(window));
  EXPECT_EQ(GetWindowThreadProcessId(window, nullptr), GetCurrentThreadId());
  EXPECT_EQ(SendMessageW(window, TimerManager::kPollMessage, 0, 0), 1);
  EXPECT_EQ(TimerManager::GetInstance(), manager);
}

TEST_F(TimerManagerUnderWine, OnceAfter300MsOnTheWindowThreadThenNoTimer) {
  nbase::WeakCallbackFlag owner;
  std::vector<double> ranAt;
  DWORD ranOn = 0;
  const double added = NowMs();
  Add(owner.GetWeakFlag(), 300, 1, [&] {
    ranAt.push_back(NowMs() - added);
    ranOn = GetCurrentThreadId();
  });
  const UINT timer = manager->GetMultimediaTimerId();
  ASSERT_NE(timer, 0u);

  ASSERT_TRUE(PumpUntil([&] { return !ranAt.empty(); }, 5000));
  EXPECT_GE(ranAt[0], 250);
  EXPECT_LE(ranAt[0], 1500);
  EXPECT_EQ(ranOn, GetCurrentThreadId());
  EXPECT_EQ(manager->GetMultimediaTimerId(), 0u);
  EXPECT_NE(timeKillEvent(timer), static_cast<MMRESULT>(TIMERR_NOERROR)) << "the multimedia timer still runs";
  EXPECT_TRUE(StaysQuiet(150));
  PumpFor(100);
  EXPECT_EQ(ranAt.size(), 1u);
}

TEST_F(TimerManagerUnderWine, DistantTimerWaitsWithOneLongPeriod) {
  nbase::WeakCallbackFlag owner;
  std::vector<double> ranAt;
  const double added = NowMs();
  Add(owner.GetWeakFlag(), 1200, 1, [&] { ranAt.push_back(NowMs() - added); });
  PumpFor(100);  // the first 16 ms tick plans the long wait
  polls = 0;
  PumpFor(300);
  // 16 ms polling would post about 18 in this time; the long period none
  EXPECT_LE(polls, 1);
  EXPECT_TRUE(ranAt.empty());

  ASSERT_TRUE(PumpUntil([&] { return !ranAt.empty(); }, 5000));
  EXPECT_GE(ranAt[0], 1200.0);
  EXPECT_LE(ranAt[0], 3000.0);
  EXPECT_EQ(manager->GetMultimediaTimerId(), 0u);
}

}  // namespace
