#include "duilib/Core/TreeView.h"

#include <algorithm>
#include <climits>
#include <memory>

#include "duilib/Core/AttributeValue.h"
#include "duilib/Core/GlobalManager.h"
#include "duilib/Render/IRender.h"

namespace mivo::duilib {

// The view's layout: the rows in view, at the view's row height, nothing else.
class TreeLayout : public Layout {
 public:
  UiSize ArrangeChild(const std::vector<Control*>&, UiRect rc) override { return View().ArrangeRows(rc); }
  UiSize AjustSizeByChild(const std::vector<Control*>&, UiSize available) override {
    TreeView& view = View();
    view.EnsureRows();
    const int64_t height =
        static_cast<int64_t>(view.m_rows.size()) * view.m_rowHeight + m_padding.top + m_padding.bottom;
    return UiSize{available.cx, static_cast<int>(std::min<int64_t>(height, INT_MAX / 2))};
  }

 private:
  TreeView& View() const { return *static_cast<TreeView*>(m_owner); }
};

namespace {

// The view's nodes as the row arithmetic walks them; null stands for the view itself.
struct NodeTree {
  TreeView* view;
  Box* BoxOf(TreeNode* node) const { return node ? static_cast<Box*>(node) : view; }
  int Count(TreeNode* node) const { return static_cast<int>(BoxOf(node)->GetCount()); }
  TreeNode* Child(TreeNode* node, int i) const {
    auto* child = dynamic_cast<TreeNode*>(BoxOf(node)->GetItemAt(static_cast<size_t>(i)));
    return child && child->IsVisible() ? child : nullptr;
  }
  bool Expanded(TreeNode* node) const { return node->IsExpanded(); }
};

}  // namespace

// ---- TreeNode

void TreeNode::SetAttribute(const std::wstring& name, const std::wstring& value) {
  if (name == L"expanded") {
    SetExpanded(attr::ParseBool(value));
  } else if (name == L"textpadding") {
    m_textPadding = attr::ParseRect(value);
    ApplyTextPadding();
  } else {
    Base::SetAttribute(name, value);
  }
}

TreeNode::~TreeNode() {
  if (m_tree) m_tree->Forget(this);
}

TreeNode* TreeNode::GetParentNode() const { return dynamic_cast<TreeNode*>(GetParent()); }

void TreeNode::SetExpanded(bool expanded, bool triggerEvent) {
  if (m_tree)
    m_tree->SetNodeExpanded(this, expanded, triggerEvent);
  else
    m_expanded = expanded;
}

void TreeNode::Selected(bool selected, bool triggerEvent) {
  if (m_tree && selected)
    m_tree->SelectNode(this, triggerEvent);
  else if (m_tree && m_tree->GetSelectedNode() == this)
    m_tree->SelectNode(nullptr, triggerEvent);
  else
    Base::Selected(selected, triggerEvent);
}

void TreeNode::SetWindow(Window* window, Box* parent) {
  if (auto* view = dynamic_cast<TreeView*>(parent))
    m_tree = view;
  else if (auto* up = dynamic_cast<TreeNode*>(parent))
    m_tree = up->m_tree;
  else
    m_tree = nullptr;
  Base::SetWindow(window, parent);  // the child nodes learn the view from this one
  if (m_tree && IsSelected()) m_tree->AdoptSelection(this);
}

void TreeNode::SetPos(UiRect pos) { Control::SetPos(pos); }

void TreeNode::Arrange() {
  if (m_tree) m_tree->Arrange();
}

Control* TreeNode::FindControlAt(UiPoint pt) { return Control::FindControlAt(pt); }

void TreeNode::HandleEvent(EventArgs& args) {
  const bool press = args.Type == kEventMouseButtonDown || args.Type == kEventMouseDoubleClick;
  if (press && m_tree && IsEnabled() && IsMouseEnabled()) {
    const int row = m_tree->GetNodeRow(this);
    const bool hasChildren = row >= 0 && m_tree->m_rows[row].hasChildren;
    m_pressOnExpander = hasChildren && treerows::OnExpander(args.ptMouse.x, GetPos().left, m_depth, m_indent);
    if (m_pressOnExpander || (hasChildren && args.Type == kEventMouseDoubleClick)) {
      std::weak_ptr<nbase::WeakFlag> alive = GetWeakFlag();
      m_tree->SetNodeExpanded(this, !m_expanded, true);
      if (alive.expired()) return;
    }
  }
  Base::HandleEvent(args);
}

void TreeNode::Activate(UiPoint ptMouse) {
  if (m_pressOnExpander) {
    m_pressOnExpander = false;
    return;
  }
  std::weak_ptr<nbase::WeakFlag> alive = GetWeakFlag();
  Selected(true, true);
  if (!alive.expired()) ButtonTemplate<Box>::Activate(ptMouse);
}

void TreeNode::SetRowDepth(int depth, int indent) {
  if (depth == m_depth && indent == m_indent) return;
  m_depth = depth;
  m_indent = indent;
  ApplyTextPadding();
}

void TreeNode::ApplyTextPadding() {
  const int shift = m_depth >= 0 ? (m_depth + 1) * m_indent : 0;
  SetTextPadding(UiRect{m_textPadding.left + shift, m_textPadding.top, m_textPadding.right, m_textPadding.bottom});
}

// ---- TreeView

TreeView::TreeView() : Box(new TreeLayout()) {}

TreeView::~TreeView() {
  // The nodes outlive this part of the view (the box deletes them): they must not call back.
  std::vector<Box*> open{this};
  while (!open.empty()) {
    Box* box = open.back();
    open.pop_back();
    for (Control* item : box->GetItems())
      if (auto* node = dynamic_cast<TreeNode*>(item)) {
        node->m_tree = nullptr;
        open.push_back(node);
      }
  }
}

void TreeView::SetAttribute(const std::wstring& name, const std::wstring& value) {
  if (name == L"indent") {
    m_indent = std::max(attr::ParseInt(value), 0);
    Arrange();
  } else if (name == L"rowheight") {
    m_rowHeight = std::max(attr::ParseInt(value), 1);
    Arrange();
  } else if (name == L"expandercolor") {
    m_expanderColor = value;
    Invalidate();
  } else {
    Box::SetAttribute(name, value);
  }
}

void TreeView::EnsureRows() {
  if (!m_rowsDirty) return;
  m_inView = treerows::Span{};
  treerows::Flatten<TreeNode*>(nullptr, NodeTree{this}, m_rows, m_nodes);
  for (size_t i = 0; i < m_nodes.size(); ++i) m_nodes[i]->m_row = static_cast<int>(i);
  ++m_rowsBuilt;
  m_rowsDirty = false;
}

int TreeView::GetRowCount() {
  EnsureRows();
  return static_cast<int>(m_rows.size());
}

TreeNode* TreeView::GetRowNode(int row) {
  EnsureRows();
  return row >= 0 && row < static_cast<int>(m_nodes.size()) ? m_nodes[row] : nullptr;
}

int TreeView::GetNodeRow(const TreeNode* node) {
  if (!node || node->m_tree != this) return -1;
  EnsureRows();
  const int row = node->m_row;
  return row >= 0 && row < static_cast<int>(m_nodes.size()) && m_nodes[row] == node ? row : -1;
}

treerows::Span TreeView::GetRowsInView() {
  EnsurePlaced();
  return m_inView;
}

int TreeView::ViewHeight() {
  const UiRect& pos = GetPos();
  const UiRect& padding = GetLayout()->GetPadding();
  return std::max(pos.GetHeight() - padding.top - padding.bottom, 0);
}

int TreeView::RowsPerPage() { return std::max(ViewHeight() / m_rowHeight, 1); }

UiSize TreeView::ArrangeRows(const UiRect& rc) {
  EnsureRows();
  const int count = static_cast<int>(m_rows.size());
  const int viewTop = GetPos().top + GetLayout()->GetPadding().top;
  m_inView = treerows::RowsInView(viewTop - rc.top, ViewHeight(), m_rowHeight, count);
  m_placedBuilt = m_rowsBuilt;
  // Rows that left the view, or the rows, keep no place: nothing finds or repaints them there.
  for (TreeNode* node : m_placed) {
    const int row = GetNodeRow(node);
    if (row < m_inView.first || row >= m_inView.last) node->SetPos(UiRect{});
  }
  m_placed.assign(m_nodes.begin() + m_inView.first, m_nodes.begin() + m_inView.last);
  for (int row = m_inView.first; row < m_inView.last; ++row) {
    TreeNode* node = m_nodes[row];
    node->SetRowDepth(m_rows[row].depth, m_indent);
    const int top = rc.top + row * m_rowHeight;
    node->SetPos(UiRect{rc.left, top, rc.right, top + m_rowHeight});
  }
  return UiSize{rc.GetWidth(), count * m_rowHeight};
}

void TreeView::EnsurePlaced() {
  ArrangeNow();
  if (m_rowsDirty || m_placedBuilt != m_rowsBuilt) SetPos(GetPos());
}

void TreeView::Arrange() {
  m_rowsDirty = true;
  Box::Arrange();
}

TreeNode* TreeView::GetSelectedNode() const { return m_selected; }

void TreeView::AdoptSelection(TreeNode* node) {
  if (m_selected && m_selected != node) m_selected->SetSelectedState(false, false);
  m_selected = node;
}

void TreeView::Forget(TreeNode* node) {
  const int row = node->m_row;
  if (row >= 0 && row < static_cast<int>(m_nodes.size()) && m_nodes[row] == node) m_nodes[row] = nullptr;
  if (m_selected == node) m_selected = nullptr;
  m_placed.erase(std::remove(m_placed.begin(), m_placed.end(), node), m_placed.end());
  m_rowsDirty = true;
}

bool TreeView::SelectNode(TreeNode* node, bool triggerEvent) {
  if (node && node->m_tree != this) return false;
  // A node inside collapsed ones is shown first.
  for (TreeNode* up = node ? node->GetParentNode() : nullptr; up; up = up->GetParentNode())
    if (!up->m_expanded) SetNodeExpanded(up, true, false);
  TreeNode* previous = GetSelectedNode();
  if (previous == node) {
    ShowRow(GetNodeRow(node));
    return true;
  }
  const int previousRow = GetNodeRow(previous);
  // The nodes' handlers run in between and may change the tree: go on only while it lives.
  std::weak_ptr<nbase::WeakFlag> viewAlive = GetWeakFlag();
  std::weak_ptr<nbase::WeakFlag> nodeAlive = node ? node->GetWeakFlag() : std::weak_ptr<nbase::WeakFlag>();
  m_selected = node;
  if (previous) previous->SetSelectedState(false, triggerEvent);
  if (viewAlive.expired()) return false;
  if (!node) return true;
  if (nodeAlive.expired()) return false;
  node->SetSelectedState(true, triggerEvent);
  if (viewAlive.expired() || nodeAlive.expired()) return true;
  const int row = GetNodeRow(node);
  ShowRow(row);
  if (triggerEvent) SendEvent(kEventSelect, static_cast<uint64_t>(row), previousRow);
  return true;
}

void TreeView::SetNodeExpanded(TreeNode* node, bool expanded, bool triggerEvent) {
  if (!node || node->m_tree != this || node->m_expanded == expanded) return;
  node->m_expanded = expanded;
  Arrange();
  Invalidate();
  std::weak_ptr<nbase::WeakFlag> viewAlive = GetWeakFlag(), nodeAlive = node->GetWeakFlag();
  if (!expanded) {
    // A selected node inside hides with it: the selection moves up to the node.
    TreeNode* selected = GetSelectedNode();
    for (TreeNode* up = selected ? selected->GetParentNode() : nullptr; up; up = up->GetParentNode())
      if (up == node) {
        SelectNode(node, triggerEvent);
        break;
      }
    if (viewAlive.expired() || nodeAlive.expired()) return;
  }
  if (triggerEvent) SendEvent(expanded ? kEventExpand : kEventCollapse, static_cast<uint64_t>(GetNodeRow(node)));
}

void TreeView::ShowRow(int row) {
  if (row < 0) return;
  ArrangeNow();
  if (!HasVScrollBar()) return;
  const int view = ViewHeight();
  const int top = row * m_rowHeight, bottom = top + m_rowHeight, pos = GetScrollPos();
  if (top < pos || m_rowHeight > view)
    ScrollTo(top);
  else if (bottom > pos + view)
    ScrollTo(bottom - view);
}

bool TreeView::WantsKey(uint32_t vk) const { return IsRowNavigationKey(vk) || vk == kVkLeft || vk == kVkRight; }

void TreeView::HandleEvent(EventArgs& args) {
  const auto vk = static_cast<uint32_t>(args.wParam);
  if (args.Type == kEventKeyDown && WantsKey(vk) && IsEnabled() && IsKeyboardEnabled()) {
    EnsureRows();
    const treerows::Step step = treerows::KeyStep(vk, m_rows, GetNodeRow(GetSelectedNode()), RowsPerPage());
    std::weak_ptr<nbase::WeakFlag> alive = GetWeakFlag();
    if (step.action == treerows::Action::kSelect)
      SelectNode(m_nodes[step.row], true);
    else if (step.action != treerows::Action::kNone)
      SetNodeExpanded(m_nodes[step.row], step.action == treerows::Action::kExpand, true);
    if (alive.expired()) return;
  }
  Box::HandleEvent(args);
}

Control* TreeView::FindControlAt(UiPoint pt) {
  EnsurePlaced();
  const UiRect& pos = GetPos();
  if (!IsVisible() || !pos.Contains(pt)) return nullptr;
  const UiRect& padding = GetLayout()->GetPadding();
  const UiRect view{pos.left + padding.left, pos.top + padding.top, pos.right - padding.right,
                    pos.bottom - padding.bottom};
  if (!GetVScrollBarRect().Contains(pt) && view.Contains(pt) && IsMouseChildEnabled()) {
    for (int row = m_inView.first; row < m_inView.last; ++row)
      if (Control* found = m_nodes[row]->FindControlAt(pt)) return found;
  }
  return HitTest(pt) ? this : nullptr;
}

void TreeView::PaintChildren(IRenderContext& render) {
  EnsurePlaced();
  const UiRect& pos = GetPos();
  const UiRect& padding = GetLayout()->GetPadding();
  // Rows stay inside the padding; a row cut by the view's edge shows its part.
  const UiRect view{pos.left + padding.left, pos.top + padding.top, pos.right - padding.right,
                    pos.bottom - padding.bottom};
  if (render.PushClip(view)) {
    for (int row = m_inView.first; row < m_inView.last; ++row) {
      TreeNode* node = m_nodes[row];
      if (render.PushClip(node->GetPos())) {
        node->PaintAnimated(render);
        if (m_rows[row].hasChildren) PaintExpander(render, *node, m_rows[row]);
      }
      render.PopClip();
    }
  }
  render.PopClip();
  PaintVScrollBar(render);
}

void TreeView::PaintExpander(IRenderContext& render, const TreeNode& node, const treerows::Row& row) {
  const UiRect& rc = node.GetPos();
  const int left = rc.left + row.depth * m_indent;
  const int size = std::min(m_indent, rc.GetHeight()) / 3;  // the triangle's short side
  if (size < 2) return;
  const uint32_t argb = GlobalManager::ResolveColor(m_expanderColor);
  const int cx = left + m_indent / 2, cy = rc.top + rc.GetHeight() / 2;
  // Collapsed: pointing right, a column of pixels at a time; expanded: pointing down, by rows.
  for (int step = 0; step < size; ++step) {
    const int half = size - 1 - step;
    if (row.expanded) {
      const int y = cy - size / 2 + step;
      render.FillRect(UiRect{cx - half - 1, y, cx + half, y + 1}, argb);
    } else {
      const int x = cx - size / 2 + step;
      render.FillRect(UiRect{x, cy - half - 1, x + 1, cy + half}, argb);
    }
  }
}

}  // namespace mivo::duilib
