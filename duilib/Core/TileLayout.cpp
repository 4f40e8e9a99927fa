#include "duilib/Core/TileLayout.h"

#include <algorithm>

#include "duilib/Core/AttributeValue.h"
#include "duilib/Core/Control.h"

namespace mivo::duilib {

bool TileLayout::SetAttribute(const std::wstring& name, const std::wstring& value) {
  if (name == L"itemsize")
    m_itemSize = attr::ParsePair(value);
  else if (name == L"columns")
    m_columns = attr::ParseInt(value);
  else
    return Layout::SetAttribute(name, value);
  if (m_owner) m_owner->Arrange();
  return true;
}

TileLayout::Grid TileLayout::GridFor(int width) const {
  if (m_itemSize.cx > 0) return {std::max(1, (width + m_childMargin) / (m_itemSize.cx + m_childMargin)), m_itemSize.cx};
  const int columns = std::max(1, m_columns);
  return {columns, std::max(0, (width - (columns - 1) * m_childMargin) / columns)};
}

int TileLayout::RowHeight(const std::vector<Control*>& row, int cellWidth) const {
  if (m_itemSize.cy > 0) return m_itemSize.cy;
  int tallest = 0;
  for (const Control* child : row) {
    const UiRect& m = child->GetMargin();
    if (child->GetFixedHeight() > 0) tallest = std::max(tallest, m.top + child->GetFixedHeight() + m.bottom);
  }
  return tallest > 0 ? tallest : cellWidth;
}

UiSize TileLayout::ArrangeChild(const std::vector<Control*>& items, UiRect rc) {
  const Grid grid = GridFor(rc.GetWidth());
  std::vector<Control*> row;
  int top = rc.top, used = 0;
  auto placeRow = [&] {
    if (row.empty()) return;
    const int height = RowHeight(row, grid.cellWidth);
    for (size_t k = 0; k < row.size(); ++k) {
      const UiRect& m = row[k]->GetMargin();
      const int left = rc.left + static_cast<int>(k) * (grid.cellWidth + m_childMargin);
      row[k]->SetPos(UiRect{left + m.left, top + m.top, std::max(left + m.left, left + grid.cellWidth - m.right),
                            std::max(top + m.top, top + height - m.bottom)});
    }
    used = top + height - rc.top;
    top += height + m_childMargin;
    row.clear();
  };
  for (Control* child : items) {
    if (!child->IsVisible()) continue;
    if (child->IsFloat()) {
      SetFloatPos(child, rc);
      continue;
    }
    row.push_back(child);
    if (static_cast<int>(row.size()) == grid.columns) placeRow();
  }
  placeRow();
  return UiSize{rc.GetWidth(), used};
}

UiSize TileLayout::AjustSizeByChild(const std::vector<Control*>& items, UiSize available) {
  const Grid grid = GridFor(available.cx - m_padding.left - m_padding.right);
  std::vector<Control*> row;
  int height = 0, rows = 0, widest = 0;
  auto countRow = [&] {
    if (row.empty()) return;
    height += (rows++ ? m_childMargin : 0) + RowHeight(row, grid.cellWidth);
    widest = std::max(widest, static_cast<int>(row.size()));
    row.clear();
  };
  for (Control* child : items) {
    if (!child->IsVisible() || child->IsFloat()) continue;
    row.push_back(child);
    if (static_cast<int>(row.size()) == grid.columns) countRow();
  }
  countRow();
  const int width = widest > 0 ? widest * grid.cellWidth + (widest - 1) * m_childMargin : 0;
  return UiSize{width + m_padding.left + m_padding.right, height + m_padding.top + m_padding.bottom};
}

}  // namespace mivo::duilib
