// How the queue plans the one multimedia timer: 16 ms while something is due within a second,
// one long period otherwise, none when nothing waits.
#include "duilib/Utils/TimerQueue.h"

#include <gtest/gtest.h>

#include "FakeTimerPlatform.h"

namespace {

using duilib_test::Calls;
using duilib_test::FakeClock;
using duilib_test::FakeDriver;
using duilib_test::kNothing;
using mivo::duilib::TimerQueue;

using TimerQueueTest = duilib_test::TimerQueueFixture;

TEST_F(TimerQueueTest, FirstTimerStartsFastPollingAndLaterOnesLeaveItRunning) {
  EXPECT_TRUE(Add(100, 1));
  EXPECT_EQ(driver.Take(), Calls({"start 16"}));
  EXPECT_TRUE(queue.FastPeriod());
  EXPECT_EQ(queue.TimerId(), 1u);

  Add(200, 1);
  EXPECT_EQ(driver.Take(), Calls());
  EXPECT_EQ(queue.Size(), 2u);
}

TEST_F(TimerQueueTest, ThreeHundredMillisecondsOnceRunsOnceThenStopsTheTimer) {
  const int64_t added = clock.now;
  std::vector<int64_t> ranAt;
  Add(300, 1, [&] { ranAt.push_back(clock.now - added); });
  for (int tick = 0; tick < 40; ++tick) {  // 640 ms of 16 ms ticks, polled even after the kill
    clock.AdvanceMs(16);
    queue.Poll();
  }
  // the first tick at or after 300 ms is the 19th, at 304 ms
  EXPECT_EQ(ranAt, std::vector<int64_t>({304 * FakeClock::kFrequency / 1000}));
  EXPECT_EQ(driver.Take(), Calls({"start 16", "kill 1"}));
  EXPECT_EQ(queue.TimerId(), 0u);
  EXPECT_TRUE(driver.running.empty());
  EXPECT_EQ(queue.Size(), 0u);
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
      {"an hour", 3'600'000, f, UINT32_MAX, {"kill 1", "start 3599002"}, false},
  };
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

TEST_F(TimerQueueTest, AddingDuringALongWaitSwitchesBackToFastPolling) {
  Add(5000, 1);
  queue.Poll();
  EXPECT_EQ(driver.Take(), Calls({"start 16", "kill 1", "start 5002"}));

  Add(100, 1);
  EXPECT_EQ(driver.Take(), Calls({"kill 2", "start 16"}));
  EXPECT_TRUE(queue.FastPeriod());
}

TEST_F(TimerQueueTest, LongWaitEndsInFastPollingWhenTheNextTimerIsNear) {
  int runs = 0;
  Add(5000, 1, [&] { ++runs; });
  Add(5500, 1, [&] { ++runs; });
  queue.Poll();
  clock.AdvanceMs(5002);
  driver.Take();
  queue.Poll();
  EXPECT_EQ(runs, 1);
  EXPECT_EQ(driver.Take(), Calls({"kill 2", "start 16"}));
  EXPECT_TRUE(queue.FastPeriod());
}

TEST_F(TimerQueueTest, WaitCutToTheSystemMaximumIsPlannedAgainWhenItEnds) {
  driver.maxPeriod = 65'535;
  int runs = 0;
  Add(100'000, 1, [&] { ++runs; });
  queue.Poll();
  clock.AdvanceMs(65'535);
  queue.Poll();
  EXPECT_EQ(runs, 0);
  clock.AdvanceMs(34'467);
  queue.Poll();
  EXPECT_EQ(runs, 1);
  EXPECT_EQ(driver.Take(), Calls({"start 16", "kill 1", "start 65535", "kill 2", "start 34467", "kill 3"}));
}

TEST_F(TimerQueueTest, EqualDueTimesRunInTheOrderTheyWereAdded) {
  std::string order;
  for (char name : std::string("abcde")) Add(50, 1, [&, name] { order += name; });
  clock.AdvanceMs(50);
  queue.Poll();
  EXPECT_EQ(order, "abcde");
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
