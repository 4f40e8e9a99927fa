#pragma once
// Where the pieces of an image go when it is drawn into a place: stretched (corner-stretched
// when it has corners, its middle left out on request), at its own size, scaled with its
// proportions kept, or tiled. The painters copy the pieces; nothing here draws.
#include <cstddef>
#include <vector>

#include "duilib/Core/ImageDescription.h"
#include "duilib/Core/UiTypes.h"
#include "toolkit/export.h"

namespace mivo::duilib {

// More tiles than this (a tiny image over a large place) are stretched instead.
constexpr size_t kMaxImageTiles = 4096;

// The pieces for drawing `source`, the part of the image to show (inside the image), into
// `dest`, as `image`'s layout, tiling, corners and empty centre say. A tiled image ignores its
// corners; one at its own size ignores its tiling and corners too.
MIVO_COMMON_API std::vector<ImagePiece> PlaceImage(const ImageDescription& image, const UiRect& source,
                                                   const UiRect& dest);

}  // namespace mivo::duilib
