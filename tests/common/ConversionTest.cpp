#include <gtest/gtest.h>

#include <climits>

#include "common/Conversion.h"
#include "toolkit/CodePage.h"

namespace mc = mivo::common;

namespace {

TEST(Conversion, NullEmptyAndUnknownCodePageGiveEmpty) {
  EXPECT_EQ(mc::MBCS2CString(static_cast<const char*>(nullptr), 0), L"");
  EXPECT_EQ(mc::MBCS2CString(std::string(), 936), L"");
  EXPECT_EQ(mc::MBCS2CString("abc", 54321), L"");
  EXPECT_EQ(mc::CString2MBCS(L"abc", 54321), "");
  EXPECT_EQ(mc::CString2MBCS(CString(), 65001), "");
  EXPECT_EQ(mc::utf8_to_CString(static_cast<const char*>(nullptr)), L"");
  EXPECT_EQ(mc::String2Wstring(""), L"");
  EXPECT_EQ(mc::UTF82String(""), "");
}

TEST(Conversion, MultiByteStopsAtTheFirstNul) {
  std::string withNul("ab\0cd", 5);
  EXPECT_EQ(mc::MBCS2CString(withNul, 65001), L"ab");
}

TEST(Conversion, Utf8WithFourByteSequencesRoundTrips) {
  const std::string utf8 = "x\xf0\x9f\x98\x80\xe4\xb8\xad";
  CString wide = mc::utf8_to_CString(utf8);
  EXPECT_EQ(wide.GetLength(), sizeof(wchar_t) == 2 ? 4 : 3);
  EXPECT_EQ(mc::CString_to_utf8(wide), utf8);
}

TEST(Conversion, InvalidUtf8AndUnpairedSurrogatesNeverThrow) {
  CString bad = mc::utf8_to_CString("\xff\xfe\xc3");
  EXPECT_FALSE(bad.IsEmpty());
  EXPECT_EQ(bad.Find(static_cast<wchar_t>(0xFFFD)), 0);
  const wchar_t lone[] = {L'a', static_cast<wchar_t>(0xDC00), 0};
  EXPECT_EQ(mc::CString_to_utf8(lone), "a\xef\xbf\xbd");
}

TEST(Conversion, AnsiFormsAgreeWithTheProcessCodePage) {
  const std::string ascii = "plain text";
  EXPECT_EQ(mc::String2Wstring(ascii), L"plain text");
  EXPECT_EQ(mc::Wstring2String(L"plain text"), ascii);
  EXPECT_EQ(mc::String2UTF8(ascii), ascii);
  EXPECT_EQ(mc::UTF82String(ascii), ascii);
  // a character every ANSI page has: e-acute is in 1252 and in UTF-8 and in GBK
  std::string ansi = mc::CString2MBCS(L"\u00e9", 0);
  ASSERT_FALSE(ansi.empty());
  EXPECT_EQ(mc::String2UTF8(ansi), "\xc3\xa9");
  EXPECT_EQ(mc::UTF82String("\xc3\xa9"), ansi);
}

TEST(Conversion, String2WstringDropsOneLeadingByteOrderMark) {
  std::string bom = mc::CString2MBCS(L"\ufeff\ufeffx", 0);
  if (bom.empty() || mc::MBCS2CString(bom, 0) != L"\ufeff\ufeffx") GTEST_SKIP() << "ANSI page has no U+FEFF";
  EXPECT_EQ(mc::String2Wstring(bom), L"\ufeffx");
}

TEST(Numbers, AtoiFamily) {
  EXPECT_EQ(mc::CString2Int(L"  -42abc"), -42);
  EXPECT_EQ(mc::CString2Int(L"abc"), 0);
  EXPECT_EQ(mc::CString2Int(L"+7"), 7);
  EXPECT_EQ(mc::CString2Int(L"99999999999"), INT_MAX);
  EXPECT_EQ(mc::CString2Int(L"-99999999999"), INT_MIN);
  EXPECT_EQ(mc::Bytes2Int("\t12 3"), 12);
  EXPECT_EQ(mc::string2int(static_cast<const std::string*>(nullptr)), 0);
  EXPECT_EQ(mc::string2int(static_cast<const char*>(nullptr)), 0);
  const std::string s = "-2147483648";
  EXPECT_EQ(mc::string2int(&s), INT_MIN);
  EXPECT_EQ(mc::Utf82Int("31"), 31);
}

TEST(Numbers, SignedFormattingQuirksAreKept) {
  EXPECT_EQ(mc::UInt2Bytes(4294967295u), "-1");
  EXPECT_EQ(mc::UInt2CString(18446744073709551615ULL), L"-1");
  EXPECT_EQ(mc::DWORD642CString(9223372036854775808ULL), L"-9223372036854775808");
  EXPECT_EQ(mc::Int2CString(-12), L"-12");
  EXPECT_EQ(mc::Int2Bytes(INT_MIN), "-2147483648");
  EXPECT_EQ(mc::Int2Utf8(5), "5");
  EXPECT_EQ(mc::ultoa10(4294967295u), "4294967295");
  EXPECT_EQ(mc::ultoa10(100), "100");
}

TEST(Numbers, SixtyFourBitRoundTrips) {
  for (ULONGLONG v : {0ULL, 1ULL, 4294967296ULL, 9223372036854775807ULL, 18446744073709551615ULL}) {
    EXPECT_EQ(mc::CString2DWORD64(mc::DWORD642CString(v)), v) << v;
    EXPECT_EQ(mc::Bytes2DWORD64(mc::DWORD642Bytes(v)), v) << v;
    EXPECT_EQ(mc::Utf82DWORD64(mc::DWORD642Utf8(v)), v) << v;
  }
  EXPECT_EQ(mc::DWORD642Bytes(18446744073709551615ULL), "18446744073709551615");
}

TEST(Numbers, CString2UIntDetectsTheBase) {
  EXPECT_EQ(mc::CString2UInt(L"0x1F"), 31u);
  EXPECT_EQ(mc::CString2UInt(L"017"), 15u);
  EXPECT_EQ(mc::CString2UInt(L"19"), 19u);
  EXPECT_EQ(mc::CString2UInt(L"08"), 0u);  // octal stops at 8
  EXPECT_EQ(mc::CString2UInt(L"99999999999999999999999"), 18446744073709551615ULL);
  EXPECT_EQ(mc::CString2UInt(L"-1"), 18446744073709551615ULL);
  EXPECT_EQ(mc::CString2UInt(L""), 0u);
}

TEST(Numbers, XatolEndPointer) {
  const char* end = reinterpret_cast<const char*>(1);
  const char* s = "12ab";
  EXPECT_EQ(mc::xatol(s, 4, &end), 12u);
  EXPECT_EQ(end, s + 2);
  const char* t = "123";
  EXPECT_EQ(mc::xatol(t, 3, &end), 123u);
  EXPECT_EQ(end, nullptr);
  EXPECT_EQ(mc::xatol("123", 2, &end), 12u);  // only len bytes count
  EXPECT_EQ(end, nullptr);
  EXPECT_EQ(mc::xatol("5", 0, &end), 0u);
  EXPECT_EQ(end, nullptr);
  EXPECT_EQ(mc::xatol("-5", 2, &end), 0u);              // no sign
  EXPECT_EQ(mc::xatol("4294967296", 10, nullptr), 0u);  // wraps
}

TEST(Numbers, IsInteger) {
  for (const wchar_t* yes : {L"0", L"-12", L"+99999999999999999999"}) EXPECT_TRUE(mc::IsInteger(yes)) << yes;
  // the Arabic-Indic one is not an ASCII digit
  for (const wchar_t* no : {static_cast<const wchar_t*>(nullptr), L"", L"-", L" 1", L"1.0", L"\u0661"})
    EXPECT_FALSE(mc::IsInteger(no));
}

TEST(Numbers, GetWideCharFromMultiByteCopies) {
  int length = -1;
  wchar_t* copy = mc::GetWideCharFromMultiByte(L"\u4e2d\u6587", length);
  ASSERT_NE(copy, nullptr);
  EXPECT_EQ(length, 2);
  EXPECT_STREQ(copy, L"\u4e2d\u6587");
  delete[] copy;
}

}  // namespace
