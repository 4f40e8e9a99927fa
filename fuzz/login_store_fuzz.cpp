// Feeds arbitrary bytes to the login-user store: as "start.txt", where reading must not crash
// and what was read must write and read back stably, and as a client's nickname reply, as it
// comes and behind the client's own "account:" prefix (so the reply parser is reached on every
// input), which must be handled within its size whatever it holds and never yield a nickname
// longer than the reply.
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <system_error>

#include "Execute/LoginUserStore.h"
#include "toolkit/FileSys.h"

namespace {

void Check(bool ok, const char* what) {
  if (!ok) {
    std::fprintf(stderr, "login_store_fuzz: %s\n", what);
    std::abort();
  }
}

// One client, "a@gmail.com", whose reply to the nickname request is the fuzz input.
class OneClient : public IClientWindows {
 public:
  LoginUserStore* store = nullptr;
  std::string reply;
  HWND NextMainWindow(HWND previous) override { return previous ? nullptr : reinterpret_cast<HWND>(1); }
  HWND FindTrayWindow(HWND) override { return reinterpret_cast<HWND>(2); }
  bool IsLiveWindow(HWND) override { return true; }
  CString GetText(HWND) override { return L"a@gmail.com"; }
  bool SendCopyData(HWND, WPARAM, const void*, size_t, unsigned) override {
    // a copy of exactly the payload's size, so reading past it is caught
    std::string payload = reply;
    store->OnNicknameReply(payload.empty() ? nullptr : payload.data(), payload.size());
    return true;
  }
};

struct Folder {
  Folder() : dir(std::filesystem::temp_directory_path() / ("mivo_login_store_fuzz_" + std::to_string(getpid()))) {
    std::filesystem::create_directories(dir);
    path = CString((toolkit::sys::FromNativePath(dir.string()) + L"\\").c_str());
  }
  ~Folder() {
    std::error_code ec;
    std::filesystem::remove_all(dir, ec);
  }
  void Write(const std::string& bytes) const { std::ofstream(dir / "start.txt", std::ios::binary) << bytes; }
  std::filesystem::path dir;
  CString path;
};

bool Same(const LoginUserStore& a, const LoginUserStore& b) {
  return a.GetChoice() == b.GetChoice() && a.GetLastUser() == b.GetLastUser() && a.StoredUsers() == b.StoredUsers();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static Folder folder;
  std::string bytes(reinterpret_cast<const char*>(data), size);

  OneClient windows;
  folder.Write(bytes);
  LoginUserStore first(folder.path, &windows);
  Check(first.GetChoice() == 0 || first.GetChoice() == 1, "choice out of range");
  // what was read once writes back to itself from then on
  folder.Write(first.SerializeStartFile());
  LoginUserStore second(folder.path, &windows);
  folder.Write(second.SerializeStartFile());
  LoginUserStore third(folder.path, &windows);
  Check(Same(second, third), "the store does not read back what it wrote");

  windows.store = &first;
  for (const std::string& reply : {bytes, "a@gmail.com:" + bytes}) {
    windows.reply = reply;
    first.RefreshRunningClients();
    Check(first.RunningClients().size() <= 1, "more clients than windows");
    for (const auto& entry : first.RunningClients()) {
      Check(!entry.second.nickname.IsEmpty(), "kept without a nickname");
      Check(static_cast<size_t>(entry.second.nickname.GetLength()) < reply.size(), "a nickname longer than its reply");
    }
  }
  return 0;
}
