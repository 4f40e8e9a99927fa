// Feeds arbitrary bytes to the string-table loader (UTF-8, or UTF-16 behind FF FE) and looks
// up a few ids; any crash, overrun or undefined behaviour is a finding.
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <string>

#include "common/MutiLanSupport.h"
#include "toolkit/FileSys.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const std::string path = "/tmp/mivo_string_table_fuzz_" + std::to_string(getpid()) + ".ini";
  FILE* f = std::fopen(path.c_str(), "wb");
  if (!f) return 0;
  std::fwrite(data, 1, size, f);
  std::fclose(f);
  CMutiLanSupport* lang = CMutiLanSupport::GetInstance();
  lang->ClearAll();
  lang->LoadStringTable(toolkit::sys::FromNativePath(path).c_str());
  for (const wchar_t* id : {L"STRID_EIM_NAME", L"", L"a", L"STRID_X"}) lang->GetStringViaID(id).GetLength();
  return 0;
}
