#pragma once
// A control that holds others and places them through its layout. It owns its children.
//
// A box lays its children out when their places are needed, not at every change: adding,
// removing or resizing children, or changing the padding, only marks the box (Arrange), and
// the box lays out once when it is painted, hit-tested, given a rectangle (SetPos), asked to
// (ArrangeNow), or when a position inside it is read (GetPos). A box in a window also asks the
// window to lay it out soon (Window::ScheduleArrange), so what changed gets repainted.
#include <memory>
#include <vector>

#include "duilib/Core/Control.h"
#include "duilib/Core/Layout.h"
#include "duilib/Core/ScrollBar.h"
#include "toolkit/export.h"

namespace mivo::duilib {

class MIVO_COMMON_API Box : public Control {
 public:
  explicit Box(Layout* layout = new Layout());
  ~Box() override;

  // The layout's names first ("padding", "childmargin"), then "mousechild", the scroll bar's
  // ("vscrollbar", "scrollbarwidth", "scrolltrackcolor", "scrollthumbcolor",
  // "scrollthumbhotcolor", "scrollarrowcolor"), then the control's.
  void SetAttribute(const std::wstring& name, const std::wstring& value) override;

  // Painting, layout, hit testing and deletion go down the tree one call a level: a tree is
  // never deeper than this many controls (skins nest at most WindowBuilder::kMaxNesting).
  static constexpr int kMaxTreeDepth = 512;

  // Takes ownership; false for null, a control that already has a parent, this box or one of
  // its ancestors (a loop), or a child whose subtree would make the tree deeper than
  // kMaxTreeDepth.
  bool Add(Control* child);
  bool AddAt(Control* child, size_t index);
  // Deletes the child; false if it is not one.
  bool Remove(Control* child);
  void RemoveAll();
  size_t GetCount() const { return m_items.size(); }
  Control* GetItemAt(size_t index) const { return index < m_items.size() ? m_items[index] : nullptr; }
  const std::vector<Control*>& GetItems() const { return m_items; }
  // The first control named `name` in this box's subtree (the box itself included), or null.
  Control* FindSubControl(const std::wstring& name);

  Layout* GetLayout() const { return m_layout.get(); }

  // The vertical scroll bar ("vscrollbar"): content taller than the box scrolls inside it, and
  // the bar shows at its right edge while it does.
  bool HasVScrollBar() const;
  int GetScrollPos() const;
  // Scrolls to `pos` (kept within the range); false when that did not move the content.
  bool ScrollTo(int pos);
  // Scrolls as little as it takes to show `control`, one of the controls inside.
  void ScrollIntoView(const Control* control);
  // The mouse wheel over the box (`delta` in WM_MOUSEWHEEL's units); false when it could not move.
  bool Wheel(int delta);
  // Where the bar is; empty while the content fits.
  UiRect GetVScrollBarRect();
  // The bar's arrows, track and thumb take the mouse, then the control's own reaction.
  void HandleEvent(EventArgs& args) override;

  // The deepest visible control under the point that takes the mouse. Children are clipped to
  // the box; floating children lie above the others and later ones above earlier ones. A box
  // or control with the mouse off lets the point through to what is beneath it, and a box
  // whose children are off for the mouse ("mousechild") takes their part of it itself.
  Control* FindControlAt(UiPoint pt) override;
  bool IsMouseChildEnabled() const { return m_mouseChild; }
  void SetMouseChildEnabled(bool enabled) { m_mouseChild = enabled; }

  void SetWindow(Window* window, Box* parent) override;
  // Takes the rectangle and lays the children out inside it, less the padding.
  void SetPos(UiRect pos) override;
  // Auto sizes come from the children (AjustSizeByChild); other sizes stay as they are.
  UiSize EstimateSize(UiSize available) override;
  // Marks the children to be laid out again within the current rectangle. A box sized by its
  // children may change size with them: then its own box is marked instead.
  void Arrange() override;
  // Lays out now what waits: the boxes above this one first (their layout may move it), then
  // this box and every box below it.
  void ArrangeNow();
  // Lays out what waits, then paints as every control does.
  void Paint(IRenderContext& render) override;

 protected:
  // The visible children clipped to themselves (and so to the box): floating ones last, as
  // they lie above the others; then the scroll bar.
  void PaintChildren(IRenderContext& render) override;
  // The vertical scroll bar, while it shows: boxes that paint their own children end with it.
  void PaintVScrollBar(IRenderContext& render);

 private:
  friend class PlaceHolder;
  friend class Layout;

  static Box* AsBox(PlaceHolder* control) { return control->m_isBox ? static_cast<Box*>(control) : nullptr; }
  // How many controls the subtree of `top` holds on its longest path, counted without
  // recursion; stops counting past `limit`.
  static int SubtreeHeight(const Box* top, int limit);
  // Lays out the boxes above `control` that wait, the topmost first, until none does.
  static void ArrangeWaitingAbove(const PlaceHolder* control) {
    for (const Box* up = control->m_parent; up; up = up->m_parent)
      if (up->m_needsArrange) return ArrangeTopmostAbove(control);
  }
  static void ArrangeTopmostAbove(const PlaceHolder* control);
  // Lays this box out if it waits, then the waiting boxes below it.
  void ArrangeWaitingBelow();
  // Marks this box and those above it as having a waiting box below.
  void MarkPendingBelow();

  // The scroll bar's part of SetAttribute; false for a name that is not its.
  bool SetScrollAttribute(const std::wstring& name, const std::wstring& value);
  // The content rectangle moved by the scroll position and as tall as the content, less the
  // bar; `content` itself while everything fits.
  UiRect ScrolledContent(const UiRect& content);
  Control* ScrollBarAt(UiPoint pt);

  std::unique_ptr<Layout> m_layout;
  std::unique_ptr<VScrollBar> m_vscroll;
  bool m_vscrollOff = false;  // looks given, "vscrollbar" not (yet)
  std::vector<Control*> m_items;
  std::vector<LayoutRecord*> m_records;  // the children's, in the same order
  bool m_mouseChild = true;
};

class MIVO_COMMON_API VBox : public Box {
 public:
  VBox() : Box(new VLayout()) {}
};

class MIVO_COMMON_API HBox : public Box {
 public:
  HBox() : Box(new HLayout()) {}
};

}  // namespace mivo::duilib
