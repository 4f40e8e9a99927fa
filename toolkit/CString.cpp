#include "toolkit/CString.h"

#include <algorithm>
#include <cstring>
#include <cwchar>
#include <cwctype>

#include "toolkit/CodePage.h"
#include "toolkit/Exception.h"
#include "toolkit/Format.h"

namespace {

const wchar_t kWhiteSpace[] = L" \t\n\r\v\f";

bool InSet(wchar_t ch, const wchar_t* set) { return ch != 0 && std::wcschr(set, ch) != nullptr; }

int Clamp(int v, int lo, int hi) { return v < lo ? lo : (v > hi ? hi : v); }

std::wstring FromAnsi(const char* ansi) {
  std::wstring w;
  if (ansi) toolkit::MultiByteToWide(0, ansi, std::strlen(ansi), w);
  return w;
}

}  // namespace

CString::CString(const wchar_t* text) : m_str(text ? text : L"") {}

CString::CString(const wchar_t* text, int length)
    : m_str(text && length > 0 ? std::wstring(text, static_cast<size_t>(length)) : std::wstring()) {}

CString::CString(const char* ansi) : m_str(FromAnsi(ansi)) {}

CString::CString(wchar_t ch, int repeat) {
  if (repeat > 0) m_str.assign(static_cast<size_t>(repeat), ch);
}

CString& CString::operator=(const wchar_t* text) {
  m_str = text ? text : L"";
  return *this;
}

CString& CString::operator=(const char* ansi) {
  m_str = FromAnsi(ansi);
  return *this;
}

CString& CString::operator=(wchar_t ch) {
  m_str.assign(1, ch);
  return *this;
}

wchar_t CString::GetAt(int index) const {
  if (index < 0 || index > GetLength()) AfxThrowInvalidArgException();
  return m_str.c_str()[index];  // the terminator may be read, as in the framework
}

void CString::SetAt(int index, wchar_t ch) {
  if (index < 0 || index >= GetLength()) AfxThrowInvalidArgException();
  m_str[static_cast<size_t>(index)] = ch;
}

int CString::Find(wchar_t ch, int start) const {
  if (start < 0 || start >= GetLength()) return -1;
  size_t pos = m_str.find(ch, static_cast<size_t>(start));
  return pos == std::wstring::npos ? -1 : static_cast<int>(pos);
}

int CString::Find(const wchar_t* sub, int start) const {
  if (!sub || start < 0 || start > GetLength()) return -1;
  if (!*sub) return -1;
  size_t pos = m_str.find(sub, static_cast<size_t>(start));
  return pos == std::wstring::npos ? -1 : static_cast<int>(pos);
}

int CString::ReverseFind(wchar_t ch) const {
  size_t pos = m_str.rfind(ch);
  return pos == std::wstring::npos ? -1 : static_cast<int>(pos);
}

int CString::FindOneOf(const wchar_t* set) const {
  if (!set || !*set) return -1;
  size_t pos = m_str.find_first_of(set);
  return pos == std::wstring::npos ? -1 : static_cast<int>(pos);
}

CString CString::Left(int count) const {
  count = Clamp(count, 0, GetLength());
  return CString(m_str.c_str(), count);
}

CString CString::Mid(int first) const { return Mid(first, GetLength()); }

CString CString::Mid(int first, int count) const {
  first = Clamp(first, 0, GetLength());
  count = Clamp(count, 0, GetLength() - first);
  return CString(m_str.c_str() + first, count);
}

CString CString::Right(int count) const {
  count = Clamp(count, 0, GetLength());
  return CString(m_str.c_str() + (GetLength() - count), count);
}

int CString::Replace(wchar_t from, wchar_t to) {
  int n = 0;
  for (auto& c : m_str)
    if (c == from) c = to, ++n;
  return n;
}

int CString::Replace(const wchar_t* from, const wchar_t* to) {
  if (!from || !*from) return 0;
  if (!to) to = L"";
  size_t fromLen = std::wcslen(from), toLen = std::wcslen(to);
  std::wstring result;
  int n = 0;
  size_t pos = 0;
  while (true) {
    size_t hit = m_str.find(from, pos, fromLen);
    if (hit == std::wstring::npos) break;
    result.append(m_str, pos, hit - pos);
    result.append(to, toLen);
    pos = hit + fromLen;
    ++n;
  }
  if (n) {
    result.append(m_str, pos, std::wstring::npos);
    m_str.swap(result);
  }
  return n;
}

int CString::Remove(wchar_t ch) {
  size_t before = m_str.size();
  m_str.erase(std::remove(m_str.begin(), m_str.end(), ch), m_str.end());
  return static_cast<int>(before - m_str.size());
}

int CString::Insert(int index, wchar_t ch) {
  index = Clamp(index, 0, GetLength());
  m_str.insert(static_cast<size_t>(index), 1, ch);
  return GetLength();
}

