#include "common/TimeUtil.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "common/Conversion.h"

namespace mivo::common {
namespace {

TEST(TimeUtil, ReadsOnlyTheLibrarysOwnStamps) {
  struct Row {
    const wchar_t* text;
    bool ok;
    const wchar_t* as;  // the canonical text of what was read
  } const rows[] = {
      {L"2026-11-24 20:44:11", true, L"2026-11-24 20:44:11"},
      {L"2026/11/24 20:44:11", true, L"2026-11-24 20:44:11"},
      {L"[2026/11/24 20:44:11]", true, L"2026-11-24 20:44:11"},
      {L"26-11-24 20:44:11", true, L"2026-11-24 20:44:11"},
      {L"70-01-02 00:00:00", true, L"1970-01-02 00:00:00"},
      {L"69-12-31 23:59:59", true, L"2069-12-31 23:59:59"},
      {L"2000-02-29 00:00:00", true, L"2000-02-29 00:00:00"},
      {L"2024-02-29 23:59:59", true, L"2024-02-29 23:59:59"},
      {L"3000-12-30 12:00:00", true, L"3000-12-30 12:00:00"},
      {L"1900-02-29 00:00:00", false, nullptr},  // not a leap year, and before 1970
      {L"2100-02-29 00:00:00", false, nullptr},  // not a leap year
      {L"2023-02-29 00:00:00", false, nullptr},
      {L"2024-02-30 00:00:00", false, nullptr},
      {L"2024-04-31 00:00:00", false, nullptr},
      {L"2024-00-10 00:00:00", false, nullptr},
      {L"2024-13-10 00:00:00", false, nullptr},
      {L"2024-01-00 00:00:00", false, nullptr},
      {L"2024-01-01 24:00:00", false, nullptr},
      {L"2024-01-01 23:60:00", false, nullptr},
      {L"2024-01-01 23:59:60", false, nullptr},
      {L"1969-12-31 23:59:59", false, nullptr},
      {L"3001-01-01 00:00:00", false, nullptr},
      {L"2024-01-01 00:00:00x", false, nullptr},
      {L"2024-01-01 00:00:00 ", false, nullptr},
      {L" 2024-01-01 00:00:00", false, nullptr},
      {L"2024-01-01 00:00", false, nullptr},
      {L"2024-01-01", false, nullptr},
      {L"2024-1-01 00:00:00", false, nullptr},
      {L"2024-01-01 0:00:000", false, nullptr},
      {L"2024-01-+1 00:00:00", false, nullptr},
      {L"-024-01-01 00:00:00", false, nullptr},
      {L"2024-01-01 00:00:-0", false, nullptr},
      {L"2024-01-01T00:00:00", false, nullptr},
      {L"2024-01/01 00:00:00", false, nullptr},
      {L"2024-01-01 00-00-00", false, nullptr},
      {L"[2024-01-01 00:00:00]", false, nullptr},  // the trace writes slashes
      {L"[2024/01/01 00:00:00", false, nullptr},
      {L"24/01/01 00:00:00", false, nullptr},         // the update trace writes dashes
      {L"\uff12024-01-01 00:00:00", false, nullptr},  // a full-width digit
      {L"", false, nullptr},
  };
  const CTime untouched(12345);
  for (const Row& row : rows) {
    CTime read = untouched;
    ASSERT_EQ(ConverCString2CTime(row.text, read), row.ok) << CString_to_utf8(row.text);
    if (row.ok)
      EXPECT_STREQ(read.Format(L"%Y-%m-%d %H:%M:%S"), row.as);
    else
      EXPECT_EQ(read, untouched);
  }
  // an embedded terminator cuts the text short of its length
  CTime read;
  EXPECT_FALSE(ConverCString2CTime(CString(L"2024-01-01 00:00:00\0", 20), read));
}

TEST(TimeUtil, RoundTripsWhatFormatWrites) {
  const wchar_t* const forms[] = {L"%Y-%m-%d %H:%M:%S", L"[%Y/%m/%d %H:%M:%S]", L"%y-%m-%d %H:%M:%S"};
  for (std::time_t t = 86400; t < 4102444800; t += 7777777) {  // 1970-01-02 .. 2100
    CTime time(t);
    for (const wchar_t* form : forms) {
      CTime read;
      CString text = time.Format(form);
      ASSERT_TRUE(ConverCString2CTime(text, read)) << CString_to_utf8(text);
      // the ambiguous hour when clocks go back may read as its other instance
      EXPECT_STREQ(read.Format(form), text);
      if (form[1] == L'y') continue;  // two digits of year lose the century beyond 2069
      EXPECT_LE(std::abs(read.GetTime() - t), 3600) << CString_to_utf8(text);
    }
  }
}

#if !defined(_WIN32)
// A local time that the spring change skips does not exist: refused, not moved an hour on.
TEST(TimeUtil, RefusesTheHourSkippedByDaylightSaving) {
  const char* old = std::getenv("TZ");
  std::string saved = old ? old : "";
  setenv("TZ", "Europe/Berlin", 1);
  tzset();
  CTime read;
  bool skipped = ConverCString2CTime(L"2024-03-31 02:30:00", read);
  bool before = ConverCString2CTime(L"2024-03-31 01:59:59", read);
  bool after = ConverCString2CTime(L"2024-03-31 03:00:00", read);
  if (old)
    setenv("TZ", saved.c_str(), 1);
  else
    unsetenv("TZ");
  tzset();
  EXPECT_FALSE(skipped);
  EXPECT_TRUE(before);
  EXPECT_TRUE(after);
}
#endif

}  // namespace
}  // namespace mivo::common
