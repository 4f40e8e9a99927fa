#pragma once
// The process-wide trace log: UTF-8 lines "[%Y/%m/%d %H:%M:%S]message\r\n" appended to
// logs\trace_log_<date>.txt beside the executable, each echoed to the debugger output.
#include <mutex>

#include "toolkit/CString.h"
#include "toolkit/File.h"
#include "toolkit/export.h"

class MIVO_COMMON_API ITrace {
 public:
  virtual void Trace(int level, bool flush, const wchar_t* format, ...) = 0;
  virtual void Release() = 0;
  virtual void SetLevel(int minimumLevel) = 0;
  virtual ~ITrace() = default;
};

class MIVO_COMMON_API ITrace_imp : public ITrace {
 public:
  static constexpr ULONGLONG kSizeLimit = 10000000;
  static constexpr int kMessageChars = 1024;  // the formatted message, terminator included
  static constexpr int kOpenAttempts = 5;

  // The one instance, made on first call under a global lock; null if it cannot be made.
  static ITrace_imp* GetInstance();

  // Writes under `logFolder` (ending in "\"), created if missing, at once or (openNow false)
  // with the first line. The instance behind g_ITrace uses the install folder's "logs\" and
  // opens with its first line.
  explicit ITrace_imp(const CString& logFolder, bool openNow = true);
  ~ITrace_imp() override;

  void Trace(int level, bool flush, const wchar_t* format, ...) override;
  void Release() override;
  void SetLevel(int minimumLevel) override;

  CString GetLogPath() const;
  bool IsOpen() const;

 private:
  void OpenFile();
  void AddDequeData(const wchar_t* line, size_t length, bool flush);

  CFile m_file;
  CString m_folder;
  CString m_path;
  int m_isOpen = 0;
  ULONGLONG m_sizeLimit = kSizeLimit;
  int m_minimumLevel = 1;
  mutable std::mutex m_lock;
  int m_failedOpens = 0;  // there is one writer in a process, so this counts for the process
};

// Valid from static initialisation until ExitCommonLib.
extern MIVO_COMMON_API ITrace* g_ITrace;

namespace mivo::common {
MIVO_COMMON_API void InitCommonLib();
MIVO_COMMON_API void ExitCommonLib();
}  // namespace mivo::common
