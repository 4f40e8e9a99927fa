#pragma once
// TinyXML parses nested elements recursively and walks up to the document for every element,
// so a file nested some thousands of levels deep (damaged or hostile) overflows the stack or
// takes minutes. Its readers measure the nesting first, without recursion.

namespace mivo::common {

// How TinyXML is asked to read the text, and so how the scan reads it.
enum class XmlScanMode {
  // TinyXML's legacy encoding, bytes as they come. The scan follows TinyXML's lexing exactly,
  // its liberties included (unquoted attribute values, numeric character references that run
  // on to the next ';' across markup). The count is of elements opened inside one another:
  // an empty element ("<a/>") opens none.
  kLegacy,
  // TinyXML's UTF-8 mode. `text` must be valid UTF-8: TinyXML steps over whole characters
  // there, and a broken sequence could make it step over markup. Its white space then includes
  // the byte-order marks U+FEFF, U+FFFE and U+FFFF. The count is the depth of the tree of
  // elements: an empty element is a level too. A numeric reference other than &#digits; or
  // &#xhex; is not followed; the scan counts from there as when TinyXML would give up.
  kUtf8,
};

// True when TinyXML, parsing the zero-terminated `text` in `mode`, nests elements no more than
// `limit` levels deep. From any point where the scan cannot tell how TinyXML reads on (where
// TinyXML gives up, or a reference the mode does not follow), every '<' left counts as one
// more level: the answer errs towards refusing, never towards letting a deep file through.
// False for a null `text` or a negative `limit`.
bool XmlNestingWithin(const char* text, int limit, XmlScanMode mode);

}  // namespace mivo::common
