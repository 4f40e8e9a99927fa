#include "toolkit/File.h"

#include <cstring>

#include "toolkit/CodePage.h"
#include "toolkit/FileSys.h"

const HANDLE CFile::hFileNull = reinterpret_cast<HANDLE>(static_cast<intptr_t>(-1));

namespace {
[[noreturn]] void Raise(const toolkit::sys::Error& e, const CString& name) {
  AfxThrowFileException(e.cause, e.osError, name);
}
}  // namespace

CFile::CFile() : m_hFile(hFileNull) {}

CFile::CFile(const wchar_t* fileName, unsigned flags) : m_hFile(hFileNull) {
  CFileException error;
  if (!Open(fileName, flags, &error)) AfxThrowFileException(error.m_cause, error.m_lOsError, error.m_strFileName);
}

CFile::~CFile() {
  if (IsOpen()) Abort();
}

BOOL CFile::Open(const wchar_t* fileName, unsigned flags, CFileException* error) {
  if (IsOpen()) Abort();
  m_strFileName = fileName;
  if (!fileName || !*fileName) {
    if (error) *error = CFileException(CFileException::badPath, 0, fileName);
    return FALSE;
  }
  toolkit::sys::Error e;
  m_hFile = toolkit::sys::OpenFile(fileName, flags, e);
  if (m_hFile == hFileNull) {
    if (error) *error = CFileException(e.cause, e.osError, fileName);
    return FALSE;
  }
  return TRUE;
}

UINT CFile::Read(void* buffer, UINT count) {
  if (count == 0) return 0;
  if (!buffer) AfxThrowInvalidArgException();
  unsigned got = 0;
  toolkit::sys::Error e;
  if (!toolkit::sys::ReadFile(m_hFile, buffer, count, got, e)) Raise(e, m_strFileName);
  return got;
}

void CFile::Write(const void* buffer, UINT count) {
  if (count == 0) return;
  if (!buffer) AfxThrowInvalidArgException();
  toolkit::sys::Error e;
  if (!toolkit::sys::WriteFile(m_hFile, buffer, count, e)) Raise(e, m_strFileName);
}

ULONGLONG CFile::Seek(LONGLONG offset, UINT from) {
  unsigned long long pos = 0;
  toolkit::sys::Error e;
  if (!toolkit::sys::SeekFile(m_hFile, offset, from, pos, e)) Raise(e, m_strFileName);
  return pos;
}

ULONGLONG CFile::GetLength() const {
  unsigned long long length = 0;
  toolkit::sys::Error e;
  if (!toolkit::sys::FileLength(m_hFile, length, e)) Raise(e, m_strFileName);
  return length;
}

void CFile::SetLength(ULONGLONG length) {
  toolkit::sys::Error e;
  if (!toolkit::sys::SetFileLength(m_hFile, length, e)) Raise(e, m_strFileName);
}

ULONGLONG CFile::GetPosition() const {
  unsigned long long pos = 0;
  toolkit::sys::Error e;
  if (!toolkit::sys::SeekFile(m_hFile, 0, current, pos, e)) Raise(e, m_strFileName);
  return pos;
}

void CFile::Flush() {
  if (!IsOpen()) return;
  toolkit::sys::Error e;
  if (!toolkit::sys::FlushFile(m_hFile, e)) Raise(e, m_strFileName);
}

void CFile::Close() {
  if (!IsOpen()) return;
  toolkit::sys::Error e;
  bool ok = toolkit::sys::CloseFile(m_hFile, e);
  m_hFile = hFileNull;
  if (!ok) Raise(e, m_strFileName);
}

void CFile::Abort() {
  if (!IsOpen()) return;
  toolkit::sys::Error e;
  toolkit::sys::CloseFile(m_hFile, e);
  m_hFile = hFileNull;
}

CString CFile::GetFileName() const {
  int slash = m_strFileName.ReverseFind(L'\\');
  return slash < 0 ? m_strFileName : m_strFileName.Mid(slash + 1);
}

void CFile::Remove(const wchar_t* fileName) {
  toolkit::sys::Error e;
  if (!fileName || !toolkit::sys::RemoveFile(fileName, e)) Raise(e, fileName);
}

void CFile::Rename(const wchar_t* oldName, const wchar_t* newName) {
  toolkit::sys::Error e;
  if (!oldName || !newName || !toolkit::sys::RenameFile(oldName, newName, e)) Raise(e, oldName);
}

// ---- CStdioFile ----

CStdioFile::CStdioFile(const wchar_t* fileName, unsigned flags) {
  CFileException error;
  if (!Open(fileName, flags, &error)) AfxThrowFileException(error.m_cause, error.m_lOsError, error.m_strFileName);
}

BOOL CStdioFile::Open(const wchar_t* fileName, unsigned flags, CFileException* error) {
  m_buffer.clear();
  m_bufferPos = 0;
  m_flags = flags;
  return CFile::Open(fileName, flags, error);
}

bool CStdioFile::FillBuffer() {
  m_buffer.resize(4096);
  UINT got = CFile::Read(m_buffer.data(), static_cast<UINT>(m_buffer.size()));
  m_buffer.resize(got);
  m_bufferPos = 0;
  return got > 0;
}

bool CStdioFile::NextByte(unsigned char& b) {
  if (m_bufferPos >= m_buffer.size() && !FillBuffer()) return false;
  b = static_cast<unsigned char>(m_buffer[m_bufferPos++]);
  return true;
}

