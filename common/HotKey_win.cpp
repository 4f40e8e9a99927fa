// Registers and releases system-wide hot keys with RegisterHotKey/UnregisterHotKey.
#include <windows.h>

#include "common/HotKey.h"

namespace mivo::common {

bool RegisterAppHotKey(HWND window, int id, unsigned modifiers, unsigned virtualKey) {
  // Only combinations that have a text: the caller can always show what it registered.
  if (FormatHotKey(modifiers, virtualKey).IsEmpty()) return false;
  return ::RegisterHotKey(window, id, modifiers, virtualKey) != FALSE;
}

bool RegisterAppHotKey(HWND window, int id, const CString& text) {
  unsigned modifiers = 0, virtualKey = 0;
  return ParseHotKey(text, modifiers, virtualKey) && RegisterAppHotKey(window, id, modifiers, virtualKey);
}

bool UnregisterAppHotKey(HWND window, int id) { return ::UnregisterHotKey(window, id) != FALSE; }

}  // namespace mivo::common
