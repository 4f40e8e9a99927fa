#pragma once
// The arithmetic of a control's fades and slides: values that move from where they are to where
// they are going at a constant pace, measured in milliseconds of a clock the caller reads, and
// what painting applies while they move. Driving them (the 16 ms ticks) is the caller's job.
#include <cstdint>
#include <functional>
#include <memory>

#include "base/callback/SupportWeakCallback.h"
#include "duilib/Core/UiTypes.h"
#include "toolkit/export.h"

namespace mivo::duilib {

struct FadeSettings;

// One value moving from `from` to `to` over `durationMs`, linearly in time. It ends exactly at
// `to`, and a duration of 0 or less is there at once.
struct AnimationTrack {
  int from = 0;
  int to = 0;
  int64_t startMs = 0;
  int durationMs = 0;
  int ValueAt(int64_t nowMs) const;
  bool DoneAt(int64_t nowMs) const { return nowMs - startMs >= durationMs; }
};

// What painting applies to a control while its visibility animates: its alpha, how far it is
// moved, and how much of it shows from its top left corner (the rest shows what is behind it).
struct AnimationFrame {
  int alpha = 255;
  UiPoint offset;
  UiSize shown;
  // Nothing to apply: the control paints as it is.
  bool IsIdentity(const UiRect& pos) const {
    return alpha >= 255 && offset == UiPoint{} && shown.cx >= pos.GetWidth() && shown.cy >= pos.GetHeight();
  }
};

// A control's two animations: the hot fade (0 normal to 255 hot) and its visibility (0 hidden
// to 255 shown). Each starts from where it is, so a fade turned round halfway takes half the
// time back.
class MIVO_COMMON_API ControlAnimation {
 public:
  static constexpr int kHotFadeMs = 200;
  static constexpr int kVisibleFadeMs = 250;
  // The pace of the ticks that drive them.
  static constexpr uint32_t kTickMs = 16;

  // Sets where the animations stand without moving (no fade).
  void SetHot(int alpha);
  void SetVisibility(int value);
  // Starts moving toward hot (255) or normal (0); toward shown (255) or hidden (0).
  void StartHot(bool hot, int64_t nowMs);
  void StartVisibility(bool show, int64_t nowMs);
  // Moves both to `nowMs`; true while either still moves.
  bool Step(int64_t nowMs);
  bool IsRunning() const { return m_hotRunning || m_visibleRunning; }

  int GetHotAlpha() const { return m_hot; }
  int GetVisibility() const { return m_visible; }
  // Hiding, still on its way or arrived: the control is hidden once the animation stops.
  bool IsHiding() const { return m_visibleTrack.to == 0 && (m_visibleRunning || m_visible == 0); }

  // What a control at `pos` with these settings shows at `visibility`. With none of alpha, width,
  // height or the slides set, a visibility fade is an alpha fade.
  static AnimationFrame FrameFor(const FadeSettings& fade, int visibility, const UiRect& pos);

 private:
  AnimationTrack Toward(int from, int to, int fullMs, int64_t nowMs) const;

  AnimationTrack m_hotTrack;
  AnimationTrack m_visibleTrack{255, 255, 0, 0};
  int m_hot = 0;
  int m_visible = 255;
  bool m_hotRunning = false;
  bool m_visibleRunning = false;
};

// Where animations get their time and their ticks: the timer manager on Windows, a fake in
// tests. Without one, every animation ends at once.
class MIVO_COMMON_API AnimationTicker {
 public:
  virtual ~AnimationTicker() = default;
  virtual int64_t NowMs() = 0;
  // Calls `tick` every kTickMs on the UI thread while `owner` lives.
  virtual void Every(const std::weak_ptr<nbase::WeakFlag>& owner, std::function<void()> tick) = 0;
};

// The platform's ticker (null where there is none) unless one was set; null restores it.
MIVO_COMMON_API AnimationTicker* GetAnimationTicker();
MIVO_COMMON_API void SetAnimationTicker(AnimationTicker* ticker);

}  // namespace mivo::duilib
