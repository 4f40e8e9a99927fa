// Control: what it paints and in which order.
#include "duilib/Core/Control.h"
#include "duilib/Core/GlobalManager.h"
#include "duilib/Core/ImageDescription.h"
#include "duilib/Core/Window.h"
#include "duilib/Render/IRender.h"

namespace mivo::duilib {

void Control::Paint(IRenderContext& render) {
  PaintBkColor(render);
  PaintBkImage(render);
  PaintStateColor(render);
  PaintStateImage(render);
  PaintBorder(render);
  PaintText(render);
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
  render.DrawImage(dest, image);
  return true;
}

bool Control::DrawStateImage(IRenderContext& render, ImageSet set) {
  return DrawImage(render, ForState(m_images[set], m_state));
}

void Control::PaintBkColor(IRenderContext& render) { FillColor(render, m_bkColor); }

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
  const uint32_t argb = GlobalManager::ResolveColor(m_borderColor);
  if ((argb >> 24) == 0) return;
  // Sizes per side win over the one size for all sides.
  UiRect sides = m_sideBorderSize;
  if (sides == UiRect{}) sides = UiRect{m_borderSize, m_borderSize, m_borderSize, m_borderSize};
  const UiRect& pos = GetPos();
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
