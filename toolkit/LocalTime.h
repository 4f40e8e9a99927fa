#pragma once
#include <ctime>

#include "toolkit/CString.h"

namespace toolkit {

// The current local time, broken down.
inline std::tm LocalTimeNow() {
  std::time_t now = std::time(nullptr);
  std::tm local{};
#if defined(_WIN32)
  localtime_s(&local, &now);
#else
  localtime_r(&now, &local);
#endif
  return local;
}

// The current local time through wcsftime; "" when it does not fit 128 characters.
inline CString FormatLocalTime(const wchar_t* format) {
  std::tm local = LocalTimeNow();
  wchar_t buf[128] = {};
  if (std::wcsftime(buf, 128, format, &local) == 0) buf[0] = 0;
  return CString(buf);
}

}  // namespace toolkit
