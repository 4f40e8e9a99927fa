#include <gtest/gtest.h>

#include "support/Raises.h"

#include "toolkit/CString.h"
#include "toolkit/CodePage.h"
#include "toolkit/Exception.h"

namespace {

TEST(CString, ConstructionFromWideNarrowAndNull) {
  EXPECT_EQ(CString(static_cast<const wchar_t*>(nullptr)), L"");
  EXPECT_EQ(CString(static_cast<const char*>(nullptr)), L"");
  EXPECT_EQ(CString("plain ascii"), L"plain ascii");
  EXPECT_EQ(CString(L'x', 3), L"xxx");
  EXPECT_EQ(CString(L'x', 0), L"");
  EXPECT_EQ(CString(L"abcdef", 3), L"abc");
  EXPECT_TRUE(CString().IsEmpty());
  EXPECT_EQ(CString(L"\u4e2d\u6587").GetLength(), 2);
}

TEST(CString, NarrowTextIsTakenInTheAnsiCodePage) {
  std::wstring expected;
  const char* bytes = "caf\xc3\xa9";  // UTF-8 here; whatever the ANSI page makes of it on Windows
  ASSERT_TRUE(toolkit::MultiByteToWide(0, bytes, 5, expected));
  EXPECT_EQ(CString(bytes), expected.c_str());
}

TEST(CString, GetAtRangeAndTerminator) {
  CString s(L"ab");
  EXPECT_EQ(s.GetAt(1), L'b');
  EXPECT_EQ(s.GetAt(2), L'\0');
  EXPECT_RAISES(s.GetAt(3), CInvalidArgException);
  EXPECT_RAISES(s.GetAt(-1), CInvalidArgException);
  try {
    s.SetAt(2, L'c');
    FAIL() << "SetAt past the end must raise";
  } catch (CException* e) {
    e->Delete();
  }
}

TEST(CString, FindAndReverseFind) {
  CString s(L"a\\b\\c.txt");
  EXPECT_EQ(s.Find(L'\\'), 1);
  EXPECT_EQ(s.Find(L'\\', 2), 3);
  EXPECT_EQ(s.Find(L'z'), -1);
  EXPECT_EQ(s.Find(L"c.t"), 4);
  EXPECT_EQ(s.Find(L""), -1);
  EXPECT_EQ(s.Find(L'a', 100), -1);
  EXPECT_EQ(s.Find(L'a', -1), -1);
  EXPECT_EQ(s.ReverseFind(L'\\'), 3);
  EXPECT_EQ(s.ReverseFind(L'q'), -1);
  EXPECT_EQ(s.FindOneOf(L".\\"), 1);
}

TEST(CString, LeftMidRightClampToTheText) {
  CString s(L"hello");
  EXPECT_EQ(s.Left(2), L"he");
  EXPECT_EQ(s.Left(99), L"hello");
  EXPECT_EQ(s.Left(-1), L"");
  EXPECT_EQ(s.Mid(3), L"lo");
  EXPECT_EQ(s.Mid(1, 2), L"el");
  EXPECT_EQ(s.Mid(4, 10), L"o");
  EXPECT_EQ(s.Mid(9), L"");
  EXPECT_EQ(s.Mid(-2, 2), L"he");
  EXPECT_EQ(s.Right(3), L"llo");
  EXPECT_EQ(s.Right(50), L"hello");
}

TEST(CString, ReplaceRemoveInsertDelete) {
  CString s(L"a--b--c");
  EXPECT_EQ(s.Replace(L"--", L"+"), 2);
  EXPECT_EQ(s, L"a+b+c");
  EXPECT_EQ(s.Replace(L'+', L'/'), 2);
  EXPECT_EQ(s, L"a/b/c");
  EXPECT_EQ(s.Replace(L"", L"x"), 0);
  CString overlap(L"aaa");
  EXPECT_EQ(overlap.Replace(L"aa", L"b"), 1);  // left to right, no overlap
  EXPECT_EQ(overlap, L"ba");
  CString grow(L"xx");
  EXPECT_EQ(grow.Replace(L"x", L"xx"), 2);  // the replacement is not searched again
  EXPECT_EQ(grow, L"xxxx");
  CString r(L"banana");
  EXPECT_EQ(r.Remove(L'a'), 3);
  EXPECT_EQ(r, L"bnn");
  EXPECT_EQ(r.Insert(1, L"--"), 5);
  EXPECT_EQ(r, L"b--nn");
  EXPECT_EQ(r.Delete(1, 2), 3);
  EXPECT_EQ(r, L"bnn");
  EXPECT_EQ(r.Delete(2, 100), 2);
}

TEST(CString, TrimForms) {
  CString s(L" \t\r\n text \n");
  EXPECT_EQ(CString(s).Trim(), L"text");
  EXPECT_EQ(CString(s).TrimLeft(), L"text \n");
  EXPECT_EQ(CString(s).TrimRight(), L" \t\r\n text");
  EXPECT_EQ(CString(L"xxaxx").Trim(L'x'), L"a");
  EXPECT_EQ(CString(L"<[a]>").Trim(L"<>[]"), L"a");
  EXPECT_EQ(CString(L"   ").Trim(), L"");
}

TEST(CString, CaseMappingCoversNonAsciiLetters) {
  EXPECT_EQ(CString(L"\u00c9T\u00c9 \u0394").MakeLower(), L"\u00e9t\u00e9 \u03b4");
  EXPECT_EQ(CString(L"stra\u00dfe \u00e9").MakeUpper(), L"STRA\u00dfE \u00c9");
  EXPECT_EQ(CString(L"\u4e2dA").MakeLower(), L"\u4e2da");
  EXPECT_EQ(CString(L"abc").MakeReverse(), L"cba");
}

TEST(CString, CompareIsOrdinalAndCompareNoCaseFolds) {
  EXPECT_LT(CString(L"B").Compare(L"a"), 0);  // ordinal: 'B' < 'a'
  EXPECT_EQ(CString(L"abc").Compare(L"abc"), 0);
  EXPECT_GT(CString(L"abd").Compare(L"abc"), 0);
  EXPECT_EQ(CString(L"HeLLo").CompareNoCase(L"hello"), 0);
  EXPECT_EQ(CString(L"\u00c9cole").CompareNoCase(L"\u00e9COLE"), 0);
  EXPECT_LT(CString(L"a").CompareNoCase(L"B"), 0);
  EXPECT_GT(CString(L"ab").CompareNoCase(L"A"), 0);
  EXPECT_GT(CString(L"x").Compare(nullptr), 0);  // null compares as ""
}

TEST(CString, OperatorsAndImplicitPointer) {
  CString a(L"ab");
  CString b = a + L"cd" + L'e';
  EXPECT_EQ(b, L"abcde");
  EXPECT_EQ(L"<" + a, L"<ab");
  EXPECT_TRUE(a < b);
  EXPECT_TRUE(a != b);
  a += CString(L"!");
  a += "?";
  EXPECT_EQ(a, L"ab!?");
  const wchar_t* p = a;
  EXPECT_EQ(std::wstring(p), L"ab!?");
}

TEST(CString, GetBufferAndReleaseBuffer) {
  CString s(L"abc");
  wchar_t* buf = s.GetBuffer(10);
  wcscpy(buf, L"0123456");
  s.ReleaseBuffer();
  EXPECT_EQ(s, L"0123456");
  buf = s.GetBuffer(20);
  buf[2] = 0;
  s.ReleaseBuffer(5);  // an explicit length keeps what lies behind the zero
  EXPECT_EQ(s.GetLength(), 5);
  s.ReleaseBuffer();
  EXPECT_EQ(s, L"01");
  wchar_t* exact = s.GetBufferSetLength(3);
  exact[2] = L'z';
  s.ReleaseBuffer(3);
  EXPECT_EQ(s, L"01z");
}

TEST(CString, FormatUsesTheWindowsConventions) {
  CString s;
  s.Format(L"%s|%S|%d|%I64d|%I64u", L"w\u00e9", "n", -5, -1234567890123LL, 18446744073709551615ULL);
  EXPECT_EQ(s, L"w\u00e9|n|-5|-1234567890123|18446744073709551615");
  s.AppendFormat(L"+%c%C", L'\u4e2d', 'z');
  EXPECT_EQ(s, L"w\u00e9|n|-5|-1234567890123|18446744073709551615+\u4e2dz");
}

}  // namespace
