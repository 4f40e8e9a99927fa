// The record file the end-to-end helpers append to: one UTF-8 line per event,
// "<role>\t<ms>\t<pid>\t<command line>". Several helpers run at once, so each line is a
// single WriteFile on a handle opened for appending only.
#pragma once

#include <windows.h>

#include <cstdlib>
#include <string>

namespace mivo_e2e {

inline std::string Utf8(const wchar_t* text) {
  int n = WideCharToMultiByte(CP_UTF8, 0, text, -1, nullptr, 0, nullptr, nullptr);
  if (n <= 1) return {};
  std::string out(static_cast<size_t>(n), '\0');
  WideCharToMultiByte(CP_UTF8, 0, text, -1, out.data(), n, nullptr, nullptr);
  out.pop_back();
  return out;
}

// Milliseconds of the performance counter, which all processes of a machine share, so the
// helpers' lines can be ordered against each other.
inline unsigned long long NowMs() {
  LARGE_INTEGER count, frequency;
  QueryPerformanceCounter(&count);
  QueryPerformanceFrequency(&frequency);
  long long whole = count.QuadPart / frequency.QuadPart, rest = count.QuadPart % frequency.QuadPart;
  return static_cast<unsigned long long>(whole * 1000 + rest * 1000 / frequency.QuadPart);
}

inline std::wstring Env(const wchar_t* name) {
  wchar_t buffer[4096];
  DWORD n = GetEnvironmentVariableW(name, buffer, ARRAYSIZE(buffer));
  return n > 0 && n < ARRAYSIZE(buffer) ? std::wstring(buffer, n) : std::wstring();
}

inline DWORD EnvMs(const wchar_t* name, DWORD fallback) {
  std::wstring value = Env(name);
  return value.empty() ? fallback : static_cast<DWORD>(wcstoul(value.c_str(), nullptr, 10));
}

// Appends one line to the file named by MIVO_E2E_RECORD, with the given UTF-8 text in place of
// the command line; the caller keeps tabs and line breaks out of role and text. Another helper
// may hold the file for a moment (or a reader without sharing), so a refused open is retried
// for a while.
inline bool RecordText(const std::string& role, const std::string& text) {
  std::wstring path = Env(L"MIVO_E2E_RECORD");
  if (path.empty()) return false;
  std::string line =
      role + '\t' + std::to_string(NowMs()) + '\t' + std::to_string(GetCurrentProcessId()) + '\t' + text + '\n';
  for (int attempt = 0; attempt < 500; ++attempt) {
    HANDLE file = CreateFileW(path.c_str(), FILE_APPEND_DATA, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                              nullptr, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
      DWORD error = GetLastError();
      if (error != ERROR_SHARING_VIOLATION && error != ERROR_LOCK_VIOLATION && error != ERROR_ACCESS_DENIED)
        return false;
      Sleep(10);
      continue;
    }
    DWORD written = 0;
    BOOL ok = WriteFile(file, line.data(), static_cast<DWORD>(line.size()), &written, nullptr);
    CloseHandle(file);
    return ok && written == line.size();
  }
  return false;
}

// Handles this thread's messages until the file `stopFile` exists (true) or `timeoutMs` pass
// (false): how the helpers that own windows stay alive for a run.
inline bool PumpUntilFileExists(const wchar_t* stopFile, ULONGLONG timeoutMs) {
  const ULONGLONG deadline = GetTickCount64() + timeoutMs;
  while (GetTickCount64() < deadline) {
    MsgWaitForMultipleObjects(0, nullptr, FALSE, 50, QS_ALLINPUT);
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
      TranslateMessage(&message);
      DispatchMessageW(&message);
    }
    if (GetFileAttributesW(stopFile) != INVALID_FILE_ATTRIBUTES) return true;
  }
  return false;
}

// The usual line: the role and this process's command line.
inline bool Record(const char* role) { return RecordText(role, Utf8(GetCommandLineW())); }

}  // namespace mivo_e2e
