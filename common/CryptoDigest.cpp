#include <openssl/core_names.h>
#include <openssl/evp.h>
#include <openssl/params.h>
#include <openssl/rand.h>

#include <algorithm>
#include <climits>

#include "common/CryptoImpl.h"

namespace CryptoImpl {

Digest::Digest(const EVP_MD* md) : m_md(md), m_ctx(EVP_MD_CTX_new()) { Reset(); }

Digest::~Digest() { EVP_MD_CTX_free(m_ctx); }

void Digest::Reset() {
  if (m_ctx && m_md) EVP_DigestInit_ex(m_ctx, m_md, nullptr);
}

void Digest::Update(const void* data, unsigned int length) {
  if (m_ctx && m_md && (data || !length)) EVP_DigestUpdate(m_ctx, data, length);
}

std::string Digest::Final() {
  unsigned char out[EVP_MAX_MD_SIZE];
  unsigned int size = 0;
  if (!m_ctx || !m_md || EVP_DigestFinal_ex(m_ctx, out, &size) != 1) size = 0;
  Reset();
  return std::string(reinterpret_cast<const char*>(out), size);
}

unsigned int Digest::DigestSize() const { return m_md ? EVP_MD_get_size(m_md) : 0; }

HMAC::HMAC(const EVP_MD* md) : m_md(md), m_mac(EVP_MAC_fetch(nullptr, "HMAC", nullptr)) {}

HMAC::~HMAC() {
  EVP_MAC_CTX_free(m_ctx);
  EVP_MAC_free(m_mac);
  OPENSSL_cleanse(m_key.data(), m_key.size());
}

bool HMAC::Start() {
  EVP_MAC_CTX_free(m_ctx);
  m_ctx = m_mac ? EVP_MAC_CTX_new(m_mac) : nullptr;
  if (!m_ctx || !m_md) return m_ready = false;
  OSSL_PARAM params[] = {
      OSSL_PARAM_construct_utf8_string(OSSL_MAC_PARAM_DIGEST, const_cast<char*>(EVP_MD_get0_name(m_md)), 0),
      OSSL_PARAM_construct_end()};
  static const unsigned char kNoKey = 0;
  const auto* key = m_key.empty() ? &kNoKey : reinterpret_cast<const unsigned char*>(m_key.data());
  m_ready = EVP_MAC_init(m_ctx, key, m_key.size(), params) == 1;
  return m_ready;
}

bool HMAC::Setup(const std::string& key) {
  OPENSSL_cleanse(m_key.data(), m_key.size());
  m_key = key;
  return Start();
}

void HMAC::Update(const void* data, unsigned int length) {
  if (m_ready && (data || !length)) EVP_MAC_update(m_ctx, static_cast<const unsigned char*>(data), length);
}

std::string HMAC::Final() {
  if (!m_ready) return std::string();
  unsigned char out[EVP_MAX_MD_SIZE];
  size_t size = 0;
  if (EVP_MAC_final(m_ctx, out, &size, sizeof out) != 1) size = 0;
  Start();
  return std::string(reinterpret_cast<const char*>(out), size);
}

unsigned int HMAC::KeySize() const { return DigestSize(); }

unsigned int HMAC::DigestSize() const { return m_md ? EVP_MD_get_size(m_md) : 0; }

PGPS2K::PGPS2K(const EVP_MD* md) : m_md(md) {}

bool PGPS2K::Derive(const std::string& passphrase, const std::string& salt, unsigned int count, unsigned int keyLength,
                    std::string& key) {
  // OpenPGP's largest iteration count; anything longer would only be a way to stall.
  constexpr unsigned int kMaxCount = 65011712;
  constexpr unsigned int kMaxKeyLength = 1024;
  key.clear();
  if (!m_md || keyLength == 0 || keyLength > kMaxKeyLength || count > kMaxCount) return false;
  const std::string data = salt + passphrase;
  const size_t total = std::max<size_t>(count, data.size());
  EVP_MD_CTX* ctx = EVP_MD_CTX_new();
  if (!ctx) return false;
  bool ok = true;
  for (size_t preload = 0; ok && key.size() < keyLength; ++preload) {
    ok = EVP_DigestInit_ex(ctx, m_md, nullptr) == 1;
    for (size_t i = 0; ok && i < preload; ++i) ok = EVP_DigestUpdate(ctx, "", 1) == 1;
    for (size_t left = data.empty() ? 0 : total; ok && left > 0;) {
      size_t n = std::min(left, data.size());
      ok = EVP_DigestUpdate(ctx, data.data(), n) == 1;
      left -= n;
    }
    unsigned char out[EVP_MAX_MD_SIZE];
    unsigned int size = 0;
    ok = ok && EVP_DigestFinal_ex(ctx, out, &size) == 1;
    if (ok) key.append(reinterpret_cast<const char*>(out), size);
  }
  EVP_MD_CTX_free(ctx);
  if (!ok) {
    OPENSSL_cleanse(key.data(), key.size());
    key.clear();
    return false;
  }
  key.resize(keyLength);
  return true;
}

bool RNG::Generate(void* buffer, unsigned int length) {
  if (!length) return true;
  if (!buffer || length > INT_MAX) return false;
  return RAND_bytes(static_cast<unsigned char*>(buffer), static_cast<int>(length)) == 1;
}

unsigned int RNG::Next() {
  unsigned int value = 0;
  return Generate(&value, sizeof value) ? value : 0;
}

}  // namespace CryptoImpl
