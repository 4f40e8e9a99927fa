#pragma once
// Code-page conversion beneath CString and the library's conversion functions.
// Code pages are Windows numbers on every platform: 0 is the process's ANSI code page,
// 65001 UTF-8, 936 GBK, 950 Big5, ...  Windows converts with MultiByteToWideChar and
// WideCharToMultiByte (flags 0); elsewhere iconv does it, with UTF-8 done here.
// Like the Windows calls with flags 0, bytes that are invalid in the code page become
// U+FFFD and characters the code page lacks become '?'; an unknown code page fails.
#include <cstddef>
#include <string>

#include "toolkit/CString.h"
#include "toolkit/export.h"

namespace toolkit {

MIVO_COMMON_API bool MultiByteToWide(unsigned codePage, const char* bytes, size_t length, std::wstring& out);
MIVO_COMMON_API bool WideToMultiByte(unsigned codePage, const wchar_t* text, size_t length, std::string& out);
// The same conversion straight into a CString's own buffer, with no copy in between.
MIVO_COMMON_API bool MultiByteToWide(unsigned codePage, const char* bytes, size_t length, CString& out);

// The process's ANSI code page (GetACP on Windows). Elsewhere it is 65001 unless a test or
// the environment variable MIVO_ANSI_CODEPAGE sets another.
MIVO_COMMON_API unsigned GetAnsiCodePage();
// No effect on Windows, where the code page belongs to the system.
MIVO_COMMON_API void SetAnsiCodePage(unsigned codePage);

// Case mapping of one character, for all scripts the platform knows.
MIVO_COMMON_API wchar_t ToLowerChar(wchar_t ch);
MIVO_COMMON_API wchar_t ToUpperChar(wchar_t ch);

}  // namespace toolkit
