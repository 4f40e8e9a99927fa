#pragma once
// The render context of the Win32 window (Windows only): GDI for fills and text, GDI+ for
// decoding images, AlphaBlend for what is transparent or anti-aliased, painting into a 32-bit
// DIB that the window then copies to the screen or saves.
#include <windows.h>

#include <cstdint>
#include <memory>
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
  bool PushRoundClip(const UiRect& rc, UiSize round) override;
  void PopClip() override;
  void PushOffset(int dx, int dy) override;
  void PopOffset() override;
  void PushAlpha(const UiRect& rc, int alpha) override;
  void PopAlpha() override;
  void FillRect(const UiRect& rc, uint32_t argb) override;
  void FillRoundRect(const UiRect& rc, UiSize round, uint32_t argb) override;
  void DrawRoundBorder(const UiRect& rc, UiSize round, int width, uint32_t argb) override;
  void DrawImage(const UiRect& dest, const ImageDescription& image) override;
  void DrawString(const UiRect& rc, const std::wstring& text, uint32_t argb, int font, uint32_t format,
                  int renderingHint) override;

 private:
  // A clip in window coordinates; a rounded one keeps its whole shape too.
  struct Clip {
    UiRect rect;
    UiRect shape;
    UiSize round;
  };
  // A half-transparent part being drawn: its own bitmap over `area` (window coordinates),
  // laid over the one below with `alpha` when it ends. Null `pixels`: nothing to blend.
  struct Layer {
    std::unique_ptr<OffscreenBitmap> pixels;
    UiRect area;
    int alpha = 255;
  };

  // Where drawing goes now, and a rectangle given by a control in its coordinates.
  HDC Target() const;
  UiRect ToDevice(const UiRect& rc) const;
  UiRect ToWindow(const UiRect& rc) const;
  UiRect WindowToDevice(const UiRect& rc) const;
  void ApplyClip();
  bool PushClipShape(const UiRect& rc, UiSize round);
  // Lays premultiplied pixels of rc's size over rc (device coordinates).
  void BlendPixels(const UiRect& device, const std::vector<uint32_t>& pixels);

  HDC m_dc;
  int m_saved;
  std::vector<Clip> m_clips;
  std::vector<UiPoint> m_offsets;  // the sum of the pushed offsets, one entry per push
  std::vector<Layer> m_layers;
};

// The GDI font for an index of the font table in a GDI font quality, made once; the system's
// message font at 12 pixels for an index the table does not have.
HFONT GetFontHandle(int font, int quality);

// Saves pixels laid out as OffscreenBitmap's (alpha ignored) as a PNG file, with GDI+.
bool SavePixelsAsPng(const uint32_t* pixels, int width, int height, const std::wstring& path);

}  // namespace mivo::duilib
