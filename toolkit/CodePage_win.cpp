// Windows half of the code-page layer: the system's own conversion calls, flags 0.
#include <windows.h>

#include <climits>

#include "toolkit/CodePage.h"

namespace toolkit {

bool MultiByteToWide(unsigned codePage, const char* bytes, size_t length, std::wstring& out) {
  out.clear();
  if (length == 0) return true;
  if (length > INT_MAX) return false;
  int n = MultiByteToWideChar(codePage, 0, bytes, static_cast<int>(length), nullptr, 0);
  if (n <= 0) return false;
  out.resize(static_cast<size_t>(n));
  n = MultiByteToWideChar(codePage, 0, bytes, static_cast<int>(length), out.data(), n);
  if (n <= 0) {
    out.clear();
    return false;
  }
  out.resize(static_cast<size_t>(n));
  return true;
}

bool WideToMultiByte(unsigned codePage, const wchar_t* text, size_t length, std::string& out) {
  out.clear();
  if (length == 0) return true;
  if (length > INT_MAX) return false;
  int n = WideCharToMultiByte(codePage, 0, text, static_cast<int>(length), nullptr, 0, nullptr, nullptr);
  if (n <= 0) return false;
  out.resize(static_cast<size_t>(n));
  n = WideCharToMultiByte(codePage, 0, text, static_cast<int>(length), out.data(), n, nullptr, nullptr);
  if (n <= 0) {
    out.clear();
    return false;
  }
  out.resize(static_cast<size_t>(n));
  return true;
}

unsigned GetAnsiCodePage() { return GetACP(); }

void SetAnsiCodePage(unsigned) {}

wchar_t ToLowerChar(wchar_t ch) {
  wchar_t buf[1] = {ch};
  CharLowerBuffW(buf, 1);
  return buf[0];
}

wchar_t ToUpperChar(wchar_t ch) {
  wchar_t buf[1] = {ch};
  CharUpperBuffW(buf, 1);
  return buf[0];
}

}  // namespace toolkit
