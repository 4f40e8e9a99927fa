// The UI framework's timer queue against std::priority_queue of std::function and against
// libuv's timers: 100,000 one-shot timers added, then all of them popped and run in one pass.
//
// The delays are 0 to 999 ms, a hundred timers for each, so equal due times are common and
// must run in the order they were added; every side orders by due time, then by that order.
// Every side runs the same callback (it counts), stored in a std::function where the side
// stores one. The queue is driven by a counter that moves only when told (10 MHz, as on
// Windows) and a multimedia timer that does nothing; its timers have an owner whose weak flag
// is checked before each run, as always. libuv runs its timers from its loop, with the
// loop's clock set back one second before the timers are added so that all are due at the
// next turn (libuv reads the real clock when it turns).
//
// Before timing, each side's run order is recorded and compared with the others'; any
// difference, or a count that is not 100,000, stops the run.
// Run pinned: taskset -c 1 build/h-lay-release/bench/timer_bench
#include <uv.h>

#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <map>
#include <memory>
#include <queue>
#include <string>
#include <vector>

#include "base/callback/SupportWeakCallback.h"
#include "duilib/Utils/TimerQueue.h"

namespace {

using mivo::duilib::TimerQueue;

constexpr int kTimers = 100'000;
constexpr int64_t kFrequency = 10'000'000;
constexpr int64_t kTicksPerMs = kFrequency / 1000;

uint32_t DelayMs(int i) { return static_cast<uint32_t>((static_cast<int64_t>(i) * 7919) % 1000); }

class Clock : public mivo::duilib::TimerClock {
 public:
  int64_t Frequency() override { return kFrequency; }
  int64_t Now() override { return now; }
  int64_t now = 123'456'789;
};

class Driver : public mivo::duilib::TimerDriver {
 public:
  uint32_t Start(uint32_t) override { return ++last; }
  void Kill(uint32_t) override {}
  uint32_t last = 0;
};

// The work every callback does: count, and when checking, note which timer ran.
struct Sink {
  int runs = 0;
  std::vector<int>* order = nullptr;
};

std::function<void()> Callback(Sink& sink, int i) {
  if (sink.order) return [&sink, i] { sink.order->push_back(i), ++sink.runs; };
  return [&sink] { ++sink.runs; };
}

int RunOurs(Sink& sink) {
  Clock clock;
  Driver driver;
  TimerQueue queue(clock, driver);
  nbase::WeakCallbackFlag owner;
  const std::weak_ptr<nbase::WeakFlag> flag = owner.GetWeakFlag();
  for (int i = 0; i < kTimers; ++i) queue.AddTimer(flag, Callback(sink, i), DelayMs(i), 1);
  clock.now += 1000 * kTicksPerMs;
  queue.Poll();
  return queue.Size() == 0 ? sink.runs : -1;
}

struct Item {
  int64_t due;
  uint64_t sequence;
  std::function<void()> callback;
};
struct Later {
  bool operator()(const Item& a, const Item& b) const {
    return a.due != b.due ? a.due > b.due : a.sequence > b.sequence;
  }
};

int RunPriorityQueue(Sink& sink) {
  int64_t now = 123'456'789;
  uint64_t sequence = 0;
  std::priority_queue<Item, std::vector<Item>, Later> queue;
  for (int i = 0; i < kTimers; ++i) queue.push(Item{now + DelayMs(i) * kTicksPerMs, sequence++, Callback(sink, i)});
  now += 1000 * kTicksPerMs;
  while (!queue.empty() && queue.top().due <= now) {
    queue.top().callback();
    queue.pop();
  }
  return queue.empty() ? sink.runs : -1;
}

struct UvTimers {
  UvTimers() : handles(kTimers) { uv_loop_init(&loop); }
  ~UvTimers() {
    for (uv_timer_t& handle : handles) uv_close(reinterpret_cast<uv_handle_t*>(&handle), nullptr);
    uv_run(&loop, UV_RUN_DEFAULT);  // finishes the closes
    uv_loop_close(&loop);
  }
  uv_loop_t loop;
  std::vector<uv_timer_t> handles;
};

int RunLibuv(Sink& sink, UvTimers& uv) {
  uv_update_time(&uv.loop);
  uv.loop.time -= 1000;  // all due at the next turn of the loop
  for (int i = 0; i < kTimers; ++i) {
    uv_timer_t* handle = &uv.handles[i];
    uv_timer_init(&uv.loop, handle);
    handle->data = &sink;
    uv_timer_start(
        handle, [](uv_timer_t* h) { ++static_cast<Sink*>(h->data)->runs; }, DelayMs(i), 0);
  }
  uv_run(&uv.loop, UV_RUN_NOWAIT);
  return uv_loop_alive(&uv.loop) ? -1 : sink.runs;
}

// libuv's callback only gets its handle: the index comes from the handle's place.
int RunLibuvRecorded(std::vector<int>& order) {
  struct Recorder {
    std::vector<int>* order;
    uv_timer_t* first;
  };
  UvTimers uv;
  Recorder recorder{&order, uv.handles.data()};
  uv_update_time(&uv.loop);
  uv.loop.time -= 1000;
  for (int i = 0; i < kTimers; ++i) {
    uv_timer_init(&uv.loop, &uv.handles[i]);
    uv.handles[i].data = &recorder;
    uv_timer_start(
        &uv.handles[i],
        [](uv_timer_t* h) {
          auto* r = static_cast<Recorder*>(h->data);
          r->order->push_back(static_cast<int>(h - r->first));
        },
        DelayMs(i), 0);
  }
  uv_run(&uv.loop, UV_RUN_NOWAIT);
  return static_cast<int>(order.size());
}

void CheckSidesAgree() {
  std::vector<int> ours, peer, uv;
  Sink a{0, &ours}, b{0, &peer};
  const int ranOurs = RunOurs(a), ranPeer = RunPriorityQueue(b), ranUv = RunLibuvRecorded(uv);
  if (ranOurs != kTimers || ranPeer != kTimers || ranUv != kTimers || ours != peer || ours != uv) {
    std::fprintf(stderr, "the sides ran different timers or in a different order (%d, %d, %d runs)\n", ranOurs, ranPeer,
                 ranUv);
    std::exit(1);
  }
}

void Require(int runs, const char* side) {
  if (runs == kTimers) return;
  std::fprintf(stderr, "%s ran %d timers, not %d\n", side, runs, kTimers);
  std::exit(1);
}

void BM_TimerQueue(benchmark::State& state) {
  for (auto _ : state) {
    Sink sink;
    Require(RunOurs(sink), "the timer queue");
  }
  state.SetItemsProcessed(state.iterations() * kTimers);
}

void BM_PriorityQueue(benchmark::State& state) {
  for (auto _ : state) {
    Sink sink;
    Require(RunPriorityQueue(sink), "std::priority_queue");
  }
  state.SetItemsProcessed(state.iterations() * kTimers);
}

void BM_Libuv(benchmark::State& state) {
  for (auto _ : state) {
    state.PauseTiming();
    auto uv = std::make_unique<UvTimers>();
    Sink sink;
    state.ResumeTiming();
    Require(RunLibuv(sink, *uv), "libuv");
    state.PauseTiming();
    uv.reset();
    state.ResumeTiming();
  }
  state.SetItemsProcessed(state.iterations() * kTimers);
}

// Keeps the medians (CPU time: the machine is shared) and prints the ROW line.
class RowReporter : public benchmark::ConsoleReporter {
 public:
  void ReportRuns(const std::vector<Run>& runs) override {
    ConsoleReporter::ReportRuns(runs);
    for (const Run& run : runs)
      if (run.aggregate_name == "median") m_median[run.run_name.function_name] = run.GetAdjustedCPUTime();
  }
  void Finalize() override {
    ConsoleReporter::Finalize();
    // times are in microseconds per 100,000 timers
    const double ours = m_median["BM_TimerQueue"] * 1000 / kTimers;
    const double peer = m_median["BM_PriorityQueue"] * 1000 / kTimers;
    const double uv = m_median["BM_Libuv"] * 1000 / kTimers;
    const double ratio = peer > 0 ? ours / peer : 0;
    std::printf(
        "ROW|timers, add 100,000 then pop and run all, per timer|%.1f ns|std::priority_queue of "
        "std::function: %.1f ns (libuv: %.1f ns)|%.2fx|<= 1.0x|%s\n",
        ours, peer, uv, ratio, ratio > 0 && ratio <= 1.0 ? "yes" : "no");
  }

 private:
  std::map<std::string, double> m_median;
};

}  // namespace

BENCHMARK(BM_TimerQueue)->Repetitions(7)->MinTime(0.1)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_PriorityQueue)->Repetitions(7)->MinTime(0.1)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_Libuv)->Repetitions(7)->MinTime(0.1)->Unit(benchmark::kMicrosecond);

int main(int argc, char** argv) {
  // Repetitions of the sides take turns, so that a busy machine weighs on both alike.
  std::vector<char*> args(argv, argv + argc);
  std::string interleave = "--benchmark_enable_random_interleaving=true";
  args.insert(args.begin() + 1, interleave.data());
  argc = static_cast<int>(args.size());
  argv = args.data();
  CheckSidesAgree();
  benchmark::Initialize(&argc, argv);
  RowReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  benchmark::Shutdown();
  return 0;
}
