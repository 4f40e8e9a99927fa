#include "duilib/Render/RoundRect.h"

#include <algorithm>

namespace mivo::duilib {

namespace {

// A rectangle with elliptic corners of radii rx, ry, in continuous pixel coordinates.
struct Shape {
  double left, top, right, bottom, rx, ry;
  bool Contains(double x, double y) const {
    if (x < left || x > right || y < top || y > bottom) return false;
    if (rx <= 0 || ry <= 0) return true;
    // the nearest point of the rectangle the corner centres span
    const double dx = (x - std::clamp(x, left + rx, right - rx)) / rx;
    const double dy = (y - std::clamp(y, top + ry, bottom - ry)) / ry;
    return dx * dx + dy * dy <= 1.0;
  }
};

Shape Outer(int width, int height, UiSize round) {
  return Shape{0,
               0,
               static_cast<double>(width),
               static_cast<double>(height),
               std::min(std::max(round.cx, 0) / 2.0, width / 2.0),
               std::min(std::max(round.cy, 0) / 2.0, height / 2.0)};
}

}  // namespace

std::vector<uint8_t> RoundRectCoverage(int width, int height, UiSize round, int border) {
  if (width <= 0 || height <= 0) return {};
  const Shape outer = Outer(width, height, round);
  // the outline's inside edge: the shape `border` pixels in, its corners as much smaller
  const Shape inner{outer.left + border,   outer.top + border, outer.right - border,
                    outer.bottom - border, outer.rx - border,  outer.ry - border};
  const bool ring = border > 0;
  auto covered = [&](double x, double y) { return outer.Contains(x, y) && !(ring && inner.Contains(x, y)); };
  // Outside the corner boxes every pixel is wholly in or out: the edges lie on pixel borders.
  const int cornerX = static_cast<int>(outer.rx) + 1, cornerY = static_cast<int>(outer.ry) + 1;
  std::vector<uint8_t> coverage(static_cast<size_t>(width) * height);
  for (int y = 0; y < height; ++y) {
    const bool cornerRow = y < cornerY || y >= height - cornerY;
    for (int x = 0; x < width; ++x) {
      uint8_t& pixel = coverage[static_cast<size_t>(y) * width + x];
      if (!cornerRow || (x >= cornerX && x < width - cornerX)) {
        pixel = covered(x + 0.5, y + 0.5) ? 255 : 0;
        continue;
      }
      int hits = 0;
      for (int sy = 0; sy < 4; ++sy)
        for (int sx = 0; sx < 4; ++sx) hits += covered(x + (sx + 0.5) / 4, y + (sy + 0.5) / 4);
      pixel = static_cast<uint8_t>((hits * 255 + 8) / 16);
    }
  }
  return coverage;
}

std::vector<std::pair<int, int>> RoundRectSpans(int width, int height, UiSize round) {
  if (width <= 0 || height <= 0) return {};
  const Shape shape = Outer(width, height, round);
  std::vector<std::pair<int, int>> spans(static_cast<size_t>(height));
  for (int y = 0; y < height; ++y) {
    // the shape is symmetric and convex: the first pixel in from the left gives both ends
    int first = 0;
    while (first < (width + 1) / 2 && !shape.Contains(first + 0.5, y + 0.5)) ++first;
    spans[static_cast<size_t>(y)] = first < (width + 1) / 2 ? std::pair{first, width - first} : std::pair{0, 0};
  }
  return spans;
}

std::vector<uint32_t> CoverageToPixels(const std::vector<uint8_t>& coverage, uint32_t argb) {
  std::vector<uint32_t> pixels(coverage.size());
  const uint32_t alpha = argb >> 24;
  for (size_t i = 0; i < coverage.size(); ++i) {
    const uint32_t a = (alpha * coverage[i] + 127) / 255;
    uint32_t pixel = a << 24;
    for (int shift = 0; shift < 24; shift += 8) pixel |= ((((argb >> shift) & 0xFF) * a + 127) / 255) << shift;
    pixels[i] = pixel;
  }
  return pixels;
}

}  // namespace mivo::duilib
