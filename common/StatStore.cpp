#include "common/StatStore.h"

#include <climits>
#include <cwchar>
#include <map>
#include <new>
#include <string>

#include "common/AppPath.h"
#include "common/Conversion.h"
#include "common/FileUtil.h"
#include "common/Trace.h"
#include "toolkit/Utf8.h"

namespace mivo::common {
namespace {

constexpr char kHeader[] = "MivoStat 1\n";
using Counts = std::map<std::string, long long>;  // UTF-8 tag; byte order is code-point order

// The tag's UTF-8 form, or false when it is empty, too long or not valid text (a lone
// surrogate would not come back from UTF-8 as it went in).
bool TagToUtf8(const wchar_t* tag, std::string& utf8) {
  if (!tag) return false;
  size_t length = std::wcslen(tag);
  if (length == 0 || length > static_cast<size_t>(CStatStore::kMaxTagChars)) return false;
  toolkit::WideToUtf8(tag, length, utf8);
  std::wstring back;
  toolkit::Utf8ToWide(utf8.data(), utf8.size(), back);
  return back.size() == length && back.compare(0, length, tag, length) == 0;
}

bool ParseCounts(const std::string& bytes, Counts& counts, const char** why) {
  auto fail = [&](const char* reason) {
    counts.clear();
    if (why) *why = reason;
    return false;
  };
  if (bytes.size() > CStatStore::kMaxFileBytes) return fail("too large");
  if (bytes.compare(0, sizeof kHeader - 1, kHeader) != 0) return fail("no header");
  size_t at = sizeof kHeader - 1;
  const std::string* previous = nullptr;
  while (at < bytes.size()) {
    size_t end = bytes.find('\n', at);
    if (end == std::string::npos) return fail("cut short");
    long long count = 0;
    size_t digits = at;
    for (; digits < end && bytes[digits] >= '0' && bytes[digits] <= '9'; ++digits) {
      int d = bytes[digits] - '0';
      if (count > (LLONG_MAX - d) / 10) return fail("count too large");
      count = count * 10 + d;
    }
    if (digits == at || (bytes[at] == '0' && digits - at > 1)) return fail("bad count");
    if (digits == end || bytes[digits] != '\t') return fail("no tab after the count");
    std::string tag;
    for (size_t i = digits + 1; i < end; ++i) {
      char c = bytes[i];
      // a zero could never come from a tag (they are zero-terminated) nor go back into one
      if (c == '\t' || c == '\r' || c == '\0') return fail("unescaped character in a tag");
      if (c == '\\') {
        if (++i == end) return fail("bad escape");
        c = bytes[i] == '\\' ? '\\' : bytes[i] == 't' ? '\t' : bytes[i] == 'n' ? '\n' : bytes[i] == 'r' ? '\r' : 0;
        if (!c) return fail("bad escape");
      }
      tag.push_back(c);
    }
    std::wstring wide;
    toolkit::Utf8ToWide(tag.data(), tag.size(), wide);
    std::string back;
    toolkit::WideToUtf8(wide.data(), wide.size(), back);
    if (back != tag) return fail("tag not UTF-8");
    if (wide.empty() || wide.size() > static_cast<size_t>(CStatStore::kMaxTagChars)) return fail("bad tag length");
    if (previous && !(*previous < tag)) return fail("tags out of order or repeated");
    previous = &counts.emplace_hint(counts.end(), std::move(tag), count)->first;
    at = end + 1;
  }
  return true;
}

std::string SerializeCounts(const Counts& counts) {
  std::string out = kHeader;
  for (const auto& [tag, count] : counts) {
    out += std::to_string(count);
    out += '\t';
    for (char c : tag) {
      const char* escape = c == '\\' ? "\\\\" : c == '\t' ? "\\t" : c == '\n' ? "\\n" : c == '\r' ? "\\r" : nullptr;
      if (escape)
        out += escape;
      else
        out += c;
    }
    out += '\n';
  }
  return out;
}

class Locked {
 public:
  explicit Locked(const CString& path) : m_lock(path.IsEmpty() ? nullptr : detail::LockStatFile(path)) {
    if (!m_lock && !path.IsEmpty() && g_ITrace)
      g_ITrace->Trace(3, true, L"CStatStore %s: the store's lock was not granted", path.GetString());
  }
  ~Locked() {
    if (m_lock) detail::UnlockStatFile(m_lock);
  }
  explicit operator bool() const { return m_lock != nullptr; }

