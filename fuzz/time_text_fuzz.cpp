// Feeds arbitrary UTF-8 to ConverCString2CTime. Whatever it accepts must be a time that the
// library's own stamp forms write back exactly as the input: a text read as some other time
// (a rolled-over date, a skipped hour, a lost field) is a finding.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "common/Conversion.h"
#include "common/TimeUtil.h"

namespace {
void Check(bool ok, const char* what) {
  if (ok) return;
  std::fprintf(stderr, "time_text_fuzz: %s\n", what);
  std::abort();
}
}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size > 256) return 0;  // the longest stamp is 21 characters
  CString text = mivo::common::utf8_to_CString(std::string(reinterpret_cast<const char*>(data), size));
  CTime time(7);
  if (!mivo::common::ConverCString2CTime(text, time)) {
    Check(time.GetTime() == 7, "a refused text changed the result");
    return 0;
  }
  const wchar_t* const forms[] = {L"%Y-%m-%d %H:%M:%S", L"%Y/%m/%d %H:%M:%S", L"[%Y/%m/%d %H:%M:%S]",
                                  L"%y-%m-%d %H:%M:%S"};
  bool same = false;
  for (const wchar_t* form : forms) same = same || time.Format(form) == text;
  Check(same, "an accepted text does not format back as itself");
  return 0;
}
