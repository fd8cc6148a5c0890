#include "engine/cms/keys.h"

#include <gmock/gmock.h>

#include "engine/cms/epki.h"
#include "tests/engine/stores/store_test.h"

// Keys that are made, that sign, and that leave and enter a store under its password.

namespace zel::km {

namespace {

using testing::IsEmpty;

constexpr SigningDigest kDigests[] = {SigningDigest::sha256, SigningDigest::sha384,
                                      SigningDigest::sha512};

class Keys : public StoreTest {
 protected:
  /** The key of an entry, as it comes out of the store. */
  PrivateKey kept(const KeyEntry& entry) {
    EXPECT_EQ(store().insertKey(entry).code(), ZELKM_OK);
    reopen();
    return store().findKey(entry.label).value().privateKey;
  }
};

TEST_P(Keys, AreMadeOfEverySizeAndSignWithEveryDigest) {
  for (const int size : {2048, 3072, 256, 384, 521}) {
    SCOPED_TRACE(size);
    const sys::Result<GeneratedKey> made = store().generateKey(size);
    ASSERT_EQ(made.code(), ZELKM_OK);
    const GeneratedKey& key = made.value();
    const cms::KeyTraits traits = cms::describePublicKey(key.publicKey).value();
    EXPECT_EQ(traits.algorithm, size < 2048 ? cms::KeyAlgorithm::ec : cms::KeyAlgorithm::rsa);
    EXPECT_EQ(traits.size, size);
    EXPECT_TRUE(key.privateKey.present());
    for (const SigningDigest digest : kDigests) {
      EXPECT_TRUE(signs(key.privateKey, key.publicKey, digest));
    }
  }
}

TEST_P(Keys, AreInNoEntryWhenTheyAreNew) {
  newKey();
  EXPECT_THAT(keys(), IsEmpty());
  EXPECT_THAT(requests(), IsEmpty());
  reopen();
  EXPECT_THAT(keys(), IsEmpty());
  EXPECT_THAT(requests(), IsEmpty());
}

TEST_P(Keys, AreNotMadeOfSizesThatNoKeyHas) {
  for (const int size : {-1, 0, 255, 257, 512, 1024, 2047, 16385, 25520}) {
    EXPECT_EQ(store().generateKey(size).code(), ZELKM_ERR_CRYPTO_UNSUPPORTED_MODULUS_SIZE) << size;
  }
}

TEST_P(Keys, OfEntriesSignWhateverKindTheyAre) {
  for (const int size : {2048, 256, 384, 521}) {
    SCOPED_TRACE(size);
    const cms::TestAuthority owner("Owner " + std::to_string(size), size);
    const PrivateKey key = kept(entryOf(std::to_string(size), owner));
    for (const SigningDigest digest : kDigests) {
      EXPECT_TRUE(signs(key, publicKeyOf(owner.certificate()), digest));
    }
  }
}

TEST_P(Keys, OfOneEntryDoNotSignForAnother) {
  const PrivateKey key = kept(newEntry("web"));
  EXPECT_FALSE(signs(key, publicKeyOf(authority_.certificate())));
}

TEST_P(Keys, AtHandSignToo) {
  const PrivateKey key = entryOf("authority", authority_).privateKey;
  EXPECT_TRUE(signs(key, publicKeyOf(authority_.certificate())));
}

TEST_P(Keys, ThatAreNotThereDoNotSign) {
  EXPECT_EQ(store().sign({}, SigningDigest::sha256, cms::text("text")).code(),
            ZELKM_ERR_KEYREC_PRIVATE_KEY_NULL);
}

TEST_P(Keys, ThatAreNotThereAreNotHandedOut) {
  const PrivateKey none = kept(signerEntryOf("authority", authority_));
  EXPECT_EQ(store().encryptedPrivateKey(none).code(), ZELKM_ERR_KEYREC_PRIVATE_KEY_NULL);
}

TEST_P(Keys, AreTakenUnderThePasswordOfTheStore) {
  const sys::SecretBytes key = cms::privateKeyInfo(authority_.key()).value();
  const sys::Bytes encrypted =
      cms::encryptPrivateKey(key, cms::text(kind().password), 2'000).value();
  EXPECT_EQ(store().decryptedPrivateKey(encrypted).value(), key);
}

TEST_P(Keys, ThatAreDamagedAreNotTaken) {
  EXPECT_EQ(store().decryptedPrivateKey(sys::Bytes{1, 2, 3}).code(),
            ZELKM_ERR_DATABASE_KEY_INTEGRITY);
}

INSTANTIATE_TEST_SUITE_P(, Keys, testing::ValuesIn(allStores()), storeName);

class EdwardsKeys : public Keys {};

TEST_P(EdwardsKeys, AreMadeKeptAndSign) {
  const sys::Result<GeneratedKey> made = store().generateKey(25519);
  ASSERT_EQ(made.code(), ZELKM_OK);
  const GeneratedKey& key = made.value();
  EXPECT_EQ(cms::describePublicKey(key.publicKey).value().algorithm, cms::KeyAlgorithm::ed25519);
  const PrivateKey found = kept({.label = "web"_label,
                                 .certificate = authority_.issueFor(key.publicKey, "web"),
                                 .privateKey = key.privateKey});
  EXPECT_TRUE(signs(found, key.publicKey, SigningDigest::none));
}

INSTANTIATE_TEST_SUITE_P(, EdwardsKeys,
                         testing::ValuesIn(storesThatDo(Operation::generateEd25519Key)), storeName);

class KeysThatLeave : public Keys {};

TEST_P(KeysThatLeave, DoSoUnderThePasswordOfTheStore) {
  const KeyEntry made = newEntry("web");
  const PrivateKey key = kept(made);
  EXPECT_EQ(key.pkcs8, made.privateKey.pkcs8);
  const sys::Bytes encrypted = store().encryptedPrivateKey(key).value();
  EXPECT_EQ(cms::decryptPrivateKey(encrypted, cms::text(kind().password)).value(), key.pkcs8);
  EXPECT_EQ(store().decryptedPrivateKey(encrypted).value(), key.pkcs8);
}

TEST_P(KeysThatLeave, DoNotLookTheSameTwice) {
  const PrivateKey key = kept(newEntry("web"));
  EXPECT_NE(store().encryptedPrivateKey(key).value(), store().encryptedPrivateKey(key).value());
}

INSTANTIATE_TEST_SUITE_P(, KeysThatLeave, testing::ValuesIn(storesThatDo(Operation::encryptOwnKey)),
                         storeName);

}  // namespace

}  // namespace zel::km
