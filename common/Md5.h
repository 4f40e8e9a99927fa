#pragma once
// MD5, outside the crypto factory: the step-by-step functions over a plain state record,
// digests of memory and files as hexadecimal text or raw bytes, and an incremental hasher.
#include <cstddef>
#include <string>

#include "toolkit/CString.h"
#include "toolkit/export.h"

namespace mivo::common {

// Plain data: copy it to fork a running digest.
struct md5_ctxt {
  unsigned int state[4];
  unsigned long long length;  // bytes taken so far
  unsigned char buffer[64];   // the block being filled
  unsigned char digest[16];   // set by md5_pad
};

MIVO_COMMON_API void md5_init(md5_ctxt* ctxt);
MIVO_COMMON_API void md5_loop(md5_ctxt* ctxt, const unsigned char* data, size_t length);
// Ends the message: padding and length, then the digest is in the record.
MIVO_COMMON_API void md5_pad(md5_ctxt* ctxt);
// Copies the 16 digest bytes out; after md5_pad.
MIVO_COMMON_API void md5_result(unsigned char* digest, md5_ctxt* ctxt);

// MD5 of the bytes as 32 lower-case hexadecimal digits; it names the update folder of an
// installation, so its form must never change.
MIVO_COMMON_API std::string MakeMD5Value(const char* data, unsigned int length);
// The 16 raw bytes.
MIVO_COMMON_API std::string MakeMD5Binary(const char* data, unsigned int length);
MIVO_COMMON_API std::string GetMD5(const std::string& data);  // lower-case hexadecimal
// A file's digest, read in pieces; "" when the file cannot be read.
MIVO_COMMON_API CString GetFileMd5(const CString& path);
MIVO_COMMON_API std::string GetFileMd5Binary(const CString& path);

// Takes data in any number of pieces.
class MIVO_COMMON_API BatchMD5 {
 public:
  BatchMD5() { Reset(); }
  void Reset();
  void Add(const void* data, size_t length);
  std::string HexDigest() const;  // of everything added so far; adding may go on
  std::string BinaryDigest() const;

 private:
  md5_ctxt m_ctxt;
};

}  // namespace mivo::common
