// Feeds arbitrary bytes to the string-table loader (UTF-8, or UTF-16 behind FF FE) and looks
// up a few ids; any crash, overrun or undefined behaviour is a finding. A table that loaded
// must load the same a second time (the loader keeps no state between loads).
#include <cstdint>
#include <string>

#include "common/MutiLanSupport.h"
#include "fuzz/FuzzTemp.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static fuzz::TempFolder folder("string_table_fuzz");
  static const CString path = folder.Path("table.ini");
  folder.Write("table.ini", std::string(reinterpret_cast<const char*>(data), size));
  CMutiLanSupport* lang = CMutiLanSupport::GetInstance();
  const wchar_t* const ids[] = {L"STRID_EIM_NAME", L"", L"a", L"STRID_X"};
  CString first[4];
  lang->ClearAll();
  lang->LoadStringTable(path);
  for (int i = 0; i < 4; ++i) first[i] = lang->GetStringViaID(ids[i]);
  lang->ClearAll();
  lang->LoadStringTable(path);
  for (int i = 0; i < 4; ++i)
    fuzz::Check(lang->GetStringViaID(ids[i]) == first[i], "string_table_fuzz", "a second load reads differently");
  return 0;
}
