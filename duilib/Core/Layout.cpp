#include "duilib/Core/Layout.h"

#include <algorithm>

#include "duilib/Core/AttributeValue.h"
#include "duilib/Core/Box.h"
#include "duilib/Core/Control.h"

namespace mivo::duilib {

namespace {

bool TakesPart(const Control* child) { return child->IsVisible() && !child->IsFloat(); }

// Along the layout axis the maximum is always applied; across it only when not negative.
int ClampAlong(int value, int minimum, int maximum) {
  if (value < minimum) value = minimum;
  if (value > maximum) value = maximum;
  return value;
}

int ClampAcross(int value, int minimum, int maximum) {
  if (value < minimum) value = minimum;
  if (maximum >= 0 && value > maximum) value = maximum;
  return value;
}

// A cross-axis size: stretch fills the space less the margins, negative sizes become 0.
int CrossSize(int estimate, int space, int marginBefore, int marginAfter, int minimum, int maximum) {
  if (estimate == DUI_LENGTH_STRETCH) estimate = space - marginBefore - marginAfter;
  if (estimate < 0) estimate = 0;
  return ClampAcross(estimate, minimum, maximum);
}

// Places a child of `size` across the axis by its alignment: 0 before, 1 centred, 2 after.
// Any other value gives it 0 to 0 (and false).
bool CrossPlace(int align, int start, int end, int marginBefore, int marginAfter, int size, int& from, int& to) {
  switch (align) {
    case 0: from = start + marginBefore; break;
    case 1: from = start + (end - start + marginBefore - marginAfter - size) / 2; break;
    case 2: from = end - marginAfter - size; break;
    default: from = to = 0; return false;
  }
  to = from + size;
  return true;
}

}  // namespace

bool Layout::SetAttribute(const std::wstring& name, const std::wstring& value) {
  if (name == L"padding") {
    SetPadding(attr::ParseRect(value));
    return true;
  }
  if (name == L"childmargin") {
    SetChildMargin(attr::ParseInt(value));
    return true;
  }
  return false;
}

void Layout::SetPadding(const UiRect& padding) {
  m_padding = padding;
  if (m_owner) m_owner->Arrange();
}

void Layout::SetChildMargin(int margin) {
  m_childMargin = margin;
  if (m_owner) m_owner->Arrange();
}

UiSize Layout::SetFloatPos(Control* child, UiRect container) {
  const UiRect& m = child->GetMargin();
  UiSize estimate = child->EstimateSize(UiSize{container.GetWidth(), container.GetHeight()});
  int width = CrossSize(estimate.cx, container.GetWidth(), m.left, m.right, child->GetMinWidth(), child->GetMaxWidth());
  int height =
      CrossSize(estimate.cy, container.GetHeight(), m.top, m.bottom, child->GetMinHeight(), child->GetMaxHeight());
  UiRect pos;
  CrossPlace(child->GetHorAlignType(), container.left, container.right, m.left, m.right, width, pos.left, pos.right);
  CrossPlace(child->GetVerAlignType(), container.top, container.bottom, m.top, m.bottom, height, pos.top, pos.bottom);
  child->SetPos(pos);
  return UiSize{width, height};
}

UiSize Layout::ArrangeChild(const std::vector<Control*>& items, UiRect rc) {
  for (Control* child : items)
    if (child->IsVisible()) SetFloatPos(child, rc);
  return UiSize{rc.GetWidth(), rc.GetHeight()};
}

UiSize Layout::AjustSizeByChild(const std::vector<Control*>& items, UiSize available) {
  UiSize total;
  for (Control* child : items) {
    if (!child->IsVisible()) continue;
    const UiRect& m = child->GetMargin();
    UiSize size = child->EstimateSize(available);
    int width = ClampAcross(size.cx, child->GetMinWidth(), child->GetMaxWidth());
    int height = ClampAcross(size.cy, child->GetMinHeight(), child->GetMaxHeight());
    total.cx = std::max(total.cx, m.left + width + m.right);
    total.cy = std::max(total.cy, m.top + height + m.bottom);
  }
  total.cx += m_padding.left + m_padding.right;
  total.cy += m_padding.top + m_padding.bottom;
  return total;
}

UiSize VLayout::AjustSizeByChild(const std::vector<Control*>& items, UiSize available) {
  UiSize total;
  int count = 0;
  for (Control* child : items) {
    if (!TakesPart(child)) continue;
    const UiRect& m = child->GetMargin();
    UiSize size = child->EstimateSize(available);
    int width = ClampAcross(size.cx, child->GetMinWidth(), child->GetMaxWidth());
    int height = ClampAlong(size.cy, child->GetMinHeight(), child->GetMaxHeight());
    total.cx = std::max(total.cx, m.left + width + m.right);
    total.cy += m.top + height + m.bottom;
    ++count;
  }
  if (count > 1) total.cy += m_childMargin * (count - 1);
  total.cx += m_padding.left + m_padding.right;
  total.cy += m_padding.top + m_padding.bottom;
  return total;
}

UiSize VLayout::ArrangeChild(const std::vector<Control*>& items, UiRect rc) {
  const int width = rc.GetWidth(), height = rc.GetHeight();
  int count = 0, stretches = 0, fixed = 0;
  for (Control* child : items) {
    if (!TakesPart(child)) continue;
    const UiRect& m = child->GetMargin();
    UiSize size = child->EstimateSize(UiSize{width, height});
    ++count;
    fixed += m.top + m.bottom;
    if (size.cy == DUI_LENGTH_STRETCH)
      ++stretches;
    else
      fixed += ClampAlong(size.cy, child->GetMinHeight(), child->GetMaxHeight());
  }
  fixed += m_childMargin * (count - 1);
  int per = 0;
  if (stretches > 0) per = std::max(0, (height - fixed) / stretches);
  int leftover = height - per * stretches - fixed;

  int y = rc.top, used = 0, widest = 0, remaining = height;
  for (Control* child : items) {
    if (!child->IsVisible()) continue;
    if (child->IsFloat()) {
      SetFloatPos(child, rc);
      continue;
    }
    if (child->GetPlacementPredicate() && !child->GetPlacementPredicate()()) continue;
    const UiRect& m = child->GetMargin();
    remaining -= m.top;
    UiSize size = child->EstimateSize(UiSize{width, remaining});
    int h = size.cy;
    if (h == DUI_LENGTH_STRETCH) {
      h = per;
      if (leftover > 0) ++h, --leftover;
    }
    h = ClampAlong(h, child->GetMinHeight(), child->GetMaxHeight());
    int w = CrossSize(size.cx, width, m.left, m.right, child->GetMinWidth(), child->GetMaxWidth());
    UiRect pos;
    CrossPlace(child->GetHorAlignType(), rc.left, rc.right, m.left, m.right, w, pos.left, pos.right);
    pos.top = y + m.top;
    pos.bottom = pos.top + h;
    widest = std::max(widest, pos.right - pos.left);
    child->SetPos(pos);
    y += m.top + h + m.bottom + m_childMargin;
    used += m.top + h + m.bottom;
    remaining -= h + m.bottom + m_childMargin;
  }
  return UiSize{widest, used + m_childMargin * (count - 1)};
}

UiSize HLayout::AjustSizeByChild(const std::vector<Control*>& items, UiSize available) {
  UiSize total;
  int count = 0;
  for (Control* child : items) {
    if (!TakesPart(child)) continue;
    const UiRect& m = child->GetMargin();
    UiSize size = child->EstimateSize(available);
    int width = ClampAlong(size.cx, child->GetMinWidth(), child->GetMaxWidth());
    int height = ClampAcross(size.cy, child->GetMinHeight(), child->GetMaxHeight());
    total.cx += m.left + width + m.right;
    total.cy = std::max(total.cy, m.top + height + m.bottom);
    ++count;
  }
  if (count > 1) total.cx += m_childMargin * (count - 1);
  total.cx += m_padding.left + m_padding.right;
  total.cy += m_padding.top + m_padding.bottom;
  return total;
}

UiSize HLayout::ArrangeChild(const std::vector<Control*>& items, UiRect rc) {
  const int width = rc.GetWidth(), height = rc.GetHeight();
  int count = 0, stretches = 0, fixed = 0;
  for (Control* child : items) {
    if (!TakesPart(child)) continue;
    const UiRect& m = child->GetMargin();
    UiSize size = child->EstimateSize(UiSize{width, height});
    ++count;
    fixed += m.left + m.right;
    if (size.cx == DUI_LENGTH_STRETCH)
      ++stretches;
    else
      fixed += ClampAlong(size.cx, child->GetMinWidth(), child->GetMaxWidth());
  }
  fixed += m_childMargin * (count - 1);
  int per = 0;
  if (stretches > 0) per = std::max(0, (width - fixed) / stretches);
  int leftover = width - per * stretches - fixed;

  int x = rc.left, used = 0, tallest = 0, remaining = width;
  for (Control* child : items) {
    if (!child->IsVisible()) continue;
    if (child->IsFloat()) {
      SetFloatPos(child, rc);
      continue;
    }
    const UiRect& m = child->GetMargin();
    remaining -= m.left;
    UiSize size = child->EstimateSize(UiSize{remaining, height});
    int w = size.cx;
    if (w == DUI_LENGTH_STRETCH) {
      w = per;
      if (leftover > 0) ++w, --leftover;
    }
    w = ClampAlong(w, child->GetMinWidth(), child->GetMaxWidth());
    int h = CrossSize(size.cy, height, m.top, m.bottom, child->GetMinHeight(), child->GetMaxHeight());
    UiRect pos;
    CrossPlace(child->GetVerAlignType(), rc.top, rc.bottom, m.top, m.bottom, h, pos.top, pos.bottom);
    pos.left = x + m.left;
    pos.right = pos.left + w;
    tallest = std::max(tallest, pos.bottom - pos.top);
    child->SetPos(pos);
    x += m.left + w + m.right + m_childMargin;
    used += m.left + w + m.right;
    remaining -= w + m.right + m_childMargin;
  }
  return UiSize{used + m_childMargin * (count - 1), tallest};
}

}  // namespace mivo::duilib
