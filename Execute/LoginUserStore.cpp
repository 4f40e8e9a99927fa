#include "Execute/LoginUserStore.h"

#include <json/json.h>

#include <algorithm>
#include <cstring>
#include <exception>

#include "common/Conversion.h"
#include "common/FileUtil.h"
#include "common/Trace.h"

// The store is read with the classic reader (comments collected) and written with the
// compact writer, whose one-line output the client's side reads as well.
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"

namespace {

// The windows of a session form a short list; a walk that goes on longer is looping.
constexpr int kMaxMainWindows = 4096;
// Deeper nesting than this is no store of ours, and the reader would recurse that deep.
constexpr int kMaxNesting = 64;

// The whole store, unless it is larger than any store of ours.
bool ReadBounded(const CString& path, std::string& content) {
  if (mivo::common::GetFileSize(path) > kStoreSizeLimit) return false;
  return mivo::common::LoadFile(path, content) != 0;
}

// Deepest nesting of arrays and objects outside strings.
int NestingDepth(const std::string& text) {
  int depth = 0, deepest = 0;
  bool inString = false;
  for (size_t i = 0; i < text.size(); ++i) {
    char c = text[i];
    if (inString) {
      if (c == '\\')
        ++i;
      else if (c == '"')
        inString = false;
    } else if (c == '"') {
      inString = true;
    } else if (c == '[' || c == '{') {
      deepest = std::max(deepest, ++depth);
    } else if (c == ']' || c == '}') {
      --depth;
    }
  }
  return deepest;
}

}  // namespace

const wchar_t LoginUserStore::kBrandText[] = L"Tarnell Mivo";
const char LoginUserStore::kNicknameRequest[] = "nickname";

const std::vector<CString>& LoginUserStore::KnownMailDomains() {
  // Public mail services the client's accounts are registered with.
  static const std::vector<CString> domains = {
      L"@gmail.com", L"@outlook.com", L"@hotmail.com", L"@live.com", L"@msn.com", L"@yahoo.com", L"@icloud.com",
      L"@aol.com",   L"@gmx.com",     L"@proton.me",   L"@163.com",  L"@126.com", L"@qq.com",    L"@sina.com",
  };
  return domains;
}

LoginUserStore::LoginUserStore(const CString& folder, IClientWindows* windows) : m_folder(folder), m_windows(windows) {
  LoadStartFile();
}

CString LoginUserStore::GetStartFilePath() const {
  CString path;
  path.Format(L"%s%s", m_folder.GetString(), L"start.txt");
  return path;
}

void LoginUserStore::ResetStore() {
  m_lastUser.Empty();
  m_choice = 0;
  m_storedUsers.clear();
}

void LoginUserStore::LoadStartFile() {
  ResetStore();
  std::string content;
  if (!ReadBounded(GetStartFilePath(), content) || content.empty() || NestingDepth(content) > kMaxNesting) return;
  try {
    Json::Value parsed;
    Json::Reader reader;
    if (!reader.parse(content, parsed, true) || !parsed.isObject()) return;
    const Json::Value& root = parsed;
    // A member of another type than the one written counts as missing.
    const Json::Value& last = root["LastUser"];
    if (last.isString()) m_lastUser = mivo::common::utf8_to_CString(last.asString());
    const Json::Value& choice = root["Choice"];
    if (choice.isBool() || choice.isNumeric()) m_choice = choice.asBool() ? 1 : 0;
    const Json::Value& users = root["Users"];
    if (users.isArray()) {
      for (Json::ArrayIndex i = 0; i < users.size(); ++i) {
        if (users[i].isString()) m_storedUsers.push_back(mivo::common::utf8_to_CString(users[i].asString()));
      }
    }
  } catch (const std::exception&) {
    ResetStore();
  }
}

std::string LoginUserStore::SerializeStartFile() const {
  Json::Value root(Json::objectValue);
  root["LastUser"] = mivo::common::CString_to_utf8(m_lastUser);
  root["Choice"] = m_choice;
  Json::Value users(Json::arrayValue);
  for (const CString& user : m_storedUsers) users.append(mivo::common::CString_to_utf8(user));
  root["Users"] = users;
  Json::FastWriter writer;
  return writer.write(root);
}

bool LoginUserStore::SaveStartFile() {
  m_storedUsers.clear();
  for (const auto& entry : m_clients) m_storedUsers.push_back(entry.first);
  CString path = GetStartFilePath();
  if (mivo::common::SaveFile(path, SerializeStartFile())) return true;
  // the user's remembered choice is lost for the next start: say so in the log
  if (g_ITrace) g_ITrace->Trace(3, true, L"CStartHideWindowForm cannot save %s", path.GetString());
  return false;
}

