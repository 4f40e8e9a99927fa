#pragma once
// The framework's one source of timed callbacks on the UI thread (animations, delayed window
// actions). One multimedia timer wakes a hidden window, whose thread runs what is due; the
// queue and its decisions live in TimerQueue. Windows only.
#include <cstdint>
#include <memory>

#include "duilib/Utils/TimerQueue.h"
#include "toolkit/export.h"
#include "toolkit/platform.h"

namespace mivo::duilib {

class MIVO_COMMON_API TimerManager {
 public:
  using TimerCallback = TimerQueue::Callback;
  static constexpr UINT kPollMessage = 11023;
  static constexpr const wchar_t* kWindowClass = L"UI_ANIMATION_TIMERMANAGER_H_";

  // The one manager of the process. Call it first on the UI thread: the hidden window, and
  // so every callback, belongs to the thread that creates the manager.
  static TimerManager* GetInstance();
  virtual ~TimerManager();
  TimerManager(const TimerManager&) = delete;
  TimerManager& operator=(const TimerManager&) = delete;

  // Runs callback after delayMs and then every delayMs, repeatCount runs in all (-1: while
  // the owner lives). Always true. Call it on the UI thread.
  bool AddTimer(const std::weak_ptr<nbase::WeakFlag>& owner, TimerCallback callback, UINT delayMs, int repeatCount);
  // Runs what is due; the hidden window calls it for each kPollMessage.
  void Poll();

  HWND GetWindow() const { return window_; }
  // The running multimedia timer, 0 when none.
  uint32_t GetMultimediaTimerId() const { return queue_->TimerId(); }

 private:
  TimerManager();

  std::unique_ptr<TimerClock> clock_;
  std::unique_ptr<TimerDriver> driver_;
  std::unique_ptr<TimerQueue> queue_;
  HWND window_ = nullptr;
};

}  // namespace mivo::duilib
