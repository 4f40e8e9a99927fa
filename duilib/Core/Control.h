#pragma once
// The base control: every skin element is one, and every attribute of the element reaches it
// through SetAttribute. This class holds what those attributes set, the handlers forms attach
// to it, its own reaction to input, and what it paints.
#include <array>
#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "duilib/Core/Animation.h"
#include "duilib/Core/Events.h"
#include "duilib/Core/PlaceHolder.h"
#include "duilib/Core/UiTypes.h"
#include "toolkit/export.h"

namespace mivo::duilib {

class IRenderContext;

// What a control's fade effects are set to; the animation player runs them.
struct FadeSettings {
  bool alpha = false;       // fade the alpha when shown or hidden
  bool hot = false;         // fade between normal and hot
  bool width = false;       // animate the width when shown or hidden
  bool height = false;      // animate the height when shown or hidden
  bool inOutX = false;      // slide in and out horizontally
  int inOutXDirection = 0;  // 0 from the left, 1 from the right
  bool inOutY = false;      // slide in and out vertically
  int inOutYDirection = 0;  // 0 from the top, 1 from the bottom
};

struct GradientSettings {
  bool enabled = false;
  std::wstring beginColor, endColor;
  bool vertical = false;
  int steps = 0;
};

// Image sets by index: background 0, foreground 1; check boxes add their selected ones.
enum ImageSet { kImageSetBackground = 0, kImageSetForeground = 1, kImageSetSelected = 2, kImageSetSelectedFore = 3 };
constexpr int kImageSetCount = 4;

class MIVO_COMMON_API Control : public PlaceHolder {
 public:
  Control() = default;
  ~Control() override = default;

  // Applies one attribute; names and keywords compare exactly. Unknown names are ignored.
  virtual void SetAttribute(const std::wstring& name, const std::wstring& value);
  // Applies a list of the form  name="value" name2="value2" , in order, as ApplySkinAttribute.
  void ApplyAttributeList(const std::wstring& list);
  // Applies an attribute as a skin writes it: with DPI scaling on, a pixel attribute is scaled
  // first, and the value as written is kept so that RescaleForDpi can apply it again.
  void ApplySkinAttribute(const std::wstring& name, const std::wstring& value);
  // Applies the kept pixel attributes again at the current DPI scale (this control only).
  void RescaleForDpi();

  // State 1 (hot) also switches the hot fade on.
  void SetStateColor(ControlStateType state, const std::wstring& color);
  const std::wstring& GetStateColor(ControlStateType state) const { return m_stateColors[state]; }
  void SetStateImage(ControlStateType state, const std::wstring& image);  // the background set
  void SetForeStateImage(ControlStateType state, const std::wstring& image);
  const std::wstring& GetImage(ImageSet set, ControlStateType state) const { return m_images[set][state]; }

  // Fields, in the order of the attribute table.
  const std::wstring& GetBkColor() const { return m_bkColor; }
  const std::wstring& GetBorderColor() const { return m_borderColor; }
  const GradientSettings& GetGradient() const { return m_gradient; }
  int GetBorderSize() const { return m_borderSize; }
  const UiRect& GetSideBorderSize() const { return m_sideBorderSize; }  // left, top, right, bottom
  const UiSize& GetBorderRound() const { return m_borderRound; }
  bool IsDrawGdiplusRound() const { return m_drawGdiplusRound; }
  // The rounded border's colour while "drawgdipulsround" is on, 0xAABBGGRR; 0 for bordercolor.
  uint32_t GetGdiPenRoundColor() const { return m_gdiPenRoundColor; }
  const std::wstring& GetBkImage() const { return m_bkImage; }
  const std::wstring& GetToolTipText() const { return m_toolTipText; }
  const std::wstring& GetToolTipTextId() const { return m_toolTipTextId; }
  const std::wstring& GetDataId() const { return m_dataId; }
  bool IsEnabled() const { return m_enabled; }
  bool IsMouseEnabled() const { return m_mouseEnabled; }
  bool IsKeyboardEnabled() const { return m_keyboardEnabled; }
  bool IsContextMenuUsed() const { return m_contextMenu; }
  bool IsNoFocus() const { return m_noFocus; }
  int GetAlpha() const { return m_alpha; }
  ControlStateType GetState() const { return m_state; }
  int GetHotAlpha() const { return m_hotAlpha; }
  CursorType GetCursorType() const { return m_cursorType; }
  const UiSize& GetRenderOffset() const { return m_renderOffset; }
  const FadeSettings& GetFade() const { return m_fade; }
  bool IsFadeVisible() const { return m_fadeVisible; }
  bool IsEmptyCenter() const { return m_emptyCenter; }
  int GetImageLayout() const { return m_imageLayout; }  // 0 compress, 1 cut, 2 scale

