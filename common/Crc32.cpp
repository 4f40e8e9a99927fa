#include "common/Crc32.h"

#include <array>

namespace CryptoImpl {

namespace {

constexpr std::array<unsigned int, 256> MakeTable() {
  std::array<unsigned int, 256> table{};
  for (unsigned int n = 0; n < 256; ++n) {
    unsigned int c = n;
    for (int k = 0; k < 8; ++k) c = (c & 1) ? 0xEDB88320u ^ (c >> 1) : c >> 1;
    table[n] = c;
  }
  return table;
}

constexpr std::array<unsigned int, 256> kTable = MakeTable();

}  // namespace

const unsigned int CRC32::crc_32_tab[256] = {
#define MIVO_ROW(n) \
  kTable[n], kTable[n + 1], kTable[n + 2], kTable[n + 3], kTable[n + 4], kTable[n + 5], kTable[n + 6], kTable[n + 7]
    MIVO_ROW(0),   MIVO_ROW(8),   MIVO_ROW(16),  MIVO_ROW(24),  MIVO_ROW(32),  MIVO_ROW(40),  MIVO_ROW(48),
    MIVO_ROW(56),  MIVO_ROW(64),  MIVO_ROW(72),  MIVO_ROW(80),  MIVO_ROW(88),  MIVO_ROW(96),  MIVO_ROW(104),
    MIVO_ROW(112), MIVO_ROW(120), MIVO_ROW(128), MIVO_ROW(136), MIVO_ROW(144), MIVO_ROW(152), MIVO_ROW(160),
    MIVO_ROW(168), MIVO_ROW(176), MIVO_ROW(184), MIVO_ROW(192), MIVO_ROW(200), MIVO_ROW(208), MIVO_ROW(216),
    MIVO_ROW(224), MIVO_ROW(232), MIVO_ROW(240), MIVO_ROW(248),
#undef MIVO_ROW
};

void CRC32::Update(const void* data, unsigned int length) {
  if (!data) return;
  const auto* bytes = static_cast<const unsigned char*>(data);
  unsigned int crc = m_crc;
  for (unsigned int i = 0; i < length; ++i) crc = crc_32_tab[(crc ^ bytes[i]) & 0xFF] ^ (crc >> 8);
  m_crc = crc;
}

unsigned int CRC32::GetCRC32(void* data, int length) {
  CRC32 crc;
  if (length > 0) crc.Update(data, static_cast<unsigned int>(length));
  return crc.Value();
}

unsigned int CRC32::GetCRC32(int value) {
  auto bits = static_cast<unsigned int>(value);
  unsigned char bytes[4] = {static_cast<unsigned char>(bits), static_cast<unsigned char>(bits >> 8),
                            static_cast<unsigned char>(bits >> 16), static_cast<unsigned char>(bits >> 24)};
  return GetCRC32(bytes, 4);
}

}  // namespace CryptoImpl
