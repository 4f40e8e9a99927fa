// POSIX half of the folder and file operations.
#include <errno.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <string>

#include "toolkit/FileSys.h"
#include "toolkit/FileSystem.h"
#include "toolkit/Utf8.h"

namespace toolkit {

DWORD GetAttributes(const wchar_t* path) {
  if (!path || !*path) return kInvalidAttributes;
  std::string native = sys::ToNativePath(path);
  struct stat st;
  if (::lstat(native.c_str(), &st) != 0) return kInvalidAttributes;
  DWORD a = 0;
  if (S_ISLNK(st.st_mode)) {
    a |= FILE_ATTRIBUTE_REPARSE_POINT;
    struct stat target;
    if (::stat(native.c_str(), &target) == 0 && S_ISDIR(target.st_mode)) a |= FILE_ATTRIBUTE_DIRECTORY;
  } else if (S_ISDIR(st.st_mode)) {
    a |= FILE_ATTRIBUTE_DIRECTORY;
  } else {
    a |= FILE_ATTRIBUTE_ARCHIVE;
  }
  if (!(st.st_mode & S_IWUSR)) a |= FILE_ATTRIBUTE_READONLY;
  // a dot-name is what a hidden file looks like here
  const wchar_t* slash = std::wcsrchr(path, L'\\');
  const wchar_t* name = slash ? slash + 1 : path;
  if (name[0] == L'.' && std::wcscmp(name, L".") != 0 && std::wcscmp(name, L"..") != 0) a |= FILE_ATTRIBUTE_HIDDEN;
  return a;
}

bool SetAttributes(const wchar_t* path, DWORD attributes) {
  std::string native = sys::ToNativePath(path);
  struct stat st;
  if (::stat(native.c_str(), &st) != 0) return false;
  mode_t mode = st.st_mode & 07777;
  mode = (attributes & FILE_ATTRIBUTE_READONLY) ? (mode & ~(S_IWUSR | S_IWGRP | S_IWOTH)) : (mode | S_IWUSR);
  return ::chmod(native.c_str(), mode) == 0;  // "hidden" has no meaning here
}

bool CreateFolder(const wchar_t* path) {
  if (!path || !*path) return false;
  return ::mkdir(sys::ToNativePath(path).c_str(), 0777) == 0;
}

bool RemoveFolder(const wchar_t* path) {
  if (!path || !*path) return false;
  std::string native = sys::ToNativePath(path);
  while (native.size() > 1 && native.back() == '/') native.pop_back();
  struct stat st;
  if (::lstat(native.c_str(), &st) != 0) return false;
  if (S_ISLNK(st.st_mode)) return ::unlink(native.c_str()) == 0;
  return ::rmdir(native.c_str()) == 0;
}

bool DeleteFileAt(const wchar_t* path) {
  sys::Error e;
  return path && sys::RemoveFile(path, e);
}

bool ReplaceFileWith(const wchar_t* from, const wchar_t* to) {
  if (!from || !to) return false;
  // rename() replaces a read-only file; MoveFileEx does not, and the callers count on that
  DWORD target = GetAttributes(to);
  if (target != kInvalidAttributes && (target & FILE_ATTRIBUTE_READONLY)) {
    errno = EACCES;
    return false;
  }
  return ::rename(sys::ToNativePath(from).c_str(), sys::ToNativePath(to).c_str()) == 0;
}

bool GetFileLength(const wchar_t* path, ULONGLONG& length) {
  length = 0;
  if (!path || !*path) return false;
  struct stat st;
  if (::stat(sys::ToNativePath(path).c_str(), &st) != 0 || S_ISDIR(st.st_mode)) return false;
  length = static_cast<ULONGLONG>(st.st_size);
  return true;
}

bool GetDiskFreeBytes(const wchar_t* path, ULONGLONG& freeBytes) {
  freeBytes = 0;
  if (!path || !*path) return false;
  struct statvfs vfs;
  if (::statvfs(sys::ToNativePath(path).c_str(), &vfs) != 0) return false;
  freeBytes = static_cast<ULONGLONG>(vfs.f_bavail) * vfs.f_frsize;
  return true;
}

CString GetModulePath() {
  std::string buf(4096, '\0');
  ssize_t n = ::readlink("/proc/self/exe", buf.data(), buf.size() - 1);
  if (n <= 0) return CString();
  buf.resize(static_cast<size_t>(n));
  return CString(sys::FromNativePath(buf).c_str());
}

void OutputDebugText(const wchar_t* text) {
  static const bool enabled = std::getenv("MIVO_DEBUG_OUTPUT") != nullptr;
  if (!enabled || !text) return;
  std::string utf8;
  WideToUtf8(text, std::wcslen(text), utf8);
  std::fwrite(utf8.data(), 1, utf8.size(), stderr);
}

CString ErrorText(long error) {
  std::string text = std::strerror(static_cast<int>(error));
  std::wstring wide;
  Utf8ToWide(text.data(), text.size(), wide);
  return CString(wide.c_str());
}

long LastError() { return errno; }

unsigned long CurrentProcessId() { return static_cast<unsigned long>(::getpid()); }

}  // namespace toolkit