bool LoginUserStore::IsKnownAccountName(const CString& text) {
  if (text.IsEmpty()) return false;
  int at = text.Find(L'@');
  if (at < 0) return false;
  CString tail = text.Mid(at);
  const auto& domains = KnownMailDomains();
  return std::find(domains.begin(), domains.end(), tail) != domains.end();
}

void LoginUserStore::RefreshRunningClients() {
  m_clients.clear();
  HWND main = nullptr;
  for (int walked = 0; walked < kMaxMainWindows && (main = m_windows->NextMainWindow(main)) != nullptr; ++walked) {
    HWND tray = m_windows->FindTrayWindow(main);
    if (!tray || !m_windows->IsLiveWindow(tray)) continue;
    CString account = m_windows->GetText(tray);
    if (!IsKnownAccountName(account)) continue;
    // in the map before the request goes out: the reply arrives while it is under way
    m_clients[account].trayWindow = tray;
    m_windows->SendCopyData(tray, reinterpret_cast<WPARAM>(tray), kNicknameRequest, sizeof kNicknameRequest,
                            kNicknameTimeoutMs);
  }
  for (auto it = m_clients.begin(); it != m_clients.end();) {
    it = it->second.nickname.IsEmpty() ? m_clients.erase(it) : std::next(it);
  }
}

void LoginUserStore::OnNicknameReply(const void* data, size_t size) {
  if (!data || size == 0) return;
  const char* bytes = static_cast<const char*>(data);
  // the text ends at its zero or at the end of the payload, whichever comes first
  size_t length = strnlen(bytes, size);
  if (length + 1 > kCopyDataBufferSize) {
    if (g_ITrace)
      g_ITrace->Trace(3, true, L"CStartHideWindowForm nickname reply of %d bytes ignored", static_cast<int>(length));
    return;
  }
  char buffer[kCopyDataBufferSize] = {};
  std::memcpy(buffer, bytes, length);
  CString reply = mivo::common::utf8_to_CString(static_cast<const char*>(buffer));
  int colon = reply.Find(L':');
  if (colon <= 0) return;
  auto client = m_clients.find(reply.Left(colon));
  if (client == m_clients.end()) return;
  CString rest = reply.Mid(colon + 1);
  rest.Replace(kBrandText, L"");
  if (rest.IsEmpty()) return;
  rest.Trim();
  if (!rest.IsEmpty() && rest[0] == L'(') rest = rest.Mid(1);
  if (rest.IsEmpty()) return;
  if (rest[rest.GetLength() - 1] == L')') rest = rest.Left(rest.GetLength() - 1);
  client->second.nickname = rest;
}

int LoginUserStore::GetUserType() {
  if (m_clients.size() < 2) {
    m_lastUser.Empty();
    m_storedUsers.clear();
    return m_clients.empty() ? 1 : 2;
  }
  if (m_choice != 1 || m_clients.find(m_lastUser) == m_clients.end()) return 3;
  for (const auto& entry : m_clients) {
    if (std::find(m_storedUsers.begin(), m_storedUsers.end(), entry.first) == m_storedUsers.end()) return 3;
  }
  return 4;
}

bool LoginUserStore::SendTextTo(const RunningClient& client, const CString& text) {
  std::string utf8 = mivo::common::CString_to_utf8(text);
  if (utf8.size() + 1 > kCopyDataBufferSize) {
    if (g_ITrace)
      g_ITrace->Trace(3, true, L"CStartHideWindowForm text of %d bytes not forwarded, the limit is %d",
                      static_cast<int>(utf8.size() + 1), static_cast<int>(kCopyDataBufferSize));
    return false;
  }
  char buffer[kCopyDataBufferSize] = {};
  std::memcpy(buffer, utf8.data(), utf8.size());
  return m_windows->SendCopyData(client.trayWindow, 0, buffer, utf8.size() + 1, kForwardTimeoutMs);
}

void LoginUserStore::ForwardToLastUser(const CString& text) {
  m_forwardedText = text;
  auto client = m_clients.find(m_lastUser);
  if (client != m_clients.end()) SendTextTo(client->second, text);
}

void LoginUserStore::ForwardToSingleClient(const CString& text) {
  m_forwardedText = text;
  if (!m_clients.empty()) SendTextTo(m_clients.begin()->second, text);
}
