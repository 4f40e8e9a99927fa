#include <gtest/gtest.h>

#include <openssl/evp.h>

#include <string>

#include "common/Md5.h"
#include "common/StringUtil.h"
#include "support/Files.h"
#include "support/TempDir.h"

namespace mc = mivo::common;

namespace {

std::string Reference(const std::string& data) {
  unsigned char out[EVP_MAX_MD_SIZE];
  unsigned int n = 0;
  EVP_Digest(data.data(), data.size(), out, &n, EVP_md5(), nullptr);
  return mc::bin2hex(out, n);
}

TEST(Md5Test, KnownVectorsEveryForm) {
  const std::pair<std::string, const char*> vectors[] = {
      {"", "d41d8cd98f00b204e9800998ecf8427e"},
      {"abc", "900150983cd24fb0d6963f7d28e17f72"},
      {"message digest", "f96b697d7cb7938d525a2f31aaf161d0"},
      {"12345678901234567890123456789012345678901234567890123456789012345678901234567890",
       "57edf4a22be3c955ac49da2e2107b67a"},
  };
  for (const auto& [data, hex] : vectors) {
    EXPECT_EQ(hex, mc::MakeMD5Value(data.data(), static_cast<unsigned int>(data.size())));
    EXPECT_EQ(hex, mc::GetMD5(data));
    EXPECT_EQ(hex, mc::bin2hex(mc::MakeMD5Binary(data.data(), static_cast<unsigned int>(data.size()))));
    mc::md5_ctxt ctxt;
    mc::md5_init(&ctxt);
    mc::md5_loop(&ctxt, reinterpret_cast<const unsigned char*>(data.data()), data.size());
    mc::md5_pad(&ctxt);
    unsigned char digest[16];
    mc::md5_result(digest, &ctxt);
    EXPECT_EQ(hex, mc::bin2hex(digest, 16));
  }
  EXPECT_EQ("d41d8cd98f00b204e9800998ecf8427e", mc::MakeMD5Value(nullptr, 5));
}

// Every length around the 56- and 64-byte block edges, fed whole and in uneven pieces.
TEST(Md5Test, BlockEdgesAndPiecesAgreeWithTheCryptoLibrary) {
  std::string data;
  for (int i = 0; i < 300; ++i) data.push_back(static_cast<char>(i * 131 + 7));
  for (size_t length = 0; length <= data.size(); ++length) {
    std::string part = data.substr(0, length);
    mc::BatchMD5 md5;
    for (size_t at = 0, step = 1; at < length; at += step, step = step % 13 + 5)
      md5.Add(part.data() + at, std::min(step, length - at));
    ASSERT_EQ(Reference(part), md5.HexDigest()) << length;
  }
}

TEST(Md5Test, ARunningDigestCanBeReadAndContinued) {
  mc::BatchMD5 md5;
  md5.Add("ab", 2);
  EXPECT_EQ(mc::GetMD5("ab"), md5.HexDigest());
  md5.Add("c", 1);
  EXPECT_EQ("900150983cd24fb0d6963f7d28e17f72", md5.HexDigest());
  md5.Reset();
  EXPECT_EQ("d41d8cd98f00b204e9800998ecf8427e", md5.HexDigest());
}

TEST(Md5Test, FilesAreHashedInPieces) {
  testing_support::TempDir dir;
  std::string content(200000, 'x');
  for (size_t i = 0; i < content.size(); i += 997) content[i] = static_cast<char>(i);
  testing_support::Write(dir.NativeOf(L"big.bin"), content);
  EXPECT_EQ(CString(Reference(content).c_str()), mc::GetFileMd5(dir.Path() + L"big.bin"));
  EXPECT_EQ(Reference(content), mc::bin2hex(mc::GetFileMd5Binary(dir.Path() + L"big.bin")));
  EXPECT_TRUE(mc::GetFileMd5(dir.Path() + L"missing.bin").IsEmpty());
  EXPECT_TRUE(mc::GetFileMd5Binary(dir.Path()).empty());  // a folder
  EXPECT_TRUE(mc::GetFileMd5(CString()).IsEmpty());
}

}  // namespace
