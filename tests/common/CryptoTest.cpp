#include <gtest/gtest.h>

#include <openssl/evp.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "common/Crc32.h"
#include "common/Crypto.h"
#include "common/CryptoImpl.h"

using namespace mivo::common;

namespace {

std::string Hex(const std::string& bytes) {
  static const char kDigits[] = "0123456789abcdef";
  std::string out;
  for (unsigned char c : bytes) out += {kDigits[c >> 4], kDigits[c & 15]};
  return out;
}

std::string Bytes(const std::string& hex) {
  std::string out;
  for (size_t i = 0; i + 1 < hex.size(); i += 2)
    out.push_back(static_cast<char>(std::stoi(hex.substr(i, 2), nullptr, 16)));
  return out;
}

CryptoFactory& Factory() { return *CryptoFactory::instance(); }

// Whole-message encryption or decryption; "<failed>" when a step refuses.
std::string Crypt(IStreamCipher& cipher, const std::string& key, const std::string& iv, bool encrypt,
                  const std::string& input) {
  std::string head, tail;
  if (!cipher.Setup(key, iv, encrypt)) return "<failed>";
  if (!cipher.Update(input.data(), static_cast<unsigned int>(input.size()), head)) return "<failed>";
  if (!cipher.Final(tail)) return "<failed>";
  return head + tail;
}

// ---- the factory ----

TEST(CryptoFactoryTest, UnknownIdentifiersGiveNothing) {
  for (unsigned int id : {0u, 0x5000du, 0x20000u, 0x10002u, 0x30000u, 0xFFFFFFFFu})
    EXPECT_EQ(nullptr, std::unique_ptr<IStreamCipher>(Factory().createCipher(id)).get()) << std::hex << id;
  for (unsigned int id : {0x20002u, 0x20006u, 0x10000u, 0x30003u, 0u})
    EXPECT_EQ(nullptr, std::unique_ptr<IDigest>(Factory().createDigest(id)).get()) << std::hex << id;
  for (unsigned int id : {0x30002u, 0x30006u, 0x20003u})
    EXPECT_EQ(nullptr, std::unique_ptr<IMAC>(Factory().createMAC(id)).get());
  for (unsigned int id : {0x40001u, 0u}) EXPECT_EQ(nullptr, std::unique_ptr<IS2K>(Factory().createS2K(id)).get());
  std::unique_ptr<IStreamCipher> desx(Factory().createCipher(kCipherDESX_CBC));
  EXPECT_NE(nullptr, dynamic_cast<CryptoImpl::DESX_CBC*>(desx.get()));
}

// ---- ciphers ----

struct CipherCase {
  unsigned int id;
  unsigned int keySize, ivSize, blockSize;
};

TEST(CipherTest, EveryCipherHasItsSizesAndRoundTrips) {
  const CipherCase cases[] = {
      {kCipherAES128OFB, 16, 16, 1},   {kCipherRC4, 16, 0, 1},          {kCipherDES_CBC, 8, 8, 8},
      {kCipherDES_ECB, 8, 0, 8},       {kCipherDES_CFB, 8, 8, 1},       {kCipherDES_OFB, 8, 8, 1},
      {kCipherDES_EDE_CBC, 16, 8, 8},  {kCipherDES_EDE_ECB, 16, 0, 8},  {kCipherDES_EDE_CFB, 16, 8, 1},
      {kCipherDES_EDE_OFB, 16, 8, 1},  {kCipherDES_EDE3_CBC, 24, 8, 8}, {kCipherDES_EDE3_ECB, 24, 0, 8},
      {kCipherDES_EDE3_CFB, 24, 8, 1}, {kCipherDES_EDE3_OFB, 24, 8, 1}, {kCipherDESX_CBC, 24, 8, 8},
  };
  const std::string message = "seventeen bytes!!" + std::string(100, '\x5a');
  for (const auto& c : cases) {
    SCOPED_TRACE(c.id);
    std::unique_ptr<IStreamCipher> cipher(Factory().createCipher(c.id));
    ASSERT_NE(nullptr, cipher.get());
    EXPECT_EQ(c.keySize, cipher->KeySize());
    EXPECT_EQ(c.ivSize, cipher->IVSize());
    EXPECT_EQ(c.blockSize, cipher->BlockSize());
    std::string key(c.keySize, '\0'), iv(c.ivSize, '\0');
    for (size_t i = 0; i < key.size(); ++i) key[i] = static_cast<char>(0x31 + 7 * i);
    for (size_t i = 0; i < iv.size(); ++i) iv[i] = static_cast<char>(0xA0 + i);
    std::string sealed = Crypt(*cipher, key, iv, true, message);
    ASSERT_NE("<failed>", sealed);
    EXPECT_NE(message, sealed.substr(0, message.size()));
    EXPECT_EQ(c.blockSize == 1 ? message.size() : (message.size() / 8 + 1) * 8, sealed.size());
    EXPECT_EQ(message, Crypt(*cipher, key, iv, false, sealed));
    // keys and IVs of the wrong size are refused, not cut or padded
    if (c.id != kCipherRC4) {  // RC4 takes any length
      EXPECT_FALSE(cipher->Setup(key + "x", iv, true));
    }
    EXPECT_FALSE(cipher->Setup(key, iv + "x", true));
  }
}

TEST(CipherTest, KnownAnswers) {
  const std::string fips = "Now is the time for all ";
  const std::string desKey = Bytes("0123456789abcdef"), desIv = Bytes("1234567890abcdef");
  struct Case {
    unsigned int id;
    std::string key, iv, plain, expected;  // the expected bytes begin the output
  } cases[] = {
      {kCipherDES_ECB, desKey, "", fips, "3fa40e8a984d48156a271787ab8883f9893d51ec4b563b53"},
      {kCipherDES_CBC, desKey, desIv, fips, "e5c7cdde872bf27c43e934008c389c0f683788499a7c05f6"},
      {kCipherDES_CFB, desKey, desIv, fips, "f3096249c7f46e51a69e839b1a92f78403467133898ea622"},
      {kCipherDES_OFB, desKey, desIv, fips, "f3096249c7f46e5135f24a242eeb3d3f3d6d5be3255af8c3"},
      // two- and three-key DES with equal keys, and DESX without whitening, are plain DES
      {kCipherDES_EDE_CBC, desKey + desKey, desIv, fips, "e5c7cdde872bf27c43e934008c389c0f683788499a7c05f6"},
      {kCipherDES_EDE3_ECB, desKey + desKey + desKey, "", fips, "3fa40e8a984d48156a271787ab8883f9893d51ec4b563b53"},
      {kCipherDES_EDE3_OFB, desKey + desKey + desKey, desIv, fips, "f3096249c7f46e5135f24a242eeb3d3f3d6d5be3255af8c3"},
      {kCipherDESX_CBC, desKey + std::string(16, '\0'), desIv, fips,
       "e5c7cdde872bf27c43e934008c389c0f683788499a7c05f6"},
      {kCipherAES128OFB, Bytes("2b7e151628aed2a6abf7158809cf4f3c"), Bytes("000102030405060708090a0b0c0d0e0f"),
       Bytes("6bc1bee22e409f96e93d7e117393172aae2d8a571e03ac9c9eb76fac45af8e51"),
       "3b3fd92eb72dad20333449f8e83cfb4a7789508d16918f03f53c52dac54ed825"},
      {kCipherRC4, "Key", "", "Plaintext", "bbf316e8d940af0ad3"},
      {kCipherRC4, "Secret", "", "Attack at dawn", "45a01f645fc35b383552544b9bf5"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.id);
    std::unique_ptr<IStreamCipher> cipher(Factory().createCipher(c.id));
    ASSERT_NE(nullptr, cipher.get());
    EXPECT_EQ(c.expected, Hex(Crypt(*cipher, c.key, c.iv, true, c.plain)).substr(0, c.expected.size()));
  }
  // with different keys the two-key form is not DES any more
  std::unique_ptr<IStreamCipher> ede(Factory().createCipher(kCipherDES_EDE_CBC));
  EXPECT_NE("e5c7cdde872bf27c", Hex(Crypt(*ede, desKey + Bytes("fedcba9876543210"), desIv, true, fips)).substr(0, 16));
}

TEST(CipherTest, MisuseIsRefused) {
  std::unique_ptr<IStreamCipher> cbc(Factory().createCipher(kCipherDES_CBC));
  std::string out;
  EXPECT_FALSE(cbc->Update("abc", 3, out));  // not set up
  EXPECT_FALSE(cbc->Final(out));
  const std::string key = Bytes("0123456789abcdef"), iv = Bytes("1234567890abcdef");
  std::string sealed = Crypt(*cbc, key, iv, true, "sixteen bytes!!!");
  sealed[sealed.size() - 1] ^= 0x55;  // the padding no longer checks out
  EXPECT_EQ("<failed>", Crypt(*cbc, key, iv, false, sealed));
  EXPECT_EQ("<failed>", Crypt(*cbc, key, iv, false, sealed.substr(0, 5)));  // not whole blocks
  std::unique_ptr<IStreamCipher> rc4(Factory().createCipher(kCipherRC4));
  EXPECT_FALSE(rc4->Setup("", "", true));
  EXPECT_FALSE(rc4->Setup(std::string(257, 'k'), "", true));
  EXPECT_TRUE(rc4->Setup(std::string(256, 'k'), "", true));
}

// ---- digests, MACs, string-to-key ----

// FIPS 180-4's and the algorithms' own "abc" vectors, fed in two pieces; Final starts over.
TEST(DigestTest, KnownAnswersInPiecesAndReuse) {
  const std::string two = "abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq";
  struct Case {
    unsigned int id;
    std::string data, expected;
  } cases[] = {
      {kDigestMD5, "abc", "900150983cd24fb0d6963f7d28e17f72"},
      {kDigestRMD160, "abc", "8eb208f7e05d987a9b044a8e98c6b087f15a0bfc"},
      {kDigestSHA1, two, "84983e441c3bd26ebaae4aa1f95129e5e54670f1"},
      {kDigestSHA256, two, "248d6a61d20638b8e5c026930c3e6039a33ce45964ff2167f6ecedd419db06c1"},
      {kDigestSHA512, "abc",
       "ddaf35a193617abacc417349ae20413112e6fa4e89a97ea20a9eeee64b55d39a2192992a274fc1a836ba3c23a3feebbd454d4423643ce8"
       "0e2a9ac94fa54ca49f"},
  };
  for (const auto& c : cases) {
    std::unique_ptr<IDigest> digest(Factory().createDigest(c.id));
    ASSERT_NE(nullptr, digest.get()) << std::hex << c.id;
    EXPECT_EQ(c.expected.size() / 2, digest->DigestSize());
    digest->Update(c.data.data(), 1);
    digest->Update(c.data.data() + 1, static_cast<unsigned int>(c.data.size() - 1));
    EXPECT_EQ(c.expected, Hex(digest->Final())) << std::hex << c.id;
    digest->Update("junk", 4);
    digest->Reset();
    digest->Update(c.data.data(), static_cast<unsigned int>(c.data.size()));
    EXPECT_EQ(c.expected, Hex(digest->Final())) << std::hex << c.id << " after Reset";
  }
  std::unique_ptr<IDigest> md5(Factory().createDigest(kDigestMD5));
  md5->Update("abc", 3);
  md5->Final();
  EXPECT_EQ("d41d8cd98f00b204e9800998ecf8427e", Hex(md5->Final()));  // Final started over
}

// RFC 2104's, 2286's, 2202's and 4231's vectors; test case 6 has a key longer than the block,
// hashed first.
TEST(MacTest, KnownAnswersAndReuseOfTheKey) {
  const std::string longKey(131, '\xaa');
  const std::string longKeyData = "Test Using Larger Than Block-Size Key - Hash Key First";
  struct Case {
    unsigned int id;
    std::string key, data, expected;
  } cases[] = {
      {kMacHMAC_MD5, "Jefe", "what do ya want for nothing?", "750c783e6ab0b503eaa86e310a5db738"},
      {kMacHMAC_RMD160, "Jefe", "what do ya want for nothing?", "dda6c0213a485a9e24f4742064a7f033b43c4069"},
      {kMacHMAC_SHA1, "Jefe", "what do ya want for nothing?", "effcdf6ae5eb2fa2d27416d5f184df9c259a7c79"},
      {kMacHMAC_SHA256, "Jefe", "what do ya want for nothing?",
       "5bdcc146bf60754e6a042426089575c75a003f089d2739839dec58b964ec3843"},
      {kMacHMAC_SHA256, longKey, longKeyData, "60e431591ee0b67f0d8a26aacbf5b77f8e0bc6213728c5140546040f0ee37f54"},
      {kMacHMAC_SHA512, longKey, longKeyData,
       "80b24263c7c1a3ebb71493c1dd7be8b49b46d1f41b4aeec1121b013783f8f3526b56d037e05f2598bd0fd2215d6a1e5295e64f73f63"
       "f0aec8b915a985d786598"},
  };
  for (const auto& c : cases) {
    std::unique_ptr<IMAC> mac(Factory().createMAC(c.id));
    ASSERT_NE(nullptr, mac.get());
    EXPECT_EQ(mac->DigestSize(), mac->KeySize());
    EXPECT_EQ(c.expected.size() / 2, mac->DigestSize());
    EXPECT_EQ("", mac->Final());  // no key yet
    ASSERT_TRUE(mac->Setup(c.key));
    mac->Update(c.data.data(), static_cast<unsigned int>(c.data.size()));
    EXPECT_EQ(c.expected, Hex(mac->Final())) << std::hex << c.id << " " << c.data;
    mac->Update(c.data.data(), static_cast<unsigned int>(c.data.size()));
    EXPECT_EQ(c.expected, Hex(mac->Final())) << "the key was not kept";
  }
}

// The same derivation written the long way: every byte each context hashes, in one call.
std::string SlowS2K(const std::string& pass, const std::string& salt, size_t count, size_t keyLength) {
  std::string data = salt + pass, key;
  size_t total = std::max(count, data.size());
  for (size_t preload = 0; key.size() < keyLength; ++preload) {
    std::string all(preload, '\0');
    while (all.size() < preload + total) all += data;
    all.resize(preload + total);
    unsigned char out[EVP_MAX_MD_SIZE];
    unsigned int n = 0;
    EVP_Digest(all.data(), all.size(), out, &n, EVP_sha1(), nullptr);
    key.append(reinterpret_cast<char*>(out), n);
  }
  return key.substr(0, keyLength);
}

TEST(S2KTest, IteratedAndSaltedDerivation) {
  std::unique_ptr<IS2K> s2k(Factory().createS2K(kS2KPGP));
  ASSERT_NE(nullptr, s2k.get());
  const std::string salt = Bytes("a1b2c3d4e5f60718");
  struct Case {
    std::string pass;
    unsigned int count, length;
  } cases[] = {{"secret", 65536, 16}, {"secret", 1, 16}, {"pass phrase", 1000, 40}, {"x", 24, 61}};
  for (const auto& c : cases) {
    std::string key;
    ASSERT_TRUE(s2k->Derive(c.pass, salt, c.count, c.length, key));
    EXPECT_EQ(Hex(SlowS2K(c.pass, salt, c.count, c.length)), Hex(key)) << c.pass << " " << c.count;
  }
  std::string a, b;
  s2k->Derive("secret", salt, 65536, 16, a);
  s2k->Derive("secret", Bytes("a1b2c3d4e5f60719"), 65536, 16, b);
  EXPECT_NE(a, b);
  EXPECT_FALSE(s2k->Derive("secret", salt, 1000, 0, a));
  EXPECT_FALSE(s2k->Derive("secret", salt, 0xFFFFFFFFu, 16, a));
  EXPECT_TRUE(a.empty());
}

// ---- encodings ----

TEST(Base64Test, StandardVectorsBothForms) {
  std::unique_ptr<IBase64> plain(Factory().createBase64(false));
  std::unique_ptr<IBase64> lines(Factory().createBase64(true));
  const std::pair<const char*, const char*> vectors[] = {{"", ""},        {"f", "Zg=="},        {"fo", "Zm8="},
                                                         {"foo", "Zm9v"}, {"foob", "Zm9vYg=="}, {"fooba", "Zm9vYmE="}};
  for (const auto& [data, text] : vectors) {
    EXPECT_EQ(text, plain->Encode(data));
    std::string back;
    ASSERT_TRUE(plain->Decode(text, back)) << text;
    EXPECT_EQ(data, back);
  }
  std::string binary;
  for (int i = 0; i < 100; ++i) binary.push_back(static_cast<char>(i * 37));
  std::string wrapped = lines->Encode(binary);
  ASSERT_EQ(plain->Encode(binary).substr(0, 64) + "\n", wrapped.substr(0, 65));
  EXPECT_EQ('\n', wrapped.back());
  EXPECT_EQ(3, std::count(wrapped.begin(), wrapped.end(), '\n'));  // 136 characters: 64, 64, 8
  std::string back;
  ASSERT_TRUE(plain->Decode(wrapped, back));
  EXPECT_EQ(binary, back);
}

TEST(Base64Test, MalformedTextIsRefused) {
  std::unique_ptr<IBase64> base64(Factory().createBase64(false));
  for (const char* text : {"Zm9", "Zm9v!", "Z=9v", "Zg===", "=Zg=", "Zm9v Zm9v"}) {
    std::string data = "stale";
    EXPECT_FALSE(base64->Decode(text, data)) << text;
    EXPECT_TRUE(data.empty());
  }
}

TEST(URLCodeTest, EncodesAllButTheUnreservedAndDecodesOnlyWholeEscapes) {
  std::unique_ptr<IURLCode> url(Factory().createURLCode());
  EXPECT_EQ(kURLUnreserved, url->Encode(kURLUnreserved));
  EXPECT_EQ("a%20b%26c%3Dd%2F%C3%A9%25%00%FF", url->Encode(std::string("a b&c=d/\xc3\xa9%\0\xff", 13)));
  EXPECT_EQ(std::string("a b&c=d/\xc3\xa9%\0\xff", 13), url->Decode("a%20b%26c%3dd%2F%C3%a9%25%00%ff"));
  EXPECT_EQ("JJ%zz%4%g1+x%", url->Decode("%4a%4A%zz%4%g1+x%"));
  std::string all;
  for (int c = 0; c < 256; ++c) all.push_back(static_cast<char>(c));
  EXPECT_EQ(all, url->Decode(url->Encode(all)));
}

TEST(CRC32Test, StandardCheckValueTableAndHelpers) {
  std::unique_ptr<ICRC32> crc(Factory().createCRC32());
  crc->Update("12345", 5);
  crc->Update("6789", 4);
  EXPECT_EQ(0xCBF43926u, crc->Value());
  crc->Reset();
  EXPECT_EQ(0u, crc->Value());
  EXPECT_EQ(0x77073096u, CryptoImpl::CRC32::crc_32_tab[1]);
  EXPECT_EQ(0x2D02EF8Du, CryptoImpl::CRC32::crc_32_tab[255]);
  char check[] = "123456789";
  EXPECT_EQ(0xCBF43926u, CryptoImpl::CRC32::GetCRC32(check, 9));
  char le[] = {0x78, 0x56, 0x34, 0x12};
  EXPECT_EQ(CryptoImpl::CRC32::GetCRC32(le, 4), CryptoImpl::CRC32::GetCRC32(0x12345678));
  EXPECT_EQ(0u, CryptoImpl::CRC32::GetCRC32(check, -3));
}

TEST(RNGTest, FillsBuffersWithFreshBytes) {
  IRNG* rng = Factory().rng();
  std::string a(32, '\0'), b(32, '\0');
  ASSERT_TRUE(rng->Generate(a.data(), 32));
  ASSERT_TRUE(rng->Generate(b.data(), 32));
  EXPECT_NE(a, b);
  EXPECT_NE(std::string(32, '\0'), a);
  EXPECT_TRUE(rng->Generate(nullptr, 0));
  EXPECT_FALSE(rng->Generate(nullptr, 4));
}

// ---- RSA ----

TEST(RSATest, KeysEncryptionAndSignatures) {
  std::unique_ptr<IRSA> owner(Factory().createRSA());
  EXPECT_EQ(0u, owner->KeySize());
  EXPECT_FALSE(owner->GenerateKey(512));
  ASSERT_TRUE(owner->GenerateKey(2048));
  EXPECT_EQ(256u, owner->KeySize());

  std::unique_ptr<IRSA> peer(Factory().createRSA());
  ASSERT_TRUE(peer->SetPublicKey(owner->GetPublicKey()));
  EXPECT_EQ("", peer->GetPrivateKey());
  std::string cipher, plain, signature;
  ASSERT_TRUE(peer->Encrypt("meet at noon", cipher));
  EXPECT_EQ(256u, cipher.size());
  EXPECT_FALSE(peer->Decrypt(cipher, plain));  // a public key cannot
  ASSERT_TRUE(owner->Decrypt(cipher, plain));
  EXPECT_EQ("meet at noon", plain);
  cipher[10] ^= 1;
  EXPECT_FALSE(owner->Decrypt(cipher, plain));

  ASSERT_TRUE(owner->Sign("contract", signature));
  EXPECT_TRUE(peer->Verify("contract", signature));
  EXPECT_FALSE(peer->Verify("contracts", signature));
  EXPECT_FALSE(peer->Sign("contract", signature));

  std::unique_ptr<IRSA> restored(Factory().createRSA());
  ASSERT_TRUE(restored->SetPrivateKey(owner->GetPrivateKey()));
  EXPECT_EQ(owner->GetPublicKey(), restored->GetPublicKey());

  unsigned char* der = nullptr;
  int length = owner->ExportPublicKey(&der);
  ASSERT_GT(length, 0);
  EXPECT_EQ(owner->GetPublicKey(), std::string(reinterpret_cast<char*>(der), static_cast<size_t>(length)));
  CryptoFree(der);
}

TEST(RSATest, ForeignKeysAreRefused) {
  std::unique_ptr<IRSA> rsa(Factory().createRSA());
  EXPECT_FALSE(rsa->SetPublicKey(""));
  EXPECT_FALSE(rsa->SetPublicKey("\x30\x82\x01\x22 not a key"));
  EXPECT_FALSE(rsa->SetPrivateKey(std::string(300, '\x30')));
  unsigned char* der = reinterpret_cast<unsigned char*>(1);
  EXPECT_EQ(-1, rsa->ExportPublicKey(&der));
  EXPECT_EQ(nullptr, der);
  std::string out;
  EXPECT_FALSE(rsa->Encrypt("x", out));
  EXPECT_FALSE(rsa->Verify("x", "y"));
}

}  // namespace
