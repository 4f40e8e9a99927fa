#include "duilib/Core/ListBox.h"

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
  if (triggerEvent && !listAlive.expired()) SendEvent(kEventSelect, static_cast<uint64_t>(index), previous);
  return true;
}

void ListBox::DeselectAllBut(const ListContainerElement* keep) {
  for (Control* item : GetItems()) {
    auto* row = dynamic_cast<ListContainerElement*>(item);
    if (row && row != keep) row->SetSelectedState(false, false);
  }
}

}  // namespace mivo::duilib
