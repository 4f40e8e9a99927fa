#include "duilib/Core/AttributeValue.h"

#include <cwchar>
#include <limits>

namespace mivo::duilib::attr {

namespace {

// Reads one integer at `at` the way wcstol does (leading blanks, sign, digits), saturating
// instead of overflowing; `at` moves past what was read (not at all when nothing was).
int ReadInt(const wchar_t*& at) {
  wchar_t* end = nullptr;
  long value = std::wcstol(at, &end, 10);
  at = end;
  if (value > std::numeric_limits<int>::max()) return std::numeric_limits<int>::max();
  if (value < std::numeric_limits<int>::min()) return std::numeric_limits<int>::min();
  return static_cast<int>(value);
}

// Skips the one separator after a number, but never past the end.
void SkipSeparator(const wchar_t*& at) {
  if (*at) ++at;
}

}  // namespace

bool ParseBool(const std::wstring& value) { return value == L"true"; }

int ParseInt(const std::wstring& value) {
  const wchar_t* at = value.c_str();
  return ReadInt(at);
}

int ParseSize(const std::wstring& value) {
  if (value == L"stretch") return DUI_LENGTH_STRETCH;
  if (value == L"auto") return DUI_LENGTH_AUTO;
  return ParseInt(value);
}

UiRect ParseRect(const std::wstring& value) {
  const wchar_t* at = value.c_str();
  UiRect rect;
  rect.left = ReadInt(at);
  SkipSeparator(at);
  rect.top = ReadInt(at);
  SkipSeparator(at);
  rect.right = ReadInt(at);
  SkipSeparator(at);
  rect.bottom = ReadInt(at);
  return rect;
}

UiSize ParsePair(const std::wstring& value) {
  const wchar_t* at = value.c_str();
  UiSize size;
  size.cx = ReadInt(at);
  SkipSeparator(at);
  size.cy = ReadInt(at);
  return size;
}

}  // namespace mivo::duilib::attr
