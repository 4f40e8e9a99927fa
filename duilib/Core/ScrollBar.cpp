#include "duilib/Core/ScrollBar.h"

#include <algorithm>
#include <cstdint>

namespace mivo::duilib {

void VScrollModel::SetRange(int content, int view) {
  m_content = std::max(content, 0);
  m_view = std::max(view, 0);
  m_pos = Clamp(m_pos);
}

bool VScrollModel::SetPos(int pos) {
  pos = Clamp(pos);
  if (pos == m_pos) return false;
  m_pos = pos;
  return true;
}

ScrollBarPlaces VScrollModel::Place(const UiRect& bar) const {
  ScrollBarPlaces places;
  const int height = std::max(bar.GetHeight(), 0);
  const int arrow = std::clamp(m_arrow, 0, height / 2);
  places.upArrow = UiRect{bar.left, bar.top, bar.right, bar.top + arrow};
  places.downArrow = UiRect{bar.left, bar.bottom - arrow, bar.right, bar.bottom};
  places.track = UiRect{bar.left, bar.top + arrow, bar.right, bar.bottom - arrow};
  const int track = places.track.GetHeight();
  if (!IsNeeded() || track <= 0) {
    places.thumb = UiRect{bar.left, places.track.top, bar.right, places.track.top};
    return places;
  }
  // 64-bit products: contents of many thousand rows times a track of hundreds of pixels.
  int thumb = static_cast<int>(static_cast<int64_t>(track) * m_view / m_content);
  thumb = std::min(std::max(thumb, m_minThumb), track);
  const int top = places.track.top + static_cast<int>(static_cast<int64_t>(track - thumb) * m_pos / GetMax());
  places.thumb = UiRect{bar.left, top, bar.right, top + thumb};
  return places;
}

ScrollPart VScrollModel::PartAt(const UiRect& bar, UiPoint pt) const {
  if (!bar.Contains(pt)) return kScrollNone;
  const ScrollBarPlaces places = Place(bar);
  if (places.upArrow.Contains(pt)) return kScrollUpArrow;
  if (places.downArrow.Contains(pt)) return kScrollDownArrow;
  if (!IsNeeded()) return kScrollNone;
  if (places.thumb.Contains(pt)) return kScrollThumb;
  return pt.y < places.thumb.top ? kScrollPageUp : kScrollPageDown;
}

int VScrollModel::DragTo(const UiRect& bar, int pressPos, int pressY, int y) const {
  const ScrollBarPlaces places = Place(bar);
  const int free = places.track.GetHeight() - places.thumb.GetHeight();
  if (free <= 0) return Clamp(pressPos);
  // Rounded to the nearest pixel, so the thumb stays under the mouse.
  const int64_t moved = static_cast<int64_t>(y - pressY) * GetMax();
  const int64_t step = (moved >= 0 ? moved + free / 2 : moved - free / 2) / free;
  return Clamp(static_cast<int>(pressPos + step));
}

int VScrollModel::StepFor(ScrollPart part) const {
  const int page = std::max(m_view - m_line, m_line);
  switch (part) {
    case kScrollUpArrow:
      return Clamp(m_pos - m_line);
    case kScrollDownArrow:
      return Clamp(m_pos + m_line);
    case kScrollPageUp:
      return Clamp(m_pos - page);
    case kScrollPageDown:
      return Clamp(m_pos + page);
    default:
      return m_pos;
  }
}

int VScrollModel::WheelTo(int delta) const {
  const int64_t pixels = static_cast<int64_t>(delta) * kWheelLines * m_line / kWheelDelta;
  const int64_t target = m_pos - pixels;
  return Clamp(static_cast<int>(std::clamp<int64_t>(target, INT32_MIN, INT32_MAX)));
}

int VScrollModel::ShowRange(int top, int bottom) const {
  if (bottom - top >= m_view || top < m_pos) return Clamp(top);
  if (bottom > m_pos + m_view) return Clamp(bottom - m_view);
  return m_pos;
}

}  // namespace mivo::duilib
