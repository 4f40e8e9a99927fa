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

TEST(CodePage, ChineseRoundTripsThroughGbkAndBig5) {
  const std::wstring zh = L"\u4e2d\u6587\u6d4b\u8bd5";  // 中文测试
  EXPECT_EQ(ToBytes(936, zh), "\xd6\xd0\xce\xc4\xb2\xe2\xca\xd4");
  EXPECT_EQ(ToWide(936, "\xd6\xd0\xce\xc4\xb2\xe2\xca\xd4"), zh);
  const std::wstring tw = L"\u4e2d\u6587";
  EXPECT_EQ(ToBytes(950, tw), "\xa4\xa4\xa4\xe5");
  EXPECT_EQ(ToWide(950, "\xa4\xa4\xa4\xe5"), tw);
}

TEST(CodePage, Utf8WithFourByteSequences) {
  const std::string bytes = "a\xf0\x9f\x98\x80z";  // U+1F600
  std::wstring w = ToWide(65001, bytes);
  if (sizeof(wchar_t) == 2) {
    ASSERT_EQ(w.size(), 4u);
    EXPECT_EQ(static_cast<unsigned>(w[1]), 0xD83Du);
    EXPECT_EQ(static_cast<unsigned>(w[2]), 0xDE00u);
  } else {
    ASSERT_EQ(w.size(), 3u);
    EXPECT_EQ(static_cast<unsigned>(w[1]), 0x1F600u);
  }
  EXPECT_EQ(ToBytes(65001, w), bytes);
}

TEST(CodePage, InvalidInputIsReplacedNotRejected) {
  std::wstring w = ToWide(65001, "ok\xff\xc3");
  ASSERT_GE(w.size(), 3u);
  EXPECT_EQ(w.substr(0, 2), L"ok");
  EXPECT_EQ(w[2], static_cast<wchar_t>(0xFFFD));
  // a character GBK lacks becomes '?'
  EXPECT_EQ(ToBytes(936, L"a\u0e01b"), "a?b");
}

TEST(CodePage, UnknownCodePageFails) {
  std::wstring w;
  EXPECT_FALSE(toolkit::MultiByteToWide(54321, "abc", 3, w));
  EXPECT_TRUE(w.empty());
  std::string s;
  EXPECT_FALSE(toolkit::WideToMultiByte(54321, L"abc", 3, s));
  EXPECT_TRUE(s.empty());
}

struct Utf8Row {
  const char* bytes;
  size_t length;
  std::u32string expected;  // code points
};

class Utf8Decode : public ::testing::TestWithParam<Utf8Row> {};

TEST_P(Utf8Decode, MaximalSubpartsBecomeOneReplacementEach) {
  const Utf8Row& row = GetParam();
  std::wstring w;
  toolkit::Utf8ToWide(row.bytes, row.length, w);
  std::u32string got;
  for (size_t i = 0; i < w.size(); ++i) {
    char32_t c = static_cast<char32_t>(w[i]);
    if (sizeof(wchar_t) == 2 && c >= 0xD800 && c <= 0xDBFF && i + 1 < w.size()) {
      c = 0x10000 + ((c - 0xD800) << 10) + (static_cast<char32_t>(w[++i]) - 0xDC00);
    }
    got.push_back(c);
  }
  EXPECT_EQ(got, row.expected);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, Utf8Decode,
    ::testing::Values(Utf8Row{"", 0, U""}, Utf8Row{"\xe4\xb8\xad", 3, U"\u4e2d"},
                      Utf8Row{"\xf4\x8f\xbf\xbf", 4, U"\U0010FFFF"},
                      Utf8Row{"\xc0\xaf", 2, U"\uFFFD\uFFFD"},          // overlong '/'
                      Utf8Row{"\xed\xa0\x80", 3, U"\uFFFD\uFFFD\uFFFD"},  // encoded surrogate
                      Utf8Row{"\xf4\x90\x80\x80", 4, U"\uFFFD\uFFFD\uFFFD\uFFFD"},  // above U+10FFFF
                      Utf8Row{"\xe4\xb8", 2, U"\uFFFD"},                  // truncated at the end
                      Utf8Row{"\xe4\xb8x", 3, U"\uFFFDx"},
                      Utf8Row{"a\0b", 3, std::u32string(U"a\0b", 3)}));

TEST(Utf8, LoneSurrogatesEncodeAsReplacement) {
  const wchar_t lone[] = {L'a', static_cast<wchar_t>(0xD800), L'b', static_cast<wchar_t>(0xDC00)};
  std::string s;
  toolkit::WideToUtf8(lone, 4, s);
  EXPECT_EQ(s, "a\xef\xbf\xbd" "b\xef\xbf\xbd");
  const wchar_t pair[] = {static_cast<wchar_t>(0xD83D), static_cast<wchar_t>(0xDE00)};
  toolkit::WideToUtf8(pair, 2, s);
  EXPECT_EQ(s, "\xf0\x9f\x98\x80");
}

}  // namespace
