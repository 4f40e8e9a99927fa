#pragma once
// Which running client gets the launcher's request: the remembered choice in "start.txt",
// the clients found running now (account -> nickname and tray window), and the rule that
// turns both into a user type. The windows of other processes are reached through
// IClientWindows, so the whole exchange runs against a stand-in in tests.
#include <cstddef>
#include <map>
#include <string>
#include <vector>

#include "toolkit/CString.h"
#include "toolkit/platform.h"

// The client's windows as the launcher sees them.
class IClientWindows {
 public:
  virtual ~IClientWindows() = default;
  // The next top-level window of class "Tarnell Mivo2006 MainForm" after `previous`
  // (null: the first); null when there is none left.
  virtual HWND NextMainWindow(HWND previous) = 0;
  // The first child of class "Tarnell Mivo2006 TrayIcon" of a main window, null if none.
  virtual HWND FindTrayWindow(HWND mainWindow) = 0;
  virtual bool IsLiveWindow(HWND window) = 0;
  virtual CString GetText(HWND window) = 0;
  // WM_COPYDATA with dwData 0, sent synchronously, but bounded in time (see below): replies
  // the client sends back arrive while this waits. False when the client could not be
  // reached or did not finish in time.
  virtual bool SendCopyData(HWND target, WPARAM wParam, const void* data, size_t size, unsigned timeoutMs) = 0;
};

// A client that does not handle the nickname request within this time is left out; a
// forwarded text gets longer, since the client acts on it before it returns.
constexpr unsigned kNicknameTimeoutMs = 2000;
constexpr unsigned kForwardTimeoutMs = 5000;

// Both directions of the exchange go through fixed buffers of this size, zero included.
constexpr size_t kCopyDataBufferSize = 2048;
// A store larger than this is not ours: it is read as absent.
constexpr size_t kStoreSizeLimit = 1 << 20;

struct RunningClient {
  CString nickname;
  HWND trayWindow = nullptr;
};

// Account names in plain ordinal order.
using RunningClientMap = std::map<CString, RunningClient>;

class LoginUserStore {
 public:
  // The account-name rule: the tail from the first "@" must equal one of these exactly.
  static const std::vector<CString>& KnownMailDomains();
  // Removed from nickname replies, where clients append it to the nickname.
  static const wchar_t kBrandText[];
  static const char kNicknameRequest[];  // "nickname"

  // Reads "start.txt" in `folder` (ending in a separator).
  explicit LoginUserStore(const CString& folder, IClientWindows* windows);
  ~LoginUserStore() = default;
  LoginUserStore(const LoginUserStore&) = delete;
  LoginUserStore& operator=(const LoginUserStore&) = delete;

  void LoadStartFile();
  // False, with a trace line, when the file could not be replaced; the old one stays.
  bool SaveStartFile();
  // The bytes SaveStartFile writes, for the current state (stored users not yet rebuilt).
  std::string SerializeStartFile() const;

  void RefreshRunningClients();
  static bool IsKnownAccountName(const CString& text);
  int GetUserType();
  void ForwardToLastUser(const CString& text);
  void ForwardToSingleClient(const CString& text);
  // A WM_COPYDATA that reached the launcher's window: a nickname reply. Any payload is
  // handled within its size; `data` may be null.
  void OnNicknameReply(const void* data, size_t size);

  CString GetStartFilePath() const;
  const RunningClientMap& RunningClients() const { return m_clients; }
  int GetChoice() const { return m_choice; }
  void SetChoice(int choice) { m_choice = choice ? 1 : 0; }
  const CString& GetLastUser() const { return m_lastUser; }
  void SetLastUser(const CString& account) { m_lastUser = account; }
  const std::vector<CString>& StoredUsers() const { return m_storedUsers; }
  const CString& ForwardedText() const { return m_forwardedText; }
  void SetForwardedText(const CString& text) { m_forwardedText = text; }

  // Sends the text to one client's tray window; false when it was not sent (too long for
  // the buffer, or the client could not be reached).
  bool SendTextTo(const RunningClient& client, const CString& text);

 private:
  void ResetStore();

  CString m_folder;
  IClientWindows* m_windows;
  RunningClientMap m_clients;
  int m_choice = 0;
  CString m_lastUser;
  std::vector<CString> m_storedUsers;
  CString m_forwardedText;
};
