#pragma once
// The window as the controls see it: the root of their tree, the lookup of controls by name,
// the registry of option groups (at most one option of a group is selected), the mouse as
// the controls hear it (the hot and the pushed control), what needs repainting, and the
// skin's attributes for the window itself. On Windows the same object is the Win32 window
// that shows the tree (Window_win.cpp).
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "base/callback/SupportWeakCallback.h"
#include "duilib/Core/Events.h"
#include "duilib/Core/ToolTip.h"
#include "duilib/Core/UiTypes.h"
#include "toolkit/export.h"
#include "toolkit/platform.h"

namespace mivo::duilib {

class Box;
class Control;
class IRenderContext;

// Sees a window's messages before the window does; `handled` true keeps them from it.
class IUIMessageFilter {
 public:
  virtual ~IUIMessageFilter() = default;
  virtual LRESULT MessageHandler(UINT message, WPARAM wParam, LPARAM lParam, bool& handled) = 0;
};

class MIVO_COMMON_API Window : public virtual nbase::SupportWeakCallback {
 public:
  Window() = default;
  // Deletes the tree; on Windows a window still open is destroyed first.
  ~Window() override;
  Window(const Window&) = delete;
  Window& operator=(const Window&) = delete;

  // Takes ownership of the root (deleting the one before) and tells the whole tree which
  // window it is in.
  void AttachRoot(Box* root);
  Box* GetRoot() const { return m_root; }
  Control* FindControl(const std::wstring& name) const;

  // The skin's attributes for the window itself (size, caption, roundcorner, sizebox, ...),
  // kept as written; the Win32 window interprets them.
  virtual void SetAttribute(const std::wstring& name, const std::wstring& value);
  std::wstring GetAttribute(const std::wstring& name) const;  // "" when not set
  const std::map<std::wstring, std::wstring>& GetAttributes() const { return m_attributes; }
  // "size": the client size the window opens with; 0,0 when not given.
  UiSize GetInitialSize() const;
  // The DPI scale changed (percent of 96 DPI): every control applies its pixel attributes
  // again at the new scale, and the tree is laid out and repainted.
  void ApplyDpiScale(int percent);
  // Inside the "caption" band (left and right insets, top, bottom) over no control the user
  // clicks: where dragging moves the window.
  bool IsCaptionAt(UiPoint pt) const;

  // The folder of this window's skin, below GlobalManager::GetResourcePath(); relative image
  // paths start there.
  virtual std::wstring GetSkinFolder() { return std::wstring(); }

  // Option groups: the members of each group in the order they joined.
  bool AddOptionGroup(const std::wstring& group, Control* control);
  void RemoveOptionGroup(const std::wstring& group, Control* control);
  const std::vector<Control*>* GetOptionGroup(const std::wstring& group) const;

  // Lays the root out in the client rectangle (the window's size changed).
  void ArrangeRoot(const UiRect& client);
  const UiRect& GetClientArea() const { return m_clientArea; }
  // A box of the tree waits to be laid out (Box::Arrange). The window lays it out before it
  // paints, hit-tests or tells what needs repainting; the Win32 window also posts itself a
  // message to do it soon, since the layout decides what is repainted.
  void ScheduleArrange();
  // Lays out now the boxes of the tree that wait.
  void ArrangeWaiting();

  // The mouse, in client coordinates: kEventMouseMove, kEventMouseButtonDown,
  // kEventMouseButtonUp, kEventMouseDoubleClick, and kEventMouseLeave when it leaves the
  // window. The control under the mouse is hot: it hears kEventMouseEnter and kEventMouseLeave
  // as that changes. A button-down goes to the control under the mouse, which keeps the mouse
  // until the button comes up: moves and the button-up go to it, wherever they are, so it
  // decides what a click is. Any handler may delete controls, or the window.
  void HandleMouseEvent(EventType type, UiPoint pt);
  // The mouse wheel turned `delta` (WM_MOUSEWHEEL's units, away from the user positive) over
  // the point: the innermost box there that can still scroll that way does.
  void HandleWheel(UiPoint pt, int delta);
  // The press was taken away (another window took the mouse): the pushed control hears a
  // button-up away from itself, which is no click.
  void CancelPress();
  // Null once the control is gone or no longer in this window.
  Control* GetHotControl() const { return Live(m_hot); }
  Control* GetPushedControl() const { return Live(m_pushed); }

  // The keyboard. At most one control has the focus: it hears kEventSetFocus when it gets it
  // and kEventKillFocus when it loses it, and the keys it wants (Control::WantsKey). A button
  // press gives the focus to the control pressed, or to the nearest box above it that takes
  // it. Null once the control is gone or no longer in this window.
  Control* GetFocus() const { return Live(m_focus); }
  // Null takes the focus away; false (nothing changed) for a control that cannot take it.
  bool SetFocus(Control* control);
  // The tab order is the skin's order (depth first, boxes before their children): the next
  // control after `from` that can take the focus, round to the start; the first one (the
  // last going back) when `from` is null or not in the tree. Null when none can.
  Control* NextFocusable(const Control* from, bool forward) const;
  // A key pressed: Tab and Shift+Tab move the focus along the tab order; a key the focused
  // control wants goes to it; otherwise Enter presses the control the skin names
  // "defaultbutton" and Escape the one it names "cancelbutton". Handlers may delete controls
  // or the window.
  void HandleKeyDown(uint32_t vk, bool shift);

