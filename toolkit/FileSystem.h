#pragma once
// Folder and file operations beneath the library's file utilities, over backslash paths.
// The Windows half calls the Win32 functions of the same names; the POSIX half gives the
// same answers (a link is removed, never followed, when a folder is removed).
#include "toolkit/CString.h"
#include "toolkit/export.h"
#include "toolkit/platform.h"

namespace toolkit {

constexpr DWORD kInvalidAttributes = 0xFFFFFFFF;

MIVO_COMMON_API DWORD GetAttributes(const wchar_t* path);  // kInvalidAttributes when missing
MIVO_COMMON_API bool SetAttributes(const wchar_t* path, DWORD attributes);
MIVO_COMMON_API bool CreateFolder(const wchar_t* path);  // one level, as CreateDirectory
// Removes an empty folder, or a link to a folder without touching its target.
MIVO_COMMON_API bool RemoveFolder(const wchar_t* path);
MIVO_COMMON_API bool DeleteFileAt(const wchar_t* path);
// Renames `from` over `to` in one step (MoveFileEx with replacing / rename); false, as on
// Windows, when `to` is read-only.
MIVO_COMMON_API bool ReplaceFileWith(const wchar_t* from, const wchar_t* to);
MIVO_COMMON_API bool GetFileLength(const wchar_t* path, ULONGLONG& length);
MIVO_COMMON_API bool GetDiskFreeBytes(const wchar_t* path, ULONGLONG& freeBytes);
// The running executable's full path.
MIVO_COMMON_API CString GetModulePath();
// The debugger output: OutputDebugStringW on Windows, while a debugger or a debug-output
// monitor listens (nobody else can see it). Elsewhere the text goes to standard
// error when the environment variable MIVO_DEBUG_OUTPUT is set, and nowhere otherwise, as
// OutputDebugString goes nowhere without a debugger.
MIVO_COMMON_API void OutputDebugText(const wchar_t* text);
// The system's text for an error number (GetLastError / errno).
MIVO_COMMON_API CString ErrorText(long error);
MIVO_COMMON_API long LastError();
// The running process's id (GetCurrentProcessId / getpid).
MIVO_COMMON_API unsigned long CurrentProcessId();

}  // namespace toolkit
