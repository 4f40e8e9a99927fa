#include "duilib/Render/ImagePlace.h"

#include <algorithm>
#include <cstdint>

namespace mivo::duilib {

namespace {

constexpr int kLayoutCut = 1;
constexpr int kLayoutScale = 2;

// The largest rectangle of the source's proportions that fits in `dest`, centred in it.
UiRect Fit(const UiRect& source, const UiRect& dest) {
  const int64_t sw = source.GetWidth(), sh = source.GetHeight(), dw = dest.GetWidth(), dh = dest.GetHeight();
  int64_t w = dw, h = dh;
  if (sw * dh > dw * sh)
    h = sh * dw / sw;  // wider than the place: the width decides
  else
    w = sw * dh / sh;
  const int left = dest.left + static_cast<int>((dw - w) / 2), top = dest.top + static_cast<int>((dh - h) / 2);
  return UiRect{left, top, left + static_cast<int>(w), top + static_cast<int>(h)};
}

std::vector<ImagePiece> Tile(const UiRect& source, const UiRect& place, bool across, bool down) {
  const int tileW = across ? source.GetWidth() : place.GetWidth();
  const int tileH = down ? source.GetHeight() : place.GetHeight();
  const int64_t columns = (place.GetWidth() + tileW - 1) / tileW, rows = (place.GetHeight() + tileH - 1) / tileH;
  if (columns * rows > static_cast<int64_t>(kMaxImageTiles)) return {};
  std::vector<ImagePiece> pieces;
  for (int y = place.top; y < place.bottom; y += tileH) {
    for (int x = place.left; x < place.right; x += tileW) {
      const UiRect to{x, y, std::min(x + tileW, place.right), std::min(y + tileH, place.bottom)};
      // a tile cut at the place's edge shows as much of the image; an untiled way stretches it whole
      const UiRect from{source.left, source.top, across ? source.left + to.GetWidth() : source.right,
                        down ? source.top + to.GetHeight() : source.bottom};
      pieces.push_back(ImagePiece{from, to});
    }
  }
  return pieces;
}

}  // namespace

std::vector<ImagePiece> PlaceImage(const ImageDescription& image, const UiRect& source, const UiRect& dest) {
  if (source.GetWidth() <= 0 || source.GetHeight() <= 0 || dest.GetWidth() <= 0 || dest.GetHeight() <= 0) return {};
  if (image.layout == kLayoutCut) {
    const int w = std::min(source.GetWidth(), dest.GetWidth()), h = std::min(source.GetHeight(), dest.GetHeight());
    return {ImagePiece{{source.left, source.top, source.left + w, source.top + h},
                       {dest.left, dest.top, dest.left + w, dest.top + h}}};
  }
  const UiRect place = image.layout == kLayoutScale ? Fit(source, dest) : dest;
  if (image.xTiled || image.yTiled) {
    std::vector<ImagePiece> tiles = Tile(source, place, image.xTiled, image.yTiled);
    if (!tiles.empty()) return tiles;
  }
  std::vector<ImagePiece> pieces = SplitImage(source, place, image.corner);
  const UiRect& c = image.corner;
  if (image.emptyCenter && (c.left > 0 || c.top > 0 || c.right > 0 || c.bottom > 0)) {
    // The middle is the piece that touches none of the place's edges that have a corner.
    auto middle = [&](const ImagePiece& piece) {
      return !(c.left > 0 && piece.dest.left == place.left) && !(c.top > 0 && piece.dest.top == place.top) &&
             !(c.right > 0 && piece.dest.right == place.right) && !(c.bottom > 0 && piece.dest.bottom == place.bottom);
    };
    pieces.erase(std::remove_if(pieces.begin(), pieces.end(), middle), pieces.end());
  }
  return pieces;
}

}  // namespace mivo::duilib
