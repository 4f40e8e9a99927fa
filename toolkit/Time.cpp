#include "toolkit/Time.h"

#include <string>

#include "toolkit/Exception.h"

namespace {

const wchar_t* const kDayNames[] = {L"Sunday",   L"Monday", L"Tuesday", L"Wednesday",
                                    L"Thursday", L"Friday", L"Saturday"};
const wchar_t* const kMonthNames[] = {L"January", L"February", L"March",     L"April",   L"May",      L"June",
                                      L"July",    L"August",   L"September", L"October", L"November", L"December"};

// The C library's re-entrant conversions differ only in name and argument order.
bool ToLocal(std::time_t time, std::tm& out) {
#if defined(_WIN32)
  return time >= 0 && localtime_s(&out, &time) == 0;
#else
  return time >= 0 && localtime_r(&time, &out) != nullptr;
#endif
}

bool ToGmt(std::time_t time, std::tm& out) {
#if defined(_WIN32)
  return time >= 0 && gmtime_s(&out, &time) == 0;
#else
  return time >= 0 && gmtime_r(&time, &out) != nullptr;
#endif
}

void AppendNumber(std::wstring& out, int value, int width, bool pad) {
  wchar_t digits[16];
  int n = 0;
  do {
    digits[n++] = static_cast<wchar_t>(L'0' + value % 10);
    value /= 10;
  } while (value > 0 && n < 16);
  if (pad)
    for (int i = n; i < width; ++i) out += L'0';
  while (n > 0) out += digits[--n];
}

void AppendAbbreviation(std::wstring& out, const wchar_t* name) { out.append(name, 3); }

void FormatTm(std::wstring& out, const wchar_t* format, const std::tm& t) {
  for (const wchar_t* p = format; *p; ++p) {
    if (*p != L'%' || !p[1]) {
      out += *p;
      continue;
    }
    const wchar_t* code = ++p;
    bool pad = true;
    if (*p == L'#' && p[1]) {
      pad = false;
      ++p;
    }
    int hour12 = t.tm_hour % 12 == 0 ? 12 : t.tm_hour % 12;
    switch (*p) {
      case L'a':
        AppendAbbreviation(out, kDayNames[t.tm_wday]);
        break;
      case L'A':
        out += kDayNames[t.tm_wday];
        break;
      case L'b':
        AppendAbbreviation(out, kMonthNames[t.tm_mon]);
        break;
      case L'B':
        out += kMonthNames[t.tm_mon];
        break;
      case L'c':
        FormatTm(out, L"%m/%d/%y %H:%M:%S", t);
        break;
      case L'd':
        AppendNumber(out, t.tm_mday, 2, pad);
        break;
      case L'H':
        AppendNumber(out, t.tm_hour, 2, pad);
        break;
      case L'I':
        AppendNumber(out, hour12, 2, pad);
        break;
      case L'j':
        AppendNumber(out, t.tm_yday + 1, 3, pad);
        break;
      case L'm':
        AppendNumber(out, t.tm_mon + 1, 2, pad);
        break;
      case L'M':
        AppendNumber(out, t.tm_min, 2, pad);
        break;
      case L'p':
        out += t.tm_hour < 12 ? L"AM" : L"PM";
        break;
      case L'S':
        AppendNumber(out, t.tm_sec, 2, pad);
        break;
      case L'U':
        AppendNumber(out, (t.tm_yday + 7 - t.tm_wday) / 7, 2, pad);
        break;
      case L'w':
        AppendNumber(out, t.tm_wday, 1, pad);
        break;
      case L'W':
        AppendNumber(out, (t.tm_yday + 7 - (t.tm_wday + 6) % 7) / 7, 2, pad);
        break;
      case L'x':
        FormatTm(out, L"%m/%d/%y", t);
        break;
      case L'X':
        FormatTm(out, L"%H:%M:%S", t);
        break;
      case L'y':
        AppendNumber(out, (t.tm_year + 1900) % 100, 2, pad);
        break;
      case L'Y':
        AppendNumber(out, t.tm_year + 1900, 4, pad);
        break;
      case L'%':
        out += L'%';
        break;
      default:  // not ours: leave the code in the text
        out += L'%';
        out.append(code, p + 1);
    }
  }
}

CString FormatWith(bool (*convert)(std::time_t, std::tm&), std::time_t time, const wchar_t* format) {
  std::tm parts{};
  if (!format || !convert(time, parts)) return CString();
  std::wstring out;
  FormatTm(out, format, parts);
  return CString(out.c_str(), static_cast<int>(out.size()));
}

int LocalPart(std::time_t time, int std::tm::*field, int offset) {
  std::tm parts{};
  return ToLocal(time, parts) ? parts.*field + offset : 0;
}

}  // namespace

CTime::CTime(int year, int month, int day, int hour, int minute, int second, int dst) {
  if (year < 1970 || year > 3000 || month < 1 || month > 12 || day < 1 || day > 31 || hour < 0 || hour > 23 ||
      minute < 0 || minute > 59 || second < 0 || second > 59)
    AfxThrowInvalidArgException();
  std::tm parts{};
  parts.tm_year = year - 1900;
  parts.tm_mon = month - 1;
  parts.tm_mday = day;
  parts.tm_hour = hour;
  parts.tm_min = minute;
  parts.tm_sec = second;
  parts.tm_isdst = dst < 0 ? -1 : dst;
  std::time_t time = std::mktime(&parts);
  // -1 is also one second before the epoch, which is refused anyway
  if (time < 0) AfxThrowInvalidArgException();
  m_time = time;
}

CTime CTime::GetCurrentTime() { return CTime(std::time(nullptr)); }

bool CTime::GetLocalTm(std::tm& out) const { return ToLocal(m_time, out); }
bool CTime::GetGmtTm(std::tm& out) const { return ToGmt(m_time, out); }

int CTime::GetYear() const { return LocalPart(m_time, &std::tm::tm_year, 1900); }
int CTime::GetMonth() const { return LocalPart(m_time, &std::tm::tm_mon, 1); }
int CTime::GetDay() const { return LocalPart(m_time, &std::tm::tm_mday, 0); }
int CTime::GetHour() const { return LocalPart(m_time, &std::tm::tm_hour, 0); }
int CTime::GetMinute() const { return LocalPart(m_time, &std::tm::tm_min, 0); }
int CTime::GetSecond() const { return LocalPart(m_time, &std::tm::tm_sec, 0); }
int CTime::GetDayOfWeek() const { return LocalPart(m_time, &std::tm::tm_wday, 1); }

CString CTime::Format(const wchar_t* format) const { return FormatWith(ToLocal, m_time, format); }
CString CTime::FormatGmt(const wchar_t* format) const { return FormatWith(ToGmt, m_time, format); }
