#include "common/Browser.h"

#include <cwctype>

namespace mivo::common {
namespace {

bool IsBlank(wchar_t ch) { return ch == L' ' || ch == L'\t'; }

CString ExpandVariables(const CString& text, const EnvironmentLookup& lookup) {
  const std::wstring& in = text.str();
  CString out;
  size_t i = 0;
  while (i < in.size()) {
    size_t close = in[i] == L'%' ? in.find(L'%', i + 1) : std::wstring::npos;
    CString value;
    if (close != std::wstring::npos && close > i + 1 && lookup &&
        lookup(CString(in.c_str() + i + 1, static_cast<int>(close - i - 1)), value)) {
      out += value;
      i = close + 1;
    } else {
      out += in[i++];
    }
  }
  return out;
}

// Where the unquoted program ends: after the first ".exe" that ends a word, else at the
// first blank (paths under "Program Files" are often registered without quotes).
size_t UnquotedEnd(const std::wstring& text) {
  for (size_t at = 0; at + 4 <= text.size(); ++at) {
    if (text[at] == L'.' && std::towlower(text[at + 1]) == L'e' && std::towlower(text[at + 2]) == L'x' &&
        std::towlower(text[at + 3]) == L'e' && (at + 4 == text.size() || IsBlank(text[at + 4])))
      return at + 4;
  }
  size_t blank = text.find_first_of(L" \t");
  return blank == std::wstring::npos ? text.size() : blank;
}

}  // namespace

CString ProgramFromOpenCommand(const CString& command, const EnvironmentLookup& lookup) {
  try {
    std::wstring text = command.str();
    size_t start = 0;
    while (start < text.size() && IsBlank(text[start])) ++start;
    text.erase(0, start);
    std::wstring program;
    if (!text.empty() && text[0] == L'"') {
      size_t close = text.find(L'"', 1);
      program = text.substr(1, close == std::wstring::npos ? std::wstring::npos : close - 1);
    } else {
      program = text.substr(0, UnquotedEnd(text));
    }
    return ExpandVariables(CString(program.c_str()), lookup);
  } catch (...) {
    return CString();
  }
}

}  // namespace mivo::common
