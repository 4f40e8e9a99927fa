#pragma once
// The platform half beneath CFile and CFileFind. Not exported; internal to the toolkit.
#include <cstdint>
#include <string>

#include "toolkit/platform.h"

namespace toolkit::sys {

struct Error {
  int cause = 0;     // CFileException cause
  long osError = 0;  // errno or GetLastError
};

HANDLE OpenFile(const wchar_t* path, unsigned flags, Error& error);  // CFile::hFileNull on failure
bool ReadFile(HANDLE h, void* buffer, unsigned count, unsigned& read, Error& error);
bool WriteFile(HANDLE h, const void* buffer, unsigned count, Error& error);
bool SeekFile(HANDLE h, long long offset, unsigned from, unsigned long long& position, Error& error);
bool FileLength(HANDLE h, unsigned long long& length, Error& error);
bool SetFileLength(HANDLE h, unsigned long long length, Error& error);
bool FlushFile(HANDLE h, Error& error);
bool CloseFile(HANDLE h, Error& error);
bool RemoveFile(const wchar_t* path, Error& error);
bool RenameFile(const wchar_t* from, const wchar_t* to, Error& error);

#if !defined(_WIN32)
// Backslash paths of the portable code to the system's UTF-8 slash paths, and back.
std::string ToNativePath(const wchar_t* path);
std::wstring FromNativePath(const std::string& path);
// errno to a CFileException cause
int CauseFromErrno(int err);
#endif

}  // namespace toolkit::sys
