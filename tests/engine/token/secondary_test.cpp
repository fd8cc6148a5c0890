#include <gmock/gmock.h>

#include "engine/cms/names.h"
#include "engine/km/face/handle_table.h"
#include "tests/engine/token/token_store_test.h"

// A key database lent to a token.

namespace zel::km::token {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kDatabasePassword = "correct horse";

class TokenSecondary : public TokenStoreTest {
 protected:
  TokenSecondary() {
    close();
    tokenHandle_ = open(kPin);
    const std::string file = path("secondary.kdb");
    EXPECT_EQ(ZELKM_CreateNewKeyDb(file.c_str(), kDatabasePassword, 0, &databaseHandle_), ZELKM_OK);
  }
  ~TokenSecondary() override { ZELKM_CloseKeyDb(databaseHandle_); }

  int lend() const { return ZELKM_SetSecondaryKeyDb(tokenHandle_, databaseHandle_); }

  /** Runs a body on an open store, as an operation does. */
  template <typename Body>
  static sys::Status on(int handle, Body body) {
    sys::Result<OpenStore> lent = HandleTable::instance().borrow(handle);
    if (!lent) return lent.failure();
    return body(lent.value().store());
  }
  std::vector<std::string> keysOf(int handle) const {
    return labels(&ZELKM_GetKeyDbLabelList, handle);
  }

