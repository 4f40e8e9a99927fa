#include "common/StdioFileEx.h"

#include <algorithm>
#include <type_traits>
#include <vector>

#include "toolkit/CodePage.h"

const UINT CStdioFileEx::modeWriteUnicode = 0x00020000;

namespace {

constexpr UINT kAnsiCodePage = 0xFFFFFFFF;
// A multi-byte line is read in pieces of at most this many bytes, terminator excluded.
constexpr int kLineBuffer = 4096;

UINT ResolveCodePage(int codePage) {
  UINT cp = static_cast<UINT>(codePage);
  return cp == kAnsiCodePage || cp == 0 ? toolkit::GetAnsiCodePage() : cp;
}

bool IsHighSurrogate(wchar_t c) { return c >= 0xD800 && c <= 0xDBFF; }

void AppendUtf16(std::string& bytes, unsigned long unit) {
  bytes.push_back(static_cast<char>(unit & 0xFF));
  bytes.push_back(static_cast<char>((unit >> 8) & 0xFF));
}

void DropLineEnd(CString& line) { line.TrimRight(L"\r\n"); }

}  // namespace

CStdioFileEx::CStdioFileEx() : m_bIsUnicodeText(false), m_nFlags(0), m_nFileCodePage(kAnsiCodePage) {}

CStdioFileEx::CStdioFileEx(const wchar_t* fileName, unsigned int flags)
    : m_bIsUnicodeText(false), m_nFlags(0), m_nFileCodePage(kAnsiCodePage) {
  // The base opening constructor would call the base Open; this one tests the mark first.
  ProcessFlags(CString(fileName), flags);
  CFileException error;
  if (!CStdioFile::Open(fileName, flags, &error))
    AfxThrowFileException(error.m_cause, error.m_lOsError, error.m_strFileName);
}

BOOL CStdioFileEx::Open(const wchar_t* fileName, unsigned int flags, CFileException* error) {
  try {
    if (IsOpen()) Abort();  // our own handle must not stand in the way of the probe
    ProcessFlags(CString(fileName), flags);
    return CStdioFile::Open(fileName, flags, error);
  } catch (CException* e) {
    auto* fileError = dynamic_cast<CFileException*>(e);
    if (error) *error = fileError ? *fileError : CFileException(CFileException::genericException, -1, fileName);
    e->Delete();
    return FALSE;
  }
}

unsigned int CStdioFileEx::ProcessFlags(const CString& fileName, unsigned int& flags) {
  m_bIsUnicodeText = false;
  if ((flags & typeText) && !(flags & (modeCreate | modeWrite))) {
    m_bIsUnicodeText = IsFileUnicode(fileName);
    if (m_bIsUnicodeText) flags = (flags & ~static_cast<unsigned>(typeText)) | typeBinary;
  }
  m_nFlags = flags;
  return flags;
}

BOOL CStdioFileEx::ReadString(CString& line) {
  try {
    return m_bIsUnicodeText ? ReadUnicodeLine(line) : ReadMultiByteLine(line);
  } catch (CException* e) {
    e->Delete();
    line.Empty();
    return FALSE;
  }
}

BOOL CStdioFileEx::ReadUnicodeLine(CString& line) {
  if (GetPosition() == 0) {  // step over the mark, so that it is not part of the first line
    unsigned char mark[2] = {};
    if (CStdioFile::Read(mark, 2) != 2 || mark[0] != 0xFF || mark[1] != 0xFE) Seek(0, begin);
  }
  if (!CStdioFile::ReadString(line)) return FALSE;
  DropLineEnd(line);
  return TRUE;
}

BOOL CStdioFileEx::ReadMultiByteLine(CString& line) {
  line.Empty();
  char bytes[kLineBuffer] = {};
  int count = 0;
  // Byte by byte through the base class, whose read-ahead keeps this cheap and consistent.
  while (count < kLineBuffer - 1 && CStdioFile::Read(&bytes[count], 1) == 1) {
    if (bytes[count++] == '\n') break;
  }
  if (count == 0) return FALSE;
  // As GetUnicodeStringFromMultiByteString into a 4096-character buffer would give (a
  // piece of at most 4095 bytes never needs more), without clearing that buffer per line.
  std::wstring wide;
  if (DecodeMultiByte(ResolveCodePage(static_cast<int>(m_nFileCodePage)), bytes, wide)) line = wide.c_str();
  DropLineEnd(line);
  return TRUE;
}

