// Images of the render context: read once per path with GDI+'s decoders and drawn with their
// corners and alpha; and PNG files written with GDI+'s encoder.
#include <windows.h>
// GDI+ needs the COM stream interfaces that WIN32_LEAN_AND_MEAN leaves out
#include <objidl.h>

#include <gdiplus.h>

#include <algorithm>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "base/util/string_util.h"
#include "duilib/Core/GlobalManager.h"
#include "duilib/Render/GdiRender.h"
#include "duilib/Render/ImagePlace.h"
#include "duilib/Render/ImageResample.h"

namespace mivo::duilib {

namespace {

// GDI+ is started the first time it is needed and left running until the process ends.
bool StartGdiplus() {
  static const bool started = [] {
    Gdiplus::GdiplusStartupInput input;
    ULONG_PTR token = 0;
    return Gdiplus::GdiplusStartup(&token, &input, nullptr) == Gdiplus::Ok;
  }();
  return started;
}

// An image decoded once into a premultiplied 32-bit DIB, the form AlphaBlend draws from, so
// the file is not kept open (and locked) while it is shown. Failures are not remembered: a
// file may appear later.
struct DecodedImage {
  OffscreenBitmap pixels;
  DecodedImage(int width, int height) : pixels(width, height) {}
};

// No skin image is larger; a bigger one (damaged or hostile) would cost up to gigabytes.
constexpr UINT kMaxImageSide = 8192;

const DecodedImage* LoadImageFile(const std::wstring& path) {
  static std::map<std::wstring, std::unique_ptr<DecodedImage>> cache;
  std::wstring key = path;
  nbase::MakeLower(key);
  auto found = cache.find(key);
  if (found != cache.end()) return found->second.get();
  if (!StartGdiplus()) return nullptr;
  Gdiplus::Bitmap file(path.c_str());
  if (file.GetLastStatus() != Gdiplus::Ok || file.GetWidth() == 0 || file.GetHeight() == 0 ||
      file.GetWidth() > kMaxImageSide || file.GetHeight() > kMaxImageSide)
    return nullptr;
  const int width = static_cast<int>(file.GetWidth()), height = static_cast<int>(file.GetHeight());
  auto image = std::make_unique<DecodedImage>(width, height);
  if (!image->pixels.IsValid()) return nullptr;
  // GDI+ converts straight into the DIB's memory, rows top to bottom.
  Gdiplus::BitmapData data{};
  data.Width = width;
  data.Height = height;
  data.Stride = width * 4;
  data.PixelFormat = PixelFormat32bppPARGB;
  data.Scan0 = const_cast<uint32_t*>(image->pixels.GetBits());
  Gdiplus::Rect all(0, 0, width, height);
  if (file.LockBits(&all, Gdiplus::ImageLockModeRead | Gdiplus::ImageLockModeUserInputBuf, PixelFormat32bppPARGB,
                    &data) != Gdiplus::Ok)
    return nullptr;
  file.UnlockBits(&data);
  return (cache[key] = std::move(image)).get();
}

// A piece of an image stretched to a size, resampled smoothly once and kept while it is drawn
// at that size. The pieces of a window are few; what grows past the bound (a window resized
// many times) is dropped and made again when needed.
constexpr size_t kMaxStretchedPixels = size_t{4} << 20;

const OffscreenBitmap* StretchedPiece(const std::wstring& path, const DecodedImage& image, const UiRect& source,
                                      UiSize size) {
  static std::map<std::wstring, std::unique_ptr<OffscreenBitmap>> cache;
  static size_t pixels = 0;
  const std::wstring key = path + L"|" + std::to_wstring(source.left) + L"," + std::to_wstring(source.top) + L"," +
                           std::to_wstring(source.right) + L"," + std::to_wstring(source.bottom) + L"|" +
                           std::to_wstring(size.cx) + L"x" + std::to_wstring(size.cy);
  auto found = cache.find(key);
  if (found != cache.end()) return found->second.get();
  const std::vector<uint32_t> resampled =
      ResampleBilinear(image.pixels.GetBits(), image.pixels.GetWidth(), source, size);
  auto bitmap = std::make_unique<OffscreenBitmap>(size.cx, size.cy);
  if (resampled.empty() || !bitmap->IsValid()) return nullptr;
  std::copy(resampled.begin(), resampled.end(), const_cast<uint32_t*>(bitmap->GetBits()));
  const size_t added = resampled.size();
  if (pixels + added > kMaxStretchedPixels) {
    cache.clear();
    pixels = 0;
  }
  pixels += added;
  return (cache[key] = std::move(bitmap)).get();
}

// The file to draw for `path` at the current scaling. The choice is kept: a skin's files do
// not come and go while it is shown, and probing up to six names at every paint would cost.
ImageVariant VariantFor(const std::wstring& path) {
  if (!GlobalManager::IsDpiScaleEnabled() || GlobalManager::GetDpiScalePercent() <= 100) return ImageVariant{path, 100};
  static std::map<std::wstring, ImageVariant> chosen;
  const int percent = GlobalManager::GetDpiScalePercent();
  std::wstring key = path + L"|" + std::to_wstring(percent);
  nbase::MakeLower(key);
  auto found = chosen.find(key);
  if (found != chosen.end()) return found->second;
  const ImageVariant variant = ChooseImageVariant(path, percent, [](const std::wstring& name) {
    const DWORD attributes = GetFileAttributesW(name.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && !(attributes & FILE_ATTRIBUTE_DIRECTORY);
  });
  return chosen[key] = variant;
}

// A rectangle written in the plain image's pixels, in those of a variant drawn for `percent`.
UiRect ForVariant(const UiRect& rc, int percent) {
  auto scale = [percent](int v) {
    const long long scaled = static_cast<long long>(v) * percent;
    return static_cast<int>(scaled >= 0 ? (scaled + 50) / 100 : (scaled - 50) / 100);
  };
  return UiRect{scale(rc.left), scale(rc.top), scale(rc.right), scale(rc.bottom)};
}

bool FindPngEncoder(CLSID& clsid) {
  UINT count = 0, bytes = 0;
  if (Gdiplus::GetImageEncodersSize(&count, &bytes) != Gdiplus::Ok || bytes == 0) return false;
  std::vector<unsigned char> buffer(bytes);
  auto* encoders = reinterpret_cast<Gdiplus::ImageCodecInfo*>(buffer.data());
  if (Gdiplus::GetImageEncoders(count, bytes, encoders) != Gdiplus::Ok) return false;
  for (UINT i = 0; i < count; ++i) {
    if (std::wstring(encoders[i].MimeType) == L"image/png") {
      clsid = encoders[i].Clsid;
      return true;
    }
  }
  return false;
}

}  // namespace

void GdiRenderContext::DrawImage(const UiRect& dest, const ImageDescription& written) {
  // A larger copy of the file drawn for this scaling is addressed in its own pixels: the
  // description's source and corners, written for the plain file, grow with it.
  const ImageVariant variant = VariantFor(written.file);
  ImageDescription image = written;
  image.file = variant.path;
  if (variant.percent != 100) {
    image.source = ForVariant(image.source, variant.percent);
    image.corner = ForVariant(image.corner, variant.percent);
  }
  const DecodedImage* decoded = LoadImageFile(image.file);
  if (!decoded || image.alpha <= 0) return;
  const int width = decoded->pixels.GetWidth(), height = decoded->pixels.GetHeight();
  UiRect source = image.source == UiRect{} ? UiRect{0, 0, width, height} : image.source;
  source = UiRect{std::max(source.left, 0), std::max(source.top, 0), std::min(source.right, width),
                  std::min(source.bottom, height)};
  // AlphaBlend draws each piece at its size and keeps to the DC's clip; a piece that stretches
  // (a scaled skin, a nine-grid edge, an untiled side of a tiled image) is first resampled
  // smoothly from its own pixels.
  BLENDFUNCTION blend{AC_SRC_OVER, 0, static_cast<BYTE>(image.alpha), AC_SRC_ALPHA};
  for (const ImagePiece& piece : PlaceImage(image, source, dest)) {
    const UiSize size{piece.dest.GetWidth(), piece.dest.GetHeight()};
    const UiRect at = ToDevice(piece.dest);
    const OffscreenBitmap* from = &decoded->pixels;
    UiRect part = piece.source;
    if (size.cx != part.GetWidth() || size.cy != part.GetHeight()) {
      from = StretchedPiece(image.file, *decoded, part, size);
      part = UiRect{0, 0, size.cx, size.cy};
    }
    if (!from) continue;
    GdiAlphaBlend(Target(), at.left, at.top, size.cx, size.cy, from->GetDC(), part.left, part.top, part.GetWidth(),
                  part.GetHeight(), blend);
  }
}

bool SavePixelsAsPng(const uint32_t* pixels, int width, int height, const std::wstring& path) {
  if (!pixels || width <= 0 || height <= 0 || !StartGdiplus()) return false;
  CLSID png;
  if (!FindPngEncoder(png)) return false;
  Gdiplus::Bitmap bitmap(width, height, width * 4, PixelFormat32bppRGB,
                         reinterpret_cast<BYTE*>(const_cast<uint32_t*>(pixels)));
  return bitmap.GetLastStatus() == Gdiplus::Ok && bitmap.Save(path.c_str(), &png, nullptr) == Gdiplus::Ok;
}

}  // namespace mivo::duilib
