#pragma once
// Small text helpers shared by the libraries above: blank trimming, case folding and
// case-insensitive comparison. All are pure functions of their arguments and safe to call from
// any thread. The trimming functions return views into their argument: keep the argument alive
// while the view is used.
#include <string>
#include <string_view>

namespace nbase {

// Space, tab, carriage return and line feed: the blanks that the skins' and the text files'
// formats ignore around values.
constexpr bool IsBlank(wchar_t c) { return c == L' ' || c == L'\t' || c == L'\r' || c == L'\n'; }

// `text` without leading (TrimLeft), trailing (TrimRight) or both (Trim) blanks; an empty view
// when `text` is blank only.
std::string_view TrimLeft(std::string_view text);
std::string_view TrimRight(std::string_view text);
std::string_view Trim(std::string_view text);
std::wstring_view TrimLeft(std::wstring_view text);
std::wstring_view TrimRight(std::wstring_view text);
std::wstring_view Trim(std::wstring_view text);

// Lower-cases every character in place with the C library's towlower (current locale; ASCII
// letters in the default "C" locale).
void MakeLower(std::wstring& text);

// Compares byte by byte with ASCII letters upper-cased, as strcmp would compare the upper-cased
// texts: negative, zero or positive as `a` sorts before, with or after `b`.
int CompareNoCase(std::string_view a, std::string_view b);

}  // namespace nbase
