// Image descriptions and the attribute value syntax from arbitrary text: parsed, written back
// and parsed again; the described file resolved against the skin folders; the image split by
// its corners. Checks: what parses writes back to the same description; numbers, rectangles
// and colours read back what was written; a resolved path never leaves the resource root;
// the pieces of an image stay inside its source and destination.
#include <cstdint>
#include <cstdio>
#include <cwchar>
#include <string>

#include "duilib/Core/AttributeValue.h"
#include "duilib/Core/GlobalManager.h"
#include "duilib/Core/ImageDescription.h"
#include "fuzz/FuzzTemp.h"
#include "toolkit/Utf8.h"

using namespace mivo::duilib;

namespace {

void Check(bool ok, const char* what) { fuzz::Check(ok, "image_description_fuzz", what); }

std::wstring Rect(const UiRect& r) {
  wchar_t text[64];
  std::swprintf(text, 64, L"%d,%d,%d,%d", r.left, r.top, r.right, r.bottom);
  return text;
}

bool Inside(const UiRect& inner, const UiRect& outer) {
  return inner.left >= outer.left && inner.top >= outer.top && inner.right <= outer.right &&
         inner.bottom <= outer.bottom;
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  GlobalManager::Startup(L"C:\\Mivo\\resources\\", L"skins\\default\\");
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::wstring text;
  toolkit::Utf8ToWide(reinterpret_cast<const char*>(data), size, text);
  text = text.substr(0, text.find(L'\0'));  // attribute values come from C strings

  ImageDescription image;
  if (ParseImageDescription(text, image)) {
    Check(!image.file.empty() && image.alpha >= 0 && image.alpha <= 255, "a description out of range");
    // written back with a quote the file name does not hold
    wchar_t quote = image.file.find(L'\'') == std::wstring::npos ? L'\'' : L'"';
    if (image.file.find(quote) == std::wstring::npos) {
      std::wstring q(1, quote);
      std::wstring written = L"file=" + q + image.file + q + L" source='" + Rect(image.source) + L"' dest='" +
                             Rect(image.dest) + L"' corner='" + Rect(image.corner) + L"' fade='" +
                             std::to_wstring(image.alpha) + L"'";
      ImageDescription again;
      Check(ParseImageDescription(written, again) && again == image, "a description reads back differently");
    }
    std::wstring path = ResolveImagePath(image.file, L"start_hide_window\\");
    const std::wstring& root = GlobalManager::GetResourceRoot();
    bool absolute = image.file[0] == L'\\' || image.file[0] == L'/' || (image.file.size() > 1 && image.file[1] == L':');
    if (!path.empty() && !absolute) {
      Check(path.compare(0, root.size(), root) == 0, "a resolved path outside the resource root");
      Check(path.find(L"\\..\\") == std::wstring::npos && path.substr(path.size() - 3) != L"\\..",
            "a resolved path still climbs");
    }
    UiRect dest{0, 0, 100 + image.dest.right % 1000, 50 + image.dest.bottom % 1000};
    for (const ImagePiece& piece : SplitImage(image.source, dest, image.corner))
      Check(Inside(piece.source, image.source) && Inside(piece.dest, dest), "a piece outside its image");
    for (const ImagePiece& piece : SplitImage(image.source, image.dest, image.corner))
      Check(Inside(piece.source, image.source) && Inside(piece.dest, image.dest), "a piece outside its image");
  }

  // The attribute syntax: what was read writes and reads back.
  int number = attr::ParseInt(text);
  Check(attr::ParseInt(std::to_wstring(number)) == number, "a number reads back differently");
  UiRect rect = attr::ParseRect(text);
  Check(attr::ParseRect(Rect(rect)) == rect, "a rectangle reads back differently");
  UiSize pair = attr::ParsePair(text);
  Check(attr::ParsePair(std::to_wstring(pair.cx) + L"," + std::to_wstring(pair.cy)) == pair,
        "a pair reads back differently");
  int length = attr::ParseSize(text);
  Check(length >= DUI_LENGTH_AUTO || text.find_first_of(L"-") != std::wstring::npos, "a negative size from nothing");
  uint32_t argb = 0;
  if (attr::ParseColor(text, argb)) {
    wchar_t hex[16];
    std::swprintf(hex, 16, L"#%08X", argb);
    uint32_t again = ~argb;
    Check(attr::ParseColor(hex, again) && again == argb, "a colour reads back differently");
  }
  attr::ParseBool(text);
  return 0;
}
