#pragma once
// The render context of the Win32 window (Windows only): GDI for fills and text, GDI+ for
// images, painting into a 32-bit DIB that the window then copies to the screen or saves.
#include <windows.h>

#include <cstdint>
#include <string>
#include <vector>

#include "duilib/Render/IRender.h"

namespace mivo::duilib {

// A 32-bit top-down DIB selected into a memory DC of its own, for painting off-screen.
class OffscreenBitmap {
 public:
  OffscreenBitmap(int width, int height);
  ~OffscreenBitmap();
  OffscreenBitmap(const OffscreenBitmap&) = delete;
  OffscreenBitmap& operator=(const OffscreenBitmap&) = delete;

  bool IsValid() const { return m_bits != nullptr; }
  HDC GetDC() const { return m_dc; }
  // Rows top to bottom, 0x00RRGGBB per pixel (GDI leaves the top byte as it pleases).
  const uint32_t* GetBits() const { return m_bits; }
  int GetWidth() const { return m_width; }
  int GetHeight() const { return m_height; }

 private:
  HDC m_dc = nullptr;
  HBITMAP m_bitmap = nullptr;
  HGDIOBJ m_previous = nullptr;
  uint32_t* m_bits = nullptr;
  int m_width = 0, m_height = 0;
};

class GdiRenderContext : public IRenderContext {
 public:
  // Paints into `dc`; everything outside (0,0)-(width,height) is clipped away.
  GdiRenderContext(HDC dc, int width, int height);
  ~GdiRenderContext() override;

  bool PushClip(const UiRect& rc) override;
  void PopClip() override;
  void FillRect(const UiRect& rc, uint32_t argb) override;
  void DrawImage(const UiRect& dest, const ImageDescription& image) override;
  void DrawString(const UiRect& rc, const std::wstring& text, uint32_t argb, int font, uint32_t style) override;

 private:
  void ApplyClip();

  HDC m_dc;
  int m_saved;
  std::vector<UiRect> m_clips;
};

// The GDI font for an index of the font table, made once; the system's message font at 12
// pixels for an index the table does not have.
HFONT GetFontHandle(int font);

// Saves pixels laid out as OffscreenBitmap's (alpha ignored) as a PNG file, with GDI+.
bool SavePixelsAsPng(const uint32_t* pixels, int width, int height, const std::wstring& path);

}  // namespace mivo::duilib
