// Lists: one selected row at most, selection by index, by the row itself and by a click,
// and what the rows and the list tell their handlers.
#include "duilib/Core/ListBox.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "duilib/Core/Label.h"

namespace {

using namespace mivo::duilib;

// A list of `count` rows 20 pixels high at (0,0)-(100,...), whose events are written down as
// "list select 2 0", "row1 unselect", ...
class ListBoxTest : public ::testing::Test {
 protected:
  void Fill(int count) {
    for (int i = 0; i < count; ++i) {
      auto* row = new ListContainerElement();
      row->SetAttribute(L"height", L"20");
      row->SetName(L"row" + std::to_wstring(i));
      Listen(row, "row" + std::to_string(i));
      list.Add(row);
    }
    list.AttachEvent(kEventSelect, [this](EventArgs* args) {
      heard.push_back("list select " + std::to_string(args->wParam) + " " + std::to_string(args->lParam));
      return true;
    });
    list.SetPos(UiRect{0, 0, 100, 20 * count});
  }
  void Listen(Control* row, const std::string& name) {
    row->AttachEvent(kEventSelect, [this, name](EventArgs*) {
      heard.push_back(name + " select");
      return true;
    });
    row->AttachEvent(kEventUnSelect, [this, name](EventArgs*) {
      heard.push_back(name + " unselect");
      return true;
    });
  }
  ListContainerElement* Row(int index) { return dynamic_cast<ListContainerElement*>(list.GetItemAt(index)); }
  std::vector<int> SelectedRows() {
    std::vector<int> selected;
    for (size_t i = 0; i < list.GetCount(); ++i)
      if (auto* row = Row(static_cast<int>(i)); row && row->IsSelected()) selected.push_back(static_cast<int>(i));
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

  ListBox list;
  std::vector<std::string> heard;
};

TEST_F(ListBoxTest, SelectItemMovesTheSelectionAndTellsOfIt) {
  Fill(3);
  EXPECT_EQ(list.GetCurSel(), -1);
  EXPECT_TRUE(list.SelectItem(1));
  EXPECT_EQ(list.GetCurSel(), 1);
  EXPECT_TRUE(list.SelectItem(2));
  EXPECT_EQ(list.GetCurSel(), 2);
  EXPECT_EQ(SelectedRows(), (std::vector<int>{2}));
  EXPECT_EQ(heard, (std::vector<std::string>{"row1 select", "list select 1 -1", "row1 unselect", "row2 select",
                                             "list select 2 1"}));

  heard.clear();
  EXPECT_TRUE(list.SelectItem(2));  // already selected: nothing to tell
  EXPECT_TRUE(list.SelectItem(0, false));
  EXPECT_EQ(list.GetCurSel(), 0);
  EXPECT_TRUE(heard.empty());
}

TEST_F(ListBoxTest, NoRowAtTheIndexChangesNothing) {
  Fill(2);
  list.Add(new Label());  // not a row
  list.SelectItem(1);
  heard.clear();
  for (int index : {-1, 2, 3, 100}) {
    EXPECT_FALSE(list.SelectItem(index)) << index;
    EXPECT_EQ(list.GetCurSel(), 1);
  }
  EXPECT_TRUE(heard.empty());
}

TEST_F(ListBoxTest, RowsSelectThroughTheirList) {
  Fill(3);
  Row(0)->Selected(true, true);
  Row(2)->SetAttribute(L"selected", L"true");
  EXPECT_EQ(SelectedRows(), (std::vector<int>{2}));
  EXPECT_EQ(heard.back(), "list select 2 0");
  Row(2)->Selected(false, true);  // a row may deselect itself: then nothing is selected
  EXPECT_EQ(list.GetCurSel(), -1);
  EXPECT_EQ(heard.back(), "row2 unselect");

  // a loose row is a check box of its own
  ListContainerElement loose;
  loose.Selected(true, true);
  EXPECT_TRUE(loose.IsSelected());
  EXPECT_EQ(loose.GetIndex(), -1);
  EXPECT_EQ(loose.GetOwner(), nullptr);
}

TEST_F(ListBoxTest, ASelectedRowJoiningTheListWinsSilently) {
  Fill(2);
  list.SelectItem(0);
  heard.clear();
  auto* late = new ListContainerElement();
  late->SetAttribute(L"selected", L"true");  // as a skin builds it, before it has a list
  list.Add(late);
  EXPECT_EQ(SelectedRows(), (std::vector<int>{2}));
  EXPECT_TRUE(heard.empty());
}

TEST_F(ListBoxTest, ClickingARowSelectsIt) {
  Fill(3);
  // a row with a caption; the caption lets the row take its clicks
  auto* caption = new Label();
  caption->SetAttribute(L"mouse", L"false");
  Row(1)->Add(caption);
  Row(1)->SetPos(Row(1)->GetPos());
  Click(50, 30);
  EXPECT_EQ(list.GetCurSel(), 1);
  Click(50, 30);  // clicking the selected row keeps it selected
  EXPECT_EQ(list.GetCurSel(), 1);
  Click(5, 59);
  EXPECT_EQ(list.GetCurSel(), 2);
  Row(0)->SetEnabled(false);
  Click(5, 5);
  EXPECT_EQ(list.GetCurSel(), 2);
}

TEST_F(ListBoxTest, RemovingRowsTakesTheSelectionWithThem) {
  Fill(3);
  list.SelectItem(1);
  list.Remove(list.GetItemAt(0));
  EXPECT_EQ(list.GetCurSel(), 0);  // the same row, one place up
  list.Remove(list.GetItemAt(0));
  EXPECT_EQ(list.GetCurSel(), -1);
  list.SelectItem(0);
  list.RemoveAll();
  EXPECT_EQ(list.GetCurSel(), -1);
  EXPECT_EQ(list.GetCount(), 0u);
}

TEST_F(ListBoxTest, HandlerMayEmptyTheListDuringASelection) {
  Fill(3);
  list.SelectItem(0);
  Row(0)->AttachEvent(kEventUnSelect, [this](EventArgs*) {
    list.RemoveAll();
    return true;
  });
  EXPECT_FALSE(list.SelectItem(2));  // the row to select went with the others
  EXPECT_EQ(list.GetCount(), 0u);
}

}  // namespace
