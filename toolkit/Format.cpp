#include "toolkit/Format.h"

#include <charconv>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cwchar>
#include <type_traits>
#include <utility>

#include "toolkit/CodePage.h"

namespace toolkit {
namespace {

enum class Size {
  Default,
  Char,
  Short,
  Long,
  LongLong,
  Int64,
  Int32,
  Ptr,
  SizeT,
  IntMax,
  PtrDiff,
  LongDouble,
  Wide,
  Narrow
};

// The flags of a directive as a set, written back in one fixed order: printf reads them in
// any order and any number of times, so the set says all they say.
enum Flag : unsigned { kMinus = 1, kPlus = 2, kSpace = 4, kHash = 8, kZero = 16 };

struct Directive {
  unsigned flags = 0;
  int width = -1;
  int precision = -1;
  Size size = Size::Default;
  char conv = 0;
};

// Where the text goes: a growing string, or a fixed buffer that keeps what fits.
template <typename Ch>
class StringSink {
 public:
  explicit StringSink(std::basic_string<Ch>& out) : m_out(out) {}
  void Put(Ch c) { m_out.push_back(c); }
  void Append(const Ch* s, size_t n) { m_out.append(s, n); }
  void Fill(size_t n, Ch c) { m_out.append(n, c); }
  bool Full() const { return false; }

 private:
  std::basic_string<Ch>& m_out;
};

template <typename Ch>
class BufferSink {
 public:
  BufferSink(Ch* buffer, size_t room) : m_buffer(buffer), m_room(room) {}
  void Put(Ch c) {
    if (m_length < m_room) m_buffer[m_length++] = c;
  }
  void Append(const Ch* s, size_t n) {
    if (n > m_room - m_length) n = m_room - m_length;
    std::char_traits<Ch>::copy(m_buffer + m_length, s, n);
    m_length += n;
  }
  void Fill(size_t n, Ch c) {
    if (n > m_room - m_length) n = m_room - m_length;
    std::char_traits<Ch>::assign(m_buffer + m_length, n, c);
    m_length += n;
  }
  bool Full() const { return m_length == m_room; }
  size_t Length() const { return m_length; }

