#include "common/Md5.h"

#include <cstring>

#include "common/StringUtil.h"
#include "toolkit/Exception.h"
#include "toolkit/File.h"

namespace mivo::common {

namespace {

inline unsigned int Rotate(unsigned int x, int n) { return (x << n) | (x >> (32 - n)); }

const unsigned int kSine[64] = {
    0xd76aa478, 0xe8c7b756, 0x242070db, 0xc1bdceee, 0xf57c0faf, 0x4787c62a, 0xa8304613, 0xfd469501,
    0x698098d8, 0x8b44f7af, 0xffff5bb1, 0x895cd7be, 0x6b901122, 0xfd987193, 0xa679438e, 0x49b40821,
    0xf61e2562, 0xc040b340, 0x265e5a51, 0xe9b6c7aa, 0xd62f105d, 0x02441453, 0xd8a1e681, 0xe7d3fbc8,
    0x21e1cde6, 0xc33707d6, 0xf4d50d87, 0x455a14ed, 0xa9e3e905, 0xfcefa3f8, 0x676f02d9, 0x8d2a4c8a,
    0xfffa3942, 0x8771f681, 0x6d9d6122, 0xfde5380c, 0xa4beea44, 0x4bdecfa9, 0xf6bb4b60, 0xbebfbc70,
    0x289b7ec6, 0xeaa127fa, 0xd4ef3085, 0x04881d05, 0xd9d4d039, 0xe6db99e5, 0x1fa27cf8, 0xc4ac5665,
    0xf4292244, 0x432aff97, 0xab9423a7, 0xfc93a039, 0x655b59c3, 0x8f0ccc92, 0xffeff47d, 0x85845dd1,
    0x6fa87e4f, 0xfe2ce6e0, 0xa3014314, 0x4e0811a1, 0xf7537e82, 0xbd3af235, 0x2ad7d2bb, 0xeb86d391};
const int kShift[4][4] = {{7, 12, 17, 22}, {5, 9, 14, 20}, {4, 11, 16, 23}, {6, 10, 15, 21}};

void Block(unsigned int state[4], const unsigned char* block) {
  unsigned int w[16];
  for (int i = 0; i < 16; ++i)
    w[i] = block[i * 4] | block[i * 4 + 1] << 8 | block[i * 4 + 2] << 16 |
           static_cast<unsigned int>(block[i * 4 + 3]) << 24;
  unsigned int a = state[0], b = state[1], c = state[2], d = state[3];
  for (int i = 0; i < 64; ++i) {
    unsigned int f;
    int g, round = i / 16;
    if (round == 0)
      f = (b & c) | (~b & d), g = i;
    else if (round == 1)
      f = (d & b) | (~d & c), g = (5 * i + 1) % 16;
    else if (round == 2)
      f = b ^ c ^ d, g = (3 * i + 5) % 16;
    else
      f = c ^ (b | ~d), g = (7 * i) % 16;
    unsigned int next = d;
    d = c;
    c = b;
    b = b + Rotate(a + f + kSine[i] + w[g], kShift[round][i % 4]);
    a = next;
  }
  state[0] += a, state[1] += b, state[2] += c, state[3] += d;
}

std::string Raw(const md5_ctxt& running) {
  md5_ctxt done = running;
  md5_pad(&done);
  return std::string(reinterpret_cast<const char*>(done.digest), 16);
}

bool FileDigest(const CString& path, std::string& digest) {
  try {
    CFile file;
    if (path.IsEmpty() || !file.Open(path, CFile::modeRead | CFile::shareDenyWrite | CFile::typeBinary)) return false;
    BatchMD5 md5;
    unsigned char chunk[65536];
    while (UINT n = file.Read(chunk, sizeof chunk)) md5.Add(chunk, n);
    digest = md5.BinaryDigest();
    return true;
  } catch (CException* e) {
    e->Delete();
    return false;
  }
}

}  // namespace

void md5_init(md5_ctxt* ctxt) {
  std::memset(ctxt, 0, sizeof *ctxt);
  ctxt->state[0] = 0x67452301, ctxt->state[1] = 0xefcdab89, ctxt->state[2] = 0x98badcfe, ctxt->state[3] = 0x10325476;
}

void md5_loop(md5_ctxt* ctxt, const unsigned char* data, size_t length) {
  if (!data) return;
  size_t used = ctxt->length % 64;
  ctxt->length += length;
  if (used) {
    size_t take = length < 64 - used ? length : 64 - used;
    std::memcpy(ctxt->buffer + used, data, take);
    data += take, length -= take, used += take;
    if (used < 64) return;
    Block(ctxt->state, ctxt->buffer);
  }
  for (; length >= 64; data += 64, length -= 64) Block(ctxt->state, data);
  std::memcpy(ctxt->buffer, data, length);
}

void md5_pad(md5_ctxt* ctxt) {
  unsigned long long bits = ctxt->length * 8;
  static const unsigned char kPad[64] = {0x80};
  size_t used = ctxt->length % 64;
  md5_loop(ctxt, kPad, used < 56 ? 56 - used : 120 - used);
  unsigned char tail[8];
  for (int i = 0; i < 8; ++i) tail[i] = static_cast<unsigned char>(bits >> (8 * i));
  md5_loop(ctxt, tail, 8);
  for (int i = 0; i < 16; ++i) ctxt->digest[i] = static_cast<unsigned char>(ctxt->state[i / 4] >> (8 * (i % 4)));
}

void md5_result(unsigned char* digest, md5_ctxt* ctxt) { std::memcpy(digest, ctxt->digest, 16); }

std::string MakeMD5Binary(const char* data, unsigned int length) {
  BatchMD5 md5;
  if (data) md5.Add(data, length);
  return md5.BinaryDigest();
}

std::string MakeMD5Value(const char* data, unsigned int length) { return bin2hex(MakeMD5Binary(data, length)); }

std::string GetMD5(const std::string& data) {
  BatchMD5 md5;
  md5.Add(data.data(), data.size());
  return md5.HexDigest();
}

std::string GetFileMd5Binary(const CString& path) {
  std::string digest;
  return FileDigest(path, digest) ? digest : std::string();
}

CString GetFileMd5(const CString& path) {
  std::string digest;
  if (!FileDigest(path, digest)) return CString();
  return CString(bin2hex(digest).c_str());
}

void BatchMD5::Reset() { md5_init(&m_ctxt); }

void BatchMD5::Add(const void* data, size_t length) {
  md5_loop(&m_ctxt, static_cast<const unsigned char*>(data), length);
}

std::string BatchMD5::BinaryDigest() const { return Raw(m_ctxt); }

std::string BatchMD5::HexDigest() const { return bin2hex(Raw(m_ctxt)); }

}  // namespace mivo::common
