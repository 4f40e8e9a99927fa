#pragma once
// Cryptographic primitives for the client's modules, made by one exported factory so that no
// module links the crypto library itself. Objects from the create... calls belong to the
// caller, who deletes them through the interface.
#include <string>

#include "toolkit/export.h"

namespace mivo::common {

// Algorithm identifiers: the upper half is the kind, the lower half the algorithm.
enum CryptoAlgorithm : unsigned int {
  kCipherAES128OFB = 0x10000,
  kCipherRC4 = 0x10001,
  kDigestMD5 = 0x20000,
  kDigestRMD160 = 0x20001,
  kMacHMAC_MD5 = 0x30000,
  kMacHMAC_RMD160 = 0x30001,
  kS2KPGP = 0x40000,
  kCipherDES_CBC = 0x50000,
  kCipherDES_ECB = 0x50001,
  kCipherDES_CFB = 0x50002,
  kCipherDES_OFB = 0x50003,
  kCipherDES_EDE_CBC = 0x50004,
  kCipherDES_EDE_ECB = 0x50005,
  kCipherDES_EDE_CFB = 0x50006,
  kCipherDES_EDE_OFB = 0x50007,
  kCipherDES_EDE3_CBC = 0x50008,
  kCipherDES_EDE3_ECB = 0x50009,
  kCipherDES_EDE3_CFB = 0x5000a,
  kCipherDES_EDE3_OFB = 0x5000b,
  kCipherDESX_CBC = 0x5000c,
  // Added after the original set; nothing above is renumbered, and 0x20002 and 0x30002 stay
  // unknown (modules written against the original set rely on getting nothing for them).
  kDigestSHA1 = 0x20003,
  kDigestSHA256 = 0x20004,
  kDigestSHA512 = 0x20005,
  kMacHMAC_SHA1 = 0x30003,
  kMacHMAC_SHA256 = 0x30004,
  kMacHMAC_SHA512 = 0x30005,
};

// Stream ciphers and block ciphers alike. Setup takes a key of exactly KeySize() bytes (RC4:
// any length from 1 to 256) and an IV of exactly IVSize() bytes (empty when it is 0). The
// block modes ECB and CBC pad the last block the PKCS#7 way; Final adds or checks it.
class MIVO_COMMON_API IStreamCipher {
 public:
  virtual bool Setup(const std::string& key, const std::string& iv, bool encrypt) = 0;
  virtual bool Update(const void* data, unsigned int length, std::string& out) = 0;
  virtual bool Final(std::string& out) = 0;  // false: not set up, or bad padding when decrypting
  virtual unsigned int KeySize() const = 0;
  virtual unsigned int IVSize() const = 0;
  virtual unsigned int BlockSize() const = 0;  // 1 for the stream modes
  virtual ~IStreamCipher() = default;
};

// Final returns the digest and starts over.
class MIVO_COMMON_API IDigest {
 public:
  virtual void Reset() = 0;
  virtual void Update(const void* data, unsigned int length) = 0;
  virtual std::string Final() = 0;
  virtual unsigned int DigestSize() const = 0;
  virtual ~IDigest() = default;
};

// Final returns the MAC and starts over with the same key.
class MIVO_COMMON_API IMAC {
 public:
  virtual bool Setup(const std::string& key) = 0;
  virtual void Update(const void* data, unsigned int length) = 0;
  virtual std::string Final() = 0;           // empty before Setup
  virtual unsigned int KeySize() const = 0;  // the suggested key length: the digest's size
  virtual unsigned int DigestSize() const = 0;
  virtual ~IMAC() = default;
};

// RSA keys as DER: public keys as SubjectPublicKeyInfo, private keys as PKCS#8. Encryption
// uses OAEP padding, signatures PKCS#1 v1.5 over SHA-256.
class MIVO_COMMON_API IRSA {
 public:
  virtual bool GenerateKey(unsigned int bits) = 0;  // public exponent 65537
  virtual bool SetPublicKey(const std::string& der) = 0;
  virtual bool SetPrivateKey(const std::string& der) = 0;
  virtual std::string GetPublicKey() const = 0;
  virtual std::string GetPrivateKey() const = 0;
  // The public key in a buffer allocated by the crypto library: release it with CryptoFree.
  // Its length, or -1.
  virtual int ExportPublicKey(unsigned char** der) const = 0;
  virtual bool Encrypt(const std::string& plain, std::string& cipher) = 0;
  virtual bool Decrypt(const std::string& cipher, std::string& plain) = 0;
  virtual bool Sign(const std::string& message, std::string& signature) = 0;
  virtual bool Verify(const std::string& message, const std::string& signature) = 0;
  virtual unsigned int KeySize() const = 0;  // bytes of the modulus, 0 without a key
  virtual ~IRSA() = default;
};

// OpenPGP's iterated and salted string-to-key over SHA-1: salt and passphrase repeated until
// `count` bytes are hashed (at least once whole); longer keys take more hash contexts, each
// preloaded with one more zero byte.
class MIVO_COMMON_API IS2K {
 public:
  virtual bool Derive(const std::string& passphrase, const std::string& salt, unsigned int count,
                      unsigned int keyLength, std::string& key) = 0;
  virtual ~IS2K() = default;
};

// Base64 with the standard alphabet and padding. With the option set the text is broken into
// lines of 64 characters, each ending in "\n"; decoding takes either form.
class MIVO_COMMON_API IBase64 {
 public:
  virtual std::string Encode(const std::string& data) = 0;
  virtual bool Decode(const std::string& text, std::string& data) = 0;  // false on a malformed text
  virtual ~IBase64() = default;
};

// Percent-encoding: bytes outside the unreserved set become "%XX" (upper-case digits; a blank
// is "%20", it has no form of its own). Decoding turns "%xx" with two hexadecimal digits back
// into the byte and keeps everything else as it is.
class MIVO_COMMON_API IURLCode {
 public:
  virtual std::string Encode(const std::string& text) = 0;
  virtual std::string Decode(const std::string& text) = 0;
  virtual ~IURLCode() = default;
};

// The CRC-32 of zip and PNG (reflected polynomial 0xEDB88320).
class MIVO_COMMON_API ICRC32 {
 public:
  virtual void Reset() = 0;
  virtual void Update(const void* data, unsigned int length) = 0;
  virtual unsigned int Value() const = 0;
  virtual ~ICRC32() = default;
};

// The crypto library's generator of cryptographically strong random bytes.
class MIVO_COMMON_API IRNG {
 public:
  virtual bool Generate(void* buffer, unsigned int length) = 0;
  virtual unsigned int Next() = 0;  // four random bytes as a number; 0 if the generator failed
  virtual ~IRNG() = default;
};

class MIVO_COMMON_API CryptoFactory {
 public:
  static CryptoFactory* instance();

  IStreamCipher* createCipher(unsigned int id);  // null for an unknown identifier
  IDigest* createDigest(unsigned int id);
  IMAC* createMAC(unsigned int id);
  IRSA* createRSA();
  IS2K* createS2K(unsigned int id);
  IBase64* createBase64(bool option);
  IURLCode* createURLCode();
  ICRC32* createCRC32();
  IRNG* rng();  // the factory's own; not the caller's to delete

  CryptoFactory(const CryptoFactory&) = delete;
  CryptoFactory& operator=(const CryptoFactory&) = delete;

 private:
  CryptoFactory();
  ~CryptoFactory();

  static CryptoFactory* inst_;
  IRNG* rng_;
};

// Frees memory that a primitive allocated inside the crypto library.
MIVO_COMMON_API void CryptoFree(void* p);

}  // namespace mivo::common
