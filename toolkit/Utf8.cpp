#include "toolkit/Utf8.h"

#include <cstdint>
#include <cstring>

namespace toolkit {
namespace {

constexpr char32_t kReplacement = 0xFFFD;

wchar_t* PutCodePoint(char32_t cp, wchar_t* out) {
  if constexpr (sizeof(wchar_t) == 2) {
    if (cp >= 0x10000) {
      cp -= 0x10000;
      *out++ = static_cast<wchar_t>(0xD800 + (cp >> 10));
      *out++ = static_cast<wchar_t>(0xDC00 + (cp & 0x3FF));
      return out;
    }
  }
  *out++ = static_cast<wchar_t>(cp);
  return out;
}

char* PutUtf8(char32_t cp, char* out) {
  if (cp < 0x80) {
    *out++ = static_cast<char>(cp);
  } else if (cp < 0x800) {
    *out++ = static_cast<char>(0xC0 | (cp >> 6));
    *out++ = static_cast<char>(0x80 | (cp & 0x3F));
  } else if (cp < 0x10000) {
    *out++ = static_cast<char>(0xE0 | (cp >> 12));
    *out++ = static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
    *out++ = static_cast<char>(0x80 | (cp & 0x3F));
  } else {
    *out++ = static_cast<char>(0xF0 | (cp >> 18));
    *out++ = static_cast<char>(0x80 | ((cp >> 12) & 0x3F));
    *out++ = static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
    *out++ = static_cast<char>(0x80 | (cp & 0x3F));
  }
  return out;
}

}  // namespace

size_t Utf8ToWide(const char* bytes, size_t length, wchar_t* out) {
  const auto* s = reinterpret_cast<const unsigned char*>(bytes);
  wchar_t* const first = out;
  size_t i = 0;
  while (i < length) {
    if (s[i] < 0x80) {
      if (i + 4 <= length) {
        uint32_t w;
        std::memcpy(&w, s + i, 4);
        if (!(w & 0x80808080u)) {
          out[0] = s[i], out[1] = s[i + 1], out[2] = s[i + 2], out[3] = s[i + 3];
          out += 4, i += 4;
          continue;
        }
      }
      *out++ = static_cast<wchar_t>(s[i++]);
      continue;
    }
    unsigned char b = s[i];  // not ASCII
    // the valid two- and three-byte forms straight away; anything else takes the careful path
    if (b >= 0xC2 && b <= 0xDF && i + 1 < length && (s[i + 1] & 0xC0) == 0x80) {
      *out++ = static_cast<wchar_t>(((b & 0x1F) << 6) | (s[i + 1] & 0x3F));
      i += 2;
      continue;
    }
    if (b >= 0xE1 && b <= 0xEF && b != 0xED && i + 2 < length && (s[i + 1] & 0xC0) == 0x80 &&
        (s[i + 2] & 0xC0) == 0x80) {
      *out++ = static_cast<wchar_t>(((b & 0x0F) << 12) | ((s[i + 1] & 0x3F) << 6) | (s[i + 2] & 0x3F));
      i += 3;
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
      out = PutCodePoint(kReplacement, out);
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
    out = PutCodePoint(ok ? cp : kReplacement, out);
    i = j;  // on failure: skip the valid prefix read so far, as one replacement
  }
  return static_cast<size_t>(out - first);
}

size_t WideToUtf8(const wchar_t* text, size_t length, char* out) {
  char* const first = out;
  for (size_t i = 0; i < length; ++i) {
    // ASCII runs, eight units at a time
    while (i + 8 <= length) {
      uint32_t any = 0;
      for (int k = 0; k < 8; ++k) any |= static_cast<uint32_t>(text[i + k]);
      if (any >= 0x80) break;
      for (int k = 0; k < 8; ++k) out[k] = static_cast<char>(text[i + k]);
      out += 8, i += 8;
    }
    if (i >= length) break;
    char32_t cp = static_cast<char32_t>(text[i]);
    if (cp < 0x80) {
      *out++ = static_cast<char>(cp);
      continue;
    }
    if (cp >= 0xD800 && cp <= 0xDBFF && i + 1 < length) {
      char32_t next = static_cast<char32_t>(text[i + 1]);
      if (next >= 0xDC00 && next <= 0xDFFF) {
        cp = 0x10000 + ((cp - 0xD800) << 10) + (next - 0xDC00);
        ++i;
      }
    }
    if ((cp >= 0xD800 && cp <= 0xDFFF) || cp > 0x10FFFF) cp = kReplacement;
    out = PutUtf8(cp, out);
  }
  return static_cast<size_t>(out - first);
}

void Utf8ToWide(const char* bytes, size_t length, std::wstring& out) {
  out.resize(length);
  out.resize(length ? Utf8ToWide(bytes, length, out.data()) : 0);
}

void WideToUtf8(const wchar_t* text, size_t length, std::string& out) {
  out.resize(length * kUtf8PerWide);
  out.resize(length ? WideToUtf8(text, length, out.data()) : 0);
}

}  // namespace toolkit
