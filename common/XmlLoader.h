#pragma once
// The one way XML text becomes a TinyXML document, for the XML document wrapper, the version
// manifests and the skins alike. TinyXML recurses once per nesting level and has no limit of
// its own, so the text is measured (without recursion) before TinyXML sees it: a file nested
// deeper than the limit fails like any malformed file. Nothing here throws.
#include <string>

#include "toolkit/CString.h"

class TiXmlDocument;

namespace mivo::common {

// Far beyond any real file of the system (manifests and skins nest a handful of levels).
constexpr int kMaxXmlNesting = 256;
// Larger than any real file of the system; a larger one is not read at all.
constexpr unsigned long long kMaxXmlBytes = 16ull << 20;

enum class XmlEncoding {
  // Bytes as they come (code-page text); a UTF-8 byte-order mark is dropped.
  kLegacy,
  // UTF-8; each broken sequence becomes one U+FFFD first, so no multi-byte step of TinyXML
  // can jump over markup.
  kUtf8,
  // What the text says: UTF-8 (as kUtf8) with a byte-order mark or a leading declaration of
  // UTF-8 or of no encoding; otherwise bytes as they come.
  kDeclared,
};

// Parses the text as TiXmlDocument::LoadFile would (up to the first NUL, line ends made "\n")
// into `doc`, which should be empty. False when it is malformed (an empty text is) or nested
// deeper than `limit`; a text without a root element, only comments say, is not malformed.
bool ParseXml(const std::string& bytes, TiXmlDocument& doc, XmlEncoding encoding, int limit = kMaxXmlNesting);

// Reads at most kMaxXmlBytes of the file and parses it as ParseXml does. A file that exists
// but cannot be used (too large, malformed, too deep) is named in a trace line with the
// reason; a missing one is not, since callers often probe for optional files.
bool LoadXmlFile(const CString& path, TiXmlDocument& doc, XmlEncoding encoding, int limit = kMaxXmlNesting);

}  // namespace mivo::common
