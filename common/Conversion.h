#pragma once
// Conversions between the three string kinds (CString, std::string bytes, std::wstring)
// and between numbers and text. A null or empty input gives an empty result; a failed
// conversion gives an empty result or 0; nothing here throws.
// ANSI means the process's default multi-byte code page (code page 0).
#include <string>

#include "toolkit/CString.h"
#include "toolkit/export.h"
#include "toolkit/platform.h"

namespace mivo::common {

MIVO_COMMON_API std::string CString2MBCS(const CString& text, int codePage);
MIVO_COMMON_API CString MBCS2CString(const char* bytes, int codePage);  // up to the first NUL
MIVO_COMMON_API CString MBCS2CString(char* bytes, int codePage);
MIVO_COMMON_API CString MBCS2CString(const std::string& bytes, int codePage);
MIVO_COMMON_API CString utf8_to_CString(const char* utf8);
MIVO_COMMON_API CString utf8_to_CString(char* utf8);
MIVO_COMMON_API CString utf8_to_CString(const std::string& utf8);
MIVO_COMMON_API std::string CString_to_utf8(const CString& text);
MIVO_COMMON_API std::wstring String2Wstring(const std::string& ansi);  // drops one leading U+FEFF
MIVO_COMMON_API std::string Wstring2String(const std::wstring& text);
MIVO_COMMON_API std::string String2UTF8(const std::string& ansi);
MIVO_COMMON_API std::string UTF82String(const std::string& utf8);

// Numbers. The parsers follow the C runtime's atoi family: leading blanks, an optional
// sign, decimal digits; 0 when there are none; out-of-range values clamp.
MIVO_COMMON_API int CString2Int(const CString& text);
MIVO_COMMON_API CString Int2CString(int value);                  // "%d"
MIVO_COMMON_API ULONGLONG CString2DWORD64(const CString& text);  // signed 64-bit parse
MIVO_COMMON_API CString DWORD642CString(ULONGLONG value);        // "%I64d"
MIVO_COMMON_API ULONGLONG CString2UInt(const CString& text);     // base 0: 0x hex, 0 octal
MIVO_COMMON_API CString UInt2CString(ULONGLONG value);           // "%I64d", signed on purpose
MIVO_COMMON_API std::string Int2Bytes(int value);                // decimal text, ANSI
MIVO_COMMON_API std::string UInt2Bytes(unsigned int value);      // "%d" too: 4294967295 is "-1"
MIVO_COMMON_API int Bytes2Int(const std::string& text);
MIVO_COMMON_API std::string DWORD642Bytes(ULONGLONG value);        // "%I64u"
MIVO_COMMON_API ULONGLONG Bytes2DWORD64(const std::string& text);  // unsigned decimal parse
MIVO_COMMON_API std::string Int2Utf8(int value);
MIVO_COMMON_API int Utf82Int(const std::string& text);
MIVO_COMMON_API std::string DWORD642Utf8(ULONGLONG value);
MIVO_COMMON_API ULONGLONG Utf82DWORD64(const std::string& text);
MIVO_COMMON_API int string2int(const std::string* text);  // null gives 0
MIVO_COMMON_API int string2int(const char* text);         // null gives 0
MIVO_COMMON_API std::string ultoa10(unsigned int value);

// Reads decimal digits from at most `len` bytes of `s`: no sign, no blanks, wrapping at
// 2^32. `*end` (when given) points at the first byte not consumed, or is null when all
// `len` bytes were digits.
MIVO_COMMON_API unsigned int xatol(const char* s, unsigned int len, const char** end);

// True for an optional '+' or '-' followed by one or more ASCII digits and nothing else
// (no blanks, no range limit). Null or empty is false.
MIVO_COMMON_API bool IsInteger(const wchar_t* text);

// A new zero-terminated copy of the text (allocated with new[]; the caller frees it with
// delete[]) and its length in characters, terminator excluded.
MIVO_COMMON_API wchar_t* GetWideCharFromMultiByte(const CString& text, int& length);

}  // namespace mivo::common
