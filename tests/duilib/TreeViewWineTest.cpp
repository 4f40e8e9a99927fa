// A tree view in a real window under Wine: a press on an expander, the Down and Right keys,
// the wheel over 10,000 nodes, and what it looks like (tree_view.png beside this program).
#include <windows.h>

#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "WineWindowSupport.h"
#include "duilib/Core/GlobalManager.h"
#include "duilib/Core/TreeView.h"
#include "duilib/Core/Window.h"
#include "duilib/Core/WindowBuilder.h"

namespace {

using namespace mivo::duilib;
using wine_window::Picture;
using wine_window::ProgramFolder;
using wine_window::PumpUntil;

// Rows of 20 from the top, one level 16 pixels in; the window is 240 wide.
constexpr char kSkin[] = R"(<Window size="240,200">
  <Class name="node" value='normaltextcolor="#FF202020" selectednormalcolor="#FF3070D0" selectedtextcolor="white" hotcolor="#FFE8F0FF"'/>
  <VBox bkcolor="white">
    <TreeView name="tree" indent="16" rowheight="20" expandercolor="#FF000000" vscrollbar="true">
      <TreeNode class="node" text="Friends"><TreeNode class="node" text="Alice"/><TreeNode class="node" text="Bob"/></TreeNode>
      <TreeNode class="node" text="Family"><TreeNode class="node" text="Mother"/><TreeNode class="node" text="Sister">
        <TreeNode class="node" text="Niece"/></TreeNode></TreeNode>
      <TreeNode class="node" text="Work" expanded="true"><TreeNode class="node" text="Team"/></TreeNode>
    </TreeView>
  </VBox>
</Window>)";

class TreeViewUnderWine : public ::testing::Test {
 protected:
  static void SetUpTestSuite() { ASSERT_TRUE(wine_window::StartGdiplus()); }
  void Open(const std::string& skin) {
    Control* root = builder.CreateFromString(skin, nullptr, &window);
    ASSERT_NE(root, nullptr);
    window.AttachRoot(static_cast<Box*>(root));
    hwnd = window.Create(nullptr, L"tree", WS_POPUP, 0);
    ASSERT_NE(hwnd, nullptr);
    tree = dynamic_cast<TreeView*>(window.FindControl(L"tree"));
    ASSERT_NE(tree, nullptr);
  }
  void TearDown() override {
    if (hwnd) DestroyWindow(hwnd);
    GlobalManager::RemoveAllClasses();
  }
  void Click(int x, int y) {
    PostMessageW(hwnd, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(x, y));
    PostMessageW(hwnd, WM_LBUTTONUP, 0, MAKELPARAM(x, y));
  }
  void Key(UINT vk) { PostMessageW(hwnd, WM_KEYDOWN, vk, 1); }
  std::wstring TextOf(int row) {
    TreeNode* node = tree->GetRowNode(row);
    return node ? node->GetText() : L"-";
  }

  WindowBuilder builder;
  Window window;
  HWND hwnd = nullptr;
  TreeView* tree = nullptr;
};

