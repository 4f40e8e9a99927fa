// Boxes lay out when places are needed, not at every change: what is read, hit or repainted
// right after a change must be what an immediate layout would have given.
#include <gtest/gtest.h>

#include "duilib/Core/Box.h"
#include "duilib/Core/Window.h"

namespace mivo::duilib {
namespace {

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
  } rows[] = {
      {"height", [](Control* c) { c->SetFixedHeight(30); }, {0, 30, 50, 100}},
      {"hidden", [](Control* c) { c->SetVisible(false); }, {0, 0, 50, 100}},
      {"margin", [](Control* c) { c->SetMargin(UiRect{0, 5, 0, 5}); }, {0, 20, 50, 100}},
      {"float", [](Control* c) { c->SetFloat(true); }, {0, 0, 50, 100}},
      {"predicate", [](Control* c) { c->SetPlacementPredicate([] { return false; }); }, {0, 0, 50, 90}},
  };
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
