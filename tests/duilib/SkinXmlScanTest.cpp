// The nesting scan against TinyXML itself: what it counts for the usual constructs, and that
// it never lets through text that TinyXML would nest deeper than the limit.
#include "duilib/Core/SkinXmlScan.h"

#include <gtest/gtest.h>
#include <tinyxml.h>

#include <cstdint>
#include <string>

namespace {

using mivo::duilib::SkinNestingWithin;

// TinyXML keeps what it parsed up to an error, so its tree is as deep as its recursion went.
int ElementDepth(const TiXmlNode* node) {
  int deepest = 0;
  for (const TiXmlNode* child = node->FirstChild(); child; child = child->NextSibling()) {
    int depth = ElementDepth(child) + (child->ToElement() ? 1 : 0);
    if (depth > deepest) deepest = depth;
  }
  return deepest;
}

int TinyXmlDepth(const std::string& text) {
  TiXmlDocument doc;
  doc.Parse(text.c_str(), nullptr, TIXML_ENCODING_UTF8);
  return ElementDepth(&doc);
}

// The smallest limit the scan lets the text through at.
int ScanDepth(const std::string& text) {
  int limit = 0;
  while (!SkinNestingWithin(text.c_str(), limit)) ++limit;
  return limit;
}

TEST(SkinNestingWithin, CountsWhatTinyXmlNests) {
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
  EXPECT_TRUE(SkinNestingWithin("", 0));
  EXPECT_FALSE(SkinNestingWithin(nullptr, 10));
}

// Random texts from pieces of markup that TinyXML reads in peculiar ways: whatever the scan
// lets through at a limit, TinyXML nests no deeper than that.
TEST(SkinNestingWithin, NeverLetsDeeperTextThrough) {
  const char* const pieces[] = {
      "<a>",
      "</a>",
      "<b>",
      "</b>",
      "<a/>",
      "<a x=\"1\">",
      "<a x='>'>",
      " ",
      "t",
      "&#x",
      "41;",
      "x",
      "&#",
      "1",
      ";",
      "&amp;",
      "\"",
      "'",
      ">",
      "<",
      "/>",
      "/",
      "=",
      "<!--",
      "-->",
      "<![CDATA[",
      "]]>",
      "<?xml",
      "?>",
      " version=",
      "<!D",
      "\xEF\xBB\xBF",
      "\xE4\xB8\xAD",
      "</",
      "<a ",
      "b",
  };
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
      if (SkinNestingWithin(text.c_str(), limit)) {
        ASSERT_LE(depth, limit) << "limit " << limit << ": " << text;
      }
    }
  }
  EXPECT_GT(deepSeen, 100);  // the texts do reach past the limits tried
}

}  // namespace
