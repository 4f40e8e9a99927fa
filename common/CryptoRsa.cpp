#include <openssl/evp.h>
#include <openssl/rsa.h>
#include <openssl/x509.h>

#include "common/CryptoImpl.h"

namespace CryptoImpl {

namespace {

// Runs one of the i2d encoders into a string.
template <typename Encode>
std::string Der(Encode encode) {
  unsigned char* buffer = nullptr;
  int length = encode(&buffer);
  std::string out;
  if (length > 0 && buffer) out.assign(reinterpret_cast<const char*>(buffer), static_cast<size_t>(length));
  OPENSSL_free(buffer);
  return out;
}

// An encryption or decryption with OAEP padding.
template <typename Init, typename Run>
bool Crypt(EVP_PKEY* key, const std::string& in, std::string& out, Init init, Run run) {
  out.clear();
  if (!key) return false;
  EVP_PKEY_CTX* ctx = EVP_PKEY_CTX_new_from_pkey(nullptr, key, nullptr);
  bool ok = ctx && init(ctx) == 1 && EVP_PKEY_CTX_set_rsa_padding(ctx, RSA_PKCS1_OAEP_PADDING) == 1;
  size_t size = 0;
  const auto* bytes = reinterpret_cast<const unsigned char*>(in.data());
  ok = ok && run(ctx, nullptr, &size, bytes, in.size()) == 1;
  if (ok) {
    out.resize(size);
    ok = run(ctx, reinterpret_cast<unsigned char*>(out.data()), &size, bytes, in.size()) == 1;
    out.resize(ok ? size : 0);
  }
  EVP_PKEY_CTX_free(ctx);
  return ok;
}

}  // namespace

RSA_Impl::~RSA_Impl() { EVP_PKEY_free(m_key); }

void RSA_Impl::Replace(EVP_PKEY* key, bool isPrivate) {
  EVP_PKEY_free(m_key);
  m_key = key;
  m_private = key && isPrivate;
}

bool RSA_Impl::GenerateKey(unsigned int bits) {
  if (bits < 1024 || bits > 16384) return false;
  EVP_PKEY_CTX* ctx = EVP_PKEY_CTX_new_from_name(nullptr, "RSA", nullptr);
  EVP_PKEY* key = nullptr;
  bool ok = ctx && EVP_PKEY_keygen_init(ctx) == 1 &&
            EVP_PKEY_CTX_set_rsa_keygen_bits(ctx, static_cast<int>(bits)) == 1 && EVP_PKEY_generate(ctx, &key) == 1;
  EVP_PKEY_CTX_free(ctx);
  if (ok) Replace(key, true);
  return ok;
}

bool RSA_Impl::SetPublicKey(const std::string& der) {
  const auto* p = reinterpret_cast<const unsigned char*>(der.data());
  EVP_PKEY* key = der.empty() ? nullptr : d2i_PUBKEY(nullptr, &p, static_cast<long>(der.size()));
  if (!key || !EVP_PKEY_is_a(key, "RSA")) {
    EVP_PKEY_free(key);
    return false;
  }
  Replace(key, false);
  return true;
}

bool RSA_Impl::SetPrivateKey(const std::string& der) {
  const auto* p = reinterpret_cast<const unsigned char*>(der.data());
  EVP_PKEY* key = der.empty() ? nullptr : d2i_AutoPrivateKey(nullptr, &p, static_cast<long>(der.size()));
  if (!key || !EVP_PKEY_is_a(key, "RSA")) {
    EVP_PKEY_free(key);
    return false;
  }
  Replace(key, true);
  return true;
}

std::string RSA_Impl::GetPublicKey() const {
  if (!m_key) return std::string();
  return Der([this](unsigned char** out) { return i2d_PUBKEY(m_key, out); });
}

std::string RSA_Impl::GetPrivateKey() const {
  if (!m_key || !m_private) return std::string();
  PKCS8_PRIV_KEY_INFO* info = EVP_PKEY2PKCS8(m_key);
  if (!info) return std::string();
  std::string der = Der([info](unsigned char** out) { return i2d_PKCS8_PRIV_KEY_INFO(info, out); });
  PKCS8_PRIV_KEY_INFO_free(info);
  return der;
}

int RSA_Impl::ExportPublicKey(unsigned char** der) const {
  if (!der) return -1;
  *der = nullptr;
  if (!m_key) return -1;
  int length = i2d_PUBKEY(m_key, der);
  return length > 0 ? length : -1;
}

bool RSA_Impl::Encrypt(const std::string& plain, std::string& cipher) {
  return Crypt(m_key, plain, cipher, EVP_PKEY_encrypt_init, EVP_PKEY_encrypt);
}

bool RSA_Impl::Decrypt(const std::string& cipher, std::string& plain) {
  if (!m_private) return false;
  return Crypt(m_key, cipher, plain, EVP_PKEY_decrypt_init, EVP_PKEY_decrypt);
}

bool RSA_Impl::Sign(const std::string& message, std::string& signature) {
  signature.clear();
  if (!m_key || !m_private) return false;
  EVP_MD_CTX* ctx = EVP_MD_CTX_new();
  size_t size = 0;
  const auto* bytes = reinterpret_cast<const unsigned char*>(message.data());
  bool ok = ctx && EVP_DigestSignInit(ctx, nullptr, EVP_sha256(), nullptr, m_key) == 1 &&
            EVP_DigestSign(ctx, nullptr, &size, bytes, message.size()) == 1;
  if (ok) {
    signature.resize(size);
    ok = EVP_DigestSign(ctx, reinterpret_cast<unsigned char*>(signature.data()), &size, bytes, message.size()) == 1;
    signature.resize(ok ? size : 0);
  }
  EVP_MD_CTX_free(ctx);
  return ok;
}

bool RSA_Impl::Verify(const std::string& message, const std::string& signature) {
  if (!m_key) return false;
  EVP_MD_CTX* ctx = EVP_MD_CTX_new();
  bool ok = ctx && EVP_DigestVerifyInit(ctx, nullptr, EVP_sha256(), nullptr, m_key) == 1 &&
            EVP_DigestVerify(ctx, reinterpret_cast<const unsigned char*>(signature.data()), signature.size(),
                             reinterpret_cast<const unsigned char*>(message.data()), message.size()) == 1;
  EVP_MD_CTX_free(ctx);
  return ok;
}

unsigned int RSA_Impl::KeySize() const { return m_key ? static_cast<unsigned int>(EVP_PKEY_get_size(m_key)) : 0; }

}  // namespace CryptoImpl
