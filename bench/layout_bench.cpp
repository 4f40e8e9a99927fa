// Boxes of 10,000 children, vertical and horizontal.
//
// Building: Box::Add of every child, then reading the last child's position (which lays the
// box out), against the floor of appending the same children to a vector and running the
// box's layout over it once. The controls are made before the clock starts and deleted after
// it stops, on both sides.
//
// Arranging: the built box given a new rectangle (two rectangles in turn, so every child moves
// each time), per child, against the same two-pass arithmetic over a flat array of the
// children's sizes, margins and alignments, writing a flat array of rectangles.
//
// Before timing, both sides' rectangles are compared and the run stops if any differs.
// Run pinned: taskset -c 1 build/h-lay-release/bench/layout_bench
#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "duilib/Core/Box.h"
#include "duilib/Core/Layout.h"

namespace {

using namespace mivo::duilib;

constexpr int kChildren = 10'000;

// What the layout reads from a child, as plain data.
struct ChildShape {
  int width, height;
  UiRect margin;
  int minWidth, minHeight, maxWidth, maxHeight;
  int halign, valign;
};

// A mix of fixed and stretch sizes, margins, limits and alignments, the same for both sides.
std::vector<ChildShape> ChildShapes(bool vertical) {
  std::vector<ChildShape> shapes(kChildren);
  for (int i = 0; i < kChildren; ++i) {
    ChildShape& s = shapes[i];
    const int along = i % 4 == 0 ? DUI_LENGTH_STRETCH : 18 + i % 5;
    const int across = i % 3 == 0 ? DUI_LENGTH_STRETCH : 100 + i % 50;
    s.width = vertical ? across : along;
    s.height = vertical ? along : across;
    s.margin = UiRect{i % 2, 1, i % 3, 2};
    s.minWidth = s.minHeight = i % 7 == 0 ? 20 : 0;
    s.maxWidth = s.maxHeight = i % 11 == 0 ? 120 : DUI_LENGTH_NOLIMIT;
    s.halign = i % 3;
    s.valign = (i / 3) % 3;
  }
  return shapes;
}

// Two content rectangles with room for the stretch children, the second larger both ways.
UiRect Space(bool vertical, int which) {
  const int grow = which * 1000;
  return vertical ? UiRect{0, 0, 800 + which, 30 * kChildren + grow} : UiRect{0, 0, 30 * kChildren + grow, 200 + which};
}

std::vector<Control*> MakeControls(const std::vector<ChildShape>& shapes) {
  std::vector<Control*> controls;
  controls.reserve(shapes.size());
  for (const ChildShape& s : shapes) {
    auto* c = new Control();
    c->SetFixedWidth(s.width);
    c->SetFixedHeight(s.height);
    c->SetMargin(s.margin);
    c->SetMinWidth(s.minWidth);
    c->SetMinHeight(s.minHeight);
    c->SetMaxWidth(s.maxWidth);
    c->SetMaxHeight(s.maxHeight);
    c->SetHorAlignType(static_cast<HorAlignType>(s.halign));
    c->SetVerAlignType(static_cast<VerAlignType>(s.valign));
    controls.push_back(c);
  }
  return controls;
}

std::unique_ptr<Box> MakeBox(bool vertical) {
  return vertical ? std::unique_ptr<Box>(new VBox()) : std::unique_ptr<Box>(new HBox());
}

std::unique_ptr<Layout> MakeLayout(bool vertical) {
  return vertical ? std::unique_ptr<Layout>(new VLayout()) : std::unique_ptr<Layout>(new HLayout());
}

std::vector<UiRect> PositionsOf(const std::vector<Control*>& controls) {
  std::vector<UiRect> rects;
  for (const Control* c : controls) rects.push_back(c->GetPos());
  return rects;
}

// The flat reference: the two passes of the stacking layout over plain data.
int ClampAlong(int v, int lo, int hi) { return std::min(std::max(v, lo), hi); }
int ClampAcross(int v, int lo, int hi) {
  if (v < lo) v = lo;
  if (hi >= 0 && v > hi) v = hi;
  return v;
}

template <bool kVertical>
void FlatArrange(const std::vector<ChildShape>& shapes, UiRect rc, std::vector<UiRect>& out) {
  auto along = [](const ChildShape& s) { return kVertical ? s.height : s.width; };
  auto across = [](const ChildShape& s) { return kVertical ? s.width : s.height; };
  auto minAlong = [](const ChildShape& s) { return kVertical ? s.minHeight : s.minWidth; };
  auto maxAlong = [](const ChildShape& s) { return kVertical ? s.maxHeight : s.maxWidth; };
  auto minAcross = [](const ChildShape& s) { return kVertical ? s.minWidth : s.minHeight; };
  auto maxAcross = [](const ChildShape& s) { return kVertical ? s.maxWidth : s.maxHeight; };
  auto before = [](const UiRect& m) { return kVertical ? m.top : m.left; };
  auto after = [](const UiRect& m) { return kVertical ? m.bottom : m.right; };
  auto crossBefore = [](const UiRect& m) { return kVertical ? m.left : m.top; };
  auto crossAfter = [](const UiRect& m) { return kVertical ? m.right : m.bottom; };
  const int length = kVertical ? rc.GetHeight() : rc.GetWidth();
  const int breadth = kVertical ? rc.GetWidth() : rc.GetHeight();
  const int crossStart = kVertical ? rc.left : rc.top, crossEnd = kVertical ? rc.right : rc.bottom;
  int count = 0, stretches = 0, fixed = 0;
  for (const ChildShape& s : shapes) {
    ++count;
    fixed += before(s.margin) + after(s.margin);
    if (along(s) == DUI_LENGTH_STRETCH)
      ++stretches;
    else
      fixed += ClampAlong(along(s), minAlong(s), maxAlong(s));
  }
  fixed += 0 * (count - 1);  // no child margin in these boxes
  const int per = stretches > 0 ? std::max(0, (length - fixed) / stretches) : 0;
  int leftover = length - per * stretches - fixed;
  int at = kVertical ? rc.top : rc.left;
  for (size_t i = 0; i < shapes.size(); ++i) {
    const ChildShape& s = shapes[i];
    int size = along(s);
    if (size == DUI_LENGTH_STRETCH) {
      size = per;
      if (leftover > 0) ++size, --leftover;
    }
    size = ClampAlong(size, minAlong(s), maxAlong(s));
    int cross = across(s);
    if (cross == DUI_LENGTH_STRETCH) cross = breadth - crossBefore(s.margin) - crossAfter(s.margin);
    if (cross < 0) cross = 0;
    cross = ClampAcross(cross, minAcross(s), maxAcross(s));
    const int align = kVertical ? s.halign : s.valign;
    int from = 0;
    if (align == 0)
      from = crossStart + crossBefore(s.margin);
    else if (align == 1)
      from = crossStart + (crossEnd - crossStart + crossBefore(s.margin) - crossAfter(s.margin) - cross) / 2;
    else
      from = crossEnd - crossAfter(s.margin) - cross;
    const int start = at + before(s.margin);
    out[i] =
        kVertical ? UiRect{from, start, from + cross, start + size} : UiRect{start, from, start + size, from + cross};
    at += before(s.margin) + size + after(s.margin);
  }
}

void Flat(bool vertical, const std::vector<ChildShape>& shapes, UiRect rc, std::vector<UiRect>& out) {
  if (vertical)
    FlatArrange<true>(shapes, rc, out);
  else
    FlatArrange<false>(shapes, rc, out);
}

void Require(bool same, const char* what) {
  if (same) return;
  std::fprintf(stderr, "%s: the two sides placed the children differently\n", what);
  std::exit(1);
}

double Seconds(std::chrono::steady_clock::time_point from) {
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - from).count();
}

