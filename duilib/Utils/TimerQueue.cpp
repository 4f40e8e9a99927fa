#include "duilib/Utils/TimerQueue.h"

#include <algorithm>

namespace mivo::duilib {

TimerQueue::TimerQueue(TimerClock& clock, TimerDriver& driver)
    : clock_(clock), driver_(driver), frequency_(std::max<int64_t>(clock.Frequency(), 1)) {}

TimerQueue::~TimerQueue() { StopTimer(); }

bool TimerQueue::AddTimer(const std::weak_ptr<nbase::WeakFlag>& owner, Callback callback, uint32_t delayMs,
                          int repeatCount) {
  const int64_t interval = frequency_ * static_cast<int64_t>(delayMs) / 1000;
  Push(Entry{std::move(callback), interval, clock_.Now() + interval, owner, repeatCount, 0});
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
  std::vector<Entry> again;
  auto requeue = [&] {
    for (Entry& entry : again) Push(std::move(entry));
    again.clear();
  };
  bool ownerGone = false;
  try {
    while (!heap_.empty() && heap_.front().due <= now) {
      Entry entry = PopFront();
      if (entry.owner.expired()) {
        ownerGone = true;  // dropped unseen; the rest waits for the next pass
        break;
      }
      entry.callback();
      if (RunsAgain(entry.repeatCount)) {
        entry.due = now + entry.interval;
        again.push_back(std::move(entry));
      }
    }
  } catch (...) {
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

void TimerQueue::Push(Entry entry) {
  entry.sequence = nextSequence_++;
  heap_.push_back(std::move(entry));
  std::push_heap(heap_.begin(), heap_.end(), Later());
}

TimerQueue::Entry TimerQueue::PopFront() {
  std::pop_heap(heap_.begin(), heap_.end(), Later());
  Entry entry = std::move(heap_.back());
  heap_.pop_back();
  return entry;
}

}  // namespace mivo::duilib
