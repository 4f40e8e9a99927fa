#include <gtest/gtest.h>

#include <string>

#include "toolkit/CodePage.h"
#include "toolkit/Utf8.h"

namespace {

std::wstring ToWide(unsigned cp, const std::string& bytes) {
  std::wstring w;
  EXPECT_TRUE(toolkit::MultiByteToWide(cp, bytes.data(), bytes.size(), w));
  return w;
}

std::string ToBytes(unsigned cp, const std::wstring& text) {
  std::string s;
  EXPECT_TRUE(toolkit::WideToMultiByte(cp, text.data(), text.size(), s));
  return s;
}

// Code points, whatever the width of wchar_t.
std::u32string CodePoints(const std::wstring& w) {
  std::u32string points;
  for (size_t i = 0; i < w.size(); ++i) {
    char32_t c = static_cast<char32_t>(w[i]);
    if (sizeof(wchar_t) == 2 && c >= 0xD800 && c <= 0xDBFF && i + 1 < w.size())
      c = 0x10000 + ((c - 0xD800) << 10) + (static_cast<char32_t>(w[++i]) - 0xDC00);
    points.push_back(c);
  }
  return points;
}

TEST(CodePage, BothWaysThroughGbkBig5AndUtf8) {
  const struct {
    unsigned cp;
    std::string bytes;
    std::wstring text;
  } rows[] = {{936, "\xd6\xd0\xce\xc4\xb2\xe2\xca\xd4", L"\u4e2d\u6587\u6d4b\u8bd5"},
              {950, "\xa4\xa4\xa4\xe5", L"\u4e2d\u6587"},
              {65001, "a\xf0\x9f\x98\x80z", ToWide(65001, "a\xf0\x9f\x98\x80z")}};
  for (const auto& row : rows) {
    EXPECT_EQ(ToBytes(row.cp, row.text), row.bytes) << row.cp;
    EXPECT_EQ(ToWide(row.cp, row.bytes), row.text) << row.cp;
  }
  EXPECT_EQ(CodePoints(rows[2].text), U"a\U0001F600z");
  EXPECT_EQ(ToWide(65001, "ok\xff\xc3"), L"ok\uFFFD\uFFFD");  // invalid input is replaced, not rejected
  EXPECT_EQ(ToBytes(936, L"a\u0e01b"), "a?b");                // a character GBK lacks becomes '?'
  std::wstring w;
  std::string s;
  EXPECT_FALSE(toolkit::MultiByteToWide(54321, "abc", 3, w));
  EXPECT_FALSE(toolkit::WideToMultiByte(54321, L"abc", 3, s));
  EXPECT_TRUE(w.empty() && s.empty());
}

TEST(Utf8, MaximalSubpartsBecomeOneReplacementEach) {
  const struct {
    std::string bytes;
    std::u32string expected;
  } rows[] = {{"", U""},
              {"\xe4\xb8\xad", U"\u4e2d"},
              {"\xf4\x8f\xbf\xbf", U"\U0010FFFF"},
              {"\xc0\xaf", U"\uFFFD\uFFFD"},                      // overlong '/'
              {"\xed\xa0\x80", U"\uFFFD\uFFFD\uFFFD"},            // encoded surrogate
              {"\xf4\x90\x80\x80", U"\uFFFD\uFFFD\uFFFD\uFFFD"},  // above U+10FFFF
              {"\xe4\xb8", U"\uFFFD"},                            // truncated at the end
              {"\xe4\xb8x", U"\uFFFDx"},
              {std::string("a\0b", 3), std::u32string(U"a\0b", 3)}};
  for (const auto& row : rows) {
    std::wstring w;
    toolkit::Utf8ToWide(row.bytes.data(), row.bytes.size(), w);
    EXPECT_EQ(CodePoints(w), row.expected) << testing::PrintToString(row.bytes);
  }
  const wchar_t lone[] = {L'a', static_cast<wchar_t>(0xD800), L'b', static_cast<wchar_t>(0xDC00)};
  const wchar_t pair[] = {static_cast<wchar_t>(0xD83D), static_cast<wchar_t>(0xDE00)};
  std::string s;
  toolkit::WideToUtf8(lone, 4, s);
  EXPECT_EQ(s,
            "a\xef\xbf\xbd"
            "b\xef\xbf\xbd");  // lone surrogates encode as the replacement
  toolkit::WideToUtf8(pair, 2, s);
  EXPECT_EQ(s, "\xf0\x9f\x98\x80");
}

}  // namespace
