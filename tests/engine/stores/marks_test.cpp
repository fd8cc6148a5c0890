#include <gmock/gmock.h>

#include "tests/engine/stores/store_test.h"

// Which certificates are trusted, and which key is the default.

namespace zel::km {

namespace {

class Trust : public StoreTest {
 protected:
  bool isTrusted() { return store().findKey("authority"_label).value().trusted; }
};

TEST_P(Trust, ComesWithANewEntry) {
  KeyEntry entry = signerEntryOf("authority", authority_);
  entry.trusted = true;
  ASSERT_EQ(store().insertKey(entry).code(), ZELKM_OK);
  reopen();
  EXPECT_TRUE(isTrusted());
}

TEST_P(Trust, IsGivenAndTakenBack) {
  ASSERT_EQ(store().insertKey(signerEntryOf("authority", authority_)).code(), ZELKM_OK);
  ASSERT_EQ(store().insertKey(newEntry("web")).code(), ZELKM_OK);
  for (const bool trusted : {true, true, false, false, true}) {
    ASSERT_EQ(store().setTrusted("authority"_label, trusted).code(), ZELKM_OK);
    reopen();
    EXPECT_EQ(isTrusted(), trusted);
    EXPECT_FALSE(store().findKey("web"_label).value().trusted);
    EXPECT_EQ(keys(), listed({"authority"_label, "web"_label}));
  }
}

TEST_P(Trust, ComesAndGoesWithAReplacement) {
  const cms::TestAuthority successor("Authority");
  ASSERT_EQ(store().insertKey(signerEntryOf("authority", authority_)).code(), ZELKM_OK);
  KeyEntry entry = signerEntryOf("authority", successor);
  entry.trusted = true;
  ASSERT_EQ(store().replaceKey(entry).code(), ZELKM_OK);
  EXPECT_TRUE(isTrusted());
  ASSERT_EQ(store().replaceKey(signerEntryOf("authority", authority_)).code(), ZELKM_OK);
  EXPECT_FALSE(isTrusted());
}

INSTANTIATE_TEST_SUITE_P(, Trust, testing::ValuesIn(storesThatDo(Operation::trust)), storeName);

class DefaultKey : public StoreTest {
 protected:
  DefaultKey() {
    KeyEntry first = newEntry("first");
    first.isDefault = true;
    EXPECT_EQ(store().insertKey(first).code(), ZELKM_OK);
    EXPECT_EQ(store().insertKey(newEntry("second")).code(), ZELKM_OK);
  }
  /** Looks that no other entry says to be the default. */
  void expectDefault(const Label& label) {
    EXPECT_EQ(store().defaultKey().value().label, label);
    for (const Label& each : keys()) {
      EXPECT_EQ(store().findKey(each).value().isDefault, each == label) << each.text();
    }
  }
};

TEST_P(DefaultKey, ComesWithANewEntryFromTheOneThatWasIt) {
  expectDefault("first"_label);
  KeyEntry third = newEntry("third");
  third.isDefault = true;
  ASSERT_EQ(store().insertKey(third).code(), ZELKM_OK);
  reopen();
  expectDefault("third"_label);
}

TEST_P(DefaultKey, IsMadeOneThatIsThere) {
  ASSERT_EQ(store().setDefault("second"_label).code(), ZELKM_OK);
  reopen();
  expectDefault("second"_label);
}

TEST_P(DefaultKey, ComesWithAReplacement) {
  KeyEntry second = newEntry("second");
  second.isDefault = true;
  ASSERT_EQ(store().replaceKey(second).code(), ZELKM_OK);
  expectDefault("second"_label);
}

TEST_P(DefaultKey, StaysTheOneThatWasWhenALabelIsNotThere) {
  EXPECT_EQ(store().setDefault("third"_label).code(), ZELKM_ERR_KEY_GET_BY_LABEL);
  expectDefault("first"_label);
}

TEST_P(DefaultKey, IsNoneOnceItIsRemoved) {
  ASSERT_EQ(store().removeKey("first"_label).code(), ZELKM_OK);
  EXPECT_EQ(store().defaultKey().code(), ZELKM_ERR_KEYDB_DEFAULT_KEY_NULL);
}

INSTANTIATE_TEST_SUITE_P(, DefaultKey, testing::ValuesIn(storesThatDo(Operation::setDefault)),
                         storeName);

class NoDefaultKey : public StoreTest {};

TEST_P(NoDefaultKey, IsToldWhereNoneWasSet) {
  EXPECT_EQ(store().defaultKey().code(), ZELKM_ERR_KEYDB_DEFAULT_KEY_NULL);
  ASSERT_EQ(store().insertKey(newEntry("web")).code(), ZELKM_OK);
  EXPECT_EQ(store().defaultKey().code(), ZELKM_ERR_KEYDB_DEFAULT_KEY_NULL);
}

INSTANTIATE_TEST_SUITE_P(, NoDefaultKey, testing::ValuesIn(allStores()), storeName);

}  // namespace

}  // namespace zel::km
