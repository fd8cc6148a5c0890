#include <gmock/gmock.h>

#include <filesystem>
#include <memory>
#include <stdexcept>

#include "engine/km/certstore/certificate_store.h"
#include "tests/engine/certstore/test_stores.h"
#include "tests/engine/stores/labels.h"

namespace zel::km::certstore {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/** Changes made through the store itself, for what no operation does alone. */
class StoreChanges : public StoreTest {
 protected:
  static KeyEntry entry(const char* label, const cms::TestAuthority& owner) {
    return {.label = Label::ofName(label),
            .certificate = owner.certificate(),
            .privateKey = {.pkcs8 = privateKeyOf(owner), .reference = {}},
            .trusted = false,
            .isDefault = false};
  }

  cms::TestAuthority owner_{"Owner"};
  cms::TestAuthority other_{"Other"};
  std::unique_ptr<Store> store_ = CertificateStore::open(kMy, {}).value();
};

TEST_F(StoreChanges, StayWhenAllSucceed) {
  ASSERT_TRUE(store_->insertKey(entry("web", owner_)));
  const sys::Status done = inTransaction(*store_, [&]() -> sys::Status {
    EXPECT_TRUE(store_->removeKey("web"_label));
    EXPECT_THAT(store_->keyLabels().value(), IsEmpty());
    EXPECT_TRUE(store_->insertKey(entry("mail", other_)));
    return sys::success();
  });
  EXPECT_EQ(done.code(), ZELKM_OK);
  EXPECT_THAT(store_->keyLabels().value(), ElementsAre("mail"));
  EXPECT_EQ(files().size(), 1U);
}

TEST_F(StoreChanges, AreAllTakenBackWhenOneFails) {
  ASSERT_TRUE(store_->insertKey(entry("web", owner_)));
  const std::vector<std::string> before = files();
  const sys::Status done = inTransaction(*store_, [&]() -> sys::Status {
    EXPECT_TRUE(store_->removeKey("web"_label));
    EXPECT_TRUE(store_->insertKey(entry("mail", other_)));
    return store_->insertKey(entry("mail", cms::TestAuthority("Third")));
  });
  EXPECT_EQ(done.code(), ZELKM_ERR_DATABASE_DUPLICATE_KEY_LABEL);
  EXPECT_THAT(store_->keyLabels().value(), ElementsAre("web"));
  EXPECT_EQ(files(), before);
}

TEST_F(StoreChanges, AreTakenBackWhenSomethingIsThrown) {
  const auto insertAndThrow = [&] {
    return inTransaction(*store_, [&]() -> sys::Status {
      EXPECT_TRUE(store_->insertKey(entry("web", owner_)));
      throw std::bad_alloc();
    });
  };
  EXPECT_THROW((void)insertAndThrow(), std::bad_alloc);
  EXPECT_THAT(files(), IsEmpty());
  EXPECT_TRUE(store_->insertKey(entry("web", owner_)));
}

TEST_F(StoreChanges, OfAnEntryKeepItsPlace) {
  ASSERT_TRUE(store_->insertKey(entry("web", owner_)));
  ASSERT_TRUE(store_->insertKey(entry("mail", other_)));
  KeyEntry withoutKey = entry("web", owner_);
  withoutKey.privateKey = {};
  ASSERT_TRUE(store_->replaceKey(withoutKey));
  EXPECT_THAT(store_->keyLabels().value(), ElementsAre("web", "mail"));
  EXPECT_FALSE(store_->findKey("web"_label).value().privateKey.present());
  ASSERT_TRUE(store_->replaceKey(entry("web", cms::TestAuthority("Third"))));
  EXPECT_THAT(store_->keyLabels().value(), ElementsAre("web", "mail"));
  EXPECT_EQ(files().size(), 2U);
}

TEST_F(StoreChanges, OfAnEntryAreTakenBackToo) {
  ASSERT_TRUE(store_->insertKey(entry("web", owner_)));
  KeyEntry withoutKey = entry("web", owner_);
  withoutKey.privateKey = {};
  const sys::Status done = inTransaction(*store_, [&]() -> sys::Status {
    EXPECT_TRUE(store_->replaceKey(withoutKey));
    EXPECT_FALSE(store_->findKey("web"_label).value().privateKey.present());
    return sys::Failure{ZELKM_ERR_UNKNOWN};
  });
  EXPECT_EQ(done.code(), ZELKM_ERR_UNKNOWN);
  EXPECT_EQ(store_->findKey("web"_label).value().privateKey.pkcs8, privateKeyOf(owner_));
}

TEST_F(StoreChanges, LeaveNoDraftBehind) {
  ASSERT_TRUE(store_->insertKey(entry("web", owner_)));
  ASSERT_TRUE(store_->replaceKey(entry("web", other_)));
  ASSERT_TRUE(store_->removeKey("web"_label));
  EXPECT_THAT(files(), IsEmpty());
}

TEST_F(StoreChanges, OfAKeyThatIsAReferenceAreRefused) {
  KeyEntry elsewhere = entry("web", owner_);
  elsewhere.privateKey = {.pkcs8 = {}, .reference = {1}};
  EXPECT_EQ(store_->insertKey(elsewhere).code(), ZELKM_ERR_KEYREC_PRIVATE_KEY_NULL);
}

}  // namespace
}  // namespace zel::km::certstore
