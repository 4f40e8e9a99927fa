// Stands in for findstr, which Wine ships as a stub: "findstr [/i] pattern" copies the
// lines of standard input that match. The pattern's ".*" matches any run of characters;
// everything else is literal.
#include <cctype>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

namespace {

bool Matches(const std::string& line, const std::vector<std::string>& parts, bool ignoreCase) {
  auto fold = [ignoreCase](std::string s) {
    if (ignoreCase)
      for (auto& c : s) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return s;
  };
  std::string text = fold(line);
  size_t at = 0;
  for (const auto& part : parts) {
    size_t hit = text.find(fold(part), at);
    if (hit == std::string::npos) return false;
    at = hit + part.size();
  }
  return true;
}

}  // namespace

int main(int argc, char** argv) {
  bool ignoreCase = false;
  const char* pattern = nullptr;
  for (int i = 1; i < argc; ++i) {
    if (_stricmp(argv[i], "/i") == 0)
      ignoreCase = true;
    else
      pattern = argv[i];
  }
  if (!pattern) return 2;
  std::vector<std::string> parts;
  std::string p(pattern);
  for (size_t start = 0;;) {
    size_t star = p.find(".*", start);
    parts.push_back(p.substr(start, star == std::string::npos ? std::string::npos : star - start));
    if (star == std::string::npos) break;
    start = star + 2;
  }
  bool any = false;
  char buf[4096];
  while (std::fgets(buf, sizeof buf, stdin)) {
    std::string line(buf);
    if (Matches(line, parts, ignoreCase)) {
      std::fputs(buf, stdout);
      any = true;
    }
  }
  return any ? 0 : 1;
}
