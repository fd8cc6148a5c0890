#include <gmock/gmock.h>

#include "engine/cms/keys.h"
#include "tests/engine/operations/database.h"

namespace zel::km {
namespace {

class Renewal : public DatabaseTest {
 protected:
  static std::uint32_t lengthOf(sys::ByteView bytes) {
    return static_cast<std::uint32_t>(bytes.size());
  }

  int insertLeaf(const char* label, const sys::Bytes& certificate) {
    const sys::SecretBytes key = cms::privateKeyInfo(leaf_.key()).value();
    return ZELKM_InsertKey(handle(), label, lengthOf(certificate), certificate.data(),
                           lengthOf(key), key.data(), 1, 1);
  }

  int renew(const sys::Bytes& certificate) {
    return ZELKM_RenewCert(handle(), certificate.data(), lengthOf(certificate));
  }

  bool isRenewal(const sys::Bytes& certificate) {
    unsigned char answer = 9;
    EXPECT_EQ(
        ZELKM_CheckCertAsRenewal(handle(), certificate.data(), lengthOf(certificate), &answer),
        ZELKM_OK);
    return answer == 1;
  }

  cms::TestAuthority root_{"Root"};
  cms::TestAuthority leaf_{"Leaf"};
};

TEST_F(Renewal, ReplacesTheCertificateAndKeepsTheRest) {
  ASSERT_EQ(insertLeaf("server", root_.issueFor(leaf_, 10)), ZELKM_OK);
  const sys::Bytes renewed = root_.issueFor(leaf_, 20);
  EXPECT_TRUE(isRenewal(renewed));
  ASSERT_EQ(renew(renewed), ZELKM_OK);
  const KeyItem item = this->item("server");
  const ZELKMCertItem& certificate = *item->certList->item;
  EXPECT_EQ(bytesOf(certificate.certDer, certificate.certDerLength), renewed);
  EXPECT_EQ(item->hasPrivateKey, 1);
  EXPECT_EQ(item->booleanValue1, 1);
  EXPECT_EQ(item->booleanValue2, 1);
  EXPECT_THAT(keyLabels(), testing::ElementsAre("server"));
}

TEST_F(Renewal, NeedsAnotherCertificateOfTheSameSubjectAndKey) {
  const sys::Bytes held = root_.issueFor(leaf_, 10);
  ASSERT_EQ(insertLeaf("server", held), ZELKM_OK);
  EXPECT_FALSE(isRenewal(held));
  EXPECT_EQ(renew(held), ZELKM_ERR_DATABASE_DUPLICATE_KEY);

  const cms::TestAuthority sameName("Leaf");
  EXPECT_FALSE(isRenewal(root_.issueFor(sameName)));
  EXPECT_EQ(renew(root_.issueFor(sameName)), ZELKM_ERR_KEY_GET_BY_LABEL);

  const sys::Bytes otherName = root_.issueFor(cms::publicKeyInfo(leaf_.key()).value(), "Other", 20);
  EXPECT_FALSE(isRenewal(otherName));
  EXPECT_EQ(renew(otherName), ZELKM_ERR_KEY_GET_BY_LABEL);
}

TEST_F(Renewal, NeverGoesBackInTime) {
  const sys::Bytes older = root_.issueFor(leaf_, 10);
  ASSERT_EQ(cms::run("sleep 1.1").exitCode, 0);
  ASSERT_EQ(insertLeaf("server", root_.issueFor(leaf_, 10)), ZELKM_OK);
  EXPECT_FALSE(isRenewal(older));
  EXPECT_EQ(renew(older), ZELKM_ERR_VALIDATION_KEY_VALIDITY);
}

TEST_F(Renewal, RefusesWhatIsNoCertificate) {
  unsigned char answer = 0;
  const unsigned char noCertificate[] = {0x30, 0x00};
  EXPECT_EQ(ZELKM_CheckCertAsRenewal(handle(), noCertificate, 2, &answer), ZELKM_ERR_ASN);
  EXPECT_EQ(ZELKM_CheckCertAsRenewal(handle(), nullptr, 0, &answer), ZELKM_ERR_NULL_PARAMETER);
  EXPECT_EQ(ZELKM_CheckCertAsRenewal(handle(), noCertificate, 2, nullptr),
            ZELKM_ERR_NULL_PARAMETER);
  EXPECT_EQ(ZELKM_RenewCert(handle(), noCertificate, 2), ZELKM_ERR_ASN);
  EXPECT_EQ(ZELKM_RenewCert(handle(), nullptr, 0), ZELKM_ERR_NULL_PARAMETER);
}

}  // namespace
}  // namespace zel::km
