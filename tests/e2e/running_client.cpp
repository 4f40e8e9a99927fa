// Stands in for a client that is already running and signed in, as the launcher finds it: a
// hidden top-level window of class "Tarnell Mivo2006 MainForm" with a child window of class
// "Tarnell Mivo2006 TrayIcon" whose text is the account. The tray window answers the
// launcher's WM_COPYDATA "nickname" request by sending "<account>:(<nickname>)" back to the
// launcher's hidden window, in one of several ways (the mode), and records every other
// WM_COPYDATA as a forwarded text. Runs until the file named by the first argument appears or
// two minutes pass.
//
// Usage: running_client.exe <stop-file> <account> [mode] [arg]
//   normal        reply "<account>:(<arg>)", or "<account>:(Nick <name>)" without arg, where
//                 <name> is the account up to its "@" (the default mode)
//   late          sleep arg ms (default 1000) in the handler, then reply "<account>:(Nick <name>)"
//   other         reply for another account: "<arg>:(Nick other)"
//   empty         reply "<account>:"
//   silent        no reply
//   hang          sleep arg ms (default 30000) in the handler, no reply
//   oversize      a 4096-byte reply "<account>:(xxx...x)" with its zero
//   unterminated  reply "<account>:(Unterminated)" without the zero byte
//   badutf8       reply "<account>:(" 0xFF 0xFE 0xC3 ")" with the zero
//
// Record lines (role, then text):
//   client-ready:<account>          the command line, once the windows exist
//   nickname-request:<account>      wparam-is-tray, or wparam-other
//   nickname-reply:<account>        the mode, after the reply was sent
//   nickname-no-launcher:<account>  the mode, when the launcher's window was not found
//   forward:<account>               the forwarded text, with \ tab CR LF written as \\ \t \r \n
//   forward-bad:<account>           "cbData=N len=M wparam=W" when the text is not exactly one
//                                   zero-terminated string or wParam is not 0
//   client-timeout:<account>        the command line, when the stop file never appeared
#include <windows.h>
// after windows.h, which it needs
#include <shellapi.h>

#include <cstring>
#include <string>

#include "record.h"

