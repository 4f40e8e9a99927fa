#include "Execute/UpdateTrace.h"

#include <string>

#include "common/Conversion.h"
#include "toolkit/File.h"
#include "toolkit/LocalTime.h"

namespace {
CFile* g_updateLog = nullptr;

void WriteUtf8(const CString& text) {
  std::string utf8 = mivo::common::CString_to_utf8(text);
  g_updateLog->Write(utf8.data(), static_cast<UINT>(utf8.size()));
}
}  // namespace

void OpenUpdateTrace() {
  g_updateLog = nullptr;
  auto* file = new CFile();
  CFileException error;
  if (!file->Open(L"update_log.txt", CFile::modeCreate | CFile::modeNoTruncate | CFile::modeWrite, &error)) {
    delete file;
    AfxThrowFileException(error.m_cause, error.m_lOsError, error.m_strFileName);
  }
  g_updateLog = file;
  g_updateLog->Seek(0, CFile::end);
  // a two-digit year; an empty time text when it cannot be formatted
  CString stamp = toolkit::FormatLocalTime(L"%y-%m-%d %H:%M:%S");
  CString line;
  line.Format(L"Trace Start. Time:%s.\r\n", stamp.GetString());
  WriteUtf8(line);
}

void WriteUpdateTrace(const CString& text) {
  if (g_updateLog) WriteUtf8(text);
}

void CloseUpdateTrace() {
  if (!g_updateLog) return;
  WriteUtf8(L"Trace Stop.\r\n");
  g_updateLog->Close();
  delete g_updateLog;
  g_updateLog = nullptr;
}
