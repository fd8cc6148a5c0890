#include "engine/km/work/renewing.h"

#include <gmock/gmock.h>

#include "tests/engine/stores/test_entries.h"
#include "tests/engine/work/failing_store.h"
#include "tests/engine/work/work_test.h"

namespace zel::km {
namespace {

using testing::ElementsAre;

class RenewingTest : public WorkTest {
 protected:
  RenewingTest() {
    insert(first_);
    insert(second_);
  }

  KeyEntry renewed(const KeyEntry& entry) const {
    KeyEntry renewed = entry;
    renewed.certificate = renewal_;
    return renewed;
  }

  const cms::TestAuthority authority_{"Authority"};
  const cms::TestAuthority web_{"Web"};
  const KeyEntry first_ = entryOf("first", web_);
  const KeyEntry second_ = entryOf("second", web_);
  const sys::Bytes renewal_ = authority_.issueFor(web_);
};

TEST_F(RenewingTest, GivesTheCertificateToAllEntriesOfItsSubjectAndKey) {
  const KeyEntry other = entryOf("other", authority_);
  insert(other);
  EXPECT_TRUE(isRenewal(store(), renewal_).value());
  ASSERT_TRUE(renew(store(), renewal_));
  EXPECT_THAT(content(),
              ElementsAre(lineOf(renewed(first_)), lineOf(renewed(second_)), lineOf(other)));
}

TEST_F(RenewingTest, SaysWhyACertificateRenewsNone) {
  EXPECT_FALSE(isRenewal(store(), web_.certificate()).value());
  EXPECT_EQ(renew(store(), web_.certificate()).code(), ZELKM_ERR_DATABASE_DUPLICATE_KEY);
  EXPECT_FALSE(isRenewal(store(), authority_.certificate()).value());
  EXPECT_EQ(renew(store(), authority_.certificate()).code(), ZELKM_ERR_KEY_GET_BY_LABEL);
  EXPECT_EQ(isRenewal(store(), {}).code(), ZELKM_ERR_ASN);
}

TEST_F(RenewingTest, KnowsNothingOfAStoreThatFails) {
  FailingStore failing(store(), 1);
  EXPECT_EQ(isRenewal(failing, renewal_).code(), FailingStore::kCode);
}

TEST_F(RenewingTest, RenewsAllOrNone) {
  expectAllOrNothing([&](Store& failing) { return renew(failing, renewal_); });
  EXPECT_THAT(content(), ElementsAre(lineOf(renewed(first_)), lineOf(renewed(second_))));
}

}  // namespace
}  // namespace zel::km