int CString::Insert(int index, const wchar_t* text) {
  index = Clamp(index, 0, GetLength());
  if (text) m_str.insert(static_cast<size_t>(index), text);
  return GetLength();
}

int CString::Delete(int index, int count) {
  if (index < 0) index = 0;
  if (count > 0 && index < GetLength()) {
    count = Clamp(count, 0, GetLength() - index);
    m_str.erase(static_cast<size_t>(index), static_cast<size_t>(count));
  }
  return GetLength();
}

CString& CString::Trim() { return TrimRight().TrimLeft(); }
CString& CString::Trim(wchar_t ch) { return TrimRight(ch).TrimLeft(ch); }
CString& CString::Trim(const wchar_t* set) { return TrimRight(set).TrimLeft(set); }

CString& CString::TrimLeft() { return TrimLeft(kWhiteSpace); }
CString& CString::TrimLeft(wchar_t ch) {
  wchar_t set[2] = {ch, 0};
  return TrimLeft(set);
}
CString& CString::TrimLeft(const wchar_t* set) {
  if (!set) return *this;
  size_t i = 0;
  while (i < m_str.size() && InSet(m_str[i], set)) ++i;
  m_str.erase(0, i);
  return *this;
}

CString& CString::TrimRight() { return TrimRight(kWhiteSpace); }
CString& CString::TrimRight(wchar_t ch) {
  wchar_t set[2] = {ch, 0};
  return TrimRight(set);
}
CString& CString::TrimRight(const wchar_t* set) {
  if (!set) return *this;
  size_t n = m_str.size();
  while (n > 0 && InSet(m_str[n - 1], set)) --n;
  m_str.resize(n);
  return *this;
}

CString& CString::MakeLower() {
  for (auto& c : m_str) c = toolkit::ToLowerChar(c);
  return *this;
}

CString& CString::MakeUpper() {
  for (auto& c : m_str) c = toolkit::ToUpperChar(c);
  return *this;
}

CString& CString::MakeReverse() {
  std::reverse(m_str.begin(), m_str.end());
  return *this;
}

int CString::Compare(const wchar_t* other) const {
  if (!other) other = L"";
  return std::wcscmp(m_str.c_str(), other);
}

int CString::CompareNoCase(const wchar_t* other) const {
  if (!other) other = L"";
  const wchar_t* a = m_str.c_str();
  while (true) {
    wchar_t ca = toolkit::ToLowerChar(*a), cb = toolkit::ToLowerChar(*other);
    if (ca != cb) return ca < cb ? -1 : 1;
    if (ca == 0) return 0;
    ++a, ++other;
  }
}

void CString::Format(const wchar_t* format, ...) {
  va_list args;
  va_start(args, format);
  FormatV(format, args);
  va_end(args);
}

void CString::FormatV(const wchar_t* format, va_list args) { m_str = toolkit::FormatWide(format, args); }

void CString::AppendFormat(const wchar_t* format, ...) {
  va_list args;
  va_start(args, format);
  AppendFormatV(format, args);
  va_end(args);
}

void CString::AppendFormatV(const wchar_t* format, va_list args) { m_str += toolkit::FormatWide(format, args); }

wchar_t* CString::GetBuffer() { return m_str.data(); }

wchar_t* CString::GetBuffer(int minLength) {
  if (minLength > GetLength()) m_str.resize(static_cast<size_t>(minLength));
  return m_str.data();
}

wchar_t* CString::GetBufferSetLength(int length) {
  m_str.resize(static_cast<size_t>(length < 0 ? 0 : length));
  return m_str.data();
}

void CString::ReleaseBuffer(int newLength) {
  if (newLength < 0) {
    size_t n = 0;
    while (n < m_str.size() && m_str[n]) ++n;
    m_str.resize(n);
  } else {
    m_str.resize(std::min(static_cast<size_t>(newLength), m_str.size()));
  }
}

CString& CString::operator+=(const CString& other) {
  m_str += other.m_str;
  return *this;
}

CString& CString::operator+=(const wchar_t* text) {
  if (text) m_str += text;
  return *this;
}

CString& CString::operator+=(wchar_t ch) {
  m_str.push_back(ch);
  return *this;
}

CString& CString::operator+=(const char* ansi) {
  m_str += FromAnsi(ansi);
  return *this;
}

CString operator+(const CString& a, const CString& b) {
  CString r(a);
  r += b;
  return r;
}

CString operator+(const CString& a, const wchar_t* b) {
  CString r(a);
  r += b;
  return r;
}

CString operator+(const wchar_t* a, const CString& b) {
  CString r(a);
  r += b;
  return r;
}

CString operator+(const CString& a, wchar_t b) {
  CString r(a);
  r += b;
  return r;
}

CString operator+(wchar_t a, const CString& b) {
  CString r(a);
  r += b;
  return r;
}
