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
  kEventExpand,    // a tree view's node opened (wParam its row)
  kEventCollapse,  // and closed
};

struct EventArgs {
  EventType Type = kEventNone;
  Control* pSender = nullptr;
  UiPoint ptMouse;      // window coordinates, for mouse events
  uint64_t wParam = 0;  // the message's own data (virtual key, character, ...) or the event's
  int64_t lParam = 0;
};

// Virtual-key codes the framework acts on, as Windows numbers them (wParam of kEventKeyDown).
constexpr uint32_t kVkTab = 0x09;
constexpr uint32_t kVkReturn = 0x0D;
constexpr uint32_t kVkEscape = 0x1B;
constexpr uint32_t kVkSpace = 0x20;
constexpr uint32_t kVkPageUp = 0x21;
constexpr uint32_t kVkPageDown = 0x22;
constexpr uint32_t kVkEnd = 0x23;
constexpr uint32_t kVkHome = 0x24;
constexpr uint32_t kVkLeft = 0x25;
constexpr uint32_t kVkUp = 0x26;
constexpr uint32_t kVkRight = 0x27;
constexpr uint32_t kVkDown = 0x28;

// The keys that move a selection through rows: Up, Down, Home, End, Page Up, Page Down.
constexpr bool IsRowNavigationKey(uint32_t vk) {
  return vk == kVkUp || vk == kVkDown || vk == kVkHome || vk == kVkEnd || vk == kVkPageUp || vk == kVkPageDown;
}

// A handler returns false to keep the handlers attached after it from hearing the event.
using EventCallback = std::function<bool(EventArgs*)>;

}  // namespace mivo::duilib
