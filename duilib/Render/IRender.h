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
  virtual void PopClip() = 0;

  // Colours are 0xAARRGGBB; alpha below 255 blends.
  virtual void FillRect(const UiRect& rc, uint32_t argb) = 0;
  // `image.file` is a full path; the image goes into `dest` per its source, corners and alpha.
  // A file that cannot be read draws nothing.
  virtual void DrawImage(const UiRect& dest, const ImageDescription& image) = 0;
  // `style` is a label's text style (GDI's DrawText flags); `font` an index of the font table.
  virtual void DrawString(const UiRect& rc, const std::wstring& text, uint32_t argb, int font, uint32_t style) = 0;
};

}  // namespace mivo::duilib
