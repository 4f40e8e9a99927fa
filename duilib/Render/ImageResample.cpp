#include "duilib/Render/ImageResample.h"

#include <algorithm>

namespace mivo::duilib {

namespace {

// Where each destination pixel's centre falls in the source, as the first of two source
// pixels and the second one's weight in 1/256ths, both within [0, count).
struct Tap {
  int first, second, weight;
};

std::vector<Tap> Taps(int sourceCount, int destCount) {
  std::vector<Tap> taps(static_cast<size_t>(destCount));
  for (int d = 0; d < destCount; ++d) {
    // centre of d in source pixels, less half a pixel, in 1/256ths
    const int64_t at =
        ((2 * static_cast<int64_t>(d) + 1) * sourceCount * 256) / (2 * static_cast<int64_t>(destCount)) - 128;
    const int64_t clamped = std::clamp<int64_t>(at, 0, static_cast<int64_t>(sourceCount - 1) * 256);
    const int first = static_cast<int>(clamped / 256);
    taps[static_cast<size_t>(d)] = Tap{first, std::min(first + 1, sourceCount - 1), static_cast<int>(clamped % 256)};
  }
  return taps;
}

}  // namespace

std::vector<uint32_t> ResampleBilinear(const uint32_t* pixels, int width, const UiRect& source, UiSize size) {
  const int sw = source.GetWidth(), sh = source.GetHeight();
  if (!pixels || sw <= 0 || sh <= 0 || size.cx <= 0 || size.cy <= 0) return {};
  const std::vector<Tap> xs = Taps(sw, size.cx), ys = Taps(sh, size.cy);
  std::vector<uint32_t> out(static_cast<size_t>(size.cx) * static_cast<size_t>(size.cy));
  auto at = [&](int x, int y) { return pixels[static_cast<size_t>(source.top + y) * width + source.left + x]; };
  for (int y = 0; y < size.cy; ++y) {
    const Tap& ty = ys[static_cast<size_t>(y)];
    for (int x = 0; x < size.cx; ++x) {
      const Tap& tx = xs[static_cast<size_t>(x)];
      const uint32_t p00 = at(tx.first, ty.first), p01 = at(tx.second, ty.first);
      const uint32_t p10 = at(tx.first, ty.second), p11 = at(tx.second, ty.second);
      const uint32_t w00 = (256 - tx.weight) * (256 - ty.weight), w01 = tx.weight * (256 - ty.weight);
      const uint32_t w10 = (256 - tx.weight) * ty.weight, w11 = tx.weight * ty.weight;
      uint32_t pixel = 0;
      for (int shift = 0; shift < 32; shift += 8) {
        const uint32_t sum = ((p00 >> shift) & 0xFF) * w00 + ((p01 >> shift) & 0xFF) * w01 +
                             ((p10 >> shift) & 0xFF) * w10 + ((p11 >> shift) & 0xFF) * w11;
        pixel |= ((sum + 32768) >> 16) << shift;
      }
      out[static_cast<size_t>(y) * size.cx + x] = pixel;
    }
  }
  return out;
}

}  // namespace mivo::duilib
