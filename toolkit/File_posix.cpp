// POSIX half of the file layer: file descriptors in HANDLE, UTF-8 slash paths.
#include <errno.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>

#include "toolkit/Exception.h"
#include "toolkit/File.h"
#include "toolkit/FileSys.h"
#include "toolkit/Utf8.h"

namespace toolkit::sys {
namespace {

int Fd(HANDLE h) { return static_cast<int>(reinterpret_cast<intptr_t>(h)); }
HANDLE Handle(int fd) { return reinterpret_cast<HANDLE>(static_cast<intptr_t>(fd)); }

bool Fail(Error& error) {
  error.osError = errno;
  error.cause = CauseFromErrno(errno);
  return false;
}

}  // namespace

int CauseFromErrno(int err) {
  switch (err) {
    case ENOENT:
      return CFileException::fileNotFound;
    case ENOTDIR:
    case ENAMETOOLONG:
    case ELOOP:
      return CFileException::badPath;
    case EMFILE:
    case ENFILE:
      return CFileException::tooManyOpenFiles;
    case EACCES:
    case EPERM:
    case EROFS:
    case EISDIR:
      return CFileException::accessDenied;
    case EBADF:
      return CFileException::invalidFile;
    case ENOSPC:
      return CFileException::diskFull;
    case EBUSY:
    case ETXTBSY:
      return CFileException::sharingViolation;
    case EIO:
      return CFileException::hardIO;
    default:
      return CFileException::genericException;
  }
}

std::string ToNativePath(const wchar_t* path) {
  std::string out;
  if (!path) return out;
  std::wstring wide(path);
  for (auto& c : wide)
    if (c == L'\\') c = L'/';
  WideToUtf8(wide.data(), wide.size(), out);
  return out;
}

std::wstring FromNativePath(const std::string& path) {
  std::wstring out;
  Utf8ToWide(path.data(), path.size(), out);
  for (auto& c : out)
    if (c == L'/') c = L'\\';
  return out;
}

HANDLE OpenFile(const wchar_t* path, unsigned flags, Error& error) {
  int oflags = O_CLOEXEC;
  switch (flags & 3) {
    case CFile::modeWrite:
      oflags |= O_WRONLY;
      break;
    case CFile::modeReadWrite:
      oflags |= O_RDWR;
      break;
    default:
      oflags |= O_RDONLY;
      break;
  }
  if (flags & CFile::modeCreate) oflags |= O_CREAT | ((flags & CFile::modeNoTruncate) ? 0 : O_TRUNC);
  if (flags & CFile::modeAppend) oflags |= O_APPEND;
  std::string native = ToNativePath(path);
  int fd = ::open(native.c_str(), oflags, 0666);
  if (fd < 0) {
    Fail(error);
    return CFile::hFileNull;
  }
  struct stat st;
  if (::fstat(fd, &st) == 0 && S_ISDIR(st.st_mode)) {  // a folder is not a file, as on Windows
    ::close(fd);
    error.osError = EISDIR;
    error.cause = CFileException::accessDenied;
    return CFile::hFileNull;
  }
  return Handle(fd);
}

bool ReadFile(HANDLE h, void* buffer, unsigned count, unsigned& read, Error& error) {
  read = 0;
  while (true) {
    ssize_t n = ::read(Fd(h), buffer, count);
    if (n >= 0) {
      read = static_cast<unsigned>(n);
      return true;
    }
    if (errno != EINTR) return Fail(error);
  }
}

bool WriteFile(HANDLE h, const void* buffer, unsigned count, Error& error) {
  const char* p = static_cast<const char*>(buffer);
  while (count > 0) {
    ssize_t n = ::write(Fd(h), p, count);
    if (n < 0) {
      if (errno == EINTR) continue;
      return Fail(error);
    }
    p += n;
    count -= static_cast<unsigned>(n);
  }
  return true;
}

bool SeekFile(HANDLE h, long long offset, unsigned from, unsigned long long& position, Error& error) {
  int whence = from == CFile::current ? SEEK_CUR : from == CFile::end ? SEEK_END : SEEK_SET;
  off_t r = ::lseek(Fd(h), static_cast<off_t>(offset), whence);
  if (r < 0) {
    Fail(error);
    if (errno == EINVAL) error.cause = CFileException::badSeek;
    return false;
  }
  position = static_cast<unsigned long long>(r);
  return true;
}

bool FileLength(HANDLE h, unsigned long long& length, Error& error) {
  struct stat st;
  if (::fstat(Fd(h), &st) != 0) return Fail(error);
  length = static_cast<unsigned long long>(st.st_size);
  return true;
}

bool SetFileLength(HANDLE h, unsigned long long length, Error& error) {
  if (::ftruncate(Fd(h), static_cast<off_t>(length)) != 0) return Fail(error);
  return true;
}

bool FlushFile(HANDLE h, Error& error) {
  if (::fsync(Fd(h)) != 0 && errno != EINVAL) return Fail(error);
  return true;
}

bool CloseFile(HANDLE h, Error& error) {
  if (::close(Fd(h)) != 0) return Fail(error);
  return true;
}

bool RemoveFile(const wchar_t* path, Error& error) {
  std::string native = ToNativePath(path);
  struct stat st;
  if (::lstat(native.c_str(), &st) == 0 && S_ISDIR(st.st_mode)) {  // DeleteFile refuses folders
    error.osError = EISDIR;
    error.cause = CFileException::accessDenied;
    return false;
  }
  if (::unlink(native.c_str()) != 0) return Fail(error);
  return true;
}

bool RenameFile(const wchar_t* from, const wchar_t* to, Error& error) {
  std::string a = ToNativePath(from), b = ToNativePath(to);
  struct stat st;
  if (::lstat(b.c_str(), &st) == 0) {  // MoveFile does not replace an existing target
    error.osError = EEXIST;
    error.cause = CFileException::accessDenied;
    return false;
  }
  if (::rename(a.c_str(), b.c_str()) != 0) return Fail(error);
  return true;
}

}  // namespace toolkit::sys
