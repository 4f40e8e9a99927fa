#pragma once
// Counts per tag, kept in a file of the per-user data folder (GetAppDataPath) and shared by
// every process of the user: each change is a read-modify-write of the whole file under a
// cross-process lock (a named mutex on Windows, flock natively), saved atomically with
// SaveFile, so two processes adding at once lose no increment and a crash leaves the old or
// the new file, never half of one. Nothing is cached: every call reads the file.
//
// A module keeps its own store by giving its own file name. The file is UTF-8:
//   "MivoStat 1\n", then one line "<count>\t<tag>\n" per tag, tags in code-point order,
//   counts in decimal without leading zeros, and in tags "\\" "\t" "\n" "\r" written as
//   "\\\\" "\\t" "\\n" "\\r".
// A file that is not exactly this (a bad line, a repeated tag, invalid UTF-8, a bound
// exceeded) is damaged: it reads as empty and the trace log says so; the next change
// rewrites it with just that change.
//
// Bounds: a tag is 1 to kMaxTagChars characters; the file at most kMaxFileBytes. A change that
// would pass either is refused. Counts stop at 2^63 - 1.
//
// Thread safety: any number of CStatStore objects, in any threads and processes, may work on
// the same file at once.
#include <string>
#include <vector>

#include "toolkit/CString.h"
#include "toolkit/export.h"

namespace mivo::common {

struct CStatEntry {
  CString tag;
  long long count = 0;
};

class MIVO_COMMON_API CStatStore {
 public:
  static constexpr int kMaxTagChars = 256;
  static constexpr unsigned long long kMaxFileBytes = 1u << 20;
  static constexpr unsigned kLockTimeoutMs = 10000;

  // The store `fileName` (a plain file name, default "stats.dat") in the per-user data folder,
  // or in `folder` (ending in "\") when one is given. A name with a path separator, "." or
  // ".." makes a store on which every call fails.
  explicit CStatStore(const wchar_t* fileName = L"stats.dat", const wchar_t* folder = nullptr);

  // Adds n (0 or more) to the tag's count; the new count, or -1 when refused (bad tag,
  // negative n, the file bound) or the file could not be locked, read or saved.
  long long Add(const wchar_t* tag, long long n = 1);
  // The tag's count; 0 for an unknown tag, -1 when the store cannot be read.
  long long Get(const wchar_t* tag) const;
  // Every tag with its count, in code-point order of the tags. false when the store cannot
  // be read (a damaged file reads as empty and gives true).
  bool Enumerate(std::vector<CStatEntry>& entries) const;
  // Forget one tag, or all. false when the file could not be locked or saved.
  bool Reset(const wchar_t* tag);
  bool ResetAll();

  CString GetPath() const { return m_path; }  // empty for an invalid name

 private:
  CString m_path;
};

namespace detail {
// The file format, apart from the files. Parse gives false (and why) for a damaged text;
// Serialize writes the entries in tag order (of a repeated tag, the last).
bool ParseStatFile(const std::string& bytes, std::vector<CStatEntry>& entries, const char** why);
std::string SerializeStatFile(const std::vector<CStatEntry>& entries);

// Platform half: the cross-process lock of one store file; null when it cannot be taken
// (on Windows within CStatStore::kLockTimeoutMs; natively the wait has no limit, as the
// kernel frees the lock of a process that dies).
struct StatLock;
StatLock* LockStatFile(const CString& path);
void UnlockStatFile(StatLock* lock);
}  // namespace detail

}  // namespace mivo::common
