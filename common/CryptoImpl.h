#pragma once
// The factory's primitives over libcrypto: ciphers, digests and HMAC through its EVP layer.
// Private to the library: nothing here is exported; modules reach these objects through the
// interfaces that CryptoFactory (Crypto.h) hands out.
#include <openssl/types.h>

#include <string>

#include "common/Crypto.h"

namespace CryptoImpl {

class StreamCipher : public mivo::common::IStreamCipher {
 public:
  explicit StreamCipher(const EVP_CIPHER* cipher);
  ~StreamCipher() override;
  StreamCipher(const StreamCipher&) = delete;
  StreamCipher& operator=(const StreamCipher&) = delete;

  bool Setup(const std::string& key, const std::string& iv, bool encrypt) override;
  bool Update(const void* data, unsigned int length, std::string& out) override;
  bool Final(std::string& out) override;
  unsigned int KeySize() const override;
  unsigned int IVSize() const override;
  unsigned int BlockSize() const override;

 private:
  const EVP_CIPHER* m_cipher;
  EVP_CIPHER_CTX* m_ctx;
  bool m_ready = false;
};

class AES128OFB : public StreamCipher {
 public:
  using StreamCipher::StreamCipher;
};
class RC4 : public StreamCipher {
 public:
  using StreamCipher::StreamCipher;
};
class DES_CBC : public StreamCipher {
 public:
  using StreamCipher::StreamCipher;
};

#define MIVO_DES_VARIANT(Name)       \
  class Name : public StreamCipher { \
   public:                           \
    Name();                          \
  };
MIVO_DES_VARIANT(DES_ECB)
MIVO_DES_VARIANT(DES_CFB)
MIVO_DES_VARIANT(DES_OFB)
MIVO_DES_VARIANT(DES_EDE_CBC)
MIVO_DES_VARIANT(DES_EDE_ECB)
MIVO_DES_VARIANT(DES_EDE_CFB)
MIVO_DES_VARIANT(DES_EDE_OFB)
MIVO_DES_VARIANT(DES_EDE3_CBC)
MIVO_DES_VARIANT(DES_EDE3_ECB)
MIVO_DES_VARIANT(DES_EDE3_CFB)
MIVO_DES_VARIANT(DES_EDE3_OFB)
MIVO_DES_VARIANT(DESX_CBC)
#undef MIVO_DES_VARIANT

class Digest : public mivo::common::IDigest {
 public:
  explicit Digest(const EVP_MD* md);
  ~Digest() override;
  Digest(const Digest&) = delete;
  Digest& operator=(const Digest&) = delete;

  void Reset() override;
  void Update(const void* data, unsigned int length) override;
  std::string Final() override;
  unsigned int DigestSize() const override;

 private:
  const EVP_MD* m_md;
  EVP_MD_CTX* m_ctx;
};

class HMAC : public mivo::common::IMAC {
 public:
  explicit HMAC(const EVP_MD* md);
  ~HMAC() override;
  HMAC(const HMAC&) = delete;
  HMAC& operator=(const HMAC&) = delete;

  bool Setup(const std::string& key) override;
  void Update(const void* data, unsigned int length) override;
  std::string Final() override;
  unsigned int KeySize() const override;
  unsigned int DigestSize() const override;

 private:
  bool Start();
  const EVP_MD* m_md;
  EVP_MAC* m_mac;
  EVP_MAC_CTX* m_ctx = nullptr;
  std::string m_key;
  bool m_ready = false;
};

class RSA_Impl : public mivo::common::IRSA {
 public:
  RSA_Impl() = default;
  ~RSA_Impl() override;
  RSA_Impl(const RSA_Impl&) = delete;
  RSA_Impl& operator=(const RSA_Impl&) = delete;

  bool GenerateKey(unsigned int bits) override;
  bool SetPublicKey(const std::string& der) override;
  bool SetPrivateKey(const std::string& der) override;
  std::string GetPublicKey() const override;
  std::string GetPrivateKey() const override;
  int ExportPublicKey(unsigned char** der) const override;
  bool Encrypt(const std::string& plain, std::string& cipher) override;
  bool Decrypt(const std::string& cipher, std::string& plain) override;
  bool Sign(const std::string& message, std::string& signature) override;
  bool Verify(const std::string& message, const std::string& signature) override;
  unsigned int KeySize() const override;

 private:
  void Replace(EVP_PKEY* key, bool isPrivate);
  EVP_PKEY* m_key = nullptr;
  bool m_private = false;
};

class PGPS2K : public mivo::common::IS2K {
 public:
  explicit PGPS2K(const EVP_MD* md);
  bool Derive(const std::string& passphrase, const std::string& salt, unsigned int count, unsigned int keyLength,
              std::string& key) override;

 private:
  const EVP_MD* m_md;
};

class RNG : public mivo::common::IRNG {
 public:
  bool Generate(void* buffer, unsigned int length) override;
  unsigned int Next() override;
};

class Base64 : public mivo::common::IBase64 {
 public:
  explicit Base64(bool lineBreaks) : m_lineBreaks(lineBreaks) {}
  std::string Encode(const std::string& data) override;
  bool Decode(const std::string& text, std::string& data) override;

 private:
  bool m_lineBreaks;
};

class URLCode : public mivo::common::IURLCode {
 public:
  std::string Encode(const std::string& text) override;
  std::string Decode(const std::string& text) override;
};

}  // namespace CryptoImpl

namespace mivo::common {
// The characters URL encoding keeps, and the hexadecimal digits its decoding accepts.
extern const char kURLUnreserved[];
extern const char kURLHexDigits[];
}  // namespace mivo::common
