#pragma once
// The arithmetic of a vertical scroll bar, apart from any control: how far content taller than
// its view can scroll, where the arrows, the track and the thumb lie in the bar's rectangle,
// which part a point is on, and where a drag, a wheel turn, a page or an item to show moves
// the position to. Boxes keep one and act on what it says.
#include <string>

#include "duilib/Core/UiTypes.h"
#include "toolkit/export.h"

namespace mivo::duilib {

enum ScrollPart {
  kScrollNone = 0,
  kScrollUpArrow,
  kScrollPageUp,  // the track above the thumb
  kScrollThumb,
  kScrollPageDown,  // the track below the thumb
  kScrollDownArrow,
};

// Where the parts of a bar lie.
struct ScrollBarPlaces {
  UiRect upArrow, track, thumb, downArrow;
};

class MIVO_COMMON_API VScrollModel {
 public:
  // One wheel notch (120) scrolls this many lines; an arrow one line.
  static constexpr int kWheelLines = 3;
  static constexpr int kWheelDelta = 120;

  // `content` pixels shown in a view `view` pixels high; the position keeps within the new range.
  void SetRange(int content, int view);
  int GetContent() const { return m_content; }
  int GetView() const { return m_view; }
  int GetMax() const { return m_content > m_view ? m_content - m_view : 0; }
  bool IsNeeded() const { return m_content > m_view; }
  int GetPos() const { return m_pos; }
  // Clamped to 0..GetMax(); true when the position changed.
  bool SetPos(int pos);

  // The sizes the bar is drawn with: arrow height, smallest thumb, one line.
  void SetMetrics(int arrow, int minThumb, int line) {
    m_arrow = arrow;
    m_minThumb = minThumb;
    m_line = line;
  }
  int GetLine() const { return m_line; }

  // The parts within the bar's rectangle: arrows at the ends (each at most half the bar), the
  // thumb in the track between them, as long as the view's share of the content.
  ScrollBarPlaces Place(const UiRect& bar) const;
  ScrollPart PartAt(const UiRect& bar, UiPoint pt) const;
  // The position after the thumb, grabbed at `pressY` when the position was `pressPos`, is
  // dragged to `y`.
  int DragTo(const UiRect& bar, int pressPos, int pressY, int y) const;
  // The position after a click on a part: a line for an arrow, a view less one line for the
  // track (at least a line).
  int StepFor(ScrollPart part) const;
  // The position after the wheel turned `delta` (WM_MOUSEWHEEL's units, up positive).
  int WheelTo(int delta) const;
  // The position that shows content rows `top` to `bottom` (content coordinates), moving as
  // little as it can; the top wins when they do not fit.
  int ShowRange(int top, int bottom) const;

 private:
  int Clamp(int pos) const { return pos < 0 ? 0 : (pos > GetMax() ? GetMax() : pos); }

  int m_content = 0;
  int m_view = 0;
  int m_pos = 0;
  int m_arrow = 12;
  int m_minThumb = 10;
  int m_line = 20;
};

// A box's vertical scroll bar: the arithmetic, where the bar is, what the skin paints it with
// (colours as skins name them) and a drag of its thumb under way.
struct VScrollBar {
  VScrollModel model;
  UiRect bar;  // empty while the content fits
  int width = 12;
  std::wstring trackColor = L"#FFF0F0F0";
  std::wstring thumbColor = L"#FFC2C2C2";
  std::wstring thumbHotColor = L"#FF9A9A9A";  // while dragged or under the mouse
  std::wstring arrowColor = L"#FF606060";
  ScrollPart pressed = kScrollNone;
  bool thumbHot = false;
  int pressPos = 0;
  int pressY = 0;
};

}  // namespace mivo::duilib
