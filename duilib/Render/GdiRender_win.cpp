// GDI half of the render context: the off-screen bitmap, clipping (rounded too), offsets,
// alpha layers, fills, anti-aliased rounded shapes and text.
#include <algorithm>
#include <map>
#include <utility>

#include "duilib/Core/GlobalManager.h"
#include "duilib/Render/GdiRender.h"
#include "duilib/Render/RoundRect.h"
#include "duilib/Render/TextFormat.h"

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
  m_clips.push_back(Clip{UiRect{0, 0, width, height}, UiRect{}, UiSize{}});
  SetBkMode(m_dc, TRANSPARENT);
  ApplyClip();
}

GdiRenderContext::~GdiRenderContext() { RestoreDC(m_dc, m_saved); }

HDC GdiRenderContext::Target() const {
  for (auto layer = m_layers.rbegin(); layer != m_layers.rend(); ++layer)
    if (layer->pixels) return layer->pixels->GetDC();
  return m_dc;
}

UiRect GdiRenderContext::ToWindow(const UiRect& rc) const {
  const UiPoint offset = m_offsets.empty() ? UiPoint{} : m_offsets.back();
  return UiRect{rc.left + offset.x, rc.top + offset.y, rc.right + offset.x, rc.bottom + offset.y};
}

UiRect GdiRenderContext::ToDevice(const UiRect& rc) const { return WindowToDevice(ToWindow(rc)); }

UiRect GdiRenderContext::WindowToDevice(const UiRect& rc) const {
  UiRect device = rc;
  for (auto layer = m_layers.rbegin(); layer != m_layers.rend(); ++layer) {
    if (!layer->pixels) continue;
    device = UiRect{device.left - layer->area.left, device.top - layer->area.top, device.right - layer->area.left,
                    device.bottom - layer->area.top};
    break;
  }
  return device;
}

bool GdiRenderContext::PushClip(const UiRect& rc) { return PushClipShape(rc, UiSize{}); }

bool GdiRenderContext::PushRoundClip(const UiRect& rc, UiSize round) { return PushClipShape(rc, round); }

bool GdiRenderContext::PushClipShape(const UiRect& rc, UiSize round) {
  const UiRect shape = ToWindow(rc);
  const UiRect& top = m_clips.back().rect;
  UiRect clip{std::max(shape.left, top.left), std::max(shape.top, top.top), std::min(shape.right, top.right),
              std::min(shape.bottom, top.bottom)};
  const bool visible = clip.GetWidth() > 0 && clip.GetHeight() > 0;
  const bool rounded = round.cx > 0 && round.cy > 0;
  m_clips.push_back(Clip{visible ? clip : UiRect{}, shape, rounded ? round : UiSize{}});
  ApplyClip();
  return visible;
}

void GdiRenderContext::PopClip() {
  if (m_clips.size() > 1) m_clips.pop_back();
  ApplyClip();
}

void GdiRenderContext::ApplyClip() {
  const UiRect clip = WindowToDevice(m_clips.back().rect);
  HRGN region = CreateRectRgn(clip.left, clip.top, clip.right, clip.bottom);
  // Every rounded clip on the stack cuts its corners, in device coordinates like the rest.
  for (const Clip& rounded : m_clips) {
    if (rounded.round.cx <= 0 || clip.GetWidth() <= 0) continue;
    const UiRect shape = WindowToDevice(rounded.shape);
    HRGN corners = CreateRectRgn(0, 0, 0, 0);
    const auto spans = RoundRectSpans(shape.GetWidth(), shape.GetHeight(), rounded.round);
    for (size_t row = 0; row < spans.size();) {
      size_t next = row + 1;  // rows with the same span make one rectangle
      while (next < spans.size() && spans[next] == spans[row]) ++next;
      HRGN band = CreateRectRgn(shape.left + spans[row].first, shape.top + static_cast<int>(row),
                                shape.left + spans[row].second, shape.top + static_cast<int>(next));
      CombineRgn(corners, corners, band, RGN_OR);
      DeleteObject(band);
      row = next;
    }
    CombineRgn(region, region, corners, RGN_AND);
    DeleteObject(corners);
  }
  SelectClipRgn(Target(), region);
  DeleteObject(region);
}

void GdiRenderContext::PushOffset(int dx, int dy) {
  const UiPoint offset = m_offsets.empty() ? UiPoint{} : m_offsets.back();
  m_offsets.push_back(UiPoint{offset.x + dx, offset.y + dy});
}

void GdiRenderContext::PopOffset() {
  if (!m_offsets.empty()) m_offsets.pop_back();
}

void GdiRenderContext::PushAlpha(const UiRect& rc, int alpha) {
  const UiRect area = ToWindow(rc);
  const UiRect& top = m_clips.back().rect;
  const UiRect shown{std::max(area.left, top.left), std::max(area.top, top.top), std::min(area.right, top.right),
                     std::min(area.bottom, top.bottom)};
  Layer layer{nullptr, shown, std::clamp(alpha, 0, 255)};
  if (layer.alpha < 255 && shown.GetWidth() > 0 && shown.GetHeight() > 0) {
    // The layer starts as a copy of what is below it, so that blending it back changes only
    // what was drawn into it.
    auto pixels = std::make_unique<OffscreenBitmap>(shown.GetWidth(), shown.GetHeight());
    if (pixels->IsValid()) {
      const UiRect below = WindowToDevice(shown);
      BitBlt(pixels->GetDC(), 0, 0, shown.GetWidth(), shown.GetHeight(), Target(), below.left, below.top, SRCCOPY);
      SetBkMode(pixels->GetDC(), TRANSPARENT);
      layer.pixels = std::move(pixels);
    }
  }
  m_layers.push_back(std::move(layer));
  ApplyClip();
}

