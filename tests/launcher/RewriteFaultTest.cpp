// Every file the system rewrites, under faults: the writer killed at any point, a full disk,
// a read-only file in the way. The file must read back as the old or the new content, whole,
// and a rewrite that could not be done must say so.
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <iostream>
#include <random>
#include <string>
#include <vector>

#if !defined(_WIN32)
#include <poll.h>
#include <signal.h>
#include <sys/inotify.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <thread>
#endif

#include "Execute/LoginUserStore.h"
#include "Execute/VersionManifest.h"
#include "common/FileUtil.h"
#include "common/MutiLanSupport.h"
#include "common/StatStore.h"
#include "common/Trace.h"
#include "common/XmlDocument.h"
#include "support/Files.h"
#include "support/TempDir.h"
#include "toolkit/FileSystem.h"

using testing_support::Read;
using testing_support::TempDir;

namespace {

// Variant 0 (A) is about 24 KB and variant 1 (B) about 72 KB once written, so a write
// takes long enough to be interrupted and a limit can sit between the two.
size_t Units(int which) { return which ? 600 : 200; }

std::string Pattern(int which) {
  std::string s(Units(which) * 120, ' ');
  for (size_t i = 0; i < s.size(); ++i) s[i] = static_cast<char>('a' + (i * 7 + which) % 26);
  return s;
}

// Made once, so that a writer in a loop spends its time writing.
const std::string& Bytes(int which) {
  static const std::string bytes[2] = {Pattern(0), Pattern(1)};
  return bytes[which];
}

const CString& Text(int which) {
  static const CString text[2] = {CString(std::wstring(Bytes(0).begin(), Bytes(0).end()).c_str()),
                                  CString(std::wstring(Bytes(1).begin(), Bytes(1).end()).c_str())};
  return text[which];
}

class NoClients : public IClientWindows {
 public:
  HWND NextMainWindow(HWND) override { return nullptr; }
  HWND FindTrayWindow(HWND) override { return nullptr; }
  bool IsLiveWindow(HWND) override { return false; }
  CString GetText(HWND) override { return CString(); }
  bool SendCopyData(HWND, WPARAM, const void*, size_t, unsigned) override { return false; }
};

CString Account(int which) { return Text(which) + L"@gmail.com"; }

ModuleVersionMap MakeModules(int which) {
  ModuleVersionMap modules;
  for (size_t i = 0; i < Units(which) / 3; ++i) {  // a module is written as about 360 bytes
    ModuleVersionRecord m;
    m.name.Format(L"plugin%05d", static_cast<int>(i));
    m.version.Format(L"%d.0.%d", which + 1, static_cast<int>(i));
    m.group = L"common";
    m.url.Format(L"http://updates.example.com/%d/plugin%05d.zip", which, static_cast<int>(i));
    m.md5 = L"0123456789abcdef0123456789abcdef";
    m.oldversion = L"0.9";
    modules[m.name] = m;
  }
  return modules;
}

const ModuleVersionMap& Modules(int which) {
  static const ModuleVersionMap modules[2] = {MakeModules(0), MakeModules(1)};
  return modules[which];
}

struct Rewriter {
  const char* name;
  const wchar_t* file;  // in the test folder
  // Rewrites the file with content A (0) or B (1); true when the rewriter reports success.
  std::function<bool(const CString& folder, int which)> write;
  // Which content reads back through the rewriter's own reader: 0, 1, or -1 for neither.
  std::function<int(const CString& folder)> read;
};

int Which(bool isA, bool isB) { return isA ? 0 : isB ? 1 : -1; }

const Rewriter kRewriters[] = {
    {"SaveFile", L"data.bin",
     [](const CString& folder, int which) { return mivo::common::SaveFile(folder + L"data.bin", Bytes(which)) == 1; },
     [](const CString& folder) {
       std::string data;
       if (!mivo::common::LoadFile(folder + L"data.bin", data)) return -1;
       return Which(data == Bytes(0), data == Bytes(1));
     }},
    {"StartTxt", L"start.txt",
     [](const CString& folder, int which) {
       NoClients none;
       LoginUserStore store(folder, &none);
       store.SetLastUser(Account(which));
       store.SetChoice(1);
       return store.SaveStartFile();
     },
     [](const CString& folder) {
       NoClients none;
       LoginUserStore store(folder, &none);
       return Which(store.GetLastUser() == Account(0), store.GetLastUser() == Account(1));
     }},
    {"UpdateList", L"StaticUpdateVersion.xml",
     [](const CString& folder, int which) {
       UpdateVersionManifest list(folder + L"StaticUpdateVersion.xml");
       list.GetModules() = Modules(which);
       list.SetMainVersion(which ? L"2.0" : L"1.0");
       return list.Write();
     },
     [](const CString& folder) {
       UpdateVersionManifest list(folder + L"StaticUpdateVersion.xml");
       if (!list.Read()) return -1;
       return Which(list.GetModules() == Modules(0), list.GetModules() == Modules(1));
     }},
    {"LangXml", L"lang.xml",
     [](const CString& folder, int which) {
       CMutiLanSupport* lang = CMutiLanSupport::GetInstance();
       lang->SetSettingFolder(folder);
       lang->LoadLangSetting();  // creates the file the first time
       LANG_SETTING setting = lang->GetLangSetting();
       setting.strLangToSave = Text(which);
       lang->SetLangSetting(setting);
       bool saved = lang->SaveLangSetting() != 0;
       lang->SetSettingFolder(CString());
       return saved;
     },
     [](const CString& folder) {
       CMutiLanSupport* lang = CMutiLanSupport::GetInstance();
       lang->SetSettingFolder(folder);
       lang->SetLangSetting(LANG_SETTING());
       lang->LoadLangSetting();
       CString inUse = lang->GetLangSetting().strLangInUse;
       lang->SetSettingFolder(CString());
       return Which(inUse == Text(0), inUse == Text(1));
     }},
    {"XmlDocument", L"doc.xml",
     [](const CString& folder, int which) {
       CXmlDocument doc;
       std::string xml = "<Root v=\"" + std::to_string(which) + "\"><Payload>" + Bytes(which) + "</Payload></Root>";
       return doc.LoadStream(xml) && doc.SaveFile(folder + L"doc.xml") == 1;
     },
     [](const CString& folder) {
       CXmlDocument doc;
       if (!doc.LoadFile(folder + L"doc.xml")) return -1;
       CString payload = CXmlDocument::GetNodeText(doc.PathWalk(L"Root Payload"));
       return Which(payload == Text(0), payload == Text(1));
     }},
    // The statistics store: an empty store (A) and one count (B), each one rewrite from the other.
    {"StatStore", L"stats.dat",
     [](const CString& folder, int which) {
       mivo::common::CStatStore store(L"stats.dat", folder);
       return which ? store.Add(L"flips", 5) == 5 : store.ResetAll();
     },
     [](const CString& folder) {
       std::vector<mivo::common::CStatEntry> entries;
       if (!mivo::common::CStatStore(L"stats.dat", folder).Enumerate(entries)) return -1;
       return Which(entries.empty(), entries.size() == 1 && entries[0].count == 5);
     }},
};

std::string RowName(const testing::TestParamInfo<Rewriter>& info) { return info.param.name; }
void PrintTo(const Rewriter& row, std::ostream* out) { *out << row.name; }

// The rewriters' temporary files ("<file>.<pid>.<n>.mivo-new") left in the folder.
int TempFiles(const std::filesystem::path& folder) {
  int n = 0;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    std::string name = entry.path().filename().string();
    if (name.size() > 9 && name.compare(name.size() - 9, 9, ".mivo-new") == 0) ++n;
  }
  return n;
}

