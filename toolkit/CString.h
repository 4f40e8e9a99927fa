#pragma once
// CString: the wide string of the framework. It holds wchar_t text (UTF-16 on Windows,
// UTF-32 elsewhere); narrow input is taken in the process's ANSI code page.
#include <cstdarg>
#include <string>

#include "toolkit/export.h"
#include "toolkit/platform.h"

class MIVO_COMMON_API CString {
 public:
  CString() = default;
  CString(const CString&) = default;
  CString(CString&&) noexcept = default;
  CString(const wchar_t* text);              // null gives ""
  CString(const wchar_t* text, int length);  // at most `length` characters
  CString(const char* ansi);                 // ANSI code page; null gives ""
  CString(wchar_t ch, int repeat = 1);
  ~CString() = default;

  CString& operator=(const CString&) = default;
  CString& operator=(CString&&) noexcept = default;
  CString& operator=(const wchar_t* text);
  CString& operator=(const char* ansi);
  CString& operator=(wchar_t ch);

  int GetLength() const { return static_cast<int>(m_str.size()); }
  bool IsEmpty() const { return m_str.empty(); }
  void Empty() { m_str.clear(); }
  wchar_t GetAt(int index) const;  // out of range raises CInvalidArgException
  void SetAt(int index, wchar_t ch);
  wchar_t operator[](int index) const { return GetAt(index); }
  const wchar_t* GetString() const { return m_str.c_str(); }
  operator const wchar_t*() const { return m_str.c_str(); }
  const std::wstring& str() const { return m_str; }

  int Find(wchar_t ch, int start = 0) const;
  int Find(const wchar_t* sub, int start = 0) const;
  int ReverseFind(wchar_t ch) const;
  int FindOneOf(const wchar_t* set) const;

  CString Left(int count) const;
  CString Mid(int first) const;
  CString Mid(int first, int count) const;
  CString Right(int count) const;

  int Replace(wchar_t from, wchar_t to);
  int Replace(const wchar_t* from, const wchar_t* to);
  int Remove(wchar_t ch);
  int Insert(int index, wchar_t ch);
  int Insert(int index, const wchar_t* text);
  int Delete(int index, int count = 1);

  CString& Trim();
  CString& Trim(wchar_t ch);
  CString& Trim(const wchar_t* set);
  CString& TrimLeft();
  CString& TrimLeft(wchar_t ch);
  CString& TrimLeft(const wchar_t* set);
  CString& TrimRight();
  CString& TrimRight(wchar_t ch);
  CString& TrimRight(const wchar_t* set);

  CString& MakeLower();
  CString& MakeUpper();
  CString& MakeReverse();

  int Compare(const wchar_t* other) const;        // ordinal
  int CompareNoCase(const wchar_t* other) const;  // ordinal after case folding

  // Windows conventions on every platform: %s wide, %S narrow, %I64d, %I64u.
  void Format(const wchar_t* format, ...);
  void FormatV(const wchar_t* format, va_list args);
  void AppendFormat(const wchar_t* format, ...);
  void AppendFormatV(const wchar_t* format, va_list args);

  // The buffer holds at least `minLength` characters plus a terminator; call ReleaseBuffer
  // after writing into it.
  wchar_t* GetBuffer();
  wchar_t* GetBuffer(int minLength);
  wchar_t* GetBufferSetLength(int length);
  void ReleaseBuffer(int newLength = -1);

  CString& operator+=(const CString& other);
  CString& operator+=(const wchar_t* text);
  CString& operator+=(wchar_t ch);
  CString& operator+=(const char* ansi);

 private:
  std::wstring m_str;
};

MIVO_COMMON_API CString operator+(const CString& a, const CString& b);
MIVO_COMMON_API CString operator+(const CString& a, const wchar_t* b);
MIVO_COMMON_API CString operator+(const wchar_t* a, const CString& b);
MIVO_COMMON_API CString operator+(const CString& a, wchar_t b);
MIVO_COMMON_API CString operator+(wchar_t a, const CString& b);

inline bool operator==(const CString& a, const CString& b) { return a.Compare(b) == 0; }
inline bool operator==(const CString& a, const wchar_t* b) { return a.Compare(b) == 0; }
inline bool operator==(const wchar_t* a, const CString& b) { return b.Compare(a) == 0; }
inline bool operator!=(const CString& a, const CString& b) { return a.Compare(b) != 0; }
inline bool operator!=(const CString& a, const wchar_t* b) { return a.Compare(b) != 0; }
inline bool operator!=(const wchar_t* a, const CString& b) { return b.Compare(a) != 0; }
inline bool operator<(const CString& a, const CString& b) { return a.Compare(b) < 0; }
inline bool operator<(const CString& a, const wchar_t* b) { return a.Compare(b) < 0; }
inline bool operator>(const CString& a, const CString& b) { return a.Compare(b) > 0; }
inline bool operator>(const CString& a, const wchar_t* b) { return a.Compare(b) > 0; }
inline bool operator<=(const CString& a, const CString& b) { return a.Compare(b) <= 0; }
inline bool operator>=(const CString& a, const CString& b) { return a.Compare(b) >= 0; }