// What the view tells its handlers, as "select 3 2" (the new row and the one before),
// "expand 0", "collapse 3".
TEST_F(TreeViewUnderWine, TheMouseAndTheKeysExpandAndSelectNodes) {
  Open(kSkin);
  std::string heard;
  for (auto [type, name] : {std::pair{kEventSelect, "select"}, {kEventExpand, "expand"}, {kEventCollapse, "collapse"}})
    tree->AttachEvent(type, [&heard, name = std::string(name)](EventArgs* args) {
      heard.append(name).append(" ").append(std::to_string(static_cast<int>(args->wParam)));
      if (args->Type == kEventSelect) heard.append(" ").append(std::to_string(args->lParam));
      heard.append(", ");
      return true;
    });
  ASSERT_EQ(tree->GetRowCount(), 4);  // Friends, Family, Work, Team
  Click(8, 10);                       // Friends' expander: opens it, selects nothing
  Click(100, 30);                     // Alice's text: selects her, and the view takes the focus
  Key(VK_DOWN);
  Key(VK_DOWN);   // Bob, then Family
  Key(VK_RIGHT);  // opens Family
  ASSERT_TRUE(PumpUntil([&] { return tree->GetRowCount() == 8; }));
  EXPECT_EQ(window.GetFocus(), tree);
  EXPECT_EQ(TextOf(tree->GetNodeRow(tree->GetSelectedNode())), L"Family");
  EXPECT_EQ(TextOf(5), L"Sister");

  const std::wstring png = ProgramFolder() + L"tree_view.png";
  ASSERT_TRUE(window.RenderToPng(png));
  {
    Picture picture(png);
    EXPECT_EQ(picture.At(230, 70), 0x3070D0u) << "Family's row, selected";
    EXPECT_EQ(picture.At(230, 50), 0xFFFFFFu) << "Bob's row";
    // Friends' open expander points down from x 3..11 at y 8 to its tip at (7,12); Sister's
    // closed one, a level in, points right from x 22 (y 105..113) to its tip at (26,109).
    for (auto [x, y] : {std::pair{3, 8}, {7, 12}, {22, 105}, {26, 109}})
      EXPECT_EQ(picture.At(x, y), 0u) << x << "," << y;
    for (auto [x, y] : {std::pair{3, 10}, {26, 111}}) EXPECT_EQ(picture.At(x, y), 0xFFFFFFu) << x << "," << y;
    EXPECT_LT(picture.DarkestIn(32, 40, 120, 60), 3 * 0x80) << "Bob's text, past the indent and the expander";
    EXPECT_EQ(picture.DarkestIn(4, 40, 31, 60), 3 * 0xFF) << "nothing in a leaf's indent";
  }
  Key(VK_LEFT);  // closes Family
  Key(VK_LEFT);  // a closed top-level node stays
  Key(VK_UP);
  Key(VK_LEFT);  // from Bob up to Friends
  ASSERT_TRUE(PumpUntil([&] { return tree->GetSelectedNode() == tree->GetRowNode(0); }));
  EXPECT_EQ(heard, "expand 0, select 1 -1, select 2 1, select 3 2, expand 3, collapse 3, select 2 3, select 0 2, ");
}

TEST_F(TreeViewUnderWine, TheWheelScrolls10000NodesAPageAndOnlyTheRowsInViewArePlaced) {
  // 180 pixels: nine rows of 20, and three wheel notches (three lines of 20 each) make a page.
  Open(R"(<Window size="240,180"><VBox><TreeView name="tree" rowheight="20" vscrollbar="true"/></VBox></Window>)");
  for (int group = 0; group < 100; ++group) {
    auto* top = new TreeNode();
    top->SetText(L"group " + std::to_wstring(group));
    for (int i = 0; i < 99; ++i) {
      auto* leaf = new TreeNode();
      leaf->SetText(L"node " + std::to_wstring(group) + L"." + std::to_wstring(i));
      top->Add(leaf);
    }
    top->SetExpanded(true);
    tree->Add(top);
  }
  ASSERT_EQ(tree->GetRowCount(), 10'000);
  Click(100, 30);  // row 1
  ASSERT_TRUE(PumpUntil([&] { return tree->GetSelectedNode() == tree->GetRowNode(1); }));

  POINT at{100, 90};
  ClientToScreen(hwnd, &at);
  PostMessageW(hwnd, WM_MOUSEWHEEL, MAKEWPARAM(0, static_cast<WORD>(-3 * WHEEL_DELTA)), MAKELPARAM(at.x, at.y));
  ASSERT_TRUE(PumpUntil([&] { return tree->GetScrollPos() == 180; }));
  EXPECT_EQ(tree->GetRowsInView(), (treerows::Span{9, 18}));
  EXPECT_EQ(tree->GetRowNode(9)->GetPos().top, 0);
  EXPECT_EQ(tree->GetRowNode(17)->GetPos().bottom, 180);
  EXPECT_EQ(tree->GetRowNode(1)->GetPos(), UiRect{}) << "the selected row scrolled out has no place";
  EXPECT_TRUE(tree->GetRowNode(1)->IsSelected());
  int placed = 0;
  for (int row = 0; row < tree->GetRowCount(); ++row) placed += tree->GetRowNode(row)->GetPos() != UiRect{};
  EXPECT_EQ(placed, 9);

  Key(VK_END);  // the last row, scrolled to the bottom
  ASSERT_TRUE(PumpUntil([&] { return tree->GetSelectedNode() == tree->GetRowNode(9'999); }));
  EXPECT_EQ(tree->GetRowsInView(), (treerows::Span{9'991, 10'000}));
  EXPECT_EQ(tree->GetScrollPos(), 10'000 * 20 - 180);
  EXPECT_EQ(tree->GetRowNode(9'999)->GetText(), L"node 99.98");
}

}  // namespace
