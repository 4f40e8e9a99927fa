// A module as a client developer writes one: it includes the library's one header and
// calls exported functions, which live in MivoStart.exe.
#include <windows.h>

#include <cstring>

#include "common/common.h"

namespace {
int CopyOut(const std::string& s, char* out, unsigned outSize) {
  if (!out || outSize <= s.size()) return -1;
  std::memcpy(out, s.c_str(), s.size() + 1);
  return static_cast<int>(s.size());
}
}  // namespace

extern "C" __declspec(dllexport) int ModuleHex(const void* data, unsigned len, char* out, unsigned outSize) {
  return CopyOut(mivo::common::bin2hex(data, len), out, outSize);
}

extern "C" __declspec(dllexport) int ModuleUtf8(const wchar_t* text, char* out, unsigned outSize) {
  return CopyOut(mivo::common::CString_to_utf8(CString(text)), out, outSize);
}
