#pragma once
// A gradient as bands of one colour each: how many, where, and in which colour. The painters
// fill the bands; nothing here draws.
#include <cstdint>
#include <vector>

#include "duilib/Core/UiTypes.h"
#include "toolkit/export.h"

namespace mivo::duilib {

struct ColorBand {
  UiRect rc;
  uint32_t argb = 0;
  friend bool operator==(const ColorBand&, const ColorBand&) = default;
};

// Each channel of 0xAARRGGBB `from` moved `part` / `whole` of the way to `to`, rounded.
MIVO_COMMON_API uint32_t MixColor(uint32_t from, uint32_t to, int part, int whole);

// `rc` from `begin` to `end`: top to bottom when `vertical`, else left to right, in `steps`
// bands of (nearly) equal size. The first band is `begin` and the last `end` exactly. Steps of
// 0 or fewer, or more than there are pixel lines, give one band per line.
MIVO_COMMON_API std::vector<ColorBand> GradientBands(const UiRect& rc, uint32_t begin, uint32_t end, bool vertical,
                                                     int steps);

}  // namespace mivo::duilib
