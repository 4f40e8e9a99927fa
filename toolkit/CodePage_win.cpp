// Windows half of the code-page layer: the system's own conversion calls, flags 0.
#include <windows.h>

#include <climits>

#include "toolkit/CodePage.h"

namespace toolkit {

namespace {

// Converts into `buffer` of `length` units, one a byte, which holds the text of every code
// page the system converts, so one call does; the sizing call is only the fallback, with
// `grow(n)` giving a buffer of n units.
template <typename Grow>
int ToWide(unsigned codePage, const char* bytes, int length, wchar_t* buffer, Grow&& grow) {
  int n = MultiByteToWideChar(codePage, 0, bytes, length, buffer, length);
  if (n <= 0 && GetLastError() == ERROR_INSUFFICIENT_BUFFER) {
    n = MultiByteToWideChar(codePage, 0, bytes, length, nullptr, 0);
    if (n > 0) n = MultiByteToWideChar(codePage, 0, bytes, length, grow(n), n);
  }
  return n;
}

// Text up to this many bytes is converted on the stack, then copied into a string of its size.
constexpr size_t kStackUnits = 256;

}  // namespace

bool MultiByteToWide(unsigned codePage, const char* bytes, size_t length, std::wstring& out) {
  out.clear();
  if (length == 0) return true;
  if (length > INT_MAX) return false;
  out.resize(length);
  int n = ToWide(codePage, bytes, static_cast<int>(length), out.data(), [&](int need) {
    out.resize(static_cast<size_t>(need));
    return out.data();
  });
  out.resize(n > 0 ? static_cast<size_t>(n) : 0);
  return n > 0;
}

bool MultiByteToWide(unsigned codePage, const char* bytes, size_t length, CString& out) {
  out.Empty();
  if (length == 0) return true;
  if (length > INT_MAX) return false;
  if (length <= kStackUnits) {  // short text: on the stack first, then one allocation of its size
    wchar_t buffer[kStackUnits];
    int n = MultiByteToWideChar(codePage, 0, bytes, static_cast<int>(length), buffer, static_cast<int>(length));
    if (n > 0) {
      out = CString(buffer, n);
      return true;
    }
    if (GetLastError() != ERROR_INSUFFICIENT_BUFFER) return false;
  }
  int n = ToWide(codePage, bytes, static_cast<int>(length), out.GetBufferSetLength(static_cast<int>(length)),
                 [&](int need) { return out.GetBufferSetLength(need); });
  out.ReleaseBuffer(n > 0 ? n : 0);
  return n > 0;
}

bool WideToMultiByte(unsigned codePage, const wchar_t* text, size_t length, std::string& out) {
  out.clear();
  if (length == 0) return true;
  if (length > INT_MAX) return false;
  // One call into a buffer large enough for nearly every text (a UTF-16 unit is at most
  // three bytes of UTF-8 and two of a double-byte code page); the sizing call is the
  // fallback for the rest.
  size_t bound = length * (codePage == CP_UTF8 ? 3 : 2);
  int room = bound > INT_MAX ? INT_MAX : static_cast<int>(bound);
  out.resize(static_cast<size_t>(room));
  int n = WideCharToMultiByte(codePage, 0, text, static_cast<int>(length), out.data(), room, nullptr, nullptr);
  if (n <= 0 && GetLastError() == ERROR_INSUFFICIENT_BUFFER) {
    n = WideCharToMultiByte(codePage, 0, text, static_cast<int>(length), nullptr, 0, nullptr, nullptr);
    if (n > 0) {
      out.resize(static_cast<size_t>(n));
      n = WideCharToMultiByte(codePage, 0, text, static_cast<int>(length), out.data(), n, nullptr, nullptr);
    }
  }
  out.resize(n > 0 ? static_cast<size_t>(n) : 0);
  return n > 0;
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
