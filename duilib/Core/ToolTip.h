#pragma once
// Which control's tip shows, and when. The tip of the control under the mouse shows once the
// mouse has rested over that control for the hover delay; it goes when the mouse leaves the
// control or presses, and after a press it waits until the mouse is over another control.
// The window acts on what this decides and supplies the time.
#include <cstdint>
#include <memory>
#include <string>

#include "base/callback/SupportWeakCallback.h"
#include "duilib/Core/UiTypes.h"
#include "toolkit/export.h"

namespace mivo::duilib {

class Control;

// What the window does with its tip window, in this order.
struct ToolTipAction {
  bool hide = false;  // hide the tip shown
  int waitMs = 0;     // ask Due this much later (0: nothing to wait for)
  bool show = false;  // show `text` where the mouse rests, `at` in client coordinates
  std::wstring text;
  UiPoint at;
};

class MIVO_COMMON_API ToolTipPlan {
 public:
  // The usual hover delay of Windows' tooltips.
  static constexpr int kHoverDelayMs = 500;

  // The mouse moved to `pt`; `control` is the one under it (null: none).
  ToolTipAction MouseMove(Control* control, UiPoint pt, int64_t nowMs);
  // A button went down, or the mouse left the window.
  ToolTipAction Press();
  ToolTipAction Leave();
  // The wait asked for is over: the tip to show, or another wait while the mouse still moves.
  ToolTipAction Due(int64_t nowMs);

  bool IsShown() const { return m_shown; }
  // The tip of `control`: its text id through the string table, else its text; a control
  // without one shows the tip of the nearest box above it that has one.
  static std::wstring TipOf(const Control* control);

 private:
  ToolTipAction HideIfShown();

  const Control* m_over = nullptr;
  std::weak_ptr<nbase::WeakFlag> m_overAlive;
  UiPoint m_at;
  int64_t m_lastMoveMs = 0;
  bool m_shown = false;
  bool m_waiting = false;
  bool m_pressed = false;  // no tip until the mouse is over another control
};

}  // namespace mivo::duilib
