#pragma once
// The scratch folder of a benchmark process: one folder under the system's temp folder
// (mivo_bench_<name>_<pid>), made on first use and removed with everything in it when the
// process ends normally.
#include <unistd.h>

#include <filesystem>
#include <string>
#include <system_error>

namespace bench {

class ScratchFolder {
 public:
  explicit ScratchFolder(const std::string& name)
      : m_dir(std::filesystem::temp_directory_path() / ("mivo_bench_" + name + "_" + std::to_string(getpid()))) {
    std::filesystem::create_directories(m_dir);
  }
  ~ScratchFolder() {
    std::error_code ec;
    std::filesystem::remove_all(m_dir, ec);
  }
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;

  const std::filesystem::path& Dir() const { return m_dir; }

 private:
  std::filesystem::path m_dir;
};

// The process's one scratch folder, removed at exit.
inline const std::filesystem::path& Scratch(const std::string& name) {
  static ScratchFolder folder(name);
  return folder.Dir();
}

}  // namespace bench
