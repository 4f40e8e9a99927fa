// Windows half of CStdioFileEx: the system's conversion calls with the class's flags, and
// the user locale's ANSI code page.
#include <windows.h>

#include <cwchar>

#include "common/StdioFileEx.h"

namespace {
constexpr UINT kUtf8 = 65001;
}  // namespace

bool CStdioFileEx::DecodeMultiByte(UINT codePage, const char* text, std::wstring& out) {
  out.clear();
  DWORD flags = codePage == kUtf8 ? 0 : MB_PRECOMPOSED;
  int n = MultiByteToWideChar(codePage, flags, text, -1, nullptr, 0);
  if (n <= 0) return false;
  out.resize(static_cast<size_t>(n));
  n = MultiByteToWideChar(codePage, flags, text, -1, out.data(), n);
  if (n <= 0) {
    out.clear();
    return false;
  }
  out.resize(static_cast<size_t>(n - 1));  // the terminator
  return true;
}

bool CStdioFileEx::EncodeMultiByte(UINT codePage, const wchar_t* text, std::string& out) {
  out.clear();
  const bool utf8 = codePage == kUtf8;
  DWORD flags = utf8 ? 0 : WC_COMPOSITECHECK | WC_SEPCHARS;
  const char* replacement = utf8 ? nullptr : "#";
  int n = WideCharToMultiByte(codePage, flags, text, -1, nullptr, 0, replacement, nullptr);
  if (n <= 0) return false;
  out.resize(static_cast<size_t>(n));
  n = WideCharToMultiByte(codePage, flags, text, -1, out.data(), n, replacement, nullptr);
  if (n <= 0) {
    out.clear();
    return false;
  }
  out.resize(static_cast<size_t>(n - 1));  // the terminator
  return true;
}

UINT CStdioFileEx::GetCurrentLocaleCodePage() {
  wchar_t digits[10] = {};
  if (GetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_IDEFAULTANSICODEPAGE, digits, 10) <= 0) return 0;
  return static_cast<UINT>(std::wcstoul(digits, nullptr, 10));
}