class RewriteFault : public testing::TestWithParam<Rewriter> {
 protected:
  // Writes B then A and returns their bytes, leaving A in place.
  void WriteBothKeepingA(const CString& folder, std::string& a, std::string& b) {
    const Rewriter& row = GetParam();
    ASSERT_TRUE(row.write(folder, 1));
    b = Read(TempDir::ToNative(folder + row.file));
    ASSERT_TRUE(row.write(folder, 0));
    a = Read(TempDir::ToNative(folder + row.file));
    ASSERT_TRUE(a != b);
    ASSERT_LT(a.size(), b.size());
  }

  // The rewrite of A with B in `folder` failed and left A whole, with nothing beside it.
  void ExpectFailedRewriteKeptA(const CString& folder, bool reported, const std::string& a) {
    const Rewriter& row = GetParam();
    EXPECT_FALSE(reported) << "the rewrite reported success";
    EXPECT_TRUE(Read(TempDir::ToNative(folder + row.file)) == a) << "the old content did not survive";
    EXPECT_EQ(row.read(folder), 0);
    EXPECT_EQ(TempFiles(TempDir::ToNative(folder)), 0) << "a temporary file was left behind";
  }
};

// Windows refuses to replace a read-only file (MoveFileEx fails); the rewrite must say so
// and leave the file alone.
TEST_P(RewriteFault, ReadOnlyTargetIsLeftAlone) {
  TempDir dir;
  std::string a, b;
  ASSERT_NO_FATAL_FAILURE(WriteBothKeepingA(dir.Path(), a, b));
  CString path = dir.Path() + GetParam().file;
  ASSERT_TRUE(toolkit::SetAttributes(path, FILE_ATTRIBUTE_READONLY));
  bool reported = GetParam().write(dir.Path(), 1);
  EXPECT_TRUE(toolkit::GetAttributes(path) & FILE_ATTRIBUTE_READONLY) << "the file lost its read-only attribute";
  toolkit::SetAttributes(path, FILE_ATTRIBUTE_NORMAL);
  ExpectFailedRewriteKeptA(dir.Path(), reported, a);
}

