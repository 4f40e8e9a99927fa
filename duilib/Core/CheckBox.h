#pragma once
// A button with a selected state: while selected it draws with its own colours and images,
// and a click turns the state over. Written over its base class like the label: CheckBox and
// CheckBoxBox.
#include <array>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "duilib/Core/Button.h"

namespace mivo::duilib {

// What every selectable control offers, whichever base it is written over. Option groups hold
// plain Control pointers and reach their members' selection through this.
class Selectable {
 public:
  virtual ~Selectable() = default;
  virtual bool IsSelected() const = 0;
  // Selects or deselects; with `triggerEvent` the select-changed callbacks hear of a change.
  virtual void Selected(bool selected, bool triggerEvent) = 0;
};

template <typename InheritType = Control>
class CheckBoxTemplate : public ButtonTemplate<InheritType>, public Selectable {
  using Base = ButtonTemplate<InheritType>;

 public:
  using Base::Base;
  // Told the new state after a change that was made with notification requested.
  using SelectChangedCallback = std::function<void(bool selected)>;

  void SetAttribute(const std::wstring& name, const std::wstring& value) override {
    int state;
    if (name == L"selected") {
      Selected(attr::ParseBool(value), true);
    } else if ((state = StateOf(name, L"selectednormalimage", L"selectedhotimage", L"selectedpushedimage",
                                L"selecteddisabledimage")) >= 0) {
      SetSelectedStateImage(static_cast<ControlStateType>(state), value);
    } else if (name == L"selectedtextcolor") {
      SetSelectedTextColor(value);
    } else if ((state = StateOf(name, L"selectednormalcolor", L"selectedhotcolor", L"selectedpushedcolor",
                                L"selecteddisabledcolor")) >= 0) {
      SetSelectedStateColor(static_cast<ControlStateType>(state), value);
    } else if ((state = StateOf(name, L"selectedforenormalimage", L"selectedforehotimage", L"selectedforepushedimage",
                                L"selectedforedisabledimage")) >= 0) {
      SetSelectedForeStateImage(static_cast<ControlStateType>(state), value);
    } else {
      Base::SetAttribute(name, value);
    }
  }

  // Space turns it over; Enter keeps its window-wide meaning (the default button).
  bool WantsKey(uint32_t vk) const override { return vk == kVkSpace; }

  bool IsSelected() const override { return m_selected; }
  // With `triggerEvent` the select-changed callbacks hear of a change, then the kEventSelect or
  // kEventUnSelect handlers.
  void Selected(bool selected, bool triggerEvent) override {
    if (m_selected == selected) return;
    m_selected = selected;
    this->Invalidate();
    if (!triggerEvent) return;
    std::weak_ptr<nbase::WeakFlag> alive = this->GetWeakFlag();
    NotifySelectChanged();
    if (!alive.expired()) this->SendEvent(selected ? kEventSelect : kEventUnSelect);
  }
  void AttachSelectChanged(SelectChangedCallback callback) { m_selectChanged.push_back(std::move(callback)); }

  const std::wstring& GetSelectedTextColor() const { return m_selectedTextColor; }
  void SetSelectedTextColor(const std::wstring& color) {
    m_selectedTextColor = color;
    this->Invalidate();
  }
  const std::wstring& GetSelectedStateColor(ControlStateType state) const { return m_selectedColors[state]; }
  void SetSelectedStateColor(ControlStateType state, const std::wstring& color) {
    m_selectedColors[state] = color;
    this->Invalidate();
  }
  // The images live in the control's image sets, beside its own background and foreground.
  void SetSelectedStateImage(ControlStateType state, const std::wstring& image) {
    this->m_images[kImageSetSelected][state] = image;
    this->RepaintOrArrangeForImage();
  }
  void SetSelectedForeStateImage(ControlStateType state, const std::wstring& image) {
    this->m_images[kImageSetSelectedFore][state] = image;
    this->RepaintOrArrangeForImage();
  }

 protected:
  // While selected, the selected colour and images of the state stand in for the plain ones;
  // where the skin gives none, the plain ones show.
  void PaintStateColor(IRenderContext& render) override {
    if (!m_selected || !this->FillColor(render, Control::ForState(m_selectedColors, this->GetState())))
      Base::PaintStateColor(render);
  }
  void PaintStateImage(IRenderContext& render) override {
    if (!m_selected) {
      Base::PaintStateImage(render);
      return;
    }
    if (!this->DrawStateImage(render, kImageSetSelected)) this->DrawStateImage(render, kImageSetBackground);
    if (!this->DrawStateImage(render, kImageSetSelectedFore)) this->DrawStateImage(render, kImageSetForeground);
  }
  const std::wstring& PaintTextColor() const override {
    return m_selected && !m_selectedTextColor.empty() ? m_selectedTextColor : Base::PaintTextColor();
  }

  // A click turns the selection over, then the click handlers hear of it.
  void Activate(UiPoint ptMouse) override {
    std::weak_ptr<nbase::WeakFlag> alive = this->GetWeakFlag();
    Selected(!m_selected, true);
    if (!alive.expired()) Base::Activate(ptMouse);
  }

  void NotifySelectChanged() {
    // A callback may attach another; walk a copy so that cannot invalidate the loop.
    std::vector<SelectChangedCallback> callbacks = m_selectChanged;
    for (auto& callback : callbacks) callback(m_selected);
  }

 private:
  static int StateOf(const std::wstring& name, const wchar_t* normal, const wchar_t* hot, const wchar_t* pushed,
                     const wchar_t* disabled) {
    const wchar_t* const names[] = {normal, hot, pushed, disabled};
    for (int state = 0; state < kControlStateCount; ++state)
      if (name == names[state]) return state;
    return -1;
  }

  bool m_selected = false;
  std::wstring m_selectedTextColor;
  std::array<std::wstring, kControlStateCount> m_selectedColors;
  std::vector<SelectChangedCallback> m_selectChanged;
};

using CheckBox = CheckBoxTemplate<Control>;
using CheckBoxBox = CheckBoxTemplate<Box>;

}  // namespace mivo::duilib
