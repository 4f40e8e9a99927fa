#include "duilib/Core/Animation.h"

#include <algorithm>
#include <cstdlib>

#include "duilib/Core/Control.h"

namespace mivo::duilib {

namespace {

AnimationTicker* g_ticker = nullptr;

}  // namespace

// The platform half's ticker: the timer manager's on Windows, none elsewhere.
AnimationTicker* PlatformAnimationTicker();

AnimationTicker* GetAnimationTicker() { return g_ticker ? g_ticker : PlatformAnimationTicker(); }

void SetAnimationTicker(AnimationTicker* ticker) { g_ticker = ticker; }

int AnimationTrack::ValueAt(int64_t nowMs) const {
  const int64_t elapsed = nowMs - startMs;
  if (durationMs <= 0 || elapsed >= durationMs) return to;
  if (elapsed <= 0) return from;
  return from + static_cast<int>(static_cast<int64_t>(to - from) * elapsed / durationMs);
}

AnimationTrack ControlAnimation::Toward(int from, int to, int fullMs, int64_t nowMs) const {
  // The whole way takes fullMs; part of the way takes its part, so the pace stays the same.
  return AnimationTrack{from, to, nowMs, fullMs * std::abs(to - from) / 255};
}

void ControlAnimation::SetHot(int alpha) {
  m_hot = std::clamp(alpha, 0, 255);
  m_hotTrack = AnimationTrack{m_hot, m_hot, 0, 0};
  m_hotRunning = false;
}

void ControlAnimation::SetVisibility(int value) {
  m_visible = std::clamp(value, 0, 255);
  m_visibleTrack = AnimationTrack{m_visible, m_visible, 0, 0};
  m_visibleRunning = false;
}

void ControlAnimation::StartHot(bool hot, int64_t nowMs) {
  m_hotTrack = Toward(m_hot, hot ? 255 : 0, kHotFadeMs, nowMs);
  m_hotRunning = true;
}

void ControlAnimation::StartVisibility(bool show, int64_t nowMs) {
  m_visibleTrack = Toward(m_visible, show ? 255 : 0, kVisibleFadeMs, nowMs);
  m_visibleRunning = true;
}

bool ControlAnimation::Step(int64_t nowMs) {
  if (m_hotRunning) {
    m_hot = m_hotTrack.ValueAt(nowMs);
    m_hotRunning = !m_hotTrack.DoneAt(nowMs);
  }
  if (m_visibleRunning) {
    m_visible = m_visibleTrack.ValueAt(nowMs);
    m_visibleRunning = !m_visibleTrack.DoneAt(nowMs);
  }
  return IsRunning();
}

AnimationFrame ControlAnimation::FrameFor(const FadeSettings& fade, int visibility, const UiRect& pos) {
  const int width = pos.GetWidth(), height = pos.GetHeight();
  const int v = std::clamp(visibility, 0, 255);
  AnimationFrame frame;
  frame.shown = UiSize{width, height};
  const bool anyKind = fade.alpha || fade.width || fade.height || fade.inOutX || fade.inOutY;
  if (fade.alpha || !anyKind) frame.alpha = v;
  if (fade.width) frame.shown.cx = width * v / 255;
  if (fade.height) frame.shown.cy = height * v / 255;
  // Slides start a whole width (height) away, on the side they come from.
  const int awayX = width - width * v / 255, awayY = height - height * v / 255;
  if (fade.inOutX) frame.offset.x = fade.inOutXDirection == 0 ? -awayX : awayX;
  if (fade.inOutY) frame.offset.y = fade.inOutYDirection == 0 ? -awayY : awayY;
  return frame;
}

}  // namespace mivo::duilib
