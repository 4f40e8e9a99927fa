#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <vector>

#include "Execute/PathTool.h"
#include "common/AppPath.h"
#include "common/Conversion.h"
#include "common/FileUtil.h"
#include "common/Md5.h"
#include "support/TempDir.h"

namespace fs = std::filesystem;
using testing_support::TempDir;

namespace {

struct Call {
  CString file, verb, parameters;
};

// Records the commands and plays cacls: a grant makes later probes find "Everyone:".
class PathToolFixture : public ::testing::Test {
 protected:
  void SetUp() override {
#if !defined(_WIN32)
    setenv("MIVO_COMMON_APPDATA", common.Native().c_str(), 1);
    setenv("MIVO_LOCAL_APPDATA", local.Native().c_str(), 1);
#endif
    CPathTool::SetSleeper([this](int ms) { slept += ms; });
    CPathTool::SetCommandStarter([this](const CString& file, const CString& verb, const CString& params) {
      calls.push_back({file, verb, params});
      if (file == L"cacls" && grantsNeeded > 0 && --grantsNeeded == 0) granted = true;
      if (file == L"CMD.EXE") {
        // "/c cacls "<path>" | findstr ... > "<path>CaclsEveryOneFlag""
        int open = params.Find(L"> \"");
        CString out = params.Mid(open + 3, params.GetLength() - open - 4);
        mivo::common::SaveFile(out, granted ? grantedText : "");
      }
    });
  }
  void TearDown() override {
    CPathTool::SetCommandStarter(nullptr);
    CPathTool::SetSleeper(nullptr);
    CPathTool::UpdateSourceFolder.Empty();
#if !defined(_WIN32)
    unsetenv("MIVO_COMMON_APPDATA");
    unsetenv("MIVO_LOCAL_APPDATA");
#endif
  }
  TempDir common, local, work;
  std::vector<Call> calls;
  int slept = 0;
  int grantsNeeded = 1;
  bool granted = false;
  std::string grantedText = "C:\\x Everyone:(OI)(CI)F\r\n";
};

TEST_F(PathToolFixture, UpdateFolderIsTheDigestOfTheLauncherFolder) {
  std::string utf8 = mivo::common::CString_to_utf8(CPathTool::GetLauncherFolder());
  CString digest =
      mivo::common::utf8_to_CString(mivo::common::MakeMD5Value(utf8.data(), static_cast<unsigned>(utf8.size())));
  CString expected = CPathTool::GetSharedDataFolder() + L"Update\\" + digest + L"\\";
  EXPECT_EQ(CPathTool::GetUpdateFolder(false), expected);
  EXPECT_FALSE(mivo::common::IsFolderExist(expected));
  EXPECT_EQ(CPathTool::GetUpdateFolder(true), expected);
  EXPECT_TRUE(mivo::common::IsFolderExist(expected));
  CPathTool::EmptyFolderTree(CPathTool::GetSharedDataFolder() + L"Update\\");
  CPathTool::UpdateSourceFolder = L"D:\\staged\\update";  // taken as it stands, no backslash added
  EXPECT_EQ(CPathTool::GetUpdateFolder(true), L"D:\\staged\\update");
}

TEST_F(PathToolFixture, VirtualStoreMirrorsTheSharedFolderWithoutItsDrive) {
  CString store = CPathTool::GetVirtualStoreFolder();
  CString shared = CPathTool::GetSharedDataFolder();
  CString rest = shared[1] == L':' ? shared.Mid(2) : shared;
  ASSERT_FALSE(store.IsEmpty());
  EXPECT_EQ(store.Right(rest.GetLength() + 13), L"\\VirtualStore" + rest);
}

TEST_F(PathToolFixture, GrantAndProbeCommandLinesAreExact) {
  CString dir = work.Path();
  CString bare = dir.Left(dir.GetLength() - 1);
  CPathTool::GrantEveryoneFullControl(dir, true);
  CPathTool::GrantEveryoneFullControl(dir, false);
  CPathTool::GrantEveryoneFullControl(dir + L"missing\\", true);  // not a folder: nothing starts
  ASSERT_EQ(calls.size(), 2u);
  EXPECT_EQ(calls[0].file, L"cacls");
  EXPECT_EQ(calls[0].verb, L"open");
  EXPECT_EQ(calls[0].parameters, L"\"" + bare + L"\" /e /g everyone:F");
  EXPECT_EQ(calls[1].parameters, L"\"" + bare + L"\" /e /t /g everyone:F");
  calls.clear();
  EXPECT_TRUE(CPathTool::ProbeEveryoneFullControl(dir));  // the grants above made it so
  ASSERT_EQ(calls.size(), 1u);
  EXPECT_EQ(calls[0].file, L"CMD.EXE");
  EXPECT_EQ(calls[0].verb, L"Open");
  EXPECT_EQ(calls[0].parameters,
            L"/c cacls \"" + dir + L"\" | findstr /i everyone:.*F > \"" + dir + L"CaclsEveryOneFlag\"");
  EXPECT_EQ(slept, 300);
  EXPECT_TRUE(mivo::common::IsFileExist(dir + L"CaclsEveryOneFlag"));  // left in place
}

TEST_F(PathToolFixture, ProbeWantsTheExactCase) {
  granted = true;
  grantedText = "C:\\x EVERYONE:(OI)(CI)F\r\n";
  EXPECT_FALSE(CPathTool::ProbeEveryoneFullControl(work.Path()));
  EXPECT_FALSE(CPathTool::ProbeEveryoneFullControl(work.Path() + L"missing\\"));
}

TEST_F(PathToolFixture, ForcelyGrantsUntilTheProbeAgrees) {
  grantsNeeded = 3;
  EXPECT_TRUE(CPathTool::EnableFloderEveryOnePrivilegeForcely(work.Path(), true));
  // probe, grant, probe, grant, probe, grant, probe(true)
  ASSERT_EQ(calls.size(), 7u);
  for (size_t i = 0; i < calls.size(); ++i) EXPECT_EQ(calls[i].file, i % 2 ? L"cacls" : L"CMD.EXE") << i;
  EXPECT_EQ(slept, 4 * 300 + 3 * 200);
}

TEST_F(PathToolFixture, ForcelyGivesUpAfterFiveGrantsWithoutProbingTheLast) {
  grantsNeeded = 5;  // the fifth grant works, but nobody looks
  EXPECT_FALSE(CPathTool::EnableFloderEveryOnePrivilegeForcely(work.Path(), false));
  ASSERT_EQ(calls.size(), 10u);
  EXPECT_EQ(calls.back().file, L"cacls");
  EXPECT_TRUE(granted);
  calls.clear();
  EXPECT_FALSE(CPathTool::EnableFloderEveryOnePrivilegeForcely(work.Path() + L"missing\\", false));
  EXPECT_TRUE(calls.empty());
}

TEST_F(PathToolFixture, Win7PassCoversTheUpdateFoldersAndEmptiesTheVirtualStore) {
  grantsNeeded = 0;
  granted = true;
  CString update = CPathTool::GetUpdateFolder(true);
  fs::create_directories(TempDir::ToNative(update + L"UpdateTemp"));
  fs::create_directories(TempDir::ToNative(update + L"plugin\\p1\\UpdateTemp"));
  CString store = CPathTool::GetVirtualStoreFolder();
  fs::create_directories(TempDir::ToNative(store + L"stale"));
  EXPECT_TRUE(CPathTool::EnableUpdatePathEveryOnePrivilegeForWin7());
  EXPECT_FALSE(mivo::common::IsFolderExist(store));
  std::vector<CString> probed;
  for (const Call& c : calls) probed.push_back(c.parameters.Mid(c.parameters.Find(L"> \"") + 3));
  CString shared = CPathTool::GetSharedDataFolder();
  std::vector<CString> expected = {shared,
                                   shared + L"Update\\",
                                   update,
                                   update + L"UpdateTemp\\",
                                   update + L"plugin\\",
                                   update + L"plugin\\p1\\",
                                   update + L"plugin\\p1\\UpdateTemp\\"};
  ASSERT_EQ(probed.size(), expected.size());
  for (size_t i = 0; i < expected.size(); ++i) EXPECT_EQ(probed[i], expected[i] + L"CaclsEveryOneFlag\"") << i;
  CPathTool::EmptyFolderTree(shared);
}

TEST_F(PathToolFixture, CleanUpDoesNotWaitForAFolderAlreadyGone) {
  CString shared = CPathTool::GetSharedDataFolder();
  std::ofstream(TempDir::ToNative(shared + L"stale.dat")) << "x";
  CPathTool::CleanSharedFolders();  // gone at once: no wait, no administrator
  EXPECT_FALSE(mivo::common::IsFolderExist(shared));
  EXPECT_EQ(slept, 0);
  EXPECT_TRUE(calls.empty());
}

}  // namespace
