// The other process of the clipboard tests, written against user32 alone so the library is
// checked against a program that is not itself:
//   clipboard_peer write <file>        puts the file's UTF-16 text on the clipboard
//   clipboard_peer read <file>         writes the clipboard's Unicode text into the file
//   clipboard_peer clear               empties the clipboard
//   clipboard_peer hold <ms> <event>   opens the clipboard, sets the named event, keeps it open for ms
// Exit code 0 on success.
#include <windows.h>

#include <cstdio>
#include <cstring>
#include <cwchar>
#include <string>

namespace {

// Opened with a window of our own, as real programs do: Wine lets two openers without a window
// in at once, where Windows would not.
bool Open() {
  static HWND window = CreateWindowExW(0, L"STATIC", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
  for (int i = 0; i < 500; ++i, Sleep(10))
    if (OpenClipboard(window)) return true;
  return false;
}

int Write(const wchar_t* path) {
  std::wstring text;
  FILE* f = _wfopen(path, L"rb");
  if (!f) return 2;
  for (wchar_t c; std::fread(&c, sizeof c, 1, f) == 1;) text += c;
  std::fclose(f);
  HGLOBAL block = GlobalAlloc(GMEM_MOVEABLE, (text.size() + 1) * sizeof(wchar_t));
  std::memcpy(GlobalLock(block), text.c_str(), (text.size() + 1) * sizeof(wchar_t));
  GlobalUnlock(block);
  if (!Open()) return 3;
  int rc = EmptyClipboard() && SetClipboardData(CF_UNICODETEXT, block) ? 0 : 4;
  CloseClipboard();
  return rc;
}

int Read(const wchar_t* path) {
  if (!Open()) return 3;
  std::wstring text;
  if (HANDLE block = GetClipboardData(CF_UNICODETEXT)) {
    if (auto* data = static_cast<const wchar_t*>(GlobalLock(block))) {
      text = data;
      GlobalUnlock(block);
    }
  }
  CloseClipboard();
  FILE* f = _wfopen(path, L"wb");
  if (!f) return 2;
  std::fwrite(text.data(), sizeof(wchar_t), text.size(), f);
  std::fclose(f);
  return 0;
}

int Hold(int ms, const wchar_t* eventName) {
  HANDLE held = OpenEventW(EVENT_MODIFY_STATE, FALSE, eventName);
  if (!held || !Open()) return 3;
  SetEvent(held);
  Sleep(ms);
  CloseClipboard();
  CloseHandle(held);
  return 0;
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
  std::wstring mode = argc > 1 ? argv[1] : L"";
  if (mode == L"write" && argc == 3) return Write(argv[2]);
  if (mode == L"read" && argc == 3) return Read(argv[2]);
  if (mode == L"hold" && argc == 4) return Hold(_wtoi(argv[2]), argv[3]);
  if (mode == L"clear" && argc == 2) {
    if (!Open()) return 3;
    int rc = EmptyClipboard() ? 0 : 4;
    CloseClipboard();
    return rc;
  }
  return 1;
}
