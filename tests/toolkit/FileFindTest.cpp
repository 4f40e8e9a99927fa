#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <vector>

#include "support/TempDir.h"
#include "toolkit/FileFind.h"

namespace {

using testing_support::TempDir;

struct Found {
  CString name;
  CString path;
  bool directory;
  bool dots;
};

std::vector<Found> FindAll(const CString& pattern) {
  std::vector<Found> out;
  CFileFind finder;
  BOOL more = finder.FindFile(pattern);
  while (more) {
    more = finder.FindNextFile();
    out.push_back({finder.GetFileName(), finder.GetFilePath(), finder.IsDirectory() != FALSE, finder.IsDots() != FALSE});
  }
  std::sort(out.begin(), out.end(), [](const Found& a, const Found& b) { return a.name < b.name; });
  return out;
}

TEST(CFileFind, StarDotStarListsEverythingWithDots) {
  TempDir dir;
  std::ofstream(dir.NativeOf(L"a.txt")) << "1234";
  std::ofstream(dir.NativeOf(L"noext")) << "";
  std::filesystem::create_directory(dir.NativeOf(L"sub"));
  std::vector<Found> all = FindAll(dir.Path() + L"*.*");
  ASSERT_EQ(all.size(), 5u);
  EXPECT_EQ(all[0].name, L".");
  EXPECT_TRUE(all[0].dots);
  EXPECT_EQ(all[1].name, L"..");
  EXPECT_EQ(all[2].name, L"a.txt");
  EXPECT_EQ(all[2].path, dir.Path() + L"a.txt");
  EXPECT_FALSE(all[2].directory);
  EXPECT_EQ(all[3].name, L"noext");
  EXPECT_EQ(all[4].name, L"sub");
  EXPECT_TRUE(all[4].directory);
  EXPECT_FALSE(all[4].dots);
}

TEST(CFileFind, WildcardsIgnoreCase) {
  TempDir dir;
  std::ofstream(dir.NativeOf(L"Report.TXT")) << "";
  std::ofstream(dir.NativeOf(L"report.log")) << "";
  std::ofstream(dir.NativeOf(L"r.txt")) << "";
  std::vector<Found> txt = FindAll(dir.Path() + L"*.txt");
  ASSERT_EQ(txt.size(), 2u);
  EXPECT_EQ(txt[0].name, L"Report.TXT");
  EXPECT_EQ(txt[1].name, L"r.txt");
  EXPECT_EQ(FindAll(dir.Path() + L"?.txt").size(), 1u);
  EXPECT_EQ(FindAll(dir.Path() + L"report.*").size(), 2u);
}

TEST(CFileFind, PlainNameFindsThatEntryAndMissingFindsNothing) {
  TempDir dir;
  std::filesystem::create_directory(dir.NativeOf(L"\u76ee\u5f55"));
  std::vector<Found> one = FindAll(dir.Path() + L"\u76ee\u5f55");
  ASSERT_EQ(one.size(), 1u);
  EXPECT_TRUE(one[0].directory);
  EXPECT_TRUE(FindAll(dir.Path() + L"nothing").empty());
  EXPECT_TRUE(FindAll(dir.Path() + L"missing\\*.*").empty());
  CFileFind finder;
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
