#include "duilib/Core/DpiScale.h"

#include <algorithm>
#include <cstdint>
#include <cwctype>

namespace mivo::duilib {

namespace {

// Pixel attributes of controls, boxes and labels. "renderoffset" scales itself when applied.
const wchar_t* const kScaledNames[] = {
    L"width",          L"height",         L"minwidth",        L"minheight",        L"maxwidth",
    L"maxheight",      L"margin",         L"padding",         L"childmargin",      L"bordersize",
    L"leftbordersize", L"topbordersize",  L"rightbordersize", L"bottombordersize", L"borderround",
    L"textpadding",    L"scrollbarwidth", L"itemsize",        L"indent",           L"rowheight",
};

int64_t Scale(int64_t value, int percent) {
  const int64_t product = value * percent;
  return (product + (product >= 0 ? 50 : -50)) / 100;
}

}  // namespace

int DpiPercent(int dpi) { return dpi <= 0 ? 100 : static_cast<int>(Scale(dpi, 10000) / 96); }

bool IsScaledAttribute(const std::wstring& name) {
  return std::any_of(std::begin(kScaledNames), std::end(kScaledNames),
                     [&name](const wchar_t* scaled) { return name == scaled; });
}

std::wstring ScaleAttributeValue(const std::wstring& value, int percent) {
  if (percent == 100 || value == L"-1" || value == L"-2") return value;
  std::wstring out;
  out.reserve(value.size() + 4);
  size_t at = 0;
  while (at < value.size()) {
    const bool sign = value[at] == L'-' && at + 1 < value.size() && std::iswdigit(value[at + 1]);
    if (!sign && !std::iswdigit(value[at])) {
      out += value[at++];
      continue;
    }
    size_t end = at + (sign ? 1 : 0);
    int64_t number = 0;
    // Digits past what an int holds read as its limit, as the attribute reader would clip them.
    while (end < value.size() && std::iswdigit(value[end])) {
      number = std::min<int64_t>(number * 10 + (value[end] - L'0'), INT32_MAX);
      ++end;
    }
    if (sign) number = -number;
    out += std::to_wstring(std::clamp<int64_t>(Scale(number, percent), INT32_MIN, INT32_MAX));
    at = end;
  }
  return out;
}

}  // namespace mivo::duilib
