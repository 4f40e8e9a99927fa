// A tree as rows: the rows a tree shows, the rows in view for a scroll position, the
// expander's column and what the keys do, on a small fake tree.
#include "duilib/Core/TreeRows.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "duilib/Core/Events.h"

namespace {

using namespace mivo::duilib;
using namespace mivo::duilib::treerows;

struct Fake {
  std::string name;
  bool expanded = false;
  bool hidden = false;
  std::vector<Fake*> kids;
};

struct FakeTree {
  int Count(const Fake* n) const { return static_cast<int>(n->kids.size()); }
  const Fake* Child(const Fake* n, int i) const { return n->kids[i]->hidden ? nullptr : n->kids[i]; }
  bool Expanded(const Fake* n) const { return n->expanded; }
};

// root: a (expanded) [a1, a2 [a2x]], b [b1], c (expanded) [hidden cx], hidden d [d1]
class FakeRows : public ::testing::Test {
 protected:
  FakeRows() {
    a.kids = {&a1, &a2};
    a2.kids = {&a2x};
    b.kids = {&b1};
    c.kids = {&cx};
    d.kids = {&d1};
    root.kids = {&a, &b, &c, &d};
  }
  // Each row as name@depth^parent, then "+" collapsed or "-" expanded when it has children.
  std::string Shown() {
    Flatten<const Fake*>(&root, FakeTree{}, rows, nodes);
    std::string out;
    for (size_t i = 0; i < rows.size(); ++i) {
      const Row& r = rows[i];
      out += (out.empty() ? "" : " ") + nodes[i]->name + "@" + std::to_string(r.depth) + "^" +
             std::to_string(r.parent) + (r.hasChildren ? (r.expanded ? "-" : "+") : "");
    }
    return out;
  }
  Fake root, a{"a", true}, a1{"a1"}, a2{"a2"}, a2x{"a2x"}, b{"b"}, b1{"b1"}, c{"c", true}, cx{"cx", false, true},
      d{"d", false, true}, d1{"d1"};
  std::vector<Row> rows;
  std::vector<const Fake*> nodes;
};

TEST_F(FakeRows, OnlyNodesUnderExpandedShownAncestorsAreRowsInDepthFirstOrder) {
  struct Case {
    const char* what;
    Fake* flip;  // expansion turned over before flattening
    const char* shown;
  } cases[] = {
      {"as built", nullptr, "a@0^-1- a1@1^0 a2@1^0+ b@0^-1+ c@0^-1"},
      {"a2 opened", &a2, "a@0^-1- a1@1^0 a2@1^0- a2x@2^2 b@0^-1+ c@0^-1"},
      {"a closed hides its rows", &a, "a@0^-1+ b@0^-1+ c@0^-1"},
      {"b opened", &b, "a@0^-1- a1@1^0 a2@1^0+ b@0^-1- b1@1^3 c@0^-1"},
      {"hidden d opened stays out", &d, "a@0^-1- a1@1^0 a2@1^0+ b@0^-1+ c@0^-1"},
  };
  for (const Case& c : cases) {
    if (c.flip) c.flip->expanded = !c.flip->expanded;
    EXPECT_EQ(Shown(), c.shown) << c.what;
    if (c.flip) c.flip->expanded = !c.flip->expanded;
  }
}

TEST(TreeRows, RowsInViewCoverEveryRowWithAPixelShown) {
  struct Case {
    int scroll, view, rowHeight, count;
    Span expected;
  } cases[] = {
      {0, 100, 20, 1000, {0, 5}},
      {10, 100, 20, 1000, {0, 6}},  // cut rows at both ends
      {20, 100, 20, 1000, {1, 6}},
      {0, 100, 20, 3, {0, 3}},  // fewer rows than fit
      {19900, 100, 20, 1000, {995, 1000}},
      {500, 100, 20, 10, {10, 10}},  // past the end
      {0, 0, 20, 10, {0, 0}},
      {-5, 30, 20, 10, {0, 2}},  // no view; above the top
      {0, 100, 0, 10, {0, 0}},
      {2147483000, 1000, 1, 2147483647, {2147483000, 2147483647}},
  };
  for (const Case& c : cases)
    EXPECT_EQ(RowsInView(c.scroll, c.view, c.rowHeight, c.count), c.expected)
        << c.scroll << " " << c.view << " " << c.rowHeight << " " << c.count;
}

TEST(TreeRows, TheExpanderIsTheIndentWideColumnBeforeTheText) {
  struct Case {
    int x, rowLeft, depth, indent;
    bool on;
  } cases[] = {
      {10, 10, 0, 16, true}, {25, 10, 0, 16, true},  {26, 10, 0, 16, false},
      {9, 10, 0, 16, false}, {42, 10, 2, 16, true},  {41, 10, 2, 16, false},
      {57, 10, 2, 16, true}, {58, 10, 2, 16, false}, {10, 10, 0, 0, false},
  };
  for (const Case& c : cases) EXPECT_EQ(OnExpander(c.x, c.rowLeft, c.depth, c.indent), c.on) << c.x << " " << c.depth;
}

TEST_F(FakeRows, KeysMoveTheSelectionOrTurnTheRowOver) {
  a2.expanded = true;
  ASSERT_EQ(Shown(), "a@0^-1- a1@1^0 a2@1^0- a2x@2^2 b@0^-1+ c@0^-1");
  struct Case {
    uint32_t vk;
    int current;
    Step expected;
  } cases[] = {
      {kVkRight, 4, {Action::kExpand, 4}},   // b is closed
      {kVkRight, 0, {Action::kSelect, 1}},   // a is open: its first child
      {kVkRight, 1, {}},                     // a leaf
      {kVkRight, -1, {Action::kSelect, 0}},  // nothing selected yet
      {kVkLeft, 2, {Action::kCollapse, 2}},  // a2 is open
      {kVkLeft, 3, {Action::kSelect, 2}},    // up to the parent
      {kVkLeft, 4, {}},                      // closed, at the top level
      {kVkLeft, 1, {Action::kSelect, 0}},
      {kVkDown, 1, {Action::kSelect, 2}},
      {kVkDown, 5, {}},
      {kVkUp, 0, {}},
      {kVkPageDown, 0, {Action::kSelect, 4}},
      {kVkEnd, -1, {Action::kSelect, 5}},
      {kVkHome, 3, {Action::kSelect, 0}},
  };
  for (const Case& c : cases)
    EXPECT_EQ(KeyStep(c.vk, rows, c.current, 4), c.expected) << "key " << c.vk << " from " << c.current;
  EXPECT_EQ(KeyStep(kVkDown, {}, -1, 4), Step{});
}

}  // namespace
