#include "duilib/Render/Gradient.h"

#include <algorithm>

namespace mivo::duilib {

uint32_t MixColor(uint32_t from, uint32_t to, int part, int whole) {
  if (whole <= 0) return from;
  uint32_t mixed = 0;
  for (int shift = 0; shift < 32; shift += 8) {
    const int64_t a = (from >> shift) & 0xFF, b = (to >> shift) & 0xFF;
    const int64_t channel = (a * (whole - part) + b * part + whole / 2) / whole;
    mixed |= static_cast<uint32_t>(std::clamp<int64_t>(channel, 0, 255)) << shift;
  }
  return mixed;
}

std::vector<ColorBand> GradientBands(const UiRect& rc, uint32_t begin, uint32_t end, bool vertical, int steps) {
  const int length = vertical ? rc.GetHeight() : rc.GetWidth();
  if (length <= 0 || rc.GetWidth() <= 0 || rc.GetHeight() <= 0) return {};
  const int count = steps <= 0 ? length : std::min(steps, length);
  std::vector<ColorBand> bands;
  bands.reserve(static_cast<size_t>(count));
  for (int i = 0; i < count; ++i) {
    // 64 bits: a band's edge is length × i before the division
    const int from = static_cast<int>(static_cast<int64_t>(length) * i / count);
    const int to = static_cast<int>(static_cast<int64_t>(length) * (i + 1) / count);
    ColorBand band{rc, MixColor(begin, end, i, count - 1)};
    if (vertical) {
      band.rc.top = rc.top + from;
      band.rc.bottom = rc.top + to;
    } else {
      band.rc.left = rc.left + from;
      band.rc.right = rc.left + to;
    }
    bands.push_back(band);
  }
  return bands;
}

}  // namespace mivo::duilib
