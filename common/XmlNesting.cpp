#include "common/XmlNesting.h"

#include <cctype>
#include <cstddef>
#include <cstring>

namespace mivo::common {

namespace {

// TinyXML's character classes: bytes from 127 up count as letters.
bool IsSpace(char c) { return std::isspace(static_cast<unsigned char>(c)) != 0; }
bool IsNameStart(char c) {
  auto u = static_cast<unsigned char>(c);
  return u >= 127 || std::isalpha(u) || c == '_';
}
bool IsNameChar(char c) {
  auto u = static_cast<unsigned char>(c);
  return u >= 127 || std::isalnum(u) || c == '_' || c == '-' || c == '.' || c == ':';
}

bool StartsWith(const char* p, const char* tag, bool ignoreCase) {
  for (; *tag; ++p, ++tag) {
    auto a = static_cast<unsigned char>(*p), b = static_cast<unsigned char>(*tag);
    if (ignoreCase ? std::tolower(a) != std::tolower(b) : a != b) return false;
  }
  return true;
}

class NestingScan {
 public:
  NestingScan(const char* text, int limit, XmlScanMode mode) : m_p(text), m_limit(limit), m_mode(mode) {}

  bool Run() {
    for (;;) {
      SkipSpace();
      const char* start = m_p;
      if (!*m_p) return true;
      if (*m_p != '<') {
        if (m_depth == 0) return true;  // TinyXML stops at text beside the root
        if (!Text()) return Unsure(start);
      } else if (m_depth > 0 && m_p[1] == '/') {
        m_p += 2;
        SkipName();
        SkipSpace();
        if (*m_p != '>') return Unsure(start);
        ++m_p;
        --m_depth;
      } else if (StartsWith(m_p, "<?xml", true)) {
        if (!Declaration()) return Unsure(start);
      } else if (StartsWith(m_p, "<!--", false)) {
        m_p += 4;
        SkipPast("-->");
      } else if (StartsWith(m_p, "<![CDATA[", false)) {
        m_p += 9;
        if (!SkipPast("]]>")) return Unsure(start);
      } else if (m_p[1] == '!' || !IsNameStart(m_p[1])) {
        ++m_p;  // kept as an unknown node up to the next '>'
        SkipPast(">");
      } else {
        switch (StartTag()) {
          case Tag::kEmpty:  // in the tree an element without content is a level all the same
            if (m_mode == XmlScanMode::kUtf8 && m_depth + 1 > m_limit) return false;
            break;
          case Tag::kOpen:
            if (++m_depth > m_limit) return false;
            break;
          case Tag::kFailed:
            return Unsure(start);
        }
      }
    }
  }

 private:
  enum class Tag { kEmpty, kOpen, kFailed };

  // TinyXML's white space: blanks, and in UTF-8 mode the encodings of U+FEFF, U+FFFE, U+FFFF.
  void SkipSpace() {
    for (;;) {
      auto* u = reinterpret_cast<const unsigned char*>(m_p);
      if (m_mode == XmlScanMode::kUtf8 && u[0] == 0xEF &&
          ((u[1] == 0xBB && u[2] == 0xBF) || (u[1] == 0xBF && (u[2] == 0xBE || u[2] == 0xBF))))
        m_p += 3;
      else if (*m_p && IsSpace(*m_p))
        ++m_p;
      else
        return;
    }
  }
  void SkipName() {
    while (IsNameChar(*m_p)) ++m_p;
  }
  // Moves past the next `end`, or to the terminator when there is none.
  bool SkipPast(const char* end) {
    const char* found = std::strstr(m_p, end);
    m_p = found ? found + std::strlen(end) : m_p + std::strlen(m_p);
    return found != nullptr;
  }

