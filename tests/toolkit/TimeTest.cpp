#include "toolkit/Time.h"

#include <gtest/gtest.h>

#include "toolkit/Exception.h"

namespace {

TEST(Time, FormatCodesAgainstKnownInstants) {
  const wchar_t* const kAll = L"%a %A %b %B %c|%d %H %I %j %m %M %p %S %U %w %W %x %X %y %Y %%";
  struct Row {
    std::time_t time;
    const wchar_t* expected;
  } const rows[] = {
      {1234567890,
       L"Fri Friday Feb February 02/13/09 23:31:30|13 23 11 044 02 31 PM 30 06 5 06 02/13/09 23:31:30 09 2009 %"},
      {0, L"Thu Thursday Jan January 01/01/70 00:00:00|01 00 12 001 01 00 AM 00 00 4 00 01/01/70 00:00:00 70 1970 %"},
      {951829205,
       L"Tue Tuesday Feb February 02/29/00 13:00:05|29 13 01 060 02 00 PM 05 09 2 09 02/29/00 13:00:05 00 2000 %"}};
  for (const Row& row : rows) EXPECT_STREQ(CTime(row.time).FormatGmt(kAll), row.expected) << row.time;
  // "#" drops the zeros; unknown codes and a lone "%" at the end stay as written
  EXPECT_STREQ(CTime(0).FormatGmt(L"%#d/%#m/%#j %Q %#Q %"), L"1/1/1 %Q %#Q %");
  EXPECT_STREQ(CTime(-1).Format(L"%Y"), L"");
  EXPECT_STREQ(CTime(0).Format(nullptr), L"");
}

TEST(Time, PartsRoundTripThroughLocalTime) {
  struct Row {
    int y, mo, d, h, mi, s, weekday;
  } const rows[] = {{2000, 2, 29, 12, 0, 0, 3},
                    {2026, 11, 24, 23, 59, 59, 3},
                    {1999, 12, 31, 0, 0, 0, 6},
                    {2038, 1, 19, 3, 14, 8, 3},
                    {3000, 1, 1, 12, 0, 0, 4}};
  for (const Row& r : rows) {
    CTime t(r.y, r.mo, r.d, r.h, r.mi, r.s);
    int got[] = {t.GetYear(), t.GetMonth(), t.GetDay(), t.GetHour(), t.GetMinute(), t.GetSecond(), t.GetDayOfWeek()};
    int want[] = {r.y, r.mo, r.d, r.h, r.mi, r.s, r.weekday};
    for (int i = 0; i < 7; ++i) EXPECT_EQ(got[i], want[i]) << r.y << "-" << r.mo << "-" << r.d << " part " << i;
    EXPECT_EQ(CTime(t.GetTime()), t);
  }
}

TEST(Time, PartsOutOfRangeThrowInvalidArg) {
  const int rows[][6] = {{1969, 12, 31, 0, 0, 0}, {3001, 1, 1, 0, 0, 0},  {2020, 0, 1, 0, 0, 0},
                         {2020, 13, 1, 0, 0, 0},  {2020, 1, 0, 0, 0, 0},  {2020, 1, 32, 0, 0, 0},
                         {2020, 1, 1, 24, 0, 0},  {2020, 1, 1, 0, 60, 0}, {2020, 1, 1, 0, 0, 60},
                         {2020, 1, 1, -1, 0, 0}};
  for (const auto& r : rows) {
    bool thrown = false;
    try {
      CTime(r[0], r[1], r[2], r[3], r[4], r[5]);
    } catch (CInvalidArgException* e) {
      thrown = true;
      e->Delete();
    }
    EXPECT_TRUE(thrown) << r[0] << "-" << r[1] << "-" << r[2] << " " << r[3] << ":" << r[4] << ":" << r[5];
  }
}

TEST(Time, SpanArithmetic) {
  struct Row {
    CTimeSpan span;
    long long days, totalHours, totalMinutes, totalSeconds;
    long hours, minutes, seconds;
  } const rows[] = {{CTimeSpan(1, 2, 3, 4), 1, 26, 1563, 93784, 2, 3, 4},
                    {CTimeSpan(0, 0, 0, 59), 0, 0, 0, 59, 0, 0, 59},
                    {CTimeSpan(0, 25, 61, 61), 1, 26, 1562, 93721, 2, 2, 1},  // parts carry over
                    {-CTimeSpan(1, 2, 3, 4), -1, -26, -1563, -93784, -2, -3, -4}};
  for (const Row& r : rows) {
    const CTimeSpan& s = r.span;
    EXPECT_EQ(s.GetDays(), r.days) << r.totalSeconds;
    EXPECT_EQ(s.GetTotalHours(), r.totalHours) << r.totalSeconds;
    EXPECT_EQ(s.GetTotalMinutes(), r.totalMinutes) << r.totalSeconds;
    EXPECT_EQ(s.GetTotalSeconds(), r.totalSeconds);
    EXPECT_EQ(s.GetHours(), r.hours) << r.totalSeconds;
    EXPECT_EQ(s.GetMinutes(), r.minutes) << r.totalSeconds;
    EXPECT_EQ(s.GetSeconds(), r.seconds) << r.totalSeconds;
  }
  CTime a(1234567890), b = a + CTimeSpan(1, 0, 0, 1);
  EXPECT_EQ((b - a).GetTotalSeconds(), 86401);
  EXPECT_EQ((a - b).GetDays(), -1);
  EXPECT_EQ(b - CTimeSpan(1, 0, 0, 1), a);
  EXPECT_TRUE(a < b && b > a && a != b && a <= a && !(b <= a));
  EXPECT_STREQ(b.FormatGmt(L"%Y-%m-%d %H:%M:%S"), L"2009-02-14 23:31:31");
  CTime now = CTime::GetCurrentTime();
  EXPECT_LE(std::abs(now.GetTime() - std::time(nullptr)), 1);
}

}  // namespace
