#include "duilib/Core/Layout.h"

#include <algorithm>

#include "duilib/Core/AttributeValue.h"
#include "duilib/Core/Box.h"
#include "duilib/Core/Control.h"

namespace mivo::duilib {

namespace {

bool TakesPart(const Control* child) { return child->IsVisible() && !child->IsFloat(); }

// Children live wherever they were allocated; a layout over thousands of them waits on memory
// unless it asks for the next ones early. The fields a layout reads and writes lie in the
// first two cache lines of a control.
constexpr size_t kPrefetchAhead = 8;
inline void PrefetchChild(const std::vector<Control*>& items, size_t index) {
#if defined(__GNUC__)
  if (index + kPrefetchAhead < items.size()) {
    const char* next = reinterpret_cast<const char*>(items[index + kPrefetchAhead]);
    __builtin_prefetch(next);
    __builtin_prefetch(next + 64);
    __builtin_prefetch(next + 127);
  }
#endif
}

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
    case 0:
      from = start + marginBefore;
      break;
    case 1:
      from = start + (end - start + marginBefore - marginAfter - size) / 2;
      break;
    case 2:
      from = end - marginAfter - size;
      break;
    default:
      from = to = 0;
      return false;
  }
  to = from + size;
  return true;
}

// The axis a stacking layout runs along: vertical (VLayout) or horizontal (HLayout). Along it
// the children share the space; across it each is placed by its own alignment. A template, so
// that each layout's loops are compiled for their own axis.
template <bool kVertical>
struct Axis {
  static constexpr bool vertical = kVertical;

  int Along(const UiSize& size) const { return vertical ? size.cy : size.cx; }
  int Across(const UiSize& size) const { return vertical ? size.cx : size.cy; }
  UiSize Size(int along, int across) const { return vertical ? UiSize{across, along} : UiSize{along, across}; }
  int Start(const UiRect& rc) const { return vertical ? rc.top : rc.left; }
  int CrossStart(const UiRect& rc) const { return vertical ? rc.left : rc.top; }
  int CrossEnd(const UiRect& rc) const { return vertical ? rc.right : rc.bottom; }
  int Before(const UiRect& m) const { return vertical ? m.top : m.left; }
  int After(const UiRect& m) const { return vertical ? m.bottom : m.right; }
  int CrossBefore(const UiRect& m) const { return vertical ? m.left : m.top; }
  int CrossAfter(const UiRect& m) const { return vertical ? m.right : m.bottom; }
  int MinAlong(const Control* c) const { return vertical ? c->GetMinHeight() : c->GetMinWidth(); }
  int MaxAlong(const Control* c) const { return vertical ? c->GetMaxHeight() : c->GetMaxWidth(); }
  int MinAcross(const Control* c) const { return vertical ? c->GetMinWidth() : c->GetMinHeight(); }
  int MaxAcross(const Control* c) const { return vertical ? c->GetMaxWidth() : c->GetMaxHeight(); }
  int Align(const Control* c) const {
    return vertical ? static_cast<int>(c->GetHorAlignType()) : static_cast<int>(c->GetVerAlignType());
  }
  int MinAlong(const LayoutRecord& r) const { return vertical ? r.minHeight : r.minWidth; }
  int MaxAlong(const LayoutRecord& r) const { return vertical ? r.maxHeight : r.maxWidth; }
  int MinAcross(const LayoutRecord& r) const { return vertical ? r.minWidth : r.minHeight; }
  int MaxAcross(const LayoutRecord& r) const { return vertical ? r.maxWidth : r.maxHeight; }
  int Align(const LayoutRecord& r) const {
    return vertical ? static_cast<int>(r.horAlign) : static_cast<int>(r.verAlign);
  }
  UiRect Rect(int from, int to, int crossFrom, int crossTo) const {
    return vertical ? UiRect{crossFrom, from, crossTo, to} : UiRect{from, crossFrom, to, crossTo};
  }
};

template <bool kVertical>
UiSize StackMeasure(const Axis<kVertical>& axis, const std::vector<Control*>& items, UiSize available, int childMargin,
                    const UiRect& padding) {
  int along = 0, across = 0, count = 0;
  for (Control* child : items) {
    if (!TakesPart(child)) continue;
    const UiRect& m = child->GetMargin();
    UiSize size = child->EstimateSize(available);
    int length = ClampAlong(axis.Along(size), axis.MinAlong(child), axis.MaxAlong(child));
    int breadth = ClampAcross(axis.Across(size), axis.MinAcross(child), axis.MaxAcross(child));
    across = std::max(across, axis.CrossBefore(m) + breadth + axis.CrossAfter(m));
    along += axis.Before(m) + length + axis.After(m);
    ++count;
  }
  if (count > 1) along += childMargin * (count - 1);
  UiSize total = axis.Size(along, across);
  total.cx += padding.left + padding.right;
  total.cy += padding.top + padding.bottom;
  return total;
}

