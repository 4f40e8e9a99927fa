#pragma once
// A line-oriented text file that reads and writes both UTF-16 little-endian text with a
// byte-order mark and multi-byte text in a chosen code page.
// Reading: a file opened in text mode that begins with FF FE is read as UTF-16 (the object
// switches it to binary mode); any other file is read as multi-byte text in the object's
// code page. Writing: with modeWriteUnicode the text goes out as UTF-16 code units, the mark
// first when writing at position 0; otherwise it is converted to the object's code page.
// Text is written as given: line feeds are not expanded. Lines read come without CR and LF.
// Only the opening constructor raises (CFileException*, like its base).
#include <string>

#include "toolkit/CString.h"
#include "toolkit/Exception.h"
#include "toolkit/File.h"
#include "toolkit/export.h"
#include "toolkit/platform.h"

class MIVO_COMMON_API CStdioFileEx : public CStdioFile {
 public:
  // Ored into the open flags to write UTF-16; the file layer ignores the bit.
  static const UINT modeWriteUnicode;  // 0x00020000

  CStdioFileEx();                                             // closed, not Unicode, ANSI code page
  CStdioFileEx(const wchar_t* fileName, unsigned int flags);  // raises CFileException* on failure

  BOOL Open(const wchar_t* fileName, unsigned int flags, CFileException* error = nullptr) override;
  // One line without CR and LF; FALSE at the end of the file. A multi-byte line longer
  // than 4095 bytes arrives in pieces.
  BOOL ReadString(CString& line) override;
  void WriteString(const wchar_t* text) override;

  // Characters in the open file (UTF-16 units after the mark, or bytes); 0 when closed.
  ULONGLONG GetCharCount() const;
  // The code page of multi-byte reading and writing; 0xFFFFFFFF is the ANSI code page.
  void SetCodePage(unsigned int codePage) { m_nFileCodePage = codePage; }

  // True exactly when the file begins with FF FE; false when it cannot be opened.
  static bool IsFileUnicode(const CString& path);
  // The user default locale's ANSI code page; 0 when it cannot be read.
  static UINT GetCurrentLocaleCodePage();

  // Code page -1 (or 0) means the system's ANSI code page. The output buffers are zero-filled and
  // never written past their size; a result that does not fit is cut, terminator included.
  // The results count characters or bytes written, terminator excluded; 0 on failure.
  static int GetUnicodeStringFromMultiByteString(const char* in, wchar_t* out, int outChars, int codePage);
  // Characters the code page lacks become '#' (UTF-8 lacks none).
  static int GetMultiByteStringFromUnicodeString(wchar_t* in, char* out, int outBytes, int codePage);
  // Bytes the conversion needs, terminator included; 0 on failure.
  static int GetRequiredMultiByteLengthForUnicodeString(wchar_t* in, int codePage);

 protected:
  // Tests a text-mode file opened for reading for the UTF-16 mark and, when it has one,
  // turns text mode into binary mode. Stores and returns the resulting flags.
  unsigned int ProcessFlags(const CString& fileName, unsigned int& flags);

  bool m_bIsUnicodeText;
  UINT m_nFlags;
  UINT m_nFileCodePage;

 private:
  // The platform halves: whole-text conversions with this class's flags; false when the
  // code page (a resolved, real one) refuses.
  static bool DecodeMultiByte(UINT codePage, const char* text, std::wstring& out);
  static bool EncodeMultiByte(UINT codePage, const wchar_t* text, std::string& out);

  BOOL ReadUnicodeLine(CString& line);
  BOOL ReadMultiByteLine(CString& line);
};
