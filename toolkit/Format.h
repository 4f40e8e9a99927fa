#pragma once
// printf-style formatting with the Windows conventions on every platform:
//  - in a wide format %s and %c take wide text, %S and %C narrow (ANSI) text;
//    in a narrow format it is the other way round; h forces narrow, l and w force wide;
//  - %I64d/%I64u/%I64x take 64-bit integers, %I32 32-bit, %I pointer-sized;
//  - %p prints the pointer as upper-case hexadecimal padded to its full width;
//  - %n writes nothing. A null string argument prints "(null)".
// Numbers are laid out by the C library; strings and characters here.
#include <cstdarg>
#include <cstddef>
#include <string>

#include "toolkit/export.h"

namespace toolkit {

MIVO_COMMON_API std::wstring FormatWide(const wchar_t* format, va_list args);
MIVO_COMMON_API std::string FormatNarrow(const char* format, va_list args);
// The same text as FormatWide, cut to fit `capacity` - 1 characters and zero-terminated in
// `buffer`, with no allocation for the common directives. Returns the characters written.
MIVO_COMMON_API size_t FormatWideInto(wchar_t* buffer, size_t capacity, const wchar_t* format, va_list args);

}  // namespace toolkit
