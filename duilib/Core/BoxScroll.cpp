// Box: its vertical scroll bar. Content taller than the box is laid out at its full height,
// moved up by the scroll position and clipped by the box; the bar takes the right edge, inside
// the border, and scrolls by its arrows, its track, its thumb and the wheel.
#include <algorithm>
#include <memory>

#include "duilib/Core/AttributeValue.h"
#include "duilib/Core/Box.h"
#include "duilib/Core/GlobalManager.h"
#include "duilib/Render/IRender.h"

namespace mivo::duilib {

namespace {

// An arrow of the bar: a small triangle pointing up or down, drawn as lines of one pixel.
void PaintArrow(IRenderContext& render, const UiRect& rc, bool up, uint32_t argb) {
  const int size = std::min(rc.GetWidth(), rc.GetHeight()) / 3;
  if (size < 2) return;
  const int cx = rc.left + rc.GetWidth() / 2;
  const int top = rc.top + (rc.GetHeight() - size) / 2;
  for (int row = 0; row < size; ++row) {
    const int half = up ? row : size - 1 - row;
    render.FillRect(UiRect{cx - half - 1, top + row, cx + half + 1, top + row + 1}, argb);
  }
}

}  // namespace

bool Box::SetScrollAttribute(const std::wstring& name, const std::wstring& value) {
  if (name == L"vscrollbar") {
    if (!attr::ParseBool(value))
      m_vscroll.reset();
    else if (!m_vscroll)
      m_vscroll = std::make_unique<VScrollBar>();
    Arrange();
    return true;
  }
  if (name != L"scrollbarwidth" && name != L"scrolltrackcolor" && name != L"scrollthumbcolor" &&
      name != L"scrollthumbhotcolor" && name != L"scrollarrowcolor")
    return false;
  // The looks come before or after "vscrollbar"; they wait in a bar that is not shown yet.
  if (!m_vscroll) {
    m_vscroll = std::make_unique<VScrollBar>();
    m_vscrollOff = true;
  }
  if (name == L"scrollbarwidth")
    m_vscroll->width = std::max(attr::ParseInt(value), 0);
  else if (name == L"scrolltrackcolor")
    m_vscroll->trackColor = value;
  else if (name == L"scrollthumbcolor")
    m_vscroll->thumbColor = value;
  else if (name == L"scrollthumbhotcolor")
    m_vscroll->thumbHotColor = value;
  else
    m_vscroll->arrowColor = value;
  Arrange();
  return true;
}

bool Box::HasVScrollBar() const { return m_vscroll && !m_vscrollOff; }

UiRect Box::ScrolledContent(const UiRect& content) {
  VScrollBar& scroll = *m_vscroll;
  const int view = std::max(content.GetHeight(), 0);
  const UiRect& padding = m_layout->GetPadding();
  // Measured as narrow as it is with the bar: rows that wrap would be taller there.
  UiSize need = m_layout->AjustSizeByChild(m_items, UiSize{std::max(content.GetWidth() - scroll.width, 0), view});
  scroll.model.SetRange(need.cy - padding.top - padding.bottom, view);
  const int line = GlobalManager::IsDpiScaleEnabled() ? GlobalManager::ScaleByDpi(20) : 20;
  scroll.model.SetMetrics(scroll.width, scroll.width, line);
  if (!scroll.model.IsNeeded()) {
    scroll.bar = UiRect{};
    return content;
  }
  // Inside the border, at the box's right edge.
  UiRect sides = m_sideBorderSize;
  if (sides == UiRect{}) sides = UiRect{m_borderSize, m_borderSize, m_borderSize, m_borderSize};
  const UiRect& pos = m_geo->pos;  // just given: SetPos is laying the box out
  scroll.bar = UiRect{pos.right - sides.right - scroll.width, pos.top + sides.top, pos.right - sides.right,
                      pos.bottom - sides.bottom};
  const int top = content.top - scroll.model.GetPos();
  return UiRect{content.left, top, std::min(content.right, scroll.bar.left), top + scroll.model.GetContent()};
}

bool Box::ScrollTo(int pos) {
  if (!HasVScrollBar() || !m_vscroll->model.SetPos(pos)) return false;
  SetPos(m_geo->pos);
  Invalidate();
  return true;
}

int Box::GetScrollPos() const { return HasVScrollBar() ? m_vscroll->model.GetPos() : 0; }

UiRect Box::GetVScrollBarRect() {
  ArrangeNow();
  return HasVScrollBar() ? m_vscroll->bar : UiRect{};
}

void Box::ScrollIntoView(const Control* control) {
  if (!HasVScrollBar() || !control) return;
  ArrangeNow();
  if (m_vscroll->bar == UiRect{}) return;
  // Content coordinates: from the top of the scrolled content.
  const int origin = GetPos().top + m_layout->GetPadding().top - m_vscroll->model.GetPos();
  const UiRect& rc = control->GetPos();
  ScrollTo(m_vscroll->model.ShowRange(rc.top - origin, rc.bottom - origin));
}

bool Box::Wheel(int delta) {
  if (!HasVScrollBar() || !IsVisible()) return false;
  ArrangeNow();
  return ScrollTo(m_vscroll->model.WheelTo(delta));
}

void Box::HandleEvent(EventArgs& args) {
  if (HasVScrollBar() && IsEnabled() && IsMouseEnabled()) {
    VScrollBar& scroll = *m_vscroll;
    const ScrollPart part = scroll.model.PartAt(scroll.bar, args.ptMouse);
    switch (args.Type) {
      case kEventMouseButtonDown:
      case kEventMouseDoubleClick:
        scroll.pressed = part;
        scroll.pressPos = scroll.model.GetPos();
        scroll.pressY = args.ptMouse.y;
        if (part != kScrollThumb && part != kScrollNone) ScrollTo(scroll.model.StepFor(part));
        Invalidate();
        break;
      case kEventMouseMove:
        if (scroll.pressed == kScrollThumb) {
          ScrollTo(scroll.model.DragTo(scroll.bar, scroll.pressPos, scroll.pressY, args.ptMouse.y));
        } else if (scroll.thumbHot != (part == kScrollThumb)) {
          scroll.thumbHot = part == kScrollThumb;
          Invalidate();
        }
        break;
      case kEventMouseButtonUp:
      case kEventMouseLeave:
        if (args.Type == kEventMouseButtonUp || scroll.pressed == kScrollNone) {
          scroll.pressed = kScrollNone;
          scroll.thumbHot = false;
          Invalidate();
        }
        break;
      default:
        break;
    }
  }
  Control::HandleEvent(args);
}

Control* Box::ScrollBarAt(UiPoint pt) {
  return HasVScrollBar() && m_vscroll->bar.Contains(pt) && HitTest(pt) ? this : nullptr;
}

void Box::PaintVScrollBar(IRenderContext& render) {
  if (!HasVScrollBar() || m_vscroll->bar == UiRect{}) return;
  const VScrollBar& scroll = *m_vscroll;
  const ScrollBarPlaces places = scroll.model.Place(scroll.bar);
  render.FillRect(scroll.bar, GlobalManager::ResolveColor(scroll.trackColor));
  const bool hot = scroll.thumbHot || scroll.pressed == kScrollThumb;
  const UiRect thumb{places.thumb.left + 2, places.thumb.top, places.thumb.right - 2, places.thumb.bottom};
  render.FillRect(thumb, GlobalManager::ResolveColor(hot ? scroll.thumbHotColor : scroll.thumbColor));
  const uint32_t arrow = GlobalManager::ResolveColor(scroll.arrowColor);
  PaintArrow(render, places.upArrow, true, arrow);
  PaintArrow(render, places.downArrow, false, arrow);
}

}  // namespace mivo::duilib
