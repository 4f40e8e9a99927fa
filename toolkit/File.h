#pragma once
// CFile and CStdioFile with the framework's open flags. Paths use backslashes on every
// platform; elsewhere the file layer turns them into slashes when it calls the system.
// Errors raise CFileException* (Open reports into its optional argument instead).
// Share modes are enforced by Windows; elsewhere the system has no such locks.
#include <string>

#include "toolkit/CString.h"
#include "toolkit/Exception.h"
#include "toolkit/export.h"
#include "toolkit/platform.h"

class MIVO_COMMON_API CFile {
 public:
  enum OpenFlags : unsigned {
    modeRead = 0x0000,
    modeWrite = 0x0001,
    modeReadWrite = 0x0002,
    shareCompat = 0x0000,
    shareExclusive = 0x0010,
    shareDenyWrite = 0x0020,
    shareDenyRead = 0x0030,
    shareDenyNone = 0x0040,
    modeNoInherit = 0x0080,
    modeCreate = 0x1000,
    modeNoTruncate = 0x2000,
    typeText = 0x4000,
    typeBinary = 0x8000,
    // Not one of the framework's flags: every write goes to the end of the file in one step
    // (FILE_APPEND_DATA / O_APPEND), wherever the position is, so processes that share a log
    // never write over each other's lines. SetLength is refused on Windows.
    modeAppend = 0x00400000,
  };
  enum SeekPosition { begin = 0x0, current = 0x1, end = 0x2 };
  static const HANDLE hFileNull;

  CFile();
  CFile(const wchar_t* fileName, unsigned flags);  // raises CFileException* on failure
  CFile(const CFile&) = delete;
  CFile& operator=(const CFile&) = delete;
  virtual ~CFile();

  virtual BOOL Open(const wchar_t* fileName, unsigned flags, CFileException* error = nullptr);
  virtual UINT Read(void* buffer, UINT count);
  virtual void Write(const void* buffer, UINT count);
  virtual ULONGLONG Seek(LONGLONG offset, UINT from);
  void SeekToBegin() { Seek(0, begin); }
  ULONGLONG SeekToEnd() { return Seek(0, end); }
  virtual ULONGLONG GetLength() const;
  virtual void SetLength(ULONGLONG length);
  virtual ULONGLONG GetPosition() const;
  virtual void Flush();
  virtual void Close();
  virtual void Abort();  // closes without raising

  CString GetFilePath() const { return m_strFileName; }
  CString GetFileName() const;
  bool IsOpen() const { return m_hFile != hFileNull; }

  static void Remove(const wchar_t* fileName);
  static void Rename(const wchar_t* oldName, const wchar_t* newName);

  HANDLE m_hFile;

 protected:
  CString m_strFileName;
};

// Line-oriented text on top of CFile. In text mode (typeText, the default) lines are
// bytes in the ANSI code page, "\r\n" reads as "\n" and "\n" is written as "\r\n".
// In binary mode (typeBinary) the text is UTF-16 little-endian code units as they stand.
class MIVO_COMMON_API CStdioFile : public CFile {
 public:
  CStdioFile() = default;
  CStdioFile(const wchar_t* fileName, unsigned flags);
  BOOL Open(const wchar_t* fileName, unsigned flags, CFileException* error = nullptr) override;

  // The line without its line feed; FALSE at the end of the file.
  virtual BOOL ReadString(CString& line);
  // At most max-1 characters, up to and including the line feed; null at the end.
  virtual wchar_t* ReadString(wchar_t* buffer, UINT max);
  virtual void WriteString(const wchar_t* text);

  UINT Read(void* buffer, UINT count) override;
  void Write(const void* buffer, UINT count) override;
  ULONGLONG Seek(LONGLONG offset, UINT from) override;
  ULONGLONG GetPosition() const override;
  void Close() override;
  void Abort() override;

 protected:
  bool IsTextMode() const { return (m_flags & typeBinary) == 0; }

 private:
  bool FillBuffer();
  bool NextByte(unsigned char& b);
  // Reads one line (line feed kept) as raw bytes or as UTF-16 units; false at the end.
  bool ReadRawLine(std::wstring& line, size_t maxChars);

  unsigned m_flags = 0;
  std::string m_buffer;
  size_t m_bufferPos = 0;
};
