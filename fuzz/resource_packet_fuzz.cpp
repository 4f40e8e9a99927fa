// Arbitrary bytes as a resource packet file: opened read-only, listed, every entry read. Any
// crash, overrun or undefined behaviour is a finding, and so is a listed stream that reads
// back at another size, or a packet that lists differently when opened a second time.
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <system_error>
#include <vector>

#include "common/ResourcePacket.h"
#include "toolkit/Utf8.h"

namespace {

namespace mc = mivo::common;

// One scratch file per process, removed when the process ends normally.
struct Scratch {
  std::filesystem::path native =
      std::filesystem::temp_directory_path() / ("mivo_resource_packet_fuzz_" + std::to_string(getpid()) + ".pkt");
  CString path;
  Scratch() {
    std::wstring wide;
    const std::string text = native.string();
    toolkit::Utf8ToWide(text.data(), text.size(), wide);
    path = wide.c_str();
  }
  ~Scratch() {
    std::error_code ec;
    std::filesystem::remove(native, ec);
  }
};

void Check(bool ok, const char* what) {
  if (!ok) {
    std::fprintf(stderr, "resource_packet_fuzz: %s\n", what);
    std::abort();
  }
}

bool Same(const std::vector<mc::ResourcePacketEntry>& a, const std::vector<mc::ResourcePacketEntry>& b) {
  if (a.size() != b.size()) return false;
  for (size_t i = 0; i < a.size(); ++i)
    if (a[i].path != b[i].path || a[i].folder != b[i].folder || a[i].size != b[i].size) return false;
  return true;
}

}  // namespace

// libgsf 1.14.50 loses a directory entry it refuses while opening some damaged files (inside
// gsf_infile_msole_new, not in our code); that leak is not a finding here, any other is. GLib
// has no frame pointers, so only the slow unwinder sees that far up the stack.
extern "C" const char* __lsan_default_suppressions() { return "leak:gsf_infile_msole_new\n"; }
extern "C" const char* __asan_default_options() { return "fast_unwind_on_malloc=0"; }

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static Scratch scratch;
  std::ofstream(scratch.native, std::ios::binary | std::ios::trunc)
      .write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
  mc::CResourcePacket packet;
  std::vector<mc::ResourcePacketEntry> entries;
  if (!packet.Open(scratch.path, false) || !packet.List(entries)) return 0;
  for (const auto& entry : entries) {
    std::string bytes;
    if (!entry.folder && packet.Read(entry.path, bytes, 1u << 20))
      Check(bytes.size() == entry.size, "an entry read at another size than listed");
  }
  packet.Close();
  std::vector<mc::ResourcePacketEntry> again;
  Check(packet.Open(scratch.path, false) && packet.List(again) && Same(entries, again),
        "a second open lists differently");
  return 0;
}
