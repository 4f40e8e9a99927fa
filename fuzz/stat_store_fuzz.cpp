// Feeds arbitrary bytes to the statistics store as its file. Reading must not crash; a file
// that reads is in the one canonical form, so it writes back byte for byte; a damaged one
// reads as empty; and an increment on top of either leaves a file that reads again.
#include <unistd.h>

#include <climits>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <system_error>
#include <vector>

#include "common/StatStore.h"
#include "toolkit/FileSys.h"

namespace {

namespace mc = mivo::common;

void Check(bool ok, const char* what) {
  if (!ok) {
    std::fprintf(stderr, "stat_store_fuzz: %s\n", what);
    std::abort();
  }
}

struct Folder {
  Folder() : dir(std::filesystem::temp_directory_path() / ("mivo_stat_store_fuzz_" + std::to_string(getpid()))) {
    std::filesystem::create_directories(dir);
    path = CString((toolkit::sys::FromNativePath(dir.string()) + L"\\").c_str());
  }
  ~Folder() {
    std::error_code ec;
    std::filesystem::remove_all(dir, ec);
  }
  std::filesystem::path dir;
  CString path;
};

bool Same(const std::vector<mc::CStatEntry>& a, const std::vector<mc::CStatEntry>& b) {
  if (a.size() != b.size()) return false;
  for (size_t i = 0; i < a.size(); ++i)
    if (a[i].tag != b[i].tag || a[i].count != b[i].count) return false;
  return true;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static Folder folder;
  std::string bytes(reinterpret_cast<const char*>(data), size);
  std::ofstream(folder.dir / "stats.dat", std::ios::binary | std::ios::trunc) << bytes;

  std::vector<mc::CStatEntry> parsed, read;
  const char* why = nullptr;
  bool valid = mc::detail::ParseStatFile(bytes, parsed, &why);
  Check(valid || (parsed.empty() && why), "a damaged file without a reason, or with entries");
  if (valid) Check(mc::detail::SerializeStatFile(parsed) == bytes, "what was read does not write back the same");

  mc::CStatStore store(L"stats.dat", folder.path.GetString());
  Check(store.Enumerate(read), "the store could not be read");
  Check(Same(read, parsed), "the store reads otherwise than the parser");

  long long before = 0;
  for (const auto& entry : parsed)
    if (entry.tag == L"fuzz") before = entry.count;
  long long after = store.Add(L"fuzz");
  // the one refusal allowed: a file at its size bound
  Check(after == (before == LLONG_MAX ? LLONG_MAX : before + 1) || (after == -1 && bytes.size() > 1000000),
        "the increment went wrong");
  std::ifstream in(folder.dir / "stats.dat", std::ios::binary);
  std::string written((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  Check(mc::detail::ParseStatFile(written, read, &why), "the store wrote a file it cannot read");
  return 0;
}
