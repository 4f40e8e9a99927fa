#include "duilib/Core/Box.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "duilib/Core/AttributeValue.h"
#include "duilib/Render/IRender.h"

namespace mivo::duilib {

Box::Box(Layout* layout) : m_layout(layout ? layout : new Layout()) { m_layout->SetOwner(this); }

Box::~Box() {
  for (Control* child : m_items) delete child;
}

void Box::SetAttribute(const std::wstring& name, const std::wstring& value) {
  if (m_layout->SetAttribute(name, value)) return;
  if (name == L"mousechild")
    m_mouseChild = attr::ParseBool(value);
  else
    Control::SetAttribute(name, value);
}

namespace {

// How many controls the subtree of `top` holds on its longest path, counted without recursion;
// stops counting past `limit`.
int SubtreeHeight(Control* top, int limit) {
  auto* box = dynamic_cast<Box*>(top);
  if (!box || box->GetItems().empty()) return 1;
  int height = 0;
  std::vector<std::pair<Control*, int>> todo{{top, 1}};
  while (!todo.empty() && height <= limit) {
    auto [control, level] = todo.back();
    todo.pop_back();
    height = std::max(height, level);
    if (auto* box = dynamic_cast<Box*>(control))
      for (Control* child : box->GetItems()) todo.emplace_back(child, level + 1);
  }
  return height;
}

}  // namespace

bool Box::Add(Control* child) { return AddAt(child, m_items.size()); }

bool Box::AddAt(Control* child, size_t index) {
  if (!child || child->GetParent() || index > m_items.size()) return false;
  int depth = 0;  // controls from here up to the root
  for (Control* up = this; up; up = up->GetParent(), ++depth)
    if (up == child) return false;
  if (depth + SubtreeHeight(child, kMaxTreeDepth) > kMaxTreeDepth) return false;
  m_items.insert(m_items.begin() + static_cast<std::ptrdiff_t>(index), child);
  child->SetWindow(GetWindow(), this);
  Arrange();
  return true;
}

bool Box::Remove(Control* child) {
  auto found = std::find(m_items.begin(), m_items.end(), child);
  if (found == m_items.end()) return false;
  m_items.erase(found);
  delete child;
  Arrange();
  return true;
}

void Box::RemoveAll() {
  std::vector<Control*> items;
  items.swap(m_items);
  for (Control* child : items) delete child;
  Arrange();
}

Control* Box::FindSubControl(const std::wstring& name) {
  if (GetName() == name) return this;
  for (Control* child : m_items) {
    if (child->GetName() == name) return child;
    if (auto* box = dynamic_cast<Box*>(child)) {
      if (Control* found = box->FindSubControl(name)) return found;
    }
  }
  return nullptr;
}

Control* Box::FindControlAt(UiPoint pt) {
  if (!IsVisible() || !GetPos().Contains(pt)) return nullptr;
  if (m_mouseChild) {
    for (bool floating : {true, false}) {
      for (auto it = m_items.rbegin(); it != m_items.rend(); ++it) {
        if ((*it)->IsFloat() != floating) continue;
        if (Control* found = (*it)->FindControlAt(pt)) return found;
      }
    }
  }
  return HitTest(pt) ? this : nullptr;
}

void Box::SetWindow(Window* window, Box* parent) {
  Control::SetWindow(window, parent);
  for (Control* child : m_items) child->SetWindow(window, this);
}

void Box::SetPos(UiRect pos) {
  Control::SetPos(pos);
  const UiRect& padding = m_layout->GetPadding();
  UiRect content{pos.left + padding.left, pos.top + padding.top, pos.right - padding.right,
                 pos.bottom - padding.bottom};
  m_layout->ArrangeChild(m_items, content);
}

UiSize Box::EstimateSize(UiSize available) {
  UiSize size = Control::EstimateSize(available);
  if (size.cx != DUI_LENGTH_AUTO && size.cy != DUI_LENGTH_AUTO) return size;
  UiSize needed = m_layout->AjustSizeByChild(m_items, available);
  if (size.cx == DUI_LENGTH_AUTO) size.cx = needed.cx;
  if (size.cy == DUI_LENGTH_AUTO) size.cy = needed.cy;
  return size;
}

void Box::Arrange() {
  // A box sized by its children may change size with them: then its own box decides.
  if ((GetFixedWidth() == DUI_LENGTH_AUTO || GetFixedHeight() == DUI_LENGTH_AUTO) && GetParent())
    ArrangeAncestor();
  else
    SetPos(GetPos());
}

void Box::Paint(IRenderContext& render) {
  Control::Paint(render);
  for (bool floating : {false, true}) {
    for (Control* child : m_items) {
      if (!child->IsVisible() || child->IsFloat() != floating) continue;
      if (render.PushClip(child->GetPos())) child->Paint(render);
      render.PopClip();
    }
  }
}

}  // namespace mivo::duilib
