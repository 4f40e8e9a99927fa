#pragma once
// Smooth stretching of image pixels, apart from any drawing API: a part of an image resampled
// bilinearly to another size, reading the part's own pixels only, so the pieces of a
// nine-grid image never bleed into each other. Pixels are 32-bit premultiplied ARGB.
#include <cstdint>
#include <vector>

#include "duilib/Core/UiTypes.h"
#include "toolkit/export.h"

namespace mivo::duilib {

// `source` (inside an image `width` pixels wide, rows top to bottom) resampled to `size`; an
// empty result for an empty part or size.
MIVO_COMMON_API std::vector<uint32_t> ResampleBilinear(const uint32_t* pixels, int width, const UiRect& source,
                                                       UiSize size);

}  // namespace mivo::duilib
