// Window: the keyboard as the controls hear it. The focus is held with its control's lifetime
// flag, like the hot and pushed controls, since a handler may delete any control.
#include <algorithm>
#include <vector>

#include "duilib/Core/Box.h"
#include "duilib/Core/Control.h"
#include "duilib/Core/GlobalManager.h"
#include "duilib/Core/Window.h"
#include "duilib/Render/IRender.h"

namespace mivo::duilib {

namespace {

void Deliver(Control* control, EventType type, uint64_t wParam = 0) {
  EventArgs args;
  args.Type = type;
  args.wParam = wParam;
  control->HandleEvent(args);
}

// The tree in skin order, depth first, a box before its children. Hidden boxes keep their
// children out: nothing in them can take the focus.
std::vector<Control*> SkinOrder(Box* root) {
  std::vector<Control*> order;
  if (!root) return order;
  std::vector<Control*> todo{root};
  while (!todo.empty()) {
    Control* control = todo.back();
    todo.pop_back();
    order.push_back(control);
    auto* box = dynamic_cast<Box*>(control);
    if (!box || !box->IsVisible()) continue;
    const std::vector<Control*>& items = box->GetItems();
    for (auto it = items.rbegin(); it != items.rend(); ++it) todo.push_back(*it);
  }
  return order;
}

// The focus mark: a line of one pixel this far inside the control's edge.
constexpr int kFocusMarkInset = 2;
constexpr uint32_t kDefaultFocusColor = 0xFF1E64C8;

}  // namespace

bool Window::SetFocus(Control* control) {
  if (control && (control->GetWindow() != this || !control->CanTakeFocus())) return false;
  Control* old = Live(m_focus);
  if (old == control) return true;
  std::weak_ptr<nbase::WeakFlag> alive = GetWeakFlag();
  const Tracked next = Track(control);
  m_focus = Tracked{};
  if (old) {
    old->Invalidate();
    Deliver(old, kEventKillFocus);
    if (alive.expired()) return false;
  }
  // The kill-focus handler may have removed the control that takes the focus.
  Control* taking = Live(next);
  if (!taking) return false;
  m_focus = next;
  taking->Invalidate();
  Deliver(taking, kEventSetFocus);
  return true;
}

Control* Window::NextFocusable(const Control* from, bool forward) const {
  const std::vector<Control*> order = SkinOrder(m_root);
  const int count = static_cast<int>(order.size());
  if (count == 0) return nullptr;
  const auto found = std::find(order.begin(), order.end(), from);
  // Without a starting point the walk starts just outside the list, so its first step is
  // the first control (or the last going back).
  int at = found == order.end() ? (forward ? -1 : count) : static_cast<int>(found - order.begin());
  for (int step = 0; step < count; ++step) {
    at = forward ? (at + 1) % count : (at - 1 + count) % count;
    if (order[at] != from && order[at]->CanTakeFocus()) return order[at];
  }
  return from && from->CanTakeFocus() ? const_cast<Control*>(from) : nullptr;
}

void Window::HandleKeyDown(uint32_t vk, bool shift) {
  Control* focus = Live(m_focus);
  if (vk == kVkTab) {
    if (Control* next = NextFocusable(focus, !shift)) SetFocus(next);
    return;
  }
  if (focus && focus->CanTakeFocus() && focus->WantsKey(vk)) {
    Deliver(focus, kEventKeyDown, vk);
    return;
  }
  const wchar_t* named = vk == kVkReturn ? L"defaultbutton" : vk == kVkEscape ? L"cancelbutton" : nullptr;
  if (!named) return;
  Control* button = FindControl(GetAttribute(named));
  // The button is pressed as if it had the focus: Enter presses a button, and only one that
  // is shown and enabled.
  if (button && button->IsVisible() && button->WantsKey(kVkReturn)) Deliver(button, kEventKeyDown, kVkReturn);
}

void Window::PaintFocusMark(IRenderContext& render) {
  Control* focus = Live(m_focus);
  if (!focus || !focus->CanTakeFocus()) return;
  const UiRect& pos = focus->GetPos();
  // Within every box above it, as its own painting is.
  UiRect clip = pos;
  for (const Box* up = focus->GetParent(); up; up = up->GetParent()) {
    const UiRect& box = up->GetPos();
    clip = UiRect{std::max(clip.left, box.left), std::max(clip.top, box.top), std::min(clip.right, box.right),
                  std::min(clip.bottom, box.bottom)};
  }
  const std::wstring named = GetAttribute(L"focuscolor");
  const uint32_t argb = named.empty() ? kDefaultFocusColor : GlobalManager::ResolveColor(named);
  const int inset = GlobalManager::IsDpiScaleEnabled() ? GlobalManager::ScaleByDpi(kFocusMarkInset) : kFocusMarkInset;
  const int line = GlobalManager::IsDpiScaleEnabled() ? std::max(1, GlobalManager::ScaleByDpi(1)) : 1;
  const UiRect mark{pos.left + inset, pos.top + inset, pos.right - inset, pos.bottom - inset};
  if (render.PushClip(clip) && mark.GetWidth() > 2 * line && mark.GetHeight() > 2 * line) {
    render.FillRect(UiRect{mark.left, mark.top, mark.right, mark.top + line}, argb);
    render.FillRect(UiRect{mark.left, mark.bottom - line, mark.right, mark.bottom}, argb);
    render.FillRect(UiRect{mark.left, mark.top + line, mark.left + line, mark.bottom - line}, argb);
    render.FillRect(UiRect{mark.right - line, mark.top + line, mark.right, mark.bottom - line}, argb);
  }
  render.PopClip();
}

}  // namespace mivo::duilib
