#pragma once
// TinyXML parses nested elements recursively and walks up to the document for every element,
// so a file nested some thousands of levels deep overflows the stack or takes minutes. The
// manifest readers measure the nesting first, without recursion.

// True when TinyXML, parsing the zero-terminated `text` in its legacy encoding, would open no
// more than `limit` elements inside one another. The scan follows TinyXML's own lexing, its
// liberties included (unquoted attribute values, character references that run on to the
// next ';'); from any point where TinyXML would give up, every '<' left counts as a level.
bool NestingWithin(const char* text, int limit);