void GdiRenderContext::PopAlpha() {
  if (m_layers.empty()) return;
  Layer layer = std::move(m_layers.back());
  m_layers.pop_back();
  ApplyClip();
  if (!layer.pixels) return;
  GdiFlush();
  const UiRect below = WindowToDevice(layer.area);
  BLENDFUNCTION blend{AC_SRC_OVER, 0, static_cast<BYTE>(layer.alpha), 0};
  GdiAlphaBlend(Target(), below.left, below.top, below.GetWidth(), below.GetHeight(), layer.pixels->GetDC(), 0, 0,
                layer.area.GetWidth(), layer.area.GetHeight(), blend);
}

void GdiRenderContext::FillRect(const UiRect& rc, uint32_t argb) {
  const BYTE alpha = static_cast<BYTE>(argb >> 24);
  if (alpha == 0 || rc.GetWidth() <= 0 || rc.GetHeight() <= 0) return;
  const COLORREF color = RGB((argb >> 16) & 0xFF, (argb >> 8) & 0xFF, argb & 0xFF);
  const UiRect device = ToDevice(rc);
  RECT r{device.left, device.top, device.right, device.bottom};
  if (alpha == 255) {
    HBRUSH brush = CreateSolidBrush(color);
    ::FillRect(Target(), &r, brush);
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
  GdiAlphaBlend(Target(), r.left, r.top, rc.GetWidth(), rc.GetHeight(), swatch.GetDC(), 0, 0, 1, 1, blend);
}

void GdiRenderContext::FillRoundRect(const UiRect& rc, UiSize round, uint32_t argb) {
  if (round.cx <= 0 || round.cy <= 0) return FillRect(rc, argb);
  if ((argb >> 24) == 0 || rc.GetWidth() <= 0 || rc.GetHeight() <= 0) return;
  BlendPixels(ToDevice(rc), CoverageToPixels(RoundRectCoverage(rc.GetWidth(), rc.GetHeight(), round, 0), argb));
}

void GdiRenderContext::DrawRoundBorder(const UiRect& rc, UiSize round, int width, uint32_t argb) {
  if (width <= 0 || (argb >> 24) == 0 || rc.GetWidth() <= 0 || rc.GetHeight() <= 0) return;
  BlendPixels(ToDevice(rc), CoverageToPixels(RoundRectCoverage(rc.GetWidth(), rc.GetHeight(), round, width), argb));
}

void GdiRenderContext::BlendPixels(const UiRect& device, const std::vector<uint32_t>& pixels) {
  OffscreenBitmap source(device.GetWidth(), device.GetHeight());
  if (!source.IsValid() || pixels.size() != static_cast<size_t>(device.GetWidth()) * device.GetHeight()) return;
  std::copy(pixels.begin(), pixels.end(), const_cast<uint32_t*>(source.GetBits()));
  BLENDFUNCTION blend{AC_SRC_OVER, 0, 255, AC_SRC_ALPHA};
  GdiAlphaBlend(Target(), device.left, device.top, device.GetWidth(), device.GetHeight(), source.GetDC(), 0, 0,
                device.GetWidth(), device.GetHeight(), blend);
}

void GdiRenderContext::DrawString(const UiRect& rc, const std::wstring& text, uint32_t argb, int font, uint32_t format,
                                  int renderingHint) {
  const int alpha = static_cast<int>(argb >> 24);
  if (text.empty() || alpha == 0) return;
  // DrawText knows no transparency: half-transparent text is drawn whole into a layer.
  if (alpha < 255) {
    PushAlpha(rc, alpha);
    DrawString(rc, text, argb | 0xFF000000u, font, format, renderingHint);
    PopAlpha();
    return;
  }
  HDC dc = Target();
  HGDIOBJ previous = SelectObject(dc, GetFontHandle(font, FontQualityForHint(renderingHint)));
  SetTextColor(dc, RGB((argb >> 16) & 0xFF, (argb >> 8) & 0xFF, argb & 0xFF));
  UiRect device = ToDevice(rc);
  if (!(format & DT_SINGLELINE) && (format & (DT_VCENTER | DT_BOTTOM))) {
    RECT measured{device.left, device.top, device.right, device.top};
    DrawTextW(dc, text.c_str(), static_cast<int>(text.size()), &measured, format | DT_CALCRECT);
    device = PlaceTextBlock(device, measured.bottom - measured.top, format);
  }
  RECT r{device.left, device.top, device.right, device.bottom};
  DrawTextW(dc, text.c_str(), static_cast<int>(text.size()), &r, format);
  SelectObject(dc, previous);
}

HFONT GetFontHandle(int font, int quality) {
  static std::map<std::pair<int, int>, std::pair<FontInfo, HFONT>> fonts;
  const FontInfo* wanted = GlobalManager::GetFont(font);
  FontInfo info = wanted ? *wanted : FontInfo{};
  // Kept at the size it is made with, so a change of DPI scale makes it anew.
  info.size = GlobalManager::IsDpiScaleEnabled() ? GlobalManager::ScaleByDpi(info.size) : info.size;
  const std::pair<int, int> key{font, quality};
  auto found = fonts.find(key);
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
  logFont.lfQuality = static_cast<BYTE>(quality);
  HFONT handle = CreateFontIndirectW(&logFont);
  if (!handle) handle = static_cast<HFONT>(GetStockObject(DEFAULT_GUI_FONT));
  fonts[key] = {info, handle};
  return handle;
}

}  // namespace mivo::duilib
