// Win32 half of the animations: the performance counter for their time and the timer manager
// for their 16 ms ticks.
#include <windows.h>

#include <utility>

#include "duilib/Core/Animation.h"
#include "duilib/Utils/TimerManager.h"

namespace mivo::duilib {

namespace {

class TimerManagerTicker : public AnimationTicker {
 public:
  int64_t NowMs() override {
    LARGE_INTEGER counter, frequency;
    QueryPerformanceCounter(&counter);
    QueryPerformanceFrequency(&frequency);
    return counter.QuadPart * 1000 / frequency.QuadPart;
  }
  void Every(const std::weak_ptr<nbase::WeakFlag>& owner, std::function<void()> tick) override {
    TimerManager::GetInstance()->AddTimer(owner, std::move(tick), ControlAnimation::kTickMs, -1);
  }
};

}  // namespace

AnimationTicker* PlatformAnimationTicker() {
  static TimerManagerTicker ticker;
  return &ticker;
}

}  // namespace mivo::duilib
