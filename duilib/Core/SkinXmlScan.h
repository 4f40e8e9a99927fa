#pragma once
// TinyXML parses nested elements recursively and walks up to the document for every element,
// so a skin nested some thousands of levels deep (a damaged or hostile file) overflows the
// stack or takes minutes. The skin builder measures the nesting first, without recursion.

namespace mivo::duilib {

// True when TinyXML, parsing the zero-terminated `text` in its UTF-8 mode, would build a tree
// of elements no more than `limit` levels deep (an empty element is a level too). `text` must be valid UTF-8: TinyXML
// steps over whole characters there, and a broken sequence could make it step over markup. The scan follows TinyXML's
// lexing (unquoted attribute values, "<!" and "<?" sections, its white space that includes byte-order marks). Where it
// is not sure how TinyXML would read on (a numeric character reference other than &#digits; or &#xhex;, which TinyXML
// may run on to a later ';' across markup), every '<' left counts as one more level: the answer errs towards refusing,
// never towards letting a deep file through.
bool SkinNestingWithin(const char* text, int limit);

}  // namespace mivo::duilib
