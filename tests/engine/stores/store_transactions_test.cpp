#include <gmock/gmock.h>

#include <new>

#include "tests/engine/stores/store_test.h"

// Changes that are one.

namespace zel::km {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/** Any code that no store answers by itself. */
constexpr sys::Failure kRefused{ZELKM_ERR_FILE_OPEN_TO_WRITE};

class StoreTransactions : public StoreTest {
 protected:
  StoreTransactions() {
    KeyEntry entry = newEntry("web");
    entry.isDefault = kind().does(Operation::insertDefault);
    EXPECT_EQ(store().insertKey(entry).code(), ZELKM_OK);
    if (kind().does(Operation::insertRequest)) {
      EXPECT_EQ(store().insertRequest(newRequest("pending")).code(), ZELKM_OK);
    }
    before_ = store().findKey("web"_label).value();
    requestsBefore_ = requests();
  }

  /** Makes a change of every kind that the store does; "mail" is there afterwards, "web" is not. */
  void changeEverything() {
    EXPECT_EQ(store().replaceKey(newEntry("web")).code(), ZELKM_OK);
    if (kind().does(Operation::trust)) {
      EXPECT_EQ(store().setTrusted("web"_label, true).code(), ZELKM_OK);
    }
    if (kind().does(Operation::insertRequest)) {
      EXPECT_EQ(store().removeRequest("pending"_label).code(), ZELKM_OK);
      EXPECT_EQ(store().insertRequest(newRequest("mail")).code(), ZELKM_OK);
    }
    EXPECT_EQ(store().insertKey(newEntry("mail")).code(), ZELKM_OK);
    if (kind().does(Operation::setDefault)) {
      EXPECT_EQ(store().setDefault("mail"_label).code(), ZELKM_OK);
    }
    EXPECT_EQ(store().removeKey("web"_label).code(), ZELKM_OK);
  }
  /** Looks that the store is as it was to begin with. */
  void expectUnchanged() {
    for (int round = 0; round < 2; ++round) {
      EXPECT_THAT(keys(), ElementsAre("web"_label));
      EXPECT_EQ(requests(), requestsBefore_);
      const sys::Result<KeyEntry> found = store().findKey("web"_label);
      ASSERT_EQ(found.code(), ZELKM_OK);
      const KeyEntry& entry = found.value();
      EXPECT_EQ(entry.certificate, before_.certificate);
      EXPECT_EQ(entry.trusted, before_.trusted);
      EXPECT_EQ(entry.isDefault, before_.isDefault);
      EXPECT_TRUE(signs(entry.privateKey, publicKeyOf(entry.certificate)));
      for (const Label& each : requests()) {
        const RequestEntry request = store().findRequest(each).value();
        EXPECT_TRUE(signs(request.privateKey, publicKeyOfRequest(request)));
      }
      reopen();
    }
  }

