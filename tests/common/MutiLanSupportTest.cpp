#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

#include "common/MutiLanSupport.h"
#include "support/Files.h"
#include "support/TempDir.h"

namespace fs = std::filesystem;
using testing_support::Read;
using testing_support::TempDir;
using testing_support::Write;

namespace {

class StringTable : public ::testing::Test {
 protected:
  void SetUp() override { lang->ClearAll(); }
  void TearDown() override {
    lang->ClearAll();
    lang->SetSettingFolder(CString());
    lang->SetLangSetting(LANG_SETTING());
  }
  CMutiLanSupport* lang = CMutiLanSupport::GetInstance();
  TempDir dir;
};

TEST_F(StringTable, TextsKeepTheirEqualsSignsAndComments) {
  Write(dir.NativeOf(L"t.ini"),
        "; comment only\n\n  STRID_X = Hello=World ;note\r\nSTRID_NL=a\\r\\nb\\n\nno separator\n"
        "STRID_ZH=\xe4\xb8\xad\xe6\x96\x87\n=orphan\n");
  ASSERT_EQ(lang->LoadStringTable(dir.Path() + L"t.ini"), 1);
  EXPECT_EQ(lang->GetStringViaID(L"STRID_X"), L"Hello=World ");
  EXPECT_EQ(lang->GetStringViaID(L"STRID_NL"), L"a\r\nb\n");
  EXPECT_EQ(lang->GetStringViaID(L"STRID_ZH"), L"\u4e2d\u6587");
  EXPECT_EQ(lang->GetStringViaID(L"no separator"), L"");
  EXPECT_EQ(lang->GetStringViaID(L"STRID_MISSING"), L"");  // never the id itself
  EXPECT_EQ(lang->GetStringViaID(L""), L"");
}

TEST_F(StringTable, Utf16TablesAndLaterLoadsReplace) {
  std::string u16("\xff\xfe", 2);
  for (wchar_t c : std::wstring(L"STRID_A=\u7b2c\u4e00\r\nSTRID_B=one\r\n")) {
    u16.push_back(static_cast<char>(c & 0xFF));
    u16.push_back(static_cast<char>((c >> 8) & 0xFF));
  }
  Write(dir.NativeOf(L"u16.ini"), u16);
  Write(dir.NativeOf(L"second.ini"), "STRID_B=two\n");
  ASSERT_EQ(lang->LoadStringTable(dir.Path() + L"u16.ini"), 1);
  EXPECT_EQ(lang->GetStringViaID(L"STRID_A"), L"\u7b2c\u4e00");
  ASSERT_EQ(lang->LoadStringTable(dir.Path() + L"second.ini"), 1);
  EXPECT_EQ(lang->GetStringViaID(L"STRID_B"), L"two");
  EXPECT_EQ(lang->GetStringViaID(L"STRID_A"), L"\u7b2c\u4e00");
  lang->ClearAll();
  EXPECT_EQ(lang->GetStringViaID(L"STRID_A"), L"");
}

TEST_F(StringTable, OddFilesLoadWithoutEntries) {
  Write(dir.NativeOf(L"comments.ini"), ";a\n;b\n");
  Write(dir.NativeOf(L"blank.ini"), "\n\n   \r\n");
  Write(dir.NativeOf(L"long.ini"), "STRID_LONG=" + std::string(100000, 'x') + "\nSTRID_AFTER=ok\n");
  EXPECT_EQ(lang->LoadStringTable(dir.Path() + L"comments.ini"), 1);
  EXPECT_EQ(lang->LoadStringTable(dir.Path() + L"blank.ini"), 1);
  EXPECT_EQ(lang->LoadStringTable(dir.Path() + L"long.ini"), 1);
  // a long line arrives in pieces; the first piece still carries its id
  EXPECT_FALSE(lang->GetStringViaID(L"STRID_LONG").IsEmpty());
  EXPECT_EQ(lang->GetStringViaID(L"STRID_AFTER"), L"ok");
}

#if !defined(_WIN32)  // on Windows a missing table shows a message box
TEST_F(StringTable, MissingTableReportsAndKeepsTheTable) {
  Write(dir.NativeOf(L"t.ini"), "STRID_K=v\n");
  ASSERT_EQ(lang->LoadStringTable(dir.Path() + L"t.ini"), 1);
  testing::internal::CaptureStderr();
  EXPECT_EQ(lang->LoadStringTable(dir.Path() + L"gone.ini"), 0);
  std::string said = testing::internal::GetCapturedStderr();
  EXPECT_NE(said.find("Load file error!"), std::string::npos);
  EXPECT_NE(said.find("Please reinstall MIVO to fix this problem."), std::string::npos);
  EXPECT_EQ(lang->GetStringViaID(L"STRID_K"), L"v");
}
#endif

TEST_F(StringTable, LangXmlIsCreatedByteForByteThenReadAndSaved) {
  lang->SetSettingFolder(dir.Path());
  ASSERT_TRUE(lang->LoadLangSetting());
  EXPECT_EQ(lang->GetLangSetting().strLangInUse, L"zh_CN");
  EXPECT_EQ(Read(dir.NativeOf(L"lang.xml")),
            "<?xml version=\"1.0\" encoding=\"utf-8\" ?>\r\n<LangSetting lang=\"zh_CN\">\r\n<SelectedLang />\r\n"
            "</LangSetting>\r\n");
  LANG_SETTING s = lang->GetLangSetting();
  s.strLangToSave = L"en_US";
  lang->SetLangSetting(s);
  EXPECT_NE(lang->SaveLangSetting(), 0);
  EXPECT_EQ(lang->GetLangSetting().strLangInUse, L"zh_CN");  // saving does not switch
  lang->SetLangSetting(LANG_SETTING());
  ASSERT_TRUE(lang->LoadLangSetting());
  EXPECT_EQ(lang->GetLangSetting().strLangInUse, L"en_US");
  EXPECT_NE(Read(dir.NativeOf(L"lang.xml")).find("<SelectedLang />"), std::string::npos);
}

TEST_F(StringTable, UnreadableLangXmlIsIgnored) {
  lang->SetSettingFolder(dir.Path());
  Write(dir.NativeOf(L"lang.xml"), "<LangSetting lang=\"en_US\"");
  LANG_SETTING s;
  s.strLangInUse = L"zh_TW";
  lang->SetLangSetting(s);
  EXPECT_TRUE(lang->LoadLangSetting());
  EXPECT_EQ(lang->GetLangSetting().strLangInUse, L"zh_TW");
  EXPECT_EQ(lang->SaveLangSetting(), 0);
  EXPECT_EQ(Read(dir.NativeOf(L"lang.xml")), "<LangSetting lang=\"en_US\"");
}

}  // namespace
