#include <openssl/crypto.h>
#include <openssl/evp.h>
#include <openssl/opensslv.h>
#include <openssl/provider.h>

#include <cstdlib>
#include <mutex>
#include <new>

#include "common/Crc32.h"
#include "common/CryptoImpl.h"
#include "common/Trace.h"
#include "toolkit/FileSystem.h"

namespace mivo::common {

CryptoFactory* CryptoFactory::inst_ = nullptr;

namespace {

// RC4, single DES and DESX live in the legacy provider; loading it by name stops the default
// one from loading by itself, so both are loaded. They stay until the factory goes at exit.
OSSL_PROVIDER* g_defaultProvider = nullptr;
OSSL_PROVIDER* g_legacyProvider = nullptr;

void LoadProviders() {
  g_defaultProvider = OSSL_PROVIDER_load(nullptr, "default");
  g_legacyProvider = OSSL_PROVIDER_load(nullptr, "legacy");
}

void UnloadProviders() {
  if (g_legacyProvider) OSSL_PROVIDER_unload(g_legacyProvider);
  if (g_defaultProvider) OSSL_PROVIDER_unload(g_defaultProvider);
  g_legacyProvider = g_defaultProvider = nullptr;
}

void CheckLibraryVersion() {
  if (OPENSSL_version_major() == OPENSSL_VERSION_MAJOR && OPENSSL_version_minor() == OPENSSL_VERSION_MINOR) return;
  toolkit::OutputDebugText(L"different OpenSSL lib and header\n");
  if (g_ITrace) g_ITrace->Trace(3, true, L"different OpenSSL lib and header");
}

}  // namespace

CryptoFactory::CryptoFactory() : rng_(nullptr) {
  CheckLibraryVersion();
  LoadProviders();
  rng_ = new (std::nothrow) CryptoImpl::RNG();
}

CryptoFactory::~CryptoFactory() {
  delete rng_;
  UnloadProviders();
}

CryptoFactory* CryptoFactory::instance() {
  static std::once_flag once;
  std::call_once(once, [] {
    inst_ = new CryptoFactory();
    // Registered after the crypto library's own clean-up, so it runs before it.
    std::atexit([] {
      delete inst_;
      inst_ = nullptr;
    });
  });
  return inst_;
}

IRNG* CryptoFactory::rng() { return rng_; }

IStreamCipher* CryptoFactory::createCipher(unsigned int id) {
  using namespace CryptoImpl;
  switch (id) {
    case kCipherAES128OFB:
      return new (std::nothrow) AES128OFB(EVP_aes_128_ofb());
    case kCipherRC4:
      return new (std::nothrow) RC4(EVP_rc4());
    case kCipherDES_CBC:
      return new (std::nothrow) DES_CBC(EVP_des_cbc());
    case kCipherDES_ECB:
      return new (std::nothrow) DES_ECB();
    case kCipherDES_CFB:
      return new (std::nothrow) DES_CFB();
    case kCipherDES_OFB:
      return new (std::nothrow) DES_OFB();
    case kCipherDES_EDE_CBC:
      return new (std::nothrow) DES_EDE_CBC();
    case kCipherDES_EDE_ECB:
      return new (std::nothrow) DES_EDE_ECB();
    case kCipherDES_EDE_CFB:
      return new (std::nothrow) DES_EDE_CFB();
    case kCipherDES_EDE_OFB:
      return new (std::nothrow) DES_EDE_OFB();
    case kCipherDES_EDE3_CBC:
      return new (std::nothrow) DES_EDE3_CBC();
    case kCipherDES_EDE3_ECB:
      return new (std::nothrow) DES_EDE3_ECB();
    case kCipherDES_EDE3_CFB:
      return new (std::nothrow) DES_EDE3_CFB();
    case kCipherDES_EDE3_OFB:
      return new (std::nothrow) DES_EDE3_OFB();
    case kCipherDESX_CBC:
      return new (std::nothrow) DESX_CBC();
    default:
      return nullptr;
  }
}

IDigest* CryptoFactory::createDigest(unsigned int id) {
  if (id == kDigestMD5) return new (std::nothrow) CryptoImpl::Digest(EVP_md5());
  if (id == kDigestRMD160) return new (std::nothrow) CryptoImpl::Digest(EVP_ripemd160());
  if (id == kDigestSHA1) return new (std::nothrow) CryptoImpl::Digest(EVP_sha1());
  if (id == kDigestSHA256) return new (std::nothrow) CryptoImpl::Digest(EVP_sha256());
  if (id == kDigestSHA512) return new (std::nothrow) CryptoImpl::Digest(EVP_sha512());
  return nullptr;
}

IMAC* CryptoFactory::createMAC(unsigned int id) {
  if (id == kMacHMAC_MD5) return new (std::nothrow) CryptoImpl::HMAC(EVP_md5());
  if (id == kMacHMAC_RMD160) return new (std::nothrow) CryptoImpl::HMAC(EVP_ripemd160());
  if (id == kMacHMAC_SHA1) return new (std::nothrow) CryptoImpl::HMAC(EVP_sha1());
  if (id == kMacHMAC_SHA256) return new (std::nothrow) CryptoImpl::HMAC(EVP_sha256());
  if (id == kMacHMAC_SHA512) return new (std::nothrow) CryptoImpl::HMAC(EVP_sha512());
  return nullptr;
}

IRSA* CryptoFactory::createRSA() { return new (std::nothrow) CryptoImpl::RSA_Impl(); }

IS2K* CryptoFactory::createS2K(unsigned int id) {
  return id == kS2KPGP ? new (std::nothrow) CryptoImpl::PGPS2K(EVP_sha1()) : nullptr;
}

IBase64* CryptoFactory::createBase64(bool option) { return new (std::nothrow) CryptoImpl::Base64(option); }

IURLCode* CryptoFactory::createURLCode() { return new (std::nothrow) CryptoImpl::URLCode(); }

ICRC32* CryptoFactory::createCRC32() { return new (std::nothrow) CryptoImpl::CRC32(); }

void CryptoFree(void* p) { OPENSSL_free(p); }

}  // namespace mivo::common
