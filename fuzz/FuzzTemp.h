#pragma once
// Scratch files of a fuzz target: one folder per process under the system's temp folder
// (mivo_<target>_<pid>), emptied and removed when the process ends normally. A crashing run
// leaves its folder behind for inspection.
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <system_error>
#include <vector>

#include "toolkit/CString.h"
#include "toolkit/FileSys.h"

namespace fuzz {

class TempFolder {
 public:
  explicit TempFolder(const char* target)
      : m_dir(std::filesystem::temp_directory_path() /
              ("mivo_" + std::string(target) + "_" + std::to_string(getpid()))) {
    std::filesystem::create_directories(m_dir);
  }
  ~TempFolder() {
    std::error_code ec;
    std::filesystem::remove_all(m_dir, ec);
  }
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;

  const std::filesystem::path& Dir() const { return m_dir; }
  std::filesystem::path Native(const char* name) const { return m_dir / name; }
  // The library's backslash form of a file in the folder; "" names the folder itself with its
  // trailing backslash.
  CString Path(const char* name) const {
    std::wstring folder = toolkit::sys::FromNativePath(m_dir.string()) + L"\\";
    return CString((folder + toolkit::sys::FromNativePath(name)).c_str());
  }
  void Write(const char* name, const std::string& bytes) const {
    std::ofstream(m_dir / name, std::ios::binary | std::ios::trunc) << bytes;
  }

 private:
  std::filesystem::path m_dir;
};

// The input cut at its first most-1 zero bytes into `most` parts (missing ones empty), so one
// input can carry several texts.
inline std::vector<std::string> SplitAtNul(const std::string& bytes, size_t most) {
  std::vector<std::string> parts;
  size_t at = 0;
  while (parts.size() + 1 < most) {
    size_t nul = bytes.find('\0', at);
    if (nul == std::string::npos) break;
    parts.push_back(bytes.substr(at, nul - at));
    at = nul + 1;
  }
  parts.push_back(bytes.substr(at));
  parts.resize(most);
  return parts;
}

inline void Check(bool ok, const char* target, const char* what) {
  if (!ok) {
    std::fprintf(stderr, "%s: %s\n", target, what);
    std::abort();
  }
}

}  // namespace fuzz
