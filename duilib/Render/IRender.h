#pragma once
// What controls paint through. The controls decide what to draw, in what order and with which
// colours; a render context only puts pixels down (GDI and GDI+ on Windows, a recorder in the
// tests).
#include <cstdint>
#include <string>

#include "duilib/Core/ImageDescription.h"
#include "duilib/Core/UiTypes.h"

namespace mivo::duilib {

class IRenderContext {
 public:
  virtual ~IRenderContext() = default;

  // Narrows the clip to `rc` within the current clip until the matching PopClip. False when
  // nothing is left to draw in (callers still pop).
  virtual bool PushClip(const UiRect& rc) = 0;
  // The same with the corners rounded by an ellipse of `round` (width, height), as a rounded
  // border draws them: the children of a rounded box stay inside its corners.
  virtual bool PushRoundClip(const UiRect& rc, UiSize round) { return PushClip(rc); }
  virtual void PopClip() = 0;

  // Moves everything drawn after it, clips included, by (dx, dy) until the matching PopOffset;
  // offsets add up.
  virtual void PushOffset(int dx, int dy) {}
  virtual void PopOffset() {}

  // Until the matching PopAlpha, drawing within `rc` goes to a layer that is then laid over
  // what was there with `alpha` (0 to 255): a half-transparent control shows its parent
  // through, while its own parts cover each other as usual.
  virtual void PushAlpha(const UiRect& rc, int alpha) {}
  virtual void PopAlpha() {}

  // Colours are 0xAARRGGBB; alpha below 255 blends.
  virtual void FillRect(const UiRect& rc, uint32_t argb) = 0;
  // A rectangle with corners rounded as PushRoundClip's, its edge anti-aliased.
  virtual void FillRoundRect(const UiRect& rc, UiSize round, uint32_t argb) { FillRect(rc, argb); }
  // The outline of that shape, `width` pixels wide inside `rc`, anti-aliased.
  virtual void DrawRoundBorder(const UiRect& rc, UiSize round, int width, uint32_t argb) {}
  // `image.file` is a full path; the image goes into `dest` per its source, corners, alpha,
  // tiling and layout. A file that cannot be read draws nothing.
  virtual void DrawImage(const UiRect& dest, const ImageDescription& image) = 0;
  // `format` is GDI's DrawText flags (see TextFormat.h); `font` an index of the font table;
  // `renderingHint` a GDI+ text-rendering hint (0 the system's default).
  virtual void DrawString(const UiRect& rc, const std::wstring& text, uint32_t argb, int font, uint32_t format,
                          int renderingHint) = 0;
};

}  // namespace mivo::duilib
