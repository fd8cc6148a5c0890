#include "engine/cms/keys.h"

#include <gmock/gmock.h>

#include "engine/cms/openssl_ptr.h"
#include "engine/km/token/token_access.h"
#include "tests/engine/stores/labels.h"
#include "tests/engine/token/token_store_test.h"

// Keys that live on the token, and signatures by them.

namespace zel::km::token {

namespace {

class TokenKeys : public TokenStoreTest {};

TEST_P(TokenKeys, makesKeysOfEverySizeAndSignsWithEveryDigest) {
  for (const int size : {2048, 3072, 4096, 256, 384, 521}) {
    SCOPED_TRACE(size);
    const sys::Result<GeneratedKey> key = store().generateKey(size);
    ASSERT_EQ(key.code(), ZELKM_OK);
    EXPECT_EQ(cms::describePublicKey(key.value().publicKey).value().size, size);
    EXPECT_TRUE(key.value().privateKey.pkcs8.empty());
    EXPECT_TRUE(key.value().privateKey.present());
    for (const SigningDigest digest :
         {SigningDigest::sha256, SigningDigest::sha384, SigningDigest::sha512}) {
      EXPECT_TRUE(signs(key.value().privateKey, key.value().publicKey, digest));
    }
  }
}

TEST_P(TokenKeys, tellsSizesThatNoKeyHasFromThoseThatTheTokenDoesNotMake) {
  for (const int size : {0, 255, 1024, 2047, 16385}) {
    EXPECT_EQ(store().generateKey(size).code(), ZELKM_ERR_CRYPTO_UNSUPPORTED_MODULUS_SIZE) << size;
  }
  EXPECT_EQ(store().generateKey(25519).code(), ZELKM_ERR_CRYPTO_UNSUPPORTED_MODULUS_SIZE);
}

TEST_P(TokenKeys, leavesNothingBehindOfAKeyThatNoEntryTook) {
  const std::size_t before = objectCount();
  newKey();
  EXPECT_EQ(objectCount(), before + 2);
  reopen();
  EXPECT_EQ(objectCount(), before);
}

TEST_P(TokenKeys, keepsPrivateKeysToItself) {
  const KeyEntry made = newEntry("made");
  ASSERT_EQ(store().insertKey(made).code(), ZELKM_OK);
  const cms::TestAuthority other("Imported", 2048);
  KeyEntry imported{
      .label = "imported"_label, .certificate = other.certificate(), .privateKey = {}};
  imported.privateKey.pkcs8 = cms::privateKeyInfo(other.key()).value();
  ASSERT_EQ(store().insertKey(imported).code(), ZELKM_OK);

  const sys::Result<std::unique_ptr<Session>> session = openToken(tokenName(), password(kPin));
  Template wanted;
  wanted.addNumber(CKA_CLASS, CKO_PRIVATE_KEY);
  const std::vector<CK_OBJECT_HANDLE> keys = session.value()->find(wanted).value();
  ASSERT_EQ(keys.size(), 2U);
  for (const CK_OBJECT_HANDLE key : keys) {
    static constexpr CK_ATTRIBUTE_TYPE kTypes[] = {CKA_SENSITIVE, CKA_EXTRACTABLE,      CKA_PRIVATE,
                                                   CKA_TOKEN,     CKA_PRIVATE_EXPONENT, CKA_VALUE};
    const Attributes attributes = session.value()->read(key, kTypes).value();
    EXPECT_TRUE(attributes.flag(CKA_SENSITIVE));
    EXPECT_TRUE(attributes.flag(CKA_PRIVATE));
    EXPECT_TRUE(attributes.flag(CKA_TOKEN));
    EXPECT_FALSE(attributes.flag(CKA_EXTRACTABLE));
    EXPECT_TRUE(attributes.bytes(CKA_PRIVATE_EXPONENT).empty());
    EXPECT_TRUE(attributes.bytes(CKA_VALUE).empty());
  }
  const KeyEntry found = store().findKey("imported"_label).value();
  EXPECT_EQ(store().encryptedPrivateKey(found.privateKey).code(),
            ZELKM_ERR_KEYREC_PRIVATE_KEY_NULL);
}

TEST_P(TokenKeys, signsWithKeysThatWereBroughtIn) {
  for (const int size : {2048, 256, 384, 521}) {
    SCOPED_TRACE(size);
    const std::string name = "key " + std::to_string(size);
    const cms::TestAuthority other(name, size);
    KeyEntry entry{
        .label = Label::ofName(name), .certificate = other.certificate(), .privateKey = {}};
    entry.privateKey.pkcs8 = cms::privateKeyInfo(other.key()).value();
    ASSERT_EQ(store().insertKey(entry).code(), ZELKM_OK);
    const KeyEntry found = store().findKey(Label::ofName(name)).value();
    EXPECT_TRUE(found.privateKey.pkcs8.empty());
    EXPECT_TRUE(signs(found.privateKey, publicKeyOf(found.certificate)));
  }
}

TEST_P(TokenKeys, takesNoKeysButRsaAndEc) {
  const cms::TestAuthority other("Edwards", 25519);
  const std::size_t before = objectCount();
  KeyEntry entry{.label = "edwards"_label, .certificate = other.certificate(), .privateKey = {}};
  entry.privateKey.pkcs8 = cms::privateKeyInfo(other.key()).value();
  EXPECT_EQ(store().insertKey(entry).code(), ZELKM_ERR_CRYPTOGRAPHIC_TOKEN_NOT_SUPPORT);
  EXPECT_EQ(objectCount(), before);
}

TEST_P(TokenKeys, signsWithAKeyAtHandToo) {
  PrivateKey atHand;
  atHand.pkcs8 = cms::privateKeyInfo(authority_.key()).value();
  EXPECT_TRUE(signs(atHand, publicKeyOf(authority_.certificate())));
}

TEST_P(TokenKeys, leavesNothingInTheQueueOfOpenSslErrors) {
  // SoftHSM shares OpenSSL with this process, and leaves its failed decryption of a PIN there.
  EXPECT_EQ(open(kWrongPin), -ZELKM_ERR_DATABASE_INVALID_PASSWORD);
  EXPECT_EQ(ERR_peek_error(), 0U);
  const PrivateKey nobodys{.pkcs8 = {}, .reference = sys::Bytes(8)};
  EXPECT_EQ(store().sign(nobodys, SigningDigest::sha256, {}).code(),
            ZELKM_ERR_KEYREC_PRIVATE_KEY_NULL);
  EXPECT_EQ(ERR_peek_error(), 0U);
}

INSTANTIATE_TEST_SUITE_P(, TokenKeys, testing::ValuesIn(kVendors), vendorName);

}  // namespace

}  // namespace zel::km::token