  // Controls ask for a repaint of their rectangle. This keeps the union of what was asked
  // since the last paint; the Win32 window passes it on to InvalidateRect as well. The two
  // questions lay out what waits first, as that may move controls.
  virtual void Invalidate(const UiRect& rc);
  bool IsUpdateNeeded() const;
  const UiRect& GetUpdateRect() const;
  void ClearUpdate() { m_needUpdate = false; }

  // Paints the tree into `render`, clipped to the root.
  void Paint(IRenderContext& render);

  // `window` centred on `around`, then moved inside `workArea` as far as it fits.
  static UiRect CenterRect(const UiRect& window, const UiRect& around, const UiRect& workArea);

#if defined(_WIN32)
  // Creates the Win32 window of the class GetWindowClassName() (registered on first use).
  // With an empty `rc` the skin's "size" is the client size; the caller centres or moves it.
  // `layered` adds WS_EX_LAYERED, fully opaque. Null on failure (a WM_CREATE that refused).
  HWND Create(HWND parent, const std::wstring& title, DWORD style, DWORD exStyle, bool layered = false,
              UiRect rc = UiRect{});
  HWND GetHWND() const { return m_hwnd; }
  // Centres the window on its owner, or else on the work area of its monitor.
  void CenterWindow();
  void ShowWindow(bool show = true, bool takeFocus = true);
  // Asks the window to close (posts WM_CLOSE): handlers can still keep it open.
  void Close();

  // Filters see every message first, in the order they were added.
  void AddMessageFilter(IUIMessageFilter* filter);
  bool RemoveMessageFilter(IUIMessageFilter* filter);
  // Filters, then the window's own handling (size, paint, mouse, hit test), then
  // DefWindowProc.
  virtual LRESULT HandleMessage(UINT message, WPARAM wParam, LPARAM lParam);

  // Paints the tree as it is into a 32-bit image of the client size and saves it as PNG.
  // Needs no visible window: a tree laid out with ArrangeRoot renders the same.
  bool RenderToPng(const std::wstring& path);

 protected:
  virtual std::wstring GetWindowClassName() const { return L"MivoUIWindow"; }
  virtual UINT GetClassStyle() const { return CS_DBLCLKS; }
  // After the last message (WM_NCDESTROY); GetHWND() is null by then. A window made with new
  // may delete itself here.
  virtual void OnFinalMessage(HWND hwnd) {}
  // Resizes the window so that its client area has the skin's "size".
  void ApplyInitialSize();
  // Whether Create was given no rectangle.
  bool IsCreatedWithoutRect() const { return m_createdWithoutRect; }
#endif

 private:
  struct Tracked {
    Control* control = nullptr;
    std::weak_ptr<nbase::WeakFlag> alive;
  };
  Tracked Track(Control* control) const;
  Control* Live(const Tracked& tracked) const;
  Control* ControlAt(UiPoint pt) const;
  void SetHot(Control* control, UiPoint pt);
  // Paints the focus mark over the focused control, within the boxes that hold it.
  void PaintFocusMark(IRenderContext& render);
  // The platform half: passes an invalidation on to the native window, and destroys the
  // native window of a Window that is going away.
  void InvalidateNative(const UiRect& rc);
  void ReleaseNative();
  // Has ArrangeWaiting run soon (a posted message); false when nothing was posted (no native
  // window).
  bool ScheduleArrangeNative();
#if defined(_WIN32)
  static LRESULT CALLBACK WndProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);
  // Feeds the tip plan with a mouse message and does what it decides with the tip window.
  void ToolTipMouse(UINT message, UiPoint pt);
  void ActOnToolTip(const ToolTipAction& action);
  bool HandleOwnMessage(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result);
  void OnPaint();
  void PaintInto(HDC dc, int width, int height);
#endif

  Box* m_root = nullptr;
  std::map<std::wstring, std::wstring> m_attributes;
  std::map<std::wstring, std::vector<Control*>> m_optionGroups;
  UiRect m_clientArea;
  Tracked m_hot;
  Tracked m_pushed;
  Tracked m_focus;
  bool m_needUpdate = false;
  UiRect m_updateRect;
  bool m_arrangeScheduled = false;  // a box may wait to be laid out
  bool m_arrangePosted = false;     // the native window has the message to do it coming
  HWND m_hwnd = nullptr;
  std::vector<IUIMessageFilter*> m_filters;
  bool m_trackingMouse = false;
  bool m_createdWithoutRect = false;
  ToolTipPlan m_toolTip;
  nbase::WeakCallbackFlag m_toolTipWait;  // the pending wait; renewed for each
  HWND m_toolTipWindow = nullptr;
};

}  // namespace mivo::duilib
