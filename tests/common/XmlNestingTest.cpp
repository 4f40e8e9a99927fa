// The nesting scan against TinyXML itself, in both of TinyXML's modes: what it counts for the
// usual constructs, that it never lets through text that TinyXML would nest deeper than the
// limit, and where the two modes part.
#include "common/XmlNesting.h"

#include <gtest/gtest.h>
#include <tinyxml.h>

#include <cstdint>
#include <string>

namespace {

using mivo::common::XmlNestingWithin;
using mivo::common::XmlScanMode;

// TinyXML keeps what it parsed up to an error, so its tree is as deep as its recursion went.
int ElementDepth(const TiXmlNode* node) {
  int deepest = 0;
  for (const TiXmlNode* child = node->FirstChild(); child; child = child->NextSibling()) {
    int depth = ElementDepth(child) + (child->ToElement() ? 1 : 0);
    if (depth > deepest) deepest = depth;
  }
  return deepest;
}

int TinyXmlDepth(const std::string& text, TiXmlEncoding encoding = TIXML_ENCODING_UTF8) {
  TiXmlDocument doc;
  doc.Parse(text.c_str(), nullptr, encoding);
  return ElementDepth(&doc);
}

std::string Repeat(const std::string& s, int n) {
  std::string out;
  for (int i = 0; i < n; ++i) out += s;
  return out;
}

// The smallest limit the scan lets the text through at.
int ScanDepth(const std::string& text, XmlScanMode mode = XmlScanMode::kUtf8) {
  int limit = 0;
  while (!XmlNestingWithin(text.c_str(), limit, mode)) ++limit;
  return limit;
}

TEST(XmlNestingUtf8, CountsWhatTinyXmlNests) {
  struct Row {
    const char* what;
    std::string text;
    int tinyxml;  // TinyXML's own depth, to show the row tests what it means to
    int scan;
  };
  const Row rows[] = {
      {"siblings and an empty element", "<a><b/><c></c></a>", 2, 2},
      {"markup in a comment", "<a><!-- <b><c><d> --></a>", 1, 1},
      {"markup in CDATA", "<a><![CDATA[<b><c>]]></a>", 1, 1},
      {"markup and '/>' in quoted values", "<a x=\"<b><c>\" y='/>'><d/></a>", 2, 2},
      {"an empty element is a level", "<a><b><c/></b></a>", 3, 3},
      {"references in text", "<a>x &lt; y &#60; &#x3c;<b/></a>", 2, 2},
      {"declaration and doctype", "<?xml version=\"1.0\"?><!DOCTYPE a><a><b></b></a>", 2, 2},
      {"byte-order marks are blanks",
       "\xEF\xBB\xBF<a>\xEF\xBB\xBF<b></b \xEF\xBB\xBF></a \xEF\xBF\xBE>\xEF\xBF\xBF<c><d/></c>", 2, 2},
      {"unquoted values", "<a x=1><b y=2/></a>", 2, 2},
      {"'<' and a blank: unknown", "<a>< b><c/></a>", 2, 2},
      {"text beside the root ends the document", "<a></a>text<b><c></c></b>", 1, 1},
      {"not closed", "<a><b>", 2, 2},
      {"multi-byte text and names", "<\xE4\xB8\xAD><b>\xE4\xB8\xAD</b></\xE4\xB8\xAD>", 2, 2},
      // A numeric reference runs to the first ';' after it: here it swallows "</a>", so the
      // elements after it nest inside a. The scan is not sure there and counts each '<' left.
      {"reference that swallows an end tag", "<a>&#x</a>x41;<b><c></c></b></a>", 3, 7},
      {"the same in a value", "<a v=\"&#x\"></a>x2;\"><b><c/></b></a>", 3, 6},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(TinyXmlDepth(row.text), row.tinyxml);
    EXPECT_EQ(ScanDepth(row.text), row.scan);
  }
  EXPECT_TRUE(XmlNestingWithin("", 0, XmlScanMode::kUtf8));
  EXPECT_FALSE(XmlNestingWithin(nullptr, 10, XmlScanMode::kUtf8));
}

// Random texts from pieces of markup that TinyXML reads in peculiar ways: whatever the scan
// lets through at a limit, TinyXML nests no deeper than that.
TEST(XmlNestingUtf8, NeverLetsDeeperTextThrough) {
  // clang-format off
  const char* const pieces[] = {"<a>", "</a>", "<b>", "</b>", "<a/>", "<a x=\"1\">", "<a x='>'>", " ", "t", "&#x",
      "41;", "x", "&#", "1", ";", "&amp;", "\"", "'", ">", "<", "/>", "/", "=", "<!--", "-->", "<![CDATA[", "]]>",
      "<?xml", "?>", " version=", "<!D", "\xEF\xBB\xBF", "\xE4\xB8\xAD", "</", "<a ", "b"};
  // clang-format on
  constexpr uint32_t kPieces = sizeof(pieces) / sizeof(pieces[0]);
  uint32_t state = 12345;  // a fixed sequence, the same on every platform
  auto next = [&state] {
    state = state * 1664525u + 1013904223u;
    return state >> 8;
  };
  int deepSeen = 0;
  for (int round = 0; round < 20000; ++round) {
    std::string text;
    for (uint32_t n = next() % 40; n > 0; --n) text += pieces[next() % kPieces];
    const int depth = TinyXmlDepth(text);
    if (depth >= 3) ++deepSeen;
    for (int limit = 0; limit <= 4; ++limit) {
      if (XmlNestingWithin(text.c_str(), limit, XmlScanMode::kUtf8)) {
        ASSERT_LE(depth, limit) << "limit " << limit << ": " << text;
      }
    }
  }
  EXPECT_GT(deepSeen, 100);  // the texts do reach past the limits tried
}

// Files nested deeper than any manifest are refused before TinyXML recurses into them (at
// 100,000 levels it would overflow the stack or take minutes); nesting is counted as TinyXML
// itself would see it.
TEST(XmlNestingLegacy, CountsLevelsAsTinyXmlOpensThem) {
  const std::string deep = Repeat("<a>", 300) + Repeat("</a>", 300);
  const struct {
    const char* label;
    std::string text;
    bool within;
  } rows[] = {
      {"256 levels", Repeat("<a x='1'>", 256) + Repeat("</a>", 256), true},
      {"257 levels", Repeat("<a x='1'>", 257) + Repeat("</a>", 257), false},
      {"siblings", "<r>" + Repeat("<a></a><b/>", 5000) + "</r>", true},
      {"100,000 unclosed", Repeat("<a>", 100000), false},
      {"100,000 closed", Repeat("<a>", 100000) + Repeat("</a>", 100000), false},
      {"in a comment", "<r><!--" + deep + "--></r>", true},
      {"in CDATA", "<r><![CDATA[" + deep + "]]></r>", true},
      {"in quotes", "<r x=\"" + deep + "\"/>", true},
      // TinyXML's references run on to a later "x41;", swallowing the markup between
      {"in a reference", "<r>&#x" + deep + "x41;</r>", true},
      {"in a quoted reference", "<r x='&#" + deep + "#65;'/>", true},
      // ... but only if digits come before that ';'
      {"broken reference", "<r>&#x" + Repeat("<a>", 300) + "g;</r>", false},
      // a declaration skips unknown attributes to the next blank or '>', quotes or not
      {"quote in a declaration", "<?xml foo=\"><r>" + deep + "</r>", false},
      {"declaration value", "<?xml version=\"><r>" + deep + "\"?><r/>", true},
      {"unquoted value ends at '>'", "<r x=" + deep + "</r>", false},
      {"text outside the root", "<r/>text" + Repeat("<a>", 300), true},
      {"end tags outside the root", Repeat("</a>", 300) + Repeat("<a>", 300), false},
  };
  for (const auto& row : rows)
    EXPECT_EQ(XmlNestingWithin(row.text.c_str(), 256, XmlScanMode::kLegacy), row.within) << row.label;
}

// Each row reads differently in the two modes, and the scan follows the mode it is given.
TEST(XmlNesting, ModeDecidesWhereTinyXmlsModesDiffer) {
  struct Row {
    const char* what;
    std::string text;
    int legacyTinyXml, utf8TinyXml;  // TinyXML's depth in its legacy encoding and in UTF-8
    int legacyScan, utf8Scan;
  };
  const Row rows[] = {
      // the legacy encoding counts the elements TinyXML recurses into, UTF-8 the tree's levels
      {"an empty element", "<a><b><c/></b></a>", 3, 3, 2, 3},
      // a byte-order mark is white space in UTF-8 only: there "version" is read as an attribute
      // whose quoted value hides the elements; in the legacy encoding the declaration is
      // skipped to the first '>' and the elements are real
      {"byte-order mark in a declaration", "<?xml\xEF\xBB\xBFversion='>" + Repeat("<a>", 5) + "'?><r/>", 6, 1, 5, 1},
      // the legacy encoding follows the reference across "</a>" to "x41;"; UTF-8 stops being
      // sure there and counts every '<' left
      {"reference that swallows an end tag", "<a>&#x</a>x41;<b><c></c></b></a>", 3, 3, 3, 7},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(TinyXmlDepth(row.text, TIXML_ENCODING_LEGACY), row.legacyTinyXml);
    EXPECT_EQ(TinyXmlDepth(row.text, TIXML_ENCODING_UTF8), row.utf8TinyXml);
    EXPECT_EQ(ScanDepth(row.text, XmlScanMode::kLegacy), row.legacyScan);
    EXPECT_EQ(ScanDepth(row.text, XmlScanMode::kUtf8), row.utf8Scan);
  }
  for (XmlScanMode mode : {XmlScanMode::kLegacy, XmlScanMode::kUtf8}) {
    EXPECT_FALSE(XmlNestingWithin("<a/>", -1, mode));
    EXPECT_FALSE(XmlNestingWithin("", -1, mode));
  }
}

}  // namespace
