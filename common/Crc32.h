#pragma once
// The CRC-32 of zip and PNG, table-driven; usable without the factory.
#include "common/Crypto.h"

namespace CryptoImpl {

class MIVO_COMMON_API CRC32 : public mivo::common::ICRC32 {
 public:
  static const unsigned int crc_32_tab[256];

  // The CRC of a buffer, and of the four bytes of a number, least significant first.
  static unsigned int GetCRC32(void* data, int length);
  static unsigned int GetCRC32(int value);

  void Reset() override { m_crc = 0xFFFFFFFFu; }
  void Update(const void* data, unsigned int length) override;
  unsigned int Value() const override { return m_crc ^ 0xFFFFFFFFu; }

 private:
  unsigned int m_crc = 0xFFFFFFFFu;
};

}  // namespace CryptoImpl
