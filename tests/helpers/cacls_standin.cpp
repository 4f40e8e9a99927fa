// Stands in for the system's cacls, which does nothing under Wine. Called with a folder and
// "/e [/t] /g everyone:F" it records the call and grants once MIVO_CACLS_GRANT_AFTER calls
// (default 1) have been made on that folder; called with a folder alone it prints what
// cacls would print: the everyone entry only once granted.
#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

// A folder written "C:\dir\" in quotes reaches argv as C:\dir" (backslash-quote is an escaped
// quote to the runtime's parser): drop the stray quote and the trailing backslash.
std::wstring Trimmed(std::wstring folder) {
  while (!folder.empty() && (folder.back() == L'\\' || folder.back() == L'"' || folder.back() == L' '))
    folder.pop_back();
  return folder;
}

int CountLines(const std::wstring& path) {
  FILE* f = _wfopen(path.c_str(), L"rb");
  if (!f) return 0;
  int n = 0;
  for (int c; (c = std::fgetc(f)) != EOF;) n += c == '\n';
  std::fclose(f);
  return n;
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
  if (argc < 2) return 1;
  std::wstring folder = Trimmed(argv[1]);
  bool grant = false;
  for (int i = 2; i < argc; ++i) grant = grant || _wcsicmp(argv[i], L"/g") == 0;
  std::wstring log = folder + L"\\cacls_calls.txt", marker = folder + L"\\cacls_granted";
  if (grant) {
    if (FILE* f = _wfopen(log.c_str(), L"ab")) {  // the command line in UTF-8, one a line
      const wchar_t* line = GetCommandLineW();
      int n = WideCharToMultiByte(CP_UTF8, 0, line, -1, nullptr, 0, nullptr, nullptr);
      std::string utf8(static_cast<size_t>(n > 0 ? n - 1 : 0), '\0');
      if (n > 1) WideCharToMultiByte(CP_UTF8, 0, line, -1, utf8.data(), n, nullptr, nullptr);
      std::fprintf(f, "%s\n", utf8.c_str());
      std::fclose(f);
    }
    int after = 1;
    if (const char* env = std::getenv("MIVO_CACLS_GRANT_AFTER")) after = std::atoi(env);
    if (CountLines(log) >= after) {
      if (FILE* f = _wfopen(marker.c_str(), L"wb")) std::fclose(f);
    }
    std::printf("processed dir: %ls\n", folder.c_str());
    return 0;
  }
  DWORD attributes = GetFileAttributesW(marker.c_str());
  bool granted = attributes != INVALID_FILE_ATTRIBUTES;
  std::printf("%ls BUILTIN\\Users:(OI)(CI)R\n", folder.c_str());
  if (granted) std::printf("%*s Everyone:(OI)(CI)F\n", static_cast<int>(folder.size()), "");
  return 0;
}
