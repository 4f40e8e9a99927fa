#include <gtest/gtest.h>

#include "support/Raises.h"

#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "support/Files.h"
#include "support/TempDir.h"
#include "toolkit/File.h"

namespace {

using testing_support::Read;
using testing_support::TempDir;
using testing_support::Write;

// The lines ReadString gives until it answers false.
std::vector<std::wstring> Lines(CStdioFile& f) {
  std::vector<std::wstring> lines;
  for (CString line; f.ReadString(line);) lines.emplace_back(line.GetString());
  return lines;
}

TEST(CFile, CreateWriteSeekReadWithNonAsciiName) {
  TempDir dir;
  CString path = dir.Path() + L"\u6587\u4ef6 file.bin";
  {
    CFile f;
    ASSERT_TRUE(f.Open(path, CFile::modeCreate | CFile::modeReadWrite));
    f.Write("hello world", 11);
    EXPECT_EQ(f.GetLength(), 11u);
    EXPECT_EQ(f.Seek(6, CFile::begin), 6u);
    char buf[16] = {};
    EXPECT_EQ(f.Read(buf, sizeof buf), 5u);
    EXPECT_STREQ(buf, "world");
    EXPECT_EQ(f.Read(buf, sizeof buf), 0u);  // end of file
    f.SetLength(5);
    EXPECT_EQ(f.GetLength(), 5u);
    EXPECT_EQ(f.GetFileName(), L"\u6587\u4ef6 file.bin");
    f.Close();
    EXPECT_FALSE(f.IsOpen());
  }
  EXPECT_EQ(Read(dir.NativeOf(L"\u6587\u4ef6 file.bin")), "hello");
}

TEST(CFile, NoTruncateKeepsAndCreateTruncates) {
  TempDir dir;
  Write(dir.NativeOf(L"a.txt"), "12345");
  CString path = dir.Path() + L"a.txt";
  {
    CFile f(path, CFile::modeCreate | CFile::modeNoTruncate | CFile::modeWrite);
    f.SeekToEnd();
    f.Write("6", 1);
  }
  EXPECT_EQ(Read(dir.NativeOf(L"a.txt")), "123456");
  { CFile f(path, CFile::modeCreate | CFile::modeWrite); }
  EXPECT_EQ(Read(dir.NativeOf(L"a.txt")), "");
}

TEST(CFile, FailuresReportTheCause) {
  TempDir dir;
  CFile f;
  CFileException error;
  EXPECT_FALSE(f.Open(dir.Path() + L"missing.txt", CFile::modeRead, &error));
  EXPECT_EQ(error.m_cause, CFileException::fileNotFound);
  EXPECT_EQ(error.m_strFileName, dir.Path() + L"missing.txt");
  EXPECT_FALSE(f.Open(dir.Path() + L"no\\such\\folder\\x.txt", CFile::modeCreate | CFile::modeWrite, &error));
  EXPECT_NE(error.m_cause, CFileException::none);
  EXPECT_FALSE(f.Open(dir.Path(), CFile::modeRead, &error));  // a folder is not a file
  EXPECT_FALSE(f.Open(L"", CFile::modeRead, &error));
  try {
    CFile raising(dir.Path() + L"missing.txt", CFile::modeRead);
    FAIL() << "the opening constructor must raise";
  } catch (CFileException* e) {
    EXPECT_EQ(e->m_cause, CFileException::fileNotFound);
    e->Delete();
  }
}

TEST(CFile, RemoveAndRename) {
  TempDir dir;
  Write(dir.NativeOf(L"x"), "x");
  Write(dir.NativeOf(L"y"), "y");
  EXPECT_RAISES(CFile::Rename(dir.Path() + L"x", dir.Path() + L"y"), CFileException);  // no replacing
  CFile::Rename(dir.Path() + L"x", dir.Path() + L"z");
  EXPECT_EQ(Read(dir.NativeOf(L"z")), "x");
  CFile::Remove(dir.Path() + L"z");
  EXPECT_FALSE(std::filesystem::exists(dir.NativeOf(L"z")));
  EXPECT_RAISES(CFile::Remove(dir.Path() + L"z"), CFileException);
}

TEST(CStdioFile, TextModeReadsLinesInTheAnsiPageAndWritesCrLf) {
  TempDir dir;
  CString path = dir.Path() + L"t.txt";
  {
    CStdioFile f(path, CFile::modeCreate | CFile::modeWrite | CFile::typeText);
    f.WriteString(L"one\ntwo\n");
    f.WriteString(L"three");
  }
  EXPECT_EQ(Read(dir.NativeOf(L"t.txt")), "one\r\ntwo\r\nthree");
  CStdioFile f(path, CFile::modeRead | CFile::typeText);
  CString line;
  ASSERT_TRUE(f.ReadString(line) && f.ReadString(line));
  EXPECT_EQ(line, L"two");
  EXPECT_EQ(f.GetPosition(), 10u);  // the read-ahead is not counted
  EXPECT_EQ(Lines(f), std::vector<std::wstring>{L"three"});
}

TEST(CStdioFile, BinaryModeIsUtf16Units) {
  TempDir dir;
  CString path = dir.Path() + L"u.txt";
  const std::wstring text = L"\u4e2d\n\U0001F600x";
  {
    CStdioFile f(path, CFile::modeCreate | CFile::modeWrite | CFile::typeBinary);
    f.WriteString(text.c_str());
  }
  EXPECT_EQ(Read(dir.NativeOf(L"u.txt")), std::string("\x2d\x4e\x0a\x00\x3d\xd8\x00\xde\x78\x00", 10));
  CStdioFile f(path, CFile::modeRead | CFile::typeBinary);
  EXPECT_EQ(Lines(f), (std::vector<std::wstring>{L"\u4e2d", L"\U0001F600x"}));
}

TEST(CStdioFile, BoundedReadKeepsTheLineFeedAndSplitsLongLines) {
  TempDir dir;
  Write(dir.NativeOf(L"b.txt"), "abcdef\nxy");
  CStdioFile f(dir.Path() + L"b.txt", CFile::modeRead | CFile::typeText);
  std::wstring parts;
  for (wchar_t buf[5]; f.ReadString(buf, 5);) parts += std::wstring(buf) + L"|";
  EXPECT_EQ(parts, L"abcd|ef\n|xy|");
}

TEST(CStdioFile, SmallReadsAndPositionsStayConsistentWithTheReadAhead) {
  TempDir dir;
  std::string bytes(10000, '\0');
  for (size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<char>('a' + i % 26);
  Write(dir.NativeOf(L"r.bin"), bytes);
  CStdioFile f(dir.Path() + L"r.bin", CFile::modeReadWrite | CFile::typeBinary);
  std::string got;
  char c;
  for (int i = 0; i < 5000; ++i) {
    ASSERT_EQ(f.Read(&c, 1), 1u);
    got.push_back(c);
  }
  EXPECT_EQ(got, bytes.substr(0, 5000));
  EXPECT_EQ(f.GetPosition(), 5000u);
  f.Write("!!", 2);  // lands where the reader stands, not at the end of the read-ahead
  EXPECT_EQ(f.GetPosition(), 5002u);
  char rest[8] = {};
  EXPECT_EQ(f.Read(rest, 3), 3u);
  EXPECT_EQ(std::string(rest, 3), bytes.substr(5002, 3));
  f.Close();
  std::string after = Read(dir.NativeOf(L"r.bin"));
  EXPECT_EQ(after.substr(4999, 4), bytes.substr(4999, 1) + "!!" + bytes.substr(5002, 1));
  EXPECT_EQ(after.size(), bytes.size());
}

}  // namespace