  void SetEnabled(bool enabled);
  // Between normal and hot, with the hot fade on, the hot look fades in or out.
  void SetState(ControlStateType state);
  // With a fade set (alpha, width, height or a slide), showing and hiding animate; a control
  // on its way out is hidden when its animation ends.
  void SetVisible(bool visible) override;
  // Shows or hides with a fade: the kinds set, or an alpha fade when none is.
  void SetFadeVisible(bool visible);
  // What painting applies now for the visibility animation.
  AnimationFrame GetAnimationFrame() const;
  // Paint, through an alpha layer, an offset and a clip of `render` while the visibility
  // animation needs them.
  void PaintAnimated(IRenderContext& render);

  // Handlers of a type run in the order they were attached.
  void AttachEvent(EventType type, EventCallback callback);
  // A weak handler whose owner is gone is passed over rather than answering false, so a closed
  // form never silences the handlers attached after its own.
  template <typename Callable>
  void AttachEvent(EventType type, nbase::WeakCallback<Callable> callback) {
    AttachEvent(type, EventCallback([callback](EventArgs* args) { return callback.Expired() || callback(args); }));
  }
  void AttachClick(EventCallback callback) { AttachEvent(kEventClick, std::move(callback)); }
  template <typename Callable>
  void AttachClick(nbase::WeakCallback<Callable> callback) {
    AttachEvent(kEventClick, std::move(callback));
  }
  void DetachEvent(EventType type);
  bool HasEvent(EventType type) const { return m_eventCallbacks.count(type) > 0; }
  // Runs the handlers of the type, with this control as the sender; false when one stopped the
  // rest. A handler may destroy the control: nothing after it runs then.
  bool SendEvent(EventType type, uint64_t wParam = 0, int64_t lParam = 0);
  bool SendEvent(EventArgs& args);  // a null sender becomes this control

  // The control's own reaction to input from the window; the handlers hear the input after it.
  // Disabled controls ignore input, and so does a control with the mouse or the keyboard
  // switched off, the input of that kind.
  virtual void HandleEvent(EventArgs& args);
  // Over the control, which shows and takes the mouse.
  bool HitTest(UiPoint pt) const;
  // The control that takes the mouse at the point: this one or null (boxes look inside).
  virtual Control* FindControlAt(UiPoint pt);
  bool IsFocused() const { return m_focused; }
  // Whether a control of this kind takes the keyboard focus: what the user clicks does.
  virtual bool IsFocusable() const { return WantsClicks(); }
  // Focusable, and now able to take it: shown with all its boxes, enabled, open to the
  // keyboard and not "nofocus".
  bool CanTakeFocus() const;
  // Whether the control acts on the key itself while it has the focus (kEventKeyDown); the
  // window gives other keys their window-wide meaning.
  virtual bool WantsKey(uint32_t vk) const { return false; }
  // A control the user clicks: buttons, and any control with click handlers. A window's
  // caption does not drag the window through it.
  virtual bool WantsClicks() const { return HasEvent(kEventClick); }

