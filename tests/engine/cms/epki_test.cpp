#include "engine/cms/epki.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "engine/cms/crypto_context.h"
#include "engine/cms/keys.h"
#include "engine/cms/pbe.h"
#include "tests/engine/cms/tools.h"

namespace zel::cms {
namespace {

constexpr std::uint32_t kFewIterations = 2000;

sys::SecretBytes aKey() {
  static const KeyPtr key = std::move(generateKey(2048)).value();
  return privateKeyInfo(*key).value();
}

sys::Bytes encryptedQuickly(std::string_view password) {
  const sys::Bytes salt(kPbeSaltLength, 7);
  return encryptPrivateKey(aKey(), derivePbeKey(text(password), salt, kFewIterations).value())
      .value();
}

TEST(EncryptedKeys, ComeBackWithTheirPassword) {
  const sys::Bytes epki = encryptPrivateKey(aKey(), text("Pass word")).value();
  EXPECT_EQ(decryptPrivateKey(epki, text("Pass word")).value(), aKey());
}

TEST(EncryptedKeys, ComeBackFromAKeyThatIsDerivedOnce) {
  EXPECT_EQ(decryptPrivateKey(encryptedQuickly("secret"), text("secret")).value(), aKey());
}

TEST(EncryptedKeys, DifferEveryTime) { EXPECT_NE(encryptedQuickly("a"), encryptedQuickly("a")); }

TEST(EncryptedKeys, AreReadByOpenSsl) {
  const TemporaryFolder folder;
  folder.write("epki", encryptedQuickly("Päss🔑"));
  const CommandResult result =
      run("openssl pkcs8 -inform DER -outform DER -passin 'pass:Päss🔑' -in " + folder.path("epki") +
          " -out " + folder.path("key"));
  ASSERT_EQ(result.exitCode, 0) << result.output;
  const KeyPtr again = std::move(readPrivateKey(folder.read("key"))).value();
  EXPECT_EQ(privateKeyInfo(*again).value(), aKey());
}

class ForeignEncryption : public testing::TestWithParam<const char*> {};

TEST_P(ForeignEncryption, IsRead) {
  const TemporaryFolder folder;
  const sys::SecretBytes key = aKey();
  folder.write("key", key);
  const std::string convert =
      "openssl pkcs8 -topk8 -inform DER -outform DER -passout pass:secret " +
      std::string(GetParam()) + " -in " + folder.path("key") + " -out " + folder.path("epki");
  const CommandResult made = run(convert);
  ASSERT_EQ(made.exitCode, 0) << made.output;

  const sys::Bytes epki = folder.read("epki");
  EXPECT_EQ(decryptPrivateKey(epki, text("secret")).value(), aKey());
  EXPECT_EQ(decryptPrivateKey(epki, text("Secret")).code(), ZELKM_ERR_DATABASE_INVALID_PASSWORD);
}

INSTANTIATE_TEST_SUITE_P(OfOpenSsl, ForeignEncryption,
                         testing::Values("-v2 aes-256-cbc", "-v2 aes-128-cbc -v2prf hmacWithSHA1",
                                         "-v2 des3", "-v1 PBE-SHA1-3DES",
                                         "-v1 PBE-SHA1-RC2-40 -provider legacy -provider default",
                                         "-v1 PBE-MD5-DES -provider legacy -provider default",
                                         "-scrypt"));

TEST(EncryptedKeys, OfOldAreRefusedWhereTheyAreNotPermitted) {
  const TemporaryFolder folder;
  folder.write("key", aKey());
  const CommandResult made =
      run("openssl pkcs8 -topk8 -inform DER -outform DER -passout pass:secret -v1 PBE-SHA1-RC2-40 "
          "-provider legacy -provider default -in " +
          folder.path("key") + " -out " + folder.path("epki"));
  ASSERT_EQ(made.exitCode, 0) << made.output;
  const sys::Bytes epki = folder.read("epki");

  permitLegacyAlgorithms(false);
  const int refused = decryptPrivateKey(epki, text("secret")).code();
  permitLegacyAlgorithms(true);
  EXPECT_EQ(refused, ZELKM_ERR_PBE_ALG_UNSUPPORT);
  EXPECT_EQ(decryptPrivateKey(epki, text("secret")).value(), aKey());
}

TEST(EncryptedKeys, TellAWrongPasswordFromDamage) {
  const sys::Bytes epki = encryptedQuickly("secret");
  EXPECT_EQ(decryptPrivateKey(epki, text("wrong")).code(), ZELKM_ERR_DATABASE_INVALID_PASSWORD);
  EXPECT_EQ(decryptPrivateKey(epki, {}).code(), ZELKM_ERR_DATABASE_INVALID_PASSWORD);

  sys::Bytes lastByte = epki;
  lastByte.back() ^= 1;
  EXPECT_EQ(decryptPrivateKey(lastByte, text("secret")).code(), ZELKM_ERR_DATABASE_KEY_INTEGRITY);

  const sys::ByteView cutOff = sys::ByteView(epki).first(epki.size() - 1);
  EXPECT_EQ(decryptPrivateKey(cutOff, text("secret")).code(), ZELKM_ERR_DATABASE_KEY_INTEGRITY);
  EXPECT_EQ(decryptPrivateKey({}, text("secret")).code(), ZELKM_ERR_DATABASE_KEY_INTEGRITY);
}

TEST(EncryptedKeys, NeverTakeAWrongPasswordForDamage) {
  const sys::Bytes epki = encryptedQuickly("secret");
  for (int i = 0; i < 600; ++i) {  // one wrong password in 256 leaves a well-formed padding
    const std::string wrong = "wrong" + std::to_string(i);
    EXPECT_EQ(decryptPrivateKey(epki, text(wrong)).code(), ZELKM_ERR_DATABASE_INVALID_PASSWORD);
  }
}

TEST(EncryptedKeys, NameAnUnknownEncryption) {
  sys::Bytes epki = encryptedQuickly("secret");
  // The last arc of 1.2.840.113549.1.5.13 (PBES2), which becomes one that does not exist.
  const sys::Bytes pbes2 = {0x06, 0x09, 0x2A, 0x86, 0x48, 0x86, 0xF7, 0x0D, 0x01, 0x05, 0x0D};
  const auto at = std::search(epki.begin(), epki.end(), pbes2.begin(), pbes2.end());
  ASSERT_NE(at, epki.end());
  *(at + 10) = 0x7D;
  EXPECT_EQ(decryptPrivateKey(epki, text("secret")).code(), ZELKM_ERR_PBE_ALG_UNSUPPORT);
}

TEST(EncryptedKeys, WithExcessiveIterationsAreNotTried) {
  const sys::Bytes salt(kPbeSaltLength, 7);
  PbeKey pbe = derivePbeKey(text("secret"), salt, kFewIterations).value();
  pbe.iterations = 10'000'001;
  EXPECT_EQ(decryptPrivateKey(encryptPrivateKey(aKey(), pbe).value(), text("secret")).code(),
            ZELKM_ERR_PBE_ALG_UNSUPPORT);
}

TEST(EncryptedKeys, WithExcessiveScryptAreNotTried) {
  const TemporaryFolder folder;
  folder.write("key", aKey());
  const CommandResult made =
      run("openssl pkcs8 -topk8 -inform DER -outform DER -passout pass:secret -scrypt -scrypt_N "
          "1024 -scrypt_r 1 -scrypt_p 4096 -in " +
          folder.path("key") + " -out " + folder.path("epki"));
  ASSERT_EQ(made.exitCode, 0) << made.output;
  sys::Bytes epki = folder.read("epki");
  EXPECT_EQ(decryptPrivateKey(epki, text("secret")).value(), aKey()) << "just within the bound";

  const sys::Bytes parallelization = {0x02, 0x02, 0x10, 0x00};
  const auto at =
      std::search(epki.begin(), epki.end(), parallelization.begin(), parallelization.end());
  ASSERT_NE(at, epki.end());
  *(at + 3) = 1;
  EXPECT_EQ(decryptPrivateKey(epki, text("secret")).code(), ZELKM_ERR_PBE_ALG_UNSUPPORT);
}

TEST(EncryptedKeys, AreMadeWithTheDocumentedParameters) {
  const TemporaryFolder folder;
  folder.write("epki", encryptPrivateKey(aKey(), text("secret")).value());
  const std::string dump = run("openssl asn1parse -inform DER -in " + folder.path("epki")).output;
  for (const char* part : {":PBES2", ":PBKDF2", ":0927C0", ":hmacWithSHA256", ":aes-256-cbc"}) {
    EXPECT_NE(dump.find(part), std::string::npos) << part;
  }
}

}  // namespace
}  // namespace zel::cms
