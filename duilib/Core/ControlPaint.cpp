// Control: what it paints and in which order.
#include <algorithm>
#include <vector>

#include "duilib/Core/Control.h"
#include "duilib/Core/GlobalManager.h"
#include "duilib/Core/ImageDescription.h"
#include "duilib/Core/Window.h"
#include "duilib/Render/Gradient.h"
#include "duilib/Render/IRender.h"

namespace mivo::duilib {

void Control::Paint(IRenderContext& render) {
  const int alpha = std::clamp(m_alpha, 0, 255);
  if (alpha == 0) return;
  if (alpha < 255) render.PushAlpha(GetPos(), alpha);
  const bool moved = m_renderOffset != UiSize{};
  if (moved) render.PushOffset(m_renderOffset.cx, m_renderOffset.cy);
  PaintBkColor(render);
  PaintBkImage(render);
  PaintStateColor(render);
  PaintStateImage(render);
  PaintText(render);
  PaintChildren(render);
  PaintBorder(render);  // over the children
  if (moved) render.PopOffset();
  if (alpha < 255) render.PopAlpha();
}

const std::wstring& Control::ForState(const std::array<std::wstring, kControlStateCount>& values,
                                      ControlStateType state) {
  if (state == kControlStatePushed && values[kControlStatePushed].empty()) state = kControlStateHot;
  if (values[state].empty()) state = kControlStateNormal;
  return values[state];
}

bool Control::FillColor(IRenderContext& render, const std::wstring& color, int alpha) {
  if (color.empty()) return false;
  uint32_t argb = GlobalManager::ResolveColor(color);
  argb = (((argb >> 24) * static_cast<uint32_t>(alpha) / 255) << 24) | (argb & 0xFFFFFFu);
  if ((argb >> 24) == 0) return false;
  if (IsRounded())
    render.FillRoundRect(GetPos(), m_borderRound, argb);
  else
    render.FillRect(GetPos(), argb);
  return true;
}

bool Control::DrawImage(IRenderContext& render, const std::wstring& description, int alpha) {
  ImageDescription image;
  if (description.empty() || !ParseImageDescription(description, image)) return false;
  image.alpha = image.alpha * alpha / 255;
  Window* window = GetWindow();
  image.file = ResolveImagePath(image.file, window ? window->GetSkinFolder() : std::wstring());
  if (image.file.empty()) return false;
  const UiRect& pos = GetPos();
  UiRect dest = pos;
  if (image.dest != UiRect{}) {
    // A place written in the skin's pixels, scaled like the control's own sizes.
    UiRect at = image.dest;
    if (GlobalManager::IsDpiScaleEnabled())
      at = UiRect{GlobalManager::ScaleByDpi(at.left), GlobalManager::ScaleByDpi(at.top),
                  GlobalManager::ScaleByDpi(at.right), GlobalManager::ScaleByDpi(at.bottom)};
    dest = UiRect{pos.left + at.left, pos.top + at.top, pos.left + at.right, pos.top + at.bottom};
  }
  image.layout = m_imageLayout;
  image.emptyCenter = m_emptyCenter;
  if (IsRounded()) render.PushRoundClip(pos, m_borderRound);
  render.DrawImage(dest, image);
  if (IsRounded()) render.PopClip();
  return true;
}

bool Control::DrawStateImage(IRenderContext& render, ImageSet set) {
  return DrawImage(render, ForState(m_images[set], m_state));
}

void Control::PaintBkColor(IRenderContext& render) {
  if (!m_gradient.enabled) {
    FillColor(render, m_bkColor);
    return;
  }
  const std::vector<ColorBand> bands =
      GradientBands(GetPos(), GlobalManager::ResolveColor(m_gradient.beginColor),
                    GlobalManager::ResolveColor(m_gradient.endColor), m_gradient.vertical, m_gradient.steps);
  if (IsRounded()) render.PushRoundClip(GetPos(), m_borderRound);
  for (const ColorBand& band : bands) render.FillRect(band.rc, band.argb);
  if (IsRounded()) render.PopClip();
}

void Control::PaintBkImage(IRenderContext& render) { DrawImage(render, m_bkImage); }

void Control::PaintStateColor(IRenderContext& render) {
  if (!IsHotFading()) {
    FillColor(render, ForState(m_stateColors, m_state));
    return;
  }
  FillColor(render, m_stateColors[kControlStateNormal]);
  FillColor(render, ForState(m_stateColors, kControlStateHot), m_hotAlpha);
}

void Control::PaintStateImage(IRenderContext& render) {
  for (ImageSet set : {kImageSetBackground, kImageSetForeground}) {
    if (!IsHotFading()) {
      DrawStateImage(render, set);
      continue;
    }
    DrawImage(render, m_images[set][kControlStateNormal]);
    DrawImage(render, ForState(m_images[set], kControlStateHot), m_hotAlpha);
  }
}

void Control::PaintBorder(IRenderContext& render) {
  uint32_t argb = GlobalManager::ResolveColor(m_borderColor);
  // Sizes per side win over the one size for all sides.
  UiRect sides = m_sideBorderSize;
  if (sides == UiRect{}) sides = UiRect{m_borderSize, m_borderSize, m_borderSize, m_borderSize};
  const UiRect& pos = GetPos();
  if (IsRounded()) {
    // A rounded outline has one width all round: the widest side's. The GDI+ pen colour, kept
    // as 0xAABBGGRR, stands in for the border colour when "drawgdipulsround" asks for it.
    int width = std::max({sides.left, sides.top, sides.right, sides.bottom});
    if (m_drawGdiplusRound && m_gdiPenRoundColor != 0) {
      const uint32_t pen = m_gdiPenRoundColor;
      argb = (pen & 0xFF00FF00u) | ((pen & 0xFFu) << 16) | ((pen >> 16) & 0xFFu);
      width = std::max(width, 1);
    }
    render.DrawRoundBorder(pos, m_borderRound, width, argb);
    return;
  }
  if ((argb >> 24) == 0) return;
  const UiRect bands[] = {
      {pos.left, pos.top, pos.right, pos.top + sides.top},
      {pos.left, pos.bottom - sides.bottom, pos.right, pos.bottom},
      {pos.left, pos.top + sides.top, pos.left + sides.left, pos.bottom - sides.bottom},
      {pos.right - sides.right, pos.top + sides.top, pos.right, pos.bottom - sides.bottom},
  };
  for (const UiRect& band : bands)
    if (band.GetWidth() > 0 && band.GetHeight() > 0) render.FillRect(band, argb);
}

}  // namespace mivo::duilib
