// Hot-key texts on arbitrary input, each byte one character (so every ASCII name and separator
// is reachable). Checks: a text that parses formats to a canonical text, and that text parses
// to the same modifiers and key and formats to itself; a failed parse leaves its outputs alone.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "common/HotKey.h"

using namespace mivo::common;

namespace {

void Check(bool ok, const char* what) {
  if (ok) return;
  std::fprintf(stderr, "hotkey_text_fuzz: %s\n", what);
  std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size > 256) return 0;  // hot-key texts are short; longer input only slows the search
  std::wstring wide(data, data + size);
  CString text(wide.c_str(), static_cast<int>(wide.size()));
  unsigned modifiers = 0xDEAD, key = 0xBEEF;
  if (!ParseHotKey(text, modifiers, key)) {
    Check(modifiers == 0xDEAD && key == 0xBEEF, "a failed parse changed its outputs");
    return 0;
  }
  CString canonical = FormatHotKey(modifiers, key);
  Check(!canonical.IsEmpty(), "a parsed hot key has no text");
  unsigned again = 0, againKey = 0;
  Check(ParseHotKey(canonical, again, againKey), "the canonical text does not parse");
  Check(again == modifiers && againKey == key, "the canonical text names another hot key");
  Check(FormatHotKey(again, againKey) == canonical, "the canonical text is not stable");
  return 0;
}
