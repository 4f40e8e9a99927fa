#pragma once
// How a label's text style becomes what the painter asks of GDI: DrawText flags, the place of
// a wrapped block of lines, and the font quality for a text-rendering hint. The flag values
// are GDI's own; the names differ because <windows.h> defines the originals as macros.
#include <cstdint>

#include "duilib/Core/UiTypes.h"
#include "toolkit/export.h"

namespace mivo::duilib {

// The label's style bits (Label.h) ...
constexpr uint32_t DUI_DT_CENTER = 0x1;
constexpr uint32_t DUI_DT_RIGHT = 0x2;
constexpr uint32_t DUI_DT_VCENTER = 0x4;
constexpr uint32_t DUI_DT_BOTTOM = 0x8;
constexpr uint32_t DUI_DT_SINGLELINE = 0x20;
constexpr uint32_t DUI_DT_END_ELLIPSIS = 0x8000;
// ... and what painting adds to them.
constexpr uint32_t DUI_DT_WORDBREAK = 0x10;
constexpr uint32_t DUI_DT_NOPREFIX = 0x800;
constexpr uint32_t DUI_DT_EDITCONTROL = 0x2000;  // no partly shown last line

// GDI's font qualities.
constexpr int kFontQualityNonAntialiased = 3;
constexpr int kFontQualityAntialiased = 4;
constexpr int kFontQualityClearType = 5;

// The DrawText flags for a label's style: its alignment and ellipsis; text without
// DT_SINGLELINE wraps at words, and with `lineLimit` shows only the lines that fit whole; "&"
// is text, never a mnemonic.
MIVO_COMMON_API uint32_t TextFormatFor(uint32_t style, bool lineLimit);

// DrawText aligns only a single line vertically: a wrapped block `height` pixels tall goes to
// the top, the middle or the bottom of `rc` here, as the format's DT_VCENTER and DT_BOTTOM say.
// A block taller than `rc` starts at its top.
MIVO_COMMON_API UiRect PlaceTextBlock(const UiRect& rc, int height, uint32_t format);

// The GDI font quality that draws as a GDI+ text-rendering hint (0 to 5) asks: one bit per
// pixel, grey anti-aliasing or ClearType. GDI always fits glyphs to the pixel grid, so a hint
// and its grid-fitted twin draw alike. The system default keeps ClearType.
MIVO_COMMON_API int FontQualityForHint(int hint);

}  // namespace mivo::duilib