bool CStdioFile::ReadRawLine(std::wstring& line, size_t maxChars) {
  line.clear();
  if (IsTextMode()) {
    std::string bytes;
    unsigned char b;
    bool any = false;
    while (bytes.size() < maxChars && NextByte(b)) {
      any = true;
      if (b == '\n') {
        if (!bytes.empty() && bytes.back() == '\r') bytes.pop_back();
        bytes.push_back('\n');
        break;
      }
      bytes.push_back(static_cast<char>(b));
    }
    if (!any) return false;
    toolkit::MultiByteToWide(0, bytes.data(), bytes.size(), line);
    return true;
  }
  bool any = false;
  unsigned char lo, hi;
  while (line.size() < maxChars && NextByte(lo)) {
    any = true;
    if (!NextByte(hi)) break;  // a lone last byte is dropped
    wchar_t unit = static_cast<wchar_t>(lo | (hi << 8));
    if constexpr (sizeof(wchar_t) == 4) {
      // join a surrogate pair into one character
      if (unit >= 0xDC00 && unit <= 0xDFFF && !line.empty() && line.back() >= 0xD800 && line.back() <= 0xDBFF) {
        line.back() = static_cast<wchar_t>(0x10000 + ((line.back() - 0xD800) << 10) + (unit - 0xDC00));
        continue;
      }
    }
    line.push_back(unit);
    if (unit == L'\n') break;
  }
  return any;
}

BOOL CStdioFile::ReadString(CString& line) {
  std::wstring raw;
  if (!ReadRawLine(raw, static_cast<size_t>(-1))) {
    line.Empty();
    return FALSE;
  }
  if (!raw.empty() && raw.back() == L'\n') raw.pop_back();
  line = CString(raw.c_str(), static_cast<int>(raw.size()));
  return TRUE;
}

wchar_t* CStdioFile::ReadString(wchar_t* buffer, UINT max) {
  if (!buffer || max == 0) AfxThrowInvalidArgException();
  std::wstring raw;
  if (max < 2 || !ReadRawLine(raw, max - 1)) {
    buffer[0] = 0;
    return nullptr;
  }
  std::memcpy(buffer, raw.data(), raw.size() * sizeof(wchar_t));
  buffer[raw.size()] = 0;
  return buffer;
}

void CStdioFile::WriteString(const wchar_t* text) {
  if (!text) AfxThrowInvalidArgException();
  std::string bytes;
  if (IsTextMode()) {
    std::wstring crlf;
    for (const wchar_t* p = text; *p; ++p) {
      if (*p == L'\n') crlf.push_back(L'\r');
      crlf.push_back(*p);
    }
    toolkit::WideToMultiByte(0, crlf.data(), crlf.size(), bytes);
  } else {
    for (const wchar_t* p = text; *p; ++p) {
      unsigned long cp = static_cast<unsigned long>(*p);
      auto unit = [&bytes](unsigned long u) {
        bytes.push_back(static_cast<char>(u & 0xFF));
        bytes.push_back(static_cast<char>((u >> 8) & 0xFF));
      };
      if (cp >= 0x10000) {
        cp -= 0x10000;
        unit(0xD800 + (cp >> 10));
        unit(0xDC00 + (cp & 0x3FF));
      } else {
        unit(cp);
      }
    }
  }
  Write(bytes.data(), static_cast<UINT>(bytes.size()));
}

UINT CStdioFile::Read(void* buffer, UINT count) {
  if (count == 0) return 0;
  if (!buffer) AfxThrowInvalidArgException();
  auto* out = static_cast<char*>(buffer);
  UINT done = 0;
  size_t buffered = m_buffer.size() - m_bufferPos;
  if (buffered) {
    size_t n = buffered < count ? buffered : count;
    std::memcpy(out, m_buffer.data() + m_bufferPos, n);
    m_bufferPos += n;
    done = static_cast<UINT>(n);
  }
  if (done < count) {
    if (count - done < 4096) {  // small reads go through the read-ahead
      if (FillBuffer()) {
        size_t n = m_buffer.size() < count - done ? m_buffer.size() : count - done;
        std::memcpy(out + done, m_buffer.data(), n);
        m_bufferPos = n;
        done += static_cast<UINT>(n);
      }
    } else {
      done += CFile::Read(out + done, count - done);
    }
  }
  return done;
}

void CStdioFile::Write(const void* buffer, UINT count) {
  size_t unread = m_buffer.size() - m_bufferPos;
  if (unread) CFile::Seek(-static_cast<LONGLONG>(unread), current);  // write where the reader stands
  m_buffer.clear();
  m_bufferPos = 0;
  CFile::Write(buffer, count);
}

ULONGLONG CStdioFile::Seek(LONGLONG offset, UINT from) {
  size_t unread = m_buffer.size() - m_bufferPos;
  m_buffer.clear();
  m_bufferPos = 0;
  if (from == current) offset -= static_cast<LONGLONG>(unread);
  return CFile::Seek(offset, from);
}

ULONGLONG CStdioFile::GetPosition() const { return CFile::GetPosition() - (m_buffer.size() - m_bufferPos); }

void CStdioFile::Close() {
  m_buffer.clear();
  m_bufferPos = 0;
  CFile::Close();
}

void CStdioFile::Abort() {
  m_buffer.clear();
  m_bufferPos = 0;
  CFile::Abort();
}
