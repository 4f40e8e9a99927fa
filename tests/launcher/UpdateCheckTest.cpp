#include <gtest/gtest.h>

#include <fstream>

#include "Execute/UpdateCheck.h"
#include "Execute/VersionManifest.h"
#include "common/MutiLanSupport.h"
#include "support/Files.h"
#include "support/TempDir.h"

namespace fs = std::filesystem;
using testing_support::Read;
using testing_support::TempDir;
using testing_support::Write;

namespace {

ModuleVersionRecord Module(const wchar_t* name, const wchar_t* group, const wchar_t* oldv, const wchar_t* cur,
                           const wchar_t* target) {
  ModuleVersionRecord m;
  m.name = name;
  m.group = group;
  m.oldversion = oldv;
  m.currentversion = cur;
  m.version = target;
  return m;
}

// An update folder with its marker and list.
struct Staged {
  explicit Staged(const TempDir& dir, const CString& sub = CString()) : folder(dir.Path() + sub) {
    fs::create_directories(TempDir::ToNative(folder + L"UpdateTemp"));
  }
  void Marker(const std::string& bytes = "") { Write(TempDir::ToNative(folder + L"UpdateTemp\\UpdateFlag"), bytes); }
  void List(const std::vector<ModuleVersionRecord>& modules, const wchar_t* detail = L"notes") {
    UpdateVersionManifest m(ListPath());
    for (const auto& r : modules) m.GetModules()[r.name] = r;
    m.SetDetail(detail);
    ASSERT_TRUE(m.Write());
  }
  CString ListPath() const { return folder + L"UpdateTemp\\StaticUpdateVersion.xml"; }
  CString folder;
};

CheckResult RunCheck(const CString& path) {
  CCheckUpdateProgress progress(path, CString(), -1, -7, -9);
  progress.Check();
  return progress.result();
}

TEST(Marker, OnlyAnEmptyFileCounts) {
  TempDir dir;
  Write(dir.NativeOf(L"empty"), "");
  Write(dir.NativeOf(L"one"), "x");
  fs::create_directories(dir.NativeOf(L"folder"));
  EXPECT_TRUE(IsEmptyMarkerFile(dir.Path() + L"empty"));
  EXPECT_FALSE(IsEmptyMarkerFile(dir.Path() + L"one"));
  EXPECT_FALSE(IsEmptyMarkerFile(dir.Path() + L"folder"));
  EXPECT_FALSE(IsEmptyMarkerFile(dir.Path() + L"missing"));
}

// Each row: the staged list, then the state, the done and pending counts (the branch not taken
// keeps the -7 / -9 it was given) and the components left in the list on disk.
TEST(Check, StateCountsAndTheListLeftBehind) {
  const struct {
    const char* what;
    std::vector<ModuleVersionRecord> modules;
    int state, coreDone, pending;
    size_t left;
  } rows[] = {
      {"a half-done core component wins",
       {Module(L"a.dll", L"core", L"1", L"2", L"2"), Module(L"b.dll", L"core", L"1", L"1", L"2"),
        Module(L"c.dll", L"common", L"1", L"1", L"2")},
       kCoreHalfDone,
       1,
       -9,
       3},
      {"three equal versions are done and pending",
       {Module(L"a.dll", L"core", L"5", L"5", L"5")},
       kCoreHalfDone,
       1,
       -9,
       1},
      {"pending counts common and core, exact group names",
       {Module(L"a", L"core", L"1", L"1", L"2"), Module(L"b", L"common", L"1", L"1", L"2"),
        Module(L"c", L"common", L"1", L"9", L"2"), Module(L"d", L"Common", L"1", L"1", L"2"),
        Module(L"e", L"extra", L"1", L"1", L"2")},
       kUpdatePending,
       -7,
       2,
       5},
      {"finished common components leave the list",
       {Module(L"done1", L"common", L"1", L"2", L"2"), Module(L"done2", L"common", L"3", L"4", L"4"),
        Module(L"keep", L"core", L"1", L"2", L"2")},
       kNothingToDo,
       -7,
       -9,
       1},
      {"only other groups",
       {Module(L"x", L"Core", L"1", L"1", L"2"), Module(L"y", L"tools", L"1", L"1", L"1")},
       kNothingToDo,
       -7,
       -9,
       2},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    TempDir dir;
    Staged s(dir);
    s.List(row.modules);
    CheckResult r = RunCheck(s.ListPath());
    EXPECT_EQ(r.state, row.state);
    EXPECT_EQ(r.coreDoneCount, row.coreDone);
    EXPECT_EQ(r.pendingCount, row.pending);
    if (r.state != kNothingToDo) {
      EXPECT_EQ(r.detail, L"notes");
    }
    UpdateVersionManifest after(s.ListPath());
    ASSERT_TRUE(after.Read());
    EXPECT_EQ(after.GetModules().size(), row.left);
  }
}

TEST(Check, MissingOrBrokenListsMeanNothingToDo) {
  TempDir dir;
  Staged s(dir);
  EXPECT_EQ(RunCheck(dir.Path() + L"missing.xml").state, kNothingToDo);
  Write(TempDir::ToNative(s.ListPath()), "<Mivo><Module name=\"a\" group=\"core\"");  // cut short
  EXPECT_EQ(RunCheck(s.ListPath()).state, kNothingToDo);
  Write(TempDir::ToNative(s.ListPath()), "");
  EXPECT_EQ(RunCheck(s.ListPath()).state, kNothingToDo);
}

// Looking only: the same state, the list untouched, the components named.
TEST(Check, LookingOnlyLeavesTheListAndNamesTheComponents) {
  TempDir dir;
  Staged s(dir);
  s.List({Module(L"done", L"common", L"1", L"2", L"2"), Module(L"core1", L"core", L"1", L"2", L"2"),
          Module(L"core2", L"core", L"1", L"1", L"2")});
  std::string before = Read(TempDir::ToNative(s.ListPath()));
  ProgressEvidence evidence;
  CCheckUpdateProgress progress(s.ListPath(), CString(), 0, 0, 0);
  progress.LookOnly(&evidence);
  progress.Check();
  EXPECT_EQ(progress.result().state, kCoreHalfDone);
  EXPECT_EQ(Read(TempDir::ToNative(s.ListPath())), before);
  EXPECT_EQ(evidence.finishedCommon, std::vector<CString>{L"done"});
  EXPECT_EQ(evidence.coreDone, std::vector<CString>{L"core1"});
  EXPECT_EQ(evidence.pending, std::vector<CString>{L"core2"});
}

TEST(TargetProgress, MarkerDecidesBeforeTheListIsRead) {
  TempDir dir;
  Staged s(dir);
  s.List({Module(L"a", L"core", L"1", L"1", L"2")});
  UpdateTarget client;
  client.isMain = 1;
  client.state = 1;
  CheckTargetProgress(client, s.folder);
  EXPECT_EQ(client.state, kNothingToDo);  // no marker
  s.Marker("x");
  CheckTargetProgress(client, s.folder);
  EXPECT_EQ(client.state, kNothingToDo);  // a marker with content is no marker
  s.Marker();
  CheckTargetProgress(client, s.folder);
  EXPECT_EQ(client.state, kUpdatePending);
  EXPECT_EQ(client.pendingCount, 1);
  EXPECT_EQ(client.detail, L"notes");
}

class Installation : public ::testing::Test {
 protected:
  void SetUp() override {
    CMutiLanSupport::GetInstance()->ClearAll();
    Write(launcher.NativeOf(L"gdstrings.ini"), "STRID_EIM_NAME=MIVO\nSTRID_EIM_MAIN=MIVO main\n");
  }
  void TearDown() override { CMutiLanSupport::GetInstance()->ClearAll(); }
  void Plugin(const CString& folder, const char* lang, const std::string& info) {
    Write(launcher.NativeOf(L"plugin\\" + folder + L"\\lang\\" + CString(lang) + L"\\PluginConfig.xml"),
          "<Plugin-Config><Update url=\"http://x\"/>" + info + "</Plugin-Config>");
  }
  TempDir launcher, update;
};

TEST_F(Installation, TargetsAreTheClientThenConfiguredPlugins) {
  UpdateTargetList none;
  AddMainTarget(none, launcher.Path());
  AddPluginTargets(none, launcher.Path(), L"zh_CN");
  ASSERT_EQ(none.size(), 1u);
  EXPECT_EQ(none.front().isMain, 1);
  EXPECT_EQ(none.front().name, L"MIVO");
  EXPECT_EQ(none.front().main, L"MIVO main");
  EXPECT_EQ(none.front().firstFlag, 1);

  Plugin(L"games", "zh_CN", "<Info name=\"Games\" detail=\"g.dll\" id=\"7\"/>");
  Plugin(L"english_only", "en_US", "<Info name=\"E\" detail=\"e.dll\"/>");
  Plugin(L"nameless", "zh_CN", "<Info detail=\"n.dll\"/>");
  Plugin(L"\u63d2\u4ef6", "zh_CN", "<Info name=\"\xb2\xe5\xbc\xfe\" detail=\"p.dll\"/>");
  Plugin(L"broken", "zh_CN", "<Info name=");
  fs::create_directories(launcher.NativeOf(L"plugin\\folder_config\\lang\\zh_CN\\PluginConfig.xml"));
  Write(launcher.NativeOf(L"plugin\\plain.txt"), "not a plug-in");
  UpdateTargetList targets;
  AddPluginTargets(targets, launcher.Path(), L"zh_CN");
  ASSERT_EQ(targets.size(), 2u);
  targets.sort([](const UpdateTarget& a, const UpdateTarget& b) { return a.folder < b.folder; });
  EXPECT_EQ(targets.front().folder, L"games");
  EXPECT_EQ(targets.front().name, L"Games");
  EXPECT_EQ(targets.front().main, L"g.dll");
  EXPECT_EQ(targets.front().isMain, 0);
  EXPECT_EQ(targets.front().firstFlag, 1);
  EXPECT_EQ(targets.back().name, L"\u63d2\u4ef6");
}

TEST_F(Installation, MissingStringTableDropsOnlyTheClient) {
  TempDir bare;
  UpdateTargetList targets;
  AddMainTarget(targets, bare.Path());
  EXPECT_TRUE(targets.empty());
}

TEST_F(Installation, PendingAndHalfDoneListsAcrossTargets) {
  Plugin(L"games", "zh_CN", "<Info name=\"Games\" detail=\"g.dll\"/>");
  Plugin(L"chat", "zh_CN", "<Info name=\"Chat\" detail=\"c.dll\"/>");
  Staged client(update);
  client.Marker();
  client.List({Module(L"MyMivo.exe", L"core", L"1", L"2", L"2"), Module(L"core.dll", L"core", L"1", L"1", L"2")});
  Staged games(update, L"plugin\\games\\");
  games.Marker();
  games.List({Module(L"g.dll", L"common", L"1", L"1", L"2")});
  Staged chat(update, L"plugin\\chat\\");  // a list but no marker: nothing to do
  chat.List({Module(L"c.dll", L"common", L"1", L"1", L"2")});

  PendingUpdates found = FindPendingUpdates(launcher.Path(), update.Path());
  ASSERT_EQ(found.halfDone.size(), 1u);
  EXPECT_EQ(found.halfDone.front().isMain, 1);
  EXPECT_EQ(found.halfDone.front().coreDoneCount, 1);
  ASSERT_EQ(found.pending.size(), 1u);
  EXPECT_EQ(found.pending.front().folder, L"games");
  EXPECT_EQ(found.pending.front().pendingCount, 1);
}

// What the explanation says about a marker's list: missing, damaged or empty, never guessed.
TEST(Check, EvidenceNamesWhatTheListTurnedOutToBe) {
  TempDir dir;
  Staged s(dir);
  const struct {
    const char* bytes;  // nullptr: no file
    ProgressEvidence::List list;
  } rows[] = {{nullptr, ProgressEvidence::List::kMissing},
              {"<Mivo><Module name=\"a\"", ProgressEvidence::List::kDamaged},
              {"<Mivo></Mivo>", ProgressEvidence::List::kEmpty},
              {"<Mivo><Module name=\"a\" group=\"core\" oldversion=\"1\" currentversion=\"1\" version=\"2\"/></Mivo>",
               ProgressEvidence::List::kRead}};
  for (const auto& row : rows) {
    fs::remove(TempDir::ToNative(s.ListPath()));
    if (row.bytes) Write(TempDir::ToNative(s.ListPath()), row.bytes);
    ProgressEvidence evidence;
    CCheckUpdateProgress progress(s.ListPath(), CString(), 0, 0, 0);
    progress.LookOnly(&evidence);
    progress.Check();
    EXPECT_EQ(evidence.list, row.list) << (row.bytes ? row.bytes : "no file");
  }
}

}  // namespace
