#pragma once
// Children in rows of equal cells, left to right and top to bottom. "itemsize" (width,height)
// fixes a cell: as many columns as fit the width, at least one. Without a cell width,
// "columns" (1 when not given) share the width equally. A row is the cell height high when
// "itemsize" gives one, else as high as the tallest fixed height among its children, else as
// high as a cell is wide. "childmargin" lies between cells both ways and "padding" around them.
// Each child fills its cell less its own margin; invisible children take no cell and float
// children are placed by the float rule, as in the stacking layouts.
#include "duilib/Core/Box.h"
#include "duilib/Core/Layout.h"

namespace mivo::duilib {

class MIVO_COMMON_API TileLayout : public Layout {
 public:
  // "itemsize" and "columns", then the base's names.
  bool SetAttribute(const std::wstring& name, const std::wstring& value) override;
  UiSize ArrangeChild(const std::vector<Control*>& items, UiRect rc) override;
  UiSize AjustSizeByChild(const std::vector<Control*>& items, UiSize available) override;

 private:
  struct Grid {
    int columns, cellWidth;
  };
  Grid GridFor(int width) const;
  int RowHeight(const std::vector<Control*>& row, int cellWidth) const;

  UiSize m_itemSize;
  int m_columns = 0;
};

class MIVO_COMMON_API TileBox : public Box {
 public:
  TileBox() : Box(new TileLayout()) {}
};

}  // namespace mivo::duilib