// Box::Add of every child, then one position read.
void BM_BoxAdd(benchmark::State& state, bool vertical) {
  const std::vector<ChildShape> shapes = ChildShapes(vertical);
  const UiRect rc = Space(vertical, 0);
  std::vector<UiRect> expected(shapes.size());
  Flat(vertical, shapes, rc, expected);
  for (auto _ : state) {
    std::unique_ptr<Box> box = MakeBox(vertical);
    box->SetPos(rc);
    std::vector<Control*> controls = MakeControls(shapes);
    const auto start = std::chrono::steady_clock::now();
    for (Control* c : controls) box->Add(c);
    benchmark::DoNotOptimize(controls.back()->GetPos());
    state.SetIterationTime(Seconds(start));
    Require(PositionsOf(controls) == expected, "Box::Add");
  }
}

// The floor: the same children appended to a vector, then laid out once.
void BM_AppendAndLayout(benchmark::State& state, bool vertical) {
  const std::vector<ChildShape> shapes = ChildShapes(vertical);
  const UiRect rc = Space(vertical, 0);
  std::vector<UiRect> expected(shapes.size());
  Flat(vertical, shapes, rc, expected);
  std::unique_ptr<Layout> layout = MakeLayout(vertical);
  for (auto _ : state) {
    std::vector<Control*> controls = MakeControls(shapes);
    const auto start = std::chrono::steady_clock::now();
    std::vector<Control*> items;
    for (Control* c : controls) items.push_back(c);
    layout->ArrangeChild(items, rc);
    state.SetIterationTime(Seconds(start));
    Require(PositionsOf(controls) == expected, "append and layout");
    for (Control* c : controls) delete c;
  }
}

