#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <fstream>
#include <iterator>

#include "base/log/Log_Impl.h"
#include "support/TempDir.h"

using nbase::Log_Impl;

namespace {

const Log_Impl::Time kTime{2026, 3, 4, 5, 6, 7, 89};

TEST(LogImpl, LinePartsFollowTheFlags) {
  EXPECT_EQ(Log_Impl::FormatLine(Log_Impl::kStamp, kTime, "a.cpp", 12, 0, "msg"), "[2026-03-04 05:06:07:089]<<<<msg");
  EXPECT_EQ(Log_Impl::FormatLine(Log_Impl::kStamp | Log_Impl::kDate | Log_Impl::kTime, kTime, "", 0, 0, "m"),
            "[2026-03-04 05:06:07:089]<<<<m");
  EXPECT_EQ(Log_Impl::FormatLine(Log_Impl::kDate | Log_Impl::kTime, kTime, "", 0, 0, "m"), "2026-03-0405:06:07<<<<m");
  EXPECT_EQ(Log_Impl::FormatLine(Log_Impl::kFile | Log_Impl::kLine, kTime, "x.cpp", 77, 0, ""),
            " file:x.cpp line: 77<<<<");
  EXPECT_EQ(Log_Impl::FormatLine(Log_Impl::kErrno, kTime, "", 0, 2, "e"), " {2} <<<<e");
  std::string withText = Log_Impl::FormatLine(Log_Impl::kErrno | Log_Impl::kErrnoText, kTime, "", 0, ENOENT, "e");
  EXPECT_EQ(withText, std::string(" {") + std::to_string(ENOENT) + ":" + std::strerror(ENOENT) + "} <<<<e");
}

TEST(LogImpl, FileNamesAndVersion) {
  EXPECT_EQ(Log_Impl::FormatFileName(0, "net", kTime), "20260304_net.log");
  EXPECT_EQ(Log_Impl::FormatFileName(Log_Impl::kNoDatePrefix, "net", kTime), "net.log");
  EXPECT_STREQ(Log_Impl::Version(), "nbase::Log_Impl::1.0");
}

TEST(LogImpl, WriteAppendsLines) {
  testing_support::TempDir dir;
  Log_Impl log(dir.Path(), "unit", Log_Impl::kNoDatePrefix | Log_Impl::kLine);
  EXPECT_EQ(log.FilePath(), dir.Path() + L"unit.log");
  EXPECT_TRUE(log.Write("f.cpp", 1, "one"));
  EXPECT_TRUE(log.Write("f.cpp", 2, "two"));
  std::ifstream in(dir.NativeOf(L"unit.log"), std::ios::binary);
  EXPECT_EQ(std::string(std::istreambuf_iterator<char>(in), {}), " line: 1<<<<one\r\n line: 2<<<<two\r\n");
  Log_Impl nowhere(dir.Path() + L"missing\\", "x", 0);
  EXPECT_FALSE(nowhere.Write("f", 1, "lost"));
}

}  // namespace
