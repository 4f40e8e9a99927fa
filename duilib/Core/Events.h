#pragma once
// What controls tell each other and their forms: the kinds of event, what comes with one, and
// the shape of a handler. The window turns mouse and keyboard messages into these and hands
// them to the control under the mouse or with the focus (Control::HandleEvent).
#include <cstdint>
#include <functional>

#include "duilib/Core/UiTypes.h"

namespace mivo::duilib {

class Control;

enum EventType {
  kEventNone = 0,
  // input, from the window
  kEventMouseEnter,
  kEventMouseLeave,
  kEventMouseMove,
  kEventMouseButtonDown,
  kEventMouseButtonUp,
  kEventMouseDoubleClick,
  kEventSetFocus,
  kEventKillFocus,
  kEventKeyDown,
  kEventKeyUp,
  kEventChar,
  // what controls make of it
  kEventClick,
  kEventSelect,
  kEventUnSelect,
};

struct EventArgs {
  EventType Type = kEventNone;
  Control* pSender = nullptr;
  UiPoint ptMouse;      // window coordinates, for mouse events
  uint64_t wParam = 0;  // the message's own data (virtual key, character, ...) or the event's
  int64_t lParam = 0;
};

// A handler returns false to keep the handlers attached after it from hearing the event.
using EventCallback = std::function<bool(EventArgs*)>;

}  // namespace mivo::duilib
