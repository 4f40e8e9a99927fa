#include <gtest/gtest.h>

#include <climits>
#include <string>
#include <vector>

#include "common/StatStore.h"
#include "support/Files.h"
#include "support/TempDir.h"

#if defined(_WIN32)
#include <windows.h>
#else
#include <sys/wait.h>
#include <unistd.h>
#endif

namespace mc = mivo::common;
using testing_support::Read;
using testing_support::TempDir;
using testing_support::Write;

namespace {

// Two writer processes add 1,000 each to one tag at the same time: natively forked, under
// Wine two runs of the stat_store_adder helper beside the test program.
std::vector<int> RunTwoWriters(const TempDir& dir, int adds) {
  std::vector<int> exits;
#if defined(_WIN32)
  wchar_t self[MAX_PATH];
  std::wstring helper(self, GetModuleFileNameW(nullptr, self, MAX_PATH));
  helper = helper.substr(0, helper.rfind(L'\\') + 1) + L"stat_store_adder.exe";
  std::wstring folder = dir.Path().GetString();
  std::wstring command =
      L"\"" + helper + L"\" \"" + folder.substr(0, folder.size() - 1) + L"\" shared " + std::to_wstring(adds);
  PROCESS_INFORMATION processes[2] = {};
  for (auto& process : processes) {
    STARTUPINFOW startup = {sizeof(startup)};
    std::vector<wchar_t> line(command.begin(), command.end());
    line.push_back(0);
    EXPECT_TRUE(
        CreateProcessW(helper.c_str(), line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &process));
  }
  for (auto& process : processes) {
    if (!process.hProcess) continue;
    WaitForSingleObject(process.hProcess, 120000);
    DWORD code = 99;
    GetExitCodeProcess(process.hProcess, &code);
    exits.push_back(static_cast<int>(code));
    CloseHandle(process.hProcess);
    CloseHandle(process.hThread);
  }
#else
  pid_t children[2];
  for (auto& child : children) {
    child = fork();
    if (child == 0) {
      mc::CStatStore store(L"stats.dat", dir.Path().GetString());
      int failed = 0;
      for (int i = 0; i < adds; ++i) failed += store.Add(L"shared") <= 0;
      _exit(failed ? 1 : 0);
    }
  }
  for (pid_t child : children) {
    int status = 0;
    waitpid(child, &status, 0);
    exits.push_back(WIFEXITED(status) ? WEXITSTATUS(status) : 99);
  }
#endif
  return exits;
}

TEST(StatStoreTest, TwoProcessesLoseNoIncrement) {
  TempDir dir;
  EXPECT_EQ(RunTwoWriters(dir, 1000), (std::vector<int>{0, 0}));
  EXPECT_EQ(mc::CStatStore(L"stats.dat", dir.Path().GetString()).Get(L"shared"), 2000);
}

TEST(StatStoreTest, CountsTagsAndRefusals) {
  TempDir dir;
  mc::CStatStore store(L"stats.dat", dir.Path().GetString());
  mc::CStatStore other(L"other.dat", dir.Path().GetString());
  const std::wstring odd = L"a\tb\\n\r\n\u4e2d";
  EXPECT_EQ(store.Add(L"b", 5), 5);
  EXPECT_EQ(store.Add(odd.c_str()), 1);
  EXPECT_EQ(store.Add(L"b"), 6);
  EXPECT_EQ(store.Add(L"zero", 0), 0);  // not kept
  EXPECT_EQ(other.Add(L"b"), 1);        // a store of its own
  EXPECT_EQ(store.Add(L"big", LLONG_MAX), LLONG_MAX);
  EXPECT_EQ(store.Add(L"big", 7), LLONG_MAX);

  std::vector<mc::CStatEntry> entries;
  ASSERT_TRUE(mc::CStatStore(L"stats.dat", dir.Path().GetString()).Enumerate(entries));
  ASSERT_EQ(entries.size(), 3u);  // code-point order, the odd tag intact
  EXPECT_EQ(entries[0].tag, CString(odd.c_str()));
  EXPECT_EQ(entries[1].tag, L"b");
  EXPECT_EQ(entries[1].count, 6);
  EXPECT_EQ(entries[2].tag, L"big");

  EXPECT_TRUE(store.Reset(L"b"));
  EXPECT_EQ(store.Get(L"b"), 0);
  EXPECT_EQ(store.Get(odd.c_str()), 1);
  EXPECT_TRUE(store.ResetAll());
  ASSERT_TRUE(store.Enumerate(entries));
  EXPECT_TRUE(entries.empty());
  EXPECT_EQ(other.Get(L"b"), 1);

  std::wstring tooLong(mc::CStatStore::kMaxTagChars + 1, L'x');
  for (const wchar_t* bad : {L"", static_cast<const wchar_t*>(nullptr), tooLong.c_str()}) EXPECT_EQ(store.Add(bad), -1);
  EXPECT_EQ(store.Add(L"b", -1), -1);
  for (const wchar_t* name : {L"a\\b", L"..", L"", L"c:x"})
    EXPECT_EQ(mc::CStatStore(name, dir.Path().GetString()).Add(L"b"), -1);

  // a change that would pass the file bound is refused and leaves the file as it was
  std::string big = "MivoStat 1\n";
  for (int i = 0; big.size() < mc::CStatStore::kMaxFileBytes - 300; ++i)
    big += "1\t" + std::to_string(100000 + i) + std::string(200, 'x') + "\n";
  Write(dir.Native() / "stats.dat", big);
  EXPECT_EQ(store.Add(std::wstring(256, L'y').c_str()), -1);
  EXPECT_EQ(Read(dir.Native() / "stats.dat"), big);
  EXPECT_EQ(store.Add((L"100000" + std::wstring(200, L'x')).c_str()), 2);  // no growth, still fine
}

TEST(StatStoreTest, DamagedFilesReadAsEmpty) {
  const std::string header = "MivoStat 1\n";
  struct Row {
    std::string bytes;
    const char* what;
  } rows[] = {
      {"", "no header"},
      {"MivoStat 2\n1\ta\n", "another version"},
      {header + "1\ta", "last line cut short"},
      {header + "x\ta\n", "no count"},
      {header + "01\ta\n", "leading zero"},
      {header + "9223372036854775808\ta\n", "count past 2^63-1"},
      {header + "1 a\n", "no tab"},
      {header + "1\t\n", "empty tag"},
      {header + "1\ta\\q\n", "bad escape"},
      {header + "1\ta\\\n", "escape at the end"},
      {header + "1\ta\tb\n", "raw tab"},
      {header + "1\ta\r\n", "raw carriage return"},
      {header + "1\tb\n1\ta\n", "out of order"},
      {header + "1\ta\n2\ta\n", "repeated"},
      {header + "1\t\xff\n", "not UTF-8"},
      {header + "1\t\xed\xa0\x80\n", "a surrogate in UTF-8"},
      {header + "1\t" + std::string(257, 'x') + "\n", "tag too long"},
      {header + "1\ta\n" + std::string(mc::CStatStore::kMaxFileBytes, '\n'), "file too large"},
  };
  for (const Row& row : rows) {
    TempDir dir;
    Write(dir.Native() / "stats.dat", row.bytes);
    mc::CStatStore store(L"stats.dat", dir.Path().GetString());
    std::vector<mc::CStatEntry> entries{{L"stale", 1}};
    EXPECT_TRUE(store.Enumerate(entries)) << row.what;
    EXPECT_TRUE(entries.empty()) << row.what;
    EXPECT_EQ(store.Add(L"a", 2), 2) << row.what;  // rewritten with just that change
    EXPECT_EQ(Read(dir.Native() / "stats.dat"), header + "2\ta\n") << row.what;
  }
}

}  // namespace
