#include "duilib/Core/ListBox.h"

#include <algorithm>
#include <memory>

namespace mivo::duilib {

ListBox* ListContainerElement::GetOwner() const { return dynamic_cast<ListBox*>(GetParent()); }

int ListContainerElement::GetIndex() const {
  const ListBox* list = GetOwner();
  if (!list) return -1;
  const std::vector<Control*>& items = list->GetItems();
  for (size_t i = 0; i < items.size(); ++i)
    if (items[i] == this) return static_cast<int>(i);
  return -1;
}

void ListContainerElement::Selected(bool selected, bool triggerEvent) {
  ListBox* list = GetOwner();
  if (selected && list)
    list->SelectItem(GetIndex(), triggerEvent);
  else
    Base::Selected(selected, triggerEvent);
}

void ListContainerElement::SetWindow(Window* window, Box* parent) {
  Box* old = GetParent();
  Base::SetWindow(window, parent);
  if (parent != old && IsSelected())
    if (ListBox* list = GetOwner()) list->DeselectAllBut(this);
}

void ListContainerElement::Activate(UiPoint ptMouse) {
  std::weak_ptr<nbase::WeakFlag> alive = GetWeakFlag();
  Selected(true, true);
  if (!alive.expired()) ButtonTemplate<Box>::Activate(ptMouse);
}

bool ListBox::WantsKey(uint32_t vk) const { return IsRowNavigationKey(vk); }

int ListBox::KeyTarget(uint32_t vk, int current, int count, int page) {
  if (count <= 0) return -1;
  if (current < 0 || current >= count) return vk == kVkEnd ? count - 1 : 0;  // the first key lands in the list
  page = std::max(page, 1);
  int target = current;
  switch (vk) {
    case kVkUp:
      target = current - 1;
      break;
    case kVkDown:
      target = current + 1;
      break;
    case kVkHome:
      target = 0;
      break;
    case kVkEnd:
      target = count - 1;
      break;
    case kVkPageUp:
      target = current - page;
      break;
    case kVkPageDown:
      target = current + page;
      break;
    default:
      break;
  }
  return std::clamp(target, 0, count - 1);
}

int ListBox::RowsPerPage() const {
  const int height = GetPos().GetHeight();
  int rows = 0, used = 0;
  for (Control* item : GetItems()) {
    if (!item->IsVisible()) continue;
    const int row = item->GetPos().GetHeight();
    if (row <= 0 || used + row > height) break;
    used += row;
    ++rows;
  }
  return std::max(rows, 1);
}

void ListBox::HandleEvent(EventArgs& args) {
  if (args.Type == kEventKeyDown && WantsKey(static_cast<uint32_t>(args.wParam)) && IsEnabled() &&
      IsKeyboardEnabled()) {
    const int target =
        KeyTarget(static_cast<uint32_t>(args.wParam), GetCurSel(), static_cast<int>(GetCount()), RowsPerPage());
    std::weak_ptr<nbase::WeakFlag> alive = GetWeakFlag();
    if (target >= 0) SelectItem(target, true);
    if (alive.expired()) return;
  }
  VBox::HandleEvent(args);
}

int ListBox::GetCurSel() const {
  const std::vector<Control*>& items = GetItems();
  for (size_t i = 0; i < items.size(); ++i) {
    auto* row = dynamic_cast<const ListContainerElement*>(items[i]);
    if (row && row->IsSelected()) return static_cast<int>(i);
  }
  return -1;
}

bool ListBox::SelectItem(int index, bool triggerEvent) {
  auto* row = index < 0 ? nullptr : dynamic_cast<ListContainerElement*>(GetItemAt(static_cast<size_t>(index)));
  if (!row) return false;
  const int previous = GetCurSel();
  if (previous == index) return true;
  // The rows' handlers run in between and may change the list: go on only while both live.
  std::weak_ptr<nbase::WeakFlag> listAlive = GetWeakFlag(), rowAlive = row->GetWeakFlag();
  if (previous >= 0) static_cast<ListContainerElement*>(GetItemAt(previous))->SetSelectedState(false, triggerEvent);
  if (listAlive.expired() || rowAlive.expired()) return false;
  row->SetSelectedState(true, triggerEvent);
  if (listAlive.expired()) return true;
  // The selected row is shown, whichever way it was selected.
  if (!rowAlive.expired()) ScrollIntoView(row);
  if (triggerEvent) SendEvent(kEventSelect, static_cast<uint64_t>(index), previous);
  return true;
}

void ListBox::DeselectAllBut(const ListContainerElement* keep) {
  for (Control* item : GetItems()) {
    auto* row = dynamic_cast<ListContainerElement*>(item);
    if (row && row != keep) row->SetSelectedState(false, false);
  }
}

}  // namespace mivo::duilib
