#include "duilib/Core/ImageDescription.h"

#include <algorithm>
#include <cwctype>
#include <iterator>

#include "base/util/string_util.h"
#include "duilib/Core/AttributeValue.h"
#include "duilib/Core/GlobalManager.h"
#include "duilib/Core/SkinPath.h"

namespace mivo::duilib {

namespace {

void AddPngIfBare(std::wstring& path) {
  size_t name = path.find_last_of(L"\\/");
  name = name == std::wstring::npos ? 0 : name + 1;
  if (name < path.size() && path.find(L'.', name) == std::wstring::npos) path += L".png";
}

}  // namespace

bool ParseImageDescription(const std::wstring& text, ImageDescription& out) {
  out = ImageDescription();
  const std::wstring trimmed(nbase::Trim(text));
  if (trimmed.find(L'=') == std::wstring::npos) {
    out.file = trimmed;
    return !out.file.empty();
  }
  size_t at = 0;
  while (at < trimmed.size()) {
    while (at < trimmed.size() && nbase::IsBlank(trimmed[at])) ++at;
    size_t equals = trimmed.find(L'=', at);
    if (equals == std::wstring::npos) break;
    const std::wstring name(nbase::TrimRight(std::wstring_view(trimmed).substr(at, equals - at)));
    size_t start = equals + 1, end;
    if (start < trimmed.size() && (trimmed[start] == L'\'' || trimmed[start] == L'"')) {
      end = trimmed.find(trimmed[start], start + 1);
      if (end == std::wstring::npos) end = trimmed.size();
      ++start;
      at = end + 1;
    } else {
      end = start;
      while (end < trimmed.size() && !nbase::IsBlank(trimmed[end])) ++end;
      at = end;
    }
    const std::wstring value = trimmed.substr(start, end - start);
    if (name == L"file" || name == L"res") {
      out.file = value;
    } else if (name == L"source") {
      out.source = attr::ParseRect(value);
    } else if (name == L"dest") {
      out.dest = attr::ParseRect(value);
    } else if (name == L"corner") {
      out.corner = attr::ParseRect(value);
    } else if (name == L"fade" || name == L"alpha") {
      out.alpha = std::clamp(attr::ParseInt(value), 0, 255);
    } else if (name == L"xtiled") {
      out.xTiled = attr::ParseBool(value);
    } else if (name == L"ytiled") {
      out.yTiled = attr::ParseBool(value);
    }
  }
  if (out.file.empty()) out = ImageDescription();
  return !out.file.empty();
}

std::wstring ResolveImagePath(const std::wstring& file, const std::wstring& windowSkinFolder) {
  if (file.empty()) return std::wstring();
  std::wstring path = file;
  for (wchar_t& c : path)
    if (c == L'/') c = L'\\';
  const bool absolute = path[0] == L'\\' || (path.size() > 1 && path[1] == L':');
  if (!absolute) {
    // The climb is measured from the resource root, so ".." may leave the window's folder and
    // the skin's, but never the root itself.
    std::vector<std::wstring> parts;
    if (!detail::AppendPathParts(GlobalManager::GetSkinFolder(), parts) ||
        !detail::AppendPathParts(windowSkinFolder, parts) || !detail::AppendPathParts(path, parts) || parts.empty())
      return std::wstring();
    path = GlobalManager::GetResourceRoot();
    for (size_t i = 0; i < parts.size(); ++i) path += (i ? L"\\" : L"") + parts[i];
  }
  AddPngIfBare(path);
  return path;
}

namespace {

constexpr int kVariantPercents[] = {125, 150, 175, 200, 250, 300};

// "x.png" at 150: "x@150.png"; a name without an extension gets the suffix at its end.
std::wstring VariantName(const std::wstring& path, int percent) {
  size_t name = path.find_last_of(L"\\/");
  name = name == std::wstring::npos ? 0 : name + 1;
  size_t dot = path.rfind(L'.');
  if (dot == std::wstring::npos || dot < name) dot = path.size();
  return path.substr(0, dot) + L"@" + std::to_wstring(percent) + path.substr(dot);
}

}  // namespace

ImageVariant ChooseImageVariant(const std::wstring& path, int percent,
                                const std::function<bool(const std::wstring&)>& exists) {
  if (percent <= 100 || path.empty()) return ImageVariant{path, 100};
  for (int step : kVariantPercents)  // at or above the scaling, smallest first
    if (step >= percent && exists(VariantName(path, step))) return ImageVariant{VariantName(path, step), step};
  for (auto it = std::rbegin(kVariantPercents); it != std::rend(kVariantPercents); ++it)
    if (*it < percent && exists(VariantName(path, *it))) return ImageVariant{VariantName(path, *it), *it};
  return ImageVariant{path, 100};
}

namespace {

// Splits the span [from, to) into before / middle / after of the given edge sizes.
struct Span {
  int cuts[4];
};

// In 64 bits: a skin's numbers may be anything an int holds, and a span from a very negative
// to a very positive edge is longer than an int.
Span Cut(int from, int to, int before, int after) {
  const long long length = std::max(0LL, static_cast<long long>(to) - from);
  long long head = std::max(0, before), tail = std::max(0, after);
  if (head + tail > length) {
    // too narrow for both edges: each keeps its share
    head = length * head / (head + tail);
    tail = length - head;
  }
  return Span{{from, static_cast<int>(from + head), static_cast<int>(to - tail), to}};
}

bool IsEmpty(const UiRect& r) { return r.right <= r.left || r.bottom <= r.top; }

}  // namespace

std::vector<ImagePiece> SplitImage(const UiRect& source, const UiRect& dest, const UiRect& corner) {
  std::vector<ImagePiece> pieces;
  const Span sx = Cut(source.left, source.right, corner.left, corner.right);
  const Span sy = Cut(source.top, source.bottom, corner.top, corner.bottom);
  // the destination's edges are the source's, unless they do not fit
  const Span dx = Cut(dest.left, dest.right, sx.cuts[1] - sx.cuts[0], sx.cuts[3] - sx.cuts[2]);
  const Span dy = Cut(dest.top, dest.bottom, sy.cuts[1] - sy.cuts[0], sy.cuts[3] - sy.cuts[2]);
  for (int row = 0; row < 3; ++row) {
    for (int column = 0; column < 3; ++column) {
      ImagePiece piece{{sx.cuts[column], sy.cuts[row], sx.cuts[column + 1], sy.cuts[row + 1]},
                       {dx.cuts[column], dy.cuts[row], dx.cuts[column + 1], dy.cuts[row + 1]}};
      if (!IsEmpty(piece.source) && !IsEmpty(piece.dest)) pieces.push_back(piece);
    }
  }
  return pieces;
}

}  // namespace mivo::duilib
