// Control: attached handlers, the reaction to input and hit testing.
#include <memory>

#include "duilib/Core/Box.h"
#include "duilib/Core/Control.h"

namespace mivo::duilib {

namespace {

bool IsMouseEvent(EventType type) {
  switch (type) {
    case kEventMouseEnter:
    case kEventMouseLeave:
    case kEventMouseMove:
    case kEventMouseButtonDown:
    case kEventMouseButtonUp:
    case kEventMouseDoubleClick:
      return true;
    default:
      return false;
  }
}

bool IsKeyEvent(EventType type) { return type == kEventKeyDown || type == kEventKeyUp || type == kEventChar; }

}  // namespace

void Control::AttachEvent(EventType type, EventCallback callback) {
  if (callback) m_eventCallbacks[type].push_back(std::move(callback));
}

void Control::DetachEvent(EventType type) { m_eventCallbacks.erase(type); }

bool Control::SendEvent(EventType type, uint64_t wParam, int64_t lParam) {
  EventArgs args;
  args.Type = type;
  args.wParam = wParam;
  args.lParam = lParam;
  return SendEvent(args);
}

bool Control::SendEvent(EventArgs& args) {
  if (!args.pSender) args.pSender = this;
  auto found = m_eventCallbacks.find(args.Type);
  if (found == m_eventCallbacks.end()) return true;
  // A handler may attach or detach handlers, or delete this control (a click that closes its
  // form): run a copy, and stop once the control is gone.
  const std::vector<EventCallback> callbacks = found->second;
  std::weak_ptr<nbase::WeakFlag> alive = GetWeakFlag();
  for (const EventCallback& callback : callbacks) {
    if (!callback(&args)) return false;
    if (alive.expired()) return false;
  }
  return true;
}

void Control::HandleEvent(EventArgs& args) {
  if (args.Type == kEventKillFocus) m_focused = false;  // whatever else: the focus has gone
  if (!m_enabled) return;
  if (IsMouseEvent(args.Type) && !m_mouseEnabled) return;
  if (IsKeyEvent(args.Type) && !m_keyboardEnabled) return;
  switch (args.Type) {
    case kEventMouseEnter:
      // Back over a control whose button is still down: it looks pushed again.
      SetState(m_pressed ? kControlStatePushed : kControlStateHot);
      break;
    case kEventMouseLeave:
      SetState(kControlStateNormal);
      break;
    // Windows turns the second button-down of a quick pair into a double click; it presses
    // the control all the same, so that both clicks count.
    case kEventMouseButtonDown:
    case kEventMouseDoubleClick:
      m_pressed = true;
      SetState(kControlStatePushed);
      break;
    case kEventMouseButtonUp:
      m_pressed = false;
      SetState(GetPos().Contains(args.ptMouse) ? kControlStateHot : kControlStateNormal);
      break;
    case kEventSetFocus:
      m_focused = true;
      break;
    case kEventKillFocus:
      m_focused = false;
      break;
    default:
      break;
  }
  SendEvent(args);
}

bool Control::CanTakeFocus() const {
  if (!IsFocusable() || m_noFocus || !m_enabled || !m_keyboardEnabled || !IsVisible()) return false;
  for (const Box* up = GetParent(); up; up = up->GetParent())
    if (!up->IsVisible()) return false;
  return true;
}

bool Control::HitTest(UiPoint pt) const { return IsVisible() && m_mouseEnabled && GetPos().Contains(pt); }

Control* Control::FindControlAt(UiPoint pt) { return HitTest(pt) ? this : nullptr; }

}  // namespace mivo::duilib
