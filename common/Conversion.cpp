#include "common/Conversion.h"

#include <climits>
#include <cstdint>
#include <cstring>
#include <cwchar>
#include <cwctype>
#include <new>

#include "toolkit/CodePage.h"

namespace mivo::common {
namespace {

template <typename Ch>
bool IsBlank(Ch c) {
  return c == Ch(' ') || (c >= Ch('\t') && c <= Ch('\r'));
}

// The atoi family: blanks, optional sign, digits; clamps to [lo, hi].
template <typename Ch>
long long ParseDecimal(const Ch* s, long long lo, long long hi) {
  if (!s) return 0;
  while (IsBlank(*s)) ++s;
  bool negative = false;
  if (*s == Ch('+') || *s == Ch('-')) negative = (*s++ == Ch('-'));
  unsigned long long limit =
      negative ? static_cast<unsigned long long>(-(lo + 1)) + 1 : static_cast<unsigned long long>(hi);
  unsigned long long v = 0;
  bool overflow = false;
  for (; *s >= Ch('0') && *s <= Ch('9'); ++s) {
    unsigned digit = static_cast<unsigned>(*s - Ch('0'));
    if (!overflow && (v > (limit - digit) / 10)) overflow = true;
    if (!overflow) v = v * 10 + digit;
  }
  if (overflow) return negative ? lo : hi;
  return negative ? static_cast<long long>(0 - v) : static_cast<long long>(v);
}

template <typename Ch>
unsigned long long ParseUnsigned(const Ch* s, int base) {
  if (!s) return 0;
  while (IsBlank(*s)) ++s;
  bool negative = false;
  if (*s == Ch('+') || *s == Ch('-')) negative = (*s++ == Ch('-'));
  if (base == 0) {
    if (s[0] == Ch('0') && (s[1] == Ch('x') || s[1] == Ch('X'))) {
      base = 16;
      s += 2;
    } else if (s[0] == Ch('0')) {
      base = 8;
    } else {
      base = 10;
    }
  }
  unsigned long long v = 0;
  bool overflow = false;
  for (;; ++s) {
    int digit;
    if (*s >= Ch('0') && *s <= Ch('9'))
      digit = static_cast<int>(*s - Ch('0'));
    else if (*s >= Ch('a') && *s <= Ch('z'))
      digit = static_cast<int>(*s - Ch('a')) + 10;
    else if (*s >= Ch('A') && *s <= Ch('Z'))
      digit = static_cast<int>(*s - Ch('A')) + 10;
    else
      break;
    if (digit >= base) break;
    if (v > (ULLONG_MAX - static_cast<unsigned>(digit)) / static_cast<unsigned>(base)) overflow = true;
    v = v * static_cast<unsigned>(base) + static_cast<unsigned>(digit);
  }
  if (overflow) return ULLONG_MAX;
  return negative ? 0 - v : v;
}

// The bytes of a std::string up to its first NUL, as strlen of c_str() counts them, eight
// at a time (the C runtime's strlen goes byte by byte on some platforms).
size_t BytesBeforeNul(const std::string& s) {
  const char* p = s.data();
  size_t n = s.size(), i = 0;
  for (; i + 8 <= n; i += 8) {
    uint64_t word;
    std::memcpy(&word, p + i, 8);
    if ((word - 0x0101010101010101ull) & ~word & 0x8080808080808080ull) break;  // a zero byte in it
  }
  while (i < n && p[i]) ++i;
  return i;
}

CString FromCodePage(const char* bytes, size_t length, unsigned codePage) {
  CString text;
  if (!bytes || length == 0 || !toolkit::MultiByteToWide(codePage, bytes, length, text)) return CString();
  return text;
}

std::string ToCodePage(const wchar_t* text, size_t length, unsigned codePage) {
  std::string out;
  if (!text || length == 0 || !toolkit::WideToMultiByte(codePage, text, length, out)) return std::string();
  return out;
}

}  // namespace

std::string CString2MBCS(const CString& text, int codePage) {
  return ToCodePage(text.GetString(), static_cast<size_t>(text.GetLength()), static_cast<unsigned>(codePage));
}

CString MBCS2CString(const char* bytes, int codePage) {
  if (!bytes) return CString();
  return FromCodePage(bytes, std::strlen(bytes), static_cast<unsigned>(codePage));
}

CString MBCS2CString(char* bytes, int codePage) { return MBCS2CString(static_cast<const char*>(bytes), codePage); }

CString MBCS2CString(const std::string& bytes, int codePage) {
  return FromCodePage(bytes.c_str(), BytesBeforeNul(bytes), static_cast<unsigned>(codePage));
}

CString utf8_to_CString(const char* utf8) { return MBCS2CString(utf8, 65001); }
CString utf8_to_CString(char* utf8) { return MBCS2CString(static_cast<const char*>(utf8), 65001); }
CString utf8_to_CString(const std::string& utf8) { return FromCodePage(utf8.c_str(), BytesBeforeNul(utf8), 65001); }

std::string CString_to_utf8(const CString& text) { return CString2MBCS(text, 65001); }

std::wstring String2Wstring(const std::string& ansi) {
  std::wstring wide;
  if (ansi.empty() || !toolkit::MultiByteToWide(0, ansi.data(), ansi.size(), wide)) return std::wstring();
  if (!wide.empty() && wide[0] == 0xFEFF) wide.erase(0, 1);
  return wide;
}

std::string Wstring2String(const std::wstring& text) { return ToCodePage(text.data(), text.size(), 0); }

std::string String2UTF8(const std::string& ansi) {
  std::wstring wide;
  if (ansi.empty() || !toolkit::MultiByteToWide(0, ansi.data(), ansi.size(), wide)) return std::string();
  return ToCodePage(wide.data(), wide.size(), 65001);
}

std::string UTF82String(const std::string& utf8) {
  std::wstring wide;
  if (utf8.empty() || !toolkit::MultiByteToWide(65001, utf8.data(), utf8.size(), wide)) return std::string();
  return ToCodePage(wide.data(), wide.size(), 0);
}

int CString2Int(const CString& text) { return static_cast<int>(ParseDecimal(text.GetString(), INT_MIN, INT_MAX)); }

CString Int2CString(int value) {
  CString s;
  s.Format(L"%d", value);
  return s;
}

ULONGLONG CString2DWORD64(const CString& text) {
  return static_cast<ULONGLONG>(ParseDecimal(text.GetString(), LLONG_MIN, LLONG_MAX));
}

CString DWORD642CString(ULONGLONG value) {
  CString s;
  s.Format(L"%I64d", value);
  return s;
}

ULONGLONG CString2UInt(const CString& text) { return ParseUnsigned(text.GetString(), 0); }

CString UInt2CString(ULONGLONG value) {
  CString s;
  s.Format(L"%I64d", value);
  return s;
}

std::string Int2Bytes(int value) { return CString2MBCS(Int2CString(value), 0); }

std::string UInt2Bytes(unsigned int value) {
  CString s;
  s.Format(L"%d", value);
  return CString2MBCS(s, 0);
}

int Bytes2Int(const std::string& text) { return static_cast<int>(ParseDecimal(text.c_str(), INT_MIN, INT_MAX)); }

std::string DWORD642Bytes(ULONGLONG value) {
  CString s;
  s.Format(L"%I64u", value);
  return CString2MBCS(s, 0);
}

ULONGLONG Bytes2DWORD64(const std::string& text) { return ParseUnsigned(text.c_str(), 10); }

std::string Int2Utf8(int value) { return CString_to_utf8(Int2CString(value)); }
int Utf82Int(const std::string& text) { return Bytes2Int(text); }
std::string DWORD642Utf8(ULONGLONG value) {
  CString s;
  s.Format(L"%I64u", value);
  return CString_to_utf8(s);
}
ULONGLONG Utf82DWORD64(const std::string& text) { return Bytes2DWORD64(text); }

int string2int(const std::string* text) { return text ? Bytes2Int(*text) : 0; }
int string2int(const char* text) { return text ? static_cast<int>(ParseDecimal(text, INT_MIN, INT_MAX)) : 0; }

std::string ultoa10(unsigned int value) {
  char buf[16];
  char* p = buf + sizeof buf;
  *--p = 0;
  do {
    *--p = static_cast<char>('0' + value % 10);
    value /= 10;
  } while (value);
  return std::string(p);
}

unsigned int xatol(const char* s, unsigned int len, const char** end) {
  unsigned int value = 0;
  unsigned int i = 0;
  if (s) {
    for (; i < len; ++i) {
      unsigned char c = static_cast<unsigned char>(s[i]);
      if (c < '0' || c > '9') break;
      value = value * 10u + (c - '0');
    }
  }
  if (end) *end = (s && i < len) ? s + i : nullptr;
  return value;
}

bool IsInteger(const wchar_t* text) {
  if (!text) return false;
  if (*text == L'+' || *text == L'-') ++text;
  if (!*text) return false;
  for (; *text; ++text)
    if (*text < L'0' || *text > L'9') return false;
  return true;
}

wchar_t* GetWideCharFromMultiByte(const CString& text, int& length) {
  length = 0;
  wchar_t* buffer = new (std::nothrow) wchar_t[static_cast<size_t>(text.GetLength()) + 1];
  if (!buffer) return nullptr;
  std::wmemcpy(buffer, text.GetString(), static_cast<size_t>(text.GetLength()) + 1);
  length = text.GetLength();
  return buffer;
}

}  // namespace mivo::common
