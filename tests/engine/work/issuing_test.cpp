#include "engine/km/work/issuing.h"

#include <gmock/gmock.h>

#include "engine/cms/certificates.h"
#include "tests/engine/stores/test_entries.h"
#include "tests/engine/work/work_test.h"

namespace zel::km {
namespace {

using testing::ElementsAre;
using testing::StartsWith;

class IssuingTest : public WorkTest {
 protected:
  IssuingTest() { insert(entryOf("ca", authority_)); }

  Issuing wanted() const {
    return {.request = request_.request,
            .issuer = "ca"_label,
            .serialNumber = {0x01, 0xE2, 0x40},
            .days = 20,
            .file = {file("issued.der")}};
  }

  const cms::TestAuthority authority_{"Authority"};
  const cms::TestAuthority applicant_{"Applicant"};
  const RequestEntry request_ = requestOf("applicant", applicant_);
};

TEST_F(IssuingTest, WritesACertificateForTheRequest) {
  ASSERT_TRUE(issue(store(), wanted()));
  const sys::Bytes issued = folder().read("issued.der");
  const cms::CertificateFields fields = cms::readCertificate(issued).value();
  EXPECT_EQ(fields.version, 3);
  EXPECT_EQ(fields.subjectDer, applicant_.name());
  EXPECT_EQ(fields.issuerDer, authority_.name());
  EXPECT_EQ(fields.publicKeyInfo, cms::publicKeyInfo(applicant_.key()).value());
  EXPECT_THAT(cms::readCertificateKeys(issued).value().serialNumber, ElementsAre(0x01, 0xE2, 0x40));
}

TEST_F(IssuingTest, DrawsASerialNumberWhereNoneIsGiven) {
  Issuing wanted = this->wanted();
  wanted.serialNumber.clear();
  ASSERT_TRUE(issue(store(), wanted));
  const sys::Bytes first = folder().read("issued.der");
  ASSERT_TRUE(issue(store(), wanted));
  EXPECT_NE(cms::readCertificateKeys(first).value().serialNumber,
            cms::readCertificateKeys(folder().read("issued.der")).value().serialNumber);
}

TEST_F(IssuingTest, WritesPemWhereItIsWanted) {
  Issuing wanted = this->wanted();
  wanted.file.format = CertificateFormat::base64;
  ASSERT_TRUE(issue(store(), wanted));
  const sys::Bytes pem = folder().read("issued.der");
  EXPECT_THAT(std::string(pem.begin(), pem.end()), StartsWith("-----BEGIN CERTIFICATE-----\n"));
}

TEST_F(IssuingTest, NeedsAnIssuerWithAKey) {
  KeyEntry alone = entryOf("alone", applicant_);
  alone.privateKey = {};
  insert(alone);
  Issuing wanted = this->wanted();
  wanted.issuer = "alone"_label;
  EXPECT_EQ(issue(store(), wanted).code(), ZELKM_ERR_KEYREC_PRIVATE_KEY_NULL);
  wanted.issuer = "nobody"_label;
  EXPECT_EQ(issue(store(), wanted).code(), ZELKM_ERR_KEY_GET_BY_LABEL);
  EXPECT_FALSE(exists("issued.der"));
}

TEST_F(IssuingTest, RefusesARequestThatAnotherKeySigned) {
  sys::Bytes forged = request_.request;
  forged.back() ^= 1;
  Issuing wanted = this->wanted();
  wanted.request = forged;
  EXPECT_EQ(issue(store(), wanted).code(), ZELKM_ERR_CRYPTO_VERIFY);
  EXPECT_FALSE(exists("issued.der"));
}

TEST_F(IssuingTest, WritesNothingWhenTheStoreFails) {
  expectAllOrNothing([&](Store& failing) {
    const sys::Status done = issue(failing, wanted());
    EXPECT_EQ(exists("issued.der"), static_cast<bool>(done));
    return done;
  });
}

}  // namespace
}  // namespace zel::km
