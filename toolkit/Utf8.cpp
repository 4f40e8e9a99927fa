#include "toolkit/Utf8.h"

namespace toolkit {
namespace {

constexpr char32_t kReplacement = 0xFFFD;

void AppendCodePoint(char32_t cp, std::wstring& out) {
  if constexpr (sizeof(wchar_t) == 2) {
    if (cp >= 0x10000) {
      cp -= 0x10000;
      out.push_back(static_cast<wchar_t>(0xD800 + (cp >> 10)));
      out.push_back(static_cast<wchar_t>(0xDC00 + (cp & 0x3FF)));
      return;
    }
  }
  out.push_back(static_cast<wchar_t>(cp));
}

void AppendUtf8(char32_t cp, std::string& out) {
  if (cp < 0x80) {
    out.push_back(static_cast<char>(cp));
  } else if (cp < 0x800) {
    out.push_back(static_cast<char>(0xC0 | (cp >> 6)));
    out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
  } else if (cp < 0x10000) {
    out.push_back(static_cast<char>(0xE0 | (cp >> 12)));
    out.push_back(static_cast<char>(0x80 | ((cp >> 6) & 0x3F)));
    out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
  } else {
    out.push_back(static_cast<char>(0xF0 | (cp >> 18)));
    out.push_back(static_cast<char>(0x80 | ((cp >> 12) & 0x3F)));
    out.push_back(static_cast<char>(0x80 | ((cp >> 6) & 0x3F)));
    out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
  }
}

}  // namespace

void Utf8ToWide(const char* bytes, size_t length, std::wstring& out) {
  out.clear();
  out.reserve(length);
  const auto* s = reinterpret_cast<const unsigned char*>(bytes);
  size_t i = 0;
  while (i < length) {
    unsigned char b = s[i];
    if (b < 0x80) {
      out.push_back(static_cast<wchar_t>(b));
      ++i;
      continue;
    }
    int need;
    char32_t cp;
    unsigned char lo = 0x80, hi = 0xBF;  // allowed range of the second byte
    if (b >= 0xC2 && b <= 0xDF) {
      need = 1, cp = b & 0x1F;
    } else if (b >= 0xE0 && b <= 0xEF) {
      need = 2, cp = b & 0x0F;
      if (b == 0xE0) lo = 0xA0;  // no overlong forms
      if (b == 0xED) hi = 0x9F;  // no surrogates
    } else if (b >= 0xF0 && b <= 0xF4) {
      need = 3, cp = b & 0x07;
      if (b == 0xF0) lo = 0x90;
      if (b == 0xF4) hi = 0x8F;  // nothing above U+10FFFF
    } else {
      AppendCodePoint(kReplacement, out);
      ++i;
      continue;
    }
    size_t j = i + 1;
    bool ok = true;
    for (int k = 0; k < need; ++k, ++j) {
      unsigned char c = j < length ? s[j] : 0;
      unsigned char min = k == 0 ? lo : 0x80, max = k == 0 ? hi : 0xBF;
      if (j >= length || c < min || c > max) {
        ok = false;
        break;
      }
      cp = (cp << 6) | (c & 0x3F);
    }
    AppendCodePoint(ok ? cp : kReplacement, out);
    i = j;  // on failure: skip the valid prefix read so far, as one replacement
  }
}

void WideToUtf8(const wchar_t* text, size_t length, std::string& out) {
  out.clear();
  out.reserve(length);
  for (size_t i = 0; i < length; ++i) {
    char32_t cp = static_cast<char32_t>(text[i]);
    if (cp >= 0xD800 && cp <= 0xDBFF && i + 1 < length) {
      char32_t next = static_cast<char32_t>(text[i + 1]);
      if (next >= 0xDC00 && next <= 0xDFFF) {
        cp = 0x10000 + ((cp - 0xD800) << 10) + (next - 0xDC00);
        ++i;
      }
    }
    if ((cp >= 0xD800 && cp <= 0xDFFF) || cp > 0x10FFFF) cp = kReplacement;
    AppendUtf8(cp, out);
  }
}

}  // namespace toolkit
