#include <gtest/gtest.h>

#include "support/Raises.h"

#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "common/StdioFileEx.h"
#include "support/Files.h"
#include "support/TempDir.h"
#include "toolkit/CodePage.h"

namespace {

using testing_support::Read;
using testing_support::TempDir;
using testing_support::Write;

const std::string kMark = "\xFF\xFE";

std::string Utf16Le(std::u16string_view text) {
  std::string bytes;
  for (char16_t unit : text) {
    bytes.push_back(static_cast<char>(unit & 0xFF));
    bytes.push_back(static_cast<char>(unit >> 8));
  }
  return bytes;
}

// Opens up the state the flag rule leaves behind.
class ProbeFile : public CStdioFileEx {
 public:
  using CStdioFileEx::CStdioFileEx;
  using CStdioFileEx::ProcessFlags;
  bool IsUnicodeText() const { return m_bIsUnicodeText; }
  UINT Flags() const { return m_nFlags; }
};

std::vector<CString> ReadAll(CStdioFileEx& file) {
  std::vector<CString> lines;
  CString line;
  while (file.ReadString(line)) lines.push_back(line);
  EXPECT_TRUE(line.IsEmpty());
  return lines;
}

TEST(StdioFileEx, TextModeOnMarkedFileSwitchesToBinaryAndReadsUtf16) {
  TempDir dir;
  CString path = dir.Path() + L"unicode.txt";
  Write(dir.NativeOf(L"unicode.txt"), kMark + Utf16Le(u"first\r\n\u4e2d\u6587\u00e9\r\n\n\U0001F600 last"));
  Write(dir.NativeOf(L"mark.txt"), kMark);

  ProbeFile file;
  ASSERT_TRUE(file.Open(path, CFile::modeRead | CFile::typeText));
  EXPECT_TRUE(file.IsUnicodeText());
  EXPECT_EQ(file.Flags() & (CFile::typeText | CFile::typeBinary), static_cast<UINT>(CFile::typeBinary));
  // no mark in the first line, no CR anywhere
  const std::vector<CString> expected{L"first", L"\u4e2d\u6587\u00e9", L"", L"\U0001F600 last"};
  EXPECT_EQ(ReadAll(file), expected);
  file.SeekToBegin();
  EXPECT_EQ(ReadAll(file), expected);

  // the opening constructor follows the same rule (Windows shares nothing by default)
  file.Close();
  ProbeFile opened(path, CFile::modeRead | CFile::typeText);
  EXPECT_TRUE(opened.IsUnicodeText());
  EXPECT_EQ(ReadAll(opened), expected);

  CStdioFileEx markOnly(dir.Path() + L"mark.txt", CFile::modeRead | CFile::typeText);
  EXPECT_EQ(ReadAll(markOnly), std::vector<CString>{});
}

TEST(StdioFileEx, FlagRuleTestsOnlyTextModeReading) {
  TempDir dir;
  CString path = dir.Path() + L"u.txt";
  Write(dir.NativeOf(L"u.txt"), kMark + Utf16Le(u"x"));
  ProbeFile file;
  struct Row {
    UINT flags;
    bool unicode;
    UINT result;
  } rows[] = {
      {CFile::modeRead | CFile::typeText, true, CFile::modeRead | CFile::typeBinary},
      {CFile::modeReadWrite | CFile::typeText, true, CFile::modeReadWrite | CFile::typeBinary},
      {CFile::modeWrite | CFile::typeText, false, CFile::modeWrite | CFile::typeText},
      {CFile::modeCreate | CFile::modeNoTruncate | CFile::typeText, false,
       CFile::modeCreate | CFile::modeNoTruncate | CFile::typeText},
      {CFile::modeRead | CFile::typeBinary, false, CFile::modeRead | CFile::typeBinary},
      {CFile::modeRead, false, CFile::modeRead},
  };
  for (const Row& row : rows) {
    UINT flags = row.flags;
    EXPECT_EQ(file.ProcessFlags(path, flags), row.result) << std::hex << row.flags;
    EXPECT_EQ(flags, row.result);
    EXPECT_EQ(file.Flags(), row.result);
    EXPECT_EQ(file.IsUnicodeText(), row.unicode) << std::hex << row.flags;
  }
  // reopening sees the mark although the object held the file (Windows would refuse the probe)
  ASSERT_TRUE(file.Open(path, CFile::modeRead | CFile::typeText));
  ASSERT_TRUE(file.Open(path, CFile::modeRead | CFile::typeText));
  EXPECT_TRUE(file.IsUnicodeText());
  // a file without the mark keeps text mode and clears the earlier answer
  Write(dir.NativeOf(L"a.txt"), "plain");
  ASSERT_TRUE(file.Open(dir.Path() + L"a.txt", CFile::modeRead | CFile::typeText));
  EXPECT_FALSE(file.IsUnicodeText());
  EXPECT_EQ(file.Flags(), static_cast<UINT>(CFile::modeRead | CFile::typeText));
}

TEST(StdioFileEx, UnmarkedFileReadsMultiByteInTheChosenCodePage) {
  TempDir dir;
  Write(dir.NativeOf(L"gbk.txt"), "\xbb\xb6\xd3\xad\xca\xb9\xd3\xc3 MIVO\r\nsecond\nno end");
  Write(dir.NativeOf(L"utf8.txt"), "\xe4\xb8\xad\xe6\x96\x87\r\n\xf0\x9f\x98\x80");

  ProbeFile gbk;
  gbk.SetCodePage(936);
  ASSERT_TRUE(gbk.Open(dir.Path() + L"gbk.txt", CFile::modeRead | CFile::typeText));
  EXPECT_FALSE(gbk.IsUnicodeText());
  EXPECT_EQ(ReadAll(gbk), (std::vector<CString>{L"\u6b22\u8fce\u4f7f\u7528 MIVO", L"second", L"no end"}));

  CStdioFileEx utf8;
  utf8.SetCodePage(65001);
  ASSERT_TRUE(utf8.Open(dir.Path() + L"utf8.txt", CFile::modeRead | CFile::typeText));
  EXPECT_EQ(ReadAll(utf8), (std::vector<CString>{L"\u4e2d\u6587", L"\U0001F600"}));

  // a long line arrives in pieces of at most 4095 bytes
  Write(dir.NativeOf(L"long.txt"), std::string(5000, 'x') + "\r\nend\n");
  ASSERT_TRUE(utf8.Open(dir.Path() + L"long.txt", CFile::modeRead | CFile::typeText));
  EXPECT_EQ(ReadAll(utf8), (std::vector<CString>{CString(L'x', 4095), CString(L'x', 905), L"end"}));
}

TEST(StdioFileEx, UnicodeWritingPutsTheMarkOnlyAtTheStart) {
  TempDir dir;
  CString path = dir.Path() + L"out.txt";
  const UINT create = CFile::modeCreate | CFile::modeWrite | CFile::typeBinary | CStdioFileEx::modeWriteUnicode;
  {
    CStdioFileEx file(path, create);
    file.WriteString(L"a\u4e2d");
    file.WriteString(L"\U0001F600\r\n");
  }
  const std::string first = kMark + Utf16Le(u"a\u4e2d\U0001F600\r\n");
  EXPECT_EQ(Read(dir.NativeOf(L"out.txt")), first);
  {
    CStdioFileEx file;
    ASSERT_TRUE(file.Open(path, CFile::modeCreate | CFile::modeNoTruncate | CFile::modeWrite | CFile::typeBinary |
                                    CStdioFileEx::modeWriteUnicode));
    file.SeekToEnd();
    file.WriteString(L"b");
  }
  EXPECT_EQ(Read(dir.NativeOf(L"out.txt")), first + Utf16Le(u"b"));

  CStdioFileEx reader(path, CFile::modeRead | CFile::typeText);
  EXPECT_EQ(ReadAll(reader), (std::vector<CString>{L"a\u4e2d\U0001F600", L"b"}));
}

TEST(StdioFileEx, MultiByteWritingConvertsWithoutTerminator) {
  TempDir dir;
  {
    CStdioFileEx file(dir.Path() + L"gbk.txt", CFile::modeCreate | CFile::modeWrite | CFile::typeText);
    file.SetCodePage(936);
    file.WriteString(L"\u6b22\u8fce MIVO\n");
    file.WriteString(L"");
    CStdioFileEx western(dir.Path() + L"1252.txt", CFile::modeCreate | CFile::modeWrite);
    western.SetCodePage(1252);
    western.WriteString(L"caf\u00e9 \u4e2d?");  // 中 is not in Western European
    CStdioFileEx ansi(dir.Path() + L"ansi.txt", CFile::modeCreate | CFile::modeWrite);
    ansi.WriteString(L"\u00e9t\u00e9");
  }
  EXPECT_EQ(Read(dir.NativeOf(L"gbk.txt")), "\xbb\xb6\xd3\xad MIVO\n");
  EXPECT_EQ(Read(dir.NativeOf(L"1252.txt")), "caf\xe9 #?");
  // the default code page is the ANSI one
  std::string ansi;
  ASSERT_TRUE(toolkit::WideToMultiByte(toolkit::GetAnsiCodePage(), L"\u00e9t\u00e9", 3, ansi));
  EXPECT_EQ(Read(dir.NativeOf(L"ansi.txt")), ansi);
}

TEST(StdioFileEx, CharCountHalvesUnicodeAfterTheMark) {
  TempDir dir;
  Write(dir.NativeOf(L"u.txt"), kMark + Utf16Le(u"abcd"));
  Write(dir.NativeOf(L"m.txt"), "abcdefg");
  CStdioFileEx file;
  EXPECT_EQ(file.GetCharCount(), 0u);
  ASSERT_TRUE(file.Open(dir.Path() + L"u.txt", CFile::modeRead | CFile::typeText));
  EXPECT_EQ(file.GetCharCount(), 4u);
  ASSERT_TRUE(file.Open(dir.Path() + L"m.txt", CFile::modeRead | CFile::typeText));
  EXPECT_EQ(file.GetCharCount(), 7u);
  file.Close();
  EXPECT_EQ(file.GetCharCount(), 0u);
}

TEST(StdioFileEx, IsFileUnicodeWantsExactlyFFFE) {
  TempDir dir;
  const std::pair<std::string, bool> rows[] = {{"", false},         {"\xFF", false},     {kMark, true},
                                               {kMark + "x", true}, {"\xFE\xFF", false}, {"\xEF\xBB\xBFx", false}};
  for (const auto& [bytes, unicode] : rows) {
    Write(dir.NativeOf(L"f"), bytes);
    EXPECT_EQ(CStdioFileEx::IsFileUnicode(dir.Path() + L"f"), unicode) << bytes.size() << " bytes";
  }
  EXPECT_FALSE(CStdioFileEx::IsFileUnicode(dir.Path() + L"missing"));
  EXPECT_FALSE(CStdioFileEx::IsFileUnicode(CString()));
}

TEST(StdioFileEx, FailuresStayInsideExceptTheOpeningConstructor) {
  TempDir dir;
  CString missing = dir.Path() + L"missing.txt";
  EXPECT_RAISES(CStdioFileEx(missing, CFile::modeRead | CFile::typeText), CFileException);

  CStdioFileEx file;
  CFileException error;
  EXPECT_FALSE(file.Open(missing, CFile::modeRead | CFile::typeText, &error));
  EXPECT_EQ(error.m_cause, CFileException::fileNotFound);
  CString line = L"stale";
  EXPECT_FALSE(file.ReadString(line));
  EXPECT_TRUE(line.IsEmpty());
  file.WriteString(L"nowhere");

  // reading from a file opened only for writing fails quietly
  CStdioFileEx writer(dir.Path() + L"w.txt", CFile::modeCreate | CFile::modeWrite | CFile::typeText);
  EXPECT_FALSE(writer.ReadString(line));
}

// ---- conversion helpers ----

TEST(StdioFileExConversion, ToWideCutsToFitTheBuffer) {
  const char* utf8 = "\xe4\xb8\xad\xe6\x96\x87!";  // 中文!
  // exact-size heap buffers: the sanitizer build reports any write past them
  auto out = std::make_unique<wchar_t[]>(3);
  EXPECT_EQ(CStdioFileEx::GetUnicodeStringFromMultiByteString(utf8, out.get(), 3, 65001), 2);
  EXPECT_EQ(std::wstring(out.get()), L"\u4e2d\u6587");

  auto one = std::make_unique<wchar_t[]>(1);
  one[0] = L'z';
  EXPECT_EQ(CStdioFileEx::GetUnicodeStringFromMultiByteString(utf8, one.get(), 1, 65001), 0);
  EXPECT_EQ(one[0], L'\0');

  wchar_t roomy[16];
  std::fill(std::begin(roomy), std::end(roomy), L'z');
  EXPECT_EQ(CStdioFileEx::GetUnicodeStringFromMultiByteString("\xbb\xb6\xd3\xad", roomy, 16, 936), 2);
  EXPECT_EQ(std::wstring(roomy), L"\u6b22\u8fce");
  EXPECT_EQ(roomy[15], L'\0');  // zero-filled to the end
  EXPECT_EQ(CStdioFileEx::GetUnicodeStringFromMultiByteString("abc", roomy, 16, -1), 3);
  EXPECT_EQ(std::wstring(roomy), L"abc");

  // a pair is never split where wchar_t holds UTF-16
  const char* emoji = "a\xf0\x9f\x98\x80";
  auto two = std::make_unique<wchar_t[]>(3);
  int n = CStdioFileEx::GetUnicodeStringFromMultiByteString(emoji, two.get(), 3, 65001);
  EXPECT_EQ(std::wstring(two.get()), sizeof(wchar_t) == 2 ? L"a" : L"a\U0001F600");
  EXPECT_EQ(n, sizeof(wchar_t) == 2 ? 1 : 2);
}

TEST(StdioFileExConversion, ToMultiByteCutsOnCharacterBoundaries) {
  wchar_t zh[] = L"\u6b22\u8fce\u4f7f\u7528";  // 欢迎使用: two bytes each in 936
  auto out = std::make_unique<char[]>(6);
  EXPECT_EQ(CStdioFileEx::GetMultiByteStringFromUnicodeString(zh, out.get(), 6, 936), 4);
  EXPECT_EQ(std::string(out.get(), 6), std::string("\xbb\xb6\xd3\xad\0\0", 6));

  wchar_t mixed[] = L"\u4e2d\u6587";  // three bytes each in UTF-8
  auto small = std::make_unique<char[]>(5);
  EXPECT_EQ(CStdioFileEx::GetMultiByteStringFromUnicodeString(mixed, small.get(), 5, 65001), 3);
  EXPECT_STREQ(small.get(), "\xe4\xb8\xad");

  auto full = std::make_unique<char[]>(7);
  EXPECT_EQ(CStdioFileEx::GetMultiByteStringFromUnicodeString(mixed, full.get(), 7, 65001), 6);
  EXPECT_STREQ(full.get(), "\xe4\xb8\xad\xe6\x96\x87");

  char guard[4] = {'q', 'q', 'q', 'q'};
  EXPECT_EQ(CStdioFileEx::GetMultiByteStringFromUnicodeString(nullptr, guard, 4, 65001), 0);
  EXPECT_EQ(std::string(guard, 4), std::string(4, '\0'));
  EXPECT_EQ(CStdioFileEx::GetMultiByteStringFromUnicodeString(mixed, guard, 0, 65001), 0);
  EXPECT_EQ(CStdioFileEx::GetMultiByteStringFromUnicodeString(mixed, nullptr, 4, 65001), 0);
}

TEST(StdioFileExConversion, UnmappableCharactersBecomeHashAndLengthsCountTheTerminator) {
  wchar_t text[] = L"a?\u4e2db";  // 中 is not in Western European
  char out[16];
  EXPECT_EQ(CStdioFileEx::GetMultiByteStringFromUnicodeString(text, out, sizeof out, 1252), 4);
  EXPECT_STREQ(out, "a?#b");
  EXPECT_EQ(CStdioFileEx::GetRequiredMultiByteLengthForUnicodeString(text, 1252), 5);
  // UTF-8 maps everything
  EXPECT_EQ(CStdioFileEx::GetMultiByteStringFromUnicodeString(text, out, sizeof out, 65001), 6);
  EXPECT_STREQ(out,
               "a?\xe4\xb8\xad"
               "b");
  EXPECT_EQ(CStdioFileEx::GetRequiredMultiByteLengthForUnicodeString(text, 65001), 7);

  wchar_t empty[] = L"";
  EXPECT_EQ(CStdioFileEx::GetRequiredMultiByteLengthForUnicodeString(empty, 936), 1);
  EXPECT_EQ(CStdioFileEx::GetRequiredMultiByteLengthForUnicodeString(nullptr, 65001), 0);
}

}  // namespace
