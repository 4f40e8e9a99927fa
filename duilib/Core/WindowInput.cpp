// Window: the mouse as the controls hear it. Controls are held with their lifetime flags: a
// handler may remove or delete any control (or the window) while an event is delivered, so
// every step looks again at what is still alive.
#include "duilib/Core/Box.h"
#include "duilib/Core/Control.h"
#include "duilib/Core/Window.h"

namespace mivo::duilib {

namespace {

void Deliver(Control* control, EventType type, UiPoint pt) {
  EventArgs args;
  args.Type = type;
  args.ptMouse = pt;
  control->HandleEvent(args);
}

}  // namespace

Window::Tracked Window::Track(Control* control) const {
  return control ? Tracked{control, control->GetWeakFlag()} : Tracked{};
}

Control* Window::Live(const Tracked& tracked) const {
  if (!tracked.control || tracked.alive.expired() || tracked.control->GetWindow() != this) return nullptr;
  return tracked.control;
}

Control* Window::ControlAt(UiPoint pt) const { return m_root ? m_root->FindControlAt(pt) : nullptr; }

void Window::SetHot(Control* control, UiPoint pt) {
  Control* old = Live(m_hot);
  if (old == control) {
    if (!old) m_hot = Tracked{};
    return;
  }
  std::weak_ptr<nbase::WeakFlag> alive = GetWeakFlag();
  const Tracked next = Track(control);
  m_hot = Tracked{};
  if (old) Deliver(old, kEventMouseLeave, pt);
  if (alive.expired()) return;
  // The leave handler may have removed the control the mouse is entering.
  Control* entered = Live(next);
  if (!entered) return;
  m_hot = next;
  Deliver(entered, kEventMouseEnter, pt);
}

void Window::HandleMouseEvent(EventType type, UiPoint pt) {
  std::weak_ptr<nbase::WeakFlag> alive = GetWeakFlag();
  switch (type) {
    case kEventMouseMove: {
      // While a button is down only the pressed control hears the mouse, and it is hot only
      // while the mouse is over it: it looks pushed there and normal elsewhere.
      if (Control* pushed = Live(m_pushed)) {
        SetHot(pushed->IsVisible() && pushed->GetPos().Contains(pt) ? pushed : nullptr, pt);
        if (alive.expired()) return;
        if ((pushed = Live(m_pushed))) Deliver(pushed, kEventMouseMove, pt);
      } else {
        SetHot(ControlAt(pt), pt);
        if (alive.expired()) return;
        if (Control* hot = Live(m_hot)) Deliver(hot, kEventMouseMove, pt);
      }
      break;
    }
    case kEventMouseButtonDown:
    case kEventMouseDoubleClick: {
      SetHot(ControlAt(pt), pt);
      if (alive.expired()) return;
      Control* target = ControlAt(pt);
      // The press gives the focus to what was pressed, or to the box above it that takes it
      // for it (a list for its rows).
      Control* focus = target;
      while (focus && !focus->CanTakeFocus()) focus = focus->GetParent();
      if (focus) {
        const Tracked pressed = Track(target);
        SetFocus(focus);
        if (alive.expired()) return;
        target = Live(pressed);
      }
      m_pushed = Track(target);
      if (target) Deliver(target, type, pt);
      break;
    }
    case kEventMouseButtonUp: {
      Control* pushed = Live(m_pushed);
      m_pushed = Tracked{};
      if (pushed) Deliver(pushed, kEventMouseButtonUp, pt);
      if (alive.expired()) return;
      // The press is over: the control under the mouse is hot again, whichever it is.
      SetHot(ControlAt(pt), pt);
      break;
    }
    case kEventMouseLeave:
      SetHot(nullptr, pt);
      break;
    default:
      break;
  }
}

void Window::HandleWheel(UiPoint pt, int delta) {
  for (Control* control = ControlAt(pt); control; control = control->GetParent()) {
    auto* box = dynamic_cast<Box*>(control);
    if (box && box->Wheel(delta)) return;
  }
}

void Window::CancelPress() {
  Control* pushed = Live(m_pushed);
  m_pushed = Tracked{};
  if (!pushed) return;
  const UiRect& pos = pushed->GetPos();
  Deliver(pushed, kEventMouseButtonUp, UiPoint{pos.left - 1, pos.top - 1});
}

}  // namespace mivo::duilib
