#pragma once
// Whole files as bytes, for setting up and checking test files.
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace testing_support {

inline void Write(const std::filesystem::path& p, const std::string& bytes) {
  if (p.has_parent_path()) std::filesystem::create_directories(p.parent_path());
  std::ofstream(p, std::ios::binary) << bytes;
}

inline std::string Read(const std::filesystem::path& p) {
  std::ifstream in(p, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), {});
}

}  // namespace testing_support