  // A character reference at m_p. False where the scan does not follow it.
  bool Reference() {
    const char* p = m_p;
    if (p[1] != '#') {
      ++m_p;  // a named reference or a plain '&' holds no markup
      return true;
    }
    const bool hex = p[2] == 'x';
    if (m_mode == XmlScanMode::kUtf8) {
      // only the plain forms: digits, then the ';'
      const char* digits = p + (hex ? 3 : 2);
      const char* q = digits;
      while (hex ? std::isxdigit(static_cast<unsigned char>(*q)) : std::isdigit(static_cast<unsigned char>(*q))) ++q;
      if (q == digits || *q != ';') return false;
      m_p = q + 1;
      return true;
    }
    // TinyXML's GetEntity: "&#x" or "&#" runs to the first ';' after it and holds if the
    // characters before that ';' are digits back to an 'x' or '#', which may be a later one
    // than the reference's own. Markup in between is swallowed. "&#" at the end is a plain '&'.
    if (!p[2]) {
      ++m_p;
      return true;
    }
    if (hex && !p[3]) return false;
    const char* semicolon = std::strchr(p + (hex ? 3 : 2), ';');
    if (!semicolon) return false;
    for (const char* q = semicolon - 1; *q != (hex ? 'x' : '#'); --q) {
      auto u = static_cast<unsigned char>(*q);
      if (!(hex ? std::isxdigit(u) : std::isdigit(u))) return false;
    }
    m_p = semicolon + 1;
    return true;
  }

  // Element content up to the next '<'.
  bool Text() {
    while (*m_p && *m_p != '<') {
      if (*m_p != '&')
        ++m_p;
      else if (!Reference())
        return false;
    }
    return *m_p != '\0';
  }

  // name = "value", 'value' or an unquoted value, as TiXmlAttribute::Parse reads it.
  bool Attribute() {
    SkipSpace();
    if (!IsNameStart(*m_p)) return false;
    SkipName();
    SkipSpace();
    if (*m_p != '=') return false;
    ++m_p;
    SkipSpace();
    if (*m_p == '"' || *m_p == '\'') {
      const char quote = *m_p++;
      while (*m_p && *m_p != quote) {
        if (*m_p != '&')
          ++m_p;
        else if (!Reference())
          return false;
      }
      if (!*m_p) return false;
      ++m_p;
      return *m_p != '\0';
    }
    while (*m_p && !IsSpace(*m_p) && *m_p != '/' && *m_p != '>') {
      if (*m_p == '"' || *m_p == '\'') return false;
      ++m_p;
    }
    return *m_p != '\0';
  }

  // Only version, encoding and standalone are read as attributes; anything else is skipped
  // to the next blank or '>', quotes or not.
  bool Declaration() {
    m_p += 5;
    while (*m_p) {
      if (*m_p == '>') {
        ++m_p;
        return true;
      }
      SkipSpace();
      if (!*m_p) break;
      if (StartsWith(m_p, "version", true) || StartsWith(m_p, "encoding", true) ||
          StartsWith(m_p, "standalone", true)) {
        if (!Attribute()) return false;
      } else {
        while (*m_p && *m_p != '>' && !IsSpace(*m_p)) ++m_p;
      }
    }
    return false;
  }

  Tag StartTag() {
    ++m_p;
    SkipSpace();  // TinyXML allows white space (in UTF-8 mode a byte-order mark) before the name
    SkipName();
    for (;;) {
      SkipSpace();
      if (!*m_p) return Tag::kFailed;
      if (*m_p == '/') {
        if (m_p[1] != '>') return Tag::kFailed;
        m_p += 2;
        return Tag::kEmpty;
      }
      if (*m_p == '>') {
        ++m_p;
        return Tag::kOpen;
      }
      if (!Attribute()) return Tag::kFailed;
    }
  }

  // From where the scan lost TinyXML's track, each '<' can open at most one more level.
  bool Unsure(const char* from) const {
    size_t left = 0;
    for (const char* q = from; *q; ++q) left += *q == '<';
    return left <= static_cast<size_t>(m_limit - m_depth);
  }

  const char* m_p;
  int m_limit;
  XmlScanMode m_mode;
  int m_depth = 0;
};

}  // namespace

bool XmlNestingWithin(const char* text, int limit, XmlScanMode mode) {
  return text && limit >= 0 && NestingScan(text, limit, mode).Run();
}

}  // namespace mivo::common
