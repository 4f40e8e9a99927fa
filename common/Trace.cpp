#include "common/Trace.h"

#include <chrono>
#include <cstdarg>
#include <ctime>
#include <cwchar>

#include "common/AppPath.h"
#include "common/Conversion.h"
#include "common/FileUtil.h"
#include "toolkit/FileSystem.h"
#include "toolkit/Format.h"
#include "toolkit/LocalTime.h"
#include "toolkit/Utf8.h"

namespace {

std::mutex g_instanceLock;
ITrace_imp* g_instance = nullptr;

// Appending: each line lands at the end of the file in one write, whoever else writes there.
constexpr unsigned kOpenFlags = CFile::modeCreate | CFile::modeNoTruncate | CFile::modeReadWrite |
                                CFile::shareDenyNone | CFile::typeBinary | CFile::modeAppend;

constexpr size_t kStampRoom = 64;                                         // "[YYYY/MM/DD HH:MM:SS]" is 21 characters
constexpr size_t kLineRoom = kStampRoom + ITrace_imp::kMessageChars + 2;  // stamp, message, "\r\n"

// The time stamp of the current second, formatted only when the second changes: between
// lines of the same second only the clock is read. One per thread, so no lock is needed.
struct StampCache {
  std::time_t second = -1;
  size_t length = 0;
  wchar_t text[kStampRoom] = {};
};
thread_local StampCache t_stamp;

// Writes the local time as "[%Y/%m/%d %H:%M:%S]" at `out`; returns its length.
size_t PutStamp(wchar_t* out) {
  StampCache& cache = t_stamp;
  // the system clock, not time(): the C runtime's time() looks up the time zone at each
  // call on some platforms (tens of microseconds under Wine)
  std::time_t now = std::chrono::system_clock::to_time_t(std::chrono::system_clock::now());
  if (now != cache.second) {
    std::tm local{};
#if defined(_WIN32)
    localtime_s(&local, &now);
#else
    localtime_r(&now, &local);
#endif
    cache.length = std::wcsftime(cache.text, kStampRoom, L"[%Y/%m/%d %H:%M:%S]", &local);
    cache.second = now;
  }
  std::wmemcpy(out, cache.text, cache.length);
  return cache.length;
}

}  // namespace

ITrace* g_ITrace = ITrace_imp::GetInstance();

ITrace_imp* ITrace_imp::GetInstance() {
  std::lock_guard<std::mutex> guard(g_instanceLock);
  if (!g_instance) {
    mivo::common::InitCommonAppPath();
    try {
      // opened at its first line: a process that never traces leaves no log (nor folder)
      g_instance = new ITrace_imp(mivo::common::GetAppPath() + L"logs\\", false);
    } catch (...) {
      g_instance = nullptr;
    }
  }
  return g_instance;
}

ITrace_imp::ITrace_imp(const CString& logFolder, bool openNow) : m_folder(logFolder) {
  m_path.Format(L"%s%s_%s.%s", logFolder.GetString(), L"trace_log", toolkit::FormatLocalTime(L"%Y_%m_%d").GetString(),
                L"txt");
  m_sizeLimit = kSizeLimit;
  if (openNow) OpenFile();
}

ITrace_imp::~ITrace_imp() {
  {
    std::lock_guard<std::mutex> guard(g_instanceLock);
    if (g_instance == this) g_instance = nullptr;
  }
  if (!m_isOpen) return;
  try {
    m_file.Close();
  } catch (CException* e) {
    CString line;
    line.Format(L"ITrace_imp::~ITrace_imp(): Close trace log file failed!!! Error: %s\n",
                e->GetErrorMessage().GetString());
    toolkit::OutputDebugText(line);
    e->Delete();
  }
}

void ITrace_imp::OpenFile() {
  if (!mivo::common::IsFolderExist(m_folder)) toolkit::CreateFolder(m_folder);
  CFileException error;
  bool opened = m_file.Open(m_path, kOpenFlags, &error) != FALSE;
  if (opened) {
    try {
      if (m_file.GetLength() > m_sizeLimit) {  // a log that outgrew its limit starts over
        m_file.Close();
        toolkit::DeleteFileAt(m_path);
        opened = m_file.Open(m_path, kOpenFlags, &error) != FALSE;
      }
    } catch (CException* e) {
      e->Delete();
      m_file.Abort();
      opened = false;
    }
  }
  if (!opened) {
    CString line;
    line.Format(L"ITrace_imp::ITrace_imp(): Open trace log file failed!!! Error: %s\n",
                toolkit::ErrorText(error.m_lOsError).GetString());
    toolkit::OutputDebugText(line);
  }
  m_isOpen = opened ? 1 : 0;
}

void ITrace_imp::Trace(int level, bool flush, const wchar_t* format, ...) {
  if (level < m_minimumLevel || !format) return;
  // The whole line is built on the stack: the stamp, the message (cut at kMessageChars - 1
  // characters, and at a zero character it may hold), "\r\n".
  wchar_t line[kLineRoom + 1];
  size_t length = PutStamp(line);
  va_list args;
  va_start(args, format);
  toolkit::FormatWideInto(line + length, kMessageChars, format, args);
  va_end(args);
  length += std::wcslen(line + length);
  line[length++] = L'\r';
  line[length++] = L'\n';
  line[length] = 0;
  toolkit::OutputDebugText(line);
  AddDequeData(line, length, flush);
}

void ITrace_imp::AddDequeData(const wchar_t* line, size_t length, bool flush) {
  char utf8[kLineRoom * toolkit::kUtf8PerWide];
  size_t bytes = toolkit::WideToUtf8(line, length, utf8);
  std::lock_guard<std::mutex> guard(m_lock);
  if (!m_isOpen && m_failedOpens < kOpenAttempts) {
    if (m_failedOpens == kOpenAttempts - 1) m_path += L".tmp";
    OpenFile();
    if (!m_isOpen) ++m_failedOpens;
  }
  if (!m_isOpen) return;
  try {
    m_file.Write(utf8, static_cast<UINT>(bytes));  // at the end: the file is open for appending
    if (flush) m_file.Flush();
  } catch (CException* e) {
    CString text;
    text.Format(L"ITrace_imp::AddDequeData(): write to trace log file failed!!! Error: %s\n",
                e->GetErrorMessage().GetString());
    toolkit::OutputDebugText(text);
    e->Delete();
  }
}

void ITrace_imp::Release() { delete this; }

void ITrace_imp::SetLevel(int minimumLevel) { m_minimumLevel = minimumLevel; }

CString ITrace_imp::GetLogPath() const {
  std::lock_guard<std::mutex> guard(m_lock);
  return m_path;
}

bool ITrace_imp::IsOpen() const {
  std::lock_guard<std::mutex> guard(m_lock);
  return m_isOpen != 0;
}

namespace mivo::common {

void InitCommonLib() { InitCommonAppPath(); }

void ExitCommonLib() {
  if (g_ITrace) g_ITrace->Release();
  g_ITrace = nullptr;
}

}  // namespace mivo::common
