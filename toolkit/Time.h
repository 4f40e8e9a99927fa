#pragma once
// CTime and CTimeSpan: the framework's point in time (seconds since 1970-01-01 00:00:00 UTC)
// and the signed distance between two of them. Parts in and out are local time unless a name
// says Gmt. Formatting is done here, not by the C library, so it is the same on every
// platform: English names, as the "C" locale writes them.
//
// Thread safety: the objects are values; concurrent use of different objects is safe, and
// the local-time conversions use the re-entrant forms of the C library.
#include <compare>
#include <ctime>

#include "toolkit/CString.h"
#include "toolkit/export.h"
#include "toolkit/platform.h"

// <windows.h> (through platform.h) turns GetCurrentTime into GetTickCount; the framework's
// CTime::GetCurrentTime must keep its name.
#ifdef GetCurrentTime
#undef GetCurrentTime
#endif

static_assert(sizeof(std::time_t) == 8, "CTime needs a 64-bit time_t");

class MIVO_COMMON_API CTimeSpan {
 public:
  CTimeSpan() = default;
  CTimeSpan(std::time_t seconds) : m_span(seconds) {}
  CTimeSpan(LONG days, int hours, int minutes, int seconds)
      : m_span(((static_cast<std::time_t>(days) * 24 + hours) * 60 + minutes) * 60 + seconds) {}

  // Whole units, cut toward zero; the part getters are what is left over after the larger
  // units (negative for a negative span), as the framework does.
  LONGLONG GetDays() const { return m_span / 86400; }
  LONGLONG GetTotalHours() const { return m_span / 3600; }
  LONGLONG GetTotalMinutes() const { return m_span / 60; }
  LONGLONG GetTotalSeconds() const { return m_span; }
  LONG GetHours() const { return static_cast<LONG>(GetTotalHours() - GetDays() * 24); }
  LONG GetMinutes() const { return static_cast<LONG>(GetTotalMinutes() - GetTotalHours() * 60); }
  LONG GetSeconds() const { return static_cast<LONG>(m_span - GetTotalMinutes() * 60); }
  std::time_t GetTimeSpan() const { return m_span; }

  CTimeSpan operator+(CTimeSpan other) const { return CTimeSpan(m_span + other.m_span); }
  CTimeSpan operator-(CTimeSpan other) const { return CTimeSpan(m_span - other.m_span); }
  CTimeSpan operator-() const { return CTimeSpan(-m_span); }
  CTimeSpan& operator+=(CTimeSpan other) {
    m_span += other.m_span;
    return *this;
  }
  CTimeSpan& operator-=(CTimeSpan other) {
    m_span -= other.m_span;
    return *this;
  }
  auto operator<=>(const CTimeSpan&) const = default;

 private:
  std::time_t m_span = 0;
};

class MIVO_COMMON_API CTime {
 public:
  CTime() = default;
  CTime(std::time_t time) : m_time(time) {}
  // Local time. Year 1970..3000, month 1..12, day 1..31, hour 0..23, minute and second
  // 0..59, else CInvalidArgException is thrown (as a pointer), as the framework does; so is a
  // time before 1970-01-01 00:00:00 UTC. A day past the month's end rolls into the next
  // month and a local time that a daylight-saving change skips moves forward by the gap (the
  // C library's mktime); `dst` is 1, 0, or -1 to let the time zone decide.
  CTime(int year, int month, int day, int hour, int minute, int second, int dst = -1);

  static CTime GetCurrentTime();
  std::time_t GetTime() const { return m_time; }

  // The local (or UTC) parts: false when the time cannot be converted (before 1970 on Windows).
  bool GetLocalTm(std::tm& out) const;
  bool GetGmtTm(std::tm& out) const;

  // Local parts; 0 when the time cannot be converted. GetDayOfWeek: 1 = Sunday .. 7 = Saturday.
  int GetYear() const;
  int GetMonth() const;
  int GetDay() const;
  int GetHour() const;
  int GetMinute() const;
  int GetSecond() const;
  int GetDayOfWeek() const;

  // strftime codes: %a %A %b %B %c %d %H %I %j %m %M %p %S %U %w %W %x %X %y %Y %%; "%#d"
  // (any numeric code with "#") drops leading zeros. %c is "%m/%d/%y %H:%M:%S", %x
  // "%m/%d/%y", %X "%H:%M:%S". Other codes are copied as they stand. "" for a null format or
  // a time that cannot be converted.
  CString Format(const wchar_t* format) const;
  CString FormatGmt(const wchar_t* format) const;

  CTime operator+(CTimeSpan span) const { return CTime(m_time + span.GetTimeSpan()); }
  CTime operator-(CTimeSpan span) const { return CTime(m_time - span.GetTimeSpan()); }
  CTimeSpan operator-(CTime other) const { return CTimeSpan(m_time - other.m_time); }
  CTime& operator+=(CTimeSpan span) {
    m_time += span.GetTimeSpan();
    return *this;
  }
  CTime& operator-=(CTimeSpan span) {
    m_time -= span.GetTimeSpan();
    return *this;
  }
  auto operator<=>(const CTime&) const = default;

 private:
  std::time_t m_time = 0;
};
