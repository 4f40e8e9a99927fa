#include "base/util/string_util.h"

#include <cwctype>

namespace nbase {
namespace {

template <typename Char>
std::basic_string_view<Char> DropLeft(std::basic_string_view<Char> text) {
  size_t first = 0;
  while (first < text.size() && IsBlank(static_cast<wchar_t>(text[first]))) ++first;
  return text.substr(first);
}

template <typename Char>
std::basic_string_view<Char> DropRight(std::basic_string_view<Char> text) {
  size_t last = text.size();
  while (last > 0 && IsBlank(static_cast<wchar_t>(text[last - 1]))) --last;
  return text.substr(0, last);
}

unsigned char Upper(char c) {
  auto u = static_cast<unsigned char>(c);
  return u >= 'a' && u <= 'z' ? static_cast<unsigned char>(u - 'a' + 'A') : u;
}

}  // namespace

std::string_view TrimLeft(std::string_view text) { return DropLeft(text); }
std::string_view TrimRight(std::string_view text) { return DropRight(text); }
std::string_view Trim(std::string_view text) { return DropLeft(DropRight(text)); }
std::wstring_view TrimLeft(std::wstring_view text) { return DropLeft(text); }
std::wstring_view TrimRight(std::wstring_view text) { return DropRight(text); }
std::wstring_view Trim(std::wstring_view text) { return DropLeft(DropRight(text)); }

void MakeLower(std::wstring& text) {
  for (wchar_t& c : text) c = static_cast<wchar_t>(std::towlower(c));
}

int CompareNoCase(std::string_view a, std::string_view b) {
  const size_t common = a.size() < b.size() ? a.size() : b.size();
  for (size_t i = 0; i < common; ++i) {
    const int diff = Upper(a[i]) - Upper(b[i]);
    if (diff != 0) return diff;
  }
  return a.size() == b.size() ? 0 : (a.size() < b.size() ? -1 : 1);
}

}  // namespace nbase
