#include "base/log/Log_Impl.h"

#include <cerrno>
#include <chrono>
#include <cstring>
#include <ctime>

#include "toolkit/Format.h"
#include "toolkit/LocalTime.h"

namespace nbase {
namespace {

std::string Printf(const char* format, ...) {
  va_list args;
  va_start(args, format);
  std::string s = toolkit::FormatNarrow(format, args);
  va_end(args);
  return s;
}

}  // namespace

Log_Impl::Time Log_Impl::Time::Now() {
  auto now = std::chrono::system_clock::now();
  std::tm local = toolkit::LocalTimeNow();
  int ms =
      static_cast<int>(std::chrono::duration_cast<std::chrono::milliseconds>(now.time_since_epoch()).count() % 1000);
  return {local.tm_year + 1900, local.tm_mon + 1, local.tm_mday, local.tm_hour, local.tm_min, local.tm_sec, ms};
}

std::string Log_Impl::FormatLine(int flags, const Time& t, const char* file, int line, int error,
                                 const std::string& message) {
  std::string s;
  if (flags & kStamp) {
    s += Printf("[%04d-%02d-%02d %02d:%02d:%02d:%03d]", t.year, t.month, t.day, t.hour, t.minute, t.second,
                t.millisecond);
  } else {
    if (flags & kDate) s += Printf("%04d-%02d-%02d", t.year, t.month, t.day);
    if (flags & kTime) s += Printf("%02d:%02d:%02d", t.hour, t.minute, t.second);
  }
  if (flags & kFile) s += Printf(" file:%s", file ? file : "");
  if (flags & kLine) s += Printf(" line: %d", line);
  if (flags & kErrnoText) {
    s += Printf(" {%d:%s}%s", error, std::strerror(error), " ");
  } else if (flags & kErrno) {
    s += Printf(" {%d}%s", error, " ");
  }
  s += "<<<<";
  s += message;
  return s;
}

std::string Log_Impl::FormatFileName(int flags, const std::string& name, const Time& t) {
  if (flags & kNoDatePrefix) return Printf("%s.log", name.c_str());
  return Printf("%s%s.log", Printf("%04d%02d%02d_", t.year, t.month, t.day).c_str(), name.c_str());
}

Log_Impl::Log_Impl(const CString& folder, const std::string& name, int flags) : m_flags(flags) {
  m_path = folder + CString(FormatFileName(flags, name, Time::Now()).c_str());
}

bool Log_Impl::Write(const char* file, int line, const std::string& message) {
  int error = errno;
  std::string text = FormatLine(m_flags, Time::Now(), file, line, error, message) + "\r\n";
  std::lock_guard<std::mutex> guard(m_lock);
  try {
    CFile out;
    if (!out.Open(m_path, CFile::modeCreate | CFile::modeNoTruncate | CFile::modeWrite | CFile::shareDenyNone))
      return false;
    out.SeekToEnd();
    out.Write(text.data(), static_cast<UINT>(text.size()));
    out.Close();
    return true;
  } catch (CException* e) {
    e->Delete();
    return false;
  }
}

}  // namespace nbase
