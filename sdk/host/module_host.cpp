// The kit's module host: a console program named MivoStart.exe, built from the same libraries
// as the launcher and exporting the same names, so a module's imports resolve against it. It
// loads one module through MoudleManager::Load, calls the entry points named on its command
// line and prints what each returned.
//
//   MivoStart.exe MODULE.dll [--message=N] [ENTRY[=ARGUMENT]]...
//
// An entry point is `extern "C" int ENTRY(const wchar_t* argument, char* out, unsigned outSize)`:
// it writes a UTF-8 text of at most outSize bytes with its terminator and returns its length,
// or a negative number for failure. --message=N offers a message with that number to the
// modules' MyPreTranslateMessage hooks, as the main loop would, before the entry points run.
// Exit status: 0 when the module loaded and every entry point was found and returned 0 or
// more, 1 otherwise, 2 for a command line it does not understand.
#include <fcntl.h>
#include <io.h>
#include <windows.h>

#include <cstdio>
#include <cwchar>
#include <string>
#include <vector>

#include "common/Conversion.h"
#include "common/ModuleManager.h"
#include "common/Trace.h"

namespace {

constexpr unsigned kOutputBytes = 64 * 1024;

using EntryPoint = int (*)(const wchar_t*, char*, unsigned);

// Output is UTF-8 bytes, written as they are (a wide console write would depend on the code page).
void Print(const std::string& text) {
  std::fwrite(text.data(), 1, text.size(), stdout);
  std::fflush(stdout);
}

std::string Utf8(const std::wstring& text) { return mivo::common::CString_to_utf8(CString(text.c_str())); }

std::wstring FullPath(const wchar_t* path) {
  DWORD n = GetFullPathNameW(path, 0, nullptr, nullptr);
  if (n == 0) return path;
  std::wstring full(n, L'\0');
  n = GetFullPathNameW(path, n, full.data(), nullptr);
  full.resize(n);
  return full;
}

int Usage() {
  Print(
      "usage: MivoStart.exe MODULE.dll [--message=N] [ENTRY[=ARGUMENT]]...\n"
      "  loads MODULE.dll through MoudleManager::Load and calls each ENTRY as\n"
      "  extern \"C\" int ENTRY(const wchar_t* argument, char* out, unsigned outSize)\n");
  return 2;
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
  _setmode(_fileno(stdout), _O_BINARY);  // lines end in "\n" as the module wrote them
  if (argc < 2 || argv[1][0] == L'-') return Usage();
  std::vector<std::wstring> entries;
  std::vector<UINT> messages;
  for (int i = 2; i < argc; ++i) {
    std::wstring arg = argv[i];
    if (arg.rfind(L"--message=", 0) == 0) {
      wchar_t* end = nullptr;
      unsigned long number = std::wcstoul(arg.c_str() + 10, &end, 0);
      if (end == arg.c_str() + 10 || *end) return Usage();
      messages.push_back(static_cast<UINT>(number));
    } else if (arg.empty() || arg[0] == L'-' || arg[0] == L'=') {
      return Usage();
    } else {
      entries.push_back(arg);
    }
  }

  MoudleManager::Open();
  const std::wstring path = FullPath(argv[1]);
  HINSTANCE module = MoudleManager::Load(CString(path.c_str()));
  if (!module) {
    DWORD error = GetLastError();
    Print("module " + Utf8(argv[1]) + " did not load (error " + std::to_string(error) + ")\n");
    return 1;
  }
  Print("module " + Utf8(argv[1]) + " loaded\n");
  if (g_ITrace) g_ITrace->Trace(3, true, L"module host: %s loaded", path.c_str());
  const bool hook = GetProcAddress(module, "MyPreTranslateMessage") != nullptr;
  Print(std::string("MyPreTranslateMessage: ") + (hook ? "exported" : "not exported") + "\n");

  bool ok = true;
  for (UINT number : messages) {
    MSG message = {};
    message.message = number;
    char hex[16];
    std::snprintf(hex, sizeof hex, "0x%04x", number);
    const bool handled = mivo::common::DoMyPreTranslateMessage(&message) != 0;
    Print(std::string("message ") + hex + (handled ? " handled by a module" : " not handled") + "\n");
  }

  std::vector<char> out(kOutputBytes);
  for (const std::wstring& entry : entries) {
    const size_t equals = entry.find(L'=');
    const std::wstring name = entry.substr(0, equals);
    const std::wstring argument = equals == std::wstring::npos ? std::wstring() : entry.substr(equals + 1);
    auto function = reinterpret_cast<EntryPoint>(reinterpret_cast<void*>(GetProcAddress(module, Utf8(name).c_str())));
    if (!function) {
      Print(Utf8(name) + ": not exported by the module\n");
      ok = false;
      continue;
    }
    out[0] = '\0';
    const int result = function(argument.c_str(), out.data(), kOutputBytes);
    out[kOutputBytes - 1] = '\0';  // whatever the module did, the text ends in the buffer
    Print(Utf8(name) + "(\"" + Utf8(argument) + "\") returned " + std::to_string(result));
    Print(result >= 0 ? ": " + std::string(out.data()) + "\n" : "\n");
    if (result < 0) ok = false;
  }
  return ok ? 0 : 1;
}
