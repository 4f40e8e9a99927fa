// Runs a fuzz target without libFuzzer: every file of the corpus folders named on the command
// line goes once through LLVMFuzzerTestOneInput, in name order. This is how the tests replay
// the kept corpora with any compiler. A missing or empty folder fails the run, so a corpus
// that went astray cannot pass as replayed.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <system_error>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);
// Optional in a target; null when it does not define one.
extern "C" __attribute__((weak)) int LLVMFuzzerInitialize(int* argc, char*** argv);

int main(int argc, char** argv) {
  if (argc < 2) {
    std::fprintf(stderr, "usage: %s <corpus folder>...\n", argv[0]);
    return 2;
  }
  if (LLVMFuzzerInitialize) LLVMFuzzerInitialize(&argc, &argv);
  size_t total = 0;
  for (int a = 1; a < argc; ++a) {
    std::error_code ec;
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(argv[a], ec))
      if (entry.is_regular_file()) files.push_back(entry.path());
    if (ec || files.empty()) {
      std::fprintf(stderr, "%s: no inputs in %s\n", argv[0], argv[a]);
      return 1;
    }
    std::sort(files.begin(), files.end());
    for (const auto& file : files) {
      std::ifstream in(file, std::ios::binary);
      std::vector<char> bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
      if (!in.eof() && in.fail()) {
        std::fprintf(stderr, "%s: cannot read %s\n", argv[0], file.c_str());
        return 1;
      }
      // a copy of exactly the file's size, so a read past the input is caught; like libFuzzer,
      // an empty input still comes with a valid pointer
      std::vector<uint8_t> input(bytes.begin(), bytes.end());
      static const uint8_t kNothing = 0;
      LLVMFuzzerTestOneInput(input.empty() ? &kNothing : input.data(), input.size());
    }
    std::printf("%s: %zu inputs\n", argv[a], files.size());
    total += files.size();
  }
  std::printf("ran %zu inputs\n", total);
  return 0;
}
