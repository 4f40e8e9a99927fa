// The scroll bar: its arithmetic (where its thumb lies, which part a point is on, where each way
// of scrolling moves the position) in tables, then a list that scrolls in a window.
#include "duilib/Core/ScrollBar.h"

#include <gtest/gtest.h>

#include "duilib/Core/ListBox.h"
#include "duilib/Core/Window.h"
#include "duilib/Core/WindowBuilder.h"

namespace {

using namespace mivo::duilib;

// 1000 pixels of content in a view of 250 (at most 750 scrolled), a bar 12 wide and 250 high
// with 12-pixel arrows: the track is 12..238 (226 pixels), the thumb 226 × 250 ÷ 1000 = 56.
constexpr UiRect kBar{0, 0, 12, 250};

VScrollModel Model(int content, int pos) {
  VScrollModel model;
  model.SetMetrics(12, 10, 20);
  model.SetRange(content, 250);
  model.SetPos(pos);
  return model;
}

TEST(VScrollModel, TheThumbIsTheViewsShareOfTheTrackAtThePositionsShare) {
  struct Row {
    int content, pos, top, bottom;
  };
  const Row rows[] = {
      {1000, 0, 12, 68},         {1000, 375, 97, 153}, {1000, 750, 182, 238},
      {1000, 9999, 182, 238},    {100000, 0, 12, 22},  // never shorter than the smallest thumb
      {100000, 99750, 228, 238}, {200, 0, 12, 12},     // nothing to scroll: no thumb
  };
  for (const Row& row : rows) {
    const ScrollBarPlaces places = Model(row.content, row.pos).Place(kBar);
    EXPECT_EQ(places.thumb, (UiRect{0, row.top, 12, row.bottom})) << row.content << " at " << row.pos;
  }
  // A bar shorter than its two arrows gives each half of it.
  const ScrollBarPlaces tiny = Model(1000, 0).Place(UiRect{0, 0, 12, 16});
  EXPECT_EQ(tiny.upArrow, (UiRect{0, 0, 12, 8}));
  EXPECT_EQ(tiny.downArrow, (UiRect{0, 8, 12, 16}));
}

TEST(VScrollModel, EachWayOfScrollingMovesWithinTheRange) {
  const VScrollModel middle = Model(1000, 375);  // thumb at 97..153
  struct Part {
    UiPoint pt;
    ScrollPart part;
    int pos;  // after a click there
  };
  const Part parts[] = {{{5, 5}, kScrollUpArrow, 355}, {{5, 245}, kScrollDownArrow, 395},
                        {{5, 50}, kScrollPageUp, 145}, {{5, 200}, kScrollPageDown, 605},
                        {{5, 100}, kScrollThumb, 375}, {{20, 100}, kScrollNone, 375}};
  for (const Part& p : parts) {
    EXPECT_EQ(middle.PartAt(kBar, p.pt), p.part) << p.pt.x << "," << p.pt.y;
    EXPECT_EQ(middle.StepFor(p.part), p.pos) << p.pt.x << "," << p.pt.y;
  }
  EXPECT_EQ(Model(1000, 0).StepFor(kScrollUpArrow), 0);
  EXPECT_EQ(Model(1000, 740).StepFor(kScrollPageDown), 750);
  EXPECT_EQ(Model(200, 0).PartAt(kBar, UiPoint{5, 100}), kScrollNone) << "nothing to scroll";

  // Dragging: the thumb's 170 free pixels stand for the 750 of the range.
  struct Drag {
    int pressPos, pressY, y, pos;
  };
  const Drag drags[] = {
      {0, 20, 105, 375}, {0, 20, 21, 4}, {375, 120, 35, 0}, {375, 120, 900, 750}, {375, 120, 120, 375}};
  for (const Drag& d : drags)
    EXPECT_EQ(middle.DragTo(kBar, d.pressPos, d.pressY, d.y), d.pos) << d.pressY << "->" << d.y;

  // The wheel: a notch is three lines, up scrolls back.
  struct Wheel {
    int pos, delta, to;
  };
  const Wheel wheels[] = {{375, 120, 315}, {375, -240, 495}, {0, 120, 0}, {740, -120, 750}, {375, 40, 355}};
  for (const Wheel& w : wheels) EXPECT_EQ(Model(1000, w.pos).WheelTo(w.delta), w.to) << w.pos << " " << w.delta;

  // Showing an item moves as little as it can; 375..625 is in view.
  struct Show {
    int top, bottom, pos;
  };
  const Show shows[] = {{400, 448, 375}, {300, 348, 300}, {600, 648, 398}, {0, 1000, 0}, {990, 1040, 750}};
  for (const Show& s : shows) EXPECT_EQ(middle.ShowRange(s.top, s.bottom), s.pos) << s.top << ".." << s.bottom;

  // A range that shrinks takes the position with it.
  VScrollModel shrinking = Model(1000, 750);
  shrinking.SetRange(500, 250);
  EXPECT_EQ(shrinking.GetPos(), 250);
}

}  // namespace

