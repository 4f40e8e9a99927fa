#include <gtest/gtest.h>

#include <fstream>

#include "common/FormatUtil.h"
#include "common/MutiLanSupport.h"
#include "support/TempDir.h"

namespace mc = mivo::common;

namespace {

TEST(FormatSize, ByteLadder) {
  EXPECT_EQ(mc::GetFormatSizeString(0ULL), L"0 B");
  EXPECT_EQ(mc::GetFormatSizeString(1023ULL), L"1023 B");
  EXPECT_EQ(mc::GetFormatSizeString(1024ULL), L"1.0 KB");
  EXPECT_EQ(mc::GetFormatSizeString(1572864ULL), L"1.5 MB");
  EXPECT_EQ(mc::GetFormatSizeString(1073741823ULL), L"1024.0 MB");  // single precision rounds up
  EXPECT_EQ(mc::GetFormatSizeString(1073741824ULL), L"1.0 GB");
  EXPECT_EQ(mc::GetFormatSizeString(4294967296ULL), L"4.0 GB");
  EXPECT_EQ(mc::GetFormatSizeString(5497558138880ULL), L"5120.0 GB");
}

TEST(FormatSize, RateLadder) {
  EXPECT_EQ(mc::GetFormatSizeString(0.0f), L"0.0 B/S");
  EXPECT_EQ(mc::GetFormatSizeString(512.4f), L"512.4 B/S");
  EXPECT_EQ(mc::GetFormatSizeString(1024.0f), L"1.0 KB/S");
  EXPECT_EQ(mc::GetFormatSizeString(3.5f * 1048576.0f), L"3.5 MB/S");
  EXPECT_EQ(mc::GetFormatSizeString(2.0f * 1073741824.0f), L"2.0 GB/S");
}

TEST(FormatTime, UsesTheLanguageStrings) {
  testing_support::TempDir dir;
  std::ofstream(dir.NativeOf(L"t.ini"), std::ios::binary)
      << "STRID_SESSION_HOUR=\xe5\xb0\x8f\xe6\x97\xb6\nSTRID_SESSION_MINUTE=\xe5\x88\x86\n"
         "STRID_SESSION_SECOND=\xe7\xa7\x92\n";
  CMutiLanSupport* lang = CMutiLanSupport::GetInstance();
  lang->ClearAll();
  ASSERT_EQ(lang->LoadStringTable(dir.Path() + L"t.ini"), 1);
  EXPECT_EQ(mc::GetFormatTimeString(5), L"5\u79d2");
  EXPECT_EQ(mc::GetFormatTimeString(65), L"1\u52065\u79d2");
  EXPECT_EQ(mc::GetFormatTimeString(3605), L"1\u5c0f\u65f60\u52065\u79d2");
  EXPECT_EQ(mc::GetFormatTimeString(3540), L"59\u52060\u79d2");
  EXPECT_EQ(mc::GetFormatTimeString(0), L"0\u79d2");
  lang->ClearAll();
  EXPECT_EQ(mc::GetFormatTimeString(61), L"11");  // no table: the bare numbers
}

}  // namespace
