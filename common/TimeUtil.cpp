#include "common/TimeUtil.h"

#include "toolkit/Exception.h"

namespace mivo::common {
namespace {

// The value of `count` ASCII digits at `at`, or -1.
int Digits(const wchar_t* at, int count) {
  int value = 0;
  for (int i = 0; i < count; ++i) {
    if (at[i] < L'0' || at[i] > L'9') return -1;
    value = value * 10 + (at[i] - L'0');
  }
  return value;
}

// "DD HH:MM:SS" after the date's year and month, the same date separator between them.
bool ReadFrom(const wchar_t* date, int yearDigits, wchar_t separator, int parts[6]) {
  const wchar_t* p = date + yearDigits;
  if (p[0] != separator || p[3] != separator || p[6] != L' ' || p[9] != L':' || p[12] != L':') return false;
  parts[0] = Digits(date, yearDigits);
  const int offsets[5] = {1, 4, 7, 10, 13};
  for (int i = 0; i < 5; ++i) parts[i + 1] = Digits(p + offsets[i], 2);
  for (int i = 0; i < 6; ++i)
    if (parts[i] < 0) return false;
  return true;
}

bool ReadParts(const CString& text, int parts[6]) {
  const wchar_t* s = text.GetString();
  switch (text.GetLength()) {
    case 19:
      return ReadFrom(s, 4, L'-', parts) || ReadFrom(s, 4, L'/', parts);
    case 21:
      return s[0] == L'[' && s[20] == L']' && ReadFrom(s + 1, 4, L'/', parts);
    case 17:
      if (!ReadFrom(s, 2, L'-', parts)) return false;
      parts[0] += parts[0] < 70 ? 2000 : 1900;
      return true;
    default:
      return false;
  }
}

}  // namespace

bool ConverCString2CTime(const CString& text, CTime& out) {
  int parts[6];
  if (!ReadParts(text, parts)) return false;
  try {
    CTime time(parts[0], parts[1], parts[2], parts[3], parts[4], parts[5]);
    // mktime rolls February 30 into March and a skipped local hour forward: what does not
    // read back as written is not a time that exists.
    std::tm local{};
    if (!time.GetLocalTm(local) || local.tm_year + 1900 != parts[0] || local.tm_mon + 1 != parts[1] ||
        local.tm_mday != parts[2] || local.tm_hour != parts[3] || local.tm_min != parts[4] || local.tm_sec != parts[5])
      return false;
    out = time;
    return true;
  } catch (CException* e) {
    e->Delete();
    return false;
  }
}

}  // namespace mivo::common
