#include <gtest/gtest.h>

#include <climits>
#include <cstdarg>

#include "toolkit/Format.h"
#include "toolkit/platform.h"

namespace {

std::wstring W(const wchar_t* fmt, ...) {
  va_list ap;
  va_start(ap, fmt);
  std::wstring s = toolkit::FormatWide(fmt, ap);
  va_end(ap);
  return s;
}

std::string N(const char* fmt, ...) {
  va_list ap;
  va_start(ap, fmt);
  std::string s = toolkit::FormatNarrow(fmt, ap);
  va_end(ap);
  return s;
}

TEST(Format, StringKindsFollowTheFormatWidth) {
  EXPECT_EQ(W(L"[%s][%S][%hs][%ls][%ws]", L"wide", "narrow", "h", L"l", L"w"), L"[wide][narrow][h][l][w]");
  EXPECT_EQ(N("[%s][%S][%ls][%hs]", "narrow", L"wide", L"l", "h"), "[narrow][wide][l][h]");
  EXPECT_EQ(W(L"%c%C%hc%lc", L'a', 'b', 'c', L'd'), L"abcd");
  EXPECT_EQ(W(L"%s|%S", static_cast<const wchar_t*>(nullptr), static_cast<const char*>(nullptr)), L"(null)|(null)");
}

TEST(Format, WidthPrecisionAndJustification) {
  EXPECT_EQ(W(L"[%5s][%-5s][%.2s][%*s]", L"ab", L"ab", L"abcdef", 4, L"x"), L"[   ab][ab   ][ab][   x]");
  EXPECT_EQ(W(L"[%05d][%-4d][%+d][%x][%X][%#o]", 42, 7, 3, 255, 255, 8), L"[00042][7   ][+3][ff][FF][010]");
  EXPECT_EQ(W(L"%0.1f %.3e", 1.25f * 2, 1234.56), L"2.5 1.235e+03");
  EXPECT_EQ(W(L"%%|%5.1f", 3.14159), L"%|  3.1");
}

TEST(Format, SixtyFourBitAndSizedIntegers) {
  EXPECT_EQ(W(L"%I64d", LLONG_MIN), L"-9223372036854775808");
  EXPECT_EQ(W(L"%I64u", ULLONG_MAX), L"18446744073709551615");
  EXPECT_EQ(W(L"%I64d", ULLONG_MAX), L"-1");  // the signed form of all ones
  EXPECT_EQ(W(L"%I64x", 0xDEADBEEFCAFEULL), L"deadbeefcafe");
  EXPECT_EQ(W(L"%I32d|%lld|%hd|%hhu", -7, -8LL, 70000, 300), L"-7|-8|4464|44");
  EXPECT_EQ(W(L"%d", UINT_MAX), L"-1");
  EXPECT_EQ(W(L"%u", UINT_MAX), L"4294967295");
  // %l is 32 bits as on Windows: a LONG or a DWORD passed to it reads back whole
  EXPECT_EQ(W(L"%ld|%lu", LONG{-5}, DWORD{0xFFFFFFFFu}), L"-5|4294967295");
  EXPECT_EQ(W(L"%Iu", static_cast<size_t>(12)), L"12");
}

TEST(Format, PointersAndOddSpecifications) {
  std::wstring p = W(L"%p", reinterpret_cast<void*>(0xABC));
  EXPECT_EQ(p.size(), sizeof(void*) * 2);
  EXPECT_EQ(p.substr(p.size() - 3), L"ABC");
  int stored = 123;
  EXPECT_EQ(W(L"a%nb", &stored), L"ab");
  EXPECT_EQ(stored, 123);  // %n never writes
  EXPECT_EQ(W(L"tail %"), L"tail %");
  EXPECT_EQ(W(L"%y"), L"%y");
}

TEST(Format, NonAsciiNarrowArgumentsAreConvertedFromAnsi) {
  // ASCII is the same in every ANSI page, so the result is known on every machine.
  EXPECT_EQ(W(L"%S-%S", "abc", ""), L"abc-");
  EXPECT_EQ(N("%S", L"xyz"), "xyz");
}

}  // namespace
