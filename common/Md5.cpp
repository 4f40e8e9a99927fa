#include "common/Md5.h"

#include <openssl/evp.h>

#include "common/StringUtil.h"

namespace mivo::common {

std::string MakeMD5Value(const char* data, unsigned int length) {
  unsigned char digest[EVP_MAX_MD_SIZE];
  unsigned int size = 0;
  static const char kEmpty = 0;
  if (!data) data = &kEmpty, length = 0;
  if (EVP_Digest(data, length, digest, &size, EVP_md5(), nullptr) != 1) return std::string();
  return bin2hex(digest, size);
}

}  // namespace mivo::common
