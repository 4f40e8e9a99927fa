#include "duilib/Core/ToolTip.h"

#include "duilib/Core/Box.h"
#include "duilib/Core/Control.h"
#include "duilib/Core/GlobalManager.h"

namespace mivo::duilib {

std::wstring ToolTipPlan::TipOf(const Control* control) {
  for (; control; control = control->GetParent()) {
    std::wstring tip =
        control->GetToolTipTextId().empty() ? std::wstring() : GlobalManager::GetTextById(control->GetToolTipTextId());
    if (tip.empty()) tip = control->GetToolTipText();
    if (!tip.empty()) return tip;
  }
  return std::wstring();
}

ToolTipAction ToolTipPlan::HideIfShown() {
  ToolTipAction action;
  action.hide = m_shown;
  m_shown = false;
  return action;
}

ToolTipAction ToolTipPlan::MouseMove(Control* control, UiPoint pt, int64_t nowMs) {
  const bool sameControl = control == m_over && !m_overAlive.expired();
  m_at = pt;
  m_lastMoveMs = nowMs;
  if (sameControl && (m_shown || m_pressed)) return ToolTipAction{};
  ToolTipAction action;
  if (!sameControl) {
    action = HideIfShown();
    m_over = control;
    m_overAlive = control ? control->GetWeakFlag() : std::weak_ptr<nbase::WeakFlag>();
    m_pressed = false;
  }
  // One wait at a time: a move during it only puts the tip off (Due waits again).
  if (control && !m_waiting && !TipOf(control).empty()) {
    m_waiting = true;
    action.waitMs = kHoverDelayMs;
  }
  return action;
}

ToolTipAction ToolTipPlan::Press() {
  m_pressed = true;
  return HideIfShown();
}

ToolTipAction ToolTipPlan::Leave() {
  m_over = nullptr;
  m_overAlive.reset();
  m_pressed = false;
  return HideIfShown();
}

ToolTipAction ToolTipPlan::Due(int64_t nowMs) {
  m_waiting = false;
  ToolTipAction action;
  if (m_shown || m_pressed || m_overAlive.expired()) return action;
  const int64_t rested = nowMs - m_lastMoveMs;
  if (rested < kHoverDelayMs) {
    m_waiting = true;
    action.waitMs = static_cast<int>(kHoverDelayMs - rested);
    return action;
  }
  action.text = TipOf(m_over);
  if (action.text.empty()) return action;
  m_shown = true;
  action.show = true;
  action.at = m_at;
  return action;
}

}  // namespace mivo::duilib
