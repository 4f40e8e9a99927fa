#include <openssl/evp.h>

#include <climits>

#include "common/CryptoImpl.h"

namespace CryptoImpl {

StreamCipher::StreamCipher(const EVP_CIPHER* cipher) : m_cipher(cipher), m_ctx(EVP_CIPHER_CTX_new()) {}

StreamCipher::~StreamCipher() { EVP_CIPHER_CTX_free(m_ctx); }

unsigned int StreamCipher::KeySize() const { return m_cipher ? EVP_CIPHER_get_key_length(m_cipher) : 0; }
unsigned int StreamCipher::IVSize() const { return m_cipher ? EVP_CIPHER_get_iv_length(m_cipher) : 0; }
unsigned int StreamCipher::BlockSize() const { return m_cipher ? EVP_CIPHER_get_block_size(m_cipher) : 0; }

bool StreamCipher::Setup(const std::string& key, const std::string& iv, bool encrypt) {
  m_ready = false;
  if (!m_cipher || !m_ctx || iv.size() != IVSize()) return false;
  bool variableKey = (EVP_CIPHER_get_flags(m_cipher) & EVP_CIPH_VARIABLE_LENGTH) != 0;
  if (variableKey ? (key.empty() || key.size() > 256) : key.size() != KeySize()) return false;
  EVP_CIPHER_CTX_reset(m_ctx);
  int enc = encrypt ? 1 : 0;
  if (EVP_CipherInit_ex(m_ctx, m_cipher, nullptr, nullptr, nullptr, enc) != 1) return false;
  if (variableKey && EVP_CIPHER_CTX_set_key_length(m_ctx, static_cast<int>(key.size())) != 1) return false;
  const auto* keyBytes = reinterpret_cast<const unsigned char*>(key.data());
  const auto* ivBytes = iv.empty() ? nullptr : reinterpret_cast<const unsigned char*>(iv.data());
  m_ready = EVP_CipherInit_ex(m_ctx, nullptr, nullptr, keyBytes, ivBytes, enc) == 1;
  return m_ready;
}

bool StreamCipher::Update(const void* data, unsigned int length, std::string& out) {
  out.clear();
  if (!m_ready || (!data && length)) return false;
  if (length > INT_MAX - EVP_MAX_BLOCK_LENGTH) return false;
  out.resize(length + EVP_MAX_BLOCK_LENGTH);
  int written = 0;
  if (EVP_CipherUpdate(m_ctx, reinterpret_cast<unsigned char*>(out.data()), &written,
                       static_cast<const unsigned char*>(data), static_cast<int>(length)) != 1) {
    out.clear();
    return false;
  }
  out.resize(static_cast<size_t>(written));
  return true;
}

bool StreamCipher::Final(std::string& out) {
  out.clear();
  if (!m_ready) return false;
  m_ready = false;  // a new Setup starts the next message
  out.resize(EVP_MAX_BLOCK_LENGTH);
  int written = 0;
  if (EVP_CipherFinal_ex(m_ctx, reinterpret_cast<unsigned char*>(out.data()), &written) != 1) {
    out.clear();
    return false;
  }
  out.resize(static_cast<size_t>(written));
  return true;
}

DES_ECB::DES_ECB() : StreamCipher(EVP_des_ecb()) {}
DES_CFB::DES_CFB() : StreamCipher(EVP_des_cfb64()) {}
DES_OFB::DES_OFB() : StreamCipher(EVP_des_ofb()) {}
DES_EDE_CBC::DES_EDE_CBC() : StreamCipher(EVP_des_ede_cbc()) {}
DES_EDE_ECB::DES_EDE_ECB() : StreamCipher(EVP_des_ede_ecb()) {}
DES_EDE_CFB::DES_EDE_CFB() : StreamCipher(EVP_des_ede_cfb64()) {}
DES_EDE_OFB::DES_EDE_OFB() : StreamCipher(EVP_des_ede_ofb()) {}
DES_EDE3_CBC::DES_EDE3_CBC() : StreamCipher(EVP_des_ede3_cbc()) {}
DES_EDE3_ECB::DES_EDE3_ECB() : StreamCipher(EVP_des_ede3_ecb()) {}
DES_EDE3_CFB::DES_EDE3_CFB() : StreamCipher(EVP_des_ede3_cfb64()) {}
DES_EDE3_OFB::DES_EDE3_OFB() : StreamCipher(EVP_des_ede3_ofb()) {}
DESX_CBC::DESX_CBC() : StreamCipher(EVP_desx_cbc()) {}

}  // namespace CryptoImpl
