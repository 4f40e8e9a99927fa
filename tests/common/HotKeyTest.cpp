#include <gtest/gtest.h>

#include "common/HotKey.h"

namespace mc = mivo::common;

namespace {

constexpr unsigned C = mc::kHotKeyControl, A = mc::kHotKeyAlt, S = mc::kHotKeyShift, W = mc::kHotKeyWin;

struct HotKeyRow {
  const wchar_t* text;
  unsigned modifiers;
  unsigned key;
  const wchar_t* canonical;
};

TEST(HotKeyText, ParsesAndFormatsCanonically) {
  const HotKeyRow rows[] = {
      {L"Ctrl+Alt+Z", C | A, 'Z', L"Ctrl+Alt+Z"},
      {L"shift + f12", S, 0x7B, L"Shift+F12"},
      {L"Ctrl+Num 5", C, 0x65, L"Ctrl+Num 5"},
      {L"WIN+space", W, 0x20, L"Win+Space"},
      {L"Win+Shift+Alt+Control+1", C | A | S | W, '1', L"Ctrl+Alt+Shift+Win+1"},
      {L"Control+Page Up", C, 0x21, L"Ctrl+PgUp"},
      {L"Ctrl+Num +", C, 0x6B, L"Ctrl+Num +"},  // '+' inside the key name
      {L"Ctrl+-", C, 0xBD, L"Ctrl+-"},
      {L"Ctrl+=", C, 0xBB, L"Ctrl+="},
      {L"F24", 0, 0x87, L"F24"},
      {L"Alt+Escape", A, 0x1B, L"Alt+Esc"},
      {L"  Ctrl+del ", C, 0x2E, L"Ctrl+Delete"},
      {L"Windows+Return", W, 0x0D, L"Win+Enter"},
      {L"Ctrl+\\", C, 0xDC, L"Ctrl+\\"},
  };
  for (const HotKeyRow& row : rows) {
    unsigned modifiers = 99, key = 99;
    ASSERT_TRUE(mc::ParseHotKey(row.text, modifiers, key)) << row.text;
    EXPECT_EQ(modifiers, row.modifiers) << row.text;
    EXPECT_EQ(key, row.key) << row.text;
    CString canonical = mc::FormatHotKey(modifiers, key);
    EXPECT_EQ(canonical, row.canonical) << row.text;
    unsigned again = 0, againKey = 0;
    EXPECT_TRUE(mc::ParseHotKey(canonical, again, againKey) && again == modifiers && againKey == key) << row.text;
  }
}

TEST(HotKeyText, RefusesWhatIsNotAHotKey) {
  const wchar_t* rows[] = {L"",        L"Ctrl",        L"Ctrl+",       L"Ctrl+Alt", L"+A",
                           L"A+Ctrl",  L"Ctrl+Ctrl+A", L"Ctrl+F25",    L"Ctrl+F0",  L"Hyper+A",
                           L"Ctrl+AB", L"Ctrl++",      L"Ctrl+Num 10", L"Ctrl+A+B", L"Ctrl+\u00e9"};
  for (const wchar_t* text : rows) {
    unsigned modifiers = 7, key = 7;
    EXPECT_FALSE(mc::ParseHotKey(text, modifiers, key)) << text;
    EXPECT_TRUE(modifiers == 7 && key == 7) << text;
  }
  EXPECT_EQ(mc::FormatHotKey(0x10, 'A'), L"");  // beyond the four modifiers
  EXPECT_EQ(mc::FormatHotKey(C, 0xFF), L"");    // a key without a name
}

}  // namespace
