#include "toolkit/Format.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cwchar>
#include <type_traits>

#include "toolkit/CodePage.h"

namespace toolkit {
namespace {

enum class Size { Default, Char, Short, Long, LongLong, Int64, Int32, Ptr, SizeT, IntMax, PtrDiff, LongDouble, Wide, Narrow };

struct Directive {
  std::string flags;
  int width = -1;
  int precision = -1;
  Size size = Size::Default;
  char conv = 0;
};

template <typename Ch>
void AppendAscii(std::basic_string<Ch>& out, const char* s, size_t n) {
  for (size_t i = 0; i < n; ++i) out.push_back(static_cast<Ch>(static_cast<unsigned char>(s[i])));
}

// Lays out a number through the C library with a narrow copy of the directive.
template <typename Ch, typename T>
void AppendNumber(std::basic_string<Ch>& out, const Directive& dir, const char* length, char conv, T value) {
  std::string f = "%" + dir.flags;
  if (dir.width >= 0) f += std::to_string(dir.width);
  if (dir.precision >= 0) f += "." + std::to_string(dir.precision);
  f += length;
  f += conv;
  char small[128];
  int n = std::snprintf(small, sizeof small, f.c_str(), value);
  if (n < 0) return;
  if (static_cast<size_t>(n) < sizeof small) {
    AppendAscii(out, small, static_cast<size_t>(n));
    return;
  }
  std::string big(static_cast<size_t>(n) + 1, '\0');
  std::snprintf(big.data(), big.size(), f.c_str(), value);
  AppendAscii(out, big.data(), static_cast<size_t>(n));
}

template <typename Ch>
void AppendPadded(std::basic_string<Ch>& out, const Directive& dir, const std::basic_string<Ch>& text) {
  size_t len = text.size();
  if (dir.precision >= 0 && static_cast<size_t>(dir.precision) < len) len = static_cast<size_t>(dir.precision);
  size_t pad = (dir.width > 0 && static_cast<size_t>(dir.width) > len) ? dir.width - len : 0;
  bool left = dir.flags.find('-') != std::string::npos;
  Ch fill = (!left && dir.flags.find('0') != std::string::npos) ? Ch('0') : Ch(' ');
  if (!left) out.append(pad, fill);
  out.append(text, 0, len);
  if (left) out.append(pad, Ch(' '));
}

template <typename Ch>
std::basic_string<Ch> FromWide(const wchar_t* s, size_t n);
template <>
std::wstring FromWide<wchar_t>(const wchar_t* s, size_t n) { return std::wstring(s, n); }
template <>
std::string FromWide<char>(const wchar_t* s, size_t n) {
  std::string r;
  WideToMultiByte(0, s, n, r);
  return r;
}

template <typename Ch>
std::basic_string<Ch> FromNarrow(const char* s, size_t n);
template <>
std::wstring FromNarrow<wchar_t>(const char* s, size_t n) {
  std::wstring r;
  MultiByteToWide(0, s, n, r);
  return r;
}
template <>
std::string FromNarrow<char>(const char* s, size_t n) { return std::string(s, n); }

template <typename Ch>
size_t Length(const Ch* s, int precision) {
  size_t n = 0;
  while ((precision < 0 || n < static_cast<size_t>(precision)) && s[n]) ++n;
  return n;
}

// Whether a %s / %c of this directive takes wide text.
template <typename Ch>
bool TakesWide(const Directive& dir) {
  if (dir.size == Size::Narrow || dir.size == Size::Short) return false;
  if (dir.size == Size::Wide || dir.size == Size::Long) return true;
  bool upper = dir.conv == 'S' || dir.conv == 'C';
  bool wideFormat = std::is_same_v<Ch, wchar_t>;
  return wideFormat != upper;
}

template <typename Ch>
std::basic_string<Ch> Format(const Ch* fmt, va_list args) {
  std::basic_string<Ch> out;
  if (!fmt) return out;
  va_list ap;
  va_copy(ap, args);
  const Ch* p = fmt;
  while (*p) {
    if (*p != Ch('%')) {
      out.push_back(*p++);
      continue;
    }
    const Ch* start = p++;
    if (*p == Ch('%')) {
      out.push_back(Ch('%'));
      ++p;
      continue;
    }
    Directive dir;
    while (*p == Ch('-') || *p == Ch('+') || *p == Ch(' ') || *p == Ch('#') || *p == Ch('0'))
      dir.flags.push_back(static_cast<char>(*p++));
    if (*p == Ch('*')) {
      dir.width = va_arg(ap, int);
      if (dir.width < 0) {
        dir.flags.push_back('-');
        dir.width = -dir.width;
      }
      ++p;
    } else {
      while (*p >= Ch('0') && *p <= Ch('9')) dir.width = (dir.width < 0 ? 0 : dir.width * 10) + (*p++ - Ch('0'));
    }
    if (*p == Ch('.')) {
      ++p;
      dir.precision = 0;
      if (*p == Ch('*')) {
        dir.precision = va_arg(ap, int);
        ++p;
      } else {
        while (*p >= Ch('0') && *p <= Ch('9')) dir.precision = dir.precision * 10 + (*p++ - Ch('0'));
      }
    }
    // length modifiers
    if (*p == Ch('I') && p[1] == Ch('6') && p[2] == Ch('4')) dir.size = Size::Int64, p += 3;
    else if (*p == Ch('I') && p[1] == Ch('3') && p[2] == Ch('2')) dir.size = Size::Int32, p += 3;
    else if (*p == Ch('I')) dir.size = Size::Ptr, ++p;
    else if (*p == Ch('h') && p[1] == Ch('h')) dir.size = Size::Char, p += 2;
    else if (*p == Ch('h')) dir.size = Size::Short, ++p;
    else if (*p == Ch('l') && p[1] == Ch('l')) dir.size = Size::LongLong, p += 2;
    else if (*p == Ch('l')) dir.size = Size::Long, ++p;
    else if (*p == Ch('w')) dir.size = Size::Wide, ++p;
    else if (*p == Ch('z')) dir.size = Size::SizeT, ++p;
    else if (*p == Ch('j')) dir.size = Size::IntMax, ++p;
    else if (*p == Ch('t')) dir.size = Size::PtrDiff, ++p;
    else if (*p == Ch('L')) dir.size = Size::LongDouble, ++p;
    if (!*p) {  // a lone directive at the end is printed as it stands
      out.append(start, p);
      break;
    }
    dir.conv = static_cast<char>(*p++);
    switch (dir.conv) {
      case 'd':
      case 'i': {
        long long v;
        switch (dir.size) {
          case Size::Char: v = static_cast<signed char>(va_arg(ap, int)); break;
          case Size::Short: v = static_cast<short>(va_arg(ap, int)); break;
          case Size::Long: v = va_arg(ap, long); break;
          case Size::LongLong:
          case Size::Int64:
          case Size::IntMax: v = va_arg(ap, long long); break;
          case Size::Ptr:
          case Size::SizeT:
          case Size::PtrDiff: v = va_arg(ap, intptr_t); break;
          default: v = va_arg(ap, int); break;
        }
        AppendNumber(out, dir, "ll", 'd', v);
        break;
      }
      case 'u':
      case 'o':
      case 'x':
      case 'X': {
        unsigned long long v;
        switch (dir.size) {
          case Size::Char: v = static_cast<unsigned char>(va_arg(ap, unsigned)); break;
          case Size::Short: v = static_cast<unsigned short>(va_arg(ap, unsigned)); break;
          case Size::Long: v = va_arg(ap, unsigned long); break;
          case Size::LongLong:
          case Size::Int64:
          case Size::IntMax: v = va_arg(ap, unsigned long long); break;
          case Size::Ptr:
          case Size::SizeT:
          case Size::PtrDiff: v = va_arg(ap, uintptr_t); break;
          default: v = va_arg(ap, unsigned); break;
        }
        AppendNumber(out, dir, "ll", dir.conv, v);
        break;
      }
      case 'f':
      case 'F':
      case 'e':
      case 'E':
      case 'g':
      case 'G':
      case 'a':
      case 'A':
        if (dir.size == Size::LongDouble)
          AppendNumber(out, dir, "L", dir.conv, va_arg(ap, long double));
        else
          AppendNumber(out, dir, "", dir.conv, va_arg(ap, double));
        break;
      case 'p': {
        Directive hex;
        hex.flags = "0";
        hex.width = static_cast<int>(sizeof(void*) * 2);
        AppendNumber(out, hex, "ll", 'X', static_cast<unsigned long long>(reinterpret_cast<uintptr_t>(va_arg(ap, void*))));
        break;
      }
      case 'n':
        (void)va_arg(ap, void*);  // never written: a format is not allowed to store
        break;
      case 'c':
      case 'C': {
        int ch = va_arg(ap, int);
        std::basic_string<Ch> text;
        if (TakesWide<Ch>(dir)) {
          wchar_t w = static_cast<wchar_t>(ch);
          text = FromWide<Ch>(&w, 1);
        } else {
          char c = static_cast<char>(ch);
          text = FromNarrow<Ch>(&c, 1);
        }
        Directive noPrecision = dir;
        noPrecision.precision = -1;
        AppendPadded(out, noPrecision, text);
        break;
      }
      case 's':
      case 'S': {
        std::basic_string<Ch> text;
        if (TakesWide<Ch>(dir)) {
          const wchar_t* s = va_arg(ap, const wchar_t*);
          if (!s) s = L"(null)";
          text = FromWide<Ch>(s, Length(s, dir.precision));
        } else {
          const char* s = va_arg(ap, const char*);
          if (!s) s = "(null)";
          text = FromNarrow<Ch>(s, Length(s, dir.precision));
        }
        Directive converted = dir;
        converted.precision = -1;  // the cut was made on the source text
        AppendPadded(out, converted, text);
        break;
      }
      default:  // unknown conversion: print it as it stands
        out.append(start, p);
        break;
    }
  }
  va_end(ap);
  return out;
}

}  // namespace

std::wstring FormatWide(const wchar_t* format, va_list args) { return Format<wchar_t>(format, args); }
std::string FormatNarrow(const char* format, va_list args) { return Format<char>(format, args); }

}  // namespace toolkit
