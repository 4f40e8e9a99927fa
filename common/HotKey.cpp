#include "common/HotKey.h"

#include <cwctype>
#include <string>

namespace mivo::common {
namespace {

struct KeyName {
  const wchar_t* name;  // the first name of a key is its canonical one
  unsigned key;
};

// Named keys beyond the letters, digits and function keys, which are computed.
constexpr KeyName kKeys[] = {
    {L"Left", 0x25},      {L"Up", 0x26},    {L"Right", 0x27},   {L"Down", 0x28},  {L"Home", 0x24},
    {L"End", 0x23},       {L"PgUp", 0x21},  {L"Page Up", 0x21}, {L"PgDn", 0x22},  {L"Page Down", 0x22},
    {L"Insert", 0x2D},    {L"Ins", 0x2D},   {L"Delete", 0x2E},  {L"Del", 0x2E},   {L"Space", 0x20},
    {L"Tab", 0x09},       {L"Enter", 0x0D}, {L"Return", 0x0D},  {L"Esc", 0x1B},   {L"Escape", 0x1B},
    {L"Backspace", 0x08}, {L"Pause", 0x13}, {L"Num *", 0x6A},   {L"Num +", 0x6B}, {L"Num -", 0x6D},
    {L"Num .", 0x6E},     {L"Num /", 0x6F}, {L";", 0xBA},       {L"=", 0xBB},     {L",", 0xBC},
    {L"-", 0xBD},         {L".", 0xBE},     {L"/", 0xBF},       {L"`", 0xC0},     {L"[", 0xDB},
    {L"\\", 0xDC},        {L"]", 0xDD},     {L"'", 0xDE},
};

constexpr KeyName kModifiers[] = {
    {L"Ctrl", kHotKeyControl}, {L"Control", kHotKeyControl}, {L"Alt", kHotKeyAlt},
    {L"Shift", kHotKeyShift},  {L"Win", kHotKeyWin},         {L"Windows", kHotKeyWin},
};

bool IsBlank(wchar_t ch) { return ch == L' ' || ch == L'\t'; }

// Lower case without blanks: "Page  Up" and "pageup" name the same key.
std::wstring Folded(const std::wstring& text) {
  std::wstring out;
  for (wchar_t ch : text)
    if (!IsBlank(ch)) out += static_cast<wchar_t>(std::towlower(ch));
  return out;
}

bool KeyFromName(const std::wstring& folded, unsigned& key) {
  if (folded.size() == 1 && folded[0] >= L'a' && folded[0] <= L'z') {
    key = L'A' + (folded[0] - L'a');
    return true;
  }
  if (folded.size() == 1 && folded[0] >= L'0' && folded[0] <= L'9') {
    key = folded[0];
    return true;
  }
  if (folded.size() == 4 && folded.compare(0, 3, L"num") == 0 && folded[3] >= L'0' && folded[3] <= L'9') {
    key = 0x60 + (folded[3] - L'0');
    return true;
  }
  if ((folded.size() == 2 || folded.size() == 3) && folded[0] == L'f' && folded[1] >= L'1' && folded[1] <= L'9') {
    unsigned number = folded[1] - L'0';
    if (folded.size() == 3) {
      if (folded[2] < L'0' || folded[2] > L'9') return false;
      number = number * 10 + (folded[2] - L'0');
    }
    if (number < 1 || number > 24) return false;
    key = 0x70 + number - 1;
    return true;
  }
  for (const KeyName& entry : kKeys) {
    if (Folded(entry.name) == folded) {
      key = entry.key;
      return true;
    }
  }
  return false;
}

}  // namespace

bool ParseHotKey(const CString& text, unsigned& modifiers, unsigned& virtualKey) {
  try {
    const std::wstring& in = text.str();
    unsigned found = 0;
    size_t at = 0;
    // Modifiers are the words followed by '+'; whatever remains is the key ("Ctrl+Num +").
    for (;;) {
      while (at < in.size() && IsBlank(in[at])) ++at;
      size_t plus = in.find(L'+', at);
      if (plus == std::wstring::npos || plus == at) break;
      std::wstring word = Folded(in.substr(at, plus - at));
      unsigned modifier = 0;
      for (const KeyName& entry : kModifiers)
        if (Folded(entry.name) == word) modifier = entry.key;
      if (!modifier) break;
      if (found & modifier) return false;
      found |= modifier;
      at = plus + 1;
    }
    unsigned key = 0;
    if (!KeyFromName(Folded(in.substr(at)), key)) return false;
    modifiers = found;
    virtualKey = key;
    return true;
  } catch (...) {
    return false;
  }
}

CString FormatHotKey(unsigned modifiers, unsigned virtualKey) {
  try {
    if (modifiers & ~(kHotKeyControl | kHotKeyAlt | kHotKeyShift | kHotKeyWin)) return CString();
    CString key;
    if ((virtualKey >= L'A' && virtualKey <= L'Z') || (virtualKey >= L'0' && virtualKey <= L'9')) {
      key = static_cast<wchar_t>(virtualKey);
    } else if (virtualKey >= 0x60 && virtualKey <= 0x69) {
      key.Format(L"Num %u", virtualKey - 0x60);
    } else if (virtualKey >= 0x70 && virtualKey <= 0x87) {
      key.Format(L"F%u", virtualKey - 0x70 + 1);
    } else {
      for (const KeyName& entry : kKeys) {
        if (entry.key == virtualKey) {
          key = entry.name;
          break;
        }
      }
    }
    if (key.IsEmpty()) return CString();
    CString text;
    if (modifiers & kHotKeyControl) text += L"Ctrl+";
    if (modifiers & kHotKeyAlt) text += L"Alt+";
    if (modifiers & kHotKeyShift) text += L"Shift+";
    if (modifiers & kHotKeyWin) text += L"Win+";
    return text + key;
  } catch (...) {
    return CString();
  }
}

}  // namespace mivo::common
