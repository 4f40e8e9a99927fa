#pragma once
// The decisions of the framework's timer manager, free of Win32: a binary heap of timers
// ordered by due time, measured in performance-counter ticks, and the plan for the one periodic
// multimedia timer that wakes the UI thread. The Windows half supplies the real counter and
// multimedia timer; tests supply fakes.
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "base/callback/SupportWeakCallback.h"

namespace mivo::duilib {

// The high-resolution counter: ticks per second and the current tick.
class TimerClock {
 public:
  virtual ~TimerClock() = default;
  virtual int64_t Frequency() = 0;
  virtual int64_t Now() = 0;
};

// The periodic multimedia timer that posts the poll message.
class TimerDriver {
 public:
  virtual ~TimerDriver() = default;
  // Starts a periodic timer with 1 ms resolution; returns its id, 0 when none could start.
  virtual uint32_t Start(uint32_t periodMs) = 0;
  virtual void Kill(uint32_t id) = 0;
  // The longest period the system accepts; a longer wait is cut to it and re-planned.
  virtual uint32_t MaxPeriod() const { return UINT32_MAX; }
};

class TimerQueue {
 public:
  using Callback = std::function<void()>;
  static constexpr uint32_t kFastPeriodMs = 16;

  // Reads the counter frequency once; both objects must outlive the queue.
  TimerQueue(TimerClock& clock, TimerDriver& driver);
  ~TimerQueue();
  TimerQueue(const TimerQueue&) = delete;
  TimerQueue& operator=(const TimerQueue&) = delete;

  // Runs callback delayMs from now and then every delayMs until it has run repeatCount
  // times (-1: while the owner lives). Always true.
  bool AddTimer(const std::weak_ptr<nbase::WeakFlag>& owner, Callback callback, uint32_t delayMs, int repeatCount);
  // Runs what is due, then re-plans the multimedia timer. A throwing callback ends the pass
  // (its timer is dropped, the others stay) and the exception goes on to the caller.
  void Poll();

  size_t Size() const { return heap_.size(); }
  uint32_t TimerId() const { return timerId_; }
  bool FastPeriod() const { return fastPeriod_; }
  int64_t Frequency() const { return frequency_; }

 private:
  // A timer's heap entry is only its due time, its place in the queue order and the slot that
  // holds the rest: the heap moves 24 bytes a step instead of the callback and its owner.
  struct Key {
    int64_t due;
    uint64_t sequence;  // equal due times run in the order they were queued
    uint32_t slot;
  };
  struct Later {
    bool operator()(const Key& a, const Key& b) const {
      return a.due != b.due ? a.due > b.due : a.sequence > b.sequence;
    }
  };
  struct Slot {
    Callback callback;
    std::weak_ptr<nbase::WeakFlag> owner;
    int64_t interval = 0;
    int repeatCount = 0;
  };
  // Slots live in chunks that never move, so a callback may add timers while it runs.
  static constexpr uint32_t kChunkBits = 8;
  static constexpr uint32_t kChunkSize = 1u << kChunkBits;
  Slot& At(uint32_t slot) { return chunks_[slot >> kChunkBits][slot & (kChunkSize - 1)]; }
  uint32_t TakeSlot();
  void FreeSlot(uint32_t slot);

  void Push(Key key);
  Key PopFront();
  void Replan(int64_t now);
  void Restart(uint32_t periodMs);
  void StopTimer();
  static bool RunsAgain(int& repeatCount);

  TimerClock& clock_;
  TimerDriver& driver_;
  int64_t frequency_;
  int64_t ticksPerMs_;  // frequency_ / 1000 when that is exact, else 0
  std::vector<Key> heap_;
  std::vector<std::unique_ptr<Slot[]>> chunks_;
  std::vector<uint32_t> freeSlots_;
  uint32_t slotCount_ = 0;  // slots handed out so far, free or not
  uint64_t nextSequence_ = 0;
  bool fastPeriod_ = true;
  uint32_t timerId_ = 0;
};

}  // namespace mivo::duilib
