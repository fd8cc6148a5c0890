#include "engine/km/keydb/sealing.h"

#include <gtest/gtest.h>

#include "engine/km/keydb/fields.h"

namespace zel::km {
namespace {

class SealingTest : public testing::Test {
 protected:
  sys::Bytes key_ = sys::Bytes(kKeyLength, 1);
  sys::Bytes context_{4, 5};
  sys::Bytes plain_{1, 2, 3};
};

TEST_F(SealingTest, OpensWhatItSealed) {
  const Sealed sealed = seal(key_, context_, plain_).value();
  EXPECT_EQ(sealed.size(), kSealLength + plain_.size());
  sys::Result<sys::SecretBytes> opened = unseal(key_, context_, sealed);
  ASSERT_TRUE(opened);
  EXPECT_TRUE(std::ranges::equal(opened.value(), plain_));
}

TEST_F(SealingTest, SealsIntoMemoryOfTheCaller) {
  sys::SecretBytes sealed(kSealLength + plain_.size());
  ASSERT_TRUE(sealInto(sealed, key_, context_, plain_));
  EXPECT_TRUE(std::ranges::equal(unseal(key_, context_, sealed).value(), plain_));
}

TEST_F(SealingTest, NeverSealsTheSameTwice) {
  EXPECT_NE(seal(key_, context_, plain_).value(), seal(key_, context_, plain_).value());
}

TEST_F(SealingTest, RefusesEveryChangedByte) {
  const Sealed sealed = seal(key_, context_, plain_).value();
  for (std::size_t at = 0; at < sealed.size(); ++at) {
    Sealed changed = sealed;
    changed[at] ^= 1U;
    EXPECT_EQ(unseal(key_, context_, changed).code(), ZELKM_ERR_DATABASE_KEY_INTEGRITY) << at;
  }
}

TEST_F(SealingTest, RefusesAnotherContextAnotherKeyAndWhatIsTooShort) {
  const Sealed sealed = seal(key_, context_, plain_).value();
  EXPECT_FALSE(unseal(key_, sys::Bytes{4, 6}, sealed));
  EXPECT_FALSE(unseal(sys::Bytes(kKeyLength, 2), context_, sealed));
  EXPECT_FALSE(unseal(key_, context_, sys::ByteView(sealed).first(kSealLength - 1)));
  EXPECT_FALSE(unseal(key_, context_, {}));
}

TEST_F(SealingTest, DerivesAKeyPerPurpose) {
  Digest one{};
  Digest other{};
  Digest again{};
  ASSERT_TRUE(deriveKey(key_, "one", one));
  ASSERT_TRUE(deriveKey(key_, "other", other));
  ASSERT_TRUE(deriveKey(key_, "one", again));
  EXPECT_NE(one, other);
  EXPECT_EQ(one, again);
}

TEST(FieldsTest, ReadsWhatItWrote) {
  const sys::Bytes written =
      FieldWriter<sys::Bytes>().number(-5).text("label").bytes({}).number(1).take();
  FieldReader fields(written);
  EXPECT_EQ(fields.number(), -5);
  EXPECT_TRUE(std::ranges::equal(*fields.bytes(), sys::bytesOf("label")));
  EXPECT_TRUE(fields.bytes()->empty());
  EXPECT_EQ(fields.number(), 1);
  EXPECT_TRUE(fields.atEnd());
  EXPECT_EQ(fields.number(), std::nullopt);
}

TEST(FieldsTest, KeepsNeighboursApart) {
  EXPECT_NE(FieldWriter<sys::Bytes>().text("ab").text("c").take(),
            FieldWriter<sys::Bytes>().text("a").text("bc").take());
}

TEST(FieldsTest, RefusesLengthsBeyondTheEnd) {
  sys::Bytes written = FieldWriter<sys::Bytes>().text("label").take();
  for (std::size_t length = 0; length < written.size(); ++length) {
    EXPECT_EQ(FieldReader(sys::ByteView(written).first(length)).bytes(), std::nullopt);
  }
  written[0] = 0xFF;
  EXPECT_EQ(FieldReader(written).bytes(), std::nullopt);
}

}  // namespace
}  // namespace zel::km
