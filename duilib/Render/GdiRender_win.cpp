// GDI half of the render context: the off-screen bitmap, clipping, fills and text.
#include <algorithm>
#include <map>
#include <utility>

#include "duilib/Core/GlobalManager.h"
#include "duilib/Render/GdiRender.h"

namespace mivo::duilib {

OffscreenBitmap::OffscreenBitmap(int width, int height) {
  if (width <= 0 || height <= 0) return;
  BITMAPINFO info{};
  info.bmiHeader.biSize = sizeof(info.bmiHeader);
  info.bmiHeader.biWidth = width;
  info.bmiHeader.biHeight = -height;  // top-down
  info.bmiHeader.biPlanes = 1;
  info.bmiHeader.biBitCount = 32;
  info.bmiHeader.biCompression = BI_RGB;
  void* bits = nullptr;
  m_dc = CreateCompatibleDC(nullptr);
  if (!m_dc) return;
  m_bitmap = CreateDIBSection(m_dc, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
  if (!m_bitmap || !bits) return;
  m_previous = SelectObject(m_dc, m_bitmap);
  m_bits = static_cast<uint32_t*>(bits);
  m_width = width;
  m_height = height;
}

OffscreenBitmap::~OffscreenBitmap() {
  if (m_dc && m_previous) SelectObject(m_dc, m_previous);
  if (m_bitmap) DeleteObject(m_bitmap);
  if (m_dc) DeleteDC(m_dc);
}

GdiRenderContext::GdiRenderContext(HDC dc, int width, int height) : m_dc(dc), m_saved(SaveDC(dc)) {
  m_clips.push_back(UiRect{0, 0, width, height});
  SetBkMode(m_dc, TRANSPARENT);
  ApplyClip();
}

GdiRenderContext::~GdiRenderContext() { RestoreDC(m_dc, m_saved); }

bool GdiRenderContext::PushClip(const UiRect& rc) {
  const UiRect& top = m_clips.back();
  UiRect clip{std::max(rc.left, top.left), std::max(rc.top, top.top), std::min(rc.right, top.right),
              std::min(rc.bottom, top.bottom)};
  const bool visible = clip.GetWidth() > 0 && clip.GetHeight() > 0;
  m_clips.push_back(visible ? clip : UiRect{});
  ApplyClip();
  return visible;
}

void GdiRenderContext::PopClip() {
  if (m_clips.size() > 1) m_clips.pop_back();
  ApplyClip();
}

void GdiRenderContext::ApplyClip() {
  const UiRect& clip = m_clips.back();
  HRGN region = CreateRectRgn(clip.left, clip.top, clip.right, clip.bottom);
  SelectClipRgn(m_dc, region);
  DeleteObject(region);
}

void GdiRenderContext::FillRect(const UiRect& rc, uint32_t argb) {
  const BYTE alpha = static_cast<BYTE>(argb >> 24);
  if (alpha == 0 || rc.GetWidth() <= 0 || rc.GetHeight() <= 0) return;
  const COLORREF color = RGB((argb >> 16) & 0xFF, (argb >> 8) & 0xFF, argb & 0xFF);
  RECT r{rc.left, rc.top, rc.right, rc.bottom};
  if (alpha == 255) {
    HBRUSH brush = CreateSolidBrush(color);
    ::FillRect(m_dc, &r, brush);
    DeleteObject(brush);
    return;
  }
  // Blend a one-pixel swatch over the area; AlphaBlend honours the DC's clip.
  OffscreenBitmap swatch(1, 1);
  if (!swatch.IsValid()) return;
  HBRUSH brush = CreateSolidBrush(color);
  RECT one{0, 0, 1, 1};
  ::FillRect(swatch.GetDC(), &one, brush);
  DeleteObject(brush);
  BLENDFUNCTION blend{AC_SRC_OVER, 0, alpha, 0};
  GdiAlphaBlend(m_dc, r.left, r.top, rc.GetWidth(), rc.GetHeight(), swatch.GetDC(), 0, 0, 1, 1, blend);
}

void GdiRenderContext::DrawString(const UiRect& rc, const std::wstring& text, uint32_t argb, int font, uint32_t style) {
  if (text.empty() || (argb >> 24) == 0) return;
  HGDIOBJ previous = SelectObject(m_dc, GetFontHandle(font));
  SetTextColor(m_dc, RGB((argb >> 16) & 0xFF, (argb >> 8) & 0xFF, argb & 0xFF));
  RECT r{rc.left, rc.top, rc.right, rc.bottom};
  // Labels are no menu items: "&" is text.
  DrawTextW(m_dc, text.c_str(), static_cast<int>(text.size()), &r, style | DT_NOPREFIX);
  SelectObject(m_dc, previous);
}

HFONT GetFontHandle(int font) {
  static std::map<int, std::pair<FontInfo, HFONT>> fonts;
  const FontInfo* wanted = GlobalManager::GetFont(font);
  FontInfo info = wanted ? *wanted : FontInfo{};
  // Kept at the size it is made with, so a change of DPI scale makes it anew.
  info.size = GlobalManager::IsDpiScaleEnabled() ? GlobalManager::ScaleByDpi(info.size) : info.size;
  auto found = fonts.find(font);
  if (found != fonts.end()) {
    if (found->second.first == info) return found->second.second;
    DeleteObject(found->second.second);  // the skin or the scale changed the font of this number
    fonts.erase(found);
  }
  LOGFONTW logFont{};
  NONCLIENTMETRICSW metrics{};
  metrics.cbSize = sizeof(metrics);
  if (SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof(metrics), &metrics, 0)) logFont = metrics.lfMessageFont;
  if (!info.name.empty()) {
    const size_t length = std::min(info.name.size(), static_cast<size_t>(LF_FACESIZE - 1));
    std::copy_n(info.name.c_str(), length, logFont.lfFaceName);
    logFont.lfFaceName[length] = 0;
  }
  logFont.lfHeight = -info.size;  // the character height in pixels, as skins give it, scaled
  logFont.lfWidth = 0;
  logFont.lfWeight = info.bold ? FW_BOLD : FW_NORMAL;
  logFont.lfItalic = info.italic;
  logFont.lfUnderline = info.underline;
  logFont.lfCharSet = DEFAULT_CHARSET;
  logFont.lfQuality = CLEARTYPE_QUALITY;
  HFONT handle = CreateFontIndirectW(&logFont);
  if (!handle) handle = static_cast<HFONT>(GetStockObject(DEFAULT_GUI_FONT));
  fonts[font] = {info, handle};
  return handle;
}

}  // namespace mivo::duilib
