#include "common/XmlLoader.h"

#include <tinyxml.h>

#include <cctype>

#include "common/FileUtil.h"
#include "common/StringUtil.h"
#include "common/Trace.h"
#include "common/XmlNesting.h"
#include "toolkit/Utf8.h"

namespace mivo::common {

namespace {

const char kBom[] = "\xef\xbb\xbf";

bool HasBom(const std::string& text) { return text.compare(0, 3, kBom) == 0; }

// Up to the first NUL, with "\r\n" and "\r" made "\n", as TinyXML's own LoadFile reads.
std::string Lines(const std::string& bytes) {
  std::string text;
  text.reserve(bytes.size());
  for (size_t i = 0; i < bytes.size() && bytes[i] != '\0'; ++i) {
    text.push_back(bytes[i] == '\r' ? '\n' : bytes[i]);
    if (bytes[i] == '\r' && i + 1 < bytes.size() && bytes[i + 1] == '\n') ++i;
  }
  return text;
}

std::string ValidUtf8(const std::string& text) {
  std::wstring wide;
  toolkit::Utf8ToWide(text.data(), text.size(), wide);
  std::string out;
  toolkit::WideToUtf8(wide.data(), wide.size(), out);
  return out;
}

// Whether the prolog declares UTF-8 (or no encoding, which XML reads as UTF-8). The prolog is
// cut before the first element, so TinyXML reads it without nesting anything.
bool DeclaresUtf8(const std::string& text) {
  size_t end = 0;
  for (; end < text.size(); ++end) {
    if (text[end] != '<' || end + 1 >= text.size()) continue;
    auto next = static_cast<unsigned char>(text[end + 1]);
    if (next >= 127 || std::isalpha(next) || next == '_') break;
  }
  TiXmlDocument prolog;
  prolog.Parse(text.substr(0, end).c_str(), nullptr, TIXML_ENCODING_LEGACY);
  for (const TiXmlNode* n = prolog.FirstChild(); n; n = n->NextSibling()) {
    if (const TiXmlDeclaration* declaration = n->ToDeclaration()) {
      std::string encoding = declaration->Encoding();
      return encoding.empty() || string_compare_no_case(encoding, "utf-8") == 0 ||
             string_compare_no_case(encoding, "utf8") == 0;
    }
  }
  return false;
}

enum class Parsed { kOk, kTooDeep, kMalformed };

Parsed Parse(const std::string& bytes, TiXmlDocument& doc, XmlEncoding encoding, int limit) {
  try {
    std::string text = Lines(bytes);
    bool utf8 =
        encoding == XmlEncoding::kUtf8 || (encoding == XmlEncoding::kDeclared && (HasBom(text) || DeclaresUtf8(text)));
    if (utf8) {
      text = ValidUtf8(text);
    } else if (HasBom(text)) {
      text.erase(0, 3);
    }
    if (!XmlNestingWithin(text.c_str(), limit, utf8 ? XmlScanMode::kUtf8 : XmlScanMode::kLegacy))
      return Parsed::kTooDeep;
    doc.Parse(text.c_str(), nullptr, utf8 ? TIXML_ENCODING_UTF8 : TIXML_ENCODING_LEGACY);
    return doc.Error() ? Parsed::kMalformed : Parsed::kOk;
  } catch (const std::exception&) {  // out of memory
    return Parsed::kMalformed;
  }
}

void TraceRefused(const CString& path, const wchar_t* why) {
  if (g_ITrace) g_ITrace->Trace(3, true, L"XML file %s not loaded: %s", path.GetString(), why);
}

}  // namespace

bool ParseXml(const std::string& bytes, TiXmlDocument& doc, XmlEncoding encoding, int limit) {
  return Parse(bytes, doc, encoding, limit) == Parsed::kOk;
}

bool LoadXmlFile(const CString& path, TiXmlDocument& doc, XmlEncoding encoding, int limit) {
  std::string bytes;
  if (!LoadFileWithin(path, bytes, kMaxXmlBytes)) {
    if (GetFileSize(path) > kMaxXmlBytes) TraceRefused(path, L"larger than 16 MiB");
    return false;
  }
  switch (Parse(bytes, doc, encoding, limit)) {
    case Parsed::kOk:
      return true;
    case Parsed::kTooDeep:
      TraceRefused(path, L"nested too deeply");
      return false;
    default:
      TraceRefused(path, L"malformed");
      return false;
  }
}

}  // namespace mivo::common
