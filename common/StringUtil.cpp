#include "common/StringUtil.h"

#include <cctype>
#include <cstdarg>
#include <cstring>

#include "base/util/string_util.h"
#include "toolkit/Format.h"

namespace mivo::common {
namespace {

// Appends the pieces of `text` between occurrences of `sep` to `out`; shared by all the
// AnalyzeString forms.
template <typename Out>
int SplitInto(const CString& text, const wchar_t* sep, int sepLength, Out&& append) {
  if (text.IsEmpty() || sepLength <= 0) return 0;
  int pos = 0;
  while (true) {
    int hit = sepLength == 1 ? text.Find(sep[0], pos) : text.Find(sep, pos);
    if (hit < 0) break;
    append(text.Mid(pos, hit - pos));
    pos = hit + sepLength;
  }
  append(text.Mid(pos));
  return 1;
}

int SplitBytes(const std::string& s, const std::string& delimiter, std::list<std::string>& out, bool keepEmpty) {
  if (delimiter.empty()) return 0;
  const char* text = s.c_str();
  const char* hit = std::strstr(text, delimiter.c_str());
  if (!hit) {
    if (keepEmpty || s.empty()) return 0;
    out.push_back(s);
    return 1;
  }
  int n = 0;
  const char* start = text;
  while (hit) {
    if (keepEmpty || hit > start) {
      out.emplace_back(start, hit);
      ++n;
    }
    start = hit + delimiter.size();
    hit = std::strstr(start, delimiter.c_str());
  }
  if (keepEmpty || *start) {
    out.emplace_back(start);
    ++n;
  }
  return n;
}

}  // namespace

std::string bin2hex(const void* data, unsigned int len) {
  static const char kDigits[] = "0123456789abcdef";
  std::string out;
  if (!data || len == 0) return out;
  out.resize(static_cast<size_t>(len) * 2);
  const auto* p = static_cast<const unsigned char*>(data);
  for (unsigned int i = 0; i < len; ++i) {
    out[2 * i] = kDigits[p[i] >> 4];
    out[2 * i + 1] = kDigits[p[i] & 0x0F];
  }
  return out;
}

std::string bin2hex(const std::string& data) { return bin2hex(data.data(), static_cast<unsigned int>(data.size())); }

void string_trim_left(std::string& s) { s.erase(0, s.size() - nbase::TrimLeft(s).size()); }

void string_trim_right(std::string& s) { s.erase(nbase::TrimRight(s).size()); }

void string_trim(std::string& s) {
  string_trim_right(s);
  string_trim_left(s);
}

// as zero-terminated strings: the comparison ends at an embedded NUL
int string_compare_no_case(const std::string& a, const std::string& b) {
  return nbase::CompareNoCase(a.c_str(), b.c_str());
}

void string_replace(std::string& s, const std::string& from, const std::string& to) {
  if (from.empty()) return;
  std::string result;
  size_t pos = 0;
  while (true) {
    size_t hit = s.find(from, pos);
    if (hit == std::string::npos) break;
    result.append(s, pos, hit - pos);
    result += to;
    pos = hit + from.size();
  }
  if (pos == 0) return;
  result.append(s, pos, std::string::npos);
  s.swap(result);
}

std::string string_safe_cast(const std::string* s) { return s ? *s : std::string(); }
std::string string_safe_cast(const char* s) { return s ? std::string(s) : std::string(); }

int string_split(const std::string& s, const std::string& delimiter, std::list<std::string>& out) {
  return SplitBytes(s, delimiter, out, true);
}

int string_split2(const std::string& s, const std::string& delimiter, std::list<std::string>& out) {
  return SplitBytes(s, delimiter, out, false);
}

std::string StringFormat(const char* format, ...) {
  if (!format) return std::string();
  va_list args;
  va_start(args, format);
  std::string s = toolkit::FormatNarrow(format, args);
  va_end(args);
  return s;
}

std::wstring WstringFormat(const wchar_t* format, ...) {
  if (!format) return std::wstring();
  va_list args;
  va_start(args, format);
  std::wstring s = toolkit::FormatWide(format, args);
  va_end(args);
  return s;
}

CString GetNoFormatedString(const CString& text) {
  CString s(text);
  s.Replace(L"\n", L"");
  s.Replace(L"\r", L"");
  s.Replace(L"\t", L"");
  return s;
}

int AnalyzeString(const CString& text, wchar_t separator, CStringList& out) {
  out.RemoveAll();
  return SplitInto(text, &separator, 1, [&](const CString& piece) { out.AddTail(piece); });
}

int AnalyzeString(const CString& text, wchar_t separator, CStringArray& out) {
  out.RemoveAll();
  return SplitInto(text, &separator, 1, [&](const CString& piece) { out.Add(piece); });
}

int AnalyzeString(const CString& text, const CString& separator, CStringList& out) {
  out.RemoveAll();
  return SplitInto(text, separator, separator.GetLength(), [&](const CString& piece) { out.AddTail(piece); });
}

int AnalyzeString(const CString& text, const CString& separator, CStringArray& out) {
  out.RemoveAll();
  return SplitInto(text, separator, separator.GetLength(), [&](const CString& piece) { out.Add(piece); });
}

int AnalyzeString(const CString& text, const CString& separator, std::vector<CString>& out) {
  out.clear();
  return SplitInto(text, separator, separator.GetLength(), [&](const CString& piece) { out.push_back(piece); });
}

int AnalyzeStringTable(const CStringList& lines, CMapStringToString& table) {
  if (lines.IsEmpty()) return 0;
  CStringArray pieces;
  for (POSITION pos = lines.GetHeadPosition(); pos;) {
    const CString& line = lines.GetNext(pos);
    AnalyzeString(line, L'=', pieces);
    if (pieces.GetSize() < 2) continue;
    CString key = pieces[0];
    key.Trim();
    CString value = pieces[1];
    value.Trim();
    int comment = value.Find(L';');
    if (comment >= 0) value = value.Left(comment);
    table.SetAt(key, value);
  }
  return 1;
}

CString CombineString(const CStringArray& items, const CString& separator) {
  CString out;
  INT_PTR count = items.GetSize();
  for (INT_PTR i = 0; i < count; ++i) {
    if (i >= items.GetSize()) AfxThrowInvalidArgException();  // the array changed under us
    if (i > 0) out += separator;
    out += items[i];
  }
  return out;
}

bool IsStringInList(const std::list<CString>& items, const CString& text) {
  for (const auto& item : items)
    if (item.CompareNoCase(text) == 0) return true;
  return false;
}

bool IsStringInArray(const CStringArray& items, const CString& text) {
  for (const auto& item : items)
    if (item == text) return true;
  return false;
}

}  // namespace mivo::common
