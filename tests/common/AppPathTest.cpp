#include <gtest/gtest.h>

#include <cstdlib>

#include "common/AppPath.h"
#include "common/Conversion.h"
#include "common/FileUtil.h"
#include "common/Md5.h"
#include "support/TempDir.h"
#include "toolkit/FileSystem.h"

#if defined(_WIN32)
#include <shlobj.h>
#include <windows.h>
#endif

namespace mc = mivo::common;
using testing_support::TempDir;

namespace {

bool EndsWithSlash(const CString& s) { return !s.IsEmpty() && s[s.GetLength() - 1] == L'\\'; }

TEST(AppPath, IsTheExecutablesFolderAndStaysTheSame) {
  CString app = mc::GetAppPath();
  ASSERT_TRUE(EndsWithSlash(app));
  CString exe = toolkit::GetModulePath();
  EXPECT_EQ(exe.Left(app.GetLength()), app);
  EXPECT_EQ(exe.Mid(app.GetLength()).Find(L'\\'), -1);
  EXPECT_EQ(mc::GetAppPath(), app);
}

#if defined(_WIN32)
CString ShellFolder(int csidl) {
  wchar_t path[MAX_PATH] = {};
  SHGetFolderPathW(nullptr, csidl, nullptr, 0, path);
  return CString(path);
}

// Under Wine these are the real folders of the prefix.
TEST(AppPath, DataFoldersAreUnderTheShellFolders) {
  CString roaming = ShellFolder(CSIDL_APPDATA), common = ShellFolder(CSIDL_COMMON_APPDATA);
  ASSERT_FALSE(roaming.IsEmpty());
  EXPECT_EQ(mc::GetAppDataPath(), roaming + L"\\Tarnell\\Mivo\\");
  EXPECT_EQ(mc::GetCommonAppDataPath(), common + L"\\TarnellMIVO\\");
  EXPECT_TRUE(mc::IsFolderExist(mc::GetAppDataPath()));
  EXPECT_TRUE(mc::IsFolderExist(mc::GetCommonAppDataPath()));
  EXPECT_EQ(common.CompareNoCase(L"C:\\ProgramData"), 0);
}
#else
class EnvFolders : public ::testing::Test {
 protected:
  void SetUp() override {
    setenv("XDG_DATA_HOME", m_home.Native().c_str(), 1);
    setenv("MIVO_COMMON_APPDATA", m_common.Native().c_str(), 1);
  }
  void TearDown() override {
    unsetenv("XDG_DATA_HOME");
    unsetenv("MIVO_COMMON_APPDATA");
  }
  TempDir m_home, m_common;
};

TEST_F(EnvFolders, DataFoldersAreCreatedUnderTheirBases) {
  CString user = mc::GetAppDataPath();
  EXPECT_EQ(user, m_home.Path() + L"Tarnell\\Mivo\\");
  EXPECT_TRUE(mc::IsFolderExist(user));
  CString common = mc::GetCommonAppDataPath();
  EXPECT_EQ(common, m_common.Path() + L"TarnellMIVO\\");
  EXPECT_TRUE(mc::IsFolderExist(common));
}
#endif

TEST(AppPath, UpdatePathIsNamedByTheInstallFoldersDigest) {
#if !defined(_WIN32)
  TempDir common;
  setenv("MIVO_COMMON_APPDATA", common.Native().c_str(), 1);
#endif
  std::string utf8 = mc::CString_to_utf8(mc::GetAppPath());
  CString digest = mc::utf8_to_CString(mc::MakeMD5Value(utf8.data(), static_cast<unsigned>(utf8.size())));
  CString expected = mc::GetCommonAppDataPath() + L"Update\\" + digest + L"\\";
  CString withoutCreating = mc::GetUpdatePath(false);
  EXPECT_EQ(withoutCreating, expected);
  EXPECT_EQ(digest.GetLength(), 32);
  CString created = mc::GetUpdatePath(true);
  EXPECT_EQ(created, expected);
  EXPECT_TRUE(mc::IsFolderExist(created));
  mc::EmptyFolder(mc::GetCommonAppDataPath() + L"Update\\", 1, 1);
#if !defined(_WIN32)
  unsetenv("MIVO_COMMON_APPDATA");
#endif
}

}  // namespace
