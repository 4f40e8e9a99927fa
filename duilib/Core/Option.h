#pragma once
// A check box that belongs to a named group of its window: selecting one option of a group
// deselects the others, like radio buttons. Written over its base class: Option and OptionBox.
#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "duilib/Core/CheckBox.h"
#include "duilib/Core/Window.h"

namespace mivo::duilib {

template <typename InheritType = Control>
class OptionTemplate : public CheckBoxTemplate<InheritType> {
  using Base = CheckBoxTemplate<InheritType>;

 public:
  using Base::Base;
  // The window's registry must not keep a pointer to a control that is gone.
  ~OptionTemplate() override { LeaveGroup(); }

  void SetAttribute(const std::wstring& name, const std::wstring& value) override {
    if (name == L"group")
      SetGroup(value);
    else
      Base::SetAttribute(name, value);
  }

  const std::wstring& GetGroup() const { return m_group; }
  // "" takes the option out of its group. An option that has no window yet keeps the name and
  // joins the group when it is given one.
  void SetGroup(const std::wstring& group) {
    if (group == m_group) return;
    LeaveGroup();
    m_group = group;
    JoinGroup();
  }

  // Moving to another window moves the membership to that window's registry.
  void SetWindow(Window* window, Box* parent) override {
    Window* old = this->GetWindow();
    if (window != old) LeaveGroup();
    Base::SetWindow(window, parent);
    if (window != old) JoinGroup();
  }

  // Selecting deselects the other members of the group, with the same notification request.
  // A select-changed handler may delete the option: then nothing more is done.
  void Selected(bool selected, bool triggerEvent) override {
    std::weak_ptr<nbase::WeakFlag> alive = this->GetWeakFlag();
    Base::Selected(selected, triggerEvent);
    if (selected && !alive.expired()) DeselectOthers(triggerEvent);
  }

 protected:
  // Like a radio button, a click only ever selects: an option is deselected by another.
  void Activate(UiPoint ptMouse) override {
    std::weak_ptr<nbase::WeakFlag> alive = this->GetWeakFlag();
    Selected(true, true);
    if (!alive.expired()) ButtonTemplate<InheritType>::Activate(ptMouse);
  }

 private:
  void LeaveGroup() {
    if (!m_group.empty() && this->GetWindow()) this->GetWindow()->RemoveOptionGroup(m_group, this);
  }

  // A selected option that joins a group wins over the members already there: at most one
  // option of a group is selected. The others change silently, as the skin is still being built.
  void JoinGroup() {
    if (m_group.empty() || !this->GetWindow()) return;
    this->GetWindow()->AddOptionGroup(m_group, this);
    if (this->IsSelected()) DeselectOthers(false);
  }

  void DeselectOthers(bool triggerEvent) {
    if (m_group.empty() || !this->GetWindow()) return;
    const std::vector<Control*>* members = this->GetWindow()->GetOptionGroup(m_group);
    if (!members) return;
    // A select-changed handler may change the group or delete any member, this one included:
    // walk a copy, and touch only members that are still in the group.
    const std::vector<Control*> others = *members;
    std::weak_ptr<nbase::WeakFlag> alive = this->GetWeakFlag();
    Window* window = this->GetWindow();
    const std::wstring group = m_group;
    for (Control* other : others) {
      if (alive.expired()) return;
      const std::vector<Control*>* now = window->GetOptionGroup(group);
      if (other == this || !now || std::find(now->begin(), now->end(), other) == now->end()) continue;
      if (auto* selectable = dynamic_cast<Selectable*>(other)) selectable->Selected(false, triggerEvent);
    }
  }

  std::wstring m_group;
};

using Option = OptionTemplate<Control>;
using OptionBox = OptionTemplate<Box>;

}  // namespace mivo::duilib
