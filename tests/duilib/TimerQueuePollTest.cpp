// What one pass of Poll runs: repeat counts, owners that are gone, callbacks that throw or add
// timers, and when a repeating timer is next due.
#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>

#include "FakeTimerPlatform.h"
#include "duilib/Utils/TimerQueue.h"

namespace {

using duilib_test::Calls;
using duilib_test::FakeClock;
using duilib_test::FakeDriver;
using mivo::duilib::TimerQueue;

using TimerPollTest = duilib_test::TimerQueueFixture;

TEST(TimerQueueRepeat, CountDecidesHowOftenItRuns) {
  struct Row {
    int repeatCount;
    int runs;
  };
  for (const Row& row : {Row{1, 1}, Row{2, 2}, Row{3, 3}, Row{0, 1}, Row{-2, 1}}) {
    SCOPED_TRACE(row.repeatCount);
    FakeClock clock;
    FakeDriver driver;
    TimerQueue queue(clock, driver);
    nbase::WeakCallbackFlag owner;
    int runs = 0;
    auto count = [&runs] { ++runs; };
    queue.AddTimer(owner.GetWeakFlag(), count, 50, row.repeatCount);
    for (int pass = 0; pass < 20; ++pass) {
      clock.AdvanceMs(50);
      queue.Poll();
    }
    EXPECT_EQ(runs, row.runs);
    EXPECT_EQ(queue.Size(), 0u);
    EXPECT_TRUE(driver.running.empty());
  }
}

TEST_F(TimerPollTest, ForeverRunsUntilItsOwnerIsGone) {
  auto form = std::make_unique<nbase::WeakCallbackFlag>();
  int runs = 0;
  Add(form->GetWeakFlag(), 50, -1, [&] { ++runs; });
  for (int pass = 0; pass < 10; ++pass) {
    clock.AdvanceMs(50);
    queue.Poll();
  }
  EXPECT_EQ(runs, 10);
  EXPECT_EQ(driver.running.size(), 1u);

  form.reset();
  clock.AdvanceMs(50);
  queue.Poll();
  EXPECT_EQ(runs, 10);
  EXPECT_EQ(queue.Size(), 0u);
  EXPECT_EQ(queue.TimerId(), 0u);
  EXPECT_TRUE(driver.running.empty());
}

TEST_F(TimerPollTest, VanishedOwnerEndsThePassWithoutReplanning) {
  // all due after 5 s, so the first pass waits with one long period
  std::string ran;
  auto gone = std::make_unique<nbase::WeakCallbackFlag>();
  Add(5000, 1, [&] { ran += 'a'; });
  Add(gone->GetWeakFlag(), 5000, 1, [&] { ran += 'b'; });
  Add(std::weak_ptr<nbase::WeakFlag>(), 5000, 1, [&] { ran += 'x'; });  // never had one
  Add(5000, 1, [&] { ran += 'c'; });
  Add(8000, 1, [&] { ran += 'd'; });
  queue.Poll();
  gone.reset();
  driver.Take();

  clock.AdvanceMs(5002);
  queue.Poll();
  EXPECT_EQ(ran, "a");
  EXPECT_EQ(queue.Size(), 3u);
  EXPECT_EQ(driver.Take(), Calls()) << "the long period stays until the next pass";
  EXPECT_FALSE(queue.FastPeriod());

  clock.AdvanceMs(1);
  queue.Poll();
  EXPECT_EQ(ran, "a");
  EXPECT_EQ(queue.Size(), 2u);

  clock.AdvanceMs(1);
  queue.Poll();
  EXPECT_EQ(ran, "ac");
  EXPECT_EQ(driver.Take(), Calls({"kill 2", "start 2998"}));
}

TEST_F(TimerPollTest, ThrowingCallbackEndsThePassAndOnlyItsTimerIsDropped) {
  std::string ran;
  Add(50, -1, [&] { ran += 'a'; });
  Add(50, -1, [&] {
    ran += 'b';
    throw std::runtime_error("broken animation");
  });
  Add(50, 1, [&] { ran += 'c'; });
  driver.Take();

  clock.AdvanceMs(50);
  EXPECT_THROW(queue.Poll(), std::runtime_error);
  EXPECT_EQ(ran, "ab");
  EXPECT_EQ(queue.Size(), 2u) << "a runs again, c has not run yet";
  EXPECT_EQ(driver.Take(), Calls());

  clock.AdvanceMs(50);
  queue.Poll();
  EXPECT_EQ(ran, "abca");
  clock.AdvanceMs(50);
  queue.Poll();
  EXPECT_EQ(ran, "abcaa");
}

TEST_F(TimerPollTest, NextRunIsMeasuredFromTheStartOfThePass) {
  const int64_t added = clock.now;
  std::vector<int64_t> ranAtMs;
  Add(100, -1, [&] {
    ranAtMs.push_back((clock.now - added) * 1000 / FakeClock::kFrequency);
    clock.AdvanceMs(40);  // a slow callback does not push its next run back
  });
  clock.AdvanceMs(130);  // polled late
  queue.Poll();
  clock.AdvanceMs(59);  // 229 ms
  queue.Poll();
  clock.AdvanceMs(1);  // 230 ms: 130 + 100, not 200 nor 270
  queue.Poll();
  EXPECT_EQ(ranAtMs, std::vector<int64_t>({130, 230}));
}

TEST_F(TimerPollTest, CallbackMayAddTimersWhileThePassRuns) {
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

TEST_F(TimerPollTest, ZeroIntervalTimerRunsOncePerPass) {
  int runs = 0;
  auto run = [&] {
    if (++runs > 100) throw std::runtime_error("the pass does not end");
  };
  Add(0, -1, run);
  EXPECT_NO_THROW(queue.Poll());
  EXPECT_NO_THROW(queue.Poll());
  EXPECT_EQ(runs, 2);
  EXPECT_EQ(queue.Size(), 1u);
}

}  // namespace
