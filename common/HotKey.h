#pragma once
// System-wide hot keys: their text ("Ctrl+Alt+Z", "Shift+F12", "Ctrl+Num 5", "Win+Space") and,
// on Windows, their registration for a window.
//
// Text: modifiers joined by '+' before one key; case does not matter and blanks around '+' are
// allowed. Modifiers: Ctrl (Control), Alt, Shift, Win (Windows), each at most once. Keys: A-Z,
// 0-9, F1-F24, Left/Up/Right/Down, Home, End, PgUp (Page Up), PgDn (Page Down), Insert (Ins),
// Delete (Del), Space, Tab, Enter (Return), Esc (Escape), Backspace, Pause, Num 0-Num 9,
// Num *, Num +, Num -, Num ., Num /, and the punctuation keys ; = , - . / ` [ \ ] '.
// A key alone is allowed ("F12"); a modifier alone, an unknown key or anything after the key
// is not. The canonical text writes the modifiers as Ctrl+Alt+Shift+Win, in that order, and
// each key by the first name above.
// Everything here is thread-safe and never throws.
#include "toolkit/CString.h"
#include "toolkit/export.h"
#include "toolkit/platform.h"

namespace mivo::common {

// The values of RegisterHotKey's MOD_ALT, MOD_CONTROL, MOD_SHIFT and MOD_WIN.
constexpr unsigned kHotKeyAlt = 0x0001;
constexpr unsigned kHotKeyControl = 0x0002;
constexpr unsigned kHotKeyShift = 0x0004;
constexpr unsigned kHotKeyWin = 0x0008;

// true with the modifiers and the virtual-key code; false (outputs untouched) for text that is
// not a hot key.
MIVO_COMMON_API bool ParseHotKey(const CString& text, unsigned& modifiers, unsigned& virtualKey);
// The canonical text; "" for a key without a name or modifiers beyond the four above.
MIVO_COMMON_API CString FormatHotKey(unsigned modifiers, unsigned virtualKey);

#if defined(_WIN32)
// Registers the combination for `window` under `id` (WM_HOTKEY then carries that id). false when
// the combination is already taken, by this process or another, or the text is not a hot key.
MIVO_COMMON_API bool RegisterAppHotKey(HWND window, int id, unsigned modifiers, unsigned virtualKey);
MIVO_COMMON_API bool RegisterAppHotKey(HWND window, int id, const CString& text);
// false when the window has no hot key of that id.
MIVO_COMMON_API bool UnregisterAppHotKey(HWND window, int id);
#endif

}  // namespace mivo::common