 private:
  Ch* m_buffer;
  size_t m_room;
  size_t m_length = 0;
};

template <typename Ch, typename Sink>
void AppendAscii(Sink& out, const char* s, size_t n) {
  if constexpr (std::is_same_v<Ch, char>) {
    out.Append(s, n);
  } else {
    for (size_t i = 0; i < n; ++i) out.Put(static_cast<Ch>(static_cast<unsigned char>(s[i])));
  }
}

// Lays out a number through the C library with a narrow copy of the directive; a plain %d
// or %u (no flags, width or precision) is written here, as the C library would.
template <typename Ch, typename Sink, typename T>
void AppendNumber(Sink& out, const Directive& dir, const char* length, char conv, T value) {
  char small[128];
  if constexpr (std::is_integral_v<T>) {
    if ((conv == 'd' || conv == 'u') && dir.flags == 0 && dir.width < 0 && dir.precision < 0) {
      auto r = std::to_chars(small, small + sizeof small, value);
      AppendAscii<Ch>(out, small, static_cast<size_t>(r.ptr - small));
      return;
    }
  }
  char f[64];
  char* p = f;
  *p++ = '%';
  for (auto [bit, c] : {std::pair{kMinus, '-'}, {kPlus, '+'}, {kSpace, ' '}, {kHash, '#'}, {kZero, '0'}})
    if (dir.flags & bit) *p++ = c;
  if (dir.width >= 0) p = std::to_chars(p, f + 30, dir.width).ptr;
  if (dir.precision >= 0) {
    *p++ = '.';
    p = std::to_chars(p, f + 60, dir.precision).ptr;
  }
  while (*length) *p++ = *length++;
  *p++ = conv;
  *p = 0;
  int n = std::snprintf(small, sizeof small, f, value);
  if (n < 0) return;
  if (static_cast<size_t>(n) < sizeof small) {
    AppendAscii<Ch>(out, small, static_cast<size_t>(n));
    return;
  }
  std::string big(static_cast<size_t>(n) + 1, '\0');
  std::snprintf(big.data(), big.size(), f, value);
  AppendAscii<Ch>(out, big.data(), static_cast<size_t>(n));
}

// `len` characters of `text`, padded to the directive's width.
template <typename Ch, typename Sink>
void AppendPadded(Sink& out, const Directive& dir, const Ch* text, size_t len) {
  size_t pad = (dir.width > 0 && static_cast<size_t>(dir.width) > len) ? dir.width - len : 0;
  bool left = (dir.flags & kMinus) != 0;
  Ch fill = (!left && (dir.flags & kZero)) ? Ch('0') : Ch(' ');
  if (!left) out.Fill(pad, fill);
  out.Append(text, len);
  if (left) out.Fill(pad, Ch(' '));
}

template <typename Ch>
size_t Length(const Ch* s, int precision) {
  size_t n = 0;
  while ((precision < 0 || n < static_cast<size_t>(precision)) && s[n]) ++n;
  return n;
}

// Text of the other width, converted through the ANSI code page, padded.
template <typename Ch, typename Sink>
void AppendWide(Sink& out, const Directive& dir, const wchar_t* s, size_t n) {
  if constexpr (std::is_same_v<Ch, wchar_t>) {
    AppendPadded<Ch>(out, dir, s, n);
  } else {
    std::string r;
    WideToMultiByte(0, s, n, r);
    AppendPadded<Ch>(out, dir, r.data(), r.size());
  }
}

template <typename Ch, typename Sink>
void AppendNarrow(Sink& out, const Directive& dir, const char* s, size_t n) {
  if constexpr (std::is_same_v<Ch, char>) {
    AppendPadded<Ch>(out, dir, s, n);
  } else {
    std::wstring r;
    MultiByteToWide(0, s, n, r);
    AppendPadded<Ch>(out, dir, r.data(), r.size());
  }
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

template <typename Ch, typename Sink>
void Format(Sink& out, const Ch* fmt, va_list args) {
  if (!fmt) return;
  va_list ap;
  va_copy(ap, args);
  const Ch* p = fmt;
  while (*p && !out.Full()) {
    if (*p != Ch('%')) {
      const Ch* run = p;
      while (*p && *p != Ch('%')) ++p;
      out.Append(run, static_cast<size_t>(p - run));
      continue;
    }
    const Ch* start = p++;
    if (*p == Ch('%')) {
      out.Put(Ch('%'));
      ++p;
      continue;
    }
    Directive dir;
    for (;; ++p) {
      if (*p == Ch('-'))
        dir.flags |= kMinus;
      else if (*p == Ch('+'))
        dir.flags |= kPlus;
      else if (*p == Ch(' '))
        dir.flags |= kSpace;
      else if (*p == Ch('#'))
        dir.flags |= kHash;
      else if (*p == Ch('0'))
        dir.flags |= kZero;
      else
        break;
    }
    if (*p == Ch('*')) {
      dir.width = va_arg(ap, int);
      if (dir.width < 0) {
        dir.flags |= kMinus;
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
    if (*p == Ch('I') && p[1] == Ch('6') && p[2] == Ch('4'))
      dir.size = Size::Int64, p += 3;
    else if (*p == Ch('I') && p[1] == Ch('3') && p[2] == Ch('2'))
      dir.size = Size::Int32, p += 3;
    else if (*p == Ch('I'))
      dir.size = Size::Ptr, ++p;
    else if (*p == Ch('h') && p[1] == Ch('h'))
      dir.size = Size::Char, p += 2;
    else if (*p == Ch('h'))
      dir.size = Size::Short, ++p;
    else if (*p == Ch('l') && p[1] == Ch('l'))
      dir.size = Size::LongLong, p += 2;
    else if (*p == Ch('l'))
      dir.size = Size::Long, ++p;
    else if (*p == Ch('w'))
      dir.size = Size::Wide, ++p;
    else if (*p == Ch('z'))
      dir.size = Size::SizeT, ++p;
    else if (*p == Ch('j'))
      dir.size = Size::IntMax, ++p;
    else if (*p == Ch('t'))
      dir.size = Size::PtrDiff, ++p;
    else if (*p == Ch('L'))
      dir.size = Size::LongDouble, ++p;
    if (!*p) {  // a lone directive at the end is printed as it stands
      out.Append(start, static_cast<size_t>(p - start));
      break;
    }
    dir.conv = static_cast<char>(*p++);
    switch (dir.conv) {
      case 'd':
      case 'i': {
        long long v;
        switch (dir.size) {
          case Size::Char:
            v = static_cast<signed char>(va_arg(ap, int));
            break;
          case Size::Short:
            v = static_cast<short>(va_arg(ap, int));
            break;
          case Size::Long:
            v = va_arg(ap, int32_t);
            break;  // long is 32 bits on Windows
          case Size::LongLong:
          case Size::Int64:
          case Size::IntMax:
            v = va_arg(ap, long long);
            break;
          case Size::Ptr:
          case Size::SizeT:
          case Size::PtrDiff:
            v = va_arg(ap, intptr_t);
            break;
          default:
            v = va_arg(ap, int);
            break;
        }
        AppendNumber<Ch>(out, dir, "ll", 'd', v);
        break;
      }
      case 'u':
      case 'o':
      case 'x':
      case 'X': {
        unsigned long long v;
        switch (dir.size) {
          case Size::Char:
            v = static_cast<unsigned char>(va_arg(ap, unsigned));
            break;
          case Size::Short:
            v = static_cast<unsigned short>(va_arg(ap, unsigned));
            break;
          case Size::Long:
            v = va_arg(ap, uint32_t);
            break;
          case Size::LongLong:
          case Size::Int64:
          case Size::IntMax:
            v = va_arg(ap, unsigned long long);
            break;
          case Size::Ptr:
          case Size::SizeT:
          case Size::PtrDiff:
            v = va_arg(ap, uintptr_t);
            break;
          default:
            v = va_arg(ap, unsigned);
            break;
        }
        AppendNumber<Ch>(out, dir, "ll", dir.conv, v);
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
          AppendNumber<Ch>(out, dir, "L", dir.conv, va_arg(ap, long double));
        else
          AppendNumber<Ch>(out, dir, "", dir.conv, va_arg(ap, double));
        break;
      case 'p': {
        Directive hex;
        hex.flags = kZero;
        hex.width = static_cast<int>(sizeof(void*) * 2);
        AppendNumber<Ch>(out, hex, "ll", 'X',
                         static_cast<unsigned long long>(reinterpret_cast<uintptr_t>(va_arg(ap, void*))));
        break;
      }
      case 'n':
        (void)va_arg(ap, void*);  // never written: a format is not allowed to store
        break;
      case 'c':
      case 'C': {
        int ch = va_arg(ap, int);
        Directive noPrecision = dir;
        noPrecision.precision = -1;
        if (TakesWide<Ch>(dir)) {
          wchar_t w = static_cast<wchar_t>(ch);
          AppendWide<Ch>(out, noPrecision, &w, 1);
        } else {
          char c = static_cast<char>(ch);
          AppendNarrow<Ch>(out, noPrecision, &c, 1);
        }
        break;
      }
      case 's':
      case 'S': {
        Directive converted = dir;
        converted.precision = -1;  // the cut is made on the source text
        if (TakesWide<Ch>(dir)) {
          const wchar_t* s = va_arg(ap, const wchar_t*);
          if (!s) s = L"(null)";
          AppendWide<Ch>(out, converted, s, Length(s, dir.precision));
        } else {
          const char* s = va_arg(ap, const char*);
          if (!s) s = "(null)";
          AppendNarrow<Ch>(out, converted, s, Length(s, dir.precision));
        }
        break;
      }
      default:  // unknown conversion: print it as it stands
        out.Append(start, static_cast<size_t>(p - start));
        break;
    }
  }
  va_end(ap);
}

template <typename Ch>
std::basic_string<Ch> FormatString(const Ch* fmt, va_list args) {
  std::basic_string<Ch> text;
  StringSink<Ch> sink(text);
  Format<Ch>(sink, fmt, args);
  return text;
}

}  // namespace

std::wstring FormatWide(const wchar_t* format, va_list args) { return FormatString<wchar_t>(format, args); }
std::string FormatNarrow(const char* format, va_list args) { return FormatString<char>(format, args); }

size_t FormatWideInto(wchar_t* buffer, size_t capacity, const wchar_t* format, va_list args) {
  if (!buffer || capacity == 0) return 0;
  BufferSink<wchar_t> sink(buffer, capacity - 1);
  Format<wchar_t>(sink, format, args);
  buffer[sink.Length()] = 0;
  return sink.Length();
}

}  // namespace toolkit
