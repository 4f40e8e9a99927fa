#pragma once
// How skins describe an image: either a bare file name ("bk_listitem_selected", "logo.png") or
// a list  file='x.png' corner='1,1,1,1' fade='200' source='0,0,16,16' dest='2,2,18,18'
// xtiled='true' ytiled='true' . The
// description is read here; where its file lies and how a corner-stretched image splits into
// pieces is decided here too, so the painters only copy pixels.
#include <functional>
#include <string>
#include <vector>

#include "duilib/Core/UiTypes.h"
#include "toolkit/export.h"

namespace mivo::duilib {

struct ImageDescription {
  std::wstring file;    // as written, or the full path once resolved
  UiRect source;        // the part of the image to draw; all 0: the whole image
  UiRect dest;          // where, relative to the control's top left; all 0: the whole control
  UiRect corner;        // left, top, right, bottom edges that keep their size when stretched
  int alpha = 255;      // "fade" or "alpha", 0 to 255
  bool xTiled = false;  // repeated across at its own width instead of stretched
  bool yTiled = false;  // repeated down at its own height
  // Set by the control that draws it (its "imagelayout" and "emptycenter"), not written here.
  int layout = 0;            // 0 stretched to the place, 1 at its own size cut at the place's edges,
                             // 2 as large as fits with its proportions kept, centred
  bool emptyCenter = false;  // the middle of a corner-stretched image is left out
  friend bool operator==(const ImageDescription&, const ImageDescription&) = default;
};

// False, with `out` reset, for a description without a file. Values are quoted with ' or ";
// unknown names are passed over.
MIVO_COMMON_API bool ParseImageDescription(const std::wstring& text, ImageDescription& out);

// The full path of an image file named in a skin. A relative name is taken from the window's
// skin folder (GlobalManager::GetResourcePath() + windowSkinFolder), ".." climbing from there;
// a name whose last part has no extension means "<name>.png". "" for a path that would leave
// the resource root. Absolute paths (with a drive, or a leading backslash) stay as written.
MIVO_COMMON_API std::wstring ResolveImagePath(const std::wstring& file, const std::wstring& windowSkinFolder);

// The file drawn for an image at a scaling above 100%: a skin may ship larger copies beside
// "x.png" named "x@125.png", "x@150.png", "x@175.png", "x@200.png", "x@250.png" or "x@300.png",
// drawn at that scaling. The nearest at or above the window's scaling wins, else the nearest
// below it (still sharper than the plain file), else the plain file, stretched smoothly.
struct ImageVariant {
  std::wstring path;
  int percent = 100;  // the scaling the file is drawn for: its pixels per 100 of the skin's
  friend bool operator==(const ImageVariant&, const ImageVariant&) = default;
};
// `path` is a resolved image path; `exists` tells whether a file is there.
MIVO_COMMON_API ImageVariant ChooseImageVariant(const std::wstring& path, int percent,
                                                const std::function<bool(const std::wstring&)>& exists);

// One piece of a corner-stretched image: what part of the image goes where.
struct ImagePiece {
  UiRect source, dest;
  friend bool operator==(const ImagePiece&, const ImagePiece&) = default;
};

// Splits drawing `source` into `dest` by the corner insets: corners keep their size, edges
// stretch one way, the middle both ways. Without corners it is one piece. Corners wider than
// the destination shrink in proportion; empty pieces are left out.
MIVO_COMMON_API std::vector<ImagePiece> SplitImage(const UiRect& source, const UiRect& dest, const UiRect& corner);

}  // namespace mivo::duilib
