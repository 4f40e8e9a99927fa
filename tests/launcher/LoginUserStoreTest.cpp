#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#if defined(_WIN32)
#include <windows.h>
#endif

#include "Execute/LoginUserStore.h"
#include "support/Files.h"
#include "support/TempDir.h"

using testing_support::Read;
using testing_support::TempDir;
using testing_support::Write;

namespace {

std::string Utf8Of(const CString& text) {
  std::string out;
  toolkit::WideToUtf8(text.GetString(), static_cast<size_t>(text.GetLength()), out);
  return out;
}

// Running clients as the store sees them through IClientWindows. A nickname request is
// answered re-entrantly, the way a real client's reply arrives during the request.
class FakeWindows : public IClientWindows {
 public:
  enum class Reply { Normal, Silent, Unreachable, Raw };
  struct Client {
    CString account;
    Reply reply = Reply::Normal;
    std::string raw;  // the reply bytes for Reply::Raw
    bool hasTray = true;
    bool live = true;
  };
  struct Sent {
    HWND target;
    WPARAM wParam;
    std::string bytes;
    unsigned timeoutMs;
  };

  LoginUserStore* store = nullptr;
  std::vector<Client> clients;  // in window order
  std::vector<Sent> sent;

  Client& Add(const wchar_t* account, Reply reply = Reply::Normal, std::string raw = {}) {
    clients.push_back(Client{account, reply, std::move(raw)});
    return clients.back();
  }
  static HWND MainOf(size_t i) { return reinterpret_cast<HWND>(0x1000 + 0x10 * i); }
  static HWND TrayOf(size_t i) { return reinterpret_cast<HWND>(0x1008 + 0x10 * i); }
  int IndexOfTray(HWND tray) const {
    for (size_t i = 0; i < clients.size(); ++i)
      if (TrayOf(i) == tray) return static_cast<int>(i);
    return -1;
  }
  std::vector<Sent> SentTo(HWND tray) const {
    std::vector<Sent> out;
    for (const auto& s : sent)
      if (s.target == tray) out.push_back(s);
    return out;
  }

  HWND NextMainWindow(HWND previous) override {
    size_t next = 0;
    if (previous) {
      while (next < clients.size() && MainOf(next) != previous) ++next;
      ++next;
    }
    return next < clients.size() ? MainOf(next) : nullptr;
  }
  HWND FindTrayWindow(HWND main) override {
    for (size_t i = 0; i < clients.size(); ++i)
      if (MainOf(i) == main) return clients[i].hasTray ? TrayOf(i) : nullptr;
    return nullptr;
  }
  bool IsLiveWindow(HWND window) override {
    int i = IndexOfTray(window);
    return i >= 0 && clients[i].live;
  }
  CString GetText(HWND window) override {
    int i = IndexOfTray(window);
    return i >= 0 ? clients[i].account : CString();
  }
  bool SendCopyData(HWND target, WPARAM wParam, const void* data, size_t size, unsigned timeoutMs) override {
    std::string bytes(static_cast<const char*>(data), size);
    sent.push_back(Sent{target, wParam, bytes, timeoutMs});
    int i = IndexOfTray(target);
    if (i < 0 || clients[i].reply == Reply::Unreachable) return false;
    if (bytes != std::string("nickname", 9)) return true;
    const Client& c = clients[i];
    if (c.reply == Reply::Raw) {
      store->OnNicknameReply(c.raw.data(), c.raw.size());
    } else if (c.reply == Reply::Normal) {
      std::string reply = Utf8Of(c.account) + ":(Nick " + std::to_string(i) + ")";
      store->OnNicknameReply(reply.c_str(), reply.size() + 1);
    }
    return true;
  }
};

class LoginUserStoreTest : public ::testing::Test {
 protected:
  std::filesystem::path StartFile() const { return dir.NativeOf(L"start.txt"); }
  void WriteStore(const std::string& bytes) { Write(StartFile(), bytes); }
  std::unique_ptr<LoginUserStore> Open() {
    auto store = std::make_unique<LoginUserStore>(dir.Path(), &windows);
    windows.store = store.get();
    return store;
  }
  std::string SavedBy(LoginUserStore& store) {
    EXPECT_TRUE(store.SaveStartFile());
    return Read(StartFile());
  }

