// The folder rules and the grant-and-probe loop with the real shell under Wine: the real
// special folders of the prefix, ShellExecuteW, CMD.EXE with its pipe and redirection, and
// stand-ins for cacls and findstr (Wine's do nothing) found first on the search path: in
// the current folder for the shell, on PATH for CMD.EXE.
#include <windows.h>
// the shell headers need the base Windows types first
#include <shlobj.h>

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <string>

#include "Execute/PathTool.h"
#include "common/Conversion.h"
#include "common/FileUtil.h"
#include "support/TempDir.h"

namespace {

using testing_support::TempDir;

std::wstring OwnFolder() {
  wchar_t path[MAX_PATH];
  DWORD n = GetModuleFileNameW(nullptr, path, MAX_PATH);
  std::wstring p(path, n);
  return p.substr(0, p.rfind(L'\\'));
}

CString ShellFolder(int csidl) {
  wchar_t path[MAX_PATH] = {};
  SHGetFolderPathW(nullptr, csidl, nullptr, 0, path);
  return CString(path);
}

class PathToolUnderWine : public ::testing::Test {
 protected:
  void SetUp() override {
    wchar_t old[32768];
    DWORD n = GetEnvironmentVariableW(L"PATH", old, 32768);
    m_oldPath.assign(old, n);
    SetEnvironmentVariableW(L"PATH", (OwnFolder() + L";" + m_oldPath).c_str());
    // Wine's shell looks in the current folder before the system folder
    wchar_t cwd[MAX_PATH];
    GetCurrentDirectoryW(MAX_PATH, cwd);
    m_oldCwd = cwd;
    SetCurrentDirectoryW(OwnFolder().c_str());
    // Starting a program under Wine takes longer than the waits were made for.
    CPathTool::SetSleeper([](int ms) { Sleep(static_cast<DWORD>(ms) * 6); });
  }
  void TearDown() override {
    CPathTool::SetSleeper(nullptr);
    SetCurrentDirectoryW(m_oldCwd.c_str());
    SetEnvironmentVariableW(L"PATH", m_oldPath.c_str());
    SetEnvironmentVariableW(L"MIVO_CACLS_GRANT_AFTER", nullptr);
  }
  std::wstring m_oldPath, m_oldCwd;
};

TEST_F(PathToolUnderWine, FoldersAreThoseOfThePrefix) {
  CString shared = CPathTool::GetSharedDataFolder();
  EXPECT_EQ(shared, ShellFolder(CSIDL_COMMON_APPDATA) + L"\\TarnellMIVO\\");
  EXPECT_TRUE(mivo::common::IsFolderExist(shared));
  EXPECT_EQ(CPathTool::GetVirtualStoreFolder(), ShellFolder(CSIDL_LOCAL_APPDATA) + L"\\VirtualStore" + shared.Mid(2));
  CString update = CPathTool::GetUpdateFolder(true);
  EXPECT_EQ(update.Left(shared.GetLength() + 7), shared + L"Update\\");
  EXPECT_EQ(update.GetLength(), shared.GetLength() + 7 + 32 + 1);
  EXPECT_TRUE(mivo::common::IsFolderExist(update));
  CPathTool::EmptyFolderTree(shared + L"Update\\");
}

TEST_F(PathToolUnderWine, GrantAndProbeLoopThroughTheRealShell) {
  TempDir dir;
  SetEnvironmentVariableW(L"MIVO_CACLS_GRANT_AFTER", L"2");
  EXPECT_TRUE(CPathTool::EnableFloderEveryOnePrivilegeForcely(dir.Path(), true)) << [&] {
    std::string seen = "in " + mivo::common::CString2MBCS(dir.Path(), 0) + ":";
    for (const auto& e : std::filesystem::directory_iterator(dir.Native())) {
      std::ifstream in(e.path(), std::ios::binary);
      seen += " [" + e.path().filename().string() + ": " + std::string(std::istreambuf_iterator<char>(in), {}) + "]";
    }
    return seen;
  }();
  std::ifstream calls(dir.NativeOf(L"cacls_calls.txt"), std::ios::binary);
  std::string text(std::istreambuf_iterator<char>(calls), {});
  CString bare = dir.Path().Left(dir.Path().GetLength() - 1);
  std::string expectedArgs = "\"" + mivo::common::CString_to_utf8(bare) + "\" /e /g everyone:F";
  size_t first = text.find(expectedArgs), second = text.find(expectedArgs, first + 1);
  EXPECT_NE(first, std::string::npos) << text;
  EXPECT_NE(second, std::string::npos) << text;  // two grants before the probe agreed
  std::ifstream flag(dir.NativeOf(L"CaclsEveryOneFlag"), std::ios::binary);
  EXPECT_NE(std::string(std::istreambuf_iterator<char>(flag), {}).find("Everyone:"), std::string::npos);
}

}  // namespace