#if !defined(_WIN32)

// A file may grow no larger than a limit between A and B, in a child process.
TEST_P(RewriteFault, FileSizeLimitKeepsOldContent) {
  TempDir dir;
  std::string a, b;
  ASSERT_NO_FATAL_FAILURE(WriteBothKeepingA(dir.Path(), a, b));
  pid_t child = fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    signal(SIGXFSZ, SIG_IGN);  // the write fails with EFBIG instead of killing the child
    rlim_t limit = (a.size() + b.size()) / 2;
    struct rlimit rl = {limit, limit};
    if (setrlimit(RLIMIT_FSIZE, &rl) != 0) _exit(2);
    _exit(GetParam().write(dir.Path(), 1) ? 1 : 0);
  }
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  ASSERT_TRUE(WIFEXITED(status)) << "the child died of signal " << WTERMSIG(status);
  ASSERT_NE(WEXITSTATUS(status), 2) << "setrlimit failed";
  ExpectFailedRewriteKeptA(dir.Path(), WEXITSTATUS(status) == 1, a);
  EXPECT_TRUE(GetParam().write(dir.Path(), 1)) << "without the limit the rewrite must work again";
  EXPECT_EQ(GetParam().read(dir.Path()), 1);
}

// A real full disk: a tmpfs with room for A and half of B, mounted by the test (needs root).
TEST_P(RewriteFault, FullDiskKeepsOldContent) {
  TempDir dir;
  std::string a, b;
  std::filesystem::create_directories(dir.Native() / "sizes");
  ASSERT_NO_FATAL_FAILURE(WriteBothKeepingA(dir.Path() + L"sizes\\", a, b));
  std::filesystem::path disk = dir.Native() / "disk";
  std::filesystem::create_directories(disk);
  size_t size = (a.size() + b.size() / 2 + 4095) / 4096 * 4096;
  std::string options = "size=" + std::to_string(size);
  if (mount("mivo-test", disk.c_str(), "tmpfs", MS_NOSUID | MS_NODEV, options.c_str()) != 0)
    GTEST_SKIP() << "cannot mount a tmpfs here (" << std::strerror(errno) << "); the file size limit test covers this";
  struct Unmount {
    std::filesystem::path at;
    ~Unmount() { umount2(at.c_str(), MNT_DETACH); }
  } unmount{disk};
  CString folder = dir.Path() + L"disk\\";
  ASSERT_TRUE(GetParam().write(folder, 0)) << "A fits on the disk";
  ASSERT_TRUE(Read(TempDir::ToNative(folder + GetParam().file)) == a);
  ExpectFailedRewriteKeptA(folder, GetParam().write(folder, 1), a);
}

// Microseconds since `start`.
long Since(std::chrono::steady_clock::time_point start) {
  return static_cast<long>(
      std::chrono::duration_cast<std::chrono::microseconds>(std::chrono::steady_clock::now() - start).count());
}

// Waits until a writer opens a temporary file in the folder watched by `inotify`.
bool WaitForTempOpen(int inotify) {
  alignas(struct inotify_event) char buffer[4096];
  struct pollfd ready = {inotify, POLLIN, 0};
  while (poll(&ready, 1, 10000) == 1) {
    ssize_t n = read(inotify, buffer, sizeof buffer);
    for (ssize_t at = 0; at < n;) {
      auto* event = reinterpret_cast<struct inotify_event*>(buffer + at);
      std::string name = event->len ? event->name : "";
      if (name.size() > 9 && name.compare(name.size() - 9, 9, ".mivo-new") == 0) return true;
      at += static_cast<ssize_t>(sizeof(struct inotify_event) + event->len);
    }
  }
  return false;
}

