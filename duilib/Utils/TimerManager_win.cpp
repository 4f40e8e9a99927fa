// Win32 half of the timer manager: the performance counter, the winmm multimedia timer and
// the hidden window that turns its ticks into Poll calls on the UI thread.
#include "duilib/Utils/TimerManager.h"

#include <windows.h>
// after windows.h, which it needs
#include <mmsystem.h>

#include <atomic>
#include <utility>

#include "base/synchronization/lock.h"

namespace mivo::duilib {
namespace {

class PerformanceClock : public TimerClock {
 public:
  int64_t Frequency() override {
    LARGE_INTEGER f;
    QueryPerformanceFrequency(&f);
    return f.QuadPart;
  }
  int64_t Now() override {
    LARGE_INTEGER c;
    QueryPerformanceCounter(&c);
    return c.QuadPart;
  }
};

// Runs on winmm's own thread: it only wakes the UI thread.
void CALLBACK OnMultimediaTick(UINT, UINT, DWORD_PTR, DWORD_PTR, DWORD_PTR) {
  if (HWND window = TimerManager::GetInstance()->GetWindow()) {
    PostMessageW(window, TimerManager::kPollMessage, 0, 0);
  }
}

class MultimediaTimer : public TimerDriver {
 public:
  MultimediaTimer() {
    TIMECAPS caps{};
    if (timeGetDevCaps(&caps, sizeof(caps)) == TIMERR_NOERROR && caps.wPeriodMax > 0) maxPeriod_ = caps.wPeriodMax;
  }
  uint32_t Start(uint32_t periodMs) override {
    return timeSetEvent(periodMs, 1, OnMultimediaTick, 0, TIME_PERIODIC | TIME_CALLBACK_FUNCTION);
  }
  void Kill(uint32_t id) override { timeKillEvent(id); }
  uint32_t MaxPeriod() const override { return maxPeriod_; }

 private:
  uint32_t maxPeriod_ = UINT32_MAX;
};

LRESULT CALLBACK TimerWindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == TimerManager::kPollMessage) {
    TimerManager::GetInstance()->Poll();
    return 1;
  }
  return DefWindowProcW(window, message, wParam, lParam);
}

std::atomic<TimerManager*> g_instance{nullptr};

// Guards the creation of the instance; never deleted, like the instance itself, so that a
// callback during the process's exit still finds it.
nbase::Lock& CreationLock() {
  static nbase::Lock* lock = new nbase::Lock();
  return *lock;
}

}  // namespace

TimerManager* TimerManager::GetInstance() {
  TimerManager* instance = g_instance.load(std::memory_order_acquire);
  if (instance == nullptr) {
    nbase::AutoLock hold(CreationLock());
    instance = g_instance.load(std::memory_order_relaxed);
    if (instance == nullptr) {
      instance = new TimerManager();
      g_instance.store(instance, std::memory_order_release);
    }
  }
  return instance;
}

TimerManager::TimerManager()
    : clock_(std::make_unique<PerformanceClock>()),
      driver_(std::make_unique<MultimediaTimer>()),
      queue_(std::make_unique<TimerQueue>(*clock_, *driver_)) {
  HINSTANCE module = GetModuleHandleW(nullptr);
  WNDCLASSEXW wc{};
  wc.cbSize = sizeof(wc);
  wc.lpfnWndProc = TimerWindowProc;
  wc.hInstance = module;
  wc.lpszClassName = kWindowClass;
  RegisterClassExW(&wc);
  window_ = CreateWindowW(kWindowClass, L"", 0, 0, 0, 0, 0, nullptr, nullptr, module, nullptr);
}

TimerManager::~TimerManager() {
  queue_.reset();
  if (window_ != nullptr) DestroyWindow(window_);
}

bool TimerManager::AddTimer(const std::weak_ptr<nbase::WeakFlag>& owner, TimerCallback callback, UINT delayMs,
                            int repeatCount) {
  return queue_->AddTimer(owner, std::move(callback), delayMs, repeatCount);
}

void TimerManager::Poll() { queue_->Poll(); }

}  // namespace mivo::duilib