namespace {

// A list of twelve rows of 20 pixels in a view of 60 with a bar 10 wide: 240 pixels of content,
// at most 180 scrolled; the track is 10..50 (40 pixels), the thumb 40 × 60 ÷ 240 = 10.
constexpr char kListSkin[] = R"(<Window size="100,100">
  <VBox>
    <ListBox name="list" height="60" vscrollbar="true" scrollbarwidth="10" bordersize="0"/>
    <Control name="below"/>
  </VBox>
</Window>)";

class ScrollingList : public ::testing::Test {
 protected:
  void SetUp() override {
    WindowBuilder builder;
    window.AttachRoot(static_cast<Box*>(builder.CreateFromString(kListSkin, nullptr, &window)));
    list = dynamic_cast<ListBox*>(window.FindControl(L"list"));
    ASSERT_NE(list, nullptr);
    for (int i = 0; i < 12; ++i) {
      auto* row = new ListContainerElement();
      row->SetFixedHeight(20);
      list->Add(row);
    }
    window.ArrangeRoot(UiRect{0, 0, 100, 100});
  }
  void Mouse(EventType type, int x, int y) { window.HandleMouseEvent(type, UiPoint{x, y}); }
  UiRect Row(int index) { return list->GetItemAt(index)->GetPos(); }

  Window window;
  ListBox* list = nullptr;
};

TEST_F(ScrollingList, TheWheelTheBarAndTheKeysScrollTheRowsUnderTheBox) {
  EXPECT_EQ(list->GetVScrollBarRect(), (UiRect{90, 0, 100, 60}));
  EXPECT_EQ(Row(0), (UiRect{0, 0, 90, 20})) << "the rows leave the bar its place";
  window.HandleWheel(UiPoint{40, 30}, -120);  // over a row: its list scrolls, three lines of 20
  EXPECT_EQ(list->GetScrollPos(), 60);
  EXPECT_EQ(Row(3), (UiRect{0, 0, 90, 20}));
  Mouse(kEventMouseButtonDown, 95, 55);  // the down arrow: one line
  Mouse(kEventMouseButtonUp, 95, 55);
  EXPECT_EQ(list->GetScrollPos(), 80);
  EXPECT_EQ(list->GetCurSel(), -1) << "the bar selects no row";
  // The thumb is at 10 + 30 × 80 ÷ 180 = 23; dragged 15 pixels down it stands for 15 × 180 ÷ 30.
  Mouse(kEventMouseButtonDown, 95, 25);
  Mouse(kEventMouseMove, 95, 40);
  Mouse(kEventMouseButtonUp, 20, 90);
  EXPECT_EQ(list->GetScrollPos(), 170);
  Mouse(kEventMouseButtonDown, 95, 12);  // the track above the thumb: a view less a line up
  Mouse(kEventMouseButtonUp, 95, 12);
  EXPECT_EQ(list->GetScrollPos(), 130);
  EXPECT_EQ(window.FindControl(L"below")->GetPos().top, 60) << "what follows the list stays below it";

  // Selecting with the keys keeps the selected row in view.
  window.SetFocus(list);
  window.HandleKeyDown(kVkHome, false);
  EXPECT_EQ(list->GetScrollPos(), 0);
  window.HandleKeyDown(kVkEnd, false);
  EXPECT_EQ(list->GetScrollPos(), 180);
  EXPECT_EQ(Row(11), (UiRect{0, 40, 90, 60}));
  window.HandleKeyDown(kVkPageUp, false);  // three rows fit: from 11 to 8, the top one now
  EXPECT_EQ(list->GetCurSel(), 8);
  EXPECT_EQ(list->GetScrollPos(), 160);

  // Rows removed until all fit: the bar goes and the rows take the whole width.
  while (list->GetCount() > 3) list->Remove(list->GetItemAt(0));
  EXPECT_EQ(list->GetVScrollBarRect(), UiRect{});
  EXPECT_EQ(list->GetScrollPos(), 0);
  EXPECT_EQ(Row(2), (UiRect{0, 40, 100, 60}));
  window.HandleWheel(UiPoint{40, 30}, -120);
  EXPECT_EQ(list->GetScrollPos(), 0);
}

}  // namespace
