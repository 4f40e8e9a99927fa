#pragma once
// nbase's file logger: one line a call, parts chosen by a flag word.
#include <mutex>
#include <string>

#include "toolkit/CString.h"
#include "toolkit/File.h"
#include "toolkit/export.h"

namespace nbase {

class MIVO_COMMON_API Log_Impl {
 public:
  enum Flag {
    kDate = 0x1,            // "%04d-%02d-%02d"
    kTime = 0x2,            // "%02d:%02d:%02d"
    kStamp = 0x4,           // "[%04d-%02d-%02d %02d:%02d:%02d:%03d]" instead of the two above
    kFile = 0x8,            // " file:%s"
    kLine = 0x10,           // " line: %d"
    kErrno = 0x20,          // " {%d} "
    kErrnoText = 0x40,      // " {%d:%s} " (wins over kErrno)
    kNoDatePrefix = 0x200,  // file "%s.log" instead of "YYYYMMDD_%s.log"
  };

  struct Time {
    int year, month, day, hour, minute, second, millisecond;
    static Time Now();
  };

  static const char* Version() { return "nbase::Log_Impl::1.0"; }
  static std::string FormatLine(int flags, const Time& time, const char* file, int line, int error,
                                const std::string& message);
  static std::string FormatFileName(int flags, const std::string& name, const Time& time);

  // Appends to folder (ending in "\") + FormatFileName(flags, name, today).
  Log_Impl(const CString& folder, const std::string& name, int flags);
  // One line with the current time and errno; false when the file cannot be written.
  bool Write(const char* file, int line, const std::string& message);
  CString FilePath() const { return m_path; }

 private:
  CString m_path;
  int m_flags;
  std::mutex m_lock;
};

}  // namespace nbase
