// Lists: one selected row at most, selection by index, by the row itself and by a click,
// and what the rows and the list tell their handlers.
#include "duilib/Core/ListBox.h"

#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "duilib/Core/Label.h"

namespace {

using namespace mivo::duilib;
using Heard = std::vector<std::string>;

// Three rows 20 pixels high at (0,0)-(100,60), whose events are written down as
// "list select 2 0", "row1 unselect", ...
class ListBoxTest : public ::testing::Test {
 protected:
  void SetUp() override {
    for (int i = 0; i < 3; ++i) {
      auto* row = new ListContainerElement();
      row->SetAttribute(L"height", L"20");
      for (EventType type : {kEventSelect, kEventUnSelect})
        row->AttachEvent(type, [this, type, name = "row" + std::to_string(i)](EventArgs*) {
          heard.push_back(name + (type == kEventSelect ? " select" : " unselect"));
          return true;
        });
      list.Add(row);
    }
    list.AttachEvent(kEventSelect, [this](EventArgs* args) {
      heard.push_back("list select " + std::to_string(args->wParam) + " " + std::to_string(args->lParam));
      return true;
    });
    list.SetPos(UiRect{0, 0, 100, 60});
  }
  ListContainerElement* Row(int index) { return dynamic_cast<ListContainerElement*>(list.GetItemAt(index)); }
  std::vector<int> SelectedRows() {
    std::vector<int> selected;
    for (int i = 0; i < static_cast<int>(list.GetCount()); ++i)
      if (Row(i) && Row(i)->IsSelected()) selected.push_back(i);
    return selected;
  }
  void Click(int x, int y) {
    Control* target = list.FindControlAt(UiPoint{x, y});
    ASSERT_NE(target, nullptr);
    for (EventType type : {kEventMouseButtonDown, kEventMouseButtonUp}) {
      EventArgs args;
      args.Type = type;
      args.ptMouse = UiPoint{x, y};
      target->HandleEvent(args);
    }
  }
  Heard Take() { return std::exchange(heard, {}); }

  ListBox list;
  Heard heard;
};

TEST_F(ListBoxTest, SelectItemMovesTheSelectionAndTellsOfIt) {
  EXPECT_EQ(list.GetCurSel(), -1);
  EXPECT_TRUE(list.SelectItem(1));
  EXPECT_TRUE(list.SelectItem(2));
  EXPECT_EQ(SelectedRows(), (std::vector<int>{2}));
  EXPECT_EQ(Take(), (Heard{"row1 select", "list select 1 -1", "row1 unselect", "row2 select", "list select 2 1"}));
  EXPECT_TRUE(list.SelectItem(2));  // already selected: nothing to tell
  EXPECT_TRUE(list.SelectItem(0, false));
  EXPECT_EQ(list.GetCurSel(), 0);
  EXPECT_EQ(Take(), Heard{});

  list.Add(new Label());  // not a row: no selection at its index, nor at any other that is not a row
  for (int index : {-1, 3, 4, 100}) EXPECT_FALSE(list.SelectItem(index)) << index;
  EXPECT_EQ(list.GetCurSel(), 0);
  EXPECT_EQ(Take(), Heard{});
}

TEST_F(ListBoxTest, RowsSelectThroughTheirList) {
  Row(0)->Selected(true, true);
  Row(2)->SetAttribute(L"selected", L"true");
  EXPECT_EQ(SelectedRows(), (std::vector<int>{2}));
  EXPECT_EQ(Take().back(), "list select 2 0");
  Row(2)->Selected(false, true);  // a row may deselect itself: then nothing is selected
  EXPECT_EQ(list.GetCurSel(), -1);
  EXPECT_EQ(Take().back(), "row2 unselect");

  auto* late = new ListContainerElement();  // selected as a skin builds it, before it has a list
  late->SetAttribute(L"selected", L"true");
  list.Add(late);
  EXPECT_EQ(SelectedRows(), (std::vector<int>{3}));
  EXPECT_EQ(Take(), Heard{}) << "it wins silently";

  ListContainerElement loose;  // a loose row is a check box of its own
  loose.Selected(true, true);
  EXPECT_TRUE(loose.IsSelected());
  EXPECT_EQ(loose.GetIndex(), -1);
}

TEST_F(ListBoxTest, ClickingARowSelectsIt) {
  auto* caption = new Label();  // a caption that lets the row take its clicks
  caption->SetAttribute(L"mouse", L"false");
  Row(1)->Add(caption);
  Row(1)->SetPos(Row(1)->GetPos());
  for (auto [x, y, selected] : {std::tuple{50, 30, 1}, {50, 30, 1}, {5, 59, 2}}) {
    Click(x, y);
    EXPECT_EQ(list.GetCurSel(), selected) << x << "," << y;
  }
  Row(0)->SetEnabled(false);
  Click(5, 5);
  EXPECT_EQ(list.GetCurSel(), 2);
}

TEST_F(ListBoxTest, RemovingRowsTakesTheSelectionWithThem) {
  list.SelectItem(1);
  list.Remove(list.GetItemAt(0));
  EXPECT_EQ(list.GetCurSel(), 0);  // the same row, one place up
  list.Remove(list.GetItemAt(0));
  EXPECT_EQ(list.GetCurSel(), -1);
  list.SelectItem(0);
  Row(0)->AttachEvent(kEventUnSelect, [this](EventArgs*) {
    list.RemoveAll();  // a handler may empty the list during a selection
    return true;
  });
  list.Add(new ListContainerElement());
  EXPECT_FALSE(list.SelectItem(1));  // the row to select went with the others
  EXPECT_EQ(list.GetCount(), 0u);
  EXPECT_EQ(list.GetCurSel(), -1);
}

}  // namespace
