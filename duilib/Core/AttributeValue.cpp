#include "duilib/Core/AttributeValue.h"

#include <cwchar>
#include <cwctype>
#include <limits>

#include "base/util/string_util.h"

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

bool ParseColor(const std::wstring& value, uint32_t& argb) {
  std::wstring text(nbase::Trim(value));
  if (text.empty()) return false;
  const bool hashed = text[0] == L'#';
  const std::wstring digits = hashed ? text.substr(1) : text;
  bool hex = digits.size() == 6 || digits.size() == 8;
  for (wchar_t c : digits) hex = hex && std::iswxdigit(c);
  if (hex) {
    uint32_t parsed = static_cast<uint32_t>(std::wcstoul(digits.c_str(), nullptr, 16));
    argb = digits.size() == 6 ? (0xFF000000u | parsed) : parsed;
    return true;
  }
  if (hashed) return false;
  static const struct {
    const wchar_t* name;
    uint32_t argb;
  } kNames[] = {
      {L"transparent", 0x00000000u}, {L"white", 0xFFFFFFFFu}, {L"black", 0xFF000000u},
      {L"red", 0xFFFF0000u},         {L"green", 0xFF008000u}, {L"blue", 0xFF0000FFu},
      {L"yellow", 0xFFFFFF00u},      {L"gray", 0xFF808080u},  {L"grey", 0xFF808080u},
  };
  nbase::MakeLower(text);
  for (const auto& named : kNames) {
    if (text == named.name) {
      argb = named.argb;
      return true;
    }
  }
  return false;
}

}  // namespace mivo::duilib::attr
