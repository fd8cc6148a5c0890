#include "engine/cms/certificates.h"

#include <gmock/gmock.h>
#include <sys/stat.h>

#include "engine/cms/der.h"
#include "engine/cms/issuing.h"
#include "tests/engine/operations/database.h"

namespace zel::km {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class SelfSigned : public DatabaseTest {
 protected:
  int create(int version, int keySize, int days, const char* fileName = nullptr,
             unsigned char base64 = 0) {
    return ZELKM_CreateSelfSignedCert(handle(), "key", 0, version, keySize, name("key").get(), days,
                                      fileName, base64);
  }

  int createSigExt(int selector, const sys::Bytes& extensions, int keySize = 256) {
    return ZELKM_CreateSelfSignedCertSigExt(
        handle(), "key", 0, 3, keySize, name("key").get(), 30, selector,
        extensions.empty() ? nullptr : extensions.data(),
        static_cast<std::uint32_t>(extensions.size()), nullptr, 0);
  }

  std::string shown(const char* fileName, const char* form) {
    return cms::run("openssl x509 -noout -text -inform " + std::string(form) + " -in " +
                    path(fileName))
        .output;
  }
};

TEST_F(SelfSigned, AreWrittenToAFileAsWanted) {
  ASSERT_EQ(create(3, 256, 30, path("cert.der").c_str(), 0), ZELKM_OK);
  EXPECT_THAT(shown("cert.der", "DER"), HasSubstr("CA:TRUE"));
  ASSERT_EQ(ZELKM_ExportCert(handle(), "key", path("cert.pem").c_str(), 1), ZELKM_OK);
  EXPECT_THAT(shown("cert.pem", "PEM"), HasSubstr("Subject: CN = key"));
}

TEST_F(SelfSigned, AreExportedByteForByte) {
  ASSERT_EQ(create(3, 256, 30, path("made.der").c_str(), 0), ZELKM_OK);
  ASSERT_EQ(ZELKM_ExportCert(handle(), "key", path("exported.der").c_str(), 0), ZELKM_OK);
  const KeyItem item = this->item("key");
  const ZELKMCertItem& certificate = *item->certList->item;
  EXPECT_EQ(folder().read("exported.der"), folder().read("made.der"));
  EXPECT_EQ(folder().read("exported.der"), bytesOf(certificate.certDer, certificate.certDerLength));
}

TEST_F(SelfSigned, OfVersionOneHaveNoExtensions) {
  ASSERT_EQ(create(1, 256, 30, path("cert.der").c_str()), ZELKM_OK);
  EXPECT_THAT(shown("cert.der", "DER"), HasSubstr("Version: 1 (0x0)"));
  EXPECT_THAT(shown("cert.der", "DER"), testing::Not(HasSubstr("extensions")));
}

TEST_F(SelfSigned, SignWithTheAlgorithmChosen) {
  ASSERT_EQ(createSigExt(2, {}), ZELKM_OK);
  EXPECT_STREQ(item("key")->certList->item->sigAlgIdOIDName, "ecdsa-with-SHA512");
}

TEST_F(SelfSigned, CarryTheExtensionsGivenAndNoOthers) {
  // Extensions: one, keyUsage, digitalSignature.
  const sys::Bytes extensions = {0x30, 0x0D, 0x30, 0x0B, 0x06, 0x03, 0x55, 0x1D,
                                 0x0F, 0x04, 0x04, 0x03, 0x02, 0x07, 0x80};
  ASSERT_EQ(createSigExt(1, extensions), ZELKM_OK);
  ASSERT_EQ(ZELKM_ExportCert(handle(), "key", path("cert.der").c_str(), 0), ZELKM_OK);
  const std::string text = shown("cert.der", "DER");
  EXPECT_THAT(text, HasSubstr("Digital Signature"));
  EXPECT_THAT(text, testing::Not(HasSubstr("CA:TRUE")));
  EXPECT_THAT(text, testing::Not(HasSubstr("Key Identifier")));
}

TEST_F(SelfSigned, RefuseWhatCannotBeMade) {
  EXPECT_EQ(create(4, 256, 30), ZELKM_ERR_VALIDATION_KEY_WRONG_VERSION);
  EXPECT_EQ(create(3, 1024, 30), ZELKM_ERR_CRYPTO_UNSUPPORTED_MODULUS_SIZE);
  EXPECT_EQ(create(3, 256, 0), ZELKM_ERR_VALIDATION_KEY_VALIDITY_PERIOD);
  EXPECT_EQ(create(3, 256, 10'000'000), ZELKM_ERR_EXPIRE_DAYS_TOO_LARGE);
  EXPECT_EQ(createSigExt(0, {}), ZELKM_ERR_SIGNATURE_ALGORITHM);
  EXPECT_EQ(createSigExt(3, {}), ZELKM_ERR_SIGNATURE_ALGORITHM);
  EXPECT_EQ(createSigExt(1, {0x05, 0x00}), ZELKM_ERR_ASN);
  EXPECT_EQ(ZELKM_CreateSelfSignedCert(handle(), "key", 0, 3, 256, nullptr, 30, nullptr, 0),
            ZELKM_ERR_INVALID_DN_INPUT);
  EXPECT_EQ(ZELKM_CreateSelfSignedCert(handle(), "key", 0, 3, 256, name("").get(), 30, nullptr, 0),
            ZELKM_ERR_INVALID_DN_INPUT);
  EXPECT_EQ(
      ZELKM_CreateSelfSignedCert(handle(), nullptr, 0, 3, 256, name("x").get(), 30, nullptr, 0),
      ZELKM_ERR_NULL_PARAMETER);
  EXPECT_THAT(keyLabels(), IsEmpty());
}

TEST_F(SelfSigned, AreFoundOutBeforeALongKeyIsMade) {
  // A key of 16384 bits takes minutes; this test would not end in time.
  EXPECT_EQ(create(3, 16384, 0), ZELKM_ERR_VALIDATION_KEY_VALIDITY_PERIOD);
  ASSERT_EQ(selfSign("key"), ZELKM_OK);
  EXPECT_EQ(create(3, 16384, 30), ZELKM_ERR_DATABASE_DUPLICATE_KEY_LABEL);
}

TEST_F(SelfSigned, LeaveNoEntryWhenTheFileCannotBeWritten) {
  EXPECT_EQ(create(3, 256, 30, path("no folder/cert.der").c_str()), ZELKM_ERR_FILE_OPEN_NOT_EXIST);
  EXPECT_EQ(create(3, 256, 30, ""), ZELKM_ERR_FILENAME_NULL);
  EXPECT_THAT(keyLabels(), IsEmpty());
}

TEST_F(SelfSigned, LeaveTheDefaultMarkWhenTheFileCannotBeWritten) {
  ASSERT_EQ(selfSign("before", true), ZELKM_OK);
  EXPECT_EQ(ZELKM_CreateSelfSignedCert(handle(), "after", 1, 3, 256, name("after").get(), 30,
                                       path("no folder/cert.der").c_str(), 0),
            ZELKM_ERR_FILE_OPEN_NOT_EXIST);
  EXPECT_THAT(keyLabels(), ElementsAre("before"));
  EXPECT_EQ(item("before")->booleanValue2, 1);
}

TEST_F(SelfSigned, LeaveTheFileWhenTheDatabaseCannotBeWritten) {
  folder().write("cert.der", cms::text("another certificate"));
  const Reader reader(databasePath());
  EXPECT_EQ(create(3, 256, 30, path("cert.der").c_str()), ZELKM_ERR_DATABASE_WRITE);
  const sys::ByteView before = cms::text("another certificate");
  EXPECT_EQ(folder().read("cert.der"), sys::Bytes(before.begin(), before.end()));
}

TEST_F(SelfSigned, KeepTheEntryThatHasTheLabel) {
  ASSERT_EQ(selfSign("key"), ZELKM_OK);
  const KeyItem before = item("key");
  EXPECT_EQ(selfSign("key"), ZELKM_ERR_DATABASE_DUPLICATE_KEY_LABEL);
  const KeyItem after = item("key");
  EXPECT_EQ(bytesOf(before->berData, before->berDataLength),
            bytesOf(after->berData, after->berDataLength));
  EXPECT_THAT(keyLabels(), ElementsAre("key"));
}

TEST_F(SelfSigned, SurviveReopening) {
  ASSERT_EQ(selfSign("key"), ZELKM_OK);
  int again = 0;
  ASSERT_EQ(ZELKM_OpenKeyDb(databasePath().c_str(), kPassword, &again), ZELKM_OK);
  ZELKMKeyItem* item = nullptr;
  EXPECT_EQ(ZELKM_GetKeyItemByLabel(again, "key", &item), ZELKM_OK);
  const KeyItem owned(item);
  EXPECT_EQ(item->hasPrivateKey, 1);
  ZELKM_CloseKeyDb(again);
}

TEST_F(SelfSigned, ExportOnlyWhatIsThereAndWhereItCan) {
  ASSERT_EQ(selfSign("key"), ZELKM_OK);
  EXPECT_EQ(ZELKM_ExportCert(handle(), "nobody", path("x").c_str(), 0), ZELKM_ERR_KEY_GET_BY_LABEL);
  EXPECT_EQ(ZELKM_ExportCert(handle(), "key", nullptr, 0), ZELKM_ERR_FILENAME_NULL);
  EXPECT_EQ(ZELKM_ExportCert(handle(), "key", path("no/x").c_str(), 0),
            ZELKM_ERR_FILE_OPEN_NOT_EXIST);
}

TEST(UnsignedPart, IsTheFirstOfTheCertificatesThreeParts) {
  const cms::TestAuthority root("Root");
  const sys::Bytes& der = root.certificate();
  unsigned char* part = nullptr;
  std::uint32_t length = 0;
  ASSERT_EQ(ZELKM_GetUnsignedCertFromCert(der.data(), static_cast<std::uint32_t>(der.size()), &part,
                                          &length),
            ZELKM_OK);
  const cms::CertificateFields fields = cms::readCertificate(der).value();
  EXPECT_EQ(cms::assembleSigned(viewOf(part, length), fields.signatureAlgorithm, fields.signature),
            der);
  free(part);
}

TEST(UnsignedPart, IsRefusedOfWhatIsNoCertificate) {
  unsigned char* part = nullptr;
  std::uint32_t length = 0;
  const unsigned char noCertificate[] = {0x30, 0x00};
  EXPECT_EQ(ZELKM_GetUnsignedCertFromCert(noCertificate, 2, &part, &length), ZELKM_ERR_ASN);
  EXPECT_EQ(ZELKM_GetUnsignedCertFromCert(nullptr, 2, &part, &length), ZELKM_ERR_NULL_PARAMETER);
  EXPECT_EQ(ZELKM_GetUnsignedCertFromCert(noCertificate, 0, &part, &length),
            ZELKM_ERR_NULL_PARAMETER);
  EXPECT_EQ(ZELKM_GetUnsignedCertFromCert(noCertificate, 2, nullptr, &length),
            ZELKM_ERR_NULL_PARAMETER);
  EXPECT_EQ(part, nullptr);
}

}  // namespace
}  // namespace zel::km