// The built box laid out in each of two rectangles in turn.
void BM_BoxArrange(benchmark::State& state, bool vertical) {
  const std::vector<ChildShape> shapes = ChildShapes(vertical);
  std::unique_ptr<Box> box = MakeBox(vertical);
  std::vector<Control*> controls = MakeControls(shapes);
  for (Control* c : controls) box->Add(c);
  std::vector<UiRect> expected(shapes.size());
  for (int which : {0, 1}) {
    box->SetPos(Space(vertical, which));
    Flat(vertical, shapes, Space(vertical, which), expected);
    Require(PositionsOf(controls) == expected, "arranging a box");
  }
  const UiRect spaces[2] = {Space(vertical, 0), Space(vertical, 1)};
  int which = 0;
  for (auto _ : state) {
    box->SetPos(spaces[which]);
    which ^= 1;
    benchmark::DoNotOptimize(controls.back()->GetPos());
  }
  state.SetItemsProcessed(state.iterations() * kChildren);
}

void BM_FlatArrange(benchmark::State& state, bool vertical) {
  const std::vector<ChildShape> shapes = ChildShapes(vertical);
  std::vector<UiRect> out(shapes.size());
  const UiRect spaces[2] = {Space(vertical, 0), Space(vertical, 1)};
  int which = 0;
  for (auto _ : state) {
    Flat(vertical, shapes, spaces[which], out);
    which ^= 1;
    benchmark::DoNotOptimize(out.data());
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * kChildren);
}

// Keeps the medians and prints one ROW line per goal.
class RowReporter : public benchmark::ConsoleReporter {
 public:
  void ReportRuns(const std::vector<Run>& runs) override {
    ConsoleReporter::ReportRuns(runs);
    for (const Run& run : runs)
      // Building is timed by hand (wall clock, the set-up left out); the rest by the CPU time
      // of the process, which a busy machine disturbs less.
      if (run.aggregate_name == "median")
        m_median[run.run_name.function_name] = run.run_name.function_name.find("Arrange") != std::string::npos
                                                   ? run.GetAdjustedCPUTime()
                                                   : run.GetAdjustedRealTime();
  }
  void Finalize() override {
    ConsoleReporter::Finalize();
    for (const char* box : {"VBox", "HBox"}) {
      const std::string b = box;
      // times are in microseconds (the benchmarks' unit)
      const double add = m_median["BM_BoxAdd/" + b], floor = m_median["BM_AppendAndLayout/" + b];
      Row("Box::Add, 10,000 children, " + b, add / 1000, " ms", "append + one layout: ", floor / 1000, 3.0);
      const double arrange = m_median["BM_BoxArrange/" + b] * 1000 / kChildren;
      const double flat = m_median["BM_FlatArrange/" + b] * 1000 / kChildren;
      Row("arranging 10,000 children, " + b + ", per child", arrange, " ns", "flat array of rectangles: ", flat, 1.5);
    }
  }

 private:
  static void Row(const std::string& metric, double ours, const char* unit, const char* peer, double floor,
                  double goal) {
    const double ratio = floor > 0 ? ours / floor : 0;
    std::printf("ROW|%s|%.2f%s|%s%.2f%s|%.2fx|<= %gx|%s\n", metric.c_str(), ours, unit, peer, floor, unit, ratio, goal,
                ratio > 0 && ratio <= goal ? "yes" : "no");
  }
  std::map<std::string, double> m_median;
};

}  // namespace

BENCHMARK_CAPTURE(BM_BoxAdd, VBox, true)
    ->UseManualTime()
    ->Iterations(10)
    ->Repetitions(7)
    ->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(BM_BoxAdd, HBox, false)
    ->UseManualTime()
    ->Iterations(10)
    ->Repetitions(7)
    ->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(BM_AppendAndLayout, VBox, true)
    ->UseManualTime()
    ->Iterations(10)
    ->Repetitions(7)
    ->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(BM_AppendAndLayout, HBox, false)
    ->UseManualTime()
    ->Iterations(10)
    ->Repetitions(7)
    ->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(BM_BoxArrange, VBox, true)->Repetitions(7)->MinTime(0.1)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(BM_BoxArrange, HBox, false)->Repetitions(7)->MinTime(0.1)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(BM_FlatArrange, VBox, true)->Repetitions(7)->MinTime(0.1)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(BM_FlatArrange, HBox, false)->Repetitions(7)->MinTime(0.1)->Unit(benchmark::kMicrosecond);

int main(int argc, char** argv) {
  // Repetitions of the sides take turns, so that a busy machine weighs on both alike.
  std::vector<char*> args(argv, argv + argc);
  std::string interleave = "--benchmark_enable_random_interleaving=true";
  args.insert(args.begin() + 1, interleave.data());
  argc = static_cast<int>(args.size());
  argv = args.data();
  benchmark::Initialize(&argc, argv);
  RowReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  benchmark::Shutdown();
  return 0;
}
