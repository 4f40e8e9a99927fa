#include <gtest/gtest.h>

#include <list>
#include <vector>

#include "common/StringUtil.h"

namespace mc = mivo::common;

namespace {

std::vector<CString> Items(const CStringList& list) {
  std::vector<CString> out;
  for (POSITION pos = list.GetHeadPosition(); pos;) out.push_back(list.GetNext(pos));
  return out;
}

TEST(AnalyzeString, SingleCharacterSplitKeepsEmptyPieces) {
  CStringList list;
  list.AddTail(L"stale");
  EXPECT_EQ(mc::AnalyzeString(CString(), L',', list), 0);
  EXPECT_TRUE(list.IsEmpty());
  EXPECT_EQ(mc::AnalyzeString(L",", L',', list), 1);
  EXPECT_EQ(Items(list), (std::vector<CString>{L"", L""}));
  EXPECT_EQ(mc::AnalyzeString(L"a,,b,", L',', list), 1);
  EXPECT_EQ(Items(list), (std::vector<CString>{L"a", L"", L"b", L""}));
  EXPECT_EQ(mc::AnalyzeString(L" no sep ", L',', list), 1);
  EXPECT_EQ(Items(list), (std::vector<CString>{L" no sep "}));
  CStringArray arr;
  EXPECT_EQ(mc::AnalyzeString(L"x y", L' ', arr), 1);
  ASSERT_EQ(arr.GetSize(), 2);
  EXPECT_EQ(arr[1], L"y");
}

TEST(AnalyzeString, MultiCharacterSplit) {
  std::vector<CString> v{L"stale"};
  EXPECT_EQ(mc::AnalyzeString(L"a::b::::c", CString(L"::"), v), 1);
  EXPECT_EQ(v, (std::vector<CString>{L"a", L"b", L"", L"c"}));
  EXPECT_EQ(mc::AnalyzeString(L"abc", CString(), v), 0);
  EXPECT_TRUE(v.empty());
  CStringList list;
  EXPECT_EQ(mc::AnalyzeString(L"\u4e2d--\u6587--", CString(L"--"), list), 1);
  EXPECT_EQ(Items(list), (std::vector<CString>{L"\u4e2d", L"\u6587", L""}));
  CStringArray arr;
  EXPECT_EQ(mc::AnalyzeString(L"::", CString(L"::"), arr), 1);
  EXPECT_EQ(arr.GetSize(), 2);
}

TEST(AnalyzeStringTable, KeysValuesCommentsAndLaterWins) {
  CStringList lines;
  for (const wchar_t* l : {L"a=1", L"b", L"c = 2 ;x", L"a=3", L" k = a=b", L"=empty key", L"v=;all comment"})
    lines.AddTail(l);
  CMapStringToString table;
  EXPECT_EQ(mc::AnalyzeStringTable(lines, table), 1);
  CString v;
  EXPECT_TRUE(table.Lookup(L"a", v));
  EXPECT_EQ(v, L"3");
  EXPECT_TRUE(table.Lookup(L"c", v));
  EXPECT_EQ(v, L"2 ");
  EXPECT_FALSE(table.Lookup(L"b", v));
  EXPECT_TRUE(table.Lookup(L"k", v));
  EXPECT_EQ(v, L"a");  // pieces after a second '=' are dropped
  EXPECT_TRUE(table.Lookup(L"", v));
  EXPECT_EQ(v, L"empty key");
  EXPECT_TRUE(table.Lookup(L"v", v));
  EXPECT_EQ(v, L"");
  CStringList none;
  EXPECT_EQ(mc::AnalyzeStringTable(none, table), 0);
}

TEST(ByteStrings, TrimCompareReplaceSafeCast) {
  std::string s = "   ";
  mc::string_trim_right(s);
  EXPECT_EQ(s, "");
  s = "\t\r\n x y \n";
  mc::string_trim(s);
  EXPECT_EQ(s, "x y");
  s = " \vx";
  mc::string_trim_left(s);
  EXPECT_EQ(s, "\vx");  // only space, tab, LF and CR
  EXPECT_EQ(mc::string_compare_no_case("Hello", "hELLO"), 0);
  EXPECT_LT(mc::string_compare_no_case("a", "B"), 0);
  EXPECT_EQ(mc::string_compare_no_case(std::string("ab\0x", 4), std::string("AB\0y", 4)), 0);
  s = "a.b.c";
  mc::string_replace(s, ".", "..");
  EXPECT_EQ(s, "a..b..c");
  mc::string_replace(s, "", "x");
  EXPECT_EQ(s, "a..b..c");
  EXPECT_EQ(mc::string_safe_cast(static_cast<const char*>(nullptr)), "");
  EXPECT_EQ(mc::string_safe_cast(static_cast<const std::string*>(nullptr)), "");
  const std::string kept = "k";
  EXPECT_EQ(mc::string_safe_cast(&kept), "k");
}

TEST(ByteStrings, Bin2Hex) {
  const unsigned char bytes[] = {0x00, 0xAB};
  EXPECT_EQ(mc::bin2hex(bytes, 2), "00ab");
  EXPECT_EQ(mc::bin2hex(bytes, 0), "");
  EXPECT_EQ(mc::bin2hex(std::string("\x7f\x80\xff", 3)), "7f80ff");
}

TEST(ByteStrings, SplitForms) {
  std::list<std::string> out;
  EXPECT_EQ(mc::string_split("a,b,,c,", ",", out), 5);
  EXPECT_EQ(out, (std::list<std::string>{"a", "b", "", "c", ""}));
  out.clear();
  EXPECT_EQ(mc::string_split("abc", ",", out), 0);
  EXPECT_TRUE(out.empty());
  EXPECT_EQ(mc::string_split("a<>b", "<>", out), 2);
  EXPECT_EQ(out, (std::list<std::string>{"a", "b"}));  // appended
  out.clear();
  EXPECT_EQ(mc::string_split2("a,b,,c,", ",", out), 3);
  EXPECT_EQ(out, (std::list<std::string>{"a", "b", "c"}));
  out.clear();
  EXPECT_EQ(mc::string_split2("abc", ",", out), 1);
  EXPECT_EQ(mc::string_split("abc", "", out), 0);
}

TEST(Formatting, StringFormatAndWstringFormat) {
  EXPECT_EQ(mc::StringFormat(nullptr), "");
  EXPECT_EQ(mc::StringFormat("%s=%d", "n", 5), "n=5");
  std::string big(5000, 'x');
  EXPECT_EQ(mc::StringFormat("[%s]", big.c_str()).size(), 5002u);
  EXPECT_EQ(mc::WstringFormat(L"%s-%S-%I64u", L"\u4e2d", "b", 1ULL << 40), L"\u4e2d-b-1099511627776");
  EXPECT_EQ(mc::WstringFormat(nullptr), L"");
}

TEST(Joining, CombineGetNoFormatedAndMembership) {
  CStringArray items;
  EXPECT_EQ(mc::CombineString(items, L","), L"");
  items.Add(L"a");
  items.Add(L"b");
  items.Add(L"");
  EXPECT_EQ(mc::CombineString(items, L", "), L"a, b, ");
  EXPECT_EQ(mc::GetNoFormatedString(L"a\r\n\tb\n"), L"ab");
  std::list<CString> list{L"Alpha", L"\u00c9t\u00e9"};
  EXPECT_TRUE(mc::IsStringInList(list, L"alpha"));
  EXPECT_TRUE(mc::IsStringInList(list, L"\u00e9T\u00c9"));
  EXPECT_FALSE(mc::IsStringInList(list, L"beta"));
  EXPECT_TRUE(mc::IsStringInArray(items, L"a"));
  EXPECT_FALSE(mc::IsStringInArray(items, L"A"));  // case matters here
}

}  // namespace
