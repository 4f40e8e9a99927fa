#pragma once
// Geometry and the small enumerations every part of the framework shares.

namespace mivo::duilib {

struct UiPoint {
  int x = 0, y = 0;
  friend bool operator==(const UiPoint&, const UiPoint&) = default;
};

struct UiRect {
  int left = 0, top = 0, right = 0, bottom = 0;
  int GetWidth() const { return right - left; }
  int GetHeight() const { return bottom - top; }
  // Right and bottom edges are outside, as with Win32's PtInRect: neighbours never share a pixel.
  bool Contains(UiPoint pt) const { return pt.x >= left && pt.x < right && pt.y >= top && pt.y < bottom; }
  friend bool operator==(const UiRect&, const UiRect&) = default;
};

struct UiSize {
  int cx = 0, cy = 0;
  friend bool operator==(const UiSize&, const UiSize&) = default;
};

// Fixed sizes that are not pixels.
constexpr int DUI_LENGTH_STRETCH = -1;  // takes a share of the space its box has left
constexpr int DUI_LENGTH_AUTO = -2;     // as large as the content (text, image)
// The default maximum size: no limit in practice.
constexpr int DUI_LENGTH_NOLIMIT = 9999999;

enum HorAlignType { kHorAlignLeft = 0, kHorAlignCenter = 1, kHorAlignRight = 2 };
enum VerAlignType { kVerAlignTop = 0, kVerAlignCenter = 1, kVerAlignBottom = 2 };

enum ControlStateType {
  kControlStateNormal = 0,
  kControlStateHot = 1,
  kControlStatePushed = 2,
  kControlStateDisabled = 3,
};
constexpr int kControlStateCount = 4;

enum CursorType { kCursorArrow = 0, kCursorHand = 1, kCursorHandIbeam = 2 };

}  // namespace mivo::duilib
