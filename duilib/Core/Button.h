#pragma once
// A label that can be clicked. Its looks per state (hot, pushed, disabled colours and images)
// are the control's; what it adds is the click. Written over its base class like the label:
// Button and ButtonBox.
#include <memory>

#include "duilib/Core/Events.h"
#include "duilib/Core/Label.h"

namespace mivo::duilib {

template <typename InheritType = Control>
class ButtonTemplate : public LabelTemplate<InheritType> {
  using Base = LabelTemplate<InheritType>;

 public:
  using Base::Base;

  bool WantsClicks() const override { return true; }
  // Space and Enter press the focused button.
  bool WantsKey(uint32_t vk) const override { return vk == kVkSpace || vk == kVkReturn; }

  // A button-up over the button after a button-down on it is a click. Letting go elsewhere
  // is how a user takes a press back, so that is no click. A key it wants is a click too.
  void HandleEvent(EventArgs& args) override {
    const bool clicked = (args.Type == kEventMouseButtonUp && this->IsPressed() && this->IsEnabled() &&
                          this->IsMouseEnabled() && this->GetPos().Contains(args.ptMouse)) ||
                         (args.Type == kEventKeyDown && WantsKey(static_cast<uint32_t>(args.wParam)) &&
                          this->IsEnabled() && this->IsKeyboardEnabled());
    std::weak_ptr<nbase::WeakFlag> alive = this->GetWeakFlag();
    Base::HandleEvent(args);
    if (clicked && !alive.expired()) Activate(args.ptMouse);
  }

 protected:
  // What a click does. A plain button tells its click handlers; selectable ones change their
  // selection first, so that the handlers see the new state.
  virtual void Activate(UiPoint ptMouse) {
    EventArgs click;
    click.Type = kEventClick;
    click.ptMouse = ptMouse;
    this->SendEvent(click);
  }
};

using Button = ButtonTemplate<Control>;
using ButtonBox = ButtonTemplate<Box>;

}  // namespace mivo::duilib
