// A tree view of 10,000 nodes (100 groups of 99, all open) scrolled a page at a time: the view
// moves its scroll position, takes their places back from the rows that leave the view and
// lays out the rows that come into it. The peer lays out the same number of rows in a plain
// vertical box: list rows (ListContainerElement), the same kind of selectable box a tree node
// is, so both sides place each row through its own SetPos. Natively there is no painting (it
// is Win32): this is the layout part of a scroll. Before timing, the rows placed are checked
// against the page each scroll shows.
// Run pinned: taskset -c 1 build/native-release/bench/tree_bench
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "bench/BenchRows.h"
#include "duilib/Core/Box.h"
#include "duilib/Core/ListBox.h"
#include "duilib/Core/TreeView.h"

namespace {

using namespace mivo::duilib;

constexpr int kGroups = 100, kPerGroup = 99;
constexpr int kRowHeight = 20;
constexpr UiRect kView{0, 0, 300, 600};  // 30 rows a page
constexpr int kPage = 600;
constexpr int kPlaced = kPage / kRowHeight + 1;  // a scroll that is not a whole row cuts one more

std::unique_ptr<TreeView> MakeTree() {
  auto tree = std::make_unique<TreeView>();
  tree->SetAttribute(L"rowheight", std::to_wstring(kRowHeight));
  tree->SetAttribute(L"vscrollbar", L"true");
  for (int g = 0; g < kGroups; ++g) {
    auto* group = new TreeNode();
    group->SetText(L"group");
    for (int i = 0; i < kPerGroup; ++i) group->Add(new TreeNode());
    group->SetExpanded(true);
    tree->Add(group);
  }
  tree->SetPos(kView);
  return tree;
}

// Scroll positions a page apart, each a few pixels off a whole row, up to the end and back.
std::vector<int> Positions() {
  std::vector<int> out;
  for (int pos = 7; pos + kPage < (kGroups + kGroups * kPerGroup) * kRowHeight; pos += kPage) out.push_back(pos);
  return out;
}

void Require(bool ok, const char* what) {
  if (ok) return;
  std::fprintf(stderr, "tree_bench: %s\n", what);
  std::exit(1);
}

void BM_TreeScrollPage(benchmark::State& state) {
  std::unique_ptr<TreeView> tree = MakeTree();
  const std::vector<int> positions = Positions();
  Require(tree->GetRowCount() == kGroups * (kPerGroup + 1), "10,000 rows");
  for (int pos : {positions[1], positions[2]}) {
    tree->ScrollTo(pos);
    const treerows::Span span = tree->GetRowsInView();
    Require(span.last - span.first == kPlaced, "a page of rows placed");
    Require(tree->GetRowNode(span.first)->GetPos().top == kView.top + span.first * kRowHeight - pos, "first row");
    Require(tree->GetRowNode(span.first - 1)->GetPos() == UiRect{}, "the row above has no place");
  }
  size_t next = 0;
  for (auto _ : state) {
    tree->ScrollTo(positions[next]);
    next = next + 1 == positions.size() ? 0 : next + 1;
    benchmark::DoNotOptimize(tree->GetScrollPos());
  }
}

// The peer: a box of as many list rows, laid out in two places in turn so every row moves.
void BM_VBoxPageLayout(benchmark::State& state) {
  VBox box;
  std::vector<Control*> rows;
  for (int i = 0; i < kPlaced; ++i) {
    auto* row = new ListContainerElement();
    row->SetFixedHeight(kRowHeight);
    box.Add(row);
    rows.push_back(row);
  }
  const UiRect places[2] = {UiRect{0, 0, 288, kPlaced * kRowHeight}, UiRect{0, -7, 288, kPlaced * kRowHeight - 7}};
  box.SetPos(places[1]);
  Require(rows.back()->GetPos().bottom == places[1].bottom, "the box's rows");
  int which = 0;
  for (auto _ : state) {
    box.SetPos(places[which]);
    which ^= 1;
    benchmark::DoNotOptimize(rows.back()->GetPos());
  }
}

}  // namespace

BENCHMARK(BM_TreeScrollPage)->Repetitions(7)->MinTime(0.1)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_VBoxPageLayout)->Repetitions(7)->MinTime(0.1)->Unit(benchmark::kMicrosecond);

int main(int argc, char** argv) {
  bench_rows::MedianReporter reporter(true);
  bench_rows::RunInterleaved(argc, argv, reporter);
  const double tree = reporter.median["BM_TreeScrollPage"], box = reporter.median["BM_VBoxPageLayout"];
  bench_rows::PrintRow("tree view, 10,000 nodes, scroll one page (layout of the 31 rows in view)",
                       bench_rows::Text("%.2f us", tree), bench_rows::Text("VBox of 31 list rows: %.2f us", box),
                       box > 0 ? tree / box : 0, 1.5);
  return 0;
}