// With `records` (the box's own children, laid out by the box), a child whose class keeps
// PlaceHolder's layout interface is read and placed through its record, doing exactly what
// IsVisible, EstimateSize (its fixed size, whatever the space) and SetPos would; the others,
// and every child without records, through their virtual operations.
template <bool kVertical>
UiSize StackArrange(const Axis<kVertical>& axis, const std::vector<Control*>& items,
                    const std::vector<LayoutRecord*>* records, Layout::FirstPass& cache, UiRect rc, int childMargin) {
  const UiSize space{rc.GetWidth(), rc.GetHeight()};
  const int length = axis.Along(space), breadth = axis.Across(space);
  const size_t n = items.size();
  auto plain = [records](size_t i) -> LayoutRecord* {
    if (!records) return nullptr;
    LayoutRecord* record = (*records)[i];
    return record->Has(LayoutRecord::kPlain) ? record : nullptr;
  };
  // First pass: what the fixed children and the margins take, and how many stretch.
  int count = 0, stretches = 0, fixed = 0;
  auto takesPart = [&](const UiRect& m, int estimate, int minimum, int maximum) {
    ++count;
    fixed += axis.Before(m) + axis.After(m);
    if (estimate == DUI_LENGTH_STRETCH)
      ++stretches;
    else
      fixed += ClampAlong(estimate, minimum, maximum);
  };
  auto measureControl = [&](Control* child) {
    if (!TakesPart(child)) return;
    const UiRect& m = child->GetMargin();
    const int estimate = axis.Along(child->EstimateSize(space));
    takesPart(m, estimate, axis.MinAlong(child), axis.MaxAlong(child));
  };
  bool allPlain = records != nullptr;  // then the second pass needs no control at all
  if (records && cache.valid) {
    count = cache.count;
    stretches = cache.stretches;
    fixed = cache.fixed;
  } else if (records) {
    for (size_t i = 0; i < n; ++i) {
      const LayoutRecord& r = *(*records)[i];
      const unsigned flags = r.flags;
      if (!(flags & LayoutRecord::kPlain)) {
        allPlain = false;
        measureControl(items[i]);
        continue;
      }
      if (axis.vertical && (flags & LayoutRecord::kPredicate)) allPlain = false;
      if ((flags & (LayoutRecord::kVisible | LayoutRecord::kFloat)) != LayoutRecord::kVisible) continue;
      takesPart(r.margin, axis.Along(UiSize{r.fixedWidth, r.fixedHeight}), axis.MinAlong(r), axis.MaxAlong(r));
    }
    if (allPlain) cache = Layout::FirstPass{true, count, stretches, fixed};
  } else {
    for (size_t i = 0; i < n; ++i) {
      PrefetchChild(items, i);
      measureControl(items[i]);
    }
  }
  fixed += childMargin * (count - 1);
  int per = 0;
  if (stretches > 0) per = std::max(0, (length - fixed) / stretches);
  int leftover = length - per * stretches - fixed;  // what the division lost, for the first ones

  // Second pass: place them one after another.
  int at = axis.Start(rc), used = 0, widest = 0, remaining = length;
  if (allPlain) {
    for (size_t i = 0; i < n; ++i) {
      LayoutRecord& r = *(*records)[i];
      if ((r.flags & (LayoutRecord::kVisible | LayoutRecord::kFloat)) != LayoutRecord::kVisible) {
        if (!r.Has(LayoutRecord::kVisible)) continue;
        Layout::SetFloatPos(items[i], rc);
        continue;
      }
      const UiRect& m = r.margin;
      int along = axis.Along(UiSize{r.fixedWidth, r.fixedHeight});
      if (along == DUI_LENGTH_STRETCH) {
        along = per;
        if (leftover > 0) ++along, --leftover;
      }
      along = ClampAlong(along, axis.MinAlong(r), axis.MaxAlong(r));
      const int across = CrossSize(axis.Across(UiSize{r.fixedWidth, r.fixedHeight}), breadth, axis.CrossBefore(m),
                                   axis.CrossAfter(m), axis.MinAcross(r), axis.MaxAcross(r));
      int crossFrom = 0, crossTo = 0;
      CrossPlace(axis.Align(r), axis.CrossStart(rc), axis.CrossEnd(rc), axis.CrossBefore(m), axis.CrossAfter(m), across,
                 crossFrom, crossTo);
      const int from = at + axis.Before(m);
      widest = std::max(widest, crossTo - crossFrom);
      const UiRect placed = axis.Rect(from, from + along, crossFrom, crossTo);
      // PlaceHolder::SetPos; nothing above waits, the box laying out is being laid out.
      if (!r.Has(LayoutRecord::kInWindow)) {
        r.pos = placed;
      } else if (placed != r.pos) {
        items[i]->Invalidate();  // where it was and where it goes
        r.pos = placed;
        items[i]->Invalidate();
      }
      at += axis.Before(m) + along + axis.After(m) + childMargin;
      used += axis.Before(m) + along + axis.After(m);
    }
    return axis.Size(used + childMargin * (count - 1), widest);
  }
  for (size_t i = 0; i < n; ++i) {
    LayoutRecord* r = plain(i);
    if (r && axis.vertical && r->Has(LayoutRecord::kPredicate)) r = nullptr;  // the predicate is asked below
    Control* child = r ? nullptr : items[i];
    if (r) {
      if (!r->Has(LayoutRecord::kVisible)) continue;
      if (r->Has(LayoutRecord::kFloat)) {
        Layout::SetFloatPos(items[i], rc);
        continue;
      }
    } else {
      if (!records) PrefetchChild(items, i);
      if (!child->IsVisible()) continue;
      if (child->IsFloat()) {
        Layout::SetFloatPos(child, rc);
        continue;
      }
      if (axis.vertical && child->GetPlacementPredicate() && !child->GetPlacementPredicate()()) continue;
    }
    const UiRect& m = r ? r->margin : child->GetMargin();
    remaining -= axis.Before(m);
    const UiSize size = r ? UiSize{r->fixedWidth, r->fixedHeight} : child->EstimateSize(axis.Size(remaining, breadth));
    int along = axis.Along(size);
    if (along == DUI_LENGTH_STRETCH) {
      along = per;
      if (leftover > 0) ++along, --leftover;
    }
    along = r ? ClampAlong(along, axis.MinAlong(*r), axis.MaxAlong(*r))
              : ClampAlong(along, axis.MinAlong(child), axis.MaxAlong(child));
    int across = r ? CrossSize(axis.Across(size), breadth, axis.CrossBefore(m), axis.CrossAfter(m), axis.MinAcross(*r),
                               axis.MaxAcross(*r))
                   : CrossSize(axis.Across(size), breadth, axis.CrossBefore(m), axis.CrossAfter(m),
                               axis.MinAcross(child), axis.MaxAcross(child));
    int crossFrom = 0, crossTo = 0;
    CrossPlace(r ? axis.Align(*r) : axis.Align(child), axis.CrossStart(rc), axis.CrossEnd(rc), axis.CrossBefore(m),
               axis.CrossAfter(m), across, crossFrom, crossTo);
    const int from = at + axis.Before(m);
    widest = std::max(widest, crossTo - crossFrom);
    const UiRect placed = axis.Rect(from, from + along, crossFrom, crossTo);
    if (!r) {
      child->SetPos(placed);
    } else if (placed != r->pos) {
      // PlaceHolder::SetPos; nothing above waits, the box laying out is being laid out.
      if (r->Has(LayoutRecord::kInWindow)) {
        items[i]->Invalidate();  // where it was and where it goes
        r->pos = placed;
        items[i]->Invalidate();
      } else {
        r->pos = placed;
      }
    }
    at += axis.Before(m) + along + axis.After(m) + childMargin;
    used += axis.Before(m) + along + axis.After(m);
    remaining -= along + axis.After(m) + childMargin;
  }
  return axis.Size(used + childMargin * (count - 1), widest);
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

const std::vector<LayoutRecord*>* Layout::RecordsFor(const Box* owner, const std::vector<Control*>& items) {
  if (!owner || &items != &owner->m_items || owner->m_records.size() != items.size()) return nullptr;
  // Laid out from its own SetPos, nothing from the box up waits; called otherwise while
  // something does, the children go through SetPos, which lays that out first.
  for (const Box* up = owner; up; up = up->GetParent())
    if (up->m_needsArrange) return nullptr;
  return &owner->m_records;
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
  return StackMeasure(Axis<true>{}, items, available, m_childMargin, m_padding);
}

UiSize VLayout::ArrangeChild(const std::vector<Control*>& items, UiRect rc) {
  return StackArrange(Axis<true>{}, items, RecordsFor(m_owner, items), m_firstPass, rc, m_childMargin);
}

UiSize HLayout::AjustSizeByChild(const std::vector<Control*>& items, UiSize available) {
  return StackMeasure(Axis<false>{}, items, available, m_childMargin, m_padding);
}

UiSize HLayout::ArrangeChild(const std::vector<Control*>& items, UiRect rc) {
  return StackArrange(Axis<false>{}, items, RecordsFor(m_owner, items), m_firstPass, rc, m_childMargin);
}

}  // namespace mivo::duilib