  TempDir dir;
  FakeWindows windows;
};

// ---- the store file ----

TEST_F(LoginUserStoreTest, MissingStoreGivesDefaultsAndIsWrittenWhole) {
  auto store = Open();
  EXPECT_EQ(0, store->GetChoice());
  EXPECT_TRUE(store->GetLastUser().IsEmpty());
  EXPECT_TRUE(store->StoredUsers().empty());
  EXPECT_EQ("{\"Choice\":0,\"LastUser\":\"\",\"Users\":[]}\n", SavedBy(*store));
}

TEST_F(LoginUserStoreTest, ReadsAllThreeMembersAndWritesChoiceAsAnInteger) {
  WriteStore(
      "// written by hand\n{ \"Users\": [\"b@qq.com\", \"a@gmail.com\"], /* kept */ \"Choice\": true,\n"
      "  \"LastUser\": \"b@qq.com\" }");
  auto store = Open();
  EXPECT_EQ(1, store->GetChoice());
  EXPECT_EQ(CString(L"b@qq.com"), store->GetLastUser());
  ASSERT_EQ(2u, store->StoredUsers().size());
  EXPECT_EQ(CString(L"b@qq.com"), store->StoredUsers()[0]);  // file order
  EXPECT_EQ(CString(L"a@gmail.com"), store->StoredUsers()[1]);
  // nothing running: "Users" is rebuilt empty, the rest is kept
  EXPECT_EQ("{\"Choice\":1,\"LastUser\":\"b@qq.com\",\"Users\":[]}\n", SavedBy(*store));
}

TEST_F(LoginUserStoreTest, ChoiceCountsAsSetForAnyNonZeroNumberOrTrue) {
  const std::pair<const char*, int> cases[] = {
      {"{\"Choice\":1}", 1},     {"{\"Choice\":7}", 1},     {"{\"Choice\":0.5}", 1},  {"{\"Choice\":true}", 1},
      {"{\"Choice\":0}", 0},     {"{\"Choice\":false}", 0}, {"{\"Choice\":null}", 0}, {"{}", 0},
      {"{\"Choice\":\"1\"}", 0}, {"{\"Choice\":[1]}", 0},
  };
  for (const auto& [text, expected] : cases) {
    WriteStore(text);
    EXPECT_EQ(expected, Open()->GetChoice()) << text;
  }
}

TEST_F(LoginUserStoreTest, DamagedOrForeignStoresGiveTheDefaults) {
  const std::string cases[] = {
      "",
      "garbage",
      "{\"Choice\":1,\"LastUser\":\"a@gmail.com\"",  // cut short
      "[\"a@gmail.com\"]",
      "5",
      "\"a@gmail.com\"",
      std::string(100000, '['),
      "{\"x\":" + std::string(500, '[') + std::string(500, ']') + ",\"Choice\":1}",
      [] {  // deep with values between the brackets: refused before the parser sees it
        std::string deep = "{\"Choice\":1,\"x\":";
        for (int i = 0; i < 500; ++i) deep += "[0,";
        return deep + "0" + std::string(500, ']') + "}";
      }(),
      "\xef\xbb\xbf\xff\xfe{",
  };
  for (const auto& text : cases) {
    WriteStore(text);
    auto store = Open();
    EXPECT_EQ(0, store->GetChoice()) << text.substr(0, 60);
    EXPECT_TRUE(store->GetLastUser().IsEmpty()) << text.substr(0, 60);
    EXPECT_TRUE(store->StoredUsers().empty()) << text.substr(0, 60);
  }
}

TEST_F(LoginUserStoreTest, MembersOfTheWrongTypeCountAsMissing) {
  WriteStore("{\"Users\":\"a@gmail.com\",\"LastUser\":42,\"Choice\":1}");
  auto store = Open();
  EXPECT_EQ(1, store->GetChoice());
  EXPECT_TRUE(store->GetLastUser().IsEmpty());
  EXPECT_TRUE(store->StoredUsers().empty());

  WriteStore("{\"Users\":[\"a@gmail.com\",3,null,{\"b\":1},[\"c@qq.com\"],\"d@qq.com\"],\"LastUser\":{\"x\":1}}");
  store = Open();
  EXPECT_TRUE(store->GetLastUser().IsEmpty());
  ASSERT_EQ(2u, store->StoredUsers().size());
  EXPECT_EQ(CString(L"d@qq.com"), store->StoredUsers()[1]);
}

TEST_F(LoginUserStoreTest, AStoreOverTheSizeLimitIsNotRead) {
  std::string big = "{\"Choice\":1,\"LastUser\":\"a@gmail.com\"" + std::string(kStoreSizeLimit, ' ') + "}";
  WriteStore(big);
  EXPECT_EQ(0, Open()->GetChoice());
  WriteStore("{\"Choice\":1,\"LastUser\":\"a@gmail.com\"" + std::string(1000, ' ') + "}");
  EXPECT_EQ(1, Open()->GetChoice());
}

TEST_F(LoginUserStoreTest, NonAsciiAccountsSurviveTheRoundTrip) {
  const CString account = L"\u5F20\u4E09@qq.com";
  WriteStore("{\"LastUser\":\"" + Utf8Of(account) + "\",\"Choice\":1}");
  auto store = Open();
  EXPECT_EQ(account, store->GetLastUser());
  store->SaveStartFile();
  EXPECT_EQ(account, Open()->GetLastUser());
}

TEST_F(LoginUserStoreTest, ASaveThatCannotBeWrittenIsIgnored) {
  LoginUserStore store(dir.Path() + L"missing\\", &windows);
  windows.store = &store;
  EXPECT_FALSE(store.SaveStartFile());
  EXPECT_FALSE(std::filesystem::exists(dir.NativeOf(L"missing")));
}

#if defined(_WIN32)
TEST_F(LoginUserStoreTest, AStoreLockedByAnotherProgramReadsAsDefaultsAndStaysAsItIs) {
  const std::string stored = "{\"Choice\":1,\"LastUser\":\"a@gmail.com\",\"Users\":[]}";
  WriteStore(stored);
  HANDLE lock = CreateFileW(StartFile().wstring().c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING,
                            FILE_ATTRIBUTE_NORMAL, nullptr);
  ASSERT_NE(INVALID_HANDLE_VALUE, lock);
  auto store = Open();
  EXPECT_EQ(0, store->GetChoice());
  EXPECT_TRUE(store->GetLastUser().IsEmpty());
  store->SaveStartFile();
  CloseHandle(lock);
  EXPECT_EQ(stored, Read(StartFile()));
  for (const auto& entry : std::filesystem::directory_iterator(dir.Native()))  // no temporary left behind
    EXPECT_EQ("start.txt", entry.path().filename().string());
}
#endif

// ---- the account-name rule ----

TEST(AccountNameTest, OnlyTheExactTailAfterTheFirstAtCounts) {
  const std::pair<const wchar_t*, bool> cases[] = {
      {L"alice@gmail.com", true},
      {L"@gmail.com", true},
      {L"\u5F20@163.com", true},
      {L"", false},
      {L"alice", false},
      {L"alice@Gmail.com", false},
      {L"alice@gmail.com ", false},
      {L"a@b@gmail.com", false},
      {L"alice@example.org", false},
      {L"alice@gmail.co", false},
      {L"alice@mail.gmail.com", false},
  };
  for (const auto& [text, expected] : cases)
    EXPECT_EQ(expected, LoginUserStore::IsKnownAccountName(text)) << Utf8Of(text);
}

// ---- nickname replies ----

class NicknameReplyTest : public LoginUserStoreTest {
 protected:
  // One running client "alice@gmail.com" whose reply is `raw`, sent with `size` bytes.
  CString NicknameFrom(const std::string& raw) {
    windows.Add(L"alice@gmail.com", FakeWindows::Reply::Raw, raw);
    auto store = Open();
    store->RefreshRunningClients();
    auto it = store->RunningClients().find(L"alice@gmail.com");
    return it == store->RunningClients().end() ? CString(L"<dropped>") : it->second.nickname;
  }
};

TEST_F(NicknameReplyTest, ParenthesesBrandAndSpacesAreRemovedAndEmptyRepliesDrop) {
  const std::pair<std::string, const wchar_t*> cases[] = {
      {std::string("alice@gmail.com:(Alice)\0", 24), L"Alice"},
      {std::string("alice@gmail.com:(Alice\0", 23), L"Alice"},
      {std::string("alice@gmail.com:Alice)\0", 23), L"Alice"},
      {std::string("alice@gmail.com:  (Alice Liddell)  \0", 36), L"Alice Liddell"},
      {std::string("alice@gmail.com:(AliceTarnell Mivo)\0", 36), L"Alice"},
      {std::string("alice@gmail.com:Tarnell Mivo(Al:ice)Tarnell Mivo\0", 49), L"Al:ice"},
      {"alice@gmail.com:(\xe5\xbc\xa0\xe4\xb8\x89)", L"\u5F20\u4E09"},
      {std::string("alice@gmail.com:\0", 17), L"<dropped>"},
      {"alice@gmail.com:Tarnell Mivo", L"<dropped>"},
      {"alice@gmail.com:   ", L"<dropped>"},
      {"alice@gmail.com:()", L"<dropped>"},
      {"alice@gmail.com:(", L"<dropped>"},
      {"", L"<dropped>"},
      {"alice@gmail.com", L"<dropped>"},          // no colon
      {":(Alice)", L"<dropped>"},                 // colon first
      {"bob@gmail.com:(Bob)", L"<dropped>"},      // another account
      {"ALICE@gmail.com:(Alice)", L"<dropped>"},  // accounts compare exactly
  };
  for (const auto& [raw, expected] : cases) {
    windows.clients.clear();
    EXPECT_EQ(CString(expected), NicknameFrom(raw)) << raw;
  }
}

TEST_F(NicknameReplyTest, PayloadsAreReadWithinTheirSizeAndTheBuffer) {
  auto store = Open();
  windows.Add(L"alice@gmail.com", FakeWindows::Reply::Silent);
  store->RefreshRunningClients();
  ASSERT_TRUE(store->RunningClients().empty());

  // Feed replies directly while the entry is present, the way they arrive mid-request.
  windows.clients[0].reply = FakeWindows::Reply::Raw;
  auto nicknameAfter = [&](const std::string& payload, size_t size) {
    windows.clients[0].raw.assign(payload.data(), std::min(size, payload.size()));
    store->RefreshRunningClients();
    auto it = store->RunningClients().find(L"alice@gmail.com");
    return it == store->RunningClients().end() ? CString(L"<dropped>") : it->second.nickname;
  };
  // not zero-terminated: the payload's size ends the text
  EXPECT_EQ(CString(L"Alice"), nicknameAfter("alice@gmail.com:(Alice)garbage", 23));
  // the longest text that fits with its zero, with and without the zero sent
  std::string fits = "alice@gmail.com:(" + std::string(2047 - 18, 'a') + ")";
  ASSERT_EQ(2047u, fits.size());
  EXPECT_EQ(CString(std::string(2047 - 18, 'a').c_str()), nicknameAfter(fits + '\0', 2048));
  EXPECT_EQ(CString(std::string(2047 - 18, 'a').c_str()), nicknameAfter(fits, 2047));
  // one byte more, or far more, is refused whole rather than cut
  std::string over = "alice@gmail.com:(" + std::string(2048 - 18, 'a') + ")";
  EXPECT_EQ(CString(L"<dropped>"), nicknameAfter(over + '\0', over.size() + 1));
  EXPECT_EQ(CString(L"<dropped>"), nicknameAfter(over, over.size()));
  EXPECT_EQ(CString(L"<dropped>"), nicknameAfter("alice@gmail.com:(" + std::string(100000, 'b') + ")", 100019));
  // bytes that are no UTF-8 do not stop the rest of the nickname
  CString bad = nicknameAfter("alice@gmail.com:(Al\xff\xfeice)", 27);
  EXPECT_EQ(0, bad.Find(L"Al"));
  // nothing at all
  store->OnNicknameReply(nullptr, 100);
  store->OnNicknameReply("alice@gmail.com:(X)", 0);
}

// ---- discovery ----

TEST_F(LoginUserStoreTest, DiscoveryAsksEveryKnownAccountOnceWithItsOwnTrayHandle) {
  windows.Add(L"zed@qq.com");
  windows.Add(L"anna@example.org");
  windows.Add(L"bob@gmail.com").hasTray = false;
  windows.Add(L"carl@gmail.com").live = false;
  windows.Add(L"dora@163.com");
  auto store = Open();
  store->RefreshRunningClients();

  ASSERT_EQ(2u, windows.sent.size());  // only the two known, reachable accounts are asked
  for (const auto& s : windows.sent) {
    EXPECT_EQ(reinterpret_cast<WPARAM>(s.target), s.wParam);
    EXPECT_EQ(std::string("nickname", 9), s.bytes);
    EXPECT_EQ(kNicknameTimeoutMs, s.timeoutMs);
  }
  EXPECT_EQ(FakeWindows::TrayOf(0), windows.sent[0].target);
  EXPECT_EQ(FakeWindows::TrayOf(4), windows.sent[1].target);

  ASSERT_EQ(2u, store->RunningClients().size());
  auto first = store->RunningClients().begin();  // map order, not window order
  EXPECT_EQ(CString(L"dora@163.com"), first->first);
  EXPECT_EQ(CString(L"Nick 4"), first->second.nickname);
  EXPECT_EQ(FakeWindows::TrayOf(4), first->second.trayWindow);
}

TEST_F(LoginUserStoreTest, ClientsThatDoNotAnswerAreDroppedAndEachRefreshStartsAfresh) {
  windows.Add(L"a@gmail.com");
  windows.Add(L"b@gmail.com", FakeWindows::Reply::Silent);
  windows.Add(L"c@gmail.com", FakeWindows::Reply::Unreachable);
  auto store = Open();
  store->RefreshRunningClients();
  ASSERT_EQ(1u, store->RunningClients().size());
  EXPECT_EQ(1u, store->RunningClients().count(L"a@gmail.com"));

  windows.clients.erase(windows.clients.begin());
  store->RefreshRunningClients();
  EXPECT_TRUE(store->RunningClients().empty());
}

TEST_F(LoginUserStoreTest, AnAccountSignedInTwiceIsOneEntryWithTheLaterWindow) {
  windows.Add(L"a@gmail.com");
  windows.Add(L"a@gmail.com", FakeWindows::Reply::Silent);
  auto store = Open();
  store->RefreshRunningClients();
  ASSERT_EQ(1u, store->RunningClients().size());
  EXPECT_EQ(CString(L"Nick 0"), store->RunningClients().begin()->second.nickname);
  EXPECT_EQ(FakeWindows::TrayOf(1), store->RunningClients().begin()->second.trayWindow);
}

// ---- the user type ----

class UserTypeTest : public LoginUserStoreTest {
 protected:
  int TypeFor(const std::string& stored, std::initializer_list<const wchar_t*> running) {
    WriteStore(stored);
    windows.clients.clear();
    for (const wchar_t* account : running) windows.Add(account);
    store = Open();
    store->RefreshRunningClients();
    return store->GetUserType();
  }
  std::unique_ptr<LoginUserStore> store;
};

TEST_F(UserTypeTest, NoOrOneClientForgetsTheLastUser) {
  const std::string stored = "{\"Choice\":1,\"LastUser\":\"a@gmail.com\",\"Users\":[\"a@gmail.com\",\"b@gmail.com\"]}";
  EXPECT_EQ(1, TypeFor(stored, {}));
  EXPECT_TRUE(store->GetLastUser().IsEmpty());
  EXPECT_TRUE(store->StoredUsers().empty());
  EXPECT_EQ(1, TypeFor(stored, {L"a@example.org", L"b@example.org"}));  // unknown domains are invisible

  EXPECT_EQ(2, TypeFor(stored, {L"a@gmail.com"}));
  EXPECT_TRUE(store->GetLastUser().IsEmpty());
  EXPECT_EQ("{\"Choice\":1,\"LastUser\":\"\",\"Users\":[\"a@gmail.com\"]}\n", SavedBy(*store));
}

TEST_F(UserTypeTest, TwoOrMoreClientsAskUnlessTheRememberedChoiceCoversThemAll) {
  const std::string remembered =
      "{\"Choice\":1,\"LastUser\":\"b@gmail.com\",\"Users\":[\"a@gmail.com\",\"b@gmail.com\",\"gone@qq.com\"]}";
  EXPECT_EQ(4, TypeFor(remembered, {L"a@gmail.com", L"b@gmail.com"}));
  EXPECT_EQ(CString(L"b@gmail.com"), store->GetLastUser());
  EXPECT_EQ("{\"Choice\":1,\"LastUser\":\"b@gmail.com\",\"Users\":[\"a@gmail.com\",\"b@gmail.com\"]}\n",
            SavedBy(*store));

  EXPECT_EQ(3, TypeFor(remembered, {L"a@gmail.com", L"b@gmail.com", L"new@qq.com"}));
  EXPECT_EQ(3, TypeFor(remembered, {L"a@gmail.com", L"B@gmail.com"}));  // exact comparison
  EXPECT_EQ(3, TypeFor("{\"Choice\":1,\"LastUser\":\"gone@qq.com\",\"Users\":[\"a@gmail.com\",\"b@gmail.com\"]}",
                       {L"a@gmail.com", L"b@gmail.com"}));
  EXPECT_EQ(3, TypeFor("{\"Choice\":0,\"LastUser\":\"a@gmail.com\",\"Users\":[\"a@gmail.com\",\"b@gmail.com\"]}",
                       {L"a@gmail.com", L"b@gmail.com"}));
  EXPECT_EQ(3, TypeFor("{\"Choice\":1,\"Users\":[\"a@gmail.com\",\"b@gmail.com\"]}", {L"a@gmail.com", L"b@gmail.com"}));
  // the asking cases change nothing in the store
  EXPECT_EQ(1, store->GetChoice());
  EXPECT_EQ(2u, store->StoredUsers().size());
}

// ---- forwarding ----

TEST_F(LoginUserStoreTest, ForwardingSendsTheZeroTerminatedTextToTheChosenClient) {
  WriteStore("{\"Choice\":1,\"LastUser\":\"b@gmail.com\",\"Users\":[]}");
  windows.Add(L"b@gmail.com");
  windows.Add(L"a@gmail.com");
  auto store = Open();
  store->RefreshRunningClients();
  windows.sent.clear();

  store->ForwardToLastUser(L"/url \"mivo://chat?\u5F20\"");
  store->ForwardToSingleClient(L"second");
  ASSERT_EQ(2u, windows.sent.size());
  EXPECT_EQ(FakeWindows::TrayOf(0), windows.sent[0].target);  // b, the last user
  EXPECT_EQ(0u, windows.sent[0].wParam);
  EXPECT_EQ(std::string("/url \"mivo://chat?\xe5\xbc\xa0\"", 22) + '\0', windows.sent[0].bytes);
  EXPECT_EQ(kForwardTimeoutMs, windows.sent[0].timeoutMs);
  EXPECT_EQ(FakeWindows::TrayOf(1), windows.sent[1].target);  // a, first in map order
  EXPECT_EQ(std::string("second", 7), windows.sent[1].bytes);
  EXPECT_EQ(CString(L"second"), store->ForwardedText());
}

TEST_F(LoginUserStoreTest, NothingIsSentWithoutATargetButTheTextIsKept) {
  WriteStore("{\"LastUser\":\"gone@gmail.com\"}");
  windows.Add(L"a@gmail.com");
  auto store = Open();
  store->ForwardToSingleClient(L"early");  // before any refresh: no clients known
  store->RefreshRunningClients();
  windows.sent.clear();
  store->ForwardToLastUser(L"text");
  EXPECT_TRUE(windows.sent.empty());
  EXPECT_EQ(CString(L"text"), store->ForwardedText());
}

TEST_F(LoginUserStoreTest, ATextThatDoesNotFitTheBufferIsRefusedNotCut) {
  windows.Add(L"a@gmail.com");
  auto store = Open();
  store->RefreshRunningClients();
  windows.sent.clear();

  store->ForwardToSingleClient(CString(std::string(2047, 'x').c_str()));
  ASSERT_EQ(1u, windows.sent.size());
  EXPECT_EQ(2048u, windows.sent[0].bytes.size());
  store->ForwardToSingleClient(CString(std::string(2048, 'x').c_str()));
  EXPECT_EQ(1u, windows.sent.size());
  // the limit is on UTF-8 bytes, not characters: 682 three-byte characters fit, 683 do not
  std::wstring wide(682, L'\u5F20');
  store->ForwardToSingleClient(CString(wide.c_str()));
  ASSERT_EQ(2u, windows.sent.size());
  EXPECT_EQ(2047u, windows.sent[1].bytes.size());
  wide.push_back(L'\u5F20');
  store->ForwardToSingleClient(CString(wide.c_str()));
  EXPECT_EQ(2u, windows.sent.size());
  EXPECT_EQ(CString(wide.c_str()), store->ForwardedText());
}

}  // namespace
