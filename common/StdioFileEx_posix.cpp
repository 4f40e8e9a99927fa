// POSIX half of CStdioFileEx: the toolkit's iconv conversions. The Windows flags have no
// counterpart here (iconv composes nothing); what differs is the replacement character,
// which the toolkit writes as '?' and this class as '#'. There is no user locale apart
// from the process, so its code page is the process's ANSI code page.
#include "common/StdioFileEx.h"

#include <algorithm>
#include <cstring>
#include <cwchar>

#include "toolkit/CodePage.h"

bool CStdioFileEx::DecodeMultiByte(UINT codePage, const char* text, std::wstring& out) {
  return toolkit::MultiByteToWide(codePage, text, std::strlen(text), out);
}

bool CStdioFileEx::EncodeMultiByte(UINT codePage, const wchar_t* text, std::string& out) {
  const size_t length = std::wcslen(text);
  if (!toolkit::WideToMultiByte(codePage, text, length, out)) return false;
  const auto asked = std::count(text, text + length, L'?');
  if (std::count(out.begin(), out.end(), '?') == asked) return true;
  // Something was replaced: again one character at a time, to tell a '?' the text holds
  // from one the converter made. (A shifting code page then shifts per character.)
  out.clear();
  std::string piece;
  for (size_t i = 0; i < length; ++i) {
    if (!toolkit::WideToMultiByte(codePage, text + i, 1, piece)) return false;
    out += (text[i] != L'?' && piece == "?") ? std::string("#") : piece;
  }
  return true;
}

UINT CStdioFileEx::GetCurrentLocaleCodePage() { return toolkit::GetAnsiCodePage(); }
