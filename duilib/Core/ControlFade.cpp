// Control: its hot fade and its animated showing and hiding, driven by the animation ticker.
#include "duilib/Core/Control.h"
#include "duilib/Render/IRender.h"

namespace mivo::duilib {

namespace {

bool HasVisibilityFade(const FadeSettings& fade) {
  return fade.alpha || fade.width || fade.height || fade.inOutX || fade.inOutY;
}

}  // namespace

void Control::SetState(ControlStateType state) {
  m_state = state;
  if (state == kControlStateNormal || state == kControlStateHot) {
    const bool hot = state == kControlStateHot;
    m_animation.SetHot(m_hotAlpha);  // a fade the other way stops where it is
    if (m_hotAlpha != (hot ? 255 : 0)) {
      AnimationTicker* ticker = GetWindow() ? GetAnimationTicker() : nullptr;
      if (m_fade.hot && ticker) {
        m_animation.StartHot(hot, ticker->NowMs());
        RunAnimation();
      } else {
        m_hotAlpha = hot ? 255 : 0;
        m_animation.SetHot(m_hotAlpha);
      }
    }
  }
  Invalidate();
}

void Control::SetVisible(bool visible) {
  if (HasVisibilityFade(m_fade)) {
    SetFadeVisible(visible);
    return;
  }
  if (m_animation.GetVisibility() != 255) {
    m_animation.SetVisibility(255);
    Invalidate();
  }
  PlaceHolder::SetVisible(visible);
}

void Control::SetFadeVisible(bool visible) {
  // As the user sees it: shown and not on its way out.
  const bool shown = PlaceHolder::IsVisible() && !m_animation.IsHiding();
  if (shown == visible) return;
  AnimationTicker* ticker = GetWindow() ? GetAnimationTicker() : nullptr;
  if (!ticker) {
    m_animation.SetVisibility(255);
    Invalidate();
    PlaceHolder::SetVisible(visible);
    return;
  }
  if (visible && !PlaceHolder::IsVisible()) {
    m_animation.SetVisibility(0);
    PlaceHolder::SetVisible(true);
  }
  m_animation.StartVisibility(visible, ticker->NowMs());
  RunAnimation();
  Invalidate();
}

bool Control::RunAnimation() {
  AnimationTicker* ticker = GetWindow() ? GetAnimationTicker() : nullptr;
  if (!ticker) return false;
  if (!m_animationTicking) {
    m_animationTicking = true;
    // The flag dies with the control, so a deleted control's ticks stop with it.
    ticker->Every(m_animationTicks.GetWeakFlag(), [this] { OnAnimationTick(); });
  }
  return true;
}

void Control::OnAnimationTick() {
  AnimationTicker* ticker = GetAnimationTicker();
  const bool running = ticker && m_animation.Step(ticker->NowMs());
  m_hotAlpha = m_animation.GetHotAlpha();
  Invalidate();
  if (running) return;
  m_animationTicks.Cancel();
  m_animationTicking = false;
  if (m_animation.IsHiding()) {
    m_animation.SetVisibility(255);  // shown in full next time it shows without a fade
    PlaceHolder::SetVisible(false);
  }
}

AnimationFrame Control::GetAnimationFrame() const {
  return ControlAnimation::FrameFor(m_fade, m_animation.GetVisibility(), GetPos());
}

void Control::PaintAnimated(IRenderContext& render) {
  const UiRect& pos = GetPos();
  const AnimationFrame frame = GetAnimationFrame();
  if (frame.IsIdentity(pos)) {
    Paint(render);
    return;
  }
  // Only what moves needs a layer or an offset.
  const bool blended = frame.alpha < 255, moved = frame.offset != UiPoint{};
  if (blended) render.PushAlpha(pos, frame.alpha);
  if (moved) render.PushOffset(frame.offset.x, frame.offset.y);
  // Growing in width or height shows the control from its top left corner.
  if (render.PushClip(UiRect{pos.left, pos.top, pos.left + frame.shown.cx, pos.top + frame.shown.cy})) Paint(render);
  render.PopClip();
  if (moved) render.PopOffset();
  if (blended) render.PopAlpha();
}

}  // namespace mivo::duilib
