#pragma once
// A list: a vertical box of rows of which at most one is selected. A row is a selectable box,
// so it takes the check box's attributes for its looks: the control's per-state colours and
// images for hot and pushed, "selectednormalcolor", "selectedhotcolor", "selectednormalimage"
// and the like while selected.
#include "duilib/Core/Box.h"
#include "duilib/Core/CheckBox.h"
#include "toolkit/export.h"

namespace mivo::duilib {

class ListBox;

class MIVO_COMMON_API ListContainerElement : public CheckBoxTemplate<Box> {
  using Base = CheckBoxTemplate<Box>;

 public:
  using Base::Base;

  // The list the row is in (its parent), or null.
  ListBox* GetOwner() const;
  // Its place among the list's items, or -1 outside a list.
  int GetIndex() const;

  // In a list, selecting goes through the list, which deselects the row selected before.
  void Selected(bool selected, bool triggerEvent) override;
  // The list takes the focus for its rows.
  bool IsFocusable() const override { return false; }
  // A selected row that joins a list wins over the one selected there, silently, as the skin
  // is still being built.
  void SetWindow(Window* window, Box* parent) override;

 protected:
  // A click selects the row; it never deselects it.
  void Activate(UiPoint ptMouse) override;

 private:
  friend class ListBox;
  void SetSelectedState(bool selected, bool triggerEvent) { Base::Selected(selected, triggerEvent); }
};

class MIVO_COMMON_API ListBox : public VBox {
 public:
  // The list takes the focus as a whole; the arrow keys, Home, End, Page Up and Page Down
  // move its selection.
  bool IsFocusable() const override { return true; }
  bool WantsKey(uint32_t vk) const override;
  void HandleEvent(EventArgs& args) override;
  // The row a key moves the selection to, from `current` (-1: none) among `count` rows of
  // which `page` fit in the list; -1 when there is none, `current` for a key that does not move.
  static int KeyTarget(uint32_t vk, int current, int count, int page);
  // How many rows fit in the list's height (at least 1), measured by the rows' own heights.
  int RowsPerPage() const;

  // The index of the selected row, or -1.
  int GetCurSel() const;
  // Selects the row at `index` and deselects the one selected before; with `triggerEvent` both
  // rows tell their handlers and then the list sends kEventSelect (wParam the new index,
  // lParam the one before or -1). False, with nothing changed, when no row is at `index`.
  bool SelectItem(int index, bool triggerEvent = true);

 private:
  friend class ListContainerElement;
  void DeselectAllBut(const ListContainerElement* keep);
};

}  // namespace mivo::duilib
