#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "support/TempDir.h"
#include "toolkit/FileFind.h"

namespace {

// What a search finds, sorted by name: folders end in "/", the dot entries in "*".
std::wstring Listing(const CString& pattern) {
  std::vector<std::wstring> names;
  CFileFind finder;
  for (BOOL more = finder.FindFile(pattern); more;) {
    more = finder.FindNextFile();
    names.push_back(std::wstring(finder.GetFileName()) + (finder.IsDirectory() ? L"/" : L"") +
                    (finder.IsDots() ? L"*" : L""));
  }
  std::sort(names.begin(), names.end());
  std::wstring listing;
  for (const std::wstring& name : names) listing += (listing.empty() ? L"" : L" ") + name;
  return listing;
}

TEST(CFileFind, PatternsMatchWithoutCase) {
  testing_support::TempDir dir;
  for (const wchar_t* file : {L"a.txt", L"noext", L"Report.TXT", L"report.log"}) std::ofstream(dir.NativeOf(file));
  std::filesystem::create_directory(dir.NativeOf(L"\u76ee\u5f55"));
  const std::pair<const wchar_t*, const wchar_t*> rows[] = {
      {L"*.*", L"../* ./* Report.TXT a.txt noext report.log \u76ee\u5f55/"},
      {L"*.txt", L"Report.TXT a.txt"},
      {L"?.txt", L"a.txt"},
      {L"report.*", L"Report.TXT report.log"},
      {L"\u76ee\u5f55", L"\u76ee\u5f55/"},
      {L"nothing", L""},
      {L"missing\\*.*", L""},
  };
  for (const auto& [pattern, expected] : rows) EXPECT_EQ(Listing(dir.Path() + pattern), expected) << pattern;

  CFileFind finder;
  ASSERT_TRUE(finder.FindFile(dir.Path() + L"a.*"));
  finder.FindNextFile();
  EXPECT_EQ(finder.GetFilePath(), dir.Path() + L"a.txt");
  EXPECT_FALSE(finder.FindFile(dir.Path() + L"*.none"));
  EXPECT_FALSE(finder.FindNextFile());
  EXPECT_EQ(finder.GetFileName(), L"");
}

TEST(WildcardMatch, Rows) {
  EXPECT_TRUE(toolkit::WildcardMatch(L"*", L"anything"));
  EXPECT_TRUE(toolkit::WildcardMatch(L"*.*", L"noext"));
  EXPECT_TRUE(toolkit::WildcardMatch(L"a*b*c", L"axxbyyc"));
  EXPECT_FALSE(toolkit::WildcardMatch(L"a*b*c", L"axxbyy"));
  EXPECT_TRUE(toolkit::WildcardMatch(L"*.xml", L"x.XML"));
  EXPECT_FALSE(toolkit::WildcardMatch(L"?", L""));
  EXPECT_TRUE(toolkit::WildcardMatch(L"", L""));
}

}  // namespace
