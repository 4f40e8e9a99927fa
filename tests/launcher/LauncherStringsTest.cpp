#include "Execute/LauncherStrings.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <regex>
#include <sstream>
#include <string>

#include "common/Conversion.h"
#include "common/MutiLanSupport.h"
#include "common/Trace.h"
#include "support/TempDir.h"

namespace {

using testing_support::TempDir;

std::string ReadAll(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  std::stringstream text;
  text << in.rdbuf();
  return text.str();
}

// A table the launcher cannot use is told in the trace log with its path, never in a message
// box: the launcher holds its start event while it loads the table.
TEST(LauncherStrings, AnUnusableTableIsTracedAndNothingIsShown) {
  struct Case {
    const char* what;
    void (*make)(const std::filesystem::path& table);
    const char* traced;
  } cases[] = {
      {"missing", [](const std::filesystem::path&) {}, "is missing"},
      {"a folder of that name", [](const std::filesystem::path& t) { std::filesystem::create_directory(t); },
       "cannot be read"},
      {"past the size bound",
       [](const std::filesystem::path& t) {
         std::ofstream(t) << "STRID_X=x\n";
         std::filesystem::resize_file(t, CMutiLanSupport::kMaxStringTableBytes + 1);
       },
       "cannot be read"},
  };
  TempDir logs;
  ITrace* saved = g_ITrace;
  g_ITrace = new ITrace_imp(logs.Path());
  const CString logPath = static_cast<ITrace_imp*>(g_ITrace)->GetLogPath();
  for (const auto& c : cases) {
    TempDir install;
    c.make(install.NativeOf(L"gdstrings.ini"));
    testing::internal::CaptureStderr();  // where the message box goes on this platform
    EXPECT_FALSE(EnsureLauncherStrings(install.Path())) << c.what;
    EXPECT_EQ("", testing::internal::GetCapturedStderr()) << c.what;
    const std::string line = mivo::common::CString_to_utf8(install.Path() + L"gdstrings.ini ") + c.traced;
    EXPECT_NE(std::string::npos, ReadAll(TempDir::ToNative(logPath)).find(line)) << c.what;
  }
  g_ITrace->Release();
  g_ITrace = saved;
}

#if defined(MIVO_RESOURCE_DIR)
// Every text the window's skin names has a built-in English text, the shipped English one.
TEST(LauncherStrings, EveryTextOfTheSkinHasItsEnglishFallback) {
  const std::string skin = ReadAll(MIVO_RESOURCE_DIR "/skins/default/start_hide_window/start_hide_window.xml");
  const std::string table = ReadAll(MIVO_RESOURCE_DIR "/lang/en_US/gdstrings.ini");
  std::regex textid("textid=\"([A-Z_]+)\"");
  int count = 0;
  for (auto it = std::sregex_iterator(skin.begin(), skin.end(), textid); it != std::sregex_iterator(); ++it) {
    const std::string id = (*it)[1];
    std::smatch shipped;
    ASSERT_TRUE(std::regex_search(table, shipped, std::regex("\n" + id + "=([^\r\n]*)"))) << id;
    EXPECT_EQ(shipped[1].str(), mivo::common::CString_to_utf8(BuiltInLauncherText(CString(id.c_str())))) << id;
    ++count;
  }
  EXPECT_GE(count, 3);
}
#endif

}  // namespace
