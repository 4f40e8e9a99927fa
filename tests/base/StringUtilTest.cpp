#include "base/util/string_util.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace {

TEST(NbaseStringUtil, TrimsBlanksOnTheAskedSides) {
  struct Row {
    const wchar_t* text;
    const wchar_t* left;
    const wchar_t* right;
    const wchar_t* both;
  } rows[] = {
      {L"", L"", L"", L""},
      {L" \t\r\n", L"", L"", L""},
      {L"a", L"a", L"a", L"a"},
      {L"\n a b\t", L"a b\t", L"\n a b", L"a b"},
      {L"\va\x3000", L"\va\x3000", L"\va\x3000", L"\va\x3000"},  // only the four blanks
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(testing::Message() << "row " << (&row - rows));
    EXPECT_EQ(nbase::TrimLeft(std::wstring_view(row.text)), row.left);
    EXPECT_EQ(nbase::TrimRight(std::wstring_view(row.text)), row.right);
    EXPECT_EQ(nbase::Trim(std::wstring_view(row.text)), row.both);
  }
  EXPECT_EQ(nbase::Trim(std::string_view("\r\n key = v \t")), "key = v");
  EXPECT_EQ(nbase::TrimLeft(std::string_view("\xA0 x")), "\xA0 x");  // a byte above 127 is no blank
}

TEST(NbaseStringUtil, ComparesIgnoringAsciiCase) {
  struct Row {
    const char* a;
    const char* b;
    int sign;
  } rows[] = {
      {"Hello", "hELLO", 0}, {"", "", 0},      {"a", "B", -1}, {"B", "a", 1},
      {"ab", "AB c", -1},    {"abc", "AB", 1}, {"_", "a", 1},  // compared upper-cased: '_' sorts after 'A'
      {"\xE9", "\xC9", 1},                                     // no folding above ASCII
  };
  for (const Row& row : rows) {
    const int got = nbase::CompareNoCase(row.a, row.b);
    EXPECT_EQ((got > 0) - (got < 0), row.sign) << row.a << " vs " << row.b;
  }
}

}  // namespace