 private:
  detail::StatLock* m_lock;
};

// Under the lock: the store's counts. false only when an existing file cannot be read; a
// damaged one gives true with no counts, and a trace line.
bool ReadCounts(const CString& path, Counts& counts) {
  counts.clear();
  if (!IsFileExist(path)) return true;
  std::string bytes;
  const char* why = "too large";
  if (!LoadFileWithin(path, bytes, CStatStore::kMaxFileBytes)) {
    if (GetFileSize(path) <= CStatStore::kMaxFileBytes) return false;
  } else if (ParseCounts(bytes, counts, &why)) {
    return true;
  }
  if (g_ITrace) g_ITrace->Trace(3, true, L"CStatStore %s is damaged (%S), read as empty", path.GetString(), why);
  return true;
}

bool WriteCounts(const CString& path, const Counts& counts) {
  std::string bytes = SerializeCounts(counts);
  return bytes.size() <= CStatStore::kMaxFileBytes && SaveFile(path, bytes);
}

}  // namespace

CStatStore::CStatStore(const wchar_t* fileName, const wchar_t* folder) {
  try {
    CString name = fileName ? fileName : L"";
    if (name.IsEmpty() || name == L"." || name == L".." || name.FindOneOf(L"\\/:") >= 0) return;
    CString base = folder ? CString(folder) : GetAppDataPath();
    if (base.IsEmpty()) return;
    if (base.Right(1) != L"\\") base += L"\\";
    m_path = base + name;
  } catch (...) {
    m_path.Empty();
  }
}

long long CStatStore::Add(const wchar_t* tag, long long n) {
  try {
    std::string key;
    if (n < 0 || !TagToUtf8(tag, key)) return -1;
    Locked lock(m_path);
    Counts counts;
    if (!lock || !ReadCounts(m_path, counts)) return -1;
    long long& count = counts[key];
    count = count > LLONG_MAX - n ? LLONG_MAX : count + n;
    long long result = count;
    if (count == 0) counts.erase(key);  // nothing to keep
    return WriteCounts(m_path, counts) ? result : -1;
  } catch (...) {  // out of memory
    return -1;
  }
}

long long CStatStore::Get(const wchar_t* tag) const {
  try {
    std::string key;
    if (!TagToUtf8(tag, key)) return 0;
    Locked lock(m_path);
    Counts counts;
    if (!lock || !ReadCounts(m_path, counts)) return -1;
    auto it = counts.find(key);
    return it == counts.end() ? 0 : it->second;
  } catch (...) {
    return -1;
  }
}

bool CStatStore::Enumerate(std::vector<CStatEntry>& entries) const {
  try {
    entries.clear();
    Locked lock(m_path);
    Counts counts;
    if (!lock || !ReadCounts(m_path, counts)) return false;
    for (const auto& [tag, count] : counts) entries.push_back({utf8_to_CString(tag), count});
    return true;
  } catch (...) {
    entries.clear();
    return false;
  }
}

bool CStatStore::Reset(const wchar_t* tag) {
  try {
    std::string key;
    if (!TagToUtf8(tag, key)) return false;
    Locked lock(m_path);
    Counts counts;
    if (!lock || !ReadCounts(m_path, counts)) return false;
    return counts.erase(key) == 0 || WriteCounts(m_path, counts);
  } catch (...) {
    return false;
  }
}

bool CStatStore::ResetAll() {
  try {
    Locked lock(m_path);
    return lock && WriteCounts(m_path, Counts());
  } catch (...) {
    return false;
  }
}

namespace detail {

bool ParseStatFile(const std::string& bytes, std::vector<CStatEntry>& entries, const char** why) {
  entries.clear();
  Counts counts;
  if (!ParseCounts(bytes, counts, why)) return false;
  for (const auto& [tag, count] : counts) entries.push_back({utf8_to_CString(tag), count});
  return true;
}

std::string SerializeStatFile(const std::vector<CStatEntry>& entries) {
  Counts counts;
  for (const auto& entry : entries) {
    std::string key;
    TagToUtf8(entry.tag.GetString(), key);
    counts[key] = entry.count;
  }
  return SerializeCounts(counts);
}

}  // namespace detail

}  // namespace mivo::common
