#pragma once
// The shape of a rounded rectangle, apart from any drawing API: how much of each pixel it
// covers (its edge anti-aliased), which pixels a clip to it keeps, and its pixels in a colour.
// `round` is the corner ellipse's width and height, as a skin's "borderround" gives it.
#include <cstdint>
#include <utility>
#include <vector>

#include "duilib/Core/UiTypes.h"
#include "toolkit/export.h"

namespace mivo::duilib {

// Coverage from 0 to 255 of each pixel of a `width` × `height` rectangle (rows top to bottom)
// by the rounded shape, or with `border` > 0 by its outline that many pixels wide. Pixels the
// corners cut are sampled 4 × 4 times; the others are wholly in or out.
MIVO_COMMON_API std::vector<uint8_t> RoundRectCoverage(int width, int height, UiSize round, int border);

// For each row, the pixels [first, second) whose centres lie inside the rounded shape.
MIVO_COMMON_API std::vector<std::pair<int, int>> RoundRectSpans(int width, int height, UiSize round);

// 0xAARRGGBB `argb` at each coverage, premultiplied by its alpha as GDI's AlphaBlend wants it.
MIVO_COMMON_API std::vector<uint32_t> CoverageToPixels(const std::vector<uint8_t>& coverage, uint32_t argb);

}  // namespace mivo::duilib