void CStdioFileEx::WriteString(const wchar_t* text) {
  if (!text || !IsOpen()) return;
  try {
    if (m_nFlags & modeWriteUnicode) {
      std::string bytes;
      if (GetPosition() == 0) bytes = "\xFF\xFE";
      for (const wchar_t* p = text; *p; ++p) {
        auto cp = static_cast<unsigned long>(static_cast<std::make_unsigned_t<wchar_t>>(*p));
        if (cp > 0x10FFFF) cp = 0xFFFD;
        if (cp >= 0x10000) {  // only where wchar_t holds whole code points
          cp -= 0x10000;
          AppendUtf16(bytes, 0xD800 + (cp >> 10));
          AppendUtf16(bytes, 0xDC00 + (cp & 0x3FF));
        } else {
          AppendUtf16(bytes, cp);
        }
      }
      Write(bytes.data(), static_cast<UINT>(bytes.size()));
      return;
    }
    auto* wide = const_cast<wchar_t*>(text);
    int cp = static_cast<int>(m_nFileCodePage);
    int required = GetRequiredMultiByteLengthForUnicodeString(wide, cp);
    if (required <= 1) return;
    std::vector<char> bytes(static_cast<size_t>(required));
    int written = GetMultiByteStringFromUnicodeString(wide, bytes.data(), required, cp);
    Write(bytes.data(), static_cast<UINT>(written));
  } catch (CException* e) {
    e->Delete();
  }
}

ULONGLONG CStdioFileEx::GetCharCount() const {
  if (!IsOpen()) return 0;
  try {
    ULONGLONG length = GetLength();
    if (!m_bIsUnicodeText) return length;
    return length >= 2 ? (length - 2) / 2 : 0;
  } catch (CException* e) {
    e->Delete();
    return 0;
  }
}

bool CStdioFileEx::IsFileUnicode(const CString& path) {
  CFile file;
  if (!file.Open(path, modeRead | shareDenyNone)) return false;
  unsigned char mark[2] = {};
  try {
    return file.Read(mark, 2) == 2 && mark[0] == 0xFF && mark[1] == 0xFE;
  } catch (CException* e) {
    e->Delete();
    return false;
  }
}

int CStdioFileEx::GetUnicodeStringFromMultiByteString(const char* in, wchar_t* out, int outChars, int codePage) {
  if (!out || outChars < 1) return 0;
  std::fill_n(out, outChars, L'\0');
  std::wstring wide;
  if (!in || !DecodeMultiByte(ResolveCodePage(codePage), in, wide)) return 0;
  size_t n = std::min(wide.size(), static_cast<size_t>(outChars - 1));
  if (n < wide.size() && n > 0 && IsHighSurrogate(wide[n - 1])) --n;  // keep pairs whole
  std::copy_n(wide.data(), n, out);
  return static_cast<int>(n);
}

int CStdioFileEx::GetMultiByteStringFromUnicodeString(wchar_t* in, char* out, int outBytes, int codePage) {
  if (!out || outBytes < 1) return 0;
  std::fill_n(out, outBytes, '\0');
  UINT cp = ResolveCodePage(codePage);
  std::string bytes;
  if (!in || !EncodeMultiByte(cp, in, bytes)) return 0;
  const size_t room = static_cast<size_t>(outBytes - 1);
  if (bytes.size() > room) {
    // Cut on a character boundary: the longest prefix of the text whose bytes fit.
    std::wstring text(in);
    auto fits = [&](size_t chars) {
      std::string part;
      return EncodeMultiByte(cp, text.substr(0, chars).c_str(), part) && part.size() <= room;
    };
    size_t lo = 0, hi = std::min(text.size(), room);
    while (lo < hi) {
      size_t mid = (lo + hi + 1) / 2;
      if (fits(mid))
        lo = mid;
      else
        hi = mid - 1;
    }
    if (lo > 0 && IsHighSurrogate(text[lo - 1])) --lo;  // keep pairs whole
    if (!EncodeMultiByte(cp, text.substr(0, lo).c_str(), bytes)) return 0;
  }
  std::copy_n(bytes.data(), bytes.size(), out);
  return static_cast<int>(bytes.size());
}

int CStdioFileEx::GetRequiredMultiByteLengthForUnicodeString(wchar_t* in, int codePage) {
  std::string bytes;
  if (!in || !EncodeMultiByte(ResolveCodePage(codePage), in, bytes)) return 0;
  return static_cast<int>(bytes.size()) + 1;
}
