#include "toolkit/Exception.h"

CString CFileException::GetErrorMessage() const {
  static const wchar_t* const kCauses[] = {L"no error",
                                           L"generic error",
                                           L"file not found",
                                           L"bad path",
                                           L"too many open files",
                                           L"access denied",
                                           L"invalid file",
                                           L"cannot remove current folder",
                                           L"folder full",
                                           L"bad seek",
                                           L"hardware I/O error",
                                           L"sharing violation",
                                           L"lock violation",
                                           L"disk full",
                                           L"end of file"};
  const wchar_t* cause = (m_cause >= 0 && m_cause <= endOfFile) ? kCauses[m_cause] : L"unknown error";
  CString text;
  text.Format(L"%s (%ld): %s", cause, m_lOsError, m_strFileName.GetString());
  return text;
}

void AfxThrowInvalidArgException() { throw new CInvalidArgException(); }

void AfxThrowFileException(int cause, LONG osError, const wchar_t* fileName) {
  throw new CFileException(cause, osError, fileName);
}
