// The crypto factory's text and byte inputs: Base64 and percent-encoded text, DER keys, and
// keys, IVs and messages of every cipher, digest, MAC and string-to-key. The first byte picks
// the algorithms and a split point; the rest is the text.
// Checks: encoding then decoding gives the input (Base64 in both forms, URL coding); a decoded
// text encodes to something that decodes the same; a key read from DER writes the same DER;
// a cipher decrypts what it encrypted; a digest, MAC or CRC fed in two pieces equals the one
// fed whole; a derived key has the length asked for and is the same twice.
#include <cstdint>
#include <memory>
#include <string>

#include "common/Crypto.h"
#include "fuzz/FuzzTemp.h"

using namespace mivo::common;

namespace {

void Check(bool ok, const char* what) { fuzz::Check(ok, "crypto_text_fuzz", what); }

unsigned Size(const std::string& s) { return static_cast<unsigned>(s.size()); }

void Base64Text(const std::string& text) {
  for (bool lines : {false, true}) {
    std::unique_ptr<IBase64> b64(CryptoFactory::instance()->createBase64(lines));
    std::string data, back;
    if (b64->Decode(text, data) && !data.empty())
      Check(b64->Decode(b64->Encode(data), back) && back == data, "Base64 of decoded data decodes differently");
    if (!text.empty()) Check(b64->Decode(b64->Encode(text), back) && back == text, "Base64 does not round-trip");
  }
}

void UrlText(const std::string& text) {
  std::unique_ptr<IURLCode> url(CryptoFactory::instance()->createURLCode());
  Check(url->Decode(url->Encode(text)) == text, "URL coding does not round-trip");
  std::string decoded = url->Decode(text);
  Check(decoded.size() <= text.size(), "URL decoding grew the text");
  Check(url->Decode(url->Encode(decoded)) == decoded, "URL coding of decoded text does not round-trip");
}

void DerKeys(const std::string& der) {
  std::unique_ptr<IRSA> rsa(CryptoFactory::instance()->createRSA());
  if (rsa->SetPublicKey(der)) {
    std::string written = rsa->GetPublicKey();
    std::unique_ptr<IRSA> again(CryptoFactory::instance()->createRSA());
    Check(again->SetPublicKey(written) && again->GetPublicKey() == written, "a public key reads back differently");
    unsigned char* exported = nullptr;
    int length = rsa->ExportPublicKey(&exported);
    Check(length == static_cast<int>(written.size()), "the exported key has another length");
    CryptoFree(exported);
  }
  std::unique_ptr<IRSA> priv(CryptoFactory::instance()->createRSA());
  if (priv->SetPrivateKey(der)) priv->GetPublicKey();
}

void Cipher(unsigned id, const std::string& bytes, size_t split) {
  std::unique_ptr<IStreamCipher> cipher(CryptoFactory::instance()->createCipher(id));
  if (!cipher) return;
  size_t keySize = cipher->KeySize() ? cipher->KeySize() : 16;
  if (id == kCipherRC4) keySize = 1 + bytes.size() % 32;
  if (bytes.size() < keySize + cipher->IVSize()) return;
  std::string key = bytes.substr(0, keySize), iv = bytes.substr(keySize, cipher->IVSize());
  std::string message = bytes.substr(keySize + cipher->IVSize());
  split = split % (message.size() + 1);
  std::string sealed, part, opened;
  if (!cipher->Setup(key, iv, true)) return;  // a provider that is not there
  Check(cipher->Update(message.data(), static_cast<unsigned>(split), part), "encrypting failed");
  sealed += part;
  Check(cipher->Update(message.data() + split, static_cast<unsigned>(message.size() - split), part),
        "encrypting failed");
  sealed += part;
  Check(cipher->Final(part), "finishing encryption failed");
  sealed += part;
  Check(cipher->Setup(key, iv, false) && cipher->Update(sealed.data(), Size(sealed), opened), "decrypting failed");
  Check(cipher->Final(part), "what was encrypted has bad padding");
  Check(opened + part == message, "a cipher does not decrypt what it encrypted");
  // the message itself as cipher text: bad padding is an answer, not a fault
  if (cipher->Setup(key, iv, false) && cipher->Update(message.data(), Size(message), opened)) cipher->Final(part);
}

void Digests(const std::string& bytes, size_t split) {
  split = split % (bytes.size() + 1);
  for (unsigned id : {kDigestMD5, kDigestRMD160, kDigestSHA1, kDigestSHA256, kDigestSHA512}) {
    std::unique_ptr<IDigest> digest(CryptoFactory::instance()->createDigest(id));
    digest->Update(bytes.data(), Size(bytes));
    std::string whole = digest->Final();
    Check(whole.size() == digest->DigestSize(), "a digest of another size");
    digest->Update(bytes.data(), static_cast<unsigned>(split));
    digest->Update(bytes.data() + split, static_cast<unsigned>(bytes.size() - split));
    Check(digest->Final() == whole, "a digest in pieces differs");
  }
  for (unsigned id : {kMacHMAC_MD5, kMacHMAC_RMD160, kMacHMAC_SHA1, kMacHMAC_SHA256, kMacHMAC_SHA512}) {
    std::unique_ptr<IMAC> mac(CryptoFactory::instance()->createMAC(id));
    if (!mac->Setup(bytes.substr(0, split))) continue;
    mac->Update(bytes.data(), Size(bytes));
    std::string whole = mac->Final();
    mac->Update(bytes.data(), static_cast<unsigned>(split));
    mac->Update(bytes.data() + split, static_cast<unsigned>(bytes.size() - split));
    Check(mac->Final() == whole && whole.size() == mac->DigestSize(), "a MAC in pieces differs");
  }
  std::unique_ptr<ICRC32> crc(CryptoFactory::instance()->createCRC32());
  crc->Update(bytes.data(), Size(bytes));
  unsigned whole = crc->Value();
  crc->Reset();
  crc->Update(bytes.data(), static_cast<unsigned>(split));
  crc->Update(bytes.data() + split, static_cast<unsigned>(bytes.size() - split));
  Check(crc->Value() == whole, "a CRC in pieces differs");
}

void StringToKey(const std::string& bytes, unsigned selector) {
  std::unique_ptr<IS2K> s2k(CryptoFactory::instance()->createS2K(kS2KPGP));
  size_t half = bytes.size() / 2;
  unsigned count = (selector * 37u) % 4096, length = selector % 70;
  std::string key, again;
  if (s2k->Derive(bytes.substr(0, half), bytes.substr(half, 8), count, length, key)) {
    Check(key.size() == length, "a derived key of another length");
    Check(s2k->Derive(bytes.substr(0, half), bytes.substr(half, 8), count, length, again) && again == key,
          "a key derives differently twice");
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size == 0) return 0;
  const unsigned selector = data[0];
  const std::string text(reinterpret_cast<const char*>(data) + 1, size - 1);
  static const unsigned kCiphers[] = {
      kCipherAES128OFB,    kCipherRC4,          kCipherDES_CBC,      kCipherDES_ECB,      kCipherDES_CFB,
      kCipherDES_OFB,      kCipherDES_EDE_CBC,  kCipherDES_EDE_ECB,  kCipherDES_EDE_CFB,  kCipherDES_EDE_OFB,
      kCipherDES_EDE3_CBC, kCipherDES_EDE3_ECB, kCipherDES_EDE3_CFB, kCipherDES_EDE3_OFB, kCipherDESX_CBC};
  Base64Text(text);
  UrlText(text);
  DerKeys(text);
  Cipher(kCiphers[selector % std::size(kCiphers)], text, selector);
  Digests(text, selector);
  StringToKey(text, selector);
  return 0;
}
