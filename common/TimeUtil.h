#pragma once
// Reading back the time stamps the library writes into its logs.
#include "toolkit/CString.h"
#include "toolkit/Time.h"
#include "toolkit/export.h"

namespace mivo::common {

// Reads a local time written in one of the library's own forms, and nothing else:
//   "YYYY-MM-DD HH:MM:SS"      the plain stamp
//   "[YYYY/MM/DD HH:MM:SS]"    the trace log's line stamp, with or without its brackets
//   "YY-MM-DD HH:MM:SS"        the update trace's "Trace Start" stamp; 70..99 are 1970..1999,
//                              00..69 are 2000..2069
// Every field has exactly its digits (ASCII only): no signs, blanks, missing or extra
// characters. The date must exist (leap years counted), the year lie in 1970..3000, and the
// local time exist in the time zone (not skipped by a daylight-saving change) and be no
// earlier than 1970-01-01 00:00:00 UTC. Returns true with `out` set; false otherwise, with
// `out` untouched. Never throws; safe to call from any thread.
MIVO_COMMON_API bool ConverCString2CTime(const CString& text, CTime& out);

}  // namespace mivo::common