  int tokenHandle_ = 0;
  int databaseHandle_ = 0;
};

TEST_P(TokenSecondary, onlyADatabaseIsLentAndOnlyToAToken) {
  EXPECT_EQ(ZELKM_UnsetSecondaryKeyDb(tokenHandle_), ZELKM_ERR_NO_SECONDARY_KEYDB);
  EXPECT_EQ(ZELKM_SetSecondaryKeyDb(databaseHandle_, databaseHandle_),
            ZELKM_ERR_SECONDARY_KEYDB_TO_OTHER);
  EXPECT_EQ(ZELKM_SetSecondaryKeyDb(tokenHandle_, tokenHandle_), ZELKM_ERR_INVALID_DATABASE_TYPE);
  EXPECT_EQ(ZELKM_SetSecondaryKeyDb(tokenHandle_, 0), ZELKM_ERR_INVALID_DB_HANDLE);
  EXPECT_EQ(ZELKM_SetSecondaryKeyDb(0, databaseHandle_), ZELKM_ERR_INVALID_DB_HANDLE);
  EXPECT_EQ(ZELKM_UnsetSecondaryKeyDb(databaseHandle_), ZELKM_ERR_SECONDARY_KEYDB_TO_OTHER);
  EXPECT_EQ(lend(), ZELKM_OK);
  EXPECT_EQ(ZELKM_UnsetSecondaryKeyDb(tokenHandle_), ZELKM_OK);
  EXPECT_EQ(ZELKM_UnsetSecondaryKeyDb(tokenHandle_), ZELKM_ERR_NO_SECONDARY_KEYDB);
}

TEST_P(TokenSecondary, issuersAreFoundInIt) {
  const KeyEntry issuer = signerEntry("ca");
  ASSERT_EQ(on(databaseHandle_, [&](Store& store) { return store.insertKey(issuer); }).code(),
            ZELKM_OK);
  const sys::Bytes subject = cms::canonicalName(authority_.name()).value();
  const auto issuers = [&] {
    std::size_t count = 0;
    const sys::Status asked = on(tokenHandle_, [&](Store& store) -> sys::Status {
      count = store.findKeysBySubject(subject).value().size();
      return sys::success();
    });
    EXPECT_EQ(asked.code(), ZELKM_OK);
    return count;
  };
  EXPECT_EQ(issuers(), 0U);
  ASSERT_EQ(lend(), ZELKM_OK);
  EXPECT_EQ(issuers(), 1U);
  EXPECT_EQ(ZELKM_UnsetSecondaryKeyDb(tokenHandle_), ZELKM_OK);
  EXPECT_EQ(issuers(), 0U);
}

TEST_P(TokenSecondary, signersThatComeAlongGoIntoIt) {
  const KeyEntry signer = signerEntry("ca");
  const auto receive = [&](Store& store) -> sys::Status {
    return store.onSignerStore([&](Store& home) { return home.insertKey(signer); });
  };
  ASSERT_EQ(lend(), ZELKM_OK);
  ASSERT_EQ(on(tokenHandle_, receive).code(), ZELKM_OK);
  EXPECT_THAT(keysOf(tokenHandle_), IsEmpty());
  EXPECT_THAT(keysOf(databaseHandle_), ElementsAre("ca"));
  ASSERT_EQ(ZELKM_UnsetSecondaryKeyDb(tokenHandle_), ZELKM_OK);
  ASSERT_EQ(on(tokenHandle_, receive).code(), ZELKM_OK);
  EXPECT_THAT(keysOf(tokenHandle_), ElementsAre("ca"));
}

TEST_P(TokenSecondary, whatIsAddedByItselfGoesOntoTheToken) {
  ASSERT_EQ(lend(), ZELKM_OK);
  const KeyEntry signer = signerEntry("ca");
  ASSERT_EQ(on(tokenHandle_, [&](Store& store) { return store.insertKey(signer); }).code(),
            ZELKM_OK);
  EXPECT_THAT(keysOf(tokenHandle_), ElementsAre("ca"));
  EXPECT_THAT(keysOf(databaseHandle_), IsEmpty());
}

TEST_P(TokenSecondary, itsFailureLeavesTheTokenAsItWas) {
  ASSERT_EQ(lend(), ZELKM_OK);
  const KeyEntry signer = signerEntry("ca");
  const sys::Status done = on(tokenHandle_, [&](Store& store) -> sys::Status {
    return inTransaction(store, [&]() -> sys::Status {
      sys::Status inserted = store.insertKey(signerEntry("personal"));
      if (!inserted) return inserted;
      return store.onSignerStore([&](Store& home) -> sys::Status {
        sys::Status first = home.insertKey(signer);
        return first ? home.insertKey(signer) : first;
      });
    });
  });
  EXPECT_EQ(done.code(), ZELKM_ERR_DATABASE_DUPLICATE_KEY_LABEL);
  EXPECT_THAT(keysOf(tokenHandle_), IsEmpty());
  EXPECT_THAT(keysOf(databaseHandle_), IsEmpty());
}

TEST_P(TokenSecondary, aClosedOneIsFoundOutBeforeAKeyIsMade) {
  const std::size_t before = objectCount();
  ASSERT_EQ(lend(), ZELKM_OK);
  ZELKM_CloseKeyDb(databaseHandle_);
  const sys::Status made = on(tokenHandle_, [](Store& store) -> sys::Status {
    const sys::Result<GeneratedKey> key = store.generateKey(256);
    return key ? sys::success() : key.failure();
  });
  EXPECT_EQ(made.code(), ZELKM_ERR_INVALID_DB_HANDLE);
  EXPECT_EQ(objectCount(), before);
}

TEST_P(TokenSecondary, aClosedOneIsAnErrorAndTheTokenStaysAsItWas) {
  ASSERT_EQ(lend(), ZELKM_OK);
  ZELKM_CloseKeyDb(databaseHandle_);
  const KeyEntry signer = signerEntry("ca");
  EXPECT_EQ(on(tokenHandle_, [&](Store& store) { return store.insertKey(signer); }).code(),
            ZELKM_ERR_INVALID_DB_HANDLE);
  EXPECT_THAT(keysOf(tokenHandle_), IsEmpty());
  EXPECT_EQ(ZELKM_UnsetSecondaryKeyDb(tokenHandle_), ZELKM_OK);
}

INSTANTIATE_TEST_SUITE_P(, TokenSecondary, testing::ValuesIn(kVendors), vendorName);

}  // namespace

}  // namespace zel::km::token
