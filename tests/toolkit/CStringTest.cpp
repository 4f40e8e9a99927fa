#include <gtest/gtest.h>

#include <functional>

#include "support/Raises.h"
#include "toolkit/CString.h"
#include "toolkit/CodePage.h"
#include "toolkit/Exception.h"

namespace {

TEST(CString, ConstructionAndIndexing) {
  EXPECT_EQ(CString(static_cast<const wchar_t*>(nullptr)), L"");
  EXPECT_EQ(CString(static_cast<const char*>(nullptr)), L"");
  EXPECT_EQ(CString(L'x', 3), L"xxx");
  EXPECT_EQ(CString(L"abcdef", 3), L"abc");
  std::wstring expected;
  const char* bytes = "caf\xc3\xa9";  // narrow text is taken in the ANSI page, whatever it makes of this
  ASSERT_TRUE(toolkit::MultiByteToWide(0, bytes, 5, expected));
  EXPECT_EQ(CString(bytes), expected.c_str());
  CString s(L"ab");
  EXPECT_EQ(s.GetAt(1), L'b');
  EXPECT_EQ(s.GetAt(2), L'\0');  // the terminator
  EXPECT_RAISES(s.GetAt(3), CInvalidArgException);
  EXPECT_RAISES(s.GetAt(-1), CInvalidArgException);
  EXPECT_RAISES(s.SetAt(2, L'c'), CInvalidArgException);
}

// Each row runs one call on a copy of its text and compares the result and what is left of it.
TEST(CString, CallsOnText) {
  using Call = std::function<CString(CString&)>;
  auto n = [](int value) { return CString(std::to_wstring(value).c_str()); };
  struct Row {
    const wchar_t* text;
    Call call;
    const wchar_t *result, *after;
  } rows[] = {
      {L"a\\b\\c.txt", [&](CString& s) { return n(s.Find(L'\\')); }, L"1", nullptr},
      {L"a\\b\\c.txt", [&](CString& s) { return n(s.Find(L'\\', 2)); }, L"3", nullptr},
      {L"a\\b\\c.txt", [&](CString& s) { return n(s.Find(L"c.t")); }, L"4", nullptr},
      {L"a\\b\\c.txt", [&](CString& s) { return n(s.Find(L"")); }, L"-1", nullptr},
      {L"a\\b\\c.txt", [&](CString& s) { return n(s.Find(L'a', 100)); }, L"-1", nullptr},
      {L"a\\b\\c.txt", [&](CString& s) { return n(s.Find(L'a', -1)); }, L"-1", nullptr},
      {L"a\\b\\c.txt", [&](CString& s) { return n(s.ReverseFind(L'\\')); }, L"3", nullptr},
      {L"a\\b\\c.txt", [&](CString& s) { return n(s.ReverseFind(L'q')); }, L"-1", nullptr},
      {L"a\\b\\c.txt", [&](CString& s) { return n(s.FindOneOf(L".\\")); }, L"1", nullptr},
      {L"hello", [](CString& s) { return s.Left(99); }, L"hello", nullptr},
      {L"hello", [](CString& s) { return s.Left(-1); }, L"", nullptr},
      {L"hello", [](CString& s) { return s.Mid(1, 2); }, L"el", nullptr},
      {L"hello", [](CString& s) { return s.Mid(4, 10); }, L"o", nullptr},
      {L"hello", [](CString& s) { return s.Mid(9); }, L"", nullptr},
      {L"hello", [](CString& s) { return s.Mid(-2, 2); }, L"he", nullptr},
      {L"hello", [](CString& s) { return s.Right(3); }, L"llo", nullptr},
      {L"hello", [](CString& s) { return s.Right(50); }, L"hello", nullptr},
      {L"a--b--c", [&](CString& s) { return n(s.Replace(L"--", L"+")); }, L"2", L"a+b+c"},
      {L"a+b+c", [&](CString& s) { return n(s.Replace(L'+', L'/')); }, L"2", L"a/b/c"},
      {L"abc", [&](CString& s) { return n(s.Replace(L"", L"x")); }, L"0", L"abc"},
      {L"aaa", [&](CString& s) { return n(s.Replace(L"aa", L"b")); }, L"1", L"ba"},   // left to right, no overlap
      {L"xx", [&](CString& s) { return n(s.Replace(L"x", L"xx")); }, L"2", L"xxxx"},  // not searched again
      {L"banana", [&](CString& s) { return n(s.Remove(L'a')); }, L"3", L"bnn"},
      {L"bnn", [&](CString& s) { return n(s.Insert(1, L"--")); }, L"5", L"b--nn"},
      {L"b--nn", [&](CString& s) { return n(s.Delete(1, 2)); }, L"3", L"bnn"},
      {L"bnn", [&](CString& s) { return n(s.Delete(2, 100)); }, L"2", L"bn"},
      {L" \t\r\n text \n", [](CString& s) { return s.Trim(); }, L"text", nullptr},
      {L" \t\r\n text \n", [](CString& s) { return s.TrimLeft(); }, L"text \n", nullptr},
      {L" \t\r\n text \n", [](CString& s) { return s.TrimRight(); }, L" \t\r\n text", nullptr},
      {L"xxaxx", [](CString& s) { return s.Trim(L'x'); }, L"a", nullptr},
      {L"<[a]>", [](CString& s) { return s.Trim(L"<>[]"); }, L"a", nullptr},
      {L"   ", [](CString& s) { return s.Trim(); }, L"", nullptr},
      {L"\u00c9T\u00c9 \u0394", [](CString& s) { return s.MakeLower(); }, L"\u00e9t\u00e9 \u03b4", nullptr},
      {L"stra\u00dfe \u00e9", [](CString& s) { return s.MakeUpper(); }, L"STRA\u00dfE \u00c9", nullptr},
      {L"\u4e2dA", [](CString& s) { return s.MakeLower(); }, L"\u4e2da", nullptr},
      {L"abc", [](CString& s) { return s.MakeReverse(); }, L"cba", nullptr},
      {L"B", [&](CString& s) { return n(s.Compare(L"a") < 0); }, L"1", nullptr},  // ordinal: 'B' < 'a'
      {L"abd", [&](CString& s) { return n(s.Compare(L"abc") > 0); }, L"1", nullptr},
      {L"x", [&](CString& s) { return n(s.Compare(nullptr) > 0); }, L"1", nullptr},  // null compares as ""
      {L"HeLLo", [&](CString& s) { return n(s.CompareNoCase(L"hello")); }, L"0", nullptr},
      {L"\u00c9cole", [&](CString& s) { return n(s.CompareNoCase(L"\u00e9COLE")); }, L"0", nullptr},
      {L"a", [&](CString& s) { return n(s.CompareNoCase(L"B") < 0); }, L"1", nullptr},
      {L"ab", [&](CString& s) { return n(s.CompareNoCase(L"A") > 0); }, L"1", nullptr}};
  for (const Row& row : rows) {
    CString s(row.text);
    EXPECT_EQ(row.call(s), row.result) << row.text;
    if (row.after) {
      EXPECT_EQ(s, row.after) << row.text;
    }
  }
}

TEST(CString, OperatorsAndBuffers) {
  CString a(L"ab");
  CString b = a + L"cd" + L'e';
  EXPECT_EQ(b, L"abcde");
  EXPECT_EQ(L"<" + a, L"<ab");
  EXPECT_TRUE(a < b && a != b);
  a += CString(L"!");
  a += "?";
  EXPECT_EQ(std::wstring(static_cast<const wchar_t*>(a)), L"ab!?");

  CString s(L"abc");
  wcscpy(s.GetBuffer(10), L"0123456");
  s.ReleaseBuffer();
  EXPECT_EQ(s, L"0123456");
  s.GetBuffer(20)[2] = 0;
  s.ReleaseBuffer(5);  // an explicit length keeps what lies behind the zero
  EXPECT_EQ(s.GetLength(), 5);
  s.ReleaseBuffer();
  EXPECT_EQ(s, L"01");
  s.GetBufferSetLength(3)[2] = L'z';
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
