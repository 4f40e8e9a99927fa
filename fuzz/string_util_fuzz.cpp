// The string functions that split and analyse text, and the decoders of bytes, on arbitrary
// input. The first byte picks a delimiter and a code page; the rest is the text.
// Checks: split pieces joined with their delimiter give the text back (every AnalyzeString
// form and string_split agree); trimmed text has no blanks at its ends and lies inside the
// text; decoded text is stable after one trip through its encoding; numbers written as text
// read back as the same numbers.
#include <climits>
#include <cstdint>
#include <list>
#include <string>
#include <vector>

#include "common/Conversion.h"
#include "common/StringUtil.h"
#include "fuzz/FuzzTemp.h"
#include "toolkit/CodePage.h"
#include "toolkit/Utf8.h"

using namespace mivo::common;

namespace {

void Check(bool ok, const char* what) { fuzz::Check(ok, "string_util_fuzz", what); }

template <class Pieces>
std::wstring Join(const Pieces& pieces, const std::wstring& separator) {
  std::wstring joined;
  bool first = true;
  for (const CString& piece : pieces) {
    if (!first) joined += separator;
    joined += piece.str();
    first = false;
  }
  return joined;
}

bool IsTrimBlank(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }

void Splits(const std::string& bytes, const CString& text, const std::string& delimiter) {
  std::list<std::string> pieces;
  int n = string_split(bytes, delimiter, pieces);
  Check(n == static_cast<int>(pieces.size()), "string_split counts other pieces");
  if (n > 0) {
    std::string joined;
    bool first = true;
    for (const std::string& p : pieces) {
      joined += (first ? "" : delimiter) + p;
      first = false;
    }
    // the splitters read the text as a C string: it ends at its first NUL
    Check(joined == bytes.substr(0, bytes.find('\0')), "string_split pieces do not join to the text");
  }
  std::list<std::string> nonEmpty;
  int m = string_split2(bytes, delimiter, nonEmpty);
  Check(m == static_cast<int>(nonEmpty.size()), "string_split2 counts other pieces");
  for (const std::string& p : nonEmpty) Check(!p.empty(), "string_split2 kept an empty piece");

  std::wstring separator;
  toolkit::Utf8ToWide(delimiter.data(), delimiter.size(), separator);
  CString sep(separator.c_str());
  CStringArray array;
  CStringList list;
  std::vector<CString> vec;
  int a = AnalyzeString(text, sep, array), l = AnalyzeString(text, sep, list), v = AnalyzeString(text, sep, vec);
  Check(a == l && l == v, "the AnalyzeString forms disagree");
  if (a) {
    std::wstring joined = Join(vec, sep.str());
    Check(joined == text.str(), "AnalyzeString pieces do not join to the text");
    std::vector<CString> fromList;
    for (POSITION pos = list.GetHeadPosition(); pos;) fromList.push_back(list.GetNext(pos));
    Check(Join(fromList, sep.str()) == joined && CombineString(array, sep).str() == joined, "the piece lists disagree");
  }
  if (!sep.IsEmpty()) {
    CStringArray byChar;
    if (AnalyzeString(text, sep[0], byChar))
      Check(CombineString(byChar, CString(sep[0])) == text, "AnalyzeString by a character does not join back");
  }
  CMapStringToString table;
  AnalyzeStringTable(list, table);
}

void Trims(const std::string& bytes) {
  std::string s = bytes;
  string_trim(s);
  Check(s.empty() || (!IsTrimBlank(s.front()) && !IsTrimBlank(s.back())), "trimmed text keeps blanks");
  Check(bytes.find(s) != std::string::npos, "trimmed text is not part of the text");
  std::string left = bytes, right = bytes;
  string_trim_left(left);
  string_trim_right(right);
  Check(left.size() + right.size() - s.size() == bytes.size() || s.empty(), "trims overlap");
  Check(string_compare_no_case(bytes, bytes) == 0, "a text differs from itself");
  std::string hex = bin2hex(bytes);
  Check(hex.size() == 2 * bytes.size() && hex.find_first_not_of("0123456789abcdef") == std::string::npos,
        "bin2hex wrote something else");
  CString plain = GetNoFormatedString(utf8_to_CString(bytes));
  Check(plain.FindOneOf(L"\r\n\t") < 0, "formatting characters left");
}

void Decoders(const std::string& bytes, unsigned codePage) {
  // what is lost is lost in the first trip through the encoding; from then on text is stable
  const int cp = static_cast<int>(codePage);
  CString once = MBCS2CString(CString2MBCS(MBCS2CString(bytes, cp), cp), cp);
  Check(MBCS2CString(CString2MBCS(once, cp), cp) == once, "a code page text is not stable after one trip");
  CString fromUtf8 = utf8_to_CString(bytes);
  CString utf8Once = utf8_to_CString(CString_to_utf8(fromUtf8));
  Check(utf8_to_CString(CString_to_utf8(utf8Once)) == utf8Once, "UTF-8 text is not stable after one trip");
  std::string ansi = UTF82String(bytes);
  String2UTF8(ansi);
  std::wstring w = String2Wstring(bytes);
  Wstring2String(w);
  int length = 0;
  wchar_t* copy = GetWideCharFromMultiByte(fromUtf8, length);
  Check(length == fromUtf8.GetLength() && (!copy || CString(copy) == CString(fromUtf8.GetString())),
        "a wide copy differs");
  delete[] copy;
}

void Numbers(const std::string& bytes, const CString& text) {
  // whatever was read writes back to itself
  int i = CString2Int(text);
  Check(CString2Int(Int2CString(i)) == i && Bytes2Int(Int2Bytes(i)) == i && Utf82Int(Int2Utf8(i)) == i,
        "an int reads back differently");
  unsigned long long u = Bytes2DWORD64(bytes);
  Check(Bytes2DWORD64(DWORD642Bytes(u)) == u && Utf82DWORD64(DWORD642Utf8(u)) == u, "a number reads back differently");
  unsigned long long s = CString2DWORD64(text);
  Check(CString2DWORD64(DWORD642CString(s)) == s, "a 64-bit number reads back differently");
  CString2UInt(text);
  string2int(bytes.c_str());
  const char* end = nullptr;
  unsigned value = xatol(bytes.data(), static_cast<unsigned>(bytes.size()), &end);
  Check(end == nullptr || (end >= bytes.data() && end < bytes.data() + bytes.size()), "xatol ends outside the text");
  if (end == nullptr && !bytes.empty() && bytes.size() < 10)
    Check(ultoa10(value) == std::to_string(std::stoul(bytes)), "xatol reads other digits");
  if (IsInteger(text) && text.GetLength() <= 18) {
    long long exact = std::stoll(CString_to_utf8(text));
    Check(CString2Int(text) == (exact > INT_MAX   ? INT_MAX
                                : exact < INT_MIN ? INT_MIN
                                                  : exact),
          "an integer reads wrong");
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size == 0) return 0;
  static const char* const kDelimiters[] = {",", ";", " ", "\r\n", "=", "||", "ab", "\xe4\xb8\xad", ""};
  static const unsigned kCodePages[] = {0, 936, 65001, 1252, 950};
  const unsigned selector = data[0];
  const std::string bytes(reinterpret_cast<const char*>(data) + 1, size - 1);
  const CString text = utf8_to_CString(bytes);
  toolkit::SetAnsiCodePage(selector & 1 ? 936 : 65001);

  Splits(bytes, text, kDelimiters[selector % std::size(kDelimiters)]);
  Trims(bytes);
  Decoders(bytes, kCodePages[(selector / 16) % std::size(kCodePages)]);
  Numbers(bytes, text);
  return 0;
}
