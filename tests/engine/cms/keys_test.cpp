#include "engine/cms/keys.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "engine/cms/signing.h"
#include "tests/engine/cms/tools.h"

namespace zel::cms {
namespace {

struct SizeCase {
  int size;
  KeyTraits traits;
};

class KeySizes : public testing::TestWithParam<SizeCase> {};

TEST_P(KeySizes, ChooseTheAlgorithm) {
  const sys::Result<KeyPtr> key = generateKey(GetParam().size);
  ASSERT_TRUE(key);
  EXPECT_EQ(describeKey(*key.value()), GetParam().traits);
  EXPECT_EQ(describePublicKey(publicKeyInfo(*key.value()).value()).value(), GetParam().traits);
}

TEST_P(KeySizes, SurvivePkcs8) {
  const sys::Result<KeyPtr> key = generateKey(GetParam().size);
  const sys::SecretBytes pkcs8 = privateKeyInfo(*key.value()).value();
  const sys::Result<KeyPtr> again = readPrivateKey(pkcs8);
  ASSERT_TRUE(again);
  EXPECT_EQ(EVP_PKEY_eq(key.value().get(), again.value().get()), 1);
  EXPECT_EQ(privateKeyInfo(*again.value()).value(), pkcs8);
}

INSTANTIATE_TEST_SUITE_P(All, KeySizes,
                         testing::Values(SizeCase{2048, {KeyAlgorithm::rsa, 2048}},
                                         SizeCase{256, {KeyAlgorithm::ec, 256}},
                                         SizeCase{384, {KeyAlgorithm::ec, 384}},
                                         SizeCase{521, {KeyAlgorithm::ec, 521}},
                                         SizeCase{25519, {KeyAlgorithm::ed25519, 255}}),
                         [](const auto& test) { return std::to_string(test.param.size); });

TEST(Keys, OfOtherSizesAreRefused) {
  for (const int size : {-1, 0, 255, 257, 512, 1024, 2047, 16385}) {
    EXPECT_EQ(generateKey(size).code(), ZELKM_ERR_CRYPTO_UNSUPPORTED_MODULUS_SIZE) << size;
  }
}

TEST(Keys, OnTheNamedCurveKeepItsName) {
  const KeyPtr key = std::move(generateKey(384)).value();
  char curve[32] = "";
  ASSERT_EQ(EVP_PKEY_get_group_name(key.get(), curve, sizeof curve, nullptr), 1);
  EXPECT_STREQ(curve, "secp384r1");
}

TEST(Keys, InTraditionalFormAreRead) {
  const TemporaryFolder folder;
  for (const char* make :
       {"openssl genrsa -traditional 2048 | openssl rsa -traditional -outform DER",
        "openssl ecparam -name prime256v1 -genkey -noout -outform DER"}) {
    ASSERT_EQ(run(std::string(make) + " > " + folder.path("key")).exitCode, 0);
    EXPECT_TRUE(readPrivateKey(folder.read("key"))) << make;
  }
}

TEST(Keys, OfOtherAlgorithmsAreToldFromDamagedOnes) {
  const TemporaryFolder folder;
  ASSERT_EQ(run("openssl genpkey -algorithm X25519 -outform DER -out " + folder.path("x")).exitCode,
            0);
  EXPECT_EQ(readPrivateKey(folder.read("x")).code(), ZELKM_ERR_CRYPTO_UNSUPPORTED_ALGORITHM);

  sys::SecretBytes damaged = privateKeyInfo(*generateKey(256).value()).value();
  damaged[damaged.size() / 2] ^= 0xFF;
  damaged[30] ^= 0xFF;
  EXPECT_EQ(readPrivateKey(damaged).code(), ZELKM_ERR_ASN);
  EXPECT_EQ(readPrivateKey(text("no key at all")).code(), ZELKM_ERR_ASN);
  EXPECT_EQ(readPrivateKey({}).code(), ZELKM_ERR_ASN);
}

TEST_P(KeySizes, MakePairsOfTheirTwoHalves) {
  const KeyPtr key = std::move(generateKey(GetParam().size)).value();
  const KeyPtr other = std::move(generateKey(GetParam().size)).value();
  EXPECT_TRUE(isPair(*key, publicKeyInfo(*key).value()));
  EXPECT_FALSE(isPair(*key, publicKeyInfo(*other).value()));
}

TEST(Keys, ThatClaimTheHalfOfAnotherAreNoPair) {
  constexpr std::ptrdiff_t kPointSize = 65;  // both encodings end in the uncompressed point
  const KeyPtr other = std::move(generateKey(256)).value();
  const sys::Bytes otherPublic = publicKeyInfo(*other).value();
  sys::SecretBytes claiming = privateKeyInfo(*generateKey(256).value()).value();
  std::copy(otherPublic.end() - kPointSize, otherPublic.end(), claiming.end() - kPointSize);

  const sys::Result<KeyPtr> key = readPrivateKey(claiming);
  ASSERT_TRUE(key);
  ASSERT_EQ(EVP_PKEY_eq(key.value().get(), other.get()), 1);
  EXPECT_FALSE(isPair(*key.value(), otherPublic));
}

TEST(Keys, BoundToPssAreRsaButDoNotSign) {
  const TemporaryFolder folder;
  ASSERT_EQ(
      run("openssl genpkey -algorithm RSA-PSS -outform DER -out " + folder.path("pss")).exitCode,
      0);
  const sys::Result<KeyPtr> key = readPrivateKey(folder.read("pss"));
  ASSERT_TRUE(key);
  const KeyTraits traits = describeKey(*key.value());
  EXPECT_EQ(traits, (KeyTraits{KeyAlgorithm::rsa, 2048, true}));
  EXPECT_EQ(describePublicKey(publicKeyInfo(*key.value()).value()).value(), traits);
  EXPECT_EQ(chooseDigest(traits, kByKeyStrength).code(), ZELKM_ERR_CRYPTO_UNSUPPORTED_ALGORITHM);
  EXPECT_EQ(chooseDigest(traits, kSha256).code(), ZELKM_ERR_CRYPTO_UNSUPPORTED_ALGORITHM);
}

TEST(Keys, PublicKeysOfUnknownKindAreDescribedAsUnknown) {
  const TemporaryFolder folder;
  ASSERT_EQ(run("openssl genpkey -algorithm X25519 | openssl pkey -pubout -outform DER -out " +
                folder.path("x"))
                .exitCode,
            0);
  EXPECT_EQ(describePublicKey(folder.read("x")).value().algorithm, KeyAlgorithm::unknown);
  EXPECT_EQ(describePublicKey(text("nothing")).code(), ZELKM_ERR_ASN);
}

}  // namespace
}  // namespace zel::cms
