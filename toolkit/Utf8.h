#pragma once
// UTF-8 <-> wchar_t without the platform. Invalid input is replaced, never rejected:
// each maximal invalid subsequence of bytes becomes one U+FFFD, and a lone surrogate
// becomes U+FFFD on output. Where wchar_t is 16 bits, code points above U+FFFF travel as
// surrogate pairs; where it is 32 bits, a high/low surrogate pair is joined on output.
#include <cstddef>
#include <string>

namespace toolkit {

void Utf8ToWide(const char* bytes, size_t length, std::wstring& out);
void WideToUtf8(const wchar_t* text, size_t length, std::string& out);

// The same into a caller's buffer, returning the units written. A byte never gives more
// than one wide unit, so `out` needs room for `length` units; a wide unit never gives more
// than kUtf8PerWide bytes, so `out` needs `length * kUtf8PerWide` bytes.
constexpr size_t kUtf8PerWide = sizeof(wchar_t) == 2 ? 3 : 4;
size_t Utf8ToWide(const char* bytes, size_t length, wchar_t* out);
size_t WideToUtf8(const wchar_t* text, size_t length, char* out);

}  // namespace toolkit
