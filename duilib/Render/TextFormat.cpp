#include "duilib/Render/TextFormat.h"

namespace mivo::duilib {

uint32_t TextFormatFor(uint32_t style, bool lineLimit) {
  constexpr uint32_t kKept =
      DUI_DT_CENTER | DUI_DT_RIGHT | DUI_DT_VCENTER | DUI_DT_BOTTOM | DUI_DT_SINGLELINE | DUI_DT_END_ELLIPSIS;
  uint32_t format = (style & kKept) | DUI_DT_NOPREFIX;
  if (!(style & DUI_DT_SINGLELINE)) {
    format |= DUI_DT_WORDBREAK;
    if (lineLimit) format |= DUI_DT_EDITCONTROL;
  }
  return format;
}

UiRect PlaceTextBlock(const UiRect& rc, int height, uint32_t format) {
  if ((format & DUI_DT_SINGLELINE) || height >= rc.GetHeight()) return rc;
  UiRect placed = rc;
  if (format & DUI_DT_BOTTOM)
    placed.top = rc.bottom - height;
  else if (format & DUI_DT_VCENTER)
    placed.top = rc.top + (rc.GetHeight() - height) / 2;
  return placed;
}

int FontQualityForHint(int hint) {
  switch (hint) {
    case 1:  // single bit per pixel, grid-fitted
    case 2:  // single bit per pixel
      return kFontQualityNonAntialiased;
    case 3:  // anti-aliased, grid-fitted
    case 4:  // anti-aliased
      return kFontQualityAntialiased;
    default:  // the system's default, ClearType
      return kFontQualityClearType;
  }
}

}  // namespace mivo::duilib