// Kills a child that rewrites the file (A, B, A, ...) at random moments around the time it
// has the temporary file open, where serialising no longer matters: from the open to a
// while after the rename. After each kill the file must be A or B, whole, and the temporary
// files left behind must not stop the next rewrite. MIVO_KILL_SEED repeats a run.
TEST_P(RewriteFault, KilledWriterLeavesOldOrNewContent) {
  const Rewriter& row = GetParam();
  TempDir dir;
  std::string a, b;
  ASSERT_NO_FATAL_FAILURE(WriteBothKeepingA(dir.Path(), a, b));

  // how long the bytes alone take to go out, temporary file and rename included
  auto started = std::chrono::steady_clock::now();
  for (int i = 0; i < 4; ++i) ASSERT_EQ(mivo::common::SaveFile(dir.Path() + L"timing.bin", b), 1);
  long ioMicros = std::max(Since(started) / 4, 20L);
  std::filesystem::remove(dir.Native() / "timing.bin");

  const char* fixed = std::getenv("MIVO_KILL_SEED");
  unsigned seed = fixed ? static_cast<unsigned>(std::strtoul(fixed, nullptr, 10)) : std::random_device{}();
  std::cout << "MIVO_KILL_SEED=" << seed << " (" << row.name << ", writing " << b.size() << " bytes takes " << ioMicros
            << " us)\n";
  RecordProperty("seed", std::to_string(seed));
  std::mt19937 random(seed);
  std::uniform_int_distribution<long> delay(0, 3 * ioMicros);

  const std::filesystem::path target = TempDir::ToNative(dir.Path() + row.file);
  int kept = 0, replaced = 0, round = 0;
  std::string now = a;
  // 30 rounds; more while no kill has come before a rename, which a busy machine can delay
  while (++round <= 30 || (kept == 0 && round <= 100)) {
    int inotify = inotify_init1(IN_CLOEXEC);
    ASSERT_GE(inotify, 0);
    ASSERT_GE(inotify_add_watch(inotify, dir.Native().c_str(), IN_OPEN), 0);
    int first = now == a ? 1 : 0;  // every round starts with a change
    pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
      prctl(PR_SET_PDEATHSIG, SIGKILL);
      for (int which = first;; which ^= 1)
        if (!row.write(dir.Path(), which)) _exit(3);
    }
    bool opened = WaitForTempOpen(inotify);
    close(inotify);
    if (opened && round % 3) std::this_thread::sleep_for(std::chrono::microseconds(delay(random)));
    kill(child, SIGKILL);
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFSIGNALED(status)) << "the writer stopped by itself: a rewrite failed (round " << round << ")";
    ASSERT_TRUE(opened) << "the writer never opened a temporary file (round " << round << ")";

    std::string before = now;
    now = Read(target);
    ++(now == before ? kept : replaced);
    ASSERT_TRUE(now == a || now == b) << "round " << round << ": the file is torn, " << now.size() << " bytes";
    int which = row.read(dir.Path());
    ASSERT_EQ(which, now == a ? 0 : 1) << "round " << round;
  }
  std::cout << round - 1 << " kills: " << kept << " before the rename, " << replaced << " after it; "
            << TempFiles(dir.Native()) << " temporary files left\n";
  EXPECT_GT(kept, 0) << "no kill came between the temporary file's opening and the rename";

  // the leftovers do not stop the next rewrites, each a change as in the rounds (the store's
  // B is an addition, so writing B over B is no rewrite to B)
  const int next = now == a ? 1 : 0;
  ASSERT_TRUE(row.write(dir.Path(), next));
  EXPECT_TRUE(Read(target) == (next ? b : a));
  ASSERT_TRUE(row.write(dir.Path(), next ^ 1));
  EXPECT_EQ(row.read(dir.Path()), next ^ 1);
}

#endif  // !_WIN32

INSTANTIATE_TEST_SUITE_P(Rewriters, RewriteFault, testing::ValuesIn(kRewriters), RowName);

// Records trace lines instead of writing them.
class TraceRecorder : public ITrace {
 public:
  void Trace(int, bool, const wchar_t* format, ...) override { lines.push_back(format); }
  void Release() override {}
  void SetLevel(int) override {}
  std::vector<CString> lines;
};

// A lost start.txt loses the user's remembered choice: the failure is reported and traced.
TEST(RewriteFaultStartTxt, FailedSaveIsTraced) {
  TempDir dir;
  NoClients none;
  LoginUserStore store(dir.Path() + L"missing\\", &none);
  TraceRecorder recorder;
  ITrace* saved = g_ITrace;
  g_ITrace = &recorder;
  bool reported = store.SaveStartFile();
  g_ITrace = saved;
  EXPECT_FALSE(reported);
  ASSERT_EQ(recorder.lines.size(), 1u);
  EXPECT_NE(recorder.lines[0].Find(L"cannot save"), -1);
}

}  // namespace
