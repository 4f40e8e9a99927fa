// The timer queue with a counter that moves only when told and a multimedia timer that records
// what it was asked: how the one timer is planned (16 ms while something is due within a
// second, one long period otherwise, none when nothing waits), and what one pass of Poll runs.
#include "duilib/Utils/TimerQueue.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <map>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "FakeTimerPlatform.h"

namespace {

using duilib_test::FakeClock;
using duilib_test::FakeDriver;
using mivo::duilib::TimerQueue;
using Calls = std::vector<std::string>;
const TimerQueue::Callback kNothing = [] {};

// The queue and its fakes, with timers owned by one flag that lives as long as the test.
class TimerQueueTest : public ::testing::Test {
 protected:
  bool Add(uint32_t delayMs, int repeatCount, TimerQueue::Callback callback = kNothing) {
    return Add(owner.GetWeakFlag(), delayMs, repeatCount, std::move(callback));
  }
  bool Add(const std::weak_ptr<nbase::WeakFlag>& flag, uint32_t delayMs, int repeatCount,
           TimerQueue::Callback callback) {
    return queue.AddTimer(flag, std::move(callback), delayMs, repeatCount);
  }

  FakeClock clock;
  FakeDriver driver;
  TimerQueue queue{clock, driver};
  nbase::WeakCallbackFlag owner;
};

// Runs steps on a fresh queue and returns what ran, as "name@ms", and the multimedia timer's
// calls. "+<delay>x<repeat><name>" adds a timer owned by a flag of its name, "~<name>" destroys
// that flag, "<ms>[*<times>]" moves the clock and polls. Timer "_" never had an owner, "!" throws,
// "s" is slow: it takes 40 ms.
std::pair<std::string, std::string> RunSteps(const std::string& steps, uint32_t maxPeriod = UINT32_MAX) {
  FakeClock clock;
  FakeDriver driver;
  driver.maxPeriod = maxPeriod;
  TimerQueue queue(clock, driver);
  std::map<char, nbase::WeakCallbackFlag> owners;
  const int64_t start = clock.now;
  std::string ran, calls;
  std::istringstream in(steps);
  for (std::string step; in >> step;) {
    const char name = step.back();
    if (step[0] == '+') {
      const size_t x = step.find('x');
      auto run = [&, name] {
        if (ran.size() > 1000) throw std::logic_error("the pass does not end");
        ran += (ran.empty() ? "" : " ") + std::string(1, name) + "@" +
               std::to_string((clock.now - start) * 1000 / FakeClock::kFrequency);
        if (name == '!') throw std::runtime_error("broken animation");
        if (name == 's') clock.AdvanceMs(40);
      };
      queue.AddTimer(name == '_' ? std::weak_ptr<nbase::WeakFlag>() : owners[name].GetWeakFlag(), run,
                     std::stoul(step.substr(1, x - 1)), std::stoi(step.substr(x + 1)));
    } else if (step[0] == '~') {
      owners.erase(name);
    } else {
      const size_t star = step.find('*');
      for (int i = star == std::string::npos ? 1 : std::stoi(step.substr(star + 1)); i > 0; --i) {
        clock.AdvanceMs(std::stod(step));
        try {
          queue.Poll();
        } catch (const std::runtime_error&) {
          ran += " thrown";
        }
      }
    }
  }
  for (const std::string& call : driver.calls) calls += (calls.empty() ? "" : ", ") + call;
  return {ran, calls};
}

TEST(TimerQueueScript, WhatRunsWhenAndHowTheTimerIsPlanned) {
  struct Row {
    const char* what;
    const char* steps;
    const char *ran, *calls;
    uint32_t maxPeriod = UINT32_MAX;
  } rows[] = {
      {"a later timer leaves the fast period running", "+100x1a +200x1b", "", "start 16"},
      {"the first 16 ms tick at or after 300 ms", "+300x1a 16*40", "a@304", "start 16, kill 1"},
      {"adding during a long wait polls fast again", "+5000x1a 0 +100x1b", "",
       "start 16, kill 1, start 5002, kill 2, start 16"},
      {"a long wait ends in fast polling when the next one is near", "+5000x1a +5500x1b 0 5002", "a@5002",
       "start 16, kill 1, start 5002, kill 2, start 16"},
      {"a wait cut to the system maximum is planned again", "+100000x1a 0 65535 34467", "a@100002",
       "start 16, kill 1, start 65535, kill 2, start 34467, kill 3", 65'535},
      {"equal due times run in the order they were added", "+50x1c +50x1a +50x1b 50", "c@50 a@50 b@50",
       "start 16, kill 1"},
      {"twice", "+50x2a 50*5", "a@50 a@100", "start 16, kill 1"},
      {"three times", "+50x3a 50*5", "a@50 a@100 a@150", "start 16, kill 1"},
      {"a count of 0 runs once", "+50x0a 50*3", "a@50", "start 16, kill 1"},
      {"so does a negative one other than -1", "+50x-2a 50*3", "a@50", "start 16, kill 1"},
      {"forever, until its owner is gone", "+50x-1a 50*3 ~a 50*2", "a@50 a@100 a@150", "start 16, kill 1"},
      {"a vanished owner ends the pass without planning again",
       "+5000x1a +5000x1b +5000x1_ +5000x1c +8000x1d 0 ~b 5002 1 1", "a@5002 c@5004",
       "start 16, kill 1, start 5002, kill 2, start 2998"},
      {"a throwing callback ends the pass and only its timer is dropped", "+50x-1a +50x-1! +50x1c 50*3",
       "a@50 !@50 thrown c@100 a@100 a@150", "start 16"},
      {"the next run counts from the start of the pass", "+100x-1s 130 59 1", "s@130 s@230", "start 16"},
      {"a zero interval runs once a pass", "+0x-1a 0 0", "a@0 a@0", "start 16"},
  };
  for (const Row& row : rows)
    EXPECT_EQ(RunSteps(row.steps, row.maxPeriod), std::pair(std::string(row.ran), std::string(row.calls))) << row.what;
}

TEST_F(TimerQueueTest, NearestTimerDecidesThePeriod) {
  struct Row {
    const char* what;
    uint32_t delayMs;
    int64_t elapsedTicks;  // counter ticks between AddTimer and the poll
    uint32_t maxPeriod;
    Calls calls;  // after the "start 16" of AddTimer
    bool fast;
  };
  const int64_t f = FakeClock::kFrequency;
  const Row rows[] = {
      {"well within a second", 300, 0, UINT32_MAX, {}, true},
      {"one tick short of a second", 1000, 1, UINT32_MAX, {}, true},
      {"exactly a second", 1000, 0, UINT32_MAX, {"kill 1", "start 1002"}, false},
      {"five seconds", 5000, 0, UINT32_MAX, {"kill 1", "start 5002"}, false},
      {"fraction of a millisecond truncated", 2000, 7'654'322, UINT32_MAX, {"kill 1", "start 1236"}, false},
      {"longer than the system allows", 100'000, 0, 65'535, {"kill 1", "start 65535"}, false},
      {"an hour", 3'600'000, f, UINT32_MAX, {"kill 1", "start 3599002"}, false}};
  for (const Row& row : rows) {
    SCOPED_TRACE(row.what);
    FakeClock rowClock;
    FakeDriver rowDriver;
    rowDriver.maxPeriod = row.maxPeriod;
    TimerQueue rowQueue(rowClock, rowDriver);
    rowQueue.AddTimer(owner.GetWeakFlag(), kNothing, row.delayMs, 1);
    rowClock.now += row.elapsedTicks;
    rowDriver.Take();
    rowQueue.Poll();
    EXPECT_EQ(rowDriver.Take(), row.calls);
    EXPECT_EQ(rowQueue.FastPeriod(), row.fast);
    EXPECT_EQ(rowDriver.running.size(), 1u);
  }
}

TEST_F(TimerQueueTest, CallbackMayAddTimersWhileThePassRuns) {
  std::string ran;
  Add(100, 1, [&] {
    ran += 'a';
    Add(0, 1, [&] { ran += 'n'; });  // due at once
    Add(2000, 1, [&] { ran += 'l'; });
  });
  clock.AdvanceMs(100);
  driver.Take();
  queue.Poll();
  EXPECT_EQ(ran, "an");
  EXPECT_EQ(queue.Size(), 1u);
  EXPECT_EQ(driver.Take(), Calls({"kill 1", "start 2002"}));

  clock.AdvanceMs(2002);
  queue.Poll();
  EXPECT_EQ(ran, "anl");
  EXPECT_EQ(driver.Take(), Calls({"kill 2"}));
}

TEST(TimerQueue, DestroyingTheQueueStopsItsTimer) {
  FakeClock clock;
  FakeDriver driver;
  nbase::WeakCallbackFlag owner;
  {
    TimerQueue queue(clock, driver);
    queue.AddTimer(owner.GetWeakFlag(), kNothing, 100, -1);
    EXPECT_EQ(driver.running.size(), 1u);
  }
  EXPECT_TRUE(driver.running.empty());
}

}  // namespace
