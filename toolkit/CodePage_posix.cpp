// POSIX half of the code-page layer: UTF-8 by our own codec, everything else by iconv with
// the Windows code-page numbers mapped to iconv's names.
#include <errno.h>
#include <iconv.h>
#include <locale.h>
#include <wctype.h>

#include <atomic>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <utility>
#include <vector>

#include "toolkit/CodePage.h"
#include "toolkit/Utf8.h"

namespace toolkit {
namespace {

std::atomic<unsigned> g_ansiCodePage{0};

unsigned InitialAnsiCodePage() {
  if (const char* env = std::getenv("MIVO_ANSI_CODEPAGE")) {
    unsigned cp = static_cast<unsigned>(std::strtoul(env, nullptr, 10));
    if (cp != 0) return cp;
  }
  return 65001;
}

// iconv names to try for a Windows code page, best first.
std::vector<std::string> IconvNames(unsigned cp) {
  char buf[32];
  std::vector<std::string> names;
  switch (cp) {
    case 1200:
      return {"UTF-16LE"};
    case 1201:
      return {"UTF-16BE"};
    case 12000:
      return {"UTF-32LE"};
    case 12001:
      return {"UTF-32BE"};
    case 20127:
      return {"ASCII"};
    case 20866:
      return {"KOI8-R"};
    case 21866:
      return {"KOI8-U"};
    case 54936:
      return {"GB18030"};
    case 20932:
    case 51932:
      return {"EUC-JP"};
    case 51936:
      return {"EUC-CN"};
    case 51949:
      return {"EUC-KR"};
    case 50220:
    case 50221:
    case 50222:
      return {"ISO-2022-JP"};
    case 50225:
      return {"ISO-2022-KR"};
    case 50227:
    case 50229:
      return {"ISO-2022-CN"};
    case 52936:
      return {"HZ-GB-2312", "HZ"};
    case 1361:
      return {"JOHAB"};
    case 10000:
      return {"MACINTOSH"};
    case 10007:
      return {"MAC-CYRILLIC", "MACCYRILLIC"};
    case 65000:
      return {"UTF-7"};
    case 950:
      return {"CP950", "BIG5"};
    case 936:
      return {"CP936", "GBK"};
    default:
      break;
  }
  if (cp >= 28591 && cp <= 28605) {
    std::snprintf(buf, sizeof buf, "ISO-8859-%u", cp - 28590);
    names.emplace_back(buf);
  }
  std::snprintf(buf, sizeof buf, "CP%u", cp);
  names.emplace_back(buf);
  std::snprintf(buf, sizeof buf, "IBM%03u", cp);
  names.emplace_back(buf);
  return names;
}

#if __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__
constexpr const char* kWideName = "UTF-32LE";
#else
constexpr const char* kWideName = "UTF-32BE";
#endif

// iconv descriptors are costly to open and not safe to share: one cache per thread.
class IconvCache {
 public:
  ~IconvCache() {
    for (auto& [key, cd] : m_open)
      if (cd != reinterpret_cast<iconv_t>(-1)) iconv_close(cd);
  }
  iconv_t Get(unsigned cp, bool toWide) {
    auto key = std::make_pair(cp, toWide);
    auto it = m_open.find(key);
    if (it != m_open.end()) return it->second;
    iconv_t cd = reinterpret_cast<iconv_t>(-1);
    for (const auto& name : IconvNames(cp)) {
      cd = toWide ? iconv_open(kWideName, name.c_str()) : iconv_open(name.c_str(), kWideName);
      if (cd != reinterpret_cast<iconv_t>(-1)) break;
    }
    m_open.emplace(key, cd);
    return cd;
  }

