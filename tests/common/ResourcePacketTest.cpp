#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "common/ResourcePacket.h"
#include "support/Files.h"
#include "support/TempDir.h"

#if !defined(_WIN32)
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>
#endif

namespace mc = mivo::common;
using testing_support::Read;
using testing_support::TempDir;
using testing_support::Write;

namespace {

struct Row {
  const wchar_t* path;
  bool folder;
  unsigned long long size;
  bool operator==(const Row& o) const { return std::wstring(path) == o.path && folder == o.folder && size == o.size; }
};

std::vector<Row> ListOf(const mc::CResourcePacket& packet, std::vector<std::wstring>& keep) {
  std::vector<mc::ResourcePacketEntry> entries;
  EXPECT_TRUE(packet.List(entries));
  keep.clear();
  keep.reserve(entries.size());
  std::vector<Row> rows;
  for (const auto& e : entries) {
    keep.push_back(e.path.GetString());
    rows.push_back({keep.back().c_str(), e.folder, e.size});
  }
  return rows;
}

std::string Binary(size_t n) {
  std::string s(n, '\0');
  for (size_t i = 0; i < n; ++i) s[i] = static_cast<char>((i * 131 + i / 256) & 0xFF);
  return s;
}

// A committed packet: two streams below two folders, one in the root; big.bin is past the
// compound file's 4096-byte small-stream limit.
void MakePacket(const CString& file) {
  mc::CResourcePacket packet;
  ASSERT_TRUE(packet.Create(file));
  ASSERT_TRUE(packet.Write(L"readme.txt", "hello"));
  ASSERT_TRUE(packet.Write(L"skins\\default\\a.png", Binary(300)));
  ASSERT_TRUE(packet.Write(L"skins\\default\\big.bin", Binary(70000)));
  ASSERT_TRUE(packet.Commit());
}

const std::vector<Row> kMade = {
    {L"readme.txt", false, 5},
    {L"skins", true, 0},
    {L"skins\\default", true, 0},
    {L"skins\\default\\a.png", false, 300},
    {L"skins\\default\\big.bin", false, 70000},
};

TEST(ResourcePacket, CommittedEntriesListAndReadBack) {
  TempDir dir;
  MakePacket(dir.Path() + L"p.pkt");
  mc::CResourcePacket packet;
  ASSERT_TRUE(packet.Open(dir.Path() + L"p.pkt", false));
  std::vector<std::wstring> keep;
  EXPECT_EQ(ListOf(packet, keep), kMade);
  std::string data;
  EXPECT_TRUE(packet.Read(L"SKINS\\Default\\big.bin", data));  // names compare without case
  EXPECT_EQ(data, Binary(70000));
  EXPECT_TRUE(packet.Read(L"skins\\default\\a.png", data));
  EXPECT_EQ(data, Binary(300));
  EXPECT_FALSE(packet.Write(L"x", "y"));  // read-only
  EXPECT_FALSE(packet.Commit());
}

TEST(ResourcePacket, UpdatesReachTheFileAtCommitOnly) {
  TempDir dir;
  const CString file = dir.Path() + L"p.pkt";
  MakePacket(file);
  const std::string before = Read(TempDir::ToNative(file));
  auto change = [&](mc::CResourcePacket& packet) {
    ASSERT_TRUE(packet.Open(file, true));
    EXPECT_TRUE(packet.Write(L"skins\\default\\a.png", "new"));
    EXPECT_TRUE(packet.Remove(L"skins\\default\\big.bin"));
    EXPECT_TRUE(packet.Write(L"lang\\\u6587\u4ef6.ini", std::string("a\0b", 3)));
    EXPECT_TRUE(packet.Remove(L"readme.txt"));
    std::string data;
    EXPECT_TRUE(packet.Read(L"skins\\default\\a.png", data));  // its own changes are visible
    EXPECT_EQ(data, "new");
  };
  {
    mc::CResourcePacket dropped;
    change(dropped);
  }  // closed without Commit
  EXPECT_EQ(Read(TempDir::ToNative(file)), before);

  mc::CResourcePacket packet;
  change(packet);
  ASSERT_TRUE(packet.Commit());
  packet.Close();
  ASSERT_TRUE(packet.Open(file, false));
  std::vector<std::wstring> keep;
  const std::vector<Row> after = {
      {L"lang", true, 0},           {L"lang\\\u6587\u4ef6.ini", false, 3}, {L"skins", true, 0},
      {L"skins\\default", true, 0}, {L"skins\\default\\a.png", false, 3},
  };
  EXPECT_EQ(ListOf(packet, keep), after);
  std::string data;
  EXPECT_TRUE(packet.Read(L"lang\\\u6587\u4ef6.ini", data));
  EXPECT_EQ(data, std::string("a\0b", 3));
}

TEST(ResourcePacket, RefusalsLeaveThingsAsTheyWere) {
  TempDir dir;
  const CString file = dir.Path() + L"p.pkt";
  MakePacket(file);
  mc::CResourcePacket packet;
  EXPECT_FALSE(packet.Create(file));  // exists
  ASSERT_TRUE(packet.Open(file, true));
  const std::wstring name31(31, L'n'), name32(32, L'n');
  std::wstring deep, tooDeep;
  for (int i = 0; i < mc::kMaxPacketDepth; ++i) deep += i ? L"\\d" : L"d";
  tooDeep = deep + L"\\d";
  struct {
    std::wstring path;
    bool ok;
  } const writes[] = {
      {L"", false},
      {L"\\a", false},
      {L"a\\", false},
      {L"a\\\\b", false},
      {L"a/b", false},
      {L"a:b", false},
      {L"a!b", false},
      {L".", false},
      {L"skins\\..\\x", false},
      {L"\x05SummaryInformation", false},
      {name32, false},
      {name31, true},
      {std::wstring(30, L'n') + L"\U0001F600", false},  // 32 UTF-16 characters
      {std::wstring(29, L'n') + L"\U0001F600", true},
      {tooDeep, false},
      {deep, true},
      {L"skins", false},                 // a folder
      {L"readme.txt\\inside", false},    // under a stream
      {L"skins\\default\\a.png", true},  // replaced
  };
  for (const auto& w : writes) {
    EXPECT_EQ(packet.Write(w.path.c_str(), "x"), w.ok) << std::string(w.path.begin(), w.path.end());
    if (w.path != L"skins" && w.path.find(L'\\') == std::wstring::npos) {  // one name: its form alone
      EXPECT_EQ(mc::IsValidPacketName(w.path.c_str()), w.ok) << std::string(w.path.begin(), w.path.end());
    }
  }
  std::string data = "untouched";
  EXPECT_FALSE(packet.Read(L"skins", data));
  EXPECT_FALSE(packet.Read(L"missing", data));
  EXPECT_FALSE(packet.Read(L"skins\\default\\big.bin", data, 69999));
  EXPECT_EQ(data, "untouched");
  EXPECT_TRUE(packet.Read(L"skins\\default\\big.bin", data, 70000));
  EXPECT_FALSE(packet.Remove(L"missing"));
  EXPECT_TRUE(packet.Remove(L"skins"));  // with all it holds
  EXPECT_FALSE(packet.Read(L"skins\\default\\a.png", data));
  EXPECT_FALSE(mc::CResourcePacket().Open(dir.Path() + L"missing.pkt", false));
}

// Bytes of a valid packet, damaged in the ways a disk or a hostile file would: whatever opens
// must list and read without fault, and read exactly the sizes it lists.
TEST(ResourcePacket, DamagedFilesFailWithoutFault) {
  TempDir dir;
  MakePacket(dir.Path() + L"good.pkt");
  const std::string good = Read(dir.NativeOf(L"good.pkt"));
  ASSERT_GT(good.size(), 1536u);
  auto flipped = [&](size_t from, size_t step) {
    std::string bad = good;
    for (size_t i = from; i < bad.size(); i += step) bad[i] = static_cast<char>(bad[i] ^ 0x5A);
    return bad;
  };
  // every storage's child pointer aimed at the root: a directory that contains itself
  auto looped = [&] {
    std::string bad = good;
    const size_t sector = 512 * (1 + *reinterpret_cast<const uint32_t*>(&bad[0x30]));
    for (size_t e = sector; e + 128 <= sector + 512; e += 128)
      if (bad[e + 0x42] == 1 || bad[e + 0x42] == 5) bad.replace(e + 0x4C, 4, std::string(4, '\0'));
    return bad;
  };
  auto huge = [&] {  // every stream says it is 2^47 bytes
    std::string bad = good;
    const size_t sector = 512 * (1 + *reinterpret_cast<const uint32_t*>(&bad[0x30]));
    for (size_t e = sector; e + 128 <= sector + 512; e += 128)
      if (bad[e + 0x42] == 2) bad.replace(e + 0x78, 8, std::string("\0\0\0\0\0\x80\0\0", 8));
    return bad;
  };
  struct {
    const char* what;
    std::string bytes;
    bool mayOpen;
  } const rows[] = {
    {"empty", "", false},
    {"header only", good.substr(0, 512), false},
    {"cut at 513", good.substr(0, 513), true},
    {"cut in half", good.substr(0, good.size() / 2), true},
    {"last byte gone", good.substr(0, good.size() - 1), true},
    {"random bytes", Binary(4096), false},
    {"every 7th byte flipped", flipped(0, 7), false},
    {"header fields flipped", flipped(0x2C, 4), true},
    {"directory flipped", flipped(512, 61), true},
#if defined(_WIN32)
    {"directory loop", looped(), true},  // Wine's reader shows such a folder as empty
#else
    {"directory loop", looped(), false},
#endif
    {"absurd sizes", huge(), true},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    Write(dir.NativeOf(L"bad.pkt"), row.bytes);
    mc::CResourcePacket packet;
    const bool opened = packet.Open(dir.Path() + L"bad.pkt", false);
    if (!row.mayOpen) {
      EXPECT_FALSE(opened);
    }
    std::vector<mc::ResourcePacketEntry> entries;
    if (!opened || !packet.List(entries)) continue;
    for (const auto& e : entries) {
      std::string data;
      if (!e.folder && packet.Read(e.path, data, ~0ull)) {
        EXPECT_EQ(data.size(), e.size);
      }
    }
  }
}

#if !defined(_WIN32)
// An updater killed before Commit leaves the file exactly as it was.
TEST(ResourcePacket, KilledUpdaterLeavesThePacket) {
  TempDir dir;
  const CString file = dir.Path() + L"p.pkt";
  MakePacket(file);
  const std::string before = Read(TempDir::ToNative(file));
  int ready[2];
  ASSERT_EQ(pipe(ready), 0);
  const pid_t child = fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    mc::CResourcePacket packet;
    bool ok = packet.Open(file, true) && packet.Remove(L"skins") && packet.Write(L"readme.txt", Binary(100000));
    for (int i = 0; ok && i < 200; ++i) ok = packet.Write(CString(L"many\\") + std::to_wstring(i).c_str(), "x");
    (void)!write(ready[1], ok ? "1" : "0", 1);
    pause();
    _exit(0);
  }
  char verdict = 0;
  ASSERT_EQ(read(ready[0], &verdict, 1), 1);
  kill(child, SIGKILL);
  int status = 0;
  waitpid(child, &status, 0);
  close(ready[0]);
  close(ready[1]);
  EXPECT_EQ(verdict, '1');
  EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL);
  EXPECT_EQ(Read(TempDir::ToNative(file)), before);
  mc::CResourcePacket packet;
  ASSERT_TRUE(packet.Open(file, false));
  std::vector<std::wstring> keep;
  EXPECT_EQ(ListOf(packet, keep), kMade);
}
#endif

}  // namespace
