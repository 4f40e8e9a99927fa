#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "duilib/Core/Box.h"
#include "duilib/Core/Layout.h"
#include "duilib/Core/TileLayout.h"
#include "duilib/Core/Window.h"

namespace mivo::duilib {
namespace {

// Children made from a compact description, owned by the test.
struct Child {
  int width = DUI_LENGTH_STRETCH, height = DUI_LENGTH_STRETCH;
  UiRect margin{};
  int minWidth = 0, minHeight = 0, maxWidth = DUI_LENGTH_NOLIMIT, maxHeight = DUI_LENGTH_NOLIMIT;
  HorAlignType halign = kHorAlignLeft;
  VerAlignType valign = kVerAlignTop;
  bool visible = true, isFloat = false;
};

class Children {
 public:
  explicit Children(std::initializer_list<Child> children) {
    for (const Child& c : children) {
      auto control = std::make_unique<Control>();
      control->SetFixedWidth(c.width);
      control->SetFixedHeight(c.height);
      control->SetMargin(c.margin);
      control->SetMinWidth(c.minWidth);
      control->SetMinHeight(c.minHeight);
      control->SetMaxWidth(c.maxWidth);
      control->SetMaxHeight(c.maxHeight);
      control->SetHorAlignType(c.halign);
      control->SetVerAlignType(c.valign);
      control->SetVisible(c.visible);
      control->SetFloat(c.isFloat);
      items.push_back(control.get());
      owned.push_back(std::move(control));
    }
  }
  std::vector<UiRect> Rects() const {
    std::vector<UiRect> rects;
    for (const Control* c : items) rects.push_back(c->GetPos());
    return rects;
  }
  std::vector<Control*> items;
  std::vector<std::unique_ptr<Control>> owned;
};

using Rects = std::vector<UiRect>;

TEST(VLayoutTest, StretchChildrenShareTheHeightAndTheFirstTakeTheLeftoverPixels) {
  Children kids({{}, {}, {}});
  VLayout layout;
  UiSize used = layout.ArrangeChild(kids.items, UiRect{10, 20, 60, 120});
  EXPECT_EQ((Rects{{10, 20, 60, 54}, {10, 54, 60, 87}, {10, 87, 60, 120}}), kids.Rects());
  EXPECT_EQ((UiSize{50, 100}), used);
}

TEST(VLayoutTest, FixedChildrenMarginsAndTheChildMargin) {
  Children kids({{.width = 30, .height = 10, .margin = {1, 2, 3, 4}},
                 {.height = DUI_LENGTH_STRETCH, .margin = {0, 5, 0, 5}},
                 {.width = 20, .height = 15}});
  VLayout layout;
  layout.SetChildMargin(6);
  UiSize used = layout.ArrangeChild(kids.items, UiRect{0, 0, 100, 100});
  // fixed = (2+4) + 10 + (5+5) + 15 + 2*6 = 53; the stretch child gets 100 - 53 = 47
  EXPECT_EQ((Rects{{1, 2, 31, 12}, {0, 27, 100, 74}, {0, 85, 20, 100}}), kids.Rects());
  EXPECT_EQ((UiSize{100, 88 + 12}), used);
}

TEST(VLayoutTest, StretchChildrenGetNothingWhenTheFixedOnesTakeItAll) {
  Children kids({{.height = 80}, {}, {.minHeight = 7}, {.height = 50}});
  VLayout layout;
  layout.ArrangeChild(kids.items, UiRect{0, 0, 40, 100});
  Rects rects = kids.Rects();
  EXPECT_EQ(0, rects[1].GetHeight());
  EXPECT_EQ(7, rects[2].GetHeight());  // its minimum
  EXPECT_EQ(87, rects[3].top);
}

TEST(VLayoutTest, CrossAxisAlignmentAndLimits) {
  Children kids({{.width = 50, .height = 10, .halign = kHorAlignCenter},
                 {.width = 50, .height = 10, .margin = {0, 0, 7, 0}, .halign = kHorAlignRight},
                 {.width = 500, .height = 10, .maxWidth = -1},
                 {.width = 500, .height = 10, .maxWidth = 60},
                 {.width = DUI_LENGTH_AUTO, .height = 30, .maxHeight = 20},
                 {.width = 5, .height = 10, .minWidth = 9}});
  VLayout layout;
  layout.ArrangeChild(kids.items, UiRect{100, 0, 201, 200});
  Rects r = kids.Rects();
  EXPECT_EQ(125, r[0].left);  // (101 - 50) / 2
  EXPECT_EQ((UiRect{144, 10, 194, 20}), r[1]);
  EXPECT_EQ(500, r[2].GetWidth());  // a negative maximum never narrows
  EXPECT_EQ(60, r[3].GetWidth());
  EXPECT_EQ(0, r[4].GetWidth());    // auto without content: nothing
  EXPECT_EQ(20, r[4].GetHeight());  // the maximum height always applies
  EXPECT_EQ(9, r[5].GetWidth());
}

TEST(VLayoutTest, HiddenFloatingAndSkippedChildren) {
  Children kids({{.height = 10},
                 {.height = 10, .visible = false},
                 {.width = 20, .height = 20, .margin = {5, 5, 0, 0}, .isFloat = true},
                 {.height = 10},
                 {.height = 10}});
  bool place = false;
  kids.items[3]->SetPlacementPredicate([&place] { return place; });
  VLayout layout;
  layout.SetChildMargin(2);
  UiSize used = layout.ArrangeChild(kids.items, UiRect{0, 0, 50, 100});
  Rects r = kids.Rects();
  EXPECT_EQ((UiRect{0, 0, 50, 10}), r[0]);
  EXPECT_EQ((UiRect{}), r[1]);
  EXPECT_EQ((UiRect{5, 5, 25, 25}), r[2]);  // placed on its own
  EXPECT_EQ((UiRect{}), r[3]);              // the predicate said no
  EXPECT_EQ((UiRect{0, 12, 50, 22}), r[4]);
  // counted in the first pass, so the gaps are those of three children
  EXPECT_EQ((UiSize{50, 20 + 2 * 2}), used);
}

TEST(VLayoutTest, WithoutChildrenTheHeightIsMinusTheChildMargin) {
  Children kids({{.visible = false}});
  VLayout layout;
  layout.SetChildMargin(4);
  EXPECT_EQ((UiSize{0, -4}), layout.ArrangeChild(kids.items, UiRect{0, 0, 10, 10}));
  EXPECT_EQ((UiSize{0, 0}), layout.AjustSizeByChild(kids.items, UiSize{10, 10}));
}

TEST(VLayoutTest, MeasuringAddsPaddingGapsAndMinimumsOfStretchChildren) {
  Children kids({{.width = 30, .height = 10, .margin = {1, 1, 1, 1}},
                 {.minWidth = 12, .minHeight = 8},
                 {.width = 500, .height = 10, .maxWidth = 40},
                 {.height = 99, .isFloat = true}});
  VLayout layout;
  layout.SetPadding(UiRect{2, 3, 4, 5});
  layout.SetChildMargin(6);
  // widest 40; heights 12 + 8 + 10 = 30, two gaps of 6
  EXPECT_EQ((UiSize{40 + 6, 30 + 12 + 8}), layout.AjustSizeByChild(kids.items, UiSize{100, 100}));
}

TEST(HLayoutTest, TheSameRulesAlongTheWidth) {
  Children kids({{}, {.width = 10, .valign = kVerAlignBottom}, {.height = 20, .valign = kVerAlignCenter}, {}, {}});
  HLayout layout;
  UiSize used = layout.ArrangeChild(kids.items, UiRect{0, 0, 110, 61});
  Rects r = kids.Rects();
  // 100 pixels for four stretch widths: 25 each, no leftover
  EXPECT_EQ((UiRect{0, 0, 25, 61}), r[0]);
  EXPECT_EQ((UiRect{25, 0, 35, 61}), r[1]);   // stretch height fills, whatever the alignment
  EXPECT_EQ((UiRect{35, 20, 60, 40}), r[2]);  // (61 - 20) / 2
  EXPECT_EQ(110, r[4].right);
  EXPECT_EQ((UiSize{110, 61}), used);

  Children three({{}, {}, {}});
  layout.ArrangeChild(three.items, UiRect{0, 0, 100, 10});
  Rects widths = three.Rects();
  EXPECT_EQ(34, widths[0].GetWidth());
  EXPECT_EQ(33, widths[1].GetWidth());
  EXPECT_EQ(33, widths[2].GetWidth());
}

TEST(HLayoutTest, MeasuringSumsWidthsAndTakesTheTallest) {
  Children kids({{.width = 30, .height = 10, .margin = {1, 2, 3, 4}}, {.width = 20, .height = 40}});
  HLayout layout;
  layout.SetChildMargin(5);
  EXPECT_EQ((UiSize{34 + 20 + 5, 40}), layout.AjustSizeByChild(kids.items, UiSize{0, 0}));
}

TEST(BoxTest, ABoxLaysOutInsideItsPaddingAndSizesItselfFromItsChildren) {
  VBox box;
  box.SetAttribute(L"padding", L"5,6,7,8");
  box.SetAttribute(L"childmargin", L"3");
  box.SetAttribute(L"width", L"auto");  // not a layout name: the control takes it
  box.SetAttribute(L"height", L"auto");
  auto* a = new Control();
  a->SetFixedWidth(40);
  a->SetFixedHeight(10);
  auto* b = new Control();
  b->SetFixedHeight(DUI_LENGTH_STRETCH);
  b->SetMinHeight(20);
  ASSERT_TRUE(box.Add(a));
  ASSERT_TRUE(box.Add(b));
  EXPECT_FALSE(box.Add(a));  // already in a box
  EXPECT_EQ((UiSize{52, 47}), box.EstimateSize(UiSize{500, 500}));
  box.SetPos(UiRect{0, 0, 100, 100});
  EXPECT_EQ((UiRect{5, 6, 45, 16}), a->GetPos());
  EXPECT_EQ((UiRect{5, 19, 93, 92}), b->GetPos());

  auto* inner = new HBox();
  inner->SetName(L"inner");
  auto* deep = new Control();
  deep->SetName(L"deep");
  inner->Add(deep);
  box.Add(inner);
  EXPECT_EQ(deep, box.FindSubControl(L"deep"));
  EXPECT_EQ(inner, box.FindSubControl(L"inner"));
  EXPECT_EQ(nullptr, box.FindSubControl(L"nobody"));
  EXPECT_TRUE(box.Remove(inner));
  EXPECT_EQ(nullptr, box.FindSubControl(L"deep"));
}

// Painting and layout recurse once a level: a loop or a tree past the limit is refused.
TEST(BoxTest, NoLoopsAndNoTreeDeeperThanTheLimit) {
  VBox root;
  Box* last = &root;
  for (int depth = 1; depth < Box::kMaxTreeDepth; ++depth) {
    auto* next = new VBox();
    ASSERT_TRUE(last->Add(next)) << depth;
    last = next;
  }
  auto* leaf = new Control();
  EXPECT_FALSE(last->Add(leaf));  // one level too many
  delete leaf;
  auto* twoLevels = new VBox();
  twoLevels->Add(new Control());
  auto* up = static_cast<Box*>(last->GetParent());
  EXPECT_FALSE(up->Add(twoLevels));  // its subtree counts too
  EXPECT_TRUE(static_cast<Box*>(up->GetParent())->Add(twoLevels));
  auto* island = new VBox();
  auto* inside = new VBox();
  island->Add(inside);
  EXPECT_FALSE(inside->Add(island));  // its own ancestor
  EXPECT_FALSE(island->Add(island));
  delete island;
}

TEST(TileLayoutTest, CellsFillRowsInOrder) {
  const Child stretch{}, tall{DUI_LENGTH_STRETCH, 30}, short10{DUI_LENGTH_STRETCH, 10};
  struct Row {
    const wchar_t *itemsize, *columns;
    std::initializer_list<Child> children;
    Rects expected;
    UiSize used, needed;  // needed: AjustSizeByChild for a width of 100, no padding
  } rows[] = {
      // 30x20 cells, 5 between: three fit in 100 (3*30 + 2*5), the fourth starts a row
      {L"30,20",
       L"",
       {stretch, stretch, stretch, stretch},
       {{0, 0, 30, 20}, {35, 0, 65, 20}, {70, 0, 100, 20}, {0, 25, 30, 45}},
       {100, 45},
       {100, 45}},
      // two columns share 100 less the margin; a row is its tallest fixed height, else square
      {L"", L"2", {tall, short10, stretch}, {{0, 0, 47, 30}, {52, 0, 99, 30}, {0, 35, 47, 82}}, {100, 82}, {99, 82}},
      // a child's margin shrinks it inside its cell; invisible ones take no cell
      {L"40,40",
       L"",
       {{DUI_LENGTH_STRETCH, DUI_LENGTH_STRETCH, UiRect{2, 3, 4, 5}}, {.visible = false}, stretch},
       {{2, 3, 36, 35}, {0, 0, 0, 0}, {45, 0, 85, 40}},
       {100, 40},
       {85, 40}},
      // a cell wider than the box still makes one column
      {L"150,10", L"", {stretch, stretch}, {{0, 0, 150, 10}, {0, 15, 150, 25}}, {100, 25}, {150, 25}}};
  for (const Row& row : rows) {
    Children kids(row.children);
    TileLayout layout;
    layout.SetAttribute(L"childmargin", L"5");
    if (*row.itemsize) layout.SetAttribute(L"itemsize", row.itemsize);
    if (*row.columns) layout.SetAttribute(L"columns", row.columns);
    EXPECT_EQ(row.used, layout.ArrangeChild(kids.items, UiRect{0, 0, 100, 200})) << row.itemsize << row.columns;
    EXPECT_EQ(row.expected, kids.Rects()) << row.itemsize << row.columns;
    EXPECT_EQ(row.needed, layout.AjustSizeByChild(kids.items, UiSize{100, 200})) << row.itemsize << row.columns;
  }
}

// Boxes lay out when places are needed, not at every change: what is read, hit or repainted
// right after a change must be what an immediate layout would have given.
Control* Fixed(int height) {
  auto* control = new Control();
  control->SetFixedHeight(height);
  return control;
}

TEST(BoxArrange, PlacesReadOrHitRightAfterAddingAreTheArrangedOnes) {
  VBox outer;
  outer.SetPos(UiRect{0, 0, 100, 100});
  auto* inner = new HBox();
  auto* leaf = new Control();
  ASSERT_TRUE(outer.Add(inner));
  ASSERT_TRUE(inner->Add(leaf));
  EXPECT_EQ(leaf->GetPos(), (UiRect{0, 0, 100, 100}));  // both boxes waited

  Control* below = Fixed(40);
  outer.Add(below);
  EXPECT_EQ(leaf->GetPos(), (UiRect{0, 0, 100, 60}));  // read through the inner box
  EXPECT_EQ(below->GetPos(), (UiRect{0, 60, 100, 100}));

  Control* last = Fixed(10);
  outer.Add(last);
  EXPECT_EQ(outer.FindControlAt(UiPoint{50, 95}), last);
  EXPECT_EQ(outer.FindControlAt(UiPoint{50, 85}), below);
  EXPECT_EQ(below->GetPos(), (UiRect{0, 50, 100, 90}));
}

TEST(BoxArrange, AWindowRepaintsWhatTheWaitingLayoutMoves) {
  Window window;
  window.AttachRoot(new VBox());
  window.GetRoot()->Add(Fixed(20));
  window.ArrangeRoot(UiRect{0, 0, 200, 100});
  window.ClearUpdate();
  Control* added = Fixed(30);
  window.GetRoot()->AddAt(added, 0);  // the first child moves down below it
  EXPECT_TRUE(window.IsUpdateNeeded());
  EXPECT_EQ(window.GetUpdateRect(), (UiRect{0, 0, 200, 50}));
  EXPECT_EQ(added->GetPos(), (UiRect{0, 0, 200, 30}));
}

// A box lays its own children out from their layout records unless a child's class changes
// what the layout asks of it, or the child has a placement predicate.
TEST(BoxArrange, OverridesAndPredicatesAreStillAsked) {
  struct Tall : Control {
    UiSize EstimateSize(UiSize) override { return UiSize{DUI_LENGTH_STRETCH, 25}; }
  };
  VBox box;
  box.SetPos(UiRect{0, 0, 50, 100});
  auto* tall = new Tall();
  Control* skipped = Fixed(10);
  bool place = false;
  skipped->SetPlacementPredicate([&place] { return place; });
  Control* last = Fixed(10);
  for (Control* c : {static_cast<Control*>(tall), skipped, last}) box.Add(c);
  EXPECT_EQ(tall->GetPos(), (UiRect{0, 0, 50, 25}));
  EXPECT_EQ(skipped->GetPos(), (UiRect{}));
  EXPECT_EQ(last->GetPos(), (UiRect{0, 25, 50, 35}));
  place = true;
  box.SetPos(UiRect{0, 0, 50, 100});
  EXPECT_EQ(skipped->GetPos(), (UiRect{0, 25, 50, 35}));
}

// A box keeps what its first pass measured while its children stay as they are: every change
// a layout reads must be seen by the next one.
TEST(BoxArrange, ChangingAChildIsSeenByTheNextLayout) {
  struct Row {
    const char* what;
    void (*change)(Control*);
    UiRect stretch;  // where the stretch child below it goes
  } rows[] = {{"height", [](Control* c) { c->SetFixedHeight(30); }, {0, 30, 50, 100}},
              {"hidden", [](Control* c) { c->SetVisible(false); }, {0, 0, 50, 100}},
              {"margin",
               [](Control* c) {
                 c->SetMargin(UiRect{0, 5, 0, 5});
               },
               {0, 20, 50, 100}},
              {"float", [](Control* c) { c->SetFloat(true); }, {0, 0, 50, 100}},
              {"predicate", [](Control* c) { c->SetPlacementPredicate([] { return false; }); }, {0, 0, 50, 90}}};
  for (const Row& row : rows) {
    SCOPED_TRACE(row.what);
    VBox box;
    box.SetPos(UiRect{0, 0, 50, 100});
    Control* fixed = Fixed(10);
    auto* stretch = new Control();
    box.Add(fixed);
    box.Add(stretch);
    ASSERT_EQ(stretch->GetPos(), (UiRect{0, 10, 50, 100}));
    row.change(fixed);
    box.SetPos(UiRect{0, 0, 50, 100});
    EXPECT_EQ(stretch->GetPos(), row.stretch);
  }
}

}  // namespace
}  // namespace mivo::duilib