 private:
  std::map<std::pair<unsigned, bool>, iconv_t> m_open;
};

thread_local IconvCache t_iconv;

unsigned Resolve(unsigned cp) { return cp == 0 ? GetAnsiCodePage() : cp; }

}  // namespace

unsigned GetAnsiCodePage() {
  unsigned cp = g_ansiCodePage.load();
  if (cp == 0) {
    cp = InitialAnsiCodePage();
    g_ansiCodePage.store(cp);
  }
  return cp;
}

void SetAnsiCodePage(unsigned codePage) { g_ansiCodePage.store(codePage); }

bool MultiByteToWide(unsigned codePage, const char* bytes, size_t length, std::wstring& out) {
  out.clear();
  unsigned cp = Resolve(codePage);
  if (cp == 65001) {
    Utf8ToWide(bytes, length, out);
    return true;
  }
  iconv_t cd = t_iconv.Get(cp, true);
  if (cd == reinterpret_cast<iconv_t>(-1)) return false;
  iconv(cd, nullptr, nullptr, nullptr, nullptr);
  std::u32string wide(length + 4, U'\0');
  char* in = const_cast<char*>(bytes);
  size_t inLeft = length;
  size_t produced = 0;
  while (true) {
    char* outp = reinterpret_cast<char*>(wide.data() + produced);
    size_t outLeft = (wide.size() - produced) * sizeof(char32_t);
    size_t r = iconv(cd, inLeft ? &in : nullptr, inLeft ? &inLeft : nullptr, &outp, &outLeft);
    produced = wide.size() - outLeft / sizeof(char32_t);
    if (r != static_cast<size_t>(-1)) {
      if (inLeft == 0) break;
      continue;
    }
    if (errno == E2BIG) {
      wide.resize(wide.size() * 2 + 16);
    } else if (errno == EILSEQ || errno == EINVAL) {
      // invalid or truncated sequence: one replacement character, skip one byte
      if (produced == wide.size()) wide.resize(wide.size() * 2 + 16);
      wide[produced++] = 0xFFFD;
      ++in;
      --inLeft;
      iconv(cd, nullptr, nullptr, nullptr, nullptr);
      if (inLeft == 0) break;
    } else {
      return false;
    }
  }
  out.reserve(produced);
  for (size_t i = 0; i < produced; ++i) out.push_back(static_cast<wchar_t>(wide[i]));
  return true;
}

bool MultiByteToWide(unsigned codePage, const char* bytes, size_t length, CString& out) {
  out.Empty();
  if (length == 0) return true;
  if (Resolve(codePage) == 65001 && length <= 256) {  // short text: on the stack first, then one allocation
    wchar_t buffer[256];                              // a byte never gives more than one character
    out = CString(buffer, static_cast<int>(Utf8ToWide(bytes, length, buffer)));
    return true;
  }
  if (Resolve(codePage) == 65001 && length <= static_cast<size_t>(INT_MAX)) {
    size_t n = Utf8ToWide(bytes, length, out.GetBufferSetLength(static_cast<int>(length)));
    out.ReleaseBuffer(static_cast<int>(n));
    return true;
  }
  std::wstring wide;
  if (!MultiByteToWide(codePage, bytes, length, wide)) return false;
  out = CString(wide.data(), static_cast<int>(wide.size()));
  return true;
}

bool WideToMultiByte(unsigned codePage, const wchar_t* text, size_t length, std::string& out) {
  out.clear();
  unsigned cp = Resolve(codePage);
  if (cp == 65001) {
    WideToUtf8(text, length, out);
    return true;
  }
  iconv_t cd = t_iconv.Get(cp, false);
  if (cd == reinterpret_cast<iconv_t>(-1)) return false;
  iconv(cd, nullptr, nullptr, nullptr, nullptr);
  std::u32string wide(text, text + length);
  std::string buf(length * 2 + 16, '\0');
  char* in = reinterpret_cast<char*>(wide.data());
  size_t inLeft = wide.size() * sizeof(char32_t);
  size_t produced = 0;
  // Runs one iconv step into the free tail of buf; a null `src` flushes the shift state.
  auto step = [&](char** src, size_t* srcLeft) {
    char* outp = buf.data() + produced;
    size_t outLeft = buf.size() - produced;
    size_t r = iconv(cd, src, srcLeft, &outp, &outLeft);
    produced = buf.size() - outLeft;
    return r != static_cast<size_t>(-1);
  };
  while (inLeft > 0) {
    if (step(&in, &inLeft)) continue;
    if (errno == E2BIG) {
      buf.resize(buf.size() * 2 + 16);
    } else if (errno == EILSEQ || errno == EINVAL) {
      // a character the code page lacks: the default character, as Windows writes it
      if (produced == buf.size()) buf.resize(buf.size() * 2 + 16);
      buf[produced++] = '?';
      in += sizeof(char32_t);
      inLeft -= sizeof(char32_t);
    } else {
      return false;
    }
  }
  while (!step(nullptr, nullptr)) {
    if (errno != E2BIG) return false;
    buf.resize(buf.size() * 2 + 16);
  }
  buf.resize(produced);
  out = std::move(buf);
  return true;
}

namespace {
locale_t CaseLocale() {
  static locale_t loc = [] {
    locale_t l = newlocale(LC_CTYPE_MASK, "C.UTF-8", static_cast<locale_t>(0));
    if (!l) l = newlocale(LC_CTYPE_MASK, "en_US.UTF-8", static_cast<locale_t>(0));
    return l;
  }();
  return loc;
}
}  // namespace

wchar_t ToLowerChar(wchar_t ch) {
  locale_t loc = CaseLocale();
  return loc ? static_cast<wchar_t>(towlower_l(static_cast<wint_t>(ch), loc))
             : static_cast<wchar_t>(towlower(static_cast<wint_t>(ch)));
}

wchar_t ToUpperChar(wchar_t ch) {
  locale_t loc = CaseLocale();
  return loc ? static_cast<wchar_t>(towupper_l(static_cast<wint_t>(ch), loc))
             : static_cast<wchar_t>(towupper(static_cast<wint_t>(ch)));
}

}  // namespace toolkit
