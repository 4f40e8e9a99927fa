#pragma once
// A counter that moves only when told, and a multimedia timer that records what it was asked.
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "duilib/Utils/TimerQueue.h"

namespace duilib_test {

// 10 MHz, the usual performance-counter frequency on Windows: 10,000 ticks a millisecond.
class FakeClock : public mivo::duilib::TimerClock {
 public:
  static constexpr int64_t kFrequency = 10'000'000;
  int64_t Frequency() override { return kFrequency; }
  int64_t Now() override { return now; }
  void AdvanceMs(double ms) { now += static_cast<int64_t>(ms * kFrequency / 1000); }
  int64_t now = 123'456'789;  // not 0, so nothing depends on the counter starting there
};

class FakeDriver : public mivo::duilib::TimerDriver {
 public:
  uint32_t Start(uint32_t periodMs) override {
    calls.push_back("start " + std::to_string(periodMs));
    running.push_back(++lastId);
    return lastId;
  }
  void Kill(uint32_t id) override {
    calls.push_back("kill " + std::to_string(id));
    std::erase(running, id);
  }
  uint32_t MaxPeriod() const override { return maxPeriod; }

  // Returns the calls so far and forgets them.
  std::vector<std::string> Take() {
    std::vector<std::string> taken;
    taken.swap(calls);
    return taken;
  }

  std::vector<std::string> calls;
  std::vector<uint32_t> running;  // started and not yet killed
  uint32_t lastId = 0;
  uint32_t maxPeriod = UINT32_MAX;
};

using Calls = std::vector<std::string>;
inline const mivo::duilib::TimerQueue::Callback kNothing = [] {};

// The queue and its fakes, with timers owned by one flag that lives as long as the test.
class TimerQueueFixture : public ::testing::Test {
 protected:
  // The callback goes last so that lambdas read (and format) well.
  bool Add(
      uint32_t delayMs, int repeatCount, mivo::duilib::TimerQueue::Callback callback = [] {}) {
    return Add(owner.GetWeakFlag(), delayMs, repeatCount, std::move(callback));
  }
  bool Add(const std::weak_ptr<nbase::WeakFlag>& flag, uint32_t delayMs, int repeatCount,
           mivo::duilib::TimerQueue::Callback callback) {
    return queue.AddTimer(flag, std::move(callback), delayMs, repeatCount);
  }

  FakeClock clock;
  FakeDriver driver;
  mivo::duilib::TimerQueue queue{clock, driver};
  nbase::WeakCallbackFlag owner;
};

}  // namespace duilib_test
