// The clipboard through user32: bounded retries of OpenClipboard, text as a movable global block.
#include <windows.h>

#include <cstring>

#include "common/Clipboard.h"

namespace mivo::common {
namespace {

bool OpenWithRetry(HWND owner) {
  const ULONGLONG start = GetTickCount64();
  while (!OpenClipboard(owner)) {
    if (GetTickCount64() - start >= kClipboardWaitMs) return false;
    Sleep(kClipboardRetryMs);
  }
  return true;
}

// Closes the clipboard on every way out.
struct OpenedClipboard {
  ~OpenedClipboard() { CloseClipboard(); }
};

}  // namespace

bool CopyTextToClipborder(const CString& text, HWND owner) {
  // the block is the text up to its first zero, with one zero after it
  const size_t length = std::wcslen(text.GetString());
  HGLOBAL block = GlobalAlloc(GMEM_MOVEABLE, (length + 1) * sizeof(wchar_t));
  if (!block) return false;
  void* data = GlobalLock(block);
  if (!data) {
    GlobalFree(block);
    return false;
  }
  std::memcpy(data, text.GetString(), (length + 1) * sizeof(wchar_t));
  GlobalUnlock(block);
  if (!OpenWithRetry(owner)) {
    GlobalFree(block);
    return false;
  }
  OpenedClipboard opened;
  // the block belongs to the system once SetClipboardData took it
  if (!EmptyClipboard() || !SetClipboardData(CF_UNICODETEXT, block)) {
    GlobalFree(block);
    return false;
  }
  return true;
}

bool GetTextFromClipborder(CString& text, HWND owner) {
  text.Empty();
  if (!OpenWithRetry(owner)) return false;
  OpenedClipboard opened;
  if (!IsClipboardFormatAvailable(CF_UNICODETEXT)) return true;
  HANDLE block = GetClipboardData(CF_UNICODETEXT);
  if (!block) return false;
  const auto* data = static_cast<const wchar_t*>(GlobalLock(block));
  if (!data) return false;
  // another program may have stored text without its zero: never read past the block
  size_t capacity = GlobalSize(block) / sizeof(wchar_t);
  if (capacity > 0x7fffffff) capacity = 0x7fffffff;
  size_t length = 0;
  while (length < capacity && data[length]) ++length;
  bool copied = true;
  try {
    text = CString(data, static_cast<int>(length));
  } catch (...) {  // out of memory for a huge text
    copied = false;
  }
  GlobalUnlock(block);
  return copied;
}

CString GetTextFromClipborder(HWND owner) {
  CString text;
  GetTextFromClipborder(text, owner);
  return text;
}

}  // namespace mivo::common
