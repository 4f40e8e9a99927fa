#include "common/Trace.h"

#include <cstdarg>

#include "common/AppPath.h"
#include "common/Conversion.h"
#include "common/FileUtil.h"
#include "toolkit/FileSystem.h"
#include "toolkit/Format.h"
#include "toolkit/LocalTime.h"

namespace {

std::mutex g_instanceLock;
ITrace_imp* g_instance = nullptr;

constexpr unsigned kOpenFlags =
    CFile::modeCreate | CFile::modeNoTruncate | CFile::modeReadWrite | CFile::shareDenyNone | CFile::typeBinary;

}  // namespace

ITrace* g_ITrace = ITrace_imp::GetInstance();

ITrace_imp* ITrace_imp::GetInstance() {
  std::lock_guard<std::mutex> guard(g_instanceLock);
  if (!g_instance) {
    mivo::common::InitCommonAppPath();
    try {
      g_instance = new ITrace_imp(mivo::common::GetAppPath() + L"logs\\");
    } catch (...) {
      g_instance = nullptr;
    }
  }
  return g_instance;
}

ITrace_imp::ITrace_imp(const CString& logFolder) {
  if (!mivo::common::IsFolderExist(logFolder)) toolkit::CreateFolder(logFolder);
  m_path.Format(L"%s%s_%s.%s", logFolder.GetString(), L"trace_log", toolkit::FormatLocalTime(L"%Y_%m_%d").GetString(), L"txt");
  m_sizeLimit = kSizeLimit;
  OpenFile();
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
    line.Format(L"ITrace_imp::~ITrace_imp(): Close trace log file failed!!! Error: %s\n", e->GetErrorMessage().GetString());
    toolkit::OutputDebugText(line);
    e->Delete();
  }
}

void ITrace_imp::OpenFile() {
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
  va_list args;
  va_start(args, format);
  std::wstring message = toolkit::FormatWide(format, args);
  va_end(args);
  if (message.size() > kMessageChars - 1) message.resize(kMessageChars - 1);
  CString line = toolkit::FormatLocalTime(L"[%Y/%m/%d %H:%M:%S]");
  line += message.c_str();
  line += L"\r\n";
  toolkit::OutputDebugText(line);
  AddDequeData(line, flush);
}

void ITrace_imp::AddDequeData(const CString& line, bool flush) {
  std::lock_guard<std::mutex> guard(m_lock);
  std::string utf8 = mivo::common::CString_to_utf8(line);
  if (!m_isOpen && m_failedOpens < kOpenAttempts) {
    if (m_failedOpens == kOpenAttempts - 1) m_path += L".tmp";
    OpenFile();
    if (!m_isOpen) ++m_failedOpens;
  }
  if (!m_isOpen) return;
  try {
    m_file.SeekToEnd();
    m_file.Write(utf8.data(), static_cast<UINT>(utf8.size()));
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
