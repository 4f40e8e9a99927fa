#include "duilib/Core/Box.h"

#include <algorithm>
#include <type_traits>
#include <typeinfo>
#include <utility>
#include <vector>

#include "duilib/Core/AttributeValue.h"
#include "duilib/Core/Button.h"
#include "duilib/Core/CheckBox.h"
#include "duilib/Core/Label.h"
#include "duilib/Core/Option.h"
#include "duilib/Core/Window.h"
#include "duilib/Render/IRender.h"

namespace mivo::duilib {

Box::Box(Layout* layout) : m_layout(layout ? layout : new Layout()) {
  m_isBox = true;
  m_layout->SetOwner(this);
}

Box::~Box() {
  for (Control* child : m_items) delete child;
}

void Box::SetAttribute(const std::wstring& name, const std::wstring& value) {
  if (m_layout->SetAttribute(name, value)) return;
  if (name == L"mousechild")
    m_mouseChild = attr::ParseBool(value);
  else if (!SetScrollAttribute(name, value))
    Control::SetAttribute(name, value);
}

int Box::SubtreeHeight(const Box* top, int limit) {
  if (top->m_items.empty()) return 1;
  int height = 0;
  std::vector<std::pair<const Box*, int>> todo{{top, 1}};
  while (!todo.empty() && height <= limit) {
    auto [box, level] = todo.back();
    todo.pop_back();
    height = std::max(height, level);
    for (Control* child : box->m_items) {
      if (const Box* inner = AsBox(child))
        todo.emplace_back(inner, level + 1);
      else
        height = std::max(height, level + 1);
    }
  }
  return height;
}

namespace {

// Classes that keep PlaceHolder's IsVisible, EstimateSize, SetPos and Invalidate: for their
// objects a layout may do what those would do without calling them. Adding an override of
// one of them to a class listed here stops the build.
template <class T>
constexpr bool kKeepsPlaceHolderLayout = std::is_same_v<decltype(&T::IsVisible), bool (PlaceHolder::*)() const>&&
    std::is_same_v<decltype(&T::EstimateSize), UiSize (PlaceHolder::*)(UiSize)>&&
        std::is_same_v<decltype(&T::SetPos), void (PlaceHolder::*)(UiRect)>&&
            std::is_same_v<decltype(&T::Invalidate), void (PlaceHolder::*)()>;

template <class... T>
bool IsOneOf(const std::type_info& type) {
  static_assert((kKeepsPlaceHolderLayout<T> && ...), "a class listed overrides part of the layout's interface");
  return ((type == typeid(T)) || ...);
}

bool KeepsPlaceHolderLayout(const Control& control) {
  return IsOneOf<Control, Label, Button, CheckBox, Option>(typeid(control));
}

}  // namespace

bool Box::Add(Control* child) { return AddAt(child, m_items.size()); }

bool Box::AddAt(Control* child, size_t index) {
  if (!child || child->GetParent() || index > m_items.size()) return false;
  // Only a box can be this one or one of its ancestors, and only a box adds more than one
  // level: a plain control costs one step per level above this box.
  Box* childBox = AsBox(child);
  int depth = 0;  // controls from here up to the root
  for (Box* up = this; up; up = up->GetParent(), ++depth)
    if (up == childBox) return false;
  const int height = childBox ? SubtreeHeight(childBox, kMaxTreeDepth) : 1;
  if (depth + height > kMaxTreeDepth) return false;
  m_items.insert(m_items.begin() + static_cast<std::ptrdiff_t>(index), child);
  m_records.insert(m_records.begin() + static_cast<std::ptrdiff_t>(index), child->m_geo);
  child->m_geo->Set(LayoutRecord::kPlain, KeepsPlaceHolderLayout(*child));
  child->SetWindow(GetWindow(), this);
  m_layout->ChildrenChanged();
  // A subtree that still waits to be laid out must be found from above.
  if (childBox && (childBox->m_needsArrange || childBox->m_pendingBelow)) MarkPendingBelow();
  Arrange();
  return true;
}

bool Box::Remove(Control* child) {
  auto found = std::find(m_items.begin(), m_items.end(), child);
  if (found == m_items.end()) return false;
  m_records.erase(m_records.begin() + (found - m_items.begin()));
  m_items.erase(found);
  m_layout->ChildrenChanged();
  delete child;
  Arrange();
  return true;
}

void Box::RemoveAll() {
  std::vector<Control*> items;
  items.swap(m_items);
  m_records.clear();
  m_layout->ChildrenChanged();
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
  ArrangeNow();
  if (!IsVisible() || !m_geo->pos.Contains(pt)) return nullptr;
  if (Control* bar = ScrollBarAt(pt)) return bar;
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
  m_needsArrange = false;
  const UiRect& padding = m_layout->GetPadding();
  UiRect content{pos.left + padding.left, pos.top + padding.top, pos.right - padding.right,
                 pos.bottom - padding.bottom};
  if (m_vscroll && !m_vscrollOff) content = ScrolledContent(content);
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
  if ((GetFixedWidth() == DUI_LENGTH_AUTO || GetFixedHeight() == DUI_LENGTH_AUTO) && GetParent()) {
    ArrangeAncestor();
    return;
  }
  if (!m_needsArrange) {
    m_needsArrange = true;
    if (Box* parent = GetParent()) parent->MarkPendingBelow();
  }
  if (Window* window = GetWindow()) window->ScheduleArrange();
}

void Box::MarkPendingBelow() {
  // Marks stop at the first box already marked: the boxes above it are marked too.
  for (Box* up = this; up && !up->m_pendingBelow; up = up->GetParent()) up->m_pendingBelow = true;
}

void Box::ArrangeNow() {
  ArrangeWaitingAbove(this);
  ArrangeWaitingBelow();
}

void Box::ArrangeTopmostAbove(const PlaceHolder* control) {
  for (;;) {
    Box* topmost = nullptr;
    for (Box* up = control->m_parent; up; up = up->m_parent)
      if (up->m_needsArrange) topmost = up;
    if (!topmost) return;
    // SetPos clears the mark; a box its parent skipped (hidden, or refused by its placement
    // predicate) is laid out in the rectangle it has, as when it was marked.
    topmost->m_needsArrange = false;
    topmost->SetPos(topmost->m_geo->pos);
  }
}

void Box::ArrangeWaitingBelow() {
  if (m_needsArrange) {
    m_needsArrange = false;
    SetPos(m_geo->pos);
  }
  if (!m_pendingBelow) return;
  m_pendingBelow = false;
  for (Control* child : m_items) {
    Box* box = AsBox(child);
    if (box && (box->m_needsArrange || box->m_pendingBelow)) box->ArrangeWaitingBelow();
  }
}

void Box::Paint(IRenderContext& render) {
  ArrangeNow();
  Control::Paint(render);
}

void Box::PaintChildren(IRenderContext& render) {
  // Children stay inside the rounded corners.
  if (IsRounded()) render.PushRoundClip(GetPos(), m_borderRound);
  for (bool floating : {false, true}) {
    for (Control* child : m_items) {
      if (!child->IsVisible() || child->IsFloat() != floating) continue;
      if (render.PushClip(child->m_geo->pos)) child->PaintAnimated(render);
      render.PopClip();
    }
  }
  PaintVScrollBar(render);
  if (IsRounded()) render.PopClip();
}

}  // namespace mivo::duilib
