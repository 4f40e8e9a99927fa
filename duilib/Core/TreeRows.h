#pragma once
// A tree shown as rows, apart from any control: the rows a tree shows (every node whose
// ancestors are all expanded, depth first), which of them a scroll position brings into view,
// where a node's expander lies, and what a key does to the selection or the expansion.
// The tree view keeps its nodes in these rows and acts on what these functions say.
#include <cstdint>
#include <vector>

#include "duilib/Core/Events.h"
#include "toolkit/export.h"

namespace mivo::duilib::treerows {

// One shown node.
struct Row {
  int depth = 0;             // 0 for the top level
  int parent = -1;           // the row of its parent node; -1 at the top level
  bool hasChildren = false;  // it has children that would show: it draws an expander
  bool expanded = false;
  friend bool operator==(const Row&, const Row&) = default;
};

// The rows below the children of `root` (root itself is no row). `tree` answers
// Count(node), Child(node, i) (null for a child that shows no row: hidden, or no node) and
// Expanded(node). Iterative, so a deep tree costs no stack; each node is looked at once, and
// a collapsed node's children until the first that shows.
template <class Node, class Tree>
void Flatten(Node root, const Tree& tree, std::vector<Row>& rows, std::vector<Node>& nodes) {
  rows.clear();
  nodes.clear();
  struct Frame {
    Node node;
    int next;
    int row;
  };
  auto hasShownChild = [&tree](Node node) {
    const int count = tree.Count(node);
    for (int i = 0; i < count; ++i)
      if (tree.Child(node, i)) return true;
    return false;
  };
  std::vector<Frame> open{{root, 0, -1}};
  while (!open.empty()) {
    Frame& top = open.back();
    if (top.next >= tree.Count(top.node)) {
      open.pop_back();
      continue;
    }
    Node child = tree.Child(top.node, top.next++);
    if (!child) continue;
    Row row;
    row.depth = static_cast<int>(open.size()) - 1;
    row.parent = top.row;
    row.hasChildren = hasShownChild(child);
    row.expanded = tree.Expanded(child);
    const int index = static_cast<int>(rows.size());
    rows.push_back(row);
    nodes.push_back(child);
    if (row.hasChildren && row.expanded) open.push_back(Frame{child, 0, index});  // `top` is not used after this
  }
}

// The rows [first, last) with a pixel in a view `view` pixels high, scrolled `scroll` pixels
// down a list of `count` rows of `rowHeight` each.
struct Span {
  int first = 0, last = 0;
  friend bool operator==(const Span&, const Span&) = default;
};
MIVO_COMMON_API Span RowsInView(int scroll, int view, int rowHeight, int count);

// Whether `x` falls on the expander of a row at `depth` starting at `rowLeft`: the square
// column of `indent` pixels just before the row's text, one indent further in per level.
MIVO_COMMON_API bool OnExpander(int x, int rowLeft, int depth, int indent);

// What a key does, from the selected row `current` (-1: none) with `page` rows in view.
enum class Action { kNone, kSelect, kExpand, kCollapse };
struct Step {
  Action action = Action::kNone;
  int row = -1;
  friend bool operator==(const Step&, const Step&) = default;
};
// Up, Down, Home, End, Page Up and Page Down move the selection as in a list. Right expands a
// collapsed row with children, or goes to the first child of an expanded one; Left collapses
// an expanded row, or goes to the parent. The first key with nothing selected selects the
// first row (End the last).
MIVO_COMMON_API Step KeyStep(uint32_t vk, const std::vector<Row>& rows, int current, int page);

}  // namespace mivo::duilib::treerows
