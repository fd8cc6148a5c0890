#include "engine/km/work/inserting.h"

#include <gmock/gmock.h>

#include "tests/engine/stores/test_entries.h"
#include "tests/engine/work/work_test.h"

namespace zel::km {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class InsertingTest : public WorkTest {
 protected:
  KeyParts parts() const {
    return {.label = "web"_label,
            .certificate = web_.certificate(),
            .privateKey = entry_.privateKey.pkcs8};
  }

  const cms::TestAuthority web_{"Web"};
  const cms::TestAuthority other_{"Other"};
  const KeyEntry entry_ = entryOf("web", web_);
  const RequestEntry request_ = requestOf("web", web_);
};

TEST_F(InsertingTest, PutsAKeyTogetherWithItsMarks) {
  KeyParts parts = this->parts();
  parts.trusted = parts.isDefault = true;
  ASSERT_TRUE(insertKey(store(), parts));
  KeyEntry wanted = entry_;
  wanted.trusted = wanted.isDefault = true;
  EXPECT_THAT(content(), ElementsAre(lineOf(wanted)));
}

TEST_F(InsertingTest, TakesACertificateAlone) {
  KeyParts parts = this->parts();
  parts.privateKey = {};
  ASSERT_TRUE(insertKey(store(), parts));
  EXPECT_FALSE(store().findKey("web"_label).value().privateKey.present());
}

TEST_F(InsertingTest, TakesAKeyUnderTheStoresPassword) {
  const sys::Bytes encrypted = store().encryptedPrivateKey(entry_.privateKey).value();
  KeyParts parts = this->parts();
  parts.privateKey = encrypted;
  ASSERT_TRUE(insertKey(store(), parts));
  EXPECT_EQ(store().findKey("web"_label).value().privateKey.pkcs8, entry_.privateKey.pkcs8);
}

TEST_F(InsertingTest, RefusesTheKeyOfAnother) {
  KeyParts parts = this->parts();
  parts.certificate = other_.certificate();
  EXPECT_EQ(insertKey(store(), parts).code(), ZELKM_ERR_VALIDATION_KEY_PAIR);
  const RequestEntry others = requestOf("other", other_);
  EXPECT_EQ(insertRequest(store(), {"web"_label, request_.request, others.privateKey.pkcs8}).code(),
            ZELKM_ERR_VALIDATION_KEY_PAIR);
  EXPECT_THAT(content(), IsEmpty());
}

TEST_F(InsertingTest, MakesNoDefaultOfACertificateAlone) {
  KeyParts parts = this->parts();
  parts.privateKey = {};
  parts.isDefault = true;
  EXPECT_EQ(insertKey(store(), parts).code(), ZELKM_ERR_KEYREC_PRIVATE_KEY_NULL);
  parts.isDefault = false;
  ASSERT_TRUE(insertKey(store(), parts));
  EXPECT_EQ(makeDefault(store(), "web"_label).code(), ZELKM_ERR_KEYREC_PRIVATE_KEY_NULL);
  EXPECT_EQ(makeDefault(store(), "nobody"_label).code(), ZELKM_ERR_KEY_GET_BY_LABEL);
}

TEST_F(InsertingTest, MovesTheDefaultMark) {
  ASSERT_TRUE(insertKey(store(), parts()));
  insert(entryOf("other", other_));
  ASSERT_TRUE(makeDefault(store(), "web"_label));
  ASSERT_TRUE(makeDefault(store(), "other"_label));
  EXPECT_EQ(store().defaultKey().value().label, "other");
}

TEST_F(InsertingTest, PutsARequestTogether) {
  ASSERT_TRUE(insertRequest(store(), {"web"_label, request_.request, request_.privateKey.pkcs8}));
  EXPECT_THAT(content(), ElementsAre(lineOf(request_)));
}

TEST_F(InsertingTest, ChangesNothingWhenTheStoreFails) {
  expectAllOrNothing([&](Store& failing) { return insertKey(failing, parts()); });
  expectAllOrNothing([&](Store& failing) { return makeDefault(failing, "web"_label); });
}

}  // namespace
}  // namespace zel::km
