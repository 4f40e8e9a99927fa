#include <gtest/gtest.h>

#include <ctime>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "Execute/UpdateTrace.h"
#include "support/TempDir.h"

namespace fs = std::filesystem;

namespace {

std::string ReadLog(const fs::path& folder) {
  std::ifstream in(folder / "update_log.txt", std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), {});
}

// Runs in the folder for the life of the object.
struct InFolder {
  explicit InFolder(const fs::path& p) : old(fs::current_path()) { fs::current_path(p); }
  ~InFolder() { fs::current_path(old); }
  fs::path old;
};

TEST(UpdateTrace, RunsAppendInTheCurrentFolder) {
  testing_support::TempDir a, b;
  {
    InFolder in(a.Native());
    for (int run = 0; run < 2; ++run) {
      OpenUpdateTrace();
      WriteUpdateTrace(L"\u66f4\u65b0 step\r\n");
      CloseUpdateTrace();
    }
    WriteUpdateTrace(L"after close: ignored\r\n");
  }
  {
    InFolder in(b.Native());
    OpenUpdateTrace();
    CloseUpdateTrace();
  }
  std::string log = ReadLog(a.Native());
  std::time_t now = std::time(nullptr);
  char yy[8];
  std::strftime(yy, sizeof yy, "%y-", std::localtime(&now));
  std::string start = std::string("Trace Start. Time:") + yy;
  size_t first = log.find(start), second = log.find(start, first + 1);
  ASSERT_EQ(first, 0u) << log;
  ASSERT_NE(second, std::string::npos) << log;
  // "Trace Start. Time:yy-mm-dd hh:mm:ss.\r\n" then the text, then the stop line
  EXPECT_EQ(log.substr(first + start.size() + 14, 3), ".\r\n");
  EXPECT_EQ(log.substr(first + start.size() + 17), std::string("\xe6\x9b\xb4\xe6\x96\xb0 step\r\nTrace Stop.\r\n") +
                                                       log.substr(second, start.size() + 17) +
                                                       "\xe6\x9b\xb4\xe6\x96\xb0 step\r\nTrace Stop.\r\n");
  EXPECT_EQ(log.find("ignored"), std::string::npos);
  std::string other = ReadLog(b.Native());
  EXPECT_EQ(other.find(start), 0u);
  EXPECT_EQ(other.substr(other.size() - 13), "Trace Stop.\r\n");
}

}  // namespace