 private:
  KeyEntry before_;
  std::vector<Label> requestsBefore_;
};

TEST_P(StoreTransactions, KeepAllWhenTheBodySucceeds) {
  const sys::Status done = asOne([&]() -> sys::Status {
    changeEverything();
    EXPECT_THAT(keys(), ElementsAre("mail"_label));
    return sys::success();
  });
  EXPECT_EQ(done.code(), ZELKM_OK);
  EXPECT_THAT(keys(), ElementsAre("mail"_label));
  reopen();
  EXPECT_THAT(keys(), ElementsAre("mail"_label));
}

TEST_P(StoreTransactions, KeepNothingWhenTheBodyFails) {
  const sys::Status done = asOne([&]() -> sys::Status {
    changeEverything();
    EXPECT_THAT(keys(), ElementsAre("mail"_label));
    return kRefused;
  });
  EXPECT_EQ(done.code(), kRefused.code);
  expectUnchanged();
}

TEST_P(StoreTransactions, KeepNothingWhenTheBodyThrows) {
  const auto changeAndThrow = [&]() -> sys::Status {
    changeEverything();
    throw std::bad_alloc();
  };
  EXPECT_THROW((void)asOne(changeAndThrow), std::bad_alloc);
  expectUnchanged();
  EXPECT_EQ(store().insertKey(newEntry("mail")).code(), ZELKM_OK);
}

TEST_P(StoreTransactions, KeepNothingOfARunInsideWhenTheOuterOneFails) {
  const sys::Status done = asOne([&]() -> sys::Status {
    const sys::Status inside = asOne([&]() -> sys::Status {
      changeEverything();
      return sys::success();
    });
    EXPECT_EQ(inside.code(), ZELKM_OK);
    EXPECT_THAT(keys(), ElementsAre("mail"_label));
    return kRefused;
  });
  EXPECT_EQ(done.code(), kRefused.code);
  expectUnchanged();
}

TEST_P(StoreTransactions, KeepNothingOfTheOuterRunWhenOneInsideFailsIt) {
  const sys::Status done = asOne([&]() -> sys::Status {
    changeEverything();
    return asOne([&]() -> sys::Status { return kRefused; });
  });
  EXPECT_EQ(done.code(), kRefused.code);
  expectUnchanged();
}

TEST_P(StoreTransactions, KeepWhatARunInsideDidWhenTheOuterOneSucceeds) {
  const sys::Status done = asOne([&]() -> sys::Status {
    return asOne([&]() -> sys::Status { return store().insertKey(newEntry("mail")); });
  });
  EXPECT_EQ(done.code(), ZELKM_OK);
  reopen();
  EXPECT_EQ(keys(), listed({"web"_label, "mail"_label}));
}

TEST_P(StoreTransactions, GoOnAfterAChangeThatFails) {
  const sys::Status done = asOne([&]() -> sys::Status {
    EXPECT_EQ(store().insertKey(newEntry("web")).code(), ZELKM_ERR_DATABASE_DUPLICATE_KEY_LABEL);
    EXPECT_EQ(store().removeKey("none"_label).code(), ZELKM_ERR_KEY_GET_BY_LABEL);
    return store().insertKey(newEntry("mail"));
  });
  EXPECT_EQ(done.code(), ZELKM_OK);
  reopen();
  EXPECT_EQ(keys(), listed({"web"_label, "mail"_label}));
}

TEST_P(StoreTransactions, FreeALabelForWhatComesNext) {
  const KeyEntry successor = newEntry("web");
  const sys::Status done = asOne([&]() -> sys::Status {
    sys::Status removed = store().removeKey("web"_label);
    return removed ? store().insertKey(successor) : removed;
  });
  EXPECT_EQ(done.code(), ZELKM_OK);
  reopen();
  EXPECT_THAT(keys(), ElementsAre("web"_label));
  EXPECT_EQ(store().findKey("web"_label).value().certificate, successor.certificate);
}

INSTANTIATE_TEST_SUITE_P(, StoreTransactions, testing::ValuesIn(allStores()), storeName);

class SignerStore : public StoreTest {};

TEST_P(SignerStore, IsTheStoreItselfWhereNoneIsLentToIt) {
  const auto insertAuthority = [&](Store& signers) -> sys::Status {
    EXPECT_EQ(&signers, &store());
    return signers.insertKey(signerEntryOf("authority", authority_));
  };
  EXPECT_EQ(store().onSignerStore(insertAuthority).code(), ZELKM_OK);
  EXPECT_THAT(keys(), ElementsAre("authority"_label));
  EXPECT_EQ(store().onSignerStore(insertAuthority).code(), ZELKM_ERR_DATABASE_DUPLICATE_KEY_LABEL);
}

TEST_P(SignerStore, TakesPartInATransaction) {
  const sys::Status done = asOne([&]() -> sys::Status {
    const sys::Status inserted = store().onSignerStore([&](Store& signers) -> sys::Status {
      return signers.insertKey(signerEntryOf("authority", authority_));
    });
    EXPECT_EQ(inserted.code(), ZELKM_OK);
    return kRefused;
  });
  EXPECT_EQ(done.code(), kRefused.code);
  EXPECT_THAT(keys(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(, SignerStore, testing::ValuesIn(allStores()), storeName);

}  // namespace

}  // namespace zel::km