  // Paints the control (a box, its children too) into `render`, already clipped to it, at its
  // "alpha" and moved by its "renderoffset": the background (colour or gradient, then image),
  // the colour and images of its state, the text, the children, the border. A control with
  // "borderround" fills and clips to its rounded shape and draws its border anti-aliased.
  virtual void Paint(IRenderContext& render);

 protected:
  // A mouse button went down on the control and has not come up yet.
  bool IsPressed() const { return m_pressed; }

  // Repaints, or lays the ancestors out again when the control sizes itself to its content
  // (an image can change that size).
  void RepaintOrArrangeForImage();

  // The parts of Paint, in its order; check boxes paint their selected looks in the state parts.
  virtual void PaintBkColor(IRenderContext& render);
  virtual void PaintBkImage(IRenderContext& render);
  virtual void PaintStateColor(IRenderContext& render);
  virtual void PaintStateImage(IRenderContext& render);
  virtual void PaintBorder(IRenderContext& render);
  virtual void PaintChildren(IRenderContext& render) {}
  bool IsRounded() const { return m_borderRound.cx > 0 && m_borderRound.cy > 0; }
  virtual void PaintText(IRenderContext& render) {}
  // Fills the control with a colour as skins name one, its alpha scaled by `alpha`; false when it
  // resolves to transparent.
  bool FillColor(IRenderContext& render, const std::wstring& color, int alpha = 255);
  // Draws an image description over the control, its alpha scaled by `alpha`; false when there
  // is none or its path is refused.
  bool DrawImage(IRenderContext& render, const std::wstring& description, int alpha = 255);
  // The hot fade runs between normal and hot: the normal look shows with the hot one over it.
  bool IsHotFading() const {
    return m_hotAlpha > 0 && m_hotAlpha < 255 && (m_state == kControlStateNormal || m_state == kControlStateHot);
  }
  // The image of the set for the current state, as ForState picks it.
  bool DrawStateImage(IRenderContext& render, ImageSet set);
  // What a state shows when the skin leaves it empty: pushed looks hot, hot and disabled look
  // normal.
  static const std::wstring& ForState(const std::array<std::wstring, kControlStateCount>& values,
                                      ControlStateType state);

  std::wstring m_bkColor;
  std::array<std::wstring, kControlStateCount> m_stateColors;
  std::wstring m_borderColor;
  GradientSettings m_gradient;
  int m_borderSize = 0;
  UiRect m_sideBorderSize;
  UiSize m_borderRound;
  bool m_drawGdiplusRound = false;
  uint32_t m_gdiPenRoundColor = 0;
  std::wstring m_bkImage;
  std::array<std::array<std::wstring, kControlStateCount>, kImageSetCount> m_images;
  std::wstring m_toolTipText;
  std::wstring m_toolTipTextId;
  std::wstring m_dataId;
  bool m_enabled = true;
  bool m_mouseEnabled = true;
  bool m_keyboardEnabled = true;
  bool m_contextMenu = false;
  bool m_noFocus = false;
  int m_alpha = 255;
  ControlStateType m_state = kControlStateNormal;
  int m_hotAlpha = 0;
  CursorType m_cursorType = kCursorArrow;
  UiSize m_renderOffset;
  FadeSettings m_fade;
  bool m_fadeVisible = false;
  bool m_emptyCenter = false;
  int m_imageLayout = 0;

 private:
  std::map<EventType, std::vector<EventCallback>> m_eventCallbacks;
  std::vector<std::pair<std::wstring, std::wstring>> m_skinSizes;  // pixel attributes as written
  bool m_pressed = false;
  bool m_focused = false;

  // Starts the ticks unless they run; false (nothing started) without a window or a ticker.
  bool RunAnimation();
  void OnAnimationTick();
  ControlAnimation m_animation;
  nbase::WeakCallbackFlag m_animationTicks;  // cancelled when the animation stops
  bool m_animationTicking = false;
};

}  // namespace mivo::duilib
