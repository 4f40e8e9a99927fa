#include <gtest/gtest.h>

#include "common/PathUtil.h"

namespace mc = mivo::common;

namespace {

struct ReparseRow {
  const wchar_t* in;
  const wchar_t* out;
};

class ReparsePath : public ::testing::TestWithParam<ReparseRow> {};

TEST_P(ReparsePath, CollapsesSeparators) { EXPECT_EQ(mc::ReparsePath(GetParam().in), GetParam().out); }

INSTANTIATE_TEST_SUITE_P(Rows, ReparsePath,
                         ::testing::Values(ReparseRow{L"C:/a//b", L"C:\\a\\b"},
                                           ReparseRow{L"\\\\server/share", L"\\\\server\\share"},
                                           ReparseRow{L"\\a", L"\\\\a"},
                                           ReparseRow{L"a\\\\\\b", L"a\\\\b"},    // three become two
                                           ReparseRow{L"a\\\\\\\\b", L"a\\\\b"},  // four: two pairs, two left
                                           ReparseRow{L"", L""}, ReparseRow{L"\\", L"\\\\"},
                                           ReparseRow{L"C:\\\u6587\u4ef6//x", L"C:\\\u6587\u4ef6\\x"}));

TEST(PathParts, DirNameAndExtension) {
  EXPECT_EQ(mc::GetFileDirFromPath(L"C:\\a\\b.txt"), L"C:\\a\\");
  EXPECT_EQ(mc::GetFileDirFromPath(L"b.txt"), L"");
  EXPECT_EQ(mc::GetFileNameFromPath(L"C:\\a\\b.tar.gz"), L"b.tar.gz");
  EXPECT_EQ(mc::GetFileNameFromPath(L"C:\\a\\"), L"");
  EXPECT_EQ(mc::GetFileExtFromPath(L"C:\\a.d\\b.tar.gz"), L"gz");
  EXPECT_EQ(mc::GetFileExtFromPath(L"C:\\a.d\\noext"), L"");
  EXPECT_EQ(mc::GetFileNameFromString(L"b.tar.gz", false), L"b.tar");
  EXPECT_EQ(mc::GetFileNameFromString(L"b.tar.gz", true), L"b.tar.");
  EXPECT_EQ(mc::GetFileExtFromString(L"b.tar.gz", true), L".gz");
  EXPECT_EQ(mc::GetFileExtFromString(L"b.tar.gz", false), L"gz");
  EXPECT_EQ(mc::GetFileExtFromString(L".ini", false), L"ini");  // a name that is all extension
  EXPECT_EQ(mc::GetFileNameFromString(L"plain", true), L"plain");
  EXPECT_EQ(mc::GetFileExtFromString(L"plain", true), L"");
}

TEST(ParseFileName, MultiSelectionAndSingleSelection) {
  wchar_t multi[] = L"C:\\dir\0a.txt\0\u6587.doc\0\0";
  CArray<CString, CString&> names;
  EXPECT_EQ(mc::ParseFileName(multi, sizeof multi / sizeof multi[0], names), 2);
  ASSERT_EQ(names.GetSize(), 2);
  EXPECT_EQ(names[0], L"C:\\dir\\a.txt");
  EXPECT_EQ(names[1], L"C:\\dir\\\u6587.doc");
  wchar_t single[] = L"C:\\dir\\one.txt\0\0";
  EXPECT_EQ(mc::ParseFileName(single, sizeof single / sizeof single[0], names), 1);
  EXPECT_EQ(names[0], L"C:\\dir\\one.txt");
  // a buffer without its closing NULs is read only up to its length
  wchar_t unterminated[3] = {L'a', L'b', L'c'};
  EXPECT_EQ(mc::ParseFileName(unterminated, 3, names), 1);
  EXPECT_EQ(names[0], L"abc");
  EXPECT_EQ(mc::ParseFileName(nullptr, 10, names), 0);
}

}  // namespace
