#pragma once
// Splitting, joining, trimming and formatting of text.
#include <list>
#include <string>
#include <vector>

#include "toolkit/CString.h"
#include "toolkit/Collections.h"
#include "toolkit/export.h"

namespace mivo::common {

// Lower-case hexadecimal, two digits a byte, high nibble first.
MIVO_COMMON_API std::string bin2hex(const void* data, unsigned int len);
MIVO_COMMON_API std::string bin2hex(const std::string& data);

// Trim the characters " \t\n\r" in place.
MIVO_COMMON_API void string_trim_left(std::string& s);
MIVO_COMMON_API void string_trim_right(std::string& s);
MIVO_COMMON_API void string_trim(std::string& s);
// strcmp of upper-cased copies (per byte), as zero-terminated strings.
MIVO_COMMON_API int string_compare_no_case(const std::string& a, const std::string& b);
// Replaces every occurrence, left to right, without rescanning the replacement.
MIVO_COMMON_API void string_replace(std::string& s, const std::string& from, const std::string& to);
MIVO_COMMON_API std::string string_safe_cast(const std::string* s);
MIVO_COMMON_API std::string string_safe_cast(const char* s);

// string_split appends the pieces between the delimiters, empty ones included, and the rest
// after the last delimiter; it returns their number, or 0 (appending nothing) when the
// delimiter does not occur. string_split2 skips empty pieces and, when the delimiter does not
// occur, appends the whole text as one piece (if it is not empty); it returns the number
// appended. An empty delimiter splits nothing (0).
MIVO_COMMON_API int string_split(const std::string& s, const std::string& delimiter, std::list<std::string>& out);
MIVO_COMMON_API int string_split2(const std::string& s, const std::string& delimiter, std::list<std::string>& out);

// printf-style, with the Windows conventions of the toolkit's formatter; a null format gives "".
MIVO_COMMON_API std::string StringFormat(const char* format, ...);
MIVO_COMMON_API std::wstring WstringFormat(const wchar_t* format, ...);

// A copy without "\n", "\r" and "\t".
MIVO_COMMON_API CString GetNoFormatedString(const CString& text);

// Split at a separator: 0 (output emptied) for an empty text or separator; otherwise every
// piece, empty ones included, untrimmed, and 1.
MIVO_COMMON_API int AnalyzeString(const CString& text, wchar_t separator, CStringList& out);
MIVO_COMMON_API int AnalyzeString(const CString& text, wchar_t separator, CStringArray& out);
MIVO_COMMON_API int AnalyzeString(const CString& text, const CString& separator, CStringList& out);
MIVO_COMMON_API int AnalyzeString(const CString& text, const CString& separator, CStringArray& out);
MIVO_COMMON_API int AnalyzeString(const CString& text, const CString& separator, std::vector<CString>& out);

// key=value lines: key and value trimmed, the value cut before ';' (not trimmed again),
// pieces after a second '=' dropped, lines without '=' skipped, later keys win.
// 0 for an empty list, else 1.
MIVO_COMMON_API int AnalyzeStringTable(const CStringList& lines, CMapStringToString& table);

MIVO_COMMON_API CString CombineString(const CStringArray& items, const CString& separator);
MIVO_COMMON_API bool IsStringInList(const std::list<CString>& items, const CString& text);  // ignores case
MIVO_COMMON_API bool IsStringInArray(const CStringArray& items, const CString& text);       // exact

}  // namespace mivo::common
