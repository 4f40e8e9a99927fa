#pragma once
// A tree view: nodes with children that expand and collapse, one row each, indented by level.
//
// Skin elements:
//   <TreeView indent="16" rowheight="24" expandercolor="#FF606060" vscrollbar="true">
//     <TreeNode text="Friends" expanded="true">
//       <TreeNode text="Alice"/>
//     </TreeNode>
//   </TreeView>
// TreeView takes "indent" (pixels per level, default 16; the expander is one indent wide),
// "rowheight" (every row's height, default 24), "expandercolor" (the expander's triangle),
// then a box's names ("padding", "vscrollbar" and the scroll bar's looks, ...) and the
// control's. TreeNode takes "expanded" (bool, default false), then a list row's names: the
// label's ("text", "textpadding", "font", "normaltextcolor", ...; the text starts after the
// expander), the check box's selected looks ("selectednormalcolor", "selectedtextcolor", ...)
// and the control's ("normalcolor", "hotcolor", ...). A TreeNode holds only TreeNodes, nested to
// any depth; a node's own "height" is not used: rows are "rowheight" high.
//
// Rows are laid out and painted only while they are in view: the view keeps the shown nodes in
// a flat list (rebuilt when a node is expanded, collapsed, added, removed or hidden) and places
// the few rows its scroll position brings into view, so scrolling costs the same with 10 nodes
// or 10,000.
//
// Mouse: a press on the expander turns the node over; a click elsewhere selects it; a double
// click turns it over. Keyboard (the view takes the focus): Up, Down, Home, End, Page Up and
// Page Down move the selection; Right expands, or goes to the first child; Left collapses, or
// goes to the parent. Events from the view: kEventSelect (wParam the new row, lParam the one
// before or -1), kEventExpand and kEventCollapse (wParam the node's row); GetRowNode turns a
// row into its node.
#include <cstdint>
#include <string>
#include <vector>

#include "duilib/Core/Box.h"
#include "duilib/Core/CheckBox.h"
#include "duilib/Core/TreeRows.h"
#include "toolkit/export.h"

namespace mivo::duilib {

class TreeView;

class MIVO_COMMON_API TreeNode : public CheckBoxTemplate<Box> {
  using Base = CheckBoxTemplate<Box>;

 public:
  // The view forgets a node that goes.
  ~TreeNode() override;
  void SetAttribute(const std::wstring& name, const std::wstring& value) override;

  // The view the node is in (through its parent nodes), or null.
  TreeView* GetTreeView() const { return m_tree; }
  // The node above it, or null at the top level.
  TreeNode* GetParentNode() const;
  bool IsExpanded() const { return m_expanded; }
  // Expands or collapses; in a view with `triggerEvent` the view tells its handlers.
  void SetExpanded(bool expanded, bool triggerEvent = false);

  // In a view, selecting goes through the view, which deselects the node selected before.
  void Selected(bool selected, bool triggerEvent) override;
  // The view takes the focus for its nodes.
  bool IsFocusable() const override { return false; }
  void SetWindow(Window* window, Box* parent) override;
  // A row is laid out by its view; its child nodes are rows of their own.
  void SetPos(UiRect pos) override;
  void Arrange() override;
  Control* FindControlAt(UiPoint pt) override;
  void HandleEvent(EventArgs& args) override;

 protected:
  void PaintChildren(IRenderContext& render) override {}
  // A click selects the node, unless the press was on the expander.
  void Activate(UiPoint ptMouse) override;

 private:
  friend class TreeView;
  void SetSelectedState(bool selected, bool triggerEvent) { Base::Selected(selected, triggerEvent); }
  // Moves the text past the indent of `depth` and the expander.
  void SetRowDepth(int depth, int indent);
  void ApplyTextPadding();

  TreeView* m_tree = nullptr;
  bool m_expanded = false;
  bool m_pressOnExpander = false;
  UiRect m_textPadding;  // as the skin gives it; the indent comes on top
  int m_depth = -1;
  int m_indent = -1;
  int m_row = -1;  // its row when the view last built them
};

class MIVO_COMMON_API TreeView : public Box {
 public:
  TreeView();
  ~TreeView() override;

  void SetAttribute(const std::wstring& name, const std::wstring& value) override;
  int GetIndent() const { return m_indent; }
  int GetRowHeight() const { return m_rowHeight; }

  // The shown rows: every node whose ancestors are all expanded, in order.
  int GetRowCount();
  TreeNode* GetRowNode(int row);
  // The row of `node`, or -1 when it does not show (a collapsed ancestor, hidden, elsewhere).
  int GetNodeRow(const TreeNode* node);
  // The rows laid out now: those in view.
  treerows::Span GetRowsInView();

  TreeNode* GetSelectedNode() const;
  // Selects `node` (null: none) and deselects the one before; it is scrolled into view. With
  // `triggerEvent` both nodes tell their handlers, then the view sends kEventSelect.
  bool SelectNode(TreeNode* node, bool triggerEvent = true);
  // Expands or collapses `node` and sends kEventExpand or kEventCollapse. A collapse that hides
  // the selected node selects `node` instead.
  void SetNodeExpanded(TreeNode* node, bool expanded, bool triggerEvent = true);
  // Scrolls as little as it takes to show the row.
  void ShowRow(int row);

  bool IsFocusable() const override { return true; }
  bool WantsKey(uint32_t vk) const override;
  void HandleEvent(EventArgs& args) override;
  // Rows whose nodes came, went, expanded or collapsed are built again before the next layout.
  void Arrange() override;
  // The scroll bar, then the row under the point, then the view itself.
  Control* FindControlAt(UiPoint pt) override;

 protected:
  // The rows in view, each with its expander, then the scroll bar.
  void PaintChildren(IRenderContext& render) override;

 private:
  friend class TreeNode;
  friend class TreeLayout;

  // Builds the rows again when something changed since they were built.
  void EnsureRows();
  // Lays out the rows in view inside `rc` (the content, moved by the scroll position); the
  // rows that left the view lose their rectangle.
  UiSize ArrangeRows(const UiRect& rc);
  // The rows laid out are those of the current rows: lays out again when they are not.
  void EnsurePlaced();
  int ViewHeight();
  int RowsPerPage();
  void PaintExpander(IRenderContext& render, const TreeNode& node, const treerows::Row& row);
  // A node joined the view selected: the one selected before gives way, silently.
  void AdoptSelection(TreeNode* node);
  // `node` is being deleted: no row or selection points to it any longer.
  void Forget(TreeNode* node);

  int m_indent = 16;
  int m_rowHeight = 24;
  std::wstring m_expanderColor = L"#FF606060";
  std::vector<treerows::Row> m_rows;
  // The rows' nodes. While m_rowsDirty some may be null (deleted since), none is dangling.
  std::vector<TreeNode*> m_nodes;
  bool m_rowsDirty = true;
  uint64_t m_rowsBuilt = 0;         // counts the builds
  uint64_t m_placedBuilt = 0;       // the build whose rows m_inView laid out
  treerows::Span m_inView;          // the rows laid out, of the current build
  std::vector<TreeNode*> m_placed;  // the nodes laid out, whichever build they were rows of
  TreeNode* m_selected = nullptr;
};

}  // namespace mivo::duilib
