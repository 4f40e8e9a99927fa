#pragma once
// The framework's exceptions. As in the framework they are thrown as pointers
// (`throw new CFileException(...)`) and the catcher calls Delete().
#include "toolkit/CString.h"
#include "toolkit/export.h"

class MIVO_COMMON_API CException {
 public:
  virtual ~CException() = default;
  void Delete() { delete this; }
  virtual CString GetErrorMessage() const { return CString(L"unknown error"); }
};

class MIVO_COMMON_API CInvalidArgException : public CException {
 public:
  CString GetErrorMessage() const override { return CString(L"invalid argument"); }
};

class MIVO_COMMON_API CMemoryException : public CException {
 public:
  CString GetErrorMessage() const override { return CString(L"out of memory"); }
};

class MIVO_COMMON_API CFileException : public CException {
 public:
  enum {
    none,
    genericException,
    fileNotFound,
    badPath,
    tooManyOpenFiles,
    accessDenied,
    invalidFile,
    removeCurrentDir,
    directoryFull,
    badSeek,
    hardIO,
    sharingViolation,
    lockViolation,
    diskFull,
    endOfFile
  };

  CFileException(int cause = none, LONG osError = -1, const wchar_t* fileName = nullptr)
      : m_cause(cause), m_lOsError(osError), m_strFileName(fileName) {}
  CString GetErrorMessage() const override;

  int m_cause;
  LONG m_lOsError;
  CString m_strFileName;
};

[[noreturn]] MIVO_COMMON_API void AfxThrowInvalidArgException();
[[noreturn]] MIVO_COMMON_API void AfxThrowFileException(int cause, LONG osError = -1,
                                                        const wchar_t* fileName = nullptr);
