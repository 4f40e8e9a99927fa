#pragma once
// A fresh folder for one test, removed afterwards. Path() is the folder in the backslash
// form the library uses, ending in a backslash.
#include <atomic>
#include <chrono>
#include <filesystem>
#include <string>
#include <system_error>

#include "toolkit/CString.h"
#include "toolkit/Utf8.h"

namespace testing_support {

class TempDir {
 public:
  TempDir() {
    static std::atomic<int> counter{0};
    auto stamp = std::chrono::steady_clock::now().time_since_epoch().count();
    m_native = std::filesystem::temp_directory_path() /
               ("mivo_test_" + std::to_string(stamp) + "_" + std::to_string(counter++));
    std::filesystem::create_directories(m_native);
  }
  ~TempDir() {
    std::error_code ec;
    // restore write permission so read-only test files can go
    for (auto it = std::filesystem::recursive_directory_iterator(m_native, ec);
         !ec && it != std::filesystem::recursive_directory_iterator(); it.increment(ec)) {
      std::filesystem::permissions(it->path(), std::filesystem::perms::owner_all, std::filesystem::perm_options::add,
                                   ec);
    }
    std::filesystem::remove_all(m_native, ec);
  }
  TempDir(const TempDir&) = delete;
  TempDir& operator=(const TempDir&) = delete;

  const std::filesystem::path& Native() const { return m_native; }
  CString Path() const {
    std::wstring w = m_native.wstring();
    for (auto& c : w)
      if (c == L'/') c = L'\\';
    if (w.empty() || w.back() != L'\\') w.push_back(L'\\');
    return CString(w.c_str());
  }
  // the native path of an absolute backslash path
  static std::filesystem::path ToNative(const CString& absolute) {
    std::wstring w = absolute.GetString();
#if defined(_WIN32)
    return std::filesystem::path(w);
#else
    for (auto& c : w)
      if (c == L'\\') c = L'/';
    std::string utf8;
    toolkit::WideToUtf8(w.data(), w.size(), utf8);
    return std::filesystem::path(utf8);
#endif
  }
  // the native path of a backslash path inside the folder
  std::filesystem::path NativeOf(const CString& relative) const {
    std::wstring w = relative.GetString();
    for (auto& c : w)
      if (c == L'\\') c = L'/';
#if defined(_WIN32)
    return m_native / std::filesystem::path(w);
#else
    std::string utf8;
    toolkit::WideToUtf8(w.data(), w.size(), utf8);  // file names are UTF-8 here
    return m_native / std::filesystem::path(utf8);
#endif
  }

 private:
  std::filesystem::path m_native;
};

}  // namespace testing_support
