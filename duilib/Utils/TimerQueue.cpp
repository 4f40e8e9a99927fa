#include "duilib/Utils/TimerQueue.h"

#include <algorithm>

namespace mivo::duilib {

TimerQueue::TimerQueue(TimerClock& clock, TimerDriver& driver)
    : clock_(clock),
      driver_(driver),
      frequency_(std::max<int64_t>(clock.Frequency(), 1)),
      ticksPerMs_(frequency_ % 1000 == 0 ? frequency_ / 1000 : 0) {}

TimerQueue::~TimerQueue() { StopTimer(); }

bool TimerQueue::AddTimer(const std::weak_ptr<nbase::WeakFlag>& owner, Callback callback, uint32_t delayMs,
                          int repeatCount) {
  // frequency × ms ÷ 1000, without the division when the frequency is whole milliseconds
  const int64_t interval =
      ticksPerMs_ ? ticksPerMs_ * static_cast<int64_t>(delayMs) : frequency_ * static_cast<int64_t>(delayMs) / 1000;
  const uint32_t slot = TakeSlot();
  Slot& s = At(slot);
  s.callback.swap(callback);
  s.owner = owner;
  s.interval = interval;
  s.repeatCount = repeatCount;
  Push(Key{clock_.Now() + interval, 0, slot});
  // A new timer may be due at any moment, so poll at the animation rate until the next pass
  // knows better.
  if (timerId_ == 0 || !fastPeriod_) {
    Restart(kFastPeriodMs);
    fastPeriod_ = true;
  }
  return true;
}

void TimerQueue::Poll() {
  const int64_t now = clock_.Now();
  // Timers that run again wait here until the pass ends, so one whose interval is 0 ticks
  // runs once a pass instead of keeping the pass going for ever.
  std::vector<Key> again;
  auto requeue = [&] {
    for (const Key& key : again) Push(key);
    again.clear();
  };
  bool ownerGone = false;
  uint32_t running = 0;
  bool inCallback = false;
  try {
    while (!heap_.empty() && heap_.front().due <= now) {
      const Key key = PopFront();
      Slot& s = At(key.slot);
#if defined(__GNUC__)
      // The next timer's slot is somewhere else in memory: fetch it while this one runs.
      if (!heap_.empty()) __builtin_prefetch(&At(heap_.front().slot));
#endif
      if (s.owner.expired()) {
        FreeSlot(key.slot);
        ownerGone = true;  // dropped unseen; the rest waits for the next pass
        break;
      }
      running = key.slot;
      inCallback = true;
      s.callback();
      inCallback = false;
      if (RunsAgain(s.repeatCount))
        again.push_back(Key{now + s.interval, 0, key.slot});
      else
        FreeSlot(key.slot);
    }
  } catch (...) {
    if (inCallback) FreeSlot(running);  // the timer that threw is dropped
    requeue();
    throw;
  }
  requeue();
  if (!ownerGone && !heap_.empty()) Replan(now);
  if (heap_.empty()) StopTimer();
}

bool TimerQueue::RunsAgain(int& repeatCount) {
  if (repeatCount < 1) return repeatCount == -1;
  --repeatCount;
  return repeatCount > 0;
}

void TimerQueue::Replan(int64_t now) {
  const int64_t remaining = heap_.front().due - now;
  if (remaining >= frequency_) {
    // One wake-up just after the nearest timer is due instead of polling every 16 ms.
    const double ms = static_cast<double>(remaining) * 1000.0 / static_cast<double>(frequency_) + 2.0;
    const double longest = driver_.MaxPeriod();
    Restart(static_cast<uint32_t>(std::min(ms, longest)));
    fastPeriod_ = false;
  } else if (!fastPeriod_) {
    Restart(kFastPeriodMs);
    fastPeriod_ = true;
  }
}

void TimerQueue::Restart(uint32_t periodMs) {
  StopTimer();
  timerId_ = driver_.Start(periodMs);
}

void TimerQueue::StopTimer() {
  if (timerId_ != 0) driver_.Kill(timerId_);
  timerId_ = 0;
}

uint32_t TimerQueue::TakeSlot() {
  if (!freeSlots_.empty()) {
    const uint32_t slot = freeSlots_.back();
    freeSlots_.pop_back();
    return slot;
  }
  if ((slotCount_ & (kChunkSize - 1)) == 0) chunks_.push_back(std::make_unique<Slot[]>(kChunkSize));
  return slotCount_++;
}

void TimerQueue::FreeSlot(uint32_t slot) {
  Slot& s = At(slot);
  s.callback = nullptr;
  s.owner.reset();
  freeSlots_.push_back(slot);
}

void TimerQueue::Push(Key key) {
  key.sequence = nextSequence_++;
  heap_.push_back(key);
  std::push_heap(heap_.begin(), heap_.end(), Later());
}

TimerQueue::Key TimerQueue::PopFront() {
  std::pop_heap(heap_.begin(), heap_.end(), Later());
  const Key key = heap_.back();
  heap_.pop_back();
  return key;
}

}  // namespace mivo::duilib
