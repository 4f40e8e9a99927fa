// Windows half of the file layer: CreateFileW and friends.
#include <windows.h>

#include "toolkit/Exception.h"
#include "toolkit/File.h"
#include "toolkit/FileSys.h"

namespace toolkit::sys {
namespace {

int CauseFromError(DWORD err) {
  switch (err) {
    case ERROR_FILE_NOT_FOUND:
      return CFileException::fileNotFound;
    case ERROR_PATH_NOT_FOUND:
    case ERROR_INVALID_NAME:
    case ERROR_BAD_PATHNAME:
    case ERROR_FILENAME_EXCED_RANGE:
      return CFileException::badPath;
    case ERROR_TOO_MANY_OPEN_FILES:
      return CFileException::tooManyOpenFiles;
    case ERROR_ACCESS_DENIED:
    case ERROR_WRITE_PROTECT:
    case ERROR_ALREADY_EXISTS:
      return CFileException::accessDenied;
    case ERROR_INVALID_HANDLE:
      return CFileException::invalidFile;
    case ERROR_CURRENT_DIRECTORY:
      return CFileException::removeCurrentDir;
    case ERROR_CANNOT_MAKE:
      return CFileException::directoryFull;
    case ERROR_SEEK:
    case ERROR_NEGATIVE_SEEK:
      return CFileException::badSeek;
    case ERROR_SHARING_VIOLATION:
      return CFileException::sharingViolation;
    case ERROR_LOCK_VIOLATION:
      return CFileException::lockViolation;
    case ERROR_HANDLE_DISK_FULL:
    case ERROR_DISK_FULL:
      return CFileException::diskFull;
    case ERROR_HANDLE_EOF:
      return CFileException::endOfFile;
    default:
      return CFileException::genericException;
  }
}

bool Fail(Error& error) {
  DWORD err = GetLastError();
  error.osError = static_cast<long>(err);
  error.cause = CauseFromError(err);
  return false;
}

}  // namespace

HANDLE OpenFile(const wchar_t* path, unsigned flags, Error& error) {
  DWORD access = GENERIC_READ;
  switch (flags & 3) {
    case CFile::modeWrite:
      access = GENERIC_WRITE;
      break;
    case CFile::modeReadWrite:
      access = GENERIC_READ | GENERIC_WRITE;
      break;
    default:
      break;
  }
  // appending: all the rights of writing but the one to write anywhere but at the end
  if ((flags & CFile::modeAppend) && (access & GENERIC_WRITE))
    access = (access & ~GENERIC_WRITE) | (FILE_GENERIC_WRITE & ~FILE_WRITE_DATA);
  DWORD share = 0;
  switch (flags & 0x70) {
    case CFile::shareDenyWrite:
      share = FILE_SHARE_READ;
      break;
    case CFile::shareDenyRead:
      share = FILE_SHARE_WRITE;
      break;
    case CFile::shareDenyNone:
      share = FILE_SHARE_READ | FILE_SHARE_WRITE;
      break;
    default:
      break;  // compatibility and exclusive both lock others out
  }
  DWORD disposition = OPEN_EXISTING;
  if (flags & CFile::modeCreate) disposition = (flags & CFile::modeNoTruncate) ? OPEN_ALWAYS : CREATE_ALWAYS;
  SECURITY_ATTRIBUTES sa = {sizeof(sa), nullptr, (flags & CFile::modeNoInherit) ? FALSE : TRUE};
  HANDLE h = CreateFileW(path, access, share, &sa, disposition, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (h == INVALID_HANDLE_VALUE) {
    Fail(error);
    return CFile::hFileNull;
  }
  return h;
}

bool ReadFile(HANDLE h, void* buffer, unsigned count, unsigned& read, Error& error) {
  DWORD got = 0;
  read = 0;
  if (!::ReadFile(h, buffer, count, &got, nullptr)) return Fail(error);
  read = got;
  return true;
}

bool WriteFile(HANDLE h, const void* buffer, unsigned count, Error& error) {
  DWORD written = 0;
  if (!::WriteFile(h, buffer, count, &written, nullptr)) return Fail(error);
  if (written != count) {
    error.osError = ERROR_DISK_FULL;
    error.cause = CFileException::diskFull;
    return false;
  }
  return true;
}

bool SeekFile(HANDLE h, long long offset, unsigned from, unsigned long long& position, Error& error) {
  LARGE_INTEGER dist, result;
  dist.QuadPart = offset;
  DWORD method = from == CFile::current ? FILE_CURRENT : from == CFile::end ? FILE_END : FILE_BEGIN;
  if (!SetFilePointerEx(h, dist, &result, method)) return Fail(error);
  position = static_cast<unsigned long long>(result.QuadPart);
  return true;
}

bool FileLength(HANDLE h, unsigned long long& length, Error& error) {
  LARGE_INTEGER size;
  if (!GetFileSizeEx(h, &size)) return Fail(error);
  length = static_cast<unsigned long long>(size.QuadPart);
  return true;
}

bool SetFileLength(HANDLE h, unsigned long long length, Error& error) {
  unsigned long long old = 0;
  if (!SeekFile(h, 0, CFile::current, old, error)) return false;
  unsigned long long ignored;
  if (!SeekFile(h, static_cast<long long>(length), CFile::begin, ignored, error)) return false;
  bool ok = SetEndOfFile(h) != FALSE;
  if (!ok) Fail(error);
  SeekFile(h, static_cast<long long>(old), CFile::begin, ignored, error);
  return ok;
}

bool FlushFile(HANDLE h, Error& error) {
  if (!FlushFileBuffers(h)) return Fail(error);
  return true;
}

bool CloseFile(HANDLE h, Error& error) {
  if (!CloseHandle(h)) return Fail(error);
  return true;
}

bool RemoveFile(const wchar_t* path, Error& error) {
  if (!DeleteFileW(path)) return Fail(error);
  return true;
}

bool RenameFile(const wchar_t* from, const wchar_t* to, Error& error) {
  if (!MoveFileW(from, to)) return Fail(error);
  return true;
}

}  // namespace toolkit::sys