namespace {

const wchar_t kMainClass[] = L"Tarnell Mivo2006 MainForm";
const wchar_t kTrayClass[] = L"Tarnell Mivo2006 TrayIcon";
const wchar_t kLauncherClass[] = L"TARNELL MIVO2006 StartHideWindowForm Form";
const char kNicknameRequest[] = "nickname";  // sent with its zero: 9 bytes

std::string g_account;  // UTF-8
std::string g_mode;
std::string g_arg;  // UTF-8, empty when not given
bool g_hasArg = false;
HWND g_tray = nullptr;

bool KnownMode(const std::string& mode) {
  for (const char* known :
       {"normal", "late", "other", "empty", "silent", "hang", "oversize", "unterminated", "badutf8"})
    if (mode == known) return true;
  return false;
}

DWORD ArgMs(DWORD fallback) { return g_hasArg ? static_cast<DWORD>(strtoul(g_arg.c_str(), nullptr, 10)) : fallback; }

// The nickname of the normal and late replies; in the late mode the argument is the delay.
std::string Nickname() {
  if (g_mode == "normal" && g_hasArg) return g_arg;
  return "Nick " + g_account.substr(0, g_account.find('@'));
}

// Bytes as UTF-8 text, through UTF-16 as the launcher would read them: invalid sequences come
// out as U+FFFD.
std::string DecodeUtf8(const char* bytes, size_t length) {
  if (length == 0) return {};
  int n = MultiByteToWideChar(CP_UTF8, 0, bytes, static_cast<int>(length), nullptr, 0);
  if (n <= 0) return {};
  std::wstring wide(static_cast<size_t>(n), L'\0');
  MultiByteToWideChar(CP_UTF8, 0, bytes, static_cast<int>(length), wide.data(), n);
  return mivo_e2e::Utf8(wide.c_str());
}

// Keeps a record line one line: the record's separators are written as escapes.
std::string Escape(const std::string& text) {
  std::string out;
  for (char c : text) {
    switch (c) {
      case '\\':
        out += "\\\\";
        break;
      case '\t':
        out += "\\t";
        break;
      case '\r':
        out += "\\r";
        break;
      case '\n':
        out += "\\n";
        break;
      default:
        out += c;
    }
  }
  return out;
}

void Reply(const std::string& payload) {
  HWND launcher = FindWindowW(kLauncherClass, nullptr);
  if (!launcher) {
    mivo_e2e::RecordText("nickname-no-launcher:" + g_account, g_mode);
    return;
  }
  COPYDATASTRUCT data = {};
  data.dwData = 0;
  data.cbData = static_cast<DWORD>(payload.size());
  data.lpData = const_cast<char*>(payload.data());
  SendMessageW(launcher, WM_COPYDATA, 0, reinterpret_cast<LPARAM>(&data));
  mivo_e2e::RecordText("nickname-reply:" + g_account, g_mode);
}

// Answers the nickname request according to the mode. A std::string payload carries exactly
// the bytes sent, so the zero is appended where one belongs.
void AnswerNickname() {
  const std::string prefix = g_account + ":(";
  if (g_mode == "silent") return;
  if (g_mode == "hang") {
    Sleep(ArgMs(30000));
    return;
  }
  if (g_mode == "late") Sleep(ArgMs(1000));
  std::string payload;
  if (g_mode == "normal" || g_mode == "late") {
    payload = prefix + Nickname() + ")" + '\0';
  } else if (g_mode == "other") {
    payload = (g_hasArg ? g_arg : std::string("someone.else@gmail.com")) + ":(Nick other)" + '\0';
  } else if (g_mode == "empty") {
    payload = g_account + ":" + '\0';
  } else if (g_mode == "oversize") {
    payload = prefix;
    payload.resize(4094, 'x');
    payload += ')';
    payload += '\0';
  } else if (g_mode == "unterminated") {
    payload = prefix + "Unterminated)";
  } else if (g_mode == "badutf8") {
    payload = prefix + "\xFF\xFE\xC3" + ")" + '\0';
  }
  Reply(payload);
}

void RecordForward(WPARAM wParam, const COPYDATASTRUCT& data) {
  const char* bytes = static_cast<const char*>(data.lpData);
  size_t size = bytes ? data.cbData : 0;
  size_t length = 0;
  while (length < size && bytes[length] != '\0') ++length;
  mivo_e2e::RecordText("forward:" + g_account, Escape(DecodeUtf8(bytes, length)));
  if (size != length + 1 || wParam != 0)
    mivo_e2e::RecordText("forward-bad:" + g_account,
                         "cbData=" + std::to_string(data.cbData) + " len=" + std::to_string(length) +
                             " wparam=" + std::to_string(static_cast<unsigned long long>(wParam)));
}

LRESULT CALLBACK TrayProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message != WM_COPYDATA || !lParam) return DefWindowProcW(window, message, wParam, lParam);
  const auto& data = *reinterpret_cast<const COPYDATASTRUCT*>(lParam);
  if (data.lpData && data.cbData == sizeof kNicknameRequest &&
      std::memcmp(data.lpData, kNicknameRequest, sizeof kNicknameRequest) == 0) {
    mivo_e2e::RecordText("nickname-request:" + g_account,
                         wParam == reinterpret_cast<WPARAM>(g_tray) ? "wparam-is-tray" : "wparam-other");
    AnswerNickname();
  } else {
    RecordForward(wParam, data);
  }
  return TRUE;
}

}  // namespace

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE, LPWSTR, int) {
  int argc = 0;
  wchar_t** argv = CommandLineToArgvW(GetCommandLineW(), &argc);
  if (!argv || argc < 3 || argc > 5) return 1;
  const wchar_t* stopFile = argv[1];
  const wchar_t* account = argv[2];
  g_account = mivo_e2e::Utf8(account);
  g_mode = argc > 3 ? mivo_e2e::Utf8(argv[3]) : "normal";
  g_hasArg = argc > 4;
  if (g_hasArg) g_arg = mivo_e2e::Utf8(argv[4]);
  if (g_account.empty() || !KnownMode(g_mode)) {
    mivo_e2e::Record("client-usage");
    return 1;
  }

  WNDCLASSW mainClass = {};
  mainClass.lpfnWndProc = DefWindowProcW;
  mainClass.hInstance = instance;
  mainClass.lpszClassName = kMainClass;
  WNDCLASSW trayClass = mainClass;
  trayClass.lpfnWndProc = TrayProc;
  trayClass.lpszClassName = kTrayClass;
  if (!RegisterClassW(&mainClass) || !RegisterClassW(&trayClass)) return 3;
  // never shown: Wine runs with the null graphics driver
  HWND main =
      CreateWindowExW(0, kMainClass, L"Mivo", WS_OVERLAPPEDWINDOW, 0, 0, 300, 600, nullptr, nullptr, instance, nullptr);
  if (!main) return 4;
  g_tray = CreateWindowExW(0, kTrayClass, account, WS_CHILD, 0, 0, 0, 0, main, nullptr, instance, nullptr);
  if (!g_tray) return 4;
  if (!mivo_e2e::Record(("client-ready:" + g_account).c_str())) return 2;

  if (!mivo_e2e::PumpUntilFileExists(stopFile, 120000)) mivo_e2e::Record(("client-timeout:" + g_account).c_str());
  DestroyWindow(main);  // and the tray window with it
  LocalFree(argv);
  return 0;
}
